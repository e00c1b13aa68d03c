// Attribute records over images in memory.
#include "charset/image.hpp"

#include <algorithm>
#include <cstring>

namespace tvx::charset {

namespace {

uint32_t big_endian_32(const uint8_t* bytes) {
  return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

ImageHeader::Table read_table(const uint8_t* bytes) {
  return {big_endian_32(bytes), big_endian_32(bytes + 4)};
}

const uint8_t* locate(const uint8_t* image, const ImageHeader::Table& table) {
  return table.size == 0 ? nullptr : image + table.offset;
}

void fill_single_byte(const uint8_t* image, com_charattr& record) {
  record.status = 0;
  record.class_ = kSingleByteClass;
  std::copy(kSingleByteFormat.begin(), kSingleByteFormat.end(), record.format);
  record.lengths = nullptr;
  record.to_ascii = nullptr;
  record.attributes = image;
  record.soundex = image + kSingleByteAttributes;
}

void fill_multibyte(const uint8_t* image, com_charattr& record) {
  const ImageHeader header = read_image_header(image);
  record.status = header.status;
  record.class_ = header.class_;
  std::copy(header.format.begin(), header.format.end(), record.format);
  record.lengths = locate(image, header.lengths);
  record.to_ascii = locate(image, header.to_ascii);
  record.attributes = image + header.attributes.offset;
  record.soundex = image + header.soundex.offset;
}

}  // namespace

ImageHeader read_image_header(const uint8_t* bytes) {
  return {
      .status = static_cast<uint16_t>(bytes[0] << 8 | bytes[1]),
      .class_ = bytes[2],
      // The third and fourth format bytes change places.
      .format = {bytes[3], bytes[4], bytes[6], bytes[5], bytes[7]},
      .lengths = read_table(bytes + 12),
      .to_ascii = read_table(bytes + 20),
      .attributes = read_table(bytes + 28),
      .soundex = read_table(bytes + 36),
  };
}

void set_name(com_charattr& record, const char* name, size_t length) {
  const size_t kept = std::min(length, kNameCapacity);
  record.name_length = static_cast<uint16_t>(kept);
  std::fill(std::copy_n(name, kept, record.name), std::end(record.name), '\0');
}

bool build_record(int32_t kind, uint8_t id, const char* name, const uint8_t* image,
                  com_charattr& record) {
  switch (kind) {
    case COM_IMAGE_SINGLE_BYTE:
      fill_single_byte(image, record);
      break;
    case COM_IMAGE_MULTIBYTE:
      fill_multibyte(image, record);
      break;
    default:
      return false;
  }
  record.id = id;
  if (name == nullptr) name = "";
  set_name(record, name, strnlen(name, kNameCapacity));
  return true;
}

}  // namespace tvx::charset
