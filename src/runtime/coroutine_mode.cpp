#include "runtime/coroutine_mode.hpp"

#include <atomic>

#include "os/os.hpp"

namespace tvx::runtime {
namespace {

std::atomic<bool> is_on{false};
os::Mutex control;

}  // namespace

bool start_coroutine_mode() {
  return !is_on.exchange(true);
}

void take_coroutine_control() {
  if (!is_on) return;
  control.lock();
  if (!is_on) control.unlock();  // the mode ended during the wait
}

void release_coroutine_control() {
  // Whether the mode is on or not: it may have ended since the thread took control.
  control.unlock();
}

void end_coroutine_mode() {
  if (!is_on.exchange(false)) return;
  while (control.unlock()) continue;
}

}  // namespace tvx::runtime
