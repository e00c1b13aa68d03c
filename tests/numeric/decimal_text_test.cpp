// Exact numerics as text, integers and doubles, against the reference and the C library.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tuple>

#include "numeric/decimal_machine.hpp"
#include "numeric/decimal_reference.hpp"
#include "numeric/decimal_text.hpp"
#include "tvxcomn/numeric.h"

namespace {

using namespace tvx::test;

std::string text_of(const Number& n) {
  std::string digits = Big(abs(n.value)).str();
  const size_t scale = static_cast<size_t>(n.scale);
  if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
  if (scale != 0) digits.insert(digits.size() - scale, ".");
  return (n.value < 0 ? "-" : "") + digits;
}

TEST(DecimalText, RoundTripOfEveryPrecisionAndScale) {
  Random random;
  for (int precision = 1; precision <= 77; ++precision) {
    for (int scale = 0; scale <= 77; ++scale) {
      const int length = field_length(precision);
      for (const Big& value :
           {Big(0), Big(ten_to(precision) - 1), Big(-random.digits(precision))}) {
        const Number n{value, precision, scale};
        const std::string text = text_of(n);
        ASSERT_EQ(Field(length, precision, scale, value).text(), text);
        Field fixed(length, precision, scale, 1);
        ASSERT_EQ(fixed.read(text, false), COM_NUM_DONE) << text;
        ASSERT_EQ(fixed.number(), n) << text;
        Field open(33, 255, 255);
        ASSERT_EQ(open.read(text, false), COM_NUM_DONE) << text;
        ASSERT_EQ(open.number().value, value) << text;
        ASSERT_EQ(open.number().scale, scale) << text;
        ASSERT_EQ(open.descriptor.length, field_length(open.descriptor.precision));
        const tvx::numeric::Decimal decimal =
            tvx::numeric::load_field(fixed.bytes.data(), length, precision, scale);
        ASSERT_EQ(tvx::numeric::to_double(decimal), std::strtod(text.c_str(), nullptr)) << text;
        const auto part = tvx::numeric::to_integer<int64_t>(decimal);
        const Big whole = value / ten_to(scale);
        const Big limit = Big(1) << 63;
        ASSERT_EQ(Big(part.value), std::max(Big(-limit), std::min(Big(limit - 1), whole))) << text;
        ASSERT_EQ(part.has_fraction, whole * ten_to(scale) != value);
      }
    }
  }
}

TEST(DecimalText, Rows) {
  constexpr int kDone = COM_NUM_DONE, kOver = COM_NUM_OVERFLOW, kBad = COM_NUM_INVALID,
                kDrop = COM_NUM_DROPPED;
  const struct {
    std::string text;
    int precision, scale;
    int32_t exact;      // status without rounding
    int32_t rounded;    // and with it
    std::string value;  // when the latter is 0, with the precision where that comes from the text
  } kRows[] = {
      {"12.345", 10, 2, kDrop, kDone, "12.35"},
      {"-12.344", 10, 2, kDrop, kDone, "-12.34"},
      {"12.34", 10, 2, kDone, kDone, "12.34"},
      {"12.340", 10, 2, kDrop, kDone, "12.34"},
      {"1.5e1", 5, 0, kDone, kDone, "15"},
      {"1e5 ", 9, 0, kBad, kBad, ""},
      {"1e05 ", 9, 0, kDone, kDone, "100000"},
      {"1e+05x", 9, 0, kBad, kBad, ""},
      {"1e", 9, 0, kDone, kDone, "1"},
      {"1E-", 9, 0, kDone, kDone, "1"},
      {"1e100", 9, 0, kBad, kBad, ""},
      {"1e99999999999999999999", 9, 0, kBad, kBad, ""},
      {"1e-99999999999999999999", 9, 0, kDrop, kDone, "0"},
      {"75e-6", 9, 4, kDrop, kDone, "0.0001"},
      {"96.7e-3", 9, 2, kDrop, kDone, "0.10"},
      {"5e-1", 255, 255, kDone, kDone, "0.5 2"},
      {"1.25e1", 255, 255, kDone, kDone, "12.5 3"},
      {"0.050", 255, 255, kDone, kDone, "0.050 4"},
      {"1e3", 255, 255, kDone, kDone, "1000 4"},
      {"1e-78", 255, 255, kOver, kOver, ""},
      {std::string(77, '9'), 255, 255, kDone, kDone, std::string(77, '9') + " 77"},
      {std::string(78, '9'), 255, 255, kDrop, kOver, ""},
      {"000000000001", 2, 0, kDone, kDone, "1"},
      {"100000", 5, 0, kOver, kOver, ""},
      {"99999.5", 5, 0, kDrop, kOver, ""},
      {"  - 7 \t", 5, 0, kDone, kDone, "-7"},
      {"", 5, 2, kDone, kDone, "0.00"},
      {" -. ", 5, 0, kDone, kDone, "0"},
      {"+-1", 5, 0, kBad, kBad, ""},
      {"1.2.3", 5, 3, kBad, kBad, ""},
      {"1 2", 5, 0, kBad, kBad, ""},
      {"1 e5", 9, 0, kBad, kBad, ""},
      {std::string("1\0", 2), 5, 0, kBad, kBad, ""},
      {std::string("0.75\0e-3", 8), 5, 1, kDrop, kDone, "0.8"},  // no exponent behind a zero byte
  };
  for (const auto& row : kRows) {
    for (const bool rounding : {false, true}) {
      const bool open = row.precision == 255;
      Field field(open ? 33 : field_length(row.precision), row.precision, row.scale);
      const int32_t status = field.read(row.text, rounding);
      EXPECT_EQ(status, rounding ? row.rounded : row.exact) << row.text;
      if (status != kDone) continue;
      EXPECT_EQ(field.text() + (open ? " " + std::to_string(field.descriptor.precision) : ""),
                row.value);
    }
  }
}

TEST(DecimalText, TypeOfTheTextInAShortField) {
  for (const auto& [text, length, status] : {std::tuple{"12", 2, COM_NUM_DONE},
                                             {"12.5", 3, COM_NUM_DONE},
                                             {"1e30", 5, COM_NUM_OVERFLOW},
                                             {"1e30", 14, COM_NUM_DONE},
                                             {"1e-3", 2, COM_NUM_OVERFLOW},
                                             {"123", 2, COM_NUM_DROPPED}}) {
    Field field(length, 255, 255, 1);
    EXPECT_EQ(field.read(text, false), status) << text << ' ' << length;
    EXPECT_LE(field.descriptor.length, length);
    EXPECT_EQ(field.number().value == 0, status != COM_NUM_DONE) << text;
  }
}

TEST(DecimalText, ADoubleTellsItsScale) {
  Field field(33, 38, 255);
  EXPECT_EQ(com__doubletoexctnume(-123.25, field.bytes.data(), 33, &field.descriptor.precision,
                                  &field.descriptor.scale),
            COM_NUM_DONE);
  EXPECT_EQ(field.text(), "-123.25");
}

TEST(DecimalText, AnyBytesAndAnyDouble) {
  Random random;
  int read = 0;
  for (int i = 0; i < kRounds && !HasFailure(); ++i) {
    std::string text;
    const int length = random.below(random.below(8) == 0 ? 1'101 : 12);
    for (int k = 0; k < length; ++k)
      text += random.below(200) == 0 ? static_cast<char>(random.below(256))
                                     : "0123456789012345678901234567890.-+e "[random.below(36)];
    GuardedBuffer source(text.size());
    std::copy(text.begin(), text.end(), source.data());
    const int precision = 1 + random.below(77);
    Field field(field_length(precision), precision, random.below(78));
    const int32_t status =
        com__subchartoexctnume(&field.descriptor, reinterpret_cast<const char*>(source.data()),
                               static_cast<int32_t>(text.size()), random.below(2));
    EXPECT_TRUE((status >= 0 && status <= 2) || status == COM_NUM_DROPPED);
    EXPECT_LT(abs(field.number().value), ten_to(precision));
    read += status == COM_NUM_DONE;

    // A double's 17 digits, rounded by the reference.
    const double value = std::ldexp(static_cast<double>(static_cast<int64_t>(random.bits())),
                                    random.below(160) - 140);
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.16e", std::abs(value));
    const int exponent = std::atoi(std::strchr(digits, 'e') + 1) - 16 + field.descriptor.scale;
    const Big significand(std::string(1, digits[0]) + std::string(digits + 2, 16));
    Big expected = significand * ten_to(std::max(exponent, 0));
    if (exponent < 0) expected = (2 * expected / ten_to(-exponent) + 1) / 2;
    const bool fits = expected < ten_to(precision);
    const int32_t stored =
        com__doubletoexctnume(value, field.bytes.data(), field.descriptor.length,
                              &field.descriptor.precision, &field.descriptor.scale);
    EXPECT_EQ(stored == COM_NUM_DONE, fits) << value << ' ' << precision;
    EXPECT_EQ(abs(field.number().value), fits ? expected : Big(0)) << digits;
  }
  EXPECT_GT(read, kRounds / 50);
}

}  // namespace
