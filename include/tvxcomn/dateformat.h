/* Dates and times written as text, in the form that a date format code names; and the settings of a
 * locale for it.
 *
 * The forms, where the value is 2003-01-02 14:05:09.023 and "+100" shows what the code 100 above
 * writes:
 *
 *    0 Jan  2 2003  2:05PM           +100 the same, but see below of dates and times alone
 *    1 01/02/03                      +100 01/02/2003
 *    2 03.01.02                      +100 2003.01.02
 *    3 02/01/03                      +100 02/01/2003
 *    4 02.01.03                      +100 02.01.2003
 *    5 02-01-03                      +100 02-01-2003
 *    6 02 Jan 03                     +100 02 Jan 2003
 *    7 Jan 02, 03                    +100 Jan 02, 2003
 *    8 14:05:09                      +100 the same
 *    9 Jan  2 2003  2:05:09:023PM    +100 the same, but see below of dates and times alone
 *   10 01-02-03                      +100 01-02-2003
 *   11 03/01/02                      +100 2003/01/02
 *   12 030102                        +100 20030102
 *   13 03/02/01                      +100 2003/02/01
 *   14 01/03/02                      +100 01/2003/02
 *   15 02/03/01                      +100 02/2003/01
 *   16 Jan  2 2003 14:05:09          +100 the same
 *   17  2:05PM                       +100 the same
 *   18 14:05                         +100 the same
 *   19  2:05:09:023PM
 *   20 14:05:09:023
 *   21 03/01/02 14:05:09             +100 2003/01/02 14:05:09
 *   22 03/01/02  2:05PM              +100 2003/01/02  2:05PM
 *   23 2003-01-02T14:05:09
 *   36  2:05:09.023000PM             +100 the same
 *   37 14:05:09.023000               +100 the same
 *   38 Jan  2 03  2:05:09.023000PM   +100 Jan  2 2003  2:05:09.023000PM
 *   39 Jan  2 03 14:05:09.023000     +100 Jan  2 2003 14:05:09.023000
 *   40 03-01-02 14:05:09.023000      +100 2003-01-02 14:05:09.023000
 *
 * All other codes are refused. Names of months are written up to 9 characters long, AM and PM are
 * the same in every language. The milliseconds of the big types are rounded, but never up to the
 * next second. */
#ifndef TVXCOMN_DATEFORMAT_H
#define TVXCOMN_DATEFORMAT_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* ---- Formatters ------------------------------------------------------------------------------
 *
 * Write the text into a buffer of `length` bytes (below 0: as many as it takes, at most 35),
 * without a terminator. Return its length; 0 when the text was cut to the buffer;
 * COM_FORMAT_REFUSED; COM_FORMAT_NO_NAMES when the form has a month's name and `months`, 12 names,
 * is null. */

#define COM_FORMAT_REFUSED (-1)
#define COM_FORMAT_NO_NAMES (-2)

TVXCOMN_API int32_t com__datetochar(const comn_datetime* value, char* buffer, int32_t length,
                                    int32_t code, const char* const* months);
TVXCOMN_API int32_t com__date4tochar(const comn_datetime4* value, char* buffer, int32_t length,
                                     int32_t code, const char* const* months);
TVXCOMN_API int32_t com__bigdatetimetochar(const uint64_t* value, char* buffer, int32_t length,
                                           int32_t code, const char* const* months);

/* A date has the time 00:00, which the codes 0 and 9 do not write. */
TVXCOMN_API int32_t com__dateatochar(const int32_t* value, char* buffer, int32_t length,
                                     int32_t code, const char* const* months);

/* A time belongs to 1900-01-01, one of the big type to 0001-01-01. The codes 0 and 9 do not write
 * that date; 100 and 109 write it, with blanks for the leading zeros of the year. The forms that
 * have a date alone are a single zero byte. */
TVXCOMN_API int32_t com__timeatochar(const int32_t* value, char* buffer, int32_t length,
                                     int32_t code, const char* const* months);
TVXCOMN_API int32_t com__bigtimetochar(const uint64_t* value, char* buffer, int32_t length,
                                       int32_t code, const char* const* months);

/* The same under older names. */
TVXCOMN_API int32_t com_cvtdatetochar(const comn_datetime* value, char* buffer, int32_t length,
                                      int32_t code, const char* const* months);
TVXCOMN_API int32_t com_cvtdate4tochar(const comn_datetime4* value, char* buffer, int32_t length,
                                       int32_t code, const char* const* months);

/* Write a datetime in the form of code 9, respectively of the code given, fill the buffer with
 * blanks and return the length of the text. Null months are the short English ones. A null value or
 * a length of 0 for it returns 0 and writes nothing, a negative one is a fatal usage error; a text
 * that is cut or refused returns -1. */
TVXCOMN_API int32_t com_date2char(const comn_datetime* value, int32_t length, char* buffer,
                                  int32_t buffer_length, const char* const* months);
TVXCOMN_API int32_t com_date2char_ex(const comn_datetime* value, int32_t length, char* buffer,
                                     int32_t buffer_length, int32_t code,
                                     const char* const* months);

/* ---- Settings of a locale --------------------------------------------------------------------
 *
 * Those of the handle; when it is null, of the context's default locale. Both may be null. A
 * context without a locale has date order 1, date format code 0 and the 12-hour clock; without a
 * context either, each answer is 1. */

/* The date order: 1 month-day-year, 2 day-month-year, 3 year-month-day, 4 year-day-month,
 * 5 month-year-day, 6 day-year-month. */
TVXCOMN_API int32_t comn_dtloc_format(comn_context* context, comn_locale* locale);

/* The date format code. */
TVXCOMN_API int32_t comn_dtloc_format_fmt(comn_context* context, comn_locale* locale);
TVXCOMN_API int32_t comn_intl_get_dtfmt(comn_context* context, comn_locale* locale);

/* 1 for the 12-hour clock, else 0. */
TVXCOMN_API int32_t comn_dtloc_is12hour(comn_context* context, comn_locale* locale);

/* The date format code under which a conversion writes: that of the destination's locale, or 0 when
 * no form has it. The format may be null. */
TVXCOMN_API int32_t comn_get_datetochar_fmt(comn_context* context,
                                            const comn_datafmt* destination_format);

/* ---- Conversions -----------------------------------------------------------------------------
 *
 * Of types comn_conversion and comnb_conversion.
 *
 * The conversions write in the form of comn_get_datetochar_fmt, with the locale's short names of
 * months. A text longer than maxlength is delivered up to there, with CS_CONV_OVERFLOW, and with
 * CS_CONV_TRUNCATED when it is longer than three times maxlength. The routines of datetime also
 * take a bigdatetime, those of time a bigtime.
 *
 * The bare routines take the code from the bare context, and the names of months too, which those
 * of the big types need for a form with a name (CS_CONV_SYNTAX); to the others null names are the
 * short English ones. A refused code gives CS_CONV_BADSTYLE; with either result the length is 0. A
 * text that is too long is delivered up to the maximum length, with CS_CONV_TRUNCATED and without
 * completion. Towards varchar nothing is completed. */

TVXCOMN_API comn_conversion comn_datetochar, comn_date4tochar, comn_dateatochar, comn_timeatochar;
TVXCOMN_API comn_conversion comn_datetovarchar, comn_date4tovarchar, comn_dateatovarchar,
    comn_timeatovarchar;

TVXCOMN_API comnb_conversion comnb_datetochar, comnb_date4tochar, comnb_dateatochar,
    comnb_timeatochar, comnb_bigdatetimetochar, comnb_bigtimetochar, comnb_bigdatetimetovarchar;

/* ---- Current time ---------------------------------------------------------------------------- */

/* Tells the local time. Into a buffer, unless that is null, it writes the date, a blank, the time
 * and a zero byte: "01/02/03 14:05:09", the parts of the date in the order of `date_order` (as
 * comn_dtloc_format tells it; any other number is 1), or "01/02/03 02:05:09 PM" when `twelve_hour`
 * is 1, where the hour after midnight is 00. `*length_out` receives the bytes this takes. Into
 * `parts_out`, unless that is null, it stores eight numbers: year, month 0 to 11, day, day of the
 * year from 1, weekday from Sunday 0, hour, minute, second. Returns CS_SUCCEED; CS_FAIL when the
 * buffer is too small, with the parts not stored, or when there is no clock to read. */
TVXCOMN_API int32_t comn_time(int32_t date_order, int32_t twelve_hour, char* buffer,
                              int32_t buffer_length, int32_t* length_out, int32_t* parts_out);

TVXCOMN_END

#endif
