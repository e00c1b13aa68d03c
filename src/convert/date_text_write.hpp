// Conversions of dates and times to text. A routine names the codes it takes and the kind of text;
// the rest is one body a kind.
#pragma once

#include "convert/arguments.hpp"
#include "convert/date_types.hpp"
#include "datetime/formatter.hpp"
#include "locale/date_settings.hpp"

namespace tvx::convert {

// The codes that the routine of a type serves as sources: two of them serve the big type as well.
template <class Source>
inline constexpr CodeSet kDateTextSources = Source::codes;
template <>
inline constexpr CodeSet kDateTextSources<type::datetime>{TVX_TYPE_DATETIME, TVX_TYPE_BIGDATETIME};
template <>
inline constexpr CodeSet kDateTextSources<type::timea>{TVX_TYPE_TIMEA, TVX_TYPE_BIGTIME};

// ---- Data-format layer -------------------------------------------------------------------------

// The value has one of the six types.
int32_t deliver_date_char(const Call& call);
int32_t deliver_date_varchar(const Call& call);

template <class Source>
int32_t date_to_char(const Call& call) {
  call.require_codes(kDateTextSources<Source>, kCharFamily);
  return deliver_date_char(call);
}

template <class Source>
int32_t date_to_varchar(const Call& call) {
  call.require_codes(kDateTextSources<Source>, kVarchar);
  return deliver_date_varchar(call);
}

// ---- Bare layer --------------------------------------------------------------------------------

int32_t deliver_bare_date_char(const BareCall& call, datetime::ValueType type);
int32_t deliver_bare_date_varchar(const BareCall& call, datetime::ValueType type);

template <datetime::ValueType type>
int32_t bare_date_to_char(const BareCall& call) {
  call.require_data();
  return deliver_bare_date_char(call, type);
}

template <datetime::ValueType type>
int32_t bare_date_to_varchar(const BareCall& call) {
  call.require_data();
  return deliver_bare_date_varchar(call, type);
}

// ---- Codes -------------------------------------------------------------------------------------

// The date format code under which a value is written: 0 instead of one that no form has.
[[nodiscard]] int32_t writing_code(const locale::DateSettings& settings);

}  // namespace tvx::convert
