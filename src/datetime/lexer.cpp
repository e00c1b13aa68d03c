// The lexer is written once over the characters of a text. Most texts are of single bytes, whose
// digits and signs need no table to be understood and whose words are compared eight bytes at once.
#include "datetime/lexer.hpp"

#include <array>
#include <bit>
#include <cstring>

#include "charset/attributes.hpp"
#include "datetime/names.hpp"

namespace tvx::datetime {

namespace {

// ---- What the lexer knows ----------------------------------------------------------------------

enum class Class : uint8_t { other, blank, sign };

// What an ASCII form that is no digit stands for. One that is other may be part of a word.
struct Meaning {
  Class lexical_class;
  Kind kind;  // of the token that a sign is
};

constexpr std::array<Meaning, 256> kMeanings = [] {
  std::array<Meaning, 256> meanings{};
  meanings[' '].lexical_class = Class::blank;
  meanings[':'] = {Class::sign, Kind::colon};
  meanings[','] = {Class::sign, Kind::comma};
  meanings['.'] = {Class::sign, Kind::point};
  meanings['-'] = meanings['/'] = {Class::sign, Kind::separator};
  return meanings;
}();

// Above 9: no digit.
[[nodiscard]] constexpr uint32_t digit_of(uint8_t form) {
  return uint32_t{form} - '0';
}

// The kinds of the longer numbers, by their digits.
constexpr int kMostDigits = 8;
constexpr int kErrorDigits = 7;
constexpr int kShortDigits = 3;
constexpr Kind kLongNumbers[] = {Kind{},       Kind{},     Kind{},
                                 Kind{},       Kind::year, Kind::five_digits,
                                 Kind::packed, Kind{},     Kind::packed};

// ---- Words -------------------------------------------------------------------------------------

constexpr int kLongestWord = 30;  // bytes

// A word in the form in which it is compared.
struct Word {
  std::array<uint8_t, kLongestWord> bytes;
  int length;
  uint32_t start;  // the first four bytes in one, where the characters are single bytes
};

constexpr int kStart = 4;  // bytes

[[nodiscard]] constexpr uint32_t in_start(uint8_t byte, int index) {
  return index < kStart ? uint32_t{byte} << (8 * index) : 0;
}

// The starts of the lower case of built-in names.
template <size_t count>
[[nodiscard]] constexpr auto starts_of(const char* const (&names)[count]) {
  constexpr uint8_t lower_case = 'a' - 'A';
  std::array<uint32_t, count> starts{};
  for (size_t i = 0; i < count; ++i) {
    for (int at = 0; names[i][at] != 0; ++at) {
      starts[i] |= in_start(static_cast<uint8_t>(names[i][at] | lower_case), at);
    }
  }
  return starts;
}
constexpr auto kMarkerStarts = starts_of(kMarkers);
constexpr auto kMonthStarts = starts_of(kMonths);
constexpr auto kShortMonthStarts = starts_of(kShortMonths);
constexpr int kShortMonth = 3;  // letters

constexpr int kNoMatch = -1;

// The index of the name with a start. No branch depends on which it is: it could not be predicted.
template <size_t count>
[[nodiscard]] int find_start(const std::array<uint32_t, count>& starts, uint32_t start) {
  uint32_t found = 0;
  for (size_t i = 0; i < count; ++i) found |= uint32_t{starts[i] == start} << i;
  return found == 0 ? kNoMatch : std::countr_zero(found);
}

// The index of the first name that the characters of a set spell like a word.
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

constexpr unsigned kLetter = COM_ATTR_UPPER | COM_ATTR_LOWER;

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

  // Reads the letters at a position and returns where they end; null when they are none or more
  // than a word has.
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

  // Tells whether a name has the form of a word.
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
  [[nodiscard]] bool is_letter(const uint8_t* p, const uint8_t* end) const {
    return record_.attributes != nullptr && (charset::entry(record_, p, end).flags & kLetter) != 0;
  }

  const com_charattr& record_;
};

// ---- The lexer ---------------------------------------------------------------------------------

template <class Characters>
class Lexer {
public:
  Lexer(const Characters& characters, const MonthNames& months, Tokens& tokens)
      : characters_(characters), months_(months), tokens_(tokens) {}

  [[nodiscard]] bool run(const uint8_t* at, const uint8_t* const end) {
    while (at != end) {
      const uint32_t first_digit = digit_of(characters_.form(at, end));
      if (first_digit <= 9) {
        uint32_t value = first_digit;  // meaningless with too many digits
        int digits = 1;
        for (at = characters_.next(at, end); at != end; at = characters_.next(at, end), ++digits) {
          const uint32_t digit = digit_of(characters_.form(at, end));
          if (digit > 9) break;
          value = value * 10 + digit;
        }
        if (!add_number(static_cast<int32_t>(value), digits)) return false;
        if (at == end) break;
      }
      // What stands here, be it behind a number, is no digit.
      const Meaning meaning = kMeanings[characters_.form(at, end)];
      if (meaning.lexical_class == Class::other) {
        Word word;
        at = characters_.word(at, end, word);
        if (at == nullptr || !add_word(word)) return false;
        continue;
      }
      if (meaning.lexical_class == Class::sign && !add(meaning.kind)) return false;
      at = characters_.next(at, end);
    }
    tokens_.close(place_);
    return true;
  }

private:
  // Return false when there are too many tokens.
  [[nodiscard]] bool add(Kind kind) {
    if (place_ == Tokens::kEnd) return false;
    tokens_.set(place_, kind);
    place_ = behind(place_);
    return true;
  }
  [[nodiscard]] bool add(Kind kind, int32_t value, int digits = 0) {
    if (place_ == Tokens::kEnd) return false;
    tokens_.set(place_, kind, value, digits);
    place_ = behind(place_);
    return true;
  }

  [[nodiscard]] bool add_number(int32_t value, int digits) {
    if (digits <= kShortDigits) return add(Kind::number, value, digits);
    if (digits > kMostDigits || digits == kErrorDigits) return false;
    return add(kLongNumbers[digits], value, digits);
  }

  [[nodiscard]] bool add_word(const Word& word) {
    if (word.length == 1 && (word.bytes[0] == 'T' || word.bytes[0] == 't')) {
      return add(Kind::iso_separator);
    }
    if (word.length == 2) {
      const int marker = characters_.marker(word);
      if (marker != kNoMatch) return add(Kind::marker, marker);
    }
    const int month = characters_.month(months_, word);
    return month != kNoMatch && add(Kind::month, month);
  }

  const Characters characters_;
  const MonthNames& months_;
  Tokens& tokens_;
  Place place_ = kFirst;
};

// Each kind of characters in a function of its own, which keeps both of them lean.
template <class Characters>
[[nodiscard, gnu::noinline]] bool tokenise_as(std::string_view text, const MonthNames& months,
                                              const com_charattr& record, Tokens& tokens) {
  const auto* const begin = reinterpret_cast<const uint8_t*>(text.data());
  return Lexer(Characters(record), months, tokens).run(begin, begin + text.size());
}

}  // namespace

bool tokenise(std::string_view text, const MonthNames& months, const com_charattr* record,
              Tokens& tokens) {
  const com_charattr& known = charset::record_or_builtin(record);
  return SingleBytes::serves(known) ? tokenise_as<SingleBytes>(text, months, known, tokens)
                                    : tokenise_as<AnyCharacters>(text, months, known, tokens);
}

}  // namespace tvx::datetime
