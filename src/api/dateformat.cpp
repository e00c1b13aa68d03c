// Exported functions of dateformat.h.
#include "tvxcomn/dateformat.h"

#include <algorithm>

#include "api/exports.hpp"
#include "convert/date_text_write.hpp"
#include "datetime/clock_text.hpp"
#include "datetime/formatter.hpp"
#include "datetime/names.hpp"
#include "locale/date_settings.hpp"

using namespace tvx::convert;
namespace dt = tvx::datetime;
namespace loc = tvx::locale;
namespace rt = tvx::runtime;

using dt::ValueType;

// ---- Conversions -------------------------------------------------------------------------------

#define TO_TEXT(S, name)                                            \
  TVX_EXPORT_CONVERSION(comn_##name##tochar, date_to_char<type::S>) \
  TVX_EXPORT_CONVERSION(comn_##name##tovarchar, date_to_varchar<type::S>)
#define BARE_TO_CHAR(name, type) \
  TVX_EXPORT_BARE(comnb_##name##tochar, bare_date_to_char<ValueType::type>)

TO_TEXT(datetime, date)
TO_TEXT(date4, date4)
TO_TEXT(datea, datea)
TO_TEXT(timea, timea)

BARE_TO_CHAR(date, kDatetime)
BARE_TO_CHAR(date4, kDate4)
BARE_TO_CHAR(datea, kDatea)
BARE_TO_CHAR(timea, kTimea)
BARE_TO_CHAR(bigdatetime, kBigdatetime)
BARE_TO_CHAR(bigtime, kBigtime)
TVX_EXPORT_BARE(comnb_bigdatetimetovarchar, bare_date_to_varchar<ValueType::kBigdatetime>)

// ---- Formatters --------------------------------------------------------------------------------

namespace {

static_assert(COM_FORMAT_REFUSED == static_cast<int32_t>(dt::Formatting::kRefused) &&
              COM_FORMAT_NO_NAMES == static_cast<int32_t>(dt::Formatting::kNoNames));

int32_t format(ValueType type, const void* value, char* buffer, int32_t length, int32_t code,
               const char* const* months, int32_t line = __builtin_LINE()) {
  rt::require_pointers({value, buffer}, __FILE__, line);
  return dt::format_date(type, value, buffer, length, code, months);
}

}  // namespace

#define FORMATTER(name, Value, type)                                                      \
  extern "C" int32_t name(const Value* value, char* buffer, int32_t length, int32_t code, \
                          const char* const* months) {                                    \
    return format(ValueType::type, value, buffer, length, code, months);                  \
  }

FORMATTER(com__datetochar, comn_datetime, kDatetime)
FORMATTER(com__date4tochar, comn_datetime4, kDate4)
FORMATTER(com__dateatochar, int32_t, kDatea)
FORMATTER(com__timeatochar, int32_t, kTimea)
FORMATTER(com__bigdatetimetochar, uint64_t, kBigdatetime)
FORMATTER(com__bigtimetochar, uint64_t, kBigtime)
FORMATTER(com_cvtdatetochar, comn_datetime, kDatetime)
FORMATTER(com_cvtdate4tochar, comn_datetime4, kDate4)

extern "C" {

int32_t com_date2char_ex(const comn_datetime* value, int32_t length, char* buffer,
                         int32_t buffer_length, int32_t code, const char* const* months) {
  if (value == nullptr || length == 0) return 0;
  rt::require(length > 0);
  const char* const* const names = months != nullptr ? months : dt::kShortMonths;
  const int32_t written = format(ValueType::kDatetime, value, buffer, buffer_length, code, names);
  if (written <= 0) return -1;
  std::fill(buffer + written, buffer + std::max(written, buffer_length), ' ');
  return written;
}

int32_t com_date2char(const comn_datetime* value, int32_t length, char* buffer,
                      int32_t buffer_length, const char* const* months) {
  constexpr int32_t with_milliseconds = 9;
  return com_date2char_ex(value, length, buffer, buffer_length, with_milliseconds, months);
}

// ---- Settings of a locale ----------------------------------------------------------------------

int32_t comn_dtloc_format(comn_context* context, comn_locale* locale) {
  return loc::date_settings(context, locale).order;
}

int32_t comn_dtloc_format_fmt(comn_context* context, comn_locale* locale) {
  return loc::date_settings(context, locale).format_code;
}

int32_t comn_intl_get_dtfmt(comn_context* context, comn_locale* locale) {
  return loc::date_settings(context, locale).format_code;
}

int32_t comn_dtloc_is12hour(comn_context* context, comn_locale* locale) {
  return loc::date_settings(context, locale).twelve_hour ? 1 : 0;
}

int32_t comn_get_datetochar_fmt(comn_context* context, const comn_datafmt* destination_format) {
  return writing_code(loc::date_settings(context, destination_format));
}

// ---- Current time ------------------------------------------------------------------------------

int32_t comn_time(int32_t date_order, int32_t twelve_hour, char* buffer, int32_t buffer_length,
                  int32_t* length_out, int32_t* parts_out) {
  const auto now = tvx::os::local_time();
  if (!now.has_value()) return rt::traced(CS_FAIL);
  if (buffer != nullptr) {
    rt::require_pointer(length_out);
    const auto clock = twelve_hour == 1 ? dt::Clock::kTwelveHour : dt::Clock::kTwentyFourHour;
    *length_out = dt::clock_text_size(clock);
    if (buffer_length < *length_out) return rt::traced(CS_FAIL);
    dt::write_clock_text(buffer, *now, date_order, clock);
  }
  if (parts_out != nullptr) {
    const int32_t parts[] = {now->year,    now->month, now->day,    now->day_of_year,
                             now->weekday, now->hour,  now->minute, now->second};
    std::copy(std::begin(parts), std::end(parts), parts_out);
  }
  return rt::traced(CS_SUCCEED);
}

}  // extern "C"
