#include "csv_report.hpp"

#include <algorithm>
#include <utility>

#include "display.hpp"
#include "result_names.hpp"

namespace tvx::tool {

namespace {

constexpr std::size_t kCountWidth = 12;
constexpr std::size_t kFaultWidth = 28;
constexpr std::size_t kRowsWidth = 14;

constexpr std::string_view kFaultNames[kRowFaults] = {
    "failed field",       "wrong number of fields", "text behind a closing quote",
    "quote never closed", "row too long",
};

std::string count_cell(uint64_t count) {
  return right_aligned(std::to_string(count), kCountWidth);
}

std::string first_row_cell(uint64_t row) {
  return "  first in row " + std::to_string(row);
}

// Column names come from the command line and may be anything.
std::size_t widest(const std::vector<ColumnReport>& columns,
                   const std::string& (ColumnReport::*text)() const, std::string_view title) {
  std::size_t width = title.size();
  for (const ColumnReport& column : columns) {
    width = std::max(width, width_of(escaped((column.*text)())));
  }
  return width;
}

}  // namespace

ColumnReport::ColumnReport(std::string name, std::string type)
    : name_(std::move(name)), type_(std::move(type)) {}

void ColumnReport::count_failed(int32_t result, uint64_t row, std::string_view value) {
  const auto known = std::find_if(failed_.begin(), failed_.end(),
                                  [&](const Failed& entry) { return entry.result == result; });
  if (known != failed_.end()) {
    ++known->count;
  } else {
    failed_.push_back({result, 1, row, quoted_for_display(value)});
  }
}

void ColumnReport::print(std::string& out, std::size_t name_width, std::size_t type_width) const {
  uint64_t all_failed = 0;
  for (const Failed& entry : failed_) all_failed += entry.count;
  out += left_aligned(escaped(name_), name_width) + "  " + left_aligned(type_, type_width) +
         count_cell(converted_) + count_cell(empty_) + count_cell(all_failed) + "\n";
  const std::size_t indented = name_width + type_width + 2 * kCountWidth;
  for (const Failed& entry : failed_) {
    out += "  " + left_aligned(result_name(entry.result), indented) + count_cell(entry.count) +
           first_row_cell(entry.first_row) + ": " + entry.first_value + "\n";
  }
}

void RowReport::count_rejected(RowFault fault, uint64_t row, std::string_view detail) {
  Fault& entry = faults_[static_cast<std::size_t>(fault)];
  if (entry.count++ == 0) {
    entry.first_row = row;
    entry.first_detail = detail;
  }
  ++rejected_;
}

void RowReport::print(std::string& out, std::string_view kept) const {
  const auto line = [&](std::string_view name, uint64_t count) {
    out += left_aligned(name, kRowsWidth) + count_cell(count);
  };
  line("rows read", written_ + rejected_);
  out += '\n';
  line("rows written", written_);
  out += '\n';
  line("rows rejected", rejected_);
  out += rejected_ == 0 ? "\n" : "  " + std::string(kept) + "\n";
  for (std::size_t index = 0; index < kRowFaults; ++index) {
    const Fault& entry = faults_[index];
    if (entry.count == 0) continue;
    out += "  " + left_aligned(kFaultNames[index], kFaultWidth) + count_cell(entry.count) +
           first_row_cell(entry.first_row);
    if (!entry.first_detail.empty()) out += ": " + entry.first_detail;
    out += '\n';
  }
}

std::string printed_report(std::string_view title, const std::vector<ColumnReport>& columns,
                           const RowReport& rows, std::string_view kept) {
  const std::size_t name_width = widest(columns, &ColumnReport::name, "column");
  const std::size_t type_width = widest(columns, &ColumnReport::type, "type");
  std::string out = std::string(title) + "\n\n";
  out += left_aligned("column", name_width) + "  " + left_aligned("type", type_width);
  for (const char* heading : {"converted", "empty", "failed"}) {
    out += right_aligned(heading, kCountWidth);
  }
  out += '\n';
  for (const ColumnReport& column : columns) column.print(out, name_width, type_width);
  out += '\n';
  rows.print(out, kept);
  return out;
}

}  // namespace tvx::tool
