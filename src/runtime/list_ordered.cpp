// Ordered lists, queues and stacks: one ring of elements through List::ends, which stands before
// the head and behind the tail. A queue and a stack differ from an ordered list in where an insert
// goes, and in that deletion and LM_CURRENT mean the head.
//
// Every operation starts from a position and leaves one: that of the caller's cursor if it holds an
// element, else the list's current element.
#include "runtime/list_elements.hpp"

namespace tvx::runtime {
namespace {

// Null for the place beyond the ends of the list.
Element* element_at(List& list, Element* place) {
  return place != &list.ends ? place : nullptr;
}

Element* head_of(List& list) {
  return element_at(list, list.ends.next);
}

// ---- What operations do. They may move the position. -------------------------------------------

using Action = int32_t(List& list, Element*& position, int32_t key_length, void* data);

constexpr int32_t place_of(int32_t kind, int32_t key_length) {
  if (kind == LM_ORDERED) return key_length;
  return kind == LM_QUEUE ? LM_AT_TAIL : LM_AT_HEAD;
}

// What stands behind an element that is inserted at the place; null when it is to go beside the
// position and there is none.
Element* behind_place(List& list, int32_t place, Element* position) {
  if (place == LM_AT_TAIL) return &list.ends;
  if (place == LM_AT_HEAD) return list.ends.next;
  require(place == LM_BEFORE_CURRENT || place == LM_AFTER_CURRENT);
  if (position == nullptr) return nullptr;
  return place == LM_BEFORE_CURRENT ? position : position->next;
}

template <int32_t kind>
int32_t insert(List& list, Element*& position, int32_t key_length, void* data) {
  Element* const behind = behind_place(list, place_of(kind, key_length), position);
  if (behind == nullptr) return CS_FAIL;
  Element* const element = take_element(list);
  if (element == nullptr) return CS_MEM_ERROR;
  Element* const before = behind->previous;
  element->state = RecordState::kInserted;
  element->key_length = 0;
  element->key = nullptr;
  element->data = data;
  element->next = behind;
  element->previous = before;
  before->next = element;
  behind->previous = element;
  ++list.element_count;
  position = element;
  return CS_SUCCEED;
}

template <int32_t kind>
int32_t erase(List& list, Element*& position, int32_t, void*) {
  Element* const element = kind == LM_ORDERED ? position : head_of(list);
  if (element == nullptr) return CS_FAIL;
  element->previous->next = element->next;
  element->next->previous = element->previous;
  --list.element_count;
  position = element->previous != &list.ends ? element->previous : head_of(list);
  // A cursor may have deleted what the list itself stands on.
  if (list.current == element) list.current = position;
  put_away(list, element, list.spare_count);
  return CS_SUCCEED;
}

int32_t find(List&, Element*&, int32_t, void*) {
  return CS_FAIL;
}

int32_t set_data(List&, Element*& position, int32_t, void* data) {
  if (position == nullptr) return CS_FAIL;
  position->data = data;
  position->state = RecordState::kReady;
  return CS_SUCCEED;
}

template <Element* Element::*neighbour>
int32_t move(List& list, Element*& position, int32_t, void*) {
  if (position == nullptr) return CS_FAIL;
  Element* const to = element_at(list, position->*neighbour);
  if (to == nullptr) return CS_FAIL;
  position = to;
  return CS_SUCCEED;
}

template <int32_t kind>
int32_t current(List& list, Element*& position, int32_t, void*) {
  if (kind != LM_ORDERED) position = head_of(list);
  return CS_SUCCEED;
}

template <Element* Element::*end>
int32_t move_to_end(List& list, Element*& position, int32_t, void*) {
  position = element_at(list, list.ends.*end);
  return CS_SUCCEED;
}

int32_t apply(List& list, Element*& position, int32_t, void*) {
  if (position == nullptr || list.function == nullptr) return CS_FAIL;
  return list.function(position->data) != 0 ? CS_SUCCEED : CS_FAIL;
}

int32_t apply_to_each(const List& list, lm_function* function) {
  if (function == nullptr) return CS_FAIL;
  for (const Element* element = list.ends.next; element != &list.ends;) {
    const Element* const next = element->next;
    if (function(element->data) == 0) return CS_FAIL;
    element = next;
  }
  return CS_SUCCEED;
}

int32_t print_all(List& list, Element*&, int32_t, void*) {
  return apply_to_each(list, list.function);
}

int32_t apply_all(List& list, Element*&, int32_t, void* data) {
  return apply_to_each(list, reinterpret_cast<lm_function*>(data));
}

// ---- Where they start, and what becomes of the position ----------------------------------------

bool is_in_list(const Element& element) {
  return element.state == RecordState::kReady || element.state == RecordState::kInserted;
}

void deliver(void** out, const Element* position) {
  if (out != nullptr) *out = position != nullptr ? position->data : nullptr;
}

// Out of line, so that an operation without a cursor does not pay for it.
template <Action action>
[[gnu::noinline]] int32_t operation_with_cursor(List& list, Element*& cursor, int32_t key_length,
                                                void* data, void** out) {
  Element* position = cursor;
  const bool is_filled = position != nullptr;
  if (is_filled) require(is_in_list(*position));
  const int32_t result = action(list, is_filled ? position : list.current, key_length, data);
  if (!is_filled) position = list.current;
  cursor = position;
  deliver(out, position);
  return traced(result);
}

template <Action action>
int32_t operation(List& list, void* key, int32_t key_length, void* data, void** out) {
  if (key != nullptr) [[unlikely]] {
    auto& cursor = *static_cast<Element**>(key);
    return operation_with_cursor<action>(list, cursor, key_length, data, out);
  }
  const int32_t result = action(list, list.current, key_length, data);
  deliver(out, list.current);
  return traced(result);
}

// ---- The store ---------------------------------------------------------------------------------

int32_t make_store(List& list) {
  list.ends.next = list.ends.previous = &list.ends;
  return CS_SUCCEED;
}

void free_store(List& list) {
  for (Element* element = list.ends.next; element != &list.ends;) {
    Element* const next = element->next;
    list.memory.free_record(element);
    element = next;
  }
}

template <int32_t kind>
constexpr ListMethods kMethods{
    make_store,
    free_store,
    nullptr,
    {operation<insert<kind>>, operation<erase<kind>>, operation<find>, operation<set_data>,
     operation<move<&Element::next>>, operation<move<&Element::previous>>, operation<current<kind>>,
     operation<move_to_end<&Element::next>>, operation<move_to_end<&Element::previous>>,
     operation<apply>, operation<print_all>, operation<apply_all>}};

}  // namespace

const ListMethods kOrderedMethods = kMethods<LM_ORDERED>;
const ListMethods kQueueMethods = kMethods<LM_QUEUE>;
const ListMethods kStackMethods = kMethods<LM_STACK>;

}  // namespace tvx::runtime
