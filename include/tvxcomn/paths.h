/* Where the library finds its files, what it reads of the environment, who it says it is, and the
 * record that hangs together what callers of one process share.
 *
 * Except where said otherwise a null pointer and a size below 1 are fatal usage errors, and the
 * functions may be called from any thread while none changes the environment. */
#ifndef TVXCOMN_PATHS_H
#define TVXCOMN_PATHS_H

#include "tvxcomn/datatypes.h"
#include "tvxcomn/threads.h"

TVXCOMN_BEGIN

/* ---- Paths --------------------------------------------------------------------------------
 *
 * Every file lies under the home directory, which intl_home gives. Each of these functions writes
 * the path of a file, NUL-terminated, whether or not there is such a file; its pieces are joined by
 * "/", an empty one is left out. Returns CS_SUCCEED; CS_FAIL when the path with its terminator does
 * not fit `size` bytes; -301 when the support library names no home directory, with its number in
 * the context's last_support_error (the context may be null). A path that cannot be written leaves
 * an empty text. A home directory of more than `size` bytes is a fatal usage error.
 *
 * `with_nxc` 1 puts the value of the environment variable TARVEX_NXC, when it is set, behind the
 * home directory; any other value does not. A value longer than is said is CS_FAIL. */

/* home[/TARVEX_NXC][/piece1][/piece2]. The whole buffer is zeroed first. A piece may be null;
 * TARVEX_NXC has up to 511 bytes. */
TVXCOMN_API int32_t com_path_anyfile(char* buffer, int32_t size, const char* piece1,
                                     const char* piece2, int32_t with_nxc);

/* The interfaces file: home/ini/sql.ini. */
TVXCOMN_API int32_t com_path_ifile(comn_context* context, char* buffer, int32_t size);

/* A configuration file: home[/TARVEX_NXC]/ini/file_name. TARVEX_NXC has up to 512 bytes. */
TVXCOMN_API int32_t com_path_cfgfile(comn_context* context, const char* file_name, char* buffer,
                                     int32_t size, int32_t with_nxc);

/* A message file: home/locales/message/language/file_name. Lengths are in bytes or CS_NULLTERM; any
 * other negative one is a fatal usage error. */
TVXCOMN_API int32_t com_path_msgfile(comn_context* context, const char* language,
                                     int32_t language_length, const char* file_name,
                                     int32_t file_name_length, char* buffer, int32_t size);

/* A character set's file: home/charsets/charset[/file_name[.extension]]. The file name may be null,
 * which ends the path at the character set's directory, and so may the extension. */
TVXCOMN_API int32_t com_path_charfile(comn_context* context, const char* charset,
                                      const char* file_name, const char* extension, char* buffer,
                                      int32_t size);

/* ---- Environment -------------------------------------------------------------------------- */

/* The value of an environment variable in a block that the caller releases with comn_free. Null
 * when the name is null, the variable is unset, empty or longer than 255 bytes, or memory runs
 * out. */
TVXCOMN_API char* com_getenv(const char* name);

/* Sets the process-wide path of the transport configuration file; null or an empty text: none. It
 * is unguarded: set before threads start. Returns 1; 0, with the old path kept, for a path of 512
 * bytes or more. */
TVXCOMN_API int32_t com_set_qtlcfg(const char* path);

/* Writes the path of the transport configuration file, NUL-terminated: the one that was set, else
 * the value of TARVEX_QTL_CFG, else com_path_cfgfile's for "libqtl64.cfg" with TARVEX_NXC, for
 * which a home directory of more than `size` bytes is fatal. Returns its length; 0, with an empty
 * text where there is room for one, when it does not fit, whatever the size, or cannot be formed.
 */
TVXCOMN_API int32_t com_get_qtlcfg(char* buffer, int32_t size);

/* ---- Identity ----------------------------------------------------------------------------- */

#define COM_APPNAME_LOWER 1
#define COM_APPNAME_UPPER 2

/* Writes the file name of the running program without directory and extension, NUL-terminated and
 * cut to fit. `letter_case` COM_APPNAME_LOWER or COM_APPNAME_UPPER maps its ASCII letters, any
 * other value leaves them. Returns CS_SUCCEED; CS_FAIL, with an empty text, when the program's path
 * is longer than 259 bytes or not to be had. The context is not used and may be null. */
TVXCOMN_API int32_t comn__genappname_from_exec(comn_context* context, char* buffer, int32_t size,
                                               int32_t letter_case);

/* Stores the library's version as one number (major x 1000 + minor x 100 + patch) and 1. */
TVXCOMN_API void com_version(int32_t* version, int32_t* flag);

/* The suffix of the library's driver version: an empty text, static. */
TVXCOMN_API const char* com_get_driverversionsuffix(void);

/* Compares two areas byte by byte, as unsigned numbers, over their common length; if they agree so
 * far, the shorter one is the smaller. Returns -1, 0 or 1: a is below, equal to or above b. A
 * negative length is a fatal usage error. */
TVXCOMN_API int32_t com_memhilo(const void* a, int32_t a_length, const void* b, int32_t b_length);

/* ---- Application global ------------------------------------------------------------------- */

/* What the users of one process, or of a part of it, share. It is read and changed under its mutex
 * only, and made and dropped by the two functions below, from any thread at any time. */
typedef struct com_appglobal {
  int32_t counters[4]; /* all 0 at the end */
  int32_t references;
  void* value; /* of the first allocation */
  comn_mutex* mutex;
  void* files; /* head of the list of loaded configuration files, or null */
} com_appglobal;

#define COM_APPGLOBAL_STATIC 1 /* flag: the one global of the whole process */

/* Stores in `*global` the process's global, with one reference more, or a new global of one
 * reference without COM_APPGLOBAL_STATIC. Who takes the first reference has `value` stored in it.
 * The caller may hold its mutex. Returns CS_SUCCEED; CS_FAIL, with null stored, when memory runs
 * out. */
TVXCOMN_API int32_t com_appglobal_alloc(com_appglobal** global, void* value, int32_t flags);

/* Takes a reference back. With the last one, when nobody holds the mutex, the configuration files
 * are released, the record is cleared, the mutex deleted and the record, unless it is the
 * process's, freed. Returns CS_SUCCEED. Fatal usage errors are the process's global without
 * COM_APPGLOBAL_STATIC, a global without references, and a counter other than 0 at the end. */
TVXCOMN_API int32_t com_appglobal_drop(com_appglobal* global, int32_t flags);

TVXCOMN_END

#endif
