// The application global: who makes it, who keeps it alive, and what is left of it.
#include <gtest/gtest.h>
#include <signal.h>

#include <barrier>
#include <cstddef>
#include <thread>
#include <utility>
#include <vector>

#include "runtime/application_global.hpp"
#include "support/failing_heap.hpp"
#include "tvxcomn/paths.h"
#include "tvxcomn/threads.h"

namespace rt = tvx::runtime;
using testing::KilledBySignal;
using tvx::test::FailingHeap;
using tvx::test::live_blocks;

namespace {

static_assert(sizeof(com_appglobal) == 48 && offsetof(com_appglobal, references) == 16 &&
              offsetof(com_appglobal, value) == 24 && offsetof(com_appglobal, mutex) == 32 &&
              offsetof(com_appglobal, files) == 40);

int value, other_value, files;

com_appglobal* allocated(void* with_value, int32_t flags) {
  com_appglobal* global = nullptr;
  EXPECT_EQ(com_appglobal_alloc(&global, with_value, flags), 1);
  return global;
}

TEST(ApplicationGlobal, OfTheProcessIsOneAndCleanAfterTheLastReference) {
  const long before = live_blocks();
  for (int round = 0; round < 2; ++round) {
    com_appglobal* const global = allocated(&value, COM_APPGLOBAL_STATIC);
    EXPECT_EQ(allocated(&other_value, COM_APPGLOBAL_STATIC | 2), global);
    EXPECT_EQ(global->references, 2);
    EXPECT_EQ(global->value, &value);
    EXPECT_EQ(com_appglobal_drop(global, COM_APPGLOBAL_STATIC), 1);
    EXPECT_EQ(global->references, 1);
    EXPECT_EQ(com_appglobal_drop(global, COM_APPGLOBAL_STATIC | 2), 1);
    EXPECT_EQ(global->references, 0);
    EXPECT_EQ(global->value, nullptr);
    EXPECT_EQ(live_blocks(), before);
  }
}

TEST(ApplicationGlobal, OfACallerIsItsOwn) {
  const long before = live_blocks();
  com_appglobal* const one = allocated(&value, 0);
  com_appglobal* const other = allocated(&other_value, 2);
  EXPECT_NE(one, other);
  EXPECT_EQ(one->references, 1);
  EXPECT_EQ(one->value, &value);
  EXPECT_EQ(comn_take_mutex(one->mutex), 1);
  EXPECT_EQ(comn_release_mutex(one->mutex), 1);
  EXPECT_EQ(com_appglobal_drop(one, 0), 1);
  EXPECT_EQ(com_appglobal_drop(other, 0), 1);
  EXPECT_EQ(live_blocks(), before);
}

TEST(ApplicationGlobal, LeavesNothingBehindWhenMemoryRunsOut) {
  const long before = live_blocks();
  for (const auto& [flags, nth] : {std::pair{0, 1}, {0, 2}, {COM_APPGLOBAL_STATIC, 1}}) {
    const FailingHeap heap(nth);
    com_appglobal* global = nullptr;
    EXPECT_EQ(com_appglobal_alloc(&global, nullptr, flags), 0);
    EXPECT_EQ(global, nullptr);
    EXPECT_EQ(live_blocks(), before);
  }
}

int drops;

TEST(ApplicationGlobal, ReleasesItsFilesOnceAtTheEnd) {
  rt::set_drop_files([](void* list) { drops += list == &files ? 1 : 100; });
  com_appglobal* const global = rt::join_process_global(nullptr);
  global->files = &files;
  rt::join_process_global(nullptr);
  rt::drop_global(*global, true);
  EXPECT_EQ(drops, 0);
  EXPECT_EQ(global->files, &files);
  rt::drop_global(*global, true);
  EXPECT_EQ(drops, 1);
  EXPECT_EQ(global->files, nullptr);
  com_appglobal* const own = rt::make_global(nullptr);
  own->files = &files;
  rt::drop_global(*own, false);
  EXPECT_EQ(drops, 2);
  rt::set_drop_files(nullptr);
}

// Every thread finds the global as it must be, and alone under its mutex, however the allocations
// of one run into the last drop of another. A reference taken and dropped under the mutex holds up
// nobody.
TEST(ApplicationGlobal, ThreadsComeAndGo) {
  const long before = live_blocks();
  constexpr int kThreads = 8;
  std::barrier start(kThreads);
  const auto come_and_go = [&start] {
    start.arrive_and_wait();
    for (int i = 0; i < 25'000; ++i) {
      com_appglobal* const mine = allocated(&value, COM_APPGLOBAL_STATIC);
      comn_take_mutex(mine->mutex);
      EXPECT_EQ(mine->value, &value);
      EXPECT_EQ(++mine->counters[i % 4], 1);
      com_appglobal_drop(allocated(&other_value, COM_APPGLOBAL_STATIC), COM_APPGLOBAL_STATIC);
      EXPECT_EQ(--mine->counters[i % 4], 0);
      comn_release_mutex(mine->mutex);
      com_appglobal_drop(mine, COM_APPGLOBAL_STATIC);
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(come_and_go);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(live_blocks(), before);
  com_appglobal* const global = allocated(&other_value, COM_APPGLOBAL_STATIC);
  EXPECT_EQ(global->references, 1);
  EXPECT_EQ(global->value, &other_value);
  com_appglobal_drop(global, COM_APPGLOBAL_STATIC);
}

void spoil_and_drop(int32_t flags, void (*spoil)(com_appglobal&)) {
  com_appglobal* const global = allocated(nullptr, flags);
  spoil(*global);
  com_appglobal_drop(global, flags);
}

TEST(ApplicationGlobalDeathTest, BrokenUsage) {
  const char* const assertion = "^\n\rassertion failed, file '[^']+application_global.cpp'";
  void (*const spoilers[])(com_appglobal&) = {[](com_appglobal& g) { g.counters[3] = -1; },
                                              [](com_appglobal& g) { g.files = &files; },
                                              [](com_appglobal& g) { g.references = 0; }};
  for (const auto& spoil : spoilers)
    for (const int32_t flags : {0, COM_APPGLOBAL_STATIC})
      EXPECT_EXIT(spoil_and_drop(flags, spoil), KilledBySignal(SIGABRT), assertion);
  com_appglobal* const global = allocated(nullptr, COM_APPGLOBAL_STATIC);
  EXPECT_EXIT(com_appglobal_drop(global, 2), KilledBySignal(SIGABRT), assertion);
  com_appglobal_drop(global, COM_APPGLOBAL_STATIC);
  EXPECT_EXIT(com_appglobal_drop(global, COM_APPGLOBAL_STATIC), KilledBySignal(SIGABRT), assertion);
  EXPECT_EXIT(com_appglobal_alloc(nullptr, nullptr, 0), KilledBySignal(SIGABRT), "NULL pointer");
  EXPECT_EXIT(com_appglobal_drop(nullptr, 0), KilledBySignal(SIGABRT), "NULL pointer");
}

}  // namespace
