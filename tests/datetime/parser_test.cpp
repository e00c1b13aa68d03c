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
  int64_t (*const minutes)(const comn_datetime4&) =
      [](auto& v) { return int64_t{v.days} * 1440 + v.minutes; };
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
    case kDatetime:
      return days < -53'690 ? Outcome{1, 0, lost} : Outcome{0, days * kTicks + ticks, lost};
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
    {"10:20:30.0015", {0, 1, 1, 10, 20, 30, 1'500}},
    {"10:20:30.123456 1/2/3", {2003, 1, 2, 10, 20, 30, 123'456}},
    {"10:20:30.00012345", {0, 1, 1, 10, 20, 30, 12'345}},
    {"23:59:59.99951", {0, 1, 1, 23, 59, 59, 999'510}}, {"00010101", {1, 1, 1}},
    {"23:59:30 6/6/2079", {2079, 6, 6, 23, 59, 30}}, {"02/29/2000", {2000, 2, 29}},
    {"23:59:29.995 6/6/2079", {2079, 6, 6, 23, 59, 29, 995'000}}, {"Jan 1 1753", {1753, 1, 1}},
    {"Dec 31 1752 1:00", {1752, 12, 31, 1}},
    {"9999-12-31 23:59:59.999", {9999, 12, 31, 23, 59, 59, 999'000}},
};

constexpr int32_t kSame = 77;  // as datetime and date together
const struct {
  std::string_view text;
  int32_t datetime, date = kSame, time_only = -2, time = 0;
} kErrors[] = {
    {"1/2/100", 1}, {"Jan 2 100", 1}, {"02/30/2003", 3}, {"2/29/1900", 3}, {"0/1/2003", 2},
    {"13/1/2003", 2}, {"20031301", 2}, {"20030100", 3}, {"0000-01-02", 1},
    {"24:00", 1, kSame, 1, 1}, {"1/2/3 10:60", 1, kSame, -2, 1}, {"10:20:60", 1, kSame, 1, 1},
    {"0 PM", 9, kSame, 9, 9},
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
  const std::set<int> given{0, 9}, any{1, 10, 2, 11, 21, 22, 23, 3, 4, 5},
      day_month{3, 4, 5, 103, 104, 105}, required{101, 110, 102, 111, 103, 104, 105},
      month_day{1, 10, 101, 110};
  for (int code = -1; code <= 150; ++code)
    for (int order = 1; order <= 6; ++order) {
      const ReadingRules rules{code, order, kEnglish, nullptr};
      const bool is_given = given.contains(code), takes_long = is_given || required.contains(code);
      const int in_force = is_given                   ? order
                           : month_day.contains(code) ? 1
                           : day_month.contains(code) ? 2
                                                      : 3;
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

// ---- Random tokens -----------------------------------------------------------------------------

struct Piece {
  std::string_view text;
  char kind;  // n (1 to 3 digits), y (4), 5, p (6 or 8), T, m ("AM" or "PM"), M (a month), a sign
  int value = 0;
  bool used = false;
};

constexpr Piece kPieces[] = {{"0", 'n', 0},
                             {"7", 'n', 7},
                             {"12", 'n', 12},
                             {"31", 'n', 31},
                             {"050", 'n', 50},
                             {"100", 'n', 100},
                             {"2003", 'y', 2003},
                             {"0000", 'y', 0},
                             {"99", 'n', 99},
                             {"12345", '5', 12'345},
                             {"030102", 'p', 30'102},
                             {"20031231", 'p', 20'031'231},
                             {":", ':'},
                             {",", ','},
                             {"-", '-'},
                             {"/", '-'},
                             {".", '.'},
                             {"T", 'T'},
                             {"am", 'm', 0},
                             {"PM", 'm', 1},
                             {"Jan", 'M', 0},
                             {"February", 'M', 1}};

// The grammar as a walk over a list of tokens, and the range checks of what it finds.
Outcome walk(Destination to, std::vector<Piece> list, const ReadingRules& rules) {
  const bool dates = to != kTime && to != kBigtime && to != kTimeOnly;
  const bool big = to == kBigdatetime || to == kBigtime;
  const bool ignores_rest = to == kDate || to == kTime || to == kBigtime;
  const size_t none = list.size() + 10;
  Moment m;
  const auto is = [&](size_t i, std::string_view kinds) {
    return i < list.size() && !list[i].used && kinds.find(list[i].kind) != kinds.npos;
  };
  const auto first = [&](std::string_view kinds, size_t i = 0) {
    while (i < list.size() && !is(i, kinds)) ++i;
    return i < list.size() ? i : none;
  };
  const auto take = [&](size_t i) { return list[i].used = true, list[i].value; };
  const auto number = [&](size_t i, int& value) { return is(i, "n") && (value = take(i), true); };
  const auto accept = [&](size_t i, std::string_view kinds) {
    return is(i, kinds) && (take(i), true);
  };
  const auto left = [&](size_t i = 0) { return first("ny5p:,-.TmM", i) != none; };
  const auto finish = [&](bool has_date, bool whole) -> Outcome {
    if (whole && left()) return {-2};
    if (m.hour > 23 || m.minute > 59 || m.second > 59 || (big && m.microsecond > 999'999))
      return {1};
    if (!has_date) return value_of(to, m);
    if (m.year < 1 || m.year > 9999) return {1};
    if (m.month < 1 || m.month > 12) return {2};
    return (std::chrono::year(m.year) / m.month / m.day).ok() ? value_of(to, m) : Outcome{3};
  };

  if (list.size() > 20) return {-1};
  size_t marker = first("m", 1);
  if (const size_t colon = first(":"); colon != none && colon > 0) {
    marker = colon + 2;
    take(colon);
    if (!number(colon - 1, m.hour) || !number(colon + 1, m.minute)) return {-1};
    if (accept(colon + 2, ":")) {
      if (!number(colon + 3, m.second)) return {-1};
      marker = colon + 4;
      if (accept(colon + 4, ":")) {
        if (!number(colon + 5, m.microsecond)) return {-1};
        m.microsecond *= 1000, marker = colon + 6;
      } else if (accept(colon + 4, ".")) {
        if (!is(colon + 5, "ny5p")) return {-1};
        m.microsecond = take(colon + 5), marker = colon + 6;
        for (size_t n = list[colon + 5].text.size(); n < 6; ++n) m.microsecond *= 10;
        if (!big && m.microsecond >= 1'000'500) return {-1};
      }
    }
  } else if (marker != none && !number(marker - 1, m.hour)) {
    return {-1};
  }
  if (is(marker, "m")) {
    const bool pm = take(marker) == 1;
    if (pm ? m.hour == 0 || m.hour > 23 : m.hour > 12) return {9};
    if (m.hour == 12) m.hour = 0;
    if (pm && m.hour < 12) m.hour += 12;
  }
  if (!dates) return finish(false, !ignores_rest);

  if (const size_t t = first("T"); t != none)
    if (take(t); t + 1 == list.size() || left(t)) return {-1};
  const auto short_year = [&] {
    if (!number(first("n"), m.year)) return -1;
    const bool fits = m.year <= 99;
    m.year += m.year < 50 ? 2000 : 1900;
    return fits ? 0 : 1;
  };
  const size_t year = first("y");
  if (const size_t month = first("M"); month != none) {
    m.month = take(month) + 1;
    const bool separated = month > 0 && accept(month - 1, "-.");
    accept(month + 1, separated ? "-.," : ",");
    if (year != none) m.year = take(year);
    const size_t day = first("n");
    if (number(day, m.day))
      accept(day + 1, ",");
    else if (year == none)
      return {-1};
    if (const int status = year == none ? short_year() : 0; status != 0) return {status};
  } else if (const size_t one = first("-.", 1); one != none) {
    if (take(one); !accept(first("-.", one + 1), "-.")) return {-1};
    const bool given = rules.format_code == 0, required = rules.format_code == 101;
    if (required && year == none) return {-1};
    const bool long_year = rules.format_code != 1 && year != none;
    if (long_year) m.year = take(year);
    int order = given ? rules.order : 1;
    if (given && long_year && year == 0 && order != 4) order = 3;
    const char* const orders[] = {"mdy", "dmy", "ymd", "ydm", "myd", "dym"};
    for (const char part : std::string(orders[order - 1])) {
      int status = 0;
      if (part != 'y')
        status = number(first("n"), part == 'm' ? m.month : m.day) ? 0 : -1;
      else if (!long_year)
        status = short_year();
      if (status != 0) return {status};
    }
  } else if (const size_t packed = first("p"); packed != none) {
    const int date = take(packed);
    m.year = date / 10'000, m.month = date / 100 % 100, m.day = date % 100;
    if (list[packed].text.size() == 6) m.year += m.year < 50 ? 2000 : 1900;
  } else {
    if (year != none) m.year = take(year);
    return finish(year != none, true);
  }
  return finish(true, !ignores_rest);
}

TEST(Parser, RandomTokens) {
  const std::vector<std::vector<size_t>> shapes = {{1, 14, 2, 13, 4},
                                                   {6, 14, 1, 14, 2, 17, 2, 12, 3, 12, 1, 16, 5},
                                                   {20, 1, 13, 6, 2, 12, 3, 19},
                                                   {10, 2, 12, 3, 12, 1, 12, 5},
                                                   {1, 14, 21, 13, 4},
                                                   {1, 15, 2, 15, 8},
                                                   {2, 19},
                                                   {6},
                                                   {}};
  std::mt19937 random(20'240'611);
  const auto below = [&](size_t count) { return random() % count; };
  int dates = 0;
  for (int round = 0; round < 50'000; ++round) {
    std::vector<size_t> tokens = shapes[below(shapes.size())];
    for (size_t changes = below(5); changes > 0; --changes) {
      const auto at = tokens.begin() + static_cast<ptrdiff_t>(below(tokens.size() + 1));
      const size_t token = below(std::size(kPieces));
      if (at == tokens.end() || below(2) == 0)
        tokens.insert(at, token);
      else if (below(2) == 0)
        *at = token;
      else
        tokens.erase(at);
    }
    if (below(64) == 0) tokens.resize(below(24), 13);
    std::vector<Piece> list;
    std::string text;
    for (const size_t token : tokens) {
      list.push_back(kPieces[token]);
      // Signs part numbers and words as well as blanks do.
      const bool joined =
          !text.empty() && std::isalnum(text.back()) && std::isalnum(list.back().text[0]);
      text.append(joined ? 1 : below(2), ' ').append(list.back().text);
    }
    const int32_t codes[] = {0, 0, 0, 1, 101};
    const ReadingRules rules{codes[below(5)], static_cast<int32_t>(1 + below(6)), kEnglish,
                             nullptr};
    for (const Destination to : kAll) {
      const Outcome got = read(to, text, rules);
      Outcome wanted = walk(to, list, rules);
      if (wanted.status != 0) wanted.lost_digits = got.lost_digits;
      ASSERT_EQ(wanted, got) << '"' << text << "\" to " << to << ", code " << rules.format_code
                             << ", order " << rules.order;
      dates += got.status == 0 && to == kBigdatetime ? 1 : 0;
    }
  }
  EXPECT_GT(dates, 10'000);
}

// ---- Words and characters ----------------------------------------------------------------------

TEST(Parser, Names) {
  const std::string thirty(30, 'x'), more(31, 'y');
  const char* full[12] = {"janvier", "f\x82vrier", thirty.c_str(), more.c_str(), "Q", "T", "seven"};
  const char* abbreviated[12] = {"janv", "seven", "Q", "mar", "", "am", "ja"};
  std::fill(full + 7, full + 12, "-");
  std::fill(abbreviated + 7, abbreviated + 12, "jan");
  const auto month_of = [](const std::string& word, const MonthNames& names) {
    const Outcome outcome = read(kDate, word + " 2 2003", {0, 1, names, nullptr});
    for (int month = 1; month <= 12; ++month)
      if (outcome == value_of(kDate, {2003, month, 2})) return month;
    return outcome.status;
  };
  const std::pair<std::string, int> words[] = {
      {"JANVIER", 1}, {"janvie", -1}, {"janviers", -1}, {"F\x90VRIER", 2}, {"Fevrier", -1},
      {thirty, 3},    {more, -1},     {"q", 5},         {"seven", 7},      {"Mar", 4},
      {"jan", 8},     {"ja", 7},      {"janv", 1},      {"xx", -1},        {"March", -1}};
  for (const auto& [word, month] : words)
    EXPECT_EQ(month, month_of(word, {full, abbreviated})) << word;

  // The built-in names are found in a way of their own, which their copies are not.
  std::vector<const char*> copies(std::begin(kShortMonths), std::end(kShortMonths));
  for (const MonthNames& names : {kEnglish, MonthNames{kMonths, copies.data()}})
    for (int i = 0; i < 12; ++i)
      for (const std::string name : {kMonths[i], kShortMonths[i]}) {
        EXPECT_EQ(i + 1, month_of(name, names));
        const std::string cut = name.substr(0, name.size() - 1);
        for (const std::string& wrong : {name + "x", "x" + name.substr(1), cut})
          EXPECT_EQ(wrong == "Jun" ? 6 : wrong == "Jul" ? 7 : -1, month_of(wrong, names)) << wrong;
      }
  for (const MonthNames& names :
       {MonthNames{nullptr, kShortMonths}, MonthNames{kMonths, nullptr}}) {
    EXPECT_EQ(-1, month_of("Jan", names));
    EXPECT_EQ(value_of(kDatetime, {2003, 1, 2, 22}),
              read(kDatetime, "2003-1-2t10:00PM", {0, 1, names, nullptr}));
  }
}

TEST(Parser, Characters) {
  const MultibyteRecord record;
  ReadingRules rules{0, 1, kEnglish, record.get()};
  // Its table of ASCII forms keeps case.
  EXPECT_EQ(value_of(kDate, {2003, 1, 2}), read(kDate, "Jan 2 2003", rules));
  for (const char* const text : {"jan 2 2003", "10 pm"})
    EXPECT_EQ(-1, read(kDate, text, rules).status);
  using Record = MultibyteRecord;
  for (const std::string_view part :
       {Record::kNoAscii, Record::kNoAsciiWithLetter, std::string_view("\x82")})
    for (const char* const text : {"", "2003", "2003-01-02T", "Jan"})
      EXPECT_EQ(-1, read(kDatetime, text + std::string(part), rules).status);
  // Thirty bytes are fifteen wide letters; with one more they are no word.
  const std::string narrow(15, 'x'), wide = Record::full_width(narrow);
  const std::vector<const char*> names(12, wide.c_str());
  rules.months = {names.data(), names.data()};
  for (const auto& [word, status] : {std::pair{wide, 0}, {narrow, 0}, {wide + "x", -1}})
    EXPECT_EQ(status, read(kDate, "2" + word + "2003", rules).status) << word;
}

TEST(Parser, RandomBytes) {
  const MultibyteRecord two_byte, four_byte(MultibyteRecord::FourByte::kYes);
  const com_charattr* const records[] = {nullptr, two_byte.get(), four_byte.get()};
  constexpr size_t kLongest = 1'100;
  GuardedBuffer buffer(kLongest);
  std::mt19937 random(20'240'612);
  const std::set<int32_t> documented{0, -1, -2, 1, 2, 3, 9};
  constexpr std::string_view kLikely = "0123456789 :/-.,TtAPMampm\x82\x60JanFeb";
  for (size_t round = 0; round < 5'000; ++round) {
    const size_t length = random() % (round % 3 == 0 ? kLongest + 1 : 24);
    char* const text = reinterpret_cast<char*>(buffer.data()) + kLongest - length;
    for (size_t i = 0; i < length; ++i)
      text[i] = round % 2 == 0 ? static_cast<char>(random()) : kLikely[random() % kLikely.size()];
    for (const com_charattr* record : records)
      for (const Destination to : kAll)
        EXPECT_TRUE(documented.contains(read(to, {text, length}, {0, 1, kEnglish, record}).status));
  }
}

}  // namespace
}  // namespace tvx::test
