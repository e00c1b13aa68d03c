// Conversions among the scalar types, with data formats and bare, against the tables of their
// limits; bit towards text and binary; and the misuse that stops the process.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "api/scalar_reference.hpp"
#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using namespace reference;
using tvx::test::convert;

comn_conversion* table_routine(int32_t source, int32_t destination) {
  return com_conv_func(shared_context(), source, destination);
}

TEST(Scalar, WorkedExamples) {
  constexpr Real kI8Most = 9223372036854775807.0L, kUi8Most = 18446744073709551615.0L;
  constexpr Real kNan = std::numeric_limits<Real>::quiet_NaN();
  // clang-format off
  const struct {
    Kind source;
    Real value;
    Kind destination;
    Real stored;
    int32_t code = CS_SUCCEED;
  } examples[] = {
      {kI4, 300, kI1, 255, kOver}, {kI4, -1, kI1, 0, kOver}, {kI8, -1, kI1, 0, kUnder},
      {kI2, -1, kUi2, 0, kUnder}, {kUi8, 0x1p63L, kI8, kI8Most, kOver},
      {kFlt8, 255, kI1, 255}, {kFlt8, 254.9L, kI1, 254}, {kFlt8, 255.9L, kI1, 255, kOver},
      {kFlt8, 255.0000001L, kI1, 255, kOver}, {kFlt8, -0.5, kI1, 0, kOver},
      {kFlt8, -0.5, kUi2, 0, kUnder}, {kFlt8, -0.5, kI2, 0}, {kFlt8, -1.9L, kI2, -1},
      {kFlt8, 2147483647.9L, kI4, 2147483647, kOver}, {kFlt8, kInfinity, kI4, 2147483647, kOver},
      {kFlt8, -kInfinity, kUi8, 0, kUnder}, {kFlt8, 1e39L, kFlt4, 0x1.fffffep127L, kOver},
      {kFlt8, 0x1p63L, kUi8, 0x1p63L}, {kFlt8, 0x1p63L, kI8, 9223372036854769700.0L, kOver},
      {kFlt4, -0x1p63L, kI8, -9223370000000000000.0L, kOver},
      {kFlt4, kInfinity, kUi8, 18446700000000000000.0L, kOver},
      {kFlt4, kInfinity, kFlt8, kInfinity}, {kFlt4, kNan, kBit, 1}, {kFlt8, -0.0L, kBit, 0},
      {kFlt8, 5e-324L, kBit, 1}, {kI4, 256, kBit, 1}, {kI4, 16777217, kFlt4, 16777216},
      // Caps as floats: 0x43DFFFFFFFFFFFFA, 0x5EFFFFFC, 0x43EFFFFFFFFFFFE7, 0x5F7FFFD8.
      {kI8, kI8Most, kFlt8, 0x1.ffffffffffffap62L}, {kI8, -kI8Most, kFlt8, -0x1p63L},
      {kI8, 9223372036854769700.0L, kFlt8, 0x1.ffffffffffffap62L},
      {kI8, kI8Most, kFlt4, 0x1.fffff8p62L}, {kI8, 9223370000000000000.0L, kFlt4, 0x1.fffff8p62L},
      {kUi8, kUi8Most, kFlt8, 0x1.fffffffffffe7p63L},
      {kUi8, 18446744073709500000.0L, kFlt8, 0x1.fffffffffffe7p63L},
      {kUi8, kUi8Most, kFlt4, 0x1.ffffbp63L}, {kUi8, 18446700000000000000.0L, kFlt4, 0x1.ffffbp63L},
      // Their ways back: the last lies above the limit of flt4 to ui8.
      {kFlt8, 0x1.ffffffffffffap62L, kI8, 9223372036854769664.0L},
      {kFlt4, 0x1.fffff8p62L, kI8, 9223369837831520256.0L},
      {kFlt8, 0x1.fffffffffffe7p63L, kUi8, 18446744073709500416.0L},
      {kFlt4, 0x1.ffffbp63L, kUi8, 18446700000000000000.0L, kOver},
  };
  // clang-format on
  for (const auto& e : examples) {
    const Type& s = type(e.source);
    const Type& d = type(e.destination);
    EXPECT_EQ(convert(format_of(s.code), encode(s, e.value), format_of(d.code)),
              (Outcome{e.code, static_cast<int32_t>(d.size), encode(d, e.stored)}))
        << s.name << " " << e.value << " to " << d.name;
  }
}

// One pair, converted by its two routines.
class Pair {
public:
  Pair(const Type& s, const Type& d)
      : s_(s),
        d_(d),
        routine_(table_routine(s.code, d.code)),
        bare_(exported<comnb_conversion>(std::string("comnb_") + s.name + "to" + d.name)),
        from_(format_of(s.code)),
        to_(format_of(d.code)) {}

  void check(const std::string& value) {
    compare(value, convert(routine_, from_, value, to_), false);
    compare(value, convert_bare(bare_, {}, value, d_.size), true);
  }

private:
  void compare(const std::string& value, const Outcome& outcome, bool bare) {
    const Outcome expected = reference::convert(s_, d_, value, bare);
    const bool copied = s_.kind == d_.kind;
    if (copied ? outcome == expected : same(d_, outcome, expected)) return;
    if (++failures_ <= 3)
      ADD_FAILURE() << (bare ? "bare " : "") << s_.name << " " << hex(value) << " to " << d_.name
                    << ": " << outcome << "; expected " << expected;
  }

  const Type& s_;
  const Type& d_;
  comn_conversion* routine_;
  comnb_conversion* bare_;
  comn_datafmt from_, to_;
  int failures_ = 0;
};

using Values = std::set<std::string>;

void check_with_every_destination(const Type& s, const Values& values) {
  for (const Type& d : kTypes) {
    Pair pair(s, d);
    for (const std::string& value : values) pair.check(value);
  }
}

// The limits of all types and rules, and the powers of two.
std::vector<Real> landmarks() {
  std::vector<Real> found{0, 0.5};
  const auto add = [&](Real value) {
    if (std::isfinite(value)) found.insert(found.end(), {value, -value});
  };
  for (const Type& t : kTypes) add(t.least), add(t.greatest);
  for (const Rule& rule : kRules)
    for (const Limit& limit : {rule.below, rule.above}) add(limit.bound), add(limit.stored);
  for (int exponent = 0; exponent <= 64; ++exponent) add(std::ldexp(Real{1}, exponent));
  return found;
}

template <class Float>
void add_float_boundaries(Values& values) {
  using Limits = std::numeric_limits<Float>;
  for (const Real landmark : landmarks())
    for (const Real offset : {-1.0L, -0.9L, -0.5L, -0.1L, 0.0L, 0.1L, 0.5L, 0.9L, 1.0L}) {
      const auto near = static_cast<Float>(landmark + offset);
      for (const Float towards : {near, Limits::infinity(), -Limits::infinity()})
        values.insert(bytes_of(std::nextafter(near, towards)));
    }
  for (const Float special : {Float{0}, Limits::denorm_min(), Limits::min(), Limits::max(),
                              Limits::infinity(), Limits::quiet_NaN(), Limits::signaling_NaN()})
    values.insert({bytes_of(special), bytes_of(-special)});
}

TEST(ScalarPairs, Boundaries) {
  for (const Type& s : kTypes) {
    Values values;
    if (s.kind == kFlt4) add_float_boundaries<float>(values);
    if (s.kind == kFlt8) add_float_boundaries<double>(values);
    if (!is_float(s))
      for (const Real landmark : landmarks())
        for (int offset = -2; offset <= 2; ++offset) {
          const Real value = std::trunc(landmark) + offset;
          if (value >= s.least && value <= s.greatest) values.insert(encode(s, value));
        }
    check_with_every_destination(s, values);
  }
}

// Bit patterns of all magnitudes; for floats also numbers of the size of the integers.
TEST(ScalarPairs, RandomValues) {
  std::mt19937_64 random(1);
  for (const Type& s : kTypes) {
    Values values;
    for (int i = 0; i < 1'500; ++i) {
      const uint64_t bits = random() >> (is_float(s) ? 0 : random() % 64);
      values.insert(bytes_of(bits).substr(0, s.size));
      const auto exponent = static_cast<int>(random() % 70) - 64;
      const Real number = std::ldexp(static_cast<Real>(random()), exponent);
      if (is_float(s)) values.insert(encode(s, random() % 4 == 0 ? -number : number));
    }
    check_with_every_destination(s, values);
  }
}

TEST(ScalarPairs, EveryValueOfTheNarrowTypes) {
  for (const Type& s : kTypes) {
    Values values;
    for (uint32_t bits = 0; s.size <= 2 && bits < 1u << (8 * s.size); ++bits)
      values.insert(bytes_of(bits).substr(0, s.size));
    check_with_every_destination(s, values);
  }
}

TEST(ScalarPairs, Int20IsAnI8) {
  const std::string value = bytes_of(int64_t{-70'000});
  for (const Kind kind : {kI4, kI8, kUi2, kUi4, kUi8})
    EXPECT_EQ(convert(format_of(20, 8), value, format_of(type(kind).code)),
              reference::convert(type(kI8), type(kind), value, false));
  for (const Kind kind : {kI8, kFlt8, kUi8, kBit})
    EXPECT_EQ(convert(format_of(type(kind).code), encode(type(kind), 1), format_of(20, 8)),
              (Outcome{CS_SUCCEED, 8, bytes_of(int64_t{1})}));
}

TEST(BitToVariable, Records) {
  for (const char bit : {'\0', '\1'})
    for (const bool text : {true, false}) {
      const std::string value(1, bit), stored(1, text && bit == 0 ? '0' : text ? '1' : bit);
      const Outcome record = convert(format_of(11), value, format_of(text ? 18 : 19));
      EXPECT_EQ(record.bytes.substr(0, 3), varchar_record(stored).substr(0, 3));
      EXPECT_EQ(record.code, CS_SUCCEED);
      EXPECT_EQ(record.length, 258);
    }
  EXPECT_EQ(convert_bare(comnb_bittovarchar, bare_context(COMNB_ZEROFILL), "\x01", 4),
            (Outcome{CS_SUCCEED, 1, "1" + untouched(3)}));
}

TEST(BitToVariable, Binary) {
  for (const int32_t code : {1, 3, 5})
    for (uint32_t flags = 0; flags < 8; ++flags) {
      const bool fill = (flags & CS_FORMAT_ZEROFILL) != 0;
      const std::string tail = fill ? std::string(3, '\0') : untouched(3);
      const auto bit_to_bin = [&](int32_t capacity) {
        return convert(format_of(11), "\x01", format_of(code, capacity, flags));
      };
      EXPECT_EQ(bit_to_bin(4), (Outcome{CS_SUCCEED, fill ? 4 : 1, "\x01" + tail})) << flags;
      EXPECT_EQ(bit_to_bin(1), (Outcome{CS_SUCCEED, 1, "\x01"})) << flags;
      EXPECT_EQ(bit_to_bin(0), (Outcome{CS_CONV_TRUNCATED, 0, ""})) << flags;
    }
}

TEST(BitToVariable, OtherBytesAreOutsideItsDomain) {
  for (const int32_t code : {0, 1, 2, 3, 4, 5, 18, 19}) {
    const auto room = static_cast<size_t>(comn_typelen(code, 4));
    EXPECT_EQ(convert(format_of(11), "\x02", format_of(code, 4)),
              (Outcome{CS_CONV_DOMAIN, kNoLength, untouched(room)}));
  }
  for (comnb_conversion* const routine : {comnb_bittochar, comnb_bittovarchar})
    EXPECT_EQ(convert_bare(routine, {}, "\xFF", 4),
              (Outcome{CS_CONV_DOMAIN, kNoLength, untouched(4)}));
}

constexpr const char* kFailedCheck = "assertion failed, file '.*' line [0-9]+";
constexpr const char* kNullPointer = "Invalid NULL pointer , file '.*' line [0-9]+";

TEST(ScalarDeathTest, CodesOutsideTheFamilyAndNegativeCapacities) {
  // clang-format off
  const struct {
    comn_conversion* routine;
    int32_t source, destination, capacity = 8;
  } rows[] = {
      {comn_i4toi1, 7, 6}, {comn_i4toi1, 8, 7}, {comn_i8toi1, 20, 6}, {comn_i8tobit, 20, 11},
      {comn_i8toi2, 20, 7}, {comn_i8toflt8, 20, 10}, {comn_i8toi4, 8, 8}, {comn_i8toi8, 30, 8},
      {comn_i4toi8, 8, 33}, {comn_flt8toflt4, 9, 9}, {comn_bittoi4, 6, 8}, {comn_i4tobit, 8, 6},
      {comn_bittochar, 11, 18}, {comn_bittobin, 11, 0}, {comn_bittovarchar, 11, 19},
      {comn_bittovarbin, 11, 18}, {table_routine(31, 8), 7, 8}, {table_routine(33, 30), 33, 31},
      {comn_bittochar, 11, 0, -1}, {comn_bittobin, 11, 1, -1},
  };
  // clang-format on
  const uint64_t value = 0;
  uint8_t room[300];
  int32_t length = 0;
  for (const auto& row : rows) {
    const comn_datafmt from = format_of(row.source, 8);
    const comn_datafmt to = format_of(row.destination, row.capacity);
    EXPECT_DEATH(row.routine(shared_context(), &from, &value, &to, room, &length), kFailedCheck)
        << row.source << " to " << row.destination;
  }
}

TEST(ScalarDeathTest, NullPointers) {
  const comn_datafmt bit = format_of(11), text = format_of(0, 8);
  char out[8];
  int32_t length = 0;
  for (comn_conversion* const routine : {comn_bittobit, comn_bittochar}) {
    const comn_datafmt& to = routine == comn_bittobit ? bit : text;
    for (int missing = 0; missing < 6; ++missing)
      EXPECT_DEATH(routine(missing == 0 ? nullptr : shared_context(), missing == 1 ? nullptr : &bit,
                           missing == 2 ? nullptr : "\x01", missing == 3 ? nullptr : &to,
                           missing == 4 ? nullptr : out, missing == 5 ? nullptr : &length),
                   kNullPointer)
          << missing;
  }
}

}  // namespace
}  // namespace tvx::test
