// Exported functions of numeric.h.
#include "tvxcomn/numeric.h"

#include <array>

#include "numeric/decimal.hpp"
#include "numeric/decimal_arithmetic.hpp"
#include "numeric/decimal_machine.hpp"
#include "numeric/decimal_text.hpp"
#include "numeric/precision.hpp"
#include "numeric/record_arithmetic.hpp"
#include "runtime/diagnosis.hpp"
#include "wire/key_table.hpp"

namespace num = tvx::numeric;
namespace rt = tvx::runtime;
using num::Decimal;
using num::DecimalStatus;

// ---- Tables ------------------------------------------------------------------------------------

namespace {

template <class Table>
const auto& entry(const Table& table, int32_t index) {
  rt::require(index >= 0 && static_cast<size_t>(index) < table.size());
  return table[static_cast<size_t>(index)];
}

// Field length, sign byte and magnitude.
using PowerRow = std::array<uint8_t, 34>;

constexpr std::array<PowerRow, num::kGreatestTen + 1> make_power_rows() {
  std::array<PowerRow, num::kGreatestTen + 1> rows{};
  for (size_t exponent = 0; exponent < rows.size(); ++exponent) {
    const num::Uint256& power = num::kWidePowersOfTen[exponent];
    const size_t bytes = static_cast<size_t>(num::byte_length(power));
    rows[exponent][0] = static_cast<uint8_t>(bytes + 1);
    for (size_t i = 0; i < bytes; ++i) {
      const size_t from_end = bytes - 1 - i;
      rows[exponent][2 + i] =
          static_cast<uint8_t>(power.limb[from_end / 8] >> (8 * (from_end % 8)));
    }
  }
  return rows;
}

constexpr auto kPowerRows = make_power_rows();

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
  return entry(entry(kPowerRows, exponent), index);
}

const uint8_t* comb_get_Byte_Power_ptr(int32_t exponent, int32_t index) {
  return &entry(entry(kPowerRows, exponent), index);
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

bool are_numerics(const comn_numeric* a, const comn_numeric* b) {
  rt::require_pointer(a);
  rt::require_pointer(b);
  return num::are_numerics(*a, *b);
}

using Operation = DecimalStatus(const comn_numeric& a, const comn_numeric& b, comn_numeric& out);

int32_t operate(Operation* operation, const comn_numeric* a, const comn_numeric* b,
                comn_numeric* result) {
  rt::require_pointer(result);
  return are_numerics(a, b) ? result_code(operation(*a, *b, *result)) : CS_CONV_DOMAIN;
}

}  // namespace

extern "C" {

int32_t comn_numadd(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  return rt::traced(operate(num::add, a, b, result));
}

int32_t comn_numsub(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  return rt::traced(operate(num::subtract, a, b, result));
}

int32_t comn_nummul(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  return rt::traced(operate(num::multiply, a, b, result));
}

int32_t comn_numdivide(const comn_numeric* a, const comn_numeric* b, comn_numeric* result) {
  return rt::traced(operate(num::divide, a, b, result));
}

int32_t comn_numcmp(const comn_numeric* a, const comn_numeric* b) {
  return are_numerics(a, b) ? num::compare(*a, *b) : rt::traced(CS_CONV_DOMAIN);
}

}  // extern "C"

// ---- Primitives on descriptors -----------------------------------------------------------------

namespace {

template <class... Values>
void require_values(const Values*... values) {
  (rt::require_pointer(values), ...);
  (rt::require_pointer(values->data), ...);
}

template <class... Values>
bool have_fields(const Values&... values) {
  return (num::is_field_length(values.length) && ...);
}

uint8_t* field(const comnb_value& value) {
  return static_cast<uint8_t*>(value.data);
}

Decimal load(const comnb_value& value) {
  return num::load_field(field(value), value.length, value.precision, value.scale);
}

// A value of the destination's type.
Decimal blank(const comnb_value& value) {
  return {{}, value.precision, value.scale, false};
}

// Stores a value that stands and zero otherwise.
int32_t finish(DecimalStatus status, const Decimal& value, comnb_value& out) {
  if (status == DecimalStatus::kDone || status == DecimalStatus::kDigitsDropped) {
    const DecimalStatus stored = num::store_field(value, field(out), out.length);
    if (stored != DecimalStatus::kDone) status = stored;
  } else {
    num::clear_field(field(out), out.length);
  }
  return static_cast<int32_t>(status);
}

constexpr int32_t kInvalidStatus = static_cast<int32_t>(DecimalStatus::kInvalid);

// Changes a value by a rule that returns a status and stores it in `out`.
template <class Rule>
int32_t change(const comnb_value* value, comnb_value* out, Rule rule) {
  require_values(value, out);
  if (!have_fields(*value, *out)) return kInvalidStatus;
  Decimal changed = load(*value);
  const DecimalStatus status = rule(changed);
  return finish(status, changed, *out);
}

}  // namespace

extern "C" {

int32_t com__exctnume_addorsub(const comnb_value* a, const comnb_value* b, comnb_value* result,
                               int32_t subtract) {
  require_values(a, b, result);
  if (!have_fields(*a, *b, *result)) return kInvalidStatus;
  Decimal sum = blank(*result);
  const DecimalStatus status = num::add_or_subtract(load(*a), load(*b), subtract != 0, sum);
  return finish(status, sum, *result);
}

int32_t com__exctnume_mul(const comnb_value* a, const comnb_value* b, comnb_value* result) {
  require_values(a, b, result);
  if (!have_fields(*a, *b, *result)) return kInvalidStatus;
  Decimal product = blank(*result);
  const DecimalStatus status = num::multiply(load(*a), load(*b), product);
  return finish(status, product, *result);
}

int32_t com__exctnume_div(const comnb_value* a, const comnb_value* b, comnb_value* result,
                          comnb_value* remainder) {
  require_values(a, b, result);
  if (!have_fields(*a, *b, *result)) return kInvalidStatus;
  Decimal quotient = blank(*result);
  Decimal rest{};
  const DecimalStatus status = num::divide(load(*a), load(*b), quotient, &rest);
  if (remainder == nullptr) return finish(status, quotient, *result);

  require_values(remainder);
  if (!have_fields(*remainder)) return kInvalidStatus;
  const int32_t stored = finish(status, rest, *remainder);
  return finish(static_cast<DecimalStatus>(stored), quotient, *result);
}

int32_t com__exctnume_scale(comnb_value* value, comnb_value* out, int32_t digits,
                            int32_t rounding_allowed) {
  return change(value, out == nullptr ? value : out, [=](Decimal& changed) {
    if (digits >= 0 || rounding_allowed == 0) return num::shift_digits(changed.magnitude, digits);
    num::drop_digits_rounding(changed.magnitude, digits < -INT32_MAX ? INT32_MAX : -digits);
    return DecimalStatus::kDone;
  });
}

int32_t com__exctnume_copy(const comnb_value* from, comnb_value* to) {
  return change(from, to, [](Decimal&) { return DecimalStatus::kDone; });
}

int32_t com__exctnume_round(const comnb_value* value, int32_t digits, comnb_value* out) {
  return change(value, out, [=](Decimal& changed) {
    if (digits < 0) return DecimalStatus::kInvalid;
    num::round_half_away(changed, digits);
    out->scale = static_cast<uint8_t>(changed.scale);
    return DecimalStatus::kDone;
  });
}

int32_t com__exctnume_ceilingfloor(const comnb_value* value, comnb_value* out, int32_t ceiling) {
  return change(value, out, [=](Decimal& changed) {
    const bool has_fraction = num::rescale(changed, 0) == DecimalStatus::kDigitsDropped;
    // The magnitude has lost a digit: one more does not carry out of it.
    if (has_fraction && changed.negative == (ceiling == 0))
      add(changed.magnitude, num::make_uint256(1));
    out->scale = 0;
    return DecimalStatus::kDone;
  });
}

int32_t com__exctnume_inc(comnb_value* value) {
  return change(value, value, [](Decimal& changed) {
    changed.negative &= !changed.is_zero();
    return add(changed.magnitude, num::make_uint256(1)) ? DecimalStatus::kOverflow
                                                        : DecimalStatus::kDone;
  });
}

int32_t com__exctnume_dec(comnb_value* value) {
  return change(value, value, [](Decimal& changed) {
    return subtract(changed.magnitude, num::make_uint256(1)) ? DecimalStatus::kOverflow
                                                             : DecimalStatus::kDone;
  });
}

int32_t com__exctnume_divby10(comnb_value* value, int32_t* remainder) {
  rt::require_pointer(remainder);
  return change(value, value, [=](Decimal& changed) {
    *remainder = static_cast<int32_t>(divide(changed.magnitude, num::kTenDivisors[1]));
    return DecimalStatus::kDone;
  });
}

int32_t com__exctnume_checkprecision(const comnb_value* value) {
  require_values(value);
  rt::require(have_fields(*value));
  return num::exceeds_precision(load(*value).magnitude, value->precision);
}

int32_t com__exctnume_intcmp(const comnb_value* value, int32_t n) {
  require_values(value);
  rt::require(have_fields(*value));
  return n >= 0 && load(*value).magnitude == num::make_uint256(static_cast<uint64_t>(n));
}

int32_t com__exctnume_cmp(const comnb_value* a, const comnb_value* b, int32_t mode) {
  require_values(a, b);
  rt::require(have_fields(*a, *b));
  return num::compare(load(*a), load(*b), mode);
}

}  // extern "C"

// ---- Machine numbers and text ------------------------------------------------------------------

namespace {

DecimalStatus assign(Decimal& value, double number) {
  return num::from_double(number, value);
}

template <class Integer>
DecimalStatus assign(Decimal& value, Integer number) {
  return num::from_integer(number, value);
}

template <class Number>
int32_t construct(Number number, uint8_t* field, int32_t length, uint8_t* precision,
                  uint8_t* scale) {
  rt::require_pointer(field);
  rt::require_pointer(precision);
  rt::require_pointer(scale);
  if (!num::is_field_length(length)) return kInvalidStatus;
  Decimal value{{}, *precision, *scale, false};
  num::take_default_type(value, length);
  comnb_value out{};
  out.length = length;
  out.data = field;
  *precision = static_cast<uint8_t>(value.precision);
  *scale = static_cast<uint8_t>(value.scale);
  const DecimalStatus status = assign(value, number);
  // A scale that was left to a double stands now.
  if (status == DecimalStatus::kDone) *scale = static_cast<uint8_t>(value.scale);
  return finish(status, value, out);
}

}  // namespace

extern "C" {

int32_t com__longtoexctnume(int32_t number, uint8_t* field, int32_t length, uint8_t* precision,
                            uint8_t* scale) {
  return construct(number, field, length, precision, scale);
}

int32_t com__ulongtoexctnume(uint32_t number, uint8_t* field, int32_t length, uint8_t* precision,
                             uint8_t* scale) {
  return construct(number, field, length, precision, scale);
}

int32_t com__longlongtoexctnume(int64_t number, uint8_t* field, int32_t length, uint8_t* precision,
                                uint8_t* scale) {
  return construct(number, field, length, precision, scale);
}

int32_t com__ulonglongtoexctnume(uint64_t number, uint8_t* field, int32_t length,
                                 uint8_t* precision, uint8_t* scale) {
  return construct(number, field, length, precision, scale);
}

int32_t com__doubletoexctnume(double number, uint8_t* field, int32_t length, uint8_t* precision,
                              uint8_t* scale) {
  return construct(number, field, length, precision, scale);
}

int32_t com__subchartoexctnume(comnb_value* out, const char* text, int32_t length,
                               int32_t rounding) {
  require_values(out);
  rt::require_pointer(text);
  if (!have_fields(*out) || length < 0) return kInvalidStatus;
  const size_t entry = static_cast<size_t>(out->length - num::kMinFieldLength);
  Decimal value{};
  const bool precision_from_text = out->precision == num::kFromText;
  DecimalStatus status = num::parse_decimal(
      {text, static_cast<size_t>(length)},
      {out->precision, out->scale, num::kPrecisionOfFieldLength[entry], rounding != 0}, value);
  // A field of the text's own precision has to lie in the one there is.
  if (status == DecimalStatus::kDone && precision_from_text &&
      num::field_length(value.precision) > out->length)
    status = DecimalStatus::kOverflow;
  if (status != DecimalStatus::kDone) {
    num::clear_field(field(*out), out->length);
    return static_cast<int32_t>(status);
  }
  if (precision_from_text) {
    out->precision = static_cast<uint8_t>(value.precision);
    out->length = num::field_length(value.precision);
  }
  out->scale = static_cast<uint8_t>(value.scale);
  return finish(status, value, *out);
}

char* com__subexctnumetochar(const comnb_value* value, char* buffer, int32_t size,
                             int32_t* length) {
  require_values(value);
  rt::require_pointer(buffer);
  rt::require_pointer(length);
  *length = 0;
  if (!have_fields(*value) || value->scale > num::kMaxScale) return nullptr;
  const num::DecimalText text(load(*value));
  if (text.length() > size) return nullptr;
  *length = text.length();
  char* const start = buffer + (size - text.length());
  text.write(start);
  return start;
}

}  // extern "C"
