// Decimal text by peers that know whole numbers only.
#pragma once

#include <cstdint>
#include <cstring>

#include "peers/exact.hpp"

namespace tvx::bench::peers {

constexpr int32_t kGreatestTen = 154;  // of the powers that Scaling asks for

// Copies a text without its point, and ends it with a zero byte.
inline void remove_point(const char* text, int32_t length, char* out) {
  const char* const end = text + length;
  const auto* point = static_cast<const char*>(std::memchr(text, '.', static_cast<size_t>(length)));
  if (point == nullptr) point = end;
  out = static_cast<char*>(std::memcpy(out, text, static_cast<size_t>(point - text))) +
        (point - text);
  if (point != end) {
    std::memcpy(out, point + 1, static_cast<size_t>(end - point - 1));
    out += end - point - 1;
  }
  *out = '\0';
}

// Copies the digits of a whole number, with a point in front of the last `scale` ones. Returns the
// length.
inline int32_t insert_point(const char* digits, int32_t scale, char* out) {
  char* to = out;
  const auto put = [&](const char* from, int32_t count) {
    std::memcpy(to, from, static_cast<size_t>(count));
    to += count;
  };
  if (*digits == '-') *to++ = *digits++;
  const auto count = static_cast<int32_t>(std::strlen(digits));
  const int32_t whole = count - scale;
  if (whole > 0) {
    put(digits, whole);
  } else {
    *to++ = '0';
  }
  if (scale > 0) {
    *to++ = '.';
    for (int32_t zeros = whole; zeros < 0; ++zeros) *to++ = '0';
    put(digits + (whole > 0 ? whole : 0), whole > 0 ? scale : count);
  }
  return static_cast<int32_t>(to - out);
}

}  // namespace tvx::bench::peers
