#include "peers/threads.hpp"

namespace tvx::bench::peers {

void RecursiveMutex::take() {
  mutex_.lock();
}

void RecursiveMutex::release() {
  mutex_.unlock();
}

void ConditionEvent::signal() {
  {
    const std::lock_guard guard(mutex_);
    is_signalled_ = true;
  }
  condition_.notify_one();
}

void ConditionEvent::wait() {
  std::unique_lock guard(mutex_);
  condition_.wait(guard, [this] { return is_signalled_; });
  is_signalled_ = false;
}

}  // namespace tvx::bench::peers
