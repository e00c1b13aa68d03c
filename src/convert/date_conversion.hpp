// Conversions among the six date and time types, in both layers. Each pair has a rule, a function
// from value to value; one body a layer serves all pairs.
#pragma once

#include "base/bytes.hpp"
#include "convert/arguments.hpp"
#include "convert/date_types.hpp"
#include "datetime/values.hpp"

namespace tvx::convert {

// ---- The rule of a pair ------------------------------------------------------------------------

template <class Type>
using DateValue = typename Type::Value;

template <class Source, class Destination>
using DateFunction = datetime::Status(const DateValue<Source>&, DateValue<Destination>&);

// Every value to its own type.
template <class Type>
constexpr datetime::Status copy_date(const DateValue<Type>& source, DateValue<Type>& destination) {
  destination = source;
  return datetime::Status::kDone;
}

// A pair without a specialisation has no conversion.
template <class Source, class Destination>
inline constexpr DateFunction<Source, Destination>* date_rule = nullptr;

template <class Type>
inline constexpr DateFunction<Type, Type>* date_rule<Type, Type> = copy_date<Type>;

template <>
inline constexpr auto* date_rule<type::datetime, type::date4> = datetime::datetime_to_date4;
template <>
inline constexpr auto* date_rule<type::datetime, type::datea> = datetime::datetime_to_date;
template <>
inline constexpr auto* date_rule<type::datetime, type::timea> = datetime::datetime_to_time;
template <>
inline constexpr auto* date_rule<type::datetime, type::bigdatetime> =
    datetime::datetime_to_bigdatetime;
template <>
inline constexpr auto* date_rule<type::datetime, type::bigtime> = datetime::datetime_to_bigtime;

template <>
inline constexpr auto* date_rule<type::date4, type::datetime> = datetime::date4_to_datetime;
template <>
inline constexpr auto* date_rule<type::date4, type::bigdatetime> = datetime::date4_to_bigdatetime;
template <>
inline constexpr auto* date_rule<type::date4, type::bigtime> = datetime::date4_to_bigtime;

template <>
inline constexpr auto* date_rule<type::datea, type::datetime> = datetime::date_to_datetime;
template <>
inline constexpr auto* date_rule<type::datea, type::bigdatetime> = datetime::date_to_bigdatetime;

template <>
inline constexpr auto* date_rule<type::timea, type::datetime> = datetime::time_to_datetime;
template <>
inline constexpr auto* date_rule<type::timea, type::bigdatetime> = datetime::time_to_bigdatetime;
template <>
inline constexpr auto* date_rule<type::timea, type::bigtime> = datetime::time_to_bigtime;

template <>
inline constexpr auto* date_rule<type::bigdatetime, type::datetime> =
    datetime::bigdatetime_to_datetime;
template <>
inline constexpr auto* date_rule<type::bigdatetime, type::date4> = datetime::bigdatetime_to_date4;
template <>
inline constexpr auto* date_rule<type::bigdatetime, type::datea> = datetime::bigdatetime_to_date;
template <>
inline constexpr auto* date_rule<type::bigdatetime, type::timea> = datetime::big_to_time;
template <>
inline constexpr auto* date_rule<type::bigdatetime, type::bigtime> =
    datetime::bigdatetime_to_bigtime;

template <>
inline constexpr auto* date_rule<type::bigtime, type::datetime> = datetime::bigtime_to_datetime;
template <>
inline constexpr auto* date_rule<type::bigtime, type::timea> = datetime::big_to_time;
template <>
inline constexpr auto* date_rule<type::bigtime, type::bigdatetime> =
    datetime::bigtime_to_bigdatetime;

// The pairs that lead through datetime. Digits that the first step drops are none of the second's.
template <class Source, class Destination>
constexpr datetime::Status through_datetime(const DateValue<Source>& source,
                                            DateValue<Destination>& destination) {
  comn_datetime between{};
  const auto status = date_rule<Source, type::datetime>(source, between);
  if (!datetime::is_delivered(status)) return status;
  return date_rule<type::datetime, Destination>(between, destination);
}

template <>
inline constexpr auto* date_rule<type::date4, type::datea> =
    through_datetime<type::date4, type::datea>;
template <>
inline constexpr auto* date_rule<type::date4, type::timea> =
    through_datetime<type::date4, type::timea>;
template <>
inline constexpr auto* date_rule<type::datea, type::date4> =
    through_datetime<type::datea, type::date4>;
template <>
inline constexpr auto* date_rule<type::timea, type::date4> =
    through_datetime<type::timea, type::date4>;
template <>
inline constexpr auto* date_rule<type::bigtime, type::date4> =
    through_datetime<type::bigtime, type::date4>;

// ---- Deviations --------------------------------------------------------------------------------

// A date that is no datetime leaves the one of its rule, day 0, behind. Elsewhere a refused value
// leaves the destination as it was.
template <class Source, class Destination>
inline constexpr bool stores_refused =
    std::is_same_v<Source, type::datea>&& std::is_same_v<Destination, type::datetime>;

// Dropped digits below the millisecond count as success, but these bare twins report them.
template <class Source, class Destination>
inline constexpr bool bare_reports_dropping = std::is_same_v<Source, type::bigdatetime> &&
                                              (std::is_same_v<Destination, type::datetime> ||
                                               std::is_same_v<Destination, type::timea>);

// ---- Routines ----------------------------------------------------------------------------------

// Converts a value. The length is that of the destination's type, and stays what it was when the
// value is refused.
template <class Source, class Destination>
inline datetime::Status convert_date(const void* source, void* destination, int32_t& length) {
  DateValue<Destination> value{};
  const auto status = date_rule<Source, Destination>(base::load<DateValue<Source>>(source), value);
  const bool delivered = datetime::is_delivered(status);
  if (delivered || stores_refused<Source, Destination>) base::store(destination, value);
  if (delivered) length = sizeof value;
  return status;
}

// comn_ routine of a pair.
template <class Source, class Destination>
int32_t date_routine(const Call& call) {
  call.require_codes(Source::codes, Destination::codes);
  const auto status =
      convert_date<Source, Destination>(call.source, call.destination, *call.output_length);
  return datetime::is_delivered(status) ? CS_SUCCEED : static_cast<int32_t>(status);
}

// comnb_ routine of a pair.
template <class Source, class Destination>
int32_t bare_date_routine(const BareCall& call) {
  call.require_data();
  const auto status = convert_date<Source, Destination>(call.source->data, call.destination->data,
                                                        call.destination->length);
  const bool succeeds =
      datetime::is_delivered(status) && !bare_reports_dropping<Source, Destination>;
  return succeeds ? CS_SUCCEED : static_cast<int32_t>(status);
}

}  // namespace tvx::convert
