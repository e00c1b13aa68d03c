// Exported functions of legacy.h: each family is one template and the list of its members.
#include "tvxcomn/legacy.h"

#include "convert/date_types.hpp"
#include "convert/legacy_bytes.hpp"
#include "convert/legacy_dates.hpp"
#include "convert/legacy_numbers.hpp"
#include "convert/legacy_numeric.hpp"
#include "tvxcomn/binary.h"
#include "tvxcomn/money.h"
#include "tvxcomn/numeric.h"
#include "tvxcomn/scalar.h"

using namespace tvx::convert;
using namespace tvx::convert::legacy;

// ---- The signatures ----------------------------------------------------------------------------

// `...` is a template over a LegacyCall.
#define EXPORT(name, ...)                                                               \
  extern "C" int32_t name(const void* source, int32_t source_length, void* destination, \
                          int32_t destination_length) {                                 \
    return __VA_ARGS__({source, source_length, destination, destination_length});       \
  }

// With further parameters, which go to the template as `passed`.
#define EXPORT_WITH(name, parameters, passed, ...)                                                 \
  extern "C" int32_t name(const void* source, int32_t source_length, void* destination,            \
                          int32_t destination_length, TVX_LIST parameters) {                       \
    return __VA_ARGS__({source, source_length, destination, destination_length}, TVX_LIST passed); \
  }
#define TVX_LIST(...) __VA_ARGS__

#define EXPORT_MB(name, ...) \
  EXPORT_WITH(name, (const com_charattr* attributes), (attributes), __VA_ARGS__)

#define EACH_SCALAR(X, S) X(S, i1) X(S, i2) X(S, i4) X(S, flt4) X(S, flt8)
#define EACH_TEXT(X, S) X(S, char) X(S, string) X(S, ntbstring) X(S, varychar)

// ---- Numbers among themselves and to text ------------------------------------------------------

#define NARROW(S, D) EXPORT(com_##S##to##D, narrow<type::S, type::D>)
EACH_SCALAR(NARROW, i1)
EACH_SCALAR(NARROW, i2)
EACH_SCALAR(NARROW, i4)
EACH_SCALAR(NARROW, flt4)
EACH_SCALAR(NARROW, flt8)

#define INTEGER_TO_TEXT(S, T) EXPORT(com_##S##to##T, integer_to_text<type::S, to_##T>)
EACH_TEXT(INTEGER_TO_TEXT, i1)
EACH_TEXT(INTEGER_TO_TEXT, i2)
EACH_TEXT(INTEGER_TO_TEXT, i4)

#define FLOAT_TO_TEXT(S, T)                                                   \
  EXPORT_WITH(com_##S##to##T, (int32_t leaves_out_point), (leaves_out_point), \
              float_to_text<type::S, to_##T>)
EACH_TEXT(FLOAT_TO_TEXT, flt4)
EACH_TEXT(FLOAT_TO_TEXT, flt8)

#define MONEY_TO_TEXT(S, T) EXPORT(com_##S##to##T, legacy::money_to_text<type::S, to_##T>)
EACH_TEXT(MONEY_TO_TEXT, money)
EACH_TEXT(MONEY_TO_TEXT, mny4)

// ---- Text to numbers ---------------------------------------------------------------------------

extern "C" {
namespace {
constexpr const com_charattr* kBuiltIn = nullptr;
}
}

#define TEXT_TO_INTEGER(T, D)                                                                     \
  EXPORT_MB(com_mb_##T##to##D, text_to_integer<from_##T, type::D>)                                \
  extern "C" int32_t com_##T##to##D(const void* source, int32_t source_length, void* destination, \
                                    int32_t destination_length) {                                 \
    return com_mb_##T##to##D(source, source_length, destination, destination_length, kBuiltIn);   \
  }
#define TEXT_TO_EACH_INTEGER(T) \
  TEXT_TO_INTEGER(T, i1)        \
  TEXT_TO_INTEGER(T, i2)        \
  TEXT_TO_INTEGER(T, i4)
TEXT_TO_EACH_INTEGER(char)
TEXT_TO_EACH_INTEGER(varychar)

#define TEXT_TO_FLOAT(T, D)                                \
  EXPORT(com_##T##to##D, text_to_float<from_##T, type::D>) \
  EXPORT_MB(com_mb_##T##to##D, examined_text_to_float<from_##T, type::D>)
TEXT_TO_FLOAT(char, flt4)
TEXT_TO_FLOAT(char, flt8)
TEXT_TO_FLOAT(varychar, flt4)
TEXT_TO_FLOAT(varychar, flt8)

EXPORT(com_chartobit, text_to_bit<from_char>)
EXPORT(com_varychartobit, text_to_bit<from_varychar>)
EXPORT(com_chartomoney, legacy::text_to_money<from_char, type::money>)
EXPORT(com_chartomny4, legacy::text_to_money<from_char, type::mny4>)
EXPORT(com_varychartomoney, legacy::text_to_money<from_varychar, type::money>)
EXPORT(com_varychartomny4, legacy::text_to_money<from_varychar, type::mny4>)

// ---- Text and binary data ----------------------------------------------------------------------

#define COPY_TEXT(S, T) EXPORT(com_##S##to##T, copy_text<from_##S, to_##T>)
EACH_TEXT(COPY_TEXT, char)
EACH_TEXT(COPY_TEXT, varychar)

#define BYTES_TO_TEXT(S, T) EXPORT(com_##S##to##T, bytes_to_text<to_##T>)
EACH_TEXT(BYTES_TO_TEXT, bin)
EXPORT(com_chartobinary, text_to_bytes<from_char>)
EXPORT(com_varychartobinary, text_to_bytes<from_varychar>)
EXPORT(com_anytobinary, copy_bytes<to_binary>)
EXPORT(com_anytovarybin, copy_bytes<to_varybin>)

#define COPY_TO_FIXED(S, D) EXPORT(com_##S##to##D, copy_to_fixed<from_##S, type::D>)
#define COPY_TO_EACH_FIXED(S)   \
  EACH_SCALAR(COPY_TO_FIXED, S) \
  COPY_TO_FIXED(S, money) COPY_TO_FIXED(S, mny4) COPY_TO_FIXED(S, datetime) COPY_TO_FIXED(S, date4)
COPY_TO_EACH_FIXED(bin)
COPY_TO_EACH_FIXED(varybin)

// ---- Exact numerics ----------------------------------------------------------------------------

#define TO_NUMERIC(S, routine, code, ...)                         \
  EXPORT_WITH(com_##S##tonum, (int32_t precision, int32_t scale), \
              ((NumericType{precision, scale})),                  \
              to_numeric<routine, code __VA_OPT__(, ) __VA_ARGS__>)
#define MB_TO_NUMERIC(S, routine, code, ...)                                      \
  EXPORT_WITH(com_mb_##S##tonum,                                                  \
              (int32_t precision, int32_t scale, const com_charattr* attributes), \
              (NumericType{precision, scale}, attributes), to_numeric<routine, code, __VA_ARGS__>)
TO_NUMERIC(bit, comn_bittonum, TVX_TYPE_BIT)
TO_NUMERIC(i1, comn_i1tonum, TVX_TYPE_I1)
TO_NUMERIC(i2, comn_i2tonum, TVX_TYPE_I2)
TO_NUMERIC(i4, comn_i4tonum, TVX_TYPE_I4)
TO_NUMERIC(flt4, comn_flt4tonum, TVX_TYPE_FLT4)
TO_NUMERIC(flt8, comn_flt8tonum, TVX_TYPE_FLT8)
TO_NUMERIC(money, comn_moneytonum, TVX_TYPE_MONEY)
TO_NUMERIC(mny4, comn_mny4tonum, TVX_TYPE_MNY4)
TO_NUMERIC(num, comn_numtonum, TVX_TYPE_NUM)
TO_NUMERIC(bin, comn_bintonum, TVX_TYPE_BIN)
TO_NUMERIC(varybin, comn_varbintonum, TVX_TYPE_VARBIN, from_whole_record)
TO_NUMERIC(char, comn_chartonum, TVX_TYPE_CHAR)
TO_NUMERIC(varychar, comn_chartonum, TVX_TYPE_CHAR, from_varychar)
MB_TO_NUMERIC(char, comn_chartonum, TVX_TYPE_CHAR, from_char)
MB_TO_NUMERIC(varychar, comn_chartonum, TVX_TYPE_CHAR, from_varychar)

#define FROM_NUMERIC(D, code) EXPORT(com_numto##D, numeric_to_fixed<comn_numto##D, code>)
FROM_NUMERIC(bit, TVX_TYPE_BIT)
FROM_NUMERIC(i1, TVX_TYPE_I1)
FROM_NUMERIC(i2, TVX_TYPE_I2)
FROM_NUMERIC(i4, TVX_TYPE_I4)
FROM_NUMERIC(flt4, TVX_TYPE_FLT4)
FROM_NUMERIC(flt8, TVX_TYPE_FLT8)
FROM_NUMERIC(money, TVX_TYPE_MONEY)
FROM_NUMERIC(mny4, TVX_TYPE_MNY4)

#define NUMERIC_TO_TEXT(S, T) \
  EXPORT(com_##S##to##T, numeric_to_bytes<comn_numtochar, TVX_TYPE_CHAR, to_##T>)
EACH_TEXT(NUMERIC_TO_TEXT, num)
EXPORT(com_numtobinary, numeric_to_bytes<comn_numtobin, TVX_TYPE_BIN, to_raw>)
EXPORT(com_numtovarybin, numeric_to_bytes<comn_numtobin, TVX_TYPE_BIN, to_varybin>)

// ---- Dates -------------------------------------------------------------------------------------

#define DATE_TO_TEXT(exported, S, T)                                                   \
  EXPORT_WITH(com_##exported##to##T, (int32_t style, const char* const* short_months), \
              (style, short_months), date_to_text<type::S, to_##T>)
#define DATETIME_TO_TEXT(S, T) DATE_TO_TEXT(date, S, T)
#define DATE4_TO_TEXT(S, T) DATE_TO_TEXT(date4, S, T)
EACH_TEXT(DATETIME_TO_TEXT, datetime)
EACH_TEXT(DATE4_TO_TEXT, date4)

#define TEXT_TO_DATE(T, D)                                                                       \
  EXPORT_WITH(com_##T##to##D,                                                                    \
              (int32_t format_code, const char* const* months, const char* const* short_months), \
              (format_code, months, short_months, nullptr), text_to_date<from_##T, type::D>)
#define MB_TEXT_TO_DATE(T, D)                                                                   \
  EXPORT_WITH(com_mb_##T##to##D,                                                                \
              (int32_t format_code, const char* const* months, const char* const* short_months, \
               const com_charattr* attributes),                                                 \
              (format_code, months, short_months, attributes), text_to_date<from_##T, type::D>)
TEXT_TO_DATE(char, datetime)
TEXT_TO_DATE(char, date4)
TEXT_TO_DATE(varychar, datetime)
TEXT_TO_DATE(varychar, date4)
MB_TEXT_TO_DATE(char, datetime)
MB_TEXT_TO_DATE(varychar, datetime)

// ---- Null values -------------------------------------------------------------------------------

#define SET_NULL(name, kind)                                                                \
  extern "C" int32_t name(void* destination, int32_t destination_length, const void* value, \
                          int32_t value_length) {                                           \
    return set_null<kind>(destination, destination_length, value, value_length);            \
  }
SET_NULL(com_setcharnull, to_char)
SET_NULL(com_setstringnull, to_string)
SET_NULL(com_setntbstringnull, to_ntbstring)
SET_NULL(com_setvarycharnull, to_varychar)
SET_NULL(com_setbinarynull, to_binary)
SET_NULL(com_setvarybinnull, to_varybin)

#define SET_FIXED_NULL(name, T)                                                                  \
  extern "C" int32_t name(void* destination, int32_t, const void* value, int32_t value_length) { \
    return set_fixed_null<type::T>(destination, value, value_length);                            \
  }
SET_FIXED_NULL(com_setmoneynull, money)
SET_FIXED_NULL(com_setmny4null, mny4)
SET_FIXED_NULL(com_setflt4null, flt4)
SET_FIXED_NULL(com_setdatetimenull, datetime)
SET_FIXED_NULL(com_setdatetime4null, date4)

extern "C" {

int32_t com_setnumnull(void* destination, int32_t destination_length, const void* value,
                       int32_t value_length, int32_t precision, int32_t scale) {
  return set_numeric_null({value, value_length, destination, destination_length},
                          {precision, scale}, comn_numtonum);
}

// ---- Money arithmetic --------------------------------------------------------------------------

#define BINARY_OPERATION(name, T)                         \
  int32_t com_##name(const T* a, const T* b, T* result) { \
    return comn_##name(a, b, result);                     \
  }
#define UNARY_OPERATION(name, T)                        \
  int32_t com_##name(const T* source, T* destination) { \
    return comn_##name(source, destination);            \
  }
BINARY_OPERATION(mnyadd, comn_money)
BINARY_OPERATION(mnysub, comn_money)
BINARY_OPERATION(mnymul, comn_money)
BINARY_OPERATION(mnydivide, comn_money)
BINARY_OPERATION(mny4add, int32_t)
BINARY_OPERATION(mny4sub, int32_t)
BINARY_OPERATION(mny4mul, int32_t)
BINARY_OPERATION(mny4divide, int32_t)
UNARY_OPERATION(mnyminus, comn_money)
UNARY_OPERATION(mny4minus, int32_t)
UNARY_OPERATION(mnycopy, comn_money)

int32_t com_mnyinc(comn_money* value) {
  return comn_mnyinc(value);
}

int32_t com_mnydec(comn_money* value) {
  return comn_mnydec(value);
}

int32_t com_mnyscale(comn_money* value, uint32_t multiplier, int32_t addend) {
  return comn_mnyscale(value, multiplier, addend);
}

// ---- Helpers -----------------------------------------------------------------------------------

void com__padntbstring(char* text, int32_t length) {
  tvx::runtime::require_pointer(text);
  while (length > 0 && text[length - 1] == ' ') --length;
  text[std::max(length, 0)] = '\0';
}

void com_bmove(const void* from, void* to, int32_t count) {
  tvx::runtime::require_pointer(from);
  tvx::runtime::require_pointer(to);
  if (count > 0) std::memmove(to, from, static_cast<size_t>(count));
}

void com__bzero(void* to, int32_t count) {
  tvx::runtime::require_pointer(to);
  if (count > 0) std::memset(to, 0, static_cast<size_t>(count));
}

}  // extern "C"
