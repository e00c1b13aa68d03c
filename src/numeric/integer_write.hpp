// Decimal text of integers. The length is found first, so that the digits go straight to their
// place.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace tvx::numeric {

inline constexpr int kMaxIntegerText = 20;  // "-9223372036854775808", "18446744073709551615"

namespace detail {

constexpr std::array<uint64_t, 20> make_powers_of_ten() {
  std::array<uint64_t, 20> powers{1};
  for (size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}

constexpr std::array<char, 200> make_digit_pairs() {
  std::array<char, 200> pairs{};
  for (size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}

}  // namespace detail

inline constexpr auto kPowersOfTen = detail::make_powers_of_ten();  // 10^0 to 10^19
inline constexpr auto kDigitPairs = detail::make_digit_pairs();     // "00" to "99"

// Decimal digits of a value, 1 for 0. 1233 / 4096 is just above log10(2), so the product is the
// logarithm's integer part or one more for every bit length up to 64.
[[nodiscard]] inline int decimal_length(uint64_t value) {
  const int bits = 64 - std::countl_zero(value | 1);
  const int estimate = bits * 1233 >> 12;
  return estimate + (value >= kPowersOfTen[static_cast<size_t>(estimate)] || value == 0 ? 1 : 0);
}

// Writes the two digits of a value below 100.
inline void write_pair(char* out, uint32_t value) {
  std::memcpy(out, &kDigitPairs[size_t{2} * value], 2);
}

// Writes a value right-aligned in exactly `length` characters, which is its decimal length.
template <class Unsigned>
inline void write_digits(char* out, Unsigned value, int length) {
  char* at = out + length;
  while (value >= 100) {
    at -= 2;
    write_pair(at, static_cast<uint32_t>(value % 100));
    value /= 100;
  }
  if (value >= 10) {
    write_pair(at - 2, static_cast<uint32_t>(value));
  } else {
    at[-1] = static_cast<char>('0' + value);
  }
}

// The decimal text of one integer: its length is known before a character is written.
class IntegerText {
public:
  template <class Integer>
  explicit IntegerText(Integer value)
      : magnitude_(static_cast<uint64_t>(value)), negative_(value < 0) {
    if (negative_) magnitude_ = 0 - magnitude_;
    digits_ = decimal_length(magnitude_);
  }

  [[nodiscard]] int length() const { return digits_ + (negative_ ? 1 : 0); }

  // Writes length() characters.
  void write(char* out) const {
    *out = '-';
    out += negative_ ? 1 : 0;
    if (magnitude_ <= UINT32_MAX) {
      write_digits(out, static_cast<uint32_t>(magnitude_), digits_);
    } else {
      write_digits(out, magnitude_, digits_);
    }
  }

private:
  uint64_t magnitude_;
  int digits_;
  bool negative_;
};

}  // namespace tvx::numeric
