// Legacy conversions between dates and text.
#pragma once

#include "convert/date_types.hpp"
#include "convert/legacy_call.hpp"
#include "datetime/formatter.hpp"
#include "datetime/names.hpp"
#include "datetime/parser.hpp"

namespace tvx::convert::legacy {

// ---- To text -----------------------------------------------------------------------------------

// A text that does not fit is cut; an unknown style leaves the empty text.
template <class Kind>
int32_t deliver_date(const LegacyCall& call, const datetime::DateText& text) {
  const int32_t room = Kind::room(call.destination_length);
  const int32_t count = text.write_within(Kind::data(call.destination), room);
  Kind::finish(call.destination, call.destination_length, count);
  const bool is_whole = text.status() == datetime::Formatting::kDone && count == text.length();
  return is_whole ? count : kCut;
}

template <class Source, class Kind>
int32_t date_to_text(const LegacyCall& call, int32_t style, const char* const* short_months) {
  constexpr auto value_type = std::is_same_v<Source, type::datetime>
                                  ? datetime::ValueType::kDatetime
                                  : datetime::ValueType::kDate4;
  if (call.is_empty()) return kNothing;
  const auto* names = short_months != nullptr ? short_months : datetime::kShortMonths;
  return deliver_date<Kind>(call, datetime::DateText(value_type, call.source, style, names));
}

// ---- From text ---------------------------------------------------------------------------------

inline datetime::ReadStatus read_date_text(Text text, const datetime::ReadingRules& rules,
                                           comn_datetime& value) {
  bool lost_digits = false;
  return datetime::read_datetime({text.data, static_cast<size_t>(text.length)}, rules, value,
                                 lost_digits);
}

inline datetime::ReadStatus read_date_text(Text text, const datetime::ReadingRules& rules,
                                           comn_datetime4& value) {
  return datetime::read_datetime4({text.data, static_cast<size_t>(text.length)}, rules, value);
}

// Month, day, year. The destination is left alone unless the text is a date.
template <class Source, class Destination>
int32_t text_to_date(const LegacyCall& call, int32_t format_code, const char* const* months,
                     const char* const* short_months, const com_charattr* attributes) {
  if (call.is_empty()) return kNothing;
  const Text text = Source::read(call);
  if (text.length == 0) return kNothing;
  const datetime::MonthNames names{months != nullptr ? months : datetime::kMonths,
                                   short_months != nullptr ? short_months : datetime::kShortMonths};
  Value<Destination> value{};
  const auto status =
      read_date_text(text, {format_code, datetime::kMonthDayYear, names, attributes}, value);
  if (status == datetime::ReadStatus::kRead) return deliver_value(call, value);
  return static_cast<int32_t>(status) < 0 ? kSyntax : kCut;
}

}  // namespace tvx::convert::legacy
