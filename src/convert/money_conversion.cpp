// Delivery of money towards text and exact numerics.
#include "convert/money_conversion.hpp"

#include <cstring>

namespace tvx::convert {

using numeric::Decimal;
using numeric::DecimalStatus;

namespace {

// Writes the text, or the part of it that fits, and returns the bytes written.
int32_t write_within(const MoneyText& text, char* out, int32_t capacity) {
  const int32_t length = text.length();
  if (length <= capacity) [[likely]] {
    text.write(out);
    return length;
  }
  char whole[numeric::kMaxMoneyText];
  text.write(whole);
  const int32_t part = std::max(capacity, 0);
  std::memcpy(out, whole, static_cast<size_t>(part));
  return part;
}

// Writes a text that fits at the end of the destination and fills what is in front of it.
int32_t deliver_at_end(const MoneyText& text, bool fills, char fill, comnb_value& destination) {
  auto* const out = static_cast<char*>(destination.data);
  const int32_t length = text.length();
  const int32_t front = destination.maxlength - length;
  if (fills) std::memset(out, fill, static_cast<size_t>(front));
  text.write(out + front);
  destination.length = fills ? destination.maxlength : length;
  return CS_SUCCEED;
}

struct NumericOfMoney {
  Decimal value;
  int32_t code;  // CS_CONV_TRUNCATED: digits cut off; CS_CONV_OVERFLOW: not even 256 bits hold it
};

[[nodiscard]] NumericOfMoney numeric_of(Money amount, NumericType wanted) {
  Decimal value;
  switch (numeric::decimal_of_money(amount, wanted.precision, wanted.scale, value)) {
    case DecimalStatus::kDone:
      return {value, CS_SUCCEED};
    case DecimalStatus::kDigitsDropped:
      return {value, CS_CONV_TRUNCATED};
    default:
      return {{{}, wanted.precision, wanted.scale, false}, CS_CONV_OVERFLOW};
  }
}

}  // namespace

int32_t deliver_money_char(const Call& call, const MoneyText& text) {
  *call.output_length =
      write_within(text, static_cast<char*>(call.destination), destination_capacity(call));
  return complete_text(*call.destination_format, text.length(), call.destination,
                       *call.output_length);
}

int32_t deliver_bare_money_char(const BareCall& call, const MoneyText& text) {
  constexpr uint32_t both_fills = COMNB_ZEROFILL | COMNB_BLANKFILL;
  comnb_value& destination = *call.destination;
  const uint32_t flags = call.context->flags;
  const uint32_t fill = flags & both_fills;
  const bool right = (flags & COMNB_RIGHTALIGN) != 0 && (flags & COMNB_TERMINATE) == 0;
  if (right && fill != both_fills && text_fits(text.length(), destination.maxlength, flags)) {
    return deliver_at_end(text, fill != 0, fill == COMNB_BLANKFILL ? ' ' : '\0', destination);
  }
  destination.length =
      write_within(text, static_cast<char*>(destination.data), destination.maxlength);
  return complete_bare_text(*call.context, text.length(), destination);
}

int32_t deliver_bare_money_varchar(const BareCall& call, const MoneyText& text) {
  comnb_value& destination = *call.destination;
  destination.length =
      write_within(text, static_cast<char*>(destination.data), destination.maxlength);
  return text.length() <= destination.maxlength ? CS_SUCCEED : CS_CONV_OVERFLOW;
}

int32_t deliver_money_num(const Call& call, Money amount) {
  const NumericType wanted{call.destination_format->precision, call.destination_format->scale};
  *call.output_length = sizeof(comn_numeric);
  const int32_t bad_type = check_type(wanted, false);
  if (bad_type != CS_SUCCEED) return bad_type;
  const auto [value, code] = numeric_of(amount, wanted);
  return store_result(call, value, code, Reported::kWholeRecord);
}

int32_t deliver_bare_money_num(const BareCall& call, Money amount) {
  const NumericType wanted{call.destination->precision, call.destination->scale};
  const int32_t bad_type = check_type(wanted, false);
  if (bad_type != CS_SUCCEED) return bad_type;
  auto [value, code] = numeric_of(amount, wanted);
  if (code == CS_CONV_OVERFLOW || numeric::exceeds_precision(value.magnitude, wanted.precision)) {
    value.magnitude = numeric::kWidePowersOfTen[static_cast<size_t>(wanted.precision)];
    numeric::subtract(value.magnitude, numeric::make_uint256(1));
    value.negative = amount.count < 0;
    return store_result(call, value, CS_CONV_OVERFLOW);
  }
  return store_result(call, value, CS_SUCCEED);
}

}  // namespace tvx::convert
