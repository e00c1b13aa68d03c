// The default table of conversion routines, 40 x 40.
#pragma once

#include "convert/dispatch.hpp"

namespace tvx::api {

[[nodiscard]] const convert::DefaultTable& default_table();

}  // namespace tvx::api
