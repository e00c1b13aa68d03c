// The proleptic Gregorian calendar over day numbers, and the units and ranges of the six date and
// time types. Day number 0 is 1900-01-01, a Monday. Everything is closed-form: no loop over years
// or months.
#pragma once

#include <array>
#include <cstdint>

namespace tvx::datetime {

// ---- Units and ranges --------------------------------------------------------------------------

inline constexpr int32_t kTicksPerSecond = 300;
inline constexpr int32_t kTicksPerMinute = 60 * kTicksPerSecond;
inline constexpr int32_t kTicksPerHour = 60 * kTicksPerMinute;
inline constexpr int32_t kTicksPerDay = 24 * kTicksPerHour;

inline constexpr int64_t kMicrosecondsPerMillisecond = 1000;
inline constexpr int64_t kMicrosecondsPerSecond = 1'000'000;
inline constexpr int64_t kMicrosecondsPerMinute = 60 * kMicrosecondsPerSecond;
inline constexpr int64_t kMicrosecondsPerHour = 60 * kMicrosecondsPerMinute;
inline constexpr int64_t kMicrosecondsPerDay = 24 * kMicrosecondsPerHour;

inline constexpr int32_t kFirstYear = 1;
inline constexpr int32_t kLastYear = 9999;
inline constexpr int32_t kDaysBefore1900 = 693'595;     // since 0001-01-01
inline constexpr int32_t kFirstDay = -kDaysBefore1900;  // 0001-01-01
inline constexpr int32_t kLastDay = 2'958'463;          // 9999-12-31
inline constexpr int32_t kFirstDatetimeDay = -53'690;   // 1753-01-01
inline constexpr int32_t kLastDatetime4Day = 65'535;    // 2079-06-06

// The big types count microseconds from the start of a year 0 of 366 days.
inline constexpr int64_t kMicrosecondsOfYear0 = 366 * kMicrosecondsPerDay;
inline constexpr uint64_t kFirstBigdatetime = kMicrosecondsOfYear0;
inline constexpr uint64_t kEndOfBigdatetime =
    kMicrosecondsOfYear0 + (int64_t{kDaysBefore1900} + kLastDay + 1) * kMicrosecondsPerDay;
static_assert(kFirstBigdatetime == 31'622'400'000'000);
static_assert(kEndOfBigdatetime == 315'569'520'000'000'000);

// ---- The calendar ------------------------------------------------------------------------------

struct Date {
  int32_t year;
  int32_t month;        // 0 to 11
  int32_t day;          // 1 to 31
  int32_t day_of_year;  // 1 to 366
};

[[nodiscard]] constexpr bool is_leap(int32_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Days of the year before each month; the last entry is the year's length.
inline constexpr std::array<std::array<int16_t, 13>, 2> kDaysBeforeMonth{
    {{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
     {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366}}};

// Of a month 0 to 11.
[[nodiscard]] constexpr int32_t month_length(int32_t year, int32_t month) {
  const auto& before = kDaysBeforeMonth[is_leap(year) ? 1 : 0];
  const auto m = static_cast<size_t>(month);
  return before[m + 1] - before[m];
}

// Day number of a date of the years 1 to 9999, month 0 to 11.
[[nodiscard]] constexpr int32_t day_number(int32_t year, int32_t month, int32_t day) {
  const int32_t y = year - 1;
  const int32_t leap_days = y / 4 - y / 100 + y / 400;
  const int32_t before_month = kDaysBeforeMonth[is_leap(year) ? 1 : 0][static_cast<size_t>(month)];
  return y * 365 + leap_days + before_month + day - kDaysBefore1900 - 1;
}

// The date of a day number from kFirstDay to kLastDay; of any other the years go on beyond.
[[nodiscard]] Date civil_date(int32_t day_number);

// 0 (Sunday) to 6, of any day number.
[[nodiscard]] constexpr int32_t weekday(int32_t day_number) {
  const int64_t from_sunday = (int64_t{day_number} + 1) % 7;
  return static_cast<int32_t>(from_sunday < 0 ? from_sunday + 7 : from_sunday);
}

}  // namespace tvx::datetime
