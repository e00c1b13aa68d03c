// Bit as the text "0" or "1", as a byte of binary data, and in varchar and varbin records.
#include <algorithm>

#include "convert/binary_copy.hpp"
#include "convert/completion.hpp"
#include "convert/scalar.hpp"

namespace tvx::convert {
namespace {

constexpr int32_t kLength = 1;  // of the text and of the binary data

using Bit = type::bit;

[[nodiscard]] uint8_t digit(uint8_t value) {
  return static_cast<uint8_t>('0' + value);
}

}  // namespace

int32_t bit_to_char(const Call& call) {
  call.require_codes(Bit::codes, kCharFamily);
  const int32_t capacity = destination_capacity(call);
  const auto value = base::load<uint8_t>(call.source);
  if (!is_legal<Bit>(value)) return CS_CONV_DOMAIN;
  *call.output_length = std::min(kLength, capacity);
  if (capacity >= kLength) base::store(call.destination, digit(value));
  return complete_text(*call.destination_format, kLength, call.destination, *call.output_length);
}

int32_t bit_to_varchar(const Call& call) {
  call.require_codes(Bit::codes, kVarchar);
  const auto value = base::load<uint8_t>(call.source);
  if (!is_legal<Bit>(value)) return CS_CONV_DOMAIN;
  auto* record = static_cast<uint8_t*>(call.destination);
  base::store(record, static_cast<uint16_t>(kLength));
  record[sizeof(uint16_t)] = digit(value);
  *call.output_length = kVarRecordSize;
  return CS_SUCCEED;
}

int32_t bit_to_bin(const Call& call) {
  call.require_codes(Bit::codes, kBinFamily);
  if (!is_legal<Bit>(base::load<uint8_t>(call.source))) return CS_CONV_DOMAIN;
  return fixed_to_bin(call, kLength);
}

int32_t bit_to_varbin(const Call& call) {
  call.require_codes(Bit::codes, kVarbin);
  if (!is_legal<Bit>(base::load<uint8_t>(call.source))) return CS_CONV_DOMAIN;
  return fixed_to_varbin(call, kLength);
}

int32_t bare_bit_to_char(const BareCall& call) {
  call.require_data();
  const auto value = base::load<uint8_t>(call.source->data);
  if (!is_legal<Bit>(value)) return CS_CONV_DOMAIN;
  comnb_value& destination = *call.destination;
  destination.length = std::clamp(destination.maxlength, 0, kLength);
  if (destination.length == kLength) base::store(destination.data, digit(value));
  return complete_bare_text(*call.context, kLength, destination);
}

int32_t bare_bit_to_varchar(const BareCall& call) {
  call.require_data();
  const auto value = base::load<uint8_t>(call.source->data);
  if (!is_legal<Bit>(value)) return CS_CONV_DOMAIN;
  if (call.destination->maxlength < kLength) return CS_CONV_OVERFLOW;
  base::store(call.destination->data, digit(value));
  call.destination->length = kLength;
  return CS_SUCCEED;
}

}  // namespace tvx::convert
