// Binary data and texts of any code as sources, and what goes into records.
#pragma once

#include "support/conversion.hpp"

namespace tvx::test {

inline int32_t size_of(std::string_view bytes) {
  return static_cast<int32_t>(bytes.size());
}

// Converts a value of a code, in its record where it has one.
inline Outcome convert_value(int32_t from, std::string_view value, const comn_datafmt& to) {
  const bool record = from == TVX_TYPE_VARCHAR || from == TVX_TYPE_VARBIN;
  return convert(format_of(from, record ? 0 : size_of(value)),
                 record ? varchar_record(value) : std::string(value), to);
}

// A record of what was delivered.
inline Outcome recorded(int32_t code, std::string_view data) {
  return {code, 258, varchar_record(data, kUntouched)};
}

// What of a value gets into a destination of `room` bytes, and how that is told.
inline Outcome copied(const std::string& bytes, int32_t room, int32_t too_long, int32_t too_short) {
  Outcome outcome = delivered(bytes, room);
  const int32_t missing = size_of(bytes) - room;
  outcome.code = missing > 0 ? too_long : missing < 0 ? too_short : CS_SUCCEED;
  return outcome;
}

// The same for bin, which is filled on request.
inline Outcome copied_to_bin(const std::string& bytes, int32_t capacity, uint32_t flags,
                             int32_t too_long) {
  const Outcome outcome = copied(bytes, capacity, too_long, CS_SUCCEED);
  return outcome.code == too_long ? outcome
                                  : complete(outcome, 0, capacity, flags & CS_FORMAT_ZEROFILL);
}

}  // namespace tvx::test
