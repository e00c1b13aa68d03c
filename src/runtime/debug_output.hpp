// Debug output: a file of the caller's choice, or standard output.
#pragma once

#include <cstdarg>

namespace tvx::runtime {

// Closes the current debug file, if any, and with a path opens that one for writing. False when it
// cannot be opened; output then goes to standard output, as it does without a path.
bool set_debug_file(const char* path);

// Writes as printf does, and flushes.
void debug_print(const char* format, ...) __attribute__((format(printf, 1, 2)));
void debug_vprintf(const char* format, va_list arguments) __attribute__((format(printf, 1, 0)));

// Writes with the small formatter of comn_debug_vprint, and flushes.
void debug_format(const char* format, va_list arguments);

}  // namespace tvx::runtime
