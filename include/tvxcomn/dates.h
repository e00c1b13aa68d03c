/* Dates and times: the parts of a value, cracking, comparison, names, and conversions among the six
 * types. All count from fixed epochs in the proleptic Gregorian calendar.
 *
 *   datetime     comn_datetime   days since 1900-01-01, ticks of 1/300 second since midnight;
 *                                1753-01-01 to 9999-12-31
 *   datetime4    comn_datetime4  days since 1900-01-01, minutes since midnight; to 2079-06-06
 *   date         int32_t         days since 1900-01-01; 0001-01-01 to 9999-12-31
 *   time         int32_t         ticks since midnight
 *   bigdatetime  uint64_t        microseconds since the start of a year 0 of 366 days; 0001-01-01
 *                                to 9999-12-31
 *   bigtime      uint64_t        microseconds since midnight
 *
 * Every pointer has to be valid unless it says otherwise; a null one is a fatal usage error. Any
 * bit pattern may be passed as a value: the calendar counts on beyond its years, 1 to 9999, with a
 * year 0 and negative years in front of them, and whole days that are part of a time are dropped
 * from a big one and are hours above 23 in ticks. */
#ifndef TVXCOMN_DATES_H
#define TVXCOMN_DATES_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* A value broken into its parts. The operations fill the fields they name and leave the others as
 * they were; `reserved` is the caller's. */
typedef struct comn_dateparts {
  int32_t year;        /* 1 to 9999 */
  int32_t month;       /* 0 to 11, January is 0 */
  int32_t day;         /* 1 to 31 */
  int32_t day_of_year; /* 1 to 366 */
  int32_t weekday;     /* 0 to 6, Sunday is 0 */
  int32_t hour;        /* 0 to 23 */
  int32_t minute;      /* 0 to 59 */
  int32_t second;      /* 0 to 59 */
  int32_t millisecond; /* 0 to 999; 0 from the big types */
  int32_t reserved;
  int32_t fraction;       /* of a second, in units of 1 / fraction_units; 0 from datetime */
  int32_t fraction_units; /* 300 from datetime and time, 1000000 from the big types */
} comn_dateparts;

/* Date parts, as the operations on parts number them. */
#define COM_PART_YEAR 0
#define COM_PART_QUARTER 1
#define COM_PART_MONTH 2
#define COM_PART_WEEKDAY 3
#define COM_PART_DAY 4
#define COM_PART_DAY_OF_YEAR 5
#define COM_PART_HOUR 6
#define COM_PART_MINUTE 7
#define COM_PART_SECOND 8
#define COM_PART_MILLISECOND 9
#define COM_PART_WEEK 10 /* weeks start on Sunday, week 1 holds 1 January */
#define COM_PART_ISO_YEAR 11
#define COM_PART_ISO_WEEK 12
#define COM_PART_ISO_WEEKDAY 13 /* 1 (Monday) to 7 (Sunday) */
#define COM_PART_MICROSECOND 14

/* ---- Cracking ------------------------------------------------------------------------------- */

/* Fill year, month, day, day_of_year and weekday of a datetime (comn_datetime) and of a bigdatetime
 * (uint64_t). */
TVXCOMN_API void com__datecrack(const void* datetime, comn_dateparts* parts);
TVXCOMN_API void com__bigdatecrack(const void* bigdatetime, comn_dateparts* parts);

/* Fill hour, minute, second, millisecond, fraction and fraction_units: of the low 25 bits of a
 * datetime's ticks (milliseconds truncated, the fraction 0); of a bigdatetime or bigtime (the
 * millisecond 0, the fraction microseconds). */
TVXCOMN_API void com__timecrack(const void* datetime, comn_dateparts* parts);
TVXCOMN_API void com__bigtimecrack(const void* big, comn_dateparts* parts);

/* The older entry points. Those of datetime know a record of the first ten fields only: fraction
 * and fraction_units are neither read nor written. */
TVXCOMN_API void com_datecrack(const void* datetime, comn_dateparts* parts);
TVXCOMN_API void com_timecrack(const void* datetime, comn_dateparts* parts);
TVXCOMN_API void com_bigdatecrack(const void* bigdatetime, comn_dateparts* parts);
TVXCOMN_API void com_bigtimecrack(const void* big, comn_dateparts* parts);

/* ---- Parts and names ------------------------------------------------------------------------ */

/* Return the value of a date part. `first_day` is the first day of the week, 1 (Monday) to 7
 * (Sunday); COM_PART_WEEKDAY is the position in that week, from 1. Quarters, months and weeks count
 * from 1; milliseconds are truncated; datetimes have no microseconds, 0. A part outside 0 to 14 is
 * a fatal usage error. */
TVXCOMN_API int32_t com__datepart(int32_t part, const comn_datetime* datetime, int32_t first_day);
TVXCOMN_API int32_t com__bigdatepart(int32_t part, const uint64_t* bigdatetime, int32_t first_day);
TVXCOMN_API int32_t com_datepart(int32_t part, const comn_datetime* datetime, int32_t first_day);

/* Write the text of a date part, without a terminator, and return its length in bytes. Month,
 * weekday and ISO weekday are names, cut to 30 bytes, of 12 months and of 7 weekdays that begin on
 * Sunday; a null list or name writes nothing. The other parts are decimal numbers of up to 4
 * characters, 6 for microseconds, or "*" when that is too few. A part outside 0 to 14 writes
 * nothing. */
TVXCOMN_API int32_t com__datename(int32_t part, const comn_datetime* datetime, char* buffer,
                                  const char* const* months, const char* const* weekdays);
TVXCOMN_API int32_t com__bigdatename(int32_t part, const uint64_t* bigdatetime, char* buffer,
                                     const char* const* months, const char* const* weekdays);
TVXCOMN_API int32_t com_datename(int32_t part, const comn_datetime* datetime, char* buffer,
                                 const char* const* months, const char* const* weekdays);

/* Return the built-in English names: 12 months, 12 months of three letters, 7 weekdays from Sunday.
 * They live as long as the library. */
TVXCOMN_API const char* const* com__get_months(void);
TVXCOMN_API const char* const* com__get_shortmonths(void);
TVXCOMN_API const char* const* com__get_weekdays(void);

/* ---- Ranges, comparison, setting ------------------------------------------------------------ */

/* Return 0 for a value in its range, else 1. Of a datetime only the day is looked at, and only that
 * it is not before 1753-01-01. */
TVXCOMN_API int32_t com__datetime_check_range(const comn_datetime* datetime);
TVXCOMN_API int32_t com__datea_check_range(const int32_t* date);
TVXCOMN_API int32_t com__timea_check_range(const int32_t* time);

/* The difference of the days, or of the ticks where the days are equal: a - b in 32 bits, which it
 * fits for values in their range. */
TVXCOMN_API int32_t com__datecmp(const comn_datetime* a, const comn_datetime* b);

/* -1, 0 or 1: a is before, equal to or after b. */
TVXCOMN_API int32_t com_datecmp(const comn_datetime* a, const comn_datetime* b);
TVXCOMN_API int32_t com_date4cmp(const comn_datetime4* a, const comn_datetime4* b);
TVXCOMN_API int32_t com_dateacmp(const int32_t* a, const int32_t* b);
TVXCOMN_API int32_t com_timeacmp(const int32_t* a, const int32_t* b);
TVXCOMN_API int32_t com_bigdatetimecmp(const uint64_t* a, const uint64_t* b);

/* Store 1900-01-01 00:00. */
TVXCOMN_API void com_datezero(comn_datetime* datetime);
TVXCOMN_API void com_date4zero(comn_datetime4* datetime4);

TVXCOMN_API void com_setdatetime(comn_datetime* datetime, int32_t days, uint32_t ticks);

/* ---- Internal conversions ------------------------------------------------------------------- */

/* Minutes become ticks. */
TVXCOMN_API void com__date4todt(const comn_datetime4* datetime4, comn_datetime* datetime);

/* The day number; the ticks. Neither is checked. */
TVXCOMN_API void com__datetodatea(const comn_datetime* datetime, int32_t* date);
TVXCOMN_API void com__datetotimea(const comn_datetime* datetime, int32_t* time);

/* A date at midnight; a time on 1900-01-01. Return what com__datetime_check_range says of the
 * result: for a date before 1753-01-01 1, with day 0 stored. */
TVXCOMN_API int32_t com__dateatodate(const int32_t* date, comn_datetime* datetime);
TVXCOMN_API int32_t com__timeatodate(const int32_t* time, comn_datetime* datetime);

/* Microseconds become milliseconds, truncated, and these ticks, rounded: of a bigdatetime within
 * the second, of which the last millisecond stays its last tick; of a bigtime, which becomes a time
 * of 1900-01-01, within the day. CS_SUCCEED; CS_CONV_TRUNCATED: done, but the microseconds were no
 * whole milliseconds; CS_CONV_UNDERFLOW: before 1753-01-01; CS_CONV_OVERFLOW: out of the source's
 * own range. A value that is refused leaves the datetime as it was. */
TVXCOMN_API int32_t com__bigdatetimetodate(const uint64_t* bigdatetime, comn_datetime* datetime);
TVXCOMN_API int32_t com__bigtimetodate(const uint64_t* bigtime, comn_datetime* datetime);

/* ---- Conversions ----------------------------------------------------------------------------
 *
 * Of types comn_conversion and comnb_conversion, named with date for datetime and, as a
 * destination of some, time4 for datetime4 and bigdate for bigdatetime. What the destination cannot
 * hold is refused with CS_CONV_OVERFLOW; a bigdatetime before 1753-01-01 towards datetime with
 * CS_CONV_UNDERFLOW. Destination and output length are then as they were, except that a date leaves
 * 1900-01-01 in a datetime.
 *
 * Towards date the time is dropped, towards time the date. A date becomes its midnight; a time
 * becomes one of 1900-01-01 in a datetime, of 0001-01-01 in a bigdatetime. Ticks become truncated
 * milliseconds in the big types. The big types become datetime and time as by
 * com__bigdatetimetodate and com__bigtimetodate (bigdatetime to time as the latter), but dropped
 * microseconds count as success, except in comnb_bigdatetodate and comnb_bigdatetotimea.
 *
 * Towards datetime4 30 seconds go to the next minute, which may carry into the next day, and days
 * have to lie between 1900-01-01 and 2079-06-06, before and after. A bigdatetime is rounded to
 * seconds first.
 *
 * The pairs with a big type are reached through the routine table (com_conv_func) or bare. */

TVXCOMN_API comn_conversion comn_datetodate, comn_datetodate4, comn_datetodatea, comn_datetotimea,
    comn_date4todate, comn_date4todate4, comn_date4todatea, comn_date4totimea, comn_dateatodate,
    comn_dateatodate4, comn_dateatodatea, comn_timeatodate, comn_timeatodate4, comn_timeatotimea;

/* The stored bytes; see binary.h. */
TVXCOMN_API comn_conversion comn_datetobin, comn_datetovarbin, comn_date4tobin, comn_date4tovarbin,
    comn_dateatobin, comn_dateatovarbin, comn_timeatobin, comn_timeatovarbin;

TVXCOMN_API comnb_conversion comnb_datetodate, comnb_datetodate4, comnb_datetodatea,
    comnb_datetotimea, comnb_datetobigdatetime, comnb_datetobigtime;
TVXCOMN_API comnb_conversion comnb_date4todate, comnb_date4todate4, comnb_date4todatea,
    comnb_date4totimea, comnb_date4tobigdatetime, comnb_date4tobigtime;
TVXCOMN_API comnb_conversion comnb_dateatodate, comnb_dateatodate4, comnb_dateatodatea,
    comnb_dateatobigdatetime;
TVXCOMN_API comnb_conversion comnb_timeatodate, comnb_timeatodate4, comnb_timeatotimea,
    comnb_timeatobigdatetime, comnb_timeatobigtime;
TVXCOMN_API comnb_conversion comnb_bigdatetodate, comnb_bigdatetotime4, comnb_bigdatetodatea,
    comnb_bigdatetotimea, comnb_bigdatetobigdate, comnb_bigdatetobigtime;
TVXCOMN_API comnb_conversion comnb_bigtimetodate, comnb_bigtimetodate4, comnb_bigtimetotimea,
    comnb_bigtimetobigdatetime, comnb_bigtimetobigtime;

TVXCOMN_END

#endif
