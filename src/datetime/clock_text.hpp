// A point of local time as text of two-digit numbers.
#pragma once

#include <cstdint>

#include "os/local_time.hpp"

namespace tvx::datetime {

enum class Clock { kTwelveHour, kTwentyFourHour };

// Bytes of a text with its terminator: "01/02/03 14:05:09", "01/02/03 02:05:09 PM".
[[nodiscard]] constexpr int32_t clock_text_size(Clock clock) {
  return clock == Clock::kTwelveHour ? 21 : 18;
}

// Writes clock_text_size(clock) bytes. The date order is 1 to 6, and any other number is 1. On the
// 12-hour clock the hour after midnight is 00.
void write_clock_text(char* out, const os::LocalTime& time, int32_t date_order, Clock clock);

}  // namespace tvx::datetime
