// The pairs of the default table among the scalar datatypes, and of bit towards text and binary.
#pragma once

#include "api/exports.hpp"
#include "api/served.hpp"
#include "convert/scalar.hpp"
#include "tvxcomn/scalar.h"

namespace tvx::api {

#define TVX_ROW(S, D)                                               \
  Served{convert::source_codes<convert::type::S, convert::type::D>, \
         convert::destination_codes<convert::type::D>, comn_##S##to##D},
#define TVX_UNSIGNED_ROW(S, D)                                      \
  Served{convert::source_codes<convert::type::S, convert::type::D>, \
         convert::destination_codes<convert::type::D>,              \
         traced_call<convert::scalar_routine<convert::type::S, convert::type::D>>},

inline constexpr std::array kScalarServed{
    TVX_FROM_EACH_EXPORTED(TVX_ROW)           //
    TVX_FROM_EACH_UNSIGNED(TVX_UNSIGNED_ROW)  //
    Served{convert::type::bit::codes, convert::kNumberTextCodes, comn_bittochar},
    Served{convert::type::bit::codes, convert::kBinFamily, comn_bittobin},
    Served{convert::type::bit::codes, convert::kVarchar, comn_bittovarchar},
    Served{convert::type::bit::codes, convert::kVarbin, comn_bittovarbin},
};

#undef TVX_ROW
#undef TVX_UNSIGNED_ROW

// 10 sources towards 11 codes, int20 towards 6 of them; bit towards 8 text and binary codes.
static_assert(count_pairs(kScalarServed) == 10 * 11 + 6 + 8);

}  // namespace tvx::api
