// Conversions from and to the two money types. Every one takes an amount from its source and hands
// it to its destination; a pair is one of the ways of taking joined to one of the ways of handing
// over.
#pragma once

#include <algorithm>
#include <utility>

#include "convert/number_text.hpp"
#include "convert/numeric_conversion.hpp"
#include "convert/scalar.hpp"
#include "numeric/money_text.hpp"

namespace tvx::convert {

using numeric::Money;
using numeric::MoneyFormat;
using numeric::MoneyResult;
using numeric::MoneyStatus;
using numeric::MoneyText;
using numeric::SmallMoney;

namespace type {

struct money {
  using Value = comn_money;
  static constexpr CodeSet codes{TVX_TYPE_MONEY};
};
struct mny4 {
  using Value = int32_t;
  static constexpr CodeSet codes{TVX_TYPE_MNY4};
};

}  // namespace type

[[nodiscard]] constexpr int32_t result_code(MoneyStatus status) {
  switch (status) {
    case MoneyStatus::kDone:
      return CS_SUCCEED;
    case MoneyStatus::kOverflow:
      return CS_CONV_OVERFLOW;
    case MoneyStatus::kSyntax:
      return CS_CONV_SYNTAX;
    case MoneyStatus::kZeroDivide:
      return CS_CONV_DIVZERO;
  }
  return CS_FAIL;
}

// How the destination wants its text: a data format asks for digits only.
[[nodiscard]] inline MoneyFormat money_format(const comn_datafmt& format) {
  return numeric::money_format(std::clamp(format.precision, 0, numeric::kMoneyScale) << 8);
}

[[nodiscard]] inline MoneyFormat money_format(const comnb_context& context) {
  return numeric::money_format(context.date_format);
}

// ---- The amount of a source --------------------------------------------------------------------

template <class Source>
[[nodiscard]] MoneyResult<Money> amount_of(const void* source) {
  if constexpr (std::is_same_v<Source, type::money>) {
    return numeric::money_done(numeric::load_money(source));
  } else {
    const auto value = base::load<Value<Source>>(source);
    if constexpr (std::is_same_v<Source, type::mny4>) {
      return numeric::money_done(numeric::widen(SmallMoney{value}));
    } else if constexpr (is_float<Source>) {
      return numeric::money_of_double(value);
    } else {
      return numeric::money_of_integer(value);
    }
  }
}

// ---- The destination of an amount --------------------------------------------------------------

// Stores an amount, or the limit on its side, and gives the result code. A status that the amount
// brings along goes before its own.
inline int32_t hand_over(MoneyResult<Money> amount, type::money, MoneyFormat, void* destination) {
  numeric::store_money(destination, amount.value);
  return result_code(amount.status);
}

inline int32_t hand_over(MoneyResult<Money> amount, type::mny4, MoneyFormat, void* destination) {
  const auto narrowed = numeric::narrow(amount.value);
  base::store(destination, narrowed.value.count);
  return result_code(amount.status == MoneyStatus::kDone ? narrowed.status : amount.status);
}

// Only money amounts go to the scalar types, and they bring no status. The eight-byte integers are
// those to which the amount's text rounds.
template <class Scalar>
int32_t hand_over(MoneyResult<Money> amount, Scalar, MoneyFormat format, void* destination) {
  using Stored = Value<Scalar>;
  const Money value = amount.value;
  if constexpr (is_bit<Scalar>) {
    base::store(destination, static_cast<Stored>(value.count != 0 ? 1 : 0));
    return CS_SUCCEED;
  } else if constexpr (is_float<Scalar>) {
    base::store(destination, static_cast<Stored>(numeric::double_of_money(value)));
    return CS_SUCCEED;
  } else {
    if (is_unsigned_code<Scalar> && value.count < 0) return CS_CONV_OVERFLOW;
    const int64_t integer = sizeof(Stored) == sizeof(int64_t)
                                ? numeric::integer_of_text(value, format.digits)
                                : numeric::nearest_integer(value);
    const bool below = std::cmp_less(integer, Limits<Scalar>::min());
    const bool above = std::cmp_greater(integer, Limits<Scalar>::max());
    base::store(destination, below   ? Limits<Scalar>::min()
                             : above ? Limits<Scalar>::max()
                                     : static_cast<Stored>(integer));
    return below || above ? CS_CONV_OVERFLOW : CS_SUCCEED;
  }
}

// ---- Pairs of money and a scalar or money type -------------------------------------------------

template <class Source, class Destination>
int32_t money_routine(const Call& call) {
  call.require_codes(Source::codes, destination_codes<Destination>);
  *call.output_length = sizeof(Value<Destination>);
  return hand_over(amount_of<Source>(call.source), Destination{},
                   money_format(*call.destination_format), call.destination);
}

// Bit comes to money in this layer only; an illegal one goes no further.
template <class Source, class Destination>
int32_t bare_money_routine(const BareCall& call) {
  call.require_data();
  if constexpr (is_bit<Source>) {
    if (!is_legal<Source>(base::load<Value<Source>>(call.source->data))) return CS_CONV_DOMAIN;
  }
  call.destination->length = sizeof(Value<Destination>);
  return hand_over(amount_of<Source>(call.source->data), Destination{}, money_format(*call.context),
                   call.destination->data);
}

// ---- Text towards money ------------------------------------------------------------------------

// A text that is no amount has length 0.
template <class Destination>
[[nodiscard]] constexpr int32_t length_of_reading(int32_t code) {
  return code == CS_CONV_SYNTAX ? 0 : static_cast<int32_t>(sizeof(Value<Destination>));
}

template <class TextKind, class Destination>
int32_t text_to_money(const Call& call) {
  call.require_codes(TextKind::codes, Destination::codes);
  const Text text = TextKind::read(call);
  const auto amount = numeric::parse_money(
      text.data, text.length, locale::character_attributes(*call.context, *call.source_format));
  const int32_t code = hand_over(amount, Destination{}, {}, call.destination);
  *call.output_length = length_of_reading<Destination>(code);
  return code;
}

template <class Destination>
int32_t bare_text_to_money(const BareCall& call) {
  call.require_text_source();
  const auto amount = numeric::parse_money(static_cast<const char*>(call.source->data),
                                           call.source->length, call.context->attributes);
  const int32_t code = hand_over(amount, Destination{}, {}, call.destination->data);
  call.destination->length = length_of_reading<Destination>(code);
  return code;
}

// ---- Money towards text ------------------------------------------------------------------------

int32_t deliver_money_char(const Call& call, const MoneyText& text);
int32_t deliver_bare_money_char(const BareCall& call, const MoneyText& text);
int32_t deliver_bare_money_varchar(const BareCall& call, const MoneyText& text);

template <class Source, class TextKind>
int32_t money_to_text(const Call& call) {
  call.require_codes(Source::codes, TextKind::codes);
  const MoneyText text(amount_of<Source>(call.source).value,
                       money_format(*call.destination_format));
  if constexpr (std::is_same_v<TextKind, type::text_char>) {
    return deliver_money_char(call, text);
  } else {
    return deliver_varchar(call, text);
  }
}

template <class Source, class TextKind>
int32_t bare_money_to_text(const BareCall& call) {
  call.require_data();
  const MoneyText text(amount_of<Source>(call.source->data).value, money_format(*call.context));
  if constexpr (std::is_same_v<TextKind, type::text_char>) {
    return deliver_bare_money_char(call, text);
  } else {
    return deliver_bare_money_varchar(call, text);
  }
}

// ---- Money and exact numerics ------------------------------------------------------------------

int32_t deliver_money_num(const Call& call, Money amount);
int32_t deliver_bare_money_num(const BareCall& call, Money amount);

template <class Source>
int32_t money_to_num(const Call& call) {
  call.require_codes(Source::codes, kNumFamily);
  return deliver_money_num(call, amount_of<Source>(call.source).value);
}

template <class Source>
int32_t bare_money_to_num(const BareCall& call) {
  call.require_data();
  return deliver_bare_money_num(call, amount_of<Source>(call.source->data).value);
}

template <class Destination>
int32_t num_to_money(const Call& call) {
  call.require_codes(kNumFamily, Destination::codes);
  const auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  *call.output_length = sizeof(Value<Destination>);
  return hand_over(numeric::money_of_decimal(value), Destination{}, {}, call.destination);
}

template <class Destination>
int32_t bare_num_to_money(const BareCall& call) {
  call.require_data();
  const auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  call.destination->length = sizeof(Value<Destination>);
  return hand_over(numeric::money_of_decimal(value), Destination{}, {}, call.destination->data);
}

}  // namespace tvx::convert
