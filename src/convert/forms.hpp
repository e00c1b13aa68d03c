// The forms of binary data and text: the codes under which a form is known, where a source of that
// form keeps its bytes, and what is said of a value that is too long or too short for another form.
#pragma once

#include <array>

#include "convert/arguments.hpp"

namespace tvx::convert {

enum class Form { kFixed, kBin, kVarbinRecord, kText, kVarcharRecord };

// A fixed-size value has the code of its own type.
[[nodiscard]] constexpr CodeSet codes_of(Form form) {
  switch (form) {
    case Form::kBin:
      return kBinFamily;
    case Form::kVarbinRecord:
      return kVarbin;
    case Form::kText:
      return kCharFamily;
    case Form::kVarcharRecord:
      return kVarchar;
    case Form::kFixed:
      break;
  }
  return {};
}

[[nodiscard]] constexpr bool is_record(Form form) {
  return form == Form::kVarbinRecord || form == Form::kVarcharRecord;
}

// The bytes of a source that is not of fixed size.
template <Form form>
[[nodiscard]] Text source_of(const Call& call) {
  static_assert(form != Form::kFixed);
  return is_record(form) ? varchar_source(call) : char_source(call);
}

// Sets a destination record's length, whose bytes are in it already.
inline void end_record(const Call& call, int32_t length) {
  base::store(call.destination, static_cast<uint16_t>(length));
  *call.output_length = kVarRecordSize;
}

[[nodiscard]] inline uint8_t* record_data(const Call& call) {
  return static_cast<uint8_t*>(call.destination) + sizeof(uint16_t);
}

// ---- Values that do not fit --------------------------------------------------------------------

struct Misfit {
  Form source;
  Form destination;
  int32_t too_long;                // the destination got its first bytes
  int32_t too_short = CS_SUCCEED;  // of a fixed-size destination the last bytes are not written
};

inline constexpr std::array kMisfits{
    Misfit{Form::kFixed, Form::kBin, CS_CONV_TRUNCATED},
    Misfit{Form::kBin, Form::kFixed, CS_CONV_TRUNCATED, CS_CONV_UNDERFLOW},
    Misfit{Form::kBin, Form::kBin, CS_CONV_TRUNCATED},
    Misfit{Form::kBin, Form::kVarbinRecord, CS_CONV_TRUNCATED},
    Misfit{Form::kBin, Form::kText, CS_CONV_TRUNCATED},
    Misfit{Form::kBin, Form::kVarcharRecord, CS_CONV_TRUNCATED},
    Misfit{Form::kVarbinRecord, Form::kFixed, CS_CONV_OVERFLOW, CS_CONV_UNDERFLOW},
    Misfit{Form::kVarbinRecord, Form::kBin, CS_CONV_OVERFLOW},
    Misfit{Form::kVarbinRecord, Form::kText, CS_CONV_OVERFLOW},
    Misfit{Form::kVarbinRecord, Form::kVarcharRecord, CS_CONV_OVERFLOW},
    Misfit{Form::kText, Form::kBin, CS_CONV_TRUNCATED},
    Misfit{Form::kText, Form::kVarbinRecord, CS_CONV_TRUNCATED},
    Misfit{Form::kText, Form::kText, CS_CONV_TRUNCATED},
    Misfit{Form::kText, Form::kVarcharRecord, CS_CONV_TRUNCATED},
    Misfit{Form::kVarcharRecord, Form::kBin, CS_CONV_OVERFLOW},
    Misfit{Form::kVarcharRecord, Form::kVarbinRecord, CS_CONV_OVERFLOW},
    Misfit{Form::kVarcharRecord, Form::kText, CS_CONV_TRUNCATED},
    Misfit{Form::kVarcharRecord, Form::kVarcharRecord, CS_CONV_TRUNCATED},
};

// A pair that is not in the table does not compile.
template <Form source, Form destination>
inline constexpr Misfit kMisfit = [] {
  for (const Misfit& row : kMisfits)
    if (row.source == source && row.destination == destination) return row;
  throw "no row for this pair";
}();

}  // namespace tvx::convert
