// Numbers read from text and written as text, for every scalar type and both kinds of text. One
// body reads, one writes; a kind of text says where its bytes lie and how a number is delivered to
// it.
#pragma once

#include <algorithm>

#include "charset/attributes.hpp"
#include "convert/arguments.hpp"
#include "convert/completion.hpp"
#include "convert/scalar_types.hpp"
#include "locale/character_attributes.hpp"
#include "numeric/float_read.hpp"
#include "numeric/integer_read.hpp"
#include "numeric/integer_write.hpp"

namespace tvx::convert {

// ---- Kinds of text; named as the exported routines call them -----------------------------------

namespace type {

struct text_char {
  static constexpr CodeSet codes = kCharFamily;
  static constexpr CodeSet table_codes = kNumberTextCodes;
  static Text read(const Call& call) { return char_source(call); }
};

struct text_varchar {
  static constexpr CodeSet codes = kVarchar;
  static constexpr CodeSet table_codes = kVarchar;
  static Text read(const Call& call) { return varchar_source(call); }
};

}  // namespace type

// ---- Reading -----------------------------------------------------------------------------------

// Single-byte equivalents of a multibyte text's characters, 0 where there is none.
class MultibyteCursor {
public:
  MultibyteCursor(const com_charattr& attributes, Text text)
      : attributes_(attributes),
        at_(reinterpret_cast<const uint8_t*>(text.data)),
        end_(at_ + std::max(text.length, 0)) {}

  [[nodiscard]] bool done() const { return at_ == end_; }
  [[nodiscard]] uint8_t character() const { return charset::to_ascii(attributes_, at_, end_); }
  void advance() { at_ += charset::char_width(attributes_, at_, end_); }

private:
  const com_charattr& attributes_;
  const uint8_t* at_;
  const uint8_t* end_;
};

template <class Integer, class Cursor>
[[nodiscard]] numeric::IntegerParse<Integer> parse_with(Cursor cursor) {
  if constexpr (sizeof(Integer) < sizeof(int32_t)) {
    return numeric::parse_narrow_integer<Integer>(cursor);
  } else {
    return numeric::parse_integer<Integer>(cursor);
  }
}

template <class Integer>
[[nodiscard]] inline numeric::IntegerParse<Integer> parse_integer_text(
    Text text, const com_charattr* attributes) {
  if (charset::is_multibyte(attributes)) [[unlikely]] {
    return parse_with<Integer>(MultibyteCursor(*attributes, text));
  }
  if constexpr (sizeof(Integer) >= sizeof(int32_t)) {
    Integer value;
    if (numeric::read_plain_integer(text.data, text.length, value)) [[likely]]
      return {value, COM_PARSE_NUMBER};
  }
  return parse_with<Integer>(numeric::ByteCursor(text.data, text.length));
}

// What a reader leaves in the destination, and the result of the conversion.
template <class Type>
struct Reading {
  Value<Type> value;
  int32_t code;
  bool stores;  // the destination receives the value
};

template <class Type>
[[nodiscard]] Reading<Type> read_integer(Text text, const com_charattr* attributes) {
  // A bit is any 4-byte number, zero or not.
  using Parsed = std::conditional_t<is_bit<Type>, int32_t, Value<Type>>;
  const auto parse = parse_integer_text<Parsed>(text, attributes);
  const int32_t code = parse.status == COM_PARSE_SYNTAX     ? CS_CONV_SYNTAX
                       : parse.status == COM_PARSE_OVERFLOW ? CS_CONV_OVERFLOW
                                                            : CS_SUCCEED;
  if constexpr (is_bit<Type>) {
    return {static_cast<uint8_t>(parse.value != 0 ? 1 : 0), code, true};
  } else {
    return {parse.value, code, true};
  }
}

// Floats as strtod reads them; in float_text.cpp. On a syntax error flt8 has its parsed prefix,
// which the data-format layer stores.
[[nodiscard]] Reading<type::flt4> read_flt4(Text text, const com_charattr* attributes);
[[nodiscard]] Reading<type::flt8> read_flt8(Text text, const com_charattr* attributes);

// A single-byte text of any length. On a syntax error the value is the parsed prefix.
template <class Type>
[[nodiscard]] Reading<Type> read_float_bytes(Text text);
extern template Reading<type::flt4> read_float_bytes(Text);
extern template Reading<type::flt8> read_float_bytes(Text);

template <class Type>
[[nodiscard]] Reading<Type> read_number(Text text, const com_charattr* attributes) {
  if constexpr (std::is_same_v<Type, type::flt8>) {
    const bool is_short = text.length > 0 && text.length <= numeric::kPlainFloatBytes;
    if (is_short && !charset::is_multibyte(attributes)) [[likely]] {
      const auto plain = numeric::read_plain_float(text.data, text.data + text.length);
      if (plain.is_plain) [[likely]]
        return {plain.value, CS_SUCCEED, true};
    }
  }
  if constexpr (std::is_same_v<Type, type::flt4>) {
    return read_flt4(text, attributes);
  } else if constexpr (std::is_same_v<Type, type::flt8>) {
    return read_flt8(text, attributes);
  } else {
    return read_integer<Type>(text, attributes);
  }
}

// comn_ routine from a kind of text to a scalar type.
template <class TextKind, class Destination>
int32_t text_to_number(const Call& call) {
  call.require_codes(TextKind::codes, destination_codes<Destination>);
  const Text text = TextKind::read(call);
  const auto reading = read_number<Destination>(
      text, locale::character_attributes(*call.context, *call.source_format));
  if (reading.stores) base::store(call.destination, reading.value);
  *call.output_length =
      reading.code == CS_CONV_SYNTAX ? 0 : static_cast<int32_t>(sizeof reading.value);
  return reading.code;
}

// comnb_ routine from text, char and varchar alike, to a scalar type. The float readers deliver a
// length only with success, and nothing at all on a syntax error.
template <class Destination>
int32_t bare_text_to_number(const BareCall& call) {
  call.require_text_source();
  const auto reading = read_number<Destination>(
      {static_cast<const char*>(call.source->data), call.source->length}, call.context->attributes);
  const bool syntax = reading.code == CS_CONV_SYNTAX;
  if (reading.stores && !(is_float<Destination> && syntax)) {
    base::store(call.destination->data, reading.value);
  }
  const bool delivers = is_float<Destination> ? reading.code == CS_SUCCEED : !syntax;
  call.destination->length = delivers ? static_cast<int32_t>(sizeof reading.value) : 0;
  return reading.code;
}

// ---- Writing -----------------------------------------------------------------------------------

enum class NegativeZero { kIsZero, kKeepsSign };
enum class WholeNumber { kHasPoint, kIsPlain };

// The text of a float: "%.17g" without a leading zero before the point, ".0" after digits alone.
class FloatText {
public:
  explicit FloatText(double value, NegativeZero zero = NegativeZero::kIsZero,
                     WholeNumber whole = WholeNumber::kHasPoint);
  [[nodiscard]] int length() const { return static_cast<int>(end_ - begin_); }
  void write(char* out) const { std::copy(begin_, end_, out); }

private:
  static constexpr size_t kCapacity = 32;
  char buffer_[kCapacity];
  const char* begin_;
  const char* end_;
};

template <class Type>
using NumberText = std::conditional_t<is_float<Type>, FloatText, numeric::IntegerText<Value<Type>>>;

// Delivers a number that does not fit a char destination: "*" where there is room for it.
int32_t deliver_overflow_marker(const comn_datafmt& format, int32_t length, void* destination,
                                int32_t& output_length);

template <class NumberText>
int32_t deliver_char(const Call& call, const NumberText& text) {
  const comn_datafmt& format = *call.destination_format;
  const int32_t capacity = destination_capacity(call);
  const int32_t length = text.length();
  if (!text_fits(length, capacity, format.format)) [[unlikely]] {
    return deliver_overflow_marker(format, length, call.destination, *call.output_length);
  }
  text.write(static_cast<char*>(call.destination));
  *call.output_length = length;
  return complete_fitting_text(format.format, capacity, static_cast<uint8_t*>(call.destination),
                               *call.output_length);
}

// Every number fits a varchar record, its terminator included.
template <class NumberText>
int32_t deliver_varchar(const Call& call, const NumberText& text) {
  auto* record = static_cast<uint8_t*>(call.destination);
  const int32_t length = text.length();
  auto* data = reinterpret_cast<char*>(record + sizeof(uint16_t));
  text.write(data);
  data[length] = '\0';
  base::store(record, static_cast<uint16_t>(length));
  *call.output_length = kVarRecordSize;
  return CS_SUCCEED;
}

// comn_ routine from a scalar type to a kind of text.
template <class Source, class TextKind>
int32_t number_to_text(const Call& call) {
  call.require_codes(Source::codes, TextKind::codes);
  const NumberText<Source> text(base::load<Value<Source>>(call.source));
  if constexpr (std::is_same_v<TextKind, type::text_char>) {
    return deliver_char(call, text);
  } else {
    return deliver_varchar(call, text);
  }
}

// comnb_ routine: a number that does not fit is not delivered. Towards varchar nothing is
// completed.
template <class Source, class TextKind>
int32_t bare_number_to_text(const BareCall& call) {
  constexpr bool completes = std::is_same_v<TextKind, type::text_char>;
  call.require_data();
  const NumberText<Source> text(base::load<Value<Source>>(call.source->data));
  const int32_t length = text.length();
  if (!text_fits(length, call.destination->maxlength, completes ? call.context->flags : 0)) {
    return CS_CONV_OVERFLOW;
  }
  text.write(static_cast<char*>(call.destination->data));
  call.destination->length = length;
  if constexpr (!completes) return CS_SUCCEED;
  return complete_bare_text(*call.context, length, *call.destination);
}

}  // namespace tvx::convert
