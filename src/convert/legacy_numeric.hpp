// Legacy conversions from and to exact numerics. Each makes formats for the data-format routine of
// its pair, calls it, and translates its result.
#pragma once

#include "convert/legacy_call.hpp"
#include "convert/numeric_conversion.hpp"
#include "locale/handle.hpp"

namespace tvx::convert::legacy {

// The source of one call of a data-format routine, and where the value comes from: a context
// without locales, and a locale of one attribute record when one is given.
class OneCall {
public:
  OneCall(int32_t datatype, Text source, const com_charattr* attributes = nullptr)
      : source_(source.data), charset_{attributes} {
    source_format_.datatype = datatype;
    source_format_.maxlength = source.length;
    if (attributes == nullptr) return;
    locale_.entries.fill(&entry_);
    source_format_.locale = &locale_;
  }
  OneCall(const OneCall&) = delete;
  OneCall& operator=(const OneCall&) = delete;

  // The result code; the bytes delivered are in length().
  int32_t run(comn_conversion* routine, const comn_datafmt& destination_format, void* destination) {
    return routine(&context_, &source_format_, source_, &destination_format, destination, &length_);
  }

  [[nodiscard]] int32_t length() const { return length_; }

private:
  const void* source_;
  comn_context context_{};
  comn_datafmt source_format_{};
  locale::CharsetDescriptor charset_;
  locale::CacheEntry entry_{&charset_};
  comn_locale locale_{};
  int32_t length_ = 0;
};

[[nodiscard]] inline comn_datafmt format_of(int32_t datatype, int32_t maxlength = 0) {
  comn_datafmt format{};
  format.datatype = datatype;
  format.maxlength = maxlength;
  return format;
}

[[nodiscard]] inline comn_datafmt format_of(NumericType type) {
  comn_datafmt format = format_of(TVX_TYPE_NUM);
  format.precision = type.precision;
  format.scale = type.scale;
  return format;
}

// ---- To numerics -------------------------------------------------------------------------------

template <comn_conversion* routine, int32_t datatype, class Source = from_field>
int32_t to_numeric(const LegacyCall& call, NumericType type,
                   const com_charattr* attributes = nullptr) {
  if (call.is_empty()) return kNothing;
  const Text source = Source::read(call);
  if (source.length == 0) return kNothing;
  OneCall one(datatype, source, attributes);
  const int32_t code = one.run(routine, format_of(type), call.destination);
  return result_of(code, one.length());
}

// ---- From numerics -----------------------------------------------------------------------------

template <comn_conversion* routine, int32_t datatype>
int32_t numeric_to_fixed(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  OneCall one(TVX_TYPE_NUM, from_field::read(call));
  const int32_t code = one.run(routine, format_of(datatype), call.destination);
  return result_of(code, one.length());
}

// What the routine delivers into text or binary data is finished by kind, also when it is cut.
template <comn_conversion* routine, int32_t datatype, class Kind>
int32_t numeric_to_bytes(const LegacyCall& call) {
  if (call.is_empty()) return kNothing;
  OneCall one(TVX_TYPE_NUM, from_field::read(call));
  const int32_t code = one.run(routine, format_of(datatype, Kind::room(call.destination_length)),
                               Kind::data(call.destination));
  Kind::finish(call.destination, call.destination_length, one.length());
  // A record is cut by the kind, not by the routine.
  if (std::is_same_v<Kind, to_record> && code == CS_CONV_TRUNCATED) return kCut;
  return result_of(code, one.length());
}

// ---- Null values -------------------------------------------------------------------------------

// The null value, brought to the type by `retype` (comn_numtonum), or zero digits. The type is
// checked first.
int32_t set_numeric_null(const LegacyCall& call, NumericType type, comn_conversion* retype);

}  // namespace tvx::convert::legacy
