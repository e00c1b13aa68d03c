#include "scanner.hpp"

#include <cstring>
#include <string_view>

#include "base/ascii.hpp"
#include "base/hexadecimal.hpp"

namespace tvx::intl {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

using base::is_blank_or_tab;

bool is_comment_mark(char c) {
  return c == ';' || c == '#';
}

bool is_control(char c) {
  return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7F';
}

// Follows a run of text and remembers where its last byte that is no blank ends.
class Trimmed {
public:
  explicit Trimmed(char* begin) : begin_(begin), end_(begin) {}
  void pass(char* byte) {
    after_blank_ = is_blank_or_tab(*byte);
    if (after_blank_) return;
    if (end_ == begin_) begin_ = byte;
    end_ = byte + 1;
  }
  bool after_blank() const { return after_blank_; }
  bool empty() const { return begin_ == end_; }
  size_t length() const { return static_cast<size_t>(end_ - begin_); }
  char* terminate() {
    *end_ = '\0';
    return begin_;
  }

private:
  char* begin_;
  char* end_;
  bool after_blank_ = false;
};

}  // namespace

Scanner::Scanner(char* text, size_t size) : next_(text), end_(text + size) {
  if (std::string_view(text, size).starts_with(kByteOrderMark)) next_ += kByteOrderMark.size();
}

void Scanner::fail(ErrorKind kind, int32_t line) {
  if (error_ == 0) error_ = error_number(kind, line);
  has_value_ = false;
}

char* Scanner::fail_here(ErrorKind kind) {
  fail(kind, line_);
  return nullptr;
}

// A NUL behind the end, whatever the byte there has become.
char Scanner::peek(size_t ahead) const {
  return ahead < static_cast<size_t>(end_ - next_) ? next_[ahead] : '\0';
}

bool Scanner::at_line_end() const {
  return next_ == end_ || peek() == '\n' || (peek() == '\r' && peek(1) == '\n');
}

// Whether an ordinary byte of the line comes next. A control character fails.
bool Scanner::inside_line() {
  if (at_line_end()) return false;
  if (!is_control(peek())) return true;
  fail_here(ErrorKind::kControlByte);
  return false;
}

bool Scanner::pass_line_end() {
  if (next_ == end_ || !at_line_end()) return false;
  next_ += peek() == '\r' ? 2 : 1;
  ++line_;
  return true;
}

// Passes blanks, and a comment after them.
void Scanner::pass_blanks(bool comment_may_begin) {
  for (; is_blank_or_tab(peek()); ++next_) comment_may_begin = true;
  if (!comment_may_begin || !is_comment_mark(peek())) return;
  while (inside_line()) ++next_;
}

// From the start of a line, passes blank lines and comments.
void Scanner::pass_to_text() {
  do {
    pass_blanks(true);
  } while (pass_line_end());
}

bool Scanner::at_piece() const {
  return peek() == '"' || (peek() == '0' && peek(1) == 'x');
}

char* Scanner::next_section() {
  while (next_entry() != nullptr) {
  }
  if (error_ != 0 || next_ == end_) return nullptr;
  return read_section_name();
}

char* Scanner::next_entry() {
  while (next_value() != nullptr) {
  }
  if (error_ != 0) return nullptr;
  pass_to_text();
  if (error_ != 0 || next_ == end_ || peek() == '[') return nullptr;
  return read_key();
}

char* Scanner::next_value() {
  if (!has_value_) return nullptr;
  text_line_ = line_;
  return at_piece() ? read_pieces() : read_plain();
}

char* Scanner::read_section_name() {
  text_line_ = line_;
  Trimmed name(++next_);
  for (; inside_line() && peek() != ']'; ++next_) name.pass(next_);
  if (error_ != 0) return nullptr;
  if (peek() != ']') return fail_here(ErrorKind::kBracketMissing);
  if (name.empty()) return fail_here(ErrorKind::kNameMissing);
  ++next_;
  pass_blanks(false);
  if (error_ != 0) return nullptr;
  if (!at_line_end()) return fail_here(ErrorKind::kTextAfterHeader);
  pass_line_end();
  in_section_ = true;
  return name.terminate();
}

char* Scanner::read_key() {
  // Else what was meant to continue a value, but comes after one that has ended, would be a key.
  if (at_piece() || peek() == ',') return fail_here(ErrorKind::kBadKey);
  text_line_ = line_;
  Trimmed key(next_);
  for (; inside_line() && peek() != '='; ++next_) {
    if (key.after_blank() && is_comment_mark(peek())) break;
    key.pass(next_);
  }
  if (error_ != 0) return nullptr;
  if (!in_section_) return fail_here(ErrorKind::kOutsideSection);
  if (peek() != '=') return fail_here(ErrorKind::kEqualsMissing);
  if (key.empty()) return fail_here(ErrorKind::kKeyMissing);
  ++next_;
  pass_blanks(false);
  if (error_ != 0) return nullptr;
  has_value_ = !at_line_end();
  pass_line_end();
  return key.terminate();
}

char* Scanner::read_plain() {
  Trimmed value(next_);
  for (; inside_line() && peek() != ','; ++next_) {
    if (value.after_blank() && is_comment_mark(peek())) break;
    if (peek() == '"') return fail_here(ErrorKind::kQuoteInText);
    value.pass(next_);
  }
  if (error_ != 0) return nullptr;
  has_value_ = pass_comma();
  value_length_ = value.length();
  return error_ == 0 ? value.terminate() : nullptr;
}

char* Scanner::read_pieces() {
  char* const value = next_;
  char* out = value;
  char* piece_end;
  bool same_line;
  do {
    out = peek() == '"' ? read_quoted(out) : read_bytes(out);
    if (out == nullptr) return nullptr;
    piece_end = next_;
    pass_blanks(false);
    same_line = !pass_line_end();
    if (!same_line) pass_to_text();
  } while (at_piece());
  if (error_ != 0) return nullptr;
  if (same_line && !at_line_end() && peek() != ',') return fail_here(ErrorKind::kCommaMissing);
  has_value_ = same_line && pass_comma();
  if (error_ != 0) return nullptr;
  // A run of n bytes is written in 2 + 2 n characters, so at least three are left to clear.
  std::memset(out, 0, static_cast<size_t>(piece_end - out));
  value_length_ = static_cast<size_t>(out - value);
  return value;
}

char* Scanner::read_quoted(char* out) {
  ++next_;
  while (inside_line()) {
    const char c = *next_++;
    if (c == '"') {
      if (peek() != '"') return out;
      ++next_;
    }
    *out++ = c;
    if (c == '\\' && inside_line()) *out++ = *next_++;
  }
  return fail_here(ErrorKind::kQuoteMissing);
}

char* Scanner::read_bytes(char* out) {
  next_ += 2;
  char* const first = out;
  for (; !at_line_end() && !is_blank_or_tab(peek()) && peek() != ',' && peek() != '"'; next_ += 2) {
    const int high = base::hex_digit_value(peek());
    const int low = base::hex_digit_value(peek(1));
    if (high == base::kNoHexDigit || low == base::kNoHexDigit)
      return fail_here(ErrorKind::kBadHexadecimal);
    *out++ = static_cast<char>(high * 16 + low);
  }
  return out == first ? fail_here(ErrorKind::kBadHexadecimal) : out;
}

// At the end of a value, passes the comma and what lies before the next value. Returns whether
// there is one.
bool Scanner::pass_comma() {
  const int32_t comma_line = line_;
  if (peek() != ',') {
    pass_line_end();
    return false;
  }
  ++next_;
  pass_blanks(false);
  if (!at_line_end()) return true;
  pass_to_text();
  // A section after a comma is a comma too many, not a value.
  if (next_ == end_ || peek() == '[') fail(ErrorKind::kListUnfinished, comma_line);
  return error_ == 0;
}

}  // namespace tvx::intl
