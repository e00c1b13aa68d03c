// Dates and times read from text: one grammar for all six types.
//
// A text is split into tokens (lexer.hpp). The grammar takes the time out of them first, wherever
// it stands, then the date, and what is then left decides whether the text was one. Which order the
// numbers of a date have is a matter of the rules it is read under: of the date format code, and of
// the date order where the code leaves it open.
#pragma once

#include <cstdint>
#include <string_view>

#include "datetime/date_order.hpp"
#include "datetime/lexer.hpp"
#include "tvxcomn/datatypes.h"

namespace tvx::datetime {

struct ReadingRules {
  int32_t format_code;
  int32_t order;  // as numbered in date_order.hpp
  MonthNames months;
  const com_charattr* attributes;  // null: the built-in ones
};

// A text that is no date has a negative status, one whose date is out of range a positive one.
enum class [[nodiscard]] ReadStatus : int32_t{
    kRead = 0,
    kBadToken = -1,   // or a missing one
    kLeftOver = -2,   // tokens that are part of neither date nor time
    kOutOfRange = 1,  // a year of fewer than four digits, the time, or the value
    kMonth = 2,      kDay = 3,
    kMarker = 9,  // "AM" or "PM" with an hour that has none
};

// The readers store a value with kRead only. A fraction that the type is too coarse for is rounded
// to milliseconds, but never up to the next second, and `lost_digits` tells of it.

// Date and time; on 1900-01-01 where the text has a time only. From 1753-01-01 on.
ReadStatus read_datetime(std::string_view text, const ReadingRules& rules, comn_datetime& value,
                         bool& lost_digits);

// As datetime, rounded to minutes.
ReadStatus read_datetime4(std::string_view text, const ReadingRules& rules, comn_datetime4& value);

// A time and nothing else, on 1900-01-01.
ReadStatus read_time_only(std::string_view text, const ReadingRules& rules, comn_datetime& value);

// The day number of a date. What else the text has is ignored, except that a time has to be legal.
ReadStatus read_date(std::string_view text, const ReadingRules& rules, int32_t& day);

// The ticks of a time. What else the text has is ignored.
ReadStatus read_time(std::string_view text, const ReadingRules& rules, int32_t& ticks,
                     bool& lost_digits);

// Date and time to the microsecond; on 0001-01-01 where the text has a time only.
ReadStatus read_bigdatetime(std::string_view text, const ReadingRules& rules,
                            uint64_t& bigdatetime);

// As time, to the microsecond.
ReadStatus read_bigtime(std::string_view text, const ReadingRules& rules, uint64_t& bigtime);

}  // namespace tvx::datetime
