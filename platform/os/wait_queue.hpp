// The queue behind events, semaphores and conditions: a count of units and the threads that wait
// for one, longest first.
//
// A unit that somebody waits for goes to that thread at once, under the queue's lock, and no thread
// that comes later can have it. So one unit lets exactly one thread through, a time-out that meets
// a unit loses nothing (either the thread is still in the queue or it has the unit), and what
// releases everybody releases those in the queue and no others. A thread sleeps on a word of its
// own; the one that wakes it touches neither the queue nor, but for that word, the waiting thread's
// stack after it could have gone on, so a thread that was let through may delete what it waited
// for.
#pragma once

#include <atomic>
#include <cstdint>

#include "os/lock.hpp"
#include "os/spin.hpp"
#include "os/word.hpp"

namespace tvx::os {

class WaitQueue;

// A thread in a queue, on that thread's stack.
struct Waiter {
  Waiter* next = nullptr;
  Waiter* previous = nullptr;
  WaitQueue* queue = nullptr;
  bool queued = false;            // guarded by the queue's lock
  std::atomic<uint32_t> word{0};  // see wait_queue.cpp
};

class WaitQueue {
public:
  enum class Unit {
    kUsedUp,  // a unit is for one thread
    kLasting  // one unit lets every thread through until it is taken back
  };

  // At most `maximum` units are kept; there is none at the start.
  explicit WaitQueue(uint32_t maximum, Unit unit = Unit::kUsedUp)
      : maximum_(maximum), lasting_(unit == Unit::kLasting) {}

  // Gives a unit to the longest waiting thread, or keeps it. False when as many as may be are kept.
  bool give();

  // Lets every thread through that is waiting, without a unit.
  void release_waiting();

  // Takes back all units that are kept.
  void clear();

  // Waits for a unit; false when the deadline passed first.
  bool take(Deadline deadline);

  // Taking in two steps. Either takes a kept unit and returns true, or puts the waiter in the
  // queue.
  bool take_or_enter(Waiter& waiter);
  // Waits for the unit of a waiter in the queue; false when the deadline passed, and it is out.
  bool await(Waiter& waiter, Deadline deadline);

  // Takes a waiter out of the queue. False when it was let through, and no longer needed it.
  bool leave(Waiter& waiter);

private:
  Waiter* take_out_first();
  Waiter* take_out_all();
  bool take_kept();

  Lock lock_;
  Spin spin_;
  uint32_t units_ = 0;
  const uint32_t maximum_;
  const bool lasting_;
  Waiter* first_ = nullptr;
  Waiter* last_ = nullptr;
};

}  // namespace tvx::os
