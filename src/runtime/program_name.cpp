#include "runtime/program_name.hpp"

#include <algorithm>
#include <string_view>

#include "base/ascii.hpp"
#include "os/program_name.hpp"

namespace tvx::runtime {
namespace {

constexpr size_t kLongestPath = 259;

}  // namespace

bool program_name(std::span<char> buffer, LetterCase letter_case) {
  char path[kLongestPath + 1];
  std::string_view name = os::program_path(path);
  name.remove_prefix(name.rfind('/') + 1);  // npos + 1 is 0
  const size_t dot = name.rfind('.');
  if (dot != std::string_view::npos && dot > 0) name = name.substr(0, dot);

  char* const end = buffer.data() + name.copy(buffer.data(), buffer.size() - 1);
  if (letter_case == LetterCase::kLower)
    std::transform(buffer.data(), end, buffer.data(), base::to_lower);
  if (letter_case == LetterCase::kUpper)
    std::transform(buffer.data(), end, buffer.data(), base::to_upper);
  *end = '\0';
  return !name.empty();
}

}  // namespace tvx::runtime
