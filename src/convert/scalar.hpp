// Conversions among the scalar datatypes. One body serves every pair: it reads the source, holds it
// against the pair's rule and stores either the converted value or a limit.
#pragma once

#include "base/bytes.hpp"
#include "convert/arguments.hpp"
#include "convert/scalar_rules.hpp"

namespace tvx::convert {

template <class Stored>
struct Outcome {
  Stored value;
  int32_t code;
  bool limited;  // the value is a limit of the rule
};

// What the machine's truncating conversion gives for NaN: its "integer indefinite" of 32 bits, or
// of 64 bits for the destinations that do not fit 32 signed ones, cut to the destination.
template <class Integer>
inline constexpr Integer kTruncatedNan =
    std::is_same_v<Integer, uint32_t> || sizeof(Integer) == 8
        ? static_cast<Integer>(std::numeric_limits<int64_t>::min())
        : static_cast<Integer>(std::numeric_limits<int32_t>::min());

// Truncates towards zero a value that is in range, or NaN.
template <class Integer>
[[nodiscard]] inline Integer truncate(double value) {
  constexpr double two_to_63 = 9223372036854775808.0;
  if (value != value) return kTruncatedNan<Integer>;
  if constexpr (std::is_same_v<Integer, uint64_t>) {
    if (value >= two_to_63) {
      return (uint64_t{1} << 63) + static_cast<uint64_t>(static_cast<int64_t>(value - two_to_63));
    }
    return static_cast<uint64_t>(static_cast<int64_t>(value));
  } else {
    return static_cast<Integer>(static_cast<int64_t>(value));
  }
}

// From 2^63 on, an unsigned value is the sum of two floats, in the precision of the destination.
template <class Float>
[[nodiscard]] inline Float to_float(uint64_t value) {
  constexpr auto half = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
  if (value <= half) return static_cast<Float>(static_cast<int64_t>(value));
  return static_cast<Float>(static_cast<int64_t>(half)) +
         static_cast<Float>(static_cast<int64_t>(value - half));
}

// A value inside the range of its pair.
template <class Source, class Destination>
[[nodiscard]] inline Value<Destination> convert_in_range(Value<Source> value) {
  if constexpr (is_bit<Destination>) {
    return value != 0 ? 1 : 0;
  } else if constexpr (is_float<Source> && is_integer<Destination>) {
    return truncate<Value<Destination>>(value);
  } else if constexpr (std::is_same_v<Source, type::ui8> && is_float<Destination>) {
    return to_float<Value<Destination>>(value);
  } else {
    return static_cast<Value<Destination>>(value);
  }
}

template <class Source, class Destination>
[[nodiscard]] inline Outcome<Value<Destination>> convert_scalar(Value<Source> value) {
  if constexpr (!is_bit<Source> && !is_bit<Destination>) {
    // A bound that is the source type's own lies beyond every value, and its check disappears.
    constexpr const auto& rule = scalar_rule<Source, Destination>;
    constexpr bool checks_below = is_float<Source> || rule.lowest != Limits<Source>::lowest();
    constexpr bool checks_above = is_float<Source> || rule.highest != Limits<Source>::max();
    const auto compared = static_cast<Compared<Source>>(value);
    if (checks_above && compared > rule.highest) [[unlikely]] {
      return {rule.above.stored, rule.above.code, true};
    }
    if (checks_below && compared < rule.lowest) [[unlikely]] {
      return {rule.below.stored, rule.below.code, true};
    }
  }
  return {convert_in_range<Source, Destination>(value), CS_SUCCEED, false};
}

// A bit byte is legal when it is 0 or 1; every other source value is.
template <class Source>
[[nodiscard]] inline bool is_legal(Value<Source> value) {
  return !is_bit<Source> || value <= 1;
}

// comn_ routine of a pair.
template <class Source, class Destination>
int32_t scalar_routine(const Call& call) {
  call.require_codes(source_codes<Source, Destination>, destination_codes<Destination>);
  const auto value = base::load<Value<Source>>(call.source);
  if (!is_legal<Source>(value)) return CS_CONV_DOMAIN;
  const auto outcome = convert_scalar<Source, Destination>(value);
  base::store(call.destination, outcome.value);
  *call.output_length = sizeof outcome.value;
  return outcome.code;
}

// comnb_ routine of a pair.
template <class Source, class Destination>
int32_t bare_scalar_routine(const BareCall& call) {
  call.require_data();
  const auto value = base::load<Value<Source>>(call.source->data);
  if (!is_legal<Source>(value)) return CS_CONV_DOMAIN;
  const auto outcome = convert_scalar<Source, Destination>(value);
  base::store(call.destination->data, outcome.value);
  const bool drops = scalar_rule<Source, Destination>.bare_drops_length && outcome.limited;
  call.destination->length = drops ? 0 : static_cast<int32_t>(sizeof outcome.value);
  return outcome.code < 0 ? CS_CONV_OVERFLOW : outcome.code;
}

// Bit towards text and binary data.
int32_t bit_to_char(const Call& call);
int32_t bit_to_bin(const Call& call);
int32_t bit_to_varchar(const Call& call);
int32_t bit_to_varbin(const Call& call);
int32_t bare_bit_to_char(const BareCall& call);
int32_t bare_bit_to_varchar(const BareCall& call);

}  // namespace tvx::convert
