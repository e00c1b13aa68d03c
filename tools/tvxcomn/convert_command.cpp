// tvxcomn convert: single values through one conversion, a line each.
#include <cstdio>
#include <optional>

#include "command_line.hpp"
#include "display.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "result_names.hpp"
#include "value_conversion.hpp"

namespace tvx::tool {

namespace {

constexpr char kNothing[] = "-";

struct ConvertOptions {
  std::string from = "char";
  std::string to;
  std::optional<int32_t> precision;
  std::optional<int32_t> scale;
  std::optional<int32_t> maxlength;
  Style style;
  bool terminate = false;
  bool blankfill = false;
  bool zerofill = false;
  Arguments values;
};

bool read_options(const Arguments& arguments, ConvertOptions& options) {
  constexpr auto kLargest = static_cast<int32_t>(Conversion::kLargestValue);
  CLI::App app(
      "Converts values and prints, tab-separated: source, result, output length, bytes, text.",
      "tvxcomn convert");
  app.add_option("--to", options.to, "The type to convert to; \"tvxcomn types\" lists the types")
      ->required();
  app.add_option("--from", options.from, "The type to which the text of a value is converted first")
      ->capture_default_str();
  app.add_option("--precision", options.precision,
                 "Digits of an exact numeric; of money in text, those behind the point")
      ->transform(decimal());
  app.add_option("--scale", options.scale, "Digits of an exact numeric behind the point")
      ->transform(decimal());
  app.add_option("--maxlength", options.maxlength, "Bytes of room for the result")
      ->transform(decimal())
      ->check(CLI::Range(0, kLargest));
  app.add_option("--style", options.style, "The date format code in which dates are written")
      ->transform(decimal())
      ->check(CLI::Range(0, kLargestStyle));
  app.add_flag("--terminate", options.terminate, "End text with a zero byte");
  app.add_flag("--blankfill", options.blankfill, "Fill up to maxlength with blanks");
  app.add_flag("--zerofill", options.zerofill, "Fill up to maxlength with zero bytes");
  const CLI::Option* values =
      app.add_option("VALUE", "The values; without any, one a line from the standard input")
          ->expected(0, CLI::detail::expected_max_vector_size)
          ->allow_extra_args();
  app.footer(
      "Write -- in front of values that begin with a dash and are no number.\n"
      "Exit status: 0, 1 when a value failed, 2 on bad usage or an input/output error.");
  if (!read_arguments(app, arguments)) return false;
  options.values = plain_values(*values);
  return true;
}

void set_once(std::optional<int32_t>& property, const std::optional<int32_t>& given,
              const char* option) {
  if (!given) return;
  if (property) throw Failure(std::string(option) + " stands in the type already; write it once");
  property = given;
}

DataType destination_type(const ConvertOptions& options) {
  DataType type = parse_type(options.to);
  set_once(type.maxlength, options.maxlength, "--maxlength");
  set_once(type.precision, options.precision, "--precision");
  set_once(type.scale, options.scale, "--scale");
  if ((options.blankfill || options.zerofill) && has_open_size(type.code) && !type.maxlength) {
    throw Failure("to fill a value it must be known how far; write --maxlength BYTES");
  }
  return type;
}

uint32_t destination_flags(const ConvertOptions& options) {
  uint32_t flags = 0;
  if (options.terminate) flags |= CS_FORMAT_TERMINATE;
  if (options.blankfill) flags |= CS_FORMAT_BLANKFILL;
  if (options.zerofill) flags |= CS_FORMAT_ZEROFILL;
  return flags;
}

class Converter {
public:
  // Throws Failure when there is no way from text to `from` to `to`.
  Converter(comn_context* context, const DataType& from, const DataType& to, uint32_t flags,
            Style style)
      : from_(from.code),
        to_source_(context, DataType{TVX_TYPE_CHAR}, from),
        to_destination_(context, from, to, flags, style),
        text_form_(context, to.code, style) {
    require(context, reads_text() || to_source_.exists(), TVX_TYPE_CHAR, from.code);
    require(context, to_destination_.exists(), from.code, to.code);
  }

  // Returns the line of a value and notes whether it failed.
  std::string convert(const std::string& text);

  [[nodiscard]] bool some_failed() const { return some_failed_; }

private:
  static void require(comn_context* context, bool exists, int32_t from, int32_t to) {
    if (exists) return;
    const std::string name(type_name(from));
    throw Failure("there is no conversion from " + name + " to " + std::string(type_name(to)) +
                  "; from " + name + " there is one to " + destinations_of(context, from));
  }

  // Char is the text itself, and the type of no value needs none.
  [[nodiscard]] bool reads_text() const {
    return from_ == TVX_TYPE_CHAR || from_ == TVX_TYPE_NULL23;
  }

  std::string text_of(int32_t result, const Value& value);

  int32_t from_;
  Conversion to_source_;
  Conversion to_destination_;
  TextForm text_form_;
  bool some_failed_ = false;
};

std::string line_of(const std::string& source, const std::string& result, const Value& value,
                    const std::string& text) {
  const std::string bytes = value.bytes().empty() ? kNothing : hexadecimal(value.bytes());
  return escaped(source) + "\t" + result + "\t" + std::to_string(value.length) + "\t" + bytes +
         "\t" + text + "\n";
}

std::string Converter::convert(const std::string& text) {
  if (text.size() > Conversion::kLargestValue) {
    throw Failure("a value is longer than " + std::to_string(Conversion::kLargestValue) +
                  " bytes; shorten it");
  }
  constexpr char kNoValue[] = "empty";
  Value nothing;
  Value source;
  std::string_view source_bytes = text;
  if (from_ == TVX_TYPE_NULL23) source_bytes = "";
  if (is_empty(reads_text() ? from_ : TVX_TYPE_CHAR, source_bytes)) {
    return line_of(text, kNoValue, nothing, kNothing);
  }
  if (!reads_text()) {
    const int32_t result = to_source_.run(text, source);
    if (!succeeded(result)) {
      some_failed_ = true;
      return line_of(text, result_name(result), nothing, kNothing);
    }
    source_bytes = source.bytes();
    if (is_empty(from_, source_bytes)) return line_of(text, kNoValue, nothing, kNothing);
  }
  Value value;
  const int32_t result = to_destination_.run(source_bytes, value);
  some_failed_ = some_failed_ || !succeeded(result);
  return line_of(text, result_name(result), value, text_of(result, value));
}

std::string Converter::text_of(int32_t result, const Value& value) {
  // Where a value was too large, too small or too long the destination holds a limit, a mark or a
  // part of it.
  const bool stands =
      succeeded(result) ||
      ((result == CS_CONV_OVERFLOW || result == CS_CONV_UNDERFLOW || result == CS_CONV_TRUNCATED) &&
       value.length > 0);
  std::string_view text;
  if (!stands || !text_form_.exists() || !succeeded(text_form_.of(value.bytes(), text))) {
    return kNothing;
  }
  return escaped(text);
}

// Reads up to the next line feed; false at the end of the input.
bool read_line(std::string& line) {
  line.clear();
  for (int byte = std::getc(stdin); byte != EOF; byte = std::getc(stdin)) {
    if (byte == '\n') return true;
    line += static_cast<char>(byte);
    if (line.size() > Conversion::kLargestValue) return true;
  }
  if (std::ferror(stdin) != 0) throw Failure("cannot read the standard input");
  return !line.empty();
}

void convert_lines(Converter& converter, OutputFile& output) {
  const bool answer_at_once = standard_input_is_terminal();
  for (std::string line; read_line(line);) {
    output.write(converter.convert(line));
    if (answer_at_once) output.flush();
  }
}

int convert_values(const ConvertOptions& options) {
  const DataType from = parse_type(options.from);
  const DataType to = destination_type(options);
  const Context context = open_context();
  Converter converter(context.get(), from, to, destination_flags(options), options.style);
  OutputFile output = OutputFile::standard_output();
  for (const std::string& value : options.values) output.write(converter.convert(value));
  if (options.values.empty()) convert_lines(converter, output);
  output.close();
  return converter.some_failed() ? kSomeFailed : kAllWell;
}

}  // namespace

int run_convert(const Arguments& arguments) {
  ConvertOptions options;
  return read_options(arguments, options) ? convert_values(options) : kAllWell;
}

}  // namespace tvx::tool
