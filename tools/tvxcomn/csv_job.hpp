// The work on one CSV file: every row is read, its fields converted, and then written or rejected
// whole.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "csv_columns.hpp"
#include "csv_reader.hpp"
#include "csv_report.hpp"
#include "files.hpp"
#include "value_conversion.hpp"

namespace tvx::tool {

class CsvJob {
public:
  // `rejects` may be null: rejected rows are then counted only. Throws Failure for a type that
  // columns cannot have.
  CsvJob(comn_context* context, std::vector<NamedColumn> columns, Style style, OutputFile& rows,
         OutputFile* rejects);

  // Works on the next row; false at the end. Throws Failure.
  [[nodiscard]] bool next_row(CsvReader& reader);

  [[nodiscard]] uint64_t rows_read() const { return row_; }
  [[nodiscard]] uint64_t rejected() const { return row_report_.rejected(); }

  // The report; `input` and `kept` name the file and where the rejected rows are.
  [[nodiscard]] std::string report(std::string_view input, std::string_view kept) const;

private:
  bool first_row_is_header(CsvReader& reader);
  void convert_row(CsvReader& reader);
  bool convert_field(std::size_t column, CsvReader& reader, std::size_t field);
  void reject(CsvReader& reader, RowFault fault, std::string_view detail = {});

  std::vector<NamedColumn> columns_;
  std::vector<RoundTrip> conversions_;  // by column, as the next
  std::vector<ColumnReport> column_reports_;
  RowReport row_report_;
  OutputFile& rows_;
  OutputFile* rejects_;
  ColumnOfField column_of_field_;
  std::string layout_ = "no rows";
  uint64_t row_ = 0;    // number of the current row, the header among them
  std::string output_;  // the current row as it will be written
};

}  // namespace tvx::tool
