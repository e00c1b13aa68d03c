// Threads, keys, locks, events and coroutine mode by the exported functions.
#include "tvxcomn/threads.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>
#include <vector>

#include "runtime/running_thread.hpp"
#include "support/failing_heap.hpp"

namespace tvx::test {
namespace {

using Clock = std::chrono::steady_clock;
using testing::ExitedWithCode;
using testing::KilledBySignal;

void yield_until(const std::atomic<bool>& flag) {
  while (!flag) sched_yield();
}

// ---- Threads -----------------------------------------------------------------------------------

TEST(Threads, AreJoinedBySeveralAndAgain) {
  const long blocks = live_blocks();
  comn_event* const go = make(comn_create_event);
  const auto await = [go] { comn_waitfor_event(go, CS_NO_LIMIT); };
  {
    bool done = false;
    const RunningThread worker([&] { await(), done = true; }, 1);
    EXPECT_EQ(CS_SUCCEED, comn_start_thread(worker.get()));
    const auto join = [&] {
      EXPECT_EQ(CS_SUCCEED, comn_join_thread(worker.get()));
      EXPECT_TRUE(done);
    };
    const RunningThread first(join), second(join);
    first.await_sleep(), second.await_sleep();
    comn_signal_event(go);
    join();
    EXPECT_EQ(CS_SUCCEED, comn_kill_thread(worker.get())) << "there is nothing to end";
    EXPECT_EQ(CS_FAIL, comn_set_priority(worker.get(), 8));
    EXPECT_EQ(nullptr, comn_getsp(worker.get()));
  }
  RunningThread detached(await);
  EXPECT_EQ(CS_SUCCEED, comn_detach_thread(detached.give_away()));
  comn_signal_event(go);
  while (live_blocks() != blocks + 1) sched_yield();
  EXPECT_EQ(CS_SUCCEED, comn_delete_event(go));
}

thread_local struct Goodbye {
  std::atomic<int>* count = nullptr;
  ~Goodbye() {
    if (count != nullptr) ++*count;
  }
} goodbye;

TEST(Threads, EndThemselves) {
  std::atomic<int> goodbyes{0}, returns{0};
  std::atomic<comn_thread*> self{nullptr};
  const uint32_t status = 7;
  // Nothing is unwound, and thread-local objects are destroyed.
  const auto leaving = [&](auto leave) {
    return [&, leave]() noexcept {
      goodbye.count = &goodbyes;
      while (self == nullptr) sched_yield();
      leave();
      ++returns;
    };
  };
  RunningThread exits(leaving([&] { comn_exit_thread(&status); }));
  RunningThread kills(leaving([&] {
    EXPECT_EQ(CS_FAIL, comn_join_thread(self));
    EXPECT_NE(nullptr, comn_getsp(self));
    comn_kill_thread(self);
  }));
  self = kills.get();
  EXPECT_EQ(CS_SUCCEED, comn_join_thread(exits.get()));
  EXPECT_EQ(CS_SUCCEED, comn_join_thread(kills.get()));
  EXPECT_EQ(2, goodbyes);
  self = nullptr;
  RunningThread cancels(leaving([&] { comn_cancel_thread(self); }));
  self = cancels.give_away();
  while (goodbyes != 3) sched_yield();
  std::thread([&] { goodbye.count = &goodbyes, comn_exit_thread(nullptr), ++returns; }).join();
  EXPECT_EQ(4, goodbyes);
  EXPECT_EQ(0, returns);
}

// By the C library's own means, which unwind the stack.
TEST(Threads, MayEndAsThreadsOfTheCLibrary) {
  const long blocks = live_blocks();
  const auto exit = [](void*) -> uint32_t { pthread_exit(nullptr); };
  const auto be_cancelled = [](void*) -> uint32_t {
    pthread_cancel(pthread_self()), pthread_testcancel();
    return 0;
  };
  for (comn_thread_routine* const routine : {+exit, +be_cancelled}) {
    comn_thread* thread = nullptr;
    ASSERT_EQ(CS_SUCCEED, comn_create_thread(&thread, routine, nullptr));
    EXPECT_EQ(CS_SUCCEED, comn_join_thread(thread));
    EXPECT_EQ(nullptr, comn_getsp(thread));
    EXPECT_EQ(CS_SUCCEED, comn_cancel_thread(thread));
  }
  EXPECT_EQ(blocks, live_blocks());
}

TEST(Threads, AreGivenTimeToEnd) {
  if (kSignalsAreDeferred) GTEST_SKIP();  // on a busy machine the time may be too short
  std::atomic<bool> done{false};
  RunningThread thread([&] { usleep(50'000), done = true; });
  EXPECT_EQ(CS_SUCCEED, comn_kill_thread(thread.get()));
  EXPECT_TRUE(done);
  EXPECT_EQ(CS_SUCCEED, comn_cancel_thread(thread.give_away())) << "ended before";
}

TEST(Threads, AreEndedWhereverTheyAre) {
  if (kSignalsAreDeferred) GTEST_SKIP();
  comn_event* const event = make(comn_create_event);
  uint32_t key;
  ASSERT_EQ(CS_SUCCEED, comn_create_key(&key));
  RunningThread waiting([&] { comn_waitfor_event(event, CS_NO_LIMIT); });
  RunningThread spinning([&] {
    comn_set_threaduserdata(key, &key);
    for (volatile bool go_on = true; go_on;) continue;
  });
  waiting.await_sleep(), spinning.id();
  EXPECT_EQ(CS_SUCCEED, comn_cancel_thread(waiting.give_away()));
  const auto start = Clock::now();
  EXPECT_EQ(CS_SUCCEED, comn_kill_thread(spinning.get()));
  EXPECT_LE(start + std::chrono::seconds(1), Clock::now());
  comn_signal_event(event);
  EXPECT_EQ(CS_SUCCEED, comn_waitfor_event(event, 0)) << "the dead do not take it";
  for (int i = 0; i < 4; ++i) {
    const RunningThread on_same_stack([&] { EXPECT_EQ(nullptr, comn_get_threaduserdata(key)); });
  }
  comn_drop_key(key), comn_delete_event(event);
}

std::atomic<bool> in_slow_destructor, slow_destructor_may_end;

thread_local struct Slow {
  bool used = false;
  ~Slow() {
    if (used) in_slow_destructor = true, yield_until(slow_destructor_may_end);
  }
} slow;

// It keeps those who join the thread, and nobody else.
TEST(Threads, AnswerNothingInTheirDestructors) {
  in_slow_destructor = slow_destructor_may_end = false;
  const RunningThread thread([] { slow.used = true; });
  yield_until(in_slow_destructor);
  const RunningThread joiner([&] { EXPECT_EQ(CS_SUCCEED, comn_join_thread(thread.get())); });
  joiner.await_sleep();
  EXPECT_EQ(nullptr, comn_getsp(thread.get()));
  EXPECT_EQ(CS_FAIL, comn_set_priority(thread.get(), 8));
  slow_destructor_may_end = true;
}

TEST(Threads, ThatBlockEverySignalRunOn) {
  if (kSignalsAreDeferred) GTEST_SKIP();
  std::atomic<bool> blocks{false}, may_end{false}, ends{false};
  RunningThread thread([&] {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
    blocks = true, yield_until(may_end), ends = true;
  });
  yield_until(blocks);
  EXPECT_EQ(CS_FAIL, comn_cancel_thread(thread.give_away()));
  may_end = true, yield_until(ends);
}

TEST(Threads, TellTheirStackPointer) {
  if (kSignalsAreDeferred) GTEST_SKIP();
  std::atomic<char*> on_stack{nullptr};
  std::atomic<bool> may_end{false};
  const RunningThread thread([&] {
    char local = 0;
    for (on_stack = &local; !may_end;) continue;
  });
  while (on_stack == nullptr) sched_yield();
  for (int i = 0; i < 100; ++i) {
    EXPECT_GT(4'096, std::abs(static_cast<char*>(comn_getsp(thread.get())) - on_stack));
  }
  may_end = true;
}

int nice_of(const RunningThread& thread) {
  return getpriority(PRIO_PROCESS, thread.id());
}

TEST(Threads, HavePriorities) {
  const int normal = getpriority(PRIO_PROCESS, 0);
  const int distances[] = {40, 40, 40, 10, 10, 5, 5, 0, 0, 0, -5, -5, -10, -10, -40, -40};
  for (int level = 0; level < 16; ++level) {
    std::atomic<bool> may_end{false};
    const RunningThread thread([&] { yield_until(may_end); });
    const int32_t result = comn_set_priority(thread.get(), level);
    EXPECT_TRUE(result == CS_SUCCEED || distances[level] < 0) << "anybody may lower it";
    for (const int32_t none : {-1, 16, INT32_MIN}) {
      EXPECT_EQ(CS_FAIL, comn_set_priority(thread.get(), none));
    }
    const int moved = std::clamp(normal + distances[level], -20, 19);
    EXPECT_EQ(result == CS_SUCCEED ? moved : normal, nice_of(thread)) << "level " << level;
    may_end = true;
  }
}

TEST(Threads, MayNotRaisePrioritiesWithoutTheRight) {
  const auto lower_and_raise = [] {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_NICE, &none);
    if (geteuid() == 0 && setuid(65'534) != 0) _exit(2);
    const RunningThread thread([] { pause(); });
    const int lowest = 19;
    const bool held = comn_set_priority(thread.get(), 0) == CS_SUCCEED &&
                      comn_set_priority(thread.get(), 14) == CS_FAIL && nice_of(thread) == lowest;
    _exit(held ? 0 : 1);
  };
  EXPECT_EXIT(lower_and_raise(), ExitedWithCode(0), "");
}

TEST(Threads, HaveNumbers) {
  const auto own = static_cast<uint32_t>(gettid());
  uint32_t id = 99;
  int32_t length = 99;
  EXPECT_EQ(CS_FAIL, comn_get_tid(&id, 3, &length));
  EXPECT_EQ(CS_FAIL, comn_get_default_tid(&id, -1, &length));
  EXPECT_TRUE(id == 99 && length == 99);
  EXPECT_EQ(CS_SUCCEED, comn_get_tid(&id, 4, &length));
  EXPECT_TRUE(id == own && length == 4 && comn_thread_id() == own);
  EXPECT_EQ(CS_SUCCEED, comn_get_default_tid(&id, 8, nullptr));
  EXPECT_TRUE(id == 0 && comn_thread_equal(own, own) == 1 && comn_thread_equal(own, id) == 0);
  {
    const RunningThread other([&] { EXPECT_NE(own, comn_thread_id()); });
  }
  EXPECT_EXIT(_exit(comn_thread_id() == static_cast<uint32_t>(getpid()) ? 0 : 1), ExitedWithCode(0),
              "")
      << "in the child of a fork";
}

TEST(Keys, HoldAPointerAThread) {
  std::vector<uint32_t> keys;
  for (uint32_t key; comn_create_key(&key) == CS_SUCCEED; keys.push_back(key)) {
    EXPECT_EQ(CS_SUCCEED, comn_set_threaduserdata(key, &keys));
  }
  ASSERT_LT(100u, keys.size());
  const uint32_t key = keys[50];
  {
    const RunningThread other([&] { EXPECT_EQ(nullptr, comn_get_threaduserdata(key)); });
  }
  EXPECT_EQ(&keys, comn_get_threaduserdata(key));
  for (const uint32_t each : keys) EXPECT_EQ(CS_SUCCEED, comn_drop_key(each));
  for (const uint32_t none : {key, 1'024u, ~0u}) {
    EXPECT_EQ(CS_FAIL, comn_drop_key(none));
    EXPECT_EQ(CS_FAIL, comn_set_threaduserdata(none, &keys));
    EXPECT_EQ(nullptr, comn_get_threaduserdata(none));
  }
}

// ---- Locks and events --------------------------------------------------------------------------

TEST(Mutexes, AreReentrant) {
  comn_mutex* const mutex = make(comn_create_mutex);
  const auto try_elsewhere = [&] {
    int32_t result = -1;
    {
      const RunningThread other([&] { result = comn_try_mutex(mutex), comn_release_mutex(mutex); });
    }
    return result;
  };
  EXPECT_EQ(CS_SUCCEED, comn_take_mutex(mutex));
  EXPECT_EQ(CS_SUCCEED, comn_try_mutex(mutex));
  EXPECT_EQ(CS_SUCCEED, comn_release_mutex(mutex));
  EXPECT_EQ(CS_FAIL, try_elsewhere()) << "taken once more than released";
  EXPECT_EQ(CS_FAIL, try_elsewhere()) << "and not to be released there";
  EXPECT_EQ(CS_SUCCEED, comn_release_mutex(mutex));
  EXPECT_EQ(CS_SUCCEED, try_elsewhere());
  EXPECT_EQ(CS_SUCCEED, comn_release_mutex(mutex)) << "without effect";
  EXPECT_EQ(CS_SUCCEED, try_elsewhere());
  EXPECT_EQ(CS_SUCCEED, comn_delete_mutex(mutex));
}

// Three threads on the same work, all of them waiting. One that is seen asleep may wait for the
// lock of a queue that another holds; when all were seen so, none holds it.
struct ThreeWaiting {
  explicit ThreeWaiting(const std::function<void()>& work) : a(work), b(work), c(work) {
    for (const RunningThread* thread : {&a, &b, &c, &a, &b, &c}) thread->await_sleep();
  }
  RunningThread a, b, c;
};

void expect_to_become(int expected, const std::atomic<int>& count) {
  while (count < expected) sched_yield();
  usleep(30'000);
  EXPECT_EQ(expected, count);
}

TEST(Events, LetOneOrAllThrough) {
  for (const int32_t kind : {COMN_EVENT_AUTO, 0, 2}) {
    const int32_t again = kind == COMN_EVENT_AUTO ? CS_TIMED_OUT : CS_SUCCEED;
    comn_event* event = nullptr;
    ASSERT_EQ(CS_SUCCEED, comn_create_event_ex(&event, kind));
    const auto start = Clock::now();
    EXPECT_EQ(CS_TIMED_OUT, comn_waitfor_event(event, 0));
    EXPECT_EQ(CS_TIMED_OUT, comn_waitfor_event(event, 30));
    EXPECT_LE(start + std::chrono::milliseconds(30), Clock::now());
    std::atomic<int> through{0};
    const auto wait = [&] { through += comn_waitfor_event(event, CS_NO_LIMIT); };
    {
      const ThreeWaiting threads(wait);
      EXPECT_EQ(CS_SUCCEED, comn_signal_event(event));
      EXPECT_EQ(again, comn_waitfor_event(event, 0)) << "one had it already";
      expect_to_become(kind == COMN_EVENT_AUTO ? 1 : 3, through);
      comn_signal_event(event), comn_signal_event(event);  // one for each, however fast
    }
    EXPECT_EQ(CS_SUCCEED, comn_reset_event(event));
    EXPECT_EQ(CS_TIMED_OUT, comn_waitfor_event(event, 0));
    comn_signal_event(event), comn_signal_event(event);
    EXPECT_EQ(CS_SUCCEED, comn_waitfor_event(event, 1'000));
    EXPECT_EQ(again, comn_waitfor_event(event, 0));
    EXPECT_EQ(CS_SUCCEED, comn_delete_event(event));
  }
}

TEST(Semaphores, CountUpToTheirMaximum) {
  comn_sem* semaphore = nullptr;
  EXPECT_EQ(CS_FAIL, comn_create_sem(&semaphore, 0));
  EXPECT_EQ(CS_FAIL, comn_create_sem(&semaphore, -1));
  ASSERT_EQ(CS_SUCCEED, comn_create_sem(&semaphore, 2));
  for (const int32_t expected : {CS_SUCCEED, CS_SUCCEED, CS_FAIL}) {
    EXPECT_EQ(expected, comn_release_sem(semaphore));
  }
  for (const int32_t expected : {CS_SUCCEED, CS_SUCCEED, CS_TIMED_OUT}) {
    EXPECT_EQ(expected, comn_waitfor_sem(semaphore, 1));
  }
  {
    const ThreeWaiting threads([&] { EXPECT_EQ(CS_SUCCEED, comn_waitfor_sem(semaphore, 0)); });
    for (int i = 0; i < 5; ++i) EXPECT_EQ(CS_SUCCEED, comn_release_sem(semaphore)) << i;
    EXPECT_EQ(CS_FAIL, comn_release_sem(semaphore)) << "three were taken at once, two are kept";
  }
  EXPECT_EQ(CS_SUCCEED, comn_delete_sem(semaphore));
}

TEST(Conditions, KeepASignalButNoBroadcast) {
  comn_cond* const condition = make(comn_create_cond);
  comn_mutex* const mutex = make(comn_create_mutex);
  std::atomic<int> through{0};
  const auto wait = [&] {
    comn_take_mutex(mutex);
    through += comn_wait_cond(condition, mutex);
    EXPECT_EQ(CS_SUCCEED, comn_try_mutex(mutex)) << "owned again";
    comn_release_mutex(mutex), comn_release_mutex(mutex);
  };
  EXPECT_EQ(CS_FAIL, comn_wait_cond(condition, mutex)) << "not owned";
  EXPECT_EQ(CS_SUCCEED, comn_broadcast_cond(condition));
  {
    const ThreeWaiting threads(wait);
    EXPECT_EQ(0, through);
    EXPECT_EQ(CS_SUCCEED, comn_signal_cond(condition));
    expect_to_become(1, through);
    EXPECT_EQ(CS_SUCCEED, comn_broadcast_cond(condition));
  }
  EXPECT_EQ(3, through);
  comn_signal_cond(condition), comn_signal_cond(condition);
  wait();
  {
    const RunningThread last(wait);
    last.await_sleep();
    EXPECT_EQ(4, through) << "one signal was kept";
    comn_signal_cond(condition);
  }
  EXPECT_EQ(CS_SUCCEED, comn_delete_cond(condition));
  EXPECT_EQ(CS_SUCCEED, comn_delete_mutex(mutex));
}

TEST(CoroutineMode, GivesControlToOneAtATime) {
  EXPECT_EQ(CS_SUCCEED, comn_take_coroutine_control()) << "the mode is off";
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(CS_SUCCEED, comn_start_coroutine_mode());
    EXPECT_EQ(CS_FAIL, comn_start_coroutine_mode());
    comn_take_coroutine_control(), comn_take_coroutine_control();
    std::atomic<int> passed{0};
    const ThreeWaiting threads([&] {
      EXPECT_EQ(CS_SUCCEED, comn_take_coroutine_control());
      ++passed;
      EXPECT_EQ(CS_SUCCEED, comn_release_coroutine_control());
    });
    comn_release_coroutine_control();
    EXPECT_EQ(0, passed) << "taken twice, released once";
    EXPECT_EQ(CS_SUCCEED, comn_end_coroutine_mode());
    EXPECT_EQ(CS_SUCCEED, comn_end_coroutine_mode());
  }
}

// ---- Bad input ---------------------------------------------------------------------------------

uint32_t return_zero(void*) {
  return 0;
}

int32_t create_thread(comn_thread** thread) {
  return comn_create_thread(thread, return_zero, nullptr);
}

int32_t create_semaphore(comn_sem** semaphore) {
  return comn_create_sem(semaphore, 1);
}

template <class Object>
void expect_failure(int32_t (*create)(Object**), int allocations) {
  const long blocks = live_blocks();
  for (int nth = 1; nth <= allocations; ++nth) {
    auto* object = reinterpret_cast<Object*>(&nth);
    const FailingHeap heap(nth);
    EXPECT_EQ(CS_FAIL, create(&object));
    EXPECT_TRUE(object == nullptr && live_blocks() == blocks);
  }
}

TEST(ThreadUsage, MemoryThatRunsOut) {
  expect_failure(create_thread, 2);
  expect_failure(comn_create_mutex, 1);
  expect_failure(comn_create_event, 1);
  expect_failure(create_semaphore, 1);
  expect_failure(comn_create_cond, 1);
}

template <class... Functions>
void expect_fatal_nulls(Functions... functions) {
  const auto expect_fatal = [](auto function) {
    EXPECT_EXIT(function(nullptr), KilledBySignal(SIGABRT), "Invalid NULL pointer , file ");
  };
  (expect_fatal(functions), ...);
}

TEST(ThreadUsageDeathTest, NullPointers) {
  EXPECT_EQ(CS_FAIL, comn_delete_mutex(nullptr));
  EXPECT_EQ(CS_FAIL, comn_delete_event(nullptr));
  EXPECT_EQ(CS_FAIL, comn_delete_cond(nullptr));
  expect_fatal_nulls(
      create_thread, comn_start_thread, comn_join_thread, comn_detach_thread, comn_kill_thread,
      comn_cancel_thread, comn_getsp, comn_create_key, comn_create_mutex, comn_take_mutex,
      comn_try_mutex, comn_release_mutex, comn_create_event, comn_signal_event, comn_reset_event,
      create_semaphore, comn_release_sem, comn_delete_sem, comn_create_cond, comn_signal_cond,
      comn_broadcast_cond, [](comn_thread* thread) { comn_set_priority(thread, 8); },
      [](comn_thread_routine* routine) {
        comn_thread* thread;
        comn_create_thread(&thread, routine, nullptr);
      },
      [](uint32_t* id) { comn_get_tid(id, 4, nullptr); },
      [](comn_event* event) { comn_waitfor_event(event, 0); },
      [](comn_sem* semaphore) { comn_waitfor_sem(semaphore, 1); },
      [](comn_cond* condition) { comn_wait_cond(condition, make(comn_create_mutex)); },
      [](comn_mutex* mutex) { comn_wait_cond(make(comn_create_cond), mutex); },
      [](char* text) { com_memsetfn_nt(text, 0, 0); },
      [](char* text) { com_memmovefn_nt(text, "", 0); });
}

// A sanitizer may see the use of a freed block before the library does.
template <class Call>
void expect_fatal(Call call) {
  EXPECT_DEATH(call(), "assertion failed|Sanitizer");
}

TEST(ThreadUsageDeathTest, DeletedObjectsAndOtherArguments) {
  const auto use_deleted = [](auto create, auto drop, auto use) {
    expect_fatal([&] {
      auto* const object = make(create);
      drop(object), use(object);
    });
  };
  // The thread ends by itself, for one that is made to never ends in a thread sanitizer's eyes.
  const auto drop_thread = [](comn_thread* thread) {
    comn_join_thread(thread), comn_cancel_thread(thread);
  };
  use_deleted(create_thread, drop_thread, comn_join_thread);
  use_deleted(comn_create_mutex, comn_delete_mutex, comn_take_mutex);
  use_deleted(comn_create_mutex, comn_delete_mutex, comn_delete_mutex);
  use_deleted(comn_create_event, comn_delete_event, comn_signal_event);
  use_deleted(create_semaphore, comn_delete_sem, comn_release_sem);
  use_deleted(comn_create_cond, comn_delete_cond, comn_signal_cond);
  expect_fatal([] { comn_take_mutex(reinterpret_cast<comn_mutex*>(make(comn_create_event))); });
  expect_fatal([] { comn_waitfor_event(make(comn_create_event), -1); });
}

TEST(PlatformHelpers, AreTheCLibrarys) {
  char text[] = "abcdef";
  EXPECT_EQ(text + 1, com_memmovefn_nt(text + 1, text, 3));
  EXPECT_EQ(text + 5, com_memsetfn_nt(text + 5, 'x' + 256, 1));
  EXPECT_STREQ("aabcex", text);
  EXPECT_TRUE(com_memcmpfn_nt("a1", "a2", 2) < 0 && com_memcmpfn_nt("a1", "a2", 1) == 0);
  int64_t stored = 0;
  EXPECT_TRUE(com_timefn_nt(&stored) == stored && com_timefn_nt(nullptr) >= stored);
}

}  // namespace
}  // namespace tvx::test
