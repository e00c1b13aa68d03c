// Amounts as counts of ten-thousandths in plain 64-bit integers.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "peers/peers.hpp"

namespace tvx::bench::peers {

int32_t add_checked(const int64_t* a, const int64_t* b, int64_t* result) {
  if (__builtin_add_overflow(*a, *b, result)) {
    *result = 0;
    return CS_CONV_OVERFLOW;
  }
  return CS_SUCCEED;
}

int32_t print_amount(int64_t amount, char* out, int32_t capacity) {
  const int64_t magnitude = std::abs(amount);
  return std::snprintf(out, static_cast<size_t>(capacity), "%s%" PRId64 ".%04" PRId64,
                       amount < 0 ? "-" : "", magnitude / 10'000, magnitude % 10'000);
}

}  // namespace tvx::bench::peers
