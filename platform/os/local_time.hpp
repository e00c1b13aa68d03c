// The clock on the wall where the process runs.
#pragma once

#include <cstdint>
#include <optional>

namespace tvx::os {

struct LocalTime {
  int32_t year;
  int32_t month;        // 0 to 11
  int32_t day;          // 1 to 31
  int32_t day_of_year;  // 1 to 366
  int32_t weekday;      // 0 (Sunday) to 6
  int32_t hour;
  int32_t minute;
  int32_t second;  // up to 60 where the time zone has leap seconds
};

// Nothing when the system cannot tell.
[[nodiscard]] std::optional<LocalTime> local_time();

}  // namespace tvx::os
