// The default table is made at compile time of what the families say they serve. It holds the
// addresses of the exported functions, which is why it is put together here.
#include "api/default_table.hpp"

#include <algorithm>

#include "api/binary_served.hpp"
#include "api/dateformat_served.hpp"
#include "api/dateparse_served.hpp"
#include "api/dates_served.hpp"
#include "api/money_served.hpp"
#include "api/numbertext_served.hpp"
#include "api/numeric_served.hpp"
#include "api/scalar_served.hpp"
#include "convert/null_values.hpp"

namespace tvx::api {
namespace {

using convert::DefaultTable;
using convert::kDatatypes;

constexpr std::array kNullServed{
    Served{convert::kNullSource, convert::kNullDestinations, traced_call<convert::null_to_any>}};
static_assert(count_pairs(kNullServed) == 37);

constexpr auto kServed =
    all_of(kScalarServed, kNumberTextServed, kNumericServed, kMoneyServed, kBinaryServed,
           kDateFormatServed, kDatesServed, kDateParseServed, kNullServed);

// The table as it comes together, and whether each cell is claimed once. The claims are marked
// beside the table, since not every compiler compares the addresses of functions at compile time.
struct Assembly {
  DefaultTable table{};
  std::array<bool, size_t{kDatatypes} * kDatatypes> filled{};
  bool contested = false;

  constexpr void fill(size_t cell, comn_conversion* routine) {
    contested = contested || filled[cell];
    filled[cell] = true;
    table[cell] = routine;
  }
};

constexpr Assembly assemble() {
  Assembly assembly;
  for (const Served& row : kServed) {
    for (int32_t source = 0; source < kDatatypes; ++source) {
      if (!row.sources.contains(source)) continue;
      for (int32_t destination = 0; destination < kDatatypes; ++destination) {
        if (!row.destinations.contains(destination)) continue;
        assembly.fill(convert::cell(source, destination), row.routine);
      }
    }
  }
  return assembly;
}

constexpr Assembly kAssembly = assemble();
static_assert(!kAssembly.contested, "two routines claim one cell");
static_assert(std::count(kAssembly.filled.begin(), kAssembly.filled.end(), true) ==
                  count_pairs(kServed),
              "a code lies beyond the table");

constexpr DefaultTable kTable = kAssembly.table;

}  // namespace

const DefaultTable& default_table() {
  return kTable;
}

}  // namespace tvx::api
