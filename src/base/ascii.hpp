// Classes and cases of ASCII characters, whatever the process's locale. No byte above 127 belongs
// to a class or has another case. What a character set says of its characters is in charset/.
#pragma once

namespace tvx::base {

[[nodiscard]] constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

[[nodiscard]] constexpr bool is_upper(char c) {
  return c >= 'A' && c <= 'Z';
}

[[nodiscard]] constexpr bool is_lower(char c) {
  return c >= 'a' && c <= 'z';
}

[[nodiscard]] constexpr bool is_letter(char c) {
  return is_upper(c) || is_lower(c);
}

// What separates words of a line.
[[nodiscard]] constexpr bool is_blank_or_tab(char c) {
  return c == ' ' || c == '\t';
}

// The white space of the C language: a blank, or one of the five bytes from the tab to the carriage
// return.
[[nodiscard]] constexpr bool is_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// The other case of a letter; any other character as it is.
[[nodiscard]] constexpr char to_lower(char c) {
  return is_upper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] constexpr char to_upper(char c) {
  return is_lower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace tvx::base
