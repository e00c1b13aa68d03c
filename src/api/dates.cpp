// Exported functions of dates.h.
#include "tvxcomn/dates.h"

#include <cstddef>
#include <cstring>

#include "api/dates_served.hpp"
#include "api/exports.hpp"
#include "datetime/date_parts.hpp"
#include "datetime/names.hpp"

using namespace tvx::convert;
namespace dt = tvx::datetime;
namespace rt = tvx::runtime;

namespace {

// Checks take the line of the exported function.

// ---- Cracking ----------------------------------------------------------------------------------

void crack_date(const void* datetime, comn_dateparts& parts) {
  dt::crack_day(tvx::base::load<comn_datetime>(datetime).days, parts);
}

void crack_time(const void* datetime, comn_dateparts& parts) {
  dt::crack_ticks(tvx::base::load<comn_datetime>(datetime).ticks, parts);
}

void crack_big_date(const void* bigdatetime, comn_dateparts& parts) {
  dt::crack_big_date(tvx::base::load<uint64_t>(bigdatetime), parts);
}

void crack_big_time(const void* big, comn_dateparts& parts) {
  dt::crack_big_time(tvx::base::load<uint64_t>(big), parts);
}

using Crack = void(const void*, comn_dateparts&);

template <Crack& crack>
void crack_into(const void* value, comn_dateparts* parts, int32_t line = __builtin_LINE()) {
  rt::require_pointers({value, parts}, __FILE__, line);
  crack(value, *parts);
}

// The older record ends before the fraction.
template <Crack& crack>
void crack_into_older(const void* value, comn_dateparts* parts, int32_t line = __builtin_LINE()) {
  constexpr size_t older_size = offsetof(comn_dateparts, fraction);
  rt::require_pointers({value, parts}, __FILE__, line);
  comn_dateparts whole{};
  std::memcpy(&whole, parts, older_size);
  crack(value, whole);
  std::memcpy(parts, &whole, older_size);
}

template <Crack& date, Crack& time>
comn_dateparts crack_fully(const void* value, int32_t line = __builtin_LINE()) {
  rt::require_pointer(value, __FILE__, line);
  comn_dateparts parts{};
  date(value, parts);
  time(value, parts);
  return parts;
}

// ---- Parts -------------------------------------------------------------------------------------

int32_t value_of(int32_t part, const comn_dateparts& parts, int32_t first_day,
                 int32_t line = __builtin_LINE()) {
  rt::require(dt::is_part(part), __FILE__, line);
  return dt::part_value(part, parts, first_day);
}

int32_t text_of(int32_t part, const comn_dateparts& parts, char* buffer, const char* const* months,
                const char* const* weekdays, int32_t line = __builtin_LINE()) {
  rt::require_pointer(buffer, __FILE__, line);
  return dt::write_part(part, parts, buffer, months, weekdays);
}

// ---- Values ------------------------------------------------------------------------------------

// 0 for a value in its range.
int32_t range_result(bool is_in_range) {
  return is_in_range ? 0 : 1;
}

template <class Value>
Value take(const Value* value, int32_t line = __builtin_LINE()) {
  rt::require_pointer(value, __FILE__, line);
  return tvx::base::load<Value>(value);
}

template <class Value>
int32_t sign_of_difference(Value a, Value b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

// By the words of two records of two words, the first one before the second.
template <class First, class Second>
int32_t compare(First first_a, First first_b, Second second_a, Second second_b) {
  return first_a != first_b ? sign_of_difference(first_a, first_b)
                            : sign_of_difference(second_a, second_b);
}

template <class Value>
int32_t compare(const Value* a, const Value* b, int32_t line = __builtin_LINE()) {
  return sign_of_difference(take(a, line), take(b, line));
}

// By the rule of a pair. A refused value stays out of the destination, unless the rule says what
// goes there.
template <class Source, class Destination>
dt::Status convert(const DateValue<Source>* source, DateValue<Destination>* destination,
                   int32_t line = __builtin_LINE()) {
  rt::require_pointers({source, destination}, __FILE__, line);
  int32_t length = 0;
  return convert_date<Source, Destination>(source, destination, length);
}

}  // namespace

extern "C" {

void com__datecrack(const void* datetime, comn_dateparts* parts) {
  crack_into<crack_date>(datetime, parts);
}
void com__timecrack(const void* datetime, comn_dateparts* parts) {
  crack_into<crack_time>(datetime, parts);
}
void com__bigdatecrack(const void* bigdatetime, comn_dateparts* parts) {
  crack_into<crack_big_date>(bigdatetime, parts);
}
void com__bigtimecrack(const void* big, comn_dateparts* parts) {
  crack_into<crack_big_time>(big, parts);
}
void com_datecrack(const void* datetime, comn_dateparts* parts) {
  crack_into_older<crack_date>(datetime, parts);
}
void com_timecrack(const void* datetime, comn_dateparts* parts) {
  crack_into_older<crack_time>(datetime, parts);
}
void com_bigdatecrack(const void* bigdatetime, comn_dateparts* parts) {
  crack_into<crack_big_date>(bigdatetime, parts);
}
void com_bigtimecrack(const void* big, comn_dateparts* parts) {
  crack_into<crack_big_time>(big, parts);
}

int32_t com__datepart(int32_t part, const comn_datetime* datetime, int32_t first_day) {
  return value_of(part, crack_fully<crack_date, crack_time>(datetime), first_day);
}
int32_t com_datepart(int32_t part, const comn_datetime* datetime, int32_t first_day) {
  return com__datepart(part, datetime, first_day);
}
int32_t com__bigdatepart(int32_t part, const uint64_t* bigdatetime, int32_t first_day) {
  return value_of(part, crack_fully<crack_big_date, crack_big_time>(bigdatetime), first_day);
}

int32_t com__datename(int32_t part, const comn_datetime* datetime, char* buffer,
                      const char* const* months, const char* const* weekdays) {
  return text_of(part, crack_fully<crack_date, crack_time>(datetime), buffer, months, weekdays);
}
int32_t com_datename(int32_t part, const comn_datetime* datetime, char* buffer,
                     const char* const* months, const char* const* weekdays) {
  return com__datename(part, datetime, buffer, months, weekdays);
}
int32_t com__bigdatename(int32_t part, const uint64_t* bigdatetime, char* buffer,
                         const char* const* months, const char* const* weekdays) {
  return text_of(part, crack_fully<crack_big_date, crack_big_time>(bigdatetime), buffer, months,
                 weekdays);
}

const char* const* com__get_months(void) {
  return dt::kMonths;
}
const char* const* com__get_shortmonths(void) {
  return dt::kShortMonths;
}
const char* const* com__get_weekdays(void) {
  return dt::kWeekdays;
}

int32_t com__datetime_check_range(const comn_datetime* datetime) {
  return range_result(dt::is_datetime_day(take(datetime).days));
}
int32_t com__datea_check_range(const int32_t* date) {
  return range_result(dt::is_date(take(date)));
}
int32_t com__timea_check_range(const int32_t* time) {
  return range_result(dt::is_time(take(time)));
}

int32_t com__datecmp(const comn_datetime* a, const comn_datetime* b) {
  const comn_datetime left = take(a), right = take(b);
  return static_cast<int32_t>(left.days != right.days ? static_cast<uint32_t>(left.days) -
                                                            static_cast<uint32_t>(right.days)
                                                      : left.ticks - right.ticks);
}
int32_t com_datecmp(const comn_datetime* a, const comn_datetime* b) {
  const comn_datetime left = take(a), right = take(b);
  return compare(left.days, right.days, left.ticks, right.ticks);
}
int32_t com_date4cmp(const comn_datetime4* a, const comn_datetime4* b) {
  const comn_datetime4 left = take(a), right = take(b);
  return compare(left.days, right.days, left.minutes, right.minutes);
}
int32_t com_dateacmp(const int32_t* a, const int32_t* b) {
  return compare(a, b);
}
int32_t com_timeacmp(const int32_t* a, const int32_t* b) {
  return compare(a, b);
}
int32_t com_bigdatetimecmp(const uint64_t* a, const uint64_t* b) {
  return compare(a, b);
}

void com_datezero(comn_datetime* datetime) {
  com_setdatetime(datetime, 0, 0);
}
void com_date4zero(comn_datetime4* datetime4) {
  rt::require_pointer(datetime4);
  tvx::base::store(datetime4, comn_datetime4{});
}
void com_setdatetime(comn_datetime* datetime, int32_t days, uint32_t ticks) {
  rt::require_pointer(datetime);
  tvx::base::store(datetime, comn_datetime{days, ticks});
}

void com__date4todt(const comn_datetime4* datetime4, comn_datetime* datetime) {
  static_cast<void>(convert<type::date4, type::datetime>(datetime4, datetime));
}
void com__datetodatea(const comn_datetime* datetime, int32_t* date) {
  static_cast<void>(convert<type::datetime, type::datea>(datetime, date));
}
void com__datetotimea(const comn_datetime* datetime, int32_t* time) {
  static_cast<void>(convert<type::datetime, type::timea>(datetime, time));
}
int32_t com__dateatodate(const int32_t* date, comn_datetime* datetime) {
  return range_result(dt::is_delivered(convert<type::datea, type::datetime>(date, datetime)));
}
int32_t com__timeatodate(const int32_t* time, comn_datetime* datetime) {
  return range_result(dt::is_delivered(convert<type::timea, type::datetime>(time, datetime)));
}
int32_t com__bigdatetimetodate(const uint64_t* bigdatetime, comn_datetime* datetime) {
  const auto status = convert<type::bigdatetime, type::datetime>(bigdatetime, datetime);
  return rt::traced(static_cast<int32_t>(status));
}
int32_t com__bigtimetodate(const uint64_t* bigtime, comn_datetime* datetime) {
  const auto status = convert<type::bigtime, type::datetime>(bigtime, datetime);
  return rt::traced(static_cast<int32_t>(status));
}

}  // extern "C"

// ---- Conversions -------------------------------------------------------------------------------

#define CONVERSION(S, D, name) TVX_EXPORT_CONVERSION(comn_##name, date_routine<type::S, type::D>)
#define BARE(S, D, name) TVX_EXPORT_BARE(comnb_##name, bare_date_routine<type::S, type::D>)
#define TO_BINARY(S, name)                                              \
  TVX_EXPORT_CONVERSION(comn_##name##tobin, fixed_type_to_bin<type::S>) \
  TVX_EXPORT_CONVERSION(comn_##name##tovarbin, fixed_type_to_varbin<type::S>)

TVX_DATE_PAIRS(CONVERSION)
TVX_DATE_PAIRS(BARE)
TVX_BIG_DATE_PAIRS(BARE)
TVX_DATE_TYPES(TO_BINARY)
