// How the legacy forms with an attribute record examine and map the text of a float.
#include "convert/legacy_numbers.hpp"

#include <memory>
#include <string_view>

#include "charset/ascii_mapping.hpp"
#include "tvxcomn/support.h"

namespace tvx::convert::legacy {
namespace {

constexpr int32_t kStackBytes = 512;  // longer texts are mapped on the heap

struct Release {
  void operator()(char* block) const { comn_free(block); }
};

}  // namespace

Text trimmed(Text text) {
  constexpr std::string_view white_space = " \t\n\v\f\r";
  while (text.length > 0 && white_space.find(text.data[text.length - 1]) != white_space.npos) {
    --text.length;
  }
  return text;
}

bool is_decimal_number(Text text, const com_charattr& attributes) {
  const auto* at = reinterpret_cast<const uint8_t*>(text.data);
  const uint8_t* const end = at + text.length;
  enum class State { before, mantissa, exponent_sign, exponent, after } state = State::before;
  bool has_point = false;
  bool has_exponent = false;
  bool mantissa_digits = false;
  bool exponent_digits = false;
  for (; at != end; at += charset::char_width(attributes, at, end)) {
    const uint8_t character = charset::to_ascii(attributes, at, end);
    const bool is_blank = character == ' ' || *at == '\t';  // a tab has no ASCII form
    const bool is_exponent = state == State::exponent_sign || state == State::exponent;
    if (is_blank) {
      if (state != State::before) state = State::after;
    } else if (state == State::after) {
      return false;
    } else if ((charset::entry(attributes, at, end).flags & COM_ATTR_DIGIT) != 0) {
      (is_exponent ? exponent_digits : mantissa_digits) = true;
      state = is_exponent ? State::exponent : State::mantissa;
    } else if (character == '+' || character == '-') {
      if (state != State::before && state != State::exponent_sign) return false;
      state = is_exponent ? State::exponent : State::mantissa;
    } else if (character == '.') {
      if (has_point) return false;
      has_point = true;
      state = is_exponent ? State::exponent : State::mantissa;
    } else if (character == 'e' || character == 'E') {
      if (is_exponent || !mantissa_digits) return false;
      state = State::exponent_sign;
      has_exponent = true;
    } else {
      return false;
    }
  }
  return mantissa_digits && (!has_exponent || exponent_digits);
}

template <class Type>
Reading<Type> read_multibyte_float(Text text, const com_charattr& attributes) {
  char stack[kStackBytes];
  std::unique_ptr<char, Release> heap;
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
