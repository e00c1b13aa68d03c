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

// ---- Values of fixed size ----------------------------------------------------------------------

#define TO_BINARY(S)                                                 \
  TVX_EXPORT_CONVERSION(comn_##S##tobin, fixed_type_to_bin<type::S>) \
  TVX_EXPORT_CONVERSION(comn_##S##tovarbin, fixed_type_to_varbin<type::S>)
#define FROM_BINARY(D)                                                            \
  TVX_EXPORT_CONVERSION(comn_binto##D, binary_to_fixed_type<Form::kBin, type::D>) \
  TVX_EXPORT_CONVERSION(comn_varbinto##D, binary_to_fixed_type<Form::kVarbinRecord, type::D>)
#define CHECKED_FROM_BINARY(D)                                       \
  TVX_EXPORT_CONVERSION(comn_binto##D, bin_to_checked_type<type::D>) \
  TVX_EXPORT_CONVERSION(comn_varbinto##D, binary_to_fixed_type<Form::kVarbinRecord, type::D>)

TVX_BINARY_SOURCES(TO_BINARY)
TVX_BINARY_DESTINATIONS(FROM_BINARY)
TVX_CHECKED_DESTINATIONS(CHECKED_FROM_BINARY)

TVX_EXPORT_CONVERSION(comn_bintobit, binary_to_bit<Form::kBin>)
TVX_EXPORT_CONVERSION(comn_varbintobit, binary_to_bit<Form::kVarbinRecord>)
TVX_EXPORT_CONVERSION(comn_bintonum, binary_to_num<Form::kBin>)
TVX_EXPORT_CONVERSION(comn_varbintonum, binary_to_num<Form::kVarbinRecord>)

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
EXPORT_SIZED(comn_bintofixed, checked_binary_to_fixed<Form::kBin>)
EXPORT_SIZED(comn_varbintofixed, checked_binary_to_fixed<Form::kVarbinRecord>)

// ---- Hexadecimal text --------------------------------------------------------------------------

TVX_EXPORT_CONVERSION(comn_bintochar, binary_to_char<Form::kBin>)
TVX_EXPORT_CONVERSION(comn_bintovarchar, binary_to_varchar<Form::kBin>)
TVX_EXPORT_CONVERSION(comn_varbintochar, binary_to_char<Form::kVarbinRecord>)
TVX_EXPORT_CONVERSION(comn_varbintovarchar, binary_to_varchar<Form::kVarbinRecord>)
TVX_EXPORT_CONVERSION(comn_chartobin, text_to_bin<Form::kText>)
TVX_EXPORT_CONVERSION(comn_chartovarbin, char_to_varbin)
TVX_EXPORT_CONVERSION(comn_varchartobin, text_to_bin<Form::kVarcharRecord>)
TVX_EXPORT_CONVERSION(comn_varchartovarbin, varchar_to_varbin)

// ---- Copies ------------------------------------------------------------------------------------

TVX_EXPORT_CONVERSION(comn_bintobin, binary_to_bin<Form::kBin>)
TVX_EXPORT_CONVERSION(comn_bintovarbin, bin_to_varbin)
TVX_EXPORT_CONVERSION(comn_varbintobin, binary_to_bin<Form::kVarbinRecord>)
TVX_EXPORT_CONVERSION(comn_varbintovarbin, varbin_to_varbin)
TVX_EXPORT_CONVERSION(comn_chartochar, text_to_char<Form::kText>)
TVX_EXPORT_CONVERSION(comn_chartovarchar, text_to_varchar<Form::kText>)
TVX_EXPORT_CONVERSION(comn_varchartochar, text_to_char<Form::kVarcharRecord>)
TVX_EXPORT_CONVERSION(comn_varchartovarchar, text_to_varchar<Form::kVarcharRecord>)

// ---- Locators ----------------------------------------------------------------------------------

TVX_EXPORT_CONVERSION(comn_locatortochar, locator_to_char)
TVX_EXPORT_CONVERSION(comn_locatortolocator, locator_to_locator)

// ---- The bare layer ----------------------------------------------------------------------------

TVX_EXPORT_BARE(comnb_bintobit, bare_bin_to_bit)
TVX_EXPORT_BARE(comnb_bintonum, bare_bin_to_num)
TVX_EXPORT_BARE(comnb_bintodate, bare_bin_to_fixed_type<type::datetime>)
TVX_EXPORT_BARE(comnb_bintodatea, bare_bin_to_checked_type<type::datea>)
TVX_EXPORT_BARE(comnb_bintotimea, bare_bin_to_checked_type<type::timea>)
TVX_EXPORT_BARE(comnb_bintobigdatetime, bare_bin_to_fixed_type<type::bigdatetime>)
TVX_EXPORT_BARE(comnb_bintobigtime, bare_bin_to_fixed_type<type::bigtime>)
TVX_EXPORT_BARE(comnb_chartochar, bare_text_to_char)
TVX_EXPORT_BARE(comnb_chartovarchar, bare_text_to_varchar)
TVX_EXPORT_BARE(comnb_varchartochar, bare_text_to_char)
TVX_EXPORT_BARE(comnb_varchartovarchar, bare_text_to_varchar)
TVX_EXPORT_BARE(comnb_anytofixed, bare_any_to_fixed)
TVX_EXPORT_BARE(comnb_anytovar, bare_any_to_var)
