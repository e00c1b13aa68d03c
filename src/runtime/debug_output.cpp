// The debug stream and its small formatter, which passes to the C library only conversions that it
// has checked.
#include "runtime/debug_output.hpp"

#include <cstdio>
#include <cstring>
#include <string_view>

namespace tvx::runtime {
namespace {

std::FILE* debug_file = nullptr;

std::FILE* debug_stream() {
  return debug_file != nullptr ? debug_file : stdout;
}

constexpr std::string_view kFlagsAndWidths = "-+ #0123456789.";

// One conversion as it stands in a format: "%", flags and widths, an optional l, and its letter.
class Conversion {
public:
  // Reads the conversion whose "%" stands at `format`; false when it ends in no known letter.
  bool read(const char* format) {
    const char* at = format + 1;
    while (*at != '\0' && kFlagsAndWidths.find(*at) != std::string_view::npos) ++at;
    if (*at == 'l') {
      is_long_ = true;
      ++at;
      letter_ = (*at == 'd' || *at == 'x') ? *at++ : 'd';
    } else if (*at != '\0' && std::strchr("cdsxX", *at) != nullptr) {
      letter_ = *at++;
    } else {
      return false;
    }
    return build(format, at);
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
  bool build(const char* begin, const char* end) {
    end_ = end;
    const auto flags_end = begin + 1 + std::strspn(begin + 1, kFlagsAndWidths.data());
    const auto length = static_cast<size_t>(flags_end - begin);
    if (length + 3 > sizeof text_) return false;
    std::memcpy(text_, begin, length);
    char* at = text_ + length;
    if (is_long_) *at++ = 'l';
    *at++ = letter_;
    *at = '\0';
    return true;
  }

  template <class Argument>
  void put(std::FILE* stream, Argument argument) const {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::fprintf(stream, text_, argument);
#pragma GCC diagnostic pop
  }

  char text_[64] = {};
  char letter_ = '\0';
  bool is_long_ = false;
  const char* end_ = nullptr;
};

}  // namespace

bool set_debug_file(const char* path) {
  if (debug_file != nullptr) {
    std::fclose(debug_file);
    debug_file = nullptr;
  }
  if (path == nullptr) return true;
  debug_file = std::fopen(path, "w");
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
