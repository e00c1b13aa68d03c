// tvxcomn date: a moment in all its forms, its parts, and calculations with dates.
#include <array>
#include <cstring>
#include <optional>

#include "command_line.hpp"
#include "date_values.hpp"
#include "display.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "result_names.hpp"
#include "tvxcomn/datearith.h"
#include "value_conversion.hpp"

namespace tvx::tool {

namespace {

// By number.
constexpr std::array<std::string_view, COM_PART_MICROSECOND + 1> kParts = {
    "year",   "quarter",     "month", "weekday", "day",     "dayofyear",  "hour",       "minute",
    "second", "millisecond", "week",  "isoyear", "isoweek", "isoweekday", "microsecond"};

constexpr int32_t kSunday = 7;

int32_t part_number(const std::string& name) {
  const auto* part = std::find(kParts.begin(), kParts.end(), name);
  if (part != kParts.end()) return static_cast<int32_t>(part - kParts.begin());
  std::string list;
  for (const std::string_view known : kParts) list.append(list.empty() ? "" : ", ").append(known);
  throw Failure(quoted_for_display(name) + " is no part of a date; the parts are " + list);
}

const DateType& parse_date_type(const std::string& name) {
  const DateType* type = date_type(parse_type(name).code);
  if (type != nullptr) return *type;
  throw Failure(name +
                " is no date or time type; write datetime, date4, datea, timea, bigdatetime "
                "or bigtime");
}

// ---- Values ------------------------------------------------------------------------------------

// A value of one of the types; the longest have eight bytes.
struct DateValue {
  std::array<char, sizeof(uint64_t)> bytes{};
  int32_t length = 0;

  template <class T>
  [[nodiscard]] T as() const {
    T value;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
  }
};

class Dates {
public:
  explicit Dates(comn_context* context) : context_(context) {}

  // Reads a text as a value of `code`. Throws Failure.
  DateValue read(const std::string& text, int32_t code) const {
    if (text.empty()) throw Failure("an empty text is no date");
    return converted(text, TVX_TYPE_CHAR, code, quoted_for_display(text));
  }

  // Reads a text as a value of the type, in the type with which is calculated.
  DateValue read_for_calculation(const std::string& text, const DateType& type) const {
    const DateValue value = read(text, type.code);
    if (type.calculates_as == type.code) return value;
    return converted({value.bytes.data(), static_cast<size_t>(value.length)}, type.code,
                     type.calculates_as, quoted_for_display(text));
  }

private:
  DateValue converted(std::string_view source, int32_t from, int32_t to,
                      const std::string& shown) const {
    Value value;
    const int32_t result = Conversion(context_, {from}, {to}).run(source, value);
    if (!succeeded(result)) {
      throw Failure(shown + " to " + std::string(type_name(to)) + ": " + result_name(result));
    }
    DateValue date;
    date.length = value.length;
    std::memcpy(date.bytes.data(), value.bytes().data(), value.bytes().size());
    return date;
  }

  comn_context* context_;
};

comnb_value bare_value(DateValue& value, uint8_t token, int32_t size) {
  comnb_value bare{};
  bare.length = bare.maxlength = size;
  bare.token = token;
  bare.data = value.bytes.data();
  return bare;
}

// The text of a value in the form of a style; nothing where the style has no form.
std::optional<std::string> written(DateValue value, const DateType& type, int32_t style) {
  std::array<char, 64> text;
  comnb_value destination{};
  destination.data = text.data();
  destination.maxlength = static_cast<int32_t>(text.size());
  const comnb_value source = bare_value(value, type.token, value.length);
  const comnb_context context = style_context(style);
  if (!succeeded(type.write(&context, &source, &destination))) return std::nullopt;
  return std::string(text.data(), static_cast<size_t>(destination.length));
}

// ---- The four questions ------------------------------------------------------------------------

struct DateOptions {
  std::string type = std::string(type_name(TVX_TYPE_DATETIME));
  std::string part;
  int32_t amount = 0;
  std::optional<int32_t> style;
  std::string value;
  std::string end;
};

std::string styles_of(const Dates& dates, const DateType& type, const DateOptions& options) {
  const DateValue value = dates.read(options.value, type.code);
  std::string lines;
  for (int32_t style = 0; style <= kLargestStyle; ++style) {
    const auto text = written(value, type, style);
    if (text) lines += right_aligned(std::to_string(style), 3) + "  " + escaped(*text) + "\n";
  }
  return lines;
}

std::string parts_of(const Dates& dates, const DateType& type, const DateOptions& options) {
  const DateValue value = dates.read_for_calculation(options.value, type);
  std::string lines;
  for (size_t i = 0; i < kParts.size(); ++i) {
    const auto part = static_cast<int32_t>(i);
    std::array<char, 32> name;
    int32_t number = 0;
    int32_t length = 0;
    if (type.is_big) {
      const auto big = value.as<uint64_t>();
      number = com__bigdatepart(part, &big, kSunday);
      length = com__bigdatename(part, &big, name.data(), com__get_months(), com__get_weekdays());
    } else {
      const auto datetime = value.as<comn_datetime>();
      number = com__datepart(part, &datetime, kSunday);
      length = com__datename(part, &datetime, name.data(), com__get_months(), com__get_weekdays());
    }
    lines += left_aligned(kParts[i], 12) + right_aligned(std::to_string(number), 6) + "  " +
             std::string(name.data(), static_cast<size_t>(length)) + "\n";
  }
  return lines;
}

std::string sum_of(const Dates& dates, const DateType& type, const DateOptions& options) {
  constexpr int32_t kShort = sizeof(int32_t);
  const int32_t part = part_number(options.part);
  if (part == COM_PART_MICROSECOND && !type.is_big) {
    throw Failure(options.type + " has no microseconds; write --type bigdatetime or bigtime");
  }
  DateValue value = dates.read_for_calculation(options.value, type);
  DateValue result;
  result.length = comn_typelen(type.code, 0);
  comnb_value destination = bare_value(result, type.token, result.length);
  int32_t refused;
  if (type.is_big) {
    const comnb_value source = bare_value(value, type.token, value.length);
    refused = com__bigdateadd_both(part, options.amount, &source, &destination);
  } else {
    // A time of day is read from its ticks alone.
    const bool is_time = type.code == TVX_TYPE_TIMEA;
    if (is_time) std::memcpy(value.bytes.data(), value.bytes.data() + kShort, kShort);
    const comnb_value source = bare_value(value, type.token, is_time ? kShort : value.length);
    refused = com__dateadd_both(part, options.amount, &source, &destination);
  }
  if (refused != 0) throw Failure("the sum is out of the range of " + options.type);
  const auto text = written(result, type, options.style.value_or(type.usual_style));
  if (!text) throw Failure("there is no style " + std::to_string(*options.style));
  return *text + "\n";
}

std::string difference_of(const Dates& dates, const DateType& type, const DateOptions& options) {
  const int32_t part = part_number(options.part);
  const DateValue start = dates.read_for_calculation(options.value, type);
  const DateValue end = dates.read_for_calculation(options.end, type);
  if (type.is_big) {
    int64_t count = 0;
    const auto from = start.as<uint64_t>();
    const auto to = end.as<uint64_t>();
    com__bigdatediff(part, &from, &to, &count);
    return std::to_string(count) + "\n";
  }
  if (part == COM_PART_MICROSECOND) {
    throw Failure(options.type + " has no microseconds; write --type bigdatetime or bigtime");
  }
  int32_t count = 0;
  const auto from = start.as<comn_datetime>();
  const auto to = end.as<comn_datetime>();
  if (com__datediff(part, &from, &to, &count) != 0) {
    throw Failure("the difference in " + options.part + "s is too large; write --type bigdatetime");
  }
  return std::to_string(count) + "\n";
}

// ---- The command -------------------------------------------------------------------------------

using Question = std::string (*)(const Dates&, const DateType&, const DateOptions&);

// A number or a date with a minus sign is no option.
Arguments with_amounts_guarded(Arguments arguments) {
  for (std::string& argument : arguments) {
    if (argument.size() > 1 && argument[0] == '-' && argument[1] >= '0' && argument[1] <= '9') {
      argument.insert(0, 1, ' ');
    }
  }
  return arguments;
}

Question read_options(const Arguments& arguments, DateOptions& options) {
  CLI::App app("Shows a date in all its forms, its parts, and what comes of calculating with it.",
               "tvxcomn date");
  app.require_subcommand(1);
  const auto add = [&](const char* name, const char* description) {
    CLI::App* command = app.add_subcommand(name, description);
    command
        ->add_option("--type", options.type,
                     "datetime, date4, datea, timea, bigdatetime or bigtime")
        ->capture_default_str();
    return command;
  };
  CLI::App* styles = add("styles", "The value in the form of every date format code");
  styles->add_option("VALUE", options.value, "A date, a time or both")->required();
  CLI::App* parts = add("parts", "The fifteen parts of the value and their names");
  parts->add_option("VALUE", options.value, "A date, a time or both")->required();
  CLI::App* sum = add("add", "The value and a number of units of a part");
  sum->add_option("PART", options.part, "Such as month; a wrong one lists them")->required();
  sum->add_option("N", options.amount, "How many; may be negative")
      ->transform(decimal())
      ->required();
  sum->add_option("VALUE", options.value, "A date, a time or both")->required();
  sum->add_option("--style", options.style, "The date format code of the answer")
      ->transform(decimal())
      ->check(CLI::Range(0, kLargestStyle));
  CLI::App* difference = add("diff", "The units of a part from one value to another");
  difference->add_option("PART", options.part, "Such as day; a wrong one lists them")->required();
  difference->add_option("A", options.value, "Where counting begins")->required();
  difference->add_option("B", options.end, "Where it ends")->required();
  app.footer("Exit status: 0, 2 when a value is no date or out of range, or on bad usage.");
  if (!read_arguments(app, with_amounts_guarded(arguments))) return nullptr;
  return styles->parsed()  ? styles_of
         : parts->parsed() ? parts_of
         : sum->parsed()   ? sum_of
                           : difference_of;
}

}  // namespace

int run_date(const Arguments& arguments) {
  DateOptions options;
  const Question question = read_options(arguments, options);
  if (question == nullptr) return kAllWell;
  const DateType& type = parse_date_type(options.type);
  const Context context = open_context();
  const std::string answer = question(Dates(context.get()), type, options);
  OutputFile output = OutputFile::standard_output();
  output.write(answer);
  output.close();
  return kAllWell;
}

}  // namespace tvx::tool
