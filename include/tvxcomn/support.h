/* The internationalisation support library, libtvxintl64: heap, environment, home directory,
 * bounded strings, message building, a small file layer, and the reader of localisation files.
 * Lengths and results are 32-bit signed; a negative result is one of the library's error numbers,
 * whose text intl_errstr gives. Except where said otherwise the functions may be called from any
 * thread; a reader belongs to one thread at a time. */
#ifndef TVXCOMN_SUPPORT_H
#define TVXCOMN_SUPPORT_H

#include <stddef.h>
#include <stdint.h>

#include "tvxcomn/export.h"

TVXCOMN_BEGIN

/* ---- Heap: the only one of all the libraries --------------------------------------------- */

/* As the C library's functions without the prefix. What one of them, or any function of the stack,
 * gives out goes back through comn_free or comn_realloc, in whichever library that is. */
TVXCOMN_API void* comn_malloc(size_t size);
TVXCOMN_API void* comn_calloc(size_t count, size_t size);
TVXCOMN_API void* comn_realloc(void* block, size_t size);
TVXCOMN_API void comn_free(void* block);

/* ---- Localisation files ------------------------------------------------------------------ */

/* The state of a reader; the caller owns the record, the library its contents between intl_open and
 * intl_close. */
typedef struct intl_reader {
  uint64_t opaque[280];
} intl_reader;

/* The localised date and time data of a file's "datetime" section. All texts are NUL-terminated in
 * their slots. */
typedef struct intl_datetime_record {
  char months[12][21]; /* January first */
  char short_months[12][10];
  char days[7][31]; /* in the file's order */
  char unused[3];
  int32_t first_day;   /* 1 to 7: which of `days` begins the week */
  char date_order[4];  /* "mdy", "dmy", ... */
  int32_t twelve_hour; /* non-zero: times are shown on a 12-hour clock */
} intl_datetime_record;

/* Opens a localisation file. Returns 0 or more; or a negative error number, and the reader needs no
 * closing. What a reader still holds is lost when it is opened again before intl_close. */
TVXCOMN_API int32_t intl_open(const char* path, intl_reader* reader);

/* The name of the next section; the next key of the current section; the next value of the current
 * entry. Null at the end, with a status of 0 or more, or on error, with a negative status. After a
 * value the status is 1 while the entry has more values, else 0. The text lies in the reader's own
 * buffer, may be changed in place, and lives until the next call on the reader. A value written in
 * hexadecimal is raw bytes; at least three zero bytes follow it. */
TVXCOMN_API char* intl_nextsection(intl_reader* reader, int32_t* status);
TVXCOMN_API char* intl_nextentry(intl_reader* reader, int32_t* status);
TVXCOMN_API char* intl_nextvalue(intl_reader* reader, int32_t* status);

/* Releases what the reader holds. Returns 0 or more, or a negative error number. */
TVXCOMN_API int32_t intl_close(intl_reader* reader);

/* Fills a zeroed record from a reader that stands on a "datetime" section. Returns 0 or more, or a
 * negative error number. */
TVXCOMN_API int32_t intl_datetime(intl_reader* reader, intl_datetime_record* record);

/* The text of an error number, never null. It lives until the thread's next call. */
TVXCOMN_API const char* intl_errstr(int32_t code);

/* ---- Home and environment ---------------------------------------------------------------- */

/* Writes the installation's home directory, NUL-terminated and without a final "/", and returns its
 * length; negative when there is none, it does not fit, or the system's users cannot be looked up.
 * It is the value of TARVEX, else the home directory of the user tarvex, else the data directory
 * installed beside this library. */
TVXCOMN_API int32_t intl_home(char* buffer, int32_t size);

/* Writes the value of an environment variable, NUL-terminated, and returns its length; 0 when it is
 * unset or empty; negative when it does not fit. */
TVXCOMN_API int32_t intlgetenv(char* buffer, int32_t size, const char* name);

/* ---- Strings ----------------------------------------------------------------------------- */

/* As the C library's snprintf in the C locale, whatever locale the process has set: writes at most
 * `size` bytes, the last of them a NUL, and returns the length of the whole text; negative when it
 * cannot be formatted. */
TVXCOMN_API int32_t intl_snprintf(char* buffer, int32_t size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

/* Copies (appends) a text, cut to fit `size` bytes, NUL-terminated. Returns the length aimed at:
 * `size` or more means that the text was cut. Negative on a null pointer. */
TVXCOMN_API int32_t intl_strlcpy(char* destination, const char* source, int32_t size);
TVXCOMN_API int32_t intl_strlcat(char* destination, const char* source, int32_t size);

/* Builds a message from a template, in which "%1!", "%2!" and "%3!" stand for the arguments and
 * "%%" for a percent sign. `format` names the arguments that follow it, up to three: "%s" for a
 * text, "%ld" or "%d" for an int32_t, separated by blanks. The first argument is reserved and 0.
 * Returns the length written; negative when the template or the format is malformed, a place-holder
 * names an argument that is not there, or the text does not fit. */
TVXCOMN_API int32_t intl_strbuild(int32_t reserved, char* destination, int32_t size,
                                  const char* message_template, const char* format, ...);

/* ---- Files ------------------------------------------------------------------------------- */

#define INTL_IOCSF_READ 2

/* Opens a file for reading (mode INTL_IOCSF_READ, the only one); null when it cannot be opened. */
TVXCOMN_API void* intl_iocsfopen(const char* path, int32_t mode);

/* Reads up to `count` items of `size` bytes. Returns the whole items read; 0 at the end or on
 * error. */
TVXCOMN_API int32_t intl_iocsfread(void* buffer, int32_t size, int32_t count, void* file);

/* Closes the file. Returns 0, or a negative error number. */
TVXCOMN_API int32_t intl_iocsfclose(void* file);

TVXCOMN_END

#endif
