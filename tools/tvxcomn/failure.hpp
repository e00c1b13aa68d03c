// How a command ends: its exit statuses, and the exception that carries a message to main.
#pragma once

#include <stdexcept>

namespace tvx::tool {

inline constexpr int kAllWell = 0;
inline constexpr int kSomeFailed = 1;  // values or rows, each of them reported
inline constexpr int kStopped = 2;     // bad usage, or an input/output error

// Stops the command with kStopped. The message says what is wrong and, where the user can mend it,
// what to write instead.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace tvx::tool
