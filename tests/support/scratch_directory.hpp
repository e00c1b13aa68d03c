// A directory for the files of one test, removed with them.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tvx::test {

class ScratchDirectory {
public:
  ScratchDirectory() : path_(std::filesystem::temp_directory_path() / "tvxcomn-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no scratch directory");
  }
  ~ScratchDirectory() { std::filesystem::remove_all(path_); }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string path(const std::string& name) const { return path_ + "/" + name; }

  // Writes a file and returns its path.
  std::string write(const std::string& name, std::string_view content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

  [[nodiscard]] std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

private:
  std::string path_;
};

}  // namespace tvx::test
