// Which program the process runs.
#pragma once

#include <span>
#include <string_view>

namespace tvx::os {

// The path of the running program's file, in `buffer`; empty when it is not to be had or does not
// fit. A program whose file has been removed or replaced keeps the path that it was started from.
std::string_view program_path(std::span<char> buffer);

}  // namespace tvx::os
