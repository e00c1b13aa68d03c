// Exported functions of dateparse.h.
#include "tvxcomn/dateparse.h"

#include <algorithm>

#include "api/dateparse_served.hpp"
#include "api/exports.hpp"
#include "locale/date_settings.hpp"

using namespace tvx::convert;
namespace dt = tvx::datetime;
namespace rt = tvx::runtime;
using tvx::locale::date_settings;

// ---- Conversions -------------------------------------------------------------------------------

#define FROM_TEXT(T, D) \
  TVX_EXPORT_CONVERSION(comn_##T##to##D, text_to_date<type::text_##T, type::D>)

TVX_DATES_FROM_TEXT(FROM_TEXT, char)
TVX_DATES_FROM_TEXT(FROM_TEXT, varchar)

TVX_EXPORT_BARE(comnb_chartodatetime, bare_text_to_date<type::datetime>)
TVX_EXPORT_BARE(comnb_chartodate4, bare_text_to_date<type::date4>)
TVX_EXPORT_BARE(comnb_chartodatea, bare_text_to_date<type::datea>)
TVX_EXPORT_BARE(comnb_chartotimea, bare_text_to_date<type::timea>)
TVX_EXPORT_BARE(comnb_chartobigdatetime, bare_text_to_date<type::bigdatetime>)
TVX_EXPORT_BARE(comnb_chartobigtime, bare_text_to_date<type::bigtime>)
TVX_EXPORT_BARE(comnb_varchartodatetime, bare_text_to_date<type::datetime>)
TVX_EXPORT_BARE(comnb_varchartodate4, bare_text_to_date<type::date4>)

// ---- Parsers -----------------------------------------------------------------------------------

namespace {

// The text of a parser, after its arguments are checked under the line of the exported function. An
// empty text may be null.
std::string_view checked_text(const char* text, int32_t length, int32_t order, const void* value,
                              int32_t line = __builtin_LINE()) {
  if (length > 0) rt::require_pointer(text, __FILE__, line);
  rt::require_pointer(value, __FILE__, line);
  rt::require(order >= 1 && order <= dt::kDateOrders, __FILE__, line);
  return {text, static_cast<size_t>(std::max(length, 0))};
}

// Calls a reader that tells of lost digits.
template <class Value>
int32_t parse(dt::ReadStatus (*read)(std::string_view, const dt::ReadingRules&, Value&, bool&),
              std::string_view text, const dt::ReadingRules& rules, Value* value,
              int32_t* lost_digits, int32_t line = __builtin_LINE()) {
  rt::require_pointer(lost_digits, __FILE__, line);
  bool lost = false;
  const dt::ReadStatus status = read(text, rules, *value, lost);
  *lost_digits = lost ? 1 : 0;
  return static_cast<int32_t>(status);
}

}  // namespace

extern "C" {

int32_t com__datefromchar_mb(const char* text, int32_t length, int32_t format_code, int32_t order,
                             const char* const* months, const char* const* short_months,
                             const com_charattr* attributes, comn_datetime* value,
                             int32_t* lost_digits) {
  return parse(dt::read_datetime, checked_text(text, length, order, value),
               {format_code, order, {months, short_months}, attributes}, value, lost_digits);
}

int32_t com__timefromchar_mb(const char* text, int32_t length, int32_t format_code, int32_t order,
                             const char* const* months, const char* const* short_months,
                             const com_charattr* attributes, comn_datetime* value) {
  const auto checked = checked_text(text, length, order, value);
  return static_cast<int32_t>(dt::read_time_only(
      checked, {format_code, order, {months, short_months}, attributes}, *value));
}

int32_t com__dateafromchar_mb(const char* text, int32_t length, int32_t format_code, int32_t order,
                              const char* const* months, const char* const* short_months,
                              const com_charattr* attributes, int32_t* value) {
  const auto checked = checked_text(text, length, order, value);
  return static_cast<int32_t>(
      dt::read_date(checked, {format_code, order, {months, short_months}, attributes}, *value));
}

int32_t com__timeafromchar_mb(const char* text, int32_t length, int32_t format_code, int32_t order,
                              const char* const* months, const char* const* short_months,
                              const com_charattr* attributes, int32_t* value,
                              int32_t* lost_digits) {
  return parse(dt::read_time, checked_text(text, length, order, value),
               {format_code, order, {months, short_months}, attributes}, value, lost_digits);
}

// ---- What a locale says of dates ---------------------------------------------------------------

const char* const* com_intl_months(comn_context* context, const comn_datafmt* format) {
  return date_settings(context, format).months;
}

const char* const* com_intl_shortmonths(comn_context* context, const comn_datafmt* format) {
  return date_settings(context, format).short_months;
}

const char* const* com_intl_days(comn_context* context, const comn_datafmt* format) {
  return date_settings(context, format).days;
}

int32_t com_intl_firstday(comn_context* context, const comn_datafmt* format) {
  return date_settings(context, format).first_day;
}

const char* com_intl_dateorder(comn_context* context, const comn_datafmt* format) {
  return date_settings(context, format).order_text;
}

int32_t com_intl_dateorder_id(comn_context* context, const comn_datafmt* format) {
  return date_settings(context, format).order;
}

int32_t com_intl_is12hour(comn_context* context, const comn_datafmt* format) {
  return date_settings(context, format).twelve_hour ? 1 : 0;
}

}  // extern "C"
