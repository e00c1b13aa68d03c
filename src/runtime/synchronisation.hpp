// The records behind the pointers that callers hold: an object of the operating-system layer each,
// in a heap block of its own. The library's own users make them here too and guard a mutex by
// std::lock_guard guard(mutex->object).
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

#include "os/os.hpp"
#include "tvxcomn/support.h"
#include "tvxcomn/threads.h"

namespace tvx::runtime {

// What stands in a living record, and is wiped out when it is dropped: so the use of a pointer to a
// dropped record, or to one of another kind, shows until the heap has given the block away again.
enum class Mark : uint32_t {
  kDropped = 0,
  kThread = 0x7468'7264,
  kMutex = 0x6D75'7478,
  kEvent = 0x6576'6E74,
  kSemaphore = 0x7365'6D61,
  kCondition = 0x636F'6E64
};

template <class Object, Mark living>
struct Record {
  template <class... Arguments>
  explicit Record(Arguments... arguments) : object(arguments...) {}
  ~Record() { mark.store(Mark::kDropped, std::memory_order_relaxed); }

  [[nodiscard]] bool is_living() const { return mark.load(std::memory_order_relaxed) == living; }

  Object object;
  std::atomic<Mark> mark{living};
};

}  // namespace tvx::runtime

#define TVX_RECORD(name, object, mark)                             \
  struct name : tvx::runtime::Record<object, tvx::runtime::mark> { \
    using Record::Record;                                          \
  }
TVX_RECORD(comn_thread, tvx::os::Thread, Mark::kThread);
TVX_RECORD(comn_event, tvx::os::Event, Mark::kEvent);
TVX_RECORD(comn_sem, tvx::os::Semaphore, Mark::kSemaphore);
TVX_RECORD(comn_cond, tvx::os::Condition, Mark::kCondition);
#undef TVX_RECORD

struct comn_mutex : tvx::runtime::Record<tvx::os::Mutex, tvx::runtime::Mark::kMutex> {
  std::byte reserved[16];  // callers know the block's size
};
static_assert(sizeof(comn_mutex) == 40);

namespace tvx::runtime {

// Null when memory runs out.
template <class Record, class... Arguments>
[[nodiscard]] Record* make_record(Arguments... arguments) {
  void* const block = comn_malloc(sizeof(Record));
  return block == nullptr ? nullptr : new (block) Record(arguments...);
}

template <class Record>
void drop_record(Record* record) {
  record->~Record();
  comn_free(record);
}

}  // namespace tvx::runtime
