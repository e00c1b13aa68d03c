// Exported functions of numbertext.h.
#include "tvxcomn/numbertext.h"

#include "api/exports.hpp"
#include "charset/ascii_mapping.hpp"
#include "convert/hex_integer.hpp"
#include "convert/number_text.hpp"
#include "numeric/field_write.hpp"

using namespace tvx::convert;
namespace rt = tvx::runtime;

#define FROM_TEXT(T, D) \
  TVX_EXPORT_CONVERSION(comn_##T##to##D, text_to_number<type::text_##T, type::D>)
#define BARE_FROM_TEXT(T, D) TVX_EXPORT_BARE(comnb_##T##to##D, bare_text_to_number<type::D>)
#define TO_TEXT(S, T) \
  TVX_EXPORT_CONVERSION(comn_##S##to##T, number_to_text<type::S, type::text_##T>)
#define BARE_TO_TEXT(S, T) \
  TVX_EXPORT_BARE(comnb_##S##to##T, bare_number_to_text<type::S, type::text_##T>)

TVX_TO_EACH_SCALAR(FROM_TEXT, char)
TVX_TO_EACH_SCALAR(FROM_TEXT, varchar)
TVX_TO_EACH_SCALAR(BARE_FROM_TEXT, char)
TVX_TO_EACH_SCALAR(BARE_FROM_TEXT, varchar)

TVX_EXPORTED_NUMBERS(TO_TEXT, char)
TVX_EXPORTED_NUMBERS(TO_TEXT, varchar)
TVX_EXPORTED_NUMBERS(BARE_TO_TEXT, char)
TVX_EXPORTED_NUMBERS(BARE_TO_TEXT, varchar)
TVX_UNSIGNED_NUMBERS(BARE_TO_TEXT, char)
TVX_UNSIGNED_NUMBERS(BARE_TO_TEXT, varchar)

// ---- Hexadecimal text --------------------------------------------------------------------------

TVX_EXPORT_BARE(comnb_hextoi4, hex_to_integer<uint32_t>)
TVX_EXPORT_BARE(comnb_hextoi8, hex_to_integer<uint64_t>)
TVX_EXPORT_BARE(comnb_hextoui4, hex_to_integer<uint32_t>)
TVX_EXPORT_BARE(comnb_hextoui8, hex_to_integer<uint64_t>)
TVX_EXPORT_BARE(comnb_i4tohex, integer_to_hex<uint32_t>)
TVX_EXPORT_BARE(comnb_i8tohex, integer_to_hex<uint64_t>)
TVX_EXPORT_BARE(comnb_ui4tohex, integer_to_hex<uint32_t>)
TVX_EXPORT_BARE(comnb_ui8tohex, integer_to_hex<uint64_t>)

// ---- Parsers -----------------------------------------------------------------------------------

#define PARSER(name, Integer)                                                    \
  extern "C" int32_t name(const char* text, int32_t length, Integer* value,      \
                          const com_charattr* attributes) {                      \
    rt::require_pointers({text, value});                                         \
    const auto result = parse_integer_text<Integer>({text, length}, attributes); \
    *value = result.value;                                                       \
    return result.status;                                                        \
  }

PARSER(com__chtoi2_mb, int16_t)
PARSER(com__chtoi4_mb, int32_t)
PARSER(com__chtoi8_mb, int64_t)
PARSER(com__chtoui2_mb, uint16_t)
PARSER(com__chtoui4_mb, uint32_t)
PARSER(com__chtoui8_mb, uint64_t)

extern "C" {

int32_t com__conv2ascii(const char* text, int32_t length, char* out, int32_t capacity,
                        const com_charattr* attributes) {
  rt::require_pointer(text);
  rt::require_pointer(out);
  return tvx::charset::map_to_ascii(text, length, out, capacity, attributes);
}

// ---- Field writers -----------------------------------------------------------------------------

int32_t com__itochar(int32_t value, char* destination, int32_t width) {
  rt::require_pointer(destination);
  return tvx::numeric::write_number(value, destination, width);
}

int32_t com__cpint(char* destination, int32_t value, int32_t trailing, int32_t width) {
  rt::require_pointer(destination);
  return tvx::numeric::write_field(destination, value, static_cast<char>(trailing), width);
}

int32_t com__cpchar(char* destination, const char* source, int32_t trailing, int32_t maximum) {
  rt::require_pointer(destination);
  rt::require_pointer(source);
  return tvx::numeric::write_name(destination, source, static_cast<char>(trailing), maximum);
}

}  // extern "C"
