/* Dates and times from text, and what a locale says of dates.
 *
 * A text has a date, a time or both, in either order: numbers with separators ("12/31/99",
 * "2003-01-02"), a month by name ("Jan 2, 2003"), six or eight digits ("20030102") or a year alone;
 * "10:30:15.25", "2:05PM", "10 pm"; "2003-01-02T10:30". A year of fewer than four digits is one of
 * 1950 to 2049. A text without a date is on 1900-01-01 (bigdatetime: 0001-01-01), one without a
 * time at midnight. */
#ifndef TVXCOMN_DATEPARSE_H
#define TVXCOMN_DATEPARSE_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* ---- Conversions -------------------------------------------------------------------------
 *
 * From char and varchar, towards datetime (and bigdatetime), date4, datea, timea (and bigtime).
 * Names, order and date format code come from the source's locale. CS_CONV_SYNTAX: the text is no
 * date; output length 0. CS_CONV_OVERFLOW: its date is out of range; destination and output length
 * keep what they had. A fraction is rounded to what the type can hold. */

TVXCOMN_API comn_conversion comn_chartodatetime, comn_chartodate4, comn_chartodatea,
    comn_chartotimea;
TVXCOMN_API comn_conversion comn_varchartodatetime, comn_varchartodate4, comn_varchartodatea,
    comn_varchartotimea;

/* The bare twins read with the built-in English names, order month-day-year and format code 0. */
TVXCOMN_API comnb_conversion comnb_chartodatetime, comnb_chartodate4, comnb_chartodatea,
    comnb_chartotimea, comnb_chartobigdatetime, comnb_chartobigtime;
TVXCOMN_API comnb_conversion comnb_varchartodatetime, comnb_varchartodate4;

/* ---- Parsers -----------------------------------------------------------------------------
 *
 * `length` is in bytes. `order` is 1 to 6: month-day-year, day-month-year, year-month-day,
 * year-day-month, month-year-day, day-year-month; any other is a fatal usage error. The format code
 * overrides it in numeric dates:
 *
 *   0, 9               the order; a year of four digits may stand anywhere, and at the start of the
 *                      text it makes the order year-month-day (unless year-day-month)
 *   1, 10              month-day-year, and the year has fewer than four digits
 *   2, 11, 21, 22, 23  year-month-day, likewise
 *   3, 4, 5            day-month-year, likewise
 *   101, 110           month-day-year, and the year has four digits
 *   102, 111           year-month-day, likewise
 *   103, 104, 105      day-month-year, likewise
 *   any other          numeric dates are syntax errors
 *
 * `months` and `short_months` are 12 names each, January first; when either is null, names of
 * months are syntax errors. `attributes` may be null: the built-in ones. The status is one of the
 * COM_DATE_ codes below; the value is stored with COM_DATE_DONE only. `lost_digits` becomes 1 when
 * a fraction had to be rounded to milliseconds, else 0. */

#define COM_DATE_DONE 0
#define COM_DATE_BAD_TOKEN (-1) /* a bad token, or an expected one is missing */
#define COM_DATE_LEFT_OVER (-2) /* the text has more than a date and a time */
#define COM_DATE_OUT_OF_RANGE 1 /* year, hour, minute, second or the value */
#define COM_DATE_BAD_MONTH 2
#define COM_DATE_BAD_DAY 3
#define COM_DATE_BAD_MARKER 9 /* "AM" or "PM" after an hour that has none */

/* Date and time, from 1753-01-01 on. */
TVXCOMN_API int32_t com__datefromchar_mb(const char* text, int32_t length, int32_t format_code,
                                         int32_t order, const char* const* months,
                                         const char* const* short_months,
                                         const com_charattr* attributes, comn_datetime* value,
                                         int32_t* lost_digits);

/* A time and nothing else, on 1900-01-01. */
TVXCOMN_API int32_t com__timefromchar_mb(const char* text, int32_t length, int32_t format_code,
                                         int32_t order, const char* const* months,
                                         const char* const* short_months,
                                         const com_charattr* attributes, comn_datetime* value);

/* The day number of the date; what else the text has is ignored. */
TVXCOMN_API int32_t com__dateafromchar_mb(const char* text, int32_t length, int32_t format_code,
                                          int32_t order, const char* const* months,
                                          const char* const* short_months,
                                          const com_charattr* attributes, int32_t* value);

/* The ticks of the time; what else the text has is ignored. */
TVXCOMN_API int32_t com__timeafromchar_mb(const char* text, int32_t length, int32_t format_code,
                                          int32_t order, const char* const* months,
                                          const char* const* short_months,
                                          const com_charattr* attributes, int32_t* value,
                                          int32_t* lost_digits);

/* ---- What a locale says of dates ---------------------------------------------------------
 *
 * The locale is the format's, else the context's default; without one the built-in answers stand.
 * Both arguments may be null. The names belong to the locale. */

TVXCOMN_API const char* const* com_intl_months(comn_context* context, const comn_datafmt* format);
TVXCOMN_API const char* const* com_intl_shortmonths(comn_context* context,
                                                    const comn_datafmt* format);
/* 7, the first day of the week first; built-in: "Sun" to "Sat". */
TVXCOMN_API const char* const* com_intl_days(comn_context* context, const comn_datafmt* format);
/* 1 (Monday) to 7 (Sunday). */
TVXCOMN_API int32_t com_intl_firstday(comn_context* context, const comn_datafmt* format);
/* Three letters, as "mdy", and their number, 1 to 6 as the parsers take it. */
TVXCOMN_API const char* com_intl_dateorder(comn_context* context, const comn_datafmt* format);
TVXCOMN_API int32_t com_intl_dateorder_id(comn_context* context, const comn_datafmt* format);
/* 1 when times are shown on a 12-hour clock, else 0. */
TVXCOMN_API int32_t com_intl_is12hour(comn_context* context, const comn_datafmt* format);

TVXCOMN_END

#endif
