// What a character attribute record says of the character at a position: its length, its class, its
// forms in upper case, lower case and ASCII. Inline, because every parser asks it for each
// character it reads.
//
// Each question comes in two kinds. Without an end, the character is taken to be whole and no byte
// but its own is read. With an end (which must lie beyond the position), a character that the end
// cuts off has no class and no forms, and nothing at or beyond the end is read.
//
// The tables come from the caller or from a file and are followed as they stand, with one
// exception: a length of 0 counts as 1, so that every walk advances.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/bytes.hpp"
#include "tvxcomn/attributes.h"

namespace tvx::charset {

// The built-in record, "cp850".
extern const com_charattr cp850_record;

[[nodiscard]] inline const com_charattr& builtin_record() {
  return cp850_record;
}

[[nodiscard]] inline const com_charattr& record_or_builtin(const com_charattr* record) {
  return record == nullptr ? builtin_record() : *record;
}

// Tells whether a record has characters of more than one byte; null is the built-in record.
[[nodiscard]] inline bool is_multibyte(const com_charattr* record) {
  return record != nullptr && record->lengths != nullptr;
}

// ---- Length ------------------------------------------------------------------------------------

// The length in bytes of the character at `p`, of which `available` bytes (1 at least) may be read.
// It may be more than those. Where only the first byte is there, the four-byte characters of a set
// cannot be told from its two-byte ones and count as such.
[[nodiscard]] inline int32_t stated_width(const com_charattr& record, const uint8_t* p,
                                          ptrdiff_t available) {
  constexpr uint8_t kHasFourByteCharacters = 15;
  if (record.lengths == nullptr) return 1;
  const int32_t width = record.lengths[*p] & 15;
  if (width == 2 && available > 1 && record.lengths[255] >> 4 == kHasFourByteCharacters &&
      p[1] >= '0' && p[1] <= '9')
    return 4;
  return std::max(width, 1);
}

[[nodiscard]] inline int32_t char_width(const com_charattr& record, const uint8_t* p) {
  return stated_width(record, p, 2);
}

// The bytes of the character at `p` that lie before `end`: 1 at least.
[[nodiscard]] inline int32_t char_width(const com_charattr& record, const uint8_t* p,
                                        const uint8_t* end) {
  return static_cast<int32_t>(std::min<ptrdiff_t>(stated_width(record, p, end - p), end - p));
}

// Tells whether the character at `p` ends at or before `end`.
[[nodiscard]] inline bool is_whole(const com_charattr& record, const uint8_t* p,
                                   const uint8_t* end) {
  return stated_width(record, p, end - p) <= end - p;
}

// The columns that the character at `p` takes on a display.
[[nodiscard]] inline int32_t display_width(const com_charattr& record, const uint8_t* p) {
  return record.lengths == nullptr ? 1 : record.lengths[*p] >> 4;
}

// ---- Class and case ----------------------------------------------------------------------------

// One row of an attribute table.
struct Entry {
  uint8_t upper;  // 0: none
  uint8_t lower;  // 0: none
  uint8_t lexical_class;
  uint8_t flags;
};

[[nodiscard]] inline Entry entry_at(const com_charattr& record, size_t index) {
  return base::load<Entry>(record.attributes + index * sizeof(Entry));
}

// The entry of the first byte alone: of a one-byte character, or the one that names the page of a
// two-byte character's second byte.
[[nodiscard]] inline Entry first_entry(const com_charattr& record, const uint8_t* p) {
  return entry_at(record, *p);
}

[[nodiscard]] inline bool names_page(const Entry& first) {
  return (first.flags & COM_ATTR_LEADBYTE) != 0;
}

[[nodiscard]] inline Entry entry(const com_charattr& record, const uint8_t* p) {
  const Entry first = first_entry(record, p);
  return names_page(first) ? entry_at(record, first.upper * size_t{256} + p[1]) : first;
}

// Zero for a character that the end cuts off.
[[nodiscard]] inline Entry entry(const com_charattr& record, const uint8_t* p, const uint8_t* end) {
  if (!is_whole(record, p, end)) return {};
  // A table may name a page for a byte to which the length table gives one byte only.
  if (names_page(first_entry(record, p)) && end - p < 2) return {};
  return entry(record, p);
}

[[nodiscard]] inline bool is_space(const com_charattr& record, const uint8_t* p) {
  return (entry(record, p).flags & COM_ATTR_SPACE) != 0;
}

[[nodiscard]] inline bool is_space(const com_charattr& record, const uint8_t* p,
                                   const uint8_t* end) {
  return (entry(record, p, end).flags & COM_ATTR_SPACE) != 0;
}

// ---- ASCII form --------------------------------------------------------------------------------

// The ASCII form of the character at `p`, 0 when it has none. Without a to-ASCII table this is the
// lower-case form of a one-byte character, and a longer character has none.
[[nodiscard]] inline uint8_t to_ascii(const com_charattr& record, const uint8_t* p) {
  const bool one_byte = char_width(record, p) == 1;
  if (record.to_ascii != nullptr) {
    const uint8_t form_or_page = record.to_ascii[*p];
    if (one_byte || form_or_page == 0) return form_or_page;
    return record.to_ascii[form_or_page * size_t{256} + p[1]];
  }
  if (!one_byte) return 0;
  const uint8_t lower = record.attributes == nullptr ? uint8_t{0} : first_entry(record, p).lower;
  return lower != 0 ? lower : *p;
}

// 0 for a character that the end cuts off.
[[nodiscard]] inline uint8_t to_ascii(const com_charattr& record, const uint8_t* p,
                                      const uint8_t* end) {
  return is_whole(record, p, end) ? to_ascii(record, p) : uint8_t{0};
}

// ---- Operations on a character or a text -------------------------------------------------------

// Write the upper-case (lower-case) form of the character at `source`, as long as the character
// itself; one without such a form is copied. `destination` may be `source`.
void to_upper(const com_charattr& record, const uint8_t* source, uint8_t* destination);
void to_lower(const com_charattr& record, const uint8_t* source, uint8_t* destination);

// What a walk over a text met. A character that straddles the end is counted in the last two only.
struct WholeCharacters {
  int32_t characters;
  int32_t bytes;
  int32_t split_before;  // bytes of the straddling character before the end
  int32_t split_beyond;  // bytes that it lacks
};

[[nodiscard]] WholeCharacters whole_characters(const com_charattr& record, const uint8_t* start,
                                               const uint8_t* end);

// Copies a text, each character that has an ASCII form replaced by that byte, until the text or the
// capacity is used up, and returns the bytes written. `destination` may be `source`.
int32_t text_to_ascii(const com_charattr& record, const uint8_t* source, int32_t length,
                      uint8_t* destination, int32_t capacity);

// The first character of a NUL-terminated string whose first byte is `byte`; null when there is
// none. A character that the terminator cuts off is not found.
[[nodiscard]] const uint8_t* find_char(const com_charattr& record, const uint8_t* string,
                                       uint8_t byte);

}  // namespace tvx::charset
