/* Null values: the bytes that stand in a destination when there is no value, one per datatype and
 * context. Null pointers, negative codes and negative lengths are fatal usage errors, and so is a
 * code below 40 in a context without null values. */
#ifndef TVXCOMN_NULL_H
#define TVXCOMN_NULL_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* Gives the context the built-in null values of the codes 0 to 39 and an empty list for those
 * above. Returns CS_SUCCEED, or CS_MEM_ERROR with nothing left allocated. */
TVXCOMN_API int32_t com_null_init(comn_context* context);

/* Frees all null values of the context. Returns CS_SUCCEED. */
TVXCOMN_API int32_t com_null_free(comn_context* context);

/* Writes the null value of the format's datatype, at most `maximum_length` bytes, followed for
 * text, binary and Unicode codes by the completion step against the format (whose result it
 * returns, CS_CONV_OVERFLOW or CS_CONV_BADFORMAT among them). An exact numeric gets the format's
 * precision and scale and, when the precision is 1 to 77, that precision's length. Codes from 40
 * on: their value followed by a zero byte, which is counted; a value exactly as long as
 * `maximum_length` comes without it; CS_CONV_OVERFLOW for a longer one, cut; no value set: length
 * 0. */
TVXCOMN_API int32_t com_null_get(comn_context* context, const comn_datafmt* format,
                                 void* destination, int32_t maximum_length, int32_t* output_length);

/* Replaces a code's null value by a copy of `length` bytes. Returns CS_SUCCEED, or CS_MEM_ERROR
 * with the code left without a value. */
TVXCOMN_API int32_t com_null_set(comn_context* context, int32_t datatype, const void* value,
                                 int32_t length);

/* Takes a code back to its built-in null value, a code from 40 on to none. Returns CS_SUCCEED, or
 * CS_MEM_ERROR with the code left without a value. */
TVXCOMN_API int32_t com_null_reinstall(comn_context* context, int32_t datatype);

TVXCOMN_END

#endif
