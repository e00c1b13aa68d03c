// Date and time text against a slow writer of strftime-like forms: every code, every type, every
// length of the buffer.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <tuple>

#include "datetime/clock_text.hpp"
#include "support/guarded_buffer.hpp"
#include "tvxcomn/tvxcomn.h"

namespace tvx::test {
namespace {

const char* const kShort[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const char* const kOdd[] = {"1",          "twelve chars", "nine char", "",          "eight ch",
                            "ten chars!", "July 2003",    "8",         "September", "O",
                            "No",         "December"};

struct Moment {
  int year, month, day, hour, minute, second, ticks, microseconds;  // the last two of the second
};

const Moment kMoments[] = {
    {2003, 1, 2, 14, 5, 9, 7, 23'000},        {1753, 1, 1, 0, 0, 0, 0, 0},
    {1999, 12, 31, 23, 59, 59, 299, 999'999}, {2000, 2, 29, 12, 0, 0, 1, 999'600},
    {2079, 6, 6, 1, 30, 0, 2, 499},           {1900, 11, 30, 13, 0, 1, 150, 500},
    {9999, 10, 10, 11, 59, 0, 30, 123'456}};

// ---- The values of a moment ----

int days_since(int year, const Moment& m) {
  using std::chrono::sys_days;
  const auto day = sys_days(std::chrono::year(m.year) / m.month / m.day);
  return static_cast<int>((day - sys_days(std::chrono::year(year) / 1 / 1)).count());
}
int ticks(const Moment& m) {
  return ((m.hour * 60 + m.minute) * 60 + m.second) * 300 + m.ticks;
}
uint64_t microseconds(const Moment& m) {
  return static_cast<uint64_t>(ticks(m) / 300) * 1'000'000 + static_cast<uint64_t>(m.microseconds);
}

using Formatter = std::function<int32_t(char*, int32_t, int32_t code, const char* const* names)>;

template <class Value>
Formatter formatter(int32_t (*function)(const Value*, char*, int32_t, int32_t, const char* const*),
                    std::type_identity_t<Value> value) {
  return [=](char* out, int32_t length, int32_t code, const char* const* names) {
    return function(&value, out, length, code, names);
  };
}

enum Type { kDatetime, kDate4, kDatea, kTimea, kBigdatetime, kBigtime };

Formatter formatter(Type type, const Moment& m) {
  const int days = days_since(1900, m);
  switch (type) {
    case kDatetime:
      return formatter(com__datetochar, {days, static_cast<uint32_t>(ticks(m))});
    case kDate4:
      return formatter(com__date4tochar, {static_cast<uint16_t>(days),
                                          static_cast<uint16_t>(m.hour * 60 + m.minute)});
    case kDatea:
      return formatter(com__dateatochar, days);
    case kTimea:
      return formatter(com__timeatochar, ticks(m));
    case kBigdatetime:
      return formatter(
          com__bigdatetimetochar,
          static_cast<uint64_t>(days_since(1, m) + 366) * 86'400'000'000 + microseconds(m));
    default:
      return formatter(com__bigtimetochar, microseconds(m));
  }
}

// What is left of a moment in a value.
Moment kept(Type type, Moment m) {
  const bool is_time = type == kTimea || type == kBigtime;
  if (type == kDatea) m.hour = m.minute = 0;
  if (type == kDatea || type == kDate4) m.second = m.ticks = 0;
  if (type != kBigdatetime && type != kBigtime) m.microseconds = m.ticks * 10 / 3 * 1000;
  if (is_time) m.year = type == kTimea ? 1900 : 1, m.month = m.day = 1;
  return m;
}

// ---- The expected text ----

// As in strftime, %e and %l with blanks; also %L milliseconds, %f microseconds, %E the year with
// blanks, %0 a zero byte.
// clang-format off
const struct Form {
  int code;
  const char *text, *century;
} kForms[] = {
    {0, "%b %e %Y %l:%M%p", "%b %e %Y %l:%M%p"}, {1, "%m/%d/%y", "%m/%d/%Y"},
    {2, "%y.%m.%d", "%Y.%m.%d"}, {3, "%d/%m/%y", "%d/%m/%Y"}, {4, "%d.%m.%y", "%d.%m.%Y"},
    {5, "%d-%m-%y", "%d-%m-%Y"}, {6, "%d %b %y", "%d %b %Y"}, {7, "%b %d, %y", "%b %d, %Y"},
    {8, "%H:%M:%S", "%H:%M:%S"}, {9, "%b %e %Y %l:%M:%S:%L%p", "%b %e %Y %l:%M:%S:%L%p"},
    {10, "%m-%d-%y", "%m-%d-%Y"}, {11, "%y/%m/%d", "%Y/%m/%d"}, {12, "%y%m%d", "%Y%m%d"},
    {13, "%y/%d/%m", "%Y/%d/%m"}, {14, "%m/%y/%d", "%m/%Y/%d"}, {15, "%d/%y/%m", "%d/%Y/%m"},
    {16, "%b %e %Y %H:%M:%S", "%b %e %Y %H:%M:%S"}, {17, "%l:%M%p", "%l:%M%p"},
    {18, "%H:%M", "%H:%M"}, {19, "%l:%M:%S:%L%p", nullptr}, {20, "%H:%M:%S:%L", nullptr},
    {21, "%y/%m/%d %H:%M:%S", "%Y/%m/%d %H:%M:%S"}, {22, "%y/%m/%d %l:%M%p", "%Y/%m/%d %l:%M%p"},
    {23, "%Y-%m-%dT%H:%M:%S", nullptr}, {36, "%l:%M:%S.%f%p", "%l:%M:%S.%f%p"},
    {37, "%H:%M:%S.%f", "%H:%M:%S.%f"}, {38, "%b %e %y %l:%M:%S.%f%p", "%b %e %Y %l:%M:%S.%f%p"},
    {39, "%b %e %y %H:%M:%S.%f", "%b %e %Y %H:%M:%S.%f"},
    {40, "%y-%m-%d %H:%M:%S.%f", "%Y-%m-%d %H:%M:%S.%f"}};
// clang-format on

// Null: refused.
const char* form_of(Type type, int code) {
  const bool is_time = type == kTimea || type == kBigtime;
  if (type == kDatea && (code == 0 || code == 9)) return "%b %e %Y";
  if (is_time && code == 0) return "%l:%M%p";
  if (is_time && code == 9) return "%l:%M:%S:%L%p";
  if (is_time && code == 100) return "%b %e %E %l:%M%p";
  if (is_time && code == 109) return "%b %e %E %l:%M:%S:%L%p";
  for (const auto& [first, last] : {std::pair{1, 7}, {10, 15}, {101, 107}, {110, 115}})
    if (is_time && code >= first && code <= last) return "%0";
  for (const Form& form : kForms) {
    if (form.code == code) return form.text;
    if (form.code + 100 == code) return form.century;
  }
  return nullptr;
}

std::string expected(const char* form, const Moment& m, const char* const* names) {
  const int half = m.hour % 12 == 0 ? 12 : m.hour % 12;
  const int milliseconds = std::min((m.microseconds + 500) / 1000, 999);
  const std::map<char, std::pair<const char*, int>> numbers = {
      {'e', {"%2d", m.day}},           {'d', {"%02d", m.day}},
      {'m', {"%02d", m.month}},        {'Y', {"%04d", m.year}},
      {'y', {"%02d", m.year % 100}},   {'E', {"%4d", m.year}},
      {'H', {"%02d", m.hour}},         {'l', {"%2d", half}},
      {'M', {"%02d", m.minute}},       {'S', {"%02d", m.second}},
      {'f', {"%06d", m.microseconds}}, {'L', {"%03d", milliseconds}}};
  std::string text;
  for (; *form != '\0'; ++form) {
    if (*form != '%') {
      text += *form;
    } else if (*++form == 'b') {
      text += std::string(names[m.month - 1]).substr(0, 9);
    } else if (*form == 'p') {
      text += m.hour < 12 ? "AM" : "PM";
    } else if (*form == '0') {
      text += '\0';
    } else {
      const auto& [format, number] = numbers.at(*form);
      char digits[16];
      std::snprintf(digits, sizeof digits, format, number);
      text += digits;
    }
  }
  return text;
}

// ---- Tests ----

struct Written {
  int32_t result;
  std::string text;
  bool operator==(const Written&) const = default;
};

// The text, or what is left of it, in a buffer of `room` bytes.
Written written(int32_t result, const std::string& text, size_t room) {
  std::string buffer(room, '#');
  return {result, buffer.replace(0, std::min(room, text.size()), text, 0, room)};
}

// Formats into a buffer of `room` bytes in front of an inaccessible page.
Written format(const Formatter& formatter, int code, const char* const* names, size_t room,
               int32_t length) {
  static GuardedBuffer buffer(4096);
  char* const out = reinterpret_cast<char*>(buffer.data()) + buffer.size() - room;
  std::fill(out - 1, out + room, '#');
  const int32_t result = formatter(out, length, code, names);
  EXPECT_EQ(out[-1], '#');
  return {result, std::string(out, room)};
}

void check_form(const Formatter& formatter, int code, const char* form, const Moment& moment,
                const char* const* names) {
  const std::string text = expected(form, moment, names);
  const auto length = static_cast<int32_t>(text.size());
  const bool has_name = std::string(form).find("%b") != std::string::npos;
  ASSERT_EQ(format(formatter, code, names, text.size(), -1), (Written{length, text}));
  ASSERT_EQ(format(formatter, code, nullptr, text.size(), length),
            has_name ? written(-2, "", text.size()) : (Written{length, text}));
  for (size_t room = 0; room < text.size() + 2; ++room)
    ASSERT_EQ(format(formatter, code, names, room, static_cast<int32_t>(room)),
              written(room < text.size() ? 0 : length, text, room));
}

TEST(Formatter, EveryCodeOfEveryTypeAtEveryLength) {
  for (const Moment& moment : kMoments)
    for (const Type type : {kDatetime, kDate4, kDatea, kTimea, kBigdatetime, kBigtime}) {
      if (type == kDate4 && (moment.year < 1900 || moment.year > 2079)) continue;
      const Formatter formatter = test::formatter(type, moment);
      for (int code = -5; code <= 150; ++code) {
        SCOPED_TRACE(testing::Message() << "type " << type << ", code " << code);
        const char* const form = form_of(type, code);
        if (form == nullptr) {
          ASSERT_EQ(format(formatter, code, kShort, 50, -1), written(-1, "", 50));
          ASSERT_EQ(format(formatter, code, nullptr, 0, 0).result, -1);
        } else {
          check_form(formatter, code, form, kept(type, moment), kShort);
          check_form(formatter, code, form, kept(type, moment), kOdd);
        }
      }
    }
}

TEST(Formatter, Samples) {
  const std::tuple<Type, int, std::string> rows[] = {{kDatetime, 0, "Jan  2 2003  2:05PM"},
                                                     {kBigdatetime, 7, "Jan 02, 03"},
                                                     {kDatetime, 9, "Jan  2 2003  2:05:09:023PM"},
                                                     {kBigdatetime, 36, " 2:05:09.023000PM"},
                                                     {kDatetime, 140, "2003-01-02 14:05:09.023000"},
                                                     {kDatea, 100, "Jan  2 2003 12:00AM"},
                                                     {kTimea, 109, "Jan  1 1900  2:05:09:023PM"},
                                                     {kBigtime, 100, "Jan  1    1  2:05PM"},
                                                     {kDate4, 20, "14:05:00:000"},
                                                     {kBigtime, 121, "0001/01/01 14:05:09"}};
  for (const auto& [type, code, text] : rows)
    EXPECT_EQ(format(formatter(type, kMoments[0]), code, kShort, text.size(), -1),
              (Written{static_cast<int32_t>(text.size()), text}));
}

TEST(Formatter, TextsReadBackToWhatTheyShow) {
  const std::map<std::string, int> orders = {{"", 1},    {"mdy", 1}, {"dmy", 2}, {"ymd", 3},
                                             {"ydm", 4}, {"myd", 5}, {"dym", 6}};
  for (const Moment& moment : kMoments)
    for (int code = 0; code <= 140; ++code) {
      const char* const form = form_of(kDatetime, code);
      if (form == nullptr) continue;
      Moment shown = moment;
      std::string order, fields(form);
      const auto has = [&](const char* any_of) {
        return fields.find_first_of(any_of) != fields.npos;
      };
      fields.erase(std::remove_if(fields.begin(), fields.end(), [](char c) { return !isalpha(c); }),
                   fields.end());
      // Two digits of a year are those of 1950 to 2049.
      if (has("y")) shown.year = moment.year % 100 + (moment.year % 100 < 50 ? 2000 : 1900);
      if (!has("yY")) shown.year = 1900, shown.month = shown.day = 1;
      if (!has("Hl")) shown.hour = shown.minute = 0;
      if (!has("S")) shown.second = 0;
      if (!has("Lf")) shown.ticks = 0;
      for (const char c : fields)
        if (!has("b") && std::string("mdyY").find(c) != std::string::npos)
          order += static_cast<char>(tolower(c));

      char text[40];
      const int32_t length = formatter(kDatetime, moment)(text, 40, code, kShort);
      comn_datetime read{};
      int32_t lost_digits = 0;
      ASSERT_EQ(com__datefromchar_mb(text, length, 0, orders.at(order), kShort, kShort, nullptr,
                                     &read, &lost_digits),
                0)
          << std::string(text, static_cast<size_t>(length));
      EXPECT_EQ(read.days, days_since(1900, shown)) << "code " << code;
      EXPECT_EQ(read.ticks, static_cast<uint32_t>(ticks(shown))) << "code " << code;
    }
}

TEST(Formatter, ValuesOutsideTheirRange) {
  // All that is asked of them is the length of their form.
  const Formatter odd[] = {formatter(com__datetochar, {INT_MIN, UINT_MAX}),
                           formatter(com__datetochar, {INT_MAX, (1u << 25) - 1}),
                           formatter(com__date4tochar, {USHRT_MAX, USHRT_MAX}),
                           formatter(com__dateatochar, INT_MIN),
                           formatter(com__dateatochar, INT_MAX),
                           formatter(com__bigdatetimetochar, 0),
                           formatter(com__bigdatetimetochar, ULLONG_MAX)};
  for (const Formatter& formatter : odd)
    for (int code = 1; code <= 140; ++code) {
      const char* const form = form_of(kDatetime, code);
      if (form == nullptr || code == 9) continue;
      const size_t length = expected(form, kMoments[0], kShort).size();
      EXPECT_EQ(format(formatter, code, kShort, length, -1).result, static_cast<int32_t>(length));
    }
  // The last digits of a longer year; the low 25 bits of the ticks.
  EXPECT_EQ(format(formatter(com__dateatochar, 2'958'464), 112, kShort, 8, 8).text, "00000101");
  EXPECT_EQ(format(formatter(com__timeatochar, -1), 8, kShort, 8, 8).text, "31:04:08");
}

TEST(ClockText, OrdersAndClocks) {
  const char* const dates[] = {"02/03/01", "02/03/01", "03/02/01", "01/02/03",
                               "01/03/02", "02/01/03", "03/01/02", "02/03/01"};
  const std::pair<int, const char*> halves[] = {{0, "00:05:09 AM"},
                                                {11, "11:05:09 AM"},
                                                {12, "12:05:09 PM"},
                                                {13, "01:05:09 PM"},
                                                {23, "11:05:09 PM"}};
  for (int order = 0; order < 8; ++order)
    for (const auto& [hour, half] : halves) {
      const os::LocalTime time{2001, 1, 3, 34, 6, hour, 5, 9};
      char whole[32];
      std::snprintf(whole, sizeof whole, "%s %02d:05:09", dates[order], hour);
      GuardedText twelve("", 21), twenty_four("", 18);
      datetime::write_clock_text(twelve.begin(), time, order, datetime::Clock::kTwelveHour);
      datetime::write_clock_text(twenty_four.begin(), time, order,
                                 datetime::Clock::kTwentyFourHour);
      EXPECT_EQ(twelve.string(), std::string(dates[order]) + " " + half);
      EXPECT_EQ(twenty_four.string(), whole);
    }
}

}  // namespace
}  // namespace tvx::test
