// Dates and times read from text.
#include <cstdio>

#include "conversion.hpp"
#include "peers/date_text_read.hpp"
#include "suite.hpp"
#include "tvxcomn/dateparse.h"
#include "tvxcomn/dispatch.h"

namespace tvx::bench {
namespace {

using peers::ReadForm;

constexpr int64_t kMicroseconds = 1'000'000;  // a second
constexpr int64_t kDay = 86'400 * kMicroseconds;
constexpr int64_t kDays1900To1970 = 25'567;
constexpr int64_t kDaysBefore1970 = 719'162 + 366;  // of the big types

const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Of the years 1950 to 2049, with a zero byte for the peers behind them.
template <ReadForm form>
std::vector<Text> texts() {
  return random_values([](auto& generator) {
    const auto below = [&](unsigned limit) { return static_cast<int>(generator() % limit); };
    const int year = 1950 + below(100), month = below(12), day = 1 + below(28);
    const int hour = below(24), minute = below(60), second = below(60), fraction = below(1000);
    Text text;
    text.length =
        form == ReadForm::kIso
            ? std::snprintf(text.bytes, Text::kCapacity, "%04d-%02d-%02dT%02d:%02d:%02d.%03d", year,
                            month + 1, day, hour, minute, second, fraction)
            : std::snprintf(text.bytes, Text::kCapacity, "%s %2d %04d %2d:%02d%s", kMonths[month],
                            day, year, (hour + 11) % 12 + 1, minute, hour < 12 ? "AM" : "PM");
    return text;
  });
}

// To the type of a destination code, by the routine that the table holds.
template <class Value, int32_t datatype>
auto conversion() {
  return [in = format_of(TVX_TYPE_CHAR, 0), out = format_of(datatype, 0),
          routine = com_conv_func(context(), TVX_TYPE_CHAR, datatype),
          conversion_context = context()](const Text& text) mutable {
    Value value;
    int32_t length;
    in.maxlength = text.length;
    routine(conversion_context, &in, text.bytes, &out, &value, &length);
    return value;
  };
}

// Microseconds since 1970 and a value of ours. The ticks of a datetime are those of milliseconds,
// the last of which do not reach the next second.
bool same_datetime(const comn_datetime& datetime, int64_t microseconds) {
  const int64_t since_1900 = microseconds + kDays1900To1970 * kDay;
  const int64_t milliseconds = since_1900 % kMicroseconds / 1000;
  const int64_t ticks = milliseconds == 999 ? 299 : (milliseconds * 3 + 5) / 10;
  return datetime.days == since_1900 / kDay &&
         datetime.ticks == since_1900 % kDay / kMicroseconds * 300 + ticks;
}

bool same_bigdatetime(uint64_t bigdatetime, int64_t microseconds) {
  return bigdatetime == static_cast<uint64_t>(microseconds + kDaysBefore1970 * kDay);
}

template <auto* function, ReadForm form>
int64_t peer_time(const Text& text) {
  return function(form, text.bytes, text.length);
}

template <ReadForm form, class Agree, class Ours>
void compare_form(Suite& suite, const char* name, Agree agree, Ours ours) {
  suite.compare({name, 0.333}, texts<form>(), agree, ours,
                Peer{"strptime", peer_time<peers::strptime_time, form>},
                Peer{"absl::ParseTime", peer_time<peers::absl_time, form>},
                Peer{"pgtypes", peer_time<peers::pgtypes_time, form>});
}

}  // namespace

void compare_date_text_reading(Suite& suite) {
  const auto to_datetime = conversion<comn_datetime, TVX_TYPE_DATETIME>();
  const auto to_bigdatetime = conversion<uint64_t, TVX_TYPE_BIGDATETIME>();
  compare_form<ReadForm::kIso>(suite, "ISO text to datetime", same_datetime, to_datetime);
  compare_form<ReadForm::kIso>(suite, "ISO text to bigdatetime", same_bigdatetime, to_bigdatetime);
  compare_form<ReadForm::kNamed>(suite, "char to datetime", same_datetime, to_datetime);
  compare_form<ReadForm::kNamed>(suite, "char to bigdatetime", same_bigdatetime, to_bigdatetime);
}

}  // namespace tvx::bench
