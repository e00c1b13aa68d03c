// The catalogue of datatypes: one row a code, and the families of codes that routines serve.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/code_set.hpp"
#include "tvxcomn/datatypes.h"

namespace tvx::convert {

using base::CodeSet;

inline constexpr int32_t kDatatypes = 40;  // codes from here on are the caller's

// Storage of the codes whose size the data format gives.
inline constexpr int32_t kSizedByFormat = 0;

struct Datatype {
  std::string_view name;
  int32_t storage;  // bytes, or kSizedByFormat
};

// By code. Two codes have no meaning in this library and no name.
inline constexpr std::array<Datatype, kDatatypes> kCatalogue{{
    /*  0 */ {"char", kSizedByFormat},
    /*  1 */ {"bin", kSizedByFormat},
    /*  2 */ {"char2", kSizedByFormat},
    /*  3 */ {"bin3", kSizedByFormat},
    /*  4 */ {"text", kSizedByFormat},
    /*  5 */ {"image", kSizedByFormat},
    /*  6 */ {"i1", 1},
    /*  7 */ {"i2", 2},
    /*  8 */ {"i4", 4},
    /*  9 */ {"flt4", 4},
    /* 10 */ {"flt8", 8},
    /* 11 */ {"bit", 1},
    /* 12 */ {"datetime", 8},
    /* 13 */ {"date4", 4},
    /* 14 */ {"money", 8},
    /* 15 */ {"mny4", 4},
    /* 16 */ {"num", 35},
    /* 17 */ {"num17", 35},
    /* 18 */ {"varchar", 258},
    /* 19 */ {"varbin", 258},
    /* 20 */ {"int20", kSizedByFormat},
    /* 21 */ {"char21", kSizedByFormat},
    /* 22 */ {"char22", kSizedByFormat},
    /* 23 */ {"null23", kSizedByFormat},
    /* 24 */ {"", kSizedByFormat},
    /* 25 */ {"unichar", 2},
    /* 26 */ {"", kSizedByFormat},
    /* 27 */ {"datea", 4},
    /* 28 */ {"timea", 4},
    /* 29 */ {"unichar29", kSizedByFormat},
    /* 30 */ {"i8", 8},
    /* 31 */ {"ui2", 2},
    /* 32 */ {"ui4", 4},
    /* 33 */ {"ui8", 8},
    /* 34 */ {"char34", kSizedByFormat},
    /* 35 */ {"bigdatetime", 8},
    /* 36 */ {"bigtime", 8},
    /* 37 */ {"locator37", kSizedByFormat},
    /* 38 */ {"locator38", kSizedByFormat},
    /* 39 */ {"locator39", kSizedByFormat},
}};

[[nodiscard]] constexpr int32_t storage_size(int32_t datatype, int32_t maxlength) {
  if (datatype < 0 || datatype >= kDatatypes) return maxlength;
  const int32_t storage = kCatalogue[static_cast<size_t>(datatype)].storage;
  return storage == kSizedByFormat ? maxlength : storage;
}

// The codes that the routines of a family accept.
inline constexpr CodeSet kCharFamily{TVX_TYPE_CHAR,   TVX_TYPE_CHAR2,  TVX_TYPE_TEXT,
                                     TVX_TYPE_CHAR21, TVX_TYPE_CHAR22, TVX_TYPE_CHAR34};
inline constexpr CodeSet kBinFamily{TVX_TYPE_BIN, TVX_TYPE_BIN3, TVX_TYPE_IMAGE};
inline constexpr CodeSet kVarchar{TVX_TYPE_VARCHAR};
inline constexpr CodeSet kVarbin{TVX_TYPE_VARBIN};
inline constexpr CodeSet kI8Family{TVX_TYPE_INT20, TVX_TYPE_I8};

// The character codes that the default table converts to and from numbers; the other codes of the
// char family have few conversions.
inline constexpr CodeSet kNumberTextCodes{TVX_TYPE_CHAR, TVX_TYPE_CHAR2, TVX_TYPE_TEXT};

inline constexpr int32_t kVarRecordSize =
    258;  // reported for varchar and varbin whatever their length
inline constexpr int32_t kVarDataSize = 256;

}  // namespace tvx::convert
