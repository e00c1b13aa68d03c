// Exact numerics as sources and destinations, among themselves, and as text.
#include "convert/numeric_conversion.hpp"

#include <algorithm>
#include <string_view>

#include "charset/ascii_mapping.hpp"
#include "charset/attributes.hpp"

namespace tvx::convert {
namespace {

using numeric::Decimal;
using numeric::DecimalStatus;

constexpr int32_t kTextCapacity = 1024;  // longer texts are cut
constexpr uint32_t kMayDropDigits = 1;   // numeric flag of a bare context

// The value under another type: first its magnitude must fit the field of that precision, then it
// is rescaled by truncation.
int32_t retype(Decimal& value, NumericType wanted) {
  value.precision = wanted.precision;
  if (numeric::byte_length(value.magnitude) >= numeric::field_length(wanted.precision)) {
    return CS_CONV_OVERFLOW;
  }
  switch (numeric::rescale(value, wanted.scale)) {
    case DecimalStatus::kDone:
      return CS_SUCCEED;
    case DecimalStatus::kDigitsDropped:
      return CS_CONV_TRUNCATED;
    default:
      return CS_CONV_OVERFLOW;
  }
}

int32_t code_of_parse(DecimalStatus status) {
  switch (status) {
    case DecimalStatus::kDone:
      return CS_SUCCEED;
    case DecimalStatus::kDigitsDropped:
      return CS_CONV_TRUNCATED;
    case DecimalStatus::kInvalid:
      return CS_CONV_SYNTAX;
    default:
      return CS_CONV_OVERFLOW;
  }
}

// A precision or scale for the parser of texts.
int32_t asked_of_text(int32_t wanted) {
  return wanted == CS_TAKE_FROM_SOURCE ? numeric::kFromText : wanted;
}

// A type that the text was to decide, when there was no number to decide it.
void settle_type(Decimal& value) {
  if (!numeric::is_precision(value.precision)) value.precision = numeric::kMaxPrecision;
  if (value.scale > numeric::kMaxScale || value.scale < 0) value.scale = 0;
}

// How a text is read: where it ends, and under which type.
struct TextReading {
  bool ends_at_zero;
  NumericType wanted;
  bool rounding;
};

// Reads single-byte text; the value is zero unless the code is CS_SUCCEED, and always one that its
// precision holds.
inline int32_t read_single_bytes(Text text, const TextReading& how, Decimal& value) {
  std::string_view number(text.data,
                          static_cast<size_t>(std::clamp(text.length, 0, kTextCapacity)));
  if (how.ends_at_zero) number = number.substr(0, number.find('\0'));
  const auto rules = numeric::text_rules(how.wanted.precision, how.wanted.scale, how.rounding);
  const DecimalStatus status = numeric::parse_decimal(number, rules, value);
  if (status == DecimalStatus::kDone) [[likely]]
    return CS_SUCCEED;
  value = {{}, how.wanted.precision, how.wanted.scale, false};
  settle_type(value);
  return code_of_parse(status);
}

[[gnu::noinline]] int32_t read_multibyte(Text text, const com_charattr& attributes,
                                         const TextReading& how, Decimal& value) {
  char buffer[kTextCapacity];
  const int32_t mapped =
      charset::map_to_ascii(text.data, text.length, buffer, kTextCapacity, &attributes);
  return read_single_bytes({buffer, mapped}, how, value);
}

inline int32_t read_text(Text text, const com_charattr* attributes, const TextReading& how,
                         Decimal& value) {
  if (charset::is_multibyte(attributes)) [[unlikely]]
    return read_multibyte(text, *attributes, how, value);
  return read_single_bytes(text, how, value);
}

}  // namespace

// ---- Sources and destinations ------------------------------------------------------------------

int32_t check_type(NumericType wanted, bool source_may_decide) {
  const auto decided = [&](int32_t part) {
    return source_may_decide && part == CS_TAKE_FROM_SOURCE;
  };
  if (!numeric::is_precision(wanted.precision) && !decided(wanted.precision)) {
    return CS_CONV_BADPREC;
  }
  const bool scale_is_legal = wanted.scale >= 0 && wanted.scale <= numeric::kMaxScale;
  return scale_is_legal || decided(wanted.scale) ? CS_SUCCEED : CS_CONV_BADSCALE;
}

NumericSource load_source(const BareCall& call) {
  const comnb_value& source = *call.source;
  if (!numeric::is_numeric_type(source.precision, source.scale) ||
      !numeric::is_field_length(source.length)) {
    return {{}, false};
  }
  const auto* field = static_cast<const uint8_t*>(source.data);
  return {numeric::load_field(field, source.length, source.precision, source.scale), true};
}

int32_t store_result(const Call& call, const Decimal& value, int32_t code, Reported reported) {
  auto& record = *static_cast<comn_numeric*>(call.destination);  // bytes only: any address will do
  *call.output_length = numeric::record_length(value.precision);
  if (reported == Reported::kWholeRecord) {
    record = {};
    *call.output_length = sizeof record;
  }
  return numeric::store_numeric(value, record) == DecimalStatus::kDone ? code : CS_CONV_OVERFLOW;
}

int32_t store_result(const BareCall& call, const Decimal& value, int32_t code) {
  comnb_value& destination = *call.destination;
  const int32_t length = numeric::field_length(value.precision);
  if (destination.maxlength < length) return CS_CONV_OVERFLOW;
  destination.precision = static_cast<uint8_t>(value.precision);
  destination.scale = static_cast<uint8_t>(value.scale);
  destination.length = length;
  auto* field = static_cast<uint8_t*>(destination.data);
  if (numeric::exceeds_precision(value.magnitude, value.precision)) {
    numeric::clear_field(field, length);
    return CS_CONV_OVERFLOW;
  }
  return numeric::store_field(value, field, length) == DecimalStatus::kDone ? code
                                                                            : CS_CONV_OVERFLOW;
}

// ---- Numerics among themselves -----------------------------------------------------------------

int32_t num_to_num(const Call& call) {
  call.require_codes(kNumFamily, kNumFamily);
  auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  const comn_datafmt& format = *call.destination_format;
  const int32_t bad_type = check_type({format.precision, format.scale}, true);
  if (bad_type != CS_SUCCEED) return bad_type;

  const auto wanted = [](int32_t asked, int32_t own) {
    return asked == CS_TAKE_FROM_SOURCE ? own : asked;
  };
  const NumericType type{wanted(format.precision, value.precision),
                         wanted(format.scale, value.scale)};
  const int32_t code = retype(value, type);
  if (code == CS_CONV_OVERFLOW) value = {{}, type.precision, type.scale, false};
  return store_result(call, value, code, Reported::kUsedBytes);
}

int32_t bare_num_to_num(const BareCall& call) {
  call.require_data();
  auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  const NumericType type{call.destination->precision, call.destination->scale};
  const int32_t bad_type = check_type(type, false);
  if (bad_type != CS_SUCCEED) return bad_type;
  int32_t code = retype(value, type);
  if (code == CS_CONV_OVERFLOW) value = {{}, type.precision, type.scale, false};
  const bool may_drop = (call.context->numeric_flags & kMayDropDigits) != 0;
  if (code == CS_CONV_TRUNCATED && may_drop) code = CS_SUCCEED;
  return store_result(call, value, code);
}

// ---- Numerics to text --------------------------------------------------------------------------

int32_t num_to_char(const Call& call) {
  call.require_codes(kNumFamily, kCharFamily);
  const int32_t capacity = destination_capacity(call);
  const auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  const numeric::DecimalText text(value);
  const int32_t length = text.length();
  *call.output_length = std::min(length, capacity);
  auto* const out = static_cast<char*>(call.destination);
  if (length <= capacity) [[likely]] {
    text.write(out);
  } else {
    text.write_first(capacity, out);
  }
  return complete_text(*call.destination_format, length, call.destination, *call.output_length);
}

int32_t num_to_varchar(const Call& call) {
  call.require_codes(kNumFamily, kVarchar);
  const auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  return deliver_varchar(call, numeric::DecimalText(value));
}

namespace {

// Delivers what fits. A cut behind the point leaves a valid, shorter number; a cut in front of it
// does not.
int32_t deliver_bare(const BareCall& call, bool completes) {
  call.require_data();
  const auto [value, is_legal] = load_source(call);
  if (!is_legal) return CS_CONV_DOMAIN;
  const numeric::DecimalText text(value);
  const int32_t length = text.length();

  comnb_value& destination = *call.destination;
  auto* out = static_cast<char*>(destination.data);
  const uint32_t flags = completes ? call.context->flags : 0;
  if (text_fits(length, destination.maxlength, flags)) {
    text.write(out);
    destination.length = length;
    return completes ? complete_bare_text(*call.context, length, destination) : CS_SUCCEED;
  }
  const bool terminates = (flags & COMNB_TERMINATE) != 0;
  const int32_t room = std::max(destination.maxlength, 0);
  const int32_t delivered = std::max(room - (terminates ? 1 : 0), 0);
  text.write_first(delivered, out);
  if (terminates && room > 0) out[delivered] = '\0';
  destination.length = room;
  const bool keeps_point = value.scale > 0 && text.point() < delivered;
  return keeps_point ? CS_CONV_TRUNCATED : CS_CONV_OVERFLOW;
}

}  // namespace

int32_t bare_num_to_char(const BareCall& call) {
  return deliver_bare(call, true);
}

int32_t bare_num_to_varchar(const BareCall& call) {
  return deliver_bare(call, false);
}

// ---- Text to numerics --------------------------------------------------------------------------

int32_t text_to_num(const Call& call, Text text) {
  const comn_datafmt& format = *call.destination_format;
  const int32_t bad_type = check_type({format.precision, format.scale}, true);
  if (bad_type != CS_SUCCEED) return bad_type;
  Decimal value;
  const int32_t code =
      read_text(text, locale::character_attributes(*call.context, *call.source_format),
                {(call.source_format->format & CS_FORMAT_TERMINATE) != 0,
                 {asked_of_text(format.precision), asked_of_text(format.scale)},
                 false},
                value);
  numeric::put_numeric(value, *static_cast<comn_numeric*>(call.destination));
  *call.output_length = code == CS_CONV_SYNTAX ? 0 : numeric::record_length(value.precision);
  return code;
}

int32_t bare_text_to_num(const BareCall& call) {
  call.require_text_source();
  const auto type_part = [](uint8_t part) {
    return part == numeric::kFromText ? CS_TAKE_FROM_SOURCE : int32_t{part};
  };
  const NumericType wanted{type_part(call.destination->precision),
                           type_part(call.destination->scale)};
  const int32_t bad_type = check_type(wanted, true);
  if (bad_type != CS_SUCCEED) return bad_type;
  const bool rounding = (call.context->numeric_flags & kMayDropDigits) != 0;
  Decimal value;
  int32_t code = read_text(
      {static_cast<const char*>(call.source->data), call.source->length}, call.context->attributes,
      {false, {asked_of_text(wanted.precision), asked_of_text(wanted.scale)}, rounding}, value);
  if (code == CS_CONV_TRUNCATED && rounding) code = CS_SUCCEED;
  const int32_t result = store_result(call, value, code);
  if (result == CS_CONV_SYNTAX) call.destination->length = 0;
  return result;
}

}  // namespace tvx::convert
