// A plain number is read in one pass, sixteen digits at a time. Any other is scanned first, to know
// where its digits stand and how many of them are taken; these are then gathered in the same way.
#include "numeric/decimal_text.hpp"

#include <algorithm>
#include <cstring>

#include "base/ascii.hpp"
#include "numeric/eight_digits.hpp"
#include "numeric/integer_write.hpp"
#include "numeric/sixteen_digits.hpp"

namespace tvx::numeric {
namespace {

using base::is_digit;
using base::is_space;

const char* skip_blanks(const char* at, const char* end) {
  while (at != end && *at == ' ') ++at;
  return at;
}

const char* skip_zeros(const char* at, const char* end) {
  while (at != end && *at == '0') ++at;
  return at;
}

const char* skip_digits(const char* at, const char* end) {
  while (end - at >= 8 && are_eight_digits(load_eight(at))) at += 8;
  while (at != end && is_digit(*at)) ++at;
  return at;
}

// ---- Reading -----------------------------------------------------------------------------------

// A run of digits without its leading zeros where they mean nothing.
struct DigitRun {
  const char* begin;
  const char* end;

  [[nodiscard]] int64_t length() const { return end - begin; }
};

struct Mantissa {
  bool negative;
  DigitRun whole;     // without leading zeros
  DigitRun fraction;  // all of it
  const char* end;
};

// Nothing but a second sign can be wrong before the end of the digits: that is found there.
Mantissa scan_mantissa(const char* at, const char* end) {
  Mantissa mantissa{};
  at = skip_blanks(at, end);
  if (at != end && (*at == '-' || *at == '+')) {
    mantissa.negative = *at == '-';
    at = skip_blanks(at + 1, end);
  }
  at = skip_zeros(at, end);
  mantissa.whole = {at, skip_digits(at, end)};
  at = mantissa.whole.end;
  mantissa.fraction = {at, at};
  if (at != end && *at == '.') {
    mantissa.fraction = {at + 1, skip_digits(at + 1, end)};
    at = mantissa.fraction.end;
  }
  mantissa.end = at;
  return mantissa;
}

struct Exponent {
  int64_t value;
  bool is_valid;
};

// Reads the exponent behind its letter. A value is not followed beyond 10^13: texts are
// shorter than that, so that no number of digits makes up for it.
Exponent read_exponent(const char* at, const char* end) {
  const bool negative = at != end && *at == '-';
  if (negative || (at != end && *at == '+')) ++at;
  const char* const first = at;
  int64_t value = 0;
  for (; at != end && is_digit(*at); ++at)
    if (value < 1'000'000'000'000) value = value * 10 + (*at - '0');
  const bool blanks_may_follow = at - first >= 2;
  const bool is_valid = at == end || (blanks_may_follow && skip_blanks(at, end) == end);
  return {negative ? -value : value, is_valid};
}

// A magnitude made of groups of digits, up to nineteen each, modulo 2^256.
class MagnitudeOfGroups {
public:
  explicit MagnitudeOfGroups(Uint256& magnitude) : magnitude_(magnitude) { magnitude = {}; }

  void append(uint64_t value, size_t digits) {
    const uint64_t factor = kPowersOfTen[digits];
    uint64_t carry = value;
    for (size_t i = 0; i < used_; ++i) {
      const Uint128 product = static_cast<Uint128>(magnitude_.limb[i]) * factor + carry;
      magnitude_.limb[i] = static_cast<uint64_t>(product);
      carry = static_cast<uint64_t>(product >> 64);
    }
    if (used_ < std::size(magnitude_.limb)) magnitude_.limb[used_++] = carry;
  }

  void take(const char* at, const char* end) {
    for (; end - at >= 8; at += 8) append(value_of_eight_digits(load_eight(at)), 8);
    if (at == end) return;
    uint64_t rest = 0;
    const size_t count = static_cast<size_t>(end - at);
    for (; at != end; ++at) rest = rest * 10 + static_cast<uint64_t>(*at - '0');
    append(rest, count);
  }

private:
  Uint256& magnitude_;
  size_t used_ = 0;  // words of the magnitude
};

// ---- Reading in short --------------------------------------------------------------------------

// The digits of a number from its first one other than zero on.
struct PlainDigits {
  int64_t digits;
  int64_t fraction;  // digits behind the point, with zeros in front of the first
};

// Takes digits sixteen at a time, each but once: where the point is among them, the others close
// up. False when anything else is met.
bool take_digits(std::string_view text, const char* at, Uint256& magnitude, PlainDigits& taken) {
  const char* const end = text.data() + text.size();
  const char* point = nullptr;
  at = skip_zeros(at, end);
  if (at != end && *at == '.') {
    point = at;
    at = skip_zeros(at + 1, end);
  }
  const char* first = at;
  MagnitudeOfGroups groups(magnitude);
  for (; end - at > 16; at += 16) {
    auto group = SixteenDigits::load(at);
    if (!group.are_digits()) {
      const size_t in_front = group.leading_digits();
      if (point != nullptr || at[in_front] != '.') return false;
      point = at + in_front;
      group = group.joined(SixteenDigits::load(++at), 16 - in_front);
      ++first;
      if (!group.are_digits()) return false;
    }
    groups.append(group.value(), 16);
  }
  // The rest stands at the end of the last sixteen characters.
  auto left = static_cast<size_t>(end - at);
  const auto last = load_last_sixteen(text);
  auto group = last.last(left);
  if (!group.are_digits()) {
    const size_t behind = 15 - group.leading_digits();
    const char* const other = end - 1 - behind;
    if (point != nullptr || *other != '.') return false;
    point = other;
    group = last.moved_back().joined(last, behind).last(--left);
    ++first;
    if (!group.are_digits()) return false;
  }
  groups.append(group.value(), left);
  taken = {end - first, point == nullptr ? 0 : end - point - 1};
  return true;
}

// Reads what nearly every text is: a sign, digits, a point and digits, all of which are taken, and
// white space. False, with the value unspecified, for any other text and for a number that does not
// fit: those are left to the long way.
bool read_plain_decimal(std::string_view text, const DecimalTextRules& rules, Decimal& value) {
  const char* end = text.data() + text.size();
  const char* at = skip_blanks(text.data(), end);
  while (at != end && is_space(end[-1])) --end;
  if (at == end) return false;
  const bool negative = *at == '-';
  at += negative || *at == '+' ? 1 : 0;  // no branch: signs come at random

  PlainDigits taken;
  if (!take_digits({text.data(), end}, at, value.magnitude, taken)) return false;
  const auto [digits, fraction] = taken;

  const int64_t scale = rules.scale == kFromText ? fraction : rules.scale;
  const int64_t shift = scale - fraction;
  if (digits > rules.max_digits || shift < 0 || scale > kMaxScale) return false;
  int64_t precision = digits == 0 ? 0 : digits + shift;
  int32_t limit = rules.precision;
  if (rules.precision == kFromText) {
    precision = precision > scale ? precision : std::min<int64_t>(scale + 1, kMaxPrecision);
    limit = kMaxPrecision;
  }
  if (precision > limit || limit > kMaxPrecision) return false;

  if (shift != 0) multiply_by_ten_to(value.magnitude, static_cast<int32_t>(shift));
  value.negative = negative && digits != 0;
  value.scale = static_cast<int32_t>(scale);
  value.precision =
      rules.precision == kFromText ? static_cast<int32_t>(precision) : rules.precision;
  return true;
}

// ---- Reading at length -------------------------------------------------------------------------

// Which digits are taken, and what becomes of the first one that is not.
struct Selection {
  DigitRun whole;
  DigitRun fraction;
  int64_t dropped_whole;
  bool is_cut;     // not all digits are taken
  bool rounds_up;  // the first digit that is not taken is 5 or more
};

Selection select_digits(const Mantissa& mantissa, int64_t max_digits, int64_t fraction_limit) {
  Selection chosen{};
  const int64_t whole = std::min(mantissa.whole.length(), max_digits);
  chosen.whole = {mantissa.whole.begin, mantissa.whole.begin + whole};
  chosen.dropped_whole = mantissa.whole.length() - whole;

  const DigitRun& fraction = mantissa.fraction;
  int64_t room = max_digits - whole;
  // Zeros before the first other digit take no room.
  if (whole == 0 && fraction.length() > room)
    room += skip_zeros(fraction.begin, fraction.end) - fraction.begin;
  const int64_t taken = std::min({fraction.length(), std::max<int64_t>(fraction_limit, 0), room});
  chosen.fraction = {fraction.begin, fraction.begin + taken};

  const char* const first_left = chosen.dropped_whole != 0    ? chosen.whole.end
                                 : taken != fraction.length() ? chosen.fraction.end
                                                              : nullptr;
  chosen.is_cut = first_left != nullptr;
  chosen.rounds_up = first_left != nullptr && *first_left >= '5';
  return chosen;
}

// Multiplies the magnitude by 10^digits; below 0 it is cut off or rounded.
DecimalStatus fit_to_scale(Uint256& magnitude, int64_t digits, bool rounding) {
  const int32_t shift = static_cast<int32_t>(std::clamp<int64_t>(digits, -1000, 1000));
  if (shift >= 0 || !rounding) return shift_digits(magnitude, shift);
  drop_digits_rounding(magnitude, -shift);
  return DecimalStatus::kDone;
}

int32_t precision_from_text(int64_t digits_read, const Decimal& value) {
  const int32_t digits =
      std::max({1, static_cast<int32_t>(digits_read), decimal_digits(value.magnitude)});
  return digits > value.scale ? digits : std::min(value.scale + 1, kMaxPrecision);
}

[[gnu::noinline]] DecimalStatus parse_any_decimal(std::string_view text,
                                                  const DecimalTextRules& rules, Decimal& value) {
  const char* const end = text.data() + text.size();
  const Mantissa mantissa = scan_mantissa(text.data(), end);
  Exponent exponent{0, true};
  // An exponent is looked for up to a zero byte, and ends there.
  const char* const text_end = std::find(mantissa.end, end, '\0');
  const char* mark =
      std::find_if(mantissa.end, text_end, [](char c) { return c == 'e' || c == 'E'; });
  if (mark != text_end)
    exponent = read_exponent(mark + 1, text_end);
  else
    mark = end;
  if (!exponent.is_valid) return DecimalStatus::kInvalid;

  const bool scale_from_text = rules.scale == kFromText;
  const int64_t fraction_limit =
      scale_from_text ? mantissa.fraction.length() : rules.scale + exponent.value;
  const Selection chosen = select_digits(mantissa, rules.max_digits, fraction_limit);
  if (chosen.is_cut && !rules.rounding) return DecimalStatus::kDigitsDropped;
  // A digit dropped behind the point ends the reading; what follows is not looked at.
  const bool fraction_is_cut = chosen.fraction.end != mantissa.fraction.end;
  if (!fraction_is_cut && mantissa.end != mark && !std::all_of(mantissa.end, end, is_space))
    return DecimalStatus::kInvalid;

  MagnitudeOfGroups groups(value.magnitude);
  groups.take(chosen.whole.begin, chosen.whole.end);
  groups.take(chosen.fraction.begin, chosen.fraction.end);

  // The value is magnitude * 10^adjustment.
  const int64_t adjustment = exponent.value + chosen.dropped_whole - chosen.fraction.length();
  const int64_t scale = scale_from_text ? std::max<int64_t>(-adjustment, 0) : rules.scale;
  if (scale > kMaxScale) return DecimalStatus::kOverflow;
  value.scale = static_cast<int32_t>(scale);
  const int64_t shift = scale + adjustment;
  if (chosen.is_cut && shift > 0) return DecimalStatus::kOverflow;  // digits are missing in between
  // Where digits of the magnitude are dropped, those behind it do not decide.
  if (chosen.rounds_up && shift == 0) add(value.magnitude, make_uint256(1));
  const DecimalStatus status = fit_to_scale(value.magnitude, shift, rules.rounding);
  if (status != DecimalStatus::kDone) return status;

  value.negative = mantissa.negative && !value.is_zero();
  value.precision = rules.precision;
  if (rules.precision == kFromText) {
    const int64_t zeros =
        chosen.whole.length() != 0
            ? 0
            : skip_zeros(chosen.fraction.begin, chosen.fraction.end) - chosen.fraction.begin;
    value.precision =
        precision_from_text(chosen.whole.length() + chosen.fraction.length() - zeros, value);
  }
  return value.precision > kMaxPrecision || exceeds_precision(value.magnitude, value.precision)
             ? DecimalStatus::kOverflow
             : DecimalStatus::kDone;
}

}  // namespace

DecimalStatus parse_decimal(std::string_view text, const DecimalTextRules& rules, Decimal& value) {
  if (read_plain_decimal(text, rules, value)) [[likely]]
    return DecimalStatus::kDone;
  return parse_any_decimal(text, rules, value);
}

// ---- Writing -----------------------------------------------------------------------------------

namespace {

// Writes the nineteen digits of a value below 10^19 in front of `end`, and a zero before them.
void write_nineteen(char* end, uint64_t value) {
  constexpr uint64_t ten_to_16 = kPowersOfTen[16];
  const auto top = static_cast<uint32_t>(value / ten_to_16);
  store_four(end - 20, three_digits_of(top) | 0x30303030);
  SixteenDigits::of(value % ten_to_16).store(end - 16);
}

}  // namespace

DecimalText::DecimalText(const Decimal& value) : scale_(value.scale) {
  char* end = buffer_ + sizeof buffer_;
  // Copied by words: copying it as a whole would wait until its words are stored.
  Uint256 rest = make_uint256(upper_half(value.magnitude), lower_half(value.magnitude));
  digits_ = 0;
  for (; (rest.limb[1] | rest.limb[2] | rest.limb[3]) != 0; digits_ += 19, end -= 19)
    write_nineteen(end, divide(rest, kTenDivisors[19]));
  const uint64_t top = rest.limb[0];
  const bool twenty = top >= kPowersOfTen[19];
  write_nineteen(end, twenty ? top - kPowersOfTen[19] : top);
  if (twenty) end[-20] = '1';
  digits_ += top == 0 ? 0 : decimal_length(top);
  negative_ = value.negative && digits_ != 0;

  // A digit stands in front of the point.
  if (digits_ <= scale_) {
    end = buffer_ + sizeof buffer_ - digits_;
    std::memset(end - (scale_ + 1 - digits_), '0', static_cast<size_t>(scale_ + 1 - digits_));
    digits_ = scale_ + 1;
  }
}

void DecimalText::write_first(int32_t characters, char* out) const {
  char text[kMaxDecimalText];
  write(text);
  std::memcpy(out, text, static_cast<size_t>(characters));
}

}  // namespace tvx::numeric
