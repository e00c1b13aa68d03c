// The build defines TVX_VERSION_NUMBER and TVX_VERSION_TEXT for this file alone, so that a new date
// compiles nothing else.
#include "runtime/version.hpp"

namespace tvx::runtime {

const int32_t version_number = TVX_VERSION_NUMBER;

// Nothing in the library reads it.
[[gnu::used]] const char version_text[] = TVX_VERSION_TEXT;

}  // namespace tvx::runtime
