/* Exact numerics: the tables that relate digits to bytes. */
#ifndef TVXCOMN_NUMERIC_H
#define TVXCOMN_NUMERIC_H

#include <stdint.h>

#include "tvxcomn/export.h"

TVXCOMN_BEGIN

/* Length in bytes of the sign and magnitude of `precision` digits, 0 to 77 (0 as 1): the sign byte
 * and the bytes that hold 10^precision - 1. Any other precision is a fatal usage error. */
TVXCOMN_API int32_t comb_get_Prec_To_Len(int32_t precision);

/* The most digits that always fit a sign and magnitude of `index` + 2 bytes, index 0 to 31; 255 for
 * 32 to 34. Any other index is a fatal usage error. */
TVXCOMN_API int32_t comb_get_Len_To_Prec(int32_t index);

TVXCOMN_END

#endif
