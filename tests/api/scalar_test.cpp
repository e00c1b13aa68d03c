// Conversions among the scalar types, with data formats and bare, against the tables of their
// limits; and bit towards binary data and records.
#include <cmath>
#include <random>
#include <set>
#include <vector>

#include "api/scalar_reference.hpp"
#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using namespace reference;
using namespace std::string_literals;
using tvx::test::convert;

TEST(Scalar, Examples) {
  constexpr int32_t kOver = CS_CONV_OVERFLOW, kUnder = CS_CONV_UNDERFLOW;
  // clang-format off
  const struct { Kind from; Real value; Kind to; Real stored; int code = CS_SUCCEED; } rows[] = {
      {kI4, -1, kI1, 0, kOver}, {kI8, -1, kI1, 0, kUnder}, {kI2, -1, kUi2, 0, kUnder},
      {kFlt8, 255.0000001L, kI1, 255, kOver}, {kFlt8, -1.9L, kI2, -1}, {kFlt4, kNan, kBit, 1},
      {kFlt8, 1e39L, kFlt4, 0x1.fffffep127L, kOver}, {kFlt4, kInfinity, kFlt8, kInfinity},
      // Caps as floats: 0x43DFFFFFFFFFFFFA, 0x5EFFFFFC, 0x43EFFFFFFFFFFFE7, 0x5F7FFFD8.
      {kI8, 9223372036854769700.0L, kFlt8, 0x1.ffffffffffffap62L},
      {kI8, 9223370000000000000.0L, kFlt4, 0x1.fffff8p62L},
      {kUi8, 18446744073709500000.0L, kFlt8, 0x1.fffffffffffe7p63L},
      {kUi8, 18446700000000000000.0L, kFlt4, 0x1.ffffbp63L}, {kI8, -0x1p63L, kFlt8, -0x1p63L},
  };
  // clang-format on
  for (const auto& row : rows) {
    const Type &s = type(row.from), &d = type(row.to);
    EXPECT_EQ(convert(format_of(s.code), encode(s, row.value), format_of(d.code)),
              (Outcome{row.code, static_cast<int32_t>(d.size), encode(d, row.stored)}))
        << s.name << " " << row.value << " to " << d.name;
  }
}

// The limits of all types and ranges, and the powers of two, of either sign.
std::vector<Real> landmarks() {
  std::vector<Real> found{0, 0.5, kInfinity};
  for (const Type& t : kTypes) found.insert(found.end(), {t.least, t.greatest});
  for (const Range& r : kRanges)
    found.insert(found.end(), {r.least, r.stored_below, r.greatest, r.stored_above});
  for (int exponent = 0; exponent <= 64; ++exponent) found.push_back(std::ldexp(1.0L, exponent));
  for (size_t i = found.size(); i > 0; --i) found.push_back(-found[i - 1]);
  return found;
}

// All values of a narrow type; of a wide one the neighbours of the landmarks (those of an infinity
// and of zero are NaNs and the extreme numbers) and random ones of all magnitudes.
std::set<std::string> values_of(const Type& s) {
  std::set<std::string> values;
  const auto insert = [&](uint64_t bits) { values.insert(bytes_of(bits).substr(0, s.size)); };
  for (uint64_t bits = 0; s.size <= 2 && bits < uint64_t{1} << (8 * s.size); ++bits) insert(bits);
  if (s.size <= 2) return values;
  for (const Real landmark : landmarks())
    for (const Real offset : {-1.0L, -0.9L, -0.5L, -0.1L, 0.0L, 0.1L, 0.5L, 0.9L, 1.0L}) {
      const Real value = landmark + offset;
      if (value < s.least || value > s.greatest) continue;
      const auto bits = value_of<uint64_t>(encode(s, value));
      for (const uint64_t near : {bits - 1, bits, bits + 1}) insert(near);
    }
  std::mt19937_64 random(1);
  for (int i = 0; i < 1'500; ++i) {
    const uint64_t bits = random();
    insert(s.is_float() ? bits : bits >> random() % 64);
    const Real number = std::ldexp(static_cast<Real>(bits), static_cast<int>(random() % 70) - 64);
    if (s.is_float()) values.insert({encode(s, number), encode(s, -number)});
  }
  return values;
}

TEST(Scalar, EveryPairAgreesWithTheReference) {
  for (const Type& s : kTypes)
    for (const std::set<std::string> values = values_of(s); const Type& d : kTypes) {
      auto* const bare_routine = exported<comnb_conversion>("comnb_"s + s.name + "to" + d.name);
      // A copy keeps even the bits of a NaN.
      const auto made = [&](const Outcome& o) { return s.kind == d.kind ? o : one_nan(d, o); };
      for (const std::string& value : values)
        for (const bool bare : {false, true})
          ASSERT_EQ(made(bare ? convert_bare(bare_routine, {}, value, d.size)
                              : convert(format_of(s.code), value, format_of(d.code))),
                    made(reference::convert(s, d, value, bare)))
              << (bare ? "bare " : "") << s.name << " " << decode(s, value) << " to " << d.name;
    }
}

TEST(Scalar, Int20IsAnI8) {
  const std::string value = bytes_of(int64_t{-70'000});
  for (const Kind kind : {kI4, kI8, kUi2, kUi4, kUi8})
    EXPECT_EQ(convert(format_of(20, 8), value, format_of(type(kind).code)),
              reference::convert(type(kI8), type(kind), value, false));
  for (const Type& s : kTypes)
    EXPECT_EQ(convert(format_of(s.code), encode(s, 1), format_of(20, 8)),
              delivered(bytes_of(int64_t{1}), 8));
}

TEST(BitToVariable, RecordsAndBinary) {
  for (uint32_t flags = 0; flags < 8; ++flags) {
    const auto convert_bit = [=](const std::string& bit, int32_t code, int32_t capacity = 0) {
      return convert(format_of(11), bit, format_of(code, capacity, flags));
    };
    const auto record = [](const std::string& bit) {
      return Outcome{CS_SUCCEED, 258, varchar_record(bit, kUntouched)};
    };
    EXPECT_EQ(convert_bit("\0"s, 18), record("0"));
    EXPECT_EQ(convert_bit("\1", 18), record("1"));
    EXPECT_EQ(convert_bit("\0"s, 19), record("\0"s));
    EXPECT_EQ(convert_bit("\1", 19), record("\1"));
    for (const int32_t code : {1, 3, 5}) {
      const bool fill = (flags & CS_FORMAT_ZEROFILL) != 0;
      EXPECT_EQ(convert_bit("\1", code, 4), delivered(fill ? "\1\0\0\0"s : "\1", 4));
      EXPECT_EQ(convert_bit("\1", code, 1), delivered("\1", 1));
      EXPECT_EQ(convert_bit("\1", code, 0), (Outcome{CS_CONV_TRUNCATED, 0, ""}));
    }
  }
}

TEST(BitToVariable, OtherBytesAreOutsideItsDomain) {
  for (const int32_t code : {0, 1, 2, 3, 4, 5, 18, 19}) {
    const Outcome outcome = convert(format_of(11), "\x02", format_of(code, 4));
    EXPECT_EQ(outcome, (Outcome{CS_CONV_DOMAIN, kNoLength, untouched(outcome.bytes.size())}));
  }
  for (comnb_conversion* const routine : {comnb_bittochar, comnb_bittovarchar})
    EXPECT_EQ(convert_bare(routine, {}, "\xFF", 4),
              (Outcome{CS_CONV_DOMAIN, kNoLength, untouched(4)}));
}

}  // namespace
}  // namespace tvx::test
