// Conversions from and to exact numerics, against numbers as strings of decimal digits.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

constexpr int32_t kTake = CS_TAKE_FROM_SOURCE;
constexpr int32_t kOk = CS_SUCCEED, kOver = CS_CONV_OVERFLOW, kCut = CS_CONV_TRUNCATED;

// The sign and magnitude of a number in the field of a precision: its digits in base 256.
std::string field(int32_t precision, std::string_view digits, bool negative) {
  const auto length = static_cast<size_t>(comb_get_Prec_To_Len(precision));
  std::string bytes(length, '\0');
  for (const char digit : digits) {
    int carry = digit - '0';
    for (size_t i = length; i-- > 1;) {
      carry += static_cast<uint8_t>(bytes[i]) * 10;
      bytes[i] = static_cast<char>(carry & 0xFF);
      carry >>= 8;
    }
  }
  bytes[0] = negative ? 1 : 0;
  return bytes;
}

// The bytes in use of the record of a number such as "-12.34".
std::string record(int32_t precision, int32_t scale, std::string_view number) {
  std::string digits;
  for (const char c : number)
    if (c >= '0' && c <= '9') digits += c;
  const bool is_zero = digits.find_first_not_of('0') == std::string::npos;
  return bytes_of(static_cast<uint8_t>(precision)) + bytes_of(static_cast<uint8_t>(scale)) +
         field(precision, digits, number[0] == '-' && !is_zero);
}

std::string whole_record(int32_t precision, int32_t scale, std::string_view number) {
  std::string bytes = record(precision, scale, number);
  bytes.resize(sizeof(comn_numeric), '\0');
  return bytes;
}

comn_datafmt numeric_format(int32_t precision, int32_t scale, int32_t code = TVX_TYPE_NUM) {
  comn_datafmt format = format_of(code);
  format.precision = precision;
  format.scale = scale;
  return format;
}

// A destination of 35 bytes of which the first have been written.
Outcome stored(int32_t code, const std::string& bytes) {
  return {code, static_cast<int32_t>(bytes.size()), bytes + untouched(35 - bytes.size())};
}

Outcome of_text(std::string_view text, const comn_datafmt& to, int32_t code = TVX_TYPE_CHAR) {
  return convert(format_of(code, static_cast<int32_t>(text.size())), text, to);
}

TEST(NumericText, Reading) {
  const std::string nines(77, '9');
  const struct {
    std::string text;
    int32_t precision, scale;
    int32_t code;
    int32_t stored_precision, stored_scale;
    std::string number;
  } rows[] = {
      {"12.34", 10, 2, kOk, 10, 2, "12.34"},
      {" -1.5e1 ", 5, 0, CS_CONV_SYNTAX, 5, 0, "0"},  // a blank behind a one-digit exponent
      {" -1.5e01 ", 5, 0, kOk, 5, 0, "-15"},
      {"12.345", 10, 2, kCut, 10, 2, "0"},
      {"12.340", 10, 2, kCut, 10, 2, "0"},
      {"1234", 3, 0, kOver, 3, 0, "0"},
      {"0001234", 4, 0, kOk, 4, 0, "1234"},
      {nines, 77, 0, kOk, 77, 0, nines},
      {"-0.05", kTake, kTake, kOk, 3, 2, "-0.05"},
      {"1.25e1", kTake, kTake, kOk, 3, 1, "12.5"},
      {"5e-1", kTake, kTake, kOk, 2, 1, "0.5"},
      {"-", 5, 2, kOk, 5, 2, "0"},
      {"1,5", 5, 2, CS_CONV_SYNTAX, 5, 2, "0"},
      {"1.5.", 5, 2, CS_CONV_SYNTAX, 5, 2, "0"},
      {std::string(1020, ' ') + "12345", 5, 0, kOk, 5, 0, "1234"},  // cut at 1,024 bytes
  };
  for (const auto& row : rows) {
    Outcome expected = stored(row.code, record(row.stored_precision, row.stored_scale, row.number));
    if (row.code == CS_CONV_SYNTAX) expected.length = 0;
    for (const int32_t code : {TVX_TYPE_NUM, TVX_TYPE_NUM17})
      EXPECT_EQ(expected, of_text(row.text, numeric_format(row.precision, row.scale, code)))
          << row.text;
  }
  EXPECT_EQ((Outcome{CS_CONV_BADPREC, kNoLength, untouched(35)}),
            of_text("1", numeric_format(0, 0)));
  EXPECT_EQ((Outcome{CS_CONV_BADPREC, kNoLength, untouched(35)}),
            of_text("1", numeric_format(78, 0)));
  EXPECT_EQ((Outcome{CS_CONV_BADSCALE, kNoLength, untouched(35)}),
            of_text("1", numeric_format(5, 78)));

  comn_datafmt terminated = format_of(TVX_TYPE_CHAR, 5);
  terminated.format = CS_FORMAT_TERMINATE;
  using namespace std::string_view_literals;
  EXPECT_EQ(stored(kOk, record(4, 1, "1.5")),
            convert(terminated, "1.5\0x"sv, numeric_format(4, 1)));
  EXPECT_EQ(stored(kOk, record(4, 1, "1.5")),
            convert(format_of(TVX_TYPE_VARCHAR), varchar_record("1.5"), numeric_format(4, 1)));
}

// Any number of any type, as text and back, and cut to what a destination holds.
TEST(NumericText, RoundTrip) {
  std::mt19937 random(7);
  for (int i = 0; i < 5'000; ++i) {
    const auto precision = static_cast<int32_t>(1 + random() % 77);
    const auto scale = static_cast<int32_t>(random() % static_cast<unsigned>(precision + 1));
    std::string digits(static_cast<size_t>(precision), '0');
    for (char& digit : digits) digit = static_cast<char>('0' + random() % 10);
    std::string text = digits.substr(0, static_cast<size_t>(precision - scale));
    text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
    if (text.empty()) text = "0";
    if (scale > 0) text += "." + digits.substr(static_cast<size_t>(precision - scale));
    if (random() % 2 == 0 && digits.find_first_not_of('0') != std::string::npos) text = "-" + text;

    const Outcome number = of_text(text, numeric_format(precision, scale));
    EXPECT_EQ(stored(kOk, record(precision, scale, (text[0] == '-' ? "-" : "") + digits)), number);
    const auto room = static_cast<int32_t>(random() % 84);
    const auto length = static_cast<int32_t>(text.size());
    Outcome written = delivered(text, room);
    if (room < length) written.code = kOver;
    EXPECT_EQ(written, convert(numeric_format(1, 0), number.bytes, format_of(TVX_TYPE_CHAR, room)));
  }
}

TEST(Numeric, FromScalars) {
  const comn_datafmt format = numeric_format(10, 3), take = numeric_format(kTake, kTake);
  const auto from = [](int32_t code, std::string source, const comn_datafmt& to) {
    return convert(format_of(code, 8), source, to);
  };
  const auto gives = [](int32_t code, const char* number, int32_t precision = 10,
                        int32_t scale = 3) {
    return stored(code, whole_record(precision, scale, number));
  };
  EXPECT_EQ(gives(kOk, "255.000"), from(TVX_TYPE_I1, bytes_of(uint8_t{255}), format));
  EXPECT_EQ(gives(kOk, "-32768.000"), from(TVX_TYPE_I2, bytes_of(int16_t{-32768}), format));
  EXPECT_EQ(gives(kOver, "0"), from(TVX_TYPE_I4, bytes_of(int32_t{10'000'000}), format));
  EXPECT_EQ(gives(kOk, "4294967.000"), from(TVX_TYPE_UI4, bytes_of(uint32_t{4294967}), format));
  EXPECT_EQ(gives(kOk, "1.000"), from(TVX_TYPE_BIT, bytes_of(uint8_t{1}), format));
  EXPECT_EQ((Outcome{CS_CONV_DOMAIN, kNoLength, untouched(35)}),
            from(TVX_TYPE_BIT, bytes_of(uint8_t{2}), format));
  for (const int32_t code : {TVX_TYPE_I8, TVX_TYPE_INT20})
    EXPECT_EQ(gives(kOk, "-9223372036854775808", 21, 0),
              from(code, bytes_of(std::numeric_limits<int64_t>::min()), take));
  EXPECT_EQ(gives(kOk, "18446744073709551615", 21, 0),
            from(TVX_TYPE_UI8, bytes_of(UINT64_MAX), take));
  EXPECT_EQ((Outcome{CS_CONV_BADPREC, 35, untouched(35)}),
            from(TVX_TYPE_I4, bytes_of(int32_t{1}), take));
  EXPECT_EQ((Outcome{CS_CONV_BADSCALE, 35, untouched(35)}),
            from(TVX_TYPE_I8, bytes_of(int64_t{1}), numeric_format(kTake, 78)));
  EXPECT_EQ(gives(kOk, "2.001"), from(TVX_TYPE_FLT8, bytes_of(2.0005), format));
  EXPECT_EQ(gives(kOk, "-0.500"), from(TVX_TYPE_FLT4, bytes_of(-0.5F), format));
  EXPECT_EQ(gives(kOk, "0"), from(TVX_TYPE_FLT8, bytes_of(-0.0), format));
  for (const double value : {1e7, HUGE_VAL, std::nan("")})
    EXPECT_EQ(gives(kOver, "0"), from(TVX_TYPE_FLT8, bytes_of(value), format)) << value;
}

template <class T>
void expect_scalar(int32_t code, const char* number, int32_t precision, int32_t scale,
                   int32_t result, T value) {
  const Outcome expected{result, static_cast<int32_t>(sizeof value), bytes_of(value)};
  EXPECT_EQ(expected, convert(numeric_format(1, 0), whole_record(precision, scale, number),
                              format_of(code, sizeof value)))
      << number << " to " << code;
}

TEST(Numeric, ToScalars) {
  expect_scalar<uint8_t>(TVX_TYPE_I1, "255.9", 4, 1, kOver, 255);
  expect_scalar<uint8_t>(TVX_TYPE_I1, "-0.5", 4, 1, kOver, 0);
  expect_scalar<int16_t>(TVX_TYPE_I2, "-12.99", 4, 2, kOk, -12);
  expect_scalar<int32_t>(TVX_TYPE_I4, "2147483647", 10, 0, kOk, INT32_MAX);
  expect_scalar<uint16_t>(TVX_TYPE_UI2, "-1", 4, 0, CS_CONV_UNDERFLOW, 0);
  expect_scalar<int64_t>(TVX_TYPE_I8, "9223372036854775807.9", 20, 1, kOk, INT64_MAX);
  expect_scalar<int64_t>(TVX_TYPE_I8, "9223372036854775808", 19, 0, kOver, INT64_MAX);
  expect_scalar<int64_t>(TVX_TYPE_INT20, "-9223372036854775809", 19, 0, CS_CONV_UNDERFLOW,
                         INT64_MIN);
  expect_scalar<uint64_t>(TVX_TYPE_UI8, "18446744073709551615", 20, 0, kOk, UINT64_MAX);
  expect_scalar<uint64_t>(TVX_TYPE_UI8, "-1", 4, 0, CS_CONV_UNDERFLOW, 0);
  expect_scalar<uint8_t>(TVX_TYPE_BIT, "0.01", 3, 2, kOk, 1);
  expect_scalar<uint8_t>(TVX_TYPE_BIT, "-0", 3, 2, kOk, 0);
  expect_scalar<float>(TVX_TYPE_FLT4, (std::string("1") + std::string(40, '0')).c_str(), 41, 0,
                       kOver, FLT_MAX);
  expect_scalar<float>(TVX_TYPE_FLT4, "-1", 50, 50, CS_CONV_UNDERFLOW, -0.0F);
  expect_scalar<float>(TVX_TYPE_FLT4, "1", 45, 45, kOk, 1e-45F);
  expect_scalar<float>(TVX_TYPE_FLT4, "-0", 45, 45, kOk, 0);
  std::mt19937 random(11);
  for (int i = 0; i < 20'000; ++i) {
    const auto scale = static_cast<int32_t>(random() % 78);
    std::string digits(1 + random() % 77, '0');
    for (char& digit : digits) digit = static_cast<char>('0' + random() % 10);
    const double nearest = std::strtod((digits + "e-" + std::to_string(scale)).c_str(), nullptr);
    expect_scalar(TVX_TYPE_FLT8, digits.c_str(), 77, scale, kOk, nearest);
  }
  for (const int header : {0, 78, 255})
    for (const int32_t code : {TVX_TYPE_I4, TVX_TYPE_BIN, TVX_TYPE_VARBIN}) {
      const comn_datafmt to = format_of(code, 4);
      EXPECT_EQ((Outcome{CS_CONV_DOMAIN, kNoLength,
                         untouched(static_cast<size_t>(comn_typelen(code, 4)))}),
                convert(numeric_format(1, 0),
                        std::string(1, static_cast<char>(header)) + std::string(34, '\0'), to));
    }
}

TEST(Numeric, ToNumericsAndBinary) {
  const auto retyped = [](const char* number, int32_t precision, int32_t scale) {
    return convert(numeric_format(1, 0), whole_record(9, 3, number),
                   numeric_format(precision, scale));
  };
  EXPECT_EQ(stored(kOk, record(12, 5, "-1.50000")), retyped("-1.500", 12, 5));
  EXPECT_EQ(stored(kCut, record(9, 1, "-1.5")), retyped("-1.599", 9, 1));
  EXPECT_EQ(stored(kOk, record(9, 3, "1.599")), retyped("1.599", kTake, kTake));
  EXPECT_EQ(stored(kOver, record(4, 2, "0")), retyped("100.010", 4, 2));  // cut and still too long
  EXPECT_EQ(stored(kOver, record(6, 0, "0")), retyped("123456.789", 6, 0));  // before it is cut

  const std::string number = whole_record(9, 3, "1.599");
  EXPECT_EQ(delivered(number, 40),
            convert(numeric_format(1, 0), number, format_of(TVX_TYPE_BIN, 40)));
  EXPECT_EQ((Outcome{kCut, 5, number.substr(0, 5)}),
            convert(numeric_format(1, 0), number, format_of(TVX_TYPE_IMAGE, 5)));
  const std::string bits = number.substr(2);
  EXPECT_EQ(stored(kOk, number), convert(format_of(TVX_TYPE_BIN, 33), bits, numeric_format(9, 3)));
  EXPECT_EQ((Outcome{CS_CONV_UNDERFLOW, 35, number.substr(0, 4) + untouched(31)}),
            convert(format_of(TVX_TYPE_BIN, 2), bits.substr(0, 2), numeric_format(9, 3)));
  EXPECT_EQ(stored(kOver, number),
            convert(format_of(TVX_TYPE_VARBIN), varchar_record(bits + "x"), numeric_format(9, 3)));
}

// The bare layer: what the descriptors hold after a call.
TEST(Numeric, BareTwins) {
  std::string source = field(5, "12345", true), out(40, kUntouched);
  comnb_value from{static_cast<int32_t>(source.size()), 0, 0, 5, 2, nullptr, source.data()};
  comnb_value to{-1, 0, 40, 4, 1, nullptr, out.data()};
  comnb_context context{};
  EXPECT_EQ(kCut, comnb_numtonum(&context, &from, &to));
  EXPECT_EQ(field(4, "1234", true), out.substr(0, static_cast<size_t>(to.length)));
  context.numeric_flags = 1;
  EXPECT_EQ(kOk, comnb_numtonum(&context, &from, &to));
  EXPECT_EQ(kCut, comnb_numtoi4(&context, &from, &to));
  EXPECT_EQ(bytes_of(int32_t{-123}), out.substr(0, 4));
  EXPECT_EQ(kOver, comnb_numtoui2(&context, &from, &to));

  const struct {
    int32_t room;
    int32_t code;
    std::string bytes;
  } cuts[] = {{7, kOk, "-123.45"}, {6, kCut, "-123.4"}, {5, kCut, "-123."}, {4, kOver, "-123"}};
  for (const auto& cut : cuts) {
    to.maxlength = cut.room;
    EXPECT_EQ(cut.code, comnb_numtochar(&context, &from, &to)) << cut.room;
    EXPECT_EQ(cut.bytes, out.substr(0, static_cast<size_t>(to.length)));
  }

  std::string text = "-1.25";
  comnb_value literal{5, 0, 0, 0, 0, nullptr, text.data()};
  comnb_value number{-1, 0, 40, 3, 1, nullptr, out.data()};
  EXPECT_EQ(kOk, comnb_chartonum(&context, &literal, &number));
  EXPECT_EQ(field(3, "13", true), out.substr(0, static_cast<size_t>(number.length)));  // rounded
  context.numeric_flags = 0;
  EXPECT_EQ(kCut, comnb_chartonum(&context, &literal, &number));
  number.precision = number.scale = 255;
  EXPECT_EQ(kOk, comnb_chartonum(&context, &literal, &number));
  EXPECT_EQ(3, number.precision);
  EXPECT_EQ(2, number.scale);
}

}  // namespace
}  // namespace tvx::test
