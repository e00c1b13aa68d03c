// Exported functions of scalar.h.
#include "tvxcomn/scalar.h"

#include "api/exports.hpp"
#include "convert/scalar.hpp"

using namespace tvx::convert;

#define CONVERSION(S, D) TVX_EXPORT_CONVERSION(comn_##S##to##D, scalar_routine<type::S, type::D>)
#define BARE(S, D) TVX_EXPORT_BARE(comnb_##S##to##D, bare_scalar_routine<type::S, type::D>)

TVX_FROM_EACH_EXPORTED(CONVERSION)
TVX_FROM_EACH_EXPORTED(BARE)
TVX_FROM_EACH_UNSIGNED(BARE)

TVX_EXPORT_CONVERSION(comn_bittochar, bit_to_char)
TVX_EXPORT_CONVERSION(comn_bittobin, bit_to_bin)
TVX_EXPORT_CONVERSION(comn_bittovarchar, bit_to_varchar)
TVX_EXPORT_CONVERSION(comn_bittovarbin, bit_to_varbin)
TVX_EXPORT_BARE(comnb_bittochar, bare_bit_to_char)
TVX_EXPORT_BARE(comnb_bittovarchar, bare_bit_to_varchar)
