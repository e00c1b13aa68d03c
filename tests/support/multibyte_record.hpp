// A small two-byte character set for tests of everything that reads text by characters. Its lead
// bytes are 0x81 to 0x9F; the full-width forms of ASCII lie as in Shift-JIS. All other two-byte
// characters are letters without case and without an ASCII form. Of the one-byte characters, those
// below 0x80 are ASCII and those above are letters without case or ASCII form. Two-byte characters
// take two columns of a display, those of the lead byte 0x9F one. On request the set has four-byte
// characters: a lead byte, a digit and two more bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "tvxcomn/attributes.h"

namespace tvx::test {

class MultibyteRecord {
public:
  enum class FourByte { kNo, kYes };

  explicit MultibyteRecord(FourByte four_byte = FourByte::kNo) {
    lengths_.fill(0x11);
    lengths_[255] = static_cast<uint8_t>(four_byte == FourByte::kYes ? 0xF1 : 0x11);
    for (size_t i = 0; i < rows_.size(); ++i) {
      const auto byte = static_cast<uint8_t>(i);
      rows_[i] = i < 0x80 ? ascii_row(byte) : Row{byte, byte, COM_LEX_LETTER, 0};
      if (i < 0x80) to_ascii_[i] = byte;
    }
    for (uint8_t lead = 0x81; lead <= 0x9F; ++lead) {
      const auto page = static_cast<uint8_t>(lead < 0x83 ? lead - 0x80 : kPages - 1);
      lengths_[lead] = lead == 0x9F ? 0x12 : 0x22;
      to_ascii_[lead] = page == kPages - 1 ? uint8_t{0} : page;
      rows_[lead] = {page, 0, COM_LEX_LETTER, COM_ATTR_LEADBYTE};
    }
    for (uint8_t c = 0; c < 0x80; ++c) {
      const unsigned wide = wide_form(c);
      if (wide == 0) continue;
      const auto second_byte = [](uint8_t other) { return static_cast<uint8_t>(wide_form(other)); };
      const Row row = ascii_row(c);
      rows_[wide - 0x8000] = {second_byte(row[0]), second_byte(row[1]), row[2], row[3]};
      to_ascii_[wide - 0x8000] = c;
    }
    record_.class_ = 2;
    record_.lengths = lengths_.data();
    record_.to_ascii = to_ascii_.data();
    record_.attributes = rows_[0].data();
  }
  // The record points into this object.
  MultibyteRecord(const MultibyteRecord&) = delete;
  MultibyteRecord& operator=(const MultibyteRecord&) = delete;

  const com_charattr& operator*() const { return record_; }
  const com_charattr* get() const { return &record_; }

  // Two-byte characters without an ASCII form; the second one's second byte is an ASCII letter.
  static constexpr std::string_view kNoAscii = "\x83\x80";
  static constexpr std::string_view kNoAsciiWithLetter = "\x83\x41";
  // A four-byte character (four one- and two-byte ones without the rule).
  static constexpr std::string_view kFourBytes = "\x83\x35\x81\x36";

  // The text with every character that has a full-width form written in it.
  static std::string full_width(std::string_view ascii) {
    std::string wide;
    for (const char c : ascii) {
      const unsigned form = wide_form(static_cast<uint8_t>(c));
      if (form != 0) wide += static_cast<char>(form >> 8);
      wide += form != 0 ? static_cast<char>(form) : c;
    }
    return wide;
  }

private:
  using Row = std::array<uint8_t, 4>;  // upper, lower, lexical class, flags
  // The lead and the second byte of an ASCII character's full-width form, 0 for none.
  static unsigned wide_form(uint8_t c) {
    if (c >= '0' && c <= '9') return 0x824Fu + c - '0';
    if (c >= 'A' && c <= 'Z') return 0x8260u + c - 'A';
    if (c >= 'a' && c <= 'z') return 0x8281u + c - 'a';
    static constexpr std::pair<char, unsigned> kSigns[] = {
        {' ', 0x8140}, {'.', 0x8144}, {',', 0x8143}, {':', 0x8146},
        {'/', 0x815E}, {'+', 0x817B}, {'-', 0x817C}, {'$', 0x8190}};
    for (const auto& [sign, form] : kSigns)
      if (c == sign) return form;
    return 0;
  }
  // Of ASCII the built-in record says the same.
  static Row ascii_row(uint8_t c) {
    const uint8_t* row = com_get_typemap() + c * size_t{4};
    return {row[0], row[1], row[2], row[3]};
  }

  // Page 0 holds the one-byte characters, 1 and 2 those behind 0x81 and 0x82, 3 all others.
  static constexpr uint8_t kPages = 4;
  std::array<uint8_t, 256> lengths_{};
  std::array<uint8_t, 256 * (kPages - 1)> to_ascii_{};
  std::array<Row, 256 * kPages> rows_{};
  com_charattr record_{};
};

}  // namespace tvx::test
