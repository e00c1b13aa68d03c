// tvxcomn calc: one operation on two numbers, with the types that the library gives operands and
// result.
#include <algorithm>
#include <cstring>
#include <optional>

#include "command_line.hpp"
#include "display.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "result_names.hpp"
#include "tvxcomn/money.h"
#include "tvxcomn/numeric.h"
#include "value_conversion.hpp"

namespace tvx::tool {

namespace {

constexpr std::string_view kComparisons = "<=>";
constexpr std::string_view kOperators = "+-*/<=>";
constexpr std::string_view kDigits = "0123456789";
constexpr char kWhatToWrite[] =
    "; write two numbers with one of + - * / < = > between them, in quotes, such as \"12.50 * 3\"";

// ---- The expression ----------------------------------------------------------------------------

struct Expression {
  std::string left;
  char symbol;
  std::string right;
};

bool is_exponent_sign(std::string_view text, std::size_t at) {
  return at >= 2 && (text[at - 1] == 'e' || text[at - 1] == 'E') &&
         (kDigits.find(text[at - 2]) != kDigits.npos || text[at - 2] == '.');
}

// The operator is the first one behind a digit; what stands before are the left number's signs.
std::size_t find_operator(std::string_view text) {
  const std::size_t first_digit = text.find_first_of(kDigits);
  if (first_digit == text.npos) return text.npos;
  std::size_t at = text.find_first_of(kOperators, first_digit);
  while (at != text.npos && is_exponent_sign(text, at)) {
    at = text.find_first_of(kOperators, at + 1);
  }
  return at;
}

std::string without_blanks_around(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
  return std::string(text.substr(begin, text.find_last_not_of(' ') + 1 - begin));
}

Expression split(const std::string& text) {
  const std::size_t at = find_operator(text);
  if (at == text.npos) {
    throw Failure(quoted_for_display(text) + " is no operation on two numbers" + kWhatToWrite);
  }
  const std::string right = without_blanks_around(std::string_view(text).substr(at + 1));
  if (right.empty()) {
    throw Failure(quoted_for_display(text) + " lacks the second number" + kWhatToWrite);
  }
  if (find_operator(right) != right.npos) {
    throw Failure(quoted_for_display(text) + " is more than one operation" + kWhatToWrite);
  }
  return {without_blanks_around(std::string_view(text).substr(0, at)), text[at], right};
}

// ---- The two kinds of numbers ------------------------------------------------------------------

template <class Number>
struct Operation {
  char symbol;
  int32_t (*run)(const Number* a, const Number* b, Number* result);
};

struct ExactNumeric {
  using Number = comn_numeric;
  static constexpr int32_t kCode = TVX_TYPE_NUM;
  static constexpr Operation<Number> kOperations[] = {
      {'+', comn_numadd}, {'-', comn_numsub}, {'*', comn_nummul}, {'/', comn_numdivide}};
  static constexpr auto* compare = comn_numcmp;

  static DataType type_of(const Number& number) {
    return {kCode, std::nullopt, number.precision, number.scale};
  }
};

struct Money {
  using Number = comn_money;
  static constexpr int32_t kCode = TVX_TYPE_MONEY;
  static constexpr Operation<Number> kOperations[] = {
      {'+', comn_mnyadd}, {'-', comn_mnysub}, {'*', comn_mnymul}, {'/', comn_mnydivide}};
  static constexpr auto* compare = comn_mnycmp;

  static DataType type_of(const Number&) { return {kCode}; }
};

// `order` is below, equal to or above 0 as the left number is to the right one.
bool holds(char comparison, int32_t order) {
  if (comparison == '<') return order < 0;
  return comparison == '>' ? order > 0 : order == 0;
}

// ---- The calculation ---------------------------------------------------------------------------

// Its line, and whether all went well.
struct Answer {
  std::string line;
  bool good;
};

template <class Kind>
class Calculator {
public:
  using Number = typename Kind::Number;

  explicit Calculator(comn_context* context)
      : from_char_(context, {TVX_TYPE_CHAR}, {Kind::kCode}), text_form_(context, Kind::kCode) {}

  Answer answer(const Expression& expression) {
    Number left{};
    Number right{};
    for (const auto& [text, number] :
         {std::pair{&expression.left, &left}, {&expression.right, &right}}) {
      const int32_t result = read(*text, *number);
      if (!succeeded(result)) {
        return {quoted_for_display(*text) + " to " + std::string(type_name(Kind::kCode)) + ": " +
                    result_name(result),
                false};
      }
    }
    const std::string line = shown(left) + ' ' + expression.symbol + ' ' + shown(right);
    if (kComparisons.find(expression.symbol) != kComparisons.npos) {
      const bool is_true = holds(expression.symbol, Kind::compare(&left, &right));
      return {line + (is_true ? " is true" : " is false"), true};
    }
    Number outcome{};
    const int32_t result = operation(expression.symbol)(&left, &right, &outcome);
    const bool good = succeeded(result);
    return {line + " = " + (good ? shown(outcome) : result_name(result)), good};
  }

private:
  static auto operation(char symbol) {
    return std::find_if(std::begin(Kind::kOperations), std::end(Kind::kOperations),
                        [=](const auto& known) { return known.symbol == symbol; })
        ->run;
  }

  int32_t read(std::string_view text, Number& number) {
    Value value;
    const int32_t result = from_char_.run(text, value);
    std::memcpy(&number, value.bytes().data(), std::min(value.bytes().size(), sizeof number));
    return result;
  }

  std::string shown(const Number& number) {
    std::string_view text;
    const int32_t result =
        text_form_.of({reinterpret_cast<const char*>(&number), sizeof number}, text);
    const std::string type = written_type(Kind::type_of(number));
    return (succeeded(result) ? std::string(text) : result_name(result)) + ' ' + type;
  }

  Conversion from_char_;
  TextForm text_form_;
};

// ---- The command -------------------------------------------------------------------------------

struct CalcOptions {
  std::string type = std::string(type_name(TVX_TYPE_NUM));
  std::string expression;
};

// A number with a sign is no option. The blank in front of it shows that to the command line.
Arguments with_signs_guarded(Arguments arguments) {
  constexpr std::string_view kSignIsFollowedBy = "0123456789. $";
  for (std::string& argument : arguments) {
    if (argument.size() > 1 && argument[0] == '-' &&
        kSignIsFollowedBy.find(argument[1]) != kSignIsFollowedBy.npos) {
      argument.insert(0, 1, ' ');
    }
  }
  return arguments;
}

bool read_options(const Arguments& arguments, CalcOptions& options) {
  CLI::App app("Does one operation on two numbers, and shows them and the result with their types.",
               "tvxcomn calc");
  app.add_option("--type", options.type, "The type of the numbers: num or money")
      ->check(CLI::IsMember({type_name(TVX_TYPE_NUM), type_name(TVX_TYPE_MONEY)}))
      ->capture_default_str();
  const CLI::Option* words =
      app.add_option("EXPRESSION", "Two numbers with one of + - * / < = > between them")
          ->required()
          ->expected(1, CLI::detail::expected_max_vector_size)
          ->allow_extra_args();
  app.footer(
      "A num has as many digits as its text, such as 12.50 num(4,2). Put the expression in "
      "quotes,\n"
      "for * < > mean something to the shell.\n"
      "Exit status: 0, 1 when a number or the operation failed, 2 on bad usage.");
  if (!read_arguments(app, with_signs_guarded(arguments))) return false;
  for (const std::string& word : plain_values(*words)) options.expression += word + ' ';
  options.expression = without_blanks_around(options.expression);
  return true;
}

template <class Kind>
Answer calculate(const Expression& expression) {
  const Context context = open_context();
  return Calculator<Kind>(context.get()).answer(expression);
}

}  // namespace

int run_calc(const Arguments& arguments) {
  CalcOptions options;
  if (!read_options(arguments, options)) return kAllWell;
  const Expression expression = split(options.expression);
  const bool money = options.type == type_name(TVX_TYPE_MONEY);
  const Answer answer = money ? calculate<Money>(expression) : calculate<ExactNumeric>(expression);
  OutputFile output = OutputFile::standard_output();
  output.write(answer.line + "\n");
  output.close();
  return answer.good ? kAllWell : kSomeFailed;
}

}  // namespace tvx::tool
