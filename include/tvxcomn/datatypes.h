/* The vocabulary of every conversion: datatype codes, data formats, format flags, result codes, and
 * the records in which values and descriptors of the interface are laid out. All records have
 * natural alignment.
 *
 * Of every function of the library: a null pointer is a fatal usage error (see diagnosis.h) where
 * nothing else is said. */
#ifndef TVXCOMN_DATATYPES_H
#define TVXCOMN_DATATYPES_H

#include <stddef.h>
#include <stdint.h>

#include "tvxcomn/export.h"

TVXCOMN_BEGIN

/* ---- Result codes ------------------------------------------------------------------------ */

#define CS_SUCCEED 1      /* done; destination and output length are set */
#define CS_FAIL 0         /* general failure */
#define CS_MEM_ERROR (-1) /* memory ran out */

/* Results of conversions. An overflow is a value above the destination's range, which gets the
 * limit, or a text or binary value longer than maxlength. An underflow is a value below the range,
 * where the family tells it apart, or a float that became zero. */
#define CS_CONV_OVERFLOW (-101)
#define CS_CONV_UNDERFLOW (-102)
#define CS_CONV_BADPREC (-103)    /* precision of an exact numeric destination outside 1 to 77 */
#define CS_CONV_BADSCALE (-104)   /* its scale above 77 */
#define CS_CONV_SYNTAX (-105)     /* no literal of the destination's type; output length 0 */
#define CS_CONV_BADFORMAT (-106)  /* zero fill and blank fill requested together */
#define CS_CONV_DOMAIN (-107)     /* the source is no legal value of its own type */
#define CS_CONV_DIVZERO (-108)    /* division by zero */
#define CS_CONV_TRUNCATED (-113)  /* the destination received a valid but shortened copy */
#define CS_CONV_BADSTYLE (-114)   /* unknown date or time style */
#define CS_CONV_BADCHAR (-115)    /* a character could not be converted between character sets */
#define CS_CONV_NOXLATE (-116)    /* no translation exists for a character */
#define CS_CONV_XLATE_NOTE (-117) /* a note of the character set conversion; counts as success */

/* Results of the libraries above and of other operations; traces know their names. */
#define CS_PENDING (-2)
#define CS_QUIET (-3)
#define CS_BUSY (-4)
#define CS_INTERRUPT (-5)
#define CS_CANCELED (-202)
#define CS_ROW_FAIL (-203)
#define CS_END_DATA (-204) /* no further value */
#define CS_END_RESULTS (-205)
#define CS_END_ITEM (-206)
#define CS_NOMSG (-207)
#define CS_TIMED_OUT (-208) /* the time given to a wait has passed */
#define CS_PASSTHRU_EOM (-210)
#define CS_PASSTHRU_MORE (-211)
#define CS_TRYING (-213)

/* ---- Special lengths and values ---------------------------------------------------------- */

#define CS_NULLTERM (-9)            /* as a length: measure the NUL-terminated text */
#define CS_UNUSED (-99999)          /* an argument that is not given */
#define CS_TAKE_FROM_SOURCE (-2562) /* as precision or scale of an exact numeric: the source's */

/* ---- Datatype codes; from 40 on they are the caller's ------------------------------------ */

#define TVX_TYPE_CHAR 0
#define TVX_TYPE_BIN 1
#define TVX_TYPE_CHAR2 2
#define TVX_TYPE_BIN3 3
#define TVX_TYPE_TEXT 4
#define TVX_TYPE_IMAGE 5
#define TVX_TYPE_I1 6 /* unsigned byte */
#define TVX_TYPE_I2 7
#define TVX_TYPE_I4 8
#define TVX_TYPE_FLT4 9
#define TVX_TYPE_FLT8 10
#define TVX_TYPE_BIT 11
#define TVX_TYPE_DATETIME 12
#define TVX_TYPE_DATE4 13
#define TVX_TYPE_MONEY 14
#define TVX_TYPE_MNY4 15
#define TVX_TYPE_NUM 16
#define TVX_TYPE_NUM17 17
#define TVX_TYPE_VARCHAR 18
#define TVX_TYPE_VARBIN 19
#define TVX_TYPE_INT20 20
#define TVX_TYPE_CHAR21 21
#define TVX_TYPE_CHAR22 22
#define TVX_TYPE_NULL23 23
#define TVX_TYPE_UNICHAR 25
#define TVX_TYPE_DATEA 27
#define TVX_TYPE_TIMEA 28
#define TVX_TYPE_UNICHAR29 29
#define TVX_TYPE_I8 30
#define TVX_TYPE_UI2 31
#define TVX_TYPE_UI4 32
#define TVX_TYPE_UI8 33
#define TVX_TYPE_CHAR34 34
#define TVX_TYPE_BIGDATETIME 35
#define TVX_TYPE_BIGTIME 36
#define TVX_TYPE_LOCATOR37 37
#define TVX_TYPE_LOCATOR38 38
#define TVX_TYPE_LOCATOR39 39

/* ---- Format flags of a destination ------------------------------------------------------- */

/* Text ends with a zero byte, which fits inside maxlength and is counted. */
#define CS_FORMAT_TERMINATE 1
#define CS_FORMAT_ZEROFILL 2           /* fill up to maxlength with zero bytes */
#define CS_FORMAT_BLANKFILL 4          /* fill up to maxlength with blanks */
#define CS_FORMAT_DOUBLE_APOSTROPHE 32 /* character copies write every apostrophe twice */

/* ---- Records ----------------------------------------------------------------------------- */

typedef struct comn_context comn_context;       /* the caller's common context, see context.h */
typedef struct comn_intl_state comn_intl_state; /* what the locale handles of one context share */
typedef struct comn_locale comn_locale;         /* a locale handle */
typedef struct com_charattr com_charattr;       /* a character attribute record, see attributes.h */

/* Describes one value of a conversion: its datatype and, where the type leaves it open, its size
 * and locale. The caller owns it; a conversion reads it and keeps no pointer to it.
 *
 * `maxlength` is never negative: of a source of variable length it is the bytes of the value, of a
 * destination the capacity in bytes. Fixed-size codes ignore it. */
typedef struct comn_datafmt {
  uint8_t leading_area[256]; /* the caller's */
  int32_t leading_word;      /* the caller's */
  int32_t datatype;          /* datatype code */
  uint32_t format;           /* format flags; read on destinations */
  int32_t maxlength;
  int32_t scale;       /* exact numeric destinations: digits after the point, 0 to 77 */
  int32_t precision;   /* exact numeric destinations: digits, 1 to 77 */
  int32_t words[4];    /* the caller's */
  comn_locale* locale; /* locale of the value; null: the context's default */
} comn_datafmt;

/* A value of the bare layer. For an exact numeric `data` points at the sign byte and `length` is
 * the length of the sign and magnitude; a varchar has its text there like a char. */
typedef struct comnb_value {
  int32_t length;      /* source: bytes of the value; destination: bytes delivered */
  uint8_t token;       /* wire datatype token */
  int32_t maxlength;   /* destination: capacity in bytes */
  uint8_t precision;   /* exact numerics */
  uint8_t scale;       /* exact numerics */
  const void* charset; /* identifies the character set of a text */
  void* data;
} comnb_value;

/* Flags of a bare context. */
#define COMNB_TERMINATE 1u  /* text ends with a zero byte */
#define COMNB_ZEROFILL 2u   /* fill with zero bytes */
#define COMNB_BLANKFILL 4u  /* fill with blanks */
#define COMNB_RIGHTALIGN 8u /* blanks go in front of the value; conflicts with the terminator */

/* What the bare conversions know beside their two values. */
typedef struct comnb_context {
  uint32_t flags;                 /* COMNB_ flags */
  int32_t date_format;            /* date format code; text flags of money */
  uint32_t numeric_flags;         /* bit 0: an exact numeric may lose digits of scale */
  const com_charattr* attributes; /* of the texts' character set; null: single-byte */
  const char* const* months;      /* 12 month names, or null */
} comnb_context;

/* Amounts in ten-thousandths, the high word first; money.h has the arithmetic. */
typedef struct comn_money {
  int32_t high;
  uint32_t low;
} comn_money;

typedef struct comn_numeric {
  uint8_t precision; /* 1 to 77 */
  uint8_t scale;     /* 0 to 77 */
  uint8_t sign;      /* 0 positive or zero, 1 negative */
  uint8_t magnitude[32];
} comn_numeric;

/* Days since 1900-01-01 and the time, in 300ths of a second or in minutes; dates.h has the ranges.
 */
typedef struct comn_datetime {
  int32_t days;
  uint32_t ticks;
} comn_datetime;

typedef struct comn_datetime4 {
  uint16_t days;
  uint16_t minutes;
} comn_datetime4;

typedef struct comn_varchar {
  uint16_t length; /* bytes used of data */
  uint8_t data[256];
} comn_varchar;

typedef comn_varchar comn_varbin;

/* The one signature of every conversion of the data-format layer. No pointer may be null: a null
 * pointer, a datatype code outside the routine's family, a negative maxlength and a character
 * source of less than one byte are fatal usage errors. The output length receives the bytes written
 * to the destination. */
typedef int32_t comn_conversion(comn_context* context, const comn_datafmt* source_format,
                                const void* source, const comn_datafmt* destination_format,
                                void* destination, int32_t* output_length);

/* The one signature of the bare layer: the same rules on small descriptors, without datatype checks
 * or locales. */
typedef int32_t comnb_conversion(const comnb_context* context, const comnb_value* source,
                                 comnb_value* destination);

/* Storage size in bytes of a value of a datatype; `maxlength` itself for the codes whose size the
 * data format gives and for every code this library does not know. */
TVXCOMN_API int32_t comn_typelen(int32_t datatype, int32_t maxlength);

TVXCOMN_END

#endif
