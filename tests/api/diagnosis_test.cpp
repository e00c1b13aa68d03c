// The fatal path, return tracing and the debug output; what ends the process is watched from
// another.
#include "tvxcomn/diagnosis.h"

#include <gtest/gtest.h>
#include <setjmp.h>
#include <signal.h>
#include <unistd.h>

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "support/scratch_directory.hpp"
#include "tvxcomn/tvxcomn.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::Eq;
using testing::KilledBySignal;

std::string contents(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A directory of its own, current while the test runs. Debug settings are back at their start
// afterwards.
class Diagnosis : public testing::Test {
public:
  Diagnosis() { fs::current_path(directory_.path()); }
  ~Diagnosis() override {
    com_errset(1);
    com_toggle_abort(1);
    comn_debug_setfile(nullptr, nullptr, 0);
    fs::current_path(before_);
  }

private:
  const fs::path before_ = fs::current_path();
  const tvx::test::ScratchDirectory directory_;
};

// ---- The fatal path -----------------------------------------------------------------------------

const std::pair<void (*)(), std::string> kStops[] = {
    {[] { com_bomb("some/where.cpp", 12); },
     "\n\rassertion failed, file 'some/where.cpp' line 12\n\r"},
    {[] { com_raise_invalid_null_pointer("where.cpp", 2'000'000); },
     "\nInvalid NULL pointer , file 'where.cpp' line 2000000\n"}};

void block_every_signal() {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, nullptr);
}

ssize_t say(const char* text, size_t size) {
  return write(STDERR_FILENO, text, size);
}

// Makes standard error a stream that waits with its text, and that says when it is closed.
void buffer_standard_error() {
  const auto put = [](void*, const char* text, size_t size) { return say(text, size); };
  const auto close = [](void*) { return say("closed", 6) == 6 ? 0 : -1; };
  stderr = fopencookie(nullptr, "w", {nullptr, put, nullptr, close});
  std::fputs("before", stderr);
}

TEST_F(Diagnosis, StopEndsTheProcessWhateverStandsInTheWay) {
  void (*const obstacles[])() = {[] {}, [] { signal(SIGABRT, SIG_IGN); }, block_every_signal};
  for (const int mode : {1, 2})
    for (const auto& [call, message] : kStops) {
      com_toggle_abort(mode);
      for (const auto& obstacle : obstacles)
        EXPECT_EXIT((obstacle(), call()), KilledBySignal(SIGABRT), Eq(message))
            << "obstacle " << &obstacle - obstacles << ", mode " << mode;
      EXPECT_EXIT((block_every_signal(), signal(SIGABRT, [](int) { say("handled", 7); }), call()),
                  KilledBySignal(SIGABRT), Eq(message + (mode == 1 ? "" : "handled")));
      EXPECT_EXIT((buffer_standard_error(), call()), KilledBySignal(SIGABRT),
                  Eq("before" + message + (mode == 1 ? "closed" : "")));
    }
  EXPECT_EXIT((buffer_standard_error(), com_panic("100% out")), testing::ExitedWithCode(255),
              Eq("before\nINTERNAL ERROR: unrecoverable error: 100% out\n"s));
}

sigjmp_buf way_out;

// Whether the stop was left through the handler.
bool left_by_handler(void (*stop)()) {
  signal(SIGABRT, [](int) { siglongjmp(way_out, 1); });
  if (sigsetjmp(way_out, 1) != 0) return true;
  stop();
  return false;
}

TEST_F(Diagnosis, StopMayBeLeftByAHandlerUnlessTheModeIsOne) {
  for (const auto& [call, message] : kStops) {
    com_toggle_abort(1);
    EXPECT_EXIT(_exit(left_by_handler(call)), KilledBySignal(SIGABRT), Eq(message));
    for (const int mode : {0, 2, -1, 2}) {
      com_toggle_abort(mode);
      testing::internal::CaptureStderr();
      EXPECT_TRUE(left_by_handler(call)) << "mode " << mode;
      std::fputs("goes on", stderr);
      EXPECT_EQ(message + "goes on", testing::internal::GetCapturedStderr());
    }
  }
  signal(SIGABRT, SIG_DFL);
}

// Calls in the files of exports named, no two of one operation.
using CallsOfFiles = std::initializer_list<std::pair<void (*)(), std::string>>;

TEST_F(Diagnosis, FatalMessageNamesTheOperation) {
  const CallsOfFiles calls = {
      {[] { com_datecmp(nullptr, nullptr); }, "dates"},
      {[] { com__datecmp(nullptr, nullptr); }, "dates"},
      {[] { com_dateacmp(nullptr, nullptr); }, "dates"},
      {[] { com_timeacmp(nullptr, nullptr); }, "dates"},
      {[] { com__datecrack(nullptr, nullptr); }, "dates"},
      {[] { com_datecrack(nullptr, nullptr); }, "dates"},
      {[] { com__datetodatea(nullptr, nullptr); }, "dates"},
      {[] { com_cvtdatetochar(nullptr, nullptr, 0, 0, nullptr); }, "dateformat"},
      {[] { com_cvtdate4tochar(nullptr, nullptr, 0, 0, nullptr); }, "dateformat"},
      {[] { com__chtoi4_mb(nullptr, 0, nullptr, nullptr); }, "numbertext"},
      {[] { com__chtoi8_mb(nullptr, 0, nullptr, nullptr); }, "numbertext"},
      {[] { comn_mnycmp(nullptr, nullptr); }, "money"},
      {[] { comn_mny4cmp(nullptr, nullptr); }, "money"},
      {[] { comn_mnyadd(nullptr, nullptr, nullptr); }, "money"},
      {[] { comn_mnysub(nullptr, nullptr, nullptr); }, "money"},
      {[] { comn_mnyminus(nullptr, nullptr); }, "money"},
      {[] { com__mnytochar(nullptr, nullptr, 0, 0); }, "money"},
      {[] { com__mny4tochar(nullptr, nullptr, 0, 0); }, "money"},
      {[] { comn_isalpha(nullptr, nullptr); }, "attributes"},
      {[] { comn_isdigit(nullptr, nullptr); }, "attributes"},
  };
  com_toggle_abort(2);
  std::set<std::string> messages;
  for (const auto& [call, file] : calls) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(left_by_handler(call));
    const std::string message = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, message.find("/api/" + file + ".cpp' line ")) << message;
    EXPECT_TRUE(messages.insert(message).second) << "another operation's: " << message;
  }
  signal(SIGABRT, SIG_DFL);
}

TEST_F(Diagnosis, ErrorTextGoesToStandardErrorAndTheLog) {
  const std::string text = "full: 100%\n" + std::string(5'000, 'x');
  testing::internal::CaptureStderr();
  com_perr("full: 100%%\n");
  com_perr(text.c_str() + text.find('x'));
  EXPECT_EQ(text, testing::internal::GetCapturedStderr());
  EXPECT_EQ(text, contents("tvxinit.err"));
  fs::remove("tvxinit.err");
  fs::create_directory("tvxinit.err");
  testing::internal::CaptureStderr();
  com_perr("no log");
  EXPECT_EQ("no log", testing::internal::GetCapturedStderr());
}

// ---- Return tracing -----------------------------------------------------------------------------

std::string traced(int32_t code, const char* file) {
  EXPECT_EQ(1, comn_debug_setfile(nullptr, "trace", 1));
  EXPECT_EQ(code, com_errtrace(code, file, 321));
  return contents("trace");
}

TEST_F(Diagnosis, TraceLevelsCodesAndFiles) {
  // clang-format off
  const struct { int32_t code; const char* name; int32_t least_level = 2; } codes[] = {
      {0, "CS_FAIL"}, {-1, "CS_MEM_ERROR"}, {-3, "CS_QUIET"}, {-4, "CS_BUSY"},
      {-202, "CS_CANCELED"}, {-203, "CS_ROW_FAIL"}, {-207, "CS_NOMSG"}, {-208, "CS_TIMED_OUT"},
      {-210, "CS_PASSTHRU_EOM"}, {-211, "CS_PASSTHRU_MORE"}, {-213, "CS_TRYING"},
      {-101, "-101"}, {-209, "-209"}, {34, "34"}, {INT_MIN, "-2147483648"},
      {1, "CS_SUCCEED", 3}, {-2, "CS_PENDING", 3}, {-5, "CS_INTERRUPT", 3},
      {-204, "CS_END_DATA", 3}, {-205, "CS_END_RESULTS", 3}, {-206, "CS_END_ITEM", 3},
  };
  // clang-format on
  for (const int32_t level : {1, 2, 3, 1}) {  // first the level a process starts with
    for (const auto& [code, name, least_level] : codes) {
      const std::string line = "("s + name + ") file trace.cpp, line 321\n";
      EXPECT_EQ(level >= least_level ? line : "", traced(code, "src/trace.cpp")) << level;
    }
    ASSERT_EQ(level % 3 + 1, com_errset(level % 3 + 1));
  }
  com_errset(3);
  const char* const files[][2] = {
      {"/a/b.c/c.cpp", "c.cpp"}, {"a\\c", "a\\c"}, {"a/", ""}, {"", ""}, {"a/%s%n", "%s%n"}};
  for (const auto& [file, shown] : files)
    EXPECT_EQ("(CS_FAIL) file "s + shown + ", line 321\n", traced(0, file));
}

comn_money amount{};
int32_t small_amount = 1;

int32_t convert_i4(comn_conversion* routine, int32_t destination_code) {
  comn_context context{};
  comn_datafmt from{}, to{};
  from.datatype = TVX_TYPE_I4;
  to.datatype = destination_code;
  to.maxlength = sizeof(int64_t);
  int64_t destination;
  int32_t length;
  return routine(&context, &from, &small_amount, &to, &destination, &length);
}

int32_t convert_bare_i4(comnb_conversion* routine) {
  const comnb_context context{};
  int64_t stored;
  comnb_value source{}, destination{};
  source.data = &small_amount;
  destination.data = &stored;
  destination.maxlength = sizeof stored;
  return routine(&context, &source, &destination);
}

TEST_F(Diagnosis, TraceLineNamesTheOperation) {
  const CallsOfFiles calls = {
      {[] { convert_i4(comn_i4toi8, TVX_TYPE_I8); }, "scalar"},
      {[] { convert_i4(comn_i4tochar, TVX_TYPE_CHAR); }, "numbertext"},
      {[] { convert_i4(comn_i4tomoney, TVX_TYPE_MONEY); }, "money"},
      {[] { convert_i4(comn_i4tobin, TVX_TYPE_BIN); }, "binary"},
      {[] { convert_bare_i4(comnb_i4toi8); }, "scalar"},
      {[] { convert_bare_i4(comnb_i4tochar); }, "numbertext"},
      {[] { convert_bare_i4(comnb_i4tomoney); }, "money"},
      {[] { convert_bare_i4(comnb_i4tohex); }, "numbertext"},
      {[] { comn_mnyadd(&amount, &amount, &amount); }, "money"},
      {[] { comn_mnysub(&amount, &amount, &amount); }, "money"},
      {[] { comn_mny4sub(&small_amount, &small_amount, &small_amount); }, "money"},
      {[] { comn_mnyminus(&amount, &amount); }, "money"},
      {[] { comn_mnycopy(&amount, &amount); }, "money"},
      {[] { comn_mnyinc(&amount); }, "money"},
      {[] { comn_mnydec(&amount); }, "money"},
      {[] { comn_mnyscale(&amount, 1, 0); }, "money"},
  };
  com_errset(3);
  std::set<std::string> lines;
  for (const auto& [call, file] : calls) {
    ASSERT_EQ(1, comn_debug_setfile(nullptr, "trace", 1));
    call();
    const std::string line = contents("trace"), start = "(CS_SUCCEED) file " + file + ".cpp, line ";
    EXPECT_EQ(start, line.substr(0, start.size()));
    EXPECT_EQ(line.size(), line.find('\n') + 1) << "one line";
    EXPECT_TRUE(lines.insert(line).second) << "another operation's: " << line;
  }
}

// ---- Debug output -------------------------------------------------------------------------------

TEST_F(Diagnosis, DebugOutputGoesToTheFileThatIsSet) {
  int unused = 0;
  ASSERT_EQ(1, comn_debug_setfile(&unused, "a", -1));
  EXPECT_EQ(1, comn_debug_print("%s %5.1f %03d", "one", 2.25, 3));
  EXPECT_EQ("one   2.2 003", contents("a")) << "flushed";
  ASSERT_EQ(1, comn_debug_setfile(nullptr, "b", 1));
  const std::string text(20'000, 'y');
  EXPECT_EQ(1, comn_debug_print("%s", text.c_str()));
  EXPECT_EQ("one   2.2 003", contents("a"));
  EXPECT_EQ(text, contents("b"));

  const std::tuple<const char*, int32_t, int32_t> to_standard_output[] = {
      {"missing/file", 1, 0}, {"b", 0, 1}, {nullptr, 0, 1}, {nullptr, 1, 1}};
  for (const auto& [path, flag, result] : to_standard_output) {
    ASSERT_EQ(1, comn_debug_setfile(nullptr, "b", 1));
    EXPECT_EQ(result, comn_debug_setfile(nullptr, path, flag));
    testing::internal::CaptureStdout();
    comn_debug_print("elsewhere");
    EXPECT_EQ(0, comn_dbg_stack(1, 2, 3, 4));
    EXPECT_EQ("elsewhere", testing::internal::GetCapturedStdout());
    EXPECT_EQ("", contents("b")) << "truncated by the first call";
  }
}

// What the debug formatter makes of a format and its arguments.
std::string formatted(const char* format, ...) {
  EXPECT_EQ(1, comn_debug_setfile(nullptr, "formatted", 1));
  va_list arguments;
  va_start(arguments, format);
  EXPECT_EQ(1, comn_debug_vprint(format, arguments));
  va_end(arguments);
  return contents("formatted");
}

TEST_F(Diagnosis, DebugFormatter) {
  const std::string illegal = "illegal format specification\n", zeros(2'000, '0');
  const char* const no_text = nullptr;
  const std::string rows[][2] = {
      {formatted(""), ""},
      {formatted("100%%, %%d\n"), "100%, %d\n"},
      {formatted("%d %d|%5d|%-5d|%05d|%+d|% d", INT_MIN, INT_MAX, 42, 42, 42, 42, 42),
       "-2147483648 2147483647|   42|42   |00042|+42| 42"},
      {formatted("%x %X %08x %#x %x", 0xabc, 0xABC, 0xabc, 0xabc, -1),
       "abc ABC 00000abc 0xabc ffffffff"},
      {formatted("%c%c|%3c|%-3c|", 'a', '%', 'b', 'c'), "a%|  b|c  |"},
      {formatted("%s|%6s|%-6s|", zeros.c_str(), "text", "text"), zeros + "|  text|text  |"},
      {formatted("%s, %8s, %d", no_text, no_text, 5), "(null),   (null), 5"},
      {formatted("%ld %lx|%-12lx|%012ld", LONG_MIN, LONG_MAX, 5'000'000'000, 5'000'000'000),
       "-9223372036854775808 7fffffffffffffff|12a05f200   |005000000000"},
      {formatted("%lz%d%l", 5'000'000'000, 6, 7L), "5000000000z67"},
      {formatted(("%-" + zeros + "5d|%" + zeros + "4d").c_str(), 7, 8), "7    |0008"},
      {formatted("value %d, %Z", 1, 2), "value 1, " + illegal},
      {formatted(("%-08" + zeros).c_str()), illegal},
  };
  for (const auto& [actual, expected] : rows) EXPECT_EQ(expected, actual);
}

// ---- Small helpers ------------------------------------------------------------------------------

TEST(DiagnosisText, HexadecimalCopiedAndAppended) {
  char out[] = "......", text[6];
  com_prhex(0x5f, out);
  com_prhex(-128, out + 2);
  EXPECT_STREQ("5f80..", out);
  EXPECT_EQ(2, com_copstr(text, "ab", sizeof text));
  EXPECT_EQ(5, com_catstr(text, "cde", sizeof text));
  EXPECT_STREQ("abcde", text);
}

}  // namespace
