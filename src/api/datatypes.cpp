// Exported functions of datatypes.h.
#include "tvxcomn/datatypes.h"

#include "convert/catalogue.hpp"

extern "C" int32_t comn_typelen(int32_t datatype, int32_t maxlength) {
  return tvx::convert::storage_size(datatype, maxlength);
}
