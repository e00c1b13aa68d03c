#include "runtime/list_elements.hpp"

namespace tvx::runtime {

bool add_spares(List& list, int32_t count) {
  for (; count > 0; --count) {
    auto* const element = list.memory.make<Element>();
    if (element == nullptr) {
      drop_spares(list, list.spare_length);
      return false;
    }
    put_away(list, element, INT32_MAX);
  }
  return true;
}

void drop_spares(List& list, int32_t count) {
  for (; count > 0 && list.spares != nullptr; --count) list.memory.free_record(take_element(list));
}

int32_t set_spare_count(List& list, int32_t count) {
  if (count < 0) return CS_FAIL;
  const int32_t added = count - list.spare_count;
  if (added > 0 && !add_spares(list, added)) return CS_MEM_ERROR;
  drop_spares(list, -added);
  list.spare_count = count;
  return CS_SUCCEED;
}

}  // namespace tvx::runtime
