// Locators: records that stand for a value kept elsewhere, as a data block of their own or as a
// chain of chunks that the libraries above attach to them. A record without the mark of a valid one
// is CS_FAIL, and nothing else of it is looked at.
#pragma once

#include "convert/character_copy.hpp"

namespace tvx::convert {

inline constexpr CodeSet kLocators{TVX_TYPE_LOCATOR37, TVX_TYPE_LOCATOR38, TVX_TYPE_LOCATOR39};

// The bytes of a hexadecimal text as the data block of a record, whose former data and chunks are
// freed. CS_CONV_OVERFLOW for more than 65,535 bytes, CS_MEM_ERROR, or the failure of the text;
// then the record is empty.
int32_t char_to_locator(const Call& call);

// The data block as hexadecimal text.
int32_t locator_to_char(const Call& call);

// A data block of the same bytes; chunks are not copied. CS_MEM_ERROR, with the destination as it
// was. The two have to be of the same code.
int32_t locator_to_locator(const Call& call);

// ---- The value in the chunks -------------------------------------------------------------------

// How a kind of destination takes a chunk behind those before it, and how all of them are completed
// and reported in the end; a chunk that is not delivered with CS_SUCCEED is the last one.
struct ChunkDelivery {
  CodeSet destinations;
  Delivered (*put)(const Call& call, Text chunk, char* out, int32_t capacity);
  int32_t (*complete)(const Call& call, Delivered delivered);
};

// All chunks as one value; a zero byte, which does not count, when there is no chain.
int32_t deliver_chunks(const Call& call, const ChunkDelivery& delivery);

int32_t locator_to_text(const Call& call);
int32_t locator_to_image(const Call& call);

}  // namespace tvx::convert
