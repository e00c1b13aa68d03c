// The texts of the library's error numbers.
#include "errors.hpp"

#include <string_view>

#include "text_writer.hpp"
#include "tvxcomn/support.h"

namespace tvx::intl {
namespace {

// Empty for a kind that is none of the library's.
std::string_view text_of(int64_t kind) {
  switch (kind) {
#define TVX_INTL_CASE(name, number, text) \
  case number:                            \
    return text;
    TVX_INTL_ERRORS(TVX_INTL_CASE)
#undef TVX_INTL_CASE
    default:
      return {};
  }
}

void write_error(int32_t code, TextWriter& writer) {
  // Wider than the code, since the least 32-bit integer has no positive counterpart.
  const int64_t number = -static_cast<int64_t>(code);
  const int64_t line = number / 256;
  const std::string_view text = text_of(number % 256);
  if (text.empty() || line > kLastLine) {
    writer.put("unknown error number ");
    writer.put_number(code);
    return;
  }
  if (line > 0) {
    writer.put("line ");
    writer.put_number(line);
    writer.put(line == kLastLine ? " or later: " : ": ");
  }
  writer.put(text);
}

}  // namespace
}  // namespace tvx::intl

const char* intl_errstr(int32_t code) {
  if (code >= 0) return "no error";
  thread_local char buffer[128];
  tvx::intl::TextWriter writer(buffer);
  tvx::intl::write_error(code, writer);
  return buffer;
}
