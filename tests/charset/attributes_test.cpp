// The built-in record against the C library's own idea of code page 850, records over images, and
// characters of several bytes, whole and cut off.
#include "tvxcomn/attributes.h"

#include <gtest/gtest.h>
#include <iconv.h>
#include <locale.h>
#include <wctype.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "charset/attributes.hpp"
#include "support/guarded_buffer.hpp"
#include "support/multibyte_record.hpp"
#include "tvxcomn/support.h"

namespace {

using namespace std::string_literals;
using tvx::test::MultibyteRecord;
namespace charset = tvx::charset;

// A text whose end is followed by an inaccessible page.
class GuardedText {
public:
  explicit GuardedText(std::string_view text) : block_(text.size()) {
    std::memcpy(block_.data(), text.data(), text.size());
  }
  char* begin() { return static_cast<char*>(static_cast<void*>(block_.data())); }
  char* end() { return begin() + block_.size(); }

private:
  tvx::test::GuardedBuffer block_;
};

// ---- The built-in record -----------------------------------------------------------------------

using Row = std::array<int, 4>;  // upper, lower, lexical class, flags

Row table_row(int byte) {
  const uint8_t* row = com_get_typemap() + 4 * byte;
  return {row[0], row[1], row[2], row[3]};
}

std::wstring unicode_of_cp850() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  std::wstring characters(256, L'\0');
  char *in = bytes.data(), *out = reinterpret_cast<char*>(characters.data());
  size_t in_left = 256, out_left = 256 * sizeof(wchar_t);
  iconv_t table = iconv_open("WCHAR_T", "CP850");
  EXPECT_EQ(0u, iconv(table, &in, &in_left, &out, &out_left));
  iconv_close(table);
  return characters;
}

TEST(BuiltinRecord, EveryRowFollowsFromTheUnicodeCharacter) {
  const std::wstring page = unicode_of_cp850();
  const std::wstring signs_not_letters = L"\u0192\u00AA\u00BA\u00B5";  // florin, ordinals, micro
  locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(nullptr, unicode);
  const auto among = [](wchar_t c, const std::wstring& set) {
    return set.find(c) != std::wstring::npos;
  };
  const auto expected_row = [&](int b) -> Row {
    const wchar_t c = page[static_cast<size_t>(b)];
    const int hex = c < 128 && iswxdigit_l(static_cast<wint_t>(c), unicode) ? 16 : 0;
    if (c >= L'0' && c <= L'9') return {b, b, 2, 4 | hex};
    if (among(c, L" \u00A0"s)) return {b, b, 8, 8};
    if (c >= 0x2500 && c <= 0x25A0) return {b, b, 32, 64};
    if (among(c, L"$\u00A2\u00A3\u00A5\u00A4"s)) return {b, b, 4, 32};
    if (among(c, L"#@_"s)) return {b, b, 1, 32};
    if (c == L'"') return {b, b, 16, 32};
    if (!iswalpha_l(static_cast<wint_t>(c), unicode) || among(c, signs_not_letters))
      return {b, b, 32, 32};
    const auto upper = static_cast<wchar_t>(towupper_l(static_cast<wint_t>(c), unicode));
    const auto lower = static_cast<wchar_t>(towlower_l(static_cast<wint_t>(c), unicode));
    if (c != lower) return {b, static_cast<int>(page.find(lower)), 1, 1 | hex};
    // The upper-case form of the dotless i has another lower-case form.
    const bool pair = among(upper, page) &&
                      towlower_l(static_cast<wint_t>(upper), unicode) == static_cast<wint_t>(c);
    return {pair ? static_cast<int>(page.find(upper)) : b, b, 1, 2 | hex};
  };
  for (int b = 0; b < 256; ++b) EXPECT_EQ(expected_row(b), table_row(b)) << b;
  EXPECT_EQ((Row{}), table_row(256));
  freelocale(unicode);
}

TEST(BuiltinRecord, RowsGivenByTheConventions) {
  EXPECT_EQ((Row{'A', 'a', 1, 17}), table_row('A'));
  EXPECT_EQ((Row{'A', 'a', 1, 18}), table_row('a'));
  EXPECT_EQ((Row{'G', 'g', 1, 1}), table_row('G'));
  EXPECT_EQ((Row{'8', '8', 2, 20}), table_row('8'));
  EXPECT_EQ((Row{' ', ' ', 8, 8}), table_row(' '));
  EXPECT_EQ((Row{':', ':', 32, 32}), table_row(':'));
  EXPECT_EQ((Row{'\t', '\t', 32, 32}), table_row('\t'));
  EXPECT_EQ((Row{0x9A, 0x81, 1, 2}), table_row(0x81));
  EXPECT_EQ((Row{0x98, 0x98, 1, 2}), table_row(0x98));
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

TEST(BuiltinRecord, DescribesCp850) {
  expect_single_byte(*com_get_charattrib(), 2, "cp850");
  EXPECT_EQ(com_get_typemap(), com_get_charattrib()->attributes);
}

TEST(BuiltinRecord, SoundexDigits) {
  constexpr std::string_view kGroups[] = {"AEIOUHWY", "BFPV", "CGJKQSXZ", "DT", "L", "MN", "R"};
  std::string expected(257, '\0');
  for (size_t digit = 0; digit < std::size(kGroups); ++digit)
    for (const char c : kGroups[digit])
      expected[static_cast<size_t>(c)] = expected[static_cast<size_t>(c | 0x20)] =
          static_cast<char>('0' + digit);
  for (size_t b = 128; b < 256; ++b)
    if (table_row(static_cast<int>(b))[2] == COM_LEX_LETTER) expected[b] = '0';
  EXPECT_EQ(0, std::memcmp(expected.data(), com_get_charattrib()->soundex, 257));
}

TEST(Classification, EachOperationMasksItsFlags) {
  struct Operation {
    int32_t (*is)(const com_charattr*, const char*);
    int flags;
  };
  constexpr Operation kOperations[] = {
      {comn_isalpha, 3},   {comn_isupper, 1}, {comn_islower, 2},  {comn_isdigit, 4},
      {comn_isxdigit, 16}, {comn_isspace, 8}, {comn_ispunct, 32}, {comn_isgraph, 64},
  };
  for (int b = 0; b < 256; ++b) {
    const char c = static_cast<char>(b);
    for (const Operation& operation : kOperations)
      EXPECT_EQ(table_row(b)[3] & operation.flags, operation.is(nullptr, &c)) << b;
    EXPECT_EQ(table_row(b)[1], comn_to_ascii(nullptr, &c)) << b;
  }
}

// ---- Records over images -----------------------------------------------------------------------

TEST(BuildCharAttrib, SingleByteImage) {
  const std::vector<uint8_t> image(1285);
  com_charattr* record = com_alloc_char_attrib();
  ASSERT_NE(nullptr, record);
  std::memset(record, 0xEE, sizeof *record);
  ASSERT_EQ(1, com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 3, "cp437", image.data(), record));
  expect_single_byte(*record, 3, "cp437");
  EXPECT_EQ(image.data(), record->attributes);
  EXPECT_EQ(image.data() + 1028, record->soundex);
  comn_free(record);
}

TEST(BuildCharAttrib, MultibyteImage) {
  std::vector<uint8_t> image = {0x12, 0x34, 2, 1, 2, 3, 4, 5, 9, 9, 9, 9};
  for (const uint32_t word : {300u, 256u, 556u, 512u, 0x10203u, 3072u, 1068u, 1280u})
    for (const int shift : {24, 16, 8, 0}) image.push_back(static_cast<uint8_t>(word >> shift));
  image.resize(0x10500);
  com_charattr record;
  ASSERT_EQ(1, com_build_char_attrib(COM_IMAGE_MULTIBYTE, 141, "sjis", image.data(), &record));
  EXPECT_EQ(0x1234, record.status);
  EXPECT_EQ(2, record.class_);
  EXPECT_EQ(141, record.id);
  EXPECT_EQ(0, std::memcmp("\1\2\4\3\5", record.format, 5));
  EXPECT_EQ(image.data() + 300, record.lengths);
  EXPECT_EQ(image.data() + 556, record.to_ascii);
  EXPECT_EQ(image.data() + 0x10203, record.attributes);
  EXPECT_EQ(image.data() + 1068, record.soundex);

  image[18] = image[26] = 0;  // their sizes
  ASSERT_EQ(1, com_build_char_attrib(COM_IMAGE_MULTIBYTE, 1, "x", image.data(), &record));
  EXPECT_EQ(nullptr, record.lengths);
  EXPECT_EQ(nullptr, record.to_ascii);
}

TEST(BuildCharAttrib, NamesAreCutTo29Characters) {
  const std::vector<uint8_t> image(1285);
  for (const size_t length : {0u, 28u, 29u, 30u, 400u}) {
    const std::string name(length, 'n'), stored = name.substr(0, 29);
    com_charattr record;
    std::memset(&record, 0xEE, sizeof record);
    com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 1, name.c_str(), image.data(), &record);
    EXPECT_EQ(stored, record.name);
    EXPECT_EQ(stored.size(), record.name_length);
  }
  com_charattr record;
  EXPECT_EQ(1, com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 1, nullptr, image.data(), &record));
  EXPECT_STREQ("", record.name);
}

TEST(BuildCharAttrib, RefusesWhatItCannotFill) {
  const std::vector<uint8_t> image(1285);
  com_charattr record;
  EXPECT_EQ(0, com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 1, "x", nullptr, &record));
  EXPECT_EQ(0, com_build_char_attrib(COM_IMAGE_SINGLE_BYTE, 1, "x", image.data(), nullptr));
  for (const int32_t kind : {0, 1, 1000, 1003})
    EXPECT_EQ(0, com_build_char_attrib(kind, 1, "x", image.data(), &record)) << kind;
}

// ---- Characters of several bytes ---------------------------------------------------------------

const MultibyteRecord two;
const MultibyteRecord four(MultibyteRecord::FourByte::kYes);

using CaseMapping = void(const com_charattr*, const char*, char*);

// What a case mapping makes of a character, over a destination just as long.
std::string mapped(CaseMapping* map, const com_charattr* record, std::string_view character) {
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
      {two.get(), "b", "B", "b", 1, 2, 1, 'b'},
      {two.get(), "\xB1", "\xB1", "\xB1", 1, 0, 1, 0},
      {two.get(), "\x82\x4F", "\x82\x4F", "\x82\x4F", 2, 4, 2, '0'},
      {two.get(), "\x82\x60", "\x82\x60", "\x82\x81", 2, 1, 1, 'A'},
      {two.get(), "\x82\x9A", "\x82\x79", "\x82\x9A", 2, 2, 1, 'z'},
      {two.get(), "\x81\x40", "\x81\x40", "\x81\x40", 2, 8, 8, ' '},
      {two.get(), "\x83\x35", "\x83\x35", "\x83\x35", 2, 0, 1, 0},
      {four.get(), "\x83\x30\x81\x36", "\x83\x30\x81\x36", "\x83\x30\x81\x36", 2, 0, 1, 0},
      {four.get(), "\x83\x39\x81\x36", "\x83\x39\x81\x36", "\x83\x39\x81\x36", 2, 0, 1, 0},
      {four.get(), "\x83\x2F", "\x83\x2F", "\x83\x2F", 2, 0, 1, 0},
      {four.get(), "\x83\x3A", "\x83\x3A", "\x83\x3A", 2, 0, 1, 0},
      {four.get(), "8", "8", "8", 1, 4, 2, '8'},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.character));
    GuardedText text(c.character);
    EXPECT_EQ(c.character.size(), static_cast<size_t>(comn_char_width(c.record, text.begin())));
    EXPECT_EQ(c.display, comn_disp_width(c.record, text.begin()));
    EXPECT_EQ(c.flags & 3, comn_isalpha(c.record, text.begin()));
    EXPECT_EQ(c.flags & 4, comn_isdigit(c.record, text.begin()));
    EXPECT_EQ(c.flags & 8, comn_isspace(c.record, text.begin()));
    EXPECT_EQ(c.lexical_class, comn_get_lex(c.record, text.begin()));
    EXPECT_EQ(c.ascii, comn_to_ascii(c.record, text.begin()));
    EXPECT_EQ(c.upper, mapped(comn_toupper, c.record, c.character));
    EXPECT_EQ(c.lower, mapped(comn_tolower, c.record, c.character));
    const char* position = text.begin();
    EXPECT_EQ(text.end(), comn_inc_char(c.record, &position));
    EXPECT_EQ(text.end(), position);
  }
}

TEST(MultibyteCharacters, WithoutCaseFormsAreCopiedWhole) {
  std::vector<uint8_t> attributes(two.get()->attributes, two.get()->attributes + 4096);
  com_charattr record = *two;
  record.attributes = attributes.data();
  attributes['q' * 4] = 0;                    // a one-byte character without upper case
  attributes[2 * 1024 + 0x81 * 4] = 0;        // a two-byte one
  attributes[0x84 * 4 + 3] = COM_ATTR_LOWER;  // a two-byte one without a page ...
  attributes[0x84 * 4] = 'X';                 // ... whose entry maps its first byte
  for (const std::string_view character : {"q", "\x82\x81", "\x84\x50"})
    EXPECT_EQ(character, mapped(comn_toupper, &record, character));
}

TEST(MultibyteCharacters, WithoutToAsciiTableOnlyOneByteHasAForm) {
  com_charattr record = *two;
  record.to_ascii = nullptr;
  EXPECT_EQ('a', comn_to_ascii(&record, "A"));
  EXPECT_EQ(0, comn_to_ascii(&record, "\x82\x60"));
  record.attributes = nullptr;
  EXPECT_EQ('A', comn_to_ascii(&record, "A"));
}

TEST(WholeChar, CountsWholeAndSplitCharacters) {
  using Counts = std::array<int32_t, 4>;  // whole bytes, split before and beyond, characters
  const std::vector<uint8_t> lengths_of_zero(256);
  com_charattr standing_still = *com_get_charattrib();
  standing_still.lengths = lengths_of_zero.data();
  struct Case {
    const com_charattr* record;
    std::string_view text;
    Counts expected;
  };
  const Case cases[] = {
      {nullptr, "", {0, 0, 0, 0}},
      {nullptr, "a\x83", {2, 0, 0, 2}},
      {&standing_still, "abc", {3, 0, 0, 3}},
      {two.get(), "a\x82\x60", {3, 0, 0, 2}},
      {two.get(), "a\x82\x60\x82", {3, 1, 1, 2}},
      {two.get(), "\x82", {0, 1, 1, 0}},
      {two.get(), "\x83\x35\x83", {2, 1, 1, 1}},
      {four.get(), "a\x83\x35\x81\x36", {5, 0, 0, 2}},
      {four.get(), "a\x83\x35\x81", {1, 3, 1, 1}},
      {four.get(), "a\x83\x35", {1, 2, 2, 1}},
      {four.get(), "a\x83", {1, 1, 1, 1}},  // the byte that would tell is not there
  };
  for (const Case& c : cases) {
    GuardedText text(c.text);
    Counts met{-1, -1, -1, -1};
    comn_whole_char(c.record, text.begin(), text.end(), &met[0], &met[1], &met[2], &met[3]);
    EXPECT_EQ(c.expected, met) << testing::PrintToString(c.text);
  }
}

TEST(StrToAscii, ReplacesWhatHasAForm) {
  struct Case {
    const com_charattr* record;
    std::string text, expected;
  };
  const Case cases[] = {
      {nullptr, "Ab 1", "ab 1"},  // the form of a single-byte set is the lower-case one
      {nullptr, "a\0b"s, "a\0b"s},
      {two.get(), "Ab \xB1", "Ab \xB1"},
      {two.get(), MultibyteRecord::full_width("-12.5E+3 aFz"), "-12.5E+3 aFz"},
      {two.get(), "\x83\x41\x82\x60\x83\x80", "\x83\x41\x41\x83\x80"},
      {two.get(), "a\x82", "a\x82"},
      {four.get(), "\x82\x35\x82\x60\x82\x60", "\x82\x35\x82\x60\x41"},
      {four.get(), "\x82\x35\x82", "\x82\x35\x82"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    const auto length = static_cast<int32_t>(c.text.size());
    GuardedText in(c.text), out(c.text);
    int32_t written = -1;
    comn_str_to_ascii(in.begin(), length, out.begin(), &written, c.record);
    EXPECT_EQ(c.expected, std::string(out.begin(), out.begin() + written));
    comn_str_to_ascii(in.begin(), length, in.begin(), &written, c.record);
    EXPECT_EQ(c.expected, std::string(in.begin(), in.begin() + written)) << "in place";
  }
}

TEST(MbStrchr, FindsFirstBytesOfWholeCharacters) {
  constexpr ptrdiff_t kNone = -1;
  struct Case {
    const com_charattr* record;
    std::string string;
    int byte;
    ptrdiff_t expected;
  };
  const Case cases[] = {
      {nullptr, "abca", 'c', 2},
      {nullptr, "abca", 0, kNone},
      {nullptr, "", 'a', kNone},
      {nullptr, "a\x83", 0x83, 1},
      {nullptr, "a\x83", static_cast<signed char>(0x83), 1},
      {two.get(), "\x83\x41\x41", 'A', 2},  // not the second byte
      {two.get(), "a\x83\x41", 0x83, 1},
      {two.get(), "a\x83", 0x83, kNone},
      {two.get(), "a\x83", 'A', kNone},
      {four.get(), "\x83\x35\x81\x36\x36", '6', 4},
      {four.get(), "\x83\x35\x81", 0x81, kNone},
      {four.get(), "\x83\x35", '5', kNone},
  };
  for (const Case& c : cases) {
    GuardedText text(std::string_view(c.string.c_str(), c.string.size() + 1));
    const char* found = comn_mb_strchr(c.record, text.begin(), c.byte);
    EXPECT_EQ(c.expected, found == nullptr ? kNone : found - text.begin())
        << testing::PrintToString(c.string) << " " << c.byte;
  }
}

TEST(CharactersCutOffByTheEnd, HaveNoClassAndNoForm) {
  com_charattr disagreeing = *two;  // of a lead byte, by the length table a character of its own
  disagreeing.lengths = nullptr;
  struct Case {
    const com_charattr* record;
    std::string_view text;
    int width, ascii, lexical_class;
  };
  const Case cases[] = {
      {com_get_charattrib(), " ", 1, ' ', 8}, {two.get(), " ", 1, ' ', 8},
      {two.get(), "\x81\x40", 2, ' ', 8},     {two.get(), "\x81", 1, 0, 0},
      {&disagreeing, "\x81", 1, 1, 0},        {four.get(), "\x83\x35\x81\x36", 4, 0, 1},
      {four.get(), "\x83\x35\x81", 3, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    GuardedText text(c.text);
    const auto* start = reinterpret_cast<const uint8_t*>(text.begin());
    const auto* end = start + c.text.size();
    EXPECT_EQ(c.width, charset::char_width(*c.record, start, end));
    EXPECT_EQ(c.ascii, charset::to_ascii(*c.record, start, end));
    EXPECT_EQ(c.lexical_class, charset::entry(*c.record, start, end).lexical_class);
    EXPECT_EQ(c.lexical_class == COM_LEX_SPACE, charset::is_space(*c.record, start, end));
  }
}

}  // namespace
