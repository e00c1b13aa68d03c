// The built-in record against the C library's idea of Unicode, records over images, and
// characters of several bytes, whole and cut off.
#include "tvxcomn/attributes.h"

#include <gtest/gtest.h>
#include <locale.h>
#include <wctype.h>

#include <array>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

#include "charset/attributes.hpp"
#include "support/guarded_buffer.hpp"
#include "support/multibyte_record.hpp"
#include "tvxcomn/support.h"

namespace {

using namespace std::string_literals;
using tvx::test::GuardedText;
using tvx::test::MultibyteRecord;
namespace charset = tvx::charset;

using Row = std::array<int, 4>;  // upper, lower, lexical class, flags

Row table_row(int byte) {
  const uint8_t* row = com_get_typemap() + 4 * byte;
  return {row[0], row[1], row[2], row[3]};
}

// The characters of code page 850 from 0x80 on.
constexpr std::wstring_view kUpperHalf =
    L"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒáíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐"
    L"└┴┬├─┼ãÃ╚╔╩╦╠═╬¤ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0";

TEST(BuiltinRecord, EveryRowFollowsFromTheUnicodeCharacter) {
  std::wstring page;
  while (page.size() < 128) page += static_cast<wchar_t>(page.size());
  page += kUpperHalf;
  locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(nullptr, unicode);
  const auto among = [](wint_t c, std::wstring_view set) {
    return set.find(static_cast<wchar_t>(c)) != set.npos;
  };
  const auto byte_of = [&](wint_t c) {
    return static_cast<int>(page.find(static_cast<wchar_t>(c)));
  };
  const auto expected_row = [&](int b) -> Row {
    const auto c = static_cast<wint_t>(page[static_cast<size_t>(b)]);
    const int hex = c < 128 && iswxdigit_l(c, unicode) ? 16 : 0;
    if (c >= L'0' && c <= L'9') return {b, b, 2, 4 | hex};
    if (among(c, L" \u00A0")) return {b, b, 8, 8};
    if (c >= 0x2500 && c <= 0x25A0) return {b, b, 32, 64};
    if (among(c, L"$¢£¥¤")) return {b, b, 4, 32};
    if (among(c, L"#@_")) return {b, b, 1, 32};
    if (c == L'"') return {b, b, 16, 32};
    if (!iswalpha_l(c, unicode) || among(c, L"ƒªºµ")) return {b, b, 32, 32};
    const wint_t upper = towupper_l(c, unicode), lower = towlower_l(c, unicode);
    if (c != lower) return {b, byte_of(lower), 1, 1 | hex};
    // The upper-case form of the dotless i has another lower-case form.
    const bool pair = among(upper, page) && towlower_l(upper, unicode) == c;
    return {pair ? byte_of(upper) : b, b, 1, 2 | hex};
  };
  constexpr std::pair<decltype(&comn_isalpha), int> kOperations[] = {
      {comn_isalpha, 3},   {comn_isupper, 1}, {comn_islower, 2},  {comn_isdigit, 4},
      {comn_isxdigit, 16}, {comn_isspace, 8}, {comn_ispunct, 32}, {comn_isgraph, 64},
  };
  for (int b = 0; b < 256; ++b) {
    const char c = static_cast<char>(b);
    EXPECT_EQ(expected_row(b), table_row(b)) << b;
    EXPECT_EQ(table_row(b)[1], comn_to_ascii(nullptr, &c)) << b;
    for (const auto& [is, flags] : kOperations)
      EXPECT_EQ(table_row(b)[3] & flags, is(nullptr, &c)) << b;
  }
  EXPECT_EQ((Row{}), table_row(256));
  freelocale(unicode);
}

void expect_single_byte(const com_charattr& record, int id, const std::string& name) {
  EXPECT_EQ(0, record.status);
  EXPECT_EQ(1, record.class_);
  EXPECT_EQ(id, record.id);
  EXPECT_EQ(name, record.name);
  EXPECT_EQ(name.size(), record.name_length);
  EXPECT_EQ(0, std::memcmp("\1\1\0\1\1", record.format, 5));
  EXPECT_EQ(nullptr, record.lengths);
  EXPECT_EQ(nullptr, record.to_ascii);
}

TEST(BuiltinRecord, DescribesCp850WithItsSoundexDigits) {
  const com_charattr& record = *com_get_charattrib();
  expect_single_byte(record, 2, "cp850");
  EXPECT_EQ(com_get_typemap(), record.attributes);
  constexpr std::string_view kGroups[] = {"AEIOUHWY", "BFPV", "CGJKQSXZ", "DT", "L", "MN", "R"};
  for (int b = 0; b < 257; ++b) {
    char expected = b >= 128 && b < 256 && table_row(b)[2] == COM_LEX_LETTER ? '0' : '\0';
    for (size_t digit = 0; b < 128 && digit < std::size(kGroups); ++digit)
      if (kGroups[digit].find(static_cast<char>(b & ~0x20)) != std::string_view::npos)
        expected = static_cast<char>('0' + digit);
    EXPECT_EQ(expected, record.soundex[b]) << b;
  }
}

TEST(BuildCharAttrib, SingleByteImage) {
  const std::vector<uint8_t> image(1285);
  com_charattr* record = com_alloc_char_attrib();
  ASSERT_NE(nullptr, record);
  for (const size_t length : {0u, 5u, 29u, 30u, 400u}) {
    const std::string name(length, 'n');
    std::memset(record, 0xEE, sizeof *record);
    ASSERT_TRUE(
        com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 3, name.c_str(), image.data(), record));
    expect_single_byte(*record, 3, name.substr(0, 29));
    EXPECT_EQ(image.data(), record->attributes);
    EXPECT_EQ(image.data() + 1028, record->soundex);
  }
  EXPECT_EQ(1, com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 1, nullptr, image.data(), record));
  EXPECT_STREQ("", record->name);
  EXPECT_EQ(0, com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 1, "x", nullptr, record));
  EXPECT_EQ(0, com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 1, "x", image.data(), nullptr));
  for (const int32_t kind : {0, 1, 1000, 1003})
    EXPECT_EQ(0, com_build_char_attrib(kind, 1, "x", image.data(), record)) << kind;
  comn_free(record);
}

TEST(BuildCharAttrib, MultibyteImage) {
  std::vector<uint8_t> image = {0x12, 0x34, 2, 1, 2, 3, 4, 5, 9, 9, 9, 9};
  for (const uint32_t word : {300u, 256u, 556u, 512u, 0x1010203u, 3072u, 1068u, 1280u})
    for (const int shift : {24, 16, 8, 0}) image.push_back(static_cast<uint8_t>(word >> shift));
  image.resize(0x1010500);
  com_charattr record;
  ASSERT_EQ(1, com_build_char_attrib(COM_IMAGE_MULTIBYTE, 141, "sjis", image.data(), &record));
  EXPECT_EQ(0x1234, record.status);
  EXPECT_EQ(2, record.class_);
  EXPECT_EQ(141, record.id);
  EXPECT_EQ(0, std::memcmp("\1\2\4\3\5", record.format, 5));
  EXPECT_EQ(image.data() + 300, record.lengths);
  EXPECT_EQ(image.data() + 556, record.to_ascii);
  EXPECT_EQ(image.data() + 0x1010203, record.attributes);
  EXPECT_EQ(image.data() + 1068, record.soundex);

  image[18] = image[26] = 0;  // their sizes
  ASSERT_EQ(1, com_build_char_attrib(COM_IMAGE_MULTIBYTE, 1, "x", image.data(), &record));
  EXPECT_EQ(nullptr, record.lengths);
  EXPECT_EQ(nullptr, record.to_ascii);
}

const MultibyteRecord two;
const MultibyteRecord four(MultibyteRecord::FourByte::kYes);

// What a case mapping makes of a character, over a destination just as long.
std::string mapped(decltype(comn_toupper) map, const com_charattr* record,
                   std::string_view character) {
  GuardedText in(character), out(std::string(character.size(), '\x01'));
  map(record, in.begin(), out.begin());
  return {out.begin(), out.end()};
}

TEST(MultibyteCharacters, WidthClassAndForms) {
  struct Case {
    const com_charattr* record;
    std::string_view character, upper, lower;
    int display, flags, lexical_class, ascii;
  };
  const Case cases[] = {
      {nullptr, "a", "A", "a", 1, 2, 1, 'a'},
      {nullptr, "\x90", "\x90", "\x82", 1, 1, 1, 0x82},
      {two.get(), "\xB1", "\xB1", "\xB1", 1, 0, 1, 0},
      {two.get(), "\x82\x4F", "\x82\x4F", "\x82\x4F", 2, 4, 2, '0'},
      {two.get(), "\x82\x60", "\x82\x60", "\x82\x81", 2, 1, 1, 'A'},
      {two.get(), "\x82\x9A", "\x82\x79", "\x82\x9A", 2, 2, 1, 'z'},
      {two.get(), "\x81\x40", "\x81\x40", "\x81\x40", 2, 8, 8, ' '},
      {two.get(), "\x9F\x35", "\x9F\x35", "\x9F\x35", 1, 0, 1, 0},
      {four.get(), "\x83\x30\x81\x36", "\x83\x30\x81\x36", "\x83\x30\x81\x36", 2, 0, 1, 0},
      {four.get(), "\x83\x39\x81\x36", "\x83\x39\x81\x36", "\x83\x39\x81\x36", 2, 0, 1, 0},
      {four.get(), "\x83\x2F", "\x83\x2F", "\x83\x2F", 2, 0, 1, 0},
      {four.get(), "\x83\x3A", "\x83\x3A", "\x83\x3A", 2, 0, 1, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.character));
    GuardedText text(c.character);
    const char* position = text.begin();
    EXPECT_EQ(text.end(), comn_inc_char(c.record, &position));
    EXPECT_EQ(text.end(), position);
    EXPECT_EQ(c.display, comn_disp_width(c.record, text.begin()));
    EXPECT_EQ(c.flags & 3, comn_isalpha(c.record, text.begin()));
    EXPECT_EQ(c.flags & 4, comn_isdigit(c.record, text.begin()));
    EXPECT_EQ(c.flags & 8, comn_isspace(c.record, text.begin()));
    EXPECT_EQ(c.lexical_class, comn_get_lex(c.record, text.begin()));
    EXPECT_EQ(c.ascii, comn_to_ascii(c.record, text.begin()));
    EXPECT_EQ(c.upper, mapped(comn_toupper, c.record, c.character));
    EXPECT_EQ(c.lower, mapped(comn_tolower, c.record, c.character));
  }
}

TEST(MultibyteCharacters, OfIncompleteAndContradictoryTables) {
  std::vector<uint8_t> attributes(two.get()->attributes, two.get()->attributes + 4096);
  com_charattr record = *two;
  record.attributes = attributes.data();
  attributes['q' * 4] = 0;                    // a one-byte character without upper case
  attributes[2 * 1024 + 0x81 * 4] = 0;        // a two-byte one
  attributes[0x84 * 4 + 3] = COM_ATTR_LOWER;  // a two-byte one without a page ...
  attributes[0x84 * 4] = 'X';                 // ... whose entry maps its first byte
  for (const std::string_view character : {"q", "\x82\x81", "\x84\x50"})
    EXPECT_EQ(character, mapped(comn_toupper, &record, character));

  record.to_ascii = nullptr;
  EXPECT_EQ('a', comn_to_ascii(&record, "A"));
  EXPECT_EQ(0, comn_to_ascii(&record, "\x82\x60"));
  record.attributes = nullptr;
  EXPECT_EQ('A', comn_to_ascii(&record, "A"));

  record = *two;
  record.lengths = nullptr;  // so that lead bytes are characters, but still name pages
  GuardedText lead_byte("\x81");
  const auto* start = reinterpret_cast<const uint8_t*>(lead_byte.begin());
  EXPECT_EQ(0, charset::entry(record, start, start + 1).lexical_class);
}

TEST(MultibyteTexts, ConsistOfWholeCharactersAndPerhapsOneCutOff) {
  using Counts = std::array<int32_t, 4>;  // whole bytes, split before and beyond, characters
  const std::vector<uint8_t> lengths_of_zero(256);
  com_charattr standing_still = *com_get_charattrib();
  standing_still.lengths = lengths_of_zero.data();
  struct Case {
    const com_charattr* record;
    std::vector<std::string> characters;
    std::string cut_off;
    int lacking;  // bytes that the last one lacks
    std::string ascii;
  };
  const Case cases[] = {
      {nullptr, {}, "", 0, ""},
      {nullptr, {"A", "b", " ", "A", "\x83"}, "", 0, "ab a\x83"},  // single-byte: lower case
      {nullptr, {"a", "\0"s}, "", 0, "a\0"s},
      {&standing_still, {"a", "b"}, "", 0, "ab"},
      {two.get(), {"A", "b", " ", "\xB1"}, "", 0, "Ab \xB1"},
      {two.get(), {"\x83\x41", "\x82\x60", "A", "\x83\x80"}, "", 0, "\x83\x41\x41\x41\x83\x80"},
      {two.get(), {"a", "\x81\x40"}, "\x82", 1, "a \x82"},
      {two.get(), {}, "\x81", 1, "\x81"},
      {four.get(), {"a", "\x83\x35\x81\x36", "6"}, "", 0, "a\x83\x35\x81\x36\x36"},
      {four.get(), {"\x82\x35\x82\x60", "\x82\x60"}, "", 0, "\x82\x35\x82\x60\x41"},
      {four.get(), {"a"}, "\x82\x35\x82", 1, "a\x82\x35\x82"},
      {four.get(), {"a"}, "\x83\x35", 2, "a\x83\x35"},
      {four.get(), {"a"}, "\x83", 1, "a\x83"},  // the byte that would tell is not there
  };
  for (const auto& [record, characters, cut_off, lacking, ascii] : cases) {
    std::string all;
    for (const std::string& character : characters) all += character;
    const Counts counts{static_cast<int32_t>(all.size()), static_cast<int32_t>(cut_off.size()),
                        lacking, static_cast<int32_t>(characters.size())};
    all += cut_off;
    SCOPED_TRACE(testing::PrintToString(all));
    GuardedText text(all), copy(all), terminated(all + '\0');
    Counts met{-1, -1, -1, -1};
    comn_whole_char(record, text.begin(), text.end(), &met[0], &met[1], &met[2], &met[3]);
    EXPECT_EQ(counts, met);

    // What is cut off has no class and no form, and is not found.
    const com_charattr& attributes = charset::record_or_builtin(record);
    std::map<char, ptrdiff_t> first_places;
    const char* character = text.begin();
    for (size_t i = 0; i < characters.size() + !cut_off.empty(); ++i) {
      const bool whole = i < characters.size();
      const auto* p = reinterpret_cast<const uint8_t*>(character);
      const auto* end = reinterpret_cast<const uint8_t*>(text.end());
      const auto entry = charset::entry(attributes, p, end);
      EXPECT_EQ(whole ? comn_get_lex(record, character) : 0, entry.lexical_class);
      EXPECT_EQ(entry.lexical_class == COM_LEX_SPACE, charset::is_space(attributes, p, end));
      EXPECT_EQ(whole ? comn_to_ascii(record, character) : 0,
                charset::to_ascii(attributes, p, end));
      if (whole && *character != '\0') first_places.emplace(*character, character - text.begin());
      character += charset::char_width(attributes, p, end);
    }
    EXPECT_EQ(text.end(), character);
    for (int byte = -128; byte < 256; ++byte) {
      const char* found = comn_mb_strchr(record, terminated.begin(), byte);
      const auto place = first_places.find(static_cast<char>(byte));
      const char* expected =
          place == first_places.end() ? nullptr : terminated.begin() + place->second;
      EXPECT_EQ(static_cast<const void*>(expected), found) << byte;
    }

    for (char* const destination : {copy.begin(), text.begin()}) {  // the latter in place
      int32_t written = -1;
      comn_str_to_ascii(text.begin(), static_cast<int32_t>(all.size()), destination, &written,
                        record);
      EXPECT_EQ(ascii, std::string(destination, destination + written));
    }
  }
}

}  // namespace
