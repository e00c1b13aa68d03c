// Legacy conversions of integers, floats, bit and money: among themselves, to text and from text.
#pragma once

#include "convert/legacy_call.hpp"
#include "convert/money_conversion.hpp"

namespace tvx::convert::legacy {

// ---- Among themselves --------------------------------------------------------------------------

// The range of the data-format layer, but a value outside it leaves the destination alone. Only one
// pair tells the two sides apart.
template <class Source, class Destination>
int32_t narrow(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const auto value = base::load<Value<Source>>(call.source);
  const auto outcome = convert_scalar<Source, Destination>(value);
  if (outcome.code == CS_SUCCEED) return deliver_value(call, outcome.value);
  constexpr bool tells_below =
      std::is_same_v<Source, type::i4> && std::is_same_v<Destination, type::i2>;
  return tells_below && value < 0 ? kBelow : kCut;
}

// ---- To text -----------------------------------------------------------------------------------

template <class Source, class Kind>
int32_t integer_to_text(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const auto value = base::load<Value<Source>>(call.source);
  return deliver_number<Kind>(call, numeric::IntegerText<Value<Source>>(value));
}

template <class Source, class Kind>
int32_t float_to_text(const LegacyCall& call, int32_t leaves_out_point) {
  if (call.is_empty()) return kNothing;
  const auto value = base::load<Value<Source>>(call.source);
  const auto whole = leaves_out_point != 0 ? WholeNumber::kIsPlain : WholeNumber::kHasPoint;
  return deliver_number<Kind>(call, FloatText(value, NegativeZero::kKeepsSign, whole));
}

// Two digits behind the point, no commas.
template <class Source, class Kind>
int32_t money_to_text(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  return deliver_number<Kind>(call, MoneyText(amount_of<Source>(call.source).value, {}));
}

// ---- From text ---------------------------------------------------------------------------------

// The destination gets what the reader leaves of a number that does not fit.
template <class Source, class Destination>
int32_t text_to_integer(const LegacyCall& call, const com_charattr* attributes) {
  if (call.is_empty()) return kNothing;
  const Text text = Source::read(call);
  if (text.length == 0) return kNothing;
  const auto reading = read_integer<Destination>(text, attributes);
  const int32_t size = deliver_value(call, reading.value);
  return result_of(reading.code, size);
}

// Whether a text is a decimal number by the grammar that the forms with an attribute record ask
// for: blanks, a sign, digits with at most one point, an exponent, blanks.
[[nodiscard]] bool is_decimal_number(Text text, const com_charattr& attributes);

// The text without white space at its end, which here is more than the built-in space class: tabs
// and line ends too.
[[nodiscard]] Text trimmed(Text text);

// A text of the multibyte set of a record, read as a float; CS_MEM_ERROR when a long one cannot be
// brought to single bytes.
template <class Type>
[[nodiscard]] Reading<Type> read_multibyte_float(Text text, const com_charattr& attributes);
extern template Reading<type::flt4> read_multibyte_float(Text, const com_charattr&);
extern template Reading<type::flt8> read_multibyte_float(Text, const com_charattr&);

template <class Destination>
int32_t deliver_reading(const LegacyCall& call, const Reading<Destination>& reading) {
  if (reading.code != CS_CONV_SYNTAX && reading.stores) deliver_value(call, reading.value);
  return result_of(reading.code, static_cast<int32_t>(sizeof reading.value));
}

// A text of any length, as strtod reads it.
template <class Source, class Destination>
int32_t text_to_float(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const Text text = Source::read(call);
  if (text.length == 0) return kNothing;
  return deliver_reading(call, read_float_bytes<Destination>(trimmed(text)));
}

// The same after the text has been examined; a null record is the built-in one.
template <class Source, class Destination>
int32_t examined_text_to_float(const LegacyCall& call, const com_charattr* attributes) {
  if (call.is_empty()) return kNothing;
  const Text whole = Source::read(call);
  if (whole.length == 0) return kNothing;
  const Text text = trimmed(whole);
  const com_charattr& record = charset::record_or_builtin(attributes);
  if (!is_decimal_number(text, record)) return kSyntax;
  if (!charset::is_multibyte(attributes)) {
    return deliver_reading(call, read_float_bytes<Destination>(text));
  }
  return deliver_reading(call, read_multibyte_float<Destination>(text, record));
}

// Whether one of the digits before trailing blanks is not 0.
template <class Source>
int32_t text_to_bit(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const Text text = Source::read(call);
  const char* end = text.data + text.length;
  while (end != text.data && end[-1] == ' ') --end;
  const auto is_digit = [](char character) { return character >= '0' && character <= '9'; };
  if (text.length == 0) return kNothing;
  if (!std::all_of(text.data, end, is_digit)) return kSyntax;
  const bool bit = std::any_of(text.data, end, [](char digit) { return digit != '0'; });
  return deliver_value(call, static_cast<uint8_t>(bit ? 1 : 0));
}

template <class Source, class Destination>
int32_t text_to_money(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const Text text = Source::read(call);
  if (text.length == 0) return kNothing;
  Value<Destination> value;
  const int32_t code =
      hand_over(numeric::parse_money(text.data, text.length, nullptr), Destination{}, {}, &value);
  if (code == CS_CONV_SYNTAX) return kSyntax;
  const int32_t size = deliver_value(call, value);
  return result_of(code, size);
}

}  // namespace tvx::convert::legacy
