// How the legacy forms with an attribute record examine and map the text of a float.
#include "convert/legacy_numbers.hpp"

#include <utility>

#include "base/ascii.hpp"
#include "base/heap_block.hpp"
#include "charset/ascii_mapping.hpp"
#include "tvxcomn/support.h"

namespace tvx::convert::legacy {
namespace {

constexpr int32_t kStackBytes = 512;  // longer texts are mapped on the heap

}  // namespace

Text trimmed(Text text) {
  const auto is_white_space = [](const char* character) {
    const auto* byte = reinterpret_cast<const uint8_t*>(character);
    return base::is_space(*character) ||
           charset::is_space(charset::builtin_record(), byte, byte + 1);
  };
  while (text.length > 0 && is_white_space(text.data + text.length - 1)) --text.length;
  return text;
}

bool is_decimal_number(Text text, const com_charattr& attributes) {
  const auto* at = reinterpret_cast<const uint8_t*>(text.data);
  const uint8_t* const end = at + text.length;
  bool has_begun = false;
  bool has_ended = false;
  bool has_point = false;
  bool in_exponent = false;
  bool sign_may_follow = true;
  bool has_digits[2] = {};  // of the mantissa, of the exponent
  for (; at != end; at += charset::char_width(attributes, at, end)) {
    const uint8_t character = charset::to_ascii(attributes, at, end);
    if (base::is_blank_or_tab(static_cast<char>(character))) {
      has_ended = has_begun;
      continue;
    }
    if (has_ended) return false;
    has_begun = true;
    const bool may_be_sign = std::exchange(sign_may_follow, false);
    if ((charset::entry(attributes, at, end).flags & COM_ATTR_DIGIT) != 0) {
      has_digits[in_exponent ? 1 : 0] = true;
    } else if (character == '.' && !has_point) {
      has_point = true;
    } else if ((character == 'e' || character == 'E') && has_digits[0] && !in_exponent) {
      in_exponent = sign_may_follow = true;
    } else if (!may_be_sign || (character != '+' && character != '-')) {
      return false;
    }
  }
  return has_digits[0] && (has_digits[1] || !in_exponent);
}

template <class Type>
Reading<Type> read_multibyte_float(Text text, const com_charattr& attributes) {
  char stack[kStackBytes];
  base::HeapBlock<char> heap;
  char* mapped = stack;
  if (text.length >= kStackBytes) {
    heap.reset(static_cast<char*>(comn_malloc(static_cast<size_t>(text.length))));
    mapped = heap.get();
    if (mapped == nullptr) return {Value<Type>{}, CS_MEM_ERROR, false};
  }
  const int32_t length =
      charset::map_to_ascii(text.data, text.length, mapped, text.length, &attributes);
  return read_float_bytes<Type>(trimmed({mapped, length}));
}

template Reading<type::flt4> read_multibyte_float(Text, const com_charattr&);
template Reading<type::flt8> read_multibyte_float(Text, const com_charattr&);

}  // namespace tvx::convert::legacy
