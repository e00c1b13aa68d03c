// The properties of lists and contexts. Results are those of the interface.
#pragma once

#include "runtime/list_records.hpp"

namespace tvx::runtime {

// The arguments of lm_list_prop and lm_property.
struct PropertyRequest {
  int32_t action;
  int32_t property;
  void* buffer;
  int32_t buffer_length;
  int32_t* out_length;
};

[[nodiscard]] int32_t list_property(List& list, const PropertyRequest& request);
[[nodiscard]] int32_t context_property(ListContext& context, const PropertyRequest& request);

}  // namespace tvx::runtime
