// Splits CSV text (RFC 4180) into rows and fields in one pass over its bytes, knowing nothing of
// types or files. Memory is bounded by the row limit: a longer row is handed out in parts.
//
// Fields are separated by commas, rows by LF or CR LF; the last row may lack its line end. A field
// in double quotes may hold commas, line ends and, written twice, double quotes. A quote inside a
// field that does not begin with one is an ordinary character. A byte order mark of UTF-8 at the
// very start belongs to the first row, not to its first field.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tvx::tool {

enum class RowState {
  kWhole,
  kBrokenQuotes,   // text behind a closing quote
  kUnclosedQuote,  // the input ended inside quotes
  kTooLong,        // longer than the row limit; its fields are not there
};

class CsvReader {
public:
  // Delivers up to `capacity` bytes and returns their number, 0 at the end.
  using ReadBlock = std::function<std::size_t(char* data, std::size_t capacity)>;

  // `row_limit`: the largest row in bytes, line end included, at most 1 GiB.
  CsvReader(ReadBlock read_block, std::size_t row_limit);

  // Moves to the next row; false at the end. What the last row delivered is then no longer valid.
  [[nodiscard]] bool next();

  [[nodiscard]] RowState state() const { return state_; }
  // The row as read, line end included; of a row that is too long a part of it.
  [[nodiscard]] std::string_view raw() const { return raw_; }
  // Moves on to the next part of a row that is too long; false behind the last one. The state is
  // then kUnclosedQuote when the input ended inside quotes.
  [[nodiscard]] bool next_part();

  [[nodiscard]] std::size_t field_count() const { return field_count_; }
  // The value of a field of a whole row, without its quotes. Valid until the next call.
  [[nodiscard]] std::string_view field(std::size_t index);
  // The field as read.
  [[nodiscard]] std::string_view raw_field(std::size_t index) const;
  // LF, CR LF, or nothing.
  [[nodiscard]] std::string_view line_end() const { return raw_.substr(line_end_begin_); }

  // Of a row with more fields than kMostFields, or than `count` once it is set, those behind are
  // only counted.
  static constexpr std::size_t kMostFields = 65536;
  void keep_fields(std::size_t count) { kept_fields_ = count; }

  // The bytes read from the input so far.
  [[nodiscard]] uint64_t bytes_read() const { return bytes_read_; }

private:
  enum class Place { kFieldStart, kBare, kQuoted, kBehindQuote };

  // Offsets from the row's start.
  struct Mark {
    uint32_t begin;
    uint32_t end;
    bool quoted;
    bool doubled;  // has quotes written twice
  };

  void begin_row();
  void skip_byte_order_mark();
  bool scan();
  void end_field(std::size_t end);
  void end_row_at_line_feed(std::size_t line_feed);
  void end_row_at_end_of_input();
  bool fill();
  void hand_out(std::size_t end);

  ReadBlock read_block_;
  std::size_t row_limit_;
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_;
  std::size_t row_begin_ = 0;  // in the buffer: the current row's first byte,
  std::size_t scanned_ = 0;    // the first byte not looked at,
  std::size_t filled_ = 0;     // the end of what was read
  bool first_row_ = true;
  bool ended_ = false;  // the input has; it is not asked again
  uint64_t bytes_read_ = 0;

  Place place_ = Place::kFieldStart;
  Mark field_{};                  // the field being scanned
  std::size_t quote_closed_ = 0;  // behind its closing quote
  bool row_over_ = true;
  std::vector<Mark> marks_;
  std::size_t field_count_ = 0;
  std::size_t kept_fields_ = kMostFields;
  std::size_t line_end_begin_ = 0;
  RowState state_ = RowState::kWhole;
  std::string_view raw_;
  std::string unquoted_;
};

}  // namespace tvx::tool
