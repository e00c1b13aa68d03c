// Where the elements of a list come from and go to: its reserve of spare elements, so that a busy
// list does not allocate for every insert, and behind it the list's memory.
#pragma once

#include "runtime/list_records.hpp"

namespace tvx::runtime {

// A spare element, else a new one; null when memory has run out. All its fields are for the caller
// to set.
[[nodiscard]] inline Element* take_element(List& list) {
  Element* const spare = list.spares;
  if (spare == nullptr) return static_cast<Element*>(list.memory.get_block(sizeof(Element)));
  list.spares = spare->next;
  --list.spare_length;
  return spare;
}

// Takes an element back that is in no store any more: into the reserve while that is shorter than
// `reserve`.
inline void put_away(List& list, Element* element, int32_t reserve) {
  if (list.spare_length >= reserve) return list.memory.free_record(element);
  *element = {};
  element->state = RecordState::kSpare;
  element->next = list.spares;
  list.spares = element;
  ++list.spare_length;
}

// Adds new elements to the reserve. When memory runs out, false with the reserve empty.
[[nodiscard]] bool add_spares(List& list, int32_t count);

// Frees that many elements of the reserve, or all there are.
void drop_spares(List& list, int32_t count);

// Sets the spare count and makes the reserve as much longer or shorter; the result is that of
// setting the property.
[[nodiscard]] int32_t set_spare_count(List& list, int32_t count);

}  // namespace tvx::runtime
