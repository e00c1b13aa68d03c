// Eight threads, 10^5 operations each, on one object: nothing is lost, nothing comes twice, one at
// a time means one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <deque>
#include <random>

#include "os/os.hpp"
#include "runtime/running_thread.hpp"

namespace tvx::test {
namespace {

constexpr int kThreads = 8;
constexpr int kOperations = 100'000;

// Runs the work in every thread and returns when all are done; a wait that nobody ends is cut off.
template <class Work>
void in_all_threads(Work work) {
  alarm(300);
  {
    std::deque<RunningThread> threads;
    for (int index = 0; index < kThreads; ++index) threads.emplace_back([=] { work(index); });
  }
  alarm(0);
}

TEST(ThreadsStress, MutexIsForOne) {
  comn_mutex* const mutex = make(comn_create_mutex);
  int64_t counter = 0;
  in_all_threads([&](int index) {
    for (int i = 0; i < kOperations; ++i) {
      if (index % 2 == 0 || comn_try_mutex(mutex) == CS_FAIL) comn_take_mutex(mutex);
      comn_take_mutex(mutex);
      ++counter;
      comn_release_mutex(mutex);
      comn_release_mutex(mutex);
    }
  });
  EXPECT_EQ(kThreads * kOperations, counter);
  EXPECT_EQ(CS_SUCCEED, comn_delete_mutex(mutex));
}

// One signal goes round. Time-outs of no more than microseconds meet it at every point.
TEST(ThreadsStress, AutoResetEventLetsOneThrough) {
  os::Event event(os::Event::Reset::kByWaiter);
  int64_t passes = 0;  // guarded by the signal
  std::atomic<int64_t> timeouts{0};
  in_all_threads([&](int index) {
    if (index == kThreads - 1) event.signal();
    std::mt19937 generator(static_cast<uint32_t>(index));
    for (int i = 0; i < kOperations;) {
      const std::chrono::microseconds limit(generator() % 20);
      if (event.wait(index == 0 ? os::kNever : std::chrono::steady_clock::now() + limit)) {
        ++i, ++passes;
        event.signal();
      } else {
        ++timeouts;
      }
    }
  });
  EXPECT_EQ(kThreads * kOperations, passes);
  EXPECT_LT(0, timeouts) << "there was no race to lose";
  EXPECT_TRUE(event.wait(os::kNow));
  EXPECT_FALSE(event.wait(os::kNow));
}

// Half of the threads put numbers into a buffer of three, the others take them out.
TEST(ThreadsStress, ConditionLosesNoSignal) {
  comn_mutex* const mutex = make(comn_create_mutex);
  comn_cond *const not_full = make(comn_create_cond), *const not_empty = make(comn_create_cond);
  std::deque<int> buffer;
  int64_t sum = 0;
  in_all_threads([&](int index) {
    for (int i = 0; i < kOperations; ++i) {
      comn_take_mutex(mutex);
      if (index % 2 == 0) {
        while (buffer.size() == 3) comn_wait_cond(not_full, mutex);
        buffer.push_back(i);
        i % 8 == 0 ? comn_broadcast_cond(not_empty) : comn_signal_cond(not_empty);
      } else {
        while (buffer.empty()) comn_wait_cond(not_empty, mutex);
        sum += buffer.front();
        buffer.pop_front();
        i % 8 == 0 ? comn_broadcast_cond(not_full) : comn_signal_cond(not_full);
      }
      comn_release_mutex(mutex);
    }
  });
  EXPECT_EQ(kThreads / 2 * (int64_t{kOperations} * (kOperations - 1) / 2), sum);
  comn_delete_cond(not_full), comn_delete_cond(not_empty), comn_delete_mutex(mutex);
}

// Threads are ended in the midst of signals and waits, which must go on for the others.
TEST(ThreadsStress, EndedThreadsLeaveEventsWhole) {
  if (kSignalsAreDeferred) GTEST_SKIP();
  comn_event *const ping = make(comn_create_event), *const pong = make(comn_create_event);
  std::mt19937 generator(1);
  for (int round = 0; round < 300; ++round) {
    const auto play = [=](comn_event* wait, comn_event* signal, int32_t timeout) {
      return [=] {
        for (;;) comn_waitfor_event(wait, timeout), comn_signal_event(signal);
      };
    };
    RunningThread a(play(ping, pong, 1)), b(play(pong, ping, 1)), c(play(ping, pong, 0));
    const auto stop =
        std::chrono::steady_clock::now() + std::chrono::microseconds(generator() % 500);
    while (std::chrono::steady_clock::now() < stop) comn_signal_event(ping);
    for (RunningThread* thread : {&a, &b, &c}) {
      ASSERT_EQ(CS_SUCCEED, comn_cancel_thread(thread->give_away()));
    }
    for (comn_event* event : {ping, pong}) {
      comn_signal_event(event);
      ASSERT_EQ(CS_SUCCEED, comn_waitfor_event(event, 0));
      ASSERT_EQ(CS_TIMED_OUT, comn_waitfor_event(event, 0));
    }
  }
  comn_delete_event(ping), comn_delete_event(pong);
}

// One of the two at least is ended, and nobody waits for ever.
TEST(ThreadsStress, ThreadsEndEachOther) {
  if (kSignalsAreDeferred) GTEST_SKIP();
  struct Fighter {
    os::Thread thread;
    Fighter* other = nullptr;
    bool survives = false;
  };
  for (int round = 0; round < 500; ++round) {
    static std::atomic<int> ready;
    ready = 0;
    Fighter a, b;
    a.other = &b, b.other = &a;
    for (Fighter* const fighter : {&a, &b}) {
      const auto fight = [](void* argument) -> uint32_t {
        auto* const self = static_cast<Fighter*>(argument);
        ++ready;
        while (ready != 3) continue;
        self->survives = self->other->thread.terminate();
        return 0;
      };
      ASSERT_TRUE(fighter->thread.start(fight, fighter, 0));
    }
    ++ready;
    EXPECT_TRUE(a.thread.wait(os::kNever) && b.thread.wait(os::kNever));
    EXPECT_FALSE(a.survives && b.survives);
  }
}

}  // namespace
}  // namespace tvx::test
