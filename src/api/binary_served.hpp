// The pairs of the default table between binary data and values of fixed size.
#pragma once

#include "api/served.hpp"
#include "convert/money_conversion.hpp"
#include "convert/numeric_conversion.hpp"
#include "tvxcomn/binary.h"

namespace tvx::api {

#define TVX_BINARY_ROWS(T)                                                   \
  Served{convert::type::T::codes, convert::kBinFamily, comn_##T##tobin},     \
      Served{convert::type::T::codes, convert::kVarbin, comn_##T##tovarbin}, \
      Served{convert::kBinFamily, convert::type::T::codes, comn_binto##T},   \
      Served{convert::kVarbin, convert::type::T::codes, comn_varbinto##T},

inline constexpr std::array kBinaryServed{TVX_BINARY_ROWS(num) TVX_BINARY_ROWS(money)
                                              TVX_BINARY_ROWS(mny4)};

#undef TVX_BINARY_ROWS

// 4 binary codes both ways, with 2 numeric and 2 money codes.
inline constexpr int kBinaryPairs = 2 * 4 * (2 + 2);

}  // namespace tvx::api
