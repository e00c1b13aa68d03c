// Numbers and names written into the fixed-width fields of formatted dates. No terminator is
// written.
#pragma once

#include <cstdint>

namespace tvx::numeric {

// Decimal text; "*" alone when it is longer than a width above 0. Returns the bytes written.
int32_t write_number(int32_t value, char* out, int32_t width);

// Right-aligned in |width| characters, padded with blanks, or with zeros for a width below 0; of a
// longer text the last |width| characters. A trailing character other than 0 follows. Returns the
// bytes written.
int32_t write_field(char* out, int32_t value, char trailing, int32_t width);

// The text up to its terminator or `maximum` characters of it, then the trailing character unless
// it is 0. Returns the bytes written.
int32_t write_name(char* out, const char* text, char trailing, int32_t maximum);

}  // namespace tvx::numeric
