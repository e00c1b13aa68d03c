// The lexer is written once over the characters of a text. Most texts are of single bytes, whose
// digits and signs need no table to be understood and whose words are compared eight bytes at once.
#include "datetime/lexer.hpp"

#include <array>
#include <cstring>

#include "charset/attributes.hpp"
#include "datetime/names.hpp"

namespace tvx::datetime {

namespace {

// ---- What the lexer knows ----------------------------------------------------------------------

// What an ASCII form that is no digit stands for: the token that a sign is, by the number of its
// kind, or one of these. One that is no sign may be part of a word.
constexpr uint8_t kBlank = 0xFE;
constexpr uint8_t kNoSign = 0xFF;

constexpr std::array<uint8_t, 256> kSigns = [] {
  std::array<uint8_t, 256> signs{};
  signs.fill(kNoSign);
  signs[' '] = kBlank;
  signs[':'] = static_cast<uint8_t>(Kind::colon);
  signs[','] = static_cast<uint8_t>(Kind::comma);
  signs['.'] = static_cast<uint8_t>(Kind::point);
  signs['-'] = signs['/'] = static_cast<uint8_t>(Kind::separator);
  return signs;
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
  uint64_t packed;  // the last eight bytes, where the characters are single bytes
};

[[nodiscard]] constexpr uint64_t pack(uint64_t packed, uint8_t next) {
  return packed << 8 | next;
}

// The packed lower case of built-in names.
template <size_t count>
[[nodiscard]] constexpr auto packed_names(const char* const (&names)[count]) {
  constexpr uint8_t lower_case = 'a' - 'A';
  std::array<uint64_t, count> packed{};
  for (size_t i = 0; i < count; ++i) {
    for (const char* p = names[i]; *p != 0; ++p) {
      packed[i] = pack(packed[i], static_cast<uint8_t>(*p | lower_case));
    }
  }
  return packed;
}
constexpr auto kPackedMarkers = packed_names(kMarkers);
constexpr auto kPackedMonths = packed_names(kMonths);
constexpr auto kPackedShortMonths = packed_names(kShortMonths);
constexpr int kShortMonthLength = 3;

constexpr int kNoMatch = -1;

// The index of the last of the names that is packed to the same; no branch depends on which it is,
// since that could not be predicted.
template <size_t count>
[[nodiscard]] int find_packed(const std::array<uint64_t, count>& names, uint64_t packed) {
  int found = kNoMatch;
  for (size_t i = 0; i < count; ++i) found = names[i] == packed ? static_cast<int>(i) : found;
  return found;
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
    uint64_t packed = 0;
    for (; at != end; ++at) {
      const charset::Entry entry = charset::first_entry(record_, at);
      if ((entry.flags & kLetter) == 0) break;
      if (length == kLongestWord) return nullptr;
      const uint8_t form = entry.lower != 0 ? entry.lower : *at;
      word.bytes[static_cast<size_t>(length++)] = form;
      packed = pack(packed, form);
    }
    word.length = length;
    word.packed = packed;
    return length != 0 ? at : nullptr;
  }

  [[nodiscard]] static int marker(const Word& word) {
    return find_packed(kPackedMarkers, word.packed);
  }

  [[nodiscard]] int month(const MonthNames& months, const Word& word) const {
    const bool are_builtin = months.full == kMonths && months.abbreviated == kShortMonths;
    if (!are_builtin) return find_month(*this, months, word);
    if (word.length == kShortMonthLength) return find_packed(kPackedShortMonths, word.packed);
    const int found = find_packed(kPackedMonths, word.packed);
    // The first letters of a longer word are not in its packed form.
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

  // A number is read together with what follows it.
  [[nodiscard]] bool run(const uint8_t* at, const uint8_t* const end) {
    while (at != end) {
      uint8_t form = characters_.form(at, end);
      if (digit_of(form) <= 9) {
        uint32_t value = digit_of(form);  // meaningless with too many digits
        int digits = 1;
        for (at = characters_.next(at, end); at != end; at = characters_.next(at, end)) {
          form = characters_.form(at, end);
          if (digit_of(form) > 9) break;
          value = value * 10 + digit_of(form);
          ++digits;
        }
        if (!add_number(static_cast<int32_t>(value), digits)) return false;
        if (at == end) break;
      }
      const uint8_t sign = kSigns[form];
      if (sign == kNoSign) {
        Word word;
        at = characters_.word(at, end, word);
        if (at == nullptr || !add_word(word)) return false;
        continue;
      }
      if (sign != kBlank && !add(static_cast<Kind>(sign))) return false;
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
