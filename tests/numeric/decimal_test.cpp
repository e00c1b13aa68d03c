// Arithmetic and comparison of exact numerics through the exported functions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "numeric/decimal_reference.hpp"
#include "tvxcomn/numeric.h"

namespace {

using namespace tvx::test;

// ---- Tables ------------------------------------------------------------------------------------

TEST(Decimal, TablesFollowTheirDefinition) {
  for (int precision = 1; precision <= 77; ++precision) {
    EXPECT_EQ(comn_num_getlen(precision), field_length(precision)) << precision;
    EXPECT_EQ(comb_get_Prec_To_Len(precision), field_length(precision)) << precision;
  }
  EXPECT_EQ(comb_get_Prec_To_Len(0), 2);
  for (int length = 2; length <= 33; ++length) {
    const int precision = comn_num_getprec(length);
    EXPECT_LE(field_length(precision), length);
    EXPECT_TRUE(precision == 77 || field_length(precision + 1) > length);
    EXPECT_EQ(comb_get_Len_To_Prec(length - 2), precision);
  }
  for (int index = 32; index < 35; ++index) EXPECT_EQ(comb_get_Len_To_Prec(index), 255);
  for (int exponent = 0; exponent <= 77; ++exponent) {
    const int length = comb_get_Byte_Power_val(exponent, 0);
    EXPECT_EQ(field_value(comb_get_Byte_Power_ptr(exponent, 1), length), ten_to(exponent));
    EXPECT_NE(comb_get_Byte_Power_val(exponent, 2), 0) << "not the fewest bytes";
  }
  EXPECT_DEATH(comn_num_getlen(78), "");
  EXPECT_DEATH(comn_num_getprec(34), "");
}

// ---- Operations on records ---------------------------------------------------------------------

using Operation = int32_t (*)(const comn_numeric*, const comn_numeric*, comn_numeric*);

struct Expected {
  int32_t code;
  bool written;
  Number number;
};

Expected fit(const Big& value, int precision, int scale) {
  const bool fits = abs(value) < ten_to(precision);
  return {fits ? CS_SUCCEED : CS_CONV_OVERFLOW, true, {fits ? value : Big(0), precision, scale}};
}

Expected sum(Number a, Number b, bool subtracts) {
  const int scale = std::max(a.scale, b.scale);
  const int whole = std::max(a.precision - a.scale, b.precision - b.scale);
  const int common = std::min(77, whole + scale);
  for (Number* n : {&a, &b}) {
    if (n->precision == common && n->scale == scale) continue;
    *n = {n->value * ten_to(scale - n->scale), common, scale};
    if (abs(n->value) >= ten_to(common)) return {CS_CONV_OVERFLOW, false, {}};
  }
  return fit(subtracts ? Big(a.value - b.value) : Big(a.value + b.value), std::min(77, common + 1),
             scale);
}

Expected add(const Number& a, const Number& b) {
  return sum(a, b, false);
}
Expected subtract(const Number& a, const Number& b) {
  return sum(a, b, true);
}

Expected multiply(const Number& a, const Number& b) {
  const int whole = std::min(77, a.precision - a.scale + b.precision - b.scale + 1);
  const int wanted = std::min(77, a.scale + b.scale);
  const int precision = std::min(77, whole + wanted);
  if (precision < 1) return {CS_CONV_OVERFLOW, false, {}};
  const int scale = std::min(wanted, precision - whole);
  const Big product = a.value * b.value;
  if ((abs(product) >> 256) != 0) return fit(ten_to(77), precision, scale);
  return fit(product / ten_to(a.scale + b.scale - scale), precision, scale);
}

Expected divide(const Number& a, const Number& b) {
  const int whole = std::min(77, a.precision - a.scale + b.scale);
  const int wanted = std::min(77, std::max(6, b.scale + a.precision + 1));
  const int precision = std::min(77, whole + wanted);
  if (precision < 1) return {CS_CONV_OVERFLOW, false, {}};
  const int scale = std::min(wanted, precision - whole);
  if (b.value == 0) return {CS_CONV_DIVZERO, true, {0, precision, scale}};
  const int shift = scale - a.scale + b.scale;
  return fit(shift > 0 ? a.value * ten_to(shift) / b.value : a.value / (b.value * ten_to(-shift)),
             precision, scale);
}

const struct {
  const char* name;
  Operation operation;
  Expected (*reference)(const Number&, const Number&);
} kOperations[] = {{"add", comn_numadd, add},
                   {"subtract", comn_numsub, subtract},
                   {"multiply", comn_nummul, multiply},
                   {"divide", comn_numdivide, divide}};

TEST(Decimal, OperationsAgreeWithTheReference) {
  for (const auto& [name, operation, reference] : kOperations) {
    Random random;
    int succeeded = 0;
    for (int i = 0; i < kRounds && !HasFailure(); ++i) {
      const Number a = random.operand();
      const Number b = random.below(16) == 0 ? a : random.operand();
      const comn_numeric left = record(a);
      const comn_numeric right = record(b);
      comn_numeric result = record({7, 3, 1});
      const Expected expected = reference(a, b);
      EXPECT_EQ(operation(&left, &right, &result), expected.code) << name << a << ' ' << b;
      EXPECT_EQ(number(result), (expected.written ? expected.number : Number{7, 3, 1}))
          << name << ' ' << a << ' ' << b;
      EXPECT_EQ(result.sign, number(result).value < 0);
      comn_numeric in_place = left;  // the result may be an operand
      const bool stands = operation(&in_place, &right, &in_place) == CS_SUCCEED;
      EXPECT_TRUE(!stands || number(in_place) == number(result));
      succeeded += expected.code == CS_SUCCEED;
    }
    EXPECT_GT(succeeded, kRounds / 4) << name;
  }
}

TEST(Decimal, OperationsKeepTheLawsOfArithmetic) {
  Random random;
  for (int i = 0; i < kRounds / 10 && !HasFailure(); ++i) {
    Number a{random.digits(12) + 1, 12 + random.below(3), random.below(9)};
    Number b{random.digits(9) + 1, 9 + random.below(4), random.below(9)};
    const comn_numeric left = record(a);
    const comn_numeric right = record(b);
    comn_numeric one, other;
    for (const Operation operation : {comn_numadd, comn_nummul}) {
      EXPECT_EQ(operation(&left, &right, &one), CS_SUCCEED);
      EXPECT_EQ(operation(&right, &left, &other), CS_SUCCEED);
      EXPECT_EQ(number(one), number(other));
    }
    EXPECT_EQ(comn_numsub(&left, &left, &one), CS_SUCCEED);
    EXPECT_EQ(number(one).value, 0);
    // The quotient is too small by less than one unit of its scale: a - (a / b) * b < b units.
    EXPECT_EQ(comn_numdivide(&left, &right, &one), CS_SUCCEED);
    EXPECT_EQ(comn_nummul(&one, &right, &other), CS_SUCCEED);
    const Big missing = a.value * ten_to(other.scale - a.scale) - number(other).value;
    EXPECT_GE(missing, 0);
    EXPECT_LT(missing, b.value) << a << ' ' << b;
  }
}

TEST(Decimal, WorkedExamples) {
  const Number wide{ten_to(30), 77, 10};
  const struct {
    Operation operation;
    Number a, b;
    int32_t code;
    Number result;
  } kRows[] = {
      {comn_numadd, {15, 2, 1}, {10, 2, 0}, CS_SUCCEED, {115, 4, 1}},
      {comn_nummul, wide, wide, CS_SUCCEED, {ten_to(40), 77, 0}},
      {comn_nummul, {ten_to(70), 77, 10}, wide, CS_CONV_OVERFLOW, {0, 77, 0}},
      {comn_nummul, {1, 1, 77}, {1, 1, 77}, CS_CONV_OVERFLOW, {7, 3, 1}},  // no digit is left
      {comn_numdivide, {1, 1, 0}, {3, 1, 0}, CS_SUCCEED, {333333, 7, 6}},
      {comn_numdivide, {1, 1, 0}, {0, 1, 0}, CS_CONV_DIVZERO, {0, 7, 6}},
      {comn_numdivide, {1, 1, 77}, {1, 1, 0}, CS_CONV_OVERFLOW, {7, 3, 1}},
  };
  for (const auto& row : kRows) {
    const comn_numeric a = record(row.a);
    const comn_numeric b = record(row.b);
    comn_numeric result = record({7, 3, 1});
    EXPECT_EQ(row.operation(&a, &b, &result), row.code) << row.a << ' ' << row.b;
    EXPECT_EQ(number(result), row.result);
  }
}

TEST(Decimal, EveryHeader) {
  const comn_numeric good = record({5, 3, 1});
  for (int precision = 0; precision < 256; ++precision) {
    for (int scale = 0; scale < 256; ++scale) {
      comn_numeric odd = record({5, 77, 1});
      odd.precision = static_cast<uint8_t>(precision);
      odd.scale = static_cast<uint8_t>(scale);
      const bool valid = precision >= 1 && precision <= 77 && scale <= 77;
      for (const auto& row : kOperations) {
        comn_numeric results[2] = {good, good};
        const int32_t codes[] = {row.operation(&odd, &good, &results[0]),
                                 row.operation(&good, &odd, &results[1])};
        for (int i = 0; i < 2; ++i) {
          ASSERT_EQ(codes[i] == CS_CONV_DOMAIN, !valid) << row.name << precision << ' ' << scale;
          ASSERT_TRUE(valid || std::memcmp(&results[i], &good, sizeof good) == 0);
        }
      }
      ASSERT_EQ(comn_numcmp(&odd, &good) == CS_CONV_DOMAIN, !valid);
    }
  }
}

TEST(Decimal, ComparesAtOneScale) {
  Random random;
  for (int i = 0; i < kRounds && !HasFailure(); ++i) {
    const Number a = random.operand();
    Number b = random.operand();
    if (random.below(2) == 0 && a.scale < 77) b = {a.value * 10 + random.below(2), 77, a.scale + 1};
    const bool overlong = (abs(b.value) >> 256) != 0;
    const comn_numeric left = record(a);
    const comn_numeric right = record(overlong ? b = a : b);
    Big x = a.value, y = b.value;
    Big& smaller = a.scale < b.scale ? x : y;
    Big& larger = a.scale < b.scale ? y : x;
    const Big grown = smaller * ten_to(std::abs(a.scale - b.scale));
    if (a.scale != b.scale && (x < 0) == (y < 0)) {
      if (abs(grown) < ten_to(77))
        smaller = grown;
      else
        larger /= ten_to(std::abs(a.scale - b.scale));
    }
    const int expected = x < y ? -1 : x > y;
    EXPECT_EQ(comn_numcmp(&left, &right), expected) << a << ' ' << b;
    EXPECT_EQ(comn_numcmp(&right, &left), -expected) << a << ' ' << b;
  }
  comn_numeric minus_zero = record({0, 2, 0});
  minus_zero.sign = 1;
  const comn_numeric zero = record({0, 5, 3});
  EXPECT_EQ(comn_numcmp(&minus_zero, &zero), 0);
}

// ---- Primitives --------------------------------------------------------------------------------

using Primitive = int32_t (*)(comnb_value* value, comnb_value* out, int32_t argument);

constexpr Primitive kCopy = [](comnb_value* v, comnb_value* o, int32_t) {
  return com__exctnume_copy(v, o);
};
constexpr Primitive kRound = [](comnb_value* v, comnb_value* o, int32_t digits) {
  return com__exctnume_round(v, digits, o);
};
constexpr Primitive kWhole = [](comnb_value* v, comnb_value* o, int32_t ceiling) {
  return com__exctnume_ceilingfloor(v, o, ceiling);
};
constexpr Primitive kScale = [](comnb_value* v, comnb_value* o, int32_t digits) {
  return com__exctnume_scale(v, o, digits, 0);
};
constexpr Primitive kScaleRounding = [](comnb_value* v, comnb_value* o, int32_t digits) {
  return com__exctnume_scale(v, o, digits, 1);
};
constexpr Primitive kStep = [](comnb_value* v, comnb_value* o, int32_t up) {
  com__exctnume_copy(v, o);
  return up != 0 ? com__exctnume_inc(o) : com__exctnume_dec(o);
};
constexpr Primitive kSquare = [](comnb_value* v, comnb_value* o, int32_t) {
  return com__exctnume_mul(v, v, o);
};
constexpr Primitive kDivideBySelf = [](comnb_value* v, comnb_value* o, int32_t) {
  return com__exctnume_div(v, v, o, nullptr);
};

TEST(DecimalPrimitives, StatusAndResult) {
  const struct {
    Primitive call;
    int32_t argument;
    Number value;
    int out_length;
    int32_t status;
    Big result;
  } kRows[] = {
      {kCopy, 0, {-255, 9, 0}, 2, COM_NUM_DONE, -255},
      {kCopy, 0, {256, 9, 0}, 2, COM_NUM_OVERFLOW, 0},
      {kCopy, 0, {1, 2, 0}, 34, COM_NUM_INVALID, 1},  // no such field
      {kRound, 2, {2345, 4, 3}, 4, COM_NUM_DONE, 235},
      {kRound, 2, {-2345, 4, 3}, 4, COM_NUM_DONE, -235},
      {kRound, 0, {-4, 4, 1}, 4, COM_NUM_DONE, 0},
      {kRound, 0, {5, 4, 77}, 4, COM_NUM_DONE, 0},
      {kRound, -1, {4, 4, 1}, 4, COM_NUM_INVALID, 0},
      {kWhole, 1, {11, 4, 1}, 4, COM_NUM_DONE, 2},
      {kWhole, 1, {-11, 4, 1}, 4, COM_NUM_DONE, -1},
      {kWhole, 0, {-11, 4, 1}, 4, COM_NUM_DONE, -2},
      {kWhole, 0, {-10, 4, 1}, 4, COM_NUM_DONE, -1},
      {kScale, 2, {2, 4, 0}, 2, COM_NUM_DONE, 200},
      {kScale, 2, {3, 4, 0}, 2, COM_NUM_OVERFLOW, 0},
      {kScale, 77, {9, 4, 0}, 33, COM_NUM_OVERFLOW, 0},
      {kScale, 78, {3, 4, 0}, 33, COM_NUM_INVALID, 0},
      {kScale, -1, {-15, 4, 0}, 2, COM_NUM_DROPPED, -1},
      {kScale, INT32_MIN, {1, 4, 0}, 2, COM_NUM_DROPPED, 0},
      {kScaleRounding, -1, {-15, 4, 0}, 2, COM_NUM_DONE, -2},
      {kScaleRounding, INT32_MIN, {1, 4, 0}, 2, COM_NUM_DONE, 0},
      {kStep, 1, {254, 9, 0}, 2, COM_NUM_DONE, 255},
      {kStep, 1, {255, 9, 0}, 2, COM_NUM_OVERFLOW, 0},
      {kStep, 0, {0, 2, 0}, 2, COM_NUM_OVERFLOW, 0},
      {kSquare, 0, {16, 2, 0}, 2, COM_NUM_OVERFLOW, 0},
      {kDivideBySelf, 0, {0, 2, 0}, 9, COM_NUM_DIVZERO, 0},
  };
  for (const auto& row : kRows) {
    const Number& n = row.value;
    Field value(field_length(n.precision), n.precision, n.scale, n.value);
    Field out(row.out_length, 77, 0, 1);
    EXPECT_EQ(row.call(&value.descriptor, &out.descriptor, row.argument), row.status)
        << &row - kRows;
    EXPECT_EQ(out.number().value, row.result) << &row - kRows;
  }
}

TEST(DecimalPrimitives, RemainderAndConstructors) {
  Field a(5, 9, 0, -17), b(5, 9, 0, 5), quotient(5, 9, 1), rest(5, 9, 1);
  EXPECT_EQ(com__exctnume_div(&a.descriptor, &b.descriptor, &quotient.descriptor, &rest.descriptor),
            0);
  EXPECT_EQ(quotient.number().value, -34);
  EXPECT_EQ(rest.number().value, 0);
  quotient.descriptor.scale = 0;
  EXPECT_EQ(com__exctnume_div(&a.descriptor, &b.descriptor, &quotient.descriptor, &rest.descriptor),
            0);
  EXPECT_EQ(rest.number().value, -2);
  int32_t digit = 0;
  EXPECT_EQ(com__exctnume_divby10(&a.descriptor, &digit), 0);
  EXPECT_EQ(digit, 7);
  EXPECT_EQ(com__exctnume_intcmp(&a.descriptor, 1), 1);
  Field negative_zero(2, 2, 0);
  negative_zero.bytes.data()[0] = 1;
  EXPECT_EQ(com__exctnume_inc(&negative_zero.descriptor), 0);
  EXPECT_EQ(negative_zero.number().value, 1);

  uint8_t field[10], precision = 0, scale = 9;
  EXPECT_EQ(com__longlongtoexctnume(INT64_MIN, field, 10, &precision, &scale), COM_NUM_DONE);
  EXPECT_EQ(precision * 100 + scale, 2100);
  EXPECT_EQ(field_value(field, 10), Big(INT64_MIN));
  precision = 20, scale = 1;
  EXPECT_EQ(com__ulonglongtoexctnume(UINT64_MAX, field, 10, &precision, &scale), COM_NUM_OVERFLOW);
  EXPECT_EQ(field_value(field, 10), 0);
  EXPECT_EQ(com__longtoexctnume(-128, field, 2, &precision, &scale), COM_NUM_OVERFLOW);
  EXPECT_EQ(com__doubletoexctnume(HUGE_VAL, field, 10, &precision, &scale), COM_NUM_INVALID);
}

}  // namespace
