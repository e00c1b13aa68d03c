/* Exact numerics: signed decimal numbers of up to 77 digits with a fixed number of digits behind
 * the point.
 *
 * A numeric travels in two shapes. The record comn_numeric begins with precision and scale; only
 * its first 2 + comn_num_getlen(precision) bytes are meaningful. The primitives take a descriptor,
 * a comnb_value with the length of the sign and magnitude (2 to 33), precision, scale and a pointer
 * to the sign byte. The magnitude is an unsigned big-endian integer, the value times 10^scale. The
 * sign is 1 for values below zero and 0 for others; a negative zero is taken as zero.
 *
 * A null pointer is a fatal usage error wherever nothing else is said.
 */
#ifndef TVXCOMN_NUMERIC_H
#define TVXCOMN_NUMERIC_H

#include <stdint.h>

#include "tvxcomn/datatypes.h"
#include "tvxcomn/export.h"

TVXCOMN_BEGIN

/* ---- Tables ------------------------------------------------------------------------------ */

/* Length in bytes of the sign and magnitude of `precision` digits, 1 to 77: the sign byte and the
 * bytes that hold 10^precision - 1. Any other precision is a fatal usage error. */
TVXCOMN_API int32_t comn_num_getlen(int32_t precision);

/* The most digits that always fit a sign and magnitude of `length` bytes, 2 to 33. Any other length
 * is a fatal usage error. */
TVXCOMN_API int32_t comn_num_getprec(int32_t length);

/* The same tables by entry: lengths by precision 0 (as 1) to 77, and precisions by length - 2,
 * which are 255 for the three entries behind the last, 32 to 34. Any other index is a fatal usage
 * error. */
TVXCOMN_API int32_t comb_get_Prec_To_Len(int32_t precision);
TVXCOMN_API int32_t comb_get_Len_To_Prec(int32_t index);

/* Byte `index`, 0 to 33, of 10^exponent, 0 to 77, or its address: a row has the length of the sign
 * and the fewest magnitude bytes, a zero sign byte, the magnitude, and zeros behind it. Other
 * arguments are fatal usage errors. */
TVXCOMN_API int32_t comb_get_Byte_Power_val(int32_t exponent, int32_t index);
TVXCOMN_API const uint8_t* comb_get_Byte_Power_ptr(int32_t exponent, int32_t index);

/* Tables that are no longer kept: 0.0 for every argument. */
TVXCOMN_API double comb_get_Flt_Power(int32_t index);
TVXCOMN_API double comb_get_Flt_256(int32_t index);

/* The address of a row, 0 to 255, of the key table of the legacy credential encoding: 33 bytes. Any
 * other index is a fatal usage error. */
TVXCOMN_API const uint8_t* comb_get_Netkey(int32_t index);

/* ---- Arithmetic on records --------------------------------------------------------------- */

/* Each sets the result's precision and scale, with pa, sa, pb, sb the operands':
 *
 *   sum, difference  max(pa - sa, pb - sb) integer digits, scale max(sa, sb), precision one more
 *   product          pa - sa + pb - sb + 1 integer digits, scale sa + sb
 *   quotient         pa - sa + sb integer digits, scale max(6, sb + pa + 1)
 *
 * up to 77 digits in all, the integer digits first; what lies behind the scale is cut off. Operands
 * of a sum are first brought to one type, the integer digits and the scale of the larger, 77 digits
 * at most. The result may be one of the operands.
 *
 * CS_SUCCEED. CS_CONV_DOMAIN when an operand has a precision outside 1 to 77 or a scale above 77,
 * CS_CONV_OVERFLOW when no digit is left for the result's type or an operand of a sum does not fit
 * the one type: nothing is written. CS_CONV_OVERFLOW when the value does not fit the result's type,
 * or the magnitudes' product 256 bits, and CS_CONV_DIVZERO: the result is zero of its type. */
TVXCOMN_API int32_t comn_numadd(const comn_numeric* a, const comn_numeric* b, comn_numeric* result);
TVXCOMN_API int32_t comn_numsub(const comn_numeric* a, const comn_numeric* b, comn_numeric* result);
TVXCOMN_API int32_t comn_nummul(const comn_numeric* a, const comn_numeric* b, comn_numeric* result);
TVXCOMN_API int32_t comn_numdivide(const comn_numeric* a, const comn_numeric* b,
                                   comn_numeric* result);

/* -1, 0 or 1 as a is less than, equal to or greater than b, whatever their scales; CS_CONV_DOMAIN
 * when either has a header as above. When a value does not fit 77 digits at the scale of the other,
 * the other's surplus digits are not compared. */
TVXCOMN_API int32_t comn_numcmp(const comn_numeric* a, const comn_numeric* b);

/* ---- Primitives on descriptors ----------------------------------------------------------- */

/* They return a status, but where another answer is named. A length outside 2 to 33 is
 * COM_NUM_INVALID with nothing written. After any status but COM_NUM_DONE and COM_NUM_DROPPED the
 * sign and magnitude of the result are zero. Results may be operands. */
#define COM_NUM_DONE 0
#define COM_NUM_OVERFLOW 1 /* too long for the field, or more digits than the precision */
#define COM_NUM_INVALID 2  /* an argument outside its range, or a text that is no number */
#define COM_NUM_DIVZERO 3
#define COM_NUM_DROPPED 6 /* digits other than zero were cut off; the rest stands */

/* a + b, or a - b unless `subtract` is 0, for operands of one scale. The result has its precision
 * and scale already; losing digits behind it is an overflow. */
TVXCOMN_API int32_t com__exctnume_addorsub(const comnb_value* a, const comnb_value* b,
                                           comnb_value* result, int32_t subtract);

/* a * b and a / b at the result's precision and scale, digits behind it cut off. The remainder,
 * unless it is null, gets the magnitude that the division of magnitudes leaves and the sign of a;
 * behind its point stand as many digits as the result's scale and b's together, or a's scale when
 * those are more. */
TVXCOMN_API int32_t com__exctnume_mul(const comnb_value* a, const comnb_value* b,
                                      comnb_value* result);
TVXCOMN_API int32_t com__exctnume_div(const comnb_value* a, const comnb_value* b,
                                      comnb_value* result, comnb_value* remainder);

/* Multiplies the magnitude by 10^digits, into `out` or, when that is null, in place; headers are
 * left as they are. 78 and more digits are COM_NUM_INVALID. Below 0 the magnitude is cut off:
 * COM_NUM_DROPPED, or, with rounding allowed, COM_NUM_DONE with halves rounded away from zero. */
TVXCOMN_API int32_t com__exctnume_scale(comnb_value* value, comnb_value* out, int32_t digits,
                                        int32_t rounding_allowed);

/* Copies sign and magnitude to a field of another length. */
TVXCOMN_API int32_t com__exctnume_copy(const comnb_value* from, comnb_value* to);

/* Rounds to `digits` behind the point, halves away from zero, and sets the scale of `out`, which is
 * the value's when it has no more. Digits below 0 are COM_NUM_INVALID. */
TVXCOMN_API int32_t com__exctnume_round(const comnb_value* value, int32_t digits, comnb_value* out);

/* The least integer not below the value, or, when `ceiling` is 0, the greatest not above it; the
 * scale of `out` becomes 0. */
TVXCOMN_API int32_t com__exctnume_ceilingfloor(const comnb_value* value, comnb_value* out,
                                               int32_t ceiling);

/* Add one to the magnitude and take one off it, whatever the sign; below zero is an overflow. */
TVXCOMN_API int32_t com__exctnume_inc(comnb_value* value);
TVXCOMN_API int32_t com__exctnume_dec(comnb_value* value);

/* Divides the magnitude by ten; the remainder is 0 to 9. */
TVXCOMN_API int32_t com__exctnume_divby10(comnb_value* value, int32_t* remainder);

/* 1 when the magnitude has more digits than the precision, else 0. */
TVXCOMN_API int32_t com__exctnume_checkprecision(const comnb_value* value);

/* 1 when the magnitude is n, else 0. */
TVXCOMN_API int32_t com__exctnume_intcmp(const comnb_value* value, int32_t n);

/* -1, 0 or 1. Mode bit 0 compares with the signs, else magnitudes; bit 1 at one scale, as
 * comn_numcmp does, else as the magnitudes stand. */
TVXCOMN_API int32_t com__exctnume_cmp(const comnb_value* a, const comnb_value* b, int32_t mode);

/* ---- Numerics from machine numbers and text ---------------------------------------------- */

/* Store a number in a sign and magnitude of `length` bytes at the precision and scale given. When
 * the precision is none of 1 to 77 it becomes the most digits that the field always holds, and the
 * scale 0. A status as above; a double is taken with 17 significant digits, halves rounded away
 * from zero at the scale, which for 255 is its own; infinities and NaNs are COM_NUM_INVALID. */
TVXCOMN_API int32_t com__longtoexctnume(int32_t number, uint8_t* field, int32_t length,
                                        uint8_t* precision, uint8_t* scale);
TVXCOMN_API int32_t com__ulongtoexctnume(uint32_t number, uint8_t* field, int32_t length,
                                         uint8_t* precision, uint8_t* scale);
TVXCOMN_API int32_t com__longlongtoexctnume(int64_t number, uint8_t* field, int32_t length,
                                            uint8_t* precision, uint8_t* scale);
TVXCOMN_API int32_t com__ulonglongtoexctnume(uint64_t number, uint8_t* field, int32_t length,
                                             uint8_t* precision, uint8_t* scale);
TVXCOMN_API int32_t com__doubletoexctnume(double number, uint8_t* field, int32_t length,
                                          uint8_t* precision, uint8_t* scale);

/* Reads a text of single-byte characters: blanks, a sign, digits with at most one point, an
 * exponent ("e" or "E", a sign, digits; not a single digit with blanks behind), white space. No
 * digits are 0. A precision or scale of 255 in `out` is taken from the text, which with a precision
 * of 255 also sets the length; one that is greater than that handed over is COM_NUM_OVERFLOW.
 *
 * A digit behind the scale, or more digits than the field always holds, leading zeros not counted,
 * are COM_NUM_DROPPED, be they zeros, unless `rounding` is not 0: then halves are rounded away from
 * zero. After COM_NUM_DROPPED the value is zero too. A text that must be multiplied by 10^78 or
 * more for its scale is COM_NUM_INVALID. */
TVXCOMN_API int32_t com__subchartoexctnume(comnb_value* out, const char* text, int32_t length,
                                           int32_t rounding);

/* Writes the value's text, which has no terminator, right-aligned into a buffer of `size` bytes,
 * and returns its start; the length is set. Text: "-" below zero, at least one integer digit, and
 * behind a point as many digits as the scale. 80 bytes hold every text. Null, with length 0, when
 * the text is longer than the buffer, the length of the field is none of 2 to 33, or the scale is
 * above 77. */
TVXCOMN_API char* com__subexctnumetochar(const comnb_value* value, char* buffer, int32_t size,
                                         int32_t* length);

/* ---- Conversions ------------------------------------------------------------------------- */

/* Scalars to numerics, of type comn_conversion. The record gets the precision (1 to 77, else
 * CS_CONV_BADPREC) and scale (0 to 77, else CS_CONV_BADSCALE) of its format; the output length
 * is 35. Floats are taken with 17 significant digits and rounded at the scale, halves away from
 * zero. A value with too many digits, an infinity and NaN are CS_CONV_OVERFLOW with the value zero.
 * For the 8-byte integers a precision of CS_TAKE_FROM_SOURCE gives precision 21 and scale 0. The
 * sources ui2, ui4 and ui8 are reached through the routine table. */
TVXCOMN_API comn_conversion comn_bittonum, comn_i1tonum, comn_i2tonum, comn_i4tonum, comn_i8tonum,
    comn_flt4tonum, comn_flt8tonum;

/* Numerics to scalars. A source whose precision is not 1 to 77, or whose scale is above 77, is
 * CS_CONV_DOMAIN with nothing written, here and below. Floats get the nearest value, with the limit
 * and CS_CONV_OVERFLOW beyond their range, and CS_CONV_UNDERFLOW when flt4 has but zero for another
 * value; integers follow the rules of flt8 (truncation, limits); i8 and ui8 get the integer part
 * exactly, or a limit with CS_CONV_OVERFLOW above and CS_CONV_UNDERFLOW below their range. */
TVXCOMN_API comn_conversion comn_numtobit, comn_numtoi1, comn_numtoi2, comn_numtoi4, comn_numtoi8,
    comn_numtoui2, comn_numtoui4, comn_numtoui8, comn_numtoflt4, comn_numtoflt8;

/* Numerics to numerics. Precision and scale may be CS_TAKE_FROM_SOURCE. Lost digits other than zero
 * are CS_CONV_TRUNCATED with the value cut off; too many digits, also before digits are cut off,
 * are CS_CONV_OVERFLOW with the value zero. The output length is 2 and the sign and magnitude of
 * the precision. */
TVXCOMN_API comn_conversion comn_numtonum;

/* Numerics as text: "-" below zero, integer digits, a point and as many digits as the scale. What
 * does not fit a char destination is cut at the end with CS_CONV_OVERFLOW. */
TVXCOMN_API comn_conversion comn_numtochar, comn_numtovarchar;

/* Text to numerics: the grammar of com__subchartoexctnume without rounding, on up to 1,024 bytes,
 * and up to the first zero byte when the source format has CS_FORMAT_TERMINATE. Precision and scale
 * may be CS_TAKE_FROM_SOURCE. CS_CONV_SYNTAX with output length 0; CS_CONV_TRUNCATED for digits
 * behind the scale and CS_CONV_OVERFLOW for too many digits, with the value zero. */
TVXCOMN_API comn_conversion comn_chartonum, comn_varchartonum;

/* The bare twins. A destination's precision and scale are those of its descriptor, its length
 * becomes that of the sign and magnitude, and a smaller maxlength is CS_CONV_OVERFLOW. Integers
 * that lack the numeric's fraction are CS_CONV_TRUNCATED; the integers narrower than 8 bytes report
 * both limits as CS_CONV_OVERFLOW. With numeric flag 1 digits of scale may be lost: numerics are
 * cut, texts rounded, with CS_SUCCEED. A precision or scale of 255 is taken from a text. Text that
 * does not fit is cut: CS_CONV_TRUNCATED behind the point, CS_CONV_OVERFLOW in front of it. */
TVXCOMN_API comnb_conversion comnb_bittonum, comnb_i1tonum, comnb_i2tonum, comnb_i4tonum,
    comnb_i8tonum, comnb_ui2tonum, comnb_ui4tonum, comnb_ui8tonum, comnb_flt4tonum, comnb_flt8tonum;
TVXCOMN_API comnb_conversion comnb_numtobit, comnb_numtoi1, comnb_numtoi2, comnb_numtoi4,
    comnb_numtoi8, comnb_numtoui2, comnb_numtoui4, comnb_numtoui8, comnb_numtoflt4, comnb_numtoflt8,
    comnb_numtonum;
TVXCOMN_API comnb_conversion comnb_numtochar, comnb_numtovarchar, comnb_chartonum,
    comnb_varchartonum;

TVXCOMN_END

#endif
