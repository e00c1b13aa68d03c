// The fifteen date parts, COM_PART_YEAR to COM_PART_MICROSECOND: their values and their texts.
#pragma once

#include "datetime/parts.hpp"

namespace tvx::datetime {

[[nodiscard]] constexpr bool is_part(int32_t part) {
  return part >= COM_PART_YEAR && part <= COM_PART_MICROSECOND;
}

// Datetimes, dates and times have no microseconds.
[[nodiscard]] constexpr bool is_datetime_part(int32_t part) {
  return is_part(part) && part != COM_PART_MICROSECOND;
}

// The value of a part of a record into which both date and time were cracked; 0 when there is no
// such part. `first_day` is the first day of the week, 1 (Monday) to 7.
[[nodiscard]] int32_t part_value(int32_t part, const comn_dateparts& parts, int32_t first_day);

// Writes the text of a part, without a terminator, and returns its length: for the month and the
// weekdays up to 30 characters of a name (nothing without names; those of the weekdays begin on
// Sunday), for the others a number of up to 4 characters, of microseconds 6. A wider number is "*".
// Nothing when there is no such part.
int32_t write_part(int32_t part, const comn_dateparts& parts, char* out, const char* const* months,
                   const char* const* weekdays);

}  // namespace tvx::datetime
