// A small set of datatype codes, cheap enough to be checked on every call.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace tvx::base {

class CodeSet {
public:
  constexpr CodeSet() = default;
  constexpr CodeSet(std::initializer_list<int32_t> codes) {
    for (int32_t code : codes) bits_ |= uint64_t{1} << code;
  }

  // Codes first to last.
  static constexpr CodeSet range(int32_t first, int32_t last) {
    CodeSet set;
    for (int32_t code = first; code <= last; ++code) set.bits_ |= uint64_t{1} << code;
    return set;
  }

  // Any code may be asked for; those outside 0 to 63 are in no set.
  [[nodiscard]] constexpr bool contains(int32_t code) const {
    return static_cast<uint32_t>(code) < 64 && ((bits_ >> code) & 1) != 0;
  }

  [[nodiscard]] constexpr int size() const { return __builtin_popcountll(bits_); }

  constexpr CodeSet operator|(CodeSet other) const {
    other.bits_ |= bits_;
    return other;
  }

private:
  uint64_t bits_ = 0;
};

}  // namespace tvx::base
