// The grammar of floating-point text: finds how far a number extends and hands its digits on to
// float_nearest.
#include "numeric/float_read.hpp"

#include <algorithm>
#include <bit>
#include <string_view>

#include "base/ascii.hpp"
#include "base/hexadecimal.hpp"
#include "numeric/eight_digits.hpp"
#include "numeric/float_nearest.hpp"
#include "numeric/integer_write.hpp"
#include "numeric/sixteen_digits.hpp"

namespace tvx::numeric {
namespace {

using base::is_digit;

bool starts_with(const char* text, const char* end, std::string_view lower_case_word) {
  return static_cast<size_t>(end - text) >= lower_case_word.size() &&
         std::equal(lower_case_word.begin(), lower_case_word.end(), text,
                    [](char expected, char c) { return expected == base::to_lower(c); });
}

struct Digits {
  uint64_t value;
  const char* end;
};

// Appends the decimal digits at `text` to a value, modulo 2^64.
inline Digits read_digits(uint64_t value, const char* text, const char* end) {
  for (; text != end; ++text) {
    const auto digit = static_cast<unsigned>(*text) - '0';
    if (digit > 9) break;
    value = value * 10 + digit;
  }
  return {value, text};
}

// The same, sixteen and eight at a time.
inline Digits read_many_digits(uint64_t value, const char* text, const char* end) {
  while (end - text >= 16) {
    const auto digits = SixteenDigits::load(text);
    if (!digits.are_digits()) break;
    value = value * kPowersOfTen[16] + digits.value();
    text += 16;
  }
  while (end - text >= 8) {
    const uint64_t word = load_eight(text);
    if (!are_eight_digits(word)) break;
    value = value * 100'000'000 + value_of_eight_digits(word);
    text += 8;
  }
  return read_digits(value, text, end);
}

struct Exponent {
  int64_t value;
  const char* end;
};

// Reads an exponent that begins with the letter `mark` or its capital; without one, or when it has
// no digits, it is 0 and ends where it begins. It is not followed beyond 10^17: texts are shorter
// than that, so that no number of digits makes up for it, and sums of the two do not overflow.
inline Exponent read_exponent(const char* text, const char* end, char mark) {
  if (text == end || (*text | 0x20) != mark) return {0, text};
  const char* digit = text + 1;
  if (digit == end) return {0, text};
  const bool negative = *digit == '-';
  if (negative || *digit == '+') ++digit;
  if (digit == end || !is_digit(*digit)) return {0, text};
  int64_t magnitude = *digit - '0';
  for (++digit; digit != end && is_digit(*digit); ++digit)
    if (magnitude < 10'000'000'000'000'000) magnitude = magnitude * 10 + (*digit - '0');
  return {negative ? -magnitude : magnitude, digit};
}

// A number behind its sign: the bits of the double; end is null when there is no number.
struct Magnitude {
  uint64_t bits;
  const char* end;
  FloatRange range;
};

constexpr Magnitude kNoNumber{0, nullptr, FloatRange::kWithin};

inline Magnitude rounded(uint64_t bits, bool is_zero, const char* end) {
  if (bits == kInfinityBits) [[unlikely]]
    return {bits, end, FloatRange::kOverflow};
  if (bits == 0 && !is_zero) [[unlikely]]
    return {bits, end, FloatRange::kUnderflow};
  return {bits, end, FloatRange::kWithin};
}

// The number whose digits, more than 19 with leading zeros, stand in [begin, end); `point` is where
// the point stands or would stand.
DecimalNumber gather_long_number(const char* begin, const char* point, const char* end) {
  const char* digit = std::find_if(begin, end, [](char c) { return c != '0' && c != '.'; });
  DecimalNumber number{0, 0};
  const char* const first_digit = digit;
  int count = 0;
  for (; digit != end && count < kSignificandDigits; ++digit) {
    if (*digit == '.') continue;
    number.significand = number.significand * 10 + static_cast<uint64_t>(*digit - '0');
    ++count;
  }
  number.exponent = digit <= point ? point - digit : point + 1 - digit;
  if (digit != end) {
    number.first_digit = first_digit;
    number.end = end;
  }
  return number;
}

[[gnu::noinline]] Magnitude read_long_decimal(const char* begin, const char* point, const char* end,
                                              Exponent exponent) {
  DecimalNumber number = gather_long_number(begin, point, end);
  number.exponent += exponent.value;
  return rounded(nearest_double(number), number.significand == 0, exponent.end);
}

[[gnu::always_inline]] inline Magnitude read_decimal(const char* begin, const char* end) {
  Digits digits = read_digits(0, begin, end);
  const char* const point = digits.end;
  int64_t count = point - begin;
  int64_t fraction_digits = 0;
  if (point != end && *point == '.') {
    digits = read_many_digits(digits.value, point + 1, end);
    fraction_digits = digits.end - (point + 1);
    count += fraction_digits;
  }
  if (count == 0) return kNoNumber;
  const Exponent exponent = read_exponent(digits.end, end, 'e');
  if (count > kSignificandDigits) [[unlikely]]
    return read_long_decimal(begin, point, digits.end, exponent);
  return rounded(nearest_double(digits.value, exponent.value - fraction_digits), digits.value == 0,
                 exponent.end);
}

// [begin, end) is what follows "0x".
Magnitude read_hexadecimal(const char* begin, const char* end) {
  uint64_t significand = 0;
  int64_t exponent = 0;
  bool inexact = false;
  bool any_digit = false;
  const char* point = nullptr;
  const char* text = begin;
  for (; text != end; ++text) {
    if (*text == '.' && point == nullptr) {
      point = text;
      continue;
    }
    const int value = base::hex_digit_value(*text);
    if (value == base::kNoHexDigit) break;
    any_digit = true;
    if (significand >> 60 == 0) {
      significand = significand << 4 | static_cast<uint64_t>(value);
      if (point != nullptr) exponent -= 4;
    } else {
      inexact |= value != 0;
      if (point == nullptr) exponent += 4;
    }
  }
  if (!any_digit) return kNoNumber;
  const Exponent written = read_exponent(text, end, 'p');
  if (significand == 0) return rounded(0, true, written.end);
  const int zeros = std::countl_zero(significand);
  exponent += written.value - zeros;
  return rounded(nearest_double(significand << zeros, inexact, exponent), false, written.end);
}

Magnitude read_word(const char* text, const char* end) {
  constexpr uint64_t kQuietNanBits = 0x7FF8'0000'0000'0000;
  for (const std::string_view word : {"infinity", "inf"})
    if (starts_with(text, end, word))
      return {kInfinityBits, text + word.size(), FloatRange::kWithin};
  if (!starts_with(text, end, "nan")) return kNoNumber;
  text += 3;
  if (text != end && *text == '(') {
    const char* const close = std::find_if_not(
        text + 1, end, [](char c) { return is_digit(c) || base::is_letter(c) || c == '_'; });
    if (close != end && *close == ')') text = close + 1;
  }
  return {kQuietNanBits, text, FloatRange::kWithin};
}

Magnitude read_magnitude(const char* text, const char* end) {
  if (text == end) return kNoNumber;
  if (!is_digit(*text) && *text != '.') return read_word(text, end);
  if (*text == '0' && starts_with(text, end, "0x")) [[unlikely]] {
    const Magnitude number = read_hexadecimal(text + 2, end);
    if (number.end != nullptr) return number;  // otherwise the number is the "0"
  }
  return read_decimal(text, end);
}

}  // namespace

PlainFloat read_plain_float(const char* begin, const char* end) {
  const bool negative = *begin == '-';
  const Magnitude number = read_decimal(begin + (negative ? 1 : 0), end);
  return {std::bit_cast<double>(number.bits | uint64_t{negative} << 63),
          number.end == end && number.range == FloatRange::kWithin};
}

FloatParse parse_float(const char* begin, const char* end) {
  const char* text = begin;
  while (text != end && base::is_space(*text)) ++text;
  const bool negative = text != end && *text == '-';
  if (text != end && (*text == '-' || *text == '+')) ++text;
  const Magnitude number = read_magnitude(text, end);
  if (number.end == nullptr) return {0.0, begin, FloatRange::kWithin};
  return {std::bit_cast<double>(number.bits | uint64_t{negative} << 63), number.end, number.range};
}

}  // namespace tvx::numeric
