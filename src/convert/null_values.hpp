// The null values of one context: a table for this library's datatypes and a list for the caller's.
#pragma once

#include "convert/arguments.hpp"
#include "tvxcomn/context.h"

namespace tvx::convert {

// The codes below take a context whose table is initialised and codes that are not negative.

// CS_SUCCEED, or CS_MEM_ERROR with nothing left allocated.
int32_t init_nulls(comn_context& context);
void free_nulls(comn_context& context);

// CS_SUCCEED, or the result of the destination's completion step; CS_CONV_OVERFLOW for a caller's
// value that was cut.
int32_t get_null(const comn_context& context, const comn_datafmt& format, void* destination,
                 int32_t maximum_length, int32_t& output_length);

// CS_SUCCEED, or CS_MEM_ERROR with the code left without a value.
int32_t set_null(comn_context& context, int32_t datatype, const void* value, int32_t length);
int32_t reinstall_null(comn_context& context, int32_t datatype);

// The conversion from null23, and the cells of the default table that it fills.
inline constexpr CodeSet kNullSource{TVX_TYPE_NULL23};
inline constexpr CodeSet kNullDestinations = CodeSet::range(TVX_TYPE_CHAR, TVX_TYPE_BIGTIME);
int32_t null_to_any(const Call& call);

}  // namespace tvx::convert
