/* Money: amounts with four decimal places, -922337203685477.5808 to 922337203685477.5807 as
 * comn_money and -214748.3648 to 214748.3647 as int32_t, both counts of ten-thousandths. The values
 * are the caller's, arguments may be one and the same value, and no operation allocates. A null
 * pointer is a fatal usage error.
 */
#ifndef TVXCOMN_MONEY_H
#define TVXCOMN_MONEY_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* ---- Operations ---------------------------------------------------------------------------
 *
 * Result codes: CS_SUCCEED, CS_CONV_OVERFLOW, CS_CONV_DIVZERO. A sum, difference, product, quotient
 * or scaled value that overflows is stored as zero. */

/* result = a + b, a - b, a x b (rounded half away from zero), a / b (truncated towards zero; zero
 * and CS_CONV_DIVZERO when b is zero). */
TVXCOMN_API int32_t comn_mnyadd(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t comn_mnysub(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t comn_mnymul(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t comn_mnydivide(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t comn_mny4add(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t comn_mny4sub(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t comn_mny4mul(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t comn_mny4divide(const int32_t* a, const int32_t* b, int32_t* result);

/* destination = -source. The most negative amount stays itself: CS_CONV_OVERFLOW. */
TVXCOMN_API int32_t comn_mnyminus(const comn_money* source, comn_money* destination);
TVXCOMN_API int32_t comn_mny4minus(const int32_t* source, int32_t* destination);

/* Add (subtract) one ten-thousandth in place. CS_CONV_OVERFLOW: the largest amount has become the
 * most negative one (the reverse). */
TVXCOMN_API int32_t comn_mnyinc(comn_money* value);
TVXCOMN_API int32_t comn_mnydec(comn_money* value);

TVXCOMN_API int32_t comn_mnycopy(const comn_money* source, comn_money* destination);
TVXCOMN_API int32_t comn_mny4copy(const int32_t* source, int32_t* destination);

/* -1, 0 or 1: a is below, equal to or above b. */
TVXCOMN_API int32_t comn_mnycmp(const comn_money* a, const comn_money* b);
TVXCOMN_API int32_t comn_mny4cmp(const int32_t* a, const int32_t* b);

/* Store zero, the largest and the most negative amount. */
TVXCOMN_API void comn_mnyzero(comn_money* value);
TVXCOMN_API void comn_mny4zero(int32_t* value);
TVXCOMN_API void comn_mnymaxpos(comn_money* value);
TVXCOMN_API void comn_mnymaxneg(comn_money* value);

/* Multiplies the value by `multiplier` and takes it `addend` ten-thousandths, as an unsigned
 * number, further from zero. Multiplier 0 stores the addend itself, signed. The most negative
 * amount counts as an overflow. */
TVXCOMN_API int32_t comn_mnyscale(comn_money* value, uint32_t multiplier, int32_t addend);

/* Divides the value in place by the low 16 bits of `divisor`, truncating towards zero, and returns
 * the remainder of the magnitude, 0 to 65534. When they are zero the value stays and 0 is
 * returned. */
TVXCOMN_API int32_t comn_mnydown(comn_money* value, int32_t divisor);

/* Prepares a value for comn_mnyndigit: replaces it by its magnitude without the last `digits`
 * decimal digits, rounded half away from zero by the most significant one dropped. Returns -1 when
 * the value was negative, else 0. With no digit dropped the magnitude of the most negative amount
 * is that amount itself, from which comn_mnyndigit takes the right digits. */
TVXCOMN_API int32_t comn_mnyinit(comn_money* value, int32_t digits);

/* Takes the last decimal digit off the value and stores it as a character, "0" to "9". Returns 1
 * while the value that remains is not zero, else 0. */
TVXCOMN_API int32_t comn_mnyndigit(comn_money* value, char* digit);

/* quotient = dividend / low word of `divisor` (the number it holds, not an amount; its high word is
 * not read), truncated towards zero with the dividend's sign. By zero the quotient is zero. */
TVXCOMN_API void comn_mnyxdiv(const comn_money* dividend, const comn_money* divisor,
                              comn_money* quotient);

/* ---- Internal operations --------------------------------------------------------------------
 *
 * As their namesakes above, but they return one of these statuses. */

#define COM_MONEY_DONE 0
#define COM_MONEY_OVERFLOW 1
#define COM_MONEY_SYNTAX 2
#define COM_MONEY_DIVZERO 3

TVXCOMN_API int32_t com__mnyadd(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com__mnysub(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com__mnymul(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com__mnydiv(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com__mnyadd4(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com__mnysub4(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com__mnymul4(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com__mnydiv4(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com__mnyminus(const comn_money* source, comn_money* destination);
TVXCOMN_API int32_t com__mnyminus4(const int32_t* source, int32_t* destination);
TVXCOMN_API int32_t com__mnyinc(comn_money* value);
TVXCOMN_API int32_t com__mnycopy(const comn_money* source, comn_money* destination);
TVXCOMN_API int32_t com__mnyscale(comn_money* value, uint32_t multiplier, int32_t addend);
TVXCOMN_API int32_t com__mnyndigit(comn_money* value, char* digit); /* 1 or 0, as comn_mnyndigit */

/* There is no remainder: 1, and nothing is read or written. */
TVXCOMN_API int32_t com__mnyrem(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com__mnyrem4(const int32_t* a, const int32_t* b, int32_t* result);

/* Widens an amount. Returns COM_MONEY_DONE. */
TVXCOMN_API int32_t com__mny4tomny(const int32_t* source, comn_money* destination);

/* The amount as a double, high x 429496.7296 + low / 10000. `length` is not read. Returns 8. */
TVXCOMN_API int32_t com__mnytoflt8(const comn_money* value, int32_t length, double* destination);

/* The double rounded half away from zero at the fourth decimal, in steps of doubles: beyond 10^11
 * the last digits can differ from the nearest amount's. Returns 8; -1 with the amount zero when it
 * is out of range or NaN. A null source or a length of 0 is the amount zero. `ignored` is not
 * read. */
TVXCOMN_API int32_t com__flt8tomny(const double* source, int32_t length, comn_money* destination,
                                   int32_t ignored);

/* ---- Text ------------------------------------------------------------------------------------ */

/* Write an amount at the end of the buffer, without a terminator, and return its first character;
 * null, with nothing written, when the buffer is too small (24 bytes always do without commas). The
 * low byte of `flags` is 1 for a comma after every three integer digits; the bits above are the
 * digits after the point, to which the amount is rounded half away from zero: 0 means 2, above 4
 * means 4. A negative amount has its "-" even when the digits shown are all zero. */
TVXCOMN_API char* com__mnytochar(const comn_money* value, char* buffer, int32_t length,
                                 int32_t flags);
TVXCOMN_API char* com__mny4tochar(const int32_t* value, char* buffer, int32_t length,
                                  int32_t flags);
TVXCOMN_API char* com_cvtmnytochar(const comn_money* value, char* buffer, int32_t length,
                                   int32_t flags);
TVXCOMN_API char* com_cvtmny4tochar(const int32_t* value, char* buffer, int32_t length,
                                    int32_t flags);
/* With the digits as an argument of their own, joined to those of the flags by OR. */
TVXCOMN_API char* com_precmnytochar(const comn_money* value, char* buffer, int32_t length,
                                    int32_t flags, int32_t digits);

/* Reads an amount: blanks; one sign and one currency symbol (lexical class COM_LEX_CURRENCY) in
 * either order; digits with group commas and at most one point; blanks. The fifth fraction digit
 * rounds half away from zero, later ones do not count. A text without digits is zero. The first
 * comma has up to three or exactly seven digits before it, every further one exactly three since
 * the one before, and exactly three stand between the last and the point or the end. The ASCII
 * forms of multibyte characters count; a null record is the built-in one. Returns COM_MONEY_DONE,
 * or COM_MONEY_OVERFLOW or COM_MONEY_SYNTAX with the amount zero. `ignored` is not read; the text
 * may be null when it is empty. */
TVXCOMN_API int32_t com__mnyfromchar_mb(comn_money* value, const char* text, int32_t length,
                                        int32_t ignored, const com_charattr* attributes);

/* ---- Conversions -----------------------------------------------------------------------------
 *
 * Of types comn_conversion and comnb_conversion. A value out of range is stored as the limit on its
 * side, with CS_CONV_OVERFLOW; a NaN as zero, with the same code.
 *
 * Money to integers is rounded half away from zero. Towards i8 and ui8 that is the integer to which
 * the text rounds that the destination format's precision asks for (0: two digits), so 0.4999 is 1
 * with two digits and 0 with four. The unsigned codes ui2, ui4 and ui8 refuse every negative
 * amount: CS_CONV_OVERFLOW, the destination as it was. Bit is 0 for a zero amount, else 1.
 *
 * Towards text: the digits after the point are the destination format's precision (below 1: 2,
 * above 4: 4); there are no commas. A text that does not fit is delivered up to maxlength, with
 * CS_CONV_OVERFLOW. Text towards money is read as by com__mnyfromchar_mb: CS_CONV_SYNTAX with the
 * amount zero and output length 0, CS_CONV_OVERFLOW.
 *
 * Towards num, whose output length is 35: CS_CONV_BADPREC, CS_CONV_BADSCALE, CS_CONV_TRUNCATED when
 * the scale drops digits, CS_CONV_OVERFLOW when the precision is too small. Num towards money is
 * rounded half away from zero to four decimal places; CS_CONV_DOMAIN when its header is not legal.
 *
 * The bare twins that write text take the flags of com__mnytochar from date_format, from which
 * those towards i8 and ui8 take their digits. Under COMNB_RIGHTALIGN a text stands at the end of
 * the destination, whose other bytes are left alone or, with a fill flag, filled; towards varchar
 * there is neither alignment nor completion. The bare twins towards num count dropped digits as
 * success, and on overflow store as many nines as the precision has digits. */

TVXCOMN_API comn_conversion comn_i1tomoney, comn_i2tomoney, comn_i4tomoney, comn_i8tomoney,
    comn_flt4tomoney, comn_flt8tomoney, comn_numtomoney, comn_chartomoney, comn_varchartomoney;
TVXCOMN_API comn_conversion comn_i1tomny4, comn_i2tomny4, comn_i4tomny4, comn_i8tomny4,
    comn_flt4tomny4, comn_flt8tomny4, comn_numtomny4, comn_chartomny4, comn_varchartomny4;
TVXCOMN_API comn_conversion comn_moneytobit, comn_moneytoi1, comn_moneytoi2, comn_moneytoi4,
    comn_moneytoi8, comn_moneytoui2, comn_moneytoui4, comn_moneytoui8, comn_moneytoflt4,
    comn_moneytoflt8, comn_moneytomoney, comn_moneytomny4, comn_moneytonum, comn_moneytochar,
    comn_moneytovarchar;
TVXCOMN_API comn_conversion comn_mny4tobit, comn_mny4toi1, comn_mny4toi2, comn_mny4toi4,
    comn_mny4toi8, comn_mny4toui2, comn_mny4toui4, comn_mny4toui8, comn_mny4toflt4, comn_mny4toflt8,
    comn_mny4tomoney, comn_mny4tomny4, comn_mny4tonum, comn_mny4tochar, comn_mny4tovarchar;

TVXCOMN_API comnb_conversion comnb_bittomoney, comnb_i1tomoney, comnb_i2tomoney, comnb_i4tomoney,
    comnb_i8tomoney, comnb_ui2tomoney, comnb_ui4tomoney, comnb_ui8tomoney, comnb_flt4tomoney,
    comnb_flt8tomoney, comnb_numtomoney, comnb_chartomoney, comnb_varchartomoney;
TVXCOMN_API comnb_conversion comnb_bittomny4, comnb_i1tomny4, comnb_i2tomny4, comnb_i4tomny4,
    comnb_i8tomny4, comnb_ui2tomny4, comnb_ui4tomny4, comnb_ui8tomny4, comnb_flt4tomny4,
    comnb_flt8tomny4, comnb_numtomny4, comnb_chartomny4, comnb_varchartomny4;
TVXCOMN_API comnb_conversion comnb_moneytobit, comnb_moneytoi1, comnb_moneytoi2, comnb_moneytoi4,
    comnb_moneytoi8, comnb_moneytoui2, comnb_moneytoui4, comnb_moneytoui8, comnb_moneytoflt4,
    comnb_moneytoflt8, comnb_moneytomoney, comnb_moneytomny4, comnb_moneytonum, comnb_moneytochar,
    comnb_moneytovarchar;
TVXCOMN_API comnb_conversion comnb_mny4tobit, comnb_mny4toi1, comnb_mny4toi2, comnb_mny4toi4,
    comnb_mny4toi8, comnb_mny4toui2, comnb_mny4toui4, comnb_mny4toui8, comnb_mny4toflt4,
    comnb_mny4toflt8, comnb_mny4tomoney, comnb_mny4tomny4, comnb_mny4tonum, comnb_mny4tochar,
    comnb_mny4tovarchar;

TVXCOMN_END

#endif
