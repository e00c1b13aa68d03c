// The rules by which readings of date texts differ, as tables: by date format code,
// half of the day, digits of a fraction, and destination. The grammar (parser.cpp) is the same for
// all.
#pragma once

#include <array>
#include <cstdint>

#include "datetime/date_order.hpp"

namespace tvx::datetime {

// ---- Date format codes -------------------------------------------------------------------------

// Whether a numeric date has its year in four digits, wherever in the text. Where such a year is
// not sought, or optional and not found, the year is one of the numbers in sequence.
enum class LongYear { kOptional, kNotSought, kRequired };

// The one that the text is read under. A long year at the start of the text makes it
// year-month-day, unless it is year-day-month.
inline constexpr int32_t kGivenOrder = 0;

struct CodeRule {
  int32_t code;
  int32_t order;
  LongYear year;
};

// The codes under which numeric dates are read; under any other one they are not.
// clang-format off
inline constexpr CodeRule kCodeRules[] = {
    {0, kGivenOrder, LongYear::kOptional}, {9, kGivenOrder, LongYear::kOptional},

    {1, kMonthDayYear, LongYear::kNotSought}, {10, kMonthDayYear, LongYear::kNotSought},
    {2, kYearMonthDay, LongYear::kNotSought}, {11, kYearMonthDay, LongYear::kNotSought},
    {21, kYearMonthDay, LongYear::kNotSought}, {22, kYearMonthDay, LongYear::kNotSought},
    {23, kYearMonthDay, LongYear::kNotSought},
    {3, kDayMonthYear, LongYear::kNotSought}, {4, kDayMonthYear, LongYear::kNotSought},
    {5, kDayMonthYear, LongYear::kNotSought},

    {101, kMonthDayYear, LongYear::kRequired}, {110, kMonthDayYear, LongYear::kRequired},
    {102, kYearMonthDay, LongYear::kRequired}, {111, kYearMonthDay, LongYear::kRequired},
    {103, kDayMonthYear, LongYear::kRequired}, {104, kDayMonthYear, LongYear::kRequired},
    {105, kDayMonthYear, LongYear::kRequired},
};
// clang-format on

// ---- Short years -------------------------------------------------------------------------------

// Years of fewer than four digits are those of 1950 to 2049.
inline constexpr int32_t kLastShortYear = 99;

[[nodiscard]] constexpr int32_t full_year(int32_t short_year) {
  return short_year + (short_year <= 49 ? 2000 : 1900);
}

// ---- Halves of the day -------------------------------------------------------------------------

struct DayHalf {
  int32_t first_hour;  // that the marker may follow
  int32_t last_hour;
  int32_t twelve;  // what the hours up to 12 are counted from, and what 12 becomes itself
};

// Of "AM" and "PM". "PM" leaves an hour past noon as it is.
inline constexpr DayHalf kDayHalves[] = {{0, 12, 0}, {1, 23, 12}};

// ---- Fractions ---------------------------------------------------------------------------------

// Microseconds of one in the last place of a fraction, by its digits. Beyond six digits it is taken
// as it stands.
inline constexpr std::array<int32_t, 9> kLastPlace{0, 100'000, 10'000, 1'000, 100, 10, 1, 1, 1};

// ---- Destinations ------------------------------------------------------------------------------

struct Mode {
  bool takes_date;          // else the text is looked through for a time only
  bool ignores_rest;        // of the text, once what is sought was found
  bool keeps_microseconds;  // else fractions are rounded to milliseconds
};

inline constexpr Mode kDatetime{true, false, false};
inline constexpr Mode kTimeOnly{false, false, false};
inline constexpr Mode kDate{true, true, false};
inline constexpr Mode kTime{false, true, false};
inline constexpr Mode kBigdatetime{true, false, true};
inline constexpr Mode kBigtime{false, true, true};

}  // namespace tvx::datetime
