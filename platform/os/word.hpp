// Sleeping on a word of memory: the only way in which a thread of this library waits. Locks, queues
// and threads are made of it, and another system needs no more than this to have them (Linux has
// the futex, Windows WaitOnAddress).
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace tvx::os {

// A moment on a clock that only goes forward.
using Deadline = std::chrono::steady_clock::time_point;

inline constexpr Deadline kNow = Deadline::min();    // do not wait at all
inline constexpr Deadline kNever = Deadline::max();  // wait without limit

[[nodiscard]] inline Deadline after(std::chrono::milliseconds time) {
  return std::chrono::steady_clock::now() + time;
}

// Sleeps while the word holds `value`, until somebody wakes the thread; it may also return early,
// so the caller looks at the word again. False when the deadline, not kNow, has passed.
bool sleep_while(const std::atomic<uint32_t>& word, uint32_t value, Deadline deadline);

// Wake one, every thread that sleeps on the word. The word is not read, and may be gone already.
void wake_one(const std::atomic<uint32_t>& word);
void wake_all(const std::atomic<uint32_t>& word);

// Tells the processor that the thread is looking at a word again and again.
inline void relax() {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

}  // namespace tvx::os
