// Prints docs/conversions.md from the library's own tables: the routines of the default table, the
// ranges of the scalar rules, and the codes for values that do not fit. scripts/update-docs writes
// the file; a test tells when it is out of date.
#include <dlfcn.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>

#include "convert/forms.hpp"
#include "convert/scalar_rules.hpp"
#include "tvxcomn/context.h"
#include "tvxcomn/dispatch.h"

namespace {

using namespace tvx::convert;

constexpr char kTitle[] =
    "# Conversions\n\n"
    "Made from the library's tables by `scripts/update-docs`; do not edit.\n\n"
    "## Which datatype converts to which\n\n"
    "Rows are sources, columns destinations, `*` a pair with a routine in the default table.\n\n";

std::string name_of(int32_t code) {
  const std::string name(kCatalogue[static_cast<size_t>(code)].name);
  return name.empty() ? "-" : name;
}

std::string code_name(int32_t code) {
  switch (code) {
    case CS_SUCCEED:
      return "`CS_SUCCEED`";
    case CS_CONV_OVERFLOW:
      return "`CS_CONV_OVERFLOW`";
    case CS_CONV_UNDERFLOW:
      return "`CS_CONV_UNDERFLOW`";
    case CS_CONV_TRUNCATED:
      return "`CS_CONV_TRUNCATED`";
    default:
      return std::to_string(code);
  }
}

// ---- The matrix --------------------------------------------------------------------------------

void print_matrix(comn_context* context) {
  std::printf("| |");
  for (int32_t code = 0; code < kDatatypes; ++code) std::printf(" %d |", code);
  std::printf("\n|---|");
  for (int32_t code = 0; code < kDatatypes; ++code) std::printf("---|");
  for (int32_t source = 0; source < kDatatypes; ++source) {
    std::printf("\n| %d %s |", source, name_of(source).c_str());
    for (int32_t destination = 0; destination < kDatatypes; ++destination) {
      const bool served = com_conv_func(context, source, destination) != nullptr;
      std::printf(served ? " * |" : " |");
    }
  }
  std::printf("\n");
}

// Routines that are not exported have no name to call them by.
std::string routine_name(comn_conversion* routine) {
  Dl_info info;
  const bool found = dladdr(reinterpret_cast<void*>(routine), &info) != 0;
  const bool exported =
      found && info.dli_sname != nullptr && info.dli_saddr == reinterpret_cast<void*>(routine);
  if (!exported) return "through the table only";
  return std::string("`").append(info.dli_sname).append("`");
}

void print_routines(comn_context* context) {
  std::printf("\n## The routine of each pair\n\n| from | routine | to |\n|---|---|---|\n");
  for (int32_t source = 0; source < kDatatypes; ++source) {
    std::map<std::string, std::string> destinations;
    for (int32_t destination = 0; destination < kDatatypes; ++destination) {
      comn_conversion* const routine = com_conv_func(context, source, destination);
      if (routine == nullptr) continue;
      std::string& list = destinations[routine_name(routine)];
      list.append(list.empty() ? "" : ", ").append(name_of(destination));
    }
    for (const auto& [routine, list] : destinations) {
      std::printf("| %s | %s | %s |\n", name_of(source).c_str(), routine.c_str(), list.c_str());
    }
  }
}

// ---- Values that do not fit --------------------------------------------------------------------

std::string form_name(Form form) {
  switch (form) {
    case Form::kFixed:
      return "fixed size";
    case Form::kBin:
      return "bin family";
    case Form::kVarbinRecord:
      return "varbin";
    case Form::kText:
      return "char family";
    case Form::kVarcharRecord:
      return "varchar";
  }
  return "";
}

void print_misfits() {
  std::printf(
      "\n## Bytes and text that do not fit\n\n"
      "Too short is a value that leaves the last bytes of a fixed size unwritten; for all other\n"
      "destinations a short value is success, filled on request.\n\n"
      "| from | to | too long | too short |\n|---|---|---|---|\n");
  for (const Misfit& row : kMisfits) {
    std::printf("| %s | %s | %s | %s |\n", form_name(row.source).c_str(),
                form_name(row.destination).c_str(), code_name(row.too_long).c_str(),
                row.too_short == CS_SUCCEED ? "" : code_name(row.too_short).c_str());
  }
  // Written texts have no row in the table.
  std::printf(
      "| a number or money | char family | `CS_CONV_OVERFLOW` | |\n"
      "| a date or time | char family | `CS_CONV_OVERFLOW`, longer than three times the "
      "destination "
      "`CS_CONV_TRUNCATED` | |\n"
      "| a locator | char family | `CS_CONV_TRUNCATED` | |\n"
      "| char family | a locator | `CS_CONV_OVERFLOW` above 65,535 bytes | |\n");
}

template <class Source, class Destination>
void print_range() {
  if constexpr (!is_bit<Source> && !is_bit<Destination>) {
    constexpr const auto& rule = scalar_rule<Source, Destination>;
    constexpr double infinity = Limits<type::flt8>::infinity();
    constexpr bool below =
        is_float<Source> ? rule.lowest > -infinity : rule.lowest != Limits<Source>::lowest();
    constexpr bool above =
        is_float<Source> ? rule.highest < infinity : rule.highest != Limits<Source>::max();
    if (!below && !above) return;
    std::printf("| %s | %s | %s | %s |\n", std::string(Source::name).c_str(),
                std::string(Destination::name).c_str(),
                above ? code_name(rule.above.code).c_str() : "",
                below ? code_name(rule.below.code).c_str() : "");
  }
}

template <class Source, class... Destinations>
void print_ranges_of() {
  (print_range<Source, Destinations>(), ...);
}

template <class... Types>
void print_ranges() {
  std::printf(
      "\n## Integers and floating-point numbers out of range\n\n"
      "The destination gets the nearest limit; floating-point numbers are limited to the digits "
      "that\n"
      "their type carries. Pairs of these types that are not listed hold every value; the bare "
      "layer\n"
      "reports `CS_CONV_OVERFLOW` on both sides. What exact numerics, money and dates report is "
      "in\n"
      "their headers, `numeric.h`, `money.h` and `dates.h`.\n\n"
      "| from | to | too large | too small |\n|---|---|---|---|\n");
  (print_ranges_of<Types, Types...>(), ...);
}

}  // namespace

int main() {
  comn_context* context = nullptr;
  if (comn_context_open(nullptr, COMN_CONTEXT_NO_LOCALISATION, &context) != CS_SUCCEED) return 1;
  std::printf("%s", kTitle);
  print_matrix(context);
  print_routines(context);
  print_misfits();
  print_ranges<type::i1, type::i2, type::i4, type::i8, type::ui2, type::ui4, type::ui8, type::flt4,
               type::flt8>();
  comn_context_close(context);
  return 0;
}
