// Date and time values: parts and names, comparison, and the conversions among the six types in
// both layers.
#include <climits>
#include <map>
#include <set>
#include <vector>

#include "support/conversion.hpp"
#include "support/moments.hpp"

namespace tvx::test {
namespace {

constexpr int32_t kDatetime = 12, kDate4 = 13, kDate = 27, kTime = 28, kBig = 35, kBigtime = 36;

// ---- Conversions -------------------------------------------------------------------------------

// A value to convert, or what a destination receives.
struct Value {
  int32_t datatype;
  std::string bytes;
  int32_t code = CS_SUCCEED;
};

Value dt(int32_t days, uint32_t ticks = 0) {
  return {kDatetime, bytes_of(comn_datetime{days, ticks})};
}
Value d4(uint16_t days, uint16_t minutes = 0) {
  return {kDate4, bytes_of(comn_datetime4{days, minutes})};
}
Value date(int32_t day_number) {
  return {kDate, bytes_of(day_number)};
}
Value time(uint32_t ticks) {
  return {kTime, bytes_of(ticks)};
}
Value big_bits(uint64_t bits) {
  return {kBig, bytes_of(bits)};
}
Value bdt(int32_t day_number, uint64_t us = 0) {
  return big_bits(big(day_number, us));
}
Value bt(uint64_t us) {
  return {kBigtime, bytes_of(us)};
}
// A destination that is left as it was.
Value over(int32_t datatype) {
  return {datatype, "", CS_CONV_OVERFLOW};
}
Value under(int32_t datatype) {
  return {datatype, "", CS_CONV_UNDERFLOW};
}

struct Row {
  Value from, to;
  int32_t bare_code = to.code;
};

const int32_t any = day(2003, 1, 2), first = day(1, 1, 1), last = day(9999, 12, 31);
constexpr uint32_t last_tick = kTicksOfDay - 1, bit_25 = 1 << 25;
constexpr uint64_t last_us = kMicrosPerDay - 1;

// clang-format off
const Row kRows[] = {
    // Copies, of any bits.
    {dt(INT_MIN, UINT32_MAX), dt(INT_MIN, UINT32_MAX)}, {d4(65'535, 1440), d4(65'535, 1440)},
    {date(INT_MAX), date(INT_MAX)}, {time(UINT32_MAX), time(UINT32_MAX)},
    {big_bits(0), big_bits(0)}, {bt(UINT64_MAX), bt(UINT64_MAX)},

    {dt(any, ticks(10, 30, 29, 299)), d4(37'621, 630)},
    {dt(any, ticks(10, 30, 30)), d4(37'621, 631)}, {dt(65'534, ticks(23, 59, 30)), d4(65'535)},
    {dt(65'535, ticks(23, 59, 29, 299)), d4(65'535, 1439)},
    {dt(65'535, ticks(23, 59, 30)), over(kDate4)}, {dt(-1, last_tick), over(kDate4)},
    {dt(65'536), over(kDate4)}, {dt(0, bit_25 | ticks(1, 0)), d4(0, 60)}, {dt(any, 7), date(any)},
    {dt(any, bit_25), time(bit_25)}, {dt(any, ticks(1, 2, 3, 2)), bdt(any, micros(1, 2, 3, 6000))},
    {dt(any, bit_25 | 1), bdt(any, 3000)}, {dt(first - 1), over(kBig)}, {dt(last + 1), over(kBig)},
    {dt(any, kTicksOfDay), over(kBig)}, {dt(INT_MAX, last_tick), bt(micros(23, 59, 59, 996'000))},
    {dt(any, kTicksOfDay), over(kBigtime)},

    {d4(65'535, 1439), dt(65'535, ticks(23, 59))}, {d4(40'000, 61), date(40'000)},
    {d4(40'000, 61), time(ticks(1, 1))}, {d4(40'000, 61), bdt(40'000, micros(1, 1))},
    {d4(1, 61), bt(micros(1, 1))}, {d4(1, 1440), over(kBigtime)},

    {date(-53'690), dt(-53'690)}, {date(-53'691), {kDatetime, dt(0).bytes, CS_CONV_OVERFLOW}},
    {date(any), d4(37'621)}, {date(-1), over(kDate4)}, {date(65'536), over(kDate4)},
    {date(-53'691), over(kDate4)}, {date(first), big_bits(31'622'400'000'000)},
    {date(last), bdt(last)}, {date(first - 1), over(kBig)}, {date(last + 1), over(kBig)},

    {time(last_tick), dt(0, last_tick)}, {time(last_tick), d4(1)}, {time(ticks(1, 1)), d4(0, 61)},
    {time(1), bdt(first, 3000)}, {time(UINT32_MAX), over(kBig)}, {time(2), bt(6000)},
    {time(UINT32_MAX), over(kBigtime)}, {time(kTicksOfDay), over(kBigtime)},

    {bdt(any, 5000), dt(any, 2)}, {bdt(any, 998'000), dt(any, 299)},
    {bdt(any, 999'000), dt(any, 299)}, {bdt(any, 5001), dt(any, 2), CS_CONV_TRUNCATED},
    {bdt(-53'690), dt(-53'690)}, {bdt(-53'691, last_us), under(kDatetime)},
    {bdt(first), under(kDatetime)}, {big_bits(31'622'399'999'999), over(kDatetime)},
    {bdt(last + 1), over(kDatetime)}, {bdt(any, micros(10, 30, 29, 499'999)), d4(37'621, 630)},
    {bdt(any, micros(10, 30, 29, 500'000)), d4(37'621, 631)},
    {bdt(any, micros(10, 30, 59, 999'999)), d4(37'621, 631)}, {bdt(any, last_us), d4(37'622)},
    {bdt(65'535, micros(23, 59, 29, 499'999)), d4(65'535, 1439)},
    {bdt(65'535, last_us), over(kDate4)}, {bdt(-1, last_us), over(kDate4)},
    {bdt(65'536), over(kDate4)}, {bdt(last, last_us), date(last)}, {bdt(last + 1), over(kDate)},
    {big_bits(0), over(kDate)}, {bdt(any, 999'000), time(300)},
    {bdt(any, last_us), time(last_tick), CS_CONV_TRUNCATED}, {bdt(any, 999'001), bt(999'001)},
    {big_bits(UINT64_MAX), bt(UINT64_MAX % kMicrosPerDay)},

    {bt(999'999), dt(0, 300)}, {bt(last_us), dt(0, last_tick)},
    {bt(kMicrosPerDay), over(kDatetime)}, {bt(last_us), d4(1)},
    {bt(micros(10, 30, 29, 999'499)), d4(0, 631)}, {bt(kMicrosPerDay), over(kDate4)},
    {bt(micros(23, 59, 59, 998'999)), time(last_tick)}, {bt(5000), time(2)},
    {bt(last_us), bdt(first, last_us)}, {bt(UINT64_MAX), over(kBig)},
};
// clang-format on

std::string bare_name(int32_t from, int32_t to) {
  const std::map<int32_t, std::string> names = {{kDatetime, "date"}, {kDate4, "date4"},
                                                {kDate, "datea"},    {kTime, "timea"},
                                                {kBig, "bigdate"},   {kBigtime, "bigtime"}};
  if (from == kBig && to == kDate4) return "comnb_bigdatetotime4";
  const bool longer = to == kBig && from != kBig;
  return "comnb_" + names.at(from) + "to" + names.at(to) + (longer ? "time" : "");
}

TEST(DateConversions, AllPairs) {
  std::set<std::pair<int32_t, int32_t>> pairs;
  for (const Row& row : kRows) {
    const Value &from = row.from, &to = row.to;
    pairs.emplace(from.datatype, to.datatype);
    const auto size = static_cast<size_t>(comn_typelen(to.datatype, 0));
    Outcome expected = delivered(to.bytes, size);
    expected.code = to.code;
    if (to.code != CS_SUCCEED) expected.length = kNoLength;
    const std::string name = bare_name(from.datatype, to.datatype);
    EXPECT_EQ(expected, convert(format_of(from.datatype), from.bytes, format_of(to.datatype)))
        << name << ", row " << &row - kRows;
    expected.code = row.bare_code;
    EXPECT_EQ(expected,
              convert_bare(exported<comnb_conversion>(name), bare_context(0), from.bytes, size))
        << name << ", row " << &row - kRows;
  }
  EXPECT_EQ(32u, pairs.size());
}

TEST(DateConversions, ToBinary) {
  const std::string names[] = {"date", "date4", "datea", "timea", "", ""};
  const int32_t codes[] = {kDatetime, kDate4, kDate, kTime, kBig, kBigtime};
  for (const int32_t& code : codes) {
    const comn_datafmt from = format_of(code);
    const auto bytes =
        std::string("12345678").substr(0, static_cast<size_t>(comn_typelen(code, 0)));
    EXPECT_EQ((Outcome{CS_SUCCEED, 258, varchar_record(bytes, kUntouched)}),
              convert(from, bytes, format_of(19)));
    const std::string& name = names[&code - codes];
    if (name.empty()) continue;  // the table has none of these towards bin
    auto* const to_bin = exported("comn_" + name + "tobin");
    EXPECT_EQ(delivered(bytes, 10), convert(to_bin, from, bytes, format_of(3, 10)));
    EXPECT_EQ((Outcome{CS_CONV_TRUNCATED, 3, "123"}),
              convert(to_bin, from, bytes, format_of(1, 3)));
  }
}

// ---- Operations --------------------------------------------------------------------------------

// Rules of the pairs above under names and with results of their own.
TEST(DateOperations, InternalConversions) {
  comn_datetime to{7, 7};
  const auto left = [&] { return std::pair(to.days, to.ticks); };
  const int32_t early = -53'691, late = -53'690, ticks_in = 5;
  EXPECT_EQ(1, com__dateatodate(&early, &to));
  EXPECT_EQ(std::pair(0, 0u), left());
  EXPECT_EQ(0, com__dateatodate(&late, &to));
  EXPECT_EQ(std::pair(late, 0u), left());
  EXPECT_EQ(0, com__timeatodate(&ticks_in, &to));
  EXPECT_EQ(std::pair(0, 5u), left());
  const uint64_t whole = big(any, 5000), broken = big(any, 5001), old = big(early), none = 0;
  EXPECT_EQ(CS_SUCCEED, com__bigdatetimetodate(&whole, &to));
  EXPECT_EQ(CS_CONV_TRUNCATED, com__bigdatetimetodate(&broken, &to));
  EXPECT_EQ(CS_CONV_UNDERFLOW, com__bigdatetimetodate(&old, &to));
  EXPECT_EQ(CS_CONV_OVERFLOW, com__bigdatetimetodate(&none, &to));
  EXPECT_EQ(std::pair(any, 2u), left()) << "a refusal leaves it alone";
  EXPECT_EQ(CS_CONV_TRUNCATED, com__bigtimetodate(&last_us, &to));
  EXPECT_EQ(std::pair(0, last_tick), left());
  EXPECT_EQ(CS_SUCCEED, com__bigtimetodate(&none, &to));
  const comn_datetime4 small{40'000, 2};
  int32_t days = 0, day_ticks = 0;
  com__date4todt(&small, &to), com__datetodatea(&to, &days), com__datetotimea(&to, &day_ticks);
  EXPECT_EQ(std::pair(40'000, 36'000), std::pair(days, day_ticks));
}

TEST(DateOperations, OrderAndRange) {
  const comn_datetime datetimes[] = {
      {INT_MIN, 0}, {-53'691, 9}, {-53'690, 0}, {-53'690, 1}, {5, 0}};
  const comn_datetime4 small[] = {{0, 0}, {0, 65'535}, {1, 0}, {40'000, 1}, {65'535, 0}};
  const int32_t numbers[] = {INT_MIN, -1, 0, 1, INT_MAX};
  const uint64_t bigs[] = {0, 1, uint64_t{1} << 63, UINT64_MAX - 1, UINT64_MAX};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(i < 2 ? 1 : 0, com__datetime_check_range(&datetimes[i]));
    for (int j = 0; j < 5; ++j) {
      const int32_t order = i < j ? -1 : i > j ? 1 : 0;
      EXPECT_EQ(order, com_datecmp(&datetimes[i], &datetimes[j]));
      EXPECT_EQ(order, com_date4cmp(&small[i], &small[j]));
      EXPECT_EQ(order, com_dateacmp(&numbers[i], &numbers[j]));
      EXPECT_EQ(order, com_timeacmp(&numbers[i], &numbers[j]));
      EXPECT_EQ(order, com_bigdatetimecmp(&bigs[i], &bigs[j]));
    }
  }
  EXPECT_EQ(-53'695, com__datecmp(&datetimes[2], &datetimes[4]));
  EXPECT_EQ(-1, com__datecmp(&datetimes[2], &datetimes[3]));
  for (const int64_t n : std::initializer_list<int64_t>{first - 1, first, -1, 0, last, last + 1,
                                                        last_tick, last_tick + 1}) {
    const auto value = static_cast<int32_t>(n);
    EXPECT_EQ(n < first || n > last ? 1 : 0, com__datea_check_range(&value)) << n;
    EXPECT_EQ(n < 0 || n > last_tick ? 1 : 0, com__timea_check_range(&value)) << n;
  }
  comn_datetime datetime{};
  comn_datetime4 date4{7, 7};
  com_setdatetime(&datetime, -5, UINT32_MAX);
  EXPECT_EQ(std::pair(-5, UINT32_MAX), std::pair(datetime.days, datetime.ticks));
  com_datezero(&datetime), com_date4zero(&date4);
  EXPECT_EQ(bytes_of(comn_datetime{}) + bytes_of(comn_datetime4{}),
            bytes_of(datetime) + bytes_of(date4));
}

TEST(DateOperations, OlderRecords) {
  const comn_datetime datetime{any, last_tick};
  comn_dateparts parts{1, 1, 1, 1, 1, 1, 1, 1, 1, -7, -7, -7};
  com_datecrack(&datetime, &parts), com_timecrack(&datetime, &parts);
  EXPECT_EQ(bytes_of(comn_dateparts{2003, 0, 2, 2, 4, 23, 59, 59, 996, -7, -7, -7}),
            bytes_of(parts));
  const uint64_t value = big(any, last_us);
  com_bigdatecrack(&value, &parts), com_bigtimecrack(&value, &parts);
  EXPECT_EQ(bytes_of(comn_dateparts{2003, 0, 2, 2, 4, 23, 59, 59, 0, -7, 999'999, 1'000'000}),
            bytes_of(parts));
  std::vector<int32_t> older(10, 1);  // nothing behind it is touched
  com_datecrack(&datetime, reinterpret_cast<comn_dateparts*>(older.data()));
  EXPECT_EQ(2003, older[0]);
}

// The text of a part, and nothing behind it.
template <class Value, class Name>
std::string name_of(Name name, int32_t part, const Value& value, const char* const* months,
                    const char* const* weekdays) {
  char text[] = "................................";
  const auto length = static_cast<size_t>(name(part, &value, text, months, weekdays));
  EXPECT_EQ(std::string(sizeof text - 1 - length, '.'), text + length);
  return {text, length};
}

TEST(DateOperations, PartsAndNames) {
  const comn_datetime value{day(2021, 1, 3), ticks(4, 5, 6, 13)};  // a Sunday; 43 ms
  const uint64_t big_value = big(value.days, micros(4, 5, 6, 43'219));
  const struct {
    int32_t value;
    const char* text;
  } rows[] = {{2021, "2021"}, {1, "1"},       {1, "January"}, {1, "Sunday"}, {3, "3"},
              {3, "3"},       {4, "4"},       {5, "5"},       {6, "6"},      {43, "43"},
              {2, "2"},       {2020, "2020"}, {53, "53"},     {7, "Sunday"}, {0, "0"}};
  const auto *const months = com__get_months(), *const weekdays = com__get_weekdays();
  for (int32_t part = 0; part <= 14; ++part) {
    const auto& row = rows[part];
    const bool is_last = part == COM_PART_MICROSECOND;
    EXPECT_EQ(row.value, com__datepart(part, &value, 7)) << part;
    EXPECT_EQ(row.value, com_datepart(part, &value, 7)) << part;
    EXPECT_EQ(is_last ? 43'219 : row.value, com__bigdatepart(part, &big_value, 7)) << part;
    EXPECT_EQ(row.text, name_of(com__datename, part, value, months, weekdays)) << part;
    EXPECT_EQ(is_last ? "43219" : row.text,
              name_of(com__bigdatename, part, big_value, months, weekdays))
        << part;
  }
  for (int32_t first_weekday = 1; first_weekday <= 7; ++first_weekday)
    EXPECT_EQ(8 - first_weekday, com__datepart(COM_PART_WEEKDAY, &value, first_weekday));
  const std::string long_name(40, 'x');
  const char* const names[12] = {long_name.c_str()};
  EXPECT_EQ(long_name.substr(0, 30), name_of(com_datename, 2, value, names, nullptr));
  EXPECT_EQ("Jan", name_of(com_datename, 2, value, com__get_shortmonths(), nullptr));
  for (const int32_t part : {2, 3, 13, 15, -1})
    EXPECT_EQ("", name_of(com__datename, part, value, nullptr, nullptr));
  EXPECT_EQ("*", name_of(com__datename, 0, comn_datetime{last + 1, 0}, nullptr, nullptr));
}

TEST(DatesDeathTest, Usage) {
  static comn_datetime value{};
  static comn_dateparts parts{};
  static uint64_t big_value = 0;
  static comnb_value bare{8, 187, 8, 0, 0, nullptr, &big_value}, empty{};
  static const comn_datafmt from = format_of(kDatetime), to = format_of(kDate4);
  static int32_t length = 0;
  // clang-format off
  void (*const null_pointers[])() = {
      [] { com__datecrack(nullptr, &parts); }, [] { com_timecrack(&value, nullptr); },
      [] { com__bigdatepart(0, nullptr, 7); }, [] { com_datecmp(&value, nullptr); },
      [] { com__datename(2, &value, nullptr, nullptr, nullptr); }, [] { com_date4zero(nullptr); },
      [] { com__datetodatea(&value, nullptr); }, [] { com__timea_check_range(nullptr); },
      [] { comn_datetodate4(shared_context(), &from, nullptr, &to, &big_value, &length); },
      [] { com__date_add(0, 0, nullptr); }, [] { com__dateadd_both(0, 0, &bare, &empty); },
      [] { com__bigdatediff(0, &big_value, &big_value, nullptr); },
  };
  void (*const assertions[])() = {
      [] { com__datepart(15, &value, 7); }, [] { com_datepart(-1, &value, 7); },
      [] { com__date_add(14, 0, &value); }, [] { com__date_add(-1, 0, &value); },
      [] { com__dateadd_both(14, 0, &bare, &bare); },
      [] { com__bigdateadd_both(15, 0, &bare, &bare); },
      [] { comn_datetodate4(shared_context(), &to, &value, &to, &big_value, &length); },
      [] { comn_datetodate4(shared_context(), &from, &value, &from, &big_value, &length); },
  };
  // clang-format on
  for (const auto& call : null_pointers)
    EXPECT_DEATH(call(), "NULL pointer") << &call - null_pointers;
  for (const auto& call : assertions)
    EXPECT_DEATH(call(), "assertion failed") << &call - assertions;
}

}  // namespace
}  // namespace tvx::test
