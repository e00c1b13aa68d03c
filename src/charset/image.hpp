// Images of attribute tables: the form in which a character set's tables are stored. A single-byte
// image is the attribute table with the Soundex table behind it; a multibyte one begins with a
// header that tells what tables there are and where.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "tvxcomn/attributes.h"

namespace tvx::charset {

inline constexpr uint8_t kSingleByteClass = 1;

// Tables of a single-byte set: a row for each byte and one row of zero behind them.
inline constexpr size_t kSingleByteAttributes = size_t{257} * 4;
inline constexpr size_t kSingleByteSoundex = 257;
inline constexpr std::array<uint8_t, 5> kSingleByteFormat = {1, 1, 0, 1, 1};

inline constexpr size_t kNameCapacity = sizeof(com_charattr::name) - 1;  // 29 characters and a NUL

// The header of a multibyte image: 44 bytes, its words most significant byte first.
struct ImageHeader {
  static constexpr size_t kSize = 44;

  struct Table {
    uint32_t offset;  // bytes from the start of the image
    uint32_t size;    // in bytes; 0: none
  };

  uint16_t status;
  uint8_t class_;
  std::array<uint8_t, 5> format;  // in the order of the attribute record
  Table lengths;
  Table to_ascii;
  Table attributes;
  Table soundex;
};

// Reads the `ImageHeader::kSize` bytes of a header; checks nothing.
[[nodiscard]] ImageHeader read_image_header(const uint8_t* bytes);

// Gives a record its name, cut to `kNameCapacity` characters.
void set_name(com_charattr& record, const char* name, size_t length);

// Fills `record` to point into `image`, whose tables it trusts; `kind` is one of COM_IMAGE_. False,
// with the record unchanged, when the kind is unknown. A null name is an empty one.
[[nodiscard]] bool build_record(int32_t kind, uint8_t id, const char* name, const uint8_t* image,
                                com_charattr& record);

}  // namespace tvx::charset
