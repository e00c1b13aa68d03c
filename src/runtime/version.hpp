// Which version of the library this is. The build's one version number is where it comes from.
#pragma once

#include <cstdint>

namespace tvx::runtime {

// Major x 1000 + minor x 100 + patch.
extern const int32_t version_number;

// Seven fields separated by "/": the maker's and the library's name, version, patch, platform,
// build, "DEBUG", and the date of the build, in universal time and ctime's form; a build in a
// repository takes the last commit's. It is there to be found in the library's file.
extern const char version_text[];

}  // namespace tvx::runtime
