#include "os/os.hpp"

namespace tvx::os {

bool Condition::wait(Mutex& mutex) {
  if (!mutex.is_owned()) return false;
  Waiter waiter;
  const bool passed = queue_.take_or_enter(waiter);
  mutex.unlock();
  if (!passed) queue_.await(waiter, kNever);
  mutex.lock();
  return true;
}

}  // namespace tvx::os
