// What the library is measured against: plain functions in a shared object of their own, so that a
// peer costs its caller the same kind of call as the library does.
#pragma once

#include <cstdint>

#include "tvxcomn/datatypes.h"

namespace tvx::bench::peers {

// ---- Number text -------------------------------------------------------------------------------

// std::to_chars; doubles in general form with 17 digits. Return the bytes written, 0 when the text
// does not fit.
TVXCOMN_API int32_t std_to_chars(int32_t value, char* out, int32_t capacity);
TVXCOMN_API int32_t std_to_chars(int64_t value, char* out, int32_t capacity);
TVXCOMN_API int32_t std_to_chars(uint32_t value, char* out, int32_t capacity);
TVXCOMN_API int32_t std_to_chars(double value, char* out, int32_t capacity);

// std::from_chars and fast_float::from_chars. Return whether the whole text is one number in range.
TVXCOMN_API bool std_from_chars(const char* text, int32_t length, int32_t& value);
TVXCOMN_API bool std_from_chars(const char* text, int32_t length, int64_t& value);
TVXCOMN_API bool std_from_chars(const char* text, int32_t length, double& value);
TVXCOMN_API bool fast_float_from_chars(const char* text, int32_t length, double& value);

// ---- Money -------------------------------------------------------------------------------------

// Adds with a check. Returns CS_SUCCEED; CS_CONV_OVERFLOW with the result zero.
TVXCOMN_API int32_t add_checked(const int64_t* a, const int64_t* b, int64_t* result);

// Writes a count of ten-thousandths with four decimals by snprintf, and a zero byte. Returns the
// length without it.
TVXCOMN_API int32_t print_amount(int64_t amount, char* out, int32_t capacity);

// ---- Dispatch ----------------------------------------------------------------------------------

// A table of 40 x 40 routines, all of them the same empty one; the only one of its kind.
struct RoutineTable;
TVXCOMN_API const RoutineTable* routine_table();

// The routine of a pair, found with the checks of com_conv_func: a null table is fatal, a pair of
// codes outside it has no routine.
TVXCOMN_API comn_conversion* look_up(const RoutineTable* table, int32_t source,
                                     int32_t destination);

}  // namespace tvx::bench::peers
