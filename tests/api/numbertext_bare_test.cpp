// Number text by descriptors, single-byte and multibyte; and what stands beside the conversions:
// the integer parsers, the mapping to ASCII, hexadecimal text and the field writers.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "api/scalar_reference.hpp"
#include "support/conversion.hpp"
#include "support/multibyte_record.hpp"

namespace tvx::test {
namespace {

using namespace reference;
using namespace std::string_literals;

const MultibyteRecord kTwoByteSet;
const MultibyteRecord kFourByteSet(MultibyteRecord::FourByte::kYes);
const com_charattr* const kTwoByte = kTwoByteSet.get();
const com_charattr* const kFourByte = kFourByteSet.get();
const com_charattr* const kRecords[] = {nullptr, com_get_charattrib(), kTwoByte, kFourByte};

bool is_multibyte(const com_charattr* record) {
  return record != nullptr && record->class_ == 2;
}

std::string wide(std::string_view ascii) {
  return MultibyteRecord::full_width(ascii);
}

// ---- Reading ----

Outcome read(const char* source, const Type& d, std::string_view text, const com_charattr* record) {
  return convert_bare(exported<comnb_conversion>("comnb_"s + source + "to" + d.name),
                      bare_context(0, record), text, d.size);
}

// Every reader does what the reference does. A varchar has its text in the descriptor like a char.
void check_readers(std::string_view text, const com_charattr* record) {
  const std::string mapped = is_multibyte(record) ? map_to_ascii(text, *record) : std::string(text);
  for (const Type& d : kTypes)
    for (const char* const source : {"char", "varchar"}) {
      const Outcome expected = read_number(d, text.size(), mapped, true);
      const Outcome outcome = read(source, d, text, record);
      ASSERT_TRUE(same(d, outcome, expected)) << source << " " << hex(text) << " to " << d.name
                                              << ": " << outcome << "; expected " << expected;
    }
}

TEST(BareReader, Examples) {
  const Outcome no_number{CS_CONV_SYNTAX, 0, bytes_of(0)};
  const struct {
    std::string text;
    Kind destination;
    Outcome expected;
    const com_charattr* record = nullptr;
  } rows[] = {
      {"", kI4, {CS_SUCCEED, 4, bytes_of(0)}},
      {"", kFlt8, {CS_SUCCEED, 8, bytes_of(0.0)}},
      {"-7x", kI4, {CS_CONV_SYNTAX, 0, bytes_of(-7)}},
      {"2147483648", kI4, {CS_CONV_OVERFLOW, 4, bytes_of(214748364)}},
      {"1.5x", kFlt8, {CS_CONV_SYNTAX, 0, untouched(8)}},
      {"1e400", kFlt8, {CS_CONV_OVERFLOW, 0, bytes_of(1.7976931348623157e308)}},
      {"1e-400", kFlt8, {CS_CONV_UNDERFLOW, 0, bytes_of(0.0)}},
      {"-1e39", kFlt4, {CS_CONV_OVERFLOW, 0, bytes_of(-3.4028234663852886e38f)}},
      {std::string(1024, '1'), kFlt4, {CS_CONV_SYNTAX, 0, untouched(4)}},
      // Full-width characters; a text is measured before it is mapped.
      {wide(" - 120 "), kI4, {CS_SUCCEED, 4, bytes_of(-120)}, kTwoByte},
      {wide(" -1.5E3 "), kFlt8, {CS_SUCCEED, 8, bytes_of(-1500.0)}, kTwoByte},
      {wide(std::string(511, '0')) + "1", kFlt4, {CS_SUCCEED, 4, bytes_of(1.0f)}, kTwoByte},
      {wide(std::string(512, '0')), kFlt4, {CS_CONV_SYNTAX, 0, untouched(4)}, kTwoByte},
      {wide("120"), kI4, no_number},
      {wide("120"), kI4, no_number, com_get_charattrib()},
  };
  for (const auto& row : rows)
    for (const char* const source : {"char", "varchar"})
      EXPECT_EQ(read(source, type(row.destination), row.text, row.record), row.expected)
          << source << " " << row.text;
}

TEST(BareReader, TextsThatEndWithinACharacter) {
  for (const com_charattr* const record : {kTwoByte, kFourByte})
    for (const char* const end : {"\x82", "\x81", "\x83", "\x9F", "\x83\x35", "\x82\x35\x81"})
      for (const char* const start : {"", "12", " -1"})
        ASSERT_NO_FATAL_FAILURE(check_readers(start + std::string(end), record));
}

// Any bytes; numbers of both widths with any byte now and then; and without.
TEST(BareReader, RandomTextsOfEveryLength) {
  std::mt19937_64 random(1);
  for (size_t length = 0; length <= 1100; ++length)
    for (const uint64_t any_byte_in : {1u, 64u, 1'000'000u}) {
      const std::string_view characters = length % 2 == 0 ? "0123456789" : " +-0123456789.eEx";
      std::string text;
      while (text.size() < length) {
        const std::string character(1, characters[random() % characters.size()]);
        if (random() % any_byte_in == 0)
          text += static_cast<char>(random());
        else
          text += random() % 2 == 0 ? character : wide(character);
      }
      text.resize(length);
      for (const com_charattr* const record : kRecords)
        ASSERT_NO_FATAL_FAILURE(check_readers(text, record));
    }
}

// ---- Writing ----

TEST(BareWriter, NumbersFitOrAreNotDelivered) {
  for (const Type& t : kTypes)
    for (const char* const destination : {"char", "varchar"}) {
      if (t.kind == kBit) continue;
      const std::string value = encode(t, is_float(t) ? -0.1L : t.greatest);
      const std::string text = number_text(t, value);
      const std::string name = "comnb_"s + t.name + "to" + destination;
      for (size_t room = text.size() - 1; room <= text.size() + 1; ++room) {
        Outcome expected{CS_CONV_OVERFLOW, kNoLength, untouched(room)};
        if (room >= text.size())
          expected = {CS_SUCCEED, static_cast<int32_t>(text.size()),
                      text + untouched(room - text.size())};
        EXPECT_EQ(convert_bare(exported<comnb_conversion>(name), {}, value, room), expected)
            << name;
      }
    }
}

TEST(BareWriter, VarcharsAreNotCompleted) {
  for (uint32_t flags = 0; flags < 16; ++flags)
    EXPECT_EQ(convert_bare(comnb_i4tovarchar, bare_context(flags), bytes_of(-12), 6),
              (Outcome{CS_SUCCEED, 3, "-12" + untouched(3)}));
}

// ---- Parsers ----

template <class T>
void expect_parsed(int32_t (*parser)(const char*, int32_t, T*, const com_charattr*),
                   std::string_view text, const com_charattr* record, int32_t status,
                   int64_t value) {
  const auto parse = [&](const void* source, void* out, int32_t* length) {
    T parsed{};
    *length = parser(static_cast<const char*>(source), static_cast<int32_t>(text.size()), &parsed,
                     record);
    std::memcpy(out, &parsed, sizeof parsed);
    return *length;
  };
  EXPECT_EQ(observe(text, sizeof(T), parse),
            (Outcome{status, status, bytes_of(static_cast<T>(value))}))
      << hex(text);
}

TEST(IntegerParsers, StatusAndValue) {
  struct Parsed {
    int32_t status;
    int64_t value;
  };
  constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
  // clang-format off
  const struct {
    std::string text;
    Parsed i2, i4, i8, ui2, ui4, ui8;
  } rows[] = {
      {"", {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}},
      {"  ", {4, 0}, {4, 0}, {4, 0}, {4, 0}, {4, 0}, {4, 0}},
      {" + 12 ", {4, 12}, {4, 12}, {4, 12}, {4, 12}, {4, 12}, {4, 12}},
      {"-12", {4, -12}, {4, -12}, {4, -12}, {-1, -12}, {-2, 0}, {-2, 0}},
      {"-", {4, 0}, {4, 0}, {4, 0}, {4, 0}, {-2, 0}, {-2, 0}},
      {"++1", {-2, 0}, {-2, 0}, {-2, 0}, {-2, 0}, {-2, 0}, {-2, 0}},
      {"1 2", {-2, 0}, {-2, 1}, {-2, 1}, {-2, 0}, {-2, 1}, {-2, 1}},
      {"65536", {-1, 0}, {4, 65536}, {4, 65536}, {-1, 0}, {4, 65536}, {4, 65536}},
      {"100000", {-1, -31072}, {4, 100000}, {4, 100000}, {-1, 34464}, {4, 100000}, {4, 100000}},
      {"4294967296", {-1, 0}, {-1, 429496729}, {4, 1ll << 32}, {-1, 0}, {-1, -1}, {4, 1ll << 32}},
      {"-9223372036854775809", {-1, 0}, {-1, -922337203}, {-1, -kMost - 1}, {-1, 0},
       {-2, 0}, {-2, 0}},
      {"18446744073709551616", {-1, 0}, {-1, 1844674407}, {-1, kMost}, {-1, 0}, {-1, -1}, {-1, -1}},
  };
  // clang-format on
  for (const auto& row : rows)
    for (const com_charattr* const record : kRecords)
      for (const std::string& text : {row.text, is_multibyte(record) ? wide(row.text) : row.text}) {
        expect_parsed(com__chtoi2_mb, text, record, row.i2.status, row.i2.value);
        expect_parsed(com__chtoi4_mb, text, record, row.i4.status, row.i4.value);
        expect_parsed(com__chtoi8_mb, text, record, row.i8.status, row.i8.value);
        expect_parsed(com__chtoui2_mb, text, record, row.ui2.status, row.ui2.value);
        expect_parsed(com__chtoui4_mb, text, record, row.ui4.status, row.ui4.value);
        expect_parsed(com__chtoui8_mb, text, record, row.ui8.status, row.ui8.value);
      }
}

TEST(MapToAscii, EveryCapacity) {
  const std::string no_form(MultibyteRecord::kNoAscii), four(MultibyteRecord::kFourBytes);
  const std::string with_letter(MultibyteRecord::kNoAsciiWithLetter);
  const std::string with_digit = "\x82\x35\x82\x4F";  // four bytes, though they end like a wide 0
  // clang-format off
  const struct {
    std::string text;
    const com_charattr* record;
    std::string mapped;
  } rows[] = {
      {wide("12"), nullptr, wide("12")}, {wide("12"), com_get_charattrib(), wide("12")},
      {"aB\xE9 \0z"s, com_get_charattrib(), "aB\xE9 \0z"s},
      {wide("-1.5e+Z ") + "x", kTwoByte, "-1.5e+Z x"},
      {with_letter + wide("7") + no_form, kTwoByte, with_letter + "7" + no_form},
      {four + wide("7"), kFourByte, four + "7"},
      {with_digit + wide("7"), kFourByte, with_digit + "7"},
      {with_digit + wide("7"), kTwoByte, "\x82\x35" "07"}, {"1\x82", kTwoByte, "1\x82"},
      {"1\x83\x35\x81", kFourByte, "1\x83\x35\x81"}, {"\x83\x35", kFourByte, "\x83\x35"},
  };
  // clang-format on
  for (const auto& [text, record, mapped] : rows)
    for (size_t room = 0; room <= mapped.size() + 2; ++room) {
      const auto map = [&, length = static_cast<int32_t>(text.size()), attributes = record](
                           const void* source, void* out, int32_t* written) {
        *written = com__conv2ascii(static_cast<const char*>(source), length,
                                   static_cast<char*>(out), static_cast<int32_t>(room), attributes);
        return 0;
      };
      const std::string written = mapped.substr(0, room);
      EXPECT_EQ(observe(text, room, map), (Outcome{0, static_cast<int32_t>(written.size()),
                                                   written + untouched(room - written.size())}))
          << hex(text) << " in " << room;
    }
}

// ---- Hexadecimal ----

TEST(Hexadecimal, TextToInteger) {
  constexpr int32_t kOk = CS_SUCCEED, kCut = CS_CONV_TRUNCATED, kBad = CS_CONV_SYNTAX;
  // clang-format off
  const struct {
    std::string text;
    int32_t code4, code8;
    uint64_t value4, value8;
  } rows[] = {
      {"0", kOk, kOk, 0, 0}, {"0xaBcD", kOk, kOk, 0xABCD, 0xABCD}, {"0x", kOk, kOk, 0, 0},
      {"0X000000000000000000000012", kOk, kOk, 18, 18},
      {"FFFFFFFF", kOk, kOk, 0xFFFFFFFF, 0xFFFFFFFF},
      {"123456789", kCut, kOk, 0x12345678, 0x123456789}, {"12345678g", kBad, kBad, 0, 0},
      {"123456789g", kCut, kBad, 0x12345678, 0}, {"00x1", kBad, kBad, 0, 0},
      {"FEDCBA98765432101", kCut, kCut, 0xFEDCBA98, 0xFEDCBA9876543210},
      {std::string(239, '0') + "FEDCBA9876543210", kCut, kOk, 0xFEDCBA98, 0xFEDCBA9876543210},
      {" 1", kBad, kBad, 0, 0}, {"1 ", kBad, kBad, 0, 0}, {"-1", kBad, kBad, 0, 0},
  };
  // clang-format on
  for (const auto& row : rows)
    for (const std::string& text : {row.text, wide(row.text)}) {
      if (text.size() > 255) continue;
      const comnb_context context = bare_context(0, text == row.text ? nullptr : kTwoByte);
      const auto value4 = static_cast<uint32_t>(row.value4);
      for (comnb_conversion* const routine : {comnb_hextoi4, comnb_hextoui4})
        EXPECT_EQ(convert_bare(routine, context, text, 4),
                  (Outcome{row.code4, row.code4 == kBad ? 0 : 4, bytes_of(value4)}))
            << row.text;
      for (comnb_conversion* const routine : {comnb_hextoi8, comnb_hextoui8})
        EXPECT_EQ(convert_bare(routine, context, text, 8),
                  (Outcome{row.code8, row.code8 == kBad ? 0 : 8, bytes_of(row.value8)}))
            << row.text;
    }
  for (comnb_conversion* const routine : {comnb_hextoi4, comnb_hextoui8})
    for (const std::string& text : {std::string(256, '0'), wide(std::string(128, '0'))})
      EXPECT_EQ(convert_bare(routine, bare_context(0, kTwoByte), text, 8).code, CS_CONV_OVERFLOW);
}

TEST(Hexadecimal, RandomTextsOfEveryLength) {
  std::mt19937_64 random(2);
  for (size_t length = 0; length <= 1100; ++length)
    for (const bool any_byte : {true, false}) {
      std::string text(length, '\0');
      for (char& c : text)
        c = any_byte ? static_cast<char>(random()) : "0123456789abcDEFx"[random() % 17];
      const Outcome outcome = convert_bare(comnb_hextoi8, bare_context(0, kFourByte), text, 8);
      const int32_t code = outcome.code;
      if (length > 255) {
        ASSERT_EQ(code, CS_CONV_OVERFLOW);
        continue;
      }
      ASSERT_TRUE(code == CS_SUCCEED || code == CS_CONV_TRUNCATED || code == CS_CONV_SYNTAX);
      ASSERT_EQ(outcome.length, code == CS_CONV_SYNTAX ? 0 : 8);
    }
}

TEST(Hexadecimal, IntegerToText) {
  const struct {
    comnb_conversion* routine;
    std::string value, digits;
  } rows[] = {{comnb_i4tohex, bytes_of(0), "0"},
              {comnb_i4tohex, bytes_of(-1), "FFFFFFFF"},
              {comnb_ui4tohex, bytes_of(0xABCu), "ABC"},
              {comnb_i8tohex, bytes_of(int64_t{-16}), "FFFFFFFFFFFFFFF0"},
              {comnb_ui8tohex, bytes_of(0xFEDCBA9876543210u), "FEDCBA9876543210"}};
  for (const auto& [routine, value, digits] : rows)
    for (size_t room = 0; room <= 20; ++room) {
      Outcome expected{CS_CONV_SYNTAX, kNoLength, untouched(room)};
      if (room >= 2) {
        const std::string padded = std::string(20, '0') + digits;
        expected.code = digits.size() < room ? CS_SUCCEED : CS_CONV_OVERFLOW;
        expected.bytes = padded.substr(padded.size() - (room - 1)) + '\0';
      }
      EXPECT_EQ(convert_bare(routine, bare_context(0), value, room), expected) << digits;
    }
  int32_t value = 1;
  const comnb_context context{};
  comnb_value from{}, nowhere{};
  from.length = 4;
  from.data = &value;
  nowhere.maxlength = 9;
  EXPECT_EQ(comnb_i4tohex(&context, &from, &nowhere), CS_CONV_SYNTAX);
}

// ---- Field writers ----

template <class Write>
void expect_field(const std::string& field, Write write) {
  const auto call = [&](const void*, void* out, int32_t* length) {
    *length = write(static_cast<char*>(out));
    return 0;
  };
  EXPECT_EQ(observe("", field.size() + 2, call),
            (Outcome{0, static_cast<int32_t>(field.size()), field + untouched(2)}));
}

TEST(FieldWriters, Examples) {
  // clang-format off
  const struct { int32_t value, width; const char* field; } plain[] = {
      {0, 0, "0"}, {-12, 0, "-12"}, {-12, 3, "-12"}, {-12, 2, "*"}, {123, 5, "123"},
      {-2147483647 - 1, 0, "-2147483648"}, {-2147483647 - 1, 10, "*"}};
  const struct { int32_t value, trailing, width; const char* field; } aligned[] = {
      {7, 0, -2, "07"}, {7, 0, 3, "  7"}, {0, 0, 2, " 0"}, {0, 0, -4, "0000"}, {12, ':', -2, "12:"},
      {1987, 0, -2, "87"}, {1987, '/', 3, "987/"}, {1005, 0, 2, "05"},
      {2147483647, 0, 10, "2147483647"}, {5, '-', 12, "           5-"}};
  const struct { const char* text; int32_t trailing, most; const char* field; } texts[] = {
      {"January", 0, 20, "January"}, {"January", ' ', 3, "Jan "}, {"", '.', 5, "."},
      {"May", 0, 3, "May"}, {"May", 0, 0, ""}, {"May", ' ', 4, "May "}};
  // clang-format on
  for (const auto& row : plain)
    expect_field(row.field, [&](char* out) { return com__itochar(row.value, out, row.width); });
  for (const auto& row : aligned)
    expect_field(row.field,
                 [&](char* out) { return com__cpint(out, row.value, row.trailing, row.width); });
  for (const auto& row : texts)
    expect_field(row.field,
                 [&](char* out) { return com__cpchar(out, row.text, row.trailing, row.most); });
}

}  // namespace
}  // namespace tvx::test
