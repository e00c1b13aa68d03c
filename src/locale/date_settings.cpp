// The built-in date settings.
#include "locale/date_settings.hpp"

#include "datetime/names.hpp"

namespace tvx::locale {

namespace {

constexpr DateSettings kBuiltin{.months = datetime::kMonths,
                                .short_months = datetime::kShortMonths,
                                .days = datetime::kShortWeekdays,
                                .first_day = 7,
                                .order_text = "mdy",
                                .order = 1,
                                .format_code = 0,
                                .format_code_is_set = false,
                                .twelve_hour = true};

// Without so much as a context the interface names the code 1.
constexpr DateSettings kWithoutContext = [] {
  DateSettings settings = kBuiltin;
  settings.format_code = 1;
  return settings;
}();

}  // namespace

const DateSettings& date_settings(const comn_context* context, const comn_locale* handle) {
  return context == nullptr && handle == nullptr ? kWithoutContext : kBuiltin;
}

}  // namespace tvx::locale
