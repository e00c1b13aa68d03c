// Bare conversions between integers and their hexadecimal text.
#pragma once

#include "convert/arguments.hpp"

namespace tvx::convert {

// Integer is the unsigned type of the destination's (source's) size; signedness plays no part.
template <class Integer>
int32_t hex_to_integer(const BareCall& call);
template <class Integer>
int32_t integer_to_hex(const BareCall& call);

extern template int32_t hex_to_integer<uint32_t>(const BareCall&);
extern template int32_t hex_to_integer<uint64_t>(const BareCall&);
extern template int32_t integer_to_hex<uint32_t>(const BareCall&);
extern template int32_t integer_to_hex<uint64_t>(const BareCall&);

}  // namespace tvx::convert
