// The parser: texts and what they say to each type, under every date order and date format code;
// random tokens against a plain walk over their list; names, character sets, and bytes that are no
// dates.
#include "datetime/parser.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "charset/attributes.hpp"
#include "datetime/names.hpp"
#include "support/guarded_buffer.hpp"
#include "support/multibyte_record.hpp"

namespace tvx::test {
namespace {

using namespace tvx::datetime;

// A point of time, with year 0 a time alone.
struct Moment {
  int year = 0, month = 1, day = 1, hour = 0, minute = 0, second = 0, microsecond = 0;
};

// A status and, with 0, a value in its smallest unit.
struct Outcome {
  int32_t status;
  int64_t value = 0;
  bool lost_digits = false;
  bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << outcome.status << ": " << outcome.value << (outcome.lost_digits ? ", lost" : "");
}

constexpr int64_t kTicks = 300 * 86'400, kMicroseconds = 1'000'000 * int64_t{86'400};  // a day
constexpr int64_t kDaysTo1900 = 366 + 693'595;  // from the epoch of the big types

// What a reader does, which changes a value with status 0 only.
template <class Value, class Read>
Outcome observe(Read read, int64_t (*number)(const Value&)) {
  Value value;
  std::memset(&value, 0xA5, sizeof value);
  const Value untouched = value;
  Outcome outcome{0};
  outcome.status = static_cast<int32_t>(read(value, outcome.lost_digits));
  if (outcome.status == 0) outcome.value = number(value);
  EXPECT_TRUE(outcome.status == 0 || std::memcmp(&untouched, &value, sizeof value) == 0);
  return outcome;
}

template <class Integer>
int64_t integer(const Integer& value) {
  return static_cast<int64_t>(value);
}

enum Destination { kDatetime, kDatetime4, kTimeOnly, kDate, kTime, kBigdatetime, kBigtime };
constexpr Destination kAll[] = {kDatetime, kDatetime4,   kTimeOnly, kDate,
                                kTime,     kBigdatetime, kBigtime};

// clang-format off
Outcome read(Destination destination, std::string_view text, const ReadingRules& rules) {
  const auto call = [&](auto reader) {
    return [=, &rules](auto& value, bool&) { return reader(text, rules, value); };
  };
  const auto call_lossy = [&](auto reader) {
    return [=, &rules](auto& value, bool& lost) { return reader(text, rules, value, lost); };
  };
  int64_t (*const ticks)(const comn_datetime&) = [](auto& v) { return v.days * kTicks + v.ticks; };
  int64_t (*const minutes)(const comn_datetime4&) = [](auto& v) { return int64_t{v.days} * 1440 + v.minutes; };
  switch (destination) {
    case kDatetime: return observe(call_lossy(read_datetime), ticks);
    case kDatetime4: return observe(call(read_datetime4), minutes);
    case kTimeOnly: return observe(call(read_time_only), ticks);
    case kDate: return observe(call(read_date), integer<int32_t>);
    case kTime: return observe(call_lossy(read_time), integer<int32_t>);
    case kBigdatetime: return observe(call(read_bigdatetime), integer<uint64_t>);
    default: return observe(call(read_bigtime), integer<uint64_t>);
  }
}

// What a moment is to a destination.
Outcome value_of(Destination destination, const Moment& m) {
  using namespace std::chrono;
  const bool has_date = m.year != 0, lost = m.microsecond % 1000 != 0;
  const auto date = year(has_date ? m.year : 1900) / m.month / m.day;
  const int64_t days = (sys_days(date) - sys_days(year(1900) / 1 / 1)).count();
  const int64_t seconds = (m.hour * 60 + m.minute) * 60 + m.second;
  const int64_t milliseconds = std::min((m.microsecond + 500) / 1000, 999);
  const int64_t ticks = seconds * 300 + (milliseconds == 999 ? 299 : (milliseconds * 3 + 5) / 10);
  const int64_t minutes = days * 1440 + (ticks + 9000) / 18'000;
  const int64_t microseconds = seconds * 1'000'000 + m.microsecond;
  const int64_t big_days = (has_date ? days : -693'595) + kDaysTo1900;
  switch (destination) {
    case kDatetime: return days < -53'690 ? Outcome{1, 0, lost} : Outcome{0, days * kTicks + ticks, lost};
    case kDatetime4: return days < 0 || minutes >= 65'536 * 1440 ? Outcome{1} : Outcome{0, minutes};
    case kTimeOnly: return has_date ? Outcome{-2} : Outcome{0, ticks};
    case kDate: return {0, days};
    case kTime: return {0, ticks, lost};
    case kBigdatetime: return {0, big_days * kMicroseconds + microseconds};
    default: return {0, microseconds};
  }
}

// ---- Rows --------------------------------------------------------------------------------------

const struct { const char* text; Moment moment; } kTexts[] = {
    {"", {}}, {"   ", {}}, {"12/31/99", {1999, 12, 31}}, {"1/2/49", {2049, 1, 2}},
    {"1/2/050", {1950, 1, 2}}, {"2003-01-02", {2003, 1, 2}}, {"01/02/2003", {2003, 1, 2}},
    {"1 2003 2//", {2003, 1, 2}}, {"1.2.3", {2003, 1, 2}}, {"Jan 2 2003", {2003, 1, 2}},
    {"2 jAn 2003", {2003, 1, 2}}, {"2-JAN-2003", {2003, 1, 2}}, {"January 2, 2003", {2003, 1, 2}},
    {"2003jan2", {2003, 1, 2}}, {"2/Jan,3", {2003, 1, 2}}, {"Jan 2003", {2003, 1, 1}},
    {"20030102", {2003, 1, 2}}, {"030102", {2003, 1, 2}}, {"2003 10:30", {2003, 1, 1, 10, 30}},
    {"2003", {2003, 1, 1}}, {"10:30", {0, 1, 1, 10, 30}}, {"10PM", {0, 1, 1, 22}},
    {"10:30 Pm", {0, 1, 1, 22, 30}}, {"12 am", {}}, {"12 PM", {0, 1, 1, 12}}, {"0AM", {}},
    {"13 PM", {0, 1, 1, 13}}, {"Jan  2 2003  2:05PM", {2003, 1, 2, 14, 5}},
    {"2003-01-02T10:20:30.5", {2003, 1, 2, 10, 20, 30, 500'000}},
    {"10:20:30:250", {0, 1, 1, 10, 20, 30, 250'000}},
    {"10:20:30.1234", {0, 1, 1, 10, 20, 30, 123'400}},
    {"10:20:30.123456 1/2/3", {2003, 1, 2, 10, 20, 30, 123'456}},
    {"10:20:30.00012345", {0, 1, 1, 10, 20, 30, 12'345}},
    {"23:59:59.99951", {0, 1, 1, 23, 59, 59, 999'510}}, {"00010101", {1, 1, 1}},
    {"23:59:30 6/6/2079", {2079, 6, 6, 23, 59, 30}}, {"02/29/2000", {2000, 2, 29}},
    {"23:59:29.995 6/6/2079", {2079, 6, 6, 23, 59, 29, 995'000}}, {"Jan 1 1753", {1753, 1, 1}},
    {"Dec 31 1752 1:00", {1752, 12, 31, 1}},
    {"9999-12-31 23:59:59.999", {9999, 12, 31, 23, 59, 59, 999'000}},
};

constexpr int32_t kSame = 77;  // as datetime and date together
const struct { std::string_view text; int32_t datetime, date = kSame, time_only = -2, time = 0; } kErrors[] = {
    {"1/2/100", 1}, {"Jan 2 100", 1}, {"02/30/2003", 3}, {"2/29/1900", 3}, {"0/1/2003", 2},
    {"13/1/2003", 2}, {"20031301", 2}, {"20030100", 3}, {"0000-01-02", 1}, {"24:00", 1, kSame, 1, 1},
    {"1/2/3 10:60", 1, kSame, -2, 1}, {"10:20:60", 1, kSame, 1, 1}, {"0 PM", 9, kSame, 9, 9},
    {"13 AM", 9, kSame, 9, 9}, {"24:00pm", 9, kSame, 9, 9}, {"Jan 2", -1}, {"1/2/", -1},
    {"/1/2 2003", -1}, {"/1/2/3", -2, 0}, {"Mon Jan 2 2003", -1, kSame, -1, -1},
    {"2003:10", -1, kSame, -1, -1}, {"10:20:30.", -1, kSame, -1, -1}, {"2003-01-02T", -1},
    {"2003-01-02T10:30 5", -1}, {":10:30", -2}, {"10:30 5", -2}, {"PM", -2}, {"2003 5", -2},
    {"12345", -2}, {"Jan 2 2003 5", -2, 0}, {"Jan-2-2003", -2, 0}, {"10:30.5", -1},
    {"1/2/3;", -1, kSame, -1, -1}, {"1/2/3\t", -1, kSame, -1, -1},
    {std::string_view("1/2/3\0", 6), -1, kSame, -1, -1},
};
// clang-format on

const MonthNames kEnglish{kMonths, kShortMonths};
const ReadingRules kBuiltin{0, 1, kEnglish, nullptr};

TEST(Parser, Texts) {
  const MultibyteRecord record;
  const ReadingRules wide{0, 1, kEnglish, record.get()};
  for (const Destination to : kAll) {
    for (const auto& [text, moment] : kTexts)
      EXPECT_EQ(value_of(to, moment), read(to, text, kBuiltin)) << text << " to " << to;
    for (const char* text : {"January 2, 2003 10:20:30.25PM", "2-Jan-2003", "20030102T10:20"})
      EXPECT_EQ(read(to, text, kBuiltin), read(to, MultibyteRecord::full_width(text), wide));
  }
}

TEST(Parser, Errors) {
  for (const auto& [text, datetime, date, time_only, time] : kErrors) {
    const int32_t of_date = date == kSame ? datetime : date;
    const int32_t wanted[] = {datetime, datetime, time_only, of_date, time, datetime, time};
    for (const Destination to : kAll)
      EXPECT_EQ(wanted[to], read(to, text, kBuiltin).status) << text << " to " << to;
  }
  // Too large a fraction shows when it is rounded, or else when the parts are put together.
  EXPECT_EQ(-1, read(kDatetime, "10:20:30.12345678", kBuiltin).status);
  EXPECT_EQ(1, read(kBigdatetime, "10:20:30.12345678", kBuiltin).status);
  EXPECT_EQ(read(kTime, "10:20:30.999", kBuiltin), read(kTime, "10:20:30.01000000", kBuiltin));
}

TEST(Parser, Counts) {
  const int32_t of_digits[] = {-2, -2, -2, 0, -2, 0, -1, 0, -1, -1, -1, -1};
  for (size_t n = 1; n <= std::size(of_digits); ++n)
    EXPECT_EQ(of_digits[n - 1], read(kDatetime, std::string("200102030405", n), kBuiltin).status);
  std::string numbers;
  for (int n = 0; n <= 30; ++n, numbers += " 1")
    EXPECT_EQ(n == 0 ? 0 : n <= 20 ? -2 : -1, read(kDatetime, numbers, kBuiltin).status) << n;
}

TEST(Parser, OrdersAndCodes) {
  const Moment of_123[] = {{2003, 1, 2}, {2003, 2, 1}, {2001, 2, 3},
                           {2001, 3, 2}, {2002, 1, 3}, {2002, 3, 1}};
  const Moment month_first{2003, 1, 2}, day_first{2003, 2, 1};
  const std::set<int> given{0, 9}, any{1, 10, 2, 11, 21, 22, 23, 3, 4, 5}, day_month{3, 4, 5, 103, 104, 105},
      required{101, 110, 102, 111, 103, 104, 105}, month_day{1, 10, 101, 110};
  for (int code = -1; code <= 150; ++code)
    for (int order = 1; order <= 6; ++order) {
      const ReadingRules rules{code, order, kEnglish, nullptr};
      const bool is_given = given.contains(code), takes_long = is_given || required.contains(code);
      const int in_force = is_given ? order : month_day.contains(code) ? 1 : day_month.contains(code) ? 2 : 3;
      const auto expect = [&](const char* text, bool is_date, const Moment& moment) {
        EXPECT_EQ(is_date ? value_of(kDate, moment) : Outcome{-1}, read(kDate, text, rules))
            << text << ", code " << code << ", order " << order;
      };
      const Moment& with_year = in_force % 2 == 1 ? month_first : day_first;
      expect("1/2/3", is_given || any.contains(code), of_123[in_force - 1]);
      expect("1/2/2003", takes_long, with_year);
      expect("0:0 2003/1/2", takes_long, with_year);
      expect("2003/1/2", takes_long, is_given ? (order == 4 ? day_first : month_first) : with_year);
      expect("2 Jan 2003", true, month_first);
      expect("20030102", true, month_first);
    }
}
