// The fatal path, return tracing and the debug output; what ends the process is watched from
// another.
#include "tvxcomn/diagnosis.h"

#include <gtest/gtest.h>
#include <setjmp.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::Eq;
using testing::ExitedWithCode;
using testing::KilledBySignal;

const char* const kAssertion = "assertion failed, file '.+' line [0-9]+";

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A directory of its own, current while the test runs. Debug settings are back at their start
// afterwards.
class Diagnosis : public testing::Test {
public:
  Diagnosis() {
    std::string name = (fs::temp_directory_path() / "diagnosis_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no directory " << name;
    directory_ = name;
    fs::current_path(directory_);
  }
  ~Diagnosis() override {
    com_errset(1);
    com_toggle_abort(1);
    comn_debug_setfile(nullptr, nullptr, 0);
    fs::current_path(before_);
    fs::remove_all(directory_);
  }

protected:
  static std::string standard_output(const std::function<void()>& print) {
    testing::internal::CaptureStdout();
    print();
    return testing::internal::GetCapturedStdout();
  }

  static std::string standard_error(const std::function<void()>& print) {
    testing::internal::CaptureStderr();
    print();
    return testing::internal::GetCapturedStderr();
  }

private:
  fs::path before_ = fs::current_path();
  fs::path directory_;
};

// ---- The fatal path ----------------------------------------------------------------------------

struct Stop {
  void (*call)();
  std::string message;
};

const Stop kStops[] = {{[] { com_bomb("some/where.cpp", 12); },
                        "\n\rassertion failed, file 'some/where.cpp' line 12\n\r"},
                       {[] { com_raise_invalid_null_pointer("where.cpp", 2'000'000); },
                        "\nInvalid NULL pointer , file 'where.cpp' line 2000000\n"}};

void on_abort(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigaction(SIGABRT, &action, nullptr);
}

void block_every_signal() {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, nullptr);
}

void say_handled(int) {
  if (write(STDERR_FILENO, "handled", 7) != 7) _exit(1);
}

sigjmp_buf way_out;

// Whether the stop was left through the handler.
bool left_by_handler(void (*stop)()) {
  on_abort([](int) { siglongjmp(way_out, 1); });
  if (sigsetjmp(way_out, 1) != 0) return true;
  stop();
  return false;
}

using FatalPath = Diagnosis;

TEST_F(FatalPath, AbortModeOneIsFinal) {
  void (*const obstacles[])() = {[] {}, [] { on_abort([](int) { _exit(7); }); },
                                 [] { on_abort(say_handled); }, [] { on_abort(SIG_IGN); },
                                 block_every_signal};
  for (const Stop& stop : kStops) {
    for (const auto& obstacle : obstacles)
      EXPECT_EXIT((obstacle(), stop.call()), KilledBySignal(SIGABRT), Eq(stop.message))
          << "obstacle " << &obstacle - obstacles;
    EXPECT_EXIT(_exit(left_by_handler(stop.call)), KilledBySignal(SIGABRT), Eq(stop.message));
  }
  EXPECT_EXIT((close(STDERR_FILENO), com_bomb("w", 1)), KilledBySignal(SIGABRT), Eq(""s));
}

// The child stands still at its last signal, so its open files can be looked at.
TEST_F(FatalPath, AbortModeOneClosesStandardError) {
  testing::internal::CaptureStderr();
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(77);
    com_bomb("w", 1);
  }
  int status = 0;
  const pid_t stopped = waitpid(child, &status, 0);
  testing::internal::GetCapturedStderr();
  ASSERT_EQ(child, stopped);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 77) GTEST_SKIP() << "tracing is not allowed";
  ASSERT_TRUE(WIFSTOPPED(status) && WSTOPSIG(status) == SIGABRT) << status;
  const fs::path files = "/proc/" + std::to_string(child) + "/fd";
  EXPECT_TRUE(fs::is_symlink(files / "1"));
  EXPECT_FALSE(fs::is_symlink(files / "2"));
  ptrace(PTRACE_CONT, child, nullptr, SIGABRT);
  ASSERT_EQ(child, waitpid(child, &status, 0));
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT) << status;
}

TEST_F(FatalPath, AnyOtherModeMayBeLeftByAHandler) {
  for (const int mode : {0, 2, -1, 2}) {
    com_toggle_abort(mode);
    for (const Stop& stop : kStops) {
      bool left = false;
      EXPECT_EQ(stop.message + "goes on", standard_error([&] {
                  left = left_by_handler(stop.call);
                  std::fputs("goes on", stderr);
                }));
      EXPECT_TRUE(left) << "mode " << mode;
    }
  }
  on_abort(SIG_DFL);
}

TEST_F(FatalPath, AnyOtherModeEndsTheProcessWhenNoHandlerLeaves) {
  com_toggle_abort(2);
  for (const Stop& stop : kStops) {
    EXPECT_EXIT(stop.call(), KilledBySignal(SIGABRT), Eq(stop.message));
    EXPECT_EXIT((on_abort(say_handled), stop.call()), KilledBySignal(SIGABRT),
                Eq(stop.message + "handled"));
  }
}

TEST_F(FatalPath, MessageFollowsWhatWaitsInTheBuffer) {
  const auto wait_in_buffer = [](int mode) {
    com_toggle_abort(mode);
    setvbuf(stderr, nullptr, _IOFBF, BUFSIZ);
    std::fputs("before", stderr);
  };
  for (const int mode : {1, 2}) {
    EXPECT_EXIT((wait_in_buffer(mode), com_bomb("w", 1)), KilledBySignal(SIGABRT),
                Eq("before\n\rassertion failed, file 'w' line 1\n\r"s));
    EXPECT_EXIT((wait_in_buffer(mode), com_panic("100% out")), ExitedWithCode(255),
                Eq("before\nINTERNAL ERROR: unrecoverable error: 100% out\n"s));
  }
}

TEST_F(FatalPath, ErrorTextGoesToStandardErrorAndTheLog) {
  const std::string log = "tvxinit.err", text(5'000, 'x');
  EXPECT_EQ("full: 100%\n", standard_error([] { com_perr("full: 100%%\n"); }));
  EXPECT_EQ(text, standard_error([&] { com_perr(text.c_str()); }));
  EXPECT_EQ("full: 100%\n" + text, contents(log));
  fs::remove(log);
  fs::create_directory(log);
  EXPECT_EQ("no log", standard_error([] { com_perr("no log"); }));
}

// ---- Return tracing ----------------------------------------------------------------------------

using Codes = std::map<int32_t, std::string>;

const Codes kTold = {{0, "CS_FAIL"},
                     {-1, "CS_MEM_ERROR"},
                     {-3, "CS_QUIET"},
                     {-4, "CS_BUSY"},
                     {-202, "CS_CANCELED"},
                     {-203, "CS_ROW_FAIL"},
                     {-207, "CS_NOMSG"},
                     {-208, "CS_TIMED_OUT"},
                     {-210, "CS_PASSTHRU_EOM"},
                     {-211, "CS_PASSTHRU_MORE"},
                     {-213, "CS_TRYING"},
                     {-101, "-101"},
                     {-209, "-209"},
                     {34, "34"},
                     {INT_MIN, "-2147483648"}};
const Codes kOrdinary = {{1, "CS_SUCCEED"},     {-2, "CS_PENDING"},       {-5, "CS_INTERRUPT"},
                         {-204, "CS_END_DATA"}, {-205, "CS_END_RESULTS"}, {-206, "CS_END_ITEM"}};

using Trace = Diagnosis;

TEST_F(Trace, LevelsAndNames) {
  const auto expect = [](const Codes& codes, bool prints) {
    for (const auto& row : codes) {
      const int32_t code = row.first;
      int32_t returned = ~code;
      EXPECT_EQ(prints ? "(" + row.second + ") file trace.cpp, line 321\n" : "",
                standard_output([&] { returned = com_errtrace(code, "src/trace.cpp", 321); }));
      EXPECT_EQ(code, returned);
    }
  };
  for (const int32_t level : {1, 2, 3, 1}) {  // first the level a process starts with
    expect(kTold, level >= 2);
    expect(kOrdinary, level == 3);
    const int32_t next = level % 3 + 1;
    ASSERT_EQ(next, com_errset(next));
  }
  for (const int32_t level : {0, 4, -1})
    EXPECT_EXIT(com_errset(level), KilledBySignal(SIGABRT), kAssertion);
}

TEST_F(Trace, FileNameAfterTheLastSlash) {
  const std::string rows[][2] = {
      {"/a/b.c/c.cpp", "c.cpp"}, {"c.cpp", "c.cpp"}, {"a\\c", "a\\c"}, {"a/", ""}, {"", ""},
      {"a/%s%n", "%s%n"}};
  com_errset(3);
  for (const auto& row : rows)
    EXPECT_EQ("(CS_FAIL) file " + row[1] + ", line 0\n",
              standard_output([&] { com_errtrace(0, row[0].c_str(), 0); }));
}

// ---- Debug output ------------------------------------------------------------------------------

using DebugOutput = Diagnosis;

TEST_F(DebugOutput, FileIsTruncatedAndEveryCallFlushed) {
  int unused = 0;
  ASSERT_EQ(1, comn_debug_setfile(&unused, "a", -1));
  EXPECT_EQ(1, comn_debug_print("%s %5.1f %03d", "one", 2.25, 3));
  EXPECT_EQ("one   2.2 003", contents("a"));
  ASSERT_EQ(1, comn_debug_setfile(nullptr, "b", 1));
  const std::string text(20'000, 'y');
  EXPECT_EQ(1, comn_debug_print("%s", text.c_str()));
  EXPECT_EQ("one   2.2 003", contents("a"));
  EXPECT_EQ(text, contents("b"));
  ASSERT_EQ(1, comn_debug_setfile(nullptr, "b", 1));
  EXPECT_EQ(0, comn_dbg_stack(1, 2, 3, 4));
  EXPECT_EQ("", contents("b"));
}

TEST_F(DebugOutput, StandardOutputWhenThereIsNoFile) {
  const struct {
    const char* path;
    int32_t flag;
    int32_t result;
  } rows[] = {{"missing/file", 1, 0}, {"a", 0, 1}, {nullptr, 0, 1}, {nullptr, 1, 1}};
  for (const auto& [path, flag, result] : rows) {
    ASSERT_EQ(1, comn_debug_setfile(nullptr, "a", 1));
    comn_debug_print("kept");
    EXPECT_EQ(result, comn_debug_setfile(nullptr, path, flag));
    EXPECT_EQ("elsewhere", standard_output([] { comn_debug_print("elsewhere"); }));
    EXPECT_EQ("kept", contents("a"));
  }
}

// What the debug formatter makes of a format and its arguments.
std::string formatted(const char* format, ...) {
  EXPECT_EQ(1, comn_debug_setfile(nullptr, "formatted", 1));
  va_list arguments;
  va_start(arguments, format);
  EXPECT_EQ(1, comn_debug_vprint(format, arguments));
  va_end(arguments);
  std::string text = contents("formatted");
  comn_debug_setfile(nullptr, nullptr, 0);
  return text;
}

TEST_F(DebugOutput, Formatter) {
  const std::string illegal = "illegal format specification\n", flags(300, '-'), zeros(2'000, '0');
  const char* const no_text = nullptr;
  const struct {
    std::string actual;
    std::string expected;
  } rows[] = {
      {formatted(""), ""},
      {formatted("plain\n"), "plain\n"},
      {formatted("100%%, %%d"), "100%, %d"},
      {formatted("%d %d %d", 0, INT_MIN, INT_MAX), "0 -2147483648 2147483647"},
      {formatted("%5d|%-5d|%05d|%+d|% d", 42, 42, 42, 42, 42), "   42|42   |00042|+42| 42"},
      {formatted("%x %X %08x %#x", 0xabc, 0xABC, 0xabc, 0xabc), "abc ABC 00000abc 0xabc"},
      {formatted("%x %d", -1, -1), "ffffffff -1"},
      {formatted("%c%c|%3c|%-3c|", 'a', '%', 'b', 'c'), "a%|  b|c  |"},
      {formatted("%s|%6s|%-6s|", "text", "text", "text"), "text|  text|text  |"},
      {formatted("%s", zeros.c_str()), zeros},
      {formatted("%s, %d", no_text, 5), "(null), 5"},
      {formatted("%8s", no_text), "  (null)"},
      {formatted("%ld %lx", LONG_MIN, LONG_MAX), "-9223372036854775808 7fffffffffffffff"},
      {formatted("%12ld|%-12lx|%012ld", 5'000'000'000, 5'000'000'000, 5'000'000'000),
       "  5000000000|12a05f200   |005000000000"},
      {formatted("%l", 5'000'000'000), "5000000000"},
      {formatted("%lz%d", 5'000'000'000, 6), "5000000000z6"},
      {formatted(("%" + flags + "5d|%s").c_str(), 7, "next"), "7    |next"},
      {formatted(("%" + zeros + "4d").c_str(), 7), "0007"},
      {formatted("%q!", 1), illegal},
      {formatted("value %d, %Z", 1, 2), "value 1, " + illegal},
      {formatted("%"), illegal},
      {formatted("%-08"), illegal},
      {formatted(("%" + zeros).c_str()), illegal},
  };
  for (const auto& [actual, expected] : rows) EXPECT_EQ(expected, actual);
}

// ---- Small helpers -----------------------------------------------------------------------------

TEST(Text, HexadecimalByte) {
  const std::pair<int32_t, const char*> rows[] = {{0, "00.."},    {9, "09.."},   {0x0a, "0a.."},
                                                  {0x5f, "5f.."}, {255, "ff.."}, {-128, "80.."}};
  for (const auto& [byte, text] : rows) {
    char out[] = "....";
    com_prhex(byte, out);
    EXPECT_STREQ(text, out);
  }
}

TEST(Text, CopyAndAppendThatMustFit) {
  char text[6];
  EXPECT_EQ(0, com_copstr(text, "", 1));
  EXPECT_STREQ("", text);
  EXPECT_EQ(2, com_copstr(text, "ab", sizeof text));
  EXPECT_STREQ("ab", text);
  EXPECT_EQ(5, com_catstr(text, "cde", sizeof text));
  EXPECT_STREQ("abcde", text);
  EXPECT_EQ(5, com_catstr(text, "", sizeof text));
  EXPECT_EQ(5, com_copstr(text, "vwxyz", sizeof text));
  EXPECT_STREQ("vwxyz", text);

  for (const int32_t size : {-1, 0, 5}) {
    EXPECT_EXIT(com_copstr(text, "12345", size), KilledBySignal(SIGABRT), kAssertion) << size;
    EXPECT_EXIT((text[3] = 0, com_catstr(text, "45", size)), KilledBySignal(SIGABRT), kAssertion)
        << size;
  }
  EXPECT_EXIT(com_copstr(text, "", 0), KilledBySignal(SIGABRT), kAssertion);
}

}  // namespace
