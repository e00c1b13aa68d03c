/* Date arithmetic: counts of date parts (COM_PART_) added to values, and counted between two
 * values. A null pointer is a fatal usage error, and so is adding units of a part that there is
 * not. */
#ifndef TVXCOMN_DATEARITH_H
#define TVXCOMN_DATEARITH_H

#include "tvxcomn/dates.h"

TVXCOMN_BEGIN

/* ---- Addition -------------------------------------------------------------------------------
 *
 * Return 0, or 1 when the result is out of range, with nothing stored. By years, ISO years,
 * quarters and months the date moves in the calendar, and a day that the month reached does not
 * have becomes its last one; the time stays. The other parts are lengths: weekdays, days of the
 * month and of the year are days, both kinds of week 7 days. */

/* Adds to a datetime in place; `part` is 0 to 13. Results lie between 0001-01-01 and 9999-12-31.
 * Milliseconds are rounded to ticks, half away from zero. 1 also when hours or shorter parts are
 * added to a time of 24 hours or more. */
TVXCOMN_API int32_t com__date_add(int32_t part, int32_t amount, comn_datetime* value);

/* Adds to a datetime, date or time and delivers in the type of the destination. The source is 8
 * bytes, a datetime, or 4, the days of a date or, towards a time, the ticks of one. The destination
 * is a datetime (token 61, maxlength 8), which has to be 1753-01-01 or later, a datetime4 (58, 4),
 * a date (49, 4) or a time (51, 4; its day is dropped); its length is set to its maxlength. Any
 * other combination is 1. */
TVXCOMN_API int32_t com__dateadd_both(int32_t part, int32_t amount, const comnb_value* source,
                                      comnb_value* destination);

/* Adds to a bigdatetime or bigtime, both 8 bytes; the token of the destination, 187 or 188, tells
 * which of the two it is; `part` is 0 to 14. A bigtime never leaves its day: by years and months,
 * which move it from a day of year 0, it becomes 1 or stays what it is. Any other combination is 1.
 */
TVXCOMN_API int32_t com__bigdateadd_both(int32_t part, int32_t amount, const comnb_value* source,
                                         comnb_value* destination);

/* ---- Difference -----------------------------------------------------------------------------
 *
 * Store the units from start to end, negative when end is earlier: years, quarters and months by
 * their numbers, ISO years by theirs, both kinds of week as Sundays crossed, weekdays and ISO
 * weekdays as whole weeks elapsed; the other parts elapsed and truncated towards zero. A part that
 * there is not stores nothing. */

/* `part` is 0 to 13. Returns 0; 1 with nothing stored when the units do not fit, and for minutes,
 * seconds and milliseconds when the days between are more than 1491308, 24855 and 24, whatever the
 * times. A time difference in milliseconds is truncated before it is joined to the days. */
TVXCOMN_API int32_t com__datediff(int32_t part, const comn_datetime* start,
                                  const comn_datetime* end, int32_t* result);

/* Of two bigdatetimes or two bigtimes; `part` is 0 to 14. Returns 0. */
TVXCOMN_API int32_t com__bigdatediff(int32_t part, const uint64_t* start, const uint64_t* end,
                                     int64_t* result);

/* ---- Weeks ---------------------------------------------------------------------------------- */

/* Turns a position in weeks that begin on day `from` into one in weeks that begin on day `to`, 0 to
 * 6: ((from + position - 1) mod 7 + 8 - to) mod 7. Days are numbered 1 (Monday) to 7. Arguments
 * are not checked: the remainders are those of C's signed 32-bit division, so that sums below zero
 * give 0 to -6. */
TVXCOMN_API int32_t com_intl_convt_firstday(int32_t position, int32_t from, int32_t to);

TVXCOMN_END

#endif
