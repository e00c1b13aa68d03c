#include "date_values.hpp"

#include <algorithm>
#include <iterator>

#include "tvxcomn/dateformat.h"

namespace tvx::tool {

namespace {

constexpr int32_t kIsoWithMicroseconds = 140;
constexpr int32_t kIsoDate = 111;
constexpr int32_t kClockWithMicroseconds = 37;

const DateType kTypes[] = {
    {comnb_datetochar, TVX_TYPE_DATETIME, TVX_TYPE_DATETIME, kIsoWithMicroseconds, 61, false},
    {comnb_date4tochar, TVX_TYPE_DATE4, TVX_TYPE_DATETIME, kIsoWithMicroseconds, 58, false},
    {comnb_dateatochar, TVX_TYPE_DATEA, TVX_TYPE_DATETIME, kIsoDate, 49, false},
    {comnb_timeatochar, TVX_TYPE_TIMEA, TVX_TYPE_DATETIME, kClockWithMicroseconds, 51, false},
    {comnb_bigdatetimetochar, TVX_TYPE_BIGDATETIME, TVX_TYPE_BIGDATETIME, kIsoWithMicroseconds, 187,
     true},
    {comnb_bigtimetochar, TVX_TYPE_BIGTIME, TVX_TYPE_BIGTIME, kClockWithMicroseconds, 188, true},
};

}  // namespace

const DateType* date_type(int32_t code) {
  const auto* type = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [=](const DateType& known) { return known.code == code; });
  return type == std::end(kTypes) ? nullptr : type;
}

comnb_context style_context(int32_t style, uint32_t flags) {
  comnb_context context{};
  context.flags = flags;
  context.date_format = style;
  context.months = com__get_shortmonths();
  return context;
}

}  // namespace tvx::tool
