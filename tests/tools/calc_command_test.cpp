// tvxcomn calc: how expressions are read, and the types that operands and results are shown with.
#include <gtest/gtest.h>

#include "tools/run_command.hpp"

namespace {

using tvx::test::Outcome;
using tvx::test::run_command;

TEST(Calc, ShowsOperandsAndResultWithTheirTypes) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* line;
  } cases[] = {
      {{"12.50 * 3"}, 0, "12.50 num(4,2) * 3 num(1,0) = 37.50 num(6,2)"},
      {{"1/3"}, 0, "1 num(1,0) / 3 num(1,0) = 0.333333 num(7,6)"},
      {{"-1.5 * -2"}, 0, "-1.5 num(2,1) * -2 num(1,0) = 3.0 num(4,1)"},
      {{"1.25e1 + 2"}, 0, "12.5 num(3,1) + 2 num(1,0) = 14.5 num(4,1)"},
      {{" 5e-1-1.E+1 "}, 0, "0.5 num(2,1) - 10 num(2,0) = -9.5 num(4,1)"},
      {{"-5--3"}, 0, "-5 num(1,0) - -3 num(1,0) = -2 num(2,0)"},
      {{"5", "-", "-3"}, 0, "5 num(1,0) - -3 num(1,0) = 8 num(2,0)"},
      {{"1.50 = 1.5"}, 0, "1.50 num(3,2) = 1.5 num(2,1) is true"},
      {{"-1 > 0"}, 0, "-1 num(1,0) > 0 num(1,0) is false"},
      {{"1 / 0"}, 1, "1 num(1,0) / 0 num(1,0) = CS_CONV_DIVZERO"},
      {{"1 * 2x"}, 1, "\"2x\" to num: CS_CONV_SYNTAX"},
      {{"1,234 + 1"}, 1, "\"1,234\" to num: CS_CONV_SYNTAX"},
      {{"--type", "money", "-$1,234.56 / 3"},
       0,
       "-1234.5600 money / 3.0000 money = -411.5200 money"},
      {{"0.0001 * 0.5", "--type", "money"}, 0, "0.0001 money * 0.5000 money = 0.0001 money"},
      {{"--type", "money", "922337203685477.5807+.0001"},
       1,
       "922337203685477.5807 money + 0.0001 money = CS_CONV_OVERFLOW"},
      {{"--type", "money", "1,23 < 2"}, 1, "\"1,23\" to money: CS_CONV_SYNTAX"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = c.arguments;
    arguments.insert(arguments.begin(), "calc");
    const Outcome outcome = run_command(arguments);
    EXPECT_EQ(outcome.output, std::string(c.line) + "\n");
    EXPECT_EQ(outcome.status, c.status) << c.line;
    EXPECT_EQ(outcome.errors, "");
  }
}

TEST(Calc, UsageErrorsSayWhatToWrite) {
  const std::vector<std::string> cases[] = {
      {}, {""}, {"5"}, {"-5"}, {"x + y"}, {"5 +"}, {"1 + 2 + 3"}, {"1 + 1", "--type", "flt8"}};
  for (std::vector<std::string> arguments : cases) {
    arguments.insert(arguments.begin(), "calc");
    const Outcome outcome = run_command(arguments);
    EXPECT_NE(outcome.errors.find("write"), std::string::npos) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.status, 2) << outcome.errors;
  }
}

}  // namespace
