/* Fatal errors, return tracing and debug output. The settings (trace level, abort mode, debug file)
 * are process-wide and unguarded: set them before threads start. */
#ifndef TVXCOMN_DIAGNOSIS_H
#define TVXCOMN_DIAGNOSIS_H

#include <stdarg.h>

#include <stdint.h>
#include "tvxcomn/export.h"

TVXCOMN_BEGIN

/* Returns `code`, after printing "(CS_FAIL) file conversion.cpp, line 12" to the debug output when
 * the trace level asks for it. Codes without a name are printed as numbers; of `file` only what
 * follows its last "/". */
TVXCOMN_API int32_t com_errtrace(int32_t code, const char* file, int32_t line);

/* Sets the trace level and returns it. 1: nothing is traced (at the start); 2: every code but
 * CS_SUCCEED, CS_PENDING, CS_INTERRUPT, CS_END_DATA, CS_END_RESULTS and CS_END_ITEM; 3: every code.
 * Any other level is a fatal usage error. */
TVXCOMN_API int32_t com_errset(int32_t level);

/* A failed internal check: says so on standard error and stops the process as the abort mode tells.
 */
TVXCOMN_API void com_bomb(const char* file, int32_t line) __attribute__((noreturn));

/* A null pointer argument: the same, with a message of its own. */
TVXCOMN_API void com_raise_invalid_null_pointer(const char* file, int32_t line)
    __attribute__((noreturn));

/* An unrecoverable error: says so on standard error and ends the process with exit status -1. */
TVXCOMN_API void com_panic(const char* text) __attribute__((noreturn));

/* Sets the abort mode. 1 (at the start): standard error is closed and SIGABRT ends the process,
 * whatever handler is installed. Any other: standard error is flushed and SIGABRT is raised; a
 * handler may leave it with siglongjmp, and the process ends when the handler returns. */
TVXCOMN_API void com_toggle_abort(int32_t mode);

/* Writes `text` to standard error, flushes it, and appends it to the file tvxinit.err in the
 * current directory when that can be opened. "%%" in the text is written as one "%"; it takes no
 * other conversions, which stand as they are. */
TVXCOMN_API void com_perr(const char* text);

/* With a non-zero flag and a path, opens the path for writing as the debug file (after closing the
 * current one): returns 1, or 0 when it cannot be opened; debug output then goes to standard
 * output. Otherwise closes the debug file and goes back to standard output: returns 1. The context
 * is not used and may be null. */
TVXCOMN_API int32_t comn_debug_setfile(void* context, const char* path, int32_t flag);

/* Writes to the debug output as printf does and flushes it. Returns 1. */
TVXCOMN_API int32_t comn_debug_print(const char* format, ...) __attribute__((format(printf, 1, 2)));

/* Writes to the debug output with a formatter that knows c, d, s, x, X (32-bit integers,
 * characters, texts; a null text is written "(null)") and l, ld, lx (C's long), with flags and
 * widths, and "%%". A conversion that ends in anything else is written as the line
 * "illegal format specification\n" and ends the output, since the arguments that follow can no
 * longer be told apart. Returns 1. */
TVXCOMN_API int32_t comn_debug_vprint(const char* format, va_list arguments);

/* Does nothing and returns 0. */
TVXCOMN_API int32_t comn_dbg_stack(int32_t first, int32_t second, int32_t third, int32_t fourth);

/* Writes the low 8 bits of `byte` as two lower-case hexadecimal digits to out[0] and out[1],
 * without a terminator. */
TVXCOMN_API void com_prhex(int32_t byte, char* out);

/* intl_strlcpy and intl_strlcat for texts that must fit: a size below 1 or a result that does not
 * fit the destination's `size` bytes is a fatal usage error. Both return the length of the result.
 */
TVXCOMN_API int32_t com_copstr(char* destination, const char* source, int32_t size);
TVXCOMN_API int32_t com_catstr(char* destination, const char* source, int32_t size);

TVXCOMN_END

#endif
