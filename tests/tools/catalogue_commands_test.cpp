// The command itself, and tvxcomn types and tvxcomn table: the catalogue and the table must agree
// with the library's rules.
#include <gtest/gtest.h>

#include <sstream>

#include "tools/run_command.hpp"

namespace {

using tvx::test::Outcome;
using tvx::test::run_command;

std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST(Types, ListsEveryCodeWithNameAndStorage) {
  const Outcome outcome = run_command({"types"});
  EXPECT_EQ(outcome.status, 0);
  const std::vector<std::string> lines = lines_of(outcome.output);
  ASSERT_EQ(lines.size(), 41u);
  const struct {
    std::size_t code;
    const char* begin;
  } rows[] = {
      {0, "   0  char        maxlength"},   {6, "   6  i1          1 "},
      {12, "  12  datetime    8 "},         {16, "  16  num         35 "},
      {18, "  18  varchar     258 "},       {20, "  20  int20       maxlength "},
      {24, "  24  -           maxlength "}, {25, "  25  unichar     2 "},
      {36, "  36  bigtime     8 "},         {39, "  39  locator39   maxlength "},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(lines[row.code + 1].rfind(row.begin, 0), 0u) << lines[row.code + 1];
  }
}

TEST(Table, ShowsEveryPairAndCountsThem) {
  const Outcome outcome = run_command({"table"});
  EXPECT_EQ(outcome.status, 0);
  std::size_t row_count = 0;
  std::size_t marks = 0;
  for (const std::string& line : lines_of(outcome.output)) {
    EXPECT_LE(line.size(), 100u);
    // Rows of the table begin with a code and hold cells only behind their label.
    if (line.size() != 95 || line.find_first_not_of(" *.", 15) != std::string::npos) continue;
    const std::string code = std::to_string(row_count);
    EXPECT_EQ(line.substr(2 - code.size(), code.size()), code);
    const auto marked = [&](std::size_t destination) { return line[16 + 2 * destination] == '*'; };
    for (std::size_t destination = 0; destination < 40; ++destination) {
      if (marked(destination)) ++marks;
    }
    EXPECT_TRUE(row_count != 8 || (marked(6) && marked(0))) << line;
    EXPECT_TRUE(row_count != 20 || (marked(8) && !marked(6))) << line;
    EXPECT_TRUE(row_count != 24 || line.find('*') == std::string::npos) << line;
    ++row_count;
  }
  EXPECT_EQ(row_count, 40u);
  EXPECT_NE(outcome.output.find("\n" + std::to_string(marks) + " of 1600 pairs"),
            std::string::npos);
}

TEST(Command, ExplainsItself) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* message;
  } cases[] = {
      {{}, 2, "no command given"},
      {{"--help"}, 0, "usage: tvxcomn COMMAND"},
      {{"cvs"}, 2, "unknown command \"cvs\""},
      {{"csv", "--help"}, 0, "--rejects"},
      {{"types", "more"}, 2, "not expected"},
      {{"table", "--wide"}, 2, "no option"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = run_command(c.arguments);
    EXPECT_EQ(outcome.status, c.status) << c.message;
    const std::string& said = c.status == 0 ? outcome.output : outcome.errors;
    EXPECT_NE(said.find(c.message), std::string::npos) << said;
  }
}

TEST(Command, NoticesThatItsOutputIsLost) {
  const std::vector<std::vector<std::string>> commands = {
      {"types"}, {"table"}, {"convert", "--to", "i4", "1"}, {"csv", "--help"}};
  for (const auto& arguments : commands) {
    const Outcome outcome = run_command(arguments, {}, "/dev/full");
    EXPECT_EQ(outcome.status, 2) << arguments[0];
    EXPECT_EQ(outcome.errors,
              "tvxcomn: cannot write the standard output: No space left on device\n");
  }
}

}  // namespace
