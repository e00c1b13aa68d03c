// Locks of the C++ standard library, called out of line.
#pragma once

#include <condition_variable>
#include <mutex>

#include "tvxcomn/export.h"

namespace tvx::bench::peers {

class RecursiveMutex {
public:
  TVXCOMN_API void take();
  TVXCOMN_API void release();

private:
  std::recursive_mutex mutex_;
};

// An event that lets one waiting thread through for each signal, by a condition variable.
class ConditionEvent {
public:
  TVXCOMN_API void signal();
  TVXCOMN_API void wait();

private:
  std::mutex mutex_;
  std::condition_variable condition_;
  bool is_signalled_ = false;
};

}  // namespace tvx::bench::peers
