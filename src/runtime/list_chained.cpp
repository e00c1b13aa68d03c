// The chained hash table: an array of chains, each with its newest element in front.
#include "runtime/list_table.hpp"

namespace tvx::runtime {
namespace {

struct ChainedTable {
  static constexpr int32_t kSmallestSize = 1;

  static bool can_have_size(const List&, int32_t) { return true; }

  static bool make_store(List& list) {
    list.buckets = list.memory.make<lm_bucket>(bucket_count(list));
    return list.buckets != nullptr;
  }

  static void free_store(List& list, int32_t reserve) {
    if (list.buckets == nullptr) return;
    for_each<ChainedTable>(list, [&](Element& element) {
      put_away(list, &element, reserve);
      return true;
    });
    list.memory.free_block(list.buckets);
  }

  static Element* front(const List& list, uint32_t bucket) { return list.buckets[bucket].front; }

  static uint32_t bucket_of(const List& list, const Element& element) {
    return element.hash % bucket_count(list);
  }
  static Element*& front_for(const List& list, uint32_t hash) {
    return list.buckets[hash % bucket_count(list)].front;
  }

  static int32_t insert(List& list, ListKey key, void* data) {
    Element* const element = take_element(list);
    if (element == nullptr) return CS_MEM_ERROR;
    Element*& front = front_for(list, key.hash);
    put_in_use(*element, key, data, front);
    front = element;
    ++list.element_count;
    list.current = element;
    return CS_SUCCEED;
  }

  static Element* find(const List& list, ListKey key) {
    Element* element = front_for(list, key.hash);
    while (element != nullptr && !key.is_key_of(*element)) element = element->next;
    return element;
  }

  static Element* erase(List& list, Element* element) {
    Element* const before = before_in_bucket<ChainedTable>(list, *element);
    Element* const behind = element->next;
    (before != nullptr ? before->next : front_for(list, element->hash)) = behind;
    --list.element_count;
    put_away(list, element, list.spare_count);
    return before != nullptr ? before : behind;
  }
};

}  // namespace

const ListMethods kChainedMethods = kTableMethods<ChainedTable>;

}  // namespace tvx::runtime
