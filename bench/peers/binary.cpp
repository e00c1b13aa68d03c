// Hexadecimal text by Abseil, and a plain copy.
#include "peers/binary.hpp"

#include <absl/strings/escaping.h>

#include <cstdlib>
#include <cstring>

namespace tvx::bench::peers {

std::string absl_bytes_to_hex(const char* bytes, int32_t length) {
  return absl::BytesToHexString({bytes, static_cast<size_t>(length)});
}

std::string absl_hex_to_bytes(const char* digits, int32_t length) {
  return absl::HexStringToBytes({digits, static_cast<size_t>(length)});
}

int32_t copy_with_memcpy(comn_context* context, const comn_datafmt* source_format,
                         const void* source, const comn_datafmt* destination_format,
                         void* destination, int32_t* output_length) {
  if (context == nullptr) std::abort();
  if (source_format == nullptr) std::abort();
  if (source == nullptr) std::abort();
  if (destination_format == nullptr) std::abort();
  if (destination == nullptr) std::abort();
  if (output_length == nullptr) std::abort();
  std::memcpy(destination, source, static_cast<size_t>(source_format->maxlength));
  *output_length = source_format->maxlength;
  return CS_SUCCEED;
}

}  // namespace tvx::bench::peers
