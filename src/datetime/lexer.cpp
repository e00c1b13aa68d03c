// The lexer, written once over the characters of a text.
#include "datetime/lexer.hpp"

#include <array>

#include "datetime/characters.hpp"

namespace tvx::datetime {

namespace {

// ---- What the lexer knows ----------------------------------------------------------------------

enum class Class : uint8_t { kOther, kBlank, kSign, kSignOrLetter };

// What an ASCII form that is no digit stands for. One of kOther may begin a word.
struct Meaning {
  Class lexical_class;
  Kind kind;  // of the token that a sign is
};

constexpr std::array<Meaning, 256> kMeanings = [] {
  std::array<Meaning, 256> meanings{};
  meanings[' '].lexical_class = Class::kBlank;
  meanings[':'] = {Class::kSign, Kind::kColon};
  meanings[','] = {Class::kSign, Kind::kComma};
  meanings['.'] = {Class::kSign, Kind::kPoint};
  meanings['-'] = meanings['/'] = {Class::kSign, Kind::kSeparator};
  meanings['T'] = meanings['t'] = {Class::kSignOrLetter, Kind::kIsoSeparator};
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
constexpr Kind kLongNumbers[] = {Kind{},        Kind{},      Kind{},
                                 Kind{},        Kind::kYear, Kind::kFiveDigits,
                                 Kind::kPacked, Kind{},      Kind::kPacked};

// ---- The lexer ---------------------------------------------------------------------------------

template <class Characters>
class Lexer {
public:
  Lexer(const Characters& characters, const MonthNames& months, Tokens& tokens)
      : characters_(characters), months_(months), tokens_(tokens) {}

  [[nodiscard]] bool run(const uint8_t* at, const uint8_t* const end) {
    while (at != end) {
      if (digit_of(characters_.form(at, end)) <= 9) {
        at = number(at, end);
        if (at == nullptr) return false;
        if (at == end) break;
      }
      at = no_number(at, end);
      if (at == nullptr) return false;
    }
    tokens_.close(place_);
    return true;
  }

private:
  // Take what stands at a position and return the one behind it, null for what is no token.
  [[nodiscard]] const uint8_t* number(const uint8_t* at, const uint8_t* end) {
    uint32_t value = digit_of(characters_.form(at, end));  // meaningless with too many digits
    int digits = 1;
    for (at = characters_.next(at, end); at != end; at = characters_.next(at, end), ++digits) {
      const uint32_t digit = digit_of(characters_.form(at, end));
      if (digit > 9) break;
      value = value * 10 + digit;
    }
    return add_number(static_cast<int32_t>(value), digits) ? at : nullptr;
  }

  [[nodiscard]] const uint8_t* no_number(const uint8_t* at, const uint8_t* end) {
    const Meaning meaning = kMeanings[characters_.form(at, end)];
    const uint8_t* const next = characters_.next(at, end);
    // A letter that may be a sign is one when it stands alone.
    if (meaning.lexical_class == Class::kSign ||
        (meaning.lexical_class == Class::kSignOrLetter &&
         (next == end || !characters_.is_letter(next, end)))) {
      return add(meaning.kind) ? next : nullptr;
    }
    if (meaning.lexical_class == Class::kBlank) return next;
    Word word;
    const uint8_t* const behind_word = characters_.word(at, end, word);
    return behind_word != nullptr && add_word(word) ? behind_word : nullptr;
  }

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
    if (digits <= kShortDigits) return add(Kind::kNumber, value, digits);
    if (digits > kMostDigits || digits == kErrorDigits) return false;
    return add(kLongNumbers[digits], value, digits);
  }

  [[nodiscard]] bool add_word(const Word& word) {
    if (word.length == 2) {
      const int marker = characters_.marker(word);
      if (marker != kNoMatch) return add(Kind::kMarker, marker);
    }
    const int month = characters_.month(months_, word);
    return month != kNoMatch && add(Kind::kMonth, month);
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
