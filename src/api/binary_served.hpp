// The pairs between binary data and values of fixed size, of which the exported functions are made,
// and all pairs of the default table with binary data or among strings.
#pragma once

#include "api/exports.hpp"
#include "api/served.hpp"
#include "convert/binary_copy.hpp"
#include "convert/locator.hpp"
#include "convert/money_conversion.hpp"
#include "convert/numeric_conversion.hpp"
#include "tvxcomn/binary.h"

namespace tvx::api {

// Bit and the dates go to binary data in families of their own. Of the destinations, dates and
// times that come from bin are checked; bit and num are missing, being no plain copies.
#define TVX_BINARY_SOURCES(X) X(i1) X(i2) X(i4) X(i8) X(flt4) X(flt8) X(money) X(mny4) X(num)
#define TVX_BINARY_DESTINATIONS(X) \
  X(i1) X(i2) X(i4) X(i8) X(ui2) X(ui4) X(ui8) X(flt4) X(flt8) X(money) X(mny4) X(datetime) X(date4)
#define TVX_CHECKED_DESTINATIONS(X) X(datea) X(timea)

#define TVX_TO_BINARY(S)                                                 \
  Served{convert::type::S::codes, convert::kBinFamily, comn_##S##tobin}, \
      Served{convert::type::S::codes, convert::kVarbin, comn_##S##tovarbin},
#define TVX_UNSIGNED_TO_BINARY(S)                                    \
  Served{convert::type::S::codes, convert::kBinFamily,               \
         traced_call<convert::fixed_type_to_bin<convert::type::S>>}, \
      Served{convert::type::S::codes, convert::kVarbin,              \
             traced_call<convert::fixed_type_to_varbin<convert::type::S>>},
#define TVX_FROM_BINARY(D)                                                                  \
  Served{convert::kBinFamily, convert::destination_codes<convert::type::D>, comn_binto##D}, \
      Served{convert::kVarbin, convert::destination_codes<convert::type::D>, comn_varbinto##D},
#define TVX_BIG_FROM_BINARY(D)                                                               \
  Served{convert::kBinFamily, convert::type::D::codes,                                       \
         traced_call<convert::binary_to_fixed_type<convert::Form::kBin, convert::type::D>>}, \
      Served{convert::kVarbin, convert::type::D::codes,                                      \
             traced_call<                                                                    \
                 convert::binary_to_fixed_type<convert::Form::kVarbinRecord, convert::type::D>>},

inline constexpr std::array kFixedBinaryServed{
    TVX_BINARY_SOURCES(TVX_TO_BINARY)          //
    TVX_EACH_UNSIGNED(TVX_UNSIGNED_TO_BINARY)  //
    TVX_BINARY_DESTINATIONS(TVX_FROM_BINARY)   //
    TVX_CHECKED_DESTINATIONS(TVX_FROM_BINARY)  //
    TVX_FROM_BINARY(bit)                       //
    TVX_FROM_BINARY(num)                       //
    TVX_BIG_FROM_BINARY(bigdatetime)           //
    TVX_BIG_FROM_BINARY(bigtime)               //
};

#undef TVX_TO_BINARY
#undef TVX_UNSIGNED_TO_BINARY
#undef TVX_FROM_BINARY
#undef TVX_BIG_FROM_BINARY

// 13 source codes and 21 destination codes with 4 binary ones each.
static_assert(count_pairs(kFixedBinaryServed) == (13 + 21) * 4);

// ---- Strings -----------------------------------------------------------------------------------

// The codes that numbers are converted with go everywhere among strings. Each other code of the
// char family goes to those, to itself and to varchar; char34 also to and from binary data.
inline constexpr convert::CodeSet kTexts = convert::kNumberTextCodes;
inline constexpr convert::CodeSet kChar21{TVX_TYPE_CHAR21};
inline constexpr convert::CodeSet kChar22{TVX_TYPE_CHAR22};
inline constexpr convert::CodeSet kChar34{TVX_TYPE_CHAR34};
inline constexpr convert::CodeSet kTextsOfBinary = kTexts | kChar34;

inline constexpr convert::CodeSet kChar{TVX_TYPE_CHAR};
inline constexpr convert::CodeSet kTextLocator{TVX_TYPE_LOCATOR37};
inline constexpr convert::CodeSet kImageLocator{TVX_TYPE_LOCATOR38};
inline constexpr convert::CodeSet kUnicodeLocator{TVX_TYPE_LOCATOR39};

inline constexpr std::array kStringsServed{
    Served{kTexts, convert::kCharFamily, comn_chartochar},
    Served{kChar21, kTexts | kChar21, comn_chartochar},
    Served{kChar22, kTexts | kChar22, comn_chartochar},
    Served{kChar34, kTexts | kChar34, comn_chartochar},
    Served{convert::kCharFamily, convert::kVarchar, comn_chartovarchar},
    Served{kTextsOfBinary, convert::kBinFamily, comn_chartobin},
    Served{kTextsOfBinary, convert::kVarbin, comn_chartovarbin},

    Served{convert::kVarchar, convert::kCharFamily, comn_varchartochar},
    Served{convert::kVarchar, convert::kVarchar, comn_varchartovarchar},
    Served{convert::kVarchar, convert::kBinFamily, comn_varchartobin},
    Served{convert::kVarchar, convert::kVarbin, comn_varchartovarbin},

    Served{convert::kBinFamily, kTextsOfBinary, comn_bintochar},
    Served{convert::kBinFamily, convert::kVarchar, comn_bintovarchar},
    Served{convert::kBinFamily, convert::kBinFamily, comn_bintobin},
    Served{convert::kBinFamily, convert::kVarbin, comn_bintovarbin},

    Served{convert::kVarbin, kTextsOfBinary, comn_varbintochar},
    Served{convert::kVarbin, convert::kVarchar, comn_varbintovarchar},
    Served{convert::kVarbin, convert::kBinFamily, comn_varbintobin},
    Served{convert::kVarbin, convert::kVarbin, comn_varbintovarbin},

    Served{kChar, convert::kLocators, traced_call<convert::char_to_locator>},
    Served{convert::kLocators, kChar, comn_locatortochar},
    Served{kTextLocator, {TVX_TYPE_TEXT}, traced_call<convert::locator_to_text>},
    Served{kImageLocator, {TVX_TYPE_IMAGE}, traced_call<convert::locator_to_image>},
    Served{kTextLocator, kTextLocator, comn_locatortolocator},
    Served{kImageLocator, kImageLocator, comn_locatortolocator},
    Served{kUnicodeLocator, kUnicodeLocator, comn_locatortolocator},
};

// Char codes: 3 go to 6, 3 to 4, all to varchar, 4 to 4 binary codes. Varchar to 6 + 1 text and 4
// binary codes. 4 binary codes to 4 + 1 text and 4 binary ones. Locators: 3 + 3, 2, 3.
static_assert(count_pairs(kStringsServed) ==
              (3 * 6 + 3 * 4 + 6 + 4 * 4) + (7 + 4) + 4 * (5 + 4) + 11);

inline constexpr auto kBinaryServed = all_of(kFixedBinaryServed, kStringsServed);

}  // namespace tvx::api
