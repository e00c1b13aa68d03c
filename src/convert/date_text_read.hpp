// Dates and times read from text, for every date type and both kinds of text. The grammar is in
// datetime/parser.hpp; here it meets the datatypes, the locales and the result codes.
#pragma once

#include <algorithm>
#include <string_view>

#include "convert/arguments.hpp"
#include "convert/date_types.hpp"
#include "convert/number_text.hpp"
#include "datetime/names.hpp"
#include "datetime/parser.hpp"
#include "locale/character_attributes.hpp"
#include "locale/date_settings.hpp"

namespace tvx::convert {

// ---- The reader of a type ----------------------------------------------------------------------

template <class Type>
using DateReader = datetime::ReadStatus(std::string_view, const datetime::ReadingRules&,
                                        typename Type::Value&);

// That a fraction was rounded is no concern of a conversion.
template <class Value, datetime::ReadStatus (*read)(std::string_view, const datetime::ReadingRules&,
                                                    Value&, bool&)>
datetime::ReadStatus rounded(std::string_view text, const datetime::ReadingRules& rules,
                             Value& value) {
  bool lost_digits;
  return read(text, rules, value, lost_digits);
}

template <class Type>
inline constexpr DateReader<Type>* date_reader = nullptr;
template <>
inline constexpr auto* date_reader<type::datetime> =
    rounded<comn_datetime, datetime::read_datetime>;
template <>
inline constexpr auto* date_reader<type::date4> = datetime::read_datetime4;
template <>
inline constexpr auto* date_reader<type::datea> = datetime::read_date;
template <>
inline constexpr auto* date_reader<type::timea> = rounded<int32_t, datetime::read_time>;
template <>
inline constexpr auto* date_reader<type::bigdatetime> = datetime::read_bigdatetime;
template <>
inline constexpr auto* date_reader<type::bigtime> = datetime::read_bigtime;

// The routines named after datetime and time serve the big types, too.
template <class Type>
struct DateTextDestination {
  using Big = void;
  static constexpr CodeSet codes = Type::codes;
};
template <>
struct DateTextDestination<type::datetime> {
  using Big = type::bigdatetime;
  static constexpr CodeSet codes{TVX_TYPE_DATETIME, TVX_TYPE_BIGDATETIME};
};
template <>
struct DateTextDestination<type::timea> {
  using Big = type::bigtime;
  static constexpr CodeSet codes{TVX_TYPE_TIMEA, TVX_TYPE_BIGTIME};
};

// ---- Rules -------------------------------------------------------------------------------------

[[nodiscard]] inline datetime::ReadingRules reading_rules(const comn_context& context,
                                                          const comn_datafmt& format) {
  const locale::DateSettings& settings = locale::date_settings(&context, &format);
  return {settings.reading_code(),
          settings.order,
          {settings.months, settings.short_months},
          locale::character_attributes(context, format)};
}

// The bare layer has no locales.
[[nodiscard]] inline datetime::ReadingRules reading_rules(const comnb_context& context) {
  constexpr int32_t builtin_code = 0;
  return {builtin_code,
          datetime::kMonthDayYear,
          {datetime::kMonths, datetime::kShortMonths},
          context.attributes};
}

// ---- Routines ----------------------------------------------------------------------------------

// Reads a text and returns the result code. On success the value is stored and its size is the
// output length; on a syntax error the length is 0; otherwise both stay as they are.
template <class Type>
int32_t read_date_text(Text text, const datetime::ReadingRules& rules, void* destination,
                       int32_t& output_length) {
  typename Type::Value value;
  const auto length = static_cast<size_t>(std::max(text.length, 0));
  const auto status =
      static_cast<int32_t>(date_reader<Type>(std::string_view(text.data, length), rules, value));
  if (status > 0) return CS_CONV_OVERFLOW;
  if (status < 0) {
    output_length = 0;
    return CS_CONV_SYNTAX;
  }
  base::store(destination, value);
  output_length = sizeof value;
  return CS_SUCCEED;
}

// comn_ routine from a kind of text to a date type.
template <class TextKind, class Type>
int32_t text_to_date(const Call& call) {
  using Big = typename DateTextDestination<Type>::Big;
  call.require_codes(TextKind::codes, DateTextDestination<Type>::codes);
  const Text text = TextKind::read(call);
  const auto rules = reading_rules(*call.context, *call.source_format);
  if constexpr (!std::is_void_v<Big>) {
    if (Big::codes.contains(call.destination_format->datatype)) {
      return read_date_text<Big>(text, rules, call.destination, *call.output_length);
    }
  }
  return read_date_text<Type>(text, rules, call.destination, *call.output_length);
}

// comnb_ routine from text, char and varchar alike.
template <class Type>
int32_t bare_text_to_date(const BareCall& call) {
  call.require_text_source();
  const Text text{static_cast<const char*>(call.source->data), call.source->length};
  return read_date_text<Type>(text, reading_rules(*call.context), call.destination->data,
                              call.destination->length);
}

}  // namespace tvx::convert
