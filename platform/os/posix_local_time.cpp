// Local time by the C library, in the time zone of TZ.
#include <ctime>

#include "os/local_time.hpp"

namespace tvx::os {

std::optional<LocalTime> local_time() {
  const std::time_t now = std::time(nullptr);
  std::tm local;
  if (localtime_r(&now, &local) == nullptr) return std::nullopt;
  return LocalTime{local.tm_year + 1900, local.tm_mon,  local.tm_mday, local.tm_yday + 1,
                   local.tm_wday,        local.tm_hour, local.tm_min,  local.tm_sec};
}

}  // namespace tvx::os
