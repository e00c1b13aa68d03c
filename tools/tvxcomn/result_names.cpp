#include "result_names.hpp"

#include "tvxcomn/datatypes.h"

namespace tvx::tool {

namespace {

struct ResultName {
  int32_t code;
  const char* name;
};

#define TVX_RESULT(code) \
  { code, #code }
constexpr ResultName kResults[] = {
    TVX_RESULT(CS_SUCCEED),         TVX_RESULT(CS_FAIL),           TVX_RESULT(CS_MEM_ERROR),
    TVX_RESULT(CS_CONV_OVERFLOW),   TVX_RESULT(CS_CONV_UNDERFLOW), TVX_RESULT(CS_CONV_BADPREC),
    TVX_RESULT(CS_CONV_BADSCALE),   TVX_RESULT(CS_CONV_SYNTAX),    TVX_RESULT(CS_CONV_BADFORMAT),
    TVX_RESULT(CS_CONV_DOMAIN),     TVX_RESULT(CS_CONV_DIVZERO),   TVX_RESULT(CS_CONV_TRUNCATED),
    TVX_RESULT(CS_CONV_BADSTYLE),   TVX_RESULT(CS_CONV_BADCHAR),   TVX_RESULT(CS_CONV_NOXLATE),
    TVX_RESULT(CS_CONV_XLATE_NOTE),
};
#undef TVX_RESULT

}  // namespace

std::string result_name(int32_t code) {
  for (const ResultName& result : kResults) {
    if (result.code == code) return result.name;
  }
  return std::to_string(code);
}

bool succeeded(int32_t code) {
  return code == CS_SUCCEED || code == CS_CONV_XLATE_NOTE;
}

}  // namespace tvx::tool
