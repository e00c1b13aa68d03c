// The references are counted under the record's own mutex, which the first one creates and the last
// one deletes. So that no call takes a mutex while another deletes it, the calls that use the
// process's global are counted too: its mutex stays until the last of them has left. What guards
// that count is held for a few instructions only and never while waiting for the record's mutex, so
// a caller that holds the record's mutex may take a further reference.
#include "runtime/application_global.hpp"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>
#include <utility>

#include "runtime/diagnosis.hpp"
#include "runtime/synchronisation.hpp"
#include "tvxcomn/support.h"

namespace tvx::runtime {
namespace {

constinit std::atomic<DropFiles*> drop_files{nullptr};

constinit struct {
  os::Lock guard;  // of `calls`, and of the creation and deletion of the record's mutex
  int32_t calls = 0;
  com_appglobal record{};
} process;

// A call that uses the process's global. It keeps the record's mutex in being.
class ProcessCall {
public:
  enum class First { kFails, kCreatesMutex };

  explicit ProcessCall(First first) {
    const os::EndDeferred deferred;
    const std::lock_guard lock(process.guard);
    if (process.record.mutex == nullptr && first == First::kCreatesMutex)
      process.record.mutex = make_record<comn_mutex>();
    entered_ = process.record.mutex != nullptr;
    if (entered_) ++process.calls;
  }
  ~ProcessCall() {
    if (!entered_) return;
    const os::EndDeferred deferred;
    const std::lock_guard lock(process.guard);
    // Only calls under way change the references, and there is none any more.
    if (--process.calls == 0 && process.record.references == 0)
      drop_record(std::exchange(process.record.mutex, nullptr));
  }
  ProcessCall(const ProcessCall&) = delete;
  ProcessCall& operator=(const ProcessCall&) = delete;

  [[nodiscard]] bool entered() const { return entered_; }

private:
  bool entered_;
};

void add_reference(com_appglobal& global, void* value) {
  const std::lock_guard lock(global.mutex->object);
  if (global.references++ == 0) global.value = value;
}

// Everything but the mutex, which the caller holds.
void clear(com_appglobal& global) {
  require(std::all_of(std::begin(global.counters), std::end(global.counters),
                      [](int32_t counter) { return counter == 0; }));
  global.value = nullptr;
  if (global.files == nullptr) return;
  DropFiles* const drop = drop_files.load(std::memory_order_acquire);
  require(drop != nullptr);
  drop(std::exchange(global.files, nullptr));
}

// Returns the references that are left.
int32_t take_reference(com_appglobal& global) {
  const std::lock_guard lock(global.mutex->object);
  const int32_t left = --global.references;
  require(left >= 0);
  if (left == 0) clear(global);
  return left;
}

void drop_own_global(com_appglobal& global) {
  require(global.mutex != nullptr && global.mutex->is_living());
  if (take_reference(global) > 0) return;
  drop_record(global.mutex);
  comn_free(&global);
}

}  // namespace

void set_drop_files(DropFiles* drop) {
  drop_files.store(drop, std::memory_order_release);
}

com_appglobal* join_process_global(void* value) {
  const ProcessCall call(ProcessCall::First::kCreatesMutex);
  if (!call.entered()) return nullptr;
  add_reference(process.record, value);
  return &process.record;
}

com_appglobal* make_global(void* value) {
  auto* const global = static_cast<com_appglobal*>(comn_calloc(1, sizeof(com_appglobal)));
  if (global == nullptr) return nullptr;
  global->mutex = make_record<comn_mutex>();
  if (global->mutex == nullptr) {
    comn_free(global);
    return nullptr;
  }
  add_reference(*global, value);
  return global;
}

void drop_global(com_appglobal& global, bool as_process_global) {
  if (&global != &process.record) return drop_own_global(global);
  require(as_process_global);
  const ProcessCall call(ProcessCall::First::kFails);
  require(call.entered());
  take_reference(global);
}

}  // namespace tvx::runtime
