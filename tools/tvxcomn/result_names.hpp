// Result codes of conversions by name.
#pragma once

#include <cstdint>
#include <string>

namespace tvx::tool {

// "CS_CONV_SYNTAX" and so on; the number itself for a code without a name.
[[nodiscard]] std::string result_name(int32_t code);

// Whether a conversion with this result delivered its value.
[[nodiscard]] bool succeeded(int32_t code);

}  // namespace tvx::tool
