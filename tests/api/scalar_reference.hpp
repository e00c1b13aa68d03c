// What the conversions among the scalar types and between them and text have to do, worked out from
// tables of limits and step by step, without regard to speed: long double holds every value of
// every type exactly, and the C library (in the C locale) reads and writes the floats.
#pragma once

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

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

  bool is_any_of(unsigned kinds) const { return (kind & kinds) != 0; }
  bool is_float() const { return is_any_of(kFlt4 | kFlt8); }
  bool is_unsigned() const { return is_any_of(kUi2 | kUi4 | kUi8); }
};

constexpr Real kInfinity = std::numeric_limits<Real>::infinity();
constexpr Real kNan = std::numeric_limits<Real>::quiet_NaN();

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
  return *std::find_if(std::begin(kTypes), std::end(kTypes),
                       [=](const Type& each) { return each.kind == kind; });
}

template <class T>
T value_of(std::string_view bytes) {
  T value{};
  std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
  return value;
}

inline Real decode(const Type& t, std::string_view bytes) {
  if (t.kind == kFlt4) return value_of<float>(bytes);
  if (t.kind == kFlt8) return value_of<double>(bytes);
  const auto bits = value_of<uint64_t>(bytes);
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

// The outcome with any NaN made the same.
inline Outcome one_nan(const Type& d, Outcome outcome) {
  if (d.is_float() && std::isnan(decode(d, outcome.bytes))) outcome.bytes = "NaN";
  return outcome;
}

// ---- Scalar to scalar ----

// What lies strictly below or above is stored as the value beside the limit.
struct Range {
  Kind source, destination;
  Real least, stored_below, greatest, stored_above;
};

constexpr Real kMostFlt4 = FLT_MAX;

// The pairs whose range does not simply end at the limits of the destination.
// clang-format off
constexpr Range kRanges[] = {
    // The caps of integers as floats, which are no failures.
    {kI8, kFlt4, -kInfinity, 0, 9223369999999999999.0L, 9.22337e18L},
    {kI8, kFlt8, -kInfinity, 0, 9223372036854769699.0L, 9.22337203685477e18L},
    {kUi8, kFlt4, 0, 0, 18446699999999999999.0L, 1.84467e19L},
    {kUi8, kFlt8, 0, 0, 18446744073709499999.0L, 1.84467440737095e19L},
    {kFlt4, kI8, -9.22337e18, -9223370000000000000.0L, 9.22337e18, 9223370000000000000.0L},
    {kFlt8, kI8, -9223372036854769664.0, -9223372036854769700.0L,
                 9223372036854769664.0, 9223372036854769700.0L},
    {kFlt4, kUi8, 0, 0, 1.84467e19, 18446700000000000000.0L},
    {kFlt8, kUi8, 0, 0, 18446744073709500416.0, 18446744073709500000.0L},
    {kFlt8, kFlt4, -kMostFlt4, -kMostFlt4, kMostFlt4, kMostFlt4},
};
// clang-format on

inline Range range_of(const Type& s, const Type& d) {
  for (const Range& range : kRanges)
    if (range.source == s.kind && range.destination == d.kind) return range;
  return {s.kind, d.kind, d.least, d.least, d.greatest, d.greatest};
}

// What a NaN becomes: the x86 conversion answers 0x80000000 or, towards the wider types,
// 0x8000000000000000, of which the low bytes are stored.
inline Real from_nan(const Type& d) {
  if (d.is_float()) return kNan;
  return d.kind == kUi8 ? 0x1p63L : d.is_any_of(kI4 | kI8) ? d.least : 0;
}

inline Outcome convert(const Type& s, const Type& d, const std::string& bytes, bool bare) {
  const auto size = static_cast<int32_t>(d.size);
  const Real value = decode(s, bytes);
  if (s.kind == kBit && value > 1) return {CS_CONV_DOMAIN, kNoLength, untouched(d.size)};
  if (s.kind == d.kind) return {CS_SUCCEED, size, bytes};
  if (d.kind == kBit) return {CS_SUCCEED, size, encode(d, value != 0 ? 1 : 0)};
  if (std::isnan(value)) return {CS_SUCCEED, size, encode(d, from_nan(d))};

  const Range range = range_of(s, d);
  const bool below = value < range.least;
  if (below || value > range.greatest) {
    const std::string stored = encode(d, below ? range.stored_below : range.stored_above);
    if (d.is_float() && !s.is_float()) return {CS_SUCCEED, size, stored};
    const bool underflow =
        below && !bare && (d.is_unsigned() || (s.kind == kI8 && d.is_any_of(kI1 | kI2)));
    const bool no_length = bare && ((s.kind == kI2 && d.is_unsigned()) ||
                                    (s.kind == kFlt4 && d.is_any_of(kI1 | kI2 | kI4)));
    return {underflow ? CS_CONV_UNDERFLOW : CS_CONV_OVERFLOW, no_length ? 0 : size, stored};
  }
  // An unsigned number of 2^63 or more goes to a float in two rounded parts and a rounded sum.
  constexpr Real kHalf = 9223372036854775807.0L;
  if (s.kind == kUi8 && value > kHalf && d.kind == kFlt4)
    return {CS_SUCCEED, 4, bytes_of(static_cast<float>(kHalf) + static_cast<float>(value - kHalf))};
  if (s.kind == kUi8 && value > kHalf && d.kind == kFlt8)
    return {CS_SUCCEED, 8,
            bytes_of(static_cast<double>(kHalf) + static_cast<double>(value - kHalf))};
  return {CS_SUCCEED, size, encode(d, value)};
}

// ---- Text to number ----

// The text as its single bytes, the mapping to which has tests of its own.
inline std::string map_to_ascii(std::string_view text, const com_charattr* record) {
  const auto length = static_cast<int32_t>(text.size());
  std::string mapped(text.size(), '\0');
  const int32_t written = com__conv2ascii(text.data(), length, mapped.data(), length, record);
  return mapped.substr(0, static_cast<size_t>(written));
}

struct Parsed {
  int32_t status;  // COM_PARSE_
  Real value;
};

// Blanks and one sign, digits, blanks. The narrow types are read as i4 and keep the low bytes of a
// number outside their range, and 0 when there is none.
inline Parsed parse_integer(const Type& t, std::string_view text) {
  if (t.size < 4) {
    const Parsed wide = parse_integer(type(kI4), text);
    if (wide.status != COM_PARSE_NUMBER) return {wide.status, 0};
    const bool in_range = wide.value >= t.least && wide.value <= t.greatest;
    return {in_range ? COM_PARSE_NUMBER : COM_PARSE_OVERFLOW, wide.value};
  }
  if (text.empty()) return {COM_PARSE_EMPTY, 0};
  size_t i = 0;
  char sign = 0;
  for (; i < text.size() && (text[i] == ' ' || text[i] == '-' || text[i] == '+'); ++i) {
    if (text[i] == ' ') continue;
    if (sign != 0 || (text[i] == '-' && t.is_unsigned())) return {COM_PARSE_SYNTAX, 0};
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

// A bit is any i4, zero or not.
inline Outcome read_integer(const Type& d, std::string_view text) {
  const auto [status, value] = parse_integer(d.kind == kBit ? type(kI4) : d, text);
  const std::string bytes = encode(d, d.kind == kBit ? (value != 0 ? 1 : 0) : value);
  if (status == COM_PARSE_SYNTAX) return {CS_CONV_SYNTAX, 0, bytes};
  return {status == COM_PARSE_OVERFLOW ? CS_CONV_OVERFLOW : CS_SUCCEED,
          static_cast<int32_t>(d.size), bytes};
}

inline Outcome read_float(const Type& d, size_t source_length, std::string text, bool bare) {
  const bool four = d.kind == kFlt4;
  const Outcome nothing{CS_CONV_SYNTAX, 0, untouched(d.size)};
  if (source_length >= 1024) return nothing;
  text.resize(text.find_last_not_of(" \xFF") + 1);  // the blank and code page 850's no-break space
  char* end = nullptr;
  errno = 0;
  const double value = std::strtod(text.c_str(), &end);
  const bool range_error = errno == ERANGE && (value == 0 || std::isinf(value));
  if (!range_error && end != text.c_str() + text.size())
    return four || bare ? nothing : Outcome{CS_CONV_SYNTAX, 0, encode(d, value)};

  const Real greatest = four ? kMostFlt4 : DBL_MAX;
  const bool overflow = std::fabs(value) > greatest && (range_error || four);
  const std::string stored = encode(d, overflow ? std::copysign(greatest, Real{value}) : value);
  if (!overflow && !range_error) return {CS_SUCCEED, static_cast<int32_t>(d.size), stored};
  return {overflow ? CS_CONV_OVERFLOW : CS_CONV_UNDERFLOW, bare ? 0 : static_cast<int32_t>(d.size),
          stored};
}

// `text` is what the characters of `source_length` bytes were mapped to.
inline Outcome read_number(const Type& d, size_t source_length, std::string_view text, bool bare) {
  if (d.is_float()) return read_float(d, source_length, std::string(text), bare);
  return read_integer(d, text);
}

inline std::string number_text(const Type& s, std::string_view bytes) {
  const Real value = decode(s, bytes);
  char buffer[64];
  if (!s.is_float()) {
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
