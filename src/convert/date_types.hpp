// The six date and time types as tags, named as the exported routines call them.
#pragma once

#include "convert/catalogue.hpp"

namespace tvx::convert::type {

struct datetime {
  using Value = comn_datetime;
  static constexpr CodeSet codes{TVX_TYPE_DATETIME};
};
struct date4 {
  using Value = comn_datetime4;
  static constexpr CodeSet codes{TVX_TYPE_DATE4};
};
struct datea {
  using Value = int32_t;
  static constexpr CodeSet codes{TVX_TYPE_DATEA};
};
struct timea {
  using Value = int32_t;
  static constexpr CodeSet codes{TVX_TYPE_TIMEA};
};
struct bigdatetime {
  using Value = uint64_t;
  static constexpr CodeSet codes{TVX_TYPE_BIGDATETIME};
};
struct bigtime {
  using Value = uint64_t;
  static constexpr CodeSet codes{TVX_TYPE_BIGTIME};
};

}  // namespace tvx::convert::type
