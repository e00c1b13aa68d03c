// Values and texts of date parts.
#include "datetime/date_parts.hpp"

#include "datetime/iso_week.hpp"
#include "numeric/field_write.hpp"

namespace tvx::datetime {
namespace {

constexpr int32_t kNameWidth = 30;
constexpr int32_t kNumberWidth = 4;
constexpr int32_t kMicrosecondWidth = 6;

// The position of a weekday, 0 on Sunday, in weeks that begin on a first day.
int32_t position_in_week(int32_t weekday, int32_t first_day) {
  const int64_t position = int64_t{weekday} + 1 - first_day;
  return static_cast<int32_t>(position < 1 ? position + 7 : position);
}

// Weeks begin on Sunday, the first is that of 1 January.
int32_t week_of_year(const comn_dateparts& parts) {
  const int32_t new_years_weekday = ((parts.weekday - parts.day_of_year + 1) % 7 + 7) % 7;
  return (parts.day_of_year + new_years_weekday + 6) / 7;
}

int32_t millisecond(const comn_dateparts& parts) {
  constexpr auto per_millisecond = static_cast<int32_t>(kMicrosecondsPerMillisecond);
  return parts.fraction_units == kMicrosecondsPerSecond ? parts.fraction / per_millisecond
                                                        : parts.millisecond;
}

IsoWeek iso_week_of(const comn_dateparts& parts) {
  return iso_week(parts.year, parts.day_of_year, parts.weekday);
}

int32_t write_name_of(const char* const* names, int32_t index, char* out) {
  if (names == nullptr || names[index] == nullptr) return 0;
  return numeric::write_name(out, names[index], '\0', kNameWidth);
}

}  // namespace

int32_t part_value(int32_t part, const comn_dateparts& parts, int32_t first_day) {
  switch (part) {
    case COM_PART_YEAR:
      return parts.year;
    case COM_PART_QUARTER:
      return parts.month / 3 + 1;
    case COM_PART_MONTH:
      return parts.month + 1;
    case COM_PART_WEEKDAY:
      return position_in_week(parts.weekday, first_day);
    case COM_PART_DAY:
      return parts.day;
    case COM_PART_DAY_OF_YEAR:
      return parts.day_of_year;
    case COM_PART_HOUR:
      return parts.hour;
    case COM_PART_MINUTE:
      return parts.minute;
    case COM_PART_SECOND:
      return parts.second;
    case COM_PART_MILLISECOND:
      return millisecond(parts);
    case COM_PART_WEEK:
      return week_of_year(parts);
    case COM_PART_ISO_YEAR:
      return iso_week_of(parts).year;
    case COM_PART_ISO_WEEK:
      return iso_week_of(parts).week;
    case COM_PART_ISO_WEEKDAY:
      return iso_weekday(parts.weekday);
    case COM_PART_MICROSECOND:
      return parts.fraction;
    default:
      return 0;
  }
}

int32_t write_part(int32_t part, const comn_dateparts& parts, char* out, const char* const* months,
                   const char* const* weekdays) {
  switch (part) {
    case COM_PART_MONTH:
      return write_name_of(months, parts.month, out);
    case COM_PART_WEEKDAY:
    case COM_PART_ISO_WEEKDAY:
      return write_name_of(weekdays, parts.weekday, out);
    default: {
      if (!is_part(part)) return 0;
      constexpr int32_t kAnyDay = 7;  // the weekday has a name here
      const int32_t width = part == COM_PART_MICROSECOND ? kMicrosecondWidth : kNumberWidth;
      return numeric::write_number(part_value(part, parts, kAnyDay), out, width);
    }
  }
}

}  // namespace tvx::datetime
