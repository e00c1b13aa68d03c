// tvxcomn table: which datatype converts to which, as a picture in which every hole shows.
#include <algorithm>

#include "command_line.hpp"
#include "display.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "tvxcomn/dispatch.h"
#include "value_conversion.hpp"

namespace tvx::tool {

namespace {

constexpr std::size_t kLabelWidth = 15;  // "39 locator39" and some air
constexpr std::size_t kCellWidth = 2;

std::size_t longest_name() {
  std::size_t longest = 0;
  for (int32_t code = 0; code < kTypeCount; ++code) {
    longest = std::max(longest, type_name(code).size());
  }
  return longest;
}

std::string cell(char mark) {
  return right_aligned(std::string_view(&mark, 1), kCellWidth);
}

// The names of the destinations from top to bottom, each ending above its column, then their codes
// in two lines.
std::string heading() {
  std::string text;
  const std::size_t height = longest_name();
  for (std::size_t line = 0; line < height; ++line) {
    std::string row(kLabelWidth, ' ');
    for (int32_t code = 0; code < kTypeCount; ++code) {
      row += cell(right_aligned(type_name(code), height)[line]);
    }
    text += row.substr(0, row.find_last_not_of(' ') + 1) + "\n";
  }
  std::string tens(kLabelWidth, ' ');
  std::string units = left_aligned("source", kLabelWidth);
  for (int32_t code = 0; code < kTypeCount; ++code) {
    const std::string digits = right_aligned(std::to_string(code), 2);
    tens += cell(digits[0]);
    units += cell(digits[1]);
  }
  return text + tens + "\n" + units + "\n";
}

}  // namespace

int run_table(const Arguments& arguments) {
  CLI::App app("Shows which datatype (row) converts to which (column).", "tvxcomn table");
  if (!read_arguments(app, arguments)) return kAllWell;
  const Context context = open_context();
  OutputFile output = OutputFile::standard_output();
  output.write(heading());
  int32_t served = 0;
  for (int32_t source = 0; source < kTypeCount; ++source) {
    std::string row = right_aligned(std::to_string(source), 2) + " ";
    row = left_aligned(row.append(type_name(source)), kLabelWidth);
    for (int32_t destination = 0; destination < kTypeCount; ++destination) {
      const bool exists = com_conv_func(context.get(), source, destination) != nullptr;
      row += cell(exists ? '*' : '.');
      served += exists ? 1 : 0;
    }
    output.write(row + "\n");
  }
  output.write("\n" + std::to_string(served) + " of " + std::to_string(kTypeCount * kTypeCount) +
               " pairs have a routine (*)\n");
  output.close();
  return kAllWell;
}

}  // namespace tvx::tool
