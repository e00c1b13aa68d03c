// The ten scalar datatypes as compile-time tags: their machine type and the codes under which they
// are accepted. Their names are the names by which the exported routines call them.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

#include "convert/catalogue.hpp"

namespace tvx::convert::type {

struct bit {
  using Value = uint8_t;  // legal when 0 or 1
  static constexpr std::string_view name = "bit";
  static constexpr CodeSet codes{TVX_TYPE_BIT};
};
struct i1 {
  using Value = uint8_t;
  static constexpr std::string_view name = "i1";
  static constexpr CodeSet codes{TVX_TYPE_I1};
};
struct i2 {
  using Value = int16_t;
  static constexpr std::string_view name = "i2";
  static constexpr CodeSet codes{TVX_TYPE_I2};
};
struct i4 {
  using Value = int32_t;
  static constexpr std::string_view name = "i4";
  static constexpr CodeSet codes{TVX_TYPE_I4};
};
struct i8 {
  using Value = int64_t;
  static constexpr std::string_view name = "i8";
  static constexpr CodeSet codes{TVX_TYPE_I8};
};
struct ui2 {
  using Value = uint16_t;
  static constexpr std::string_view name = "ui2";
  static constexpr CodeSet codes{TVX_TYPE_UI2};
};
struct ui4 {
  using Value = uint32_t;
  static constexpr std::string_view name = "ui4";
  static constexpr CodeSet codes{TVX_TYPE_UI4};
};
struct ui8 {
  using Value = uint64_t;
  static constexpr std::string_view name = "ui8";
  static constexpr CodeSet codes{TVX_TYPE_UI8};
};
struct flt4 {
  using Value = float;
  static constexpr std::string_view name = "flt4";
  static constexpr CodeSet codes{TVX_TYPE_FLT4};
};
struct flt8 {
  using Value = double;
  static constexpr std::string_view name = "flt8";
  static constexpr CodeSet codes{TVX_TYPE_FLT8};
};

}  // namespace tvx::convert::type

namespace tvx::convert {

template <class Type>
using Value = typename Type::Value;
template <class Type>
using Limits = std::numeric_limits<Value<Type>>;

template <class Type>
inline constexpr bool is_bit = std::is_same_v<Type, type::bit>;
template <class Type>
inline constexpr bool is_float = std::is_floating_point_v<Value<Type>>;
template <class Type>
inline constexpr bool is_integer = !is_bit<Type> && !is_float<Type>;
template <class Type>
inline constexpr bool is_unsigned_code =
    std::is_same_v<Type, type::ui2> || std::is_same_v<Type, type::ui4> ||
    std::is_same_v<Type, type::ui8>;

// What a routine between two scalar types accepts, which is also where the default table uses it:
// int20 goes with i8 as a destination everywhere, as a source towards i4, i8 and the unsigned
// codes.
template <class Destination>
inline constexpr CodeSet destination_codes =
    std::is_same_v<Destination, type::i8> ? kI8Family : Destination::codes;

template <class Source, class Destination>
inline constexpr CodeSet source_codes = std::is_same_v<Source, type::i8> &&
                                                (std::is_same_v<Destination, type::i4> ||
                                                 std::is_same_v<Destination, type::i8> ||
                                                 is_unsigned_code<Destination>)
                                            ? kI8Family
                                            : Source::codes;

}  // namespace tvx::convert
