// The application global: the record that keeps what the users of one process share alive for as
// long as one of them holds a reference.
#pragma once

#include "tvxcomn/paths.h"

namespace tvx::runtime {

// Releases a list of loaded configuration files.
using DropFiles = void(void* files);

// Says how the list of a global is released when the global goes. The configuration store does so
// before it hangs the first file there; a list without it is fatal.
void set_drop_files(DropFiles* drop);

// Adds a reference to the process's global, and makes it with this value when there was none. Null
// when memory runs out.
com_appglobal* join_process_global(void* value);

// A global of its own with one reference. Null when memory runs out.
com_appglobal* make_global(void* value);

// Takes a reference back; with the last one the global goes. `as_process_global` says that the
// process's global is meant. What com_appglobal_drop calls a fatal usage error is one here.
void drop_global(com_appglobal& global, bool as_process_global);

}  // namespace tvx::runtime
