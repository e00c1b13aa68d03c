// Date arithmetic: examples, limits, values in descriptors, and additions that undo differences.
#include <climits>
#include <optional>
#include <random>

#include "support/conversion.hpp"
#include "support/moments.hpp"

namespace tvx::test {
namespace {

// clang-format off
enum : int32_t {
  kYear, kQuarter, kMonth, kWeekday, kDay, kDayOfYear, kHour, kMinute, kSecond, kMs,
  kWeek, kIsoYear, kIsoWeek, kIsoWeekday, kMicro
};
// clang-format on
constexpr uint8_t kDate = 49, kTime = 51, kDate4 = 58, kDatetime = 61, kBig = 187, kBigtime = 188;
constexpr int32_t kNone = -77'777;

using Bytes = std::optional<std::string>;
const Bytes none;  // refused

Bytes dt(int32_t days, uint32_t ticks = 0) {
  return bytes_of(comn_datetime{days, ticks});
}

template <class Value>
Value value_of(const std::string& bytes) {
  Value value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

Bytes add_in_place(int32_t part, int32_t amount, const std::string& source) {
  auto value = value_of<comn_datetime>(source);
  const int32_t code = com__date_add(part, amount, &value);
  if (code == 0) return bytes_of(value);
  EXPECT_EQ(std::pair(1, source), std::pair(code, bytes_of(value)));
  return none;
}

using Add = int32_t(int32_t, int32_t, const comnb_value*, comnb_value*);

// What is refused writes nothing and sets no length.
Bytes add_bare(Add* add, int32_t part, int32_t amount, const std::string& source, uint8_t token,
               int32_t room) {
  const Outcome outcome = observe(source, 9, [&](void* value, void* out, int32_t* length) {
    const comnb_value from{static_cast<int32_t>(source.size()), 0, 0, 0, 0, nullptr, value};
    comnb_value to{*length, token, room, 0, 0, nullptr, out};
    const int32_t code = add(part, amount, &from, &to);
    *length = to.length;
    return code;
  });
  const std::string value = outcome.bytes.substr(0, static_cast<size_t>(room));
  const Outcome done{0, room, value + untouched(9 - value.size())};
  EXPECT_EQ(outcome.code == 0 ? done : (Outcome{1, kNoLength, untouched(9)}), outcome);
  return outcome.code == 0 ? Bytes(value) : none;
}

Bytes add_big(int32_t part, int32_t amount, uint64_t value, uint8_t token = kBig) {
  return add_bare(com__bigdateadd_both, part, amount, bytes_of(value), token, 8);
}

const int32_t first_day = day(1, 1, 1), last_day = day(9999, 12, 31), any = day(2003, 1, 1),
              leap = day(2004, 2, 29);
constexpr uint32_t last_tick = kTicksOfDay - 1;
constexpr uint64_t last_micro = kMicrosPerDay - 1;

TEST(Addition, Datetime) {
  // clang-format off
  const struct { int32_t part, amount; Bytes from, to; } rows[] = {
      {kMonth, 1, dt(day(2003, 1, 31), 5), dt(day(2003, 2, 28), 5)},
      {kMonth, 1, dt(day(2004, 1, 31), 5), dt(leap, 5)},
      {kMonth, -1, dt(day(2003, 3, 31)), dt(day(2003, 2, 28))},
      {kMonth, -13, dt(day(2003, 1, 15)), dt(day(2001, 12, 15))}, {kMonth, INT_MAX, dt(any), none},
      {kMonth, INT_MIN, dt(any), none}, {kMonth, 1, dt(INT_MIN), none},
      {kQuarter, -2, dt(day(2003, 5, 31)), dt(day(2002, 11, 30))},
      {kQuarter, 1'431'655'766, dt(any), none},  // 2^32 + 2 months
      {kYear, 1, dt(leap), dt(day(2005, 2, 28))}, {kIsoYear, -4, dt(leap), dt(day(2000, 2, 29))},
      {kYear, 1, dt(day(9999, 6, 1)), none}, {kYear, -1, dt(first_day), none},
      {kYear, 9998, dt(first_day, last_tick), dt(day(9999, 1, 1), last_tick)},
      {kYear, INT_MAX, dt(any), none}, {kIsoYear, INT_MIN, dt(any), none},
      {kDay, 1, dt(last_day), none}, {kDay, -1, dt(first_day), none},
      {kDay, 0, dt(last_day), dt(last_day)}, {kDay, INT_MAX, dt(any), none},
      {kDay, 1, dt(any, kTicksOfDay), dt(any + 1, kTicksOfDay)},
      {kDayOfYear, -2, dt(any, 9), dt(any - 2, 9)}, {kWeekday, 59, dt(any), dt(day(2003, 3, 1))},
      {kIsoWeekday, 1, dt(any), dt(any + 1)}, {kWeek, 2, dt(any), dt(any + 14)},
      {kIsoWeek, -1, dt(any), dt(any - 7)}, {kWeek, 613'566'757, dt(any), none},  // 2^32 + 3 days
      {kHour, 25, dt(any, ticks(23, 0)), dt(any + 2)}, {kHour, 24, dt(any, 7), dt(any + 1, 7)},
      {kHour, -24, dt(any, 7), dt(any - 1, 7)},
      {kMinute, -1441, dt(any), dt(any - 2, ticks(23, 59))},
      {kSecond, 86'401, dt(any, last_tick), dt(any + 2, 299)},
      {kMs, -2, dt(any), dt(any - 1, last_tick)}, {kMs, 1, dt(any), dt(any)},
      {kMs, -1, dt(any), dt(any)}, {kMs, 2, dt(any), dt(any, 1)},
      {kMs, 86'399'999, dt(any), dt(any + 1)}, {kMs, INT_MIN, dt(any), dt(any - 25, 3'754'906)},
      {kHour, 1, dt(last_day, ticks(23, 0)), none}, {kSecond, -1, dt(first_day), none},
      {kHour, INT_MAX, dt(any), none}, {kMinute, INT_MIN, dt(any), none},
      {kSecond, INT_MIN, dt(any), dt(any - 24'856, ticks(20, 45, 52))},
      {kSecond, 0, dt(any, kTicksOfDay), none}, {kHour, 1, dt(INT_MAX), none},
  };
  // clang-format on
  for (const auto& row : rows)
    EXPECT_EQ(row.to, add_in_place(row.part, row.amount, *row.from)) << "row " << &row - rows;
}

TEST(Addition, Big) {
  const uint64_t all = UINT64_MAX;
  const auto to = [](int32_t day_number, uint64_t time = 0) {
    return Bytes(bytes_of(big(day_number, time)));
  };
  // clang-format off
  const struct { int32_t part, amount; uint64_t from; Bytes to; uint8_t token = kBig; } rows[] = {
      {kYear, 1, big(leap, 7), to(day(2005, 2, 28), 7)},
      {kQuarter, 3, big(leap), to(day(2004, 11, 29))},
      {kIsoYear, -1, big(leap), to(day(2003, 2, 28))},
      {kMonth, -2, big(leap), to(day(2003, 12, 29))}, {kMonth, 1, big(last_day), none},
      {kYear, INT_MIN, big(leap), none}, {kDay, 1, big(last_day), none},
      {kDay, -1, big(first_day), none}, {kWeek, INT_MAX, big(leap), none},
      {kIsoWeekday, INT_MIN, 0, none}, {kWeekday, 1, big(leap, 7), to(leap + 1, 7)},
      {kDayOfYear, 366, big(leap), to(leap + 366)}, {kIsoWeek, -1, big(leap), to(leap - 7)},
      {kHour, -1, big(leap), to(leap - 1, micros(23, 0))},
      {kMinute, 2, big(leap), to(leap, micros(0, 2))}, {kMs, 1, big(leap), to(leap, 1000)},
      {kSecond, INT_MAX, big(leap), to(leap + 24'855, micros(3, 14, 7))},
      {kMicro, -1, big(leap), to(leap - 1, last_micro)}, {kMicro, 1, all, none},
      {kMicro, 1, big(last_day, last_micro), none}, {kMicro, -1, big(first_day), none},
      {kHour, 1, micros(23, 30), none, kBigtime}, {kMicro, -1, 0, none, kBigtime},
      {kMicro, 1, last_micro - 1, bytes_of(last_micro), kBigtime}, {kDay, 1, 0, none, kBigtime},
      {kMinute, -30, micros(0, 30), bytes_of(uint64_t{0}), kBigtime},
      {kMonth, 1, 5, none, kBigtime}, {kYear, 1, 5, bytes_of(uint64_t{5}), kBigtime},
      {kHour, 1, big(leap), none, kDatetime},
  };
  // clang-format on
  for (const auto& row : rows)
    EXPECT_EQ(row.to, add_big(row.part, row.amount, row.from, row.token)) << "row " << &row - rows;
  for (const auto& [source, room] : {std::pair{"1234", 8}, {"12345678", 4}, {"123456789", 8}})
    EXPECT_EQ(none, add_bare(com__bigdateadd_both, kHour, 0, source, kBigtime, room));
}

TEST(Addition, BetweenDescriptors) {
  const int32_t d = day(2079, 6, 5);  // the last but one of a datetime4
  const std::string noon = *dt(d, ticks(12, 0)), date = bytes_of(d), time = bytes_of(ticks(12, 0));
  const auto date4 = [](uint16_t days, uint16_t minutes) {
    return Bytes(bytes_of(comn_datetime4{days, minutes}));
  };
  // clang-format off
  const struct {
    int32_t part, amount; std::string source; uint8_t token; int32_t room; Bytes to;
  } rows[] = {
      {kHour, 1, noon, kDatetime, 8, dt(d, ticks(13, 0))}, {kDay, 1, date, kDatetime, 8, dt(d + 1)},
      {kYear, -327, date, kDatetime, 8, none},
      {kYear, -326, noon, kDatetime, 8, dt(day(1753, 6, 5), ticks(12, 0))},
      {kYear, -327, date, kDate, 4, bytes_of(day(1752, 6, 5))},
      {kHour, 12, noon, kDate, 4, bytes_of(d + 1)}, {kHour, -1, date, kDate, 4, bytes_of(d - 1)},
      {kHour, 13, time, kTime, 4, bytes_of(ticks(1, 0))}, {kYear, 1, time, kTime, 4, time},
      {kHour, 1, noon, kTime, 4, none}, {kHour, 1, bytes_of(kTicksOfDay), kTime, 4, none},
      {kSecond, 30, noon, kDate4, 4, date4(65'534, 721)},
      {kDay, 1, date, kDate4, 4, date4(65'535, 0)},
      {kSecond, 29, noon, kDate4, 4, date4(65'534, 720)}, {kDay, 2, date, kDate4, 4, none},
      {kYear, -180, date, kDate4, 4, none}, {kDay, 1, noon, kDatetime, 4, none},
      {kDay, 1, noon, kDate, 8, none}, {kDay, 1, time, kTime, 8, none},
      {kDay, 1, noon, kDate4, 8, none}, {kDay, 1, noon, kBig, 8, none},
      {kDay, 1, "123456", kDatetime, 8, none}, {kDay, 1, "", kDate, 4, none},
  };
  // clang-format on
  for (const auto& row : rows)
    EXPECT_EQ(row.to,
              add_bare(com__dateadd_both, row.part, row.amount, row.source, row.token, row.room))
        << "row " << &row - rows;
}

// Row by row also the limits of what fits 32 bits.
TEST(Difference, Datetime) {
  const int32_t sat = day(2003, 1, 4);
  const uint32_t m127 = ticks(2, 7), m128 = ticks(2, 8), ms = ticks(20, 31, 23, 194);
  // clang-format off
  const struct { int32_t part; comn_datetime start, end; int32_t units; } rows[] = {
      {kYear, {day(2003, 12, 31), 0}, {day(2004, 1, 1), 0}, 1},
      {kYear, {any, 0}, {first_day, 0}, -2002},
      {kQuarter, {day(2003, 12, 31), 0}, {day(2004, 4, 1), 0}, 2},
      {kMonth, {day(2004, 1, 1), 0}, {day(2003, 11, 30), 0}, -2},
      {kHour, {any, ticks(10, 59)}, {any, ticks(11, 1)}, 0},
      {kHour, {any, ticks(11, 1)}, {any, ticks(10, 59)}, 0},
      {kHour, {any, ticks(10, 0)}, {any + 1, ticks(9, 59)}, 23},
      {kHour, {any, 0}, {any - 1, 1}, -23},
      {kHour, {first_day, 0}, {last_day, last_tick}, 87'649'415},
      {kHour, {INT_MIN, 0}, {INT_MAX, 0}, kNone}, {kWeekday, {any, 0}, {any + 13, 0}, 1},
      {kIsoWeekday, {any, 0}, {any - 13, 0}, -1}, {kDay, {any, last_tick}, {any + 1, 0}, 1},
      {kDayOfYear, {any, 0}, {any - 400, 0}, -400}, {kDay, {INT_MIN, 0}, {INT_MAX, 0}, kNone},
      {kWeek, {sat, 0}, {sat + 1, 0}, 1}, {kIsoWeek, {sat + 1, 0}, {sat + 7, 0}, 0},
      {kWeek, {sat + 1, 0}, {sat, 0}, -1}, {kIsoWeek, {sat, 0}, {sat - 7, 0}, -1},
      {kIsoYear, {day(2020, 12, 31), 0}, {day(2021, 1, 3), 0}, 0},
      {kIsoYear, {day(2024, 12, 29), 0}, {day(2024, 12, 30), 0}, 1},
      {kMinute, {0, 0}, {day(6000, 1, 1), 0}, kNone}, {kMinute, {0, 0}, {1'491'308, m128}, kNone},
      {kMinute, {0, 0}, {1'491'308, m128 - 1}, INT_MAX},
      {kMinute, {1'491'308, m127}, {0, 0}, -INT_MAX}, {kMinute, {1'491'308, m128}, {0, 0}, kNone},
      {kMinute, {0, ticks(24, 0)}, {1'491'309, 0}, kNone},
      {kMinute, {0, m128}, {1'491'308, 0}, INT_MAX - 127 - 128},
      {kSecond, {0, 0}, {day(1968, 1, 20), 0}, 2'147'472'000},
      {kSecond, {24'855, 1}, {0, 0}, -2'147'472'000},
      {kSecond, {0, 0}, {24'855, ticks(3, 14, 7, 299)}, INT_MAX},
      {kSecond, {0, 0}, {24'855, ticks(3, 14, 8)}, kNone},
      {kSecond, {0, last_tick}, {24'856, 0}, kNone}, {kMs, {any, 2}, {any, 0}, -6},
      {kMs, {any, 1}, {any + 1, 0}, 86'399'997}, {kMs, {0, 0}, {24, ms}, INT_MAX - 1},
      {kMs, {0, 0}, {24, ms + 1}, kNone}, {kMs, {24, ms + 1}, {0, 0}, kNone},
      {kMs, {0, 1}, {25, 0}, kNone}, {kMs, {0, last_tick}, {24, 0}, 1'987'200'004},
      {kMs, {0, 0}, {0, UINT32_MAX}, kNone},
  };
  // clang-format on
  for (const auto& row : rows) {
    int32_t units = kNone;
    EXPECT_EQ(row.units == kNone ? 1 : 0, com__datediff(row.part, &row.start, &row.end, &units))
        << "row " << &row - rows;
    EXPECT_EQ(row.units, units) << "row " << &row - rows;
  }
}

TEST(Difference, Big) {
  const uint64_t first = big(first_day), last = big(last_day, last_micro);
  // clang-format off
  const struct { int32_t part; uint64_t start, end; int64_t units; } rows[] = {
      {kYear, first, last, 9998}, {kQuarter, last, first, -39'995}, {kMonth, first, last, 119'987},
      {kWeek, big(day(2003, 1, 4)), big(day(2003, 1, 5)), 1},
      {kIsoWeek, big(day(2003, 1, 5)), big(day(2003, 1, 4)), -1}, {kWeekday, first, last, 521'722},
      {kIsoWeekday, last, first, -521'722}, {kDayOfYear, last, first, -3'652'058},
      {kDay, big(any, last_micro), big(any + 1), 1},
      {kIsoYear, big(day(2021, 1, 3)), big(day(2021, 1, 4)), 1}, {kHour, last, first, -87'649'415},
      {kMinute, first, last, 5'258'964'959}, {kSecond, first, last, 315'537'897'599},
      {kMs, last, first, -315'537'897'599'999}, {kMicro, first, last, 315'537'897'599'999'999},
      {kMs, big(any, 1000), big(any), -1}, {kMs, big(any, 999), big(any), 0},
      {kHour, 0, micros(23, 59), 23}, {kDay, 0, micros(23, 59), 0}, {kYear, 5, 7, 0},
      {kMicro, 7, 5, -2}, {-1, first, last, kNone}, {15, first, last, kNone},
  };
  // clang-format on
  for (const auto& row : rows) {
    int64_t units = kNone;
    EXPECT_EQ(0, com__bigdatediff(row.part, &row.start, &row.end, &units));
    EXPECT_EQ(row.units, units) << "row " << &row - rows;
  }
  for (const int32_t part : {-1, 14, 15}) {
    const comn_datetime start{}, end{1, 1};
    int32_t units = kNone;
    EXPECT_EQ(0, com__datediff(part, &start, &end, &units));
    EXPECT_EQ(kNone, units);
  }
}

// What was counted leads to the unit of the end when it is added.
TEST(Arithmetic, AdditionReachesTheEnd) {
  std::mt19937_64 random(4);
  const uint64_t first = big(first_day + 7), last = big(last_day - 7);  // weeks may lead beyond b
  const auto datetime_of = [](uint64_t value) {
    return comn_datetime{static_cast<int32_t>(value / kMicrosPerDay) - 693'961,
                         static_cast<uint32_t>(value % kMicrosPerDay * 3 / 10'000)};
  };
  int counts[2] = {};  // of the differences that were given and refused
  for (int i = 0; i < 50'000; ++i) {
    const uint64_t near = uint64_t{1} << (20 + i % 40);  // differences of every size
    const uint64_t a = first + random() % (last - first);
    const uint64_t b = std::clamp(a + random() % near - near / 2, first, last);
    const comn_datetime start = datetime_of(a), end = datetime_of(b);
    for (const int32_t part : {kYear, kQuarter, kMonth, kDay, kDayOfYear, kHour, kMinute, kSecond,
                               kMs, kWeek, kIsoWeek, kMicro}) {
      int64_t units = 0, left = -1;
      com__bigdatediff(part, &a, &b, &units);
      if (units == static_cast<int32_t>(units)) {
        const Bytes sum = add_big(part, static_cast<int32_t>(units), a);
        ASSERT_NE(none, sum);
        const auto moved = value_of<uint64_t>(*sum);
        com__bigdatediff(part, &moved, &b, &left);
        ASSERT_EQ(0, left) << "part " << part << " from " << a << " to " << b;
      }
      int32_t narrow = 0;
      const int32_t code = com__datediff(part, &start, &end, &narrow);
      ++counts[code];
      if (code != 0 || part == kMicro) continue;
      comn_datetime moved = start;
      ASSERT_EQ(0, com__date_add(part, narrow, &moved));
      ASSERT_EQ(0, com__datediff(part, &moved, &end, &narrow));
      ASSERT_EQ(0, narrow) << "part " << part << " from " << a << " to " << b;
    }
  }
  EXPECT_TRUE(counts[0] > 500'000 && counts[1] > 1000) << counts[1];
}

TEST(Arithmetic, PositionsInWeeks) {
  for (int32_t i = 0; i < 7 * 7 * 7; ++i) {
    const int32_t position = i % 7 + 1, from = i / 7 % 7 + 1, to = i / 49 + 1;
    const int32_t moved = com_intl_convt_firstday(position, from, to);
    EXPECT_LT(static_cast<uint32_t>(moved), 7u);
    EXPECT_EQ((from + position - 1) % 7, (to + moved - 1) % 7) << "the same day";
  }
  EXPECT_EQ(-4, com_intl_convt_firstday(-5, 1, 7));
  EXPECT_EQ(-2, com_intl_convt_firstday(-10, 3, 9));
  EXPECT_EQ(-3, com_intl_convt_firstday(INT_MAX, INT_MAX, INT_MAX)) << "sums of 32 bits";
}

}  // namespace
}  // namespace tvx::test
