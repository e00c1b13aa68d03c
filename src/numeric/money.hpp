// Money: amounts with four decimal places, counted in ten-thousandths. The larger type counts in 64
// bits, the smaller in 32. Nothing here allocates, rounds by binary fractions or keeps state.
#pragma once

#include <bit>
#include <concepts>
#include <cstdint>
#include <limits>

#include "base/bytes.hpp"
#include "numeric/decimal.hpp"
#include "numeric/integer_write.hpp"
#include "tvxcomn/datatypes.h"

namespace tvx::numeric {

inline constexpr int kMoneyScale = 4;           // digits after the point
inline constexpr uint64_t kMoneyUnit = 10'000;  // the count of the amount one

struct Money {
  int64_t count;
  bool operator==(const Money&) const = default;
};

struct SmallMoney {
  int32_t count;
  bool operator==(const SmallMoney&) const = default;
};

template <class T>
concept MoneyAmount = std::same_as<T, Money> || std::same_as<T, SmallMoney>;

inline constexpr Money kLargestMoney{std::numeric_limits<int64_t>::max()};
inline constexpr Money kMostNegativeMoney{std::numeric_limits<int64_t>::min()};
inline constexpr uint64_t kMostNegativeMagnitude = uint64_t{1} << 63;

// The largest (most negative) amount of a type.
template <MoneyAmount Amount>
[[nodiscard]] constexpr Amount money_limit(bool negative) {
  using Limits = std::numeric_limits<decltype(Amount::count)>;
  return {negative ? Limits::min() : Limits::max()};
}

// The values are those that the internal operations of the interface return.
enum class MoneyStatus : int32_t { kDone = 0, kOverflow = 1, kSyntax = 2, kZeroDivide = 3 };

template <MoneyAmount Amount>
struct MoneyResult {
  Amount value;
  MoneyStatus status;
};

template <MoneyAmount Amount>
[[nodiscard]] constexpr MoneyResult<Amount> money_done(Amount value) {
  return {value, MoneyStatus::kDone};
}

// A failed operation gives no partial value.
template <MoneyAmount Amount>
[[nodiscard]] constexpr MoneyResult<Amount> money_failed(MoneyStatus status) {
  return {Amount{0}, status};
}

// ---- Stored form -------------------------------------------------------------------------------

// The record has the high word first, which is the 64-bit count with its halves exchanged.
static_assert(std::endian::native == std::endian::little);

[[nodiscard]] inline Money load_money(const void* record) {
  return {static_cast<int64_t>(std::rotl(base::load<uint64_t>(record), 32))};
}

inline void store_money(void* record, Money value) {
  base::store(record, std::rotl(static_cast<uint64_t>(value.count), 32));
}

// ---- Magnitude ---------------------------------------------------------------------------------

[[nodiscard]] constexpr uint64_t magnitude(Money value) {
  const auto bits = static_cast<uint64_t>(value.count);
  return value.count < 0 ? 0 - bits : bits;
}

// Magnitudes up to 2^63; that one gives the most negative amount whatever the sign.
[[nodiscard]] constexpr Money signed_money(uint64_t magnitude, bool negative) {
  return {static_cast<int64_t>(negative ? 0 - magnitude : magnitude)};
}

// 10^digits, 0 to 19.
[[nodiscard]] constexpr uint64_t power_of_ten(int digits) {
  return kPowersOfTen[static_cast<size_t>(digits)];
}

// Divides by a power of ten and rounds by the most significant digit dropped, halves up. The sum
// stays below 2^64: a magnitude of at most 2^63 and at most 5 x 10^18.
[[nodiscard]] constexpr uint64_t round_off(uint64_t magnitude, uint64_t power) {
  return (magnitude + power / 2) / power;
}

// ---- Arithmetic --------------------------------------------------------------------------------

template <MoneyAmount Amount>
[[nodiscard]] constexpr MoneyResult<Amount> add(Amount a, Amount b) {
  Amount sum{};
  if (__builtin_add_overflow(a.count, b.count, &sum.count)) [[unlikely]]
    return money_failed<Amount>(MoneyStatus::kOverflow);
  return money_done(sum);
}

template <MoneyAmount Amount>
[[nodiscard]] constexpr MoneyResult<Amount> subtract(Amount a, Amount b) {
  Amount difference{};
  if (__builtin_sub_overflow(a.count, b.count, &difference.count)) [[unlikely]]
    return money_failed<Amount>(MoneyStatus::kOverflow);
  return money_done(difference);
}

// The amount `steps` ten-thousandths further on. Beyond a limit it goes on from the opposite one,
// with status kOverflow.
[[nodiscard]] constexpr MoneyResult<Money> step(Money value, int64_t steps) {
  Money next{};
  const bool wraps = __builtin_add_overflow(value.count, steps, &next.count);
  return {next, wraps ? MoneyStatus::kOverflow : MoneyStatus::kDone};
}

// The most negative amount has no opposite: it stays, with status kOverflow.
template <MoneyAmount Amount>
[[nodiscard]] constexpr MoneyResult<Amount> negate(Amount value) {
  Amount opposite{};
  const bool wraps = __builtin_sub_overflow(decltype(value.count){0}, value.count, &opposite.count);
  return {opposite, wraps ? MoneyStatus::kOverflow : MoneyStatus::kDone};
}

[[nodiscard]] constexpr Money widen(SmallMoney value) {
  return {value.count};
}

// An amount that does not fit becomes the limit on its side, with status kOverflow.
[[nodiscard]] constexpr MoneyResult<SmallMoney> narrow(Money value) {
  const auto count = static_cast<int32_t>(value.count);
  if (count == value.count) return money_done(SmallMoney{count});
  return {money_limit<SmallMoney>(value.count < 0), MoneyStatus::kOverflow};
}

// Product, rounded half away from zero to four decimal places.
[[nodiscard]] MoneyResult<Money> multiply(Money a, Money b);

// Quotient, truncated towards zero to four decimal places. kZeroDivide: the divisor is zero.
[[nodiscard]] MoneyResult<Money> divide(Money a, Money b);

// The same for the small type, with the large one in between: what does not fit is an overflow.
[[nodiscard]] MoneyResult<SmallMoney> multiply(SmallMoney a, SmallMoney b);
[[nodiscard]] MoneyResult<SmallMoney> divide(SmallMoney a, SmallMoney b);

// The magnitude times `multiplier` plus `addend` as an unsigned number, with the value's sign: the
// addend takes a negative value further from zero. Multiplier 0 gives the (signed) addend.
// kOverflow when the magnitude reaches 2^63, so the most negative amount never comes out of it.
[[nodiscard]] MoneyResult<Money> scale(Money value, uint32_t multiplier, int32_t addend);

struct MoneyDivision {
  Money quotient;      // truncated towards zero
  uint64_t remainder;  // of the magnitude
};

// Divides by a number above 0.
[[nodiscard]] constexpr MoneyDivision divide_by_integer(Money value, uint32_t divisor) {
  const uint64_t whole = magnitude(value);
  return {signed_money(whole / divisor, value.count < 0), whole % divisor};
}

// ---- Other numbers -----------------------------------------------------------------------------

// An integer as an amount. kOverflow, with the limit on its side, when it is out of range.
template <class Integer>
[[nodiscard]] constexpr MoneyResult<Money> money_of_integer(Integer value) {
  Money amount{};
  if (__builtin_mul_overflow(value, static_cast<int64_t>(kMoneyUnit), &amount.count))
    return {money_limit<Money>(value < 0), MoneyStatus::kOverflow};
  return money_done(amount);
}

// The nearest integer, halves away from zero.
[[nodiscard]] constexpr int64_t nearest_integer(Money value) {
  return signed_money(round_off(magnitude(value), kMoneyUnit), value.count < 0).count;
}

// The integer that the text of an amount with `digits` fraction digits, 1 to 4, rounds to. Rounding
// twice, it may be one further from zero than the nearest.
[[nodiscard]] constexpr int64_t integer_of_text(Money value, int digits) {
  const uint64_t shown = round_off(magnitude(value), power_of_ten(kMoneyScale - digits));
  return signed_money(round_off(shown, power_of_ten(digits)), value.count < 0).count;
}

static_assert(nearest_integer({4'999}) == 0 && nearest_integer({-5'000}) == -1);
static_assert(integer_of_text({4'999}, 2) == 1 && integer_of_text({4'999}, 4) == 0);

// A double rounded to the nearest ten-thousandth, halves away from zero. kOverflow, with the limit
// on its side, beyond the range; for NaN with the amount 0.
[[nodiscard]] MoneyResult<Money> money_of_double(double value);

[[nodiscard]] double double_of_money(Money value);

// An exact numeric rounded half away from zero to four decimal places. kOverflow, with the limit on
// its side, when it is out of range.
[[nodiscard]] MoneyResult<Money> money_of_decimal(Decimal value);

// The amount with a scale, further digits cut off, and a precision, which is not checked. Statuses
// as those of rescale().
[[nodiscard]] DecimalStatus decimal_of_money(Money amount, int32_t precision, int32_t scale,
                                             Decimal& value);

}  // namespace tvx::numeric
