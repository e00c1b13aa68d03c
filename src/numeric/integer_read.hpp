// Integers read from text: blanks, one sign, digits, blanks.
//
// The grammar is written once over a cursor, which delivers the text's characters as single bytes;
// a multibyte text has a cursor of its own. Plain numbers have a short way that takes eight digits
// at a time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "numeric/eight_digits.hpp"
#include "tvxcomn/datatypes.h"
#include "tvxcomn/numbertext.h"

namespace tvx::numeric {

template <class Integer>
struct IntegerParse {
  Integer value;
  int32_t status;  // COM_PARSE_ code
};

// Plain bytes.
class ByteCursor {
public:
  ByteCursor(const char* text, int32_t length)
      : at_(reinterpret_cast<const uint8_t*>(text)), end_(at_ + (length > 0 ? length : 0)) {}

  [[nodiscard]] bool done() const { return at_ == end_; }
  [[nodiscard]] uint8_t character() const { return *at_; }
  void advance() { ++at_; }

private:
  const uint8_t* at_;
  const uint8_t* end_;
};

namespace detail {

// What the destination holds when a digit no longer fits.
template <class Integer>
[[nodiscard]] Integer overflow_value(uint64_t accumulated, bool negative) {
  using Limits = std::numeric_limits<Integer>;
  if constexpr (std::is_same_v<Integer, int32_t>) {
    return static_cast<Integer>(negative ? 0 - accumulated : accumulated);
  } else {
    return negative ? Limits::min() : Limits::max();
  }
}

}  // namespace detail

// The short way of parse_integer for what nearly every text is: at most a "-", then digits up to
// the end, a number in range. Returns whether the text is of that kind; otherwise `value` is left
// alone.
template <class Integer>
[[nodiscard]] inline bool read_plain_integer(const char* text, int32_t length, Integer& value) {
  using Limits = std::numeric_limits<Integer>;
  constexpr int most_digits = std::min(Limits::digits10 + 1, 19);  // 10^19 < 2^64
  if (length <= 0) return false;
  const char* const end = text + length;
  const bool negative = Limits::is_signed && *text == '-';
  text += negative ? 1 : 0;
  if (text == end || end - text > most_digits) return false;
  uint64_t magnitude = 0;
  for (int eights = most_digits / 8; eights > 0 && end - text >= 8; --eights) {
    const uint64_t word = load_eight(text);
    if (!are_eight_digits(word)) return false;
    magnitude = magnitude * 100'000'000 + value_of_eight_digits(word);
    text += 8;
  }
  for (; text != end; ++text) {
    const auto digit = static_cast<unsigned>(*text) - '0';
    if (digit > 9) return false;
    magnitude = magnitude * 10 + digit;
  }
  if (magnitude > static_cast<uint64_t>(Limits::max()) + (negative ? 1 : 0)) return false;
  value = static_cast<Integer>(negative ? 0 - magnitude : magnitude);
  return true;
}

// Reads a 4- or 8-byte integer. An unsigned type takes no "-".
template <class Integer, class Cursor>
[[nodiscard]] IntegerParse<Integer> parse_integer(Cursor cursor) {
  constexpr auto largest = static_cast<uint64_t>(std::numeric_limits<Integer>::max());
  if (cursor.done()) return {0, COM_PARSE_EMPTY};

  bool negative = false;
  bool signed_already = false;
  for (; !cursor.done(); cursor.advance()) {
    const uint8_t character = cursor.character();
    if (character == ' ') continue;
    if (character != '-' && character != '+') break;
    if (signed_already || (character == '-' && std::is_unsigned_v<Integer>)) {
      return {0, COM_PARSE_SYNTAX};
    }
    negative = character == '-';
    signed_already = true;
  }

  const uint64_t last_digit = largest % 10 + (negative ? 1 : 0);  // of the largest magnitude
  uint64_t magnitude = 0;
  const auto value = [&] { return static_cast<Integer>(negative ? 0 - magnitude : magnitude); };
  for (; !cursor.done(); cursor.advance()) {
    const auto digit = static_cast<uint64_t>(cursor.character()) - '0';
    if (digit > 9) break;
    if (magnitude > largest / 10 || (magnitude == largest / 10 && digit > last_digit)) {
      return {detail::overflow_value<Integer>(magnitude, negative), COM_PARSE_OVERFLOW};
    }
    magnitude = magnitude * 10 + digit;
  }
  for (; !cursor.done(); cursor.advance()) {
    if (cursor.character() != ' ') return {value(), COM_PARSE_SYNTAX};
  }
  return {value(), COM_PARSE_NUMBER};
}

// Reads an integer narrower than 4 bytes: the 4-byte number, cut to its low bits when it is out of
// range, and 0 when there is no number.
template <class Integer, class Cursor>
[[nodiscard]] IntegerParse<Integer> parse_narrow_integer(Cursor cursor) {
  using Limits = std::numeric_limits<Integer>;
  const auto wide = parse_integer<int32_t>(cursor);
  if (wide.status != COM_PARSE_NUMBER) return {0, wide.status};
  const bool in_range = wide.value >= Limits::min() && wide.value <= Limits::max();
  return {static_cast<Integer>(wide.value), in_range ? COM_PARSE_NUMBER : COM_PARSE_OVERFLOW};
}

}  // namespace tvx::numeric
