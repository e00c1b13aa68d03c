// In front of the general operations on Decimals, which answer for everything and above all for
// overflow, stand short ways for what records nearly always hold: magnitudes within their precision
// and results whose type has room for every digit. Then nothing is left to be checked in the end,
// and the sizes of numbers, on which branches cannot be predicted, do not matter: what is chosen is
// chosen by precision and scale, which are the same in all rows of a column.
//
// The ways are functions of their own, each with the registers to itself.
#include "numeric/record_arithmetic.hpp"

#include <algorithm>
#include <bit>

#include "numeric/decimal_arithmetic.hpp"
#include "numeric/record_layout.hpp"

namespace tvx::numeric {
namespace {

uint64_t sign_of(const comn_numeric& record) {
  return record.sign != 0;
}

bool are_of_one_type(const comn_numeric& a, const comn_numeric& b) {
  return header_of(a) == header_of(b);
}

// As many words, if there are no more of a magnitude.
constexpr size_t limited(size_t words) {
  return std::min<size_t>(words, 4);
}

// The general way: computes into a Decimal of a type and stores it.
template <class Compute>
DecimalStatus store_result(DecimalType type, comn_numeric& out, Compute compute) {
  if (!type.is_valid()) return DecimalStatus::kOverflow;
  Decimal result{{}, type.precision, type.scale, false};
  const DecimalStatus status = compute(result);
  if (status != DecimalStatus::kDone) result.magnitude = {};
  put_numeric(result, out);  // its digits are checked
  return status;
}

// value * 10^digits, which fits.
TwoWords scaled_up(const TwoWords& value, int32_t digits) {
  const auto& power = kWidePowersOfTen[static_cast<size_t>(digits)].limb;
  return multiply_low(value, TwoWords{{power[0], power[1]}});
}
Uint256 scaled_up(const Uint256& value, int32_t digits) {
  return multiply_low(value, kWidePowersOfTen[static_cast<size_t>(digits)]);
}

// ---- Sums --------------------------------------------------------------------------------------

// Signs are handed on beside the records, for a subtraction turns one of them.

[[gnu::noinline]] DecimalStatus add_any(const comn_numeric& left, const comn_numeric& right,
                                        uint64_t left_sign, uint64_t right_sign,
                                        comn_numeric& out) {
  Decimal a = load_numeric(left);
  Decimal b = load_numeric(right);
  a.negative = left_sign != 0;
  b.negative = right_sign != 0;
  const DecimalStatus status = bring_to_one_type(a, b);
  if (status != DecimalStatus::kDone) return status;
  return store_result(sum_type(a), out,
                      [&](Decimal& result) { return add_or_subtract(a, b, false, result); });
}

// Whether two records are known to have one precision and scale, as those of one column have.
enum class Types { kOne, kAny };

// Adds in words that hold the magnitudes at the scale of b, the larger one, and their sum, whose
// header is given.
template <size_t kWords, Types types>
[[gnu::noinline]] DecimalStatus add_as(const comn_numeric& a, const comn_numeric& b,
                                       uint64_t a_sign, uint64_t b_sign, uint32_t header,
                                       comn_numeric& out) {
  const int32_t a_precision = a.precision;
  const int32_t b_precision = types == Types::kOne ? a_precision : b.precision;
  if (!is_clearly_in_precision(a, a_precision) || !is_clearly_in_precision(b, b_precision))
      [[unlikely]]
    return add_any(a, b, a_sign, b_sign, out);
  auto sum = load_magnitude<kWords>(a, a_precision);
  if (types == Types::kAny && a.scale != b.scale) sum = scaled_up(sum, b.scale - a.scale);
  const uint64_t turned = add_signed(sum, load_magnitude<kWords>(b, b_precision), a_sign ^ b_sign);
  put_numeric<1, limited(kWords + 1)>(sum, (a_sign ^ turned) != 0, header, out);
  return DecimalStatus::kDone;
}

// The header is that of the operands at one scale.
template <Types types>
inline DecimalStatus add_in_precision(const comn_numeric& a, const comn_numeric& b, uint64_t a_sign,
                                      uint64_t b_sign, uint32_t header, comn_numeric& out) {
  // As a < 10^a.precision, a * 10^(scale - a.scale) < 10^precision; so is b. Their sum has a digit
  // more at the most. It is below 2 * 10^38 < 2^128 or 2 * 10^76 < 2^255.
  const uint32_t type = header + make_header(1, 0);
  if (precision_of(header) <= 2 * kDigitsOfWord)
    return add_as<2, types>(a, b, a_sign, b_sign, type, out);
  if (precision_of(header) < kMaxPrecision) [[likely]]
    return add_as<4, types>(a, b, a_sign, b_sign, type, out);
  return add_any(a, b, a_sign, b_sign, out);
}

// The one with the smaller scale comes first.
DecimalStatus add_any_types(const comn_numeric& a, const comn_numeric& b, uint64_t a_sign,
                            uint64_t b_sign, comn_numeric& out) {
  const bool swap = a.scale > b.scale;
  const comn_numeric& first = swap ? b : a;
  const comn_numeric& second = swap ? a : b;
  const int32_t scale = second.scale;
  const int32_t precision =
      std::max(first.precision - first.scale, second.precision - scale) + scale;
  return add_in_precision<Types::kAny>(first, second, swap ? b_sign : a_sign,
                                       swap ? a_sign : b_sign, make_header(precision, scale), out);
}

inline DecimalStatus add_records(const comn_numeric& a, const comn_numeric& b, uint64_t a_sign,
                                 uint64_t b_sign, comn_numeric& out) {
  if (are_of_one_type(a, b))
    return add_in_precision<Types::kOne>(a, b, a_sign, b_sign, header_of(a), out);
  return add_any_types(a, b, a_sign, b_sign, out);
}

}  // namespace

DecimalStatus add(const comn_numeric& a, const comn_numeric& b, comn_numeric& out) {
  return add_records(a, b, sign_of(a), sign_of(b), out);
}

DecimalStatus subtract(const comn_numeric& a, const comn_numeric& b, comn_numeric& out) {
  return add_records(a, b, sign_of(a), sign_of(b) ^ 1, out);
}

// ---- Products ----------------------------------------------------------------------------------

namespace {

[[gnu::noinline]] DecimalStatus multiply_any(const comn_numeric& left, const comn_numeric& right,
                                             comn_numeric& out) {
  const Decimal a = load_numeric(left);
  const Decimal b = load_numeric(right);
  return store_result(product_type(a, b), out,
                      [&](Decimal& result) { return multiply(a, b, result); });
}

// Multiplies magnitudes of so many words. The product's header gives it a digit more than the
// operands have together.
template <size_t kWordsOfA, size_t kWordsOfB>
[[gnu::noinline]] DecimalStatus multiply_words(const comn_numeric& a, const comn_numeric& b,
                                               uint32_t header, comn_numeric& out) {
  if (!is_clearly_in_precision(a, a.precision) || !is_clearly_in_precision(b, b.precision))
      [[unlikely]]
    return multiply_any(a, b, out);
  const uint64_t sign = sign_of(a) ^ sign_of(b);
  constexpr size_t words = kWordsOfA + kWordsOfB;
  const auto product = multiply_low<limited(words)>(load_words<kWordsOfA>(a, a.precision),
                                                    load_words<kWordsOfB>(b, b.precision));
  put_numeric<words - 1, limited(words + 1)>(product, sign != 0, header, out);
  return DecimalStatus::kDone;
}

// The first operand has the higher precision, or the same. A product of 77 digits at the most
// leaves but these numbers of words.
DecimalStatus multiply_in_order(const comn_numeric& a, const comn_numeric& b, uint32_t header,
                                comn_numeric& out) {
  if (a.precision > 2 * kDigitsOfWord) {
    if (b.precision > kDigitsOfWord) return multiply_words<3, 2>(a, b, header, out);
    if (a.precision > 3 * kDigitsOfWord) return multiply_words<4, 1>(a, b, header, out);
    return multiply_words<3, 1>(a, b, header, out);
  }
  if (b.precision > kDigitsOfWord) return multiply_words<2, 2>(a, b, header, out);
  if (a.precision > kDigitsOfWord) return multiply_words<2, 1>(a, b, header, out);
  return multiply_words<1, 1>(a, b, header, out);
}

}  // namespace

DecimalStatus multiply(const comn_numeric& a, const comn_numeric& b, comn_numeric& out) {
  const uint32_t header = header_of(a) + header_of(b) + make_header(1, 0);
  if (!is_valid_header(header)) [[unlikely]]
    return multiply_any(a, b, out);
  return a.precision >= b.precision ? multiply_in_order(a, b, header, out)
                                    : multiply_in_order(b, a, header, out);
}

// ---- Quotients ---------------------------------------------------------------------------------

namespace {

[[gnu::noinline]] DecimalStatus divide_any(const comn_numeric& left, const comn_numeric& right,
                                           comn_numeric& out) {
  const Decimal a = load_numeric(left);
  const Decimal b = load_numeric(right);
  return store_result(quotient_type(a, b), out,
                      [&](Decimal& result) { return divide(a, b, result, nullptr); });
}

}  // namespace

DecimalStatus divide(const comn_numeric& a, const comn_numeric& b, comn_numeric& out) {
  const DecimalType type = quotient_type(a, b);
  const int32_t shift = type.scale - a.scale + b.scale;
  const bool fits = (shift >= 0) & (a.precision + shift <= type.precision);
  if (!fits || !is_clearly_in_precision(a, a.precision)) [[unlikely]]
    return divide_any(a, b, out);
  const auto divisor = load_magnitude<4>(b, b.precision);
  if (divisor.is_zero()) [[unlikely]]
    return divide_any(a, b, out);
  // The dividend is below 10^(a.precision + shift), which the type has room for, and so is the
  // quotient.
  const Uint256 dividend = scaled_up(load_magnitude<4>(a, a.precision), shift);
  Uint256 quotient;
  Uint256 remainder;
  divide(dividend, divisor, quotient, remainder);
  put_numeric(quotient, sign_of(a) != sign_of(b), make_header(type.precision, type.scale), out);
  return DecimalStatus::kDone;
}

// ---- Comparisons -------------------------------------------------------------------------------

namespace {

// They return false when the general comparison has to answer.

// The leading bytes of a magnitude and zeros.
uint64_t leading_bytes(const comn_numeric& record) {
  const size_t bytes = layout_of(record.precision).bytes;
  const uint64_t behind = bytes < 8 ? UINT64_MAX >> (8 * bytes) : 0;
  return leading_word(record) & ~behind;
}

// Compares records that differ in sign or by more than a half in the decimal logarithm: sets -1 or
// 1 as a is less or greater.
bool compare_leading_bits(const comn_numeric& a, const comn_numeric& b, int32_t& order) {
  const uint64_t x = leading_bytes(a);
  const uint64_t y = leading_bytes(b);
  if ((x == 0) | (y == 0)) return false;
  // The logarithm of a number of n bits lies in [n - 1, n) * log10(2), here in units of 1 / 4096;
  // 1233 such units are log10(2) - 4.7e-6. Numbers whose upper limits differ by a half, less an
  // error of 256 * 4.7e-6, hence differ, by a factor of 1.5 at least. That factor also decides
  // where surplus digits would be cut off: there the magnitude that does not fit 77 digits is
  // 10^77 at least and the other is below 2^256.
  const auto logarithm = [](uint64_t leading, const comn_numeric& record) {
    const auto bytes = static_cast<int32_t>(layout_of(record.precision).bytes);
    return (8 * bytes - std::countl_zero(leading)) * 1233 - record.scale * 4096;
  };
  const int32_t difference = logarithm(x, a) - logarithm(y, b);
  const uint64_t a_sign = sign_of(a);
  const bool same_sign = a_sign == sign_of(b);
  if (same_sign & (difference <= 2048) & (difference >= -2048)) return false;
  const bool less = same_sign & (difference < 0);
  order = (less ^ (a_sign != 0)) ? -1 : 1;
  return true;
}

// Compares the magnitudes of records with the same header, whose scales need no thought.
bool compare_same_type(const comn_numeric& a, const comn_numeric& b, int32_t& order) {
  if (!are_of_one_type(a, b)) return false;
  const uint64_t x = leading_bytes(a);
  const uint64_t y = leading_bytes(b);
  const uint64_t a_sign = sign_of(a);
  const bool same_sign = a_sign == sign_of(b);
  // Where one is zero in front, zero may have a sign; where both are equal, the rest decides.
  if ((x == 0) | (y == 0) | (same_sign & (x == y))) return false;
  const bool less = same_sign & (x < y);
  order = (less ^ (a_sign != 0)) ? -1 : 1;
  return true;
}

}  // namespace

int32_t compare(const comn_numeric& a, const comn_numeric& b) {
  int32_t order = 0;
  if (compare_same_type(a, b, order) || compare_leading_bits(a, b, order)) [[likely]]
    return order;
  return compare(load_numeric(a), load_numeric(b), kCompareSigned | kCompareScaled);
}

}  // namespace tvx::numeric
