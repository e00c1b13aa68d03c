// What became of a file: counts for every column and for the rows, with the first example of every
// kind of failure.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tvx::tool {

// Counts the fields of one column that rows with the right number of fields had.
class ColumnReport {
public:
  ColumnReport(std::string name, std::string type);

  void count_converted() { ++converted_; }
  void count_empty() { ++empty_; }
  void count_failed(int32_t result, uint64_t row, std::string_view value);

  // The column's lines of the report.
  void print(std::string& out, std::size_t name_width, std::size_t type_width) const;

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::string& type() const { return type_; }

private:
  struct Failed {
    int32_t result;
    uint64_t count;
    uint64_t first_row;
    std::string first_value;  // as displayed
  };

  std::string name_;
  std::string type_;
  uint64_t converted_ = 0;
  uint64_t empty_ = 0;
  std::vector<Failed> failed_;  // in the order of their first rows
};

// Why a row was rejected.
enum class RowFault { kFailedField, kFieldCount, kBrokenQuotes, kUnclosedQuote, kTooLong };
inline constexpr std::size_t kRowFaults = 5;

// Counts the rows behind the header.
class RowReport {
public:
  void count_written() { ++written_; }
  // `detail`: of a fault that needs one, what is said of its first row.
  void count_rejected(RowFault fault, uint64_t row, std::string_view detail = {});

  [[nodiscard]] uint64_t rejected() const { return rejected_; }

  // The last lines of the report. `kept` says where the rejected rows are.
  void print(std::string& out, std::string_view kept) const;

private:
  struct Fault {
    uint64_t count = 0;
    uint64_t first_row = 0;
    std::string first_detail{};
  };

  uint64_t written_ = 0;
  uint64_t rejected_ = 0;
  Fault faults_[kRowFaults];
};

// A whole report: `title`, the columns, the rows.
[[nodiscard]] std::string printed_report(std::string_view title,
                                         const std::vector<ColumnReport>& columns,
                                         const RowReport& rows, std::string_view kept);

}  // namespace tvx::tool
