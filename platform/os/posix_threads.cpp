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

[[maybe_unused]] const int fork_handler = pthread_atfork(nullptr, nullptr, forget_id);

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
    calling_thread.id.store(id, std::memory_order_relaxed);
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

enum class Request : uint32_t { kNothing, kStackPointer, kEnd };

struct ThreadControl {
  ThreadControl(Thread::Routine* start, void* start_argument)
      : routine(start), argument(start_argument) {}

  Thread::Routine* const routine;
  void* const argument;

  pthread_t handle{};
  std::atomic<uint32_t> id{0};  // 0 until the thread takes requests

  // Guards what follows, and is held while a request is under way: as long, the thread runs.
  Mutex guard;
  bool running = true;
  bool joined = false;

  std::atomic<Request> request{Request::kNothing};
  Event answered{Event::Reset::kByWaiter};
  void* stack_pointer = nullptr;  // the answer
  Event ended{Event::Reset::kByHand};

  std::jmp_buf exit;  // to the thread's first function
  uint32_t status = 0;

  std::atomic<int> users{2};  // the thread, and the object that stands for it

  void leave() {
    if (users.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    this->~ThreadControl();
    comn_free(this);
  }
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
  switch (control->request.exchange(Request::kNothing)) {
    case Request::kNothing:
      break;
    case Request::kStackPointer:
      control->stack_pointer = stack_pointer_of(*static_cast<const ucontext_t*>(context));
      control->answered.signal();
      break;
    case Request::kEnd:
      calling_thread.must_end.store(true, std::memory_order_relaxed);
      const EndDeferred now_or_when_it_may;
      break;
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

// Poses a request to a running thread, whose guard is held, and waits for the answer.
bool ask(ThreadControl& control, Request request, Event& answer) {
  await_requests_taken(control);
  control.request.store(request);
  if (pthread_kill(control.handle, request_signal()) == 0 && answer.wait(after(kPatience)))
    return true;
  const bool was_not_seen = control.request.exchange(Request::kNothing) == request;
  return !was_not_seen && answer.wait(kNever);
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

void* run(void* argument) {
  auto& control = *static_cast<ThreadControl*>(argument);
  take_requests(control);
  if (setjmp(control.exit) == 0) control.status = control.routine(control.argument);
  {
    const std::lock_guard guard(control.guard);
    control.running = false;
  }
  calling_thread.control.store(nullptr, std::memory_order_relaxed);
  const uintptr_t status = control.status;
  control.ended.signal();
  control.leave();
  return std::bit_cast<void*>(status);
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

void end_calling_thread() {
  calling_thread.must_end.store(false, std::memory_order_relaxed);
  if (Waiter* const waiter = calling_thread.waiting.load(std::memory_order_relaxed))
    waiter->queue->leave(*waiter);
  // The C library gives the stack to a later thread, together with the values of keys that the end
  // of a thread would have cleared.
  for (pthread_key_t key = 0; key < PTHREAD_KEYS_MAX; ++key) pthread_setspecific(key, nullptr);
  calling_thread.control.load(std::memory_order_relaxed)->ended.signal();
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
  {
    const std::lock_guard guard(control_->guard);
    if (!control_->joined) pthread_detach(control_->handle);
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
  const EndDeferred deferred;
  const std::lock_guard guard(control_->guard);
  control_->joined = control_->joined || pthread_join(control_->handle, nullptr) == 0;
  return control_->joined;
}

bool Thread::terminate() {
  const EndDeferred deferred;
  {
    const std::lock_guard guard(control_->guard);
    if (control_->running) {
      if (!ask(*control_, Request::kEnd, control_->ended)) return false;
      control_->running = false;
      control_->leave();  // in the thread's place
    }
  }
  return wait(kNever);
}

bool Thread::set_priority(Priority priority) {
  const EndDeferred deferred;
  const std::lock_guard guard(control_->guard);
  if (!control_->running) return false;
  await_requests_taken(*control_);
  const int normal = getpriority(PRIO_PROCESS, static_cast<id_t>(getpid()));
  const int nice = std::clamp(normal + kNiceDistances[static_cast<size_t>(priority)], -20, 19);
  return setpriority(PRIO_PROCESS, control_->id.load(std::memory_order_relaxed), nice) == 0;
}

void* Thread::stack_pointer() {
  if (is_calling_thread()) return __builtin_frame_address(0);
  const EndDeferred deferred;
  const std::lock_guard guard(control_->guard);
  const bool answered =
      control_->running && ask(*control_, Request::kStackPointer, control_->answered);
  return answered ? control_->stack_pointer : nullptr;
}

}  // namespace tvx::os
