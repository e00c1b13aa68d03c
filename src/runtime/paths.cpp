// A path is put together piece by piece behind the home directory; the functions that do it are the
// directory layout, written out.
#include "runtime/paths.hpp"

#include <climits>
#include <cstring>

#include "runtime/diagnosis.hpp"
#include "tvxcomn/context.h"
#include "tvxcomn/support.h"

namespace tvx::runtime {
namespace {

// A path in the making. After a failure nothing is added; the first one is the result.
class Path {
public:
  explicit Path(const PathTarget& target)
      : target_(target), used_(intl_home(target.buffer, target.size)) {
    if (used_ < 0) explain_missing_home();
  }

  Path& piece(std::string_view text) { return append('/', text); }
  Path& extension(std::string_view text) { return append('.', text); }

  // The value of TARVEX_NXC, which with its terminator may have `room` bytes.
  Path& nxc_directory(bool wanted, int32_t room) {
    char value[513];
    const int32_t length = wanted ? intlgetenv(value, room, "TARVEX_NXC") : 0;
    if (length < 0) return fail(CS_FAIL);
    return piece({value, static_cast<size_t>(length)});
  }

  int32_t result() const {
    if (result_ != CS_SUCCEED) target_.buffer[0] = '\0';
    return result_;
  }

private:
  // A home directory too long for the buffer is another matter than none. One longer than any path
  // of the system counts as none.
  void explain_missing_home() {
    char home[PATH_MAX];
    const int32_t length = intl_home(home, PATH_MAX);
    require(length <= target_.size);
    if (length < 0 && target_.context != nullptr) target_.context->last_support_error = length;
    fail(length < 0 ? kSupportLibraryFailed : CS_FAIL);
  }

  Path& append(char separator, std::string_view text) {
    if (result_ != CS_SUCCEED || text.empty()) return *this;
    if (text.find('\0') != text.npos) return fail(CS_FAIL);  // the path would end there
    // Beside the text there are the separator and the terminator.
    if (text.size() + 2 > static_cast<size_t>(target_.size - used_)) return fail(CS_FAIL);
    char* end = target_.buffer + used_;
    *end++ = separator;
    std::memcpy(end, text.data(), text.size());
    end[text.size()] = '\0';
    used_ += static_cast<int32_t>(text.size()) + 1;
    return *this;
  }

  Path& fail(int32_t code) {
    if (result_ == CS_SUCCEED) result_ = code;
    return *this;
  }

  PathTarget target_;
  int32_t used_;
  int32_t result_ = CS_SUCCEED;
};

// Process-wide and unguarded; empty while none is set.
char transport_override[512];

}  // namespace

int32_t any_file_path(PathTarget target, std::string_view piece1, std::string_view piece2,
                      bool with_nxc) {
  std::memset(target.buffer, 0, static_cast<size_t>(target.size));
  return Path(target).nxc_directory(with_nxc, 512).piece(piece1).piece(piece2).result();
}

int32_t interfaces_file_path(PathTarget target) {
  return Path(target).piece("ini").piece("sql.ini").result();
}

int32_t configuration_file_path(PathTarget target, std::string_view file, bool with_nxc) {
  return Path(target).nxc_directory(with_nxc, 513).piece("ini").piece(file).result();
}

int32_t localisation_file_path(PathTarget target, std::string_view directory1,
                               std::string_view directory2, std::string_view file) {
  return Path(target).piece("locales").piece(directory1).piece(directory2).piece(file).result();
}

int32_t message_file_path(PathTarget target, std::string_view language, std::string_view file) {
  return localisation_file_path(target, "message", language, file);
}

int32_t charset_file_path(PathTarget target, std::string_view charset, std::string_view file,
                          std::string_view extension) {
  if (file.empty()) extension = {};
  return Path(target).piece("charsets").piece(charset).piece(file).extension(extension).result();
}

int32_t localised_data_path(PathTarget target, LocalisedData kind, std::string_view name) {
  struct Place {
    const char *directory, *extension;
  };
  static constexpr Place kPlaces[] = {{"money", "mon"}, {"numeric", "num"}, {"datetime", "dt"}};
  const Place& place = kPlaces[static_cast<size_t>(kind)];
  Path path(target);
  return path.piece("locales")
      .piece(place.directory)
      .piece(name)
      .extension(place.extension)
      .result();
}

bool set_transport_configuration(std::string_view path) {
  if (path.size() >= sizeof transport_override) return false;
  path.copy(transport_override, path.size());
  transport_override[path.size()] = '\0';
  return true;
}

int32_t transport_configuration_path(char* buffer, int32_t size) {
  if (size < 1) return 0;
  buffer[0] = '\0';
  if (const std::string_view set = transport_override; !set.empty()) {
    if (set.size() >= static_cast<size_t>(size)) return 0;
    return intl_strlcpy(buffer, transport_override, size);
  }
  const int32_t length = intlgetenv(buffer, size, "TARVEX_QTL_CFG");
  if (length != 0) return length > 0 ? length : 0;
  configuration_file_path({nullptr, buffer, size}, "libqtl64.cfg", true);
  return static_cast<int32_t>(std::strlen(buffer));
}

}  // namespace tvx::runtime
