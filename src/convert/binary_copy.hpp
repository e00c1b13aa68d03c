// Raw copies: binary data among themselves, and values of fixed size as raw memory in binary data
// and back.
#pragma once

#include "convert/date_types.hpp"
#include "convert/forms.hpp"
#include "convert/scalar_types.hpp"
#include "datetime/values.hpp"
#include "numeric/decimal.hpp"

namespace tvx::convert {

// ---- Sizes given at run time -------------------------------------------------------------------

// The first `size` bytes of a source of at least that length; zero-filled on request.
int32_t fixed_to_bin(const Call& call, int32_t size);

// The same into a varbin record, which holds as many as 256.
int32_t fixed_to_varbin(const Call& call, int32_t size);

// As many bytes as both sides have, up to `size`.
template <Form source>
int32_t binary_to_fixed(const Call& call, int32_t size);

// The same with all checks, for a fixed-size value of any code.
int32_t checked_fixed_to_bin(const Call& call, int32_t size);
int32_t checked_fixed_to_varbin(const Call& call, int32_t size);
template <Form source>
int32_t checked_binary_to_fixed(const Call& call, int32_t size);

// ---- Binary data to bit, exact numerics and binary data ----------------------------------------

// Whether the first byte is not zero.
template <Form source>
int32_t binary_to_bit(const Call& call);

// Sign and magnitude as they stand under the destination's precision and scale; CS_CONV_BADPREC,
// CS_CONV_BADSCALE. The output length is that of the whole record.
template <Form source>
int32_t binary_to_num(const Call& call);

template <Form source>
int32_t binary_to_bin(const Call& call);
int32_t bin_to_varbin(const Call& call);
int32_t varbin_to_varbin(const Call& call);

// ---- Pairs with a type of fixed size -----------------------------------------------------------

template <class Fixed>
inline constexpr int32_t kFixedSize = sizeof(typename Fixed::Value);

// Of the values without a family of their own only an exact numeric can be none of its type.
template <class Fixed>
bool is_legal_source(const Call& call) {
  if constexpr (std::is_same_v<typename Fixed::Value, comn_numeric>)
    return numeric::is_numeric(*static_cast<const comn_numeric*>(call.source));
  else
    return true;
}

template <class Fixed>
int32_t fixed_type_to_bin(const Call& call) {
  call.require_codes(Fixed::codes, kBinFamily);
  if (!is_legal_source<Fixed>(call)) return CS_CONV_DOMAIN;
  return fixed_to_bin(call, kFixedSize<Fixed>);
}

template <class Fixed>
int32_t fixed_type_to_varbin(const Call& call) {
  call.require_codes(Fixed::codes, kVarbin);
  if (!is_legal_source<Fixed>(call)) return CS_CONV_DOMAIN;
  return fixed_to_varbin(call, kFixedSize<Fixed>);
}

template <Form source, class Fixed>
int32_t binary_to_fixed_type(const Call& call) {
  call.require_codes(codes_of(source), destination_codes<Fixed>);
  return binary_to_fixed<source>(call, kFixedSize<Fixed>);
}

// Dates and times that come from bin are looked at. One out of range has length 0 and
// CS_CONV_DOMAIN, though its bytes are there; one that is not complete is not looked at.
template <class Fixed>
int32_t check_range(const void* value, int32_t code, int32_t& length) {
  if (code == CS_CONV_UNDERFLOW) return code;
  const auto stored = base::load<typename Fixed::Value>(value);
  const bool is_legal =
      std::is_same_v<Fixed, type::datea> ? datetime::is_date(stored) : datetime::is_time(stored);
  if (is_legal) return code;
  length = 0;
  return CS_CONV_DOMAIN;
}

template <class Fixed>
int32_t bin_to_checked_type(const Call& call) {
  const int32_t code = binary_to_fixed_type<Form::kBin, Fixed>(call);
  return check_range<Fixed>(call.destination, code, *call.output_length);
}

// ---- The bare layer ----------------------------------------------------------------------------

int32_t bare_bin_to_fixed(const BareCall& call, int32_t size);
int32_t bare_bin_to_bit(const BareCall& call);

// As many bytes of sign and magnitude as the destination has, 33 at most.
int32_t bare_bin_to_num(const BareCall& call);

template <class Fixed>
int32_t bare_bin_to_fixed_type(const BareCall& call) {
  return bare_bin_to_fixed(call, kFixedSize<Fixed>);
}

template <class Fixed>
int32_t bare_bin_to_checked_type(const BareCall& call) {
  const int32_t code = bare_bin_to_fixed_type<Fixed>(call);
  return check_range<Fixed>(call.destination->data, code, call.destination->length);
}

// Raw copies into whatever the destination is: CS_CONV_TRUNCATED when it is too small. Towards a
// fixed size what fits is filled as the context asks, and a float by its token has to be finite
// (CS_CONV_DOMAIN).
int32_t bare_any_to_fixed(const BareCall& call);
int32_t bare_any_to_var(const BareCall& call);

}  // namespace tvx::convert
