// Completion steps.
#include "convert/completion.hpp"

#include <cstring>

namespace tvx::convert {
namespace {

constexpr uint32_t kBothFills = CS_FORMAT_ZEROFILL | CS_FORMAT_BLANKFILL;
constexpr int32_t kUnit = 2;  // bytes of a UTF-16 code unit

static_assert(COMNB_TERMINATE == CS_FORMAT_TERMINATE && COMNB_ZEROFILL == CS_FORMAT_ZEROFILL &&
              COMNB_BLANKFILL == CS_FORMAT_BLANKFILL);  // so that one step serves both layers

void fill_bytes(uint8_t* destination, int32_t from, int32_t to, uint8_t byte) {
  if (to > from) std::memset(destination + from, byte, static_cast<size_t>(to - from));
}

void put_unit(uint8_t* destination, int32_t at, uint8_t low) {
  destination[at] = low;
  destination[at + 1] = 0;
}

}  // namespace

int32_t cut_text(uint32_t flags, int32_t capacity, uint8_t* destination) {
  if ((flags & CS_FORMAT_TERMINATE) != 0 && capacity >= 1) destination[capacity - 1] = 0;
  return CS_CONV_OVERFLOW;
}

int32_t pad_text(uint32_t flags, int32_t capacity, uint8_t* destination, int32_t& output_length) {
  if ((flags & kBothFills) == kBothFills) return CS_CONV_BADFORMAT;
  if ((flags & kBothFills) == 0) {
    if ((flags & CS_FORMAT_TERMINATE) != 0) destination[output_length++] = 0;
    return CS_SUCCEED;
  }
  const bool blanks = (flags & CS_FORMAT_BLANKFILL) != 0;
  fill_bytes(destination, output_length, capacity, blanks ? ' ' : 0);
  if (blanks && (flags & CS_FORMAT_TERMINATE) != 0) destination[capacity - 1] = 0;
  output_length = capacity;
  return CS_SUCCEED;
}

int32_t complete_utf16(const comn_datafmt& format, int32_t length, void* destination,
                       int32_t& output_length) {
  auto* bytes = static_cast<uint8_t*>(destination);
  const int32_t capacity = format.maxlength;
  const bool terminate = (format.format & CS_FORMAT_TERMINATE) != 0;
  const int32_t last_unit = (capacity - kUnit) / kUnit * kUnit;

  if (capacity < length || (terminate && capacity - length < kUnit)) {
    if (terminate && capacity >= kUnit) put_unit(bytes, last_unit, 0);
    return CS_CONV_OVERFLOW;
  }
  if ((format.format & kBothFills) == kBothFills) return CS_CONV_BADFORMAT;
  if ((format.format & CS_FORMAT_BLANKFILL) != 0) {
    for (int32_t at = output_length; at + kUnit <= capacity; at += kUnit) put_unit(bytes, at, ' ');
    if (terminate) put_unit(bytes, last_unit, 0);
    output_length = capacity;
  } else if ((format.format & CS_FORMAT_ZEROFILL) != 0) {
    fill_bytes(bytes, output_length, capacity, 0);
    output_length = capacity;
  } else if (terminate) {
    put_unit(bytes, output_length, 0);
    output_length += kUnit;
  }
  return CS_SUCCEED;
}

int32_t complete_binary(const comn_datafmt& format, void* destination, int32_t& output_length) {
  if ((format.format & CS_FORMAT_ZEROFILL) != 0) {
    fill_bytes(static_cast<uint8_t*>(destination), output_length, format.maxlength, 0);
    output_length = format.maxlength;
  }
  return CS_SUCCEED;
}

int32_t complete_bare_text(const comnb_context& context, int32_t length, comnb_value& destination) {
  auto* bytes = static_cast<uint8_t*>(destination.data);
  const int32_t capacity = destination.maxlength;
  const uint32_t flags = context.flags;
  const bool right = (flags & COMNB_RIGHTALIGN) != 0;

  if (!right || !text_fits(length, capacity, flags)) {
    return complete_text(flags, capacity, length, bytes, destination.length);
  }
  if ((flags & COMNB_TERMINATE) != 0) return CS_CONV_BADFORMAT;
  if ((flags & kBothFills) != CS_FORMAT_BLANKFILL) {
    return complete_text(flags, capacity, length, bytes, destination.length);
  }
  const int32_t blanks = capacity - destination.length;
  std::memmove(bytes + blanks, bytes, static_cast<size_t>(destination.length));
  fill_bytes(bytes, 0, blanks, ' ');
  destination.length = capacity;
  return CS_SUCCEED;
}

}  // namespace tvx::convert
