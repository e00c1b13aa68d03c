// Delivery of dates and times as text.
#include "convert/date_text_write.hpp"

#include "convert/completion.hpp"
#include "datetime/names.hpp"

namespace tvx::convert {
namespace {

using datetime::DateText;
using datetime::Formatting;
using datetime::ValueType;

[[nodiscard]] ValueType value_type(int32_t datatype) {
  switch (datatype) {
    case TVX_TYPE_DATETIME:
      return ValueType::kDatetime;
    case TVX_TYPE_DATE4:
      return ValueType::kDate4;
    case TVX_TYPE_DATEA:
      return ValueType::kDatea;
    case TVX_TYPE_TIMEA:
      return ValueType::kTimea;
    case TVX_TYPE_BIGDATETIME:
      return ValueType::kBigdatetime;
    default:
      return ValueType::kBigtime;
  }
}

// A code that no form has is written as code 0, and a locale has names of months: in this layer
// there always is a text.
[[nodiscard]] DateText text_of(const Call& call) {
  const auto& settings = locale::date_settings(call.context, call.destination_format);
  return {value_type(call.source_format->datatype), call.source, writing_code(settings),
          settings.short_months};
}

// Only the bare routines of the big types refuse to do without names.
[[nodiscard]] DateText text_of(const BareCall& call, ValueType type) {
  const bool is_big = type == ValueType::kBigdatetime || type == ValueType::kBigtime;
  const char* const* const given = call.context->months;
  return {type, call.source->data, call.context->date_format,
          given == nullptr && !is_big ? datetime::kShortMonths : given};
}

[[nodiscard]] constexpr int32_t result_code(Formatting status) {
  switch (status) {
    case Formatting::kDone:
      return CS_SUCCEED;
    case Formatting::kRefused:
      return CS_CONV_BADSTYLE;
    case Formatting::kNoNames:
      return CS_CONV_SYNTAX;
  }
  return CS_FAIL;
}

// Writes the text into the destination and gives the result so far.
int32_t deliver_bare(const DateText& text, comnb_value& destination) {
  destination.length = text.length();
  if (text.status() != Formatting::kDone) return result_code(text.status());
  destination.length =
      text.write_within(static_cast<char*>(destination.data), destination.maxlength);
  return destination.length == text.length() ? CS_SUCCEED : CS_CONV_TRUNCATED;
}

}  // namespace

int32_t deliver_date_char(const Call& call) {
  const int32_t capacity = destination_capacity(call);
  const DateText text = text_of(call);
  *call.output_length = text.write_within(static_cast<char*>(call.destination), capacity);
  const int32_t code =
      complete_text(*call.destination_format, text.length(), call.destination, *call.output_length);
  return text.length() > int64_t{3} * capacity ? CS_CONV_TRUNCATED : code;
}

int32_t deliver_date_varchar(const Call& call) {
  static_assert(datetime::kMaxDateText <= kVarDataSize);
  const DateText text = text_of(call);
  auto* const record = static_cast<char*>(call.destination);
  base::store(record, static_cast<uint16_t>(text.length()));
  text.write(record + sizeof(uint16_t));
  *call.output_length = kVarRecordSize;
  return CS_SUCCEED;
}

int32_t deliver_bare_date_char(const BareCall& call, ValueType type) {
  const DateText text = text_of(call, type);
  const int32_t code = deliver_bare(text, *call.destination);
  if (code != CS_SUCCEED) return code;
  return complete_bare_text(*call.context, text.length(), *call.destination);
}

int32_t deliver_bare_date_varchar(const BareCall& call, ValueType type) {
  return deliver_bare(text_of(call, type), *call.destination);
}

int32_t writing_code(const locale::DateSettings& settings) {
  const int32_t code = settings.format_code;
  return datetime::find_layout(datetime::FormOf::kMoment, code) != nullptr ? code : 0;
}

}  // namespace tvx::convert
