// Every pair of the conversion table with the same bytes as the value, and any room for the result.
#include "target.hpp"

namespace {

using namespace tvx::fuzz;

// Locators hold addresses, which cannot be any bytes.
bool is_locator(int32_t datatype) {
  return datatype >= TVX_TYPE_LOCATOR37 && datatype <= TVX_TYPE_LOCATOR39;
}

bool has_length_field(int32_t datatype) {
  return datatype == TVX_TYPE_VARCHAR || datatype == TVX_TYPE_VARBIN;
}

bool is_documented(int32_t code) {
  return code == CS_SUCCEED || (code <= CS_CONV_OVERFLOW && code >= CS_CONV_DIVZERO) ||
         (code <= CS_CONV_TRUNCATED && code >= CS_CONV_BADSTYLE);
}

// Any bytes as a value of the format's type, longer or shorter than they are.
std::string value_of(const comn_datafmt& format, std::string_view bytes) {
  const Block value(bytes, size_of(format));
  if (has_length_field(format.datatype)) {  // another length is broken usage
    uint16_t length;
    std::memcpy(&length, value.data(), sizeof length);
    length = static_cast<uint16_t>(1 + length % 256);
    std::memcpy(value.data(), &length, sizeof length);
  }
  return std::string(value.view());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, size);
  comn_datafmt in = format_of(0);
  comn_datafmt out = format_of(0, input.choose(600));
  out.format = static_cast<uint32_t>(input.choose(64));
  out.precision = input.choose(90) - 5;
  out.scale = input.choose(90) - 5;
  if (out.precision < 0) out.precision = CS_TAKE_FROM_SOURCE;
  if (out.scale < 0) out.scale = CS_TAKE_FROM_SOURCE;
  in.maxlength = static_cast<int32_t>(std::max<size_t>(input.rest().size(), 1));

  for (in.datatype = 0; in.datatype < 40; ++in.datatype) {
    if (is_locator(in.datatype)) continue;
    const std::string value = value_of(in, input.rest());
    for (out.datatype = 0; out.datatype < 40; ++out.datatype) {
      if (is_locator(out.datatype)) continue;
      if (com_conv_func(context(), in.datatype, out.datatype) == nullptr) continue;
      expect(is_documented(convert(in, value, out).code));
    }
  }
  return 0;
}
