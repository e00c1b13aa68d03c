#include "csv_reader.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tvx::tool {

namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

CsvReader::CsvReader(ReadBlock read_block, std::size_t row_limit)
    : read_block_(std::move(read_block)),
      row_limit_(row_limit),
      buffer_(new char[kBlockSize]),
      capacity_(kBlockSize) {}

bool CsvReader::next() {
  while (!row_over_) static_cast<void>(next_part());
  begin_row();
  if (std::exchange(first_row_, false)) skip_byte_order_mark();
  while (!scan()) {
    if (filled_ - row_begin_ > row_limit_) break;
    if (fill()) continue;
    if (filled_ == row_begin_) return false;
    end_row_at_end_of_input();
    break;
  }
  hand_out(row_over_ ? scanned_ : filled_);
  if (raw_.size() > row_limit_) {
    state_ = RowState::kTooLong;
    field_count_ = 0;
  }
  return true;
}

bool CsvReader::next_part() {
  if (row_over_) return false;
  // Nothing of the part before is needed: the next one starts the buffer afresh.
  row_begin_ = scanned_ = filled_ = 0;
  if (!fill()) {
    end_row_at_end_of_input();
    return false;
  }
  static_cast<void>(scan());
  hand_out(scanned_);
  return true;
}

void CsvReader::begin_row() {
  row_begin_ = scanned_;
  row_over_ = false;
  place_ = Place::kFieldStart;
  field_ = {};
  marks_.clear();
  field_count_ = 0;
  state_ = RowState::kWhole;
}

void CsvReader::skip_byte_order_mark() {
  while (filled_ < kByteOrderMark.size() && fill()) continue;
  if (std::string_view(buffer_.get(), filled_).substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    scanned_ = kByteOrderMark.size();
    field_.begin = static_cast<uint32_t>(scanned_);
  }
}

// Reads more behind what is there. The current row stays whole and moves to the buffer's start; the
// buffer grows when the row leaves too little room. Returns false at the end of the input.
bool CsvReader::fill() {
  if (ended_) return false;
  const std::size_t kept = filled_ - row_begin_;
  if (capacity_ - kept < kBlockSize / 2) {
    const std::size_t capacity = 2 * capacity_;
    std::unique_ptr<char[]> larger(new char[capacity]);
    std::memcpy(larger.get(), buffer_.get() + row_begin_, kept);
    buffer_ = std::move(larger);
    capacity_ = capacity;
  } else if (row_begin_ != 0) {
    std::memmove(buffer_.get(), buffer_.get() + row_begin_, kept);
  }
  scanned_ -= row_begin_;
  row_begin_ = 0;
  const std::size_t count = read_block_(buffer_.get() + kept, capacity_ - kept);
  filled_ = kept + count;
  bytes_read_ += count;
  ended_ = count == 0;
  return !ended_;
}

// Goes on from where it stopped to the end of the row, or to the end of what was read. Returns
// whether the row is over.
bool CsvReader::scan() {
  const char* const row = buffer_.get() + row_begin_;
  const char* const stop = buffer_.get() + filled_;
  const char* at = buffer_.get() + scanned_;
  while (at != stop) {
    switch (place_) {
      case Place::kFieldStart:
        field_.quoted = *at == '"';
        place_ = field_.quoted ? Place::kQuoted : Place::kBare;
        if (field_.quoted) ++at;
        break;
      case Place::kBare: {
        while (at != stop && *at != ',' && *at != '\n') ++at;
        if (at == stop) break;
        const auto end = static_cast<std::size_t>(at - row);
        if (*at++ == '\n') {
          scanned_ = static_cast<std::size_t>(at - buffer_.get());
          end_row_at_line_feed(end);
          return true;
        }
        end_field(end);
        field_ = {static_cast<uint32_t>(end + 1), 0, false, false};
        place_ = Place::kFieldStart;
        break;
      }
      case Place::kQuoted: {
        const void* const quote = std::memchr(at, '"', static_cast<std::size_t>(stop - at));
        at = quote == nullptr ? stop : static_cast<const char*>(quote) + 1;
        if (quote != nullptr) place_ = Place::kBehindQuote;
        break;
      }
      case Place::kBehindQuote:
        quote_closed_ = static_cast<std::size_t>(at - row);
        field_.doubled = field_.doubled || *at == '"';
        place_ = *at == '"' ? Place::kQuoted : Place::kBare;
        if (*at == '"') ++at;
        break;
    }
  }
  scanned_ = filled_;
  return false;
}

void CsvReader::end_field(std::size_t end) {
  if (state_ == RowState::kTooLong) return;
  if (field_.quoted && quote_closed_ != end) state_ = RowState::kBrokenQuotes;
  field_.end = static_cast<uint32_t>(end);
  if (field_count_ < kept_fields_) marks_.push_back(field_);
  ++field_count_;
}

void CsvReader::end_row_at_line_feed(std::size_t line_feed) {
  const char* const row = buffer_.get() + row_begin_;
  const bool carriage_return = line_feed > field_.begin && row[line_feed - 1] == '\r';
  line_end_begin_ = line_feed - (carriage_return ? 1 : 0);
  end_field(line_end_begin_);
  row_over_ = true;
}

void CsvReader::end_row_at_end_of_input() {
  line_end_begin_ = filled_ - row_begin_;
  if (place_ == Place::kBehindQuote) quote_closed_ = line_end_begin_;
  end_field(line_end_begin_);
  if (place_ == Place::kQuoted) state_ = RowState::kUnclosedQuote;
  row_over_ = true;
}

void CsvReader::hand_out(std::size_t end) {
  raw_ = {buffer_.get() + row_begin_, end - row_begin_};
}

std::string_view CsvReader::raw_field(std::size_t index) const {
  const Mark& mark = marks_[index];
  return raw_.substr(mark.begin, mark.end - mark.begin);
}

std::string_view CsvReader::field(std::size_t index) {
  std::string_view value = raw_field(index);
  const Mark& mark = marks_[index];
  if (!mark.quoted) return value;
  value = value.substr(1, value.size() - 2);
  if (!mark.doubled) return value;
  unquoted_.clear();
  for (;;) {
    const std::size_t quote = value.find('"');
    if (quote == std::string_view::npos) break;
    unquoted_ += value.substr(0, quote + 1);
    value.remove_prefix(quote + 2);
  }
  unquoted_ += value;
  return unquoted_;
}

}  // namespace tvx::tool
