// Exported functions of dispatch.h.
#include "tvxcomn/dispatch.h"

#include "api/default_table.hpp"
#include "convert/dispatch.hpp"
#include "runtime/diagnosis.hpp"

namespace rt = tvx::runtime;
namespace cv = tvx::convert;

extern "C" {

int32_t com_conv_init(comn_context* context) {
  rt::require_pointer(context);
  return rt::traced(cv::init_routines(*context, tvx::api::default_table()));
}

comn_conversion* com_conv_func(comn_context* context, int32_t source, int32_t destination) {
  rt::require_pointer(context);
  if (source < 0 || destination < 0) return nullptr;
  if (!cv::in_table(source, destination)) [[unlikely]] {
    return cv::find_overflow_routine(*context, source, destination);
  }
  rt::require(context->conversions != nullptr);
  return context->conversions[cv::cell(source, destination)];
}

int32_t com_conv_install(comn_context* context, int32_t source, int32_t destination,
                         comn_conversion* routine) {
  rt::require_pointer(context);
  rt::require(context->conversions != nullptr);
  rt::require(source >= 0 && destination >= 0);
  return rt::traced(cv::install_routine(*context, source, destination, routine));
}

int32_t com_conv_default(comn_context* context, int32_t source, int32_t destination) {
  rt::require_pointer(context);
  rt::require(source >= 0 && destination >= 0);
  if (!cv::in_table(source, destination)) {
    cv::clear_overflow_routine(*context, source, destination);
    return rt::traced(CS_SUCCEED);
  }
  rt::require(context->conversions != nullptr);
  comn_conversion* const routine = tvx::api::default_table()[cv::cell(source, destination)];
  return rt::traced(cv::install_routine(*context, source, destination, routine));
}

int32_t com_conv_free(comn_context* context) {
  rt::require_pointer(context);
  cv::free_routines(*context);
  return rt::traced(CS_SUCCEED);
}

}  // extern "C"
