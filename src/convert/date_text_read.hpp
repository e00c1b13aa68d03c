// Dates and times read from text, for every date type and both kinds of text. The grammar is in
// datetime/parser.hpp; here it meets the datatypes, the locales and the result codes.
#pragma once

#include "convert/arguments.hpp"
#include "convert/date_types.hpp"
#include "convert/number_text.hpp"
#include "datetime/parser.hpp"

namespace tvx::convert {

// The destinations of the routine that is named after a type. Those of datetime and time read the
// big types, too.
template <class Type>
inline constexpr CodeSet date_text_destinations = Type::codes;
template <>
inline constexpr CodeSet date_text_destinations<type::datetime>{TVX_TYPE_DATETIME,
                                                                TVX_TYPE_BIGDATETIME};
template <>
inline constexpr CodeSet date_text_destinations<type::timea>{TVX_TYPE_TIMEA, TVX_TYPE_BIGTIME};

// Reads a text as a value of a date type, which has to be one, and returns the result code. On
// success the value is stored and its size is the output length. On a syntax error the length is 0.
// Otherwise, both stay as they are.
int32_t read_date_text(int32_t datatype, Text text, const datetime::ReadingRules& rules,
                       void* destination, int32_t& output_length);

// The rules of a value's locale, and those of the bare layer, which has no locales.
[[nodiscard]] datetime::ReadingRules reading_rules(const comn_context& context,
                                                   const comn_datafmt& format);
[[nodiscard]] datetime::ReadingRules reading_rules(const comnb_context& context);

// comn_ routine from a kind of text to a date type.
template <class TextKind, class Type>
int32_t text_to_date(comn_context* context, const comn_datafmt* source_format, const void* source,
                     const comn_datafmt* destination_format, void* destination,
                     int32_t* output_length) {
  const Call call{context, source_format, source, destination_format, destination, output_length};
  call.require_codes(TextKind::codes, date_text_destinations<Type>);
  return runtime::traced(read_date_text(destination_format->datatype, TextKind::read(call),
                                        reading_rules(*context, *source_format), destination,
                                        *output_length));
}

// comnb_ routine from text, char and varchar alike.
template <int32_t datatype>
int32_t bare_text_to_date(const comnb_context* context, const comnb_value* source,
                          comnb_value* destination) {
  const BareCall call{context, source, destination};
  call.require_text_source();
  const Text text{static_cast<const char*>(source->data), source->length};
  return runtime::traced(read_date_text(datatype, text, reading_rules(*context), destination->data,
                                        destination->length));
}

}  // namespace tvx::convert
