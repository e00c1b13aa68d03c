// The rules of the scalar conversions: for each pair the range of source values that convert, what
// is stored on either side of it, and how that is reported. Routines, tests and documentation read
// the same record.
#pragma once

#include <utility>

#include "convert/scalar_types.hpp"

namespace tvx::convert {

// One side of a range: what is stored beyond it, and the result in the data-format layer. The bare
// layer reports every negative code as CS_CONV_OVERFLOW.
template <class Stored>
struct Side {
  Stored stored;
  int32_t code;
};

// Values below `lowest` or above `highest`, strictly, are out of range.
template <class Compared, class Stored>
struct ScalarRule {
  Compared lowest;
  Compared highest;
  Side<Stored> below;
  Side<Stored> above;
  bool bare_drops_length;  // the bare twin delivers a limit with length 0
};

// Integers are compared in the widest type of their signedness, floats as doubles.
template <class Source>
using Compared =
    std::conditional_t<is_float<Source>, double,
                       std::conditional_t<Limits<Source>::is_signed, int64_t, uint64_t>>;

// The result for a value below the range. Towards the unsigned codes it is told apart, and by the
// i8 sources towards the two narrowest integers.
template <class Source, class Destination>
inline constexpr int32_t below_code = is_unsigned_code<Destination> ||
                                              (std::is_same_v<Source, type::i8> &&
                                               (std::is_same_v<Destination, type::i1> ||
                                                std::is_same_v<Destination, type::i2>))
                                          ? CS_CONV_UNDERFLOW
                                          : CS_CONV_OVERFLOW;

template <class Source, class Destination>
inline constexpr bool bare_drops_length = (std::is_same_v<Source, type::i2> &&
                                           is_unsigned_code<Destination>) ||
                                          (std::is_same_v<Source, type::flt4> &&
                                           (std::is_same_v<Destination, type::i1> ||
                                            std::is_same_v<Destination, type::i2> ||
                                            std::is_same_v<Destination, type::i4>));

template <class Source, class Destination>
using Rule = ScalarRule<Compared<Source>, Value<Destination>>;

// The rule of most pairs: the range is what both types hold, the destination's limits stand beyond
// it.
template <class Source, class Destination>
constexpr Rule<Source, Destination> range_rule() {
  using S = Limits<Source>;
  using D = Limits<Destination>;
  Rule<Source, Destination> rule{.lowest = S::lowest(),
                                 .highest = S::max(),
                                 .below = {D::lowest(), below_code<Source, Destination>},
                                 .above = {D::max(), CS_CONV_OVERFLOW},
                                 .bare_drops_length = bare_drops_length<Source, Destination>};
  if constexpr (is_float<Destination> && sizeof(Value<Destination>) >= sizeof(Value<Source>)) {
    // Nothing is out of range, an infinity included.
    if constexpr (is_float<Source>) {
      rule.lowest = -S::infinity();
      rule.highest = S::infinity();
    }
  } else if constexpr (is_float<Source>) {
    rule.lowest = static_cast<double>(D::lowest());
    rule.highest = static_cast<double>(D::max());
  } else if constexpr (is_integer<Destination>) {
    if (std::cmp_less(S::min(), D::min())) rule.lowest = static_cast<Compared<Source>>(D::min());
    if (std::cmp_greater(S::max(), D::max()))
      rule.highest = static_cast<Compared<Source>>(D::max());
  }
  return rule;
}

// An 8-byte integer towards a float: from the threshold on it is stored as the cap, without a
// report, so that such a float converts back. That of ui8 towards flt4 lies a little above the
// range of flt4 towards ui8 all the same, and comes back as the limit.
template <class Source, class Destination>
constexpr Rule<Source, Destination> capped_rule(Compared<Source> threshold,
                                                Value<Destination> cap) {
  Rule<Source, Destination> rule = range_rule<Source, Destination>();
  rule.highest = threshold - 1;
  rule.above = {cap, CS_SUCCEED};
  return rule;
}

// A float towards an 8-byte integer: the range ends at the decimal digits that the float type
// carries, and what is stored beyond it are those digits, not the bound's own integer.
template <class Source, class Destination>
constexpr Rule<Source, Destination> digits_rule(double highest, Value<Destination> stored) {
  Rule<Source, Destination> rule = range_rule<Source, Destination>();
  rule.highest = highest;
  rule.above.stored = stored;
  if constexpr (Limits<Destination>::is_signed) {
    rule.lowest = -highest;
    rule.below.stored = -stored;
  }
  return rule;
}

template <class Source, class Destination>
inline constexpr Rule<Source, Destination> scalar_rule = range_rule<Source, Destination>();

template <>
inline constexpr auto scalar_rule<type::i8, type::flt4> =
    capped_rule<type::i8, type::flt4>(9223370000000000000, 9.22337e18F);
template <>
inline constexpr auto scalar_rule<type::i8, type::flt8> =
    capped_rule<type::i8, type::flt8>(9223372036854769700, 9.22337203685477e18);
template <>
inline constexpr auto scalar_rule<type::ui8, type::flt4> =
    capped_rule<type::ui8, type::flt4>(18446700000000000000U, 1.84467e19F);
template <>
inline constexpr auto scalar_rule<type::ui8, type::flt8> =
    capped_rule<type::ui8, type::flt8>(18446744073709500000U, 1.84467440737095e19);

template <>
inline constexpr auto scalar_rule<type::flt4, type::i8> =
    digits_rule<type::flt4, type::i8>(9.22337e18, 9223370000000000000);
template <>
inline constexpr auto scalar_rule<type::flt8, type::i8> =
    digits_rule<type::flt8, type::i8>(9223372036854769664.0, 9223372036854769700);
template <>
inline constexpr auto scalar_rule<type::flt4, type::ui8> =
    digits_rule<type::flt4, type::ui8>(1.84467e19, 18446700000000000000U);
template <>
inline constexpr auto scalar_rule<type::flt8, type::ui8> =
    digits_rule<type::flt8, type::ui8>(18446744073709500416.0, 18446744073709500000U);

}  // namespace tvx::convert
