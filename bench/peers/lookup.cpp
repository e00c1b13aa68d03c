// The least that a routine table can cost: a checked lookup and a routine that does nothing.
#include <array>
#include <cstdlib>

#include "peers/peers.hpp"

namespace tvx::bench::peers {
namespace {

constexpr int32_t kCodes = 40;
constexpr size_t kCells = size_t{kCodes} * kCodes;

int32_t do_nothing(comn_context*, const comn_datafmt*, const void*, const comn_datafmt*, void*,
                   int32_t*) {
  return CS_SUCCEED;
}

std::array<comn_conversion*, kCells> make_cells() {
  std::array<comn_conversion*, kCells> cells;
  cells.fill(do_nothing);
  return cells;
}

}  // namespace

struct RoutineTable {
  comn_conversion* const* cells;
};

const RoutineTable* routine_table() {
  static const auto cells = make_cells();
  static const RoutineTable table{cells.data()};
  return &table;
}

comn_conversion* look_up(const RoutineTable* table, int32_t source, int32_t destination) {
  if (table == nullptr) std::abort();
  if (source < 0 || destination < 0) return nullptr;
  if (source >= kCodes || destination >= kCodes) return nullptr;
  if (table->cells == nullptr) std::abort();
  return table->cells[source * kCodes + destination];
}

}  // namespace tvx::bench::peers
