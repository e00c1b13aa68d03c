// The forms, and their layouts.
#include "datetime/format_table.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tvx::datetime {
namespace {

// ---- The forms ---------------------------------------------------------------------------------
//
// Fields: mon month's name; mm, dd, yy, yyyy digits, dd_ and yyyy_ with blanks for leading zeros;
// hh 12-hour clock with such a blank, and AM or PM at the end of the text; HH 24-hour clock; mi,
// ss, mmm milliseconds, ffffff microseconds. Everything else stands for itself. A code without a
// form is refused.

struct Form {
  int32_t code;
  std::string_view pattern;
  std::string_view century_pattern;  // of the code 100 above
};

constexpr std::string_view kRefused;

constexpr Form kForms[] = {
    {0, "mon dd_ yyyy hh:mi", "mon dd_ yyyy hh:mi"},
    {1, "mm/dd/yy", "mm/dd/yyyy"},
    {2, "yy.mm.dd", "yyyy.mm.dd"},
    {3, "dd/mm/yy", "dd/mm/yyyy"},
    {4, "dd.mm.yy", "dd.mm.yyyy"},
    {5, "dd-mm-yy", "dd-mm-yyyy"},
    {6, "dd mon yy", "dd mon yyyy"},
    {7, "mon dd, yy", "mon dd, yyyy"},
    {8, "HH:mi:ss", "HH:mi:ss"},
    {9, "mon dd_ yyyy hh:mi:ss:mmm", "mon dd_ yyyy hh:mi:ss:mmm"},
    {10, "mm-dd-yy", "mm-dd-yyyy"},
    {11, "yy/mm/dd", "yyyy/mm/dd"},
    {12, "yymmdd", "yyyymmdd"},
    {13, "yy/dd/mm", "yyyy/dd/mm"},
    {14, "mm/yy/dd", "mm/yyyy/dd"},
    {15, "dd/yy/mm", "dd/yyyy/mm"},
    {16, "mon dd_ yyyy HH:mi:ss", "mon dd_ yyyy HH:mi:ss"},
    {17, "hh:mi", "hh:mi"},
    {18, "HH:mi", "HH:mi"},
    {19, "hh:mi:ss:mmm", kRefused},
    {20, "HH:mi:ss:mmm", kRefused},
    {21, "yy/mm/dd HH:mi:ss", "yyyy/mm/dd HH:mi:ss"},
    {22, "yy/mm/dd hh:mi", "yyyy/mm/dd hh:mi"},
    {23, "yyyy-mm-ddTHH:mi:ss", kRefused},
    {36, "hh:mi:ss.ffffff", "hh:mi:ss.ffffff"},
    {37, "HH:mi:ss.ffffff", "HH:mi:ss.ffffff"},
    {38, "mon dd_ yy hh:mi:ss.ffffff", "mon dd_ yyyy hh:mi:ss.ffffff"},
    {39, "mon dd_ yy HH:mi:ss.ffffff", "mon dd_ yyyy HH:mi:ss.ffffff"},
    {40, "yy-mm-dd HH:mi:ss.ffffff", "yyyy-mm-dd HH:mi:ss.ffffff"},
};

struct Deviation {
  int32_t code;
  std::string_view pattern;
};

// A date has no time to show in the common forms.
constexpr Deviation kDateDeviations[] = {{0, "mon dd_ yyyy"}, {9, "mon dd_ yyyy"}};

// A time shows its day, the first of the type's epoch, only when asked for the century.
constexpr Deviation kTimeDeviations[] = {{0, "hh:mi"},
                                         {9, "hh:mi:ss:mmm"},
                                         {100, "mon dd_ yyyy_ hh:mi"},
                                         {109, "mon dd_ yyyy_ hh:mi:ss:mmm"}};

// What remains of a time in the forms that show a date alone.
constexpr std::string_view kNoTime("\0", 1);

// ---- Patterns to layouts -----------------------------------------------------------------------

using enum Field;

struct NamedField {
  std::string_view name;
  uint8_t shows;
  std::array<Field, 3> pairs;
  size_t width;  // characters
};

// Longer names before those they begin with.
constexpr NamedField kNamedFields[] = {
    {"mmm", kShowsTime | kShowsFraction, {kMilliseconds12, kMilliseconds23}, 3},
    {"mm", kShowsDate, {kMonth}, 2},
    {"mi", kShowsTime, {kMinute}, 2},
    {"dd_", kShowsDate, {kBlankDay}, 2},
    {"dd", kShowsDate, {kDay}, 2},
    {"yyyy_", kShowsDate | kShowsBlankYear, {kBlankCentury, kBlankYearOfCentury}, 4},
    {"yyyy", kShowsDate, {kCentury, kYearOfCentury}, 4},
    {"yy", kShowsDate, {kYearOfCentury}, 2},
    {"hh", kShowsTime, {kHalfDayHour}, 2},
    {"HH", kShowsTime, {kHour}, 2},
    {"ss", kShowsTime, {kSecond}, 2},
    {"ffffff", kShowsTime | kShowsFraction, {kMicroseconds12, kMicroseconds34, kMicroseconds56}, 6},
};

constexpr std::string_view kMonthName = "mon";
constexpr std::string_view kSeparators(" /.-:,T\0", 8);

constexpr void add_separator(Layout& layout, char separator) {
  if (kSeparators.find(separator) == kSeparators.npos) throw "no field and no separator";
  layout.text.at(layout.length++) = separator;
}

// Pairs follow each other; the last one ends where the field ends.
constexpr void add_field(Layout& layout, const std::array<Field, 3>& pairs, size_t width) {
  for (size_t at = 0; at < width; at += 2) {
    const size_t place = layout.length + std::min(at, width - 2);
    layout.inserts.at(layout.insert_count++) = {static_cast<uint8_t>(place), pairs[at / 2]};
  }
  layout.length = static_cast<uint8_t>(layout.length + width);
}

constexpr void add_name(Layout& layout) {
  layout.has_name = true;
  layout.name_place = layout.length;
  layout.inserts_before_name = layout.insert_count;
  layout.shows |= kShowsDate;
}

// A pattern that does not fit a layout, or has something unknown in it, stops the compilation.
constexpr Layout compose(std::string_view pattern) {
  Layout layout;
  const bool has_marker = pattern.find("hh") != pattern.npos;
  while (!pattern.empty()) {
    const auto* const field =
        std::find_if(std::begin(kNamedFields), std::end(kNamedFields),
                     [&](const NamedField& known) { return pattern.starts_with(known.name); });
    if (field != std::end(kNamedFields)) {
      add_field(layout, field->pairs, field->width);
      layout.shows |= field->shows;
      pattern.remove_prefix(field->name.size());
    } else if (pattern.starts_with(kMonthName)) {
      add_name(layout);
      pattern.remove_prefix(kMonthName.size());
    } else {
      add_separator(layout, pattern.front());
      pattern.remove_prefix(1);
    }
  }
  if (has_marker) add_field(layout, {kMarker}, 2);
  if (layout.length > kMaxFormText) throw "a longer text than a layout has";
  return layout;
}

// ---- The table ---------------------------------------------------------------------------------

constexpr Layouts compose_moments() {
  Layouts layouts{};
  for (const Form& form : kForms) {
    const auto code = static_cast<size_t>(form.code);
    layouts[code] = compose(form.pattern);
    layouts[code + 100] = compose(form.century_pattern);
  }
  return layouts;
}

template <size_t count>
constexpr Layouts deviate(Layouts layouts, const Deviation (&deviations)[count]) {
  for (const Deviation& deviation : deviations)
    layouts[static_cast<size_t>(deviation.code)] = compose(deviation.pattern);
  return layouts;
}

constexpr Layouts compose_times(Layouts layouts) {
  for (Layout& layout : layouts)
    if (layout.shows == kShowsDate) layout = compose(kNoTime);
  return deviate(layouts, kTimeDeviations);
}

constexpr Layouts kMomentLayouts = compose_moments();

}  // namespace

constexpr std::array<Layouts, 3> kLayouts{kMomentLayouts, deviate(kMomentLayouts, kDateDeviations),
                                          compose_times(kMomentLayouts)};

}  // namespace tvx::datetime
