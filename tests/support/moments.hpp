// Values of the date and time types, made with the standard library's calendar.
#pragma once

#include <chrono>
#include <cstdint>

#include "tvxcomn/dates.h"

namespace tvx::test {

// Days from 1900-01-01.
inline int32_t day(int year, unsigned month, unsigned day) {
  using namespace std::chrono;
  const auto date = std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day};
  return static_cast<int32_t>((sys_days{date} - sys_days{1900y / 1 / 1}).count());
}

inline std::chrono::sys_days sys_day(int32_t day) {
  using namespace std::chrono;
  return sys_days{1900y / 1 / 1} + days{day};
}

constexpr uint32_t ticks(uint32_t hour, uint32_t minute, uint32_t second = 0, uint32_t ticks = 0) {
  return ((hour * 60 + minute) * 60 + second) * 300 + ticks;
}

constexpr uint64_t micros(uint64_t hour, uint64_t minute, uint64_t second = 0, uint64_t us = 0) {
  return ((hour * 60 + minute) * 60 + second) * 1'000'000 + us;
}

constexpr uint64_t kMicrosPerDay = micros(24, 0);
constexpr uint32_t kTicksOfDay = ticks(24, 0);

// A bigdatetime. The days of a year 0 of 366 days come before 0001-01-01.
inline uint64_t big(int32_t day_number, uint64_t time = 0) {
  return static_cast<uint64_t>(day_number - day(1, 1, 1) + 366) * kMicrosPerDay + time;
}

}  // namespace tvx::test
