// Doubled apostrophes in multibyte text, which no value of a test's context can carry.
#include "convert/character_copy.hpp"
#include "support/guarded_buffer.hpp"
#include "support/multibyte_record.hpp"

#include <gtest/gtest.h>

namespace tvx::test {
namespace {

using namespace std::string_literals;

TEST(DoubledApostrophes, MultibyteText) {
  static const MultibyteRecord kRecord(MultibyteRecord::FourByte::kYes);
  const std::string four(MultibyteRecord::kFourBytes), wide = MultibyteRecord::full_width("a");
  const struct {
    std::string text;
    size_t capacity;
    bool ends_at_zero;
    std::string copy;
    bool is_cut = false;
  } rows[] = {
      {"\x83''", 9, false, "\x83'''"},  // one is the second byte of a character
      {wide + "'" + four, 9, false, wide + "''" + four},
      {wide + "'" + four, 7, false, wide + "''", true},
      {wide + "'" + four, 3, false, wide, true},
      {"'" + wide.substr(0, 1), 9, false, "''"},    // cut off in the source
      {"\x83\x80'\0'"s, 9, true, "\x83\x80''\0"s},  // no ASCII form is no end
  };
  for (const auto& [text, capacity, ends_at_zero, copy, is_cut] : rows) {
    GuardedText source(text);
    GuardedBuffer out(capacity);
    auto* const begin = reinterpret_cast<char*>(out.data());
    const auto [length, code] = convert::copy_doubling_apostrophes(
        kRecord.get(), {source.begin(), static_cast<int32_t>(text.size())}, begin,
        static_cast<int32_t>(capacity), ends_at_zero);
    EXPECT_EQ(copy, std::string(begin, static_cast<size_t>(length))) << text;
    EXPECT_EQ(is_cut ? CS_CONV_TRUNCATED : CS_SUCCEED, code) << text;
    for (auto i = static_cast<size_t>(length); i < capacity; ++i) EXPECT_EQ(0xA5, out.data()[i]);
  }
}

}  // namespace
}  // namespace tvx::test
