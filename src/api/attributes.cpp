// Exported functions of attributes.h.
#include "charset/attributes.hpp"

#include "charset/image.hpp"
#include "locale/character_attributes.hpp"
#include "runtime/diagnosis.hpp"
#include "tvxcomn/attributes.h"
#include "tvxcomn/support.h"

namespace charset = tvx::charset;
namespace rt = tvx::runtime;

namespace {

const uint8_t* bytes(const char* text) {
  return reinterpret_cast<const uint8_t*>(text);
}

uint8_t* bytes(char* text) {
  return reinterpret_cast<uint8_t*>(text);
}

const char* text(const uint8_t* bytes) {
  return reinterpret_cast<const char*>(bytes);
}

charset::Entry entry(const com_charattr* record, const char* character,
                     int32_t line = __builtin_LINE()) {
  rt::require_pointer(character, __FILE__, line);
  return charset::entry(charset::record_or_builtin(record), bytes(character));
}

int32_t flags(const com_charattr* record, const char* character, uint32_t mask,
              int32_t line = __builtin_LINE()) {
  return static_cast<int32_t>(entry(record, character, line).flags & mask);
}

}  // namespace

extern "C" {

com_charattr* com_alloc_char_attrib(void) {
  return static_cast<com_charattr*>(comn_malloc(sizeof(com_charattr)));
}

int32_t com_build_char_attrib(int32_t kind, int32_t id, const char* name, const void* image,
                              com_charattr* record) {
  if (image == nullptr || record == nullptr) return 0;
  const auto* tables = static_cast<const uint8_t*>(image);
  return charset::build_record(kind, static_cast<uint8_t>(id), name, tables, *record) ? 1 : 0;
}

const com_charattr* com_get_charattrib(void) {
  return &charset::builtin_record();
}

const uint8_t* com_get_typemap(void) {
  return charset::builtin_record().attributes;
}

int32_t comn_isalpha(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_UPPER | COM_ATTR_LOWER);
}

int32_t comn_isupper(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_UPPER);
}

int32_t comn_islower(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_LOWER);
}

int32_t comn_isdigit(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_DIGIT);
}

int32_t comn_isxdigit(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_XDIGIT);
}

int32_t comn_isspace(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_SPACE);
}

int32_t comn_ispunct(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_PUNCT);
}

int32_t comn_isgraph(const com_charattr* record, const char* character) {
  return flags(record, character, COM_ATTR_GRAPH);
}

int32_t comn_get_lex(const com_charattr* record, const char* character) {
  return entry(record, character).lexical_class;
}

int32_t comn_char_width(const com_charattr* record, const char* character) {
  rt::require_pointer(character);
  return charset::char_width(charset::record_or_builtin(record), bytes(character));
}

int32_t comn_disp_width(const com_charattr* record, const char* character) {
  rt::require_pointer(character);
  return charset::display_width(charset::record_or_builtin(record), bytes(character));
}

int32_t comn_to_ascii(const com_charattr* record, const char* character) {
  rt::require_pointer(character);
  return charset::to_ascii(charset::record_or_builtin(record), bytes(character));
}

void comn_toupper(const com_charattr* record, const char* character, char* destination) {
  rt::require_pointer(character);
  rt::require_pointer(destination);
  charset::to_upper(charset::record_or_builtin(record), bytes(character), bytes(destination));
}

void comn_tolower(const com_charattr* record, const char* character, char* destination) {
  rt::require_pointer(character);
  rt::require_pointer(destination);
  charset::to_lower(charset::record_or_builtin(record), bytes(character), bytes(destination));
}

const char* comn_inc_char(const com_charattr* record, const char** position) {
  rt::require_pointer(position);
  *position += comn_char_width(record, *position);
  return *position;
}

void comn_whole_char(const com_charattr* record, const char* start, const char* end,
                     int32_t* whole_bytes, int32_t* split_before, int32_t* split_beyond,
                     int32_t* characters) {
  rt::require_pointer(start);
  rt::require_pointer(end);
  rt::require_pointer(whole_bytes);
  rt::require_pointer(split_before);
  rt::require_pointer(split_beyond);
  rt::require_pointer(characters);
  const charset::WholeCharacters met =
      charset::whole_characters(charset::record_or_builtin(record), bytes(start), bytes(end));
  *whole_bytes = met.bytes;
  *split_before = met.split_before;
  *split_beyond = met.split_beyond;
  *characters = met.characters;
}

void comn_str_to_ascii(const char* source, int32_t length, char* destination,
                       int32_t* output_length, const com_charattr* record) {
  rt::require_pointer(source);
  rt::require_pointer(destination);
  rt::require_pointer(output_length);
  rt::require(length >= 0);
  *output_length = charset::text_to_ascii(charset::record_or_builtin(record), bytes(source), length,
                                          bytes(destination), length);
}

const char* comn_mb_strchr(const com_charattr* record, const char* string, int32_t byte) {
  rt::require_pointer(string);
  return text(charset::find_char(charset::record_or_builtin(record), bytes(string),
                                 static_cast<uint8_t>(byte)));
}

const com_charattr* com_intl_charattr(comn_context* context, const comn_datafmt* format) {
  static constexpr comn_context no_context{};
  static constexpr comn_datafmt no_format{};
  return tvx::locale::character_attributes(context != nullptr ? *context : no_context,
                                           format != nullptr ? *format : no_format);
}

}  // extern "C"
