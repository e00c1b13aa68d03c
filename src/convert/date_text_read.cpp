// The reader of each date type, and the rules that it reads under.
#include "convert/date_text_read.hpp"

#include <algorithm>

#include "datetime/names.hpp"
#include "locale/character_attributes.hpp"
#include "locale/date_settings.hpp"

namespace tvx::convert {

using datetime::ReadingRules;
using datetime::ReadStatus;

namespace {

// The functions of the parser in one form: that a fraction was rounded is no concern of a
// conversion.
template <class Value>
using Reader = ReadStatus(std::string_view, const ReadingRules&, Value&);
template <class Value>
using RoundingReader = ReadStatus(std::string_view, const ReadingRules&, Value&, bool&);

template <class Value, RoundingReader<Value>* read>
ReadStatus rounded(std::string_view text, const ReadingRules& rules, Value& value) {
  bool lost_digits;
  return read(text, rules, value, lost_digits);
}

template <class Value>
int32_t deliver(Reader<Value>* read, Text text, const ReadingRules& rules, void* destination,
                int32_t& output_length) {
  Value value{};
  const auto length = static_cast<size_t>(std::max(text.length, 0));
  const auto status = static_cast<int32_t>(read({text.data, length}, rules, value));
  if (status > 0) return CS_CONV_OVERFLOW;
  if (status < 0) {
    output_length = 0;
    return CS_CONV_SYNTAX;
  }
  base::store(destination, value);
  output_length = sizeof value;
  return CS_SUCCEED;
}

}  // namespace

int32_t read_date_text(int32_t datatype, Text text, const ReadingRules& rules, void* destination,
                       int32_t& output_length) {
  const auto deliver_with = [&](auto* read) {
    return deliver(read, text, rules, destination, output_length);
  };
  switch (datatype) {
    case TVX_TYPE_DATETIME:
      return deliver_with(rounded<comn_datetime, datetime::read_datetime>);
    case TVX_TYPE_DATE4:
      return deliver_with(datetime::read_datetime4);
    case TVX_TYPE_DATEA:
      return deliver_with(datetime::read_date);
    case TVX_TYPE_TIMEA:
      return deliver_with(rounded<int32_t, datetime::read_time>);
    case TVX_TYPE_BIGDATETIME:
      return deliver_with(datetime::read_bigdatetime);
    default:
      runtime::require(datatype == TVX_TYPE_BIGTIME);
      return deliver_with(datetime::read_bigtime);
  }
}

ReadingRules reading_rules(const comn_context& context, const comn_datafmt& format) {
  const locale::DateSettings& settings = locale::date_settings(&context, &format);
  return {settings.reading_code(),
          settings.order,
          {settings.months, settings.short_months},
          locale::character_attributes(context, format)};
}

ReadingRules reading_rules(const comnb_context& context) {
  constexpr int32_t built_in_code = 0;
  constexpr int32_t month_day_year = 1;
  return {built_in_code,
          month_day_year,
          {datetime::kMonths, datetime::kShortMonths},
          context.attributes};
}

}  // namespace tvx::convert
