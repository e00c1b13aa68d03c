// Values of fixed size as raw memory in binary data and back. How a value that does not fit is
// reported differs between the two kinds of binary data.
#pragma once

#include "convert/arguments.hpp"

namespace tvx::convert {

// The first `size` bytes of a source that is at most 256 bytes long. CS_CONV_TRUNCATED when the
// destination is smaller; zero-filled on request.
int32_t fixed_to_bin(const Call& call, int32_t size);

// The same into a varbin record, which always has room.
int32_t fixed_to_varbin(const Call& call, int32_t size);

// As many bytes as both sides have, up to `size`. CS_CONV_UNDERFLOW when the source has fewer; when
// it has more, CS_CONV_TRUNCATED from binary data and CS_CONV_OVERFLOW from a varbin record.
int32_t bin_to_fixed(const Call& call, int32_t size);
int32_t varbin_to_fixed(const Call& call, int32_t size);

// Sign and magnitude as they stand under the destination's precision and scale; CS_CONV_BADPREC,
// CS_CONV_BADSCALE. The output length is that of the whole record.
int32_t bin_to_num(const Call& call);
int32_t varbin_to_num(const Call& call);

// ---- Pairs with a type of fixed size ------------------------------------------------------------

template <class Fixed>
inline constexpr int32_t kFixedSize = sizeof(typename Fixed::Value);

template <class Fixed>
int32_t fixed_type_to_bin(const Call& call) {
  call.require_codes(Fixed::codes, kBinFamily);
  return fixed_to_bin(call, kFixedSize<Fixed>);
}

template <class Fixed>
int32_t fixed_type_to_varbin(const Call& call) {
  call.require_codes(Fixed::codes, kVarbin);
  return fixed_to_varbin(call, kFixedSize<Fixed>);
}

template <class Fixed>
int32_t bin_to_fixed_type(const Call& call) {
  call.require_codes(kBinFamily, Fixed::codes);
  return bin_to_fixed(call, kFixedSize<Fixed>);
}

template <class Fixed>
int32_t varbin_to_fixed_type(const Call& call) {
  call.require_codes(kVarbin, Fixed::codes);
  return varbin_to_fixed(call, kFixedSize<Fixed>);
}

}  // namespace tvx::convert
