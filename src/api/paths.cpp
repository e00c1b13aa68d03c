// Exported functions of paths.h.
#include "tvxcomn/paths.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "runtime/application_global.hpp"
#include "runtime/diagnosis.hpp"
#include "runtime/paths.hpp"
#include "runtime/program_name.hpp"
#include "runtime/version.hpp"
#include "tvxcomn/support.h"

namespace rt = tvx::runtime;

namespace {

constexpr int32_t kWithNxc = 1;

// The checks name the line of their caller.
rt::PathTarget checked_target(comn_context* context, char* buffer, int32_t size,
                              int32_t line = __builtin_LINE()) {
  rt::require_pointer(buffer, __FILE__, line);
  rt::require(size >= 1, __FILE__, line);
  return {context, buffer, size};
}

// A piece that may be left out.
std::string_view optional(const char* text) {
  return text == nullptr ? std::string_view() : text;
}

std::string_view checked_text(const char* text, int32_t length, int32_t line = __builtin_LINE()) {
  rt::require_pointer(text, __FILE__, line);
  if (length == CS_NULLTERM) return text;
  rt::require(length >= 0, __FILE__, line);
  return {text, static_cast<size_t>(length)};
}

}  // namespace

extern "C" {

int32_t com_path_anyfile(char* buffer, int32_t size, const char* piece1, const char* piece2,
                         int32_t with_nxc) {
  const rt::PathTarget target = checked_target(nullptr, buffer, size);
  return rt::traced(
      rt::any_file_path(target, optional(piece1), optional(piece2), with_nxc == kWithNxc));
}

int32_t com_path_ifile(comn_context* context, char* buffer, int32_t size) {
  return rt::traced(rt::interfaces_file_path(checked_target(context, buffer, size)));
}

int32_t com_path_cfgfile(comn_context* context, const char* file_name, char* buffer, int32_t size,
                         int32_t with_nxc) {
  const rt::PathTarget target = checked_target(context, buffer, size);
  const std::string_view file = checked_text(file_name, CS_NULLTERM);
  return rt::traced(rt::configuration_file_path(target, file, with_nxc == kWithNxc));
}

int32_t com_path_msgfile(comn_context* context, const char* language, int32_t language_length,
                         const char* file_name, int32_t file_name_length, char* buffer,
                         int32_t size) {
  const rt::PathTarget target = checked_target(context, buffer, size);
  return rt::traced(rt::message_file_path(target, checked_text(language, language_length),
                                          checked_text(file_name, file_name_length)));
}

int32_t com_path_charfile(comn_context* context, const char* charset, const char* file_name,
                          const char* extension, char* buffer, int32_t size) {
  const rt::PathTarget target = checked_target(context, buffer, size);
  return rt::traced(rt::charset_file_path(target, checked_text(charset, CS_NULLTERM),
                                          optional(file_name), optional(extension)));
}

char* com_getenv(const char* name) {
  char value[256];
  const int32_t length = name == nullptr ? 0 : intlgetenv(value, sizeof value, name);
  if (length <= 0) return nullptr;
  const size_t size = static_cast<size_t>(length) + 1;
  void* const copy = comn_malloc(size);
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, value, size));
}

int32_t com_set_qtlcfg(const char* path) {
  return rt::traced(rt::set_transport_configuration(optional(path)) ? CS_SUCCEED : CS_FAIL);
}

int32_t com_get_qtlcfg(char* buffer, int32_t size) {
  rt::require_pointer(buffer);
  return rt::transport_configuration_path(buffer, size);
}

int32_t comn__genappname_from_exec(comn_context*, char* buffer, int32_t size, int32_t letter_case) {
  const rt::PathTarget target = checked_target(nullptr, buffer, size);
  const auto wanted = letter_case == COM_APPNAME_LOWER   ? rt::LetterCase::kLower
                      : letter_case == COM_APPNAME_UPPER ? rt::LetterCase::kUpper
                                                         : rt::LetterCase::kAsIs;
  const bool found = rt::program_name({target.buffer, static_cast<size_t>(target.size)}, wanted);
  return rt::traced(found ? CS_SUCCEED : CS_FAIL);
}

void com_version(int32_t* version, int32_t* flag) {
  rt::require_pointer(version);
  rt::require_pointer(flag);
  *version = rt::version_number;
  *flag = 1;
}

const char* com_get_driverversionsuffix(void) {
  return "";
}

int32_t com_memhilo(const void* a, int32_t a_length, const void* b, int32_t b_length) {
  rt::require_pointer(a);
  rt::require_pointer(b);
  rt::require(a_length >= 0 && b_length >= 0);
  const int order = std::memcmp(a, b, static_cast<size_t>(std::min(a_length, b_length)));
  if (order != 0) return order > 0 ? 1 : -1;
  return (a_length > b_length) - (a_length < b_length);
}

int32_t com_appglobal_alloc(com_appglobal** global, void* value, int32_t flags) {
  rt::require_pointer(global);
  *global =
      (flags & COM_APPGLOBAL_STATIC) != 0 ? rt::join_process_global(value) : rt::make_global(value);
  return rt::traced(*global != nullptr ? CS_SUCCEED : CS_FAIL);
}

int32_t com_appglobal_drop(com_appglobal* global, int32_t flags) {
  rt::require_pointer(global);
  rt::drop_global(*global, (flags & COM_APPGLOBAL_STATIC) != 0);
  return rt::traced(CS_SUCCEED);
}

}  // extern "C"
