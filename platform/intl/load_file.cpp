#include "load_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "errors.hpp"

namespace tvx::intl {
namespace {

class Descriptor {
public:
  explicit Descriptor(const char* path)
      // Without O_NONBLOCK the opening of a FIFO would wait for a writer.
      : number_(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }

private:
  int number_;
};

ErrorKind open_error(int system_error) {
  switch (system_error) {
    case ENOENT:
    case ENOTDIR:
      return ErrorKind::kNotFound;
    case EACCES:
    case EPERM:
      return ErrorKind::kNotPermitted;
    default:
      return ErrorKind::kNotOpened;
  }
}

// Reads up to `size` bytes and returns how many there were, fewer only at the file's end. Negative
// on error.
ssize_t read_all(int descriptor, char* text, size_t size) {
  size_t length = 0;
  while (length < size) {
    const ssize_t count = read(descriptor, text + length, size - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return count;
    if (count == 0) break;
    length += static_cast<size_t>(count);
  }
  return static_cast<ssize_t>(length);
}

}  // namespace

int32_t load_file(const char* path, LoadedFile& file) {
  const Descriptor descriptor(path);
  if (descriptor.number() < 0) return error_number(open_error(errno));
  struct stat status;
  if (fstat(descriptor.number(), &status) != 0) return error_number(ErrorKind::kNotOpened);
  if (!S_ISREG(status.st_mode)) return error_number(ErrorKind::kNotRegular);
  if (status.st_size > kLargestFile) return error_number(ErrorKind::kTooLarge);

  // One byte more than the file should have shows its end and has room for the NUL. Files of the
  // system tell no size, and others grow.
  LoadedFile loaded;
  size_t room = static_cast<size_t>(status.st_size) + 1;
  for (;; room *= 2) {
    auto* const grown = static_cast<char*>(comn_realloc(loaded.text.get(), room));
    if (grown == nullptr) return error_number(ErrorKind::kNoMemory);
    static_cast<void>(loaded.text.release());
    loaded.text.reset(grown);
    const ssize_t count = read_all(descriptor.number(), grown + loaded.size, room - loaded.size);
    if (count < 0) return error_number(ErrorKind::kReadFailed);
    loaded.size += static_cast<size_t>(count);
    if (loaded.size > kLargestFile) return error_number(ErrorKind::kTooLarge);
    if (loaded.size < room) break;
  }
  file = std::move(loaded);
  return 0;
}

}  // namespace tvx::intl
