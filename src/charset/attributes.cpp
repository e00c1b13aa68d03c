// Operations on characters and texts that are too long to stand inline.
#include "charset/attributes.hpp"

#include <algorithm>
#include <cstring>

namespace tvx::charset {

namespace {

void map_case(const com_charattr& record, const uint8_t* source, uint8_t* destination,
              uint8_t Entry::*form) {
  const bool paged = names_page(first_entry(record, source));
  const int32_t width = char_width(record, source);
  const uint8_t mapped = entry(record, source).*form;
  if (mapped == 0 || width > 2 || (width == 2 && !paged)) {
    // An entry maps one byte: it has nothing to say of a character that has more of its own.
    std::memmove(destination, source, static_cast<size_t>(width));
  } else if (paged) {
    destination[0] = source[0];
    destination[1] = mapped;
  } else {
    destination[0] = mapped;
  }
}

// The bytes of the character at `p` in front of the terminator of its string.
int32_t width_before_terminator(const uint8_t* p, int32_t stated) {
  int32_t width = 1;
  while (width < stated && p[width] != 0) ++width;
  return width;
}

}  // namespace

void to_upper(const com_charattr& record, const uint8_t* source, uint8_t* destination) {
  map_case(record, source, destination, &Entry::upper);
}

void to_lower(const com_charattr& record, const uint8_t* source, uint8_t* destination) {
  map_case(record, source, destination, &Entry::lower);
}

WholeCharacters whole_characters(const com_charattr& record, const uint8_t* start,
                                 const uint8_t* end) {
  WholeCharacters met{};
  for (const uint8_t* p = start; p < end;) {
    const int32_t width = stated_width(record, p, end - p);
    if (width > end - p) {
      met.split_before = static_cast<int32_t>(end - p);
      met.split_beyond = width - met.split_before;
      break;
    }
    p += width;
    met.bytes += width;
    ++met.characters;
  }
  return met;
}

int32_t text_to_ascii(const com_charattr& record, const uint8_t* source, int32_t length,
                      uint8_t* destination, int32_t capacity) {
  const uint8_t* const end = source + length;
  int32_t written = 0;
  for (const uint8_t* p = source; p < end && written < capacity;) {
    // Both are found before anything is written, which may be over this very character.
    const int32_t width = char_width(record, p, end);
    const uint8_t form = to_ascii(record, p, end);
    if (form != 0) {
      destination[written++] = form;
    } else {
      const int32_t copied = std::min(width, capacity - written);
      std::memmove(destination + written, p, static_cast<size_t>(copied));
      written += copied;
    }
    p += width;
  }
  return written;
}

const uint8_t* find_char(const com_charattr& record, const uint8_t* string, uint8_t byte) {
  for (const uint8_t* p = string; *p != 0;) {
    const int32_t stated = char_width(record, p);
    const int32_t width = width_before_terminator(p, stated);
    if (*p == byte && width == stated) return p;
    p += width;
  }
  return nullptr;
}

}  // namespace tvx::charset
