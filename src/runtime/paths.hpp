// The places of the library's files under the home directory, and the path of the transport
// configuration file. Each function is one row of the directory layout.
#pragma once

#include <cstdint>
#include <string_view>

#include "tvxcomn/datatypes.h"

namespace tvx::runtime {

// The result of an operation in which the support library failed.
inline constexpr int32_t kSupportLibraryFailed = -301;

// Where a path is written. The context is told of failures of the support library; it may be null.
struct PathTarget {
  comn_context* context;
  char* buffer;
  int32_t size;  // in bytes, at least 1
};

enum class LocalisedData { kMoney, kNumeric, kDatetime };

// Each writes a path, NUL-terminated, and returns CS_SUCCEED; or an empty text, and CS_FAIL when it
// does not fit or kSupportLibraryFailed when there is no home directory. An empty piece is left
// out. With `with_nxc` the value of TARVEX_NXC, when it is set, goes behind the home directory. A
// home directory of more than `size` bytes is fatal.
int32_t any_file_path(PathTarget target, std::string_view piece1, std::string_view piece2,
                      bool with_nxc);
int32_t interfaces_file_path(PathTarget target);
int32_t configuration_file_path(PathTarget target, std::string_view file, bool with_nxc);
int32_t localisation_file_path(PathTarget target, std::string_view directory1,
                               std::string_view directory2, std::string_view file);
int32_t message_file_path(PathTarget target, std::string_view language, std::string_view file);
int32_t charset_file_path(PathTarget target, std::string_view charset, std::string_view file,
                          std::string_view extension);
int32_t localised_data_path(PathTarget target, LocalisedData kind, std::string_view name);

// The process-wide override of the transport configuration file; an empty path clears it. False,
// with nothing changed, for one of 512 bytes or more.
bool set_transport_configuration(std::string_view path);

// Writes that path, else the value of TARVEX_QTL_CFG, else the one under the home directory, and
// returns its length; 0 and an empty text when it does not fit or cannot be formed.
int32_t transport_configuration_path(char* buffer, int32_t size);

}  // namespace tvx::runtime
