// tvxcomn csv: opens the files, runs the job, shows progress, prints the report.
#include <cstdio>
#include <optional>

#include "command_line.hpp"
#include "csv_job.hpp"
#include "failure.hpp"

namespace tvx::tool {

namespace {

constexpr std::size_t kLargestRow = Conversion::kLargestValue;

struct CsvOptions {
  std::string types;
  std::string input;
  std::string output = "-";
  std::optional<std::string> rejects;
  std::size_t row_limit = kLargestRow;
  Style style;

  [[nodiscard]] bool rows_to_standard_output() const { return output == "-"; }
};

bool read_options(const Arguments& arguments, CsvOptions& options) {
  CLI::App app(
      "Converts the columns of a CSV file to datatypes and back to text, and reports what failed.",
      "tvxcomn csv");
  app.add_option("--types", options.types,
                 "The columns: NAME:TYPE[,NAME:TYPE ...]; \"tvxcomn types\" lists the types")
      ->required();
  app.add_option(
      "--output", options.output,
      "Where the typed rows go; by default the standard output, and the report then goes "
      "to the standard error");
  app.add_option("--rejects", options.rejects, "Where rejected rows are kept, as they were read");
  app.add_option("--row-limit", options.row_limit, "Longer rows are rejected (bytes)")
      ->transform(decimal())
      ->check(CLI::Range(std::size_t{1}, kLargestRow))
      ->capture_default_str();
  app.add_option("--style", options.style, "The date format code in which dates are written")
      ->transform(decimal())
      ->check(CLI::Range(0, kLargestStyle));
  app.add_option("FILE", options.input, "The CSV file; - is the standard input")->required();
  app.footer(
      "When the first row holds the name of every column, columns go by name, all others pass\n"
      "through unchanged, and the header is written out. Otherwise columns go by position.\n"
      "Exit status: 0, 1 when rows were rejected, 2 on bad usage or an input/output error.");
  return read_arguments(app, arguments);
}

void refuse_same_file(const std::optional<FileIdentity>& one,
                      const std::optional<FileIdentity>& other, const char* message) {
  if (one && other && *one == *other) throw Failure(message);
}

// The files of a job. Opening them changes none; one that stands for two things is refused.
struct CsvFiles {
  explicit CsvFiles(const CsvOptions& options)
      : input(options.input),
        rows(options.rows_to_standard_output() ? OutputFile::standard_output()
                                               : OutputFile(options.output)) {
    refuse_same_file(rows.identity(), input.identity(),
                     "the output would overwrite the input; name another file with --output FILE");
    if (!options.rejects) return;
    rejects.emplace(*options.rejects);
    refuse_same_file(rejects->identity(), input.identity(),
                     "--rejects would overwrite the input; name another file");
    refuse_same_file(rejects->identity(), rows.identity(),
                     "--rejects and the output are the same file; name two files");
  }

  InputFile input;
  OutputFile rows;
  std::optional<OutputFile> rejects;
};

// Tells on the standard error how far the work is, while someone watches.
class Progress {
public:
  ~Progress() {
    if (shown_) std::fputs("\r\033[K", stderr);
  }

  void show(uint64_t bytes, uint64_t rows) {
    if (!watched_ || bytes < next_) return;
    next_ = bytes + kStep;
    shown_ = true;
    std::fprintf(stderr, "\r%s MB, %s rows", std::to_string(bytes / 1'000'000).c_str(),
                 std::to_string(rows).c_str());
  }

private:
  static constexpr uint64_t kStep = 4'000'000;

  bool watched_ = standard_error_is_terminal();
  bool shown_ = false;
  uint64_t next_ = kStep;
};

void work_through(CsvJob& job, CsvReader& reader) {
  Progress progress;
  while (job.next_row(reader)) progress.show(reader.bytes_read(), job.rows_read());
}

void print_report(const std::string& report, bool to_standard_error) {
  if (to_standard_error) {
    std::fputs(report.c_str(), stderr);
    return;
  }
  OutputFile output = OutputFile::standard_output();
  output.write(report);
  output.close();
}

int convert_file(const CsvOptions& options) {
  const std::vector<NamedColumn> columns = parse_columns(options.types);
  if (options.rejects == "-") throw Failure("rejected rows need a file; write --rejects FILE");
  const Context context = open_context();
  CsvFiles files(options);
  CsvJob job(context.get(), columns, options.style, files.rows,
             files.rejects ? &*files.rejects : nullptr);

  // Nothing stands in the way any more: what older files hold may go.
  if (!options.rows_to_standard_output()) files.rows.truncate();
  if (files.rejects) files.rejects->truncate();
  CsvReader reader(
      [&](char* data, std::size_t capacity) { return files.input.read(data, capacity); },
      options.row_limit);
  work_through(job, reader);
  files.rows.close();
  if (files.rejects) files.rejects->close();

  const std::string kept =
      options.rejects ? "kept in " + *options.rejects : "not kept; name a file with --rejects FILE";
  print_report(job.report(files.input.name(), kept), options.rows_to_standard_output());
  return job.rejected() == 0 ? kAllWell : kSomeFailed;
}

}  // namespace

int run_csv(const Arguments& arguments) {
  CsvOptions options;
  return read_options(arguments, options) ? convert_file(options) : kAllWell;
}

}  // namespace tvx::tool
