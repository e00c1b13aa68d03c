// Writing and reading money. The grammar is written once over a cursor that delivers the characters
// of a text, be they one byte long or longer, as single bytes. Plain amounts have a short way that
// takes eight digits at a time.
#include "numeric/money_text.hpp"

#include <algorithm>

#include "charset/attributes.hpp"
#include "numeric/eight_digits.hpp"

namespace tvx::numeric {

// ---- Writing -----------------------------------------------------------------------------------

namespace {

constexpr int kGroup = 3;  // digits between commas

struct Parts {
  uint64_t whole;
  uint32_t fraction;
};

// With the count of digits known, the divisions become multiplications.
template <int digits>
[[nodiscard]] Parts split(uint64_t magnitude) {
  constexpr uint64_t one = power_of_ten(digits);
  constexpr uint64_t dropped = power_of_ten(kMoneyScale - digits);
  const uint64_t shown = round_off(magnitude, dropped);
  return {shown / one, static_cast<uint32_t>(shown % one)};
}

[[nodiscard]] Parts split(uint64_t magnitude, int digits) {
  switch (digits) {
    case 1:
      return split<1>(magnitude);
    case 2:
      return split<2>(magnitude);
    case 3:
      return split<3>(magnitude);
    default:
      return split<4>(magnitude);
  }
}

// Writes the low `digits` digits of a value in front of `end` and takes them off it.
template <class Unsigned>
char* write_low_digits(char* end, Unsigned& value, int digits) {
  for (; digits > 0; --digits) {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  return end;
}

}  // namespace

MoneyText::MoneyText(Money value, MoneyFormat format)
    : format_(format), negative_(value.count < 0) {
  const Parts parts = split(magnitude(value), format.digits);
  whole_ = parts.whole;
  fraction_ = parts.fraction;
  whole_digits_ = decimal_length(whole_);
  const int commas = format.commas ? (whole_digits_ - 1) / kGroup : 0;
  length_ = (negative_ ? 1 : 0) + whole_digits_ + commas + 1 + format.digits;
}

void MoneyText::write(char* out) const {
  uint32_t fraction = fraction_;
  char* at = write_low_digits(out + length_, fraction, format_.digits);
  *--at = '.';
  uint64_t whole = whole_;
  int digits = whole_digits_;
  if (format_.commas) {
    for (; digits > kGroup; digits -= kGroup) {
      at = write_low_digits(at, whole, kGroup);
      *--at = ',';
    }
  }
  write_digits(at - digits, whole, digits);
  if (negative_) *out = '-';
}

// ---- Reading -----------------------------------------------------------------------------------

namespace {

template <bool multibyte>
class Cursor {
public:
  Cursor(const com_charattr& attributes, const uint8_t* begin, const uint8_t* end)
      : attributes_(attributes), at_(begin), end_(end) {}

  [[nodiscard]] bool done() const { return at_ == end_; }
  [[nodiscard]] uint8_t character() const {
    if constexpr (multibyte) return charset::to_ascii(attributes_, at_, end_);
    return *at_;
  }
  [[nodiscard]] bool is_currency() const {
    return charset::entry(attributes_, at_, end_).lexical_class == COM_LEX_CURRENCY;
  }
  void advance() {
    if constexpr (multibyte) {
      at_ += charset::char_width(attributes_, at_, end_);
    } else {
      ++at_;
    }
  }

private:
  const com_charattr& attributes_;
  const uint8_t* at_;
  const uint8_t* end_;
};

constexpr uint64_t kZeros = 0x3030303030303030;  // "00000000"

// The number after sign and currency symbol, as it is read digit by digit.
class Accumulator {
public:
  explicit Accumulator(bool negative) : negative_(negative) {}

  // False: an overflow.
  [[nodiscard]] bool take_digit(uint32_t digit) {
    ++digits_since_comma_;
    if (fraction_digits_ <= kMoneyScale) {
      const bool fits = fraction_digits_ < kMoneyScale ? append(digit) : round(digit);
      if (!fits) return false;
    }
    if (point_) ++fraction_digits_;
    return true;
  }

  // False: the point ends the number, or comes amid a group.
  [[nodiscard]] bool take_point() {
    if (point_ || !group_is_whole()) return false;
    point_ = true;
    in_group_ = false;
    return true;
  }

  // False: the comma ends the number.
  [[nodiscard]] bool take_comma() {
    constexpr int seven_digits = 7;
    const bool separates =
        commas_ ? digits_since_comma_ == kGroup
                : digits_since_comma_ <= kGroup || digits_since_comma_ == seven_digits;
    if (!separates) return false;
    commas_ = in_group_ = true;
    digits_since_comma_ = 0;
    return true;
  }

  [[nodiscard]] bool group_is_whole() const { return !in_group_ || digits_since_comma_ == kGroup; }

  [[nodiscard]] MoneyResult<Money> result() {
    if (fraction_digits_ < kMoneyScale) {
      // Nothing reaches 2^64 unseen: the product is checked.
      const uint64_t factor = power_of_ten(kMoneyScale - fraction_digits_);
      if (__builtin_mul_overflow(magnitude_, factor, &magnitude_)) return overflow();
      if (magnitude_ >= kMostNegativeMagnitude) return overflow();
    }
    if (magnitude_ > kMostNegativeMagnitude) return overflow();
    if (magnitude_ == kMostNegativeMagnitude && !negative_) return overflow();
    return money_done(signed_money(magnitude_, negative_));
  }

  [[nodiscard]] MoneyResult<Money> overflow() const {
    return {money_limit<Money>(negative_), MoneyStatus::kOverflow};
  }

private:
  // A digit that counts. The most negative amount is the only one beyond the largest magnitude.
  [[nodiscard]] bool append(uint32_t digit) {
    constexpr uint64_t largest = kMostNegativeMagnitude - 1;
    if (magnitude_ > largest / 10) return false;
    const uint64_t next = magnitude_ * 10 + digit;
    if (next > largest + (negative_ ? 1 : 0)) return false;
    magnitude_ = next;
    return true;
  }

  // The first digit that does not. Nothing lies beyond the most negative amount, not even a part of
  // a ten-thousandth.
  [[nodiscard]] bool round(uint32_t digit) {
    if (magnitude_ == kMostNegativeMagnitude) return digit == 0;
    magnitude_ += digit >= 5 ? 1 : 0;
    return true;
  }

  uint64_t magnitude_ = 0;
  int32_t digits_since_comma_ = 0;  // or since the beginning
  int32_t fraction_digits_ = 0;
  bool negative_;
  bool point_ = false;
  bool commas_ = false;
  bool in_group_ = false;  // a comma came, and no point since
};

template <class Characters>
[[nodiscard]] bool only_blanks_follow(Characters& cursor) {
  for (; !cursor.done(); cursor.advance()) {
    if (cursor.character() != ' ') return false;
  }
  return true;
}

template <class Characters>
[[nodiscard]] MoneyResult<Money> parse_with(Characters cursor) {
  constexpr auto syntax = money_failed<Money>(MoneyStatus::kSyntax);
  bool sign = false;
  bool negative = false;
  bool currency = false;
  for (; !cursor.done(); cursor.advance()) {
    const uint8_t character = cursor.character();
    if (character == ' ') continue;
    if (character == '-' || character == '+') {
      if (sign) return syntax;
      sign = true;
      negative = character == '-';
    } else {
      // Asked last: most texts have a digit here.
      if (static_cast<uint32_t>(character) - '0' <= 9 || !cursor.is_currency()) break;
      if (currency) return syntax;
      currency = true;
    }
  }

  Accumulator number(negative);
  for (; !cursor.done(); cursor.advance()) {
    const uint8_t character = cursor.character();
    const uint32_t digit = static_cast<uint32_t>(character) - '0';
    if (digit <= 9) {
      if (!number.take_digit(digit)) return number.overflow();
    } else if (character == '.' ? !number.take_point() : character != ',' || !number.take_comma()) {
      break;
    }
  }
  if (!number.group_is_whole() || !only_blanks_follow(cursor)) return syntax;
  return number.result();
}

// The first (last) `count` of eight characters, 1 to 8, as the last of eight with zeros before
// them.
[[nodiscard]] uint64_t first_behind_zeros(const char* eight, int64_t count) {
  return load_eight(eight) << 8 * (8 - count) | kZeros >> 4 * count >> 4 * count;
}
[[nodiscard]] uint64_t last_behind_zeros(const char* eight, int64_t count) {
  const uint64_t others = ~(~uint64_t{0} << 4 * (8 - count) << 4 * (8 - count));
  return (load_eight(eight) & ~others) | (kZeros & others);
}

// The short way for what most texts are: at most a "-", up to 14 digits, a point and one to four
// digits. Returns whether the text is of that kind and long enough to load eight characters
// anywhere; otherwise `amount` is left alone.
[[nodiscard]] bool read_plain_money(const char* text, int32_t length, Money& amount) {
  constexpr int32_t shortest = 1 + 8;  // the sign aside
  constexpr int32_t most_digits = 14;  // 10^14 amounts of 10^4 ten-thousandths are below 2^63
  if (length < shortest) return false;
  const char* const end = text + length;
  const bool negative = *text == '-';
  text += negative ? 1 : 0;
  const char* point = end - 2;
  for (; *point != '.'; --point) {
    if (point == end - 1 - kMoneyScale) return false;
  }
  const int64_t digits = point - text;
  if (digits > most_digits) return false;

  uint64_t front = kZeros;  // the digits before the last eight of the whole part
  uint64_t whole = first_behind_zeros(text, std::min<int64_t>(digits, 8));
  if (digits > 8) {
    front = first_behind_zeros(text, digits - 8);
    whole = load_eight(point - 8);
  }
  const int64_t fraction_digits = end - point - 1;
  const uint64_t fraction = last_behind_zeros(end - 8, fraction_digits);
  if (!are_eight_digits(front) || !are_eight_digits(whole) || !are_eight_digits(fraction)) {
    return false;
  }
  const uint64_t count =
      (value_of_eight_digits(front) * uint64_t{100'000'000} + value_of_eight_digits(whole)) *
          kMoneyUnit +
      value_of_eight_digits(fraction) *
          power_of_ten(static_cast<int>(kMoneyScale - fraction_digits));
  amount = signed_money(count, negative);
  return true;
}

}  // namespace

MoneyResult<Money> parse_money(const char* text, int32_t length, const com_charattr* attributes) {
  if (Money plain; !charset::is_multibyte(attributes) && read_plain_money(text, length, plain))
    return money_done(plain);
  const auto* begin = reinterpret_cast<const uint8_t*>(text);
  const uint8_t* const end = begin + std::max(length, 0);
  const com_charattr& record = charset::record_or_builtin(attributes);
  if (charset::is_multibyte(&record)) [[unlikely]]
    return parse_with(Cursor<true>(record, begin, end));
  return parse_with(Cursor<false>(record, begin, end));
}

}  // namespace tvx::numeric
