// Messages built from a template and up to three arguments. A translator may use the arguments in
// any order, repeat or leave out some, so the template refers to them by number and a format beside
// it tells their types.
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "errors.hpp"
#include "text_writer.hpp"
#include "tvxcomn/support.h"

namespace tvx::intl {
namespace {

class Arguments {
public:
  // Takes the arguments that the format names from the list.
  std::optional<ErrorKind> read(std::string_view format, std::va_list list) {
    while (true) {
      const size_t first = format.find_first_not_of(' ');
      if (first == format.npos) return {};
      format.remove_prefix(first);
      const std::string_view conversion = format.substr(0, format.find(' '));
      format.remove_prefix(conversion.size());
      if (count_ == texts_.size()) return ErrorKind::kBadFormat;
      if (conversion == "%s") {
        const char* text = va_arg(list, const char*);
        if (text == nullptr) return ErrorKind::kBadArgument;
        texts_[count_] = text;
      } else if (conversion == "%ld" || conversion == "%d") {
        TextWriter writer(numbers_[count_]);
        writer.put_number(va_arg(list, int32_t));
        texts_[count_] = {numbers_[count_].data(), writer.length()};
      } else {
        return ErrorKind::kBadFormat;
      }
      ++count_;
    }
  }

  // Replaces the place-holders of a template.
  std::optional<ErrorKind> expand(std::string_view message_template, TextWriter& writer) const {
    while (true) {
      const size_t percent = message_template.find('%');
      writer.put(message_template.substr(0, percent));
      if (percent == message_template.npos) break;
      message_template.remove_prefix(percent + 1);
      if (message_template.starts_with('%')) {
        writer.put("%");
        message_template.remove_prefix(1);
        continue;
      }
      const size_t index =
          message_template.empty() ? texts_.size() : static_cast<size_t>(message_template[0]) - '1';
      if (index >= texts_.size() || !message_template.substr(1).starts_with('!')) {
        return ErrorKind::kBadTemplate;
      }
      if (index >= count_) return ErrorKind::kNoSuchArgument;
      writer.put(texts_[index]);
      message_template.remove_prefix(2);
    }
    if (writer.cut()) return ErrorKind::kBufferTooSmall;
    return {};
  }

private:
  std::array<std::string_view, 3> texts_;
  std::array<std::array<char, 12>, 3> numbers_;  // "-2147483648" and a NUL
  size_t count_ = 0;
};

}  // namespace
}  // namespace tvx::intl

using namespace tvx::intl;

int32_t intl_strbuild(int32_t reserved, char* destination, int32_t size,
                      const char* message_template, const char* format, ...) {
  if (destination == nullptr || size < 1) return error_number(ErrorKind::kBadArgument);
  destination[0] = '\0';
  if (reserved != 0 || message_template == nullptr || format == nullptr) {
    return error_number(ErrorKind::kBadArgument);
  }

  Arguments arguments;
  std::va_list list;
  va_start(list, format);
  std::optional<ErrorKind> error = arguments.read(format, list);
  va_end(list);

  TextWriter writer({destination, static_cast<size_t>(size)});
  if (!error) error = arguments.expand(message_template, writer);
  if (!error) return static_cast<int32_t>(writer.length());
  destination[0] = '\0';
  return error_number(*error);
}
