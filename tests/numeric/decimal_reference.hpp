// Exact numerics of the tests: values are Boost.Multiprecision's integers, an implementation of its
// own; records and fields are made of them byte by byte.
#pragma once

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <cstring>
#include <random>
#include <string>

#include "support/guarded_buffer.hpp"
#include "support/sanitizers.hpp"
#include "tvxcomn/numeric.h"

namespace tvx::test {

using Big = boost::multiprecision::cpp_int;

inline constexpr int kRounds = kAddressSanitizer || kThreadSanitizer ? 5'000 : 100'000;

inline Big ten_to(int exponent) {
  return boost::multiprecision::pow(Big(10), static_cast<unsigned>(exponent));
}

// A numeric of the reference; a value of -0 is told by the sign.
struct Number {
  Big value;  // times 10^scale
  int precision;
  int scale;

  bool operator==(const Number&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Number& n) {
  return out << n.value << " (" << n.precision << ", " << n.scale << ")";
}

inline int field_length(int precision) {
  int length = 1;
  for (Big rest = ten_to(precision) - 1; rest != 0; rest >>= 8) ++length;
  return length;
}

inline comn_numeric record(const Number& n) {
  comn_numeric r;
  std::memset(&r, 0xEE, sizeof r);
  r.precision = static_cast<uint8_t>(n.precision);
  r.scale = static_cast<uint8_t>(n.scale);
  r.sign = n.value < 0;
  Big rest = abs(n.value);
  for (int i = field_length(n.precision) - 1; i-- > 0; rest >>= 8)
    r.magnitude[i] = static_cast<uint8_t>(rest & 0xFF);
  return r;
}

inline Big field_value(const uint8_t* field, int length) {
  Big value;
  for (int i = 1; i < length; ++i) value = value << 8 | field[i];
  return field[0] != 0 ? Big(-value) : value;
}

inline Number number(const comn_numeric& r) {
  return {field_value(&r.sign, field_length(r.precision)), r.precision, r.scale};
}

// A descriptor and its field at the end of accessible memory.
struct Field {
  Field(int length, int precision, int scale, const Big& value = 0)
      : bytes(static_cast<size_t>(length)) {
    descriptor.length = length;
    descriptor.precision = static_cast<uint8_t>(precision);
    descriptor.scale = static_cast<uint8_t>(scale);
    descriptor.data = bytes.data();
    bytes.data()[0] = value < 0;
    Big rest = abs(value);
    for (int i = length; i-- > 1; rest >>= 8) bytes.data()[i] = static_cast<uint8_t>(rest & 0xFF);
  }
  Number number() const {
    return {field_value(bytes.data(), descriptor.length), descriptor.precision, descriptor.scale};
  }
  int32_t read(const std::string& text, bool rounding) {
    return com__subchartoexctnume(&descriptor, text.data(), static_cast<int32_t>(text.size()),
                                  rounding);
  }
  std::string text() const {
    char buffer[80];
    int32_t length = 0;
    const char* const start = com__subexctnumetochar(&descriptor, buffer, sizeof buffer, &length);
    return start == nullptr ? "null" : std::string(start, static_cast<size_t>(length));
  }

  GuardedBuffer bytes;
  comnb_value descriptor{};
};

class Random {
public:
  int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
  uint64_t bits() { return engine_(); }
  Big digits(int count) {
    Big value;
    for (int i = 0; i < count; i += 18)
      value = value * ten_to(18) + engine_() % 1'000'000'000'000'000'000;
    return value % ten_to(count);
  }
  // Mostly within its precision; now and then a field with all bits set.
  Number operand() {
    Number n{0, 1 + below(77), 0};
    n.scale = below(4) == 0 ? below(78) : below(n.precision + 1);
    n.value = digits(below(n.precision + 1));
    if (below(32) == 0) n.value = (Big(1) << 8 * (field_length(n.precision) - 1)) - 1;
    if (below(2) == 0) n.value = -n.value;
    return n;
  }

private:
  std::mt19937_64 engine_{20'030'102};
};

}  // namespace tvx::test
