// The built-in English names: what a locale without names of its own, and every context without a
// locale, answers with.
#pragma once

#include <cstddef>

namespace tvx::datetime {

inline constexpr size_t kMonthsOfYear = 12;
inline constexpr size_t kDaysOfWeek = 7;

inline constexpr const char* kMonths[kMonthsOfYear] = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

inline constexpr const char* kShortMonths[kMonthsOfYear] = {
    "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Sunday first.
inline constexpr const char* kWeekdays[kDaysOfWeek] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};

inline constexpr const char* kShortWeekdays[kDaysOfWeek] = {"Sun", "Mon", "Tue", "Wed",
                                                            "Thu", "Fri", "Sat"};

// Morning and afternoon. Never localised.
inline constexpr const char* kMarkers[2] = {"AM", "PM"};

}  // namespace tvx::datetime
