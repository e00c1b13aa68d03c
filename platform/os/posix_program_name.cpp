// The running program by Linux's /proc.
#include <unistd.h>

#include "os/program_name.hpp"

namespace tvx::os {

std::string_view program_path(std::span<char> buffer) {
  // What the kernel adds to the path of a file that is no longer there.
  constexpr std::string_view kRemoved = " (deleted)";
  const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
  // A path that fills the buffer may have been cut.
  if (length <= 0 || static_cast<size_t>(length) == buffer.size()) return {};
  std::string_view path(buffer.data(), static_cast<size_t>(length));
  buffer[path.size()] = '\0';
  if (path.ends_with(kRemoved) && access(buffer.data(), F_OK) != 0) {
    path.remove_suffix(kRemoved.size());
  }
  return path;
}

}  // namespace tvx::os
