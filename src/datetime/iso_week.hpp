// The week date of ISO 8601: weeks begin on Monday, and a week belongs to the year that holds its
// Thursday.
#pragma once

#include "datetime/calendar.hpp"

namespace tvx::datetime {

struct IsoWeek {
  int32_t year;
  int32_t week;  // 1 to 53
};

// 1 (Monday) to 7 (Sunday), of a weekday that is 0 on Sunday.
[[nodiscard]] constexpr int32_t iso_weekday(int32_t weekday) {
  return weekday == 0 ? 7 : weekday;
}

// Of a day given by its year, day of the year and weekday (0 is Sunday).
[[nodiscard]] constexpr IsoWeek iso_week(int32_t year, int32_t day_of_year, int32_t weekday) {
  const auto year_length = [](int32_t of) { return is_leap(of) ? 366 : 365; };
  int32_t thursday = day_of_year - 1 + 4 - iso_weekday(weekday);  // from 1 January, 0
  if (thursday < 0) {
    thursday += year_length(--year);
  } else if (thursday >= year_length(year)) {
    thursday -= year_length(year++);
  }
  return {year, thursday / 7 + 1};
}

}  // namespace tvx::datetime
