// Points of time read from text by the C library, Abseil and ecpg's pgtypes.
#include "peers/date_text_read.hpp"

#include <absl/strings/string_view.h>
#include <absl/time/time.h>
#include <pgtypes_timestamp.h>

#include <cmath>
#include <cstdlib>
#include <ctime>

namespace tvx::bench::peers {
namespace {

constexpr int64_t kMicroseconds = 1'000'000;  // a second
constexpr int64_t kSeconds1970To2000 = 946'684'800;

}  // namespace

int64_t strptime_time(ReadForm form, const char* text, int32_t) {
  const bool named = form == ReadForm::kNamed;
  std::tm parts{};
  const char* const rest = strptime(text, named ? "%b %e %Y %I:%M%p" : "%Y-%m-%dT%H:%M:%S", &parts);
  const double fraction = rest != nullptr && *rest == '.' ? std::strtod(rest, nullptr) : 0;
  return timegm(&parts) * kMicroseconds + std::llround(fraction * kMicroseconds);
}

int64_t absl_time(ReadForm form, const char* text, int32_t length) {
  const bool named = form == ReadForm::kNamed;
  absl::Time time;
  absl::ParseTime(named ? "%b %e %Y %I:%M%p" : "%Y-%m-%dT%H:%M:%E*S",
                  absl::string_view(text, static_cast<size_t>(length)), &time, nullptr);
  return absl::ToUnixMicros(time);
}

int64_t pgtypes_time(ReadForm, const char* text, int32_t) {
  const timestamp since_2000 = PGTYPEStimestamp_from_asc(const_cast<char*>(text), nullptr);
  return since_2000 + kSeconds1970To2000 * kMicroseconds;
}

}  // namespace tvx::bench::peers
