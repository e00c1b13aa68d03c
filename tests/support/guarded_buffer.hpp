// A block of memory with an inaccessible page right behind or right before it: reading or writing
// one byte too far stops the test at the faulty instruction.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <system_error>

namespace tvx::test {

class GuardedBuffer {
public:
  // The side on which the block touches the inaccessible page. On the other one there is one too,
  // behind up to a page of accessible bytes.
  enum class Guard { kBehind, kBefore };

  explicit GuardedBuffer(size_t size, uint8_t fill = 0xA5, Guard guard = Guard::kBehind)
      : size_(size) {
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t accessible = (size + page - 1) / page * page;
    mapped_bytes_ = accessible + 2 * page;
    mapping_ = static_cast<uint8_t*>(
        mmap(nullptr, mapped_bytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (mapping_ == MAP_FAILED) throw std::system_error(errno, std::generic_category(), "mmap");
    uint8_t* const first = mapping_ + page;
    if (accessible != 0 && mprotect(first, accessible, PROT_READ | PROT_WRITE) != 0)
      throw std::system_error(errno, std::generic_category(), "mprotect");
    data_ = guard == Guard::kBehind ? first + accessible - size : first;
    std::memset(data_, fill, size);
  }

  ~GuardedBuffer() { munmap(mapping_, mapped_bytes_); }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  uint8_t* data() { return data_; }
  const uint8_t* data() const { return data_; }
  size_t size() const { return size_; }

private:
  size_t size_;
  size_t mapped_bytes_;
  uint8_t* mapping_;
  uint8_t* data_;
};

}  // namespace tvx::test
