// tvxcomn convert: one line a value, for every scalar type, for every kind of failure, and for odd
// values.
#include <gtest/gtest.h>

#include "tools/run_command.hpp"

namespace {

using tvx::test::Outcome;
using tvx::test::run_command;

struct ConvertCase {
  std::vector<std::string> arguments;  // behind "convert"
  int status;
  const char* output;
};

void PrintTo(const ConvertCase& c, std::ostream* out) {
  for (const std::string& argument : c.arguments) *out << '[' << argument << "] ";
}

Outcome convert(std::vector<std::string> arguments, const std::string& input = {}) {
  arguments.insert(arguments.begin(), "convert");
  return run_command(arguments, input);
}

class Convert : public testing::TestWithParam<ConvertCase> {};

TEST_P(Convert, PrintsResultBytesAndText) {
  const Outcome outcome = convert(GetParam().arguments);
  EXPECT_EQ(outcome.output, GetParam().output);
  EXPECT_EQ(outcome.status, GetParam().status);
  EXPECT_EQ(outcome.errors, "");
}

INSTANTIATE_TEST_SUITE_P(
    Types, Convert,
    testing::Values(
        ConvertCase{{"--to", "bit", "7"}, 0, "7\tCS_SUCCEED\t1\t01\t1\n"},
        ConvertCase{{"--to", "i1", "255"}, 0, "255\tCS_SUCCEED\t1\tff\t255\n"},
        ConvertCase{{"--to", "i2", "-2"}, 0, "-2\tCS_SUCCEED\t2\tfeff\t-2\n"},
        ConvertCase{{"--to", "i4", " 42 "}, 0, " 42 \tCS_SUCCEED\t4\t2a000000\t42\n"},
        ConvertCase{{"--to", "i8", "-1"}, 0, "-1\tCS_SUCCEED\t8\tffffffffffffffff\t-1\n"},
        ConvertCase{{"--to", "ui2", "65535"}, 0, "65535\tCS_SUCCEED\t2\tffff\t65535\n"},
        ConvertCase{{"--to", "ui4", "+9"}, 0, "+9\tCS_SUCCEED\t4\t09000000\t9\n"},
        ConvertCase{{"--to", "ui8", "256"}, 0, "256\tCS_SUCCEED\t8\t0001000000000000\t256\n"},
        ConvertCase{
            {"--to", "flt4", "0.1"}, 0, "0.1\tCS_SUCCEED\t4\tcdcccc3d\t.10000000149011612\n"},
        ConvertCase{{"--to", "flt8", "2"}, 0, "2\tCS_SUCCEED\t8\t0000000000000040\t2.0\n"},
        // There is no way back from int20 to char.
        ConvertCase{{"--to", "int20", "-9"}, 0, "-9\tCS_SUCCEED\t8\tf7ffffffffffffff\t-\n"},
        ConvertCase{
            {"--to", "num(6,2)", "-12.5"}, 0, "-12.5\tCS_SUCCEED\t6\t0602010004e2\t-12.50\n"},
        ConvertCase{{"--to", "num", "1.25e1", "5e-1"},
                    0,
                    "1.25e1\tCS_SUCCEED\t5\t030100007d\t12.5\n"
                    "5e-1\tCS_SUCCEED\t4\t02010005\t0.5\n"},
        ConvertCase{{"--to", "money", "$1,234.56785"},
                    0,
                    "$1,234.56785\tCS_SUCCEED\t8\t000000004f61bc00\t1234.5679\n"},
        ConvertCase{{"--to", "datetime", "Jan 2 2003 2:05:09:023PM"},
                    0,
                    "Jan 2 2003 2:05:09:023PM\tCS_SUCCEED\t8\tf5920000a320e800\t"
                    "Jan  2 2003  2:05PM\n"},
        ConvertCase{{"--to", "bigdatetime", "--style", "140", "2003-01-02T14:05:09.023456"},
                    0,
                    "2003-01-02T14:05:09.023456\tCS_SUCCEED\t8\te08ab7920290e000\t"
                    "2003-01-02 14:05:09.023456\n"},
        ConvertCase{{"--to", "date4", "1/2/2003 10:29:30"},
                    0,
                    "1/2/2003 10:29:30\tCS_SUCCEED\t4\tf5927602\tJan  2 2003 10:30AM\n"},
        ConvertCase{
            {"--to", "datea", "20030102"}, 0, "20030102\tCS_SUCCEED\t4\tf5920000\tJan  2 2003\n"},
        ConvertCase{{"--to", "timea", "--style", "20", "10:30PM"},
                    0,
                    "10:30PM\tCS_SUCCEED\t4\te0c97201\t22:30:00:000\n"},
        ConvertCase{{"--to", "bigtime", "--style", "37", "1:2:3.000004"},
                    0,
                    "1:2:3.000004\tCS_SUCCEED\t8\tc478e8dd00000000\t01:02:03.000004\n"},
        ConvertCase{{"--to", "bin(3)", "0xABC"}, 0, "0xABC\tCS_SUCCEED\t2\t0abc\t0abc\n"},
        ConvertCase{{"--from", "bin", "--to", "char(3)", "01ab"},
                    1,
                    "01ab\tCS_CONV_TRUNCATED\t2\t3031\t01\n"},
        ConvertCase{{"--to", "mny4", "-0.5"}, 0, "-0.5\tCS_SUCCEED\t4\t78ecffff\t-0.5000\n"},
        ConvertCase{
            {"--to", "i4", "--from", "null23", "x"}, 0, "x\tCS_SUCCEED\t4\t00000000\t0\n"}));

INSTANTIATE_TEST_SUITE_P(
    Failures, Convert,
    testing::Values(
        ConvertCase{{"--to", "i4", "12x"}, 1, "12x\tCS_CONV_SYNTAX\t0\t-\t-\n"},
        ConvertCase{{"--to", "ui4", "-1"}, 1, "-1\tCS_CONV_SYNTAX\t0\t-\t-\n"},
        ConvertCase{{"--to", "i8", "9223372036854775808"},
                    1,
                    "9223372036854775808\tCS_CONV_OVERFLOW\t8\tffffffffffffff7f\t"
                    "9223372036854775807\n"},
        ConvertCase{{"--to", "flt8", "-1e400"},
                    1,
                    "-1e400\tCS_CONV_OVERFLOW\t8\tffffffffffffefff\t-1.7976931348623157e+308\n"},
        ConvertCase{
            {"--to", "flt8", "1e-400"}, 1, "1e-400\tCS_CONV_UNDERFLOW\t8\t0000000000000000\t0.0\n"},
        ConvertCase{
            {"--from", "flt8", "--to", "i2", "1e9"}, 1, "1e9\tCS_CONV_OVERFLOW\t2\tff7f\t32767\n"},
        ConvertCase{
            {"--from", "i8", "--to", "ui2", "-1"}, 1, "-1\tCS_CONV_UNDERFLOW\t2\t0000\t0\n"},
        ConvertCase{{"--to", "num(4,2)", "100", "1.255", "1,5"},
                    1,
                    "100\tCS_CONV_OVERFLOW\t5\t0402000000\t0.00\n"
                    "1.255\tCS_CONV_TRUNCATED\t5\t0402000000\t0.00\n"
                    "1,5\tCS_CONV_SYNTAX\t0\t-\t-\n"},
        ConvertCase{{"--to", "num(78,2)", "1"}, 1, "1\tCS_CONV_BADPREC\t0\t-\t-\n"},
        ConvertCase{{"--to", "datetime", "2/30/2003", "someday"},
                    1,
                    "2/30/2003\tCS_CONV_OVERFLOW\t0\t-\t-\n"
                    "someday\tCS_CONV_SYNTAX\t0\t-\t-\n"},
        ConvertCase{{"--from", "datetime", "--to", "char", "--style", "24", "Jan 2 2003"},
                    1,
                    "Jan 2 2003\tCS_CONV_BADSTYLE\t0\t-\t-\n"},
        ConvertCase{{"--to", "bin", "AB CD"}, 1, "AB CD\tCS_CONV_SYNTAX\t0\t-\t-\n"},
        ConvertCase{{"--to", "money", "1,23"}, 1, "1,23\tCS_CONV_SYNTAX\t0\t-\t-\n"},
        // The first step fails: the destination is never reached.
        ConvertCase{{"--from", "i2", "--to", "i8", "70000", "7"},
                    1,
                    "70000\tCS_CONV_OVERFLOW\t0\t-\t-\n7\tCS_SUCCEED\t8\t0700000000000000\t7\n"}));

INSTANTIATE_TEST_SUITE_P(
    Formats, Convert,
    testing::Values(
        ConvertCase{{"--from", "i4", "--to", "char", "77"}, 0, "77\tCS_SUCCEED\t2\t3737\t77\n"},
        ConvertCase{
            {"--from", "i4", "--to", "char(3)", "1234"}, 1, "1234\tCS_CONV_OVERFLOW\t1\t2a\t*\n"},
        ConvertCase{{"--from", "i4", "--to", "char", "--maxlength", "1", "12"},
                    1,
                    "12\tCS_CONV_OVERFLOW\t1\t00\t\\x00\n"},
        ConvertCase{{"--from", "i4", "--to", "char2", "--terminate", "5"},
                    0,
                    "5\tCS_SUCCEED\t2\t3500\t5\\x00\n"},
        ConvertCase{{"--from", "i4", "--to", "char(4)", "--blankfill", "--terminate", "5"},
                    0,
                    "5\tCS_SUCCEED\t4\t35202000\t5  \\x00\n"},
        ConvertCase{{"--from", "bit", "--to", "bin(3)", "--zerofill", "1"},
                    0,
                    "1\tCS_SUCCEED\t3\t010000\t010000\n"},
        // Money keeps its digits on the way through text, unless fewer are asked for.
        ConvertCase{{"--from", "money", "--to", "char", "2.5"},
                    0,
                    "2.5\tCS_SUCCEED\t6\t322e35303030\t2.5000\n"},
        ConvertCase{{"--from", "money", "--to", "i8", "0.4999"},
                    0,
                    "0.4999\tCS_SUCCEED\t8\t0000000000000000\t0\n"},
        ConvertCase{{"--from", "mny4", "--to", "char", "--precision", "1", "-2.25"},
                    0,
                    "-2.25\tCS_SUCCEED\t4\t2d322e33\t-2.3\n"},
        ConvertCase{{"--from", "num(5,3)", "--to", "num", "--scale", "1", "1.25"},
                    1,
                    "1.25\tCS_CONV_TRUNCATED\t6\t05010000000c\t1.2\n"},
        ConvertCase{{"--from", "i4", "--to", "char(4)", "--blankfill", "--zerofill", "5"},
                    1,
                    "5\tCS_CONV_BADFORMAT\t1\t35\t-\n"}));

// Values that the shell, the command line or the library could mistake for something else.
INSTANTIATE_TEST_SUITE_P(
    OddValues, Convert,
    testing::Values(ConvertCase{{"--to", "i4", ""}, 0, "\tempty\t0\t-\t-\n"},
                    ConvertCase{{"--to", "i4", "[1,2]", "[", "{}", "%%"},
                                1,
                                "[1,2]\tCS_CONV_SYNTAX\t0\t-\t-\n[\tCS_CONV_SYNTAX\t0\t-\t-\n"
                                "{}\tCS_CONV_SYNTAX\t0\t-\t-\n%%\tCS_CONV_SYNTAX\t0\t-\t-\n"},
                    ConvertCase{{"--to", "flt8", "--", "-.5"},
                                0,
                                "-.5\tCS_SUCCEED\t8\t000000000000e0bf\t-0.5\n"},
                    ConvertCase{{"--to", "i4", "1\t\n\r\\\x7f"},
                                1,
                                "1\\t\\n\\r\\\\\\x7f\tCS_CONV_SYNTAX\t0\t-\t-\n"},
                    // Printable UTF-8 stays; a control character of two bytes, a stray byte and a
                    // cut sequence do not.
                    ConvertCase{{"--to", "i4", "é€\xC2\x9B\x80\xE2\x82"},
                                1,
                                "é€\\xc2\\x9b\\x80\\xe2\\x82\tCS_CONV_SYNTAX\t0\t-\t-\n"}));

TEST(ConvertLines, AreReadFromTheStandardInput) {
  const Outcome outcome = convert({"--to", "i2"}, "1\n\n2 x\n3");
  EXPECT_EQ(outcome.output,
            "1\tCS_SUCCEED\t2\t0100\t1\n\tempty\t0\t-\t-\n2 x\tCS_CONV_SYNTAX\t0\t-\t-\n"
            "3\tCS_SUCCEED\t2\t0300\t3\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST(ConvertLines, MayBeLongButNotEndless) {
  const Outcome accepted = convert({"--to", "flt8"}, std::string(16u << 20, '7'));
  EXPECT_EQ(accepted.status, 1);
  EXPECT_EQ(accepted.output.substr(16u << 20), "\tCS_CONV_SYNTAX\t0\t-\t-\n");
  EXPECT_EQ(convert({"--to", "flt8"}, std::string((16u << 20) + 1, '7')).status, 2);
}

struct UsageCase {
  std::vector<std::string> arguments;
  const char* message;  // what the message must hold
};

TEST(ConvertUsage, ErrorsSayWhatToWrite) {
  const UsageCase cases[] = {
      {{}, "--to is required"},
      {{"--to", "int", "5"}, "unknown type \"int\"; the types are char, bin, char2"},
      {{"--to", "-", "5"}, "unknown type \"-\""},
      {{"--to", "i4(4)", "5"}, "NAME(BYTES)"},
      {{"--to", "char(", "5"}, "NAME(BYTES)"},
      {{"--to", "char()", "5"}, "NAME(BYTES)"},
      {{"--to", "char(1,2)", "5"}, "NAME(BYTES)"},
      {{"--to", "char(99999999999)", "5"}, "at most 16777216"},
      {{"--to", "char(9)", "--maxlength", "9", "--from", "i4", "5"}, "--maxlength stands"},
      {{"--to", "char", "--maxlength", "-1", "--from", "i4", "5"}, "not in range"},
      {{"--to", "char", "--blankfill", "--from", "i4", "5"}, "write --maxlength BYTES"},
      {{"--to", "locator37", "--from", "i4", "5"}, "no conversion from i4 to locator37; from i4"},
      {{"--to", "i4", "--from", "null23(1,2)", "5"}, "is no type"},
      {{"--to", "null23", "5"}, "no conversion from char to null23; from char there is one to"},
      {{"--to", "i4", "-.5"}, "write -- in front of values"},
      {{"--to", "i4", "--unknown"}, "\"--unknown\" is no option"},
  };
  for (const UsageCase& c : cases) {
    const Outcome outcome = convert(c.arguments);
    EXPECT_NE(outcome.errors.find(c.message), std::string::npos) << outcome.errors;
    EXPECT_EQ(outcome.output, "") << c.message;
    EXPECT_EQ(outcome.status, 2) << c.message;
  }
}

}  // namespace
