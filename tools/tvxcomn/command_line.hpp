// The command line: the commands, and what they share in reading their arguments.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tvx::tool {

using Arguments = std::vector<std::string>;

// Each runs one command with the arguments that follow its name, returns the exit status, and
// throws Failure.
int run_calc(const Arguments& arguments);
int run_convert(const Arguments& arguments);
int run_csv(const Arguments& arguments);
int run_date(const Arguments& arguments);
int run_table(const Arguments& arguments);
int run_types(const Arguments& arguments);

// Reads the arguments into the options of `app`. Returns false when they asked for help, which has
// then been printed; throws Failure at a mistake.
[[nodiscard]] bool read_arguments(CLI::App& app, const Arguments& arguments);

// For options that are whole numbers: decimal ones, whatever they begin with. CLI11 alone would
// read 010 as eight, 0x10 as sixteen and nothing as zero.
[[nodiscard]] CLI::Validator decimal();

// The values given to a positional option, as they stand on the command line.
[[nodiscard]] Arguments plain_values(const CLI::Option& option);

}  // namespace tvx::tool
