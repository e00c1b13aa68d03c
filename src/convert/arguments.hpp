// The arguments of a conversion, and the checks with which every one begins. Breaking one is a
// fatal usage error.
//
// A conversion is a function over a Call or a BareCall that returns its result code. It becomes a C
// function, and its code is traced, where it leaves the library: in api/exports.hpp, or in
// api/served.hpp when it is reached through the table only.
#pragma once

#include "base/bytes.hpp"
#include "convert/catalogue.hpp"
#include "runtime/diagnosis.hpp"

namespace tvx::convert {

// The six arguments of a conversion of the data-format layer, as they were passed.
struct Call {
  comn_context* context;
  const comn_datafmt* source_format;
  const void* source;
  const comn_datafmt* destination_format;
  void* destination;
  int32_t* output_length;

  void require_pointers(const char* file = __builtin_FILE(),
                        int32_t line = __builtin_LINE()) const {
    // One by one: joined, they would become flag arithmetic twice as long.
    runtime::require_pointer(context, file, line);
    runtime::require_pointer(source_format, file, line);
    runtime::require_pointer(source, file, line);
    runtime::require_pointer(destination_format, file, line);
    runtime::require_pointer(destination, file, line);
    runtime::require_pointer(output_length, file, line);
  }

  // Also checks the pointers, which come first.
  void require_codes(CodeSet sources, CodeSet destinations, const char* file = __builtin_FILE(),
                     int32_t line = __builtin_LINE()) const {
    require_pointers(file, line);
    runtime::require(sources.contains(source_format->datatype) &&
                         destinations.contains(destination_format->datatype),
                     file, line);
  }
};

// The three arguments of a bare conversion.
struct BareCall {
  const comnb_context* context;
  const comnb_value* source;
  comnb_value* destination;

  void require_pointers(const char* file = __builtin_FILE(),
                        int32_t line = __builtin_LINE()) const {
    const bool all = context != nullptr && source != nullptr && destination != nullptr;
    if (!all) [[unlikely]]
      runtime::null_pointer(file, line);
  }

  void require_data(const char* file = __builtin_FILE(), int32_t line = __builtin_LINE()) const {
    require_pointers(file, line);
    const bool all = source->data != nullptr && destination->data != nullptr;
    if (!all) [[unlikely]]
      runtime::null_pointer(file, line);
  }

  // An empty text needs no data.
  void require_text_source(const char* file = __builtin_FILE(),
                           int32_t line = __builtin_LINE()) const {
    require_pointers(file, line);
    const bool all =
        (source->data != nullptr || source->length <= 0) && destination->data != nullptr;
    if (!all) [[unlikely]]
      runtime::null_pointer(file, line);
  }
};

// A text, or binary data, as a source delivers it.
struct Text {
  const char* data;
  int32_t length;  // bytes
};

// The text of a char family source, or the data of a bin family one, at least one byte long.
[[nodiscard]] inline Text char_source(const Call& call) {
  runtime::require(call.source_format->maxlength >= 1);
  return {static_cast<const char*>(call.source), call.source_format->maxlength};
}

// The text of a varchar record, or the data of a varbin one. A length that the record cannot hold
// is as fatal as none.
[[nodiscard]] inline Text varchar_source(const Call& call) {
  const auto length = base::load<int16_t>(call.source);
  runtime::require(length >= 1 && length <= kVarDataSize);
  return {static_cast<const char*>(call.source) + sizeof length, length};
}

[[nodiscard]] inline int32_t destination_capacity(const Call& call) {
  runtime::require(call.destination_format->maxlength >= 0);
  return call.destination_format->maxlength;
}

}  // namespace tvx::convert
