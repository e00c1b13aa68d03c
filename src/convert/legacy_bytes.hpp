// Legacy conversions that move bytes: copies of text, raw copies, null values.
#pragma once

#include "base/hexadecimal.hpp"
#include "convert/hexadecimal.hpp"
#include "convert/legacy_call.hpp"

namespace tvx::convert::legacy {

template <class Type>
inline constexpr int32_t kSize = sizeof(Value<Type>);

// ---- Text --------------------------------------------------------------------------------------

template <class Source, class Kind>
int32_t copy_text(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  Text text = Source::read(call);
  if (text.length == 0) return kNothing;
  if constexpr (!Kind::keeps_trailing_blanks) {
    while (text.length > 0 && text.data[text.length - 1] == ' ') --text.length;
  }
  return deliver_bytes<Kind>(call, text);
}

// ---- Hexadecimal text --------------------------------------------------------------------------

// The digits of as many whole bytes as have room.
template <class Kind>
int32_t bytes_to_text(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const Text bytes = from_field::read(call);
  const int32_t count = std::min(bytes.length, Kind::room(call.destination_length) / 2);
  base::write_hex(reinterpret_cast<const uint8_t*>(bytes.data), static_cast<size_t>(count),
                  Kind::data(call.destination));
  Kind::finish(call.destination, call.destination_length, 2 * count);
  return bytes.length > count ? kCut : 2 * count;
}

template <class Source>
int32_t text_to_bytes(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const Text text = Source::read(call);
  if (text.length == 0) return kNothing;
  const auto reading = read_hex_digits(hex_digits(text), static_cast<uint8_t*>(call.destination),
                                       to_raw::room(call.destination_length), CS_CONV_OVERFLOW);
  return result_of(reading.code, reading.length);
}

// ---- Raw bytes ---------------------------------------------------------------------------------

// Into binary data of any length.
template <class Kind>
int32_t copy_bytes(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  return deliver_bytes<Kind>(call, from_field::read(call));
}

// Into a value of fixed size, which keeps its last bytes when the source has fewer.
template <class Source, class Type>
int32_t copy_to_fixed(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  const Text bytes = Source::read(call);
  return deliver_bytes<to_raw>({call.source, call.source_length, call.destination, kSize<Type>},
                               bytes);
}

// ---- Null values -------------------------------------------------------------------------------

// The destination gets the null value, or the empty value of its kind when there is none.
template <class Kind>
int32_t set_null(void* destination, int32_t length, const void* value, int32_t value_length) {
  if (destination == nullptr) return kNothing;
  runtime::require(value_length >= 0);
  const Text bytes{static_cast<const char*>(value), value == nullptr ? 0 : value_length};
  const int32_t count = deliver_bytes<Kind>({value, value_length, destination, length}, bytes);
  return count == kCut ? kNullCut : count;
}

// Of fixed size; the bytes behind a shorter null value are zero.
template <class Type>
int32_t set_fixed_null(void* destination, const void* value, int32_t value_length) {
  const int32_t count = set_null<to_binary>(destination, kSize<Type>, value, value_length);
  return count < 0 || destination == nullptr ? count : kSize<Type>;
}

}  // namespace tvx::convert::legacy
