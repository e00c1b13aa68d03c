// Loads a localisation file into memory whole.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/heap_block.hpp"

namespace tvx::intl {

struct LoadedFile {
  base::HeapBlock<char[]> text;  // one byte longer than the text, for a NUL
  size_t size = 0;
};

// Files above this size are refused. The largest file of an installation, a two-byte character
// set's, stays well below a megabyte.
inline constexpr int64_t kLargestFile = int64_t{256} << 20;

// Reads a regular file. Returns 0, or the number of kNotFound, kNotPermitted, kNotOpened,
// kNotRegular, kTooLarge, kReadFailed or kNoMemory. A directory, FIFO or device is refused at once:
// it is neither waited for nor read.
int32_t load_file(const char* path, LoadedFile& file);

}  // namespace tvx::intl
