// The table of conversion routines of one context, and the overflow list beside it for pairs with a
// code of 40 or above.
#pragma once

#include <array>

#include "convert/catalogue.hpp"
#include "tvxcomn/context.h"

namespace tvx::convert {

using DefaultTable = std::array<comn_conversion*, size_t{kDatatypes} * kDatatypes>;

[[nodiscard]] constexpr size_t cell(int32_t source, int32_t destination) {
  return static_cast<size_t>(source) * kDatatypes + static_cast<size_t>(destination);
}

// Whether a pair of codes that are not negative has a cell in the table.
[[nodiscard]] constexpr bool in_table(int32_t source, int32_t destination) {
  return source < kDatatypes && destination < kDatatypes;
}

// CS_SUCCEED, or CS_MEM_ERROR with the context's table null.
int32_t init_routines(comn_context& context, const DefaultTable& defaults);

void free_routines(comn_context& context);

// The routine of a pair outside the table; null when it has none.
[[nodiscard]] comn_conversion* find_overflow_routine(const comn_context& context, int32_t source,
                                                     int32_t destination);

// CS_SUCCEED, or CS_MEM_ERROR with nothing changed. The context has a table, the codes are not
// negative.
int32_t install_routine(comn_context& context, int32_t source, int32_t destination,
                        comn_conversion* routine);

// Takes the routine of a pair outside the table away; its entry keeps its place.
void clear_overflow_routine(comn_context& context, int32_t source, int32_t destination);

}  // namespace tvx::convert
