// The small file layer, over the C library's streams.
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>

#include "errors.hpp"
#include "tvxcomn/support.h"

using tvx::intl::error_number;
using tvx::intl::ErrorKind;

void* intl_iocsfopen(const char* path, int32_t mode) {
  if (path == nullptr || mode != INTL_IOCSF_READ) return nullptr;
  std::FILE* file = std::fopen(path, "rbe");
  if (file == nullptr) return nullptr;
  // A directory can be opened, but would then look like an empty file.
  struct stat status;
  if (fstat(fileno(file), &status) == 0 && !S_ISDIR(status.st_mode)) return file;
  std::fclose(file);
  return nullptr;
}

int32_t intl_iocsfread(void* buffer, int32_t size, int32_t count, void* file) {
  if (buffer == nullptr || size < 1 || count < 1 || file == nullptr) return 0;
  return static_cast<int32_t>(std::fread(buffer, static_cast<size_t>(size),
                                         static_cast<size_t>(count),
                                         static_cast<std::FILE*>(file)));
}

int32_t intl_iocsfclose(void* file) {
  if (file == nullptr) return error_number(ErrorKind::kBadArgument);
  return std::fclose(static_cast<std::FILE*>(file)) == 0 ? 0
                                                         : error_number(ErrorKind::kCloseFailed);
}
