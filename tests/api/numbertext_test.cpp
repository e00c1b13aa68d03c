// Numbers read from text and written as text through data formats: examples, then the readers and
// the writers against the reference over random texts and values.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "api/scalar_reference.hpp"
#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using namespace reference;
using namespace std::string_literals;
using tvx::test::convert;

constexpr int32_t kCharFamily[] = {0, 2, 4, 21, 22, 34};
constexpr int32_t kVarchar = 18;

// ---- Reading ----

Outcome read_char(const Type& d, std::string_view text, int32_t datatype = 0) {
  const comn_datafmt from = format_of(datatype, static_cast<int32_t>(text.size()));
  return convert(exported<comn_conversion>("comn_charto"s + d.name), from, text, format_of(d.code));
}

// Reads a text as a char and as a varchar, which must come to the same.
Outcome read(const Type& d, std::string_view text) {
  const Outcome outcome = read_char(d, text);
  if (text.size() > 256) return outcome;
  auto* const routine = exported<comn_conversion>("comn_varcharto"s + d.name);
  const std::string record = varchar_record(text, '7');
  const Outcome of_varchar = convert(routine, format_of(kVarchar), record, format_of(d.code));
  EXPECT_TRUE(same(d, of_varchar, outcome)) << d.name << " from " << hex(text);
  return outcome;
}

TEST(ReadInteger, Examples) {
  constexpr int32_t kBad = CS_CONV_SYNTAX;
  constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
  // clang-format off
  const struct {
    std::string text;
    Kind destination;
    int64_t stored;
    int32_t code = CS_SUCCEED;
  } rows[] = {
      {" -42 ", kI4, -42}, {"- 42", kI4, -42}, {"+42", kI4, 42}, {"  ", kI4, 0}, {"-", kI4, 0},
      {" + ", kUi8, 0}, {"00000000000000000007", kI4, 7}, {"4 2", kI4, 4, kBad},
      {"+-1", kI4, 0, kBad}, {"- -1", kI8, 0, kBad}, {"5-", kI8, 5, kBad}, {"12.0", kI4, 12, kBad},
      {"-12e1", kI4, -12, kBad}, {"0x10", kI4, 0, kBad}, {"\t5", kI4, 0, kBad},
      {"5\t", kI4, 5, kBad}, {"5\0"s, kUi4, 5, kBad}, {"-1", kUi4, 0, kBad}, {"-0", kUi8, 0, kBad},
      {"2147483647", kI4, 2147483647}, {"2147483648", kI4, 214748364, kOver},
      {"-2147483648", kI4, -2147483648}, {"99999999999x", kI4, 999999999, kOver},
      {"9223372036854775807", kI8, kMost}, {"9223372036854775808", kI8, kMost, kOver},
      {"-9223372036854775808", kI8, -kMost - 1}, {"18446744073709551616", kUi8, -1, kOver},
      // The narrow types keep the low bytes of an i4, and 0 when there is none.
      {"255", kI1, 255}, {"256", kI1, 0, kOver}, {"300", kI1, 44, kOver}, {"-1", kI1, 255, kOver},
      {"-32768", kI2, -32768}, {"32768", kI2, -32768, kOver}, {"-32769", kI2, 32767, kOver},
      {"65535", kUi2, 65535}, {"65536", kUi2, 0, kOver}, {"-1", kUi2, 65535, kOver},
      {"2147483648", kI2, 0, kOver}, {"12x", kI1, 0, kBad}, {"12x", kI2, 0, kBad},
      {"0", kBit, 0}, {" -9 ", kBit, 1}, {"2147483648", kBit, 1, kOver}, {"x", kBit, 0, kBad},
  };
  // clang-format on
  for (const auto& row : rows) {
    const Type& d = type(row.destination);
    const int32_t length = row.code == kBad ? 0 : static_cast<int32_t>(d.size);
    EXPECT_EQ(read(d, row.text),
              (Outcome{row.code, length, bytes_of(row.stored).substr(0, d.size)}))
        << d.name << " from \"" << row.text << '"';
  }
}

TEST(ReadFloat, Examples) {
  constexpr int32_t kOk = CS_SUCCEED, kBad = CS_CONV_SYNTAX;
  constexpr double kMost = 1.7976931348623157e308, kInf = std::numeric_limits<double>::infinity();
  constexpr float kMost4 = 3.4028234663852886e38f;
  // A flt4 stores nothing on a syntax error, a flt8 what was read.
  // clang-format off
  const struct {
    std::string text;
    int32_t code8;
    double stored8;
    int32_t code4 = 0;  // 0: the same as a flt8
    float stored4 = 0;
  } rows[] = {
      {" 2.5 ", kOk, 2.5}, {"   ", kOk, 0}, {"-0", kOk, -0.0}, {".5", kOk, 0.5}, {"5.", kOk, 5},
      {"+1e+2", kOk, 100}, {"\t\n1.5", kOk, 1.5}, {"1.5\xFF\xFF ", kOk, 1.5}, {"0x1.8p1", kOk, 3},
      {"NaN", kOk, NAN}, {"nan(1f)", kOk, NAN}, {"5e-324", kOk, 5e-324}, {"1e-50", kOk, 1e-50},
      {"1e39", kOk, 1e39, kOver, kMost4}, {"-3.5e38", kOk, -3.5e38, kOver, -kMost4},
      {"inf", kOk, kInf, kOver, kMost4}, {"-INFINITY", kOk, -kInf, kOver, -kMost4},
      {"1e400", kOver, kMost, kOver, kMost4}, {"-1e400", kOver, -kMost, kOver, -kMost4},
      {"1e-400", kUnder, 0}, {"-1e-400", kUnder, -0.0},
      // A range error is told before a syntax error.
      {"1e400x", kOver, kMost, kOver, kMost4}, {"1e-400 x", kUnder, 0},
      {"1.5x", kBad, 1.5}, {"1.5\t", kBad, 1.5}, {"1.5\t ", kBad, 1.5}, {"1.5 2", kBad, 1.5},
      {"1.5\0"s, kBad, 1.5}, {"1,5", kBad, 1}, {"1e", kBad, 1}, {"0x", kBad, 0}, {"- 1", kBad, 0},
      {"infin", kBad, kInf}, {"\t\t", kBad, 0}, {"x", kBad, 0}, {".", kBad, 0},
  };
  // clang-format on
  for (const auto& row : rows) {
    const bool bad = row.code8 == kBad;
    const float stored4 = row.code4 != 0 ? row.stored4 : static_cast<float>(row.stored8);
    const Outcome eight{row.code8, bad ? 0 : 8, bytes_of(row.stored8)};
    const Outcome four{row.code4 != 0 ? row.code4 : row.code8, bad ? 0 : 4,
                       bad ? untouched(4) : bytes_of(stored4)};
    const Outcome as8 = read(type(kFlt8), row.text), as4 = read(type(kFlt4), row.text);
    EXPECT_TRUE(same(type(kFlt8), as8, eight)) << row.text << ": " << as8 << ", not " << eight;
    EXPECT_TRUE(same(type(kFlt4), as4, four)) << row.text << ": " << as4 << ", not " << four;
  }
}

TEST(ReadFloat, TextsOf1023BytesAreTheLongest) {
  for (const Kind kind : {kFlt4, kFlt8}) {
    const Type& d = type(kind);
    const Outcome one{CS_SUCCEED, static_cast<int32_t>(d.size), encode(d, 1)};
    EXPECT_EQ(read_char(d, std::string(1022, '0') + "1"), one);
    EXPECT_EQ(read_char(d, "1" + std::string(1022, ' ')), one);
    for (const size_t blanks : {1023u, 1024u, 5000u})
      EXPECT_EQ(read_char(d, "1" + std::string(blanks, ' ')),
                (Outcome{CS_CONV_SYNTAX, 0, untouched(d.size)}));
  }
}

TEST(ReadNumber, EveryCodeOfTheCharFamilyIsText) {
  for (const int32_t datatype : kCharFamily)
    for (const Type& d : kTypes)
      EXPECT_EQ(read_char(d, " 1", datatype),
                (Outcome{CS_SUCCEED, static_cast<int32_t>(d.size), encode(d, 1)}));
  EXPECT_EQ(convert(format_of(0, 2), "-7", format_of(20, 8)),
            (Outcome{CS_SUCCEED, 8, bytes_of(int64_t{-7})}));
}

// ---- Reading against the reference ----

void check_readers(std::string_view text) {
  for (const Type& d : kTypes) {
    const Outcome expected = read_number(d, text.size(), text, false);
    const Outcome outcome = read(d, text);
    ASSERT_TRUE(same(d, outcome, expected))
        << d.name << " from " << hex(text) << ": " << outcome << "; expected " << expected;
  }
}

std::string random_text(std::mt19937_64& random, size_t length, std::string_view alphabet) {
  std::string text(length, '\0');
  for (char& c : text)
    c = alphabet.empty() ? static_cast<char>(random()) : alphabet[random() % alphabet.size()];
  return text;
}

TEST(ReadNumberRandom, TextsOfEveryLength) {
  static constexpr std::string_view kAlphabets[] = {"" /* any byte */,
                                                    "0123456789",
                                                    "01234567890123456789 -",
                                                    "00123456789.e+-",
                                                    "0123456789abcdefABCDEF.pPxX-",
                                                    " +-.0123456789eExXpPinfatyINFATY()_\t\n\xFF"};
  std::mt19937_64 random(1);
  for (const std::string_view alphabet : kAlphabets) {
    for (size_t length = 1; length <= 1100; ++length)
      ASSERT_NO_FATAL_FAILURE(check_readers(random_text(random, length, alphabet)));
    for (int i = 0; i < 4'000; ++i)
      ASSERT_NO_FATAL_FAILURE(check_readers(random_text(random, 1 + random() % 24, alphabet)));
  }
}

// Numbers at the limits of the types, with other characters in and around them.
TEST(ReadNumberRandom, SpoiltNumbers) {
  // clang-format off
  const char* const numbers[] = {
      "255", "65535", "32767", "-32768", "2147483647", "-2147483648", "4294967295",
      "9223372036854775807", "-9223372036854775808", "18446744073709551615", "inf", "-infinity",
      "nan(12)", "3.4028234663852886e38", "1.7976931348623157e308", "-4.9e-324", "2.4703e-324",
      "1.17549435e-38", "0x1p-1074"};
  // clang-format on
  std::mt19937_64 random(2);
  for (const char* const number : numbers)
    for (int i = 0; i < 300; ++i) {
      std::string text = number;
      for (uint64_t changes = random() % 3; changes > 0; --changes)
        text.replace(random() % (text.size() + 1), random() % 2, 1,
                     "0123456789 +-.ex\t"[random() % 17]);
      text = std::string(random() % 3, ' ') + text + std::string(1 + random() % 3, ' ');
      ASSERT_NO_FATAL_FAILURE(check_readers(text));
    }
}

// ---- Writing ----

struct Written {
  Kind source;
  std::string value;
  std::string text;
};

// What holds neither a point nor an exponent gets its ".0".
// clang-format off
const Written kWritten[] = {
    {kI1, "\xFF", "255"}, {kI2, bytes_of(int16_t{-32768}), "-32768"}, {kI4, bytes_of(0), "0"},
    {kI4, bytes_of(-2147483647 - 1), "-2147483648"}, {kUi2, bytes_of(uint16_t{65535}), "65535"},
    {kI8, bytes_of(std::numeric_limits<int64_t>::min()), "-9223372036854775808"},
    {kUi4, bytes_of(4294967295u), "4294967295"},
    {kUi8, bytes_of(~uint64_t{0}), "18446744073709551615"},
    {kFlt8, bytes_of(0.1), ".10000000000000001"}, {kFlt8, bytes_of(-0.5), "-0.5"},
    {kFlt8, bytes_of(2.0), "2.0"}, {kFlt8, bytes_of(-0.0), "0.0"}, {kFlt8, bytes_of(1e22), "1e+22"},
    {kFlt8, bytes_of(1e16), "10000000000000000.0"}, {kFlt4, bytes_of(0.1f), ".10000000149011612"},
    {kFlt8, bytes_of(-1.7976931348623157e308), "-1.7976931348623157e+308"},
    {kFlt4, bytes_of(-std::numeric_limits<float>::infinity()), "-inf.0"},
    {kFlt8, bytes_of(std::numeric_limits<double>::quiet_NaN()), "nan.0"},
};
// clang-format on

TEST(WriteNumber, EveryCapacityAndFlag) {
  for (const auto& [kind, value, text] : kWritten)
    for (const int32_t datatype : kCharFamily)
      for (int32_t capacity = 0; capacity <= static_cast<int32_t>(text.size()) + 3; ++capacity)
        for (uint32_t flags = 0; flags < 8; ++flags)
          EXPECT_EQ(
              convert(com_conv_func(shared_context(), type(kind).code, 0),
                      format_of(type(kind).code), value, format_of(datatype, capacity, flags)),
              number_field(text, capacity, flags))
              << text << " into " << capacity << " bytes, flags " << flags;
}

TEST(WriteNumber, Varchar) {
  for (const auto& [kind, value, text] : kWritten)
    for (uint32_t flags = 0; flags < 8; ++flags) {
      Outcome record = convert(format_of(type(kind).code), value, format_of(kVarchar, 0, flags));
      record.bytes.resize(2 + text.size() + 1);  // with the terminator
      EXPECT_EQ(record,
                (Outcome{CS_SUCCEED, 258, varchar_record(text).substr(0, text.size() + 3)}));
    }
}

// Writes a number as the reference does, and reads it back.
void check_round_trip(const Type& t, const std::string& value) {
  const std::string text = number_text(t, value);
  const auto length = static_cast<int32_t>(text.size());
  ASSERT_EQ(convert(format_of(t.code), value, format_of(0, 40)),
            (Outcome{CS_SUCCEED, length, text + untouched(40 - text.size())}))
      << t.name << " " << hex(value);
  if (!std::isfinite(decode(t, value))) return;
  const bool zero = decode(t, value) == 0;  // -0.0 loses its sign
  ASSERT_EQ(read_char(t, text), (Outcome{CS_SUCCEED, static_cast<int32_t>(t.size),
                                         zero ? std::string(t.size, '\0') : value}))
      << t.name << " " << text;
}

TEST(NumberRoundTrip, RandomValues) {
  std::mt19937_64 random(3);
  for (const Type& t : kTypes)
    for (int i = 0; i < 5'000 && t.kind != kBit; ++i) {
      const std::string value = bytes_of(random() >> (is_float(t) ? 0 : random() % 64));
      ASSERT_NO_FATAL_FAILURE(check_round_trip(t, value.substr(0, t.size)));
    }
}

// A locale whose numbers are written 1.234,5 changes nothing.
TEST(NumberText, IsThatOfTheCLocale) {
  std::string folder = ::testing::TempDir() + "tvx_localeXXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  std::ofstream(folder + "/source") << "LC_NUMERIC\ndecimal_point \"<U002C>\"\n"
                                       "thousands_sep \"<U002E>\"\ngrouping 3\nEND LC_NUMERIC\n";
  // It warns of the categories that are left out.
  const std::string command = "cd " + folder + " && localedef -c -i source ./comma 2>warnings";
  static_cast<void>(std::system(command.c_str()));
  setenv("LOCPATH", folder.c_str(), 1);
  const bool has_locale = std::setlocale(LC_NUMERIC, "comma") != nullptr;
  std::filesystem::remove_all(folder);
  if (!has_locale) GTEST_SKIP() << "localedef made no locale";
  ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);

  EXPECT_EQ(read(type(kFlt8), "1.5"), (Outcome{CS_SUCCEED, 8, bytes_of(1.5)}));
  EXPECT_EQ(read(type(kFlt8), "1,5"), (Outcome{CS_CONV_SYNTAX, 0, bytes_of(1.0)}));
  EXPECT_EQ(convert(format_of(10), bytes_of(1234567.5), format_of(0, 9)),
            (Outcome{CS_SUCCEED, 9, "1234567.5"}));
  std::setlocale(LC_NUMERIC, "C");
}

TEST(NumberTextDeathTest, UsageErrors) {
  const std::string text = "1       ", one = varchar_record("1"), empty = varchar_record("");
  const std::string negative = "\xFF\xFF" + std::string(256, '1');
  const std::string too_long = varchar_record(std::string(257, '1'));
  const comn_datafmt i4 = format_of(8), flt8 = format_of(10), varchar = format_of(18, 8);
  // clang-format off
  const struct {
    comn_conversion* routine;
    comn_datafmt from;
    const std::string& source;
    comn_datafmt to;
  } rows[] = {
      {comn_chartoi4, format_of(0, 0), text, i4}, {comn_chartoflt8, format_of(0, 0), text, flt8},
      {comn_chartoi4, format_of(0, -1), text, i4}, {comn_chartoi4, format_of(18, 8), text, i4},
      {comn_chartoi4, format_of(1, 8), text, i4}, {comn_chartoi4, format_of(0, 8), text, flt8},
      {comn_chartobit, format_of(0, 8), text, i4}, {comn_varchartoi4, format_of(0, 8), one, i4},
      {comn_varchartoi4, varchar, empty, i4}, {comn_varchartoflt8, varchar, empty, flt8},
      {comn_varchartoi4, varchar, negative, i4}, {comn_varchartoflt8, varchar, too_long, flt8},
      {comn_i4tochar, i4, text, format_of(0, -1)}, {comn_flt8tochar, flt8, text, format_of(0, -1)},
      {comn_i4tochar, i4, text, varchar}, {comn_i4tochar, flt8, text, format_of(0, 8)},
      {comn_i8tochar, format_of(20, 8), text, format_of(0, 8)},
      {comn_i4tovarchar, i4, text, format_of(0, 8)}, {comn_flt4tovarchar, flt8, text, varchar},
  };
  // clang-format on
  uint8_t out[300];
  int32_t length = 0;
  for (const auto& row : rows)
    EXPECT_DEATH(row.routine(shared_context(), &row.from, row.source.data(), &row.to, out, &length),
                 "assertion failed, file '.*' line [0-9]+")
        << "row " << &row - rows;
  EXPECT_DEATH(comn_chartoflt8(shared_context(), &rows[0].from, nullptr, &rows[1].to, out, &length),
               "Invalid NULL pointer , file '.*' line [0-9]+");
}

}  // namespace
}  // namespace tvx::test
