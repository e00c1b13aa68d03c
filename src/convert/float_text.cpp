// Floats as text, in the two respects in which a conversion differs from the plain number: reading
// trims the text and maps errors to results, writing drops a leading zero and marks whole numbers.
#include <cmath>
#include <limits>

#include "charset/ascii_mapping.hpp"
#include "charset/attributes.hpp"
#include "convert/number_text.hpp"
#include "numeric/float_read.hpp"
#include "numeric/float_write.hpp"

namespace tvx::convert {
namespace {

constexpr int32_t kTextCapacity = 1024;  // longer texts are refused

// Removes what the built-in record calls a space from the end.
const char* trimmed_end(const char* begin, const char* end) {
  const auto is_space = [](const char* character) {
    const auto* byte = reinterpret_cast<const uint8_t*>(character);
    return charset::is_space(charset::builtin_record(), byte, byte + 1);
  };
  while (end != begin && is_space(end - 1)) --end;
  return end;
}

template <class Type>
Reading<Type> read_float(Text text, const com_charattr* attributes) {
  if (text.length < 0 || text.length >= kTextCapacity)
    return {Value<Type>{}, CS_CONV_SYNTAX, false};
  if (!charset::is_multibyte(attributes)) [[likely]]
    return read_float_bytes<Type>(text);
  char mapped[kTextCapacity];
  const int32_t length =
      charset::map_to_ascii(text.data, text.length, mapped, kTextCapacity, attributes);
  return read_float_bytes<Type>({mapped, length});
}

}  // namespace

template <class Type>
Reading<Type> read_float_bytes(Text text) {
  using Float = Value<Type>;
  constexpr Float largest = std::numeric_limits<Float>::max();
  const char* end = trimmed_end(text.data, text.data + text.length);
  const auto parse = numeric::parse_float(text.data, end);
  switch (parse.range) {  // goes before a syntax error further on
    case numeric::FloatRange::kUnderflow:
      return {static_cast<Float>(parse.value), CS_CONV_UNDERFLOW, true};
    case numeric::FloatRange::kOverflow:
      return {std::signbit(parse.value) ? -largest : largest, CS_CONV_OVERFLOW, true};
    case numeric::FloatRange::kWithin:
      break;
  }
  if (parse.end != end) {
    constexpr bool stores_prefix = std::is_same_v<Type, type::flt8>;
    return {stores_prefix ? static_cast<Float>(parse.value) : Float{}, CS_CONV_SYNTAX,
            stores_prefix};
  }
  if constexpr (std::is_same_v<Type, type::flt4>) {
    if (parse.value > static_cast<double>(largest)) return {largest, CS_CONV_OVERFLOW, true};
    if (parse.value < -static_cast<double>(largest)) return {-largest, CS_CONV_OVERFLOW, true};
  }
  return {static_cast<Float>(parse.value), CS_SUCCEED, true};
}

template Reading<type::flt4> read_float_bytes(Text);
template Reading<type::flt8> read_float_bytes(Text);

Reading<type::flt4> read_flt4(Text text, const com_charattr* attributes) {
  return read_float<type::flt4>(text, attributes);
}

Reading<type::flt8> read_flt8(Text text, const com_charattr* attributes) {
  return read_float<type::flt8>(text, attributes);
}

FloatText::FloatText(double value, NegativeZero zero, WholeNumber whole) : begin_(buffer_) {
  constexpr size_t marker = 2;  // ".0"
  static_assert(numeric::kGeneral17Bytes + marker <= kCapacity);
  if (value == 0 && zero == NegativeZero::kIsZero) value = 0.0;
  char* end = numeric::write_general17(value, buffer_);
  const bool has_mark = std::any_of(
      buffer_, end, [](char character) { return character == '.' || character == 'e'; });
  if (!has_mark && whole == WholeNumber::kHasPoint) {
    *end++ = '.';
    *end++ = '0';
  } else if (has_mark && buffer_[0] == '0' && buffer_[1] == '.') {
    ++begin_;
  }
  end_ = end;
}

int32_t deliver_overflow_marker(const comn_datafmt& format, int32_t length, void* destination,
                                int32_t& output_length) {
  output_length = std::min(length, format.maxlength);
  if (format.maxlength >= 2) {
    auto* out = static_cast<uint8_t*>(destination);
    out[0] = '*';
    out[1] = '\0';
    output_length = 1;
    complete_text(format, 1, out, output_length);
  }
  return CS_CONV_OVERFLOW;
}

}  // namespace tvx::convert
