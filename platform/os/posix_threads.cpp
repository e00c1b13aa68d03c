// Threads by POSIX and Linux: threads and keys by pthreads, priorities by nice values, which Linux
// keeps for each thread.
//
// To end a thread from outside, or to read its stack pointer, it is sent a real-time signal, and
// its handler does it. Ending it there by pthread_exit or a cancellation will not do: they unwind
// the stack from where the signal hit, and that ends the process as soon as a function there
// catches everything, does not throw, or was not at a call. Jumping back to the thread's first
// function and returning will not do either: the C library's end of a thread wants the heap, whose
// locks the thread may hold. So the handler takes the thread out of the queue that it waits in,
// clears its keys and leaves by the bare system call, by which the C library learns as usual that
// the thread can be joined. Nothing of the thread runs any more; what it held and had begun stays
// as it is.
#include <errno.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <csetjmp>
#include <mutex>
#include <new>

#include "os/os.hpp"
#include "tvxcomn/support.h"

namespace tvx::os {

// ---- The calling thread ------------------------------------------------------------------------

constinit thread_local CallingThread calling_thread __attribute__((tls_model("initial-exec")));

namespace {

void forget_id() {
  calling_thread.id.store(0, std::memory_order_relaxed);
}

const bool ids_are_forgotten = pthread_atfork(nullptr, nullptr, forget_id) == 0;

}  // namespace

uint64_t number_calling_thread() {
  static std::atomic<uint64_t> last{0};
  const uint64_t serial = last.fetch_add(1, std::memory_order_relaxed) + 1;
  calling_thread.serial.store(serial, std::memory_order_relaxed);
  return serial;
}

uint32_t thread_id() {
  uint32_t id = calling_thread.id.load(std::memory_order_relaxed);
  if (id == 0) [[unlikely]] {
    id = static_cast<uint32_t>(gettid());
    if (ids_are_forgotten) calling_thread.id.store(id, std::memory_order_relaxed);
  }
  return id;
}

void yield() {
  sched_yield();
}

// ---- Keys --------------------------------------------------------------------------------------

std::optional<uint32_t> create_key() {
  pthread_key_t key;
  if (pthread_key_create(&key, nullptr) != 0) return std::nullopt;
  return key;
}

bool drop_key(uint32_t key) {
  return pthread_key_delete(key) == 0;
}

bool set_key_value(uint32_t key, void* value) {
  return pthread_setspecific(key, value) == 0;
}

void* key_value(uint32_t key) {
  return pthread_getspecific(key);
}

// ---- What a thread and those who hold it share -------------------------------------------------

struct ThreadControl {
  ThreadControl(Thread::Routine* start, void* start_argument)
      : routine(start), argument(start_argument) {}

  Thread::Routine* const routine;
  void* const argument;

  pthread_t handle{};
  std::atomic<uint32_t> id{0};  // 0 until the thread takes requests

  // As long as the thread runs, and the guard is held, its id and its handle are its own.
  Lock guard;
  bool running = true;

  // Every request is answered by the stack pointer, the end of the thread by a null one.
  std::atomic<uint32_t> answers{0};
  std::atomic<void*> stack_pointer{nullptr};

  // How many ask the thread to end, and whether it has taken that up.
  std::atomic<uint32_t> end_requests{0};
  bool ended_on_request = false;  // to be read when it has ended
  Event ended{Event::Reset::kByHand};

  Lock joining;
  bool joined = false;

  std::jmp_buf exit;  // to the thread's first function
  uint32_t status = 0;

  std::atomic<int> users{2};  // the thread, and the object that stands for it

  void answer(void* top_of_stack) {
    stack_pointer.store(top_of_stack, std::memory_order_relaxed);
    answers.fetch_add(1, std::memory_order_release);
    wake_all(answers);
  }

  // By the thread itself, which is not ended meanwhile.
  void stop_running() {
    const std::lock_guard held(guard);
    running = false;
    answer(nullptr);
  }

  [[nodiscard]] bool is_running() {
    const EndDeferred deferred;
    const std::lock_guard held(guard);
    return running;
  }

  // False when nobody asks any more.
  bool take_end_request() {
    uint32_t requests = end_requests.load();
    while (requests != 0) {
      if (end_requests.compare_exchange_weak(requests, requests | kTaken)) return true;
    }
    return false;
  }

  // False when the thread has taken the request.
  bool withdraw_end_request() { return (end_requests.fetch_sub(1) & kTaken) == 0; }

  void leave() {
    if (users.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    this->~ThreadControl();
    comn_free(this);
  }

private:
  static constexpr uint32_t kTaken = 1U << 31;
};

namespace {

// How long a thread that does not answer is waited for: it may have blocked every signal.
constexpr std::chrono::seconds kPatience{5};

void* stack_pointer_of(const ucontext_t& context) {
#if defined(__x86_64__)
  return std::bit_cast<void*>(context.uc_mcontext.gregs[REG_RSP]);
#elif defined(__aarch64__)
  return std::bit_cast<void*>(context.uc_mcontext.sp);
#endif
}

void answer_request(int, siginfo_t*, void* context) {
  ThreadControl* const control = calling_thread.control.load(std::memory_order_relaxed);
  if (control == nullptr) return;
  const int error = errno;
  control->answer(stack_pointer_of(*static_cast<const ucontext_t*>(context)));
  if (control->end_requests.load() != 0) {
    calling_thread.must_end.store(true, std::memory_order_relaxed);
    const EndDeferred now_or_when_it_may;
  }
  errno = error;
}

// Takes the highest real-time signal that nobody handles; -1, no signal, when there is none.
int claim_signal() {
  struct sigaction action {};
  action.sa_sigaction = answer_request;
  action.sa_flags = SA_SIGINFO | SA_RESTART | SA_ONSTACK;
  sigfillset(&action.sa_mask);
  for (int signal = SIGRTMAX; signal >= SIGRTMIN; --signal) {
    struct sigaction before {};
    const bool is_free = sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL;
    if (is_free && sigaction(signal, &action, nullptr) == 0) return signal;
  }
  return -1;
}

int request_signal() {
  static const int signal = claim_signal();
  return signal;
}

void await_requests_taken(const ThreadControl& control) {
  while (control.id.load(std::memory_order_acquire) == 0) sleep_while(control.id, 0, kNever);
}

// Makes a thread look at what it is asked. False when it does not run, or cannot be sent the
// signal.
bool interrupt(ThreadControl& control) {
  await_requests_taken(control);
  const EndDeferred deferred;
  const std::lock_guard held(control.guard);
  return control.running && pthread_kill(control.handle, request_signal()) == 0;
}

void take_requests(ThreadControl& control) {
  calling_thread.control.store(&control, std::memory_order_relaxed);
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, request_signal());
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  control.id.store(thread_id(), std::memory_order_release);
  wake_all(control.id);
}

// What still asks the thread to end is content with the end that it comes to by itself.
void refuse_requests(ThreadControl& control) {
  const EndDeferred deferred;
  control.stop_running();
  calling_thread.control.store(nullptr, std::memory_order_relaxed);
}

// The thread's part in its record ends with its first function, also when pthread_exit or a
// cancellation unwinds that.
struct ThreadsPart {
  ThreadControl& control;

  ~ThreadsPart() {
    refuse_requests(control);
    control.ended.signal();
    control.leave();
  }
};

void* run(void* argument) {
  const ThreadsPart part{*static_cast<ThreadControl*>(argument)};
  take_requests(part.control);
  if (setjmp(part.control.exit) == 0)
    part.control.status = part.control.routine(part.control.argument);
  return std::bit_cast<void*>(uintptr_t{part.control.status});
}

bool create(ThreadControl& control, uint32_t stack_size) {
  constexpr size_t kLeastStack = 131'072;  // room for a signal's frame and a few calls
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  const bool created =
      (stack_size == 0 ||
       pthread_attr_setstacksize(&attributes, std::max<size_t>(stack_size, kLeastStack)) == 0) &&
      pthread_create(&control.handle, &attributes, run, &control) == 0;
  pthread_attr_destroy(&attributes);
  return created;
}

// From idle to time critical: the distance from the main thread's nice value. Clamped, the
// outermost are the ends of the range.
constexpr int kNiceDistances[] = {40, 10, 5, 0, -5, -10, -40};

}  // namespace

// ---- The end of a thread -----------------------------------------------------------------------

void end_if_asked() {
  calling_thread.must_end.store(false, std::memory_order_relaxed);
  ThreadControl* const control = calling_thread.control.load(std::memory_order_relaxed);
  if (control == nullptr || !control->take_end_request()) return;
  if (Waiter* const waiter = calling_thread.waiting.load(std::memory_order_relaxed))
    waiter->queue->leave(*waiter);
  // The C library gives the stack to a later thread, together with the values of keys that the end
  // of a thread would have cleared.
  for (pthread_key_t key = 0; key < PTHREAD_KEYS_MAX; ++key) pthread_setspecific(key, nullptr);
  control->stop_running();
  control->ended_on_request = true;
  control->ended.signal();
  for (;;) syscall(SYS_exit, 0);
}

void exit_thread(uint32_t status) {
  if (ThreadControl* const control = calling_thread.control.load(std::memory_order_relaxed)) {
    control->status = status;
    std::longjmp(control->exit, 1);
  }
  pthread_exit(std::bit_cast<void*>(uintptr_t{status}));
}

// ---- Threads -----------------------------------------------------------------------------------

Thread::~Thread() {
  if (control_ == nullptr) return;
  if (control_->ended.wait(kNow) && control_->ended_on_request) {
    wait(kNever);       // the C library does not clear away after such a thread by itself
    control_->leave();  // in the thread's place
  } else if (!control_->joined) {
    pthread_detach(control_->handle);
  }
  control_->leave();
}

bool Thread::start(Routine* routine, void* argument, uint32_t stack_size) {
  void* const block = comn_malloc(sizeof(ThreadControl));
  if (block == nullptr) return false;
  auto* const control = new (block) ThreadControl(routine, argument);
  if (!create(*control, stack_size)) {
    control->leave();
    control->leave();
    return false;
  }
  control_ = control;
  return true;
}

bool Thread::wait(Deadline deadline) {
  if (is_calling_thread() || !control_->ended.wait(deadline)) return false;
  const EndDeferred deferred;  // a join that is broken off could not be made again
  const std::lock_guard held(control_->joining);
  control_->joined = control_->joined || pthread_join(control_->handle, nullptr) == 0;
  return control_->joined;
}

// The calling thread may itself be ended while it waits here: two threads may end each other.
bool Thread::terminate() {
  control_->end_requests.fetch_add(1);
  if (interrupt(*control_)) control_->ended.wait(after(kPatience));
  if (control_->withdraw_end_request() && control_->is_running()) return false;
  return wait(kNever);
}

bool Thread::set_priority(Priority priority) {
  await_requests_taken(*control_);
  const EndDeferred deferred;
  const std::lock_guard held(control_->guard);
  if (!control_->running) return false;
  const int normal = getpriority(PRIO_PROCESS, static_cast<id_t>(getpid()));
  const int nice = std::clamp(normal + kNiceDistances[static_cast<size_t>(priority)], -20, 19);
  return setpriority(PRIO_PROCESS, control_->id.load(std::memory_order_relaxed), nice) == 0;
}

void* Thread::stack_pointer() {
  if (is_calling_thread()) return __builtin_frame_address(0);
  const uint32_t before = control_->answers.load(std::memory_order_relaxed);
  if (!interrupt(*control_)) return nullptr;
  const Deadline deadline = after(kPatience);
  while (control_->answers.load(std::memory_order_acquire) == before) {
    if (!sleep_while(control_->answers, before, deadline)) return nullptr;
  }
  return control_->stack_pointer.load(std::memory_order_relaxed);
}

}  // namespace tvx::os
