// The pairs of the default table from dates and times to text.
#pragma once

#include "api/served.hpp"
#include "convert/date_text_write.hpp"
#include "tvxcomn/dateformat.h"

namespace tvx::api {

#define TVX_ROWS(S, name)                                                        \
  Served{convert::kDateTextSources<convert::type::S>, convert::kNumberTextCodes, \
         comn_##name##tochar},                                                   \
      Served{convert::kDateTextSources<convert::type::S>, convert::kVarchar,     \
             comn_##name##tovarchar},

inline constexpr std::array kDateFormatServed{TVX_ROWS(datetime, date) TVX_ROWS(date4, date4)
                                                  TVX_ROWS(datea, datea) TVX_ROWS(timea, timea)};

#undef TVX_ROWS

// 6 sources, 4 text codes.
static_assert(count_pairs(kDateFormatServed) == 6 * 4);

}  // namespace tvx::api
