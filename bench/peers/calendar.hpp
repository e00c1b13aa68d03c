// Howard Hinnant's date library on the library's own day numbers.
#pragma once

#include <cstdint>

#include "tvxcomn/datatypes.h"

namespace tvx::bench::peers {

struct CivilDate {
  int32_t year;
  int32_t month;  // 1 to 12
  int32_t day;
};

struct CivilDay {
  CivilDate date;
  int32_t weekday;      // Sunday is 0
  int32_t day_of_year;  // 1 to 366
};

// The date of a day number, days since 1900-01-01; and all that is cracked from one.
TVXCOMN_API void civil_date(const int32_t* day_number, CivilDate* date);
TVXCOMN_API void civil_day(const int32_t* day_number, CivilDay* day);

// Adds months to a day number; a day beyond the end of the month reached becomes its last. Returns
// whether the year is 1 to 9999; else nothing changes.
TVXCOMN_API bool add_months(int32_t months, int32_t* day_number);

}  // namespace tvx::bench::peers
