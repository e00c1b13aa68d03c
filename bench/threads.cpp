// Mutexes and events between two threads, by the time that passes.
#include "tvxcomn/threads.h"

#include <functional>
#include <future>
#include <thread>

#include "peers/threads.hpp"
#include "suite.hpp"

namespace tvx::bench {
namespace {

class OurMutex {
public:
  OurMutex() { comn_create_mutex(&mutex_); }
  ~OurMutex() { comn_delete_mutex(mutex_); }
  OurMutex(const OurMutex&) = delete;
  OurMutex& operator=(const OurMutex&) = delete;

  void take() { comn_take_mutex(mutex_); }
  void release() { comn_release_mutex(mutex_); }

private:
  comn_mutex* mutex_;
};

class OurEvent {
public:
  OurEvent() { comn_create_event(&event_); }
  ~OurEvent() { comn_delete_event(event_); }
  OurEvent(const OurEvent&) = delete;
  OurEvent& operator=(const OurEvent&) = delete;

  void signal() { comn_signal_event(event_); }
  void wait() { comn_waitfor_event(event_, CS_NO_LIMIT); }

private:
  comn_event* event_;
};

template <class Mutex>
void count_under(Mutex& mutex, int64_t operations, int64_t& counter) {
  for (int64_t i = 0; i < operations; ++i) {
    mutex.take();
    ++counter;
    mutex.release();
  }
}

// While another thread sleeps, without which some locks are taken more cheaply.
template <class Mutex>
int64_t take_uncontended(int64_t operations) {
  std::promise<void> is_done;
  std::thread sleeper([&] { is_done.get_future().wait(); });
  Mutex mutex;
  int64_t counter = 0;
  count_under(mutex, operations, counter);
  is_done.set_value();
  sleeper.join();
  return counter;
}

// Half of the operations in each of two threads.
template <class Mutex>
int64_t take_contended(int64_t operations) {
  Mutex mutex;
  int64_t counter = 0;
  std::thread other([&] { count_under(mutex, operations / 2, counter); });
  count_under(mutex, operations / 2, counter);
  other.join();
  return counter;
}

// A signal there and one back make one operation.
template <class Event>
int64_t play_ping_pong(int64_t operations) {
  Event ping, pong;
  int64_t rounds = 0;
  std::thread other([&] {
    for (int64_t i = 0; i < operations; ++i) {
      ping.wait();
      ++rounds;
      pong.signal();
    }
  });
  for (int64_t i = 0; i < operations; ++i) {
    ping.signal();
    pong.wait();
  }
  other.join();
  return rounds;
}

}  // namespace

void compare_threads(Suite& suite) {
  using peers::ConditionEvent;
  using peers::RecursiveMutex;
  suite.compare_elapsed({"mutex, uncontended", 1.0}, take_uncontended<OurMutex>,
                        Peer{"std::recursive_mutex", take_uncontended<RecursiveMutex>});
  suite.compare_elapsed({"mutex, two threads", 1 / 0.9}, take_contended<OurMutex>,
                        Peer{"std::recursive_mutex", take_contended<RecursiveMutex>});
  suite.compare_elapsed({"event ping-pong", 1.0}, play_ping_pong<OurEvent>,
                        Peer{"std::condition_variable", play_ping_pong<ConditionEvent>});
}

}  // namespace tvx::bench
