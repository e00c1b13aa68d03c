// tvxcomn csv: what is written, what is rejected, and what is said about it.
#include <gtest/gtest.h>

#include "tools/run_command.hpp"

namespace {

using tvx::test::Outcome;
using tvx::test::run_command;
using tvx::test::ScratchDirectory;

struct CsvCase {
  const char* name;
  const char* types;
  std::string input;
  std::string rows;                 // the output file
  std::string rejects;              // the rejects file
  std::vector<const char*> report;  // parts of the report
};

void PrintTo(const CsvCase& c, std::ostream* out) {
  *out << c.name;
}

// The layout of the report is no concern of the tests: a run of blanks is as good as one.
std::string squeezed(const std::string& text) {
  std::string out;
  for (const char byte : text) {
    if (byte != ' ' || out.empty() || out.back() != ' ') out += byte;
  }
  return out;
}

void expect_part(const std::string& text, const std::string& part) {
  EXPECT_NE(squeezed(text).find(part), std::string::npos) << part << "\nis not in\n" << text;
}

class Csv : public testing::TestWithParam<CsvCase> {};

TEST_P(Csv, WritesRejectsAndReports) {
  const CsvCase& c = GetParam();
  const ScratchDirectory scratch;
  const Outcome outcome =
      run_command({"csv", "--types", c.types, "--output", scratch.path("out"), "--rejects",
                   scratch.path("bad"), scratch.write("in", c.input)});
  EXPECT_EQ(scratch.read("out"), c.rows);
  EXPECT_EQ(scratch.read("bad"), c.rejects);
  EXPECT_EQ(outcome.status, c.rejects.empty() ? 0 : 1);
  EXPECT_EQ(outcome.errors, "");
  for (const char* part : c.report) expect_part(outcome.output, part);
}

std::string case_name(const testing::TestParamInfo<CsvCase>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Columns, Csv,
    testing::Values(CsvCase{"by_name",
                            "id:i4,rate:flt8",
                            "note,rate,id\n\"a, b\",0.50,+7\n,2, 8 \n",
                            "note,rate,id\n\"a, b\",.5,7\n,2.0,8\n",
                            "",
                            {"columns by name, the first row is the header", "rows read 2",
                             "id i4 2 0 0"}},
                    CsvCase{"by_position",
                            "id:i4,rate:flt8",
                            "1,0.5\nx,2\n",
                            "1,.5\n",
                            "x,2\n",
                            {"columns by position", "it does not name \"id\"",
                             "CS_CONV_SYNTAX 1 first in row 2: \"x\""}},
                    CsvCase{"header_lacks_a_name",
                            "id:i4,rate:flt8",
                            "id,Rate\n1,2\n",
                            "1,2.0\n",
                            "id,Rate\n",
                            {"it does not name \"rate\"", "first in row 1: \"id\""}},
                    CsvCase{"header_quoted",
                            "the id:i4,a:b:i2",
                            "\"the id\",\"a:b\"\r\n1,2\r\n",
                            "\"the id\",\"a:b\"\r\n1,2\r\n",
                            "",
                            {"columns by name"}},
                    CsvCase{"first_row_too_wide",
                            "id:i4",
                            "id" + std::string(65536, ',') + "\n1\n",
                            "1\n",
                            "id" + std::string(65536, ',') + "\n",
                            {"it cannot be split into fields, or into too many",
                             "wrong number of fields 1 first in row 1: 65537 instead of 1"}},
                    CsvCase{"header_only", "id:i4", "id", "id", "", {"by name", "rows read 0"}},
                    CsvCase{"nothing", "id:i4", "", "", "", {"no rows", "rows read 0"}},
                    CsvCase{"byte_order_mark",
                            "id:i4",
                            "\xEF\xBB\xBF\"id\"\n5\n",
                            "\xEF\xBB\xBF\"id\"\n5\n",
                            "",
                            {"by name"}},
                    CsvCase{"byte_order_mark_without_header",
                            "id:i4",
                            "\xEF\xBB\xBF"
                            "5\n\xEF\xBB\xBF"
                            "6\n",
                            "5\n",
                            "\xEF\xBB\xBF"
                            "6\n",
                            {"first in row 2"}}),
    case_name);

INSTANTIATE_TEST_SUITE_P(
    Fields, Csv,
    testing::Values(
        CsvCase{"empty",
                "id:i4,n:i2",
                "id,n,x\n,\"\",\n1,,\n",
                "id,n,x\n,\"\",\n1,,\n",
                "",
                {"id i4 1 1 0", "n i2 0 2 0"}},
        CsvCase{"quoted_numbers",
                "id:i4,n:i2",
                "id,n\n\"1\",\" 2 \"\n\"1,000\",3\n",
                "id,n\n1,2\n",
                "\"1,000\",3\n",
                {"first in row 3: \"1,000\""}},
        CsvCase{"passed_through_as_read",
                "id:i4",
                "id,a,b\n1,\"x\",\"y \"\"z\"\"\"\n2,5\" pipe,\xff\n3,a\rb,\n",
                "id,a,b\n1,\"x\",\"y \"\"z\"\"\"\n2,5\" pipe,\xff\n3,a\rb,\n",
                "",
                {}},
        CsvCase{"embedded_line_ends",
                "id:i4",
                "id,a\n1,\"x\ny\"\nz,\"p\r\nq\"\n3,\"\n\"\n",
                "id,a\n1,\"x\ny\"\n3,\"\n\"\n",
                "z,\"p\r\nq\"\n",
                {"first in row 3: \"z\""}},
        CsvCase{"amounts",
                "n:num(6,2),m:money,s:mny4",
                "n,m,s\n1.5,\"1,234.5\",-.0001\n1e3,-2,214748.3647\n.125,1,1\n10000,1,1\n"
                "1,\"1,23\",1\n1,1,214748.3648\n",
                "n,m,s\n1.50,1234.5000,-0.0001\n1000.00,-2.0000,214748.3647\n",
                ".125,1,1\n10000,1,1\n1,\"1,23\",1\n1,1,214748.3648\n",
                {"n num(6,2) 4 0 2", "CS_CONV_TRUNCATED 1 first in row 4: \".125\"",
                 "CS_CONV_OVERFLOW 1 first in row 5", "CS_CONV_SYNTAX 1 first in row 6: \"1,23\""}},
        CsvCase{"shown_safely",
                "id:i4,f:flt8",
                "id,f\n\"a\tb\n\"\"\",1\n1,0." + std::string(3000, '1') + "\n",
                "id,f\n",
                "\"a\tb\n\"\"\",1\n1,0." + std::string(3000, '1') + "\n",
                {R"(row 2: "a\tb\n\"")",
                 R"(row 3: "0.11111111111111111111111111111111111111"... (3002 bytes))"}},
        CsvCase{
            "every_result_with_its_first_row",
            "n:i1,f:flt4",
            "n,f\n1,2\nx,1e39\n300,1\ny,1e-400\n-1,-\n",
            "n,f\n1,2.0\n",
            "x,1e39\n300,1\ny,1e-400\n-1,-\n",
            {"CS_CONV_SYNTAX 2 first in row 3: \"x\"", "CS_CONV_OVERFLOW 2 first in row 4: \"300\"",
             "CS_CONV_OVERFLOW 1 first in row 3: \"1e39\"",
             "CS_CONV_UNDERFLOW 1 first in row 5: \"1e-400\"", "failed field 4 first in row 3"}}),
    case_name);

INSTANTIATE_TEST_SUITE_P(
    Rows, Csv,
    testing::Values(
        CsvCase{"line_ends_kept",
                "id:i4,n:i2",
                "id,n\r\n1,2\r\n3,4\n5,x\r\n6,7",
                "id,n\r\n1,2\r\n3,4\n6,7",
                "5,x\r\n",
                {}},
        CsvCase{"rejected_without_line_end", "id:i4", "id\n1\nx", "id\n1\n", "x", {}},
        CsvCase{"carriage_return_at_the_end", "id:i4", "id\n1\r", "id\n", "1\r", {"\"1\\r\""}},
        CsvCase{"wrong_number_of_fields",
                "id:i4,n:i2",
                "id,n\n1\n1,2,3\n\n4,5\n",
                "id,n\n4,5\n",
                "1\n1,2,3\n\n",
                {"wrong number of fields 3 first in row 2: 1 instead of 2",
                 // Their fields are not counted.
                 "id i4 1 0 0"}},
        CsvCase{"text_behind_quote",
                "id:i4,n:i2",
                "id,n\n\"1\"2,3\n4,\"5\" \r\n\"6\",\"7\"\r\n",
                "id,n\n6,7\r\n",
                "\"1\"2,3\n4,\"5\" \r\n",
                {"text behind a closing quote 2 first in row 2"}},
        CsvCase{"quote_never_closed",
                "id:i4,n:i2",
                "id,n\n1,2\n3,\"4\n5,6\n",
                "id,n\n1,2\n",
                "3,\"4\n5,6\n",
                {"quote never closed 1 first in row 3"}},
        CsvCase{
            "quote_open_at_the_very_end", "id:i4", "id\n1\n\"", "id\n1\n", "\"", {"never closed"}},
        CsvCase{"closing_quote_at_the_very_end", "id:i4", "id\n\"5\"", "id\n5", "", {}},
        CsvCase{"last_field_empty", "id:i4,n:i2", "id,n\n1,", "id,n\n1,", "", {}}),
    case_name);

// The reader works in blocks of 256 KiB. Whatever stands on the boundary between two must come out
// the same.
TEST(CsvBlocks, BoundariesDoNotShow) {
  const std::string tricky = "\"7\",\"a\"\"b\r\n,\"\"\"\r\n8,\r\n\"x\"\"\",\"\"\r\n9,\"\n";
  for (std::size_t shift = 0; shift <= tricky.size(); ++shift) {
    const std::string head = "id,note\n1," + std::string(262144 - 11 - shift, 'n') + "\n";
    const ScratchDirectory scratch;
    const Outcome outcome =
        run_command({"csv", "--types", "id:i4", "--rejects", scratch.path("bad"), "--output",
                     scratch.path("out"), scratch.write("in", head + tricky)});
    EXPECT_EQ(scratch.read("out"), head + "7,\"a\"\"b\r\n,\"\"\"\r\n8,\r\n") << shift;
    EXPECT_EQ(scratch.read("bad"), "\"x\"\"\",\"\"\r\n9,\"\n") << shift;
    EXPECT_EQ(outcome.status, 1);
  }
}

TEST(CsvRowLimit, IsExactAndKeepsRejectedRowsWhole) {
  const std::string fits = "1,\"" + std::string(26, 'a') + "\"\n";  // 31 bytes
  const std::string longer = "2,\"" + std::string(26, '\n') + "\"\r\n";
  const std::string unclosed = "4,\"" + std::string(600000, ',');
  const ScratchDirectory scratch;
  const std::string input = scratch.write("in", "id,a\n" + fits + longer + "3,\n" + unclosed);
  const Outcome outcome =
      run_command({"csv", "--types", "id:i4", "--row-limit", "31", "--output", scratch.path("out"),
                   "--rejects", scratch.path("bad"), input});
  EXPECT_EQ(scratch.read("out"), "id,a\n" + fits + "3,\n");
  EXPECT_EQ(scratch.read("bad"), longer + unclosed);
  expect_part(outcome.output, "row too long 1 first in row 3");
  expect_part(outcome.output, "quote never closed 1 first in row 5");
}

TEST(CsvRowLimit, BoundsMemory) {
  // The hole makes a quarter of a gigabyte of zero bytes without a copy in this process, whose size
  // counts as the command's: it is up to 150 MiB with sanitizers.
  constexpr std::uintmax_t kHole = std::uintmax_t{256} << 20;
  const ScratchDirectory scratch;
  const std::string input = scratch.write("in", "id,a\n1,\n2,\"");
  std::filesystem::resize_file(input, kHole);
  std::ofstream(input, std::ios::app) << "\"\n3,\n";
  const Outcome outcome =
      run_command({"csv", "--types", "id:i4", "--row-limit", "1048576", "--output",
                   scratch.path("out"), "--rejects", scratch.path("bad"), input});
  EXPECT_EQ(scratch.read("out"), "id,a\n1,\n3,\n");
  EXPECT_EQ(std::filesystem::file_size(scratch.path("bad")), kHole - 8 + 2);
  expect_part(outcome.output, "row too long 1 first in row 3");
  EXPECT_LT(outcome.peak_kib, 200 * 1024);
}

TEST(CsvFields, AsLongAsRowsMayBeAreSafe) {
  std::string row;
  row.assign(16'777'000, '1').append(",    \n");
  const ScratchDirectory scratch;
  const Outcome outcome =
      run_command({"csv", "--types", "a:flt8,b:i4", "--rejects", scratch.path("bad"), "-"}, row);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(scratch.read("bad") == row);
}

TEST(CsvStreams, RowsOnTheStandardOutputReportOnTheStandardError) {
  const Outcome outcome = run_command({"csv", "--types", "id:i4", "-"}, "id\n01\nx\n");
  EXPECT_EQ(outcome.output, "id\n1\n");
  EXPECT_NE(outcome.errors.find("the standard input: columns by name"), std::string::npos);
  EXPECT_NE(outcome.errors.find("not kept; name a file with --rejects FILE"), std::string::npos);
  EXPECT_EQ(outcome.errors.find('\r'), std::string::npos) << "no progress where nobody watches";
  EXPECT_EQ(outcome.status, 1);
}

TEST(CsvFiles, OlderContentsGo) {
  const ScratchDirectory scratch;
  scratch.write("out", std::string(1000, 'o'));
  scratch.write("bad", std::string(1000, 'b'));
  run_command({"csv", "--types", "id:i4", "--output", scratch.path("out"), "--rejects",
               scratch.path("bad"), "-"},
              "id\n1\nx\n");
  EXPECT_EQ(scratch.read("out"), "id\n1\n");
  EXPECT_EQ(scratch.read("bad"), "x\n");
}

TEST(CsvFiles, FullDisksAreNoticed) {
  const ScratchDirectory scratch;
  const std::string full = "cannot write /dev/full: No space left on device";
  const std::string small = scratch.write("small", "id\n1\nx\n");
  const std::string large = scratch.write("large", std::string(600000, '\n'));
  for (const std::string& input : {small, large}) {
    for (const char* option : {"--output", "--rejects"}) {
      const std::string types = option[2] == 'o' ? "id:i4" : "id:i4,n:i4";
      const Outcome outcome = run_command({"csv", "--types", types, option, "/dev/full", input});
      EXPECT_NE(outcome.errors.find(full), std::string::npos) << option << outcome.errors;
      EXPECT_EQ(outcome.status, 2);
    }
  }
  const Outcome report = run_command(
      {"csv", "--types", "id:i4", "--output", scratch.path("out"), small}, {}, "/dev/full");
  EXPECT_EQ(report.status, 2);
}

TEST(CsvFiles, AreNeverOverwrittenByThemselves) {
  const ScratchDirectory scratch;
  const std::string text = "id\n1\nx\n";
  const std::string input = scratch.write("in", text);
  std::filesystem::create_symlink(input, scratch.path("link"));
  const std::vector<std::vector<std::string>> refused = {
      {"--output", input},
      {"--output", scratch.path("link")},
      {"--rejects", scratch.path("./in")},
      {"--output", scratch.path("new"), "--rejects", scratch.path("new")},
  };
  for (std::vector<std::string> arguments : refused) {
    arguments.insert(arguments.begin(), {"csv", "--types", "id:i4", input});
    const Outcome outcome = run_command(arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find("name"), std::string::npos) << outcome.errors;
  }
  EXPECT_EQ(run_command({"csv", "--types", "id:i4", input}, {}, input).status, 2);
  EXPECT_EQ(scratch.read("in"), text);
  const Outcome devices = run_command(
      {"csv", "--types", "id:i4", "--output", "/dev/null", "--rejects", "/dev/null", input});
  EXPECT_EQ(devices.status, 1);
}

TEST(CsvUsage, ErrorsSayWhatToWriteAndTouchNothing) {
  const struct {
    const char* types;
    const char* file;
    const char* message;
  } cases[] = {
      {"", "", "write NAME:TYPE"},
      {"id", "", "\"id\" is no column; write NAME:TYPE"},
      {":i4", "", "is no column"},
      {"id:i4,", "", "is no column"},
      {"id:integer", "", "unknown type \"integer\"; the types are char"},
      {"id:i4,p:num(10,2", "", "\"num(10,2\" is no type"},
      {"id:i4,id:i2", "", "column \"id\" is there twice"},
      {"id:int20", "", "column \"id\": there is no conversion from int20 back to char; use one of"},
      {"id:null23", "", "there is no conversion from char to null23; use one of"},
      {"id:i4", "/nowhere/x.csv", "cannot read /nowhere/x.csv: No such file"},
      {"id:i4", "/", "cannot read /: Is a directory"},
      {"a:i4", "", "the header names column \"a\" twice"},
  };
  const ScratchDirectory scratch;
  const std::string input = scratch.write("in", "a,b,a\n1,2,3\n");
  for (const auto& c : cases) {
    const std::string file = *c.file == '\0' ? input : c.file;
    const Outcome outcome = run_command({"csv", "--types", c.types, file});
    EXPECT_NE(outcome.errors.find(c.message), std::string::npos) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.status, 2) << c.types;
  }
  scratch.write("out", "old");
  run_command({"csv", "--types", "id:int20", "--output", scratch.path("out"), input});
  run_command({"csv", "--types", "id:i4", "--output", scratch.path("out"), "--rejects",
               "/nowhere/x", input});
  EXPECT_EQ(scratch.read("out"), "old");
  EXPECT_EQ(run_command({"csv", input}).status, 2);
  EXPECT_EQ(run_command({"csv", "--types", "id:i4", "--rejects", "", input}).status, 2);
  EXPECT_EQ(run_command({"csv", "--types", "id:i4", "--rejects", "-", input}).status, 2);
  EXPECT_EQ(run_command({"csv", "--types", "id:i4", "--row-limit", "0", input}).status, 2);
}

}  // namespace
