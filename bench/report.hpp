// Collects the repetitions of a run and prints a line a comparison.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "suite.hpp"

namespace tvx::bench {

// Takes the place of Google Benchmark's own report.
class Collector : public benchmark::BenchmarkReporter {
public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;

  // Nanoseconds an item, the median of the repetitions; nothing for a side that was not run.
  [[nodiscard]] std::optional<double> median(const std::string& run_name) const;

private:
  std::map<std::string, std::vector<double>> nanoseconds_;
};

// Prints a line for every comparison of which something was run, then which ratios were missed.
void print_report(const Suite& suite, const Collector& collector);

}  // namespace tvx::bench
