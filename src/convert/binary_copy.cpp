// Raw copies.
#include "convert/binary_copy.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/wire_tokens.hpp"
#include "convert/completion.hpp"
#include "convert/numeric_conversion.hpp"

namespace tvx::convert {
namespace {

constexpr int32_t kNumericHeader = offsetof(comn_numeric, sign);
constexpr int32_t kNumericField = sizeof(comn_numeric) - kNumericHeader;

// The two may overlap, or be one and the same.
void copy_bytes(void* destination, const void* source, int32_t count) {
  std::memmove(destination, source, static_cast<size_t>(count));
}

// Copies what both sides have and tells how the source's length compares with the size.
int32_t copy_to_fixed(Text source, void* destination, int32_t size, const Misfit& misfit,
                      int32_t& length) {
  length = std::min(source.length, size);
  copy_bytes(destination, source.data, length);
  if (source.length > size) return misfit.too_long;
  return source.length == size ? CS_SUCCEED : misfit.too_short;
}

int32_t copy_to_bin(const Call& call, Text source, int32_t too_long) {
  const int32_t capacity = destination_capacity(call);
  *call.output_length = std::min(source.length, capacity);
  copy_bytes(call.destination, source.data, *call.output_length);
  if (source.length > capacity) return too_long;
  return complete_binary(*call.destination_format, call.destination, *call.output_length);
}

int32_t copy_to_varbin(const Call& call, Text source, int32_t too_long) {
  const int32_t length = std::min(source.length, kVarDataSize);
  copy_bytes(record_data(call), source.data, length);
  end_record(call, length);
  return source.length > length ? too_long : CS_SUCCEED;
}

Text fixed_source(const Call& call, int32_t size) {
  return {static_cast<const char*>(call.source), size};
}

Text bin_source(const BareCall& call) {
  runtime::require(call.source->length >= 1);
  return {static_cast<const char*>(call.source->data), call.source->length};
}

}  // namespace

// ---- Sizes given at run time -------------------------------------------------------------------

int32_t fixed_to_bin(const Call& call, int32_t size) {
  return copy_to_bin(call, fixed_source(call, size), kMisfit<Form::kFixed, Form::kBin>.too_long);
}

int32_t fixed_to_varbin(const Call& call, int32_t size) {
  return copy_to_varbin(call, fixed_source(call, std::min(size, kVarDataSize)), CS_SUCCEED);
}

template <Form source>
int32_t binary_to_fixed(const Call& call, int32_t size) {
  return copy_to_fixed(source_of<source>(call), call.destination, size,
                       kMisfit<source, Form::kFixed>, *call.output_length);
}

// A fixed-size value may be of any code, one of the caller's included.
int32_t checked_fixed_to_bin(const Call& call, int32_t size) {
  call.require_pointers();
  runtime::require(kBinFamily.contains(call.destination_format->datatype) && size >= 1);
  return fixed_to_bin(call, size);
}

int32_t checked_fixed_to_varbin(const Call& call, int32_t size) {
  call.require_pointers();
  runtime::require(kVarbin.contains(call.destination_format->datatype) && size >= 1);
  return fixed_to_varbin(call, size);
}

template <Form source>
int32_t checked_binary_to_fixed(const Call& call, int32_t size) {
  call.require_pointers();
  runtime::require(codes_of(source).contains(call.source_format->datatype) && size >= 0);
  return binary_to_fixed<source>(call, size);
}

// ---- Binary data to bit, exact numerics and binary data ----------------------------------------

template <Form source>
int32_t binary_to_bit(const Call& call) {
  call.require_codes(codes_of(source), type::bit::codes);
  base::store(call.destination, uint8_t{source_of<source>(call).data[0] != 0});
  *call.output_length = kFixedSize<type::bit>;
  return CS_SUCCEED;
}

template <Form source>
int32_t binary_to_num(const Call& call) {
  call.require_codes(codes_of(source), kNumFamily);
  const Text bytes = source_of<source>(call);
  const comn_datafmt& format = *call.destination_format;
  const int32_t bad_type = check_type({format.precision, format.scale}, false);
  if (bad_type != CS_SUCCEED) return bad_type;
  auto* record = static_cast<uint8_t*>(call.destination);
  record[0] = static_cast<uint8_t>(format.precision);
  record[1] = static_cast<uint8_t>(format.scale);
  const int32_t code = copy_to_fixed(bytes, record + kNumericHeader, kNumericField,
                                     kMisfit<source, Form::kFixed>, *call.output_length);
  *call.output_length = sizeof(comn_numeric);
  return code;
}

template <Form source>
int32_t binary_to_bin(const Call& call) {
  call.require_codes(codes_of(source), kBinFamily);
  return copy_to_bin(call, source_of<source>(call), kMisfit<source, Form::kBin>.too_long);
}

int32_t bin_to_varbin(const Call& call) {
  call.require_codes(kBinFamily, kVarbin);
  return copy_to_varbin(call, char_source(call), kMisfit<Form::kBin, Form::kVarbinRecord>.too_long);
}

// The whole record, with what is behind its data.
int32_t varbin_to_varbin(const Call& call) {
  call.require_codes(kVarbin, kVarbin);
  const Text bytes = varchar_source(call);
  copy_bytes(call.destination, call.source, kVarRecordSize);
  end_record(call, bytes.length);
  return CS_SUCCEED;
}

#define INSTANTIATE(source)                                               \
  template int32_t binary_to_fixed<source>(const Call&, int32_t);         \
  template int32_t checked_binary_to_fixed<source>(const Call&, int32_t); \
  template int32_t binary_to_bit<source>(const Call&);                    \
  template int32_t binary_to_num<source>(const Call&);                    \
  template int32_t binary_to_bin<source>(const Call&);
INSTANTIATE(Form::kBin)
INSTANTIATE(Form::kVarbinRecord)
#undef INSTANTIATE

// ---- The bare layer ----------------------------------------------------------------------------

int32_t bare_bin_to_fixed(const BareCall& call, int32_t size) {
  call.require_data();
  return copy_to_fixed(bin_source(call), call.destination->data, size,
                       kMisfit<Form::kBin, Form::kFixed>, call.destination->length);
}

int32_t bare_bin_to_bit(const BareCall& call) {
  call.require_data();
  base::store(call.destination->data, uint8_t{bin_source(call).data[0] != 0});
  call.destination->length = kFixedSize<type::bit>;
  return CS_SUCCEED;
}

int32_t bare_bin_to_num(const BareCall& call) {
  call.require_data();
  comnb_value& destination = *call.destination;
  const int32_t bad_type = check_type({destination.precision, destination.scale}, false);
  if (bad_type != CS_SUCCEED) return bad_type;
  const int32_t size = std::clamp(destination.maxlength, 0, kNumericField);
  const int32_t code = bare_bin_to_fixed(call, size);
  destination.length = size;
  return code;
}

namespace {

// Copies what fits; the destination's length is that of the copy.
int32_t copy_any(const BareCall& call) {
  call.require_text_source();
  const int32_t wanted = std::max(call.source->length, 0);
  comnb_value& destination = *call.destination;
  destination.length = std::min(wanted, std::max(destination.maxlength, 0));
  if (destination.length > 0) {
    copy_bytes(destination.data, call.source->data, destination.length);
  }
  return destination.length < wanted ? CS_CONV_TRUNCATED : CS_SUCCEED;
}

// Zeros or blanks as towards text, but never a terminator.
int32_t complete_bare_binary(const BareCall& call) {
  comnb_context without_terminator = *call.context;
  without_terminator.flags &= ~COMNB_TERMINATE;
  return complete_bare_text(without_terminator, call.destination->length, *call.destination);
}

// Whether a float is a number. One that is not complete is not looked at.
template <class Float>
bool is_finite(const comnb_value& value) {
  const bool is_whole = value.length >= static_cast<int32_t>(sizeof(Float));
  return !is_whole || std::isfinite(base::load<Float>(value.data));
}

// Only a float, by its token, can be none of its type.
bool is_legal(const comnb_value& value) {
  switch (value.token) {
    case base::wire_token::kFlt4:
      return is_finite<float>(value);
    case base::wire_token::kFlt8:
      return is_finite<double>(value);
    default:
      return true;
  }
}

}  // namespace

int32_t bare_any_to_fixed(const BareCall& call) {
  const int32_t copied = copy_any(call);
  if (copied != CS_SUCCEED) return copied;
  comnb_value& destination = *call.destination;
  const int32_t completed = complete_bare_binary(call);
  if (completed != CS_SUCCEED) return completed;
  return is_legal(destination) ? CS_SUCCEED : CS_CONV_DOMAIN;
}

int32_t bare_any_to_var(const BareCall& call) {
  return copy_any(call);
}

}  // namespace tvx::convert
