// A small two-byte character set for tests of everything that reads text by characters. Its lead
// bytes are 0x81 to 0x9F; the full-width forms of ASCII lie as in Shift-JIS:
//
//   0x82 0x4F..0x58 digits, 0x60..0x79 upper case, 0x81..0x9A lower case
//   0x81 0x40 blank, 0x44 full stop, 0x43 comma, 0x46 colon, 0x5E slash, 0x7B plus, 0x7C minus,
//        0x90 dollar
//
// All other two-byte characters are letters without case and without an ASCII form. Of the one-byte
// characters, those below 0x80 are ASCII and those above are letters without case or ASCII form.
// On request the set has four-byte characters: a lead byte, a digit and two more bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tvxcomn/attributes.h"

namespace tvx::test {

class MultibyteRecord {
public:
  enum class FourByte { kNo, kYes };

  explicit MultibyteRecord(FourByte four_byte = FourByte::kNo) {
    fill_one_byte_characters();
    for (size_t lead = 0x81; lead <= 0x9F; ++lead) fill_lead_byte(lead);
    for (const Form& form : kForms) fill_full_width(form);
    lengths_[255] = static_cast<uint8_t>(four_byte == FourByte::kYes ? 0xF1 : 0x11);
    record_ = {.status = 0,
               .class_ = 2,
               .id = 141,
               .name_length = 4,
               .name = "test",
               .format = {1, 1, 0, kPages, 1},
               .lengths = lengths_.data(),
               .to_ascii = to_ascii_.data(),
               .attributes = attributes_.data(),
               .soundex = soundex_.data()};
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
      const Form* form = find_form(static_cast<uint8_t>(c));
      if (form == nullptr) {
        wide += c;
      } else {
        wide += static_cast<char>(form->lead);
        wide += static_cast<char>(form->second + static_cast<uint8_t>(c) - form->first);
      }
    }
    return wide;
  }

private:
  struct Form {
    uint8_t first;  // ASCII characters
    uint8_t last;
    uint8_t lead;  // full-width form of the first
    uint8_t second;
  };

  static constexpr Form kForms[] = {
      {'0', '9', 0x82, 0x4F}, {'A', 'Z', 0x82, 0x60}, {'a', 'z', 0x82, 0x81},
      {' ', ' ', 0x81, 0x40}, {'.', '.', 0x81, 0x44}, {',', ',', 0x81, 0x43},
      {':', ':', 0x81, 0x46}, {'/', '/', 0x81, 0x5E}, {'+', '+', 0x81, 0x7B},
      {'-', '-', 0x81, 0x7C}, {'$', '$', 0x81, 0x90},
  };

  // The page of a lead byte is the same number in both tables.
  static constexpr uint8_t kPages = 4;
  static constexpr size_t page_of(size_t lead) {
    return lead == 0x81 ? 1 : lead == 0x82 ? 2 : kPages - 1;
  }

  static const Form* find_form(uint8_t c) {
    for (const Form& form : kForms)
      if (c >= form.first && c <= form.last) return &form;
    return nullptr;
  }

  struct Class {
    uint8_t lexical;
    unsigned flags;
  };

  static constexpr bool within(uint8_t c, char first, char last) { return c >= first && c <= last; }

  static Class class_of_ascii(uint8_t c) {
    const unsigned hex = within(c | 0x20, 'a', 'f') ? COM_ATTR_XDIGIT : 0u;
    if (within(c, '0', '9')) return {COM_LEX_DIGIT, COM_ATTR_DIGIT | COM_ATTR_XDIGIT};
    if (within(c, 'A', 'Z')) return {COM_LEX_LETTER, COM_ATTR_UPPER | hex};
    if (within(c, 'a', 'z')) return {COM_LEX_LETTER, COM_ATTR_LOWER | hex};
    if (c == ' ') return {COM_LEX_SPACE, COM_ATTR_SPACE};
    if (c == '$') return {COM_LEX_CURRENCY, COM_ATTR_PUNCT};
    if (c == '"') return {COM_LEX_QUOTE, COM_ATTR_PUNCT};
    if (c == '#' || c == '@' || c == '_') return {COM_LEX_LETTER, COM_ATTR_PUNCT};
    return {COM_LEX_OTHER, COM_ATTR_PUNCT};
  }

  void set(size_t index, size_t upper, size_t lower, Class kind) {
    attributes_[index * 4] = static_cast<uint8_t>(upper);
    attributes_[index * 4 + 1] = static_cast<uint8_t>(lower);
    attributes_[index * 4 + 2] = kind.lexical;
    attributes_[index * 4 + 3] = static_cast<uint8_t>(kind.flags);
  }

  void fill_one_byte_characters() {
    lengths_.fill(0x11);
    for (uint8_t c = 0; c < 0x80; ++c) {
      const bool letter = within(c | 0x20, 'a', 'z');
      set(c, letter ? c & ~0x20u : c, letter ? c | 0x20u : c, class_of_ascii(c));
      to_ascii_[c] = c;
    }
    for (size_t c = 0x80; c < 256; ++c) set(c, c, c, {COM_LEX_LETTER, 0});
  }

  void fill_lead_byte(size_t lead) {
    const size_t page = page_of(lead);
    lengths_[lead] = 0x22;
    to_ascii_[lead] = static_cast<uint8_t>(page == kPages - 1 ? 0 : page);
    set(lead, page, 0, {COM_LEX_LETTER, COM_ATTR_LEADBYTE});
    for (size_t c = 0; c < 256; ++c) set(page * 256 + c, c, c, {COM_LEX_LETTER, 0});
  }

  void fill_full_width(const Form& form) {
    constexpr size_t kUpperA = 0x60, kLowerA = 0x81;
    const size_t page = page_of(form.lead);
    const bool letters = form.last - form.first == 'Z' - 'A';
    for (size_t i = 0; i <= size_t{form.last} - form.first; ++i) {
      const auto c = static_cast<uint8_t>(form.first + i);
      const size_t second = form.second + i;
      set(page * 256 + second, letters ? kUpperA + i : second, letters ? kLowerA + i : second,
          class_of_ascii(c));
      to_ascii_[page * 256 + second] = c;
    }
  }

  std::array<uint8_t, 256> lengths_{};
  std::array<uint8_t, 256 * (kPages - 1)> to_ascii_{};
  std::array<uint8_t, 1024 * kPages> attributes_{};
  std::array<uint8_t, 256> soundex_{};
  com_charattr record_{};
};

}  // namespace tvx::test
