// Values broken into their parts and rebuilt from them.
#pragma once

#include <cstdint>

#include "datetime/calendar.hpp"
#include "tvxcomn/dates.h"

namespace tvx::datetime {

// ---- Cracking ----------------------------------------------------------------------------------
//
// Each fills the parts it names and leaves the others as they were. Every value of the source's
// machine type has parts, those outside its range parts beyond theirs.

// Fills year, month, day, day_of_year and weekday.
constexpr void crack_day(int32_t day_number, comn_dateparts& parts) {
  const Date date = civil_date(day_number);
  parts.year = date.year;
  parts.month = date.month;
  parts.day = date.day;
  parts.day_of_year = date.day_of_year;
  parts.weekday = weekday(day_number);
}

// Bits of the time word of a datetime that hold ticks.
inline constexpr uint32_t kTickBits = (1U << 25) - 1;

// Fills hour, minute, second, millisecond, fraction (0) and fraction_units (300). Only the low 25
// bits of the ticks count.
constexpr void crack_ticks(uint32_t ticks, comn_dateparts& parts) {
  const auto counted = static_cast<int32_t>(ticks & kTickBits);
  const int32_t of_second = counted % kTicksPerSecond;
  const int32_t seconds = counted / kTicksPerSecond;
  parts.hour = seconds / 3600;
  parts.minute = seconds / 60 % 60;
  parts.second = seconds % 60;
  parts.millisecond = of_second * 10 / 3;
  parts.fraction = 0;
  parts.fraction_units = kTicksPerSecond;
}

// The day number of a bigdatetime; fits 32 bits whatever the value.
[[nodiscard]] constexpr int32_t day_of_big(uint64_t bigdatetime) {
  constexpr int32_t kDaysOfYear0 = 366;
  return static_cast<int32_t>(bigdatetime / kMicrosecondsPerDay) - kDaysOfYear0 - kDaysBefore1900;
}

// Fills the date of a bigdatetime.
constexpr void crack_big_date(uint64_t bigdatetime, comn_dateparts& parts) {
  crack_day(day_of_big(bigdatetime), parts);
}

// Fills hour, minute, second, millisecond (0), fraction and fraction_units (1000000) of a
// bigdatetime or bigtime.
constexpr void crack_big_time(uint64_t microseconds, comn_dateparts& parts) {
  const auto of_day = static_cast<int64_t>(microseconds % kMicrosecondsPerDay);
  const auto seconds = static_cast<int32_t>(of_day / kMicrosecondsPerSecond);
  parts.hour = seconds / 3600;
  parts.minute = seconds / 60 % 60;
  parts.second = seconds % 60;
  parts.millisecond = 0;
  parts.fraction = static_cast<int32_t>(of_day % kMicrosecondsPerSecond);
  parts.fraction_units = static_cast<int32_t>(kMicrosecondsPerSecond);
}

// ---- Small rules shared by conversions, parser and arithmetic ----------------------------------

// Ticks of a count of milliseconds, rounded half away from zero.
[[nodiscard]] constexpr int32_t ticks_of_milliseconds(int32_t milliseconds) {
  return (milliseconds * 3 + (milliseconds < 0 ? -5 : 5)) / 10;
}

// Ticks of the milliseconds of a second. Its last millisecond stays within it.
[[nodiscard]] constexpr int32_t ticks_within_second(int32_t milliseconds) {
  return milliseconds == 999 ? kTicksPerSecond - 1 : ticks_of_milliseconds(milliseconds);
}

// ---- Rebuilding --------------------------------------------------------------------------------

// The first part at fault, in the order in which they are checked; its number is part of the
// interface of the parser.
enum class [[nodiscard]] Fault : int32_t{
    kNone = 0, kYear = 1, kMonth = 2, kDay = 3, kHour = 4, kMinute = 5, kSecond = 6, kFraction = 7,
};

// Day number from year, month and day.
constexpr Fault build_day(const comn_dateparts& parts, int32_t& day) {
  if (parts.year < kFirstYear || parts.year > kLastYear) return Fault::kYear;
  if (parts.month < 0 || parts.month > 11) return Fault::kMonth;
  if (parts.day < 1 || parts.day > month_length(parts.year, parts.month)) return Fault::kDay;
  day = day_number(parts.year, parts.month, parts.day);
  return Fault::kNone;
}

// Microseconds of a bigdatetime at midnight of a day number of the years 1 to 9999.
[[nodiscard]] constexpr uint64_t big_of_day(int32_t day) {
  return kFirstBigdatetime + static_cast<uint64_t>(day + kDaysBefore1900) * kMicrosecondsPerDay;
}

// Whole seconds since midnight.
constexpr Fault build_seconds(const comn_dateparts& parts, int32_t& seconds) {
  const auto within = [](int32_t value, int32_t last) { return value >= 0 && value <= last; };
  if (!within(parts.hour, 23)) return Fault::kHour;
  if (!within(parts.minute, 59)) return Fault::kMinute;
  if (!within(parts.second, 59)) return Fault::kSecond;
  seconds = (parts.hour * 60 + parts.minute) * 60 + parts.second;
  return Fault::kNone;
}

// Microseconds within the second: the fraction when its units are such, else the milliseconds.
[[nodiscard]] constexpr int64_t microseconds_of_fraction(const comn_dateparts& parts) {
  return parts.fraction_units == kMicrosecondsPerSecond
             ? int64_t{parts.fraction}
             : parts.millisecond * kMicrosecondsPerMillisecond;
}

// Ticks since midnight. The fraction counts when its units are 1000000, else the milliseconds; they
// are rounded, except that 999 never reach the next second.
constexpr Fault build_ticks(const comn_dateparts& parts, int32_t& ticks) {
  int32_t seconds = 0;
  const Fault fault = build_seconds(parts, seconds);
  if (fault != Fault::kNone) return fault;
  const int64_t milliseconds = microseconds_of_fraction(parts) / kMicrosecondsPerMillisecond;
  if (milliseconds < 0 || milliseconds > 999) return Fault::kFraction;
  ticks = seconds * kTicksPerSecond + ticks_within_second(static_cast<int32_t>(milliseconds));
  return Fault::kNone;
}

// Microseconds since midnight.
constexpr Fault build_big_time(const comn_dateparts& parts, uint64_t& microseconds) {
  int32_t seconds = 0;
  const Fault fault = build_seconds(parts, seconds);
  if (fault != Fault::kNone) return fault;
  const int64_t fraction = microseconds_of_fraction(parts);
  if (fraction < 0 || fraction >= kMicrosecondsPerSecond) return Fault::kFraction;
  microseconds = static_cast<uint64_t>(seconds * kMicrosecondsPerSecond + fraction);
  return Fault::kNone;
}

}  // namespace tvx::datetime
