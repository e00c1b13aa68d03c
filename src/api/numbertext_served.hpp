// The pairs of the default table between text and the scalar datatypes.
#pragma once

#include "api/exports.hpp"
#include "api/served.hpp"
#include "convert/number_text.hpp"
#include "tvxcomn/numbertext.h"

namespace tvx::api {

#define TVX_FROM_TEXT(T, D)                                                                  \
  Served{convert::type::text_##T::table_codes, convert::destination_codes<convert::type::D>, \
         comn_##T##to##D},
#define TVX_TO_TEXT(S, T) \
  Served{convert::type::S::codes, convert::type::text_##T::table_codes, comn_##S##to##T},
#define TVX_UNSIGNED_TO_TEXT(S, T)                                      \
  Served{convert::type::S::codes, convert::type::text_##T::table_codes, \
         traced_call<convert::number_to_text<convert::type::S, convert::type::text_##T>>},

inline constexpr std::array kNumberTextServed{TVX_TO_EACH_SCALAR(TVX_FROM_TEXT, char)           //
                                              TVX_TO_EACH_SCALAR(TVX_FROM_TEXT, varchar)        //
                                              TVX_EXPORTED_NUMBERS(TVX_TO_TEXT, char)           //
                                              TVX_EXPORTED_NUMBERS(TVX_TO_TEXT, varchar)        //
                                              TVX_UNSIGNED_NUMBERS(TVX_UNSIGNED_TO_TEXT, char)  //
                                              TVX_UNSIGNED_NUMBERS(TVX_UNSIGNED_TO_TEXT, varchar)};

#undef TVX_FROM_TEXT
#undef TVX_TO_TEXT
#undef TVX_UNSIGNED_TO_TEXT

// 4 text codes towards 11 scalar codes; 9 numbers towards 4 text codes.
static_assert(count_pairs(kNumberTextServed) == 4 * 11 + 9 * 4);

}  // namespace tvx::api
