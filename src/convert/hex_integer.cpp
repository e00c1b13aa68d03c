// Hexadecimal integers.
#include "convert/hex_integer.hpp"

#include <string_view>

#include "base/hexadecimal.hpp"
#include "charset/ascii_mapping.hpp"
#include "charset/attributes.hpp"

namespace tvx::convert {
namespace {

constexpr int32_t kLongestText = 255;

template <class Integer>
int32_t deliver(comnb_value& destination, Integer value, int32_t length, int32_t code) {
  base::store(destination.data, value);
  destination.length = length;
  return code;
}

}  // namespace

template <class Integer>
int32_t hex_to_integer(const BareCall& call) {
  constexpr int most_digits = 2 * sizeof(Integer);
  call.require_text_source();
  comnb_value& destination = *call.destination;
  if (call.source->length > kLongestText) return CS_CONV_OVERFLOW;

  char buffer[kLongestText];
  const int32_t length =
      charset::map_to_ascii(static_cast<const char*>(call.source->data), call.source->length,
                            buffer, kLongestText, call.context->attributes);
  std::string_view text(buffer, static_cast<size_t>(length));
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));

  Integer value = 0;
  int digits = 0;
  for (const char character : text) {
    const int digit = base::hex_digit_value(character);
    if (digit == base::kNoHexDigit) return deliver(destination, Integer{0}, 0, CS_CONV_SYNTAX);
    if (digits++ == most_digits) {
      return deliver(destination, value, sizeof value, CS_CONV_TRUNCATED);
    }
    value = static_cast<Integer>(value << 4 | static_cast<unsigned>(digit));
  }
  return deliver(destination, value, sizeof value, CS_SUCCEED);
}

template <class Integer>
int32_t integer_to_hex(const BareCall& call) {
  call.require_pointers();
  runtime::require_pointer(call.source->data);
  comnb_value& destination = *call.destination;
  if (destination.maxlength < 2 || destination.data == nullptr) return CS_CONV_SYNTAX;

  auto value = base::load<Integer>(call.source->data);
  auto* out = static_cast<char*>(destination.data);
  int32_t at = destination.maxlength - 1;
  out[at] = '\0';
  while (at > 0) {
    out[--at] = "0123456789ABCDEF"[value & 15];
    value >>= 4;
  }
  return value == 0 ? CS_SUCCEED : CS_CONV_OVERFLOW;
}

template int32_t hex_to_integer<uint32_t>(const BareCall&);
template int32_t hex_to_integer<uint64_t>(const BareCall&);
template int32_t integer_to_hex<uint32_t>(const BareCall&);
template int32_t integer_to_hex<uint64_t>(const BareCall&);

}  // namespace tvx::convert
