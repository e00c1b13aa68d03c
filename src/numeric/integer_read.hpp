// Integers read from text: blanks, one sign, digits, blanks.
//
// The grammar is written once over a cursor, which delivers the text's characters as single bytes;
// a multibyte text has a cursor of its own. Where the text is plain bytes, eight digits are taken
// at a time.
#pragma once

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

  // Takes the next eight characters when all are digits, as a number below 10^8.
  [[nodiscard]] bool take_eight_digits(uint64_t& number) {
    if (end_ - at_ < 8) return false;
    const uint64_t word = load_eight(reinterpret_cast<const char*>(at_));
    if (!are_eight_digits(word)) return false;
    number = value_of_eight_digits(word);
    at_ += 8;
    return true;
  }

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

// Reads a 4- or 8-byte integer. An unsigned type takes no "-".
template <class Integer, class Cursor>
[[nodiscard]] IntegerParse<Integer> parse_integer(Cursor cursor) {
  constexpr auto largest = static_cast<uint64_t>(std::numeric_limits<Integer>::max());
  constexpr uint64_t eight_digits = 100'000'000;
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
  if constexpr (std::is_same_v<Cursor, ByteCursor>) {
    uint64_t chunk;
    while (magnitude <= (largest - (eight_digits - 1)) / eight_digits &&
           cursor.take_eight_digits(chunk)) {
      magnitude = magnitude * eight_digits + chunk;
    }
  }
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
