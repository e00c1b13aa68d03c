#include "runtime/list_context.hpp"

#include <cstring>

#include "runtime/list_elements.hpp"

namespace tvx::runtime {
namespace {

int32_t measured_length(const char* name, int32_t length) {
  if (length == CS_UNUSED) return 0;
  if (length != CS_NULLTERM) {
    require(length >= 0);
    return length;
  }
  const size_t measured = std::strlen(name) + 1;
  require(measured <= INT32_MAX);
  return static_cast<int32_t>(measured);
}

// False when memory has run out.
bool copy_name(const ListMemory& memory, const char* bytes, int32_t length, ListName& name) {
  name.length = measured_length(bytes, length);
  if (name.length == 0) return true;
  const auto size = static_cast<size_t>(name.length);
  name.bytes = memory.make<char>(size);
  if (name.bytes == nullptr) return false;
  std::memcpy(name.bytes, bytes, size);
  return true;
}

int32_t build(List& list, const ListContext& context, const char* name, int32_t name_length) {
  list.hash_size = context.hash_size;
  if (const int32_t made = list.methods->make_store(list); made != CS_SUCCEED) return made;
  if (!copy_name(list.memory, name, name_length, list.name)) return CS_MEM_ERROR;
  return set_spare_count(list, list.kind == LM_HASH_OPEN ? 0 : context.spare_count);
}

// Frees a list, which may be half built.
void destroy(List& list) {
  const ListMemory memory = list.memory;
  list.methods->free_store(list);
  drop_spares(list, list.spare_length);
  memory.free_block(list.name.bytes);
  memory.free_record(&list);
}

void enter(List& list, ListContext& context) {
  list.context = &context;
  list.older = context.newest;
  if (list.older != nullptr) list.older->newer = &list;
  context.newest = &list;
  context.current = &list;
  ++context.list_count;
}

void leave(List& list, ListContext& context) {
  (list.newer != nullptr ? list.newer->older : context.newest) = list.older;
  if (list.older != nullptr) list.older->newer = list.newer;
  if (context.current == &list) context.current = context.newest;
  --context.list_count;
}

}  // namespace

int32_t create_list_context(int32_t version, const char* name, int32_t name_length,
                            const ListMemory& memory, ListContext*& context) {
  require(version >= LM_LEAST_VERSION);
  auto* const created = memory.make<ListContext>();
  if (created == nullptr) return CS_MEM_ERROR;
  if (!copy_name(memory, name, name_length, created->name)) {
    memory.free_record(created);
    return CS_MEM_ERROR;
  }
  created->version = version;
  created->memory = memory;
  created->state = RecordState::kReady;
  context = created;
  return CS_SUCCEED;
}

int32_t end_list_context(ListContext& context, int32_t mode) {
  require(mode == CS_UNUSED || mode == LM_DROP_LISTS);
  if (mode == CS_UNUSED && context.newest != nullptr) return CS_FAIL;
  while (context.newest != nullptr) {
    if (const int32_t dropped = drop_list(*context.newest, LM_DROP_ELEMENTS); dropped != CS_SUCCEED)
      return dropped;
  }
  const ListMemory memory = context.memory;
  memory.free_block(context.name.bytes);
  memory.free_record(&context);
  return CS_SUCCEED;
}

int32_t create_list(ListContext& context, int32_t kind, const char* name, int32_t name_length,
                    const ListMemory& memory, List*& list) {
  if (kind == CS_UNUSED) kind = context.kind;
  const ListMethods* const methods = list_methods(kind);
  require(methods != nullptr);
  auto* const created = memory.make<List>();
  if (created == nullptr) return CS_MEM_ERROR;
  created->kind = kind;
  created->methods = methods;
  created->memory = memory;
  if (const int32_t built = build(*created, context, name, name_length); built != CS_SUCCEED) {
    destroy(*created);
    return built;
  }
  enter(*created, context);
  created->state = RecordState::kReady;
  list = created;
  return CS_SUCCEED;
}

int32_t drop_list(List& list, int32_t mode) {
  require(mode == CS_UNUSED || mode == LM_DROP_ELEMENTS);
  if (mode == CS_UNUSED && list.element_count != 0) return CS_FAIL;
  leave(list, *list.context);
  destroy(list);
  return CS_SUCCEED;
}

}  // namespace tvx::runtime
