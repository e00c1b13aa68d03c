/* Binary data and strings: copies among bin, varbin, char and varchar, hexadecimal text, values of
 * fixed size as raw memory, and locators.
 *
 * All comn_ functions here are of type comn_conversion but the four helpers with a size. A bin or
 * char source has at least one byte; a varbin or varchar record holds 1 to 256, and conversions
 * into one report 258 whatever its length. Anything else is a fatal usage error.
 *
 * What does not fit is cut. From bin and char sources and from values of fixed size that is
 * CS_CONV_TRUNCATED, from varbin CS_CONV_OVERFLOW; from varchar CS_CONV_OVERFLOW towards binary
 * data and CS_CONV_TRUNCATED towards text. */
#ifndef TVXCOMN_BINARY_H
#define TVXCOMN_BINARY_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* ---- Values of fixed size as raw memory, in the machine's byte order ---------------------- */

/* Towards bin the zero fill is honoured; a varbin record always has room. The sources ui2, ui4 and
 * ui8 are reached through the routine table (com_conv_func). A numeric with a precision that is not
 * 1 to 77, or a scale above 77, is CS_CONV_DOMAIN with nothing written. */
TVXCOMN_API comn_conversion comn_i1tobin, comn_i2tobin, comn_i4tobin, comn_i8tobin, comn_flt4tobin,
    comn_flt8tobin, comn_moneytobin, comn_mny4tobin, comn_numtobin;
TVXCOMN_API comn_conversion comn_i1tovarbin, comn_i2tovarbin, comn_i4tovarbin, comn_i8tovarbin,
    comn_flt4tovarbin, comn_flt8tovarbin, comn_moneytovarbin, comn_mny4tovarbin, comn_numtovarbin;

/* As many bytes as both sides have; CS_CONV_UNDERFLOW when the source is shorter. From bin a date
 * or time that is complete but out of its range has length 0 and CS_CONV_DOMAIN. bigdatetime and
 * bigtime are reached through the routine table. */
TVXCOMN_API comn_conversion comn_bintoi1, comn_bintoi2, comn_bintoi4, comn_bintoi8, comn_bintoui2,
    comn_bintoui4, comn_bintoui8, comn_bintoflt4, comn_bintoflt8, comn_bintomoney, comn_bintomny4,
    comn_bintodatetime, comn_bintodate4, comn_bintodatea, comn_bintotimea;
TVXCOMN_API comn_conversion comn_varbintoi1, comn_varbintoi2, comn_varbintoi4, comn_varbintoi8,
    comn_varbintoui2, comn_varbintoui4, comn_varbintoui8, comn_varbintoflt4, comn_varbintoflt8,
    comn_varbintomoney, comn_varbintomny4, comn_varbintodatetime, comn_varbintodate4,
    comn_varbintodatea, comn_varbintotimea;

/* 1 when the first byte is not zero, else 0; always succeeds. */
TVXCOMN_API comn_conversion comn_bintobit, comn_varbintobit;

/* Sign and magnitude as they stand, under the precision and scale of the format (CS_CONV_BADPREC,
 * CS_CONV_BADSCALE, nothing written). The output length is always 35. */
TVXCOMN_API comn_conversion comn_bintonum, comn_varbintonum;

/* What the routines of the fixed-size types are made of: a value of any code and of `size` bytes, 1
 * at least as a source, 0 as a destination. */
typedef int32_t comn_fixed_conversion(comn_context* context, const comn_datafmt* source_format,
                                      const void* source, const comn_datafmt* destination_format,
                                      void* destination, int32_t* output_length, int32_t size);
TVXCOMN_API comn_fixed_conversion comn_fixedtobin, comn_fixedtovarbin, comn_bintofixed,
    comn_varbintofixed;

/* ---- Hexadecimal text ------------------------------------------------------------------- */

/* Writes two lower-case digits a byte, without "0x". A cut text ends with a whole byte and has
 * neither terminator nor fill. One that fits goes through the completion step, for which a text
 * without room for its terminator is CS_CONV_OVERFLOW. */
TVXCOMN_API comn_conversion comn_bintochar, comn_bintovarchar, comn_varbintochar,
    comn_varbintovarchar;

/* Read digits of either case: white space at both ends and then one "0x" or "0X" are skipped, the
 * first of an odd number of digits is a byte of its own. Any other character is CS_CONV_SYNTAX with
 * output length 0 and, in a record, length 0. Digits that do not fit are not looked at. An odd
 * number of digits into a maxlength of 0 is CS_CONV_OVERFLOW. Towards bin the zero fill is
 * honoured. comn_varchartovarbin is CS_CONV_OVERFLOW, with the record written, also when it has as
 * many bytes as the destination's maxlength or more. */
TVXCOMN_API comn_conversion comn_chartobin, comn_chartovarbin, comn_varchartobin,
    comn_varchartovarbin;

/* ---- Copies ----------------------------------------------------------------------------- */

/* Towards bin the zero fill is honoured. comn_varbintovarbin copies all 258 bytes. */
TVXCOMN_API comn_conversion comn_bintobin, comn_bintovarbin, comn_varbintobin, comn_varbintovarbin;

/* Text is cut behind a whole character. Towards char it goes through the completion step; a text
 * without room for its terminator loses its last byte to it (CS_CONV_TRUNCATED). Both fills
 * together are CS_CONV_BADFORMAT, a cut or not, unless the terminator lacked room. Nothing is
 * copied when source and destination are the same buffer.
 *
 * comn_chartochar under CS_FORMAT_DOUBLE_APOSTROPHE writes every character whose ASCII form is the
 * apostrophe twice or, when that does not fit, not at all (CS_CONV_TRUNCATED); with
 * CS_FORMAT_TERMINATE a zero byte in the source is the last one copied. Source and destination must
 * not overlap then. */
TVXCOMN_API comn_conversion comn_chartochar, comn_chartovarchar, comn_varchartochar,
    comn_varchartovarchar;

/* ---- Locators --------------------------------------------------------------------------- */

/* The `marker` of a valid record; every other record is CS_FAIL. */
#define COMN_LOCATOR_VALID (-779)

/* A piece of the value that a locator stands for. */
typedef struct comn_locator_chunk {
  struct comn_locator_chunk* next; /* null: the last one */
  const char* text;
  int32_t length; /* bytes of text */
} comn_locator_chunk;

/* `data` and the records of the chain come from comn_malloc and are the locator's, which frees both
 * when it gets another value; the chunks' texts belong to whoever built the chain. */
typedef struct comn_locator {
  int32_t marker;
  int32_t datatype; /* code for which the record was filled */
  int32_t length;   /* bytes of data */
  void* data;
  comn_locator_chunk* chunks;
  void* reserved[2];
} comn_locator;

/* The data as hexadecimal text, as comn_bintochar writes it. */
TVXCOMN_API comn_conversion comn_locatortochar;

/* Gives the destination data of its own with the same bytes, and no chunks; both are of the same
 * code. The output length is that of the data. CS_MEM_ERROR, with nothing changed.
 *
 * The other routines are reached through the routine table. Char to locator reads hexadecimal text
 * as comn_chartobin does into new data, which CS_FORMAT_ZEROFILL fills up to half the text's length:
 * CS_CONV_OVERFLOW for more than 65,535 bytes, CS_MEM_ERROR; with any failure the locator is left
 * empty. Locator to text and to image delivers the chunks as
 * one value; of a locator without any a zero byte, and length 0. */
TVXCOMN_API comn_conversion comn_locatortolocator;

/* ---- The bare layer --------------------------------------------------------------------- */

/* A source has at least one byte. Results are those of the comn_ functions of the name; bintodate
 * is towards datetime. bintonum fills up to 33 bytes of sign and magnitude, and reports that
 * room. */
TVXCOMN_API comnb_conversion comnb_bintobit, comnb_bintonum, comnb_bintodate, comnb_bintodatea,
    comnb_bintotimea, comnb_bintobigdatetime, comnb_bintobigtime;

/* Text, which may be empty. Different character sets are a fatal usage error. Towards varchar
 * nothing is completed. */
TVXCOMN_API comnb_conversion comnb_chartochar, comnb_chartovarchar, comnb_varchartochar,
    comnb_varchartovarchar;

/* Copy bytes as they are: CS_CONV_TRUNCATED when the destination is too small. comnb_anytofixed
 * fills what is left as the context's flags ask (CS_CONV_BADFORMAT for both fills), and a float,
 * by the destination's token 59 (4 bytes) or 62 (8 bytes), has to be finite (CS_CONV_DOMAIN). */
TVXCOMN_API comnb_conversion comnb_anytofixed, comnb_anytovar;

TVXCOMN_END

#endif
