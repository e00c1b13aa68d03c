// Hexadecimal text of integers, both ways, by descriptors.
#include <random>

#include "api/scalar_reference.hpp"
#include "support/conversion.hpp"
#include "support/multibyte_record.hpp"

namespace tvx::test {
namespace {

// What reading a text of `source_length` bytes, mapped to ASCII, gives.
Outcome read_hex(size_t source_length, std::string text, size_t size) {
  if (source_length > 255) return {CS_CONV_OVERFLOW, kNoLength, untouched(size)};
  if (text.starts_with("0x") || text.starts_with("0X")) text.erase(0, 2);
  text.erase(0, text.find_first_not_of('0'));
  const std::string digits = text.substr(0, text.find_first_not_of("0123456789abcdefABCDEF"));
  const bool truncated = digits.size() > 2 * size;
  if (digits != text && !truncated) return {CS_CONV_SYNTAX, 0, std::string(size, '\0')};
  const uint64_t value = std::strtoull(digits.substr(0, 2 * size).c_str(), nullptr, 16);
  return {truncated ? CS_CONV_TRUNCATED : CS_SUCCEED, static_cast<int32_t>(size),
          bytes_of(value).substr(0, size)};
}

void check_readers(const std::string& text) {
  static const MultibyteRecord kMultibyte(MultibyteRecord::FourByte::kYes);
  for (const com_charattr* const record : {com_get_charattrib(), kMultibyte.get()})
    for (const std::string to : {"i4", "ui4", "i8", "ui8"}) {
      const size_t size = to.ends_with('4') ? 4 : 8;
      auto* const routine = exported<comnb_conversion>("comnb_hexto" + to);
      ASSERT_EQ(convert_bare(routine, bare_context(0, record), text, size),
                read_hex(text.size(), reference::map_to_ascii(text, record), size))
          << testing::PrintToString(text) << " to " << to;
    }
}

TEST(Hexadecimal, Examples) {
  constexpr int32_t kOk = CS_SUCCEED, kBad = CS_CONV_SYNTAX;
  // clang-format off
  const struct { std::string text; Outcome expected; } rows[] = {
      {"0xaBcD", {kOk, 4, bytes_of(0xABCD)}}, {"0000FFFFFFFF", {kOk, 4, bytes_of(-1)}},
      {"0X", {kOk, 4, bytes_of(0)}}, {std::string(255, '0'), {kOk, 4, bytes_of(0)}},
      {"00x1", {kBad, 0, bytes_of(0)}}, {"12345678g", {kBad, 0, bytes_of(0)}},
      {"123456789g", {CS_CONV_TRUNCATED, 4, bytes_of(0x12345678)}},
      {std::string(256, '0'), {CS_CONV_OVERFLOW, kNoLength, untouched(4)}},
  };
  // clang-format on
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(read_hex(text.size(), text, 4), expected) << text;
    check_readers(text);
    check_readers(MultibyteRecord::full_width(text));
  }
}

TEST(Hexadecimal, RandomTextsOfEveryLength) {
  std::mt19937_64 random(2);
  for (const std::string alphabet : {"", "0123456789abcdefABCDEF", "0", "0123456789abcDEFx -"})
    for (size_t i = 0; i <= 3'000; ++i) {
      std::string text(i <= 260 ? i : random() % 24, '0');
      for (size_t at = random() % (text.size() + 1); at < text.size(); ++at)
        text[at] =
            alphabet.empty() ? static_cast<char>(random()) : alphabet[random() % alphabet.size()];
      ASSERT_NO_FATAL_FAILURE(check_readers(text));
      ASSERT_NO_FATAL_FAILURE(check_readers("0x" + MultibyteRecord::full_width(text)));
    }
}

TEST(Hexadecimal, IntegerToText) {
  // clang-format off
  const struct { comnb_conversion* routine; std::string value, digits; } rows[] = {
      {comnb_i4tohex, bytes_of(0), "0"}, {comnb_i4tohex, bytes_of(-1), "FFFFFFFF"},
      {comnb_ui4tohex, bytes_of(0xABCu), "ABC"},
      {comnb_i8tohex, bytes_of(int64_t{-16}), "FFFFFFFFFFFFFFF0"},
      {comnb_ui8tohex, bytes_of(0xFEDCBA9876543210u), "FEDCBA9876543210"},
  };
  // clang-format on
  for (const auto& [routine, value, digits] : rows)
    for (size_t room = 0; room <= 20; ++room) {
      Outcome expected{CS_CONV_SYNTAX, kNoLength, untouched(room)};
      const std::string field = std::string(20, '0') + digits + '\0';
      if (room >= 2)
        expected = {digits.size() < room ? CS_SUCCEED : CS_CONV_OVERFLOW, kNoLength,
                    field.substr(field.size() - room)};
      EXPECT_EQ(convert_bare(routine, {}, value, room), expected) << digits;
    }
  int32_t value = 1;
  const comnb_context context{};
  comnb_value from{}, nowhere{};
  from.data = &value;
  nowhere.maxlength = 9;
  EXPECT_EQ(comnb_i4tohex(&context, &from, &nowhere), CS_CONV_SYNTAX);
}

}  // namespace
}  // namespace tvx::test
