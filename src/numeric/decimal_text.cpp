// A number is scanned first, to know where its digits stand and how many of them are taken; these
// are then gathered sixteen or so at a time.
#include "numeric/decimal_text.hpp"

#include <algorithm>
#include <cstring>

#include "numeric/eight_digits.hpp"
#include "numeric/integer_write.hpp"

namespace tvx::numeric {
namespace {

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool is_white_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

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

// Collects digits into a magnitude. They gather in one word, which holds nineteen.
class DigitGatherer {
public:
  void take(const char* at, const char* end) {
    for (; end - at >= 8; at += 8) append(value_of_eight_digits(load_eight(at)), 8);
    if (at == end) return;
    uint64_t rest = 0;
    const size_t count = static_cast<size_t>(end - at);
    for (; at != end; ++at) rest = rest * 10 + static_cast<uint64_t>(*at - '0');
    append(rest, count);
  }

  Uint256 magnitude() {
    flush();
    return magnitude_;
  }

private:
  void append(uint64_t value, size_t digits) {
    if (word_digits_ + digits > 19) flush();
    word_ = word_ * kPowersOfTen[digits] + value;
    word_digits_ += digits;
  }

  void flush() {
    uint64_t carry = word_;
    for (size_t i = 0; i < used_; ++i) {
      const Uint128 product =
          static_cast<Uint128>(magnitude_.limb[i]) * kPowersOfTen[word_digits_] + carry;
      magnitude_.limb[i] = static_cast<uint64_t>(product);
      carry = static_cast<uint64_t>(product >> 64);
    }
    if (carry != 0) magnitude_.limb[used_++] = carry;  // 77 digits fit
    word_ = 0;
    word_digits_ = 0;
  }

  Uint256 magnitude_{};
  size_t used_ = 0;  // words that are not zero, with those below them
  uint64_t word_ = 0;
  size_t word_digits_ = 0;
};

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

}  // namespace

DecimalStatus parse_decimal(std::string_view text, const DecimalTextRules& rules, Decimal& value) {
  const char* const end = text.data() + text.size();
  const Mantissa mantissa = scan_mantissa(text.data(), end);
  Exponent exponent{0, true};
  const char* const mark =
      std::find_if(mantissa.end, end, [](char c) { return c == 'e' || c == 'E'; });
  if (mark != end) exponent = read_exponent(mark + 1, std::find(mark, end, '\0'));
  if (!exponent.is_valid) return DecimalStatus::kInvalid;

  const bool scale_from_text = rules.scale == kFromText;
  const int64_t fraction_limit =
      scale_from_text ? mantissa.fraction.length() : rules.scale + exponent.value;
  const Selection chosen = select_digits(mantissa, rules.max_digits, fraction_limit);
  if (chosen.is_cut && !rules.rounding) return DecimalStatus::kDigitsDropped;
  // A digit dropped behind the point ends the reading; what follows is not looked at.
  const bool fraction_is_cut = chosen.fraction.end != mantissa.fraction.end;
  if (!fraction_is_cut && mantissa.end != mark && !std::all_of(mantissa.end, end, is_white_space))
    return DecimalStatus::kInvalid;

  DigitGatherer gatherer;
  gatherer.take(chosen.whole.begin, chosen.whole.end);
  gatherer.take(chosen.fraction.begin, chosen.fraction.end);
  value.magnitude = gatherer.magnitude();

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

// ---- Writing -----------------------------------------------------------------------------------

namespace {

constexpr uint64_t kTenTo8 = 100'000'000;
constexpr uint64_t kZeroCharacters = 0x3030303030303030;

// Writes the nineteen digits of a value below 10^19 in front of `end`, and zeros before them up to
// three whole words.
void write_nineteen(char* end, uint64_t value) {
  const uint64_t upper = value / kTenTo8;
  const auto store = [=](int position, uint64_t eight) {
    store_eight(end - position, eight_digits_of(static_cast<uint32_t>(eight)) | kZeroCharacters);
  };
  store(24, upper / kTenTo8);
  store(16, upper % kTenTo8);
  store(8, value % kTenTo8);
}

}  // namespace

DecimalText::DecimalText(const Decimal& value) {
  char* const end = buffer_ + sizeof buffer_;
  // Copied by words: copying it as a whole would wait until its words are stored.
  Uint256 rest = make_uint256(upper_half(value.magnitude), lower_half(value.magnitude));
  char* at = end;
  while ((rest.limb[1] | rest.limb[2] | rest.limb[3]) != 0) {
    write_nineteen(at, divide(rest, kTenDivisors[19]));
    at -= 19;
  }
  const uint64_t top = rest.limb[0];
  const bool twenty = top >= kPowersOfTen[19];
  write_nineteen(at, twenty ? top - kPowersOfTen[19] : top);
  at[-20] = twenty ? '1' : '0';
  at -= top == 0 ? 0 : decimal_length(top);

  // A digit stands in front of the point.
  char* const point = end - value.scale;
  if (at >= point) {
    std::memset(point - 1, '0', static_cast<size_t>(at - (point - 1)));
    at = point - 1;
  }
  if (value.scale != 0) {
    // Integer digits move up by a byte, sixteen and then a few at a time, first to last.
    char* const start = at - 1;
    for (; point - at >= 16; at += 16) std::memmove(at - 1, at, 16);
    for (; at != point; ++at) at[-1] = *at;
    point[-1] = '.';
    at = start;
  }
  *(at - 1) = '-';
  start_ = at - (value.negative && !value.is_zero() ? 1 : 0);
}

}  // namespace tvx::numeric
