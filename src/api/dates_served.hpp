// The pairs among the date and time types, of which the exported functions are made, and what is in
// the default table: these pairs, and each type as varying binary data.
#pragma once

#include "api/served.hpp"
#include "convert/binary_copy.hpp"
#include "convert/date_conversion.hpp"
#include "tvxcomn/dates.h"

namespace tvx::api {

// Source, destination, and the name of the pair's routines: comn_ and comnb_ with the first list.
#define TVX_DATE_PAIRS(X)           \
  X(datetime, datetime, datetodate) \
  X(datetime, date4, datetodate4)   \
  X(datetime, datea, datetodatea)   \
  X(datetime, timea, datetotimea)   \
  X(date4, datetime, date4todate)   \
  X(date4, date4, date4todate4)     \
  X(date4, datea, date4todatea)     \
  X(date4, timea, date4totimea)     \
  X(datea, datetime, dateatodate)   \
  X(datea, date4, dateatodate4)     \
  X(datea, datea, dateatodatea)     \
  X(timea, datetime, timeatodate)   \
  X(timea, date4, timeatodate4)     \
  X(timea, timea, timeatotimea)

// Those with a big type are exported as comnb_ only.
#define TVX_BIG_DATE_PAIRS(X)                   \
  X(datetime, bigdatetime, datetobigdatetime)   \
  X(datetime, bigtime, datetobigtime)           \
  X(date4, bigdatetime, date4tobigdatetime)     \
  X(date4, bigtime, date4tobigtime)             \
  X(datea, bigdatetime, dateatobigdatetime)     \
  X(timea, bigdatetime, timeatobigdatetime)     \
  X(timea, bigtime, timeatobigtime)             \
  X(bigdatetime, datetime, bigdatetodate)       \
  X(bigdatetime, date4, bigdatetotime4)         \
  X(bigdatetime, datea, bigdatetodatea)         \
  X(bigdatetime, timea, bigdatetotimea)         \
  X(bigdatetime, bigdatetime, bigdatetobigdate) \
  X(bigdatetime, bigtime, bigdatetobigtime)     \
  X(bigtime, datetime, bigtimetodate)           \
  X(bigtime, date4, bigtimetodate4)             \
  X(bigtime, timea, bigtimetotimea)             \
  X(bigtime, bigdatetime, bigtimetobigdatetime) \
  X(bigtime, bigtime, bigtimetobigtime)

// The types whose routines towards binary data are exported, and their names.
#define TVX_DATE_TYPES(X) X(datetime, date) X(date4, date4) X(datea, datea) X(timea, timea)

#define TVX_ROW(S, D, name) Served{convert::type::S::codes, convert::type::D::codes, comn_##name},
#define TVX_BIG_ROW(S, D, name)                            \
  Served{convert::type::S::codes, convert::type::D::codes, \
         traced_call<convert::date_routine<convert::type::S, convert::type::D>>},
#define TVX_BINARY_ROW(S, name) \
  Served{convert::type::S::codes, convert::kVarbin, comn_##name##tovarbin},
#define TVX_BIG_BINARY_ROW(S)                       \
  Served{convert::type::S::codes, convert::kVarbin, \
         traced_call<convert::fixed_type_to_varbin<convert::type::S>>},

inline constexpr std::array kDatesServed{TVX_DATE_PAIRS(TVX_ROW)          //
                                         TVX_BIG_DATE_PAIRS(TVX_BIG_ROW)  //
                                         TVX_DATE_TYPES(TVX_BINARY_ROW)   //
                                         TVX_BIG_BINARY_ROW(bigdatetime)  //
                                         TVX_BIG_BINARY_ROW(bigtime)};

#undef TVX_ROW
#undef TVX_BIG_ROW
#undef TVX_BINARY_ROW
#undef TVX_BIG_BINARY_ROW

// 6 destinations of each of the three types with a date and a time, 4 of date, 5 of each time; and
// varying binary data from all 6.
static_assert(count_pairs(kDatesServed) == 3 * 6 + 4 + 2 * 5 + 6);

}  // namespace tvx::api
