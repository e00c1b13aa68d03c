// Paths under the home directory, the environment, and who the library and the program are.
#include "tvxcomn/paths.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <tuple>

#include "runtime/paths.hpp"
#include "support/failing_heap.hpp"
#include "support/guarded_buffer.hpp"
#include "tvxcomn/context.h"
#include "tvxcomn/support.h"

namespace rt = tvx::runtime;
using enum rt::LocalisedData;
using namespace std::string_literals;
using testing::KilledBySignal;
using tvx::test::FailingHeap;
using tvx::test::GuardedText;

// The surroundings as these tests want them: the home directory or its error, and the program's
// path where the kernel's own answer does not do.
static const std::string home = "/opt/home";
static int32_t home_error = 0;
static std::optional<std::string> program;

int32_t intl_home(char* buffer, int32_t size) {
  if (home_error != 0) return home_error;
  if (size <= static_cast<int32_t>(home.size())) return -3;
  return intl_strlcpy(buffer, home.c_str(), size);
}

extern "C" __attribute__((visibility("default"))) ssize_t readlink(const char* path, char* buffer,
                                                                   size_t size) noexcept {
  if (!program) return syscall(SYS_readlink, path, buffer, size);
  return program->empty() ? -1 : static_cast<ssize_t>(program->copy(buffer, size));
}

namespace {

comn_context context{};

// ---- Paths --------------------------------------------------------------------------------------

using Builder = int32_t(char* b, int32_t n);

// Asks with every size up to two more than the text needs.
void expect_whole_or_nothing(Builder* build, const std::string& text, size_t least_size,
                             int32_t result) {
  for (size_t size = least_size; size <= text.size() + 2; ++size) {
    GuardedText buffer(std::string(size, '#'));
    const bool fits = text.size() < size;
    EXPECT_EQ(build(buffer.begin(), static_cast<int32_t>(size)), fits ? result : 0) << text;
    EXPECT_EQ(buffer.string(), fits ? text : "") << size;
  }
}

const std::string nxc511(511, 'n'), nxc512(512, 'n');

// clang-format off
const struct { std::string nxc, path; Builder* build; } kPaths[] = {
    {"",  "",         [](char* b, int32_t n) { return com_path_anyfile(b, n, nullptr, nullptr, 1); }},
    {"v", "/a",       [](char* b, int32_t n) { return com_path_anyfile(b, n, "a", nullptr, 0); }},
    {"v", "/b",       [](char* b, int32_t n) { return com_path_anyfile(b, n, nullptr, "b", 2); }},
    {"v", "/v/a/b/c", [](char* b, int32_t n) { return com_path_anyfile(b, n, "a", "b/c", 1); }},
    {nxc511, "/" + nxc511 + "/a", [](char* b, int32_t n) { return com_path_anyfile(b, n, "a", "", 1); }},
    {"v", "/ini/sql.ini", [](char* b, int32_t n) { return com_path_ifile(&context, b, n); }},
    {"",  "/ini/x.cfg",   [](char* b, int32_t n) { return com_path_cfgfile(&context, "x.cfg", b, n, 1); }},
    {"v", "/ini/x.cfg",   [](char* b, int32_t n) { return com_path_cfgfile(&context, "x.cfg", b, n, 0); }},
    {nxc512, "/" + nxc512 + "/ini/x", [](char* b, int32_t n) { return com_path_cfgfile(&context, "x", b, n, 1); }},
    {"v", "/locales/message/french/x.loc",
     [](char* b, int32_t n) { return com_path_msgfile(&context, "frenchman", 6, "x.loc", -9, b, n); }},
    {"v", "/locales/message/french/x.loc",
     [](char* b, int32_t n) { return com_path_msgfile(&context, "french", -9, "x.locale", 5, b, n); }},
    {"v", "/charsets/utf8/x.srt", [](char* b, int32_t n) { return com_path_charfile(&context, "utf8", "x", "srt", b, n); }},
    {"v", "/charsets/utf8/x",     [](char* b, int32_t n) { return com_path_charfile(&context, "utf8", "x", nullptr, b, n); }},
    {"v", "/charsets/utf8",       [](char* b, int32_t n) { return com_path_charfile(&context, "utf8", nullptr, "x", b, n); }},
    {"v", "/locales/x",     [](char* b, int32_t n) { return rt::localisation_file_path({&context, b, n}, "", "", "x"); }},
    {"v", "/locales/a/b/x", [](char* b, int32_t n) { return rt::localisation_file_path({&context, b, n}, "a", "b", "x"); }},
    {"v", "/locales/money/x.mon",   [](char* b, int32_t n) { return rt::localised_data_path({&context, b, n}, kMoney, "x"); }},
    {"v", "/locales/numeric/x.num", [](char* b, int32_t n) { return rt::localised_data_path({&context, b, n}, kNumeric, "x"); }},
    {"v", "/locales/datetime/x.dt", [](char* b, int32_t n) { return rt::localised_data_path({&context, b, n}, kDatetime, "x"); }},
};
// clang-format on

// Whoever runs the test may use an installation.
[[maybe_unused]] const bool surroundings_are_bare =
    unsetenv("TARVEX_NXC") == 0 && unsetenv("TARVEX_QTL_CFG") == 0;

TEST(Paths, AreWrittenWholeOrNotAtAll) {
  for (const auto& row : kPaths) {
    setenv("TARVEX_NXC", row.nxc.c_str(), 1);
    expect_whole_or_nothing(row.build, home + row.path, home.size(), 1);
  }
  char cleared[] = "##############";
  com_path_anyfile(cleared, sizeof cleared, "a", nullptr, 0);
  EXPECT_EQ(std::string(cleared, sizeof cleared), "/opt/home/a\0\0\0\0"s);
}

TEST(Paths, FailWithTheirSurroundings) {
  char b[2000];
  setenv("TARVEX_NXC", (nxc512 + "n").c_str(), 1);
  EXPECT_EQ(com_path_cfgfile(&context, "x", b, sizeof b, 1), 0);
  setenv("TARVEX_NXC", nxc512.c_str(), 1);
  EXPECT_EQ(com_path_anyfile(b, sizeof b, "x", "y", 1), 0);
  EXPECT_EQ(com_path_msgfile(&context, "fr\0nch", 6, "x", -9, b, sizeof b), 0);
  EXPECT_STREQ(b, "");
  home_error = -4;
  for (const auto& row : kPaths) {
    context.last_support_error = 0;
    b[0] = '#';
    EXPECT_EQ(row.build(b, sizeof b), -301);
    EXPECT_EQ(context.last_support_error, &row < kPaths + 5 ? 0 : -4) << "no context has any file";
    EXPECT_STREQ(b, "");
  }
  EXPECT_EQ(com_path_ifile(nullptr, b, sizeof b), -301);
  EXPECT_EQ(com_get_qtlcfg(b, sizeof b), 0);
  home_error = 0;
}

// ---- Environment --------------------------------------------------------------------------------

TEST(Environment, ValuesAreCopies) {
  const std::string longest(255, 'v');
  setenv("TVX_LONGEST", longest.c_str(), 1);
  setenv("TVX_TOO_LONG", (longest + "v").c_str(), 1);
  setenv("TVX_EMPTY", "", 1);
  for (const char* name : {static_cast<const char*>(nullptr), "TVX_TOO_LONG", "TVX_EMPTY", "TVX_"})
    EXPECT_EQ(com_getenv(name), nullptr);
  char* const value = com_getenv("TVX_LONGEST");
  EXPECT_EQ(value, longest);
  comn_free(value);
  const FailingHeap heap(1);
  EXPECT_EQ(com_getenv("TVX_LONGEST"), nullptr);
}

TEST(Environment, TransportConfigurationIsTheOverrideElseTheVariablesElseTheHomes) {
  const std::string longest(511, 'p'), longer = longest + "p";
  const auto expect = [](const std::string& path, size_t least_size = 0) {
    expect_whole_or_nothing(com_get_qtlcfg, path, least_size, static_cast<int32_t>(path.size()));
  };
  setenv("TARVEX_NXC", "v", 1);
  expect(home + "/v/ini/libqtl64.cfg", home.size());
  setenv("TARVEX_QTL_CFG", "/of/the/variable", 1);
  EXPECT_EQ(com_set_qtlcfg(longer.c_str()), 0);
  expect("/of/the/variable");
  EXPECT_EQ(com_set_qtlcfg(longest.c_str()), 1);
  EXPECT_EQ(com_set_qtlcfg(longer.c_str()), 0);
  expect(longest);
  EXPECT_EQ(com_set_qtlcfg("short"), 1);
  expect("short");
  EXPECT_EQ(com_set_qtlcfg(nullptr), 1);
  expect("/of/the/variable");
  unsetenv("TARVEX_QTL_CFG");
}

// ---- Identity -----------------------------------------------------------------------------------

TEST(Identity, ProgramName) {
  const std::string deep = "/" + std::string(252, 'd');
  // clang-format off
  const struct { std::optional<std::string> path; int32_t letter_case, size; std::string name; int32_t result = 1; } rows[] = {
      {{}, 2, 100, "PATHS_TEST"}, {"/a.b/Prog.Main.x", 0, 10, "Prog.Main"},
      {"/a.b/Prog.Main", 1, 10, "prog"}, {"/a/Prog.Main.x", 2, 10, "PROG.MAIN"},
      {"/a/Prog.Main.x", 3, 9, "Prog.Mai"}, {"/a/Prog.Main.x", -1, 1, ""}, {"/.rc", 1, 9, ".rc"},
      {"/.rc.x", 1, 9, ".rc"}, {"/a/@[`{\xC3\x84.x", 1, 9, "@[`{\xC3\x84"},
      {"/a/@[`{\xC3\xA4.x", 2, 9, "@[`{\xC3\xA4"}, {"/gone/prog.x (deleted)", 0, 9, "prog"},
      {deep + "/prog.", 0, 9, "prog"}, {deep + "/prog.x", 0, 9, "", 0}, {"", 0, 9, "", 0},
      {"/a/", 0, 9, "", 0},
  };
  // clang-format on
  for (const auto& row : rows) {
    program = row.path;
    GuardedText buffer("############", row.size);
    EXPECT_EQ(comn__genappname_from_exec(nullptr, buffer.begin(), row.size, row.letter_case),
              row.result);
    EXPECT_EQ(buffer.string(), row.name);
  }
  program.reset();
}

TEST(Identity, VersionNumberAndText) {
  int32_t version = 0, flag = 0;
  com_version(&version, &flag);
  EXPECT_EQ(version, 15701);
  EXPECT_EQ(flag, 1);
  EXPECT_STREQ(com_get_driverversionsuffix(), "");

  Dl_info library;
  ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "com_version"), &library), 0);
  std::ifstream file(library.dli_fname, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  const size_t at = bytes.find("/15.7/");
  ASSERT_NE(at, bytes.npos);
  const std::string text = bytes.c_str() + bytes.rfind('\0', at) + 1;
  const std::regex seven_fields(
      "[^/]+/15\\.7/[^/]+/X64/[^/]+/DEBUG/[A-Z][a-z]{2} [A-Z][a-z]{2} [ 1-3]\\d [\\d:]{8} \\d{4}");
  EXPECT_TRUE(std::regex_match(text, seven_fields)) << text;
}

TEST(Identity, AreasCompareAsUnsignedBytes) {
  const std::tuple<std::string, std::string, int32_t> rows[] = {
      {"", "", 0},        {"", "a", -1},        {"ab", "ab", 0},        {"ab", "abc", -1},
      {"a\xFF", "aa", 1}, {"\x7F", "\x80", -1}, {"a\0b"s, "a\0c"s, -1}, {"b", "abc", 1}};
  for (const auto& [a, b, order] : rows) {
    GuardedText left(a), right(b);
    const auto a_length = static_cast<int32_t>(a.size()), b_length = static_cast<int32_t>(b.size());
    EXPECT_EQ(com_memhilo(left.begin(), a_length, right.begin(), b_length), order) << a;
    EXPECT_EQ(com_memhilo(right.begin(), b_length, left.begin(), a_length), -order) << a;
  }
}

// ---- Broken usage -------------------------------------------------------------------------------

TEST(PathsDeathTest, NullPointersSizesAndLengths) {
  static char b[100];
  static int32_t n = 0;
  // clang-format off
  void (*const null_pointers[])() = {
      [] { com_path_anyfile(nullptr, 100, "a", "b", 0); }, [] { com_path_ifile(&context, nullptr, 100); },
      [] { com_path_cfgfile(&context, nullptr, b, 100, 0); }, [] { com_path_cfgfile(&context, "x", nullptr, 100, 0); },
      [] { com_path_msgfile(&context, nullptr, 1, "x", 1, b, 100); },
      [] { com_path_msgfile(&context, "x", 1, nullptr, -9, b, 100); },
      [] { com_path_msgfile(&context, "x", 1, "x", 1, nullptr, 100); },
      [] { com_path_charfile(&context, nullptr, "x", "x", b, 100); },
      [] { com_path_charfile(&context, "x", "x", "x", nullptr, 100); }, [] { com_get_qtlcfg(nullptr, 100); },
      [] { comn__genappname_from_exec(&context, nullptr, 100, 0); }, [] { com_version(nullptr, &n); },
      [] { com_version(&n, nullptr); }, [] { com_memhilo(nullptr, 0, b, 1); }, [] { com_memhilo(b, 1, nullptr, 0); },
  };
  void (*const assertions[])() = {
      [] { com_path_anyfile(b, 0, "a", "b", 0); }, [] { com_path_ifile(&context, b, -1); },
      [] { com_path_cfgfile(&context, "x", b, 8, 0); }, [] { com_path_anyfile(b, 8, "x", "y", 0); },
      [] { com_path_msgfile(&context, "x", -1, "x", 1, b, 100); },
      [] { com_path_msgfile(&context, "x", 1, "x", -99999, b, 100); }, [] { com_get_qtlcfg(b, 8); },
      [] { comn__genappname_from_exec(&context, b, 0, 0); },
      [] { com_memhilo(b, -1, b, 1); }, [] { com_memhilo(b, 1, b, -9); },
  };
  // clang-format on
  for (const auto& call : null_pointers)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), "^\nInvalid NULL pointer , file '[^']+paths.cpp'");
  for (const auto& call : assertions)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), "^\n\rassertion failed, file '[^']+paths.cpp'");
}

}  // namespace
