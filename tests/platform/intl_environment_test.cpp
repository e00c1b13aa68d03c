// Environment variables, the home directory, and the small file layer.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pwd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "platform/intl_scratch.hpp"
#include "tvxcomn/support.h"

namespace fs = std::filesystem;

// The system's user database as these tests want it: one user at most, and none while the directory
// is empty.
static std::string user_directory;

extern "C" __attribute__((visibility("default"))) int getpwnam_r(const char* name, passwd* entry,
                                                                 char* buffer, size_t size,
                                                                 passwd** result) {
  *result = nullptr;
  if (user_directory.empty() || std::strcmp(name, "tarvex") != 0) return 0;
  if (user_directory.size() >= size) return ERANGE;
  std::memcpy(buffer, user_directory.c_str(), user_directory.size() + 1);
  *entry = {};
  entry->pw_dir = buffer;
  *result = entry;
  return 0;
}

namespace {

using Home = int32_t(char*, int32_t);

// The home directory, or the error's text.
std::string home(Home* function = intl_home) {
  char buffer[4096];
  const int32_t length = function(buffer, sizeof buffer);
  if (length < 0) return intl_errstr(length);
  EXPECT_EQ(static_cast<size_t>(length), std::strlen(buffer));
  return buffer;
}

constexpr char kNoHome[] = "no home directory; set the environment variable TARVEX";

class HomeTest : public testing::Test {
protected:
  void TearDown() override {
    unsetenv("TARVEX");
    user_directory.clear();
  }
};

TEST_F(HomeTest, TheVariableComesFirstThenTheUser) {
  struct Row {
    const char *variable, *user, *expected;
  };
  const Row rows[] = {
      {"/opt/tarvex", "/home/tarvex", "/opt/tarvex"},
      {"/opt/tarvex///", "", "/opt/tarvex"},
      {"/", "/home/tarvex", "/"},
      {"///", "", "/"},
      {"relative", "", "relative"},
      {"", "/home/tarvex/", "/home/tarvex"},
      {nullptr, "/home/tarvex", "/home/tarvex"},
  };
  for (const Row& row : rows) {
    row.variable != nullptr ? setenv("TARVEX", row.variable, 1) : unsetenv("TARVEX");
    user_directory = row.user;
    EXPECT_EQ(home(), row.expected);
  }
  unsetenv("TARVEX");
  user_directory.clear();
  const std::string without_user = home();
  user_directory.assign(20000, 'd');
  EXPECT_EQ(home(), without_user) << "an entry that cannot be read is none";
}

TEST_F(HomeTest, TheDataDirectoryBesideTheLibraryComesLast) {
  const tvx::test::ScratchDirectory scratch;
  Dl_info library;
  ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "intl_home"), &library), 0);
  // The library's own directory is lib/ or lib/<machine>/, so its data is one or two levels up.
  const std::string data = scratch.path() + "/share/tvxcomn64";
  const std::string copy = scratch.path() + "/lib/machine/copy.so";
  fs::create_directories(scratch.path() + "/lib/machine");
  fs::create_directories(scratch.path() + "/share");
  fs::create_directory_symlink("../share", scratch.path() + "/lib/share");
  fs::copy_file(fs::canonical(library.dli_fname), copy);
  void* handle = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr) << dlerror();
  Home* home_of_copy = reinterpret_cast<Home*>(dlsym(handle, "intl_home"));

  EXPECT_EQ(home(home_of_copy), kNoHome);
  scratch.write("share/tvxcomn64", "a file of that name is no home");
  EXPECT_EQ(home(home_of_copy), kNoHome);
  fs::remove(data);
  fs::create_directory(data);
  EXPECT_EQ(home(home_of_copy), fs::canonical(data));
  user_directory = "/home/tarvex";
  EXPECT_EQ(home(home_of_copy), "/home/tarvex");
  dlclose(handle);
}

TEST(Environment, ValuesAreWrittenWholeOrNotAtAll) {
  setenv("TVX_TEST", "value", 1);
  setenv("TVX_EMPTY", "", 1);
  setenv("TARVEX", "value", 1);
  for (int32_t size = 1; size < 8; ++size) {
    char buffer[9] = "~~~~~~~~";
    char home_buffer[9] = "~~~~~~~~";
    const std::string expected = size > 5 ? "value" : "";
    const int32_t length = intlgetenv(buffer, size, "TVX_TEST");
    EXPECT_EQ(length, size > 5 ? 5 : -3);
    EXPECT_EQ(intl_home(home_buffer, size), length);
    EXPECT_EQ(buffer, expected);
    EXPECT_EQ(home_buffer, expected);
    EXPECT_EQ(buffer[size], '~');
    EXPECT_EQ(home_buffer[size], '~');
  }
  unsetenv("TARVEX");
  for (const char* name : {"TVX_EMPTY", "TVX_UNSET", "", "TVX_TEST=value"}) {
    char buffer[4] = "old";
    EXPECT_EQ(intlgetenv(buffer, sizeof buffer, name), 0) << name;
    EXPECT_STREQ(buffer, "");
  }
  char buffer[4];
  EXPECT_LT(intlgetenv(nullptr, 4, "TVX_TEST"), 0);
  EXPECT_LT(intlgetenv(buffer, 0, "TVX_TEST"), 0);
  EXPECT_LT(intlgetenv(buffer, 4, nullptr), 0);
  EXPECT_LT(intl_home(nullptr, 4), 0);
  EXPECT_LT(intl_home(buffer, -1), 0);
}

TEST(Files, AreReadInWholeItems) {
  const tvx::test::ScratchDirectory scratch;
  const std::string path = scratch.write("file", std::string("ab\0defg", 7));
  void* file = intl_iocsfopen(path.c_str(), INTL_IOCSF_READ);
  ASSERT_NE(file, nullptr);
  char buffer[8] = {};
  EXPECT_EQ(intl_iocsfread(buffer, 1, 1, file), 1);
  EXPECT_EQ(buffer[0], 'a');
  EXPECT_EQ(intl_iocsfread(buffer, 2, 2, file), 2);
  EXPECT_EQ(std::string(buffer, 4), std::string("b\0de", 4));
  EXPECT_EQ(intl_iocsfread(buffer, 1, 0, file), 0);
  EXPECT_EQ(intl_iocsfread(buffer, -1, 1, file), 0);
  EXPECT_EQ(intl_iocsfread(nullptr, 1, 1, file), 0);
  EXPECT_EQ(intl_iocsfread(buffer, 4, 1, file), 0);
  EXPECT_EQ(intl_iocsfread(buffer, 1, 1, file), 0);
  EXPECT_EQ(intl_iocsfclose(file), 0);

  EXPECT_EQ(intl_iocsfopen(path.c_str(), 1), nullptr);
  EXPECT_EQ(intl_iocsfopen((path + "x").c_str(), INTL_IOCSF_READ), nullptr);
  EXPECT_EQ(intl_iocsfopen(scratch.path().c_str(), INTL_IOCSF_READ), nullptr);
  EXPECT_EQ(intl_iocsfopen(nullptr, INTL_IOCSF_READ), nullptr);
  EXPECT_EQ(intl_iocsfread(buffer, 1, 1, nullptr), 0);
  EXPECT_LT(intl_iocsfclose(nullptr), 0);
}

}  // namespace
