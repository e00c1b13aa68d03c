// Copies of text in both layers: what fits every capacity, under every flag; doubled apostrophes;
// multibyte text, which is cut between its characters.
#include "support/binary_values.hpp"
#include "support/multibyte_record.hpp"

namespace tvx::test {
namespace {

using namespace std::string_literals;

constexpr uint32_t T = CS_FORMAT_TERMINATE, Z = CS_FORMAT_ZEROFILL, B = CS_FORMAT_BLANKFILL;
constexpr uint32_t A = CS_FORMAT_DOUBLE_APOSTROPHE, R = COMNB_RIGHTALIGN;
constexpr int32_t kCut = CS_CONV_TRUNCATED, kBad = CS_CONV_BADFORMAT;

// A field with a copy of which `copied` was delivered. What lacks room for a terminator is cut.
Outcome field_of(std::string_view copied, bool cut, int32_t capacity, uint32_t flags) {
  Outcome field = complete(delivered(copied, capacity), size_of(copied), capacity, flags);
  if (field.code == CS_CONV_OVERFLOW || (field.code == CS_SUCCEED && cut)) field.code = kCut;
  return field;
}

// Blanks in front of the value instead of behind it.
Outcome right_aligned(const std::string& copied, bool cut, int32_t capacity, uint32_t flags) {
  if ((flags & T) != 0 && size_of(copied) < capacity)
    return {kBad, size_of(copied), delivered(copied, capacity).bytes};
  if ((flags & (T | Z | B)) != B) return field_of(copied, cut, capacity, flags);
  const auto blanks = static_cast<size_t>(capacity - size_of(copied));
  return {cut ? kCut : CS_SUCCEED, capacity, std::string(blanks, ' ') + copied};
}

TEST(CharacterCopy, EveryCapacityAndFlag) {
  for (const std::string& text : {""s, "a"s, "a 'b'"s, std::string(33, 'x'), "\0\0'"s})
    for (int32_t capacity = 0; capacity <= size_of(text) + 3; ++capacity)
      for (uint32_t flags = 0; flags < 8; ++flags) {
        SCOPED_TRACE(text + " in " + std::to_string(capacity) + ", " + std::to_string(flags));
        const auto room = static_cast<size_t>(capacity);
        const std::string copied = text.substr(0, room);
        const bool cut = copied != text;
        const Outcome expected = field_of(copied, cut, capacity, flags);
        for (auto* const routine : {comnb_chartochar, comnb_varchartochar}) {
          ASSERT_EQ(convert_bare(routine, bare_context(flags), text, room), expected);
          ASSERT_EQ(convert_bare(routine, bare_context(flags | R), text, room),
                    right_aligned(copied, cut, capacity, flags));
        }
        for (auto* const routine : {comnb_chartovarchar, comnb_varchartovarchar})
          ASSERT_EQ(convert_bare(routine, bare_context(flags), text, room),
                    field_of(copied, cut, capacity, 0));
        if (text.empty()) continue;  // there is an empty text in the bare layer only
        for (const int32_t from : {0, 2, 4, 21, 22, 34})
          for (const int32_t to : {0, 2, 4, 21, 22, 34})
            ASSERT_EQ(convert(comn_chartochar, format_of(from, size_of(text)), text,
                              format_of(to, capacity, flags)),
                      expected);
        for (const uint32_t apostrophes : {0u, A})  // not doubled from a record
          ASSERT_EQ(convert(format_of(18), varchar_record(text),
                            format_of(0, capacity, flags | apostrophes)),
                    expected);
      }
}

TEST(CharacterCopy, Records) {
  for (int32_t length = 1; length <= 258; ++length) {
    const std::string text(static_cast<size_t>(length), 'x');
    const Outcome expected{length <= 256 ? CS_SUCCEED : kCut, 258,
                           varchar_record(text.substr(0, 256), kUntouched)};
    EXPECT_EQ(convert(format_of(0, length), text, format_of(18, 0, T | Z | A)), expected);
    if (length > 256) continue;
    EXPECT_EQ(convert(format_of(18), varchar_record(text), format_of(18, 0, T)), expected);
  }
}

TEST(CharacterCopy, OntoItself) {
  char text[] = "abc'";
  int32_t length = 0;
  const comn_datafmt from = format_of(0, 4), to = format_of(0, 3, T);
  EXPECT_EQ(kCut, comn_chartochar(shared_context(), &from, text, &to, text, &length));
  EXPECT_EQ("ab\0'"s, std::string(text, 4));
  EXPECT_EQ(3, length);
}

TEST(CharacterCopy, DoubledApostrophes) {
  // A zero byte ends a terminated copy.
  const std::string examples[][3] = {{"it's", "it''s", "it''s"},
                                     {"''", "''''", "''''"},
                                     {"a\0'b"s, "a\0''b"s, "a\0"s},
                                     {"plain", "plain", "plain"}};
  for (const auto& [text, doubled, up_to_zero] : examples)
    for (int32_t capacity = 0; capacity <= size_of(doubled) + 3; ++capacity)
      for (uint32_t flags = 0; flags < 8; ++flags) {
        const std::string& whole = (flags & T) != 0 ? up_to_zero : doubled;
        std::string copied = whole.substr(0, static_cast<size_t>(capacity));
        const bool cut = copied != whole;
        // A pair that does not fit is left out; it is split where an odd number of them ends.
        const size_t trailing = copied.size() - (copied.find_last_not_of('\'') + 1);
        if (cut && trailing % 2 != 0) copied.pop_back();
        ASSERT_EQ(convert(format_of(0, size_of(text)), text, format_of(4, capacity, flags | A)),
                  field_of(copied, cut, capacity, flags))
            << testing::PrintToString(text) << " in " << capacity << ", " << flags;
      }
}

TEST(CharacterCopy, MultibyteTextIsCutBetweenCharacters) {
  static const MultibyteRecord kRecord(MultibyteRecord::FourByte::kYes);
  const std::string wide = MultibyteRecord::full_width("ab"), four(MultibyteRecord::kFourBytes);
  const std::string text = "x" + wide + four + "y'";
  for (int32_t capacity = 0; capacity <= size_of(text) + 3; ++capacity)
    for (uint32_t flags = 0; flags < 8; ++flags) {
      const auto room = static_cast<size_t>(capacity);
      size_t whole = std::min(room, text.size());
      while (whole == 2 || whole == 4 || (whole > 5 && whole < 9)) --whole;
      ASSERT_EQ(convert_bare(comnb_chartochar, bare_context(flags, kRecord.get()), text, room),
                field_of(text.substr(0, whole), room < text.size(), capacity, flags))
          << capacity << ", " << flags;
    }
  // The text itself may end within a character.
  EXPECT_EQ(convert_bare(comnb_chartovarchar, bare_context(0, kRecord.get()), "a\x81", 5),
            delivered("a", 5));
}

}  // namespace
}  // namespace tvx::test
