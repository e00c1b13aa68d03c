// Environment variables, the home directory, and the small file layer.
#include <dlfcn.h>
#include <errno.h>
#include <gtest/gtest.h>
#include <pwd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "support/guarded_buffer.hpp"
#include "support/scratch_directory.hpp"
#include "tvxcomn/support.h"

namespace fs = std::filesystem;

// The system's user database as these tests want it: one user at most, and none while the directory
// is empty; or an error.
static std::string user_directory;
static int user_error = 0;

extern "C" __attribute__((visibility("default"))) int getpwnam_r(const char* name, passwd* entry,
                                                                 char*, size_t, passwd** result) {
  *result = nullptr;
  if (user_error != 0) return user_error;
  if (user_directory.empty() || std::strcmp(name, "tarvex") != 0) return 0;
  *entry = {};
  entry->pw_dir = user_directory.data();
  *result = entry;
  return 0;
}

namespace {

using tvx::test::GuardedText;
using tvx::test::ScratchDirectory;
using Home = int32_t(char*, int32_t);

// The home directory in these surroundings, or the error's text.
std::string home(Home* function, const char* variable, const char* user) {
  unsetenv("TARVEX");  // whoever runs the test may use an installation
  if (variable != nullptr) setenv("TARVEX", variable, 1);
  user_directory = user;
  GuardedText buffer("", 4096);
  const int32_t length = function(buffer.begin(), 4096);
  unsetenv("TARVEX");
  EXPECT_EQ(buffer.string().size(), std::max(length, 0));
  return length < 0 ? intl_errstr(length) : buffer.string();
}

TEST(HomeDirectory, IsOfTheVariableOrTheUserOrBesideTheLibrary) {
  const ScratchDirectory scratch;
  // The library's own directory is lib/ or lib/<machine>/, so its data is one or two levels up.
  fs::create_directories(scratch.path() + "/lib/machine");
  fs::create_directories(scratch.path() + "/share");
  fs::create_directory_symlink("../share", scratch.path() + "/lib/share");
  const std::string data = fs::canonical(scratch.path()).string() + "/share/tvxcomn64";
  const std::string copy = scratch.path() + "/lib/machine/copy.so";
  Dl_info library;
  ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "intl_home"), &library), 0);
  fs::copy_file(fs::canonical(library.dli_fname), copy);
  // It is reached through a link that lies elsewhere.
  const std::string link = scratch.path() + "/link.so";
  fs::create_symlink(copy, link);
  void* handle = dlopen(link.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr) << dlerror();
  Home* home_of_copy = reinterpret_cast<Home*>(dlsym(handle, "intl_home"));

  constexpr char kNoUsers[] = "users cannot be looked up; set the environment variable TARVEX";
  constexpr char kNoHome[] = "no home directory; set the environment variable TARVEX";
  EXPECT_EQ(home(home_of_copy, nullptr, ""), kNoHome);
  scratch.write("share/tvxcomn64", "a file of that name is no home");
  EXPECT_EQ(home(home_of_copy, nullptr, ""), kNoHome);
  fs::remove(data);
  fs::create_directory(data);
  const std::array<const char*, 3> rows[] = {
      {"/opt/tarvex", "/home/tarvex", "/opt/tarvex"},
      {"/opt/tarvex///", "", "/opt/tarvex"},
      {"///", "/home/tarvex", "/"},
      {"", "/home/tarvex/", "/home/tarvex"},
      {nullptr, "/home/tarvex", "/home/tarvex"},
      {nullptr, "", data.c_str()},
  };
  for (const auto& [variable, user, expected] : rows)
    EXPECT_EQ(home(home_of_copy, variable, user), expected);
  const std::pair<int, std::string> failures[] = {
      {ENOMEM, "out of memory"},
      {EMFILE, kNoUsers},
      {ENFILE, kNoUsers},
      {EIO, kNoUsers},
      {ENOENT, data},
      {ERANGE, data},
      {EPERM, data},
  };
  for (const auto& [error, expected] : failures) {
    user_error = error;
    EXPECT_EQ(home(home_of_copy, nullptr, "/home/tarvex"), expected) << error;
  }
  user_error = 0;
  dlclose(handle);
}

TEST(Environment, ValuesAreWrittenWholeOrNotAtAll) {
  setenv("TVX_TEST", "value", 1);
  setenv("TVX_EQUALS", "a=b", 1);
  setenv("TVX_EMPTY", "", 1);
  setenv("TARVEX", "value", 1);
  for (int32_t size = -1; size < 8; ++size) {
    GuardedText value("old", size), directory("old", size);
    const int32_t length = intlgetenv(value.begin(), size, "TVX_TEST");
    EXPECT_EQ(length, size > 5 ? 5 : size > 0 ? -3 : -2);
    EXPECT_EQ(intl_home(directory.begin(), size), length);
    EXPECT_EQ(value.string(), size > 5 ? "value" : "");
    EXPECT_EQ(directory.string(), value.string());
  }
  unsetenv("TARVEX");
  for (const char* name : {"TVX_EMPTY", "TVX_UNSET", "", "TVX_TEST=value", "TVX_EQUALS=a"}) {
    GuardedText buffer("old", 4);
    EXPECT_EQ(intlgetenv(buffer.begin(), 4, name), 0) << name;
    EXPECT_EQ(buffer.string(), "");
  }
  EXPECT_LT(intlgetenv(std::string(4, '\0').data(), 4, nullptr), 0);
  EXPECT_LT(intlgetenv(nullptr, 4, "TVX_TEST"), 0);
  EXPECT_LT(intl_home(nullptr, 4), 0);
}

TEST(Files, AreReadInWholeItems) {
  const ScratchDirectory scratch;
  const std::string path = scratch.write("file", std::string("ab\0defg", 7));
  void* file = intl_iocsfopen(path.c_str(), INTL_IOCSF_READ);
  ASSERT_NE(file, nullptr);
  char buffer[8] = {};
  EXPECT_EQ(intl_iocsfread(buffer, 1, 0, file), 0);
  EXPECT_EQ(intl_iocsfread(nullptr, 1, 1, file), 0);
  EXPECT_EQ(intl_iocsfread(buffer, 1, 1, nullptr), 0);
  EXPECT_EQ(intl_iocsfread(buffer, 1, 1, file), 1);
  EXPECT_EQ(intl_iocsfread(buffer + 1, 2, 2, file), 2);
  EXPECT_EQ(std::string(buffer, 5), std::string("ab\0de", 5));
  EXPECT_EQ(intl_iocsfread(buffer, 4, 1, file), 0);
  EXPECT_EQ(intl_iocsfclose(file), 0);
  EXPECT_LT(intl_iocsfclose(nullptr), 0);
  EXPECT_EQ(intl_iocsfopen(path.c_str(), 1), nullptr);
  EXPECT_EQ(intl_iocsfopen(nullptr, INTL_IOCSF_READ), nullptr);
  for (const std::string& other : {path + "x", scratch.path()})
    EXPECT_EQ(intl_iocsfopen(other.c_str(), INTL_IOCSF_READ), nullptr) << other;
}

}  // namespace
