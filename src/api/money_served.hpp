// The pairs with money, of which the exported functions are made, and those that are in the default
// table.
#pragma once

#include "api/exports.hpp"
#include "api/served.hpp"
#include "convert/money_conversion.hpp"
#include "tvxcomn/money.h"

namespace tvx::api {

#define TVX_MONEY_TYPES(X) X(money) X(mny4)
#define TVX_TO_EACH_MONEY(X, S) X(S, money) X(S, mny4)

// Bit comes to money in the bare layer only, and the unsigned codes through the table only.
#define TVX_MONEY_PAIRS(X)    \
  TVX_TO_EACH_MONEY(X, i1)    \
  TVX_TO_EACH_MONEY(X, i2)    \
  TVX_TO_EACH_MONEY(X, i4)    \
  TVX_TO_EACH_MONEY(X, i8)    \
  TVX_TO_EACH_MONEY(X, flt4)  \
  TVX_TO_EACH_MONEY(X, flt8)  \
  TVX_TO_EACH_MONEY(X, money) \
  TVX_TO_EACH_SCALAR(X, money) TVX_TO_EACH_MONEY(X, mny4) TVX_TO_EACH_SCALAR(X, mny4)
#define TVX_UNSIGNED_TO_MONEY(X) \
  TVX_TO_EACH_MONEY(X, ui2) TVX_TO_EACH_MONEY(X, ui4) TVX_TO_EACH_MONEY(X, ui8)

#define TVX_TEXT_TO_MONEY(X) TVX_TO_EACH_MONEY(X, char) TVX_TO_EACH_MONEY(X, varchar)
#define TVX_MONEY_TO_TEXT(X) X(money, char) X(money, varchar) X(mny4, char) X(mny4, varchar)

#define TVX_ROW(S, D) \
  Served{convert::type::S::codes, convert::destination_codes<convert::type::D>, comn_##S##to##D},
#define TVX_UNSIGNED_ROW(S, D)                             \
  Served{convert::type::S::codes, convert::type::D::codes, \
         traced_call<convert::money_routine<convert::type::S, convert::type::D>>},
#define TVX_FROM_TEXT(T, D) \
  Served{convert::type::text_##T::table_codes, convert::type::D::codes, comn_##T##to##D},
#define TVX_TO_TEXT(S, T) \
  Served{convert::type::S::codes, convert::type::text_##T::table_codes, comn_##S##to##T},
#define TVX_NUMERIC_ROWS(M)                                              \
  Served{convert::type::M::codes, convert::kNumFamily, comn_##M##tonum}, \
      Served{convert::kNumFamily, convert::type::M::codes, comn_numto##M},

inline constexpr std::array kMoneyServed{TVX_MONEY_PAIRS(TVX_ROW)                 //
                                         TVX_UNSIGNED_TO_MONEY(TVX_UNSIGNED_ROW)  //
                                         TVX_TEXT_TO_MONEY(TVX_FROM_TEXT)         //
                                         TVX_MONEY_TO_TEXT(TVX_TO_TEXT)           //
                                         TVX_MONEY_TYPES(TVX_NUMERIC_ROWS)};

#undef TVX_ROW
#undef TVX_UNSIGNED_ROW
#undef TVX_FROM_TEXT
#undef TVX_TO_TEXT
#undef TVX_NUMERIC_ROWS

// For each money type 9 scalar sources, 11 scalar destinations and 2 money sources; 4 text codes
// and 2 exact numeric codes both ways.
static_assert(count_pairs(kMoneyServed) == 2 * (9 + 11 + 2 + 2 * (4 + 2)));

}  // namespace tvx::api
