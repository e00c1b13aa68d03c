// Exported functions of lists.h.
#include "tvxcomn/lists.h"

#include "runtime/list_context.hpp"
#include "runtime/list_properties.hpp"

namespace rt = tvx::runtime;

namespace {

// Checks and trace points take the line of the exported function.

int32_t open_context(int32_t version, const char* name, int32_t name_length,
                     const rt::ListMemory& memory, lm_context** context,
                     int32_t line = __builtin_LINE()) {
  rt::require_pointers({name, context}, __FILE__, line);
  return rt::traced(rt::create_list_context(version, name, name_length, memory, *context), __FILE__,
                    line);
}

int32_t open_list(lm_context& context, int32_t kind, const char* name, int32_t name_length,
                  const rt::ListMemory& memory, lm_list** list, int32_t line = __builtin_LINE()) {
  rt::require_ready(context.state, __FILE__, line);
  rt::require_pointers({name, list}, __FILE__, line);
  return rt::traced(rt::create_list(context, kind, name, name_length, memory, *list), __FILE__,
                    line);
}

rt::ListMemory memory_of(lm_allocate* allocate, lm_release* release, void* user,
                         int32_t line = __builtin_LINE()) {
  rt::require_pointers(
      {reinterpret_cast<const void*>(allocate), reinterpret_cast<const void*>(release)}, __FILE__,
      line);
  return {allocate, release, user};
}

// The properties of `record`, a context or a list.
template <class Record>
int32_t property(Record* record, int32_t (*operate)(Record&, const rt::PropertyRequest&),
                 const rt::PropertyRequest& request, int32_t line = __builtin_LINE()) {
  if (request.out_length != nullptr) *request.out_length = 0;
  if (record == nullptr) return rt::traced(CS_FAIL, __FILE__, line);
  rt::require_ready(record->state, __FILE__, line);
  return rt::traced(operate(*record, request), __FILE__, line);
}

}  // namespace

extern "C" {

int32_t lm_initlm(int32_t version, const char* name, int32_t name_length, lm_context** context) {
  return open_context(version, name, name_length, {}, context);
}

int32_t lm_initlm_ex(int32_t version, const char* name, int32_t name_length, lm_context** context,
                     lm_allocate* allocate, lm_release* release, void* user) {
  return open_context(version, name, name_length, memory_of(allocate, release, user), context);
}

int32_t lm_exit(lm_context* context, int32_t mode) {
  if (context == nullptr) return rt::traced(CS_FAIL);
  rt::require_ready(context->state);
  return rt::traced(rt::end_list_context(*context, mode));
}

int32_t lm_list_alloc(lm_context* context, int32_t kind, const char* name, int32_t name_length,
                      lm_list** list) {
  if (context == nullptr) return rt::traced(CS_FAIL);
  return open_list(*context, kind, name, name_length, context->memory, list);
}

int32_t lm_list_alloc_ex(lm_context* context, int32_t kind, const char* name, int32_t name_length,
                         lm_list** list, lm_allocate* allocate, lm_release* release, void* user) {
  if (context == nullptr) return rt::traced(CS_FAIL);
  return open_list(*context, kind, name, name_length, memory_of(allocate, release, user), list);
}

int32_t lm_list_drop(lm_list* list, int32_t mode) {
  if (list == nullptr) return rt::traced(CS_FAIL);
  rt::require_ready(list->state);
  return rt::traced(rt::drop_list(*list, mode));
}

int32_t lm_list_op(lm_list* list, int32_t operation, void* key, int32_t key_length, void* data,
                   void** out) {
  if (list == nullptr) return rt::traced(CS_FAIL);
  rt::require_ready(list->state);
  rt::require(operation >= rt::kFirstOperation && operation <= rt::kLastOperation);
  return list->methods->operations[operation - rt::kFirstOperation](*list, key, key_length, data,
                                                                    out);
}

int32_t lm_list_prop(lm_list* list, int32_t action, int32_t property_number, void* buffer,
                     int32_t buffer_length, int32_t* out_length) {
  return property(list, rt::list_property,
                  {action, property_number, buffer, buffer_length, out_length});
}

int32_t lm_property(lm_context* context, int32_t action, int32_t property_number, void* buffer,
                    int32_t buffer_length, int32_t* out_length) {
  return property(context, rt::context_property,
                  {action, property_number, buffer, buffer_length, out_length});
}

}  // extern "C"
