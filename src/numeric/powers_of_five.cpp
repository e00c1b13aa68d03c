#include "numeric/powers_of_five.hpp"

#include <type_traits>

namespace tvx::numeric {
namespace {

using Table = std::remove_const_t<decltype(kPowersOfFive)>;

// Stores number / 2^scale as the q-th power. Called during compilation only, where a throw is an
// error.
constexpr void store(Table& table, int q, const BigInteger& number, int scale) {
  const int floor_log2_of_power_of_five = number.bit_length() - 1 - scale;
  if (floor_log2_of_power_of_ten(q) != floor_log2_of_power_of_five + q) throw q;
  if (q < 0 && number.bit_length() < 128) throw q;
  const Uint128 bits = number.leading_bits();
  table[static_cast<size_t>(q - kLeastPower)] = {static_cast<uint64_t>(bits >> 64),
                                                 static_cast<uint64_t>(bits)};
}

// Upwards by multiplying 1, downwards by dividing 2^kScale. Since floor(floor(x / 5^n) / 5) is
// floor(x / 5^(n + 1)), every quotient is exactly floor(2^kScale / 5^n), and as long as it has 128
// bits they are those of the true value: kScale >= 128 + log2(5^342) = 128 + 794.1.
constexpr Table compute() {
  constexpr int kScale = 960;
  Table table{};
  BigInteger power(1);
  for (int q = 0; q <= kGreatestPower; ++q) {
    store(table, q, power, 0);
    power.multiply_add(5, 0);
  }
  BigInteger quotient(1);
  quotient.shift_left(kScale);
  for (int q = -1; q >= kLeastPower; --q) {
    quotient.divide(5);
    store(table, q, quotient, kScale);
  }
  return table;
}

}  // namespace

constexpr decltype(kPowersOfFive) kPowersOfFive = compute();

}  // namespace tvx::numeric
