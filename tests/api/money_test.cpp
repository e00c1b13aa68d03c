// Money arithmetic against 128-bit integers, and money text against a plain writer and a reader
// made of a regular expression.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <regex>
#include <string>
#include <string_view>

#include "support/guarded_buffer.hpp"
#include "support/multibyte_record.hpp"
#include "tvxcomn/tvxcomn.h"

namespace tvx::test {
namespace {

using Random = std::mt19937_64;
__extension__ typedef __int128 Wide;

constexpr int64_t kMost = std::numeric_limits<int64_t>::max(), kLeast = -kMost - 1;
constexpr int32_t kMost4 = std::numeric_limits<int32_t>::max(), kLeast4 = -kMost4 - 1;
constexpr int32_t kOver = CS_CONV_OVERFLOW;

comn_money money(int64_t count) {
  return {static_cast<int32_t>(count >> 32), static_cast<uint32_t>(count)};
}
int64_t count_of(comn_money value) {
  return static_cast<int64_t>(Wide{value.high} * 0x100000000 + value.low);
}
int64_t clamped(Wide count, Wide least, Wide most) {
  return static_cast<int64_t>(std::clamp(count, least, most));
}

// Amounts of all sizes; one in four lies at a limit, at zero or at a power of two.
int64_t random_count(Random& random) {
  if (random() % 4 != 0) return static_cast<int64_t>(random()) >> (random() % 64);
  const Wide near[] = {kMost, kLeast, 0, kMost4, kLeast4, Wide{1} << (random() % 63)};
  return clamped(near[random() % 6] + static_cast<int>(random() % 5) - 2, kLeast, kMost);
}

struct Answer {
  Wide count;
  int32_t status;
  bool operator==(const Answer&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Answer& a) {
  return out << static_cast<int64_t>(a.count) << ", status " << a.status;
}

// ---- Arithmetic ----

Answer reference(char operation, Wide a, Wide b, Wide least, Wide most) {
  if (operation == '/' && b == 0) return {0, 3};
  const Wide product = a * b;
  const Wide exact = operation == '+'   ? a + b
                     : operation == '-' ? a - b
                     : operation == '*' ? (product + (product < 0 ? -5'000 : 5'000)) / 10'000
                                        : a * 10'000 / b;
  return exact < least || exact > most ? Answer{0, 1} : Answer{exact, 0};
}

const struct {
  char name;
  decltype(&com__mnyadd) internal, exported;
  decltype(&com__mnyadd4) internal4, exported4;
} kOperations[] = {{'+', com__mnyadd, comn_mnyadd, com__mnyadd4, comn_mny4add},
                   {'-', com__mnysub, comn_mnysub, com__mnysub4, comn_mny4sub},
                   {'*', com__mnymul, comn_mnymul, com__mnymul4, comn_mny4mul},
                   {'/', com__mnydiv, comn_mnydivide, com__mnydiv4, comn_mny4divide}};

void check_operations(int64_t a, int64_t b) {
  constexpr int32_t codes[] = {CS_SUCCEED, kOver, 0, CS_CONV_DIVZERO};
  const comn_money left = money(a), right = money(b);
  const auto left4 = static_cast<int32_t>(a), right4 = static_cast<int32_t>(b);
  for (const auto& operation : kOperations) {
    comn_money result{7, 7}, in_place = left;
    int32_t result4 = 7, in_place4 = left4;
    const Answer expected = reference(operation.name, a, b, kLeast, kMost);
    const Answer expected4 = reference(operation.name, left4, right4, kLeast4, kMost4);
    const int32_t status = operation.internal(&left, &right, &result);
    ASSERT_EQ((Answer{count_of(result), status}), expected) << a << operation.name << b;
    ASSERT_EQ(operation.exported(&in_place, &right, &in_place), codes[expected.status]);
    ASSERT_EQ(count_of(in_place), expected.count);
    const int32_t status4 = operation.internal4(&left4, &right4, &result4);
    ASSERT_EQ((Answer{result4, status4}), expected4) << left4 << operation.name << right4;
    ASSERT_EQ(operation.exported4(&in_place4, &right4, &in_place4), codes[expected4.status]);
    ASSERT_EQ(in_place4, expected4.count);
  }
  ASSERT_EQ(comn_mnycmp(&left, &right), a < b ? -1 : a > b);
  ASSERT_EQ(comn_mny4cmp(&left4, &right4), left4 < right4 ? -1 : left4 > right4);
}

TEST(MoneyArithmetic, Operations) {
  check_operations(20'000, 30'000);
  EXPECT_EQ(reference('/', 20'000, 30'000, kLeast, kMost), (Answer{6'666, 0}));
  EXPECT_EQ(reference('*', -1, 5'000, kLeast, kMost), (Answer{-1, 0}));
  Random random(2);
  for (int i = 0; i < 100'000; ++i) check_operations(random_count(random), random_count(random));
}

TEST(MoneyArithmetic, StepsAndSigns) {
  const auto minus = [](comn_money* value) { return comn_mnyminus(value, value); };
  const auto largest = [](comn_money* value) { return comn_mnymaxpos(value), 0; };
  const auto lowest = [](comn_money* value) { return comn_mnymaxneg(value), 0; };
  const auto widen = [](comn_money* value) { return com__mny4tomny(&kLeast4, value); };
  const auto rest = [](comn_money* value) { return com__mnyrem(value, value, value); };
  const struct {
    int64_t count;
    int32_t (*operation)(comn_money*);
    Answer result;
  } rows[] = {{kMost, comn_mnyinc, {kLeast, kOver}},
              {kMost, com__mnyinc, {kLeast, 1}},
              {0xFFFFFFFF, comn_mnyinc, {0x100000000, CS_SUCCEED}},
              {kLeast, comn_mnydec, {kMost, kOver}},
              {0, comn_mnydec, {-1, CS_SUCCEED}},
              {kLeast, minus, {kLeast, kOver}},
              {kMost, minus, {-kMost, CS_SUCCEED}},
              {7, largest, {kMost, 0}},
              {7, lowest, {kLeast, 0}},
              {7, widen, {kLeast4, 0}},
              {7, rest, {7, 1}}};
  for (const auto& row : rows) {
    comn_money value = money(row.count);
    const int32_t code = row.operation(&value);
    EXPECT_EQ((Answer{count_of(value), code}), row.result) << row.count;
  }
}

TEST(MoneyArithmetic, ScalesAndDividesByIntegers) {
  Random random(3);
  for (int i = 0; i < 50'000; ++i) {
    const int64_t count = random_count(random);
    const Wide magnitude = count < 0 ? -Wide{count} : Wide{count};
    const auto with_sign = [&](Wide m) { return count < 0 ? -m : m; };
    const auto multiplier = static_cast<uint32_t>(random() >> (random() % 64));
    const auto addend = static_cast<int32_t>(random() >> (random() % 64));
    comn_money scaled = money(count), down = scaled, digits = scaled, quotient;
    const Wide product = magnitude * multiplier + static_cast<uint32_t>(addend);
    const Answer expected = multiplier == 0   ? Answer{addend, 0}
                            : product > kMost ? Answer{0, 1}
                                              : Answer{with_sign(product), 0};
    const int32_t status = com__mnyscale(&scaled, multiplier, addend);
    ASSERT_EQ((Answer{count_of(scaled), status}), expected) << count << " x " << multiplier;

    const Wide divisor = addend & 0xFFFF;
    ASSERT_EQ(comn_mnydown(&down, addend), divisor == 0 ? 0 : magnitude % divisor);
    ASSERT_EQ(count_of(down), divisor == 0 ? count : with_sign(magnitude / divisor));
    const comn_money number = {-5, multiplier}, dividend = money(count);
    comn_mnyxdiv(&dividend, &number, &quotient);
    ASSERT_EQ(count_of(quotient), multiplier == 0 ? 0 : with_sign(magnitude / multiplier));

    const auto dropped = static_cast<int>(random() % 23);
    Wide rest = magnitude, last = 0;
    for (int n = 0; n < dropped; ++n) last = rest % 10, rest /= 10;
    rest += last >= 5;
    ASSERT_EQ(comn_mnyinit(&digits, dropped), count < 0 ? -1 : 0);
    for (char digit; rest != 0; rest /= 10) {
      ASSERT_EQ(comn_mnyndigit(&digits, &digit), rest >= 10) << count << " less " << dropped;
      ASSERT_EQ(digit, static_cast<char>('0' + static_cast<int>(rest % 10)));
    }
    ASSERT_EQ(count_of(digits), 0);
  }
}

// ---- Text ----

std::string write(int64_t count, int digits, bool commas = false) {
  const Wide divisor = digits == 1 ? 1'000 : digits == 2 ? 100 : digits == 3 ? 10 : 1;
  Wide rest = ((count < 0 ? -Wide{count} : Wide{count}) + divisor / 2) / divisor;
  std::string text;
  for (int n = 0; n <= digits || rest != 0; ++n, rest /= 10) {
    if (n == digits) text += '.';
    if (commas && n > digits && (n - digits) % 3 == 0) text += ',';
    text += static_cast<char>('0' + static_cast<int>(rest % 10));
  }
  if (count < 0) text += '-';
  return {text.rbegin(), text.rend()};
}

TEST(MoneyText, Written) {
  EXPECT_EQ(write(-50, 2) + write(-1, 2) + write(kLeast, 4, true),
            "-0.01-0.00-922,337,203,685,477.5808");
  Random random(4);
  for (int i = 0; i < 20'000; ++i) {
    const int64_t count = random_count(random);
    const auto flags = static_cast<int32_t>((random() % 6) << 8 | random() % 2);
    const std::string text = write(count, flags < 256 ? 2 : std::min(flags >> 8, 4), flags & 1);
    const comn_money value = money(count);
    const size_t length = random() % 31, size = text.size();
    std::string room(30, '#'), expected = room;
    if (length >= size) expected.replace(length - size, size, text);
    const char* const begin =
        com__mnytochar(&value, room.data(), static_cast<int32_t>(length), flags);
    ASSERT_EQ(room, expected) << count << ", flags " << flags;
    ASSERT_EQ(begin, length >= size ? room.data() + length - size : nullptr);
    ASSERT_EQ(com_precmnytochar(&value, room.data(), 30, flags & 1, flags >> 8),
              room.data() + 30 - size);
  }
}

// The amount of a text, which stands right in front of an inaccessible page.
Answer parse(std::string_view text, const com_charattr* record = nullptr) {
  static GuardedBuffer buffer(4'096);
  char* const copy = reinterpret_cast<char*>(buffer.data()) + 4'096 - text.size();
  std::copy(text.begin(), text.end(), copy);
  comn_money value{1, 1};
  const int32_t status =
      com__mnyfromchar_mb(&value, copy, static_cast<int32_t>(text.size()), 0, record);
  return {count_of(value), status};
}

TEST(MoneyText, ReadExamples) {
  const MultibyteRecord record;
  // clang-format off
  const struct { const char* text; Answer amount; } rows[] = {
      {"$-1,234.56789", {-12'345'679, 0}}, {"1,23", {0, 2}}, {" 12 ", {120'000, 0}}, {"12 x", {0, 2}},
      {"-922337203685477.5808", {kLeast, 0}}, {"922337203685477.5808", {0, 1}},
      {"-922337203685477.58080", {kLeast, 0}}, {"-922337203685477.58081", {0, 1}},
      {"-922337203685477.58075", {kLeast, 0}}, {"922337203685477.58075", {0, 1}},
      {"922337203685477.580749", {kMost, 0}}, {"-92233720368547.75808", {-922'337'203'685'477'581, 0}},
      {"-9223372036854775808", {0, 1}}, {"-922337203685477.5809", {0, 1}}, {"", {0, 0}}, {" - $ ", {0, 0}},
      {".", {0, 0}}, {"--1", {0, 2}}, {"$$1", {0, 2}}, {"1-", {0, 2}}, {"1 2", {0, 2}}, {",123", {1'230'000, 0}},
      {"1234567,890", {12'345'678'900'000, 0}}, {"1,23.4", {0, 2}}, {"12345678901234567890123", {0, 1}}};
  // clang-format on
  for (const auto& row : rows) {
    EXPECT_EQ(parse(row.text), row.amount) << row.text;
    EXPECT_EQ(parse(MultibyteRecord::full_width(row.text), record.get()), row.amount) << row.text;
  }
  for (const char symbol : std::string_view("$\xBD\x9C\xBE\xCF"))
    EXPECT_EQ(parse(symbol + std::string("1")), (Answer{10'000, 0})) << symbol;
  EXPECT_EQ(parse("1\x82", record.get()), (Answer{0, 2}));  // half a character
}

// Texts too short to overflow.
Answer read_short(const std::string& text) {
  static const std::regex grammar(
      R"(([ +$-]*)(\d*\.?\d*|\.?((\d\.?){0,3}|(\d\.?){7})(,\d{3}\.?)*,\d{3}(\.\d*)?) *)");
  const auto times = [&](char c) { return std::count(text.begin(), text.end(), c); };
  std::smatch parts;
  if (!std::regex_match(text, parts, grammar) || times('+') + times('-') > 1 || times('$') > 1 ||
      times('.') > 1)
    return {0, 2};
  std::string body = parts[2];
  std::erase(body, ',');
  const size_t point = std::min(body.find('.'), body.size());
  const std::string fraction = body.substr(std::min(point + 1, body.size())) + "00000";
  const std::string counted = body.substr(0, point) + fraction.substr(0, 4);
  const int64_t magnitude = std::atoll(counted.c_str()) + (fraction[4] >= '5');
  return {times('-') > 0 ? -magnitude : magnitude, 0};
}

TEST(MoneyText, ReadAtRandom) {
  Random random(5);
  constexpr std::string_view kShort = "0123456789012345,,,,... +-$x";
  constexpr std::string_view kLong = "0123456789,.+-$ \x81\x82\x35";
  int amounts = 0;
  for (int i = 0; i < 60'000; ++i) {
    std::string text(random() % 13, ' ');
    for (char& c : text) c = kShort[random() % kShort.size()];
    const Answer expected = read_short(text);
    ASSERT_EQ(parse(text), expected) << '"' << text << '"';
    amounts += expected.status == 0 && expected.count != 0;
    const int64_t count = random_count(random);
    const int digits = 1 << random() % 3;
    const int64_t plain = count - count % (digits == 1 ? 1'000 : digits == 2 ? 100 : 1);
    text = write(plain, digits);
    ASSERT_EQ(parse(text), (Answer{plain, 0})) << text;
    text[random() % text.size()] = kShort[random() % kShort.size()];
    ASSERT_EQ(parse(text), parse(" " + text)) << text;
    const auto fifth = static_cast<int>(random() % 10);
    const Wide rounded = Wide{count} + (fifth < 5 ? 0 : count < 0 ? -1 : 1);
    if (rounded < kLeast || rounded > kMost || count == 0 || count == kLeast) continue;
    ASSERT_EQ(parse(write(count, 4, i % 2 == 0) + std::to_string(fifth)), (Answer{rounded, 0}));
  }
  EXPECT_GT(amounts, 3'000);
  const MultibyteRecord two_byte, four_byte(MultibyteRecord::FourByte::kYes);
  for (int i = 0; i < 3'000; ++i) {
    std::string text(random() % 1'101, ' ');
    for (char& c : text) c = i % 2 ? static_cast<char>(random()) : kLong[random() % kLong.size()];
    for (const com_charattr* record : {two_byte.get(), four_byte.get(), com_get_charattrib()}) {
      const Answer amount = parse(text, record);
      ASSERT_TRUE(amount.status == 0 || (amount.count == 0 && amount.status <= 2));
    }
  }
}

}  // namespace
}  // namespace tvx::test
