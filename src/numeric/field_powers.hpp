// The powers of ten as fields, computed at compile time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "numeric/uint256.hpp"

namespace tvx::numeric {

// Length of the field, sign byte and magnitude; zeros behind them.
using FieldPower = std::array<uint8_t, 34>;

namespace detail {

constexpr std::array<FieldPower, kGreatestTen + 1> make_field_powers() {
  std::array<FieldPower, kGreatestTen + 1> rows{};
  for (size_t exponent = 0; exponent < rows.size(); ++exponent) {
    const Uint256& power = kWidePowersOfTen[exponent];
    const size_t bytes = static_cast<size_t>(byte_length(power));
    rows[exponent][0] = static_cast<uint8_t>(bytes + 1);
    for (size_t i = 0; i < bytes; ++i) {
      const size_t from_end = bytes - 1 - i;
      rows[exponent][2 + i] =
          static_cast<uint8_t>(power.limb[from_end / 8] >> (8 * (from_end % 8)));
    }
  }
  return rows;
}

}  // namespace detail

// By exponent, 0 to 77.
inline constexpr auto kFieldPowers = detail::make_field_powers();

}  // namespace tvx::numeric
