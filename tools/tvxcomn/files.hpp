// Files of the command: everything is read in blocks, everything written is checked, also at close.
// The only place of the command that talks to the operating system.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tvx::tool {

// Which regular file is open.
struct FileIdentity {
  dev_t device;
  ino_t inode;

  bool operator==(const FileIdentity&) const = default;
};

// Owns a descriptor, unless it is one of the three standard ones.
class Descriptor {
public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor();

  [[nodiscard]] int number() const { return number_; }
  // Gives the descriptor up and returns its number.
  [[nodiscard]] int release();

private:
  int number_;
};

class InputFile {
public:
  // Opens the file; "-" is the standard input. Throws Failure.
  explicit InputFile(const std::string& path);

  // Reads up to `capacity` bytes and returns their number; 0 at the end. Throws Failure.
  [[nodiscard]] std::size_t read(char* data, std::size_t capacity);

  // The path, or words for the standard input.
  [[nodiscard]] const std::string& name() const { return name_; }
  // None for terminals, pipes and devices.
  [[nodiscard]] std::optional<FileIdentity> identity() const;

private:
  std::string name_;
  Descriptor descriptor_;
};

class OutputFile {
public:
  // Opens or creates the file and leaves its contents as they are. Throws Failure.
  explicit OutputFile(const std::string& path);
  [[nodiscard]] static OutputFile standard_output();

  // Empties a regular file. Throws Failure.
  void truncate();
  // Writes through a buffer. Throws Failure.
  void write(std::string_view text);
  // Writes what the buffer holds. Throws Failure.
  void flush();
  // Flushes and closes. Without it, what the buffer holds is lost: a command that failed writes no
  // more.
  void close();

  // None for terminals, pipes and devices.
  [[nodiscard]] std::optional<FileIdentity> identity() const;

private:
  OutputFile(std::string name, int descriptor);
  void write_through(std::string_view text);

  std::string name_;
  Descriptor descriptor_;
  std::string buffer_;
};

// Whether someone watches.
[[nodiscard]] bool standard_input_is_terminal();
[[nodiscard]] bool standard_error_is_terminal();

}  // namespace tvx::tool
