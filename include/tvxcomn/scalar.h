/* Conversions among the scalar datatypes: integers, unsigned integers, floats and bit.
 *
 * All are of type comn_conversion (data formats) or comnb_conversion (bare). The destination
 * receives its own size in bytes, which is stored in the output length. A value outside the
 * destination's range is stored as the limit on its side and reported: CS_CONV_OVERFLOW;
 * CS_CONV_UNDERFLOW for a negative value towards an unsigned code and a value below i1 or i2 from
 * i8. Floats are truncated towards zero after the range check, which compares doubles strictly; NaN
 * becomes what the machine's conversion gives, with CS_SUCCEED. A bit byte other than 0 or 1 is
 * CS_CONV_DOMAIN with nothing touched. Where an i8 is a destination int20 is one too; comn_i8toi4,
 * comn_i8toi8 and the i8 routines towards unsigned codes take int20 as source as well.
 *
 * The bare twins report CS_CONV_OVERFLOW on both sides; comnb_i2toui2, comnb_i2toui4,
 * comnb_i2toui8, comnb_flt4toi1, comnb_flt4toi2 and comnb_flt4toi4 deliver a limit with length 0.
 */
#ifndef TVXCOMN_SCALAR_H
#define TVXCOMN_SCALAR_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* The sources ui2, ui4 and ui8 are reached through the routine table (com_conv_func). */
TVXCOMN_API comn_conversion comn_bittobit, comn_bittoi1, comn_bittoi2, comn_bittoi4, comn_bittoi8,
    comn_bittoui2, comn_bittoui4, comn_bittoui8, comn_bittoflt4, comn_bittoflt8;
TVXCOMN_API comn_conversion comn_i1tobit, comn_i1toi1, comn_i1toi2, comn_i1toi4, comn_i1toi8,
    comn_i1toui2, comn_i1toui4, comn_i1toui8, comn_i1toflt4, comn_i1toflt8;
TVXCOMN_API comn_conversion comn_i2tobit, comn_i2toi1, comn_i2toi2, comn_i2toi4, comn_i2toi8,
    comn_i2toui2, comn_i2toui4, comn_i2toui8, comn_i2toflt4, comn_i2toflt8;
TVXCOMN_API comn_conversion comn_i4tobit, comn_i4toi1, comn_i4toi2, comn_i4toi4, comn_i4toi8,
    comn_i4toui2, comn_i4toui4, comn_i4toui8, comn_i4toflt4, comn_i4toflt8;
TVXCOMN_API comn_conversion comn_i8tobit, comn_i8toi1, comn_i8toi2, comn_i8toi4, comn_i8toi8,
    comn_i8toui2, comn_i8toui4, comn_i8toui8, comn_i8toflt4, comn_i8toflt8;
TVXCOMN_API comn_conversion comn_flt4tobit, comn_flt4toi1, comn_flt4toi2, comn_flt4toi4,
    comn_flt4toi8, comn_flt4toui2, comn_flt4toui4, comn_flt4toui8, comn_flt4toflt4, comn_flt4toflt8;
TVXCOMN_API comn_conversion comn_flt8tobit, comn_flt8toi1, comn_flt8toi2, comn_flt8toi4,
    comn_flt8toi8, comn_flt8toui2, comn_flt8toui4, comn_flt8toui8, comn_flt8toflt4, comn_flt8toflt8;

/* Bit as "0" or "1", completed as text; as the byte 0 or 1, zero-filled on request
 * (CS_CONV_TRUNCATED with length 0 when there is no room for it); and as varchar and varbin records
 * of length 1, which report 258 bytes. */
TVXCOMN_API comn_conversion comn_bittochar, comn_bittobin, comn_bittovarchar, comn_bittovarbin;

/* The bare twins. */
TVXCOMN_API comnb_conversion comnb_bittobit, comnb_bittoi1, comnb_bittoi2, comnb_bittoi4,
    comnb_bittoi8, comnb_bittoui2, comnb_bittoui4, comnb_bittoui8, comnb_bittoflt4, comnb_bittoflt8;
TVXCOMN_API comnb_conversion comnb_i1tobit, comnb_i1toi1, comnb_i1toi2, comnb_i1toi4, comnb_i1toi8,
    comnb_i1toui2, comnb_i1toui4, comnb_i1toui8, comnb_i1toflt4, comnb_i1toflt8;
TVXCOMN_API comnb_conversion comnb_i2tobit, comnb_i2toi1, comnb_i2toi2, comnb_i2toi4, comnb_i2toi8,
    comnb_i2toui2, comnb_i2toui4, comnb_i2toui8, comnb_i2toflt4, comnb_i2toflt8;
TVXCOMN_API comnb_conversion comnb_i4tobit, comnb_i4toi1, comnb_i4toi2, comnb_i4toi4, comnb_i4toi8,
    comnb_i4toui2, comnb_i4toui4, comnb_i4toui8, comnb_i4toflt4, comnb_i4toflt8;
TVXCOMN_API comnb_conversion comnb_i8tobit, comnb_i8toi1, comnb_i8toi2, comnb_i8toi4, comnb_i8toi8,
    comnb_i8toui2, comnb_i8toui4, comnb_i8toui8, comnb_i8toflt4, comnb_i8toflt8;
TVXCOMN_API comnb_conversion comnb_ui2tobit, comnb_ui2toi1, comnb_ui2toi2, comnb_ui2toi4,
    comnb_ui2toi8, comnb_ui2toui2, comnb_ui2toui4, comnb_ui2toui8, comnb_ui2toflt4, comnb_ui2toflt8;
TVXCOMN_API comnb_conversion comnb_ui4tobit, comnb_ui4toi1, comnb_ui4toi2, comnb_ui4toi4,
    comnb_ui4toi8, comnb_ui4toui2, comnb_ui4toui4, comnb_ui4toui8, comnb_ui4toflt4, comnb_ui4toflt8;
TVXCOMN_API comnb_conversion comnb_ui8tobit, comnb_ui8toi1, comnb_ui8toi2, comnb_ui8toi4,
    comnb_ui8toi8, comnb_ui8toui2, comnb_ui8toui4, comnb_ui8toui8, comnb_ui8toflt4, comnb_ui8toflt8;
TVXCOMN_API comnb_conversion comnb_flt4tobit, comnb_flt4toi1, comnb_flt4toi2, comnb_flt4toi4,
    comnb_flt4toi8, comnb_flt4toui2, comnb_flt4toui4, comnb_flt4toui8, comnb_flt4toflt4,
    comnb_flt4toflt8;
TVXCOMN_API comnb_conversion comnb_flt8tobit, comnb_flt8toi1, comnb_flt8toi2, comnb_flt8toi4,
    comnb_flt8toi8, comnb_flt8toui2, comnb_flt8toui4, comnb_flt8toui8, comnb_flt8toflt4,
    comnb_flt8toflt8;
TVXCOMN_API comnb_conversion comnb_bittochar, comnb_bittovarchar;

TVXCOMN_END

#endif
