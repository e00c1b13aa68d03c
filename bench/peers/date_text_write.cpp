// Points of time as text by the C library, Abseil and ecpg's pgtypes.
#include "peers/date_text_write.hpp"

#include <absl/time/time.h>
#include <pgtypes_timestamp.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace tvx::bench::peers {
namespace {

constexpr int64_t kMicroseconds = 1'000'000;  // a second
constexpr size_t kCapacity = 40;

// Not a constant: the compiler would hold it against ISO C, which has no %l.
const char* strftime_form(DateForm form) {
  switch (form) {
    case DateForm::kNamed:
      return "%b %e %Y %l:%M%p";
    case DateForm::kIso:
      return "%Y-%m-%dT%H:%M:%S";
    default:
      return "%Y-%m-%d %H:%M:%S";
  }
}

const char* absl_form(DateForm form) {
  return form == DateForm::kFraction ? "%Y-%m-%d %H:%M:%E6S" : strftime_form(form);
}

}  // namespace

int32_t strftime_text(DateForm form, int64_t microseconds, char* out) {
  int64_t fraction = microseconds % kMicroseconds;
  if (fraction < 0) fraction += kMicroseconds;
  const std::time_t seconds = (microseconds - fraction) / kMicroseconds;
  std::tm parts;
  gmtime_r(&seconds, &parts);
  auto length = static_cast<int32_t>(std::strftime(out, kCapacity, strftime_form(form), &parts));
  if (form == DateForm::kFraction)
    length += std::snprintf(out + length, kCapacity - static_cast<size_t>(length), ".%06d",
                            static_cast<int>(fraction));
  return length;
}

int32_t absl_text(DateForm form, int64_t microseconds, char* out) {
  static const absl::TimeZone utc = absl::UTCTimeZone();
  const std::string text =
      absl::FormatTime(absl_form(form), absl::FromUnixMicros(microseconds), utc);
  std::memcpy(out, text.data(), text.size());
  return static_cast<int32_t>(text.size());
}

int32_t pgtypes_text(DateForm form, int64_t microseconds, char* out) {
  timestamp value = microseconds;
  if (form == DateForm::kNamed) {
    PGTYPEStimestamp_fmt_asc(&value, out, kCapacity, strftime_form(form));
    return static_cast<int32_t>(std::strlen(out));
  }
  char* const text = PGTYPEStimestamp_to_asc(value);
  const size_t length = std::strlen(text);
  std::memcpy(out, text, length);
  std::free(text);
  return static_cast<int32_t>(length);
}

}  // namespace tvx::bench::peers
