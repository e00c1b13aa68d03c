// The records of the list manager and the memory that they live in. They are opaque to callers, but
// each begins with its state, which shows in a dump and gives away a record that is used after its
// end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "runtime/diagnosis.hpp"
#include "tvxcomn/lists.h"
#include "tvxcomn/support.h"

namespace tvx::runtime {

enum class RecordState : int32_t {
  kBuilding = 11,  // also a slot that was never in use
  kFreed = 12,
  kReady = 13,  // of elements: in an ordered list, queue or stack
  kSpare = 14,
  kInserted = 15,  // as kReady, with the data that it was inserted with
  kHashed = 16,
  kDeleted = 17,  // a slot that was in use
};

// Where blocks come from: the caller's routines with the caller's value, or without routines the
// heap.
struct ListMemory {
  lm_allocate* allocate = nullptr;
  lm_release* release = nullptr;
  void* user = nullptr;

  // Null when memory has run out.
  [[nodiscard]] void* get_block(size_t size) const {
    if (allocate == nullptr) [[likely]]
      return comn_malloc(size);
    return allocate(size, user);
  }

  // Initialised objects; null when memory has run out.
  template <class T>
  [[nodiscard]] T* make(size_t count = 1) const {
    auto* const objects = static_cast<T*>(get_block(count * sizeof(T)));
    if (objects != nullptr) std::uninitialized_value_construct_n(objects, count);
    return objects;
  }

  void free_block(void* block) const {
    if (block == nullptr) return;
    if (release == nullptr) [[likely]] {
      comn_free(block);
    } else {
      release(block, user);
    }
  }

  template <class Record>
  void free_record(Record* record) const {
    record->state = RecordState::kFreed;
    free_block(record);
  }
};

struct ListName {
  char* bytes = nullptr;  // null when the length is 0
  int32_t length = 0;
};

struct ListMethods;

}  // namespace tvx::runtime

struct lm_element {
  tvx::runtime::RecordState state = tvx::runtime::RecordState::kBuilding;
  uint32_t key_length = 0;
  uint8_t* key = nullptr;
  void* data = nullptr;
  lm_element* next = nullptr;
  union {
    lm_element* previous = nullptr;  // in a ring
    uint32_t hash;                   // in a table: of the key
  };
};

struct lm_bucket {
  lm_element* front = nullptr;
};

struct lm_list {
  tvx::runtime::RecordState state = tvx::runtime::RecordState::kBuilding;
  int32_t kind = 0;
  const tvx::runtime::ListMethods* methods = nullptr;
  lm_element* current = nullptr;

  // The store: which of them it is depends on the kind.
  lm_element ends;               // of a ring: the head is its next, the tail its previous element
  lm_bucket* buckets = nullptr;  // of chains
  lm_element* slots = nullptr;

  lm_element* spares = nullptr;  // linked by `next`
  int32_t spare_length = 0;      // of that chain; the spare count is how long it may become
  int32_t spare_count = 0;
  int32_t hash_size = 0;
  int32_t element_count = 0;
  tvx::runtime::ListMemory memory;

  lm_function* function = nullptr;
  void* value = nullptr;
  tvx::runtime::ListName name;
  lm_context* context = nullptr;
  lm_list* newer = nullptr;
  lm_list* older = nullptr;
};

struct lm_context {
  tvx::runtime::RecordState state = tvx::runtime::RecordState::kBuilding;
  int32_t version = 0;
  tvx::runtime::ListName name;
  tvx::runtime::ListMemory memory;

  static constexpr int32_t kDefaultKind = LM_ORDERED;
  static constexpr int32_t kDefaultHashSize = 10;
  static constexpr int32_t kDefaultSpareCount = 0;
  int32_t kind = kDefaultKind;
  int32_t hash_size = kDefaultHashSize;
  int32_t spare_count = kDefaultSpareCount;

  int32_t list_count = 0;
  lm_list* newest = nullptr;
  lm_list* current = nullptr;
};

namespace tvx::runtime {

using List = lm_list;
using ListContext = lm_context;
using Element = lm_element;

// An operation of lm_list_op on one kind of list. `key` is a cursor for kinds without keys.
using ListOperation = int32_t(List& list, void* key, int32_t key_length, void* data, void** out);

inline constexpr int32_t kFirstOperation = LM_INSERT;
inline constexpr int32_t kLastOperation = LM_APPLY_ALL;

// What differs from one kind of list to another.
struct ListMethods {
  int32_t (*make_store)(List& list);
  void (*free_store)(List& list);                      // with its elements; there may be none yet
  int32_t (*set_hash_size)(List& list, int32_t size);  // null: not a table
  ListOperation* operations[kLastOperation - kFirstOperation + 1];  // by their codes
};

extern const ListMethods kOrderedMethods;
extern const ListMethods kQueueMethods;
extern const ListMethods kStackMethods;
extern const ListMethods kChainedMethods;
extern const ListMethods kOpenMethods;

// Null for an unknown kind.
[[nodiscard]] inline const ListMethods* list_methods(int32_t kind) {
  switch (kind) {
    case LM_ORDERED:
      return &kOrderedMethods;
    case LM_HASH_CHAINED:
      return &kChainedMethods;
    case LM_HASH_OPEN:
      return &kOpenMethods;
    case LM_QUEUE:
      return &kQueueMethods;
    case LM_STACK:
      return &kStackMethods;
    default:
      return nullptr;
  }
}

inline void require_ready(RecordState state, const char* file = __builtin_FILE(),
                          int32_t line = __builtin_LINE()) {
  require(state == RecordState::kReady, file, line);
}

}  // namespace tvx::runtime
