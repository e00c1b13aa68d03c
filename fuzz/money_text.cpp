// Texts of money, with currency symbols and commas between groups of digits.
#include "target.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tvx::fuzz;
  const Input input(data, size);
  expect_round_trip(input.rest(), format_of(TVX_TYPE_MONEY));
  expect_round_trip(input.rest(), format_of(TVX_TYPE_MNY4));
  return 0;
}
