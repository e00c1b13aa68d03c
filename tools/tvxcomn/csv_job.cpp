#include "csv_job.hpp"

#include <utility>

#include "display.hpp"
#include "failure.hpp"
#include "result_names.hpp"

namespace tvx::tool {

namespace {

bool needs_quotes(std::string_view text) {
  for (const char byte : text) {
    if (byte == ',' || byte == '"' || byte == '\n' || byte == '\r') return true;
  }
  return false;
}

void append_field(std::string& row, std::string_view text) {
  if (!needs_quotes(text)) {
    row += text;
    return;
  }
  row += '"';
  for (const char byte : text) {
    if (byte == '"') row += '"';
    row += byte;
  }
  row += '"';
}

RowFault fault_of(RowState state) {
  if (state == RowState::kBrokenQuotes) return RowFault::kBrokenQuotes;
  return state == RowState::kUnclosedQuote ? RowFault::kUnclosedQuote : RowFault::kTooLong;
}

RoundTrip conversion_of(comn_context* context, const NamedColumn& column, Style style) {
  try {
    return RoundTrip(context, column.type, style);
  } catch (const Failure& failure) {
    throw Failure("--types: column \"" + column.name + "\": " + failure.what());
  }
}

}  // namespace

CsvJob::CsvJob(comn_context* context, std::vector<NamedColumn> columns, Style style,
               OutputFile& rows, OutputFile* rejects)
    : columns_(std::move(columns)), rows_(rows), rejects_(rejects) {
  for (const NamedColumn& column : columns_) {
    conversions_.push_back(conversion_of(context, column, style));
    column_reports_.emplace_back(column.name, written_type(column.type));
  }
}

bool CsvJob::next_row(CsvReader& reader) {
  if (!reader.next()) return false;
  if (++row_ == 1) {
    const bool header = first_row_is_header(reader);
    reader.keep_fields(column_of_field_.size());
    if (header) {
      rows_.write(reader.raw());
      return true;
    }
  }
  if (reader.state() != RowState::kWhole) {
    reject(reader, fault_of(reader.state()));
  } else if (reader.field_count() != column_of_field_.size()) {
    reject(reader, RowFault::kFieldCount,
           std::to_string(reader.field_count()) + " instead of " +
               std::to_string(column_of_field_.size()));
  } else {
    convert_row(reader);
  }
  return true;
}

// Decides where the columns stand, too.
bool CsvJob::first_row_is_header(CsvReader& reader) {
  column_of_field_ = by_position(columns_);
  layout_ = "columns by position, for the first row is no header: ";
  if (reader.state() != RowState::kWhole || reader.field_count() > CsvReader::kMostFields) {
    layout_ += "it cannot be split into fields, or into too many";
    return false;
  }
  std::vector<std::string> names;
  for (std::size_t index = 0; index < reader.field_count(); ++index) {
    names.emplace_back(reader.field(index));
  }
  if (const NamedColumn* unnamed = first_unnamed(columns_, names)) {
    layout_ += "it does not name " + quoted_for_display(unnamed->name);
    return false;
  }
  column_of_field_ = by_name(columns_, names);
  layout_ = "columns by name, the first row is the header";
  return true;
}

void CsvJob::convert_row(CsvReader& reader) {
  bool good = true;
  output_.clear();
  for (std::size_t field = 0; field < column_of_field_.size(); ++field) {
    if (field != 0) output_ += ',';
    if (const std::optional<std::size_t> column = column_of_field_[field]) {
      // Every field is converted, also behind one that failed: the report counts them all.
      good &= convert_field(*column, reader, field);
    } else {
      output_ += reader.raw_field(field);
    }
  }
  if (!good) {
    reject(reader, RowFault::kFailedField);
    return;
  }
  output_ += reader.line_end();
  rows_.write(output_);
  row_report_.count_written();
}

bool CsvJob::convert_field(std::size_t column, CsvReader& reader, std::size_t field) {
  const std::string_view value = reader.field(field);
  if (value.empty()) {
    column_reports_[column].count_empty();
    output_ += reader.raw_field(field);
    return true;
  }
  const RoundTrip::Outcome outcome = conversions_[column].convert(value);
  if (!succeeded(outcome.result)) {
    column_reports_[column].count_failed(outcome.result, row_, value);
    return false;
  }
  column_reports_[column].count_converted();
  append_field(output_, outcome.text);
  return true;
}

void CsvJob::reject(CsvReader& reader, RowFault fault, std::string_view detail) {
  do {
    if (rejects_ != nullptr) rejects_->write(reader.raw());
  } while (fault == RowFault::kTooLong && reader.next_part());
  // Only now is known whether the row ended at all.
  if (reader.state() == RowState::kUnclosedQuote) fault = RowFault::kUnclosedQuote;
  row_report_.count_rejected(fault, row_, detail);
}

std::string CsvJob::report(std::string_view input, std::string_view kept) const {
  return printed_report(std::string(input) + ": " + layout_, column_reports_, row_report_, kept);
}

}  // namespace tvx::tool
