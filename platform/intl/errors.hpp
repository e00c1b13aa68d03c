// The library's error numbers. A number is -(kind + 256 * line): the kind is 1 to 255 and the line
// is that of the localisation file, or 0 when the error belongs to no line. So the low eight bits
// of a number with its sign dropped still name the kind, which is all that a message number of the
// stack has room for. Numbers are kept in messages and logs: a kind never changes its number, and a
// number given up is not used again.
#pragma once

#include <algorithm>
#include <cstdint>

namespace tvx::intl {

// clang-format off
#define TVX_INTL_ERRORS(X)                                                                      \
  X(kNoMemory,           1, "out of memory")                                                    \
  X(kBadArgument,        2, "an argument is null or outside its range")                         \
  X(kBufferTooSmall,     3, "the buffer is too small")                                          \
  X(kNoHome,             4, "no home directory; set the environment variable TARVEX")           \
  X(kBadTemplate,        5, "a percent sign of the message template begins no place-holder")    \
  X(kNoSuchArgument,     6, "a place-holder of the message template names no argument")         \
  X(kBadFormat,          7, "the format of the message arguments is malformed")                 \
  X(kNotFormatted,       8, "the text cannot be formatted")                                     \
  X(kNoUsers,            9, "users cannot be looked up; set the environment variable TARVEX")   \
  X(kNotFound,          16, "the file does not exist")                                          \
  X(kNotPermitted,      17, "the file may not be read")                                         \
  X(kNotOpened,         18, "the file cannot be opened")                                        \
  X(kNotRegular,        19, "not a regular file")                                               \
  X(kTooLarge,          20, "the file is larger than 256 MiB")                                   \
  X(kReadFailed,        21, "reading the file failed")                                          \
  X(kCloseFailed,       22, "closing the file failed")                                          \
  X(kNotOpen,           23, "the reader is not open")                                           \
  X(kControlByte,       32, "a control character; is this a text file?")                        \
  X(kBracketMissing,    33, "closing bracket of the section name missing")                      \
  X(kNameMissing,       34, "section name missing")                                             \
  X(kTextAfterHeader,   35, "text after a section name")                                        \
  X(kOutsideSection,    36, "an entry before the first section")                                \
  X(kEqualsMissing,     37, "equals sign missing after a key")                                  \
  X(kKeyMissing,        38, "key missing before the equals sign")                               \
  X(kBadKey,            39, "a line begins with a comma, a quote or 0x but continues no value") \
  X(kQuoteMissing,      40, "closing quote missing")                                            \
  X(kQuoteInText,       41, "a quote inside unquoted text; quote the whole value")              \
  X(kCommaMissing,      42, "text after a quoted text or bytes; is a comma missing?")           \
  X(kBadHexadecimal,    43, "0x needs an even number of hexadecimal digits; quote a text")      \
  X(kListUnfinished,    44, "a comma after the last value")                                     \
  X(kUnknownKey,        64, "unknown key in the datetime section")                              \
  X(kKeyTwice,          65, "a key of the datetime section occurs twice")                       \
  X(kTooFewValues,      66, "too few values")                                                   \
  X(kTooManyValues,     67, "too many values")                                                  \
  X(kTextEmpty,         68, "an empty name")                                                    \
  X(kTextTooLong,       69, "a text is too long")                                               \
  X(kBadFirstDay,       70, "first_day is not 1 to 7")                                          \
  X(kBadTwelveHour,     71, "twelve_hour is not 0, 1, no or yes")                               \
  X(kNoMonths,          72, "the datetime section has no months")                               \
  X(kNoShortMonths,     73, "the datetime section has no short_months")                         \
  X(kNoDays,            74, "the datetime section has no days")                                 \
  X(kNoFirstDay,        75, "the datetime section has no first_day")                            \
  X(kNoDateOrder,       76, "the datetime section has no date_order")                           \
  X(kNoTwelveHour,      77, "the datetime section has no twelve_hour")                           \
  X(kZeroInText,        78, "a zero byte in a text")
// clang-format on

#define TVX_INTL_ENUMERATOR(name, number, text) name = number,
enum class ErrorKind : int32_t { TVX_INTL_ERRORS(TVX_INTL_ENUMERATOR) };
#undef TVX_INTL_ENUMERATOR

// The last line that fits a number: 255 + 256 * 8388607 is the greatest 32-bit integer. It stands
// for later ones too.
inline constexpr int32_t kLastLine = 8388607;

constexpr int32_t error_number(ErrorKind kind, int32_t line = 0) {
  return -(static_cast<int32_t>(kind) + 256 * std::min(line, kLastLine));
}

}  // namespace tvx::intl
