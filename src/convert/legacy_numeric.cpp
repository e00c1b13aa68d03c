// The null value of an exact numeric in the legacy interface.
#include "convert/legacy_numeric.hpp"

namespace tvx::convert::legacy {

int32_t set_numeric_null(const LegacyCall& call, NumericType type, comn_conversion* retype) {
  const int32_t code = check_type(type, false);
  if (code != CS_SUCCEED) return result_of(code, 0);
  if (call.destination == nullptr) return kNothing;
  runtime::require(call.source_length >= 0);
  if (call.source != nullptr && call.source_length > 0) {
    OneCall one(TVX_TYPE_NUM, from_field::read(call));
    const int32_t converted = one.run(retype, format_of(type), call.destination);
    return result_of(converted, one.length());
  }
  comn_numeric zero{};
  zero.precision = static_cast<uint8_t>(type.precision);
  zero.scale = static_cast<uint8_t>(type.scale);
  return deliver_value(call, zero);
}

}  // namespace tvx::convert::legacy
