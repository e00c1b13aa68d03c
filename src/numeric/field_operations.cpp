// Each operation loads, asks the one on Decimals and stores.
#include "numeric/field_operations.hpp"

#include "numeric/decimal_arithmetic.hpp"
#include "numeric/decimal_machine.hpp"
#include "numeric/decimal_text.hpp"

namespace tvx::numeric {
namespace {

template <class... Values>
bool have_fields(const Values&... values) {
  return (has_field_length(values) && ...);
}

uint8_t* field(const comnb_value& value) {
  return static_cast<uint8_t*>(value.data);
}

Decimal load(const comnb_value& value) {
  return load_field(field(value), value.length, value.precision, value.scale);
}

// A value of the destination's type.
Decimal blank(const comnb_value& value) {
  return {{}, value.precision, value.scale, false};
}

// Stores a value that stands and zero otherwise.
DecimalStatus finish(DecimalStatus status, const Decimal& value, comnb_value& out) {
  if (status == DecimalStatus::kDone || status == DecimalStatus::kDigitsDropped) {
    const DecimalStatus stored = store_field(value, field(out), out.length);
    if (stored != DecimalStatus::kDone) status = stored;
  } else {
    clear_field(field(out), out.length);
  }
  return status;
}

// Changes a value by a rule that returns a status and stores it in `out`.
template <class Rule>
DecimalStatus change(const comnb_value& value, comnb_value& out, Rule rule) {
  if (!have_fields(value, out)) return DecimalStatus::kInvalid;
  Decimal changed = load(value);
  const DecimalStatus status = rule(changed);
  return finish(status, changed, out);
}

DecimalStatus assign(Decimal& value, double number) {
  return from_double(number, value);
}

template <class Integer>
DecimalStatus assign(Decimal& value, Integer number) {
  return from_integer(number, value);
}

}  // namespace

// ---- Arithmetic --------------------------------------------------------------------------------

DecimalStatus add_or_subtract(const comnb_value& a, const comnb_value& b, bool subtracts,
                              comnb_value& result) {
  if (!have_fields(a, b, result)) return DecimalStatus::kInvalid;
  Decimal sum = blank(result);
  const DecimalStatus status = add_or_subtract(load(a), load(b), subtracts, sum);
  return finish(status, sum, result);
}

DecimalStatus multiply(const comnb_value& a, const comnb_value& b, comnb_value& result) {
  if (!have_fields(a, b, result)) return DecimalStatus::kInvalid;
  Decimal product = blank(result);
  const DecimalStatus status = multiply(load(a), load(b), product);
  return finish(status, product, result);
}

DecimalStatus divide(const comnb_value& a, const comnb_value& b, comnb_value& result,
                     comnb_value* remainder) {
  if (!have_fields(a, b, result)) return DecimalStatus::kInvalid;
  if (remainder != nullptr && !have_fields(*remainder)) return DecimalStatus::kInvalid;
  Decimal quotient = blank(result);
  Decimal rest{};
  DecimalStatus status = divide(load(a), load(b), quotient, &rest);
  if (remainder != nullptr) status = finish(status, rest, *remainder);
  return finish(status, quotient, result);
}

DecimalStatus increment(comnb_value& value) {
  return change(value, value, [](Decimal& changed) {
    changed.negative &= !changed.is_zero();
    return add(changed.magnitude, make_uint256(1)) ? DecimalStatus::kOverflow
                                                   : DecimalStatus::kDone;
  });
}

DecimalStatus decrement(comnb_value& value) {
  return change(value, value, [](Decimal& changed) {
    return subtract(changed.magnitude, make_uint256(1)) ? DecimalStatus::kOverflow
                                                        : DecimalStatus::kDone;
  });
}

DecimalStatus divide_by_ten(comnb_value& value, int32_t& remainder) {
  return change(value, value, [&](Decimal& changed) {
    remainder = static_cast<int32_t>(divide(changed.magnitude, kTenDivisors[1]));
    return DecimalStatus::kDone;
  });
}

// ---- Change of scale ---------------------------------------------------------------------------

DecimalStatus shift_digits(const comnb_value& value, int32_t digits, bool rounding,
                           comnb_value& out) {
  return change(value, out, [=](Decimal& changed) {
    if (digits >= 0 || !rounding) return shift_digits(changed.magnitude, digits);
    drop_digits_rounding(changed.magnitude, digits < -INT32_MAX ? INT32_MAX : -digits);
    return DecimalStatus::kDone;
  });
}

DecimalStatus copy(const comnb_value& from, comnb_value& to) {
  return change(from, to, [](Decimal&) { return DecimalStatus::kDone; });
}

DecimalStatus round_half_away(const comnb_value& value, int32_t scale, comnb_value& out) {
  return change(value, out, [&](Decimal& changed) {
    if (scale < 0) return DecimalStatus::kInvalid;
    round_half_away(changed, scale);
    out.scale = static_cast<uint8_t>(changed.scale);
    return DecimalStatus::kDone;
  });
}

DecimalStatus round_to_whole(const comnb_value& value, Rounding rounding, comnb_value& out) {
  return change(value, out, [&](Decimal& changed) {
    const bool has_fraction = rescale(changed, 0) == DecimalStatus::kDigitsDropped;
    // The magnitude has lost a digit: one more does not carry out of it.
    if (has_fraction && changed.negative == (rounding == Rounding::kFloor))
      add(changed.magnitude, make_uint256(1));
    out.scale = 0;
    return DecimalStatus::kDone;
  });
}

// ---- Comparison --------------------------------------------------------------------------------

int32_t compare(const comnb_value& a, const comnb_value& b, int32_t mode) {
  return compare(load(a), load(b), mode);
}

bool exceeds_precision(const comnb_value& value) {
  return exceeds_precision(load(value).magnitude, value.precision);
}

bool has_magnitude(const comnb_value& value, int32_t magnitude) {
  return magnitude >= 0 && load(value).magnitude == make_uint256(static_cast<uint64_t>(magnitude));
}

// ---- Machine numbers and text ------------------------------------------------------------------

template <class Number>
DecimalStatus store_number(Number number, comnb_value& out) {
  if (!have_fields(out)) return DecimalStatus::kInvalid;
  Decimal value = blank(out);
  take_default_type(value, out.length);
  out.precision = static_cast<uint8_t>(value.precision);
  out.scale = static_cast<uint8_t>(value.scale);
  const DecimalStatus status = assign(value, number);
  // A scale that was left to a double stands now.
  if (status == DecimalStatus::kDone) out.scale = static_cast<uint8_t>(value.scale);
  return finish(status, value, out);
}

template DecimalStatus store_number(int32_t, comnb_value&);
template DecimalStatus store_number(uint32_t, comnb_value&);
template DecimalStatus store_number(int64_t, comnb_value&);
template DecimalStatus store_number(uint64_t, comnb_value&);
template DecimalStatus store_number(double, comnb_value&);

DecimalStatus read_text(std::string_view text, bool rounding, comnb_value& out) {
  if (!have_fields(out)) return DecimalStatus::kInvalid;
  const size_t entry = static_cast<size_t>(out.length - kMinFieldLength);
  const bool precision_from_text = out.precision == kFromText;
  Decimal value{};
  DecimalStatus status = parse_decimal(
      text, {out.precision, out.scale, kPrecisionOfFieldLength[entry], rounding}, value);
  // A field of the text's own precision has to lie in the one there is.
  if (status == DecimalStatus::kDone && precision_from_text &&
      field_length(value.precision) > out.length)
    status = DecimalStatus::kOverflow;
  if (status != DecimalStatus::kDone) {
    clear_field(field(out), out.length);
    return status;
  }
  if (precision_from_text) {
    out.precision = static_cast<uint8_t>(value.precision);
    out.length = field_length(value.precision);
  }
  out.scale = static_cast<uint8_t>(value.scale);
  return finish(status, value, out);
}

std::span<char> write_text(const comnb_value& value, std::span<char> buffer) {
  if (!have_fields(value) || value.scale > kMaxScale) return {};
  const DecimalText text(load(value));
  const auto length = static_cast<size_t>(text.length());
  if (length > buffer.size()) return {};
  const auto place = buffer.last(length);
  text.write(place.data());
  return place;
}

}  // namespace tvx::numeric
