// The proleptic Gregorian calendar over day numbers, and the units and ranges of the six date and
// time types. Day number 0 is 1900-01-01, a Monday. Everything is closed-form: no loop over years
// or months. Day numbers outside the range of the types are dates of years below 1 and above 9999,
// which the calendar counts on through year 0.
#pragma once

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

// C. Neri, L. Schneider, "Euclidean affine functions and their application to calendar algorithms",
// Software: Practice and Experience 53 (2023): years begin on 1 March, so that the leap day is
// their last, and each division of a day count by an average length becomes an exact multiplication
// and shift.

inline constexpr int32_t kMarchOfYear0 = -693'901;  // 0000-03-01

// Every fourth year, but of those that 100 divides only those that 400 divides. Among the multiples
// of 25 that is what 16 divides.
[[nodiscard]] constexpr bool is_leap(int32_t year) {
  return (year & (year % 25 == 0 ? 15 : 3)) == 0;
}

// Of a month 0 to 11. But for February the lengths alternate between 31 and 30, and start anew with
// August.
[[nodiscard]] constexpr int32_t month_length(int32_t year, int32_t month) {
  constexpr int32_t kFebruary = 1;
  if (month == kFebruary) return is_leap(year) ? 29 : 28;
  const int32_t from_one = month + 1;
  return 30 + ((from_one ^ from_one >> 3) & 1);
}

// Day number of a date of the years 1 to 9999, month 0 to 11: the inverse of civil_date.
[[nodiscard]] constexpr int32_t day_number(int32_t year, int32_t month, int32_t day) {
  const bool next_year = month < 2;
  const int32_t y = next_year ? year - 1 : year;
  const int32_t from_march = next_year ? month + 10 : month - 2;
  const int32_t century = y / 100;
  const int32_t days_before_year = 1461 * y / 4 - century + century / 4;
  const int32_t days_before_month = (979 * from_march + 15) / 32;
  return kMarchOfYear0 + days_before_year + days_before_month + day - 1;
}

// The date of any day number. The first division is one of 64 bits and whole eras are added before
// it, so that all 2^32 day numbers have a date.
[[nodiscard]] constexpr Date civil_date(int32_t day_number) {
  constexpr int32_t kEras = 14'700;        // of 400 years; more than 2^31 days
  constexpr int64_t kDaysOfEra = 146'097;  // and the quarters of a day of a century, on average
  const auto days = static_cast<uint64_t>(int64_t{day_number} - kMarchOfYear0 + kEras * kDaysOfEra);

  const uint64_t quarters = 4 * days + 3;
  const auto century = static_cast<uint32_t>(quarters / kDaysOfEra);
  const auto rest_of_century = static_cast<uint32_t>(quarters % kDaysOfEra) | 3;

  constexpr uint32_t kYearFactor = 2'939'745;  // 2^32 / 1461, rounded up: 1461 days are 4 years
  const uint64_t years = uint64_t{kYearFactor} * rest_of_century;
  const auto year_of_century = static_cast<uint32_t>(years >> 32);
  const uint32_t day_of_year = static_cast<uint32_t>(years) / kYearFactor / 4;  // from 1 March, 0

  // 2^16 / 2141 days are an average month of March to July and of August to December; the months
  // come out counted from January, 3 to 14.
  const uint32_t months = 2'141 * day_of_year + 197'913;
  const uint32_t month = months >> 16;
  const uint32_t day = (months & 0xFFFF) / 2'141;

  constexpr uint32_t kJanuary = 306;  // its first day, from 1 March
  const bool next_year = day_of_year >= kJanuary;
  const bool leap = (year_of_century != 0 ? year_of_century : century) % 4 == 0;
  constexpr int32_t kJanuaryToMarch = 31 + 28;
  const auto from_march = static_cast<int32_t>(day_of_year);
  return {static_cast<int32_t>(100 * century + year_of_century) - 400 * kEras + (next_year ? 1 : 0),
          static_cast<int32_t>(next_year ? month - 13 : month - 1), static_cast<int32_t>(day) + 1,
          next_year ? from_march - static_cast<int32_t>(kJanuary) + 1
                    : from_march + kJanuaryToMarch + (leap ? 1 : 0) + 1};
}

// 0 (Sunday) to 6, of any day number.
[[nodiscard]] constexpr int32_t weekday(int32_t day_number) {
  const int64_t from_sunday = (int64_t{day_number} + 1) % 7;
  return static_cast<int32_t>(from_sunday < 0 ? from_sunday + 7 : from_sunday);
}

// The place in weeks that begin on day `to` of the day that has `position` in weeks that begin on
// day `from`. Days are numbered 1 to 7, places 0 to 6. Sums below zero, which others give, leave
// remainders below zero.
[[nodiscard]] constexpr int32_t renumbered_weekday(int32_t position, int32_t from, int32_t to) {
  const auto modulo_week = [](int64_t days) { return static_cast<int32_t>(days) % 7; };
  return modulo_week(int64_t{modulo_week(int64_t{from} + position - 1)} + 8 - to);
}

}  // namespace tvx::datetime
