// What the running program is called.
#pragma once

#include <span>

namespace tvx::runtime {

enum class LetterCase { kAsIs, kLower, kUpper };

// Writes the file name of the running program without directory and extension, NUL-terminated and
// cut to fit. A name that only begins with a dot has no extension. `letter_case` maps ASCII
// letters. False, with an empty text, when the program's path is longer than 259 bytes or not to be
// had. The buffer is not empty.
bool program_name(std::span<char> buffer, LetterCase letter_case);

}  // namespace tvx::runtime
