// What a family of routines brings to the default table.
#pragma once

#include <array>
#include <cstddef>

#include "convert/arguments.hpp"

namespace tvx::api {

// A routine and the cells of the table that it fills: every pair of one of the source codes and one
// of the destination codes. A family states its rows in a constexpr array, in the header that is
// named after it (scalar_served.hpp, ...), and default_table.cpp lists the families.
struct Served {
  convert::CodeSet sources;
  convert::CodeSet destinations;
  comn_conversion* routine;
};

// The routine of a conversion that is reached through the table only.
template <int32_t (*conversion)(const convert::Call&)>
int32_t traced_call(comn_context* context, const comn_datafmt* source_format, const void* source,
                    const comn_datafmt* destination_format, void* destination,
                    int32_t* output_length) {
  return runtime::traced(
      conversion({context, source_format, source, destination_format, destination, output_length}));
}

// The cells that rows fill. Every family compares them with what it says that it serves.
template <size_t count>
constexpr int count_pairs(const std::array<Served, count>& rows) {
  int pairs = 0;
  for (const Served& row : rows) pairs += row.sources.size() * row.destinations.size();
  return pairs;
}

// The rows of several families, one after the other.
template <size_t... counts>
constexpr auto all_of(const std::array<Served, counts>&... families) {
  std::array<Served, (counts + ...)> all{};
  size_t at = 0;
  const auto append = [&](const auto& family) {
    for (const Served& row : family) all[at++] = row;
  };
  (append(families), ...);
  return all;
}

}  // namespace tvx::api
