// Dates by Howard Hinnant's date library.
#include "peers/calendar.hpp"

#include <date/date.h>

namespace tvx::bench::peers {
namespace {

constexpr date::sys_days kEpoch{date::year{1900} / 1 / 1};

date::sys_days to_sys(int32_t day_number) {
  return kEpoch + date::days{day_number};
}

CivilDate to_civil(const date::year_month_day& date) {
  return {static_cast<int32_t>(date.year()), static_cast<int32_t>(unsigned{date.month()}),
          static_cast<int32_t>(unsigned{date.day()})};
}

}  // namespace

void civil_date(const int32_t* day_number, CivilDate* date) {
  *date = to_civil(to_sys(*day_number));
}

void civil_day(const int32_t* day_number, CivilDay* day) {
  const date::sys_days at = to_sys(*day_number);
  const date::year_month_day date(at);
  *day = {to_civil(date), static_cast<int32_t>(date::weekday{at}.c_encoding()),
          static_cast<int32_t>((at - date::sys_days{date.year() / 1 / 1}).count()) + 1};
}

bool add_months(int32_t months, int32_t* day_number) {
  date::year_month_day date = date::year_month_day{to_sys(*day_number)} + date::months{months};
  if (date.year() < date::year{1} || date.year() > date::year{9999}) return false;
  if (!date.ok()) date = date.year() / date.month() / date::last;
  *day_number = static_cast<int32_t>((date::sys_days{date} - kEpoch).count());
  return true;
}

}  // namespace tvx::bench::peers
