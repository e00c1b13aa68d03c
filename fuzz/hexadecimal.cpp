// Binary data in hexadecimal.
#include "target.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tvx::fuzz;
  const Input input(data, size);
  const auto length = static_cast<int32_t>(size);
  if (length == 0 || length > 900) return 0;  // broken usage; more text than to_text has room for
  expect_round_trip(input.rest(), format_of(TVX_TYPE_BIN, length));
  const Result written = convert(format_of(TVX_TYPE_BIN, length), input.rest(),
                                 format_of(TVX_TYPE_CHAR, 2 * length + 2));
  expect(written.code == CS_SUCCEED);
  expect(from_text(written.value, format_of(TVX_TYPE_BIN, length)).value == input.rest());
  return 0;
}
