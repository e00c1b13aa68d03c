// Coroutine mode: one lock of the process, which the threads that take control hold one at a time.
#pragma once

namespace tvx::runtime {

// False when the mode is on already.
bool start_coroutine_mode();

// These do nothing while the mode is off. A thread may take control several times.
void take_coroutine_control();
void release_coroutine_control();

// Gives the caller's control back, however often it took it, and turns the mode off.
void end_coroutine_mode();

}  // namespace tvx::runtime
