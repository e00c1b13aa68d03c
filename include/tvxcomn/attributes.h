/* Character attribute records: how long a character of a character set is, what it is, and what it
 * becomes in upper case, lower case and ASCII. Classification takes a null record for the built-in
 * one and reads only the bytes of the character it is given. Records are not changed by anything
 * here and may be shared among threads. */
#ifndef TVXCOMN_ATTRIBUTES_H
#define TVXCOMN_ATTRIBUTES_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* Flags of an attribute entry. LEADBYTE marks the first byte of a two-byte character, whose
 * upper-case byte is a page number. */
#define COM_ATTR_UPPER 1u
#define COM_ATTR_LOWER 2u
#define COM_ATTR_DIGIT 4u
#define COM_ATTR_SPACE 8u
#define COM_ATTR_XDIGIT 16u
#define COM_ATTR_PUNCT 32u
#define COM_ATTR_GRAPH 64u
#define COM_ATTR_LEADBYTE 128u

#define COM_LEX_LETTER 1 /* lexical classes: letter or other character of an identifier */
#define COM_LEX_DIGIT 2
#define COM_LEX_CURRENCY 4
#define COM_LEX_SPACE 8
#define COM_LEX_QUOTE 16 /* the double quote */
#define COM_LEX_OTHER 32

#define COM_IMAGE_SINGLE_BYTE 1001 /* kinds of com_build_char_attrib */
#define COM_IMAGE_MULTIBYTE 1002

/* The tables are indexed by the first byte of a character.
 *
 * `lengths`, null for single-byte sets: low 4 bits the length in bytes, high 4 bits the display
 * width. When the entry of byte 255 has 15 in its high bits, a character of length 2 whose second
 * byte is an ASCII digit is four bytes long.
 *
 * `to_ascii`, may be null: the ASCII form of a one-byte character; for a longer one a page number,
 * 0 for no form, and the form is at page x 256 + second byte.
 *
 * `attributes`: four bytes a character: upper case, lower case, lexical class, flags. The second
 * byte of a two-byte character has its entry at page x 1,024 + 4 x byte.
 *
 * `soundex`: the Soundex digit of each letter as a character, else 0. */
struct com_charattr {
  uint16_t status;
  uint8_t class_; /* 1 single-byte, 2 multibyte */
  uint8_t id;     /* number of the character set */
  uint16_t name_length;
  char name[30];     /* NUL-terminated */
  uint8_t format[5]; /* [3]: pages of 1,024 bytes of `attributes`; [4]: of 256 of `soundex` */
  const uint8_t* lengths;
  const uint8_t* to_ascii;
  const uint8_t* attributes;
  const uint8_t* soundex;
};

/* A new, uninitialised record from comn_malloc (the caller frees it with comn_free); null when
 * memory ran out. */
TVXCOMN_API com_charattr* com_alloc_char_attrib(void);

/* Fills `record` to point into `image`, which must outlive it; copies no table. Single-byte images
 * hold 1,028 bytes of attributes, then the 257 bytes of the fourth table; multibyte images begin
 * with a 44-byte header that gives the tables' offsets. The name is cut to 29 characters. Returns
 * 1; 0 when the image or record is null or the kind unknown. */
TVXCOMN_API int32_t com_build_char_attrib(int32_t kind, int32_t id, const char* name,
                                          const void* image, com_charattr* record);

/* The built-in record, "cp850", and its attribute table of 1,028 bytes. */
TVXCOMN_API const com_charattr* com_get_charattrib(void);
TVXCOMN_API const uint8_t* com_get_typemap(void);

/* The record of the character set of the format's locale, else of the context's default locale,
 * else the built-in one. Format and context may be null. */
TVXCOMN_API const com_charattr* com_intl_charattr(comn_context* context,
                                                  const comn_datafmt* format);

/* Classification of the character that starts at `character`: the COM_ATTR_ flags of the class that
 * it has, else 0. */
TVXCOMN_API int32_t comn_isalpha(const com_charattr* record, const char* character);
TVXCOMN_API int32_t comn_isupper(const com_charattr* record, const char* character);
TVXCOMN_API int32_t comn_islower(const com_charattr* record, const char* character);
TVXCOMN_API int32_t comn_isdigit(const com_charattr* record, const char* character);
TVXCOMN_API int32_t comn_isxdigit(const com_charattr* record, const char* character);
TVXCOMN_API int32_t comn_isspace(const com_charattr* record, const char* character);
TVXCOMN_API int32_t comn_ispunct(const com_charattr* record, const char* character);
TVXCOMN_API int32_t comn_isgraph(const com_charattr* record, const char* character);

TVXCOMN_API int32_t comn_get_lex(const com_charattr* record,
                                 const char* character); /* lexical class */
TVXCOMN_API int32_t comn_char_width(const com_charattr* record,
                                    const char* character); /* length in bytes */
TVXCOMN_API int32_t comn_disp_width(const com_charattr* record,
                                    const char* character); /* columns on a display */

/* The ASCII form: of the to-ASCII table if there is one (0: none), else the lower-case form, else
 * the byte itself. Without that table a character of two bytes or more has none, 0. */
TVXCOMN_API int32_t comn_to_ascii(const com_charattr* record, const char* character);

/* Writes the upper-case (lower-case) form of a character, as long as the character itself, to
 * `destination`. */
TVXCOMN_API void comn_toupper(const com_charattr* record, const char* character, char* destination);
TVXCOMN_API void comn_tolower(const com_charattr* record, const char* character, char* destination);

/* Advances `*position` by one character and returns it. */
TVXCOMN_API const char* comn_inc_char(const com_charattr* record, const char** position);

/* Counts the whole characters from `start` up to `end`. A character that straddles `end` is left
 * out of `*characters` and `*whole_bytes`; its bytes before and beyond `end` are counted in
 * `*split_before` and `*split_beyond` (else 0). Nothing is read at or behind `end`: where the byte
 * there would tell a longer character, the shorter length counts. */
TVXCOMN_API void comn_whole_char(const com_charattr* record, const char* start, const char* end,
                                 int32_t* whole_bytes, int32_t* split_before, int32_t* split_beyond,
                                 int32_t* characters);

/* Copies a text with each character that has an ASCII form replaced by that byte. The destination
 * needs `length` bytes; `*output_length` counts those written. A negative length is a fatal usage
 * error. */
TVXCOMN_API void comn_str_to_ascii(const char* source, int32_t length, char* destination,
                                   int32_t* output_length, const com_charattr* record);

/* The first character of a NUL-terminated string whose first byte is `byte`; null when there is
 * none. */
TVXCOMN_API const char* comn_mb_strchr(const com_charattr* record, const char* string,
                                       int32_t byte);

TVXCOMN_END

#endif
