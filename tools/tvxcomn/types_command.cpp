// tvxcomn types: the datatypes, a line each.
#include "command_line.hpp"
#include "display.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "tvxcomn/dispatch.h"
#include "value_conversion.hpp"

namespace tvx::tool {

namespace {

// Of a size that follows the format, the format's name for it.
std::string storage_of(int32_t code) {
  constexpr int32_t kProbe = 12345;
  const int32_t size = comn_typelen(code, kProbe);
  return size == kProbe ? "maxlength" : std::to_string(size);
}

std::string line_of(comn_context* context, int32_t code) {
  int32_t destinations = 0;
  int32_t sources = 0;
  for (int32_t other = 0; other < kTypeCount; ++other) {
    if (com_conv_func(context, code, other) != nullptr) ++destinations;
    if (com_conv_func(context, other, code) != nullptr) ++sources;
  }
  std::string line = right_aligned(std::to_string(code), 4) + "  " +
                     left_aligned(type_name(code), 12) + left_aligned(storage_of(code), 10);
  if (destinations == 0 && sources == 0) return line + "no conversions\n";
  return line + "converts to " + right_aligned(std::to_string(destinations), 2) + " types, from " +
         right_aligned(std::to_string(sources), 2) + "\n";
}

}  // namespace

int run_types(const Arguments& arguments) {
  CLI::App app("Lists the datatypes: code, name, bytes of storage, conversions.", "tvxcomn types");
  if (!read_arguments(app, arguments)) return kAllWell;
  const Context context = open_context();
  OutputFile output = OutputFile::standard_output();
  output.write("code  name        storage   conversions\n");
  for (int32_t code = 0; code < kTypeCount; ++code) output.write(line_of(context.get(), code));
  output.close();
  return kAllWell;
}

}  // namespace tvx::tool
