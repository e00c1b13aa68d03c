// Hexadecimal text.
#include "convert/hexadecimal.hpp"

#include <algorithm>

#include "base/hexadecimal.hpp"
#include "charset/attributes.hpp"
#include "convert/completion.hpp"

namespace tvx::convert {
namespace {

bool is_blank(const char* character) {
  return charset::is_space(charset::builtin_record(), reinterpret_cast<const uint8_t*>(character));
}

void write_digits(Text bytes, int32_t count, void* digits) {
  base::write_hex(reinterpret_cast<const uint8_t*>(bytes.data), static_cast<size_t>(count),
                  static_cast<char*>(digits));
}

// Reads a text's digits into the data of a record. A text that is none leaves an empty record.
template <Form source>
HexReading read_into_record(const Call& call) {
  const auto reading = read_hex_digits(hex_digits(source_of<source>(call)), record_data(call),
                                       kVarDataSize, kMisfit<source, Form::kVarbinRecord>.too_long);
  end_record(call, reading.length);
  if (reading.code == CS_CONV_SYNTAX) *call.output_length = 0;
  return reading;
}

}  // namespace

// ---- Without formats ---------------------------------------------------------------------------

Text hex_digits(Text text) {
  while (text.length > 0 && is_blank(text.data + text.length - 1)) --text.length;
  const auto remove_prefix = [&](int32_t count) {
    text.data += count;
    text.length -= count;
  };
  while (text.length > 0 && is_blank(text.data)) remove_prefix(1);
  const bool has_prefix =
      text.length >= 2 && text.data[0] == '0' && (text.data[1] == 'x' || text.data[1] == 'X');
  if (has_prefix) remove_prefix(2);
  return text;
}

HexReading read_hex_digits(Text digits, uint8_t* bytes, int32_t capacity, int32_t too_long) {
  const int32_t wanted = bytes_of_digits(digits.length);
  const int32_t length = std::min(wanted, capacity);
  const int32_t odd = digits.length % 2;
  if (odd != 0) {
    if (length == 0) return {0, CS_CONV_OVERFLOW};
    const int value = base::hex_digit_value(digits.data[0]);
    if (value == base::kNoHexDigit) return {0, CS_CONV_SYNTAX};
    bytes[0] = static_cast<uint8_t>(value);
  }
  const auto pairs = static_cast<size_t>(length - odd);
  if (base::read_hex(digits.data + odd, pairs, bytes + odd) != pairs) return {0, CS_CONV_SYNTAX};
  return {length, length < wanted ? too_long : CS_SUCCEED};
}

int32_t deliver_hex_text(const Call& call, Text bytes, int32_t too_long) {
  const int32_t capacity = destination_capacity(call);
  const int32_t count = std::min(bytes.length, capacity / 2);
  const int32_t written = 2 * count;
  write_digits(bytes, count, call.destination);
  *call.output_length = written;
  if (count < bytes.length) return too_long;
  return complete_text(*call.destination_format, written, call.destination, *call.output_length);
}

// ---- Conversions -------------------------------------------------------------------------------

template <Form source>
int32_t binary_to_char(const Call& call) {
  call.require_codes(codes_of(source), kCharFamily);
  return deliver_hex_text(call, source_of<source>(call), kMisfit<source, Form::kText>.too_long);
}

template <Form source>
int32_t binary_to_varchar(const Call& call) {
  call.require_codes(codes_of(source), kVarchar);
  const Text bytes = source_of<source>(call);
  const int32_t count = std::min(bytes.length, kVarDataSize / 2);
  write_digits(bytes, count, record_data(call));
  end_record(call, 2 * count);
  return count < bytes.length ? kMisfit<source, Form::kVarcharRecord>.too_long : CS_SUCCEED;
}

template <Form source>
int32_t text_to_bin(const Call& call) {
  call.require_codes(codes_of(source), kBinFamily);
  const Text text = source_of<source>(call);
  const auto reading =
      read_hex_digits(hex_digits(text), static_cast<uint8_t*>(call.destination),
                      destination_capacity(call), kMisfit<source, Form::kBin>.too_long);
  *call.output_length = reading.length;
  if (reading.code != CS_SUCCEED) return reading.code;
  return complete_binary(*call.destination_format, call.destination, *call.output_length);
}

int32_t char_to_varbin(const Call& call) {
  call.require_codes(kCharFamily, kVarbin);
  return read_into_record<Form::kText>(call).code;
}

int32_t varchar_to_varbin(const Call& call) {
  call.require_codes(kVarchar, kVarbin);
  const int32_t capacity = destination_capacity(call);
  const auto reading = read_into_record<Form::kVarcharRecord>(call);
  if (reading.code != CS_SUCCEED) return reading.code;
  return reading.length < capacity ? CS_SUCCEED : CS_CONV_OVERFLOW;
}

template int32_t binary_to_char<Form::kBin>(const Call&);
template int32_t binary_to_char<Form::kVarbinRecord>(const Call&);
template int32_t binary_to_varchar<Form::kBin>(const Call&);
template int32_t binary_to_varchar<Form::kVarbinRecord>(const Call&);
template int32_t text_to_bin<Form::kText>(const Call&);
template int32_t text_to_bin<Form::kVarcharRecord>(const Call&);

}  // namespace tvx::convert
