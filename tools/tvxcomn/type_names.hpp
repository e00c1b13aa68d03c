// The datatypes by their names, as a user writes and reads them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tvx::tool {

inline constexpr int32_t kTypeCount = 40;

// The name of a datatype code from 0 to 39; "-" for the two codes that have none.
[[nodiscard]] std::string_view type_name(int32_t code);

// A datatype with the properties that the name leaves open, where they were given.
struct DataType {
  int32_t code = 0;
  std::optional<int32_t> maxlength{};  // bytes
  std::optional<int32_t> precision{};  // digits
  std::optional<int32_t> scale{};      // digits after the point
};

// Reads "i4", "char(20)" (a maxlength in bytes) or "num(10,2)" (precision and scale of an exact
// numeric). Throws Failure with the names there are.
[[nodiscard]] DataType parse_type(std::string_view text);

// The datatype as parse_type reads it.
[[nodiscard]] std::string written_type(const DataType& type);

// Whether the size of a value comes from its data format.
[[nodiscard]] bool has_open_size(int32_t code);
// Whether the bytes of a value are characters of text.
[[nodiscard]] bool is_text(int32_t code);
[[nodiscard]] bool is_exact_numeric(int32_t code);

}  // namespace tvx::tool
