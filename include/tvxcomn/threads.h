/* Threads, thread-local storage, mutexes, events, semaphores, conditions and coroutine mode.
 *
 * Results are CS_SUCCEED, CS_FAIL and, where a wait may end without what it waited for,
 * CS_TIMED_OUT. Objects are made through an out pointer, which is null after CS_FAIL (memory or
 * another resource ran out), and belong to the caller until deleted; deleting one is for the last
 * user, when no thread is in a call on it. A null pointer is a fatal usage error where nothing else
 * is said, and so is, as far as it shows, the use of an object that was deleted or is of another
 * kind. Everything may be called from any thread at any time, but not from a signal handler.
 * docs/threads.md tells what blocks and what ending a thread leaves behind. */
#ifndef TVXCOMN_THREADS_H
#define TVXCOMN_THREADS_H

#include "tvxcomn/datatypes.h"

TVXCOMN_BEGIN

typedef struct comn_thread comn_thread;
typedef struct comn_mutex comn_mutex;
typedef struct comn_event comn_event;
typedef struct comn_sem comn_sem;
typedef struct comn_cond comn_cond;

/* ---- Threads ----------------------------------------------------------------------------- */

/* What a thread runs; its result is the thread's status, which nothing reads. */
typedef uint32_t comn_thread_routine(void* argument);

/* Starts a thread, which runs at once, with a stack of so many bytes (0: the system's default; less
 * than 128 KiB is raised to that). The argument is the routine's and may be null. */
TVXCOMN_API int32_t comn_create_thread_ex(comn_thread** thread, comn_thread_routine* routine,
                                          void* argument, uint32_t stack_size);
TVXCOMN_API int32_t comn_create_thread(comn_thread** thread, comn_thread_routine* routine,
                                       void* argument);

/* Nothing is left to do. Returns CS_SUCCEED. */
TVXCOMN_API int32_t comn_start_thread(comn_thread* thread);

/* Waits without limit until the thread has ended, its thread-local destructors included. Several
 * threads may wait, and again when it has ended. CS_FAIL when the thread is the calling one. */
TVXCOMN_API int32_t comn_join_thread(comn_thread* thread);

/* Frees the record; the thread, if it has not ended, runs on. Returns CS_SUCCEED. */
TVXCOMN_API int32_t comn_detach_thread(comn_thread* thread);

/* Ends the calling thread with a status, 0 when the pointer is null. A thread started here leaves
 * objects on its stack as they are, and its thread-local ones are destroyed. Any other thread, the
 * main one included, ends as by pthread_exit: the stack is unwound, which a function on it that
 * does not throw (noexcept) or catches everything turns into the end of the process. */
TVXCOMN_API void comn_exit_thread(const uint32_t* status) __attribute__((noreturn));

/* Waits up to 1,000 ms until the thread has ended by itself, else ends it. CS_FAIL only when the
 * thread could not be ended, and runs on: it blocks every signal, or the system keeps it from
 * seeing one, for 5 s. A thread that ends itself this way ends at once, as by comn_exit_thread. */
TVXCOMN_API int32_t comn_kill_thread(comn_thread* thread);

/* Ends the thread at once, unless it has ended, and frees the record in any case. CS_FAIL as from
 * comn_kill_thread. */
TVXCOMN_API int32_t comn_cancel_thread(comn_thread* thread);

/* Lets another thread run. */
TVXCOMN_API void comn_yield(void);

/* Sets the priority: level 0 to 2 idle, 3 and 4 lowest, 5 and 6 below normal, 7 to 9 normal, 10 and
 * 11 above normal, 12 and 13 highest, 14 and 15 time critical. On Linux these are nice values
 * relative to the main thread's: 19 (the end of the range), +10, +5, 0, -5, -10, -20 (its other
 * end). CS_FAIL for another level, when the thread has ended, and when the process may not lower a
 * nice value (CAP_SYS_NICE, RLIMIT_NICE): Linux lets anybody raise it, but not lower it again, not
 * even to what it was. The priority is then as before. */
TVXCOMN_API int32_t comn_set_priority(comn_thread* thread, int32_t level);

/* The thread's stack pointer at this moment; null when it has ended, or does not let itself be
 * asked (as above, for comn_kill_thread). System calls in which the thread waits are restarted
 * where the system restarts them after a signal. */
TVXCOMN_API void* comn_getsp(comn_thread* thread);

/* The system's number of the calling thread, never 0. */
TVXCOMN_API uint32_t comn_thread_id(void);

/* Stores the calling thread's number, or 0 ("no thread"), as a uint32_t and, unless `length` is
 * null, its length, 4. CS_FAIL, with nothing stored, when `size` is below 4. */
TVXCOMN_API int32_t comn_get_tid(void* id, int32_t size, int32_t* length);
TVXCOMN_API int32_t comn_get_default_tid(void* id, int32_t size, int32_t* length);

/* 1 when both are the same, else 0. */
TVXCOMN_API int32_t comn_thread_equal(uint32_t a, uint32_t b);

/* ---- Thread-local storage ---------------------------------------------------------------- */

/* Makes a key, under which every thread has a pointer of its own, null at first. CS_FAIL when none
 * is left: the process has 1,024 of them for everybody in it. */
TVXCOMN_API int32_t comn_create_key(uint32_t* key);

/* Frees a key. CS_FAIL when there is none of that number. */
TVXCOMN_API int32_t comn_drop_key(uint32_t key);

/* Store and return the calling thread's pointer. The pointer may be null; CS_FAIL, or null, when
 * there is no such key. */
TVXCOMN_API int32_t comn_set_threaduserdata(uint32_t key, void* value);
TVXCOMN_API void* comn_get_threaduserdata(uint32_t key);

/* ---- Mutexes ----------------------------------------------------------------------------- */

/* Makes a re-entrant mutex, in a block of 40 bytes. */
TVXCOMN_API int32_t comn_create_mutex(comn_mutex** mutex);

/* Waits until the calling thread owns the mutex. The owner may take it again, and releases it as
 * often as it took it. Returns CS_SUCCEED. */
TVXCOMN_API int32_t comn_take_mutex(comn_mutex* mutex);

/* Takes the mutex if that is possible at once, else CS_FAIL. */
TVXCOMN_API int32_t comn_try_mutex(comn_mutex* mutex);

/* Returns CS_SUCCEED. From a thread that does not own the mutex it does nothing. */
TVXCOMN_API int32_t comn_release_mutex(comn_mutex* mutex);

/* Deletes a mutex, which nobody should own. CS_FAIL when the pointer is null. */
TVXCOMN_API int32_t comn_delete_mutex(comn_mutex* mutex);

/* ---- Events ------------------------------------------------------------------------------ */

#define COMN_EVENT_AUTO 1 /* a signal lets one waiting thread, or else the next, through */

/* Makes an event, not signalled. One of any kind but COMN_EVENT_AUTO is reset by hand: signalled,
 * it lets every thread through until it is reset. comn_create_event makes one of COMN_EVENT_AUTO.
 */
TVXCOMN_API int32_t comn_create_event_ex(comn_event** event, int32_t kind);
TVXCOMN_API int32_t comn_create_event(comn_event** event);

#define CS_NO_LIMIT (-9999) /* as a time-out: none */

/* Waits until the event is signalled, up to so many milliseconds: CS_TIMED_OUT. Any negative number
 * but CS_NO_LIMIT is a fatal usage error. */
TVXCOMN_API int32_t comn_waitfor_event(comn_event* event, int32_t timeout);

/* Signal the event; take its signal back. Return CS_SUCCEED. */
TVXCOMN_API int32_t comn_signal_event(comn_event* event);
TVXCOMN_API int32_t comn_reset_event(comn_event* event);

/* CS_FAIL when the pointer is null. */
TVXCOMN_API int32_t comn_delete_event(comn_event* event);

/* ---- Semaphores -------------------------------------------------------------------------- */

/* Makes a semaphore with a count of 0. CS_FAIL also when the maximum is below 1. */
TVXCOMN_API int32_t comn_create_sem(comn_sem** semaphore, int32_t maximum);

/* Adds a unit, which a waiting thread has at once. CS_FAIL when the count is at its maximum. */
TVXCOMN_API int32_t comn_release_sem(comn_sem* semaphore);

/* Takes a unit. With `no_wait` 0 it waits for one, else it only tries: CS_TIMED_OUT. */
TVXCOMN_API int32_t comn_waitfor_sem(comn_sem* semaphore, int32_t no_wait);

TVXCOMN_API int32_t comn_delete_sem(comn_sem* semaphore);

/* ---- Conditions -------------------------------------------------------------------------- */

TVXCOMN_API int32_t comn_create_cond(comn_cond** condition);

/* Let one thread through that waits, or else the next that will; let through every thread that
 * waits now, and no other. Return CS_SUCCEED. */
TVXCOMN_API int32_t comn_signal_cond(comn_cond* condition);
TVXCOMN_API int32_t comn_broadcast_cond(comn_cond* condition);

/* Releases the mutex once, waits without limit, and takes it again. The thread counts as waiting
 * before the mutex is free, so what is signalled under the mutex is not missed. CS_FAIL, without a
 * wait, when the calling thread does not own the mutex; one that owns it more than once keeps it
 * while it waits. */
TVXCOMN_API int32_t comn_wait_cond(comn_cond* condition, comn_mutex* mutex);

/* CS_FAIL when the pointer is null. */
TVXCOMN_API int32_t comn_delete_cond(comn_cond* condition);

/* ---- Coroutine mode: of the threads that take control, one runs at a time ---------------- */

/* Turns the mode on for the process. CS_FAIL when it is on. */
TVXCOMN_API int32_t comn_start_coroutine_mode(void);

/* Take control, waiting until no other thread has it, and give it back. A thread may take it
 * several times. They do nothing while the mode is off. Return CS_SUCCEED. */
TVXCOMN_API int32_t comn_take_coroutine_control(void);
TVXCOMN_API int32_t comn_release_coroutine_control(void);

/* Turns the mode off; the calling thread has control, and gives it back. Threads that wait for it
 * go on without it. Returns CS_SUCCEED. */
TVXCOMN_API int32_t comn_end_coroutine_mode(void);

/* ---- Memory and time, as the C library's namesakes --------------------------------------- */

TVXCOMN_API void* com_memsetfn_nt(void* destination, int value, size_t count);
TVXCOMN_API void* com_memmovefn_nt(void* destination, const void* source, size_t count);
TVXCOMN_API int com_memcmpfn_nt(const void* a, const void* b, size_t count);

/* Seconds since 1970-01-01 00:00 UTC, also stored unless the pointer is null. */
TVXCOMN_API int64_t com_timefn_nt(int64_t* time);

TVXCOMN_END

#endif
