// What the library asks of an operating system for threads, in the library's own terms: threads and
// their end, thread-local keys, priorities, stack pointers, re-entrant mutexes, events, semaphores
// and conditions.
//
// Mutexes and queues are made of words that a thread can sleep on (word.hpp) and the same
// everywhere. posix_word.cpp brings those words and posix_threads.cpp what concerns threads
// themselves; the sources for another system stand beside them.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "os/calling_thread.hpp"
#include "os/lock.hpp"
#include "os/wait_queue.hpp"
#include "os/word.hpp"

namespace tvx::os {

// ---- The calling thread ------------------------------------------------------------------------

// The system's number of the calling thread, never 0. After a fork the child's thread has its own.
uint32_t thread_id();

// Lets another thread run.
void yield();

// Ends the calling thread, with its thread-local destructors. A thread of this library leaves
// without destroying the objects on its stack; any other unwinds as the system does it.
[[noreturn]] void exit_thread(uint32_t status);

// ---- Keys: a pointer a thread ------------------------------------------------------------------

// Nothing when none is left.
std::optional<uint32_t> create_key();

// These return false, or null, when there is no such key.
bool drop_key(uint32_t key);
bool set_key_value(uint32_t key, void* value);
void* key_value(uint32_t key);

// ---- Locks and events --------------------------------------------------------------------------

// A re-entrant lock: its owner may take it again and releases it as many times. It fits the guards
// of the standard library.
class Mutex {
public:
  void lock() {
    if (lock_.try_lock()) [[likely]] {
      become_owner();
    } else {
      lock_taken();
    }
  }

  bool try_lock() {
    if (lock_.try_lock()) [[likely]] {
      become_owner();
      return true;
    }
    return enter_again();
  }

  // Does nothing, and returns false, when the calling thread does not own the mutex.
  bool unlock() {
    if (!is_owned()) [[unlikely]]
      return false;
    if (--depth_ == 0) {
      owner_.store(kNobody, std::memory_order_relaxed);
      lock_.unlock();
    }
    return true;
  }

  // Whether the calling thread owns the mutex.
  [[nodiscard]] bool is_owned() const {
    return owner_.load(std::memory_order_relaxed) == calling_thread_serial();
  }

private:
  static constexpr uint64_t kNobody = 0;

  void become_owner() {
    owner_.store(calling_thread_serial(), std::memory_order_relaxed);
    depth_ = 1;
  }

  bool enter_again() {
    if (!is_owned()) return false;
    ++depth_;
    return true;
  }

  void lock_taken() {
    if (enter_again()) return;
    lock_.lock();
    become_owner();
  }

  Lock lock_;
  uint32_t depth_ = 0;                    // of the owner
  std::atomic<uint64_t> owner_{kNobody};  // its serial number: only the owner finds its own here
};

// Not signalled at the start.
class Event {
public:
  enum class Reset {
    kByWaiter,  // a signal lets one thread through, and is kept while there is none
    kByHand     // a signal lets every thread through until it is taken back
  };

  explicit Event(Reset reset)
      : queue_(1, reset == Reset::kByHand ? WaitQueue::Unit::kLasting : WaitQueue::Unit::kUsedUp) {}

  void signal() { queue_.give(); }
  void reset() { queue_.clear(); }
  bool wait(Deadline deadline) { return queue_.take(deadline); }  // false: the deadline passed

private:
  WaitQueue queue_;
};

// A count of units from 0, its start, to a maximum of at least 1.
class Semaphore {
public:
  explicit Semaphore(uint32_t maximum) : queue_(maximum) {}

  bool release() { return queue_.give(); }  // false: the count is at its maximum
  bool wait(Deadline deadline) { return queue_.take(deadline); }  // as of an event

private:
  WaitQueue queue_;
};

// What a thread waits for while it lends its mutex to others.
class Condition {
public:
  void signal() { queue_.give(); }  // lets one through, and is kept while there is none
  void broadcast() { queue_.release_waiting(); }  // lets every thread through that waits now

  // Releases the mutex once, waits, and takes the mutex again. The thread counts as waiting before
  // the mutex is free. False, at once, when the calling thread does not own it.
  bool wait(Mutex& mutex);

private:
  WaitQueue queue_{1};
};

// ---- Threads -----------------------------------------------------------------------------------

enum class Priority {
  kIdle,
  kLowest,
  kBelowNormal,
  kNormal,
  kAboveNormal,
  kHighest,
  kTimeCritical
};

// A thread, which runs on when this object goes. But for wait and the destructor, its functions may
// be called by any thread at any time; asked about a thread that has ended they fail.
class Thread {
public:
  using Routine = uint32_t(void* argument);

  Thread() = default;
  ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  // Runs the routine in a new thread, with a stack of that many bytes (0: the system's default;
  // small sizes are raised to what a thread needs). False when memory or threads run out. Once an
  // object.
  bool start(Routine* routine, void* argument, uint32_t stack_size);

  // Waits until the thread has ended, its thread-local destructors included; once the routine is
  // left, without limit. False when the deadline passed before that, and always for the calling
  // thread.
  bool wait(Deadline deadline);

  // Ends the thread wherever it is, unless it has left its routine, and waits until it is gone.
  // False when it did not let itself be ended: it goes on. Not for the calling thread.
  bool terminate();

  // Priorities are relative to the process's main thread. False when the process has no right to
  // it, and nothing has changed.
  bool set_priority(Priority priority);

  // The address that the top of the stack has at this moment; null when it cannot be read.
  void* stack_pointer();

  [[nodiscard]] bool is_calling_thread() const {
    return control_ == calling_thread.control.load(std::memory_order_relaxed);
  }

private:
  ThreadControl* control_ = nullptr;
};

}  // namespace tvx::os
