// Texts of integers and floating-point numbers.
#include "target.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tvx::fuzz;
  const Input input(data, size);
  for (const int32_t datatype : {TVX_TYPE_I1, TVX_TYPE_I2, TVX_TYPE_I4, TVX_TYPE_I8, TVX_TYPE_UI2,
                                 TVX_TYPE_UI4, TVX_TYPE_UI8})
    expect_round_trip(input.rest(), format_of(datatype));
  for (const int32_t datatype : {TVX_TYPE_FLT4, TVX_TYPE_FLT8}) {
    // What is written of an infinity is no number.
    const std::string text(input.rest());
    if (text.find_first_of("0123456789") != std::string::npos)
      expect_round_trip(text, format_of(datatype));
  }
  return 0;
}
