// Conversions from and to money in both layers, against 128-bit integers and the text of amounts.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using tvx::test::convert;
using Random = std::mt19937_64;
__extension__ typedef __int128 Wide;

constexpr int64_t kMost = std::numeric_limits<int64_t>::max(), kLeast = -kMost - 1;
constexpr int32_t kMost4 = std::numeric_limits<int32_t>::max(), kLeast4 = -kMost4 - 1;
constexpr int32_t kOver = CS_CONV_OVERFLOW;

std::string low_bytes(Wide value, size_t size) {
  return bytes_of(value).substr(0, size);
}

// The stored form of a count of ten-thousandths as the 8-byte and as the 4-byte type.
std::string money(Wide count) {
  return low_bytes(count >> 32, 4) + low_bytes(count, 4);
}
std::string mny4(Wide count) {
  return low_bytes(count, 4);
}

const struct Amounts {
  const char* name;
  int32_t code;
  int64_t least, most;
  std::string (*bytes)(Wide count);
} kMoney[] = {{"money", 14, kLeast, kMost, money}, {"mny4", 15, kLeast4, kMost4, mny4}};

// A value of all sizes within two limits, one in four close to one of them.
Wide random_within(Random& random, Wide least, Wide most) {
  const Wide near[] = {least, most, 0, random() % 10'000};
  const Wide any = static_cast<int64_t>(random()) >> (random() % 64);
  return std::clamp(random() % 4 == 0 ? near[random() % 4] + random() % 3 - 1 : any, least, most);
}

// Converts in both layers, which must do the same. The digits after the point of a text are asked
// for in the destination's format, or in the flags word.
Outcome both(const std::string& from, int32_t from_code, std::string_view value,
             const std::string& to, int32_t to_code, int32_t digits = 0) {
  comn_datafmt format = format_of(to_code);
  format.precision = digits;
  comnb_context context{};
  context.date_format = digits << 8;
  const auto length = static_cast<int32_t>(value.size());
  const Outcome outcome = convert(format_of(from_code, length), value, format);
  auto* const bare = exported<comnb_conversion>("comnb_" + from + "to" + to);
  EXPECT_EQ(convert_bare(bare, context, value, outcome.bytes.size()), outcome) << from << to;
  return outcome;
}

const struct Integer {
  const char* name;
  int32_t code;
  size_t size;
  Wide least, most;
} kIntegers[] = {{"i1", 6, 1, 0, 255},
                 {"i2", 7, 2, -32'768, 32'767},
                 {"i4", 8, 4, kLeast4, kMost4},
                 {"i8", 30, 8, kLeast, kMost},
                 {"ui2", 31, 2, 0, 65'535},
                 {"ui4", 32, 4, 0, 4'294'967'295},
                 {"ui8", 33, 8, 0, Wide{kMost} * 2 + 1}};

// Half away from zero; the 8-byte integers are rounded from a text of so many digits.
Outcome expected_integer(int64_t count, const Integer& to, int32_t digits) {
  char text[24];
  std::string money_bytes = money(count);
  const auto* amount = reinterpret_cast<const comn_money*>(money_bytes.data());
  const char* begin = com__mnytochar(amount, text, 23, (to.size == 8 ? digits : 4) << 8);
  text[23] = '\0';
  const Wide whole = std::abs(std::atoll(begin)) + (std::strchr(begin, '.')[1] >= '5');
  const Wide exact = count < 0 ? -whole : whole, limited = std::clamp(exact, to.least, to.most);
  const bool refused = to.name[0] == 'u' && count < 0;
  return {refused || limited != exact ? kOver : CS_SUCCEED, static_cast<int32_t>(to.size),
          refused ? untouched(to.size) : low_bytes(limited, to.size)};
}

TEST(MoneyConversion, Integers) {
  Random random(6);
  for (int i = 0; i < 2'000; ++i)
    for (const Amounts& amounts : kMoney)
      for (const Integer& integer : kIntegers) {
        const auto count = static_cast<int64_t>(random_within(random, amounts.least, amounts.most));
        const auto digits = static_cast<int32_t>(random() % 4) + 1;
        ASSERT_EQ(both(amounts.name, amounts.code, amounts.bytes(count), integer.name, integer.code,
                       digits),
                  expected_integer(count, integer, digits))
            << count << " to " << integer.name << ", digits " << digits;

        const Wide value = random_within(random, integer.least, integer.most);
        const Wide limited = std::clamp<Wide>(value * 10'000, amounts.least, amounts.most);
        const std::string bytes = amounts.bytes(limited);
        ASSERT_EQ(both(integer.name, integer.code, low_bytes(value, integer.size), amounts.name,
                       amounts.code),
                  (Outcome{limited == value * 10'000 ? CS_SUCCEED : kOver,
                           static_cast<int32_t>(bytes.size()), bytes}));
      }
  EXPECT_EQ(both("money", 14, money(4'999), "i8", 30, 0).bytes, bytes_of(int64_t{1}));
  EXPECT_EQ(both("money", 14, money(4'999), "i8", 30, 7).bytes, bytes_of(int64_t{0}));
}

TEST(MoneyConversion, Floats) {
  Random random(7);
  for (int i = 0; i < 5'000; ++i) {
    const Wide count = random_within(random, kLeast, kMost);
    const auto high = static_cast<int32_t>(count >> 32);
    const double number = high * 429496.7296 + static_cast<uint32_t>(count) / 10000.0;
    ASSERT_EQ(both("money", 14, money(count), "flt8", 10), (Outcome{1, 8, bytes_of(number)}));
    ASSERT_EQ(both("money", 14, money(count), "flt4", 9).bytes,
              bytes_of(static_cast<float>(number)));
    // Below 2^49 ten-thousandths a double tells all amounts apart.
    const Wide exact = count >> 15;
    const double back = static_cast<double>(exact) / 10'000;
    ASSERT_EQ(both("flt8", 10, bytes_of(back), "money", 14), (Outcome{1, 8, money(exact)}));
  }
  constexpr double kEdge = 922337203685477.625, kNan = std::numeric_limits<double>::quiet_NaN();
  const double beyond = std::nextafter(kEdge, 1e16);
  const struct {
    double number;
    int64_t count;
    int32_t code = CS_SUCCEED;
  } rows[] = {{kEdge, kMost}, {-kEdge, -kMost},    {beyond, kMost, kOver}, {-beyond, kLeast, kOver},
              {0.00005, 1},   {-2.00006, -20'001}, {0.00004, 0},           {kNan, 0, kOver}};
  for (const auto& [number, count, code] : rows) {
    const int64_t small = std::clamp<int64_t>(count, kLeast4, kMost4);
    EXPECT_EQ(both("flt8", 10, bytes_of(number), "money", 14), (Outcome{code, 8, money(count)}));
    EXPECT_EQ(both("flt8", 10, bytes_of(number), "mny4", 15),
              (Outcome{small == count ? code : kOver, 4, mny4(small)}));
    comn_money value;
    EXPECT_EQ(com__flt8tomny(&number, 8, &value, 0), code == CS_SUCCEED ? 8 : -1);
    EXPECT_EQ(bytes_of(value), money(code == CS_SUCCEED ? count : 0));
    EXPECT_EQ(com__flt8tomny(nullptr, 8, &value, 0), 8);
  }
  EXPECT_EQ(both("flt4", 9, bytes_of(-0.5F), "mny4", 15), (Outcome{1, 4, mny4(-5'000)}));
}

TEST(MoneyConversion, AmongTheMoneyTypesAndBits) {
  Random random(8);
  for (int i = 0; i < 2'000; ++i) {
    const Wide count = random_within(random, kLeast, kMost) >> (random() % 2 * 30);
    const Wide small = std::clamp<Wide>(count, kLeast4, kMost4);
    ASSERT_EQ(both("money", 14, money(count), "mny4", 15),
              (Outcome{small == count ? CS_SUCCEED : kOver, 4, mny4(small)}));
    ASSERT_EQ(both("mny4", 15, mny4(small), "money", 14), (Outcome{1, 8, money(small)}));
    ASSERT_EQ(both("money", 14, money(count), "bit", 11),
              (Outcome{1, 1, std::string(1, count != 0)}));
  }
  EXPECT_EQ(convert_bare(comnb_bittomoney, {}, "\1", 8), (Outcome{1, 8, money(10'000)}));
  EXPECT_EQ(convert_bare(comnb_bittomny4, {}, "\2", 4),
            (Outcome{CS_CONV_DOMAIN, kNoLength, untouched(4)}));
}

TEST(MoneyConversion, ToText) {
  for (uint32_t flags = 0; flags < 8; ++flags)
    for (int32_t room = 0; room < 12; ++room) {
      const auto size = static_cast<size_t>(room);
      Outcome field{0, std::min(room, 8), untouched(size)};
      field.bytes.replace(0, std::min<size_t>(size, 8), "-1234.57", std::min<size_t>(size, 8));
      field = complete(field, 8, room, flags);
      const std::string value = money(-12'345'678);
      EXPECT_EQ(convert(format_of(14), value, format_of(0, room, flags)), field);
      EXPECT_EQ(convert_bare(comnb_moneytochar, bare_context(flags), value, size), field);
    }
  const auto bare = [](comnb_conversion* routine, uint32_t flags, size_t room) {
    comnb_context context = bare_context(flags);
    context.date_format = 1 << 8 | 1;
    return convert_bare(routine, context, mny4(12'345'678), room);
  };
  constexpr uint32_t kRight = COMNB_RIGHTALIGN;
  EXPECT_EQ(bare(comnb_mny4tochar, kRight, 9), (Outcome{1, 7, untouched(2) + "1,234.6"}));
  EXPECT_EQ(bare(comnb_mny4tochar, kRight | COMNB_BLANKFILL, 9), (Outcome{1, 9, "  1,234.6"}));
  EXPECT_EQ(bare(comnb_mny4tochar, kRight | COMNB_TERMINATE, 9).code, CS_CONV_BADFORMAT);
  EXPECT_EQ(bare(comnb_mny4tochar, kRight, 3), (Outcome{kOver, 3, "1,2"}));
  EXPECT_EQ(bare(comnb_mny4tovarchar, COMNB_BLANKFILL, 9),
            (Outcome{1, 7, "1,234.6" + untouched(2)}));
  const Outcome record = convert(format_of(15), mny4(12'345'678), format_of(18));
  EXPECT_EQ(record.bytes.substr(0, 10), varchar_record("1234.57").substr(0, 10));
  EXPECT_EQ(record.length, 258);
}

TEST(MoneyConversion, FromText) {
  const struct {
    const char* text;
    Wide count;
    int32_t code, code4;
  } rows[] = {{"$-1.5", -15'000, CS_SUCCEED, CS_SUCCEED},
              {"1e3", 0, CS_CONV_SYNTAX, CS_CONV_SYNTAX},
              {"-300000", -3'000'000'000, CS_SUCCEED, kOver},
              {"-1000000000000000", kLeast, kOver, kOver},
              {"1000000000000000", kMost, kOver, kOver}};
  for (const auto& [text, count, code, code4] : rows) {
    const Outcome large{code, code == CS_CONV_SYNTAX ? 0 : 8, money(count)};
    const Wide small = std::clamp<Wide>(count, kLeast4, kMost4);
    EXPECT_EQ(both("char", 0, text, "money", 14), large) << text;
    EXPECT_EQ(both("char", 2, text, "mny4", 15),
              (Outcome{code4, code4 == CS_CONV_SYNTAX ? 0 : 4, mny4(small)}))
        << text;
    EXPECT_EQ(convert(format_of(18), varchar_record(text), format_of(14)), large) << text;
    EXPECT_EQ(convert_bare(comnb_varchartomoney, {}, text, 8), large) << text;
  }
}

// The sign and magnitude of a numeric.
std::string field(int32_t precision, Wide value) {
  std::string digits = low_bytes(value < 0 ? -value : value, 16);
  digits.resize(static_cast<size_t>(comb_get_Prec_To_Len(precision)) - 1);
  return (value < 0 ? '\1' : '\0') + std::string(digits.rbegin(), digits.rend());
}

// Converts with descriptors of numerics.
Outcome bare_num(comnb_conversion* routine, std::string_view value, size_t room, int32_t precision,
                 int32_t scale) {
  return observe(value, room, [&](void* source, void* destination, int32_t* length) {
    comnb_value from{}, to{};
    const comnb_context context{};
    from.length = static_cast<int32_t>(value.size());
    to.maxlength = static_cast<int32_t>(room);
    from.precision = to.precision = static_cast<uint8_t>(precision);
    from.scale = to.scale = static_cast<uint8_t>(scale);
    from.data = source, to.data = destination, to.length = *length;
    const int32_t code = routine(&context, &from, &to);
    *length = to.length;
    return code;
  });
}

TEST(MoneyConversion, ToNumerics) {
  constexpr Wide kTenTo15 = 1'000'000'000'000'000;
  const struct {
    int64_t count;
    int32_t precision, scale, code;
    Wide stored, bare;
  } rows[] = {{123'456, 6, 4, CS_SUCCEED, 123'456, 123'456},
              {-123'456, 5, 2, CS_CONV_TRUNCATED, -1'234, -1'234},
              {-123'456, 3, 2, kOver, 0, -999},
              {kMost, 30, 77, kOver, 0, kTenTo15 * kTenTo15 - 1},
              {kLeast, 38, 19, CS_SUCCEED, kLeast * kTenTo15, kLeast * kTenTo15}};
  for (const auto& [count, precision, scale, code, stored, bare] : rows) {
    comn_datafmt format = format_of(17);
    format.precision = precision, format.scale = scale;
    const Outcome outcome = convert(format_of(14), money(count), format);
    const std::string digits = field(precision, stored), bare_digits = field(precision, bare);
    const std::string header{static_cast<char>(precision), static_cast<char>(scale)};
    EXPECT_EQ((Outcome{outcome.code, outcome.length, outcome.bytes.substr(0, 2 + digits.size())}),
              (Outcome{code, 35, header + digits}));
    EXPECT_EQ(bare_num(comnb_moneytonum, money(count), digits.size(), precision, scale),
              (Outcome{code == kOver ? kOver : CS_SUCCEED, static_cast<int32_t>(bare_digits.size()),
                       bare_digits}));
  }
  for (const auto& [precision, scale, code] :
       {std::array{0, 0, CS_CONV_BADPREC}, std::array{78, 0, CS_CONV_BADPREC},
        std::array{CS_TAKE_FROM_SOURCE, 0, CS_CONV_BADPREC}, std::array{5, 78, CS_CONV_BADSCALE}}) {
    comn_datafmt format = format_of(16);
    format.precision = precision, format.scale = scale;
    EXPECT_EQ(convert(format_of(15), mny4(1), format), (Outcome{code, 35, untouched(35)}));
  }
}

TEST(MoneyConversion, FromNumerics) {
  const struct {
    int32_t precision, scale;
    Wide value, count;
    int32_t code;
  } rows[] = {{7, 5, 100'005, 10'001, CS_SUCCEED},
              {7, 5, -100'004, -10'000, CS_SUCCEED},
              {3, 1, -15, -15'000, CS_SUCCEED},
              {20, 4, kLeast, kLeast, CS_SUCCEED},
              {20, 4, Wide{kMost} + 1, kMost, kOver},
              {20, 0, kLeast, kLeast, kOver},
              {77, 77, 5, 0, CS_SUCCEED}};
  for (const auto& [precision, scale, value, count, code] : rows) {
    const std::string digits = field(precision, value);
    std::string record{static_cast<char>(precision), static_cast<char>(scale)};
    (record += digits).resize(35);
    const Wide small = std::clamp<Wide>(count, kLeast4, kMost4);
    EXPECT_EQ(convert(format_of(16), record, format_of(14)), (Outcome{code, 8, money(count)}));
    EXPECT_EQ(bare_num(comnb_numtomny4, digits, 4, precision, scale),
              (Outcome{small == count ? code : kOver, 4, mny4(small)}));
    record[0] = 78;
    EXPECT_EQ(convert(format_of(17), record, format_of(15)),
              (Outcome{CS_CONV_DOMAIN, kNoLength, untouched(4)}));
  }
}

TEST(MoneyConversion, Table) {
  const struct {
    int32_t source, destination;
    comn_conversion* routine;
  } rows[] = {{14, 2, comn_moneytochar},
              {15, 18, comn_mny4tovarchar},
              {14, 17, comn_moneytonum},
              {17, 15, comn_numtomny4},
              {15, 20, comn_mny4toi8},
              {4, 14, comn_chartomoney},
              {18, 15, comn_varchartomny4},
              {30, 14, comn_i8tomoney},
              {11, 14, nullptr},
              {20, 14, nullptr},
              {14, 12, nullptr},
              {21, 14, nullptr}};
  for (const auto& [source, destination, routine] : rows)
    EXPECT_EQ(com_conv_func(shared_context(), source, destination), routine)
        << source << " to " << destination;
}

TEST(MoneyDeathTest, Misuse) {
  const comn_datafmt amount = format_of(14), small = format_of(15), text = format_of(0, 0);
  const comn_money value{};
  comn_money out;
  int32_t length;
  comn_context* const context = shared_context();
  EXPECT_DEATH(comn_moneytomny4(context, &small, &value, &small, &out, &length), "assertion");
  EXPECT_DEATH(comn_moneytomny4(context, &amount, &value, &amount, &out, &length), "assertion");
  EXPECT_DEATH(comn_chartomoney(context, &text, "1", &amount, &out, &length), "assertion");
  EXPECT_DEATH(comn_moneytomoney(context, &amount, nullptr, &amount, &out, &length), "NULL");
  EXPECT_DEATH(comn_mnyadd(&value, nullptr, &out), "NULL");
}

}  // namespace
}  // namespace tvx::test
