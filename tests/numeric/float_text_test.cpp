// Doubles to text and back, against the C library's printf and strtod.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <utility>

#include "numeric/float_read.hpp"
#include "numeric/float_write.hpp"
#include "numeric/powers_of_five.hpp"
#include "support/guarded_buffer.hpp"

namespace tvx::numeric {
namespace {

using namespace std::string_view_literals;

constexpr int kRandomCases = 300'000;

using Random = std::mt19937_64;

int random_int(Random& random, int least, int greatest) {
  return std::uniform_int_distribution<int>(least, greatest)(random);
}

double double_of(uint64_t bits) {
  return std::bit_cast<double>(bits);
}

template <typename Number>
std::string formatted(const char* format, int precision, Number value) {
  char text[2048];
  std::snprintf(text, sizeof text, format, precision, value);
  return text;
}

std::string random_text(Random& random, std::string_view characters, int length) {
  std::string text;
  for (int i = 0; i < length; ++i) text += characters[random() % characters.size()];
  return text;
}

void expect_written(double value) {
  static test::GuardedBuffer out(kGeneral17Bytes);
  char* const begin = reinterpret_cast<char*>(out.data());
  const std::string_view written(begin, static_cast<size_t>(write_general17(value, begin) - begin));
  ASSERT_EQ(written, formatted("%.*g", 17, value)) << std::hexfloat << value;
}

// The value, its neighbours and their opposites.
void expect_written_around(double value) {
  for (const double near :
       {value, std::nextafter(value, HUGE_VAL), std::nextafter(value, -HUGE_VAL)}) {
    expect_written(near);
    expect_written(-near);
  }
}

TEST(WriteGeneral17, RandomBitPatterns) {
  Random random(1);
  for (int i = 0; i < kRandomCases; ++i) expect_written(double_of(random()));
  for (int i = 0; i < kRandomCases / 10; ++i)  // subnormal numbers
    expect_written(double_of(random() >> random_int(random, 12, 63)));
}

TEST(WriteGeneral17, BoundariesAndPowers) {
  for (const double value : {0.0, DBL_MAX, HUGE_VAL, std::nan("")}) expect_written_around(value);
  for (int e = -1074; e <= 1023; ++e) expect_written_around(std::ldexp(1.0, e));
  for (int e = -324; e <= 308; ++e)
    expect_written_around(std::strtod(("1e" + std::to_string(e)).c_str(), nullptr));
}

// m / 2^j with m odd has the digits of m * 5^j, the last of which is a 5: eighteen make a tie.
TEST(WriteGeneral17, ExactTies) {
  Random random(4);
  double power = 5;
  for (int j = 1; j <= 25; ++j, power *= 5) {
    const double greatest = std::min(1e18 / power, 0x1p53);
    std::uniform_real_distribution<double> range(std::min(1e17 / power, greatest), greatest);
    for (int i = 0; i < 1'000; ++i)
      expect_written_around(std::ldexp(std::floor(range(random) / 2) * 2 + 1, -j));
  }
}

// Returns a double with this exponent whose product with a power of ten, as write_general17 forms
// it, lies within `window` units of the product's last bit from a tie at the last digit (unit 1) or
// the one before it (unit 10).
//
// With a suitable factor and modulus, ties are the odd multiples of modulus / 2. In a near one,
// |2m * factor - odd * modulus| < modulus / 4m, so that odd / 2m is a convergent of factor /
// modulus, perhaps not in lowest terms (Legendre), and Euclid's algorithm runs through those.
std::optional<double> double_near_tie(int exponent, unsigned unit, unsigned window) {
  const int q = 16 - floor_log10_of_power_of_two(exponent);
  if (q >= 0 && q <= kGreatestExactPower) return std::nullopt;  // products without error
  const PowerOfFive& power = kPowersOfFive[static_cast<size_t>(q - kLeastPower)];
  const Uint128 entry = static_cast<Uint128>(power.high) << 64 | power.low;

  // The product is m * 2^11 * entry / 2^64, with fraction_bits bits behind the point. It is taken
  // modulo `unit`, all times 2^52; the entry's last bit is cut off for that, less than a unit.
  const int fraction_bits = 126 - exponent - floor_log2_of_power_of_ten(q);
  if (unit == 10 && fraction_bits > 71) return std::nullopt;  // integers below 2^56
  const Uint128 modulus = Uint128{unit} << (fraction_bits + 52);
  Uint128 factor = (entry >> 1) % modulus;
  // In a subnormal number, m is a multiple of 2^spacing.
  const int spacing = std::max(0, -1022 - exponent);
  for (int i = 0; i < spacing; ++i) factor = 2 * factor % modulus;
  const Uint128 least_m = Uint128{1} << 52 >> spacing;

  struct Convergent {
    Uint128 remainder;  // |denominator * factor - numerator * modulus|
    Uint128 denominator;
    bool odd_numerator;
  };
  Convergent before{modulus, 0, true}, now{factor, 1, false};
  while (now.denominator < 4 * least_m) {
    if (now.odd_numerator && now.denominator % 2 == 0) {
      const Uint128 times = (2 * least_m + now.denominator - 1) / now.denominator | 1;
      const Uint128 m = times * now.denominator / 2;
      if (m < 2 * least_m && now.remainder <= (Uint128{window} << 53) / times)
        return std::ldexp(static_cast<double>(m << spacing), exponent - 52);
    }
    if (now.remainder <= before.remainder >> 60) break;  // the next denominator is too great
    const Uint128 quotient = before.remainder / now.remainder;
    const Convergent next{before.remainder % now.remainder,
                          before.denominator + quotient * now.denominator,
                          before.odd_numerator != (now.odd_numerator && quotient % 2 != 0)};
    before = std::exchange(now, next);
  }
  return std::nullopt;
}

// What spares write_general17 a second, exact way: products have an error of two units, and nothing
// lies within eight of a tie. That the search would find something shows in a wider window.
TEST(WriteGeneral17, NoDoubleComesNearATie) {
  for (int exponent = -1074; exponent <= 1023; ++exponent)
    for (const unsigned unit : {1u, 10u}) {
      EXPECT_EQ(double_near_tie(exponent, unit, 8), std::nullopt) << exponent << " " << unit;
      const std::optional<double> near = double_near_tie(exponent, unit, 4096);
      if (near) expect_written_around(*near);
    }
  EXPECT_EQ(double_near_tie(216, 1, 512), 0x13de005bd620dfp+164);
}

// Expects what the C library reads, in the text itself or in another one of the same number; when
// the text ends, and when it begins, at an inaccessible page. A NaN is the quiet one of its sign.
void expect_read(const std::string& text, const char* other = nullptr) {
  errno = 0;
  char* end = nullptr;
  double expected = std::strtod(other != nullptr ? other : text.c_str(), &end);
  const ptrdiff_t length = other != nullptr ? std::ssize(text) : end - text.c_str();
  const FloatRange range = errno != ERANGE        ? FloatRange::kWithin
                           : std::isinf(expected) ? FloatRange::kOverflow
                           : expected == 0        ? FloatRange::kUnderflow
                                                  : FloatRange::kWithin;
  if (std::isnan(expected)) expected = std::copysign(double_of(0x7FF8'0000'0000'0000), expected);

  constexpr size_t kRoom = 4096;
  static test::GuardedBuffer behind(kRoom);
  static test::GuardedBuffer before(kRoom, '9', test::GuardedBuffer::Guard::kBefore);
  for (uint8_t* const place : {behind.data() + kRoom - text.size(), before.data()}) {
    std::copy(text.begin(), text.end(), place);
    const char* const begin = reinterpret_cast<const char*>(place);
    const FloatParse met = parse_float(begin, begin + text.size());
    ASSERT_TRUE(std::bit_cast<uint64_t>(met.value) == std::bit_cast<uint64_t>(expected) &&
                met.end - begin == length && met.range == range)
        << text << std::hexfloat << ": " << met.value << ", not " << expected << "; length "
        << met.end - begin << ", not " << length << "; range " << static_cast<int>(met.range);
    if (text.empty() || text.size() > kPlainFloatBytes) continue;
    const bool is_plain = length == std::ssize(text) && range == FloatRange::kWithin &&
                          text[0] != '+' && text.find_first_not_of("0123456789+-.eE") == text.npos;
    const PlainFloat plain = read_plain_float(begin, begin + text.size());
    ASSERT_EQ(plain.is_plain, is_plain) << text;
    ASSERT_TRUE(!is_plain ||
                std::bit_cast<uint64_t>(plain.value) == std::bit_cast<uint64_t>(expected))
        << text;
  }
}

TEST(ParseFloat, RandomNumbers) {
  Random random(5);
  for (int i = 0; i < kRandomCases; ++i) {
    const double value = double_of(random());
    expect_read(formatted("%.*g", 17, value));
    if (i % 2 == 0) expect_read(formatted("%.*e", random_int(random, 0, 24), value));
  }
}

TEST(ParseFloat, DecimalNumbersWhichAreThenWritten) {
  Random random(6);
  for (int i = 0; i < kRandomCases / 2; ++i) {
    std::string text = random_text(random, "0123456789", random_int(random, 1, 40));
    if (random() % 2 == 0) text.insert(random() % (text.size() + 1), ".");
    const int greatest = random() % 2 == 0 ? 30 : 400;
    text += "e" + std::to_string(random_int(random, -greatest, greatest));
    expect_read(text);
    expect_written(std::strtod(text.c_str(), nullptr));
  }
}

// The half-way point above a double, exactly and moved by little in the last or a much later digit.
// A long double holds the point, 780 digits hold it in decimal.
void expect_read_around_half_way(double lower) {
  const long double upper = std::nextafter(lower, HUGE_VAL);
  const long double half_way = (lower + upper) / 2;
  const std::string text = formatted("%.*Le", 780, half_way);
  const size_t mark = text.find('e');
  const std::string exponent = text.substr(mark);
  const std::string digits = text.substr(0, text.find_last_not_of('0', mark - 1) + 1);
  std::string below = digits;
  --below.back();  // the last digit is not a zero
  for (const std::string& mantissa :
       {digits, digits + "00000", digits + std::string(900, '0') + "1", digits + "1", below,
        below + "9", below + std::string(900, '9')}) {
    expect_read(mantissa + exponent);
    expect_read("-" + mantissa + exponent);
  }
  for (const int precision : {16, 18, 19}) expect_read(formatted("%.*Le", precision, half_way));
  // C libraries before glibc 2.41 lose a bit of subnormal numbers in hexadecimal.
  for (const long double near :
       {half_way, std::nextafter(half_way, 0.0L), std::nextafter(half_way, upper)})
    expect_read(formatted("%.*La", 16, near), formatted("%.*Le", 780, near).c_str());
}

TEST(ParseFloat, HalfWayPoints) {
  Random random(8);
  for (int i = 0; i < kRandomCases / 1000; ++i) {
    expect_read_around_half_way(double_of(random() % std::bit_cast<uint64_t>(DBL_MAX)));
    expect_read_around_half_way(double_of(random() >> random_int(random, 12, 63)));
    expect_read_around_half_way(static_cast<double>(random() >> random_int(random, 0, 12)));
  }
  for (const double boundary : {0.0, DBL_TRUE_MIN, DBL_MIN, std::nextafter(DBL_MIN, 0.0),
                                std::nextafter(DBL_MAX, 0.0), 1.0, std::nextafter(1.0, 0.0)})
    expect_read_around_half_way(boundary);
}

TEST(ParseFloat, TokenSoup) {
  const std::string_view tokens[] = {
      "0", "1",  "9",  "12345678", ".",          "e",   "E",     "+",        "-",   "p",   "P",
      "x", "0x", "0X", "a",        "F",          "inf", "INIty", "infinity", "nan", "NaN", "(",
      ")", "_",  "Z",  " ",        "\t\n\v\f\r", "\b",  ",",     "\xA0",     "\0"sv};
  Random random(9);
  for (int i = 0; i < kRandomCases; ++i) {
    std::string text;
    for (int count = random_int(random, 0, 8); count > 0; --count)
      text += tokens[random() % std::size(tokens)];
    expect_read(text);
  }
}

void expect_read_with_all_beginnings(const std::string& text) {
  for (size_t length = 0; length <= text.size(); ++length) expect_read(text.substr(0, length));
}

// Each ends at a bar: limits of the range, and corners of the grammar.
constexpr std::string_view kTexts =
    "1.7976931348623158e308|1.7976931348623159e308|-1e309|-1e-324|1e-343|9999999999999999999e-343|"
    "-1e-999|-0e-999|0e99999999999999999999999|0x1.fffffffffffff7p1023|0x1p1024|0x0.0p99999|"
    "0x1.fffffffffffff7ffffffffffffffffp1023|0x1.00000000000000000000001p-1075|0x1p-99999|"
    "0x.fffffffffffff7fp-1022|0x00000000000000000000001.8p1|0x0.000000000000000000000018p100|"
    "0XaB.cDp-3|0xg|-iNfInItY|infinityx|-nan(a_Z9)|nan(0x1f)|nan(a-b)|nan(\000)|1\x85|"
    "12345678\00012345678|18446744073709551616|9007199254740993.00000000000000000001|"sv;

TEST(ParseFloat, Texts) {
  for (std::string_view texts = kTexts; !texts.empty(); texts.remove_prefix(texts.find('|') + 1))
    expect_read_with_all_beginnings(std::string(texts.substr(0, texts.find('|'))));
  // Exponents beyond every integer type, and ones that a long row of zeros makes up for.
  const std::string zeros(1000, '0'), nines(300, '9');
  for (const std::string& text :
       {"1e" + zeros + "5", "1e-" + nines, "0x1p" + nines, "0x0p-" + nines, "0x1p-" + nines,
        "0." + zeros + "12345e1003", "12345" + zeros + "e-1004", "0x0." + zeros + "18p4004",
        "0x18" + zeros + "p-4004", zeros + ".5", "." + zeros + nines + "e800",
        "9007199254740993" + zeros + ".0e-1000"})
    expect_read_with_all_beginnings(text);
}

}  // namespace
}  // namespace tvx::numeric
