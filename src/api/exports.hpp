// How a conversion becomes an exported function: the border between the C names and the bodies. The
// function's position, which a trace line names, is that of the macro's use.
#pragma once

#include "convert/arguments.hpp"

// A comn_ function that is exactly one conversion; `...` is a function over a Call.
#define TVX_EXPORT_CONVERSION(name, ...)                                                    \
  extern "C" int32_t name(comn_context* context, const comn_datafmt* source_format,         \
                          const void* source, const comn_datafmt* destination_format,       \
                          void* destination, int32_t* output_length) {                      \
    return tvx::runtime::traced(__VA_ARGS__(                                                \
        {context, source_format, source, destination_format, destination, output_length})); \
  }

// A comnb_ function that is exactly one bare conversion; `...` is a function over a BareCall.
#define TVX_EXPORT_BARE(name, ...)                                                 \
  extern "C" int32_t name(const comnb_context* context, const comnb_value* source, \
                          comnb_value* destination) {                              \
    return tvx::runtime::traced(__VA_ARGS__({context, source, destination}));      \
  }

// The scalar types, once for each place of a pair, so that lists of pairs can be made of them.
#define TVX_TO_EACH_SCALAR(X, S) \
  X(S, bit) X(S, i1) X(S, i2) X(S, i4) X(S, i8) X(S, ui2) X(S, ui4) X(S, ui8) X(S, flt4) X(S, flt8)

// The sources whose conversions are exported, and those that are reached through the table.
#define TVX_EACH_EXPORTED(X) X(bit) X(i1) X(i2) X(i4) X(i8) X(flt4) X(flt8)
#define TVX_EACH_UNSIGNED(X) X(ui2) X(ui4) X(ui8)

// All pairs with such a source.
#define TVX_FROM_EACH_EXPORTED(X) \
  TVX_TO_EACH_SCALAR(X, bit)      \
  TVX_TO_EACH_SCALAR(X, i1)       \
  TVX_TO_EACH_SCALAR(X, i2)       \
  TVX_TO_EACH_SCALAR(X, i4)       \
  TVX_TO_EACH_SCALAR(X, i8) TVX_TO_EACH_SCALAR(X, flt4) TVX_TO_EACH_SCALAR(X, flt8)
#define TVX_FROM_EACH_UNSIGNED(X) \
  TVX_TO_EACH_SCALAR(X, ui2) TVX_TO_EACH_SCALAR(X, ui4) TVX_TO_EACH_SCALAR(X, ui8)

// The numbers that are written as text: all scalars but bit, whose text has a rule of its own.
#define TVX_EXPORTED_NUMBERS(X, T) X(i1, T) X(i2, T) X(i4, T) X(i8, T) X(flt4, T) X(flt8, T)
#define TVX_UNSIGNED_NUMBERS(X, T) X(ui2, T) X(ui4, T) X(ui8, T)
