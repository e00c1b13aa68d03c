// The debug stream and its small formatter, which passes to the C library only conversions that it
// has checked.
#include "runtime/debug_output.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "base/ascii.hpp"

namespace tvx::runtime {
namespace {

std::FILE* debug_file = nullptr;

std::FILE* debug_stream() {
  return debug_file != nullptr ? debug_file : stdout;
}

constexpr std::string_view kFlags = "-+ #0";

// One conversion of a format: flags, width, precision, an optional l, and its letter. It is taken
// apart and put together anew, so that what reaches the C library is always well formed and short.
class Conversion {
public:
  // Reads the conversion whose "%" stands at `format`; false when it ends in no known letter.
  bool read(const char* format) {
    const char* at = format + 1;
    for (; *at != '\0' && kFlags.find(*at) != std::string_view::npos; ++at) {
      flags_[kFlags.find(*at)] = true;
    }
    if (!read_number(at, width_)) return false;
    if (*at == '.') {
      precision_ = 0;
      if (!read_number(++at, precision_)) return false;
    }
    is_long_ = *at == 'l';
    if (is_long_) {
      ++at;
      letter_ = *at == 'd' || *at == 'x' ? *at++ : 'd';
    } else if (*at != '\0' && std::strchr("cdsxX", *at) != nullptr) {
      letter_ = *at++;
    } else {
      return false;
    }
    end_ = at;
    return true;
  }

  const char* end() const { return end_; }

  void print(std::FILE* stream, va_list* arguments) const {
    if (is_long_) {
      put(stream, va_arg(*arguments, long));
    } else if (letter_ == 's') {
      const char* text = va_arg(*arguments, const char*);
      put(stream, text != nullptr ? text : "(null)");
    } else {
      put(stream, va_arg(*arguments, int));
    }
  }

private:
  // Digits, maybe none; false when they make no int.
  static bool read_number(const char*& at, int& number) {
    for (; base::is_digit(*at); ++at) {
      if (__builtin_mul_overflow(number, 10, &number) ||
          __builtin_add_overflow(number, *at - '0', &number)) {
        return false;
      }
    }
    return true;
  }

  template <class Argument>
  void put(std::FILE* stream, Argument argument) const {
    char text[kFlags.size() + sizeof "%*.*ld"];
    char* at = text;
    *at++ = '%';
    for (size_t i = 0; i < kFlags.size(); ++i) {
      if (flags_[i]) *at++ = kFlags[i];
    }
    at = std::copy_n("*.*", 3, at);
    if (is_long_) *at++ = 'l';
    *at++ = letter_;
    *at = '\0';
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::fprintf(stream, text, width_, precision_, argument);
#pragma GCC diagnostic pop
  }

  bool flags_[kFlags.size()] = {};
  int width_ = 0;
  int precision_ = -1;  // negative: not given
  bool is_long_ = false;
  char letter_ = '\0';
  const char* end_ = nullptr;
};

}  // namespace

bool set_debug_file(const char* path) {
  if (debug_file != nullptr) {
    std::fclose(debug_file);
    debug_file = nullptr;
  }
  if (path == nullptr) return true;
  debug_file = std::fopen(path, "we");
  return debug_file != nullptr;
}

void debug_vprintf(const char* format, va_list arguments) {
  std::FILE* stream = debug_stream();
  std::vfprintf(stream, format, arguments);
  std::fflush(stream);
}

void debug_print(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  debug_vprintf(format, arguments);
  va_end(arguments);
}

void debug_format(const char* format, va_list arguments) {
  std::FILE* stream = debug_stream();
  va_list rest;
  va_copy(rest, arguments);
  for (const char* at = format; *at != '\0';) {
    if (*at != '%') {
      const size_t plain = std::strcspn(at, "%");
      std::fwrite(at, 1, plain, stream);
      at += plain;
    } else if (at[1] == '%') {
      std::fputc('%', stream);
      at += 2;
    } else if (Conversion conversion; conversion.read(at)) {
      conversion.print(stream, &rest);
      at = conversion.end();
    } else {
      // What the unknown conversion would have taken is unknown, and with it every later argument.
      std::fputs("illegal format specification\n", stream);
      break;
    }
  }
  va_end(rest);
  std::fflush(stream);
}

}  // namespace tvx::runtime
