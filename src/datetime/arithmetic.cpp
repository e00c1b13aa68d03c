// Date arithmetic, by what one unit of each part is.
#include "datetime/arithmetic.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <optional>

#include "datetime/date_parts.hpp"
#include "datetime/iso_week.hpp"
#include "datetime/values.hpp"

namespace tvx::datetime {
namespace {

__extension__ typedef __int128 Wide;

// One unit of a part: a number of months, a number of days, or a fraction of a day.
struct Unit {
  int32_t months = 0;
  int32_t days = 0;
  int64_t per_day = 0;
};

// By part.
constexpr std::array<Unit, COM_PART_MICROSECOND + 1> kUnits{{
    /* year          */ {.months = 12},
    /* quarter       */ {.months = 3},
    /* month         */ {.months = 1},
    /* weekday       */ {.days = 1},
    /* day           */ {.days = 1},
    /* day of year   */ {.days = 1},
    /* hour          */ {.per_day = 24},
    /* minute        */ {.per_day = kMinutesPerDay},
    /* second        */ {.per_day = kSecondsPerDay},
    /* millisecond   */ {.per_day = kMillisecondsPerDay},
    /* week          */ {.days = 7},
    /* ISO year      */ {.months = 12},
    /* ISO week      */ {.days = 7},
    /* ISO weekday   */ {.days = 1},
    /* microsecond   */ {.per_day = kMicrosecondsPerDay},
}};

const Unit& unit_of(int32_t part) {
  return kUnits[static_cast<size_t>(part)];
}

[[nodiscard]] constexpr int64_t floor_divide(int64_t dividend, int64_t divisor) {
  return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

// Moves a day number by months, within the years 1 to 9999.
bool add_months(int64_t months, int32_t& day) {
  const Date date = civil_date(day);
  const int64_t moved = int64_t{date.year} * 12 + date.month + months;
  const int64_t year = floor_divide(moved, 12);
  if (year < kFirstYear || year > kLastYear) return false;
  const auto new_year = static_cast<int32_t>(year);
  const auto new_month = static_cast<int32_t>(moved - year * 12);
  day = day_number(new_year, new_month, std::min(date.day, month_length(new_year, new_month)));
  return true;
}

// Which Sunday a day's week began with.
int64_t week_number(int32_t day) {
  return floor_divide(int64_t{day} + 1, 7);
}

int32_t iso_year(int32_t day) {
  const Date date = civil_date(day);
  return iso_week(date.year, date.day_of_year, weekday(day)).year;
}

// Whole periods of `months` since year 0.
int32_t period_number(int32_t months, int32_t day) {
  const Date date = civil_date(day);
  return date.year * (12 / months) + date.month / months;
}

// The difference in a part that concerns days and what is made of them, else nothing.
std::optional<int64_t> difference_of_days(int32_t part, int32_t start, int32_t end) {
  const int64_t days = int64_t{end} - start;
  switch (part) {
    case COM_PART_YEAR:
    case COM_PART_QUARTER:
    case COM_PART_MONTH: {
      const int32_t months = unit_of(part).months;
      return period_number(months, end) - period_number(months, start);
    }
    case COM_PART_ISO_YEAR:
      return iso_year(end) - iso_year(start);
    case COM_PART_WEEK:
    case COM_PART_ISO_WEEK:
      return week_number(end) - week_number(start);
    case COM_PART_WEEKDAY:
    case COM_PART_ISO_WEEKDAY:
      return days / 7;
    case COM_PART_DAY:
    case COM_PART_DAY_OF_YEAR:
      return days;
    default:
      return std::nullopt;
  }
}

// Days beyond which units may not fit 32 bits: those that do with the units of the time between,
// which count only where they lead further in the same direction.
bool is_far(int64_t days, int64_t units_of_time, int64_t per_day) {
  const bool further = (days < 0) == (units_of_time < 0);
  const int64_t room =
      std::numeric_limits<int32_t>::max() - (further ? std::abs(units_of_time) : 0);
  return std::abs(days) > room / per_day;
}

}  // namespace

// ---- Addition ----------------------------------------------------------------------------------

bool add(int32_t part, int32_t amount, comn_datetime& value) {
  const Unit& unit = unit_of(part);
  if (unit.months != 0) return add_months(int64_t{amount} * unit.months, value.days);

  int64_t day = int64_t{value.days} + int64_t{amount} * unit.days;
  int64_t ticks = value.ticks;
  if (unit.per_day != 0) {
    if (!is_time(ticks)) return false;
    const auto rest = static_cast<int32_t>(amount % unit.per_day);
    ticks += part == COM_PART_MILLISECOND ? ticks_of_milliseconds(rest)
                                          : rest * (kTicksPerDay / unit.per_day);
    const int64_t carry = floor_divide(ticks, kTicksPerDay);
    ticks -= carry * kTicksPerDay;
    day += amount / unit.per_day + carry;
  }
  if (!is_date(day)) return false;
  value = {static_cast<int32_t>(day), static_cast<uint32_t>(ticks)};
  return true;
}

bool add(int32_t part, int32_t amount, uint64_t& value, BigType type) {
  const Unit& unit = unit_of(part);
  if (unit.months != 0) {
    int32_t day = day_of_big(value);
    if (!add_months(int64_t{amount} * unit.months, day)) return false;
    value = big_of_day(day) + value % kMicrosecondsPerDay;
    return true;
  }
  const int64_t length = unit.days != 0 ? unit.days * kMicrosecondsPerDay  //
                                        : kMicrosecondsPerDay / unit.per_day;
  const Wide sum = Wide{value} + Wide{amount} * length;
  const bool is_datetime = type == BigType::kDatetime;
  const Wide first = is_datetime ? kFirstBigdatetime : 0;
  const Wide end = is_datetime ? kEndOfBigdatetime : uint64_t{kMicrosecondsPerDay};
  if (sum < first || sum >= end) return false;
  value = static_cast<uint64_t>(sum);
  return true;
}

// ---- Difference --------------------------------------------------------------------------------

bool difference(int32_t part, const comn_datetime& start, const comn_datetime& end,
                int32_t& result) {
  const int64_t days = int64_t{end.days} - start.days;
  const int64_t ticks = int64_t{end.ticks} - start.ticks;
  std::optional<int64_t> units = difference_of_days(part, start.days, end.days);
  if (part == COM_PART_HOUR) {
    units = (days * kTicksPerDay + ticks) / kTicksPerHour;
  } else if (part == COM_PART_MINUTE || part == COM_PART_SECOND) {
    const int64_t per_day = unit_of(part).per_day;
    const int64_t ticks_of_unit = kTicksPerDay / per_day;
    if (is_far(days, ticks / ticks_of_unit, per_day)) return false;
    units = (days * kTicksPerDay + ticks) / ticks_of_unit;
  } else if (part == COM_PART_MILLISECOND) {
    if (is_far(days, ticks * 10 / 3, kMillisecondsPerDay)) return false;
    units = days * kMillisecondsPerDay + ticks * 10 / 3;
  }
  if (!units) return true;
  if (*units != static_cast<int32_t>(*units)) return false;
  result = static_cast<int32_t>(*units);
  return true;
}

void difference(int32_t part, uint64_t start, uint64_t end, int64_t& result) {
  const auto days = difference_of_days(part, day_of_big(start), day_of_big(end));
  if (days) {
    result = *days;
  } else if (is_part(part)) {
    const auto length = static_cast<uint64_t>(kMicrosecondsPerDay / unit_of(part).per_day);
    result =
        static_cast<int64_t>(end >= start ? (end - start) / length : 0 - (start - end) / length);
  }
}

}  // namespace tvx::datetime
