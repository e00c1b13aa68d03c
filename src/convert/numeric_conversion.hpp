// Conversions from and to exact numerics: the scalar types, text, and numerics among themselves. A
// family is a template over the other side; what concerns only the numeric stands in
// numeric_conversion.cpp.
//
// The destination record gets the precision and scale of its format, and a value that does not fit
// them leaves zero digits behind them.
#pragma once

#include "convert/number_text.hpp"
#include "convert/scalar.hpp"
#include "numeric/decimal.hpp"
#include "numeric/decimal_machine.hpp"
#include "numeric/decimal_text.hpp"

namespace tvx::convert {

inline constexpr CodeSet kNumFamily{TVX_TYPE_NUM, TVX_TYPE_NUM17};

namespace type {

struct num {
  using Value = comn_numeric;
  static constexpr CodeSet codes = kNumFamily;
};

}  // namespace type

// int20 goes with i8 towards numerics too.
template <class Source>
inline constexpr CodeSet num_source_codes =
    std::is_same_v<Source, type::i8> ? kI8Family : Source::codes;

// ---- Where a numeric comes from and goes to ----------------------------------------------------

// Precision and scale as a destination asks for them.
struct NumericType {
  int32_t precision;
  int32_t scale;
};

// CS_SUCCEED, CS_CONV_BADPREC or CS_CONV_BADSCALE. Where the source may decide, CS_TAKE_FROM_SOURCE
// is legal too.
[[nodiscard]] int32_t check_type(NumericType wanted, bool source_may_decide);

// A numeric that a source holds; nothing when its header is not legal (CS_CONV_DOMAIN).
struct NumericSource {
  numeric::Decimal value;
  bool is_legal;
};
[[nodiscard]] inline NumericSource load_source(const Call& call) {
  const auto& record =
      *static_cast<const comn_numeric*>(call.source);  // bytes only: any address will do
  if (!numeric::is_numeric(record)) return {{}, false};
  return {numeric::load_numeric(record), true};
}
[[nodiscard]] NumericSource load_source(const BareCall& call);

// Stores a value, whose precision and scale are the destination's, and returns `code`; zero digits
// and CS_CONV_OVERFLOW when it has too many digits. The output length is that of the record's bytes
// in use, or the whole record's.
enum class Reported { kUsedBytes, kWholeRecord };
int32_t store_result(const Call& call, const numeric::Decimal& value, int32_t code,
                     Reported reported);
int32_t store_result(const BareCall& call, const numeric::Decimal& value, int32_t code);

// ---- Scalars to numerics -----------------------------------------------------------------------

// The numeric of a scalar under a destination's type. False when it has too many digits, which an
// infinity and NaN count as; the value is zero then.
template <class Source>
[[nodiscard]] bool build_numeric(Value<Source> source, NumericType wanted,
                                 numeric::Decimal& value) {
  value = {{}, wanted.precision, wanted.scale, false};
  numeric::DecimalStatus status;
  if constexpr (is_float<Source>) {
    status = numeric::from_double(source, value);
  } else {
    status = numeric::from_integer(source, value);
  }
  if (status == numeric::DecimalStatus::kDone) return true;
  value.magnitude = {};
  return false;
}

// What an 8-byte integer gets when the format leaves its type to the source: the most digits that
// always fit nine bytes.
inline constexpr NumericType kTypeOfEightBytes{21, 0};

template <class Source>
int32_t scalar_to_num(const Call& call) {
  constexpr bool may_decide = is_integer<Source> && sizeof(Value<Source>) == 8;
  call.require_codes(num_source_codes<Source>, kNumFamily);
  const auto number = base::load<Value<Source>>(call.source);
  if (!is_legal<Source>(number)) return CS_CONV_DOMAIN;
  *call.output_length = sizeof(comn_numeric);

  NumericType wanted{call.destination_format->precision, call.destination_format->scale};
  const bool is_left_open = may_decide && wanted.precision == CS_TAKE_FROM_SOURCE;
  const int32_t bad_type = check_type(wanted, is_left_open);
  if (bad_type != CS_SUCCEED) return bad_type;
  if (is_left_open) wanted = kTypeOfEightBytes;
  numeric::Decimal value;
  const bool fits = build_numeric<Source>(number, wanted, value);
  return store_result(call, value, fits ? CS_SUCCEED : CS_CONV_OVERFLOW, Reported::kWholeRecord);
}

template <class Source>
int32_t bare_scalar_to_num(const BareCall& call) {
  call.require_data();
  const auto number = base::load<Value<Source>>(call.source->data);
  if (!is_legal<Source>(number)) return CS_CONV_DOMAIN;
  const NumericType wanted{call.destination->precision, call.destination->scale};
  const int32_t bad_type = check_type(wanted, false);
  if (bad_type != CS_SUCCEED) return bad_type;
  numeric::Decimal value;
  const bool fits = build_numeric<Source>(number, wanted, value);
  return store_result(call, value, fits ? CS_SUCCEED : CS_CONV_OVERFLOW);
}

// ---- Numerics to scalars -----------------------------------------------------------------------

// The narrower types are reached by way of the nearest double and follow its rules; 8-byte integers
// get the integer part exactly.
template <class Destination>
[[nodiscard]] Outcome<Value<Destination>> convert_numeric(const numeric::Decimal& value) {
  using D = Value<Destination>;
  if constexpr (is_bit<Destination>) {
    return {static_cast<D>(value.is_zero() ? 0 : 1), CS_SUCCEED, false};
  } else if constexpr (is_integer<Destination> && sizeof(D) == 8) {
    const auto part = numeric::to_integer<D>(value);
    switch (part.range) {
      case numeric::IntegerRange::kAbove:
        return {part.value, CS_CONV_OVERFLOW, true};
      case numeric::IntegerRange::kBelow:
        return {part.value, CS_CONV_UNDERFLOW, true};
      case numeric::IntegerRange::kWithin:
        break;
    }
    return {part.value, CS_SUCCEED, false};
  } else {
    auto outcome = convert_scalar<type::flt8, Destination>(numeric::to_double(value));
    if constexpr (std::is_floating_point_v<D>) {  // the least number is 10^-77, which flt8 has
      if (outcome.value == 0 && !value.is_zero()) outcome.code = CS_CONV_UNDERFLOW;
    }
    return outcome;
  }
}

template <class Destination>
int32_t num_to_scalar(const Call& call) {
  call.require_codes(kNumFamily, destination_codes<Destination>);
  const auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  const auto outcome = convert_numeric<Destination>(value);
  base::store(call.destination, outcome.value);
  *call.output_length = sizeof outcome.value;
  return outcome.code;
}

// An integer that lacks the numeric's fraction is told by CS_CONV_TRUNCATED. The narrower types
// report as the bare twins of the doubles do, by way of which they are reached.
template <class Destination>
int32_t bare_num_to_scalar(const BareCall& call) {
  call.require_data();
  const auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  const auto outcome = convert_numeric<Destination>(value);
  base::store(call.destination->data, outcome.value);
  call.destination->length = sizeof outcome.value;
  int32_t code = outcome.code;
  if constexpr (is_integer<Destination>) {
    if (code == CS_SUCCEED && numeric::to_integer<int64_t>(value).has_fraction) {
      code = CS_CONV_TRUNCATED;
    }
    if (sizeof outcome.value < 8 && code == CS_CONV_UNDERFLOW) code = CS_CONV_OVERFLOW;
  }
  return code;
}

// ---- Numerics among themselves, and text -------------------------------------------------------

int32_t num_to_num(const Call& call);
int32_t bare_num_to_num(const BareCall& call);

int32_t num_to_char(const Call& call);
int32_t num_to_varchar(const Call& call);
int32_t bare_num_to_char(const BareCall& call);
int32_t bare_num_to_varchar(const BareCall& call);

// Text towards a numeric, without rounding.
int32_t text_to_num(const Call& call, Text text);

template <class TextKind>
int32_t text_kind_to_num(const Call& call) {
  call.require_codes(TextKind::codes, kNumFamily);
  return text_to_num(call, TextKind::read(call));
}

// The bare context's numeric flag allows rounding.
int32_t bare_text_to_num(const BareCall& call);

}  // namespace tvx::convert
