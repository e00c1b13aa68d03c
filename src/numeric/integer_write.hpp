// Decimal text of integers, eight digits at a time. The length is found first, so that the digits
// go straight to their place.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "numeric/eight_digits.hpp"
#include "numeric/sixteen_digits.hpp"

namespace tvx::numeric {

inline constexpr int kMaxIntegerText = 20;  // "-9223372036854775808", "18446744073709551615"

namespace detail {

inline constexpr uint32_t kTenTo8 = 100'000'000;
inline constexpr uint64_t kZeros = 0x3030303030303030;

constexpr std::array<uint64_t, 20> make_powers_of_ten() {
  std::array<uint64_t, 20> powers{1};
  for (size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}

// By a number of digits, the least value that has more: 0 for none, then 10, 100, ... 10^19.
constexpr std::array<uint64_t, 20> make_least_longer() {
  auto values = make_powers_of_ten();
  values[0] = 0;
  return values;
}

inline constexpr auto kLeastLonger = make_least_longer();

}  // namespace detail

inline constexpr auto kPowersOfTen = detail::make_powers_of_ten();  // 10^0 to 10^19

// Decimal digits of a value, 1 for 0. 1233 / 4096 is just below log10(2), so the product is the
// number of digits or one less for every bit length up to 64.
[[nodiscard]] inline int decimal_length(uint64_t value) {
  const int bits = 64 - std::countl_zero(value | 1);
  const int estimate = bits * 1233 >> 12;
  return estimate + (value >= detail::kLeastLonger[static_cast<size_t>(estimate)] ? 1 : 0);
}

[[nodiscard]] inline int decimal_length(uint32_t value) {
  if (value < detail::kTenTo8) return decimal_length(uint64_t{value});
  return 9 + (value >= 10 * detail::kTenTo8 ? 1 : 0);
}

// Stores the last `count` of the eight digits of a value below 10^8, 1 to 8, and nothing else.
inline void store_digits(char* out, uint32_t value, int count) {
  const uint64_t digits = (eight_digits_of(value) | detail::kZeros) >> (8 * (8 - count));
  if (count >= 4) {
    const auto head = static_cast<uint32_t>(digits);
    const auto tail = static_cast<uint32_t>(digits >> (8 * (count - 4)));
    std::memcpy(out, &head, sizeof head);
    std::memcpy(out + count - 4, &tail, sizeof tail);
  } else {
    out[0] = static_cast<char>(digits);
    out[count / 2] = static_cast<char>(digits >> (8 * (count / 2)));
    out[count - 1] = static_cast<char>(digits >> (8 * (count - 1)));
  }
}

// Stores eight bytes, the last `count` of the eight digits of a value below 10^8 first.
inline void store_digits_widely(char* out, uint64_t value, int count) {
  const uint64_t digits = eight_digits_of(static_cast<uint32_t>(value)) | detail::kZeros;
  store_eight(out, digits >> (8 * (8 - count)));
}

// Write a value in exactly `length` characters, its decimal length. Groups of eight digits are
// counted from the right and stored from the left, each over the surplus of the one before it.
inline void write_digits(char* out, uint32_t value, int length) {
  using detail::kTenTo8;
  if (length <= 8) return store_digits(out, value, length);
  const uint32_t upper = value / kTenTo8;
  const auto front = static_cast<uint16_t>((two_digits_of(upper) | 0x3030) >> (8 * (10 - length)));
  std::memcpy(out, &front, sizeof front);
  store_digits_widely(out + length - 8, value - upper * kTenTo8, 8);
}

inline void write_digits(char* out, uint64_t value, int length) {
  using detail::kTenTo8;
  if (length <= 8) return store_digits(out, static_cast<uint32_t>(value), length);
  if (length <= 16) {
    const uint64_t upper = value / kTenTo8;
    store_digits_widely(out, upper, length - 8);
    store_digits_widely(out + length - 8, value - upper * kTenTo8, 8);
  } else {
    const uint64_t upper = value / kPowersOfTen[16];
    store_digits_widely(out, upper, length - 16);
    SixteenDigits::of(value - upper * kPowersOfTen[16]).store(out + length - 16);
  }
}

// The decimal text of one integer: its length is known before a character is written.
template <class Integer>
class IntegerText {
public:
  explicit IntegerText(Integer value) : magnitude_(static_cast<Unsigned>(value)) {
    if constexpr (std::is_signed_v<Integer>) {
      sign_length_ = static_cast<int>(magnitude_ >> (8 * sizeof magnitude_ - 1));
      const auto sign_mask = static_cast<Unsigned>(0 - static_cast<Unsigned>(sign_length_));
      magnitude_ = (magnitude_ ^ sign_mask) - sign_mask;
    }
    digits_ = decimal_length(magnitude_);
  }

  [[nodiscard]] int length() const { return sign_length_ + digits_; }

  // Writes length() characters.
  void write(char* out) const {
    *out = '-';
    write_digits(out + sign_length_, magnitude_, digits_);
  }

private:
  using Unsigned = std::conditional_t<sizeof(Integer) == 8, uint64_t, uint32_t>;
  Unsigned magnitude_;
  int sign_length_ = 0;
  int digits_;
};

}  // namespace tvx::numeric
