/* Binary data: values of fixed size as raw memory, in the machine's byte order.
 *
 * All are of type comn_conversion. Towards bin the result is CS_CONV_TRUNCATED when the value does
 * not fit, which is then cut, and the zero fill is honoured; a varbin record always has room and
 * reports 258. From binary data as many bytes are copied as both sides have: CS_CONV_UNDERFLOW when
 * the source is shorter, CS_CONV_TRUNCATED from bin and CS_CONV_OVERFLOW from varbin when it is
 * longer. A numeric is its sign and magnitude under the precision and scale of its format
 * (CS_CONV_BADPREC, CS_CONV_BADSCALE) and reports 35. */
#ifndef TVXCOMN_BINARY_H
#define TVXCOMN_BINARY_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

TVXCOMN_API comn_conversion comn_numtobin, comn_numtovarbin, comn_bintonum, comn_varbintonum;
TVXCOMN_API comn_conversion comn_moneytobin, comn_moneytovarbin, comn_bintomoney,
    comn_varbintomoney;
TVXCOMN_API comn_conversion comn_mny4tobin, comn_mny4tovarbin, comn_bintomny4, comn_varbintomny4;

TVXCOMN_END

#endif
