// Words to sleep on by Linux's futexes.
#include <errno.h>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <climits>

#include "os/word.hpp"

namespace tvx::os {
namespace {

long futex(const std::atomic<uint32_t>& word, int operation, uint32_t value,
           const timespec* deadline) {
  static_assert(sizeof word == sizeof value);
  return syscall(SYS_futex, &word, operation | FUTEX_PRIVATE_FLAG, value, deadline, nullptr,
                 FUTEX_BITSET_MATCH_ANY);
}

timespec time_of(Deadline deadline) {
  const auto time = deadline.time_since_epoch();  // of CLOCK_MONOTONIC, as the futex counts
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  return {seconds.count(), std::chrono::nanoseconds(time - seconds).count()};
}

}  // namespace

bool sleep_while(const std::atomic<uint32_t>& word, uint32_t value, Deadline deadline) {
  if (deadline == kNever) {
    futex(word, FUTEX_WAIT_BITSET, value, nullptr);
    return true;
  }
  const timespec time = time_of(deadline);
  return futex(word, FUTEX_WAIT_BITSET, value, &time) == 0 || errno != ETIMEDOUT;
}

void wake_one(const std::atomic<uint32_t>& word) {
  futex(word, FUTEX_WAKE, 1, nullptr);
}

void wake_all(const std::atomic<uint32_t>& word) {
  futex(word, FUTEX_WAKE, INT_MAX, nullptr);
}

}  // namespace tvx::os
