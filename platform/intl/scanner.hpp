// The scanner of localisation files: it finds the sections, entries and values of a text that lies
// in memory, and hands them out as NUL-terminated texts in the place where they stand, without
// copying.
//
//     file    = { section }
//     section = "[" name "]" { entry }
//     entry   = key "=" [ value { "," value } ]
//     value   = pieces | plain text, which may be empty
//     pieces  = piece { piece }
//     piece   = '"' characters '"' | "0x" pairs of hexadecimal digits
//
// A section's name and an entry stand on a line each, but a comma at the end of a line continues
// the list on the next one, and so does a line that begins with a piece. The pieces of a value are
// joined. Plain text runs to a comma, a comment or the line's end. A comment runs from ";" or "#",
// at the start of a line or after a blank, to the line's end. Between quotes two quotes stand for
// one, and a backslash and the character after it both stay: what they mean is not for the scanner
// to say. Blank lines and lines with only a comment may stand between any two lines.
//
// Two things make handing out in place work. A value is never longer than the way it is written, so
// it can be moved to the front of that; and the scanner has passed whatever ends a text before it
// writes the NUL over it. Nothing of a text is read again, so the caller may change it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "errors.hpp"

namespace tvx::intl {

// Plain data, so that it can live in the record of a C caller. It borrows the text.
class Scanner {
public:
  // The text's block has one byte more than `size`, for a NUL.
  Scanner(char* text, size_t size);

  // Each returns the next one and passes over what is left of the one before: the next section's
  // name, the next key of the section, the next value of the entry. Null at the end of the file,
  // section or entry, and on error. A value of bytes has at least three zero bytes behind it.
  char* next_section();
  char* next_entry();
  char* next_value();

  // Bytes of the last returned value, zero bytes among them included.
  size_t value_length() const { return value_length_; }
  // Whether the entry has a further value.
  bool has_value() const { return has_value_; }
  // The line on which the last returned text begins.
  int32_t text_line() const { return text_line_; }

  // 0 or an error number. An error is final: every later call returns null and this number stays.
  int32_t error() const { return error_; }
  void fail(ErrorKind kind, int32_t line);

private:
  char* fail_here(ErrorKind kind);

  char peek(size_t ahead = 0) const;
  bool at_line_end() const;
  bool inside_line();
  bool pass_line_end();
  void pass_blanks(bool comment_may_begin);
  void pass_to_text();

  bool at_piece() const;
  char* read_section_name();
  char* read_key();
  char* read_plain();
  char* read_pieces();
  char* read_quoted(char* out);
  char* read_bytes(char* out);
  bool pass_comma();

  char* next_;  // what is not yet scanned
  char* end_;
  size_t value_length_ = 0;
  int32_t line_ = 1;
  int32_t text_line_ = 0;
  int32_t error_ = 0;
  bool in_section_ = false;
  bool has_value_ = false;
};

}  // namespace tvx::intl
