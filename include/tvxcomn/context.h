/* The common context: first argument of nearly every operation, and what owns a caller's conversion
 * routines, null values and locales. The caller may allocate it zeroed and set it up step by step,
 * or let comn_context_open do it. */
#ifndef TVXCOMN_CONTEXT_H
#define TVXCOMN_CONTEXT_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

typedef int32_t comn_error_callback(comn_context* context, const void* message);

/* What all locale handles of one context share. The lists belong to the localisation; the caller
 * only allocates the record zeroed and keeps it alive as long as the context. */
struct comn_intl_state {
  void* cache;
  void* charsets;
  comn_locale* locales;
  void* mutex;
  void* datetimes;
  void* moneys;
  void* numerics;
  void* utf8;
  void* messages;
  void* lists;
  void* ucs2;
  void* mnemonics;
  void* objects;
  void* reserved[3];
};

/* The fields that conversions and the other operations read and set. The table of conversion
 * routines and the null values belong to the com_conv_ and com_null_ operations. */
struct comn_context {
  comn_locale* default_locale; /* where a data format names none; null: the built-in answers */
  void* auxiliary;             /* released with the locale handles */
  comn_intl_state* state;
  int32_t last_support_error; /* the support library's number when an operation returns -301 */
  int32_t version;
  void* user_conversions; /* installed character set conversions */
  comn_error_callback* error_callback;
  void* message_binding;
  void* (*allocate)(size_t size);
  comn_conversion** conversions; /* dimension x dimension, a row a source code */
  uint32_t conversion_dimension;
  int32_t null_count;
  void* conversion_overflow;
  void* nulls;
  void* null_list;
  void* reserved[8];
};

/* For comn_context_open: no localisation. No file is read, there is no default locale, and
 * conversions use the built-in character attributes, English names, order "mdy" and date format
 * code 0. */
#define COMN_CONTEXT_NO_LOCALISATION 1

/* Allocates a context and its state and sets both up for `locale` (null: the environment's, else
 * "default"). Returns CS_SUCCEED; or the code of the step that failed (CS_MEM_ERROR when memory ran
 * out), with nothing left allocated and `*context` null. Without COMN_CONTEXT_NO_LOCALISATION it
 * returns CS_FAIL in this version. */
TVXCOMN_API int32_t comn_context_open(const char* locale, int32_t flags, comn_context** context);

/* Undoes comn_context_open. Returns CS_SUCCEED. */
TVXCOMN_API int32_t comn_context_close(comn_context* context);

TVXCOMN_END

#endif
