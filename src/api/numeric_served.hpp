// The pairs of the default table from and to exact numerics, money and binary data apart.
#pragma once

#include "api/exports.hpp"
#include "api/served.hpp"
#include "convert/numeric_conversion.hpp"
#include "tvxcomn/numeric.h"

namespace tvx::api {

#define TVX_TO_NUM(S) \
  Served{convert::num_source_codes<convert::type::S>, convert::kNumFamily, comn_##S##tonum},
#define TVX_UNSIGNED_TO_NUM(S)                                             \
  Served{convert::num_source_codes<convert::type::S>, convert::kNumFamily, \
         traced_call<convert::scalar_to_num<convert::type::S>>},
#define TVX_FROM_NUM(S, D) \
  Served{convert::kNumFamily, convert::destination_codes<convert::type::D>, comn_numto##D},

inline constexpr std::array kNumericServed{
    TVX_EACH_EXPORTED(TVX_TO_NUM)           //
    TVX_EACH_UNSIGNED(TVX_UNSIGNED_TO_NUM)  //
    TVX_TO_EACH_SCALAR(TVX_FROM_NUM, num)   //
    Served{convert::kNumFamily, convert::kNumFamily, comn_numtonum},
    Served{convert::kNumFamily, convert::kNumberTextCodes, comn_numtochar},
    Served{convert::kNumFamily, convert::kVarchar, comn_numtovarchar},
    Served{convert::kNumberTextCodes, convert::kNumFamily, comn_chartonum},
    Served{convert::kVarchar, convert::kNumFamily, comn_varchartonum},
};

#undef TVX_TO_NUM
#undef TVX_UNSIGNED_TO_NUM
#undef TVX_FROM_NUM

// 11 scalar codes towards 2 codes and back, 2 towards 2, and 4 text codes both ways.
static_assert(count_pairs(kNumericServed) == 11 * 2 + 2 * 11 + 2 * 2 + 2 * 4 + 4 * 2);

}  // namespace tvx::api
