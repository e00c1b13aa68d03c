// The spell of spinning before a thread goes to sleep.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

#include "os/word.hpp"

namespace tvx::os {

// Where another processor lets the thread go on within a microsecond or two, spinning saves both
// threads the way through the system. Where it does not, most of all when the other thread waits
// for this processor, spinning is in the way: so after each spell in vain twice as many waits as
// before do without one.
class Spin {
public:
  // Returns whether `is_over` came true.
  template <class IsOver>
  bool until(IsOver is_over) {
    constexpr int kLooks = 1'000;
    if (const uint32_t left = waits_without_.load(std::memory_order_relaxed); left > 0) {
      waits_without_.store(left - 1, std::memory_order_relaxed);
      return is_over();
    }
    for (int look = 0; look < kLooks; ++look) {
      if (is_over()) {
        in_vain_.store(0, std::memory_order_relaxed);
        return true;
      }
      relax();
    }
    const uint32_t in_vain = in_vain_.load(std::memory_order_relaxed);
    waits_without_.store(1U << in_vain, std::memory_order_relaxed);
    in_vain_.store(std::min(in_vain + 1, kMostInVain), std::memory_order_relaxed);
    return false;
  }

private:
  static constexpr uint32_t kMostInVain = 10;  // 1,024 waits without

  // Hints, which threads may overwrite for each other.
  std::atomic<uint32_t> waits_without_{16};
  std::atomic<uint32_t> in_vain_{0};
};

}  // namespace tvx::os
