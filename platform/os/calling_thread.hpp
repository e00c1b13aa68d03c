// What the library keeps for each thread, and the short sections in which a thread is not ended
// from outside.
#pragma once

#include <atomic>
#include <cstdint>

namespace tvx::os {

struct ThreadControl;
struct Waiter;

// Only its own thread uses it, also from a signal handler: hence the atomics, all of them relaxed.
struct CallingThread {
  std::atomic<ThreadControl*> control{nullptr};  // null: not started by this library, or at its end
  std::atomic<Waiter*> waiting{nullptr};         // where the thread stands in a queue
  std::atomic<uint32_t> deferrals{0};
  std::atomic<bool> must_end{false};  // it was asked to, while it could not
  std::atomic<uint32_t> id{0};        // the system's number; 0: not asked for yet
  std::atomic<uint64_t> serial{0};    // a number that no other thread ever has; 0: the same
};

// In the static part of thread-local memory, so that it is reached without a call.
extern constinit thread_local CallingThread calling_thread
    __attribute__((tls_model("initial-exec")));

// Gives the calling thread its serial number.
uint64_t number_calling_thread();

inline uint64_t calling_thread_serial() {
  const uint64_t serial = calling_thread.serial.load(std::memory_order_relaxed);
  return serial != 0 ? serial : number_calling_thread();
}

// Ends the calling thread on the spot if one that asked for it still does. Nothing of the thread's
// runs any more then, neither destructors of its objects nor of its thread-local ones.
void end_if_asked();

// While one lives, a request to end the thread waits; the thread then ends itself. Sections under
// it are short, but for those that wait for another thread's end.
class EndDeferred {
public:
  EndDeferred() { set(count() + 1); }

  ~EndDeferred() {
    set(count() - 1);
    if (calling_thread.must_end.load(std::memory_order_relaxed) && count() == 0) [[unlikely]]
      end_if_asked();
  }

  EndDeferred(const EndDeferred&) = delete;
  EndDeferred& operator=(const EndDeferred&) = delete;

private:
  static uint32_t count() { return calling_thread.deferrals.load(std::memory_order_relaxed); }

  static void set(uint32_t count) {
    std::atomic_signal_fence(std::memory_order_seq_cst);
    calling_thread.deferrals.store(count, std::memory_order_relaxed);
    std::atomic_signal_fence(std::memory_order_seq_cst);
  }
};

}  // namespace tvx::os
