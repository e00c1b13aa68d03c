// The characters and words of date texts. Words are compared in the ASCII form of their characters,
// which is the lower case in sets of single bytes.
//
// Most texts are of single bytes: their digits and signs need no table to be understood, and the
// built-in names are found by their first four letters.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "base/ascii.hpp"
#include "charset/attributes.hpp"
#include "datetime/lexer.hpp"
#include "datetime/names.hpp"

namespace tvx::datetime {

// ---- Words and names ---------------------------------------------------------------------------

inline constexpr int kLongestWord = 30;  // bytes

// A word in the form in which it is compared.
struct Word {
  std::array<uint8_t, kLongestWord> bytes;
  int length;
  uint32_t start;  // the first four bytes in one, where the characters are single bytes
};

inline constexpr int kStart = 4;  // bytes

[[nodiscard]] constexpr uint32_t in_start(uint8_t byte, int index) {
  return index < kStart ? uint32_t{byte} << (8 * index) : 0;
}

// The starts of the lower case of built-in names.
template <size_t count>
[[nodiscard]] constexpr auto starts_of(const char* const (&names)[count]) {
  std::array<uint32_t, count> starts{};
  for (size_t i = 0; i < count; ++i) {
    for (int at = 0; names[i][at] != 0; ++at) {
      starts[i] |= in_start(static_cast<uint8_t>(base::to_lower(names[i][at])), at);
    }
  }
  return starts;
}
inline constexpr auto kMarkerStarts = starts_of(kMarkers);
inline constexpr auto kMonthStarts = starts_of(kMonths);
inline constexpr auto kShortMonthStarts = starts_of(kShortMonths);
inline constexpr int kShortMonth = 3;  // letters

inline constexpr int kNoMatch = -1;

// The index of a start, kNoMatch without one. No branch depends on which it is: it could not be
// predicted.
template <size_t count>
[[nodiscard]] int find_start(const std::array<uint32_t, count>& starts, uint32_t start) {
  uint32_t found = 0;
  for (size_t i = 0; i < count; ++i) found |= uint32_t{starts[i] == start} << i;
  return found == 0 ? kNoMatch : std::countr_zero(found);
}

// The index of the first name that is spelt like a word.
template <class Characters>
[[nodiscard]] int find_name(const Characters& characters, const char* const* names, int count,
                            const Word& word) {
  for (int i = 0; i < count; ++i) {
    if (characters.spells(names[i], word)) return i;
  }
  return kNoMatch;
}

template <class Characters>
[[nodiscard]] int find_month(const Characters& characters, const MonthNames& months,
                             const Word& word) {
  constexpr int count = kMonthsOfYear;
  if (months.full == nullptr || months.abbreviated == nullptr) return kNoMatch;
  const int found = find_name(characters, months.full, count, word);
  return found != kNoMatch ? found : find_name(characters, months.abbreviated, count, word);
}

// ---- Characters --------------------------------------------------------------------------------
//
// Both kinds say of the character at a position what its ASCII form is, where the next one begins
// and whether it is a letter; read a word there, returning where it ends, or null when there is
// none or a longer one; and find the number of a marker or a month, kNoMatch when the word is none.

inline constexpr unsigned kLetter = COM_ATTR_UPPER | COM_ATTR_LOWER;

// Of a set of single bytes without a table of ASCII forms. Blanks, digits and signs are those of
// ASCII there, and letters have the form of their lower case; those of the built-in names have
// ASCII's.
class SingleBytes {
public:
  explicit SingleBytes(const com_charattr& record) : record_(record) {}

  [[nodiscard]] static bool serves(const com_charattr& record) {
    return record.lengths == nullptr && record.to_ascii == nullptr && record.attributes != nullptr;
  }

  [[nodiscard]] static uint8_t form(const uint8_t* p, const uint8_t*) { return *p; }
  [[nodiscard]] static const uint8_t* next(const uint8_t* p, const uint8_t*) { return p + 1; }
  [[nodiscard]] bool is_letter(const uint8_t* p, const uint8_t*) const {
    return (charset::first_entry(record_, p).flags & kLetter) != 0;
  }

  [[nodiscard]] const uint8_t* word(const uint8_t* at, const uint8_t* end, Word& word) const {
    int length = 0;
    uint32_t start = 0;
    for (; at != end; ++at) {
      const charset::Entry entry = charset::first_entry(record_, at);
      if ((entry.flags & kLetter) == 0) break;
      if (length == kLongestWord) return nullptr;
      const uint8_t form = entry.lower != 0 ? entry.lower : *at;
      start |= in_start(form, length);
      word.bytes[static_cast<size_t>(length++)] = form;
    }
    word.length = length;
    word.start = start;
    return length != 0 ? at : nullptr;
  }

  [[nodiscard]] static int marker(const Word& word) {
    return find_start(kMarkerStarts, word.start);
  }

  [[nodiscard]] int month(const MonthNames& months, const Word& word) const {
    const bool are_builtin = months.full == kMonths && months.abbreviated == kShortMonths;
    if (!are_builtin) return find_month(*this, months, word);
    if (word.length == kShortMonth) return find_start(kShortMonthStarts, word.start);
    const int found = find_start(kMonthStarts, word.start);
    return found != kNoMatch && spells(kMonths[found], word) ? found : kNoMatch;
  }

  [[nodiscard]] bool spells(const char* name, const Word& word) const {
    for (int i = 0; i < word.length; ++i, ++name) {
      const auto byte = static_cast<uint8_t>(*name);
      const uint8_t lower = charset::entry_at(record_, byte).lower;
      const uint8_t form = lower != 0 ? lower : byte;
      if (byte == 0 || form != word.bytes[static_cast<size_t>(i)]) return false;
    }
    return *name == 0;
  }

private:
  const com_charattr& record_;
};

class AnyCharacters {
public:
  explicit AnyCharacters(const com_charattr& record) : record_(record) {}

  [[nodiscard]] uint8_t form(const uint8_t* p, const uint8_t* end) const {
    return charset::to_ascii(record_, p, end);
  }
  [[nodiscard]] const uint8_t* next(const uint8_t* p, const uint8_t* end) const {
    return p + charset::char_width(record_, p, end);
  }
  [[nodiscard]] bool is_letter(const uint8_t* p, const uint8_t* end) const {
    return record_.attributes != nullptr && (charset::entry(record_, p, end).flags & kLetter) != 0;
  }

  [[nodiscard]] const uint8_t* word(const uint8_t* const begin, const uint8_t* end,
                                    Word& word) const {
    const uint8_t* at = begin;
    while (at != end && is_letter(at, end)) at = next(at, end);
    if (at == begin || at - begin > kLongestWord) return nullptr;
    word.length = charset::text_to_ascii(record_, begin, static_cast<int32_t>(at - begin),
                                         word.bytes.data(), kLongestWord);
    return at;
  }

  [[nodiscard]] int marker(const Word& word) const {
    return find_name(*this, kMarkers, std::size(kMarkers), word);
  }
  [[nodiscard]] int month(const MonthNames& months, const Word& word) const {
    return find_month(*this, months, word);
  }

  [[nodiscard]] bool spells(const char* name, const Word& word) const {
    std::array<uint8_t, kLongestWord + 1> form;  // one byte more tells of a longer name
    const int32_t length = charset::text_to_ascii(record_, reinterpret_cast<const uint8_t*>(name),
                                                  static_cast<int32_t>(std::strlen(name)),
                                                  form.data(), static_cast<int32_t>(form.size()));
    return length == word.length &&
           std::memcmp(form.data(), word.bytes.data(), static_cast<size_t>(length)) == 0;
  }

private:
  const com_charattr& record_;
};

}  // namespace tvx::datetime
