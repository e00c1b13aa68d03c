// The calendar, and values broken into parts and rebuilt: every day of the range, every tick of a
// day, and values out of any range.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <random>

#include "datetime/values.hpp"
#include "support/moments.hpp"

namespace tvx::test {
namespace {

using namespace std::chrono;
namespace dt = tvx::datetime;

using Fields = std::array<int32_t, 12>;
static_assert(sizeof(Fields) == sizeof(comn_dateparts));
constexpr int32_t kUnset = -7;

comn_dateparts unset_parts() {
  Fields fields;
  fields.fill(kUnset);
  return std::bit_cast<comn_dateparts>(fields);
}

// What the standard library says of a day, and nothing of the time.
Fields date_fields(int32_t year_offset, sys_days at) {
  const year_month_day date(at);
  Fields fields = std::bit_cast<Fields>(unset_parts());
  fields[0] = static_cast<int32_t>(date.year()) + year_offset;
  fields[1] = static_cast<int32_t>(static_cast<unsigned>(date.month())) - 1;
  fields[2] = static_cast<int32_t>(static_cast<unsigned>(date.day()));
  fields[3] = static_cast<int32_t>((at - sys_days{date.year() / 1 / 1}).count()) + 1;
  fields[4] = static_cast<int32_t>(weekday{at}.c_encoding());
  return fields;
}

// ISO year and week, and the week of the year. The C library's first week begins with the first
// Sunday of the year, ours holds 1 January.
std::array<int32_t, 3> weeks_of(const Fields& date) {
  std::tm tm{};
  tm.tm_year = date[0] - 1900, tm.tm_yday = date[3] - 1, tm.tm_wday = date[4];
  char text[32];
  std::strftime(text, sizeof text, "%G %V %U", &tm);
  const bool starts_on_sunday = (date[3] - date[4]) % 7 == 1;
  char* at = text;
  const auto next = [&] { return static_cast<int32_t>(std::strtol(at, &at, 10)); };
  const int32_t iso_year = next(), iso_week = next(), week = next();
  return {iso_year, iso_week, week + (starts_on_sunday ? 0 : 1)};
}

TEST(Calendar, EveryDay) {
  for (int32_t d = day(1, 1, 1); d <= day(9999, 12, 31); ++d) {
    const Fields expected = date_fields(0, sys_day(d));
    const comn_datetime datetime{d, 0};
    const uint64_t bigdatetime = big(d, static_cast<uint32_t>(d) * 20ULL);
    comn_dateparts parts = unset_parts(), of_big = unset_parts();
    com__datecrack(&datetime, &parts);
    com__bigdatecrack(&bigdatetime, &of_big);
    ASSERT_EQ(expected, std::bit_cast<Fields>(parts)) << d;
    ASSERT_EQ(expected, std::bit_cast<Fields>(of_big)) << d;
    int32_t rebuilt = 0;
    ASSERT_EQ(dt::Fault::kNone, dt::build_day(parts, rebuilt)) << d;
    ASSERT_EQ(d, rebuilt);
    ASSERT_EQ(big(d), dt::big_of_day(d));
    const auto part = [&](int32_t code) { return com__datepart(code, &datetime, 7); };
    const std::array weeks{part(COM_PART_ISO_YEAR), part(COM_PART_ISO_WEEK), part(COM_PART_WEEK)};
    ASSERT_EQ(weeks_of(expected), weeks) << d;
  }
}

// Where the standard library has no calendar, dates repeat themselves after 400 years.
TEST(Calendar, EveryDayNumberHasADate) {
  constexpr int32_t kDaysOfEra = 146'097;
  std::mt19937 random(1582);
  for (int i = 0; i < 200'000; ++i) {
    const int32_t d = i == 0 ? INT_MIN : i == 1 ? INT_MAX : static_cast<int32_t>(random());
    comn_dateparts parts = unset_parts();
    dt::crack_day(d, parts);
    ASSERT_EQ(date_fields(d / kDaysOfEra * 400, sys_day(d % kDaysOfEra)),
              std::bit_cast<Fields>(parts))
        << d;
  }
}

TEST(Time, EveryTick) {
  for (uint32_t t = 0; t < kTicksOfDay; ++t) {
    const comn_datetime datetime{47'000, t};
    const auto time = static_cast<int32_t>(t);
    comn_dateparts parts{};
    dt::crack_ticks(t, parts);
    int32_t rebuilt = -1, time_back = -1;
    uint64_t bigdatetime = 0, bigtime = 0, of_time = 0, of_parts = 0;
    comn_datetime back{}, back_on_1900{};
    const bool all_done = dt::datetime_to_bigdatetime(datetime, bigdatetime) == dt::Status::kDone &&
                          dt::bigdatetime_to_datetime(bigdatetime, back) == dt::Status::kDone &&
                          dt::datetime_to_bigtime(datetime, bigtime) == dt::Status::kDone &&
                          dt::bigtime_to_datetime(bigtime, back_on_1900) == dt::Status::kDone &&
                          dt::time_to_bigtime(time, of_time) == dt::Status::kDone &&
                          dt::big_to_time(of_time, time_back) == dt::Status::kDone &&
                          dt::build_ticks(parts, rebuilt) == dt::Fault::kNone &&
                          dt::build_big_time(parts, of_parts) == dt::Fault::kNone;
    const uint64_t truncated = uint64_t{t} * 10 / 3 * 1000;
    const bool all_right = back.days == 47'000 && back.ticks == t && back_on_1900.days == 0 &&
                           back_on_1900.ticks == t && time_back == time && rebuilt == time &&
                           bigtime == truncated && of_time == truncated && of_parts == truncated &&
                           bigdatetime == big(47'000, truncated);
    ASSERT_TRUE(all_done && all_right) << t;
  }
}

// Milliseconds become ticks within the second, but for its last one, or within the day.
TEST(Time, EveryMillisecondOfTwoSeconds) {
  const uint32_t first = ticks(23, 59, 58);
  for (uint32_t ms = 0; ms < 2000; ++ms)
    for (const uint32_t rest : {0u, 1u, 999u}) {
      const uint64_t value = micros(23, 59, 58, ms * 1000 + rest);
      const uint32_t seconds = first + ms / 1000 * 300, rounded = (ms % 1000 * 3 + 5) / 10;
      const auto status = rest == 0 ? dt::Status::kDone : dt::Status::kTruncated;
      comn_datetime within_second{}, within_day{};
      int32_t time = 0;
      ASSERT_EQ(status, dt::bigdatetime_to_datetime(big(0, value), within_second));
      ASSERT_EQ(status, dt::bigtime_to_datetime(value, within_day));
      ASSERT_EQ(status, dt::big_to_time(value, time));
      EXPECT_EQ(seconds + (ms % 1000 == 999 ? 299 : rounded), within_second.ticks) << ms;
      EXPECT_EQ(ms == 1999 ? kTicksOfDay - 1 : seconds + rounded, within_day.ticks) << ms;
      EXPECT_EQ(within_day.ticks, static_cast<uint32_t>(time)) << ms;
    }
}

TEST(Parts, FaultsInTheirOrder) {
  comn_dateparts good{2024, 1, 29, 0, 0, 23, 59, 59, 999, 0, 0, 300};
  const struct {
    int32_t comn_dateparts::*field;
    int32_t below, above;
    dt::Fault fault;
  } rows[] = {{&comn_dateparts::millisecond, -1, 1000, dt::Fault::kFraction},
              {&comn_dateparts::second, -1, 60, dt::Fault::kSecond},
              {&comn_dateparts::minute, -1, 60, dt::Fault::kMinute},
              {&comn_dateparts::hour, -1, 24, dt::Fault::kHour},
              {&comn_dateparts::day, 0, 30, dt::Fault::kDay},
              {&comn_dateparts::month, -1, 12, dt::Fault::kMonth},
              {&comn_dateparts::year, 0, 10'000, dt::Fault::kYear}};
  const auto fault_of = [](const comn_dateparts& parts, bool is_date) {
    int32_t number = kUnset;
    const auto fault = is_date ? dt::build_day(parts, number) : dt::build_ticks(parts, number);
    EXPECT_EQ(fault == dt::Fault::kNone, number != kUnset);
    if (is_date) return fault;
    uint64_t value = 7;
    EXPECT_EQ(fault, dt::build_big_time(parts, value));
    EXPECT_EQ(fault == dt::Fault::kNone, value != 7);
    return fault;
  };
  comn_dateparts faulty = good;
  for (const auto& row : rows)  // from the last checked to the first: each hides those before it
    for (const int32_t value : {row.below, row.above, INT_MIN, INT_MAX}) {
      faulty.*row.field = value;
      EXPECT_EQ(row.fault, fault_of(faulty, row.fault <= dt::Fault::kDay)) << value;
    }
  for (const bool is_date : {true, false}) EXPECT_EQ(dt::Fault::kNone, fault_of(good, is_date));
  good.fraction_units = 1'000'000, good.fraction = 998'999;
  uint64_t time = 0;
  EXPECT_EQ(dt::Fault::kNone, dt::build_big_time(good, time));
  EXPECT_EQ(micros(23, 59, 59, 998'999), time) << "the milliseconds do not count";
  good.fraction = 1'000'000, good.year = 2023;
  EXPECT_EQ(dt::Fault::kFraction, fault_of(good, false));
  EXPECT_EQ(dt::Fault::kDay, fault_of(good, true));
}

TEST(Parts, OfValuesOutOfRange) {
  std::mt19937_64 random(45);
  for (int i = 0; i < 100'000; ++i) {
    const uint64_t bits = i == 0 ? 0 : i == 1 ? UINT64_MAX : random();
    const auto datetime = std::bit_cast<comn_datetime>(bits);
    comn_dateparts parts = unset_parts(), of_big = unset_parts();
    com__timecrack(&datetime, &parts);
    com__bigdatecrack(&bits, &of_big);
    com__bigtimecrack(&bits, &of_big);
    constexpr int32_t k = kUnset;
    const auto fields = [&](Fields date, uint64_t second, uint64_t ms, uint64_t fraction,
                            int32_t u) {
      const auto number = [](uint64_t n) { return static_cast<int32_t>(n); };
      return Fields{date[0],
                    date[1],
                    date[2],
                    date[3],
                    date[4],
                    number(second / 3600),
                    number(second / 60 % 60),
                    number(second % 60),
                    number(ms),
                    k,
                    number(fraction),
                    u};
    };
    const uint64_t t = datetime.ticks & 0x1FF'FFFF;
    ASSERT_EQ(fields({k, k, k, k, k}, t / 300, t % 300 * 10 / 3, 0, 300),
              std::bit_cast<Fields>(parts));
    const auto d = static_cast<int32_t>(bits / kMicrosPerDay) - 693'961;
    const Fields date = date_fields(d / 146'097 * 400, sys_day(d % 146'097));
    ASSERT_EQ(fields(date, bits % kMicrosPerDay / 1'000'000, 0, bits % 1'000'000, 1'000'000),
              std::bit_cast<Fields>(of_big));
    for (int32_t part = 0; part <= 14; ++part) {  // any answer
      char text[32];
      com__datepart(part, &datetime, static_cast<int32_t>(bits));
      com__bigdatename(part, &bits, text, com__get_months(), com__get_weekdays());
    }
  }
}

}  // namespace
}  // namespace tvx::test
