// The built-in date settings.
#include "locale/date_settings.hpp"

#include "datetime/date_order.hpp"
#include "datetime/names.hpp"

namespace tvx::locale {

constexpr DateSettings builtin_date_settings{.months = datetime::kMonths,
                                             .short_months = datetime::kShortMonths,
                                             .days = datetime::kShortWeekdays,
                                             .first_day = 7,
                                             .order_text = "mdy",
                                             .order = datetime::kMonthDayYear,
                                             .format_code = 0,
                                             .format_code_is_set = false,
                                             .twelve_hour = true};

constexpr DateSettings date_settings_without_context = [] {
  DateSettings settings = builtin_date_settings;
  settings.format_code = 1;
  return settings;
}();

}  // namespace tvx::locale
