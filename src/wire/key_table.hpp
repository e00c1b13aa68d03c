// The constant key table of the legacy credential encoding: 256 rows of 33 bytes. Credentials that
// were encoded with it are stored by callers, so its bytes never change.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvx::wire {

inline constexpr size_t kKeyRows = 256;
inline constexpr size_t kKeyRowBytes = 33;

using KeyTable = std::array<std::array<uint8_t, kKeyRowBytes>, kKeyRows>;
extern const KeyTable key_table;

}  // namespace tvx::wire
