// The ends of the process other than a failed check, and the mode in which it stops.
#pragma once

#include <cstdint>

namespace tvx::runtime {

// Writes the text to standard error and ends the process with exit status -1.
[[noreturn]] void panic(const char* text);

// 1: a fatal stop is final. Any other: a handler of SIGABRT may leave it with siglongjmp.
void set_abort_mode(int32_t mode);

}  // namespace tvx::runtime
