// Objects and threads of the library for tests.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

#include "support/sanitizers.hpp"
#include "tvxcomn/threads.h"

namespace tvx::test {

// ThreadSanitizer keeps signals back until a thread makes a call that it knows.
inline constexpr bool kSignalsAreDeferred = kThreadSanitizer;

template <class Object>
Object* make(int32_t (*create)(Object**)) {
  Object* object = nullptr;
  EXPECT_EQ(CS_SUCCEED, create(&object));
  return object;
}

// Works in a thread of the library, which is joined in the end unless it was given away.
class RunningThread {
public:
  explicit RunningThread(std::function<void()> work, uint32_t stack_size = 0)
      : work_(std::move(work)) {
    const auto run = [](void* self) {
      auto& running = *static_cast<RunningThread*>(self);
      running.id_ = comn_thread_id();
      running.work_();
      return uint32_t{0};
    };
    EXPECT_EQ(CS_SUCCEED, comn_create_thread_ex(&thread_, run, this, stack_size));
  }
  ~RunningThread() {
    if (thread_ == nullptr) return;
    EXPECT_EQ(CS_SUCCEED, comn_join_thread(thread_));
    EXPECT_EQ(CS_SUCCEED, comn_detach_thread(thread_));
  }
  RunningThread(const RunningThread&) = delete;
  RunningThread& operator=(const RunningThread&) = delete;

  comn_thread* get() const { return thread_; }
  comn_thread* give_away() { return std::exchange(thread_, nullptr); }

  uint32_t id() const {
    while (id_ == 0) sched_yield();
    return id_;
  }

  // Returns when the thread sleeps, which is when it waits for what the test is about.
  void await_sleep() const {
    const std::string path = "/proc/self/task/" + std::to_string(id()) + "/stat";
    for (std::string number, name, state; state != "S"; sched_yield()) {
      std::ifstream(path) >> number >> name >> state;
    }
  }

private:
  const std::function<void()> work_;
  std::atomic<uint32_t> id_{0};
  comn_thread* thread_ = nullptr;
};

}  // namespace tvx::test
