// Bounded strings: formatting that does not depend on the process's locale, and copies that cannot
// overrun.
#include <locale.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

#include "errors.hpp"
#include "tvxcomn/support.h"

namespace tvx::intl {
namespace {

// Puts the calling thread into the C locale for as long as it lives; the process's own locale stays
// as it is.
class CLocale {
public:
  CLocale() : previous_(uselocale(c_locale())) {}
  ~CLocale() { uselocale(previous_); }
  CLocale(const CLocale&) = delete;
  CLocale& operator=(const CLocale&) = delete;

private:
  static locale_t c_locale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{});
    return locale;
  }

  locale_t previous_;
};

int32_t to_length(size_t length) {
  return static_cast<int32_t>(std::min<size_t>(length, std::numeric_limits<int32_t>::max()));
}

// Writes as much of `source` as fits behind the first `used` bytes of a buffer of `size` bytes,
// with a NUL.
void copy_cut(char* destination, size_t used, const char* source, size_t length, size_t size) {
  if (used >= size) return;
  const size_t count = std::min(length, size - used - 1);
  std::memcpy(destination + used, source, count);
  destination[used + count] = '\0';
}

}  // namespace
}  // namespace tvx::intl

using namespace tvx::intl;

int32_t intl_snprintf(char* buffer, int32_t size, const char* format, ...) {
  const bool writes = buffer != nullptr && size > 0;
  if (writes) buffer[0] = '\0';
  if (format == nullptr) return error_number(ErrorKind::kBadArgument);
  std::va_list arguments;
  va_start(arguments, format);
  const CLocale locale;
  const int length = std::vsnprintf(writes ? buffer : nullptr,
                                    writes ? static_cast<size_t>(size) : 0, format, arguments);
  va_end(arguments);
  return length < 0 ? error_number(ErrorKind::kNotFormatted) : length;
}

int32_t intl_strlcpy(char* destination, const char* source, int32_t size) {
  if (source == nullptr || (destination == nullptr && size > 0)) {
    return error_number(ErrorKind::kBadArgument);
  }
  const size_t length = std::strlen(source);
  if (size > 0) copy_cut(destination, 0, source, length, static_cast<size_t>(size));
  return to_length(length);
}

int32_t intl_strlcat(char* destination, const char* source, int32_t size) {
  if (source == nullptr || (destination == nullptr && size > 0)) {
    return error_number(ErrorKind::kBadArgument);
  }
  const size_t room = size > 0 ? static_cast<size_t>(size) : 0;
  const size_t used = room > 0 ? strnlen(destination, room) : 0;
  const size_t length = std::strlen(source);
  copy_cut(destination, used, source, length, room);
  return to_length(used + length);
}
