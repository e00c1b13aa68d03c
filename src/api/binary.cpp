// Exported functions of binary.h.
#include "tvxcomn/binary.h"

#include "api/exports.hpp"
#include "convert/binary_copy.hpp"
#include "convert/money_conversion.hpp"
#include "convert/numeric_conversion.hpp"

using namespace tvx::convert;

#define TO_BINARY(S)                                                              \
  TVX_EXPORT_CONVERSION(comn_##S##tobin, traced_call<fixed_type_to_bin<type::S>>) \
  TVX_EXPORT_CONVERSION(comn_##S##tovarbin, traced_call<fixed_type_to_varbin<type::S>>)
#define FROM_BINARY(D)                                                          \
  TVX_EXPORT_CONVERSION(comn_binto##D, traced_call<bin_to_fixed_type<type::D>>) \
  TVX_EXPORT_CONVERSION(comn_varbinto##D, traced_call<varbin_to_fixed_type<type::D>>)

TO_BINARY(num)
TO_BINARY(money)
TO_BINARY(mny4)
FROM_BINARY(money)
FROM_BINARY(mny4)
TVX_EXPORT_CONVERSION(comn_bintonum, traced_call<bin_to_num>)
TVX_EXPORT_CONVERSION(comn_varbintonum, traced_call<varbin_to_num>)
