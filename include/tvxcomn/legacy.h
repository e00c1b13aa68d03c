/* The legacy conversions: bare buffers and lengths instead of data formats, the built-in character
 * attributes (or a record given to the com_mb_ forms) instead of a locale, and a byte count as the
 * result.
 *
 * A name says the source and the kind of destination. Text goes to
 *   char       a field, filled with blanks; a negative length means unbounded
 *   string     the same with a zero byte in its last place; a length below 1 means unbounded, with
 *              the zero byte right behind the value
 *   ntbstring  the value and a zero byte; a length below 1 means unbounded. A copied text loses its
 *              trailing blanks first
 *   varychar   a 16-bit length and the bytes (for binary data varybin); the destination length does
 *              not count the two bytes of the length; a negative one means unbounded
 * and binary data to raw bytes. A value exactly as long as a string or ntbstring does not fit, for
 * want of the zero byte; with a length of 1 only that byte is written.
 *
 * Results: the bytes of the value (without fill, terminator or length field), the size of the type
 * for a fixed one; 0 when the source is null or empty or the destination null; and
 *   -1  overflow, or a value that was cut. The text of a number that does not fit is "*", if there
 *       is room for that, copies are cut at the end
 *   -2  below the range: i4 to i2, a float text too small, a negative number towards an unsigned
 *       one
 *   -3  the text is no literal of the type
 *   -5  a null value longer than the destination; it is cut
 *   -6  the source is no legal value of its type
 *   -7  the precision of a numeric is out of range
 *   -8  its scale is
 * Result codes of the data-format layer that have no such number come through as they are
 * (CS_CONV_TRUNCATED from num to and from raw binary data, and from text and numerics to num). A
 * negative source length is a fatal usage error; the source length of a fixed type, a varychar or a
 * varybin only says whether there is a value. A destination of a fixed type gets its whole size,
 * whatever the destination length is. */
#ifndef TVXCOMN_LEGACY_H
#define TVXCOMN_LEGACY_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

typedef int32_t com_conversion(const void* source, int32_t source_length, void* destination,
                               int32_t destination_length);

/* ---- Integers and floats among themselves ------------------------------------------------ */

/* A value out of range leaves the destination alone; floats are truncated towards zero. */
TVXCOMN_API com_conversion com_i1toi1, com_i1toi2, com_i1toi4, com_i1toflt4, com_i1toflt8;
TVXCOMN_API com_conversion com_i2toi1, com_i2toi2, com_i2toi4, com_i2toflt4, com_i2toflt8;
TVXCOMN_API com_conversion com_i4toi1, com_i4toi2, com_i4toi4, com_i4toflt4, com_i4toflt8;
TVXCOMN_API com_conversion com_flt4toi1, com_flt4toi2, com_flt4toi4, com_flt4toflt4, com_flt4toflt8;
TVXCOMN_API com_conversion com_flt8toi1, com_flt8toi2, com_flt8toi4, com_flt8toflt4, com_flt8toflt8;

/* ---- Numbers to text --------------------------------------------------------------------- */

TVXCOMN_API com_conversion com_i1tochar, com_i1tostring, com_i1tontbstring, com_i1tovarychar;
TVXCOMN_API com_conversion com_i2tochar, com_i2tostring, com_i2tontbstring, com_i2tovarychar;
TVXCOMN_API com_conversion com_i4tochar, com_i4tostring, com_i4tontbstring, com_i4tovarychar;

/* Seventeen significant digits, no "0" before the point of a positive number below 1; a number
 * without point and exponent gets ".0" unless `leaves_out_point` is not zero. */
typedef int32_t com_float_text(const void* source, int32_t source_length, void* destination,
                               int32_t destination_length, int32_t leaves_out_point);
TVXCOMN_API com_float_text com_flt4tochar, com_flt4tostring, com_flt4tontbstring,
    com_flt4tovarychar;
TVXCOMN_API com_float_text com_flt8tochar, com_flt8tostring, com_flt8tontbstring,
    com_flt8tovarychar;

/* Two digits behind the point, no commas. */
TVXCOMN_API com_conversion com_moneytochar, com_moneytostring, com_moneytontbstring,
    com_moneytovarychar;
TVXCOMN_API com_conversion com_mny4tochar, com_mny4tostring, com_mny4tontbstring,
    com_mny4tovarychar;

/* ---- Text to numbers --------------------------------------------------------------------- */

/* A null record means the built-in one. */
typedef int32_t com_mb_conversion(const void* source, int32_t source_length, void* destination,
                                  int32_t destination_length, const com_charattr* attributes);

/* A number out of range leaves what comn_chartoi4 and its kin leave in the destination. */
TVXCOMN_API com_conversion com_chartoi1, com_chartoi2, com_chartoi4;
TVXCOMN_API com_conversion com_varychartoi1, com_varychartoi2, com_varychartoi4;
TVXCOMN_API com_mb_conversion com_mb_chartoi1, com_mb_chartoi2, com_mb_chartoi4;
TVXCOMN_API com_mb_conversion com_mb_varychartoi1, com_mb_varychartoi2, com_mb_varychartoi4;

/* As strtod reads them, at any length; on overflow the largest finite value is stored, below the
 * range zero. The com_mb_ forms take decimal numbers only: blanks and tabs, a sign, digits with at
 * most one point, an exponent with digits; white space of any kind may follow. They return
 * CS_MEM_ERROR, which is also -1, when memory for a long multibyte text runs out. */
TVXCOMN_API com_conversion com_chartoflt4, com_chartoflt8, com_varychartoflt4, com_varychartoflt8;
TVXCOMN_API com_mb_conversion com_mb_chartoflt4, com_mb_chartoflt8, com_mb_varychartoflt4,
    com_mb_varychartoflt8;

/* 1 when one of the digits is not 0; only blanks may follow the digits. */
TVXCOMN_API com_conversion com_chartobit, com_varychartobit;

/* An amount out of range stores the limit. */
TVXCOMN_API com_conversion com_chartomoney, com_chartomny4, com_varychartomoney, com_varychartomny4;

/* ---- Copies of text ---------------------------------------------------------------------- */

TVXCOMN_API com_conversion com_chartochar, com_chartostring, com_chartontbstring,
    com_chartovarychar;
TVXCOMN_API com_conversion com_varychartochar, com_varychartostring, com_varychartontbstring,
    com_varychartovarychar;

/* ---- Binary data ------------------------------------------------------------------------- */

/* Lower-case hexadecimal digits, two a byte; a cut falls between bytes. */
TVXCOMN_API com_conversion com_bintochar, com_bintostring, com_bintontbstring, com_bintovarychar;

/* Hexadecimal digits of either case, as comn_chartobin reads them. */
TVXCOMN_API com_conversion com_chartobinary, com_varychartobinary;

/* Copies: as many bytes as both sides have. com_anytobinary fills the rest with zero bytes. */
TVXCOMN_API com_conversion com_anytobinary, com_anytovarybin;
TVXCOMN_API com_conversion com_bintoi1, com_bintoi2, com_bintoi4, com_bintoflt4, com_bintoflt8,
    com_bintomoney, com_bintomny4, com_bintodatetime, com_bintodate4;
TVXCOMN_API com_conversion com_varybintoi1, com_varybintoi2, com_varybintoi4, com_varybintoflt4,
    com_varybintoflt8, com_varybintomoney, com_varybintomny4, com_varybintodatetime,
    com_varybintodate4;

/* ---- Exact numerics ---------------------------------------------------------------------- */

/* The rules and output lengths of comn_i4tonum and its kin; CS_TAKE_FROM_SOURCE where they take
 * it. */
typedef int32_t com_numeric_conversion(const void* source, int32_t source_length, void* destination,
                                       int32_t destination_length, int32_t precision,
                                       int32_t scale);
typedef int32_t com_mb_numeric_conversion(const void* source, int32_t source_length,
                                          void* destination, int32_t destination_length,
                                          int32_t precision, int32_t scale,
                                          const com_charattr* attributes);
TVXCOMN_API com_numeric_conversion com_bittonum, com_i1tonum, com_i2tonum, com_i4tonum,
    com_flt4tonum, com_flt8tonum, com_moneytonum, com_mny4tonum, com_numtonum;
TVXCOMN_API com_numeric_conversion com_bintonum, com_varybintonum, com_chartonum, com_varychartonum;
TVXCOMN_API com_mb_numeric_conversion com_mb_chartonum, com_mb_varychartonum;
TVXCOMN_API com_conversion com_numtobit, com_numtoi1, com_numtoi2, com_numtoi4, com_numtoflt4,
    com_numtoflt8, com_numtomoney, com_numtomny4;
TVXCOMN_API com_conversion com_numtochar, com_numtostring, com_numtontbstring, com_numtovarychar,
    com_numtobinary, com_numtovarybin;

/* ---- Dates ------------------------------------------------------------------------------- */

/* `style` is a date format code (see dateformat.h), the twelve short month names may be null for
 * the built-in ones. An unknown style writes the empty text and returns -1. */
typedef int32_t com_date_text(const void* source, int32_t source_length, void* destination,
                              int32_t destination_length, int32_t style,
                              const char* const* short_months);
TVXCOMN_API com_date_text com_datetochar, com_datetostring, com_datetontbstring, com_datetovarychar;
TVXCOMN_API com_date_text com_date4tochar, com_date4tostring, com_date4tontbstring,
    com_date4tovarychar;

/* The order is month, day, year; null names mean the built-in ones. -1 for a date out of range. */
typedef int32_t com_text_date(const void* source, int32_t source_length, void* destination,
                              int32_t destination_length, int32_t format_code,
                              const char* const* months, const char* const* short_months);
typedef int32_t com_mb_text_date(const void* source, int32_t source_length, void* destination,
                                 int32_t destination_length, int32_t format_code,
                                 const char* const* months, const char* const* short_months,
                                 const com_charattr* attributes);
TVXCOMN_API com_text_date com_chartodatetime, com_chartodate4, com_varychartodatetime,
    com_varychartodate4;
TVXCOMN_API com_mb_text_date com_mb_chartodatetime, com_mb_varychartodatetime;

/* ---- Null values ------------------------------------------------------------------------- */

/* Write the caller's null value, by kind; without one the empty value of the kind: blanks, zero
 * bytes, the empty text, length 0. A null value shorter than a fixed type is followed by zero
 * bytes. Nothing is done to a null destination. The result counts as that of a conversion. */
typedef int32_t com_null_setter(void* destination, int32_t destination_length, const void* value,
                                int32_t value_length);
TVXCOMN_API com_null_setter com_setcharnull, com_setstringnull, com_setntbstringnull,
    com_setvarycharnull, com_setbinarynull, com_setvarybinnull;
TVXCOMN_API com_null_setter com_setmoneynull, com_setmny4null, com_setflt4null, com_setdatetimenull,
    com_setdatetime4null;

/* A numeric null value is brought to precision and scale; without one the digits are zero. */
TVXCOMN_API int32_t com_setnumnull(void* destination, int32_t destination_length, const void* value,
                                   int32_t value_length, int32_t precision, int32_t scale);

/* ---- Money arithmetic -------------------------------------------------------------------- */

/* Each is the comn_ operation of its name, and returns its result code. */
TVXCOMN_API int32_t com_mnyadd(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com_mnysub(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com_mnymul(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com_mnydivide(const comn_money* a, const comn_money* b, comn_money* result);
TVXCOMN_API int32_t com_mnyminus(const comn_money* source, comn_money* destination);
TVXCOMN_API int32_t com_mnyinc(comn_money* value);
TVXCOMN_API int32_t com_mnydec(comn_money* value);
TVXCOMN_API int32_t com_mnyscale(comn_money* value, uint32_t multiplier, int32_t addend);
TVXCOMN_API int32_t com_mnycopy(const comn_money* source, comn_money* destination);
TVXCOMN_API int32_t com_mny4add(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com_mny4sub(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com_mny4mul(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com_mny4divide(const int32_t* a, const int32_t* b, int32_t* result);
TVXCOMN_API int32_t com_mny4minus(const int32_t* source, int32_t* destination);

/* ---- Helpers ----------------------------------------------------------------------------- */

/* Removes the trailing blanks of a field of `length` bytes and writes a zero byte behind the last
 * other one; a field without trailing blanks gets it behind its end, where there must be room. */
TVXCOMN_API void com__padntbstring(char* text, int32_t length);

/* Copies, the areas may overlap; clears. A count below 1 does nothing. */
TVXCOMN_API void com_bmove(const void* from, void* to, int32_t count);
TVXCOMN_API void com__bzero(void* to, int32_t count);

TVXCOMN_END

#endif
