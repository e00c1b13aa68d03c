// The built-in attribute record: code page 850, described by its letters and the few characters
// that are something other than a sign, and expanded into the tables at compile time.
//
// What the flags mean here: every character has one of upper, lower, digit, space, punctuation and
// graphic (hexadecimal digits have that flag besides). Only the blank and the no-break space are
// spaces; the control characters, tab and line feed among them, count as punctuation.
#include <array>
#include <string_view>

#include "charset/attributes.hpp"
#include "charset/image.hpp"

namespace tvx::charset {

namespace {

struct CasePair {
  uint8_t upper;
  uint8_t lower;
};

constexpr CasePair kPairsAbove127[] = {
    {0x80, 0x87},  // c cedilla
    {0x9A, 0x81},  // u diaeresis
    {0x90, 0x82},  // e acute
    {0xB6, 0x83},  // a circumflex
    {0x8E, 0x84},  // a diaeresis
    {0xB7, 0x85},  // a grave
    {0x8F, 0x86},  // a ring
    {0xD2, 0x88},  // e circumflex
    {0xD3, 0x89},  // e diaeresis
    {0xD4, 0x8A},  // e grave
    {0xD8, 0x8B},  // i diaeresis
    {0xD7, 0x8C},  // i circumflex
    {0xDE, 0x8D},  // i grave
    {0x92, 0x91},  // ae
    {0xE2, 0x93},  // o circumflex
    {0x99, 0x94},  // o diaeresis
    {0xE3, 0x95},  // o grave
    {0xEA, 0x96},  // u circumflex
    {0xEB, 0x97},  // u grave
    {0x9D, 0x9B},  // o stroke
    {0xB5, 0xA0},  // a acute
    {0xD6, 0xA1},  // i acute
    {0xE0, 0xA2},  // o acute
    {0xE9, 0xA3},  // u acute
    {0xA5, 0xA4},  // n tilde
    {0xC7, 0xC6},  // a tilde
    {0xD1, 0xD0},  // eth
    {0xE5, 0xE4},  // o tilde
    {0xE8, 0xE7},  // thorn
    {0xED, 0xEC},  // y acute
};

// Letters whose upper-case form the code page lacks or shares with another letter: y diaeresis,
// dotless i, sharp s. The micro sign, the florin sign and the two ordinals are signs, not letters.
constexpr uint8_t kLowerAlone[] = {0x98, 0xD5, 0xE1};

constexpr uint8_t kSpaces[] = {' ', 0xFF};                           // blank, no-break space
constexpr uint8_t kIdentifierSigns[] = {'#', '@', '_'};              // lexically letters
constexpr uint8_t kCurrencySigns[] = {'$', 0x9C, 0xBD, 0xBE, 0xCF};  // 0xCF: of any currency

struct ByteRange {
  uint8_t first;
  uint8_t last;
};

constexpr ByteRange kGraphics[] = {
    {0xB0, 0xB4}, {0xB9, 0xBC}, {0xBF, 0xC5}, {0xC8, 0xCE},  // shades and box drawing
    {0xD9, 0xDC}, {0xDF, 0xDF}, {0xFE, 0xFE},                // corners, blocks, square
};

// By letter from A to Z. The vowels, H, W, Y and all letters above 127 have no sound of their own.
constexpr std::string_view kSoundexDigits = "01230120022455012623010202";
constexpr uint8_t kSilent = '0';

struct Tables {
  std::array<uint8_t, kSingleByteAttributes> attributes{};
  std::array<uint8_t, kSingleByteSoundex> soundex{};

  constexpr void set(uint8_t c, const Entry& row) {
    const size_t at = c * sizeof(Entry);
    attributes[at] = row.upper;
    attributes[at + 1] = row.lower;
    attributes[at + 2] = row.lexical_class;
    attributes[at + 3] = row.flags;
  }

  // A character without case is its own form in both.
  constexpr void set_caseless(uint8_t c, uint8_t lexical_class, uint8_t flags) {
    set(c, {c, c, lexical_class, flags});
  }

  constexpr void set_pair(CasePair pair, uint8_t sound, uint8_t more_flags = 0) {
    const auto flags = [more_flags](unsigned flag) {
      return static_cast<uint8_t>(flag | more_flags);
    };
    set(pair.upper, {pair.upper, pair.lower, COM_LEX_LETTER, flags(COM_ATTR_UPPER)});
    set(pair.lower, {pair.upper, pair.lower, COM_LEX_LETTER, flags(COM_ATTR_LOWER)});
    soundex[pair.upper] = soundex[pair.lower] = sound;
  }
};

constexpr Tables make_tables() {
  Tables tables;
  for (unsigned c = 0; c < 256; ++c)
    tables.set_caseless(static_cast<uint8_t>(c), COM_LEX_OTHER, COM_ATTR_PUNCT);
  tables.set_caseless('"', COM_LEX_QUOTE, COM_ATTR_PUNCT);
  for (uint8_t c : kIdentifierSigns) tables.set_caseless(c, COM_LEX_LETTER, COM_ATTR_PUNCT);
  for (uint8_t c : kCurrencySigns) tables.set_caseless(c, COM_LEX_CURRENCY, COM_ATTR_PUNCT);
  for (uint8_t c : kSpaces) tables.set_caseless(c, COM_LEX_SPACE, COM_ATTR_SPACE);
  for (ByteRange range : kGraphics)
    for (unsigned c = range.first; c <= range.last; ++c)
      tables.set_caseless(static_cast<uint8_t>(c), COM_LEX_OTHER, COM_ATTR_GRAPH);
  for (uint8_t c = '0'; c <= '9'; ++c)
    tables.set_caseless(c, COM_LEX_DIGIT, COM_ATTR_DIGIT | COM_ATTR_XDIGIT);

  for (uint8_t i = 0; i < 26; ++i) {
    const CasePair pair{static_cast<uint8_t>('A' + i), static_cast<uint8_t>('a' + i)};
    tables.set_pair(pair, static_cast<uint8_t>(kSoundexDigits[i]), i < 6 ? COM_ATTR_XDIGIT : 0);
  }
  for (CasePair pair : kPairsAbove127) tables.set_pair(pair, kSilent);
  for (uint8_t c : kLowerAlone) {
    tables.set_caseless(c, COM_LEX_LETTER, COM_ATTR_LOWER);
    tables.soundex[c] = kSilent;
  }
  return tables;
}

constexpr Tables kTables = make_tables();

}  // namespace

constinit const com_charattr cp850_record = {
    .status = 0,
    .class_ = kSingleByteClass,
    .id = 2,
    .name_length = 5,
    .name = "cp850",
    .format = {1, 1, 0, 1, 1},
    .lengths = nullptr,
    .to_ascii = nullptr,
    .attributes = kTables.attributes.data(),
    .soundex = kTables.soundex.data(),
};

}  // namespace tvx::charset
