// Contexts and lists from their creation to their end. Results are those of the interface.
#pragma once

#include "runtime/list_records.hpp"

namespace tvx::runtime {

[[nodiscard]] int32_t create_list_context(int32_t version, const char* name, int32_t name_length,
                                          const ListMemory& memory, ListContext*& context);

[[nodiscard]] int32_t end_list_context(ListContext& context, int32_t mode);

[[nodiscard]] int32_t create_list(ListContext& context, int32_t kind, const char* name,
                                  int32_t name_length, const ListMemory& memory, List*& list);

[[nodiscard]] int32_t drop_list(List& list, int32_t mode);

}  // namespace tvx::runtime
