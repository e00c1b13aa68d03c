// Numbers read from text and written as text against the reference, in both layers and over single-
// byte and multibyte texts; the integer parsers, the mapping to ASCII and the field writers.
#include <random>

#include "api/scalar_reference.hpp"
#include "support/conversion.hpp"
#include "support/multibyte_record.hpp"

namespace tvx::test {
namespace {

using namespace reference;
using namespace std::string_literals;
using tvx::test::convert;

const MultibyteRecord kTwoByteSet, kFourByteSet(MultibyteRecord::FourByte::kYes);
const com_charattr* const kTwoByte = kTwoByteSet.get();
const com_charattr* const kFourByte = kFourByteSet.get();
const com_charattr* const kRecords[] = {nullptr, com_get_charattrib(), kTwoByte, kFourByte};

std::string wide(std::string_view ascii) {
  return MultibyteRecord::full_width(ascii);
}

Outcome read_char(const Type& d, std::string_view text, int32_t datatype = 0) {
  const comn_datafmt from = format_of(datatype, static_cast<int32_t>(text.size()));
  return convert(exported("comn_charto"s + d.name), from, text, format_of(d.code));
}

template <class T>
void check_parser(int32_t (*parser)(const char*, int32_t, T*, const com_charattr*), Kind kind,
                  const std::string& text, const com_charattr* record) {
  const auto call = [&](void* source, void* out, int32_t*) {
    const auto length = static_cast<int32_t>(text.size());
    T value{};
    const int32_t status = parser(static_cast<const char*>(source), length, &value, record);
    std::memcpy(out, &value, sizeof value);
    return status;
  };
  const auto [status, value] = parse_integer(type(kind), map_to_ascii(text, record));
  ASSERT_EQ(observe(text, sizeof(T), call), (Outcome{status, kNoLength, encode(type(kind), value)}))
      << "parser of " << type(kind).name << ": " << testing::PrintToString(text);
}

// Every reader does what the reference does; the formats of this test name no character set.
void check_readers(const std::string& text, const com_charattr* record = nullptr) {
  const std::string mapped = map_to_ascii(text, record);
  for (const Type& d : kTypes) {
    const auto check = [&](const char* source, bool bare, const Outcome& outcome) {
      ASSERT_EQ(one_nan(d, outcome), one_nan(d, read_number(d, text.size(), mapped, bare)))
          << (bare ? "bare " : "") << source << " " << testing::PrintToString(text) << " to "
          << d.name;
    };
    for (const char* const source : {"char", "varchar"}) {
      auto* const routine = exported<comnb_conversion>("comnb_"s + source + "to" + d.name);
      check(source, true, convert_bare(routine, bare_context(0, record), text, d.size));
    }
    if (record != nullptr || text.empty()) continue;
    check("char", false, read_char(d, text));
    if (text.size() > 256) continue;
    check("varchar", false, convert(format_of(18), varchar_record(text, '7'), format_of(d.code)));
  }
  check_parser(com__chtoi2_mb, kI2, text, record);
  check_parser(com__chtoi4_mb, kI4, text, record);
  check_parser(com__chtoi8_mb, kI8, text, record);
  check_parser(com__chtoui2_mb, kUi2, text, record);
  check_parser(com__chtoui4_mb, kUi4, text, record);
  check_parser(com__chtoui8_mb, kUi8, text, record);
}

constexpr int32_t kBad = CS_CONV_SYNTAX, kOver = CS_CONV_OVERFLOW, kUnder = CS_CONV_UNDERFLOW;

TEST(ReadNumber, Examples) {
  constexpr Real kMost = 9223372036854775807.0L;
  // clang-format off
  const struct { std::string text; Kind to; Real stored; int32_t code = CS_SUCCEED; } rows[] = {
      {" - 42 ", kI4, -42}, {"  ", kI4, 0}, {" + ", kUi8, 0}, {"4 2", kI4, 4, kBad},
      {"- -1", kI8, 0, kBad}, {"12.0", kI4, 12, kBad}, {"\t5", kI4, 0, kBad},
      {"5\0"s, kUi4, 5, kBad}, {"-0", kUi8, 0, kBad}, {"0000002147483648", kI4, 214748364, kOver},
      {"9223372036854775808", kI8, kMost, kOver}, {"-9223372036854775809", kI8, -kMost - 1, kOver},
      {"18446744073709551616", kUi8, 18446744073709551615.0L, kOver},
      // The narrow types keep the low bytes of an i4, and 0 when there is none.
      {"300", kI1, 44, kOver}, {"-32769", kI2, 32767, kOver}, {"65536", kUi2, 0, kOver},
      {"2147483648", kI2, 0, kOver}, {"12x", kI2, 0, kBad}, {" -9 ", kBit, 1}, {"x", kBit, 0, kBad},
      {" 2.5 ", kFlt8, 2.5}, {"   ", kFlt8, 0}, {"-0", kFlt8, -0.0L}, {"1.5\xFF ", kFlt8, 1.5},
      {"\t0x1.8p1", kFlt8, 3}, {"-INFINITY", kFlt8, -kInfinity}, {"nan(1f)", kFlt8, kNan},
      {"1e400", kFlt8, DBL_MAX, kOver}, {"-1e-400", kFlt8, -0.0L, kUnder},
      {"-3.5e38", kFlt4, -kMostFlt4, kOver}, {"inf", kFlt4, kMostFlt4, kOver}, {"1e-50", kFlt4, 0},
      // A range error is told before a syntax error, at which a flt8 stores what was read.
      {"1e400x", kFlt8, DBL_MAX, kOver}, {"1.5 2", kFlt8, 1.5, kBad}, {"1.5\t ", kFlt8, 1.5, kBad},
      {"infin", kFlt8, kInfinity, kBad}, {".", kFlt8, 0, kBad},
      {std::string(1022, '0') + "1", kFlt4, 1}, {"1" + std::string(1022, ' '), kFlt8, 1},
  };
  // clang-format on
  for (const auto& row : rows) {
    const Type& d = type(row.to);
    const int32_t length = row.code == kBad ? 0 : static_cast<int32_t>(d.size);
    EXPECT_EQ(one_nan(d, read_char(d, row.text)),
              one_nan(d, {row.code, length, encode(d, row.stored)}))
        << row.text;
    check_readers(row.text);
  }
  const Outcome nothing{kBad, 0, untouched(4)};
  EXPECT_EQ(read_char(type(kFlt4), "1.5x"), nothing);
  EXPECT_EQ(read_char(type(kFlt4), "1" + std::string(1023, ' ')), nothing);
}

TEST(ReadNumber, BareExamples) {
  const Outcome nothing{kBad, 0, untouched(8)};
  EXPECT_EQ(convert_bare(comnb_chartoflt8, {}, "", 8), delivered(bytes_of(0.0), 8));
  EXPECT_EQ(convert_bare(comnb_chartoflt8, {}, "1.5x", 8), nothing);
  EXPECT_EQ(convert_bare(comnb_chartoflt8, {}, "1e400", 8), (Outcome{kOver, 0, bytes_of(DBL_MAX)}));
  // Full-width characters; a text is measured before it is mapped.
  const comnb_context context = bare_context(0, kTwoByte);
  EXPECT_EQ(convert_bare(comnb_chartoi4, context, wide(" - 12 "), 4), delivered(bytes_of(-12), 4));
  EXPECT_EQ(convert_bare(comnb_chartoflt8, context, wide(std::string(512, '0')), 8), nothing);
}

TEST(ReadNumber, EveryCodeOfTheCharFamilyIsText) {
  for (const int32_t datatype : {0, 2, 4, 21, 22, 34})
    for (const Type& d : kTypes)
      EXPECT_EQ(read_char(d, " 1", datatype), delivered(encode(d, 1), d.size));
  EXPECT_EQ(convert(format_of(0, 2), "-7", format_of(20, 8)), delivered(bytes_of(int64_t{-7}), 8));
}

TEST(ReadNumber, RandomTextsOfEveryLength) {
  static constexpr std::string_view kAlphabets[] = {
      "0123456789", "01234567890123456789 -", "00123456789.e+-", "0123456789abcdefABCDEF.pPxX-",
      " +-.0123456789eExXpPinfatyINFATY()_\t\n\xFF"};
  std::mt19937_64 random(1);
  for (const std::string_view alphabet : kAlphabets)
    for (const com_charattr* const record : kRecords)
      for (size_t i = 0; i <= 2'000; ++i) {
        const size_t length = i <= 1'100 ? i : random() % 24;
        const uint64_t any_byte_in = i % 3 == 0 ? 1'000'000 : i % 3 == 1 ? 64 : 1;
        std::string text;
        while (text.size() < length) {
          const std::string c(1, alphabet[random() % alphabet.size()]);
          const bool full_width = record != nullptr && random() % 2 == 0;
          text += random() % any_byte_in == 0 ? std::string(1, static_cast<char>(random()))
                  : full_width                ? wide(c)
                                              : c;
        }
        ASSERT_NO_FATAL_FAILURE(check_readers(text.substr(0, length), record));
      }
}

// Numbers at the limits of the types, with other characters in and around them.
TEST(ReadNumber, RandomlySpoiltNumbers) {
  std::mt19937_64 random(2);
  for (const char* const number :
       {"255", "65535", "32767", "-32768", "2147483647", "-2147483648", "4294967295",
        "9223372036854775807", "-9223372036854775808", "18446744073709551615", "-infinity",
        "nan(12)", "3.4028234663852886e38", "1.7976931348623157e308", "-4.9e-324", "2.4703e-324",
        "1.17549435e-38", "0x1p-1074"})
    for (int i = 0; i < 300; ++i) {
      std::string text = number;
      for (uint64_t changes = random() % 3; changes > 0; --changes)
        text.replace(random() % (text.size() + 1), random() % 2, 1,
                     "0123456789 +-.ex\t"[random() % 17]);
      text = std::string(random() % 3, ' ') + text + std::string(random() % 3, ' ');
      ASSERT_NO_FATAL_FAILURE(check_readers(text));
    }
}

TEST(WriteNumber, AsTheReferenceDoesAndReadBack) {
  std::mt19937_64 random(3);
  for (const Type& t : kTypes)
    for (int i = 0; i < 5'000 && t.kind != kBit; ++i) {
      const uint64_t bits = random() >> (t.is_float() ? 0 : random() % 64);
      const std::string value = bytes_of(bits).substr(0, t.size), text = number_text(t, value);
      ASSERT_EQ(convert(format_of(t.code), value, format_of(0, 40)), delivered(text, 40));
      if (!std::isfinite(decode(t, value))) continue;
      const std::string zero(t.size, '\0');  // -0.0 loses its sign
      ASSERT_EQ(read_char(t, text), delivered(decode(t, value) == 0 ? zero : value, t.size));
    }
}

// What a function that returns the bytes written leaves in `room` bytes.
Outcome written(std::string_view text, size_t room,
                const std::function<int32_t(const char* source, char* out)>& write) {
  return observe(text, room, [&](void* source, void* out, int32_t* length) {
    *length = write(static_cast<const char*>(source), static_cast<char*>(out));
    return CS_SUCCEED;
  });
}

TEST(MapToAscii, EveryCapacity) {
  const std::string four(MultibyteRecord::kFourBytes), letter(MultibyteRecord::kNoAsciiWithLetter);
  const std::string with_digit = "\x82\x35\x82\x4F";  // four bytes, though they end like a wide 0
  // clang-format off
  const struct { std::string text; const com_charattr* record; std::string mapped; } rows[] = {
      {wide("12"), nullptr, wide("12")}, {"aB\xE9 \0z"s, com_get_charattrib(), "aB\xE9 \0z"s},
      {wide("-1.5e+Z ") + "x", kTwoByte, "-1.5e+Z x"}, {four + wide("7"), kFourByte, four + "7"},
      {letter + wide("7"), kTwoByte, letter + "7"},
      {with_digit + wide("7"), kFourByte, with_digit + "7"},
      {with_digit + wide("7"), kTwoByte, "\x82\x35" "07"},
      {"1\x83\x35\x81", kFourByte, "1\x83\x35\x81"},
  };
  // clang-format on
  for (const auto& row : rows)
    for (size_t room = 0; room <= row.mapped.size() + 2; ++room) {
      const auto map = [&](const char* source, char* out) {
        const auto length = static_cast<int32_t>(row.text.size());
        return com__conv2ascii(source, length, out, static_cast<int32_t>(room), row.record);
      };
      EXPECT_EQ(written(row.text, room, map), delivered(row.mapped, room));
    }
}

TEST(FieldWriters, EveryWidth) {
  const auto expect = [](const std::string& field, const std::function<int32_t(char*)>& write) {
    const size_t room = field.size() + 2;
    EXPECT_EQ(written("", room, [&](const char*, char* out) { return write(out); }),
              delivered(field, room));
  };
  for (const int32_t value : {0, 7, -12, 123, 1005, 1987, 2147483647, -2147483647 - 1})
    for (int32_t width = -12; width <= 12; ++width) {
      const auto size = static_cast<size_t>(std::abs(width));
      const std::string digits = std::to_string(value);
      const std::string padded = std::string(size, width < 0 ? '0' : ' ') + digits;
      const std::string field = padded.substr(padded.size() - size);
      expect(width <= 0 || digits.size() <= size ? digits : "*",
             [&](char* out) { return com__itochar(value, out, width); });
      expect(field, [&](char* out) { return com__cpint(out, value, 0, width); });
      expect(field + ":", [&](char* out) { return com__cpint(out, value, ':', width); });
    }
  for (int32_t most = 0; most <= 8; ++most) {
    const std::string name = "January", field = name.substr(0, static_cast<size_t>(most));
    expect(field, [&](char* out) { return com__cpchar(out, name.c_str(), 0, most); });
    expect(field + " ", [&](char* out) { return com__cpchar(out, name.c_str(), ' ', most); });
  }
}

}  // namespace
}  // namespace tvx::test
