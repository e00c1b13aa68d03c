// Exported functions of datearith.h.
#include "tvxcomn/datearith.h"

#include "base/bytes.hpp"
#include "datetime/arithmetic.hpp"
#include "datetime/calendar.hpp"
#include "datetime/date_parts.hpp"
#include "datetime/descriptors.hpp"
#include "runtime/diagnosis.hpp"

namespace dt = tvx::datetime;
namespace rt = tvx::runtime;
using tvx::base::load;
using tvx::base::store;

namespace {

constexpr int32_t kDone = 0;
constexpr int32_t kRefused = 1;

int32_t result_of(bool done) {
  return done ? kDone : kRefused;
}

}  // namespace

extern "C" {

int32_t com__date_add(int32_t part, int32_t amount, comn_datetime* value) {
  rt::require_pointer(value);
  rt::require(dt::is_datetime_part(part));
  auto moved = load<comn_datetime>(value);
  if (!dt::add(part, amount, moved)) return kRefused;
  store(value, moved);
  return kDone;
}

int32_t com__dateadd_both(int32_t part, int32_t amount, const comnb_value* source,
                          comnb_value* destination) {
  rt::require_pointers({source, destination});
  rt::require_pointers({source->data, destination->data});
  const auto value = dt::take_datetime(*source, destination->token);
  if (!value) return kRefused;
  rt::require(dt::is_datetime_part(part));
  return result_of(dt::add_and_deliver(part, amount, *value, *destination));
}

int32_t com__bigdateadd_both(int32_t part, int32_t amount, const comnb_value* source,
                             comnb_value* destination) {
  rt::require_pointers({source, destination});
  rt::require_pointers({source->data, destination->data});
  const auto value = dt::take_big(*source);
  if (!value) return kRefused;
  rt::require(dt::is_part(part));
  return result_of(dt::add_and_deliver(part, amount, *value, *destination));
}

int32_t com__datediff(int32_t part, const comn_datetime* start, const comn_datetime* end,
                      int32_t* result) {
  rt::require_pointers({start, end, result});
  auto difference = load<int32_t>(result);
  if (!dt::difference(part, load<comn_datetime>(start), load<comn_datetime>(end), difference))
    return kRefused;
  store(result, difference);
  return kDone;
}

int32_t com__bigdatediff(int32_t part, const uint64_t* start, const uint64_t* end,
                         int64_t* result) {
  rt::require_pointers({start, end, result});
  auto difference = load<int64_t>(result);
  dt::difference(part, load<uint64_t>(start), load<uint64_t>(end), difference);
  store(result, difference);
  return kDone;
}

int32_t com_intl_convt_firstday(int32_t position, int32_t from, int32_t to) {
  return dt::renumbered_weekday(position, from, to);
}

}  // extern "C"
