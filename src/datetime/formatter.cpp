// The interpreter of the forms.
#include "datetime/formatter.hpp"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "base/bytes.hpp"
#include "datetime/names.hpp"
#include "datetime/parts.hpp"

namespace tvx::datetime {
namespace {

[[nodiscard]] constexpr FormOf form_of(ValueType type) {
  switch (type) {
    case ValueType::kDatea:
      return FormOf::kDate;
    case ValueType::kTimea:
    case ValueType::kBigtime:
      return FormOf::kTime;
    default:
      return FormOf::kMoment;
  }
}

// ---- The parts of a value ----------------------------------------------------------------------

// A value as a day and a time of day, the latter still in the units of its type.
struct Stored {
  int32_t day;
  uint64_t time;
  bool is_big;
};

Stored load(ValueType type, const void* value) {
  switch (type) {
    case ValueType::kDatetime: {
      const auto datetime = base::load<comn_datetime>(value);
      return {datetime.days, datetime.ticks, false};
    }
    case ValueType::kDate4: {
      const auto date4 = base::load<comn_datetime4>(value);
      return {date4.days, uint64_t{date4.minutes} * kTicksPerMinute, false};
    }
    case ValueType::kDatea:
      return {base::load<int32_t>(value), 0, false};
    case ValueType::kTimea:  // on 1900-01-01
      return {0, base::load<uint32_t>(value), false};
    case ValueType::kBigdatetime: {
      const auto microseconds = base::load<uint64_t>(value);
      return {day_of_big(microseconds), microseconds, true};
    }
    default:  // a bigtime, on 0001-01-01
      return {kFirstDay, base::load<uint64_t>(value), true};
  }
}

// ---- The pairs of characters of the fields -----------------------------------------------------

// All pairs there are, by number: 0 to 99 two digits, from kBlankPadded the same with a blank for a
// leading zero, then the markers and two blanks.
constexpr uint8_t kBlankPadded = 100;
constexpr uint8_t kMarkerPairs = 200;
constexpr uint8_t kTwoBlanks = 202;

using Pair = std::array<char, 2>;

constexpr auto kPairs = [] {
  std::array<Pair, kTwoBlanks + 1> pairs{};
  for (size_t i = 0; i < 100; ++i) {
    const auto tens = static_cast<char>('0' + i / 10), ones = static_cast<char>('0' + i % 10);
    pairs[i] = {tens, ones};
    pairs[kBlankPadded + i] = {i < 10 ? ' ' : tens, ones};
  }
  for (size_t i = 0; i < 2; ++i) pairs[kMarkerPairs + i] = {kMarkers[i][0], kMarkers[i][1]};
  pairs[kTwoBlanks] = {' ', ' '};
  return pairs;
}();

using enum Field;

constexpr uint8_t two_digits(int32_t number) {
  return static_cast<uint8_t>(number);
}
constexpr uint8_t blank_padded(int32_t number) {
  return static_cast<uint8_t>(kBlankPadded + number);
}

// Of the year the last four digits, which are all it has unless the value is out of range.
inline void set_date(FieldPairs& pairs, const comn_dateparts& parts, bool blank_year) {
  const auto year = static_cast<int32_t>(static_cast<uint32_t>(parts.year) % 10'000);
  const int32_t century = year / 100;
  const int32_t year_of_century = year % 100;
  pairs[kCentury] = two_digits(century);
  pairs[kYearOfCentury] = two_digits(year_of_century);
  pairs[kMonth] = two_digits(parts.month + 1);
  pairs[kDay] = two_digits(parts.day);
  pairs[kBlankDay] = blank_padded(parts.day);
  if (!blank_year) return;
  pairs[kBlankCentury] = century == 0 ? kTwoBlanks : blank_padded(century);
  pairs[kBlankYearOfCentury] =
      century == 0 ? blank_padded(year_of_century) : two_digits(year_of_century);
}

inline void set_time(FieldPairs& pairs, const comn_dateparts& parts) {
  const int32_t half_day_hour = (parts.hour + 11) % 12 + 1;
  pairs[kHour] = two_digits(parts.hour);
  pairs[kHalfDayHour] = blank_padded(half_day_hour);
  pairs[kMinute] = two_digits(parts.minute);
  pairs[kSecond] = two_digits(parts.second);
  pairs[kMarker] = static_cast<uint8_t>(kMarkerPairs + (parts.hour < 12 ? 0 : 1));
}

// Milliseconds of the big types are rounded, but not to the next second; those of the others are
// whole and come through as they are.
inline void set_fraction(FieldPairs& pairs, const comn_dateparts& parts) {
  const auto microseconds = static_cast<int32_t>(microseconds_of_fraction(parts));
  const int32_t milliseconds = std::min((microseconds + 500) / 1000, 999);
  pairs[kMilliseconds12] = two_digits(milliseconds / 10);
  pairs[kMilliseconds23] = two_digits(milliseconds % 100);
  pairs[kMicroseconds12] = two_digits(microseconds / 10'000);
  pairs[kMicroseconds34] = two_digits(microseconds / 100 % 100);
  pairs[kMicroseconds56] = two_digits(microseconds % 100);
}

// Copies up to 32 bytes, as two pieces that overlap.
inline void copy_short(char* out, const char* from, size_t count) {
  const auto copy_ends = [=](auto size) {
    std::memcpy(out, from, size);
    std::memcpy(out + count - size, from + count - size, size);
  };
  if (count >= 16) return copy_ends(std::integral_constant<size_t, 16>());
  if (count >= 8) return copy_ends(std::integral_constant<size_t, 8>());
  if (count >= 4) return copy_ends(std::integral_constant<size_t, 4>());
  for (size_t i = 0; i < count; ++i) out[i] = from[i];
}

}  // namespace

DateText::DateText(ValueType type, const void* value, int32_t code, const char* const* names)
    : layout_(find_layout(form_of(type), code)), status_(Formatting::kDone) {
  if (layout_ == nullptr || (layout_->has_name && names == nullptr)) {
    status_ = layout_ == nullptr ? Formatting::kRefused : Formatting::kNoNames;
    layout_ = &kEmptyLayout;
    return;
  }
  const Stored stored = load(type, value);
  const uint8_t shows = layout_->shows;
  comn_dateparts parts;
  if ((shows & kShowsDate) != 0) {
    crack_day(stored.day, parts);
    set_date(pairs_, parts, (shows & kShowsBlankYear) != 0);
    if (layout_->has_name) set_name(names[parts.month]);
  }
  if ((shows & kShowsTime) != 0) {
    if (stored.is_big) {
      crack_big_time(stored.time, parts);
    } else {
      crack_ticks(static_cast<uint32_t>(stored.time), parts);
    }
    set_time(pairs_, parts);
    if ((shows & kShowsFraction) != 0) set_fraction(pairs_, parts);
  }
}

void DateText::set_name(const char* name) {
  name_ = name;
  while (name_length_ < kMaxMonthName && name[name_length_] != '\0') ++name_length_;
}

void DateText::write(char* out) const {
  const Layout& layout = *layout_;
  const auto insert = [&](char* text, size_t from, size_t to) {
    for (size_t i = from; i < to; ++i) {
      const auto [place, field] = layout.inserts[i];
      std::memcpy(text + place, kPairs[pairs_[field]].data(), sizeof(Pair));
    }
  };
  const size_t before_name = layout.name_place;
  const char* const text = layout.text.data();
  copy_short(out, text, before_name);
  insert(out, 0, layout.inserts_before_name);
  copy_short(out + before_name, name_, static_cast<size_t>(name_length_));
  out += name_length_;
  copy_short(out + before_name, text + before_name, layout.length - before_name);
  insert(out, layout.inserts_before_name, layout.insert_count);
}

int32_t DateText::write_within(char* out, int32_t room) const {
  if (room >= length()) [[likely]] {
    write(out);
    return length();
  }
  char whole[kMaxDateText];
  write(whole);
  const int32_t part = std::max(room, 0);
  std::memcpy(out, whole, static_cast<size_t>(part));
  return part;
}

int32_t format_date(ValueType type, const void* value, char* out, int32_t room, int32_t code,
                    const char* const* names) {
  const DateText text(type, value, code, names);
  if (text.status() != Formatting::kDone) return static_cast<int32_t>(text.status());
  const int32_t length = text.length();
  if (room < 0 || room >= length) [[likely]] {
    text.write(out);
    return length;
  }
  text.write_within(out, room);
  return 0;
}

}  // namespace tvx::datetime
