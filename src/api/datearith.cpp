// Exported functions of datearith.h.
#include "tvxcomn/datearith.h"

#include "base/bytes.hpp"
#include "datetime/arithmetic.hpp"
#include "datetime/values.hpp"
#include "runtime/diagnosis.hpp"

namespace dt = tvx::datetime;
namespace rt = tvx::runtime;
using tvx::base::load;
using tvx::base::store;

namespace {

constexpr int32_t kDone = 0;
constexpr int32_t kRefused = 1;

// Wire datatype tokens of destinations.
enum Token : uint8_t {
  kDate = 49,
  kTime = 51,
  kDatetime4 = 58,
  kDatetime = 61,
  kBigdatetime = 187,
  kBigtime = 188,
};

template <class... Pointers>
void require_pointers(const Pointers*... pointers) {
  (rt::require_pointer(pointers), ...);
}

void require_values(const comnb_value* source, const comnb_value* destination) {
  require_pointers(source, destination);
  require_pointers(source->data, destination->data);
}

int32_t result_of(bool done) {
  return done ? kDone : kRefused;
}

bool add_checked(int32_t part, int32_t amount, comn_datetime& value) {
  rt::require(part >= COM_PART_YEAR && part < COM_PART_MICROSECOND);
  return dt::add(part, amount, value);
}

// Stores a value in a destination that has exactly its size.
template <class Value>
bool deliver(Value value, comnb_value& destination) {
  if (destination.maxlength != sizeof value) return false;
  store(destination.data, value);
  destination.length = sizeof value;
  return true;
}

bool deliver_datetime(const comn_datetime& value, comnb_value& destination) {
  switch (destination.token) {
    case kDatetime:
      return dt::is_datetime_day(value.days) && deliver(value, destination);
    case kDatetime4: {
      comn_datetime4 date4{};
      return dt::datetime_to_date4(value, date4) == dt::Status::kDone &&
             deliver(date4, destination);
    }
    case kDate:
      return deliver(value.days, destination);
    case kTime:
      return deliver(value.ticks, destination);
    default:
      return false;
  }
}

// The datetime that a source is, or is part of. A datetime has no place in a time's ticks.
bool take_datetime(const comnb_value& source, uint8_t destination_token, comn_datetime& value) {
  if (source.length == sizeof(comn_datetime) && destination_token != kTime) {
    value = load<comn_datetime>(source.data);
  } else if (source.length == sizeof(int32_t) && destination_token == kTime) {
    value = {0, load<uint32_t>(source.data)};
  } else if (source.length == sizeof(int32_t)) {
    value = {load<int32_t>(source.data), 0};
  } else {
    return false;
  }
  return true;
}

bool add_and_deliver(int32_t part, int32_t amount, const comnb_value& source,
                     comnb_value& destination) {
  comn_datetime value{};
  return take_datetime(source, destination.token, value) && add_checked(part, amount, value) &&
         deliver_datetime(value, destination);
}

bool add_and_deliver_big(int32_t part, int32_t amount, const comnb_value& source,
                         comnb_value& destination) {
  if (source.length != sizeof(uint64_t)) return false;
  rt::require(part >= COM_PART_YEAR && part <= COM_PART_MICROSECOND);
  auto value = load<uint64_t>(source.data);
  switch (destination.token) {
    case kBigdatetime:
      return dt::add(part, amount, value, dt::BigType::kDatetime) && deliver(value, destination);
    case kBigtime:
      return dt::add(part, amount, value, dt::BigType::kTime) &&
             deliver(value % dt::kMicrosecondsPerDay, destination);
    default:
      return false;
  }
}

}  // namespace

extern "C" {

int32_t com__date_add(int32_t part, int32_t amount, comn_datetime* value) {
  require_pointers(value);
  auto moved = load<comn_datetime>(value);
  if (!add_checked(part, amount, moved)) return kRefused;
  store(value, moved);
  return kDone;
}

int32_t com__dateadd_both(int32_t part, int32_t amount, const comnb_value* source,
                          comnb_value* destination) {
  require_values(source, destination);
  return result_of(add_and_deliver(part, amount, *source, *destination));
}

int32_t com__bigdateadd_both(int32_t part, int32_t amount, const comnb_value* source,
                             comnb_value* destination) {
  require_values(source, destination);
  return result_of(add_and_deliver_big(part, amount, *source, *destination));
}

int32_t com__datediff(int32_t part, const comn_datetime* start, const comn_datetime* end,
                      int32_t* result) {
  require_pointers(start, end, result);
  auto difference = load<int32_t>(result);
  if (!dt::difference(part, load<comn_datetime>(start), load<comn_datetime>(end), difference))
    return kRefused;
  store(result, difference);
  return kDone;
}

int32_t com__bigdatediff(int32_t part, const uint64_t* start, const uint64_t* end,
                         int64_t* result) {
  require_pointers(start, end, result);
  auto difference = load<int64_t>(result);
  dt::difference(part, load<uint64_t>(start), load<uint64_t>(end), difference);
  store(result, difference);
  return kDone;
}

int32_t com_intl_convt_firstday(int32_t position, int32_t from, int32_t to) {
  const auto modulo_week = [](int64_t days) { return static_cast<int32_t>(days) % 7; };
  return modulo_week(int64_t{modulo_week(int64_t{from} + position - 1)} + 8 - to);
}

}  // extern "C"
