// Exported functions of context.h.
#include "tvxcomn/context.h"

#include "runtime/diagnosis.hpp"
#include "tvxcomn/dispatch.h"
#include "tvxcomn/null.h"
#include "tvxcomn/support.h"

namespace rt = tvx::runtime;

namespace {

int32_t set_up(comn_context& context) {
  const int32_t code = com_conv_init(&context);
  return code == CS_SUCCEED ? com_null_init(&context) : code;
}

void release(comn_context* context) {
  if (context == nullptr) return;
  com_null_free(context);
  com_conv_free(context);
  comn_free(context->state);
  comn_free(context);
}

}  // namespace

extern "C" {

int32_t comn_context_open(const char*, int32_t flags, comn_context** context) {
  rt::require_pointer(context);
  *context = nullptr;
  if ((flags & COMN_CONTEXT_NO_LOCALISATION) == 0) return rt::traced(CS_FAIL);

  auto* opened = static_cast<comn_context*>(comn_calloc(1, sizeof(comn_context)));
  if (opened == nullptr) return rt::traced(CS_MEM_ERROR);
  opened->state = static_cast<comn_intl_state*>(comn_calloc(1, sizeof(comn_intl_state)));
  const int32_t code = opened->state == nullptr ? CS_MEM_ERROR : set_up(*opened);
  if (code == CS_SUCCEED) {
    *context = opened;
  } else {
    release(opened);
  }
  return rt::traced(code);
}

int32_t comn_context_close(comn_context* context) {
  rt::require_pointer(context);
  release(context);
  return rt::traced(CS_SUCCEED);
}

}  // extern "C"
