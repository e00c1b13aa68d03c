// The pairs of the default table from text to the date and time datatypes.
#pragma once

#include "api/served.hpp"
#include "convert/date_text_read.hpp"
#include "tvxcomn/dateparse.h"

namespace tvx::api {

#define TVX_DATES_FROM_TEXT(X, T) X(T, datetime) X(T, date4) X(T, datea) X(T, timea)

#define TVX_FROM_TEXT(T, D)                    \
  Served{convert::type::text_##T::table_codes, \
         convert::DateTextDestination<convert::type::D>::codes, comn_##T##to##D},

inline constexpr std::array kDateParseServed{TVX_DATES_FROM_TEXT(TVX_FROM_TEXT, char)  //
                                             TVX_DATES_FROM_TEXT(TVX_FROM_TEXT, varchar)};

#undef TVX_FROM_TEXT

// 4 text codes towards 6 date codes.
static_assert(count_pairs(kDateParseServed) == 4 * 6);

}  // namespace tvx::api
