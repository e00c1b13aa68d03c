// The six date and time types: the ranges of their values, and the values of one type made of those
// of another. A conversion that is not stated here is the copy of a value or leads through
// datetime.
//
// A result that its type does not hold is refused and the destination keeps what it had. Sources
// are checked only where the result depends on it: a datetime and a time come out with the ticks
// that went in, legal or not.
#pragma once

#include <cstdint>

#include "datetime/parts.hpp"

namespace tvx::datetime {

// How a conversion went, as its result code. Truncated: digits below the millisecond were dropped
// from a value that is otherwise delivered.
enum class [[nodiscard]] Status : int32_t{
    kDone = CS_SUCCEED,
    kTruncated = CS_CONV_TRUNCATED,
    kOverflow = CS_CONV_OVERFLOW,
    kUnderflow = CS_CONV_UNDERFLOW,
};

[[nodiscard]] constexpr bool is_delivered(Status status) {
  return status == Status::kDone || status == Status::kTruncated;
}

// ---- Ranges ------------------------------------------------------------------------------------

// Of a datetime only the day is looked at, and only its lower limit.
[[nodiscard]] constexpr bool is_datetime_day(int32_t day) {
  return day >= kFirstDatetimeDay;
}

[[nodiscard]] constexpr bool is_date(int64_t day) {
  return day >= kFirstDay && day <= kLastDay;
}

[[nodiscard]] constexpr bool is_time(int64_t ticks) {
  return ticks >= 0 && ticks < kTicksPerDay;
}

[[nodiscard]] constexpr bool is_bigdatetime(uint64_t value) {
  return value >= kFirstBigdatetime && value < kEndOfBigdatetime;
}

[[nodiscard]] constexpr bool is_bigtime(uint64_t value) {
  return value < kMicrosecondsPerDay;
}

// ---- Units -------------------------------------------------------------------------------------

inline constexpr int32_t kMinutesPerDay = 24 * 60;
inline constexpr int32_t kSecondsPerDay = kMinutesPerDay * 60;
inline constexpr int32_t kMillisecondsPerDay = kSecondsPerDay * 1000;

// Microseconds of ticks, whole milliseconds.
[[nodiscard]] constexpr int64_t microseconds_of_ticks(int32_t ticks) {
  return int64_t{ticks} * 10 / 3 * kMicrosecondsPerMillisecond;
}

// Ticks of a bigtime, rounded over the whole day except at its very end.
[[nodiscard]] constexpr int32_t ticks_of_bigtime(uint64_t bigtime) {
  const auto milliseconds = static_cast<int32_t>(bigtime / kMicrosecondsPerMillisecond);
  return milliseconds == kMillisecondsPerDay - 1 ? kTicksPerDay - 1
                                                 : ticks_of_milliseconds(milliseconds);
}

[[nodiscard]] constexpr Status status_of_dropping(uint64_t microseconds) {
  return microseconds % kMicrosecondsPerMillisecond == 0 ? Status::kDone : Status::kTruncated;
}

// ---- Delivery ----------------------------------------------------------------------------------

constexpr Status deliver_big(bool is_in_range, uint64_t value, uint64_t& destination) {
  if (!is_in_range) return Status::kOverflow;
  destination = value;
  return Status::kDone;
}

// A datetime4 of a day and of minutes that may carry into the next one.
constexpr Status deliver_date4(int32_t day, int32_t minutes, comn_datetime4& date4) {
  if (day < 0 || day > kLastDatetime4Day) return Status::kOverflow;
  const int32_t carried_to = day + minutes / kMinutesPerDay;
  if (carried_to > kLastDatetime4Day) return Status::kOverflow;
  date4.days = static_cast<uint16_t>(carried_to);
  date4.minutes = static_cast<uint16_t>(minutes % kMinutesPerDay);
  return Status::kDone;
}

// ---- From datetime -----------------------------------------------------------------------------

// Half a minute goes to the next one.
constexpr Status datetime_to_date4(const comn_datetime& source, comn_datetime4& date4) {
  const auto ticks = static_cast<int32_t>(source.ticks & kTickBits);
  return deliver_date4(source.days, (ticks + kTicksPerMinute / 2) / kTicksPerMinute, date4);
}

constexpr Status datetime_to_date(const comn_datetime& source, int32_t& day) {
  day = source.days;
  return Status::kDone;
}

constexpr Status datetime_to_time(const comn_datetime& source, int32_t& ticks) {
  ticks = static_cast<int32_t>(source.ticks);
  return Status::kDone;
}

constexpr Status datetime_to_bigtime(const comn_datetime& source, uint64_t& bigtime) {
  const auto ticks = static_cast<int32_t>(source.ticks & kTickBits);
  return deliver_big(is_time(ticks), static_cast<uint64_t>(microseconds_of_ticks(ticks)), bigtime);
}

constexpr Status datetime_to_bigdatetime(const comn_datetime& source, uint64_t& bigdatetime) {
  uint64_t time = 0;
  if (!is_date(source.days) || !is_delivered(datetime_to_bigtime(source, time)))
    return Status::kOverflow;
  bigdatetime = big_of_day(source.days) + time;
  return Status::kDone;
}

// ---- From datetime4 ----------------------------------------------------------------------------

constexpr Status date4_to_datetime(const comn_datetime4& source, comn_datetime& datetime) {
  datetime = {source.days, uint32_t{source.minutes} * kTicksPerMinute};
  return Status::kDone;
}

constexpr Status date4_to_bigdatetime(const comn_datetime4& source, uint64_t& bigdatetime) {
  bigdatetime = big_of_day(source.days) + uint64_t{source.minutes} * kMicrosecondsPerMinute;
  return Status::kDone;
}

constexpr Status date4_to_bigtime(const comn_datetime4& source, uint64_t& bigtime) {
  return deliver_big(source.minutes < kMinutesPerDay,
                     uint64_t{source.minutes} * kMicrosecondsPerMinute, bigtime);
}

// ---- From date and time ------------------------------------------------------------------------

// A day before 1753 leaves day 0 behind.
constexpr Status date_to_datetime(const int32_t& day, comn_datetime& datetime) {
  datetime = {is_datetime_day(day) ? day : 0, 0};
  return is_datetime_day(day) ? Status::kDone : Status::kOverflow;
}

constexpr Status date_to_bigdatetime(const int32_t& day, uint64_t& bigdatetime) {
  if (!is_date(day)) return Status::kOverflow;
  bigdatetime = big_of_day(day);
  return Status::kDone;
}

// On 1900-01-01.
constexpr Status time_to_datetime(const int32_t& ticks, comn_datetime& datetime) {
  datetime = {0, static_cast<uint32_t>(ticks)};
  return Status::kDone;
}

constexpr Status time_to_bigtime(const int32_t& ticks, uint64_t& bigtime) {
  const auto value = static_cast<uint64_t>(microseconds_of_ticks(ticks));
  return deliver_big(is_bigtime(value), value, bigtime);
}

// On 0001-01-01.
constexpr Status time_to_bigdatetime(const int32_t& ticks, uint64_t& bigdatetime) {
  const auto value = kFirstBigdatetime + static_cast<uint64_t>(microseconds_of_ticks(ticks));
  return deliver_big(is_bigdatetime(value), value, bigdatetime);
}

// ---- From the big types ------------------------------------------------------------------------

// The ticks are those of the milliseconds within the second.
constexpr Status bigdatetime_to_datetime(const uint64_t& source, comn_datetime& datetime) {
  if (!is_bigdatetime(source)) return Status::kOverflow;
  const int32_t day = day_of_big(source);
  if (!is_datetime_day(day)) return Status::kUnderflow;
  const uint64_t time = source % kMicrosecondsPerDay;
  const auto seconds = static_cast<int32_t>(time / kMicrosecondsPerSecond);
  const uint64_t fraction = time % kMicrosecondsPerSecond;
  const auto milliseconds = static_cast<int32_t>(fraction / kMicrosecondsPerMillisecond);
  const int32_t ticks = seconds * kTicksPerSecond + ticks_within_second(milliseconds);
  datetime = {day, static_cast<uint32_t>(ticks)};
  return status_of_dropping(fraction);
}

// The microseconds are rounded to seconds, half a second to the next one, and these to minutes.
constexpr Status bigdatetime_to_date4(const uint64_t& source, comn_datetime4& date4) {
  const auto halves =
      static_cast<int32_t>(source % kMicrosecondsPerDay * 2 / kMicrosecondsPerSecond);
  const int32_t seconds = (halves + 1) / 2;
  return deliver_date4(day_of_big(source), (seconds + 30) / 60, date4);
}

constexpr Status bigdatetime_to_date(const uint64_t& source, int32_t& day) {
  if (!is_bigdatetime(source)) return Status::kOverflow;
  day = day_of_big(source);
  return Status::kDone;
}

constexpr Status bigdatetime_to_bigtime(const uint64_t& source, uint64_t& bigtime) {
  bigtime = source % kMicrosecondsPerDay;
  return Status::kDone;
}

// Of either big type.
constexpr Status big_to_time(const uint64_t& source, int32_t& ticks) {
  const uint64_t time = source % kMicrosecondsPerDay;
  ticks = ticks_of_bigtime(time);
  return status_of_dropping(time);
}

// On 1900-01-01.
constexpr Status bigtime_to_datetime(const uint64_t& source, comn_datetime& datetime) {
  if (!is_bigtime(source)) return Status::kOverflow;
  datetime = {0, static_cast<uint32_t>(ticks_of_bigtime(source))};
  return status_of_dropping(source);
}

// On 0001-01-01.
constexpr Status bigtime_to_bigdatetime(const uint64_t& source, uint64_t& bigdatetime) {
  return deliver_big(source < kEndOfBigdatetime - kFirstBigdatetime, kFirstBigdatetime + source,
                     bigdatetime);
}

}  // namespace tvx::datetime
