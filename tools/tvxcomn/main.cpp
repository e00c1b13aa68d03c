// tvxcomn: shows what the library does with values and with files of them. A thin program over the
// public headers.
#include <cstdio>
#include <exception>
#include <string>

#include "command_line.hpp"
#include "failure.hpp"
#include "files.hpp"

namespace {

namespace tool = tvx::tool;

struct Command {
  const char* name;
  int (*run)(const tool::Arguments& arguments);
};

constexpr Command kCommands[] = {
    {"convert", tool::run_convert}, {"csv", tool::run_csv},     {"calc", tool::run_calc},
    {"date", tool::run_date},       {"types", tool::run_types}, {"table", tool::run_table},
};

constexpr char kHelp[] =
    "usage: tvxcomn COMMAND [ARGUMENT ...]\n"
    "\n"
    "  convert   converts single values and shows result, length, bytes and text\n"
    "  csv       converts the columns of a CSV file to datatypes and reports what failed\n"
    "  calc      does one operation on two numbers and shows their types and the result's\n"
    "  date      shows the forms and parts of a date, adds to it and counts between two\n"
    "  types     lists the datatypes\n"
    "  table     shows which datatype converts to which\n"
    "\n"
    "\"tvxcomn COMMAND --help\" explains a command.\n"
    "Exit status: 0 all well, 1 values or rows failed, 2 bad usage or an input/output error.\n";

int run(const tool::Arguments& arguments) {
  if (arguments.empty()) throw tool::Failure(std::string("no command given\n") + kHelp);
  const std::string& name = arguments.front();
  if (name == "--help" || name == "-h" || name == "help") {
    tool::OutputFile output = tool::OutputFile::standard_output();
    output.write(kHelp);
    output.close();
    return tool::kAllWell;
  }
  for (const Command& command : kCommands) {
    if (name == command.name) return command.run({arguments.begin() + 1, arguments.end()});
  }
  throw tool::Failure("unknown command \"" + name + "\"\n" + kHelp);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tvxcomn: %s\n", error.what());
    return tool::kStopped;
  }
}
