// Money amounts as text and back.
#pragma once

#include "numeric/money.hpp"
#include "tvxcomn/attributes.h"

namespace tvx::numeric {

// How an amount is written.
struct MoneyFormat {
  int digits = 2;       // after the point, 1 to 4
  bool commas = false;  // one after every three integer digits
};

// The format of a flags word: low byte 1 asks for commas, the bits above give the digits. Below 1
// they are 2, above 4 they are 4.
[[nodiscard]] constexpr MoneyFormat money_format(int32_t flags) {
  const int32_t digits = flags >> 8;
  return {digits < 1 ? 2 : digits > kMoneyScale ? kMoneyScale : digits, (flags & 0xFF) == 1};
}

// "-922,337,203,685,477.5808"
inline constexpr int kMaxMoneyText = 25;

// The text of one amount, rounded half away from zero: its length is known before a character is
// written. A negative amount has its sign even when its digits are all rounded away.
class MoneyText {
public:
  MoneyText(Money value, MoneyFormat format);

  [[nodiscard]] int length() const { return length_; }

  // Writes length() characters.
  void write(char* out) const;

private:
  uint64_t whole_;
  uint32_t fraction_;
  int whole_digits_;
  int length_;
  MoneyFormat format_;
  bool negative_;
};

// Reads blanks, a sign and a currency symbol in either order, digits with group commas and a point,
// blanks. Nothing at all is 0. The fifth fraction digit rounds, later ones do not count. The first
// group comma may have up to three or exactly seven digits before it, each further one exactly
// three since the last; exactly three must follow the last one up to the point or the end.
//
// A null record is the built-in one. Statuses: kSyntax with the amount 0; kOverflow with the limit
// on the side of the sign.
[[nodiscard]] MoneyResult<Money> parse_money(const char* text, int32_t length,
                                             const com_charattr* attributes);

}  // namespace tvx::numeric
