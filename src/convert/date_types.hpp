// The six date and time types as tags, named as the exported routines call them.
#pragma once

#include "convert/catalogue.hpp"

namespace tvx::convert::type {

struct datetime {
  using Value = comn_datetime;
  static constexpr std::string_view name = "date";
  static constexpr CodeSet codes{TVX_TYPE_DATETIME};
};
struct date4 {
  using Value = comn_datetime4;
  static constexpr std::string_view name = "date4";
  static constexpr CodeSet codes{TVX_TYPE_DATE4};
};
struct datea {
  using Value = int32_t;
  static constexpr std::string_view name = "datea";
  static constexpr CodeSet codes{TVX_TYPE_DATEA};
};
struct timea {
  using Value = int32_t;
  static constexpr std::string_view name = "timea";
  static constexpr CodeSet codes{TVX_TYPE_TIMEA};
};
struct bigdatetime {
  using Value = uint64_t;
  static constexpr std::string_view name = "bigdatetime";
  static constexpr CodeSet codes{TVX_TYPE_BIGDATETIME};
};
struct bigtime {
  using Value = uint64_t;
  static constexpr std::string_view name = "bigtime";
  static constexpr CodeSet codes{TVX_TYPE_BIGTIME};
};

}  // namespace tvx::convert::type
