#include "peers/lists.hpp"

#include <list>
#include <unordered_map>

namespace tvx::bench::peers {

struct Table {
  std::unordered_map<std::string_view, void*> map;
};

Table* create_table(size_t size) {
  auto* const table = new Table;
  table->map.reserve(size);
  return table;
}

void insert(Table* table, std::string_view key, void* data) {
  table->map.emplace(key, data);
}

void* find(const Table* table, std::string_view key) {
  const auto found = table->map.find(key);
  return found != table->map.end() ? found->second : nullptr;
}

void drop(Table* table) {
  delete table;
}

struct List {
  std::list<void*> list;
};

List* create_list() {
  return new List;
}

void append(List* list, void* data) {
  list->list.push_back(data);
}

void apply(const List* list, int32_t (*function)(void* data)) {
  for (void* const data : list->list) function(data);
}

void drop(List* list) {
  delete list;
}

}  // namespace tvx::bench::peers
