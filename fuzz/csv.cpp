// The command's reader of CSV: rows do not depend on the blocks in which their bytes come, none is
// handed out that is longer than the limit, and put together they are the input.
#include "csv_reader.hpp"

#include <vector>

#include "target.hpp"

namespace {

using tvx::fuzz::expect;
using tvx::tool::CsvReader;
using tvx::tool::RowState;

struct Row {
  RowState state;
  std::string raw;
  std::vector<std::string> fields;

  bool operator==(const Row&) const = default;
};

std::vector<Row> read_rows(std::string_view text, size_t block, size_t row_limit) {
  const auto read_block = [&text, block](char* data, size_t capacity) {
    const size_t count = text.copy(data, std::min(block, capacity));
    text.remove_prefix(count);
    return count;
  };
  CsvReader reader(read_block, row_limit);
  std::vector<Row> rows;
  while (reader.next()) {
    Row row{reader.state(), std::string(reader.raw()), {}};
    if (row.state == RowState::kTooLong) {
      while (reader.next_part()) row.raw += reader.raw();
      expect(row.raw.size() > row_limit);
    } else {
      expect(row.raw.size() <= row_limit);
      for (size_t field = 0; field < reader.field_count(); ++field) {
        row.fields.emplace_back(reader.raw_field(field));
        if (row.state == RowState::kWhole) row.fields.emplace_back(reader.field(field));
      }
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  tvx::fuzz::Input input(data, size);
  const size_t block = 1 + static_cast<size_t>(input.choose(40));
  const size_t row_limit = 1 + static_cast<size_t>(input.choose(60));
  const std::vector<Row> rows = read_rows(input.rest(), block, row_limit);
  expect(rows == read_rows(input.rest(), size, row_limit));
  std::string together;
  for (const Row& row : rows) together += row.raw;
  expect(together == input.rest());
  return 0;
}
