// The date and time types as the command handles them beside the ordinary conversions: written in a
// form of the user's choice, and calculated with.
#pragma once

#include <cstdint>
#include <string>

#include "tvxcomn/dates.h"

namespace tvx::tool {

struct DateType {
  comnb_conversion* write;  // to text, in the form of the bare context
  int32_t code;
  int32_t calculates_as;  // the type in which it is calculated with
  int32_t usual_style;    // a form that shows all that the type holds
  uint8_t token;          // of a bare value
  bool is_big;            // counts microseconds
};

// The type of a code, null for any other.
[[nodiscard]] const DateType* date_type(int32_t code);

// The greatest date format code there can be.
inline constexpr int32_t kLargestStyle = 255;

// A bare context that writes in the form of a code, with the short English names of months.
[[nodiscard]] comnb_context style_context(int32_t style, uint32_t flags = 0);

}  // namespace tvx::tool
