#include "os/wait_queue.hpp"

#include <mutex>
#include <utility>

#include "os/calling_thread.hpp"

namespace tvx::os {
namespace {

// What a waiter's word says.
constexpr uint32_t kAwake = 0;
constexpr uint32_t kAsleep = 1;
constexpr uint32_t kLetThrough = 2;

bool is_let_through(const Waiter& waiter) {
  return waiter.word.load(std::memory_order_acquire) == kLetThrough;
}

// Sleeps until the waiter is let through; false when the deadline passed first.
bool sleep(Waiter& waiter, Deadline deadline) {
  uint32_t awake = kAwake;
  waiter.word.compare_exchange_strong(awake, kAsleep, std::memory_order_acquire);
  while (!is_let_through(waiter)) {
    if (!sleep_while(waiter.word, kAsleep, deadline)) return is_let_through(waiter);
  }
  return true;
}

// Lets a chain of waiters, no longer in the queue, through. A waiter is gone as soon as its word is
// written.
void let_through(Waiter* waiter) {
  while (waiter != nullptr) {
    Waiter* const next = waiter->next;
    const std::atomic<uint32_t>& word = waiter->word;
    if (waiter->word.exchange(kLetThrough, std::memory_order_acq_rel) == kAsleep) wake_one(word);
    waiter = next;
  }
}

}  // namespace

bool WaitQueue::give() {
  const EndDeferred deferred;
  std::unique_lock guard(lock_);
  const bool kept = (lasting_ || first_ == nullptr) && units_ < maximum_;
  if (kept) ++units_;
  Waiter* const released = lasting_ ? take_out_all() : take_out_first();
  guard.unlock();
  let_through(released);
  return kept || released != nullptr;
}

void WaitQueue::release_waiting() {
  const EndDeferred deferred;
  std::unique_lock guard(lock_);
  Waiter* const released = take_out_all();
  guard.unlock();
  let_through(released);
}

void WaitQueue::clear() {
  const EndDeferred deferred;
  const std::lock_guard guard(lock_);
  units_ = 0;
}

bool WaitQueue::take(Deadline deadline) {
  if (deadline == kNow) {
    const EndDeferred deferred;
    const std::lock_guard guard(lock_);
    return take_kept();
  }
  Waiter waiter;
  return take_or_enter(waiter) || await(waiter, deadline);
}

bool WaitQueue::take_or_enter(Waiter& waiter) {
  const EndDeferred deferred;
  const std::lock_guard guard(lock_);
  if (take_kept()) return true;
  waiter.queue = this;
  waiter.queued = true;
  waiter.previous = last_;
  (last_ == nullptr ? first_ : last_->next) = &waiter;
  last_ = &waiter;
  calling_thread.waiting.store(&waiter, std::memory_order_relaxed);
  return false;
}

bool WaitQueue::await(Waiter& waiter, Deadline deadline) {
  const bool passed =
      spin_.until([&] { return is_let_through(waiter); }) || sleep(waiter, deadline);
  if (!passed && leave(waiter)) return false;
  calling_thread.waiting.store(nullptr, std::memory_order_relaxed);
  return true;
}

bool WaitQueue::leave(Waiter& waiter) {
  if (is_let_through(waiter)) return false;  // the queue may be gone
  const EndDeferred deferred;
  {
    const std::lock_guard guard(lock_);
    if (waiter.queued) {
      (waiter.previous == nullptr ? first_ : waiter.previous->next) = waiter.next;
      (waiter.next == nullptr ? last_ : waiter.next->previous) = waiter.previous;
      calling_thread.waiting.store(nullptr, std::memory_order_relaxed);
      return true;
    }
  }
  sleep(waiter, kNever);  // its word is about to be written, which its stack has to outlive
  return false;
}

bool WaitQueue::take_kept() {
  if (units_ == 0) return false;
  if (!lasting_) --units_;
  return true;
}

Waiter* WaitQueue::take_out_first() {
  Waiter* const out = first_;
  if (out == nullptr) return nullptr;
  first_ = out->next;
  (first_ == nullptr ? last_ : first_->previous) = nullptr;
  out->next = nullptr;
  out->queued = false;
  return out;
}

Waiter* WaitQueue::take_out_all() {
  Waiter* const out = std::exchange(first_, nullptr);
  last_ = nullptr;
  for (Waiter* waiter = out; waiter != nullptr; waiter = waiter->next) waiter->queued = false;
  return out;
}

}  // namespace tvx::os
