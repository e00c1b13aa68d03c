// Containers of the C++ library as peers of the list manager, each operation a call out of line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tvxcomn/export.h"

namespace tvx::bench::peers {

// std::unordered_map<std::string_view, void*>, with room for `size` elements from the start.
struct Table;
TVXCOMN_API Table* create_table(size_t size);
TVXCOMN_API void insert(Table* table, std::string_view key, void* data);
TVXCOMN_API void* find(const Table* table, std::string_view key);  // null if it is not there
TVXCOMN_API void drop(Table* table);

// std::list<void*>.
struct List;
TVXCOMN_API List* create_list();
TVXCOMN_API void append(List* list, void* data);
TVXCOMN_API void apply(const List* list, int32_t (*function)(void* data));
TVXCOMN_API void drop(List* list);

}  // namespace tvx::bench::peers
