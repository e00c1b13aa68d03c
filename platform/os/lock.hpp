// A lock of one word, for short sections: not re-entrant, and it knows no owner.
//
// The word says whether anybody may be asleep, so that taking and releasing a lock that nobody else
// wants are one instruction each and no system call: the second mutex of Ulrich Drepper, "Futexes
// Are Tricky" (2011), section 5, with a spell of spinning before the sleep.
#pragma once

#include <atomic>
#include <cstdint>

#include "os/word.hpp"

namespace tvx::os {

class Lock {
public:
  void lock() {
    if (!try_lock()) [[unlikely]]
      lock_contended();
  }

  bool try_lock() {
    uint32_t word = kFree;
    return word_.compare_exchange_strong(word, kTaken, std::memory_order_acquire,
                                         std::memory_order_relaxed);
  }

  void unlock() {
    if (word_.exchange(kFree, std::memory_order_release) == kContended) [[unlikely]]
      wake_one(word_);
  }

private:
  static constexpr uint32_t kFree = 0;
  static constexpr uint32_t kTaken = 1;
  static constexpr uint32_t kContended = 2;  // taken, and somebody may sleep on the word

  void lock_contended();

  std::atomic<uint32_t> word_{kFree};
};

}  // namespace tvx::os
