// Routine tables.
#include "convert/dispatch.hpp"

#include <cstring>

#include "tvxcomn/support.h"

namespace tvx::convert {
namespace {

// The overflow list is a list of rows, one a source code, in the order of their first installation.
// A row's first entry is its head: heads are chained by `next_row`, the entries of a row by `next`.
struct OverflowEntry {
  int32_t source;
  int32_t destination;
  comn_conversion* routine;
  OverflowEntry* next;
  OverflowEntry* next_row;
};

[[nodiscard]] OverflowEntry* head(const comn_context& context) {
  return static_cast<OverflowEntry*>(context.conversion_overflow);
}

// Where the entry of a pair is, or where a new one would have to be linked.
struct Place {
  OverflowEntry* entry;       // null: the pair has none
  OverflowEntry* last_row;    // last row head visited; null: the list is empty
  OverflowEntry* last_entry;  // last entry of the source's row; null: there is no such row
};

[[nodiscard]] Place find(const comn_context& context, int32_t source, int32_t destination) {
  Place place{};
  OverflowEntry* row = head(context);
  for (; row != nullptr; row = row->next_row) {
    place.last_row = row;
    if (row->source == source) break;
  }
  for (OverflowEntry* entry = row; entry != nullptr; entry = entry->next) {
    place.last_entry = entry;
    if (entry->destination == destination) {
      place.entry = entry;
      break;
    }
  }
  return place;
}

int32_t append(comn_context& context, const Place& place, int32_t source, int32_t destination,
               comn_conversion* routine) {
  auto* entry = static_cast<OverflowEntry*>(comn_calloc(1, sizeof(OverflowEntry)));
  if (entry == nullptr) return CS_MEM_ERROR;
  *entry = {source, destination, routine, nullptr, nullptr};
  if (place.last_entry != nullptr) {
    place.last_entry->next = entry;
  } else if (place.last_row != nullptr) {
    place.last_row->next_row = entry;
  } else {
    context.conversion_overflow = entry;
  }
  return CS_SUCCEED;
}

}  // namespace

int32_t init_routines(comn_context& context, const DefaultTable& defaults) {
  context.conversion_overflow = nullptr;
  context.conversion_dimension = kDatatypes;
  context.conversions = static_cast<comn_conversion**>(comn_malloc(sizeof defaults));
  if (context.conversions == nullptr) return CS_MEM_ERROR;
  std::memcpy(context.conversions, defaults.data(), sizeof defaults);
  return CS_SUCCEED;
}

void free_routines(comn_context& context) {
  comn_free(context.conversions);
  context.conversions = nullptr;
  context.conversion_dimension = 0;
  for (OverflowEntry* row = head(context); row != nullptr;) {
    OverflowEntry* const next_row = row->next_row;
    for (OverflowEntry* entry = row; entry != nullptr;) {
      OverflowEntry* const next = entry->next;
      comn_free(entry);
      entry = next;
    }
    row = next_row;
  }
  context.conversion_overflow = nullptr;
}

comn_conversion* find_overflow_routine(const comn_context& context, int32_t source,
                                       int32_t destination) {
  const OverflowEntry* entry = find(context, source, destination).entry;
  return entry == nullptr ? nullptr : entry->routine;
}

int32_t install_routine(comn_context& context, int32_t source, int32_t destination,
                        comn_conversion* routine) {
  if (in_table(source, destination)) {
    context.conversions[cell(source, destination)] = routine;
    return CS_SUCCEED;
  }
  const Place place = find(context, source, destination);
  if (place.entry == nullptr) return append(context, place, source, destination, routine);
  place.entry->routine = routine;
  return CS_SUCCEED;
}

void clear_overflow_routine(comn_context& context, int32_t source, int32_t destination) {
  OverflowEntry* entry = find(context, source, destination).entry;
  if (entry != nullptr) entry->routine = nullptr;
}

}  // namespace tvx::convert
