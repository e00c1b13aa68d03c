// Side-by-side timing. A comparison runs one routine of the library and its peers over the same
// random values; its row in the report is their times an item and the ratio of ours to the fastest
// peer. To add one, call Suite::compare from a function that main.cpp lists:
//
//   suite.compare({"i4 to char", 1.0}, random_integers<int32_t>(), std::equal_to<>(), ours,
//                 Peer{"std::to_chars", theirs});
//
// where `ours` and `theirs` are functions that return the text of an integer.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tvx::bench {

// ---- Values ------------------------------------------------------------------------------------

inline constexpr size_t kValues = 4096;

// The values that `make` draws from a generator, the same ones in every run.
template <class Make>
auto random_values(Make make) {
  std::mt19937_64 generator(20'240'229);
  std::vector<std::decay_t<decltype(make(generator))>> values;
  values.reserve(kValues);
  while (values.size() < kValues) values.push_back(make(generator));
  return values;
}

// Uniform over the range of the type.
template <class Integer>
std::vector<Integer> random_integers() {
  return random_values([](auto& generator) { return static_cast<Integer>(generator()); });
}

// ---- Comparisons -------------------------------------------------------------------------------

// A peer: its name, and a function of one value that returns what ours returns.
template <class Function>
struct Peer {
  const char* name;
  Function function;
};
template <class Function>
Peer(const char*, Function) -> Peer<Function>;

inline constexpr std::nullopt_t kInformative = std::nullopt;  // no ratio is wanted

struct Title {
  std::string name;
  std::optional<double> wanted;  // the greatest ratio of ours to the fastest peer
};

struct Comparison {
  Title title;
  std::vector<std::string> sides;  // ours first

  // The name under which a side is timed, filtered and reported.
  [[nodiscard]] std::string run_name(const std::string& side) const {
    return title.name + "/" + side;
  }
};

class Suite {
public:
  // Registers the timing of `ours` and of every peer over `values`. Before that each peer's results
  // are held against ours: `agree` tells of two results whether they are the same.
  template <class Value, class Agree, class Ours, class... Peers>
  void compare(Title title, std::vector<Value> values, Agree agree, Ours ours,
               Peer<Peers>... peers) {
    static_assert(sizeof...(peers) > 0);
    const auto shared = std::make_shared<const std::vector<Value>>(std::move(values));
    Comparison& comparison = comparisons_.emplace_back(Comparison{std::move(title), {}});
    (check(comparison, *shared, agree, ours, peers), ...);
    add_side(comparison, "ours", over_values(shared, ours));
    (add_side(comparison, peers.name, over_values(shared, peers.function)), ...);
  }

  // Registers the timing, by the clock on the wall, of what several threads do together: functions
  // that take how many operations to do, do them, and return a number that must be the same for
  // all.
  template <class Ours, class... Peers>
  void compare_elapsed(Title title, Ours ours, Peer<Peers>... peers) {
    static_assert(sizeof...(peers) > 0);
    constexpr int64_t kOperations = kValues;
    Comparison& comparison = comparisons_.emplace_back(Comparison{std::move(title), {}});
    (check(comparison, std::vector{kOperations}, std::equal_to<>(), ours, peers), ...);
    add_side(comparison, "ours", in_one_go(ours))->UseRealTime();
    (add_side(comparison, peers.name, in_one_go(peers.function))->UseRealTime(), ...);
  }

  [[nodiscard]] const std::vector<Comparison>& comparisons() const { return comparisons_; }
  [[nodiscard]] bool all_agree() const { return all_agree_; }

private:
  template <class Value, class Agree, class Ours, class PeerFunction>
  void check(const Comparison& comparison, const std::vector<Value>& values, Agree agree, Ours ours,
             Peer<PeerFunction> peer) {
    for (size_t i = 0; i < values.size(); ++i) {
      if (agree(ours(values[i]), peer.function(values[i]))) continue;
      std::cerr << comparison.title.name << ": ours and " << peer.name << " differ on value " << i
                << ", " << values[i] << '\n';
      all_agree_ = false;
      return;
    }
  }

  template <class Value, class Function>
  static auto over_values(const std::shared_ptr<const std::vector<Value>>& values,
                          Function function) {
    return [values, function](benchmark::State& state) mutable {
      for ([[maybe_unused]] auto iteration : state) {
        for (const Value& value : *values) {
          auto result = function(value);
          benchmark::DoNotOptimize(result);
        }
      }
    };
  }

  // What the threads themselves cost is spread over all operations of a measurement.
  template <class Function>
  static auto in_one_go(Function function) {
    return [function](benchmark::State& state) mutable {
      const int64_t iterations = state.max_iterations;
      while (state.KeepRunningBatch(iterations)) {
        auto result = function(iterations * static_cast<int64_t>(kValues));
        benchmark::DoNotOptimize(result);
      }
    };
  }

  template <class Run>
  static benchmark::internal::Benchmark* add_side(Comparison& comparison, const char* name,
                                                  Run run) {
    comparison.sides.emplace_back(name);
    return benchmark::RegisterBenchmark(comparison.run_name(name).c_str(), run);
  }

  std::vector<Comparison> comparisons_;
  bool all_agree_ = true;
};

// ---- The comparisons there are -----------------------------------------------------------------

void compare_calendar(Suite& suite);
void compare_date_text_reading(Suite& suite);
void compare_date_text_writing(Suite& suite);
void compare_binary(Suite& suite);
void compare_exact_numerics(Suite& suite);
void compare_lists(Suite& suite);
void compare_money(Suite& suite);
void compare_number_text(Suite& suite);
void compare_scalar_pairs(Suite& suite);
void compare_threads(Suite& suite);

}  // namespace tvx::bench
