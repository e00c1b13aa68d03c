// Values broken into their parts and rebuilt from them.
#pragma once

#include <cstdint>

#include "datetime/calendar.hpp"
#include "tvxcomn/dates.h"

namespace tvx::datetime {

// ---- Cracking ----------------------------------------------------------------------------------

// Fills year, month, day, day_of_year and weekday.
void crack_day(int32_t day_number, comn_dateparts& parts);

// Fills hour, minute, second, millisecond, fraction (0) and fraction_units (300). Only the low 25
// bits of the ticks count.
void crack_ticks(uint32_t ticks, comn_dateparts& parts);

// Fills the date of a bigdatetime.
void crack_big_date(uint64_t bigdatetime, comn_dateparts& parts);

// Fills hour, minute, second, millisecond (0), fraction and fraction_units (1000000) of a
// bigdatetime or bigtime.
void crack_big_time(uint64_t microseconds, comn_dateparts& parts);

// ---- Rebuilding --------------------------------------------------------------------------------

// The first part at fault, in the order in which they are checked; its number is part of the
// interface of the parser.
enum class [[nodiscard]] Fault : int32_t{
    kNone = 0, kYear = 1, kMonth = 2, kDay = 3, kHour = 4, kMinute = 5, kSecond = 6, kFraction = 7,
};

// Day number from year, month and day.
Fault build_day(const comn_dateparts& parts, int32_t& day_number);

// Microseconds of a bigdatetime at midnight of the date.
Fault build_big_date(const comn_dateparts& parts, uint64_t& bigdatetime);

// Ticks since midnight. The fraction counts when its units are 1000000, else the milliseconds; they
// are rounded, except that 999 never reach the next second.
Fault build_ticks(const comn_dateparts& parts, int32_t& ticks);

// Microseconds since midnight.
Fault build_big_time(const comn_dateparts& parts, uint64_t& microseconds);

// ---- Small rules shared by conversions, parser and arithmetic ----------------------------------

// Ticks of a count of milliseconds, rounded half away from zero.
[[nodiscard]] constexpr int32_t ticks_of_milliseconds(int32_t milliseconds) {
  return (milliseconds * 3 + (milliseconds < 0 ? -5 : 5)) / 10;
}

}  // namespace tvx::datetime
