// Date and time values as text in the form of a date format code. One interpreter of the forms'
// layouts serves all six types.
#pragma once

#include <cstdint>

#include "datetime/format_table.hpp"
#include "tvxcomn/dates.h"

namespace tvx::datetime {

// The six types, named as the exported routines call them.
enum class ValueType { kDatetime, kDate4, kDatea, kTimea, kBigdatetime, kBigtime };

// Whether there is a text: the code may have no form, or the form a month's name where no names are
// given. The numbers are those that the exported formatters return.
enum class Formatting : int32_t { kDone = 0, kRefused = -1, kNoNames = -2 };

// The pairs of characters of the fields that are shown, by their numbers in a table of all pairs.
struct FieldPairs {
  std::array<uint8_t, kFields> numbers;

  [[nodiscard]] uint8_t& operator[](Field field) { return numbers[static_cast<size_t>(field)]; }
  [[nodiscard]] uint8_t operator[](Field field) const {
    return numbers[static_cast<size_t>(field)];
  }
};

// The text of a value. Its length is known before a character is written.
class DateText {
public:
  // Reads the value, at any address. Of the 12 names, which are needed only for a form with one, no
  // more than kMaxMonthName characters count; they stay the caller's and must outlive the text.
  DateText(ValueType type, const void* value, int32_t code, const char* const* names);

  [[nodiscard]] Formatting status() const { return status_; }

  // Characters, at most kMaxDateText; 0 when there is no text.
  [[nodiscard]] int32_t length() const { return layout_->length + name_length_; }

  // Writes length() characters.
  void write(char* out) const;

  // Writes the characters that fit in `room` (none below 1) and returns their number.
  int32_t write_within(char* out, int32_t room) const;

private:
  void set_name(const char* name);

  const Layout* layout_;
  Formatting status_;
  int32_t name_length_ = 0;
  const char* name_ = nullptr;
  FieldPairs pairs_;
};

// Writes the text, up to `room` characters of it unless that is below 0, and returns its length; 0
// when it was cut, or the number of a Formatting.
int32_t format_date(ValueType type, const void* value, char* out, int32_t room, int32_t code,
                    const char* const* names);

}  // namespace tvx::datetime
