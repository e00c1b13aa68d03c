// Raw copies.
#include "convert/binary_copy.hpp"

#include <algorithm>
#include <cstring>

#include "convert/completion.hpp"
#include "convert/numeric_conversion.hpp"

namespace tvx::convert {
namespace {

// Copies what both sides have and tells how the source's length compares with the size.
int32_t copy_to_fixed(Text source, void* destination, int32_t size, int32_t too_long,
                      int32_t& output_length) {
  output_length = std::min(source.length, size);
  std::memcpy(destination, source.data, static_cast<size_t>(output_length));
  if (source.length > size) return too_long;
  return source.length == size ? CS_SUCCEED : CS_CONV_UNDERFLOW;
}

int32_t copy_to_num(const Call& call, Text source, int32_t too_long) {
  constexpr int32_t header = offsetof(comn_numeric, sign);
  constexpr int32_t field = sizeof(comn_numeric) - header;
  const comn_datafmt& format = *call.destination_format;
  const int32_t bad_type = check_type({format.precision, format.scale}, false);
  if (bad_type != CS_SUCCEED) return bad_type;
  auto* record = static_cast<uint8_t*>(call.destination);
  record[0] = static_cast<uint8_t>(format.precision);
  record[1] = static_cast<uint8_t>(format.scale);
  const int32_t code = copy_to_fixed(source, record + header, field, too_long, *call.output_length);
  *call.output_length = sizeof(comn_numeric);
  return code;
}

}  // namespace

int32_t fixed_to_bin(const Call& call, int32_t size) {
  const int32_t capacity = destination_capacity(call);
  *call.output_length = std::min(capacity, size);
  std::memcpy(call.destination, call.source, static_cast<size_t>(*call.output_length));
  if (capacity < size) return CS_CONV_TRUNCATED;
  return complete_binary(*call.destination_format, call.destination, *call.output_length);
}

int32_t fixed_to_varbin(const Call& call, int32_t size) {
  auto* record = static_cast<uint8_t*>(call.destination);
  const auto length = static_cast<uint16_t>(std::min(size, kVarDataSize));
  base::store(record, length);
  std::memcpy(record + sizeof length, call.source, length);
  *call.output_length = kVarRecordSize;
  return CS_SUCCEED;
}

int32_t bin_to_fixed(const Call& call, int32_t size) {
  return copy_to_fixed(char_source(call), call.destination, size, CS_CONV_TRUNCATED,
                       *call.output_length);
}

int32_t varbin_to_fixed(const Call& call, int32_t size) {
  return copy_to_fixed(varchar_source(call), call.destination, size, CS_CONV_OVERFLOW,
                       *call.output_length);
}

int32_t bin_to_num(const Call& call) {
  call.require_codes(kBinFamily, kNumFamily);
  return copy_to_num(call, char_source(call), CS_CONV_TRUNCATED);
}

int32_t varbin_to_num(const Call& call) {
  call.require_codes(kVarbin, kNumFamily);
  return copy_to_num(call, varchar_source(call), CS_CONV_OVERFLOW);
}

}  // namespace tvx::convert
