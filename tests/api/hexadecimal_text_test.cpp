// Binary data as hexadecimal text and back, against a reference that goes digit by digit.
#include <random>

#include "support/binary_values.hpp"

namespace tvx::test {
namespace {

using namespace std::string_literals;

constexpr int32_t kOver = CS_CONV_OVERFLOW, kCut = CS_CONV_TRUNCATED, kSyntax = CS_CONV_SYNTAX;
constexpr int32_t kChar = TVX_TYPE_CHAR, kBin = TVX_TYPE_BIN;
constexpr int32_t kVarchar = TVX_TYPE_VARCHAR, kVarbin = TVX_TYPE_VARBIN;

std::string random_bytes(size_t length) {
  static std::mt19937 random(5);
  std::string bytes(length, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

std::string digits_of(std::string_view bytes, std::string_view digits = "0123456789abcdef") {
  std::string text;
  for (const char byte : bytes)
    for (const int shift : {4, 0}) text += digits[static_cast<uint8_t>(byte) >> shift & 15];
  return text;
}

TEST(HexadecimalText, Writing) {
  for (const size_t length : {1u, 2u, 5u, 8u, 15u, 16u, 17u, 40u}) {
    const std::string bytes = random_bytes(length), text = digits_of(bytes);
    for (int32_t capacity = 0; capacity <= size_of(text) + 3; ++capacity)
      for (uint32_t flags = 0; flags < 8; ++flags)
        for (const int32_t from : {kBin, TVX_TYPE_IMAGE, kVarbin}) {
          const bool fits = size_of(text) <= capacity;
          Outcome expected = delivered(text, fits ? capacity : capacity / 2 * 2);
          if (fits) expected = complete(expected, size_of(text), capacity, flags);
          if (!fits) expected.code = from == kVarbin ? kOver : kCut;
          expected.bytes.resize(static_cast<size_t>(capacity), kUntouched);
          ASSERT_EQ(convert_value(from, bytes, format_of(kChar, capacity, flags)), expected)
              << length << " bytes of " << from << " in " << capacity << ", flags " << flags;
        }
  }
  for (size_t length = 1; length <= 256; ++length)
    for (const int32_t from : {kBin, kVarbin}) {
      const std::string bytes = random_bytes(length);
      const int32_t code = length <= 128 ? CS_SUCCEED : from == kBin ? kCut : kOver;
      ASSERT_EQ(convert_value(from, bytes, format_of(kVarchar, 0, 7)),
                recorded(code, digits_of(bytes).substr(0, 256)));
    }
}

struct Reading {
  int32_t code;
  std::string bytes;  // written, whatever the code
};

Reading read(std::string text, size_t capacity, int32_t too_long) {
  const auto is_space = [](char c) { return comn_isspace(com_get_charattrib(), &c) != 0; };
  while (!text.empty() && is_space(text.back())) text.pop_back();
  while (!text.empty() && is_space(text.front())) text.erase(0, 1);
  if (text.starts_with("0x") || text.starts_with("0X")) text.erase(0, 2);
  std::string bytes;
  for (size_t at = 0, width = 2 - text.size() % 2; at < text.size(); at += width, width = 2) {
    if (bytes.size() == capacity) return {width == 1 ? kOver : too_long, bytes};
    unsigned value = 0;
    for (const char digit : text.substr(at, width)) {
      const size_t found = "0123456789abcdefABCDEF"s.find(digit);
      if (found == std::string::npos) return {kSyntax, bytes};
      value = value * 16 + static_cast<unsigned>(found < 16 ? found : found - 6);
    }
    bytes += static_cast<char>(value);
  }
  return {CS_SUCCEED, bytes};
}

// All four pairs, with the zero fill and the flags that mean nothing here.
void check_reading(const std::string& text, int32_t capacity) {
  const auto room = static_cast<size_t>(capacity);
  for (const int32_t from : {kChar, TVX_TYPE_CHAR34, kVarchar}) {
    if (from == kVarchar && text.size() > 256) continue;
    SCOPED_TRACE(testing::PrintToString(text) + " of " + std::to_string(from) + " in " +
                 std::to_string(capacity));
    const int32_t too_long = from == kVarchar ? kOver : kCut;
    for (const uint32_t flags : {0u, 2u, 5u}) {
      const auto [code, bytes] = read(text, room, too_long);
      Outcome expected = delivered(bytes, capacity);
      if (code == CS_SUCCEED) expected = complete(expected, 0, capacity, flags & 2);
      expected.code = code;
      if (code == kSyntax) expected.length = 0;
      ASSERT_EQ(convert_value(from, text, format_of(kBin, capacity, flags)), expected);
    }
    const auto [code, bytes] = read(text, 256, too_long);
    Outcome expected = recorded(code, bytes);
    if (from == kVarchar && code == CS_SUCCEED && bytes.size() >= room) expected.code = kOver;
    if (code == kSyntax) {
      expected.length = 0;
      expected.bytes.replace(0, 2, 2, '\0');
    }
    expected.bytes.resize(std::max<size_t>(258, room), kUntouched);
    ASSERT_EQ(convert_value(from, text, format_of(kVarbin, capacity)), expected);
  }
}

TEST(HexadecimalText, Examples) {
  const struct {
    std::string text;
    int32_t capacity;
    Reading expected;
  } rows[] = {
      {"0xABC", 10, {CS_SUCCEED, "\x0A\xBC"}},
      {" \xFF 0Xff ", 1, {CS_SUCCEED, "\xFF"}},
      {"AB CD", 10, {kSyntax, "\x0A"}},
      {"ABCD EF1", 1, {kCut, "\xAB"}},
      {"ABC", 0, {kOver, ""}},
      {"zz", 0, {kCut, ""}},
      {"0x", 3, {CS_SUCCEED, ""}},
      {"   ", 0, {CS_SUCCEED, ""}},
      {"0x0x12", 9, {kSyntax, ""}},
      {"\tAB", 9, {kSyntax, ""}},
      {"x12", 9, {kSyntax, ""}},
      {"0", 1, {CS_SUCCEED, "\0"s}},
      {std::string(511, '1'), 256, {CS_SUCCEED, "\1" + std::string(255, '\x11')}},
      {std::string(513, '1'), 256, {kCut, "\1" + std::string(255, '\x11')}},
  };
  for (const auto& [text, capacity, expected] : rows) {
    const auto [code, bytes] = read(text, static_cast<size_t>(capacity), kCut);
    EXPECT_TRUE(code == expected.code && bytes == expected.bytes) << text;
    check_reading(text, capacity);
  }
}

// In either case of the digits, with and without the first one, into every capacity near the need.
TEST(HexadecimalText, EveryLengthAndCapacity) {
  for (size_t length = 1; length <= 300; ++length) {
    const std::string bytes = random_bytes(length), text = digits_of(bytes);
    ASSERT_EQ(convert_value(kBin, bytes, format_of(kChar, size_of(text))),
              delivered(text, size_of(text)));
    ASSERT_EQ(convert_value(kChar, text, format_of(kBin, size_of(bytes))),
              delivered(bytes, size_of(bytes)));
    const std::string upper = digits_of(bytes, "0123456789ABCDEF");
    for (const std::string& digits : {text, upper, upper.substr(1), " 0x" + text + "  "})
      for (int32_t capacity = length <= 40 ? 0 : size_of(bytes) - 1; capacity <= size_of(bytes) + 3;
           ++capacity)
        ASSERT_NO_FATAL_FAILURE(check_reading(digits, capacity));
  }
}

TEST(HexadecimalText, AnyByteAtAnyPosition) {
  for (const size_t length : {1u, 2u, 37u, 64u})
    for (size_t position = 0; position < length; ++position)
      for (int byte = 0; byte < 256; ++byte) {
        std::string text = digits_of(random_bytes(length)).substr(0, length);
        text[position] = static_cast<char>(byte);
        const size_t needed = (length + 1) / 2;
        const size_t capacity = byte % 2 == 0 ? needed : position % (needed + 1);
        ASSERT_NO_FATAL_FAILURE(check_reading(text, static_cast<int32_t>(capacity)));
      }
}

}  // namespace
}  // namespace tvx::test
