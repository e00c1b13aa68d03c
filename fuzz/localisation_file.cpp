// Localisation files: every section, entry and value of any bytes is read to the end or to an
// error.
#include <sys/mman.h>
#include <unistd.h>

#include "target.hpp"

namespace {

using namespace tvx::fuzz;

// A file that is in memory only, and its path.
class MemoryFile {
public:
  explicit MemoryFile(std::string_view bytes) : file_(memfd_create("fuzz", 0)) {
    expect(file_ >= 0);
    expect(write(file_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    path_ = "/proc/self/fd/" + std::to_string(file_);
  }
  ~MemoryFile() { close(file_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  [[nodiscard]] const char* path() const { return path_.c_str(); }

private:
  int file_;
  std::string path_;
};

// Reads all of the current section of a file of a size; false after an error.
bool read_section(intl_reader& reader, size_t size) {
  int32_t status = 0;
  while (const char* const key = intl_nextentry(&reader, &status)) {
    expect(status >= 0 && std::strlen(key) > 0);
    do {
      const char* const value = intl_nextvalue(&reader, &status);
      if (value == nullptr) break;
      expect(std::strlen(value) <= size);  // it ends
    } while (status == 1);
    if (status < 0) return false;
  }
  return status >= 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const MemoryFile file(Input(data, size).rest());
  intl_reader reader;
  const int32_t opened = intl_open(file.path(), &reader);
  if (opened < 0) {
    expect(std::strlen(intl_errstr(opened)) > 0);
    return 0;
  }
  int32_t status = 0;
  for (bool sound = true; sound && intl_nextsection(&reader, &status) != nullptr;)
    sound = read_section(reader, size);
  expect(intl_close(&reader) >= 0);

  expect(intl_open(file.path(), &reader) >= 0);
  if (intl_nextsection(&reader, &status) != nullptr) {
    intl_datetime_record record{};
    if (intl_datetime(&reader, &record) >= 0)
      expect(record.first_day >= 1 && record.first_day <= 7);
  }
  expect(intl_close(&reader) >= 0);
  return 0;
}
