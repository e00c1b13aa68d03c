// Values in memory that need no alignment.
#pragma once

#include <cstring>
#include <type_traits>

namespace tvx::base {

template <class T>
[[nodiscard]] inline T load(const void* from) {
  static_assert(std::is_trivially_copyable_v<T>);
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

template <class T>
inline void store(void* to, T value) {
  static_assert(std::is_trivially_copyable_v<T>);
  std::memcpy(to, &value, sizeof value);
}

}  // namespace tvx::base
