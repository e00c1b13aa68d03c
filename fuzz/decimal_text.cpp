// Texts of exact numerics under any precision and scale, the text's own among them.
#include "target.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tvx::fuzz;
  Input input(data, size);
  comn_datafmt format = format_of(TVX_TYPE_NUM);
  const int32_t precision = input.choose(78);
  format.precision = precision == 0 ? CS_TAKE_FROM_SOURCE : precision;
  const int32_t scale = input.choose(79);
  format.scale = scale == 78 ? CS_TAKE_FROM_SOURCE : scale;
  expect_round_trip(input.rest(), format);

  // The numbers read are numbers: what they are added to has a result or none, by its code.
  if (input.rest().empty()) return 0;
  const Result read = from_text(input.rest(), format);
  if (read.code != CS_SUCCEED) return 0;
  comn_numeric value{};
  read.value.copy(reinterpret_cast<char*>(&value), sizeof value);
  expect(value.precision >= 1 && value.precision <= 77 && value.scale <= 77);
  comn_numeric sum;
  const int32_t code = comn_numsub(&value, &value, &sum);
  expect(code == CS_SUCCEED || code == CS_CONV_OVERFLOW);
  expect(comn_numcmp(&value, &value) == 0);
  return 0;
}
