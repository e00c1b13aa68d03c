// What the fatal path needs of signals beside raising one.
#pragma once

namespace tvx::os {

// Lets SIGABRT reach the calling thread again.
void unblock_abort_signal();

}  // namespace tvx::os
