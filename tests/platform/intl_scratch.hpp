// A directory for the files of one test.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace tvx::test {

class ScratchDirectory {
public:
  ScratchDirectory() : path_(testing::TempDir() + "tvxintl_XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::filesystem::filesystem_error("mkdtemp", {});
  }
  ~ScratchDirectory() { std::filesystem::remove_all(path_); }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  const std::string& path() const { return path_; }

  // Writes a file and returns its path.
  std::string write(const std::string& name, std::string_view content) const {
    const std::string file = path_ + "/" + name;
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }

private:
  std::string path_;
};

}  // namespace tvx::test
