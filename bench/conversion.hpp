// Calls of the library as a program makes them: with a context and two full data formats.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <ostream>
#include <string_view>

#include "tvxcomn/context.h"
#include "tvxcomn/datatypes.h"

namespace tvx::bench {

// The context of all conversions; it lives as long as the program.
inline comn_context* context() {
  static comn_context* const opened = [] {
    comn_context* created = nullptr;
    if (comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &created) != CS_SUCCEED)
      std::abort();
    return created;
  }();
  return opened;
}

inline comn_datafmt format_of(int32_t datatype, int32_t maxlength) {
  comn_datafmt format{};
  format.datatype = datatype;
  format.maxlength = maxlength;
  return format;
}

// A number as text. Its bytes are not initialised: clearing them would be timed with the writer.
template <int32_t capacity>
struct TextOf {
  static constexpr int32_t kCapacity = capacity;
  char bytes[capacity];
  int32_t length;

  [[nodiscard]] std::string_view view() const { return {bytes, static_cast<size_t>(length)}; }
  friend bool operator==(const TextOf& a, const TextOf& b) { return a.view() == b.view(); }
  friend std::ostream& operator<<(std::ostream& out, const TextOf& text) {
    return out << '"' << text.view() << '"';
  }
};
using Text = TextOf<40>;

}  // namespace tvx::bench
