// Others' ways of reading a point of time from text, out of line. The forms: kNamed as
// "Jan  2 2003  2:05PM", kIso as "2003-01-02T14:05:09.123".
#pragma once

#include <cstdint>

#include "tvxcomn/export.h"

namespace tvx::bench::peers {

enum class ReadForm { kNamed, kIso };

// Each takes a text with a zero byte behind it and returns microseconds since 1970.

// strptime and timegm, with strtod for the fraction.
TVXCOMN_API int64_t strptime_time(ReadForm form, const char* text, int32_t length);

// absl::ParseTime in UTC.
TVXCOMN_API int64_t absl_time(ReadForm form, const char* text, int32_t length);

// PGTYPEStimestamp_from_asc.
TVXCOMN_API int64_t pgtypes_time(ReadForm form, const char* text, int32_t length);

}  // namespace tvx::bench::peers
