#include "type_names.hpp"

#include <array>

#include "failure.hpp"
#include "tvxcomn/datatypes.h"

namespace tvx::tool {

namespace {

constexpr std::string_view kNoName = "-";

// By code.
constexpr std::array<std::string_view, kTypeCount> kNames = {
    "char",        "bin",       "char2",     "bin3",      "text",     "image",    "i1",
    "i2",          "i4",        "flt4",      "flt8",      "bit",      "datetime", "date4",
    "money",       "mny4",      "num",       "num17",     "varchar",  "varbin",   "int20",
    "char21",      "char22",    "null23",    kNoName,     "unichar",  kNoName,    "datea",
    "timea",       "unichar29", "i8",        "ui2",       "ui4",      "ui8",      "char34",
    "bigdatetime", "bigtime",   "locator37", "locator38", "locator39"};

// More than any buffer the command would get, and far from the limits of 32 bits.
constexpr int32_t kLargestArgument = 16 * 1024 * 1024;

std::string list_of_names() {
  std::string list;
  for (const std::string_view name : kNames) {
    if (name == kNoName) continue;
    if (!list.empty()) list += ", ";
    list += name;
  }
  return list;
}

int32_t code_of(std::string_view name) {
  for (std::size_t code = 0; code < kNames.size(); ++code) {
    if (kNames[code] == name && name != kNoName) return static_cast<int32_t>(code);
  }
  throw Failure("unknown type \"" + std::string(name) + "\"; the types are " + list_of_names());
}

[[noreturn]] void bad_arguments(std::string_view text) {
  throw Failure("\"" + std::string(text) +
                "\" is no type; write a name alone, NAME(BYTES) for text and binary types, or "
                "NAME(PRECISION,SCALE) for num and num17");
}

int32_t parse_number(std::string_view digits, std::string_view whole) {
  int32_t number = 0;
  if (digits.empty()) bad_arguments(whole);
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') bad_arguments(whole);
    number = number * 10 + (digit - '0');
    if (number > kLargestArgument) {
      throw Failure("\"" + std::string(whole) + "\": a number in a type is at most " +
                    std::to_string(kLargestArgument));
    }
  }
  return number;
}

}  // namespace

std::string_view type_name(int32_t code) {
  return kNames.at(static_cast<std::size_t>(code));
}

bool has_open_size(int32_t code) {
  // The storage size of unichar is that of one code unit; its values are as long as their format
  // says, too.
  constexpr int32_t kProbe = 12345;
  return code == TVX_TYPE_UNICHAR || comn_typelen(code, kProbe) == kProbe;
}

bool is_text(int32_t code) {
  return code == TVX_TYPE_CHAR || code == TVX_TYPE_CHAR2 || code == TVX_TYPE_TEXT ||
         code == TVX_TYPE_CHAR21 || code == TVX_TYPE_CHAR22 || code == TVX_TYPE_CHAR34;
}

bool is_exact_numeric(int32_t code) {
  return code == TVX_TYPE_NUM || code == TVX_TYPE_NUM17;
}

DataType parse_type(std::string_view text) {
  const std::size_t open = text.find('(');
  DataType type;
  type.code = code_of(text.substr(0, open));
  if (open == std::string_view::npos) return type;
  if (text.back() != ')') bad_arguments(text);

  const std::string_view arguments = text.substr(open + 1, text.size() - open - 2);
  const std::size_t comma = arguments.find(',');
  const int32_t first = parse_number(arguments.substr(0, comma), text);
  if (is_exact_numeric(type.code)) {
    type.precision = first;
    type.scale =
        comma == std::string_view::npos ? 0 : parse_number(arguments.substr(comma + 1), text);
  } else if (has_open_size(type.code) && comma == std::string_view::npos) {
    type.maxlength = first;
  } else {
    bad_arguments(text);
  }
  return type;
}

std::string written_type(const DataType& type) {
  std::string text(type_name(type.code));
  if (type.maxlength) text.append("(").append(std::to_string(*type.maxlength)).append(")");
  if (type.precision) {
    text.append("(").append(std::to_string(*type.precision)).append(",");
    text.append(std::to_string(type.scale.value_or(0))).append(")");
  }
  return text;
}

}  // namespace tvx::tool
