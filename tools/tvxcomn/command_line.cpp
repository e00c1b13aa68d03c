#include "command_line.hpp"

#include "display.hpp"
#include "failure.hpp"
#include "files.hpp"

namespace tvx::tool {

namespace {

// CLI11 takes an argument "[a,b]" apart into a list. A line end behind everything that begins with
// a bracket keeps it from doing so; plain_values removes it again.
constexpr char kBracketGuard = '\n';

bool begins_with_bracket(const std::string& text) {
  return !text.empty() && text.front() == '[';
}

std::string unexpected(const std::string& argument) {
  const std::string shown = quoted_for_display(argument);
  if (argument.front() != '-') return shown + " is not expected here";
  return shown + " is no option; write -- in front of values that begin with a dash";
}

std::string advice(const CLI::App& app) {
  return "\n\"" + app.get_name() + " --help\" shows what to write";
}

}  // namespace

bool read_arguments(CLI::App& app, const Arguments& arguments) {
  Arguments reversed(arguments.rbegin(), arguments.rend());
  for (std::string& argument : reversed) {
    if (begins_with_bracket(argument)) argument += kBracketGuard;
  }
  try {
    app.parse(reversed);
  } catch (const CLI::CallForHelp&) {
    OutputFile output = OutputFile::standard_output();
    output.write(app.help() + "\n");
    output.close();
    return false;
  } catch (const CLI::ExtrasError&) {
    throw Failure(unexpected(app.remaining().front()) + advice(app));
  } catch (const CLI::ParseError& error) {
    throw Failure(error.what() + advice(app));
  }
  return true;
}

CLI::Validator decimal() {
  const auto read = [](std::string& text) {
    const std::string number = text.substr(std::min(text.find_first_not_of(' '), text.size()));
    const bool is_negative = number.starts_with('-');
    const std::string digits = number.substr(is_negative || number.starts_with('+') ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != digits.npos)
      return quoted_for_display(text) + " is no whole number";
    const size_t first = std::min(digits.find_first_not_of('0'), digits.size() - 1);
    text = (is_negative ? "-" : "") + digits.substr(first);
    return std::string();
  };
  return CLI::Validator(read, "");
}

Arguments plain_values(const CLI::Option& option) {
  Arguments values = option.results();
  for (std::string& value : values) {
    if (begins_with_bracket(value)) value.pop_back();
  }
  return values;
}

}  // namespace tvx::tool
