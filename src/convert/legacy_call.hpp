// The shape of the legacy interface: a source and its length, a destination and its length, and a
// byte count as the result. Its conversions are templates over the kinds of source and destination
// that stand here; each adds only the rule of its family.
#pragma once

#include <algorithm>
#include <cstring>
#include <limits>

#include "convert/number_text.hpp"

namespace tvx::convert::legacy {

// ---- Results -----------------------------------------------------------------------------------

// A result that is not negative counts the bytes of the value.
inline constexpr int32_t kNothing = 0;        // a null or empty source
inline constexpr int32_t kCut = -1;           // overflow, or a value cut
inline constexpr int32_t kBelow = -2;         // below the range
inline constexpr int32_t kSyntax = -3;        // no literal of the type
inline constexpr int32_t kNullCut = -5;       // a null value longer than the destination
inline constexpr int32_t kDomain = -6;        // no legal value
inline constexpr int32_t kBadPrecision = -7;  // precision outside 1 to 77
inline constexpr int32_t kBadScale = -8;      // scale outside 0 to 77

// The result of a data-format routine that delivered `length` bytes; codes without a legacy form
// stay as they are.
[[nodiscard]] constexpr int32_t result_of(int32_t code, int32_t length) {
  switch (code) {
    case CS_SUCCEED:
      return length;
    case CS_CONV_OVERFLOW:
      return kCut;
    case CS_CONV_UNDERFLOW:
      return kBelow;
    case CS_CONV_BADPREC:
      return kBadPrecision;
    case CS_CONV_BADSCALE:
      return kBadScale;
    case CS_CONV_SYNTAX:
      return kSyntax;
    case CS_CONV_DOMAIN:
      return kDomain;
    default:
      return code;
  }
}

// ---- Arguments ---------------------------------------------------------------------------------

struct LegacyCall {
  const void* source;
  int32_t source_length;
  void* destination;
  int32_t destination_length;

  // Whether there is nothing to convert. A negative source length is a fatal usage error, null
  // buffers are not.
  [[nodiscard]] bool is_empty(const char* file = __builtin_FILE(),
                              int32_t line = __builtin_LINE()) const {
    runtime::require(source_length >= 0, file, line);
    return source == nullptr || destination == nullptr || source_length == 0;
  }
};

// ---- Kinds of source ---------------------------------------------------------------------------

// A field whose length is an argument.
struct from_field {
  static Text read(const LegacyCall& call) {
    return {static_cast<const char*>(call.source), call.source_length};
  }
};

// A record that begins with its 16-bit length.
struct from_record {
  static Text read(const LegacyCall& call) {
    return {static_cast<const char*>(call.source) + sizeof(uint16_t),
            base::load<uint16_t>(call.source)};
  }
};

// The same record, handed on whole to a routine that takes one.
struct from_whole_record {
  static Text read(const LegacyCall& call) {
    return {static_cast<const char*>(call.source), base::load<uint16_t>(call.source)};
  }
};

// ---- Kinds of destination ----------------------------------------------------------------------

inline constexpr int32_t kUnbounded = std::numeric_limits<int32_t>::max();

// Each kind says how many bytes of a value have room under a destination length, where they lie,
// and how the destination is finished once `count` of them are there.

// A field filled with blanks; unbounded with a negative length.
struct to_char {
  static constexpr bool keeps_trailing_blanks = true;
  static int32_t room(int32_t length) { return length < 0 ? kUnbounded : length; }
  static char* data(void* destination) { return static_cast<char*>(destination); }
  static void finish(void* destination, int32_t length, int32_t count) {
    if (length > count)
      std::memset(data(destination) + count, ' ', static_cast<size_t>(length - count));
  }
};

// The same with a zero byte in its last place; unbounded with a length below 1.
struct to_string {
  static constexpr bool keeps_trailing_blanks = true;
  static int32_t room(int32_t length) { return length < 1 ? kUnbounded : length - 1; }
  static char* data(void* destination) { return static_cast<char*>(destination); }
  static void finish(void* destination, int32_t length, int32_t count) {
    const int32_t last = length < 1 ? count : length - 1;
    std::memset(data(destination) + count, ' ', static_cast<size_t>(last - count));
    data(destination)[last] = '\0';
  }
};

// A value and a zero byte.
struct to_ntbstring {
  static constexpr bool keeps_trailing_blanks = false;
  static int32_t room(int32_t length) { return to_string::room(length); }
  static char* data(void* destination) { return static_cast<char*>(destination); }
  static void finish(void* destination, int32_t, int32_t count) { data(destination)[count] = '\0'; }
};

// A record that begins with its 16-bit length, which the destination length does not count;
// unbounded with a negative one.
struct to_record {
  static constexpr bool keeps_trailing_blanks = true;
  static int32_t room(int32_t length) {
    constexpr int32_t most = std::numeric_limits<uint16_t>::max();
    return length < 0 ? most : std::min(length, most);
  }
  static char* data(void* destination) {
    return static_cast<char*>(destination) + sizeof(uint16_t);
  }
  static void finish(void* destination, int32_t, int32_t count) {
    base::store(destination, static_cast<uint16_t>(count));
  }
};

// Bytes and nothing behind them; unbounded with a negative length.
struct to_raw {
  static int32_t room(int32_t length) { return to_char::room(length); }
  static char* data(void* destination) { return static_cast<char*>(destination); }
  static void finish(void*, int32_t, int32_t) {}
};

// Bytes, and zero bytes up to the length.
struct to_binary : to_raw {
  static void finish(void* destination, int32_t length, int32_t count) {
    if (length > count)
      std::memset(data(destination) + count, 0, static_cast<size_t>(length - count));
  }
};

// The kinds as the exported functions are named after them.
using from_char = from_field;
using from_bin = from_field;
using from_varychar = from_record;
using from_varybin = from_record;
using to_varychar = to_record;
using to_varybin = to_record;

// ---- Delivery ----------------------------------------------------------------------------------

// As many bytes as have room.
template <class Kind>
int32_t deliver_bytes(const LegacyCall& call, Text bytes) {
  const int32_t count = std::min(bytes.length, Kind::room(call.destination_length));
  if (count > 0) std::memmove(Kind::data(call.destination), bytes.data, static_cast<size_t>(count));
  Kind::finish(call.destination, call.destination_length, count);
  return bytes.length > count ? kCut : count;
}

// The text of a number, or "*" in its place. `Written` has a length and writes itself.
template <class Kind, class Written>
int32_t deliver_number(const LegacyCall& call, const Written& text) {
  const int32_t room = Kind::room(call.destination_length);
  char* out = Kind::data(call.destination);
  const bool fits = text.length() <= room;
  int32_t count = 0;
  if (fits) {
    count = static_cast<int32_t>(text.length());
    text.write(out);
  } else if (room > 0) {
    count = 1;
    *out = '*';
  }
  Kind::finish(call.destination, call.destination_length, count);
  return fits ? count : kCut;
}

// A value of fixed size.
template <class Stored>
int32_t deliver_value(const LegacyCall& call, Stored value) {
  base::store(call.destination, value);
  return static_cast<int32_t>(sizeof value);
}

}  // namespace tvx::convert::legacy
