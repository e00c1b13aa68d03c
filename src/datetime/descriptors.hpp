// Date arithmetic on values in descriptors, whose bytes are what the length of a source and the
// wire datatype token of a destination say.
#pragma once

#include <cstdint>
#include <optional>

#include "tvxcomn/datatypes.h"
#include "tvxcomn/dates.h"

namespace tvx::datetime {

// The datetime that a source is, or is part of, towards the destination with a token: a datetime of
// 8 bytes, or in 4 the day of a date or, towards a time, its ticks. Nothing for any other source.
// A datetime has no place in a time's ticks.
[[nodiscard]] std::optional<comn_datetime> take_datetime(const comnb_value& source, uint8_t token);

// The 8 bytes of a source of a big type.
[[nodiscard]] std::optional<uint64_t> take_big(const comnb_value& source);

// Add an amount of a part that the value has, and deliver in the type of the destination: a
// datetime, datetime4, date or time; of a bigdatetime or bigtime. False, with nothing stored, when
// the result is out of range or the destination is of another type or does not have exactly its
// size.
[[nodiscard]] bool add_and_deliver(int32_t part, int32_t amount, comn_datetime value,
                                   comnb_value& destination);
[[nodiscard]] bool add_and_deliver(int32_t part, int32_t amount, uint64_t value,
                                   comnb_value& destination);

}  // namespace tvx::datetime
