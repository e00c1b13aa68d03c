// tvxcomn date: forms, parts, sums and differences, and what it says of mistakes.
#include <gtest/gtest.h>

#include "tools/run_command.hpp"

namespace {

using tvx::test::Outcome;
using tvx::test::run_command;

Outcome date(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "date");
  return run_command(arguments);
}

TEST(Date, Calculates) {
  const struct {
    std::vector<std::string> arguments;
    const char* line;
  } cases[] = {
      {{"add", "month", "1", "2004-01-31"}, "2004-02-29 00:00:00.000000"},
      {{"add", "month", "-13", "2003-01-15"}, "2001-12-15 00:00:00.000000"},
      {{"add", "day", "010", "2003-01-01", "--style", "0106"}, "11 Jan 2003"},
      {{"add", "day", "-08", "2003-01-09", "--type", "datea"}, "2003/01/01"},
      {{"add", "hour", "25", "2003-01-01 23:00", "--style", "100"}, "Jan  3 2003 12:00AM"},
      {{"add", "day", "1", "2003-01-01", "--type", "datea"}, "2003/01/02"},
      {{"add", "minute", "-1", "0:00", "--type", "timea"}, "23:59:00.000000"},
      {{"add", "second", "31", "2003-01-01", "--type", "date4"}, "2003-01-01 00:01:00.000000"},
      {{"add", "microsecond", "7", "10:00", "--type", "bigtime"}, "10:00:00.000007"},
      {{"diff", "week", "2003-01-04", "2003-01-05"}, "1"},
      {{"diff", "year", "2003-12-31", "2004-01-01"}, "1"},
      {{"diff", "hour", "11:01", "10:59"}, "0"},
      {{"diff", "day", "2003-01-02", "2003-01-01", "--type", "datea"}, "-1"},
      {{"diff", "microsecond", "0001-01-01", "9999-12-31", "--type", "bigdatetime"},
       "315537811200000000"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = date(c.arguments);
    EXPECT_EQ(outcome.output, std::string(c.line) + "\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST(Date, ShowsFormsAndParts) {
  const Outcome styles = date({"styles", "2003-01-02 14:05:09"});
  EXPECT_NE(styles.output.find("\n  7  Jan 02, 03\n"), std::string::npos) << styles.output;
  EXPECT_NE(styles.output.find("\n140  2003-01-02 14:05:09.000000\n"), std::string::npos);
  EXPECT_EQ(styles.output.find("\n 24 "), std::string::npos);
  EXPECT_EQ(std::count(styles.output.begin(), styles.output.end(), '\n'), 55);
  const Outcome parts = date({"parts", "Dec 31 2024 1:02:03.000045", "--type", "bigdatetime"});
  for (const char* line : {"year          2024  2024\n", "weekday          3  Tuesday\n",
                           "isoyear       2025  2025\n", "microsecond     45  45\n"})
    EXPECT_NE(parts.output.find(line), std::string::npos) << parts.output;
}

TEST(Date, MistakesAreExplained) {
  const std::vector<std::string> cases[] = {{},
                                            {"styles"},
                                            {"parts", "someday"},
                                            {"parts", ""},
                                            {"parts", "2003-01-01", "--type", "i4"},
                                            {"add", "fortnight", "1", "2003-01-01"},
                                            {"add", "microsecond", "1", "2003-01-01"},
                                            {"add", "day", "1", "9999-12-31"},
                                            {"add", "day", "", "2003-01-01"},
                                            {"add", "day", "0x10", "2003-01-01"},
                                            {"add", "day", "99999999999", "2003-01-01"},
                                            {"add", "day", "1", "2003-01-01", "--style", "24"},
                                            {"diff", "second", "1900-01-01", "6000-01-01"},
                                            {"diff", "microsecond", "1900-01-01", "6000-01-01"}};
  for (const auto& arguments : cases) {
    const Outcome outcome = date(arguments);
    EXPECT_NE(outcome.errors, "");
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.status, 2) << outcome.errors;
  }
}

}  // namespace
