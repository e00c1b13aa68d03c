/* The table of conversion routines of a context. It takes no lock: a caller that installs routines
 * while other threads look them up in the same context serialises those calls itself. A null
 * context is a fatal usage error throughout. */
#ifndef TVXCOMN_DISPATCH_H
#define TVXCOMN_DISPATCH_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

/* Gives the context its own copy of the default table, 40 x 40, and an empty overflow list. Returns
 * CS_SUCCEED, or CS_MEM_ERROR with the table null. */
TVXCOMN_API int32_t com_conv_init(comn_context* context);

/* The routine that converts `source` to `destination`; null when there is none, and for a negative
 * code. */
TVXCOMN_API comn_conversion* com_conv_func(comn_context* context, int32_t source,
                                           int32_t destination);

/* Sets the routine of a pair (null: none). Pairs with a code of 40 or above live in the overflow
 * list, rows and entries in the order of their first installation. Returns CS_SUCCEED, or
 * CS_MEM_ERROR with nothing changed. A negative code and a context without a table are fatal usage
 * errors. */
TVXCOMN_API int32_t com_conv_install(comn_context* context, int32_t source, int32_t destination,
                                     comn_conversion* routine);

/* Takes a pair back to its default: the default table's routine, or none for an overflow pair,
 * whose entry keeps its place. Returns CS_SUCCEED. A negative code and a context without a table are fatal
 * usage errors. */
TVXCOMN_API int32_t com_conv_default(comn_context* context, int32_t source, int32_t destination);

/* Frees the table and the overflow list. Returns CS_SUCCEED. After it a lookup of codes below 40 is
 * a fatal usage error until com_conv_init is called again. */
TVXCOMN_API int32_t com_conv_free(comn_context* context);

TVXCOMN_END

#endif
