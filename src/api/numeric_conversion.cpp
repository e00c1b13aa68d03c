// Exported conversions of numeric.h.
#include "convert/numeric_conversion.hpp"

#include "api/exports.hpp"
#include "tvxcomn/numeric.h"

using namespace tvx::convert;

#define TO_NUM(S) TVX_EXPORT_CONVERSION(comn_##S##tonum, scalar_to_num<type::S>)
#define BARE_TO_NUM(S) TVX_EXPORT_BARE(comnb_##S##tonum, bare_scalar_to_num<type::S>)
#define FROM_NUM(S, D)                                         \
  TVX_EXPORT_CONVERSION(comn_numto##D, num_to_scalar<type::D>) \
  TVX_EXPORT_BARE(comnb_numto##D, bare_num_to_scalar<type::D>)

TVX_EACH_EXPORTED(TO_NUM)
TVX_EACH_EXPORTED(BARE_TO_NUM)
TVX_EACH_UNSIGNED(BARE_TO_NUM)
TVX_TO_EACH_SCALAR(FROM_NUM, num)

TVX_EXPORT_CONVERSION(comn_numtonum, num_to_num)
TVX_EXPORT_CONVERSION(comn_numtochar, num_to_char)
TVX_EXPORT_CONVERSION(comn_numtovarchar, num_to_varchar)
TVX_EXPORT_CONVERSION(comn_chartonum, text_kind_to_num<type::text_char>)
TVX_EXPORT_CONVERSION(comn_varchartonum, text_kind_to_num<type::text_varchar>)

TVX_EXPORT_BARE(comnb_numtonum, bare_num_to_num)
TVX_EXPORT_BARE(comnb_numtochar, bare_num_to_char)
TVX_EXPORT_BARE(comnb_numtovarchar, bare_num_to_varchar)
TVX_EXPORT_BARE(comnb_chartonum, bare_text_to_num)
TVX_EXPORT_BARE(comnb_varchartonum, bare_text_to_num)
