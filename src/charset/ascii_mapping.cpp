// Mapping of multibyte text to single bytes.
#include "charset/ascii_mapping.hpp"

#include <algorithm>
#include <cstring>

#include "charset/attributes.hpp"

namespace tvx::charset {

int32_t map_to_ascii(const char* text, int32_t length, char* out, int32_t capacity,
                     const com_charattr* record) {
  if (length <= 0 || capacity <= 0) return 0;
  if (!is_multibyte(record)) {
    const int32_t copied = std::min(length, capacity);
    std::memcpy(out, text, static_cast<size_t>(copied));
    return copied;
  }
  const auto* at = reinterpret_cast<const uint8_t*>(text);
  const uint8_t* const end = at + length;
  int32_t written = 0;
  while (at < end && written < capacity) {
    const int32_t width = char_width(*record, at, end);
    const uint8_t form = to_ascii(*record, at, end);
    if (form != 0) {
      out[written++] = static_cast<char>(form);
    } else {
      const int32_t copied = std::min(width, capacity - written);
      std::memcpy(out + written, at, static_cast<size_t>(copied));
      written += copied;
    }
    at += width;
  }
  return written;
}

}  // namespace tvx::charset
