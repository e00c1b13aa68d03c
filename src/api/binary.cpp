// Exported functions of binary.h.
#include "tvxcomn/binary.h"

#include "api/binary_served.hpp"
#include "api/exports.hpp"
#include "convert/binary_copy.hpp"
#include "convert/character_copy.hpp"
#include "convert/hexadecimal.hpp"
#include "convert/locator.hpp"
#include "convert/money_conversion.hpp"
#include "convert/numeric_conversion.hpp"

using namespace tvx::convert;

static_assert(sizeof(comn_locator) == 48 && sizeof(comn_locator_chunk) == 24);

#define EXPORT(name, ...) TVX_EXPORT_CONVERSION(name, traced_call<__VA_ARGS__>)

// ---- Values of fixed size ----------------------------------------------------------------------

#define TO_BINARY(S)                                  \
  EXPORT(comn_##S##tobin, fixed_type_to_bin<type::S>) \
  EXPORT(comn_##S##tovarbin, fixed_type_to_varbin<type::S>)
#define FROM_BINARY(D)                                            \
  EXPORT(comn_binto##D, binary_to_fixed_type<Form::bin, type::D>) \
  EXPORT(comn_varbinto##D, binary_to_fixed_type<Form::varbin, type::D>)
#define CHECKED_FROM_BINARY(D)                        \
  EXPORT(comn_binto##D, bin_to_checked_type<type::D>) \
  EXPORT(comn_varbinto##D, binary_to_fixed_type<Form::varbin, type::D>)

TVX_BINARY_SOURCES(TO_BINARY)
TVX_BINARY_DESTINATIONS(FROM_BINARY)
TVX_CHECKED_DESTINATIONS(CHECKED_FROM_BINARY)

EXPORT(comn_bintobit, binary_to_bit<Form::bin>)
EXPORT(comn_varbintobit, binary_to_bit<Form::varbin>)
EXPORT(comn_bintonum, binary_to_num<Form::bin>)
EXPORT(comn_varbintonum, binary_to_num<Form::varbin>)

// A helper with a size.
#define EXPORT_SIZED(name, function)                                                              \
  extern "C" int32_t name(comn_context* context, const comn_datafmt* source_format,               \
                          const void* source, const comn_datafmt* destination_format,             \
                          void* destination, int32_t* output_length, int32_t size) {              \
    return tvx::runtime::traced(function(                                                         \
        {context, source_format, source, destination_format, destination, output_length}, size)); \
  }

EXPORT_SIZED(comn_fixedtobin, checked_fixed_to_bin)
EXPORT_SIZED(comn_fixedtovarbin, checked_fixed_to_varbin)
EXPORT_SIZED(comn_bintofixed, checked_binary_to_fixed<Form::bin>)
EXPORT_SIZED(comn_varbintofixed, checked_binary_to_fixed<Form::varbin>)

// ---- Hexadecimal text --------------------------------------------------------------------------

EXPORT(comn_bintochar, binary_to_char<Form::bin>)
EXPORT(comn_bintovarchar, binary_to_varchar<Form::bin>)
EXPORT(comn_varbintochar, binary_to_char<Form::varbin>)
EXPORT(comn_varbintovarchar, binary_to_varchar<Form::varbin>)
EXPORT(comn_chartobin, text_to_bin<Form::text>)
EXPORT(comn_chartovarbin, char_to_varbin)
EXPORT(comn_varchartobin, text_to_bin<Form::varchar>)
EXPORT(comn_varchartovarbin, varchar_to_varbin)

// ---- Copies ------------------------------------------------------------------------------------

EXPORT(comn_bintobin, binary_to_bin<Form::bin>)
EXPORT(comn_bintovarbin, bin_to_varbin)
EXPORT(comn_varbintobin, binary_to_bin<Form::varbin>)
EXPORT(comn_varbintovarbin, varbin_to_varbin)
TVX_EXPORT_CONVERSION(comn_chartochar, text_to_char<Form::text>)
EXPORT(comn_chartovarchar, text_to_varchar<Form::text>)
TVX_EXPORT_CONVERSION(comn_varchartochar, text_to_char<Form::varchar>)
EXPORT(comn_varchartovarchar, text_to_varchar<Form::varchar>)

// ---- Locators ----------------------------------------------------------------------------------

EXPORT(comn_locatortochar, locator_to_char)
EXPORT(comn_locatortolocator, locator_to_locator)

// ---- The bare layer ----------------------------------------------------------------------------

#define EXPORT_BARE(name, ...) TVX_EXPORT_BARE(name, traced_bare_call<__VA_ARGS__>)

EXPORT_BARE(comnb_bintobit, bare_bin_to_bit)
EXPORT_BARE(comnb_bintonum, bare_bin_to_num)
EXPORT_BARE(comnb_bintodate, bare_bin_to_fixed_type<type::datetime>)
EXPORT_BARE(comnb_bintodatea, bare_bin_to_checked_type<type::datea>)
EXPORT_BARE(comnb_bintotimea, bare_bin_to_checked_type<type::timea>)
EXPORT_BARE(comnb_bintobigdatetime, bare_bin_to_fixed_type<type::bigdatetime>)
EXPORT_BARE(comnb_bintobigtime, bare_bin_to_fixed_type<type::bigtime>)
EXPORT_BARE(comnb_chartochar, bare_text_to_char)
EXPORT_BARE(comnb_chartovarchar, bare_text_to_varchar)
EXPORT_BARE(comnb_varchartochar, bare_text_to_char)
EXPORT_BARE(comnb_varchartovarchar, bare_text_to_varchar)
EXPORT_BARE(comnb_anytofixed, bare_any_to_fixed)
EXPORT_BARE(comnb_anytovar, bare_any_to_var)
