#include "files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "failure.hpp"

namespace tvx::tool {

namespace {

constexpr std::size_t kBufferSize = std::size_t{256} * 1024;
constexpr int kNone = -1;

[[noreturn]] void fail(const char* action, const std::string& name, const char* advice) {
  throw Failure(std::string("cannot ") + action + " " + name + ": " + std::strerror(errno) +
                advice);
}

int open_for_reading(const std::string& path) {
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (number < 0) {
    fail("read", path, "; give the path of an existing file, or - for the standard input");
  }
  return number;
}

int open_for_writing(const std::string& path) {
  const int number = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (number < 0) fail("write", path, "; give a path in a directory that exists and is writable");
  return number;
}

std::optional<FileIdentity> identity_of(const Descriptor& descriptor) {
  struct stat status {};
  if (::fstat(descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}

Descriptor::~Descriptor() {
  if (number_ > STDERR_FILENO) ::close(number_);
}

int Descriptor::release() {
  return std::exchange(number_, kNone);
}

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? "the standard input" : path),
      descriptor_(path == "-" ? STDIN_FILENO : open_for_reading(path)) {}

std::size_t InputFile::read(char* data, std::size_t capacity) {
  for (;;) {
    const ssize_t count = ::read(descriptor_.number(), data, capacity);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) fail("read", name_, "");
  }
}

std::optional<FileIdentity> InputFile::identity() const {
  return identity_of(descriptor_);
}

OutputFile::OutputFile(std::string name, int descriptor)
    : name_(std::move(name)), descriptor_(descriptor) {
  buffer_.reserve(kBufferSize);
}

OutputFile::OutputFile(const std::string& path) : OutputFile(path, open_for_writing(path)) {}

OutputFile OutputFile::standard_output() {
  return {"the standard output", STDOUT_FILENO};
}

void OutputFile::truncate() {
  if (identity().has_value() && ::ftruncate(descriptor_.number(), 0) != 0) {
    fail("write", name_, "");
  }
}

void OutputFile::write(std::string_view text) {
  if (buffer_.size() + text.size() > kBufferSize) {
    flush();
    if (text.size() >= kBufferSize) {
      write_through(text);
      return;
    }
  }
  buffer_ += text;
}

void OutputFile::flush() {
  write_through(buffer_);
  buffer_.clear();
}

void OutputFile::write_through(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor_.number(), text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      fail("write", name_, "");
    }
  }
}

void OutputFile::close() {
  flush();
  // Some file systems report a full disk only here.
  if (::close(descriptor_.release()) != 0) fail("write", name_, "");
}

std::optional<FileIdentity> OutputFile::identity() const {
  return identity_of(descriptor_);
}

bool standard_input_is_terminal() {
  return ::isatty(STDIN_FILENO) == 1;
}
bool standard_error_is_terminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace tvx::tool
