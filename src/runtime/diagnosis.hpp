// The checks that every operation makes and the point at which its result leaves the library. Both
// take their source position from the caller, so that a fatal message and a trace line name the
// check itself.
#pragma once

#include <atomic>
#include <cstdint>
#include <initializer_list>

#include "tvxcomn/datatypes.h"

namespace tvx::runtime {

// Stop the process as the abort mode tells, after naming the position on standard error.
[[noreturn]] void bomb(const char* file, int32_t line);
[[noreturn]] void null_pointer(const char* file, int32_t line);

// A broken rule of usage or an internal contradiction is fatal.
inline void require(bool holds, const char* file = __builtin_FILE(),
                    int32_t line = __builtin_LINE()) {
  if (!holds) [[unlikely]]
    bomb(file, line);
}

inline void require_pointer(const void* pointer, const char* file = __builtin_FILE(),
                            int32_t line = __builtin_LINE()) {
  if (pointer == nullptr) [[unlikely]]
    null_pointer(file, line);
}

inline void require_pointers(std::initializer_list<const void*> pointers,
                             const char* file = __builtin_FILE(), int32_t line = __builtin_LINE()) {
#pragma GCC unroll 8
  for (const void* const pointer : pointers) require_pointer(pointer, file, line);
}

inline constexpr int32_t kTraceNothing = 1;
inline constexpr int32_t kTraceFailures = 2;
inline constexpr int32_t kTraceAll = 3;

// Process-wide, set before threads start; atomic only so that reading it is never a data race.
extern std::atomic<int32_t> trace_level;

// Returns the code, so that the trace point can end in this call.
int32_t print_trace(int32_t code, const char* file, int32_t line);

// The trace point: one load and one predictable branch while nothing is traced.
inline int32_t traced(int32_t code, const char* file = __builtin_FILE(),
                      int32_t line = __builtin_LINE()) {
  if (trace_level.load(std::memory_order_relaxed) != kTraceNothing) [[unlikely]]
    return print_trace(code, file, line);
  return code;
}

}  // namespace tvx::runtime
