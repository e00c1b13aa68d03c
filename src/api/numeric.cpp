// Exported functions of numeric.h.
#include "tvxcomn/numeric.h"

#include "numeric/precision.hpp"
#include "runtime/diagnosis.hpp"

namespace {

template <class Table>
int32_t entry(const Table& table, int32_t index) {
  tvx::runtime::require(index >= 0 && static_cast<size_t>(index) < table.size());
  return table[static_cast<size_t>(index)];
}

}  // namespace

extern "C" {

int32_t comb_get_Prec_To_Len(int32_t precision) {
  return entry(tvx::numeric::kFieldLengthOfPrecision, precision);
}

int32_t comb_get_Len_To_Prec(int32_t index) {
  return entry(tvx::numeric::kPrecisionOfFieldLength, index);
}

}  // extern "C"
