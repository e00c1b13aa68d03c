// The open-addressing hash table: an array of slots, made with the table, that are its elements. A
// deleted slot is passed over in a search, which stops at one that was never in use; an insert
// takes either. To the walk every slot is a bucket of at most one element.
#include "runtime/list_table.hpp"

namespace tvx::runtime {
namespace {

// The slots of a key in the order in which they are tried.
class Probe {
public:
  Probe(const List& list, ListKey key)
      : slots_(list.slots), size_(bucket_count(list)), left_(size_) {
    const uint32_t hash = key.hash;
    const uint64_t start = uint64_t{hash % size_} + hash * 7 % (size_ - 1) + 1;
    at_ = static_cast<uint32_t>(start % size_);
  }

  // Null after the last slot.
  Element* next() {
    if (left_ == 0) return nullptr;
    --left_;
    Element* const slot = &slots_[at_];
    at_ = at_ + 1 < size_ ? at_ + 1 : 0;
    return slot;
  }

private:
  Element* slots_;
  uint32_t size_;
  uint32_t left_;
  uint32_t at_;
};

struct OpenTable {
  static constexpr int32_t kSmallestSize = 2;  // the second hash value divides by the size less one

  static bool can_have_size(const List& list, int32_t size) { return size >= list.element_count; }

  static bool make_store(List& list) {
    list.slots = list.memory.make<Element>(bucket_count(list));
    return list.slots != nullptr;
  }

  static void free_store(List& list, int32_t) {
    if (list.slots == nullptr) return;
    for (uint32_t i = 0; i < bucket_count(list); ++i) list.slots[i].state = RecordState::kFreed;
    list.memory.free_block(list.slots);
  }

  static bool is_in_use(const Element& slot) { return slot.state == RecordState::kHashed; }

  static Element* front(const List& list, uint32_t bucket) {
    Element* const slot = &list.slots[bucket];
    return is_in_use(*slot) ? slot : nullptr;
  }

  static uint32_t bucket_of(const List& list, const Element& element) {
    return static_cast<uint32_t>(&element - list.slots);
  }

  static int32_t insert(List& list, ListKey key, void* data) {
    if (list.element_count == list.hash_size) return CS_FAIL;
    Probe probe(list, key);
    Element* slot = probe.next();
    while (is_in_use(*slot)) slot = probe.next();
    put_in_use(*slot, key, data, nullptr);
    ++list.element_count;
    list.current = slot;
    return CS_SUCCEED;
  }

  static Element* find(const List& list, ListKey key) {
    Probe probe(list, key);
    while (Element* const slot = probe.next()) {
      if (slot->state == RecordState::kBuilding) break;
      if (is_in_use(*slot) && key.is_key_of(*slot)) return slot;
    }
    return nullptr;
  }

  static Element* erase(List& list, Element* slot) {
    *slot = {};
    slot->state = RecordState::kDeleted;
    --list.element_count;
    return nullptr;
  }
};

}  // namespace

const ListMethods kOpenMethods = kTableMethods<OpenTable>;

}  // namespace tvx::runtime
