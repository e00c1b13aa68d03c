// Exported functions of null.h.
#include "tvxcomn/null.h"

#include "convert/null_values.hpp"
#include "runtime/diagnosis.hpp"

namespace rt = tvx::runtime;
namespace cv = tvx::convert;

extern "C" {

int32_t com_null_init(comn_context* context) {
  rt::require_pointer(context);
  return rt::traced(cv::init_nulls(*context));
}

int32_t com_null_free(comn_context* context) {
  rt::require_pointer(context);
  cv::free_nulls(*context);
  return rt::traced(CS_SUCCEED);
}

int32_t com_null_get(comn_context* context, const comn_datafmt* format, void* destination,
                     int32_t maximum_length, int32_t* output_length) {
  rt::require_pointer(context);
  rt::require_pointer(format);
  rt::require_pointer(destination);
  rt::require_pointer(output_length);
  rt::require(format->datatype >= 0 && maximum_length >= 0);
  return rt::traced(cv::get_null(*context, *format, destination, maximum_length, *output_length));
}

int32_t com_null_set(comn_context* context, int32_t datatype, const void* value, int32_t length) {
  rt::require_pointer(context);
  rt::require_pointer(value);
  rt::require(datatype >= 0 && length >= 0);
  return rt::traced(cv::set_null(*context, datatype, value, length));
}

int32_t com_null_reinstall(comn_context* context, int32_t datatype) {
  rt::require_pointer(context);
  rt::require(datatype >= 0);
  return rt::traced(cv::reinstall_null(*context, datatype));
}

}  // extern "C"
