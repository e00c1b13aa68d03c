// Peers of the conversions of binary data and strings.
#pragma once

#include <cstdint>
#include <string>

#include "tvxcomn/datatypes.h"

namespace tvx::bench::peers {

TVXCOMN_API std::string absl_bytes_to_hex(const char* bytes, int32_t length);
TVXCOMN_API std::string absl_hex_to_bytes(const char* digits, int32_t length);

// Checks its pointers as a conversion does and copies as many bytes as the source format says.
TVXCOMN_API comn_conversion copy_with_memcpy;

}  // namespace tvx::bench::peers
