#include "runtime/list_properties.hpp"

#include <cstring>

#include "base/bytes.hpp"
#include "runtime/list_elements.hpp"

namespace tvx::runtime {
namespace {

void set_out_length(const PropertyRequest& request, int32_t length) {
  if (request.out_length != nullptr) *request.out_length = length;
}

void begin(const PropertyRequest& request) {
  require(request.action == LM_GET || request.action == LM_SET || request.action == LM_RESET);
  if (request.action != LM_RESET) require_pointer(request.buffer);
}

template <class Value>
int32_t get(const PropertyRequest& request, Value value) {
  base::store(request.buffer, value);
  set_out_length(request, sizeof value);
  return CS_SUCCEED;
}

template <class Value>
int32_t read_only(const PropertyRequest& request, Value value) {
  require(request.action == LM_GET && request.buffer_length == CS_UNUSED);
  return get(request, value);
}

// `set` is a function of the new value that gives a result code.
template <class Value, class Set>
int32_t settable(const PropertyRequest& request, Value value, Value reset_value, Set set) {
  if (request.action == LM_GET) return get(request, value);
  return set(request.action == LM_SET ? base::load<Value>(request.buffer) : reset_value);
}

// A property that takes every value not below `least`.
template <class Value>
auto assign_to(Value& value, Value least) {
  return [&value, least](Value new_value) {
    if (new_value < least) return CS_FAIL;
    value = new_value;
    return CS_SUCCEED;
  };
}

template <class Value>
auto assign_to(Value*& value) {
  return [&value](Value* new_value) {
    value = new_value;
    return CS_SUCCEED;
  };
}

int32_t get_name(const PropertyRequest& request, const ListName& name) {
  if (name.length < request.buffer_length) {
    auto* const out = static_cast<char*>(request.buffer);
    if (name.length > 0) std::memcpy(out, name.bytes, static_cast<size_t>(name.length));
    out[name.length] = '\0';
  }
  set_out_length(request, name.length + 1);
  return CS_SUCCEED;
}

int32_t set_current(ListContext& context, const void* bytes, int32_t length) {
  require(length > 0);
  List* list = context.newest;
  while (list != nullptr &&
         (list->name.length < length ||
          std::memcmp(list->name.bytes, bytes, static_cast<size_t>(length)) != 0)) {
    list = list->older;
  }
  require(list != nullptr);
  context.current = list;
  return CS_SUCCEED;
}

int32_t current_list_name(ListContext& context, const PropertyRequest& request) {
  switch (request.action) {
    case LM_GET:
      return context.current != nullptr ? get_name(request, context.current->name) : CS_FAIL;
    case LM_SET:
      return set_current(context, request.buffer, request.buffer_length);
    default:
      context.current = context.newest;
      return CS_SUCCEED;
  }
}

}  // namespace

int32_t list_property(List& list, const PropertyRequest& request) {
  begin(request);
  switch (request.property) {
    case LM_LIST_KIND:
      return read_only(request, list.kind);
    case LM_LIST_HASH_SIZE:
      if (list.methods->set_hash_size == nullptr) return CS_FAIL;
      return settable(request, list.hash_size, list.context->hash_size,
                      [&](int32_t size) { return list.methods->set_hash_size(list, size); });
    case LM_LIST_SPARES:
      return settable(request, list.spare_count, list.context->spare_count,
                      [&](int32_t count) { return set_spare_count(list, count); });
    case LM_LIST_COUNT:
      return read_only(request, list.element_count);
    case LM_LIST_CONTEXT:
      return read_only(request, static_cast<void*>(list.context));
    case LM_LIST_NAME:
      require(request.action == LM_GET);
      return get_name(request, list.name);
    case LM_LIST_FUNCTION:
      return settable<lm_function*>(request, list.function, nullptr, assign_to(list.function));
    case LM_LIST_VALUE:
      return settable<void*>(request, list.value, nullptr, assign_to(list.value));
    default:
      require(false);
      return CS_FAIL;
  }
}

int32_t context_property(ListContext& context, const PropertyRequest& request) {
  begin(request);
  switch (request.property) {
    case LM_CONTEXT_KIND:
      return settable(request, context.kind, ListContext::kDefaultKind, [&](int32_t kind) {
        require(list_methods(kind) != nullptr);
        context.kind = kind;
        return CS_SUCCEED;
      });
    case LM_CONTEXT_HASH_SIZE:
      return settable(request, context.hash_size, ListContext::kDefaultHashSize,
                      assign_to(context.hash_size, 1));
    case LM_CONTEXT_SPARES:
      return settable(request, context.spare_count, ListContext::kDefaultSpareCount,
                      assign_to(context.spare_count, 0));
    case LM_CONTEXT_VERSION:
      return read_only(request, context.version);
    case LM_CONTEXT_LISTS:
      return read_only(request, context.list_count);
    case LM_CONTEXT_CURRENT_NAME:
      return current_list_name(context, request);
    case LM_CONTEXT_CURRENT:
      return read_only(request, static_cast<void*>(context.current));
    default:
      require(false);
      return CS_FAIL;
  }
}

}  // namespace tvx::runtime
