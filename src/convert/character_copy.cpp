// Copies of text other than the plain ones.
#include "convert/character_copy.hpp"

namespace tvx::convert {

Delivered copy_doubling_apostrophes(const com_charattr* attributes, Text source, char* out,
                                    int32_t capacity, bool ends_at_zero) {
  const com_charattr& record = charset::record_or_builtin(attributes);
  const auto* at = reinterpret_cast<const uint8_t*>(source.data);
  const uint8_t* const end = at + source.length;
  int32_t length = 0;
  while (at < end && charset::is_whole(record, at, end)) {
    const int32_t width = charset::char_width(record, at, end);
    const int32_t times = charset::to_ascii(record, at, end) == '\'' ? 2 : 1;
    if (times * width > capacity - length) return {length, code_of_copy(true)};
    for (int32_t i = 0; i < times; ++i, length += width)
      std::memcpy(out + length, at, static_cast<size_t>(width));
    if (ends_at_zero && width == 1 && *at == 0) break;
    at += width;
  }
  return {length, CS_SUCCEED};
}

namespace {

Delivered bare_copy(const BareCall& call) {
  call.require_text_source();
  comnb_value& destination = *call.destination;
  runtime::require(call.source->charset == destination.charset);
  Delivered delivered{0, CS_SUCCEED};
  if (call.source->length > 0) {
    delivered =
        copy_characters(call.context->attributes,
                        {static_cast<const char*>(call.source->data), call.source->length},
                        static_cast<char*>(destination.data), std::max(destination.maxlength, 0));
  }
  destination.length = delivered.length;
  return delivered;
}

}  // namespace

int32_t bare_text_to_char(const BareCall& call) {
  const Delivered delivered = bare_copy(call);
  const int32_t completed = complete_bare_text(*call.context, delivered.length, *call.destination);
  if (completed == CS_CONV_OVERFLOW) return code_of_copy(true);
  return completed == CS_SUCCEED ? delivered.code : completed;
}

int32_t bare_text_to_varchar(const BareCall& call) {
  return bare_copy(call).code;
}

}  // namespace tvx::convert
