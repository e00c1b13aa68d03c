// What the library takes from its surroundings: environment variables and the installation's home
// directory.
#include <dlfcn.h>
#include <errno.h>
#include <limits.h>
#include <pwd.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

#include "errors.hpp"
#include "text_writer.hpp"
#include "tvxcomn/support.h"

namespace tvx::intl {
namespace {

constexpr char kHomeVariable[] = "TARVEX";
constexpr char kHomeUser[] = "tarvex";

// Empty when the variable is unset. No name has an equals sign, though a search would find one.
std::string_view variable(const char* name) {
  if (std::string_view(name).find('=') != std::string_view::npos) return {};
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

// Writes a whole text and returns its length, or nothing and an error number when it does not fit.
int32_t deliver(std::string_view text, std::span<char> buffer) {
  TextWriter writer(buffer);
  writer.put(text);
  if (!writer.cut()) return static_cast<int32_t>(writer.length());
  buffer[0] = '\0';
  return error_number(ErrorKind::kBufferTooSmall);
}

// Finds the home directory of the stack's user, in `scratch`, and leaves it empty when there is no
// such user. A user entry that does not fit the scratch counts as none: it cannot be an honest one.
// Returns 0, or an error number when the users cannot be looked up: another installation's
// directory must not be taken for theirs then.
int32_t find_home_of_user(std::span<char> scratch, std::string_view& home) {
  passwd entry;
  passwd* found = nullptr;
  int error;
  do {
    error = getpwnam_r(kHomeUser, &entry, scratch.data(), scratch.size(), &found);
  } while (error == EINTR);
  switch (error) {
    case ENOMEM:
      return error_number(ErrorKind::kNoMemory);
    case EIO:
    case EMFILE:
    case ENFILE:
      return error_number(ErrorKind::kNoUsers);
    default:  // systems have many numbers for there being none
      if (error == 0 && found != nullptr && found->pw_dir != nullptr) home = found->pw_dir;
      return 0;
  }
}

// The data directory installed beside the library, in `scratch`; empty when it is not there. A
// build that is used where it was made, and an installation that was moved or is reached through a
// link, find their data so.
std::string_view data_beside_library(std::span<char, PATH_MAX> scratch) {
  static const char kInThisLibrary = 0;
  Dl_info library;
  if (dladdr(&kInThisLibrary, &library) == 0 || library.dli_fname == nullptr) return {};
  if (realpath(library.dli_fname, scratch.data()) == nullptr) return {};
  const std::string_view file = scratch.data();
  char path[PATH_MAX];
  TextWriter writer(path);
  writer.put(file.substr(0, file.rfind('/') + 1));
  writer.put(TVX_DATA_BESIDE_LIBRARY);
  struct stat status;
  if (writer.cut() || realpath(path, scratch.data()) == nullptr ||
      stat(scratch.data(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    return {};
  }
  return scratch.data();
}

// The root directory keeps its only character.
std::string_view without_final_slashes(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

}  // namespace
}  // namespace tvx::intl

using namespace tvx::intl;

int32_t intl_home(char* buffer, int32_t size) {
  if (buffer == nullptr || size < 1) return error_number(ErrorKind::kBadArgument);
  const std::span<char> destination(buffer, static_cast<size_t>(size));
  buffer[0] = '\0';
  char entry[16384];
  char directory[PATH_MAX];
  std::string_view home = variable(kHomeVariable);
  if (home.empty()) {
    const int32_t error = find_home_of_user(entry, home);
    if (error != 0) return error;
  }
  if (home.empty()) home = data_beside_library(directory);
  if (home.empty()) return error_number(ErrorKind::kNoHome);
  return deliver(without_final_slashes(home), destination);
}

int32_t intlgetenv(char* buffer, int32_t size, const char* name) {
  if (buffer == nullptr || size < 1) return error_number(ErrorKind::kBadArgument);
  buffer[0] = '\0';
  if (name == nullptr) return error_number(ErrorKind::kBadArgument);
  return deliver(variable(name), {buffer, static_cast<size_t>(size)});
}
