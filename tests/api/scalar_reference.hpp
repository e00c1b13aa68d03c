// What the conversions among the scalar types and between them and text have to do, worked out from
// tables of limits and step by step, without regard to speed: long double holds every value of
// every type exactly, and the C library (in the C locale) reads and writes the floats.
#pragma once

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

#include "support/conversion.hpp"

namespace tvx::test::reference {

using Real = long double;
static_assert(std::numeric_limits<Real>::digits >= 64);

// ---- Types and values ----

// clang-format off
enum Kind : unsigned {
  kBit = 1, kI1 = 2, kI2 = 4, kI4 = 8, kI8 = 16,
  kUi2 = 32, kUi4 = 64, kUi8 = 128, kFlt4 = 256, kFlt8 = 512
};
// clang-format on

struct Type {
  Kind kind;
  const char* name;
  int32_t code;
  size_t size;
  Real least, greatest;
};

constexpr Real kInfinity = std::numeric_limits<Real>::infinity();

constexpr Type kTypes[] = {
    {kBit, "bit", 11, 1, 0, 1},
    {kI1, "i1", 6, 1, 0, 255},
    {kI2, "i2", 7, 2, -32768, 32767},
    {kI4, "i4", 8, 4, -2147483648.0L, 2147483647.0L},
    {kI8, "i8", 30, 8, -9223372036854775808.0L, 9223372036854775807.0L},
    {kUi2, "ui2", 31, 2, 0, 65535},
    {kUi4, "ui4", 32, 4, 0, 4294967295.0L},
    {kUi8, "ui8", 33, 8, 0, 18446744073709551615.0L},
    {kFlt4, "flt4", 9, 4, -kInfinity, kInfinity},
    {kFlt8, "flt8", 10, 8, -kInfinity, kInfinity},
};

inline const Type& type(Kind kind) {
  for (const Type& each : kTypes)
    if (each.kind == kind) return each;
  std::abort();
}

inline bool is_float(const Type& t) {
  return t.kind == kFlt4 || t.kind == kFlt8;
}
inline bool is_unsigned(const Type& t) {
  return (t.kind & (kUi2 | kUi4 | kUi8)) != 0;
}

inline Real decode(const Type& t, std::string_view bytes) {
  if (t.kind == kFlt4) return value_of<float>(bytes);
  if (t.kind == kFlt8) return value_of<double>(bytes);
  uint64_t bits = 0;
  std::memcpy(&bits, bytes.data(), t.size);
  if (t.least == 0) return static_cast<Real>(bits);
  const auto unused = 64 - 8 * t.size;
  return static_cast<Real>(static_cast<int64_t>(bits << unused) >> unused);
}

// The bytes of a value that the type holds, rounded or with its fraction cut off.
inline std::string encode(const Type& t, Real value) {
  if (t.kind == kFlt4) return bytes_of(static_cast<float>(value));
  if (t.kind == kFlt8) return bytes_of(static_cast<double>(value));
  const uint64_t bits =
      value < 0 ? static_cast<uint64_t>(static_cast<int64_t>(value)) : static_cast<uint64_t>(value);
  return bytes_of(bits).substr(0, t.size);
}

// ---- Scalar to scalar ----

struct Limit {
  Real bound;  // what lies strictly beyond it
  Real stored = 0;
  int32_t code = CS_SUCCEED;
};

struct Rule {
  unsigned sources;
  Kind destination;
  Limit below, above;
};

constexpr Limit kNoLeast{-kInfinity};
constexpr Limit kNoGreatest{kInfinity};
constexpr int32_t kOver = CS_CONV_OVERFLOW;
constexpr int32_t kUnder = CS_CONV_UNDERFLOW;
constexpr unsigned kFloats = kFlt4 | kFlt8;

// clang-format off
constexpr Rule kRules[] = {
    {kI2 | kI4, kI1, {0, 0, kOver}, {255, 255, kOver}},
    {kI8, kI1, {0, 0, kUnder}, {255, 255, kOver}},
    {kI4, kI2, {-32768, -32768, kOver}, {32767, 32767, kOver}},
    {kI8, kI2, {-32768, -32768, kUnder}, {32767, 32767, kOver}},
    {kI8, kI4, {-2147483648.0L, -2147483648.0L, kOver}, {2147483647, 2147483647, kOver}},
    {kI2 | kI4 | kI8, kUi2, {0, 0, kUnder}, {65535, 65535, kOver}},
    {kI2 | kI4 | kI8, kUi4, {0, 0, kUnder}, {4294967295, 4294967295, kOver}},
    {kI2 | kI4 | kI8, kUi8, {0, 0, kUnder}, kNoGreatest},
    {kUi2 | kUi4 | kUi8, kI1, kNoLeast, {255, 255, kOver}},
    {kUi2 | kUi4 | kUi8, kI2, kNoLeast, {32767, 32767, kOver}},
    {kUi4 | kUi8, kI4, kNoLeast, {2147483647, 2147483647, kOver}},
    {kUi8, kI8, kNoLeast, {9223372036854775807.0L, 9223372036854775807.0L, kOver}},
    {kUi4 | kUi8, kUi2, kNoLeast, {65535, 65535, kOver}},
    {kUi8, kUi4, kNoLeast, {4294967295, 4294967295, kOver}},
    // The caps of integers as floats, which are no failures.
    {kI8, kFlt4, kNoLeast, {9223369999999999999.0L, 9.22337e18L}},
    {kI8, kFlt8, kNoLeast, {9223372036854769699.0L, 9.22337203685477e18L}},
    {kUi8, kFlt4, kNoLeast, {18446699999999999999.0L, 1.84467e19L}},
    {kUi8, kFlt8, kNoLeast, {18446744073709499999.0L, 1.84467440737095e19L}},
    {kFloats, kI1, {0, 0, kOver}, {255, 255, kOver}},
    {kFloats, kI2, {-32768, -32768, kOver}, {32767, 32767, kOver}},
    {kFloats, kI4, {-2147483648.0L, -2147483648.0L, kOver}, {2147483647, 2147483647, kOver}},
    {kFlt4, kI8, {-9.22337e18, -9223370000000000000.0L, kOver},
                 {9.22337e18, 9223370000000000000.0L, kOver}},
    {kFlt8, kI8, {-9223372036854769664.0, -9223372036854769700.0L, kOver},
                 {9223372036854769664.0, 9223372036854769700.0L, kOver}},
    {kFloats, kUi2, {0, 0, kUnder}, {65535, 65535, kOver}},
    {kFloats, kUi4, {0, 0, kUnder}, {4294967295, 4294967295, kOver}},
    {kFlt4, kUi8, {0, 0, kUnder}, {1.84467e19, 18446700000000000000.0L, kOver}},
    {kFlt8, kUi8, {0, 0, kUnder}, {18446744073709500416.0, 18446744073709500000.0L, kOver}},
    {kFlt8, kFlt4, {-3.4028234663852886e38, -3.4028234663852886e38, kOver},
                   {3.4028234663852886e38, 3.4028234663852886e38, kOver}},
};
// clang-format on

// What a NaN becomes: the x86 conversion answers 0x80000000 or, towards the wider types,
// 0x8000000000000000, of which the low bytes are stored.
inline Real from_nan(const Type& d) {
  if (is_float(d)) return std::numeric_limits<Real>::quiet_NaN();
  if (d.kind == kBit) return 1;
  return d.kind == kUi8 ? 0x1p63L : (d.kind & (kI4 | kI8)) != 0 ? d.least : 0;
}

// An unsigned number of 2^63 or more goes to a float in two rounded parts and a rounded sum.
template <class Float>
std::string two_part_float(Real value) {
  constexpr uint64_t kHalf = 9223372036854775807u;
  volatile Float low = static_cast<Float>(static_cast<uint64_t>(value) - kHalf);
  volatile Float sum = static_cast<Float>(kHalf) + low;
  return bytes_of<Float>(sum);
}

// The bare routines that deliver a limit with length 0.
inline bool limit_has_no_length(const Type& s, const Type& d) {
  return (s.kind == kI2 && is_unsigned(d)) ||
         (s.kind == kFlt4 && (d.kind & (kI1 | kI2 | kI4)) != 0);
}

inline Outcome convert(const Type& s, const Type& d, const std::string& bytes, bool bare) {
  const auto size = static_cast<int32_t>(d.size);
  if (s.kind == kBit && static_cast<uint8_t>(bytes[0]) > 1)
    return {CS_CONV_DOMAIN, kNoLength, untouched(d.size)};
  if (s.kind == d.kind) return {CS_SUCCEED, size, bytes};
  const Real value = decode(s, bytes);
  if (std::isnan(value)) return {CS_SUCCEED, size, encode(d, from_nan(d))};
  for (const Rule& rule : kRules) {
    if (rule.destination != d.kind || (rule.sources & s.kind) == 0) continue;
    const bool below = value < rule.below.bound;
    if (!below && !(value > rule.above.bound)) continue;
    const Limit& limit = below ? rule.below : rule.above;
    const bool no_length = bare && limit.code != CS_SUCCEED && limit_has_no_length(s, d);
    return {bare && limit.code == kUnder ? kOver : limit.code, no_length ? 0 : size,
            encode(d, limit.stored)};
  }
  std::string result = encode(d, d.kind == kBit ? (value != 0 ? 1 : 0) : value);
  if (s.kind == kUi8 && value >= 0x1p63L) {
    if (d.kind == kFlt4) result = two_part_float<float>(value);
    if (d.kind == kFlt8) result = two_part_float<double>(value);
  }
  return {CS_SUCCEED, size, result};
}

// Outcomes are the same; any NaN is as good as another.
inline bool same(const Type& d, const Outcome& a, const Outcome& b) {
  const bool both_nan = is_float(d) && a.bytes.size() == d.size && b.bytes.size() == d.size &&
                        std::isnan(decode(d, a.bytes)) && std::isnan(decode(d, b.bytes));
  return a.code == b.code && a.length == b.length && (both_nan || a.bytes == b.bytes);
}

// ---- Text to number ----

// The text with every character that has an ASCII form replaced by it. A character cut off at the
// end has none.
inline std::string map_to_ascii(std::string_view text, const com_charattr& record) {
  std::string mapped;
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
  for (size_t i = 0; i < text.size();) {
    size_t width = record.lengths[byte(i)] & 15u;
    const bool digit_follows = i + 1 < text.size() && byte(i + 1) >= '0' && byte(i + 1) <= '9';
    if (record.lengths[255] >> 4 == 15 && width == 2 && digit_follows) width = 4;
    width = std::min(width, text.size() - i);
    size_t form = record.to_ascii[byte(i)];
    if (width > 1) form = form == 0 ? 0 : record.to_ascii[form * 256 + byte(i + 1)];
    if (width == 1 && (record.lengths[byte(i)] & 15u) > 1) form = 0;
    if (form != 0)
      mapped += static_cast<char>(form);
    else
      mapped += text.substr(i, width);
    i += width;
  }
  return mapped;
}

struct Parsed {
  int32_t status;
  Real value;
};

// Blanks and one sign, digits, blanks. `t` is i4, i8, ui4 or ui8.
inline Parsed parse_integer(const Type& t, std::string_view text) {
  if (text.empty()) return {COM_PARSE_EMPTY, 0};
  size_t i = 0;
  char sign = 0;
  for (; i < text.size() && (text[i] == ' ' || text[i] == '-' || text[i] == '+'); ++i) {
    if (text[i] == ' ') continue;
    if (sign != 0 || (text[i] == '-' && is_unsigned(t))) return {COM_PARSE_SYNTAX, 0};
    sign = text[i];
  }
  Real value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    const Real digit = text[i] - '0';
    const Real next = value * 10 + (sign == '-' ? -digit : digit);
    if (next < t.least || next > t.greatest)
      return {COM_PARSE_OVERFLOW, t.kind == kI4 ? value : sign == '-' ? t.least : t.greatest};
    value = next;
  }
  const bool blanks_only = text.find_first_not_of(' ', i) == std::string_view::npos;
  return {blanks_only ? COM_PARSE_NUMBER : COM_PARSE_SYNTAX, value};
}

// The narrow types are read as i4 and keep the low bytes of a number outside their range.
inline Outcome read_integer(const Type& d, std::string_view text) {
  const bool narrow = (d.kind & (kBit | kI1 | kI2 | kUi2)) != 0;
  Parsed parsed = parse_integer(narrow ? type(kI4) : d, text);
  if (d.kind == kBit) {
    parsed.value = parsed.value != 0 ? 1 : 0;
  } else if (narrow && parsed.status != COM_PARSE_NUMBER) {
    parsed.value = 0;
  } else if (narrow && (parsed.value < d.least || parsed.value > d.greatest)) {
    parsed.status = COM_PARSE_OVERFLOW;
  }
  const std::string bytes = encode(d, parsed.value);
  const auto size = static_cast<int32_t>(d.size);
  if (parsed.status == COM_PARSE_SYNTAX) return {CS_CONV_SYNTAX, 0, bytes};
  return {parsed.status == COM_PARSE_OVERFLOW ? CS_CONV_OVERFLOW : CS_SUCCEED, size, bytes};
}

template <class Float>
Outcome read_float_as(size_t source_length, std::string text, bool bare) {
  constexpr Real kGreatest = std::numeric_limits<Float>::max();
  constexpr auto kSize = static_cast<int32_t>(sizeof(Float));
  if (source_length >= 1024) return {CS_CONV_SYNTAX, 0, untouched(sizeof(Float))};
  text.resize(text.find_last_not_of(" \xFF") + 1);  // the blank and code page 850's no-break space
  const auto outcome = [&](int32_t code, Real stored) {
    const bool counts = code == CS_SUCCEED || (!bare && code != CS_CONV_SYNTAX);
    return Outcome{code, counts ? kSize : 0, bytes_of(static_cast<Float>(stored))};
  };
  char* end = nullptr;
  errno = 0;
  const double value = std::strtod(text.c_str(), &end);
  const bool out_of_range = errno == ERANGE;
  if (out_of_range && value == 0) return outcome(CS_CONV_UNDERFLOW, value);
  if (out_of_range && std::isinf(value))
    return outcome(CS_CONV_OVERFLOW, std::copysign(kGreatest, Real{value}));
  if (static_cast<size_t>(end - text.c_str()) != text.size()) {
    const bool stores_prefix = sizeof(Float) == 8 && !bare;
    return stores_prefix ? outcome(CS_CONV_SYNTAX, value)
                         : Outcome{CS_CONV_SYNTAX, 0, untouched(sizeof(Float))};
  }
  if (sizeof(Float) == 4 && std::fabs(value) > kGreatest)
    return outcome(CS_CONV_OVERFLOW, std::copysign(kGreatest, Real{value}));
  return outcome(CS_SUCCEED, value);
}

// `text` is what the characters of `source_length` bytes were mapped to.
inline Outcome read_number(const Type& d, size_t source_length, std::string_view text, bool bare) {
  if (d.kind == kFlt4) return read_float_as<float>(source_length, std::string(text), bare);
  if (d.kind == kFlt8) return read_float_as<double>(source_length, std::string(text), bare);
  return read_integer(d, text);
}

// ---- Number to text ----

inline std::string number_text(const Type& s, std::string_view bytes) {
  const Real value = decode(s, bytes);
  char buffer[64];
  if (!is_float(s)) {
    std::snprintf(buffer, sizeof buffer, "%.0Lf", value);
    return buffer;
  }
  std::snprintf(buffer, sizeof buffer, "%.17g", value == 0 ? 0.0 : static_cast<double>(value));
  std::string text = buffer;
  if (text.starts_with("0.")) text.erase(0, 1);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

}  // namespace tvx::test::reference
