// Exported functions of diagnosis.h.
#include "tvxcomn/diagnosis.h"

#include <cstdio>
#include <cstring>

#include "base/hexadecimal.hpp"
#include "runtime/debug_output.hpp"
#include "runtime/diagnosis.hpp"
#include "runtime/fatal.hpp"
#include "tvxcomn/support.h"

namespace rt = tvx::runtime;

namespace {

// The text is a format without arguments, of which only "%%" can mean anything.
void put_perr_text(const char* text, std::FILE* stream) {
  for (const char* at = text; *at != '\0'; ++at) {
    std::fputc(*at, stream);
    if (at[0] == '%' && at[1] == '%') ++at;
  }
}

void require_room(size_t length, int32_t size, int32_t line = __builtin_LINE()) {
  rt::require(size >= 1, __FILE__, line);
  rt::require(length < static_cast<size_t>(size), __FILE__, line);
}

}  // namespace

extern "C" {

int32_t com_errtrace(int32_t code, const char* file, int32_t line) {
  return rt::traced(code, file, line);
}

int32_t com_errset(int32_t level) {
  rt::require(level >= rt::kTraceNothing && level <= rt::kTraceAll);
  rt::trace_level.store(level, std::memory_order_relaxed);
  return level;
}

void com_bomb(const char* file, int32_t line) {
  rt::bomb(file, line);
}

void com_raise_invalid_null_pointer(const char* file, int32_t line) {
  rt::null_pointer(file, line);
}

void com_panic(const char* text) {
  rt::panic(text);
}

void com_toggle_abort(int32_t mode) {
  rt::set_abort_mode(mode);
}

void com_perr(const char* text) {
  rt::require_pointer(text);
  put_perr_text(text, stderr);
  std::fflush(stderr);
  if (std::FILE* log = std::fopen("tvxinit.err", "ae"); log != nullptr) {
    put_perr_text(text, log);
    std::fclose(log);
  }
}

int32_t comn_debug_setfile(void*, const char* path, int32_t flag) {
  return rt::set_debug_file(flag != 0 ? path : nullptr) ? 1 : 0;
}

int32_t comn_debug_print(const char* format, ...) {
  rt::require_pointer(format);
  va_list arguments;
  va_start(arguments, format);
  rt::debug_vprintf(format, arguments);
  va_end(arguments);
  return 1;
}

int32_t comn_debug_vprint(const char* format, va_list arguments) {
  rt::require_pointer(format);
  rt::debug_format(format, arguments);
  return 1;
}

int32_t comn_dbg_stack(int32_t, int32_t, int32_t, int32_t) {
  return 0;
}

void com_prhex(int32_t byte, char* out) {
  rt::require_pointer(out);
  const auto value = static_cast<uint8_t>(byte);
  tvx::base::write_hex(&value, 1, out);
}

int32_t com_copstr(char* destination, const char* source, int32_t size) {
  rt::require_pointer(destination);
  rt::require_pointer(source);
  require_room(std::strlen(source), size);
  return intl_strlcpy(destination, source, size);
}

int32_t com_catstr(char* destination, const char* source, int32_t size) {
  rt::require_pointer(destination);
  rt::require_pointer(source);
  require_room(std::strlen(destination) + std::strlen(source), size);
  return intl_strlcat(destination, source, size);
}

}  // extern "C"
