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
  return text_to_ascii(*record, reinterpret_cast<const uint8_t*>(text), length,
                       reinterpret_cast<uint8_t*>(out), capacity);
}

}  // namespace tvx::charset
