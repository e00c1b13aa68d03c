// How many bytes a number of decimal digits takes, and the reverse, for exact numerics of up to 77
// digits. Both tables are computed from their definition.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvx::numeric {

inline constexpr int32_t kMaxPrecision = 77;    // 10^77 - 1 fits 256 bits
inline constexpr int32_t kMagnitudeBytes = 32;  // of the largest magnitude
inline constexpr int32_t kMinFieldLength = 2;   // sign byte and one magnitude byte
inline constexpr uint8_t kNoPrecision = 255;

namespace detail {

// Fewest bytes that hold 10^precision - 1, for precisions 0 to 77. A power of ten above 1 is never
// a power of two, so these are also the fewest bytes of 10^precision itself, but for 10^0.
constexpr std::array<uint8_t, kMaxPrecision + 1> make_magnitude_bytes() {
  std::array<uint8_t, kMaxPrecision + 1> bytes{1};
  std::array<uint8_t, kMagnitudeBytes + 1> power{1};  // least significant byte first
  for (size_t precision = 1; precision < bytes.size(); ++precision) {
    unsigned carry = 0;
    size_t used = 0;
    for (size_t i = 0; i < power.size(); ++i) {
      carry += power[i] * 10U;
      power[i] = static_cast<uint8_t>(carry);
      carry >>= 8;
      if (power[i] != 0) used = i + 1;
    }
    bytes[precision] = static_cast<uint8_t>(used);
  }
  return bytes;
}

// Sign byte and magnitude, by precision; entry 0 is that of precision 1.
constexpr std::array<uint8_t, kMaxPrecision + 1> make_field_lengths() {
  auto lengths = make_magnitude_bytes();
  for (uint8_t& length : lengths) ++length;
  return lengths;
}

// Most digits that always fit, by field length - 2. The three entries after the last say that there
// is no such length.
constexpr std::array<uint8_t, kMagnitudeBytes + 3> make_precisions() {
  std::array<uint8_t, kMagnitudeBytes + 3> precisions{};
  precisions.fill(kNoPrecision);
  const auto lengths = make_field_lengths();
  for (uint8_t precision = 1; precision <= kMaxPrecision; ++precision) {
    for (size_t i = lengths[precision] - kMinFieldLength; i < kMagnitudeBytes; ++i) {
      precisions[i] = precision;
    }
  }
  return precisions;
}

}  // namespace detail

inline constexpr auto kFieldLengthOfPrecision = detail::make_field_lengths();
inline constexpr auto kPrecisionOfFieldLength = detail::make_precisions();

static_assert(kFieldLengthOfPrecision[0] == 2 && kFieldLengthOfPrecision[1] == 2 &&
              kFieldLengthOfPrecision[10] == 6 && kFieldLengthOfPrecision[38] == 17 &&
              kFieldLengthOfPrecision[74] == 32 && kFieldLengthOfPrecision[77] == 33);
static_assert(kPrecisionOfFieldLength[0] == 2 && kPrecisionOfFieldLength[4] == 12 &&
              kPrecisionOfFieldLength[15] == 38 && kPrecisionOfFieldLength[31] == 77 &&
              kPrecisionOfFieldLength[34] == kNoPrecision);

// Sign byte and magnitude of a precision from 1 to 77.
[[nodiscard]] constexpr int32_t field_length(int32_t precision) {
  return kFieldLengthOfPrecision[static_cast<size_t>(precision)];
}

[[nodiscard]] constexpr bool is_precision(int32_t precision) {
  return precision >= 1 && precision <= kMaxPrecision;
}

}  // namespace tvx::numeric
