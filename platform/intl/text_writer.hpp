// Builds a text in a buffer of fixed size.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

namespace tvx::intl {

// Writes into a buffer of at least one byte. What the buffer holds is NUL-terminated at every
// moment and is cut where it no longer fits.
class TextWriter {
public:
  explicit TextWriter(std::span<char> buffer) : buffer_(buffer) { buffer_[0] = '\0'; }

  void put(std::string_view text) {
    const size_t room = buffer_.size() - 1 - length_;
    const size_t count = std::min(text.size(), room);
    if (count > 0) std::memcpy(buffer_.data() + length_, text.data(), count);
    length_ += count;
    buffer_[length_] = '\0';
    cut_ = cut_ || count < text.size();
  }

  void put_number(int64_t number) {
    char digits[20];
    char* first = std::end(digits);
    // Negative numbers divide towards zero, so this also holds for the least one, which cannot be
    // negated.
    int64_t rest = number;
    do {
      const int64_t digit = rest % 10;
      *--first = static_cast<char>('0' + (digit < 0 ? -digit : digit));
      rest /= 10;
    } while (rest != 0);
    if (number < 0) *--first = '-';
    put({first, static_cast<size_t>(std::end(digits) - first)});
  }

  // The bytes written, without the NUL.
  size_t length() const { return length_; }
  // Whether something did not fit.
  bool cut() const { return cut_; }

private:
  std::span<char> buffer_;
  size_t length_ = 0;
  bool cut_ = false;
};

}  // namespace tvx::intl
