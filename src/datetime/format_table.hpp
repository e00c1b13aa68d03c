// The forms of date and time text by their date format codes. A form is a pattern for people to
// read (format_table.cpp lists them). At compile time it becomes a layout: a text that has its
// separators already, and the fields to be set into it, two characters at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvx::datetime {

// ---- Fields ------------------------------------------------------------------------------------

// What a text is made of beside separators and the month's name: pairs of characters. A field with
// an odd number of digits is two pairs that overlap.
enum class Field : uint8_t {
  kCentury,  // year / 100
  kYearOfCentury,
  kBlankCentury,  // the year with blanks for leading zeros
  kBlankYearOfCentury,
  kMonth,
  kDay,
  kBlankDay,
  kHour,
  kHalfDayHour,  // 1 to 12, with a blank
  kMinute,
  kSecond,
  kMarker,  // AM or PM
  kMilliseconds12,
  kMilliseconds23,
  kMicroseconds12,
  kMicroseconds34,
  kMicroseconds56,
};
inline constexpr size_t kFields = static_cast<size_t>(Field::kMicroseconds56) + 1;

// Groups of fields that a form shows; one with a fraction shows a time.
inline constexpr uint8_t kShowsDate = 1;
inline constexpr uint8_t kShowsTime = 2;
inline constexpr uint8_t kShowsFraction = 4;
inline constexpr uint8_t kShowsBlankYear = 8;

// ---- Layouts -----------------------------------------------------------------------------------

inline constexpr int kMaxMonthName = 9;  // characters of a name that are written
inline constexpr int kMaxFormText = 26;  // characters of a form beside the name
inline constexpr int kMaxInserts = 10;
inline constexpr int kMaxDateText = kMaxMonthName + kMaxFormText;

struct Insert {
  uint8_t place;  // in the layout's text
  Field field;
};

struct Layout {
  uint8_t length = 0;  // of the text
  bool has_name = false;
  uint8_t name_place = 0;  // characters in front of the month's name
  uint8_t shows = 0;
  uint8_t inserts_before_name = 0;
  uint8_t insert_count = 0;
  std::array<char, kMaxFormText> text{};
  std::array<Insert, kMaxInserts> inserts{};
};

// Of no text at all.
inline constexpr Layout kEmptyLayout{};

// ---- The table ---------------------------------------------------------------------------------

// The values of which a code has forms of its own: a date with a time, a date, a time of day.
enum class FormOf { kMoment, kDate, kTime };

inline constexpr int32_t kLastCode = 140;

// By code; a layout of length 0 where the code has no form.
using Layouts = std::array<Layout, size_t{kLastCode} + 1>;
extern const std::array<Layouts, 3> kLayouts;  // by FormOf

// The layout of a code, or null.
[[nodiscard]] inline const Layout* find_layout(FormOf what, int32_t code) {
  if (static_cast<uint32_t>(code) > kLastCode) return nullptr;
  const Layout& layout = kLayouts[static_cast<size_t>(what)][static_cast<size_t>(code)];
  return layout.length != 0 ? &layout : nullptr;
}

}  // namespace tvx::datetime
