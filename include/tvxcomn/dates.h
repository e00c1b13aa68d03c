/* Dates and times: the parts of a value, cracking, comparison, names, and conversions among the six
 * types. All count from fixed epochs in the proleptic Gregorian calendar. */
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

TVXCOMN_END

#endif
