/* Numbers read from text and written as text: integers, unsigned integers, floats and bit.
 *
 * Reading. Integers: blanks, one sign, decimal digits, blanks; blanks may stand between sign and
 * digits, a text of blanks or a sign alone is 0. Floats: as the C library's strtod in the C locale,
 * up to 1,023 bytes, blanks removed from the end; an all-blank text is 0.0. Results: CS_SUCCEED;
 * CS_CONV_SYNTAX with output length 0; CS_CONV_OVERFLOW with a limit or what was read so far in the
 * destination; CS_CONV_UNDERFLOW for a float that became zero. Multibyte text is read through its
 * character attribute record.
 *
 * Writing. Integers: "-" and digits. Floats: as "%.17g" writes them, without the zero before a
 * leading point, and with ".0" behind a text that has neither "." nor "e", be it 2.0 or inf.0; -0.0
 * is written 0.0. Text goes through the completion step of its format. A number that does not fit a
 * char destination is written "*" (length 1, when maxlength is at least 2) with CS_CONV_OVERFLOW.
 *
 * The bare number writers deliver a number that does not fit not at all: CS_CONV_OVERFLOW with the
 * destination untouched. The bare float readers keep the destination's length 0 unless they
 * succeed.
 */
#ifndef TVXCOMN_NUMBERTEXT_H
#define TVXCOMN_NUMBERTEXT_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* ---- Conversions ------------------------------------------------------------------------- */

TVXCOMN_API comn_conversion comn_chartobit, comn_chartoi1, comn_chartoi2, comn_chartoi4,
    comn_chartoi8, comn_chartoui2, comn_chartoui4, comn_chartoui8, comn_chartoflt4, comn_chartoflt8;
TVXCOMN_API comn_conversion comn_varchartobit, comn_varchartoi1, comn_varchartoi2, comn_varchartoi4,
    comn_varchartoi8, comn_varchartoui2, comn_varchartoui4, comn_varchartoui8, comn_varchartoflt4,
    comn_varchartoflt8;

/* The sources ui2, ui4 and ui8 are reached through the routine table (com_conv_func). */
TVXCOMN_API comn_conversion comn_i1tochar, comn_i2tochar, comn_i4tochar, comn_i8tochar,
    comn_flt4tochar, comn_flt8tochar;
TVXCOMN_API comn_conversion comn_i1tovarchar, comn_i2tovarchar, comn_i4tovarchar, comn_i8tovarchar,
    comn_flt4tovarchar, comn_flt8tovarchar;

/* The bare twins. */
TVXCOMN_API comnb_conversion comnb_chartobit, comnb_chartoi1, comnb_chartoi2, comnb_chartoi4,
    comnb_chartoi8, comnb_chartoui2, comnb_chartoui4, comnb_chartoui8, comnb_chartoflt4,
    comnb_chartoflt8;
TVXCOMN_API comnb_conversion comnb_varchartobit, comnb_varchartoi1, comnb_varchartoi2,
    comnb_varchartoi4, comnb_varchartoi8, comnb_varchartoui2, comnb_varchartoui4,
    comnb_varchartoui8, comnb_varchartoflt4, comnb_varchartoflt8;
TVXCOMN_API comnb_conversion comnb_i1tochar, comnb_i2tochar, comnb_i4tochar, comnb_i8tochar,
    comnb_ui2tochar, comnb_ui4tochar, comnb_ui8tochar, comnb_flt4tochar, comnb_flt8tochar;
TVXCOMN_API comnb_conversion comnb_i1tovarchar, comnb_i2tovarchar, comnb_i4tovarchar,
    comnb_i8tovarchar, comnb_ui2tovarchar, comnb_ui4tovarchar, comnb_ui8tovarchar,
    comnb_flt4tovarchar, comnb_flt8tovarchar;

/* Hexadecimal text of up to 255 bytes to integer: an optional "0x" or "0X", zeros, then up to 8
 * (4-byte) or 16 (8-byte) digits of either case as a bit pattern. CS_CONV_TRUNCATED when a digit is
 * left over, CS_CONV_SYNTAX with value and length 0 at any other character, CS_CONV_OVERFLOW for a
 * longer text. */
TVXCOMN_API comnb_conversion comnb_hextoi4, comnb_hextoi8, comnb_hextoui4, comnb_hextoui8;

/* Integer to upper-case hexadecimal text, right-aligned in maxlength - 1 characters, padded with
 * "0" and followed by a zero byte; the destination's length is left as it is. CS_CONV_OVERFLOW when
 * high digits had to be dropped, CS_CONV_SYNTAX for a maxlength below 2 or a null data pointer. */
TVXCOMN_API comnb_conversion comnb_i4tohex, comnb_i8tohex, comnb_ui4tohex, comnb_ui8tohex;

/* ---- Parsers ----------------------------------------------------------------------------- */

#define COM_PARSE_NUMBER 4 /* a number was read */
#define COM_PARSE_EMPTY 0  /* the text was empty; value 0 */
#define COM_PARSE_OVERFLOW (-1)
#define COM_PARSE_SYNTAX (-2)

/* Read an integer and return one of the results above. On overflow the value is: 4-byte signed,
 * what was accumulated; 8-byte signed, the limit on the number's side; 4- and 8-byte unsigned, the
 * maximum; 2-byte, the low 16 bits of the number. On a syntax error: what was read before it
 * (2-byte: 0). A null record means single-byte text. */
TVXCOMN_API int32_t com__chtoi2_mb(const char* text, int32_t length, int16_t* value,
                                   const com_charattr* attributes);
TVXCOMN_API int32_t com__chtoi4_mb(const char* text, int32_t length, int32_t* value,
                                   const com_charattr* attributes);
TVXCOMN_API int32_t com__chtoi8_mb(const char* text, int32_t length, int64_t* value,
                                   const com_charattr* attributes);
TVXCOMN_API int32_t com__chtoui2_mb(const char* text, int32_t length, uint16_t* value,
                                    const com_charattr* attributes);
TVXCOMN_API int32_t com__chtoui4_mb(const char* text, int32_t length, uint32_t* value,
                                    const com_charattr* attributes);
TVXCOMN_API int32_t com__chtoui8_mb(const char* text, int32_t length, uint64_t* value,
                                    const com_charattr* attributes);

/* Maps multibyte text to single-byte characters where they have an ASCII form and copies the rest
 * as it is, until the text or the capacity is used up. Single-byte text is copied. Returns the
 * bytes written. */
TVXCOMN_API int32_t com__conv2ascii(const char* text, int32_t length, char* out, int32_t capacity,
                                    const com_charattr* attributes);

/* ---- Field writers; none writes a terminator --------------------------------------------- */

/* Decimal text of a value; "*" alone when it is longer than a width above 0. Returns the bytes
 * written. */
TVXCOMN_API int32_t com__itochar(int32_t value, char* destination, int32_t width);

/* The value right-aligned in |width| characters, padded with blanks (width below 0: zeros), low
 * digits only when there are more; then `trailing` unless it is 0. Returns the bytes written. */
TVXCOMN_API int32_t com__cpint(char* destination, int32_t value, int32_t trailing, int32_t width);

/* The source's characters up to its terminator or `maximum` of them; then `trailing` unless it is
 * 0. Returns the bytes written. */
TVXCOMN_API int32_t com__cpchar(char* destination, const char* source, int32_t trailing,
                                int32_t maximum);

TVXCOMN_END

#endif
