// Bytes and tables as text that is safe to print: one line stays one line, whatever the bytes are.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tvx::tool {

// Printable characters of ASCII and UTF-8 as they are; backslash, tab and line ends as "\\", "\t",
// "\n", "\r"; every other byte as "\x" and two hexadecimal digits. Reads each byte once and
// allocates only the result.
[[nodiscard]] std::string escaped(std::string_view bytes);

// The escaped text between double quotes, quotes inside as "\""; cut behind about 40 bytes of the
// value, with "..." and the whole length behind the closing quote.
[[nodiscard]] std::string quoted_for_display(std::string_view bytes);

// Two lower-case hexadecimal digits a byte.
[[nodiscard]] std::string hexadecimal(std::string_view bytes);

// Pads with blanks to a width in characters.
[[nodiscard]] std::string left_aligned(std::string_view text, std::size_t width);
[[nodiscard]] std::string right_aligned(std::string_view text, std::size_t width);
// The characters of a text in UTF-8.
[[nodiscard]] std::size_t width_of(std::string_view text);

}  // namespace tvx::tool
