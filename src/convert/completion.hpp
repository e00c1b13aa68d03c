// The last step of every conversion into text or binary data: does the value fit, and what follows
// it in the destination. Each step returns the result code of the conversion and leaves the number
// of bytes that the destination now holds in `output_length`, which on entry counts those
// delivered.
#pragma once

#include <cstdint>

#include "tvxcomn/datatypes.h"

namespace tvx::convert {

// A value of `length` bytes fits unless it is longer than the capacity, or exactly as long with a
// terminator still to come.
[[nodiscard]] inline bool text_fits(int32_t length, int32_t capacity, uint32_t flags) {
  return capacity > length || (capacity == length && (flags & CS_FORMAT_TERMINATE) == 0);
}

// Fill and terminator of a value that fits. Rarely needed, so kept out of the callers.
int32_t pad_text(uint32_t flags, int32_t capacity, uint8_t* destination, int32_t& output_length);

// The forced terminator of a value that does not fit. Returns CS_CONV_OVERFLOW.
int32_t cut_text(uint32_t flags, int32_t capacity, uint8_t* destination);

// Single-byte text that is known to fit.
inline int32_t complete_fitting_text(uint32_t flags, int32_t capacity, uint8_t* destination,
                                     int32_t& output_length) {
  constexpr uint32_t any = CS_FORMAT_TERMINATE | CS_FORMAT_ZEROFILL | CS_FORMAT_BLANKFILL;
  if ((flags & any) == 0) [[likely]]
    return CS_SUCCEED;
  return pad_text(flags, capacity, destination, output_length);
}

// Single-byte text. CS_CONV_OVERFLOW: too long. CS_CONV_BADFORMAT: both fills requested.
inline int32_t complete_text(uint32_t flags, int32_t capacity, int32_t length, uint8_t* destination,
                             int32_t& output_length) {
  if (!text_fits(length, capacity, flags)) return cut_text(flags, capacity, destination);
  return complete_fitting_text(flags, capacity, destination, output_length);
}

inline int32_t complete_text(const comn_datafmt& format, int32_t length, void* destination,
                             int32_t& output_length) {
  return complete_text(format.format, format.maxlength, length, static_cast<uint8_t*>(destination),
                       output_length);
}

// The same in units of two bytes.
int32_t complete_utf16(const comn_datafmt& format, int32_t length, void* destination,
                       int32_t& output_length);

// Binary data of fixed-size sources: only the zero fill counts, and it always succeeds.
int32_t complete_binary(const comn_datafmt& format, void* destination, int32_t& output_length);

// The text step of the bare layer under the bare context's flags; the destination's length plays
// the part of the output length. With COMNB_RIGHTALIGN a blank fill goes in front of the value;
// CS_CONV_BADFORMAT together with the terminator.
int32_t complete_bare_text(const comnb_context& context, int32_t length, comnb_value& destination);

}  // namespace tvx::convert
