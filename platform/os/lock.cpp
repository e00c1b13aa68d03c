#include "os/lock.hpp"

namespace tvx::os {

void Lock::lock_contended() {
  // A short section is over sooner than a thread is asleep. Looking at the word ever more seldom
  // leaves it to the processor that works under the lock: T. E. Anderson, "The Performance of Spin
  // Lock Alternatives for Shared-Memory Multiprocessors" (1990).
  constexpr int kLongestPause = 64;
  for (int pause = 4; pause <= kLongestPause; pause *= 2) {
    for (int i = 0; i < pause; ++i) relax();
    if (word_.load(std::memory_order_relaxed) == kFree && try_lock()) return;
  }
  while (word_.exchange(kContended, std::memory_order_acquire) != kFree) {
    sleep_while(word_, kContended, kNever);
  }
}

}  // namespace tvx::os
