// Signal masks of threads.
#include <signal.h>

#include "os/signals.hpp"

namespace tvx::os {

void unblock_abort_signal() {
  sigset_t abort_only;
  sigemptyset(&abort_only);
  sigaddset(&abort_only, SIGABRT);
  pthread_sigmask(SIG_UNBLOCK, &abort_only, nullptr);
}

}  // namespace tvx::os
