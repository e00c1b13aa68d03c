// Counts of date parts added to values, and counted between them. By years and months the calendar
// moves, by all other parts a fixed length of time.
#pragma once

#include "datetime/parts.hpp"

namespace tvx::datetime {

// ---- Addition ----------------------------------------------------------------------------------
//
// Add an amount of a part to a value in place, if they can: nothing changes where false is
// returned. A day that the month reached does not have becomes its last one. ISO years, days of any
// name and weeks of either kind are years, days and weeks. The value has such a part.

// Results lie in the years 1 to 9999. Milliseconds are rounded to ticks. A time of day of 24 hours
// or more does not move.
[[nodiscard]] bool add(int32_t part, int32_t amount, comn_datetime& value);

// Which of the two types a count of microseconds is.
enum class BigType { kDatetime, kTime };

// A time of day stays within its day by fixed lengths, and is in year 0 for the calendar.
[[nodiscard]] bool add(int32_t part, int32_t amount, uint64_t& value, BigType type);

// ---- Difference --------------------------------------------------------------------------------
//
// Count the units of a part from start to end: years, quarters, months and ISO years by their
// numbers, weeks by the Sundays crossed, all others elapsed and truncated towards zero; weekdays
// are elapsed weeks. The result is left alone when there is no such part.

// False, and nothing stored, when the count does not fit; and for the parts below the hour when the
// days between the values alone come too close to that: see the limits in the code.
[[nodiscard]] bool difference(int32_t part, const comn_datetime& start, const comn_datetime& end,
                              int32_t& result);

// Of two values of one big type.
void difference(int32_t part, uint64_t start, uint64_t end, int64_t& result);

}  // namespace tvx::datetime
