#include "display.hpp"

#include <algorithm>

namespace tvx::tool {

namespace {

constexpr char kDigits[] = "0123456789abcdef";
constexpr std::size_t kShownBytes = 40;

void append_hexadecimal(std::string& out, unsigned char byte) {
  out += kDigits[byte >> 4];
  out += kDigits[byte & 15];
}

bool is_continuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

struct Sequence {
  std::size_t length;
  unsigned smallest_second;  // shorter forms of the same character, and surrogates, begin outside
                             // these two
  unsigned largest_second;
};

// By the first byte, as the table of well-formed byte sequences in the Unicode standard,
// section 3.9.
Sequence sequence_of(unsigned char first) {
  if (first == 0xC2) return {2, 0xA0, 0xBF};  // from 80 to 9F stand control characters
  if (first >= 0xC3 && first <= 0xDF) return {2, 0x80, 0xBF};
  if (first == 0xE0) return {3, 0xA0, 0xBF};
  if (first == 0xED) return {3, 0x80, 0x9F};
  if (first >= 0xE1 && first <= 0xEF) return {3, 0x80, 0xBF};
  if (first == 0xF0) return {4, 0x90, 0xBF};
  if (first >= 0xF1 && first <= 0xF3) return {4, 0x80, 0xBF};
  if (first == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

// The length of the printable character of more than one byte that begins the text; 0 when none
// does.
std::size_t wide_character(std::string_view text) {
  const Sequence sequence = sequence_of(static_cast<unsigned char>(text[0]));
  if (sequence.length == 0 || text.size() < sequence.length) return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  if (second < sequence.smallest_second || second > sequence.largest_second) return 0;
  const std::string_view rest = text.substr(2, sequence.length - 2);
  return std::all_of(rest.begin(), rest.end(), is_continuation) ? sequence.length : 0;
}

void append_escape(std::string& out, char byte) {
  switch (byte) {
    case '\\':
      out += "\\\\";
      break;
    case '\t':
      out += "\\t";
      break;
    case '\n':
      out += "\\n";
      break;
    case '\r':
      out += "\\r";
      break;
    default:
      out += "\\x";
      append_hexadecimal(out, static_cast<unsigned char>(byte));
  }
}

}  // namespace

std::string escaped(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  while (!bytes.empty()) {
    const char byte = bytes.front();
    const bool plain = byte >= ' ' && byte <= '~' && byte != '\\';
    const std::size_t shown = plain ? 1 : wide_character(bytes);
    if (shown == 0) append_escape(out, byte);
    out += bytes.substr(0, shown);
    bytes.remove_prefix(std::max<std::size_t>(shown, 1));
  }
  return out;
}

std::string quoted_for_display(std::string_view bytes) {
  std::string_view shown = bytes;
  if (bytes.size() > kShownBytes) {
    std::size_t end = kShownBytes;
    while (end > kShownBytes - 4 && is_continuation(bytes[end])) --end;
    shown = bytes.substr(0, end);
  }
  std::string out = "\"";
  for (const char byte : escaped(shown)) {
    if (byte == '"') out += '\\';
    out += byte;
  }
  out += '"';
  if (shown.size() != bytes.size()) out += "... (" + std::to_string(bytes.size()) + " bytes)";
  return out;
}

std::string hexadecimal(std::string_view bytes) {
  std::string out;
  out.reserve(2 * bytes.size());
  for (const char byte : bytes) append_hexadecimal(out, static_cast<unsigned char>(byte));
  return out;
}

std::size_t width_of(std::string_view text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), is_continuation));
}

std::string left_aligned(std::string_view text, std::size_t width) {
  const std::size_t used = std::min(width_of(text), width);
  return std::string(text).append(width - used, ' ');
}

std::string right_aligned(std::string_view text, std::size_t width) {
  const std::size_t used = std::min(width_of(text), width);
  return std::string(width - used, ' ').append(text);
}

}  // namespace tvx::tool
