#include "report.hpp"

#include <algorithm>
#include <cstdio>

namespace tvx::bench {
namespace {

struct Timing {
  std::string side;
  double nanoseconds;
};

std::vector<Timing> timings(const Comparison& comparison, const Collector& collector) {
  std::vector<Timing> result;
  for (const std::string& side : comparison.sides) {
    if (const auto median = collector.median(comparison.run_name(side)))
      result.push_back({side, *median});
  }
  return result;
}

// Returns whether the wanted ratio, if there is one, was kept.
bool print_ratio(const Comparison& comparison, const std::vector<Timing>& timings) {
  const auto fastest_peer = std::min_element(
      timings.begin() + 1, timings.end(),
      [](const Timing& a, const Timing& b) { return a.nanoseconds < b.nanoseconds; });
  const double ratio = timings.front().nanoseconds / fastest_peer->nanoseconds;
  std::printf(", ratio %.2f", ratio);
  if (!comparison.title.wanted) {
    std::printf(" (informative)");
    return true;
  }
  const bool kept = ratio <= *comparison.title.wanted;
  std::printf(" (wanted <= %.2f) %s", *comparison.title.wanted, kept ? "ok" : "MISSED");
  return kept;
}

}  // namespace

bool Collector::ReportContext(const Context& context) {
  std::printf(
      "%d CPUs at %.0f MHz; medians, processor time a value (of"
      " threads: time elapsed)\n",
      context.cpu_info.num_cpus, context.cpu_info.cycles_per_second / 1e6);
  std::fflush(stdout);
  return true;
}

void Collector::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
    const bool elapsed = !run.run_name.time_type.empty();
    const double total = elapsed ? run.real_accumulated_time : run.cpu_accumulated_time;
    const double seconds = total / static_cast<double>(run.iterations);
    nanoseconds_[run.run_name.function_name].push_back(seconds * 1e9 / kValues);
  }
}

std::optional<double> Collector::median(const std::string& run_name) const {
  const auto found = nanoseconds_.find(run_name);
  if (found == nanoseconds_.end()) return std::nullopt;
  std::vector<double> times = found->second;
  const auto middle = times.begin() + static_cast<ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

void print_report(const Suite& suite, const Collector& collector) {
  std::vector<std::string> missed;
  for (const Comparison& comparison : suite.comparisons()) {
    const auto sides = timings(comparison, collector);
    if (sides.empty()) continue;
    std::printf("%s:", comparison.title.name.c_str());
    for (const Timing& side : sides) {
      std::printf("%s %s %.1f ns", &side == &sides.front() ? "" : ",", side.side.c_str(),
                  side.nanoseconds);
    }
    const bool all_sides = sides.size() == comparison.sides.size();
    if (all_sides && !print_ratio(comparison, sides)) missed.push_back(comparison.title.name);
    std::printf("\n");
  }
  if (missed.empty()) return;
  std::printf("\n%zu wanted ratios missed (other work on the machine can be the cause):\n",
              missed.size());
  for (const std::string& name : missed) std::printf("  %s\n", name.c_str());
}

}  // namespace tvx::bench
