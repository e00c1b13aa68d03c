// A block of memory with an inaccessible page right behind or right before it: reading or writing
// one byte too far stops the test at the faulty instruction.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
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
    if (mapping_ == MAP_FAILED ||
        mprotect(mapping_ + page, accessible, PROT_READ | PROT_WRITE) != 0)
      throw std::system_error(errno, std::generic_category(), "GuardedBuffer");
    data_ = mapping_ + page + (guard == Guard::kBehind ? accessible - size : 0);
    std::memset(data_, fill, size);
  }
  ~GuardedBuffer() { munmap(mapping_, mapped_bytes_); }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  uint8_t* data() { return data_; }
  const uint8_t* data() const { return data_; }
  size_t size() const { return size_; }

private:
  size_t size_, mapped_bytes_;
  uint8_t *mapping_, *data_;
};

// Characters in front of an inaccessible page: a text, or as much of it as fits a given size (0 for
// one below), with zeros behind it.
class GuardedText {
public:
  explicit GuardedText(std::string_view text)
      : GuardedText(text, static_cast<int32_t>(text.size())) {}
  GuardedText(std::string_view text, int32_t size)
      : block_(static_cast<size_t>(std::max(size, 0)), 0) {
    std::copy_n(text.begin(), std::min(text.size(), block_.size()), begin());
  }
  char* begin() { return reinterpret_cast<char*>(block_.data()); }
  char* end() { return begin() + size(); }
  size_t size() const { return block_.size(); }
  // Up to a terminator or else the end.
  std::string string() { return {begin(), strnlen(begin(), size())}; }

private:
  GuardedBuffer block_;
};

}  // namespace tvx::test
