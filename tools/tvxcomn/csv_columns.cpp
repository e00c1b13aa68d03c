#include "csv_columns.hpp"

#include <algorithm>

#include "failure.hpp"

namespace tvx::tool {

namespace {

constexpr char kExample[] = "; write NAME:TYPE[,NAME:TYPE ...], for example id:i4,rate:flt8";

// The end of the first column of the list: a comma outside the parentheses of a type.
std::size_t end_of_column(std::string_view list) {
  int depth = 0;
  for (std::size_t at = 0; at < list.size(); ++at) {
    if (list[at] == '(') ++depth;
    if (list[at] == ')') --depth;
    if (list[at] == ',' && depth <= 0) return at;
  }
  return list.size();
}

NamedColumn parse_column(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos || colon == 0) {
    throw Failure("--types: \"" + std::string(text) + "\" is no column" + kExample);
  }
  return {std::string(text.substr(0, colon)), parse_type(text.substr(colon + 1))};
}

}  // namespace

std::vector<NamedColumn> parse_columns(std::string_view text) {
  std::vector<NamedColumn> columns;
  for (;;) {
    const std::size_t end = end_of_column(text);
    NamedColumn column = parse_column(text.substr(0, end));
    const bool known = std::any_of(columns.begin(), columns.end(), [&](const NamedColumn& other) {
      return other.name == column.name;
    });
    if (known)
      throw Failure("--types: column \"" + column.name + "\" is there twice; name it once");
    columns.push_back(std::move(column));
    if (end == text.size()) return columns;
    text.remove_prefix(end + 1);
  }
}

ColumnOfField by_position(const std::vector<NamedColumn>& columns) {
  ColumnOfField order(columns.size());
  for (std::size_t index = 0; index < order.size(); ++index) order[index] = index;
  return order;
}

const NamedColumn* first_unnamed(const std::vector<NamedColumn>& columns,
                                 const std::vector<std::string>& header) {
  const auto unnamed = std::find_if(columns.begin(), columns.end(), [&](const NamedColumn& column) {
    return std::find(header.begin(), header.end(), column.name) == header.end();
  });
  return unnamed == columns.end() ? nullptr : &*unnamed;
}

ColumnOfField by_name(const std::vector<NamedColumn>& columns,
                      const std::vector<std::string>& header) {
  ColumnOfField order(header.size());
  for (std::size_t index = 0; index < columns.size(); ++index) {
    const std::string& name = columns[index].name;
    if (std::count(header.begin(), header.end(), name) > 1) {
      throw Failure("the header names column \"" + name +
                    "\" twice; rename one of the two in the file");
    }
    const auto found = std::find(header.begin(), header.end(), name);
    order[static_cast<std::size_t>(found - header.begin())] = index;
  }
  return order;
}

}  // namespace tvx::tool
