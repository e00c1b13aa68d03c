// The fatal path and return tracing.
//
// The fatal stop is SIGABRT. In abort mode 1 nothing may bring the process back, so the default
// action is put in place first; in any other mode an installed handler runs and may leave with
// siglongjmp.
#include "runtime/diagnosis.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "os/signals.hpp"
#include "runtime/debug_output.hpp"
#include "runtime/fatal.hpp"

namespace tvx::runtime {

std::atomic<int32_t> trace_level{kTraceNothing};

namespace {

constexpr int32_t kAbortForGood = 1;
std::atomic<int32_t> abort_mode{kAbortForGood};

[[noreturn]] void stop() {
  if (abort_mode.load(std::memory_order_relaxed) == kAbortForGood) {
    std::fclose(stderr);
    std::signal(SIGABRT, SIG_DFL);
  } else {
    std::fflush(stderr);
    os::unblock_abort_signal();
    std::raise(SIGABRT);
    std::signal(SIGABRT, SIG_DFL);  // a handler that returned does not bring the call back
  }
  std::abort();
}

struct CodeName {
  int32_t code;
  const char* name;
};

#define TVX_CODE(name) \
  CodeName {           \
    name, #name        \
  }
constexpr std::array kCodeNames{
    TVX_CODE(CS_SUCCEED),       TVX_CODE(CS_FAIL),        TVX_CODE(CS_MEM_ERROR),
    TVX_CODE(CS_PENDING),       TVX_CODE(CS_QUIET),       TVX_CODE(CS_BUSY),
    TVX_CODE(CS_INTERRUPT),     TVX_CODE(CS_CANCELED),    TVX_CODE(CS_ROW_FAIL),
    TVX_CODE(CS_END_DATA),      TVX_CODE(CS_END_RESULTS), TVX_CODE(CS_END_ITEM),
    TVX_CODE(CS_NOMSG),         TVX_CODE(CS_TIMED_OUT),   TVX_CODE(CS_PASSTHRU_EOM),
    TVX_CODE(CS_PASSTHRU_MORE), TVX_CODE(CS_TRYING)};
#undef TVX_CODE

// Codes that are no failure, which level 2 passes over.
constexpr std::array kExpectedCodes{CS_SUCCEED,  CS_PENDING,     CS_INTERRUPT,
                                    CS_END_DATA, CS_END_RESULTS, CS_END_ITEM};

}  // namespace

void bomb(const char* file, int32_t line) {
  std::fprintf(stderr, "\n\rassertion failed, file '%s' line %d\n\r", file, line);
  stop();
}

void null_pointer(const char* file, int32_t line) {
  std::fprintf(stderr, "\nInvalid NULL pointer , file '%s' line %d\n", file, line);
  stop();
}

void panic(const char* text) {
  std::fprintf(stderr, "\nINTERNAL ERROR: unrecoverable error: %s\n", text);
  std::fflush(stderr);
  std::exit(-1);
}

void set_abort_mode(int32_t mode) {
  abort_mode.store(mode, std::memory_order_relaxed);
}

int32_t print_trace(int32_t code, const char* file, int32_t line) {
  const bool expected =
      std::find(kExpectedCodes.begin(), kExpectedCodes.end(), code) != kExpectedCodes.end();
  if (trace_level.load(std::memory_order_relaxed) == kTraceFailures && expected) return code;

  require_pointer(file);
  const char* slash = std::strrchr(file, '/');
  const char* short_file = slash == nullptr ? file : slash + 1;
  const auto* named = std::find_if(kCodeNames.begin(), kCodeNames.end(),
                                   [code](const CodeName& row) { return row.code == code; });
  if (named != kCodeNames.end()) {
    debug_print("(%s) file %s, line %d\n", named->name, short_file, line);
  } else {
    debug_print("(%ld) file %s, line %d\n", static_cast<long>(code), short_file, line);
  }
  return code;
}

}  // namespace tvx::runtime
