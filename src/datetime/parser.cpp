// The grammar, and the values made of what it reads.
#include "datetime/parser.hpp"

#include <algorithm>

#include "datetime/parts.hpp"
#include "datetime/reading_tables.hpp"
#include "datetime/values.hpp"

namespace tvx::datetime {

namespace {

// ---- The grammar -------------------------------------------------------------------------------

// Takes time and date out of a text and makes the parts of a value of them. Functions that return
// false have said by `fail` what is wrong.
class Parser {
public:
  Parser(const ReadingRules& rules, const Mode& mode) : rules_(rules), mode_(mode) {
    parts_.day = 1;
  }

  // The whole text. Flattened, so that what is left of the tokens stays in a register.
  [[nodiscard, gnu::flatten]] bool read(std::string_view text) {
    if (!tokenise(text, rules_.months, rules_.attributes, tokens_)) {
      return fail(ReadStatus::kBadToken);
    }
    return time() && (!mode_.takes_date || (iso_separator() && date())) &&
           (mode_.ignores_rest || nothing_left());
  }

  // What the text that was read says. Without a date `day` stays as it is.
  [[nodiscard]] bool ticks(int32_t& ticks) {
    return build_ticks(parts_, ticks) == Fault::kNone || fail(ReadStatus::kOutOfRange);
  }
  [[nodiscard]] bool microseconds(uint64_t& microseconds) {
    return build_big_time(parts_, microseconds) == Fault::kNone || fail(ReadStatus::kOutOfRange);
  }
  [[nodiscard]] bool day(int32_t& day) {
    const Fault fault = has_date_ ? build_day(parts_, day) : Fault::kNone;
    return fault == Fault::kNone || fail(static_cast<ReadStatus>(fault));
  }
  [[nodiscard]] bool lost_digits() const { return lost_digits_; }
  ReadStatus fault() const { return fault_; }

private:
  [[nodiscard]] bool fail(ReadStatus fault) {
    fault_ = fault;
    return false;
  }

  [[nodiscard]] bool nothing_left() { return !tokens_.any_left() || fail(ReadStatus::kLeftOver); }

  // Takes the number of one to three digits at a place, which is there if the text is right.
  [[nodiscard]] bool number(Place place, int32_t& value) {
    if (!tokens_.accept(place, Kind::kNumber)) return fail(ReadStatus::kBadToken);
    value = tokens_.value(place);
    return true;
  }
  [[nodiscard]] bool first_number(int32_t& value) {
    return number(tokens_.find(Kind::kNumber), value);
  }

  // ---- Time

  // hour ":" minute [":" second [":" millisecond | "." fraction]] ["AM" | "PM"], or an hour with
  // its marker alone. A colon or marker at the very start has no hour before it.
  [[nodiscard]] bool time() {
    const Place colon = tokens_.find(Kind::kColon);
    if (colon > kFirst) return clock(colon);
    const Place marker = tokens_.find_behind_first(Kind::kMarker);
    return marker == kNowhere || (number(before(marker), parts_.hour) && day_half(marker));
  }

  [[nodiscard]] bool clock(Place colon) {
    if (!number(before(colon), parts_.hour)) return false;
    tokens_.use_up(colon);
    if (!number(behind(colon), parts_.minute)) return false;
    Place next = behind(behind(colon));
    if (tokens_.accept(next, Kind::kColon)) {
      if (!number(behind(next), parts_.second)) return false;
      next = behind(behind(next));
      const bool counts_milliseconds = tokens_.accept(next, Kind::kColon);
      if (counts_milliseconds || tokens_.accept(next, Kind::kPoint)) {
        const Place fine = behind(next);
        if (!(counts_milliseconds ? number(fine, parts_.millisecond) : fraction(fine)))
          return false;
        next = behind(fine);
      }
    }
    return !tokens_.is(next, Kind::kMarker) || day_half(next);
  }

  [[nodiscard]] bool fraction(Place place) {
    if (!tokens_.is_number(place)) return fail(ReadStatus::kBadToken);
    tokens_.use_up(place);
    const auto digits = static_cast<size_t>(tokens_.digits(place));
    parts_.fraction = tokens_.value(place) * kLastPlace[digits];
    if (mode_.keeps_microseconds) {
      parts_.fraction_units = kMicrosecondsPerSecond;
      return true;
    }
    const int32_t milliseconds = parts_.fraction / 1000;
    const int32_t rest = parts_.fraction % 1000;
    const int32_t rounded = milliseconds + (rest >= 500 ? 1 : 0);
    lost_digits_ = rest != 0;
    parts_.millisecond = std::min(rounded, 999);
    return rounded <= 1000 || fail(ReadStatus::kBadToken);
  }

  [[nodiscard]] bool day_half(Place marker) {
    tokens_.use_up(marker);
    const DayHalf& half = kDayHalves[tokens_.value(marker)];
    int32_t& hour = parts_.hour;
    if (hour < half.first_hour || hour > half.last_hour) return fail(ReadStatus::kMarker);
    if (hour <= 12) hour = hour % 12 + half.twelve;
    return true;
  }

  // ---- Date

  // A "T" stands before the time and before nothing else.
  [[nodiscard]] bool iso_separator() {
    const Place separator = tokens_.find(Kind::kIsoSeparator);
    if (separator == kNowhere) return true;
    tokens_.use_up(separator);
    const bool time_follows = !tokens_.is_last(separator) && !tokens_.any_left_behind(separator);
    return time_follows || fail(ReadStatus::kBadToken);
  }

  // The first form of a date that the tokens left allow. A text without any is a time.
  [[nodiscard]] bool date() {
    has_date_ = true;
    const Place month = tokens_.find(Kind::kMonth);
    if (month != kNowhere) return named_month(month);
    const Place separator = tokens_.find_behind_first(Kind::kSeparator);
    if (separator != kNowhere) return numeric(separator);
    const Place digits = tokens_.find(Kind::kPacked);
    if (digits != kNowhere) return packed(digits);
    has_date_ = long_year() != kNowhere;
    return nothing_left();
  }

  // A month, a day and a year in any order; a year of four digits does without the day. A comma may
  // follow month and day. A separator before the month allows for one behind it.
  [[nodiscard]] bool named_month(Place month) {
    tokens_.use_up(month);
    parts_.month = tokens_.value(month);
    const bool separated = tokens_.accept(before(month), Kind::kSeparator);
    if (!separated || !tokens_.accept(behind(month), Kind::kSeparator)) {
      tokens_.accept(behind(month), Kind::kComma);
    }
    const bool has_year = long_year() != kNowhere;
    const Place day = tokens_.find(Kind::kNumber);
    if (has_year && day == kNowhere) return true;
    if (!number(day, parts_.day)) return false;
    tokens_.accept(behind(day), Kind::kComma);
    return has_year || short_year();
  }

  // Numbers and two separators. The numbers count in their order, wherever they stand.
  [[nodiscard]] bool numeric(Place separator) {
    tokens_.use_up(separator);
    const Place second = tokens_.find_behind_first(Kind::kSeparator);
    const CodeRule* const rule = code_rule();
    if (second == kNowhere || rule == nullptr) return fail(ReadStatus::kBadToken);
    tokens_.use_up(second);

    const bool sought = rule->year != LongYear::kNotSought;
    const Place year = sought ? long_year() : kNowhere;
    if (rule->year == LongYear::kRequired && year == kNowhere) {
      return fail(ReadStatus::kBadToken);
    }
    int32_t order = rule->order;
    if (order == kGivenOrder) {
      order = year == kFirst && rules_.order != kYearDayMonth ? kYearMonthDay : rules_.order;
    }
    for (const Part part : kSequences[static_cast<size_t>(order)]) {
      if (!numeric_part(part, year != kNowhere)) return false;
    }
    return true;
  }

  // Null for a code under which no numeric date is read.
  [[nodiscard]] const CodeRule* code_rule() const {
    for (const CodeRule& rule : kCodeRules) {
      if (rule.code == rules_.format_code) return &rule;
    }
    return nullptr;
  }

  [[nodiscard]] bool numeric_part(Part part, bool has_year) {
    switch (part) {
      case Part::kMonth:
        if (!first_number(parts_.month)) return false;
        --parts_.month;
        return true;
      case Part::kDay:
        return first_number(parts_.day);
      default:
        return has_year || short_year();
    }
  }

  // YYMMDD or YYYYMMDD.
  [[nodiscard]] bool packed(Place place) {
    constexpr int32_t short_digits = 6;
    tokens_.use_up(place);
    const int32_t date = tokens_.value(place);
    const int32_t year = date / 10'000;
    parts_.year = tokens_.digits(place) == short_digits ? full_year(year) : year;
    parts_.month = date / 100 % 100 - 1;
    parts_.day = date % 100;
    return true;
  }

  // Takes the first year of four digits and returns its place, kNowhere without one.
  Place long_year() {
    const Place place = tokens_.find(Kind::kYear);
    if (place == kNowhere) return kNowhere;
    tokens_.use_up(place);
    parts_.year = tokens_.value(place);
    return place;
  }

  [[nodiscard]] bool short_year() {
    int32_t year;
    if (!first_number(year)) return false;
    parts_.year = full_year(year);
    return year <= kLastShortYear || fail(ReadStatus::kOutOfRange);
  }

  const ReadingRules& rules_;
  const Mode& mode_;
  Tokens tokens_;
  comn_dateparts parts_{};  // January, without a date
  bool has_date_ = false;
  bool lost_digits_ = false;
  ReadStatus fault_ = ReadStatus::kRead;
};

// What a text says, as far as the mode asks for it.
struct DayAndTicks {
  int32_t day = 0;  // 1900-01-01 without a date
  int32_t ticks = 0;
  bool lost_digits = false;
};

ReadStatus read(std::string_view text, const ReadingRules& rules, const Mode& mode,
                DayAndTicks& said) {
  Parser parser(rules, mode);
  const bool done = parser.read(text) && parser.ticks(said.ticks) && parser.day(said.day);
  said.lost_digits = parser.lost_digits();
  return done ? ReadStatus::kRead : parser.fault();
}

struct DayAndMicroseconds {
  int32_t day = kFirstDay;  // 0001-01-01 without a date
  uint64_t microseconds = 0;
};

ReadStatus read(std::string_view text, const ReadingRules& rules, const Mode& mode,
                DayAndMicroseconds& said) {
  Parser parser(rules, mode);
  const bool done =
      parser.read(text) && parser.microseconds(said.microseconds) && parser.day(said.day);
  return done ? ReadStatus::kRead : parser.fault();
}

}  // namespace

// ---- The values --------------------------------------------------------------------------------

ReadStatus read_datetime(std::string_view text, const ReadingRules& rules, comn_datetime& value,
                         bool& lost_digits) {
  DayAndTicks said;
  const ReadStatus status = read(text, rules, kDatetime, said);
  lost_digits = said.lost_digits;
  if (status != ReadStatus::kRead) return status;
  if (!is_datetime_day(said.day)) return ReadStatus::kOutOfRange;
  value = {said.day, static_cast<uint32_t>(said.ticks)};
  return status;
}

ReadStatus read_datetime4(std::string_view text, const ReadingRules& rules, comn_datetime4& value) {
  comn_datetime datetime{};
  bool lost_digits;
  const ReadStatus status = read_datetime(text, rules, datetime, lost_digits);
  if (status != ReadStatus::kRead) return status;
  return datetime_to_date4(datetime, value) == Status::kDone ? status : ReadStatus::kOutOfRange;
}

ReadStatus read_time_only(std::string_view text, const ReadingRules& rules, comn_datetime& value) {
  DayAndTicks said;
  const ReadStatus status = read(text, rules, kTimeOnly, said);
  if (status == ReadStatus::kRead) value = {said.day, static_cast<uint32_t>(said.ticks)};
  return status;
}

ReadStatus read_date(std::string_view text, const ReadingRules& rules, int32_t& day) {
  DayAndTicks said;
  const ReadStatus status = read(text, rules, kDate, said);
  if (status == ReadStatus::kRead) day = said.day;
  return status;
}

ReadStatus read_time(std::string_view text, const ReadingRules& rules, int32_t& ticks,
                     bool& lost_digits) {
  DayAndTicks said;
  const ReadStatus status = read(text, rules, kTime, said);
  lost_digits = said.lost_digits;
  if (status == ReadStatus::kRead) ticks = said.ticks;
  return status;
}

// The years of a date are those of the type, so that its value is in range.
ReadStatus read_bigdatetime(std::string_view text, const ReadingRules& rules,
                            uint64_t& bigdatetime) {
  DayAndMicroseconds said;
  const ReadStatus status = read(text, rules, kBigdatetime, said);
  if (status == ReadStatus::kRead) bigdatetime = big_of_day(said.day) + said.microseconds;
  return status;
}

ReadStatus read_bigtime(std::string_view text, const ReadingRules& rules, uint64_t& bigtime) {
  DayAndMicroseconds said;
  const ReadStatus status = read(text, rules, kBigtime, said);
  if (status == ReadStatus::kRead) bigtime = said.microseconds;
  return status;
}

}  // namespace tvx::datetime
