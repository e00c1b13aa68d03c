// Copies of text between values of the char family and varchar records, cut on whole characters.
// Inline as far as the copy of a single-byte text takes them.
#pragma once

#include <algorithm>
#include <cstring>

#include "charset/attributes.hpp"
#include "convert/completion.hpp"
#include "convert/forms.hpp"
#include "locale/character_attributes.hpp"

namespace tvx::convert {

// What a copy delivered, and CS_SUCCEED, CS_CONV_TRUNCATED or the failure that ended it.
struct Delivered {
  int32_t length;
  int32_t code;
};

[[nodiscard]] constexpr int32_t code_of_copy(bool is_cut) {
  return is_cut ? kMisfit<Form::kText, Form::kText>.too_long : CS_SUCCEED;
}

// ---- Without formats; a null record means single-byte text -------------------------------------

// Copies what fits, up to the end of a character. A character whose end the text itself lacks is
// left out; that is no cut. Source and destination may overlap.
[[nodiscard]] inline Delivered copy_characters(const com_charattr* attributes, Text source,
                                               char* out, int32_t capacity) {
  int32_t length = std::min(source.length, capacity);
  const int32_t code = code_of_copy(length < source.length);
  if (charset::is_multibyte(attributes)) [[unlikely]] {
    const auto* start = reinterpret_cast<const uint8_t*>(source.data);
    length = charset::whole_characters(*attributes, start, start + length).bytes;
  }
  if (out != source.data) [[likely]]
    std::memmove(out, source.data, static_cast<size_t>(length));
  return {length, code};
}

// Copies character by character and writes every one whose ASCII form is the apostrophe twice; when
// two of it do not fit, none. With `ends_at_zero` a zero byte is the last one copied. Source and
// destination must not overlap.
[[nodiscard]] Delivered copy_doubling_apostrophes(const com_charattr* attributes, Text source,
                                                  char* out, int32_t capacity, bool ends_at_zero);

// ---- Parts of a conversion ---------------------------------------------------------------------

// The attributes of the character set that both sides have. There is none but the context's, so a
// text that would have to change its set is a contradiction.
[[nodiscard]] inline const com_charattr* common_attributes(const Call& call) {
  const auto* attributes = locale::character_attributes(*call.context, *call.source_format);
  if (call.source_format->locale != call.destination_format->locale) [[unlikely]] {
    runtime::require(attributes ==
                     locale::character_attributes(*call.context, *call.destination_format));
  }
  return attributes;
}

// Puts a text of the source's character set where a char family value is to stand, its apostrophes
// doubled if the format says so.
[[nodiscard]] inline Delivered put_text(const Call& call, Text source, char* out,
                                        int32_t capacity) {
  const uint32_t flags = call.destination_format->format;
  if (capacity == 0) [[unlikely]]
    return {0, code_of_copy(source.length > 0)};
  const auto* attributes = common_attributes(call);
  if ((flags & CS_FORMAT_DOUBLE_APOSTROPHE) != 0) [[unlikely]] {
    return copy_doubling_apostrophes(attributes, source, out, capacity,
                                     (flags & CS_FORMAT_TERMINATE) != 0);
  }
  return copy_characters(attributes, source, out, capacity);
}

// Completes what has been delivered to a char family destination and returns the result of the
// conversion. Text without room for its terminator counts as cut.
inline int32_t complete_copy(const Call& call, Delivered delivered) {
  *call.output_length = delivered.length;
  const int32_t completed = complete_text(*call.destination_format, delivered.length,
                                          call.destination, *call.output_length);
  if (completed == CS_CONV_OVERFLOW) return code_of_copy(true);
  return completed == CS_SUCCEED ? delivered.code : completed;
}

// ---- Conversions -------------------------------------------------------------------------------

// comn_ routine from text and varchar. The apostrophes of a record are never doubled.
template <Form source_form>
int32_t text_to_char(const Call& call) {
  call.require_codes(codes_of(source_form), kCharFamily);
  const Text text = source_of<source_form>(call);
  const int32_t capacity = destination_capacity(call);
  auto* const out = static_cast<char*>(call.destination);
  const Delivered delivered = source_form == Form::kText
                                  ? put_text(call, text, out, capacity)
                                  : copy_characters(common_attributes(call), text, out, capacity);
  return complete_copy(call, delivered);
}

template <Form source_form>
int32_t text_to_varchar(const Call& call) {
  call.require_codes(codes_of(source_form), kVarchar);
  const auto [length, code] =
      copy_characters(common_attributes(call), source_of<source_form>(call),
                      reinterpret_cast<char*>(record_data(call)), kVarDataSize);
  end_record(call, length);
  return code;
}

// From char and varchar alike. Different character sets are a fatal usage error.
int32_t bare_text_to_char(const BareCall& call);
int32_t bare_text_to_varchar(const BareCall& call);

}  // namespace tvx::convert
