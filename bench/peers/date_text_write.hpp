// Others' ways of writing a point of time as text, out of line. The forms: kNamed as
// "Jan  2 2003  2:05PM", kIso as "2003-01-02T14:05:09", kFraction as "2003-01-02 14:05:09.023001".
#pragma once

#include <cstdint>

#include "tvxcomn/export.h"

namespace tvx::bench::peers {

enum class DateForm { kNamed, kIso, kFraction };

// Each writes into a buffer of 40 bytes and returns the length.

// gmtime_r and strftime, with snprintf for the fraction.
TVXCOMN_API int32_t strftime_text(DateForm form, int64_t microseconds_since_1970, char* out);

// absl::FormatTime in UTC.
TVXCOMN_API int32_t absl_text(DateForm form, int64_t microseconds_since_1970, char* out);

// PGTYPEStimestamp_to_asc, which has a blank for the "T" and drops zeros at the end;
// PGTYPEStimestamp_fmt_asc for the named form.
TVXCOMN_API int32_t pgtypes_text(DateForm form, int64_t microseconds_since_2000, char* out);

}  // namespace tvx::bench::peers
