// Exported functions of threads.h.
#include "tvxcomn/threads.h"

#include <array>
#include <chrono>
#include <cstring>
#include <ctime>

#include "os/os.hpp"
#include "runtime/coroutine_mode.hpp"
#include "runtime/diagnosis.hpp"
#include "runtime/synchronisation.hpp"

namespace os = tvx::os;
namespace rt = tvx::runtime;

namespace {

constexpr std::chrono::milliseconds kTimeToEnd{1'000};

// The result's trace line names the line of the caller.
int32_t traced(bool succeeded, int32_t line = __builtin_LINE()) {
  return rt::traced(succeeded ? CS_SUCCEED : CS_FAIL, __FILE__, line);
}

int32_t traced_wait(bool succeeded, int32_t line = __builtin_LINE()) {
  return rt::traced(succeeded ? CS_SUCCEED : CS_TIMED_OUT, __FILE__, line);
}

// The object of a record, which is checked; the check names the line of the caller.
template <class Record>
auto& object_of(Record* record, int32_t line = __builtin_LINE()) {
  rt::require_pointer(record, __FILE__, line);
  rt::require(record->is_living(), __FILE__, line);
  return record->object;
}

// Makes a record and stores it.
template <class Record, class... Arguments>
int32_t create(Record** out, Arguments... arguments) {
  rt::require_pointer(out);
  *out = rt::make_record<Record>(arguments...);
  return traced(*out != nullptr);
}

template <class Record>
int32_t drop(Record* record, int32_t line = __builtin_LINE()) {
  object_of(record, line);
  rt::drop_record(record);
  return traced(true, line);
}

template <class Record>
int32_t drop_unless_null(Record* record, int32_t line = __builtin_LINE()) {
  return record == nullptr ? traced(false, line) : drop(record, line);
}

int32_t store_id(uint32_t value, void* id, int32_t size, int32_t* length) {
  rt::require_pointer(id);
  constexpr int32_t kLength = sizeof value;
  if (size < kLength) return traced(false);
  std::memcpy(id, &value, kLength);
  if (length != nullptr) *length = kLength;
  return traced(true);
}

os::Deadline deadline_of(int32_t timeout) {
  if (timeout == CS_NO_LIMIT) return os::kNever;
  return timeout == 0 ? os::kNow : os::after(std::chrono::milliseconds(timeout));
}

using enum os::Priority;
constexpr std::array kPriorities{kIdle,    kIdle,        kIdle,         kLowest,
                                 kLowest,  kBelowNormal, kBelowNormal,  kNormal,
                                 kNormal,  kNormal,      kAboveNormal,  kAboveNormal,
                                 kHighest, kHighest,     kTimeCritical, kTimeCritical};

}  // namespace

extern "C" {

// ---- Threads -----------------------------------------------------------------------------------

int32_t comn_create_thread_ex(comn_thread** thread, comn_thread_routine* routine, void* argument,
                              uint32_t stack_size) {
  rt::require_pointer(thread);
  rt::require_pointer(reinterpret_cast<const void*>(routine));
  *thread = nullptr;
  auto* const made = rt::make_record<comn_thread>();
  if (made == nullptr) return traced(false);
  if (!made->object.start(routine, argument, stack_size)) {
    rt::drop_record(made);
    return traced(false);
  }
  *thread = made;
  return traced(true);
}

int32_t comn_create_thread(comn_thread** thread, comn_thread_routine* routine, void* argument) {
  return comn_create_thread_ex(thread, routine, argument, 0);
}

int32_t comn_start_thread(comn_thread* thread) {
  object_of(thread);
  return traced(true);
}

int32_t comn_join_thread(comn_thread* thread) {
  return traced(object_of(thread).wait(os::kNever));
}

int32_t comn_detach_thread(comn_thread* thread) {
  return drop(thread);
}

void comn_exit_thread(const uint32_t* status) {
  os::exit_thread(status == nullptr ? 0 : *status);
}

int32_t comn_kill_thread(comn_thread* thread) {
  os::Thread& object = object_of(thread);
  if (object.is_calling_thread()) os::exit_thread(0);
  return traced(object.wait(os::after(kTimeToEnd)) || object.terminate());
}

int32_t comn_cancel_thread(comn_thread* thread) {
  os::Thread& object = object_of(thread);
  if (object.is_calling_thread()) {
    rt::drop_record(thread);
    os::exit_thread(0);
  }
  const bool ended = object.terminate();
  rt::drop_record(thread);
  return traced(ended);
}

void comn_yield(void) {
  os::yield();
}

int32_t comn_set_priority(comn_thread* thread, int32_t level) {
  os::Thread& object = object_of(thread);
  const auto index = static_cast<size_t>(level);
  return traced(index < kPriorities.size() && object.set_priority(kPriorities[index]));
}

void* comn_getsp(comn_thread* thread) {
  return object_of(thread).stack_pointer();
}

uint32_t comn_thread_id(void) {
  return os::thread_id();
}

int32_t comn_get_tid(void* id, int32_t size, int32_t* length) {
  return store_id(os::thread_id(), id, size, length);
}

int32_t comn_get_default_tid(void* id, int32_t size, int32_t* length) {
  return store_id(0, id, size, length);
}

int32_t comn_thread_equal(uint32_t a, uint32_t b) {
  return a == b ? 1 : 0;
}

// ---- Thread-local storage ----------------------------------------------------------------------

int32_t comn_create_key(uint32_t* key) {
  rt::require_pointer(key);
  const auto made = os::create_key();
  if (made) *key = *made;
  return traced(made.has_value());
}

int32_t comn_drop_key(uint32_t key) {
  return traced(os::drop_key(key));
}

int32_t comn_set_threaduserdata(uint32_t key, void* value) {
  return traced(os::set_key_value(key, value));
}

void* comn_get_threaduserdata(uint32_t key) {
  return os::key_value(key);
}

// ---- Mutexes -----------------------------------------------------------------------------------

int32_t comn_create_mutex(comn_mutex** mutex) {
  return create(mutex);
}

int32_t comn_take_mutex(comn_mutex* mutex) {
  object_of(mutex).lock();
  return traced(true);
}

int32_t comn_try_mutex(comn_mutex* mutex) {
  return traced(object_of(mutex).try_lock());
}

int32_t comn_release_mutex(comn_mutex* mutex) {
  object_of(mutex).unlock();
  return traced(true);
}

int32_t comn_delete_mutex(comn_mutex* mutex) {
  return drop_unless_null(mutex);
}

// ---- Events ------------------------------------------------------------------------------------

int32_t comn_create_event_ex(comn_event** event, int32_t kind) {
  return create(event,
                kind == COMN_EVENT_AUTO ? os::Event::Reset::kByWaiter : os::Event::Reset::kByHand);
}

int32_t comn_create_event(comn_event** event) {
  return comn_create_event_ex(event, COMN_EVENT_AUTO);
}

int32_t comn_waitfor_event(comn_event* event, int32_t timeout) {
  os::Event& object = object_of(event);
  rt::require(timeout >= 0 || timeout == CS_NO_LIMIT);
  return traced_wait(object.wait(deadline_of(timeout)));
}

int32_t comn_signal_event(comn_event* event) {
  object_of(event).signal();
  return traced(true);
}

int32_t comn_reset_event(comn_event* event) {
  object_of(event).reset();
  return traced(true);
}

int32_t comn_delete_event(comn_event* event) {
  return drop_unless_null(event);
}

// ---- Semaphores --------------------------------------------------------------------------------

int32_t comn_create_sem(comn_sem** semaphore, int32_t maximum) {
  rt::require_pointer(semaphore);
  *semaphore = nullptr;
  return maximum < 1 ? traced(false) : create(semaphore, static_cast<uint32_t>(maximum));
}

int32_t comn_release_sem(comn_sem* semaphore) {
  return traced(object_of(semaphore).release());
}

int32_t comn_waitfor_sem(comn_sem* semaphore, int32_t no_wait) {
  return traced_wait(object_of(semaphore).wait(no_wait == 0 ? os::kNever : os::kNow));
}

int32_t comn_delete_sem(comn_sem* semaphore) {
  return drop(semaphore);
}

// ---- Conditions --------------------------------------------------------------------------------

int32_t comn_create_cond(comn_cond** condition) {
  return create(condition);
}

int32_t comn_signal_cond(comn_cond* condition) {
  object_of(condition).signal();
  return traced(true);
}

int32_t comn_broadcast_cond(comn_cond* condition) {
  object_of(condition).broadcast();
  return traced(true);
}

int32_t comn_wait_cond(comn_cond* condition, comn_mutex* mutex) {
  return traced(object_of(condition).wait(object_of(mutex)));
}

int32_t comn_delete_cond(comn_cond* condition) {
  return drop_unless_null(condition);
}

// ---- Coroutine mode ----------------------------------------------------------------------------

int32_t comn_start_coroutine_mode(void) {
  return traced(rt::start_coroutine_mode());
}

int32_t comn_take_coroutine_control(void) {
  rt::take_coroutine_control();
  return traced(true);
}

int32_t comn_release_coroutine_control(void) {
  rt::release_coroutine_control();
  return traced(true);
}

int32_t comn_end_coroutine_mode(void) {
  rt::end_coroutine_mode();
  return traced(true);
}

// ---- Memory and time ---------------------------------------------------------------------------

void* com_memsetfn_nt(void* destination, int value, size_t count) {
  rt::require_pointer(destination);
  return std::memset(destination, value, count);
}

void* com_memmovefn_nt(void* destination, const void* source, size_t count) {
  rt::require_pointer(destination);
  rt::require_pointer(source);
  return std::memmove(destination, source, count);
}

int com_memcmpfn_nt(const void* a, const void* b, size_t count) {
  rt::require_pointer(a);
  rt::require_pointer(b);
  return std::memcmp(a, b, count);
}

int64_t com_timefn_nt(int64_t* time) {
  const int64_t now = std::time(nullptr);
  if (time != nullptr) *time = now;
  return now;
}

}  // extern "C"
