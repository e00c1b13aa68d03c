// Dates and times written as text.
#include <algorithm>
#include <functional>

#include "conversion.hpp"
#include "peers/date_text_write.hpp"
#include "suite.hpp"
#include "tvxcomn/dateformat.h"

namespace tvx::bench {
namespace {

using peers::DateForm;

constexpr int64_t kMicroseconds = 1'000'000;  // a second
constexpr int64_t kDay = 86'400 * kMicroseconds;
constexpr int64_t kDays1900To1970 = 25'567;
constexpr int64_t kDays1970To2000 = 10'957;
constexpr int64_t kDaysBefore1970 = 719'162 + 366;  // of the big types

const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// A point of time in every form that a side takes.
struct Instant {
  int64_t since_1970, since_2000;  // microseconds
  comn_datetime datetime;
  uint64_t bigdatetime;

  friend std::ostream& operator<<(std::ostream& out, const Instant& instant) {
    return out << instant.since_1970 << " microseconds since 1970";
  }
};

Instant instant_of(int64_t days_since_1900, int64_t of_day) {
  const int64_t since_1970 = (days_since_1900 - kDays1900To1970) * kDay + of_day;
  return {
      since_1970,
      since_1970 - kDays1970To2000 * kDay,
      {static_cast<int32_t>(days_since_1900), static_cast<uint32_t>(of_day / kMicroseconds * 300)},
      static_cast<uint64_t>(since_1970 + kDaysBefore1970 * kDay)};
}

// Of the years 1900 to 2099, without what a peer writes differently: hour 12 of the 12-hour clock,
// and zeros at the end of a fraction.
std::vector<Instant> instants(bool whole_seconds) {
  return random_values([whole_seconds](auto& generator) {
    const auto days = static_cast<int64_t>(generator() % 73'000);
    const auto hour = static_cast<int64_t>(generator() % 2 * 12 + 1 + generator() % 11);
    const auto second = static_cast<int64_t>(generator() % 3600);
    const auto fraction = static_cast<int64_t>(generator() % 100'000 * 10 + 1);
    const int64_t seconds = (hour * 3600 + second) * kMicroseconds;
    return instant_of(days, seconds + (whole_seconds ? 0 : fraction));
  });
}

// The same but for the "T" between date and time.
bool same_text(const Text& a, const Text& b) {
  return std::equal(a.bytes, a.bytes + a.length, b.bytes, b.bytes + b.length,
                    [](char x, char y) { return x == y || (x == 'T' && y == ' '); });
}

template <auto* function, DateForm form, int64_t Instant::*time>
Text peer_text(const Instant& instant) {
  Text text;
  text.length = function(form, instant.*time, text.bytes);
  return text;
}

template <DateForm form, class Ours>
void compare_form(Suite& suite, const char* name, Ours ours) {
  suite.compare({name, 0.333}, instants(form != DateForm::kFraction), same_text, ours,
                Peer{"strftime", peer_text<peers::strftime_text, form, &Instant::since_1970>},
                Peer{"absl::FormatTime", peer_text<peers::absl_text, form, &Instant::since_1970>},
                Peer{"pgtypes", peer_text<peers::pgtypes_text, form, &Instant::since_2000>});
}

template <int32_t code>
Text datetime_text(const Instant& instant) {
  Text text;
  text.length = com__datetochar(&instant.datetime, text.bytes, Text::kCapacity, code, kMonths);
  return text;
}

template <int32_t code>
Text bigdatetime_text(const Instant& instant) {
  Text text;
  text.length =
      com__bigdatetimetochar(&instant.bigdatetime, text.bytes, Text::kCapacity, code, kMonths);
  return text;
}

}  // namespace

void compare_date_text_writing(Suite& suite) {
  const auto convert = [in = format_of(TVX_TYPE_DATETIME, 0),
                        out = format_of(TVX_TYPE_CHAR, Text::kCapacity),
                        conversion_context = context()](const Instant& instant) {
    Text text;
    comn_datetochar(conversion_context, &in, &instant.datetime, &out, text.bytes, &text.length);
    return text;
  };
  compare_form<DateForm::kNamed>(suite, "datetime to char", convert);
  compare_form<DateForm::kIso>(suite, "datetime to ISO text", datetime_text<23>);
  compare_form<DateForm::kFraction>(suite, "bigdatetime to ISO text", bigdatetime_text<140>);
}

}  // namespace tvx::bench
