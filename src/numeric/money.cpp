// Money arithmetic beyond 64 bits, and money from and to other numbers.
#include "numeric/money.hpp"

#include <cmath>

namespace tvx::numeric {
namespace {

__extension__ typedef unsigned __int128 Wide;

[[nodiscard]] MoneyResult<Money> checked_money(Wide magnitude, bool negative) {
  if (magnitude > kMostNegativeMagnitude || (magnitude == kMostNegativeMagnitude && !negative))
    return money_failed<Money>(MoneyStatus::kOverflow);
  return money_done(signed_money(static_cast<uint64_t>(magnitude), negative));
}

[[nodiscard]] MoneyResult<SmallMoney> narrow_result(const MoneyResult<Money>& wide) {
  if (wide.status != MoneyStatus::kDone) return money_failed<SmallMoney>(wide.status);
  const auto small = narrow(wide.value);
  return small.status == MoneyStatus::kDone ? small : money_failed<SmallMoney>(small.status);
}

}  // namespace

MoneyResult<Money> multiply(Money a, Money b) {
  // Magnitudes of at most 2^63 have a product of at most 2^126.
  const Wide product = Wide{magnitude(a)} * magnitude(b);
  return checked_money((product + kMoneyUnit / 2) / kMoneyUnit, (a.count < 0) != (b.count < 0));
}

MoneyResult<Money> divide(Money a, Money b) {
  if (b.count == 0) return money_failed<Money>(MoneyStatus::kZeroDivide);
  // 2^63 x 10^4 is below 2^77.
  const Wide dividend = Wide{magnitude(a)} * kMoneyUnit;
  return checked_money(dividend / magnitude(b), (a.count < 0) != (b.count < 0));
}

MoneyResult<SmallMoney> multiply(SmallMoney a, SmallMoney b) {
  return narrow_result(multiply(widen(a), widen(b)));
}

MoneyResult<SmallMoney> divide(SmallMoney a, SmallMoney b) {
  return narrow_result(divide(widen(a), widen(b)));
}

MoneyResult<Money> scale(Money value, uint32_t multiplier, int32_t addend) {
  if (multiplier == 0) return money_done(Money{addend});
  const Wide scaled = Wide{magnitude(value)} * multiplier + static_cast<uint32_t>(addend);
  if (scaled >= kMostNegativeMagnitude) return money_failed<Money>(MoneyStatus::kOverflow);
  return money_done(signed_money(static_cast<uint64_t>(scaled), value.count < 0));
}

// The amount that a step of the high word stands for: 2^32 ten-thousandths.
constexpr double kHighStep = 429496.7296;

MoneyResult<Money> money_of_double(double value) {
  constexpr double half_step = 0.00005;
  constexpr double largest = 922337203685477.625;  // the double nearest to the largest amount
  const bool negative = std::signbit(value);
  const double rounded = std::fabs(value) + half_step;
  if (std::isnan(value)) return money_failed<Money>(MoneyStatus::kOverflow);
  if (rounded > largest) return {money_limit<Money>(negative), MoneyStatus::kOverflow};
  if (rounded == largest) {
    return money_done(Money{negative ? -kLargestMoney.count : kLargestMoney.count});
  }
  // The high word's share is taken off first because the whole times 10,000 would lose digits.
  const auto high = static_cast<int64_t>(rounded / kHighStep);
  const double rest = rounded - static_cast<double>(high) * kHighStep;
  // When the quotient or the product was rounded the rest can lie a little outside of one step, so
  // that it carries into or borrows from the high word.
  const auto low = static_cast<int64_t>(rest * static_cast<double>(kMoneyUnit));
  const int64_t count = high * (int64_t{1} << 32) + low;
  return money_done(Money{negative ? -count : count});
}

double double_of_money(Money value) {
  const auto high = static_cast<int32_t>(value.count >> 32);
  const auto low = static_cast<uint32_t>(value.count);
  return static_cast<double>(high) * kHighStep + static_cast<double>(low) / 10'000.0;
}

MoneyResult<Money> money_of_decimal(Decimal value) {
  round_half_away(value, kMoneyScale);
  const bool fits = rescale(value, kMoneyScale) == DecimalStatus::kDone;
  const uint64_t limit = value.negative ? kMostNegativeMagnitude : kMostNegativeMagnitude - 1;
  if (!fits || value.magnitude > make_uint256(limit))
    return {money_limit<Money>(value.negative), MoneyStatus::kOverflow};
  return money_done(signed_money(value.magnitude.limb[0], value.negative));
}

DecimalStatus decimal_of_money(Money amount, int32_t precision, int32_t scale, Decimal& value) {
  value = {make_uint256(magnitude(amount)), precision, kMoneyScale, amount.count < 0};
  return rescale(value, scale);
}

}  // namespace tvx::numeric
