// Wire datatype tokens, by which descriptors say what their bytes are: those that the library looks
// at.
#pragma once

#include <cstdint>

namespace tvx::base::wire_token {

inline constexpr uint8_t kDate = 49;
inline constexpr uint8_t kTime = 51;
inline constexpr uint8_t kDatetime4 = 58;
inline constexpr uint8_t kFlt4 = 59;
inline constexpr uint8_t kDatetime = 61;
inline constexpr uint8_t kFlt8 = 62;
inline constexpr uint8_t kBigdatetime = 187;
inline constexpr uint8_t kBigtime = 188;

}  // namespace tvx::base::wire_token
