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
    {TVX_TYPE_DATETIME, comnb_datetochar, 61, false, TVX_TYPE_DATETIME, kIsoWithMicroseconds},
    {TVX_TYPE_DATE4, comnb_date4tochar, 58, false, TVX_TYPE_DATETIME, kIsoWithMicroseconds},
    {TVX_TYPE_DATEA, comnb_dateatochar, 49, false, TVX_TYPE_DATETIME, kIsoDate},
    {TVX_TYPE_TIMEA, comnb_timeatochar, 51, false, TVX_TYPE_DATETIME, kClockWithMicroseconds},
    {TVX_TYPE_BIGDATETIME, comnb_bigdatetimetochar, 187, true, TVX_TYPE_BIGDATETIME,
     kIsoWithMicroseconds},
    {TVX_TYPE_BIGTIME, comnb_bigtimetochar, 188, true, TVX_TYPE_BIGTIME, kClockWithMicroseconds},
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
