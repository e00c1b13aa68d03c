// Locators.
#include "convert/locator.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/heap_block.hpp"
#include "convert/completion.hpp"
#include "convert/hexadecimal.hpp"
#include "tvxcomn/binary.h"
#include "tvxcomn/support.h"

namespace tvx::convert {
namespace {

constexpr int32_t kMostBytes = 65'535;  // of the data that a text is read into

using Block = base::HeapBlock<uint8_t>;

Block allocate(int32_t size) {
  return Block(static_cast<uint8_t*>(comn_malloc(static_cast<size_t>(size))));
}

// The length in a locator's format counts no bytes, but it obeys the rule of all such lengths.
void require_length(const comn_datafmt& format, const char* file = __builtin_FILE(),
                    int32_t line = __builtin_LINE()) {
  runtime::require(format.maxlength >= 0, file, line);
}

bool is_valid(const comn_locator& locator) {
  return locator.marker == COMN_LOCATOR_VALID;
}

// The chunks are the record's, their texts are not.
void reset(comn_locator& locator) {
  while (comn_locator_chunk* const chunk = locator.chunks) {
    locator.chunks = chunk->next;
    comn_free(chunk);
  }
  comn_free(locator.data);
  locator.data = nullptr;
  locator.length = 0;
}

void set_data(comn_locator& locator, Block data, int32_t length, int32_t datatype) {
  reset(locator);
  locator.data = data.release();
  locator.length = length;
  locator.datatype = datatype;
}

Text data_of(const comn_locator& locator) {
  const bool is_empty = locator.data == nullptr || locator.length <= 0;
  return {static_cast<const char*>(locator.data), is_empty ? 0 : locator.length};
}

}  // namespace

int32_t char_to_locator(const Call& call) {
  call.require_codes(kCharFamily, kLocators);
  const Text text = char_source(call);
  require_length(*call.destination_format);
  auto& locator = *static_cast<comn_locator*>(call.destination);
  if (!is_valid(locator)) return CS_FAIL;
  reset(locator);
  const int32_t room = bytes_of_digits(text.length);  // which a fill fills
  const bool fills = (call.destination_format->format & CS_FORMAT_ZEROFILL) != 0;
  if ((fills ? room : bytes_of_digits(hex_digits(text).length)) > kMostBytes)
    return CS_CONV_OVERFLOW;

  comn_datafmt as_bin = *call.destination_format;
  as_bin.datatype = TVX_TYPE_BIN;
  as_bin.maxlength = room;
  Block data = allocate(room);
  if (data == nullptr) return CS_MEM_ERROR;
  const int32_t code = text_to_bin<Form::kText>(
      {call.context, call.source_format, call.source, &as_bin, data.get(), call.output_length});
  if (code != CS_SUCCEED) return code;
  set_data(locator, std::move(data), *call.output_length, call.destination_format->datatype);
  return CS_SUCCEED;
}

int32_t locator_to_char(const Call& call) {
  call.require_codes(kLocators, kCharFamily);
  require_length(*call.source_format);
  const auto& locator = *static_cast<const comn_locator*>(call.source);
  if (!is_valid(locator)) return CS_FAIL;
  return deliver_hex_text(call, data_of(locator), kMisfit<Form::kBin, Form::kText>.too_long);
}

int32_t locator_to_locator(const Call& call) {
  call.require_codes(kLocators, kLocators);
  runtime::require(call.source_format->datatype == call.destination_format->datatype);
  require_length(*call.source_format);
  require_length(*call.destination_format);
  const auto& source = *static_cast<const comn_locator*>(call.source);
  auto& destination = *static_cast<comn_locator*>(call.destination);
  if (!is_valid(source) || !is_valid(destination)) return CS_FAIL;
  const Text bytes = data_of(source);
  *call.output_length = bytes.length;
  if (&source == &destination) return CS_SUCCEED;

  Block data;
  if (bytes.length > 0) {
    data = allocate(bytes.length);
    if (data == nullptr) return CS_MEM_ERROR;
    std::memcpy(data.get(), bytes.data, static_cast<size_t>(bytes.length));
  }
  set_data(destination, std::move(data), bytes.length, source.datatype);
  return CS_SUCCEED;
}

// ---- The value in the chunks -------------------------------------------------------------------

int32_t deliver_chunks(const Call& call, const ChunkDelivery& delivery) {
  call.require_codes(kLocators, delivery.destinations);
  require_length(*call.source_format);
  const int32_t capacity = destination_capacity(call);
  const auto& locator = *static_cast<const comn_locator*>(call.source);
  if (!is_valid(locator)) return CS_FAIL;

  auto* const out = static_cast<char*>(call.destination);
  if (locator.chunks == nullptr) {
    if (capacity > 0) *out = '\0';
    *call.output_length = 0;
    return CS_SUCCEED;
  }
  // Only the last chunk ends the value.
  comn_datafmt unended_format = *call.destination_format;
  unended_format.format &= ~uint32_t{CS_FORMAT_TERMINATE};
  Call unended = call;
  unended.destination_format = &unended_format;

  Delivered delivered{0, CS_SUCCEED};
  const comn_locator_chunk* chunk = locator.chunks;
  for (; chunk != nullptr && delivered.code == CS_SUCCEED; chunk = chunk->next) {
    if (chunk->length <= 0) continue;
    runtime::require_pointer(chunk->text);
    const auto [length, code] =
        delivery.put(chunk->next == nullptr ? call : unended, {chunk->text, chunk->length},
                     out + delivered.length, capacity - delivered.length);
    delivered = {delivered.length + length, code};
  }
  return delivery.complete(call, delivered);
}

namespace {

Delivered put_bytes(const Call&, Text chunk, char* out, int32_t capacity) {
  const int32_t length = std::min(chunk.length, capacity);
  std::memcpy(out, chunk.data, static_cast<size_t>(length));
  return {length, length < chunk.length ? kMisfit<Form::kBin, Form::kBin>.too_long : CS_SUCCEED};
}

int32_t complete_bytes(const Call& call, Delivered delivered) {
  *call.output_length = delivered.length;
  if (delivered.code != CS_SUCCEED) return delivered.code;
  return complete_binary(*call.destination_format, call.destination, *call.output_length);
}

}  // namespace

int32_t locator_to_text(const Call& call) {
  return deliver_chunks(call, {kCharFamily, put_text, complete_copy});
}

int32_t locator_to_image(const Call& call) {
  return deliver_chunks(call, {kBinFamily, put_bytes, complete_bytes});
}

}  // namespace tvx::convert
