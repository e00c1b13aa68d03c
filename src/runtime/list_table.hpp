// What the two kinds of hash tables have in common: keys, the walk over their elements, the
// operations, and the rebuilding with another hash size. A kind of table is a class of static
// functions:
//
//   kSmallestSize                      the least hash size
//   can_have_size(list, size)          whether the elements there are would find room
//   make_store(list)                   an empty store of the list's hash size; false without memory
//   free_store(list, reserve)          frees the store, and its elements but for those that bring
//                                      the list's spare elements to `reserve`
//   front(list, bucket)                the first element of a bucket, null if it is empty; the
//                                      others follow by their `next`
//   bucket_of(list, element)           the bucket that an element is in
//   insert(list, key, data)            a result code; the new element becomes current
//   find(list, key)                    null if the key is not there
//   erase(list, element)               gives a neighbour in its bucket, null if there is none
#pragma once

#include "base/bytes.hpp"
#include "runtime/debug_output.hpp"
#include "runtime/list_elements.hpp"
#include "runtime/list_hash.hpp"

namespace tvx::runtime {

// ---- Keys --------------------------------------------------------------------------------------

// Compares bytes, at least a word of them, by words, of which the last may overlap the one before.
template <class Word>
[[nodiscard]] bool same_words(const uint8_t* a, const uint8_t* b, size_t length) {
  const auto same = [=](size_t at) { return base::load<Word>(a + at) == base::load<Word>(b + at); };
  const size_t last = length - sizeof(Word);
  for (size_t at = 0; at < last; at += sizeof(Word)) {
    if (!same(at)) return false;
  }
  return same(last);
}

// Most keys are short: a call of memcmp costs more than comparing them.
[[nodiscard]] inline bool same_bytes(const uint8_t* a, const uint8_t* b, size_t length) {
  if (length >= sizeof(uint64_t)) return same_words<uint64_t>(a, b, length);
  if (length >= sizeof(uint32_t)) return same_words<uint32_t>(a, b, length);
  return length == 0 || same_words<uint8_t>(a, b, length);
}

struct ListKey {
  uint8_t* bytes;
  uint32_t length;
  uint32_t hash;

  [[nodiscard]] bool is_key_of(const Element& element) const {
    return element.hash == hash && element.key_length == length &&
           same_bytes(element.key, bytes, length);
  }
};

[[nodiscard]] inline ListKey key_of(const Element& element) {
  return {element.key, element.key_length, element.hash};
}

// Makes an element, whatever it was, one of a table.
inline void put_in_use(Element& element, const ListKey& key, void* data, Element* next) {
  element.state = RecordState::kHashed;
  element.key_length = key.length;
  element.key = key.bytes;
  element.data = data;
  element.next = next;
  element.hash = key.hash;
}

// The key that an operation must be given.
[[nodiscard]] inline ListKey key_of(void* key, int32_t key_length) {
  if (key_length != 0) require_pointer(key);
  require(key_length >= 0);
  auto* const bytes = static_cast<uint8_t*>(key);
  const auto length = static_cast<uint32_t>(key_length);
  return {bytes, length, hash_key(bytes, length)};
}

// ---- The walk ----------------------------------------------------------------------------------

[[nodiscard]] inline uint32_t bucket_count(const List& list) {
  return static_cast<uint32_t>(list.hash_size);
}

// The first element of the buckets from this one on.
template <class Table>
[[nodiscard]] Element* first_from(const List& list, uint32_t bucket) {
  for (; bucket < bucket_count(list); ++bucket) {
    if (Element* const front = Table::front(list, bucket)) return front;
  }
  return nullptr;
}

// The last element of the buckets before this one.
template <class Table>
[[nodiscard]] Element* last_before(const List& list, uint32_t bucket) {
  while (bucket-- > 0) {
    Element* element = Table::front(list, bucket);
    if (element == nullptr) continue;
    while (element->next != nullptr) element = element->next;
    return element;
  }
  return nullptr;
}

// The element before this one in its bucket, null for the front. Chains are linked forwards only:
// they are short, and the hash of its key serves an element better.
template <class Table>
[[nodiscard]] Element* before_in_bucket(const List& list, const Element& element) {
  Element* before = Table::front(list, Table::bucket_of(list, element));
  if (before == &element) return nullptr;
  while (before->next != &element) before = before->next;
  return before;
}

// Calls the function with each element of a bucket until it gives false, and returns the last that
// it gave.
template <class Table, class Function>
bool for_each_in(const List& list, uint32_t bucket, Function function) {
  for (Element* element = Table::front(list, bucket); element != nullptr;) {
    Element* const next = element->next;
    if (!function(*element)) return false;
    element = next;
  }
  return true;
}

template <class Table, class Function>
bool for_each(const List& list, Function function) {
  for (uint32_t bucket = 0; bucket < bucket_count(list); ++bucket) {
    if (!for_each_in<Table>(list, bucket, function)) return false;
  }
  return true;
}

// ---- Operations --------------------------------------------------------------------------------

using TableAction = int32_t(List& list, void* key, int32_t key_length, void* data);

inline int32_t code_of(bool done) {
  return done ? CS_SUCCEED : CS_FAIL;
}

// Moves to an element; where there is none, the result says so.
inline int32_t move_to(List& list, Element* element, int32_t none) {
  if (element == nullptr) return none;
  list.current = element;
  return CS_SUCCEED;
}

template <class Table>
int32_t insert(List& list, void* key, int32_t key_length, void* data) {
  return Table::insert(list, key_of(key, key_length), data);
}

template <class Table>
int32_t find(List& list, void* key, int32_t key_length, void*) {
  return move_to(list, Table::find(list, key_of(key, key_length)), LM_NOT_FOUND);
}

// The element with the key, or when none is given the current element; and the result if that is
// null.
struct Target {
  Element* element;
  int32_t none;
};

template <class Table>
Target target(const List& list, void* key, int32_t key_length) {
  if (key == nullptr || key_length == CS_UNUSED) return {list.current, CS_FAIL};
  return {Table::find(list, key_of(key, key_length)), LM_NOT_FOUND};
}

template <class Table>
int32_t erase(List& list, void* key, int32_t key_length, void*) {
  const auto [element, none] = target<Table>(list, key, key_length);
  if (element == nullptr) return none;
  list.current = Table::erase(list, element);
  return CS_SUCCEED;
}

template <class Table>
int32_t set_data(List& list, void* key, int32_t key_length, void* data) {
  const auto [element, none] = target<Table>(list, key, key_length);
  if (element == nullptr) return none;
  element->data = data;
  return CS_SUCCEED;
}

template <class Table>
int32_t apply(List& list, void* key, int32_t key_length, void*) {
  const auto [element, none] = target<Table>(list, key, key_length);
  if (element == nullptr) {
    if (none == CS_FAIL) debug_print("\nNULL\n");
    return none;
  }
  return code_of(list.function != nullptr && list.function(element->data) != 0);
}

template <class Table>
int32_t next(List& list, void*, int32_t, void*) {
  const Element* const current = list.current;
  if (current == nullptr) return CS_FAIL;
  if (current->next != nullptr) return move_to(list, current->next, CS_FAIL);
  return move_to(list, first_from<Table>(list, Table::bucket_of(list, *current) + 1), CS_FAIL);
}

template <class Table>
int32_t previous(List& list, void*, int32_t, void*) {
  const Element* const current = list.current;
  if (current == nullptr) return CS_FAIL;
  if (Element* const before = before_in_bucket<Table>(list, *current))
    return move_to(list, before, CS_FAIL);
  return move_to(list, last_before<Table>(list, Table::bucket_of(list, *current)), CS_FAIL);
}

inline int32_t current(List&, void*, int32_t, void*) {
  return CS_SUCCEED;
}

template <class Table>
int32_t first(List& list, void*, int32_t, void*) {
  list.current = first_from<Table>(list, 0);
  return CS_SUCCEED;
}

template <class Table>
int32_t last(List& list, void*, int32_t, void*) {
  list.current = last_before<Table>(list, bucket_count(list));
  return CS_SUCCEED;
}

template <class Table>
bool print_bucket(const List& list, uint32_t bucket) {
  if (Table::front(list, bucket) == nullptr) {
    debug_print("\n***Chain empty***\n");
    return true;
  }
  const auto print_key = [&](const Element& element) { return list.function(element.key) != 0; };
  const auto print_data = [&](const Element& element) { return list.function(element.data) != 0; };
  debug_print("\nKeys:\n");
  if (!for_each_in<Table>(list, bucket, print_key)) return false;
  debug_print("\nData:\n");
  if (!for_each_in<Table>(list, bucket, print_data)) return false;
  debug_print("\n");
  return true;
}

template <class Table>
int32_t print_all(List& list, void*, int32_t, void*) {
  if (list.function == nullptr) return CS_FAIL;
  for (uint32_t bucket = 0; bucket < bucket_count(list); ++bucket) {
    if (!print_bucket<Table>(list, bucket)) return CS_FAIL;
  }
  return CS_SUCCEED;
}

template <class Table>
int32_t apply_all(List& list, void*, int32_t, void* data) {
  auto* const function = reinterpret_cast<lm_function*>(data);
  const auto call = [=](const Element& element) { return function(element.data) != 0; };
  return code_of(function != nullptr && for_each<Table>(list, call));
}

template <TableAction action>
int32_t table_operation(List& list, void* key, int32_t key_length, void* data, void** out) {
  const int32_t result = action(list, key, key_length, data);
  if (out != nullptr) *out = list.current != nullptr ? list.current->data : nullptr;
  return traced(result);
}

// ---- The store ---------------------------------------------------------------------------------

template <class Table>
int32_t make_table(List& list) {
  if (list.hash_size < Table::kSmallestSize) return CS_FAIL;
  return Table::make_store(list) ? CS_SUCCEED : CS_MEM_ERROR;
}

// Inserts the elements of another table in its order, as new ones.
template <class Table>
int32_t insert_all(List& list, const List& from) {
  int32_t result = CS_SUCCEED;
  for_each<Table>(from, [&](const Element& element) {
    result = Table::insert(list, key_of(element), element.data);
    return result == CS_SUCCEED;
  });
  return result;
}

// Sets the hash size. On failure the table is as it was, and so is the reserve.
template <class Table>
int32_t rebuild(List& list, int32_t size) {
  if (size < Table::kSmallestSize || !Table::can_have_size(list, size)) return CS_FAIL;
  List old = list;  // holds the old store and knows its size
  list.hash_size = size;
  list.element_count = 0;
  int32_t result = make_table<Table>(list);
  if (result == CS_SUCCEED) result = insert_all<Table>(list, old);
  if (result == CS_SUCCEED) {
    require(list.element_count == old.element_count);
    Table::free_store(old, 0);
    return result;
  }
  Table::free_store(list, old.spare_length);
  old.spares = list.spares;  // as many as before, but in another order
  list = old;
  return result;
}

template <class Table>
void free_table(List& list) {
  Table::free_store(list, 0);
}

template <class Table>
inline constexpr ListMethods kTableMethods{
    make_table<Table>,
    free_table<Table>,
    rebuild<Table>,
    {table_operation<insert<Table>>, table_operation<erase<Table>>, table_operation<find<Table>>,
     table_operation<set_data<Table>>, table_operation<next<Table>>,
     table_operation<previous<Table>>, table_operation<current>, table_operation<first<Table>>,
     table_operation<last<Table>>, table_operation<apply<Table>>, table_operation<print_all<Table>>,
     table_operation<apply_all<Table>>}};

}  // namespace tvx::runtime
