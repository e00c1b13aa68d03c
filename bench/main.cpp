// The benchmark program. All sides of all comparisons are timed in one process, repetition by
// repetition in random order, so that what else happens on the machine meets all of them alike.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

#include "report.hpp"
#include "suite.hpp"

namespace {

// Less than a second of measuring for each side; options given later prevail.
const char* const kDefaults[] = {
    "--benchmark_enable_random_interleaving=true",
    "--benchmark_repetitions=15",
    "--benchmark_min_time=0.05",
};

void print_help() {
  std::puts(
      "Times operations of the library beside those of others.\n\n"
      "  --benchmark_filter=REGEX       only names with a match, as \"^i4 to char\"\n"
      "  --benchmark_list_tests         list the names\n"
      "  --benchmark_repetitions=N      measurements of each side, 15\n"
      "  --benchmark_min_time=SECONDS   length of a measurement, 0.05\n\n"
      "Exit status: 0, whatever the ratios are; 1 when two sides give different results; 2 on bad\n"
      "usage.");
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments{argv[0]};
  for (const char* option : kDefaults) arguments.push_back(const_cast<char*>(option));
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  auto count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data(), print_help);
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  tvx::bench::Suite suite;
  tvx::bench::compare_number_text(suite);
  tvx::bench::compare_scalar_pairs(suite);
  tvx::bench::compare_exact_numerics(suite);
  tvx::bench::compare_money(suite);
  tvx::bench::compare_binary(suite);
  tvx::bench::compare_threads(suite);
  tvx::bench::compare_calendar(suite);
  tvx::bench::compare_date_text_reading(suite);
  tvx::bench::compare_date_text_writing(suite);
  tvx::bench::compare_lists(suite);

  tvx::bench::Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  tvx::bench::print_report(suite, collector);
  benchmark::Shutdown();
  return suite.all_agree() ? 0 : 1;
}
