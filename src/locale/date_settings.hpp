// What a locale says of dates: names, order, date format code, clock, first day of the week. The
// parser, the formatter and the queries of the interface take them from here and from nowhere else.
#pragma once

#include <cstdint>

#include "locale/handle.hpp"
#include "tvxcomn/context.h"

namespace tvx::locale {

struct DateSettings {
  const char* const* months;        // 12, January first
  const char* const* short_months;  // 12
  const char* const* days;          // 7
  int32_t first_day;                // of the week, 1 (Monday) to 7 (Sunday)
  const char* order_text;           // three letters
  int32_t order;                    // 1 to 6: mdy, dmy, ymd, ydm, myd, dym
  int32_t format_code;
  bool format_code_is_set;  // by the user; the parser heeds no other
  bool twelve_hour;

  // The date format code under which texts are read.
  [[nodiscard]] int32_t reading_code() const { return format_code_is_set ? format_code : 0; }
};

// The built-in ones. Without so much as a context the interface names the date format code 1.
extern const DateSettings builtin_date_settings;
extern const DateSettings date_settings_without_context;

// Those of a handle, else of the context's default handle, else the built-in ones. All may be null.
// Until localisation is built no handle has settings of its own.
[[nodiscard]] inline const DateSettings& date_settings(const comn_context* context,
                                                       const comn_locale* handle) {
  return context == nullptr && handle == nullptr ? date_settings_without_context
                                                 : builtin_date_settings;
}

// Those of a value. The format may be null.
[[nodiscard]] inline const DateSettings& date_settings(const comn_context* context,
                                                       const comn_datafmt* format) {
  return date_settings(context, format != nullptr ? format->locale : nullptr);
}

}  // namespace tvx::locale
