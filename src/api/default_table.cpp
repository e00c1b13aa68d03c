// The default table is made at compile time of what the families say they serve: each routine
// brings the source and destination codes of its cells. It holds the addresses of the exported
// functions, which is why it is put together here.
#include "api/default_table.hpp"

#include <algorithm>
#include <iterator>

#include "api/exports.hpp"
#include "convert/null_values.hpp"
#include "convert/number_text.hpp"
#include "convert/scalar.hpp"
#include "tvxcomn/numbertext.h"
#include "tvxcomn/scalar.h"

namespace tvx::api {
namespace {

using namespace convert;

// A routine and the cells it fills: every pair of a source and a destination.
struct Served {
  CodeSet sources;
  CodeSet destinations;
  comn_conversion* routine;
};

#define SCALAR(S, D) \
  Served{source_codes<type::S, type::D>, destination_codes<type::D>, comn_##S##to##D},
#define UNSIGNED_SCALAR(S, D)                                        \
  Served{source_codes<type::S, type::D>, destination_codes<type::D>, \
         scalar_routine<type::S, type::D>},
#define FROM_TEXT(T, D) \
  Served{type::text_##T::table_codes, destination_codes<type::D>, comn_##T##to##D},
#define TO_TEXT(S, T) Served{type::S::codes, type::text_##T::table_codes, comn_##S##to##T},
#define UNSIGNED_TO_TEXT(S, T) \
  Served{type::S::codes, type::text_##T::table_codes, number_to_text<type::S, type::text_##T>},

constexpr Served kServed[] = {
    TVX_FROM_EACH_EXPORTED(SCALAR)                //
    TVX_FROM_EACH_UNSIGNED(UNSIGNED_SCALAR)       //
    TVX_TO_EACH_SCALAR(FROM_TEXT, char)           //
    TVX_TO_EACH_SCALAR(FROM_TEXT, varchar)        //
    TVX_EXPORTED_NUMBERS(TO_TEXT, char)           //
    TVX_EXPORTED_NUMBERS(TO_TEXT, varchar)        //
    TVX_UNSIGNED_NUMBERS(UNSIGNED_TO_TEXT, char)  //
    TVX_UNSIGNED_NUMBERS(UNSIGNED_TO_TEXT, varchar)
        Served{type::bit::codes, kNumberTextCodes, comn_bittochar},
    Served{type::bit::codes, kBinFamily, comn_bittobin},
    Served{type::bit::codes, kVarchar, comn_bittovarchar},
    Served{type::bit::codes, kVarbin, comn_bittovarbin},
    Served{kNullSource, kNullDestinations, null_to_any},
};

#undef SCALAR
#undef UNSIGNED_SCALAR
#undef FROM_TEXT
#undef TO_TEXT
#undef UNSIGNED_TO_TEXT

constexpr DefaultTable build_table() {
  DefaultTable table{};
  for (const Served& row : kServed) {
    for (int32_t source = 0; source < kDatatypes; ++source) {
      if (!row.sources.contains(source)) continue;
      for (int32_t destination = 0; destination < kDatatypes; ++destination) {
        if (row.destinations.contains(destination)) table[cell(source, destination)] = row.routine;
      }
    }
  }
  return table;
}

constexpr DefaultTable kTable = build_table();

// Routines that claim a cell; counted by codes, since not every compiler compares the addresses of
// functions at compile time.
constexpr int claims(int32_t source, int32_t destination) {
  return static_cast<int>(
      std::count_if(std::begin(kServed), std::end(kServed), [=](const Served& row) {
        return row.sources.contains(source) && row.destinations.contains(destination);
      }));
}

constexpr int filled_cells() {
  int filled = 0;
  for (int32_t source = 0; source < kDatatypes; ++source) {
    for (int32_t destination = 0; destination < kDatatypes; ++destination) {
      const int here = claims(source, destination);
      if (here > 1) return -1;
      filled += here;
    }
  }
  return filled;
}

// 10 scalar sources towards 11 scalar codes, int20 towards 6 of them; 4 text codes towards 11
// scalar codes; 9 numbers towards 4 text codes; bit towards 8 text and binary codes; null
// towards 37.
static_assert(filled_cells() != -1, "two routines claim one cell");
static_assert(filled_cells() == 10 * 11 + 6 + 4 * 11 + 9 * 4 + 8 + 37);

}  // namespace

const DefaultTable& default_table() {
  return kTable;
}

}  // namespace tvx::api
