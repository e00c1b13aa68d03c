// Field writers.
#include "numeric/field_write.hpp"

#include <algorithm>
#include <cstring>

#include "numeric/integer_write.hpp"

namespace tvx::numeric {
namespace {

int32_t put_trailing(char* out, int32_t length, char trailing) {
  if (trailing == '\0') return length;
  out[length] = trailing;
  return length + 1;
}

}  // namespace

int32_t write_number(int32_t value, char* out, int32_t width) {
  const IntegerText<int32_t> text(value);
  if (width > 0 && text.length() > width) {
    *out = '*';
    return 1;
  }
  text.write(out);
  return text.length();
}

int32_t write_field(char* out, int32_t value, char trailing, int32_t width) {
  char digits[kMaxIntegerText];
  const IntegerText<int32_t> text(value);
  text.write(digits);
  // A width of the smallest integer has no positive counterpart in 32 bits.
  const int64_t field = width < 0 ? -int64_t{width} : int64_t{width};
  const int64_t kept = std::min<int64_t>(field, text.length());
  std::memset(out, width < 0 ? '0' : ' ', static_cast<size_t>(field - kept));
  std::memcpy(out + (field - kept), digits + (text.length() - kept), static_cast<size_t>(kept));
  return put_trailing(out, static_cast<int32_t>(field), trailing);
}

int32_t write_name(char* out, const char* text, char trailing, int32_t maximum) {
  int32_t length = 0;
  while (length < maximum && text[length] != '\0') {
    out[length] = text[length];
    ++length;
  }
  return put_trailing(out, length, trailing);
}

}  // namespace tvx::numeric
