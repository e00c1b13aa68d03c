// Exported functions of numeric.h.
#include "tvxcomn/numeric.h"

#include <algorithm>

#include "numeric/field_operations.hpp"
#include "numeric/field_powers.hpp"
#include "numeric/precision.hpp"
#include "numeric/record_arithmetic.hpp"
#include "runtime/diagnosis.hpp"
#include "wire/key_table.hpp"

namespace num = tvx::numeric;
namespace rt = tvx::runtime;
using num::DecimalStatus;

// ---- Tables ------------------------------------------------------------------------------------

namespace {

template <class Table>
const auto& entry(const Table& table, int32_t index) {
  rt::require(index >= 0 && static_cast<size_t>(index) < table.size());
  return table[static_cast<size_t>(index)];
}

}  // namespace

extern "C" {

int32_t comn_num_getlen(int32_t precision) {
  rt::require(num::is_precision(precision));
  return num::field_length(precision);
}

int32_t comn_num_getprec(int32_t length) {
  rt::require(num::is_field_length(length));
  return num::kPrecisionOfFieldLength[static_cast<size_t>(length - num::kMinFieldLength)];
}

int32_t comb_get_Prec_To_Len(int32_t precision) {
  return entry(num::kFieldLengthOfPrecision, precision);
}

int32_t comb_get_Len_To_Prec(int32_t index) {
  return entry(num::kPrecisionOfFieldLength, index);
}

int32_t comb_get_Byte_Power_val(int32_t exponent, int32_t index) {
  return entry(entry(num::kFieldPowers, exponent), index);
}

const uint8_t* comb_get_Byte_Power_ptr(int32_t exponent, int32_t index) {
  return &entry(entry(num::kFieldPowers, exponent), index);
}

double comb_get_Flt_Power(int32_t /*index*/) {
  return 0.0;
}

double comb_get_Flt_256(int32_t /*index*/) {
  return 0.0;
}

const uint8_t* comb_get_Netkey(int32_t index) {
  return entry(tvx::wire::key_table, index).data();
}

}  // extern "C"

// ---- Arithmetic on records ---------------------------------------------------------------------

namespace {

int32_t result_code(DecimalStatus status) {
  if (status == DecimalStatus::kDone) [[likely]]
    return CS_SUCCEED;
  switch (status) {
    case DecimalStatus::kOverflow:
    case DecimalStatus::kDigitsDropped:
      return CS_CONV_OVERFLOW;
    case DecimalStatus::kInvalid:
      return CS_CONV_SYNTAX;
    case DecimalStatus::kDivisionByZero:
      return CS_CONV_DIVZERO;
    case DecimalStatus::kDone:
      break;
  }
  return CS_SUCCEED;
}

using Operation = DecimalStatus(const comn_numeric& a, const comn_numeric& b, comn_numeric& out);

int32_t operate(Operation* operation, const comn_numeric& a, const comn_numeric& b,
                comn_numeric& result) {
  return num::are_numerics(a, b) ? result_code(operation(a, b, result)) : CS_CONV_DOMAIN;
}

}  // namespace

extern "C" {

int32_t comn_numadd(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  rt::require_pointers({a, b, result});
  return rt::traced(operate(num::add, *a, *b, *result));
}

int32_t comn_numsub(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  rt::require_pointers({a, b, result});
  return rt::traced(operate(num::subtract, *a, *b, *result));
}

int32_t comn_nummul(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  rt::require_pointers({a, b, result});
  return rt::traced(operate(num::multiply, *a, *b, *result));
}

int32_t comn_numdivide(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  rt::require_pointers({a, b, result});
  return rt::traced(operate(num::divide, *a, *b, *result));
}

int32_t comn_numcmp(const comn_numeric* a, const comn_numeric* b) {
  rt::require_pointers({a, b});
  return num::are_numerics(*a, *b) ? num::compare(*a, *b) : rt::traced(CS_CONV_DOMAIN);
}

}  // extern "C"

// ---- Primitives on descriptors -----------------------------------------------------------------

namespace {

int32_t as_int(DecimalStatus status) {
  return static_cast<int32_t>(status);
}

}  // namespace

extern "C" {

int32_t com__exctnume_addorsub(const comnb_value* a, const comnb_value* b, comnb_value* result,
                               int32_t subtract) {
  rt::require_pointers({a, b, result});
  rt::require_pointers({a->data, b->data, result->data});
  return as_int(num::add_or_subtract(*a, *b, subtract != 0, *result));
}

int32_t com__exctnume_mul(const comnb_value* a, const comnb_value* b, comnb_value* result) {
  rt::require_pointers({a, b, result});
  rt::require_pointers({a->data, b->data, result->data});
  return as_int(num::multiply(*a, *b, *result));
}

int32_t com__exctnume_div(const comnb_value* a, const comnb_value* b, comnb_value* result,
                          comnb_value* remainder) {
  rt::require_pointers({a, b, result});
  rt::require_pointers({a->data, b->data, result->data});
  if (remainder != nullptr) rt::require_pointer(remainder->data);
  return as_int(num::divide(*a, *b, *result, remainder));
}

int32_t com__exctnume_scale(comnb_value* value, comnb_value* out, int32_t digits,
                            int32_t rounding_allowed) {
  if (out == nullptr) out = value;
  rt::require_pointers({value, out});
  rt::require_pointers({value->data, out->data});
  return as_int(num::shift_digits(*value, digits, rounding_allowed != 0, *out));
}

int32_t com__exctnume_copy(const comnb_value* from, comnb_value* to) {
  rt::require_pointers({from, to});
  rt::require_pointers({from->data, to->data});
  return as_int(num::copy(*from, *to));
}

int32_t com__exctnume_round(const comnb_value* value, int32_t digits, comnb_value* out) {
  rt::require_pointers({value, out});
  rt::require_pointers({value->data, out->data});
  return as_int(num::round_half_away(*value, digits, *out));
}

int32_t com__exctnume_ceilingfloor(const comnb_value* value, comnb_value* out, int32_t ceiling) {
  rt::require_pointers({value, out});
  rt::require_pointers({value->data, out->data});
  const auto rounding = ceiling != 0 ? num::Rounding::kCeiling : num::Rounding::kFloor;
  return as_int(num::round_to_whole(*value, rounding, *out));
}

int32_t com__exctnume_inc(comnb_value* value) {
  rt::require_pointer(value);
  rt::require_pointer(value->data);
  return as_int(num::increment(*value));
}

int32_t com__exctnume_dec(comnb_value* value) {
  rt::require_pointer(value);
  rt::require_pointer(value->data);
  return as_int(num::decrement(*value));
}

int32_t com__exctnume_divby10(comnb_value* value, int32_t* remainder) {
  rt::require_pointers({value, remainder});
  rt::require_pointer(value->data);
  return as_int(num::divide_by_ten(*value, *remainder));
}

int32_t com__exctnume_checkprecision(const comnb_value* value) {
  rt::require_pointer(value);
  rt::require_pointer(value->data);
  rt::require(num::has_field_length(*value));
  return num::exceeds_precision(*value);
}

int32_t com__exctnume_intcmp(const comnb_value* value, int32_t n) {
  rt::require_pointer(value);
  rt::require_pointer(value->data);
  rt::require(num::has_field_length(*value));
  return num::has_magnitude(*value, n);
}

int32_t com__exctnume_cmp(const comnb_value* a, const comnb_value* b, int32_t mode) {
  rt::require_pointers({a, b});
  rt::require_pointers({a->data, b->data});
  rt::require(num::has_field_length(*a) && num::has_field_length(*b));
  return num::compare(*a, *b, mode);
}

}  // extern "C"

// ---- Machine numbers and text ------------------------------------------------------------------

namespace {

template <class Number>
int32_t store_number(Number number, uint8_t* field, int32_t length, uint8_t& precision,
                     uint8_t& scale) {
  comnb_value out{};
  out.length = length;
  out.precision = precision;
  out.scale = scale;
  out.data = field;
  const DecimalStatus status = num::store_number(number, out);
  precision = out.precision;
  scale = out.scale;
  return as_int(status);
}

}  // namespace

extern "C" {

int32_t com__longtoexctnume(int32_t number, uint8_t* field, int32_t length, uint8_t* precision,
                            uint8_t* scale) {
  rt::require_pointers({field, precision, scale});
  return store_number(number, field, length, *precision, *scale);
}

int32_t com__ulongtoexctnume(uint32_t number, uint8_t* field, int32_t length, uint8_t* precision,
                             uint8_t* scale) {
  rt::require_pointers({field, precision, scale});
  return store_number(number, field, length, *precision, *scale);
}

int32_t com__longlongtoexctnume(int64_t number, uint8_t* field, int32_t length, uint8_t* precision,
                                uint8_t* scale) {
  rt::require_pointers({field, precision, scale});
  return store_number(number, field, length, *precision, *scale);
}

int32_t com__ulonglongtoexctnume(uint64_t number, uint8_t* field, int32_t length,
                                 uint8_t* precision, uint8_t* scale) {
  rt::require_pointers({field, precision, scale});
  return store_number(number, field, length, *precision, *scale);
}

int32_t com__doubletoexctnume(double number, uint8_t* field, int32_t length, uint8_t* precision,
                              uint8_t* scale) {
  rt::require_pointers({field, precision, scale});
  return store_number(number, field, length, *precision, *scale);
}

int32_t com__subchartoexctnume(comnb_value* out, const char* text, int32_t length,
                               int32_t rounding) {
  rt::require_pointers({out, text});
  rt::require_pointer(out->data);
  if (length < 0) return as_int(DecimalStatus::kInvalid);
  return as_int(num::read_text({text, static_cast<size_t>(length)}, rounding != 0, *out));
}

char* com__subexctnumetochar(const comnb_value* value, char* buffer, int32_t size,
                             int32_t* length) {
  rt::require_pointers({value, buffer, length});
  rt::require_pointer(value->data);
  const auto room = static_cast<size_t>(std::max(size, 0));
  const auto text = num::write_text(*value, {buffer, room});
  *length = static_cast<int32_t>(text.size());
  return text.data();
}

}  // extern "C"
