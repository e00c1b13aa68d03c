// The columns that --types names, and where they stand in the rows of a file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "type_names.hpp"

namespace tvx::tool {

struct NamedColumn {
  std::string name;
  DataType type;
};

// Reads "id:i4,note:char(20),price:num(10,2)": names without commas, each once. A name may hold
// colons. Throws Failure.
[[nodiscard]] std::vector<NamedColumn> parse_columns(std::string_view text);

// For each field of a row the index of its column, or none for a field that passes through.
using ColumnOfField = std::vector<std::optional<std::size_t>>;

// The columns one after the other.
[[nodiscard]] ColumnOfField by_position(const std::vector<NamedColumn>& columns);

// The first of the columns that the header does not name.
[[nodiscard]] const NamedColumn* first_unnamed(const std::vector<NamedColumn>& columns,
                                               const std::vector<std::string>& header);

// The columns where a header that names all of them has them. Throws Failure when it names one
// twice.
[[nodiscard]] ColumnOfField by_name(const std::vector<NamedColumn>& columns,
                                    const std::vector<std::string>& header);

}  // namespace tvx::tool
