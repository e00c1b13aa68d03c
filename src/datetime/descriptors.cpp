// Values taken from descriptors and delivered to them.
#include "datetime/descriptors.hpp"

#include "base/bytes.hpp"
#include "base/wire_tokens.hpp"
#include "datetime/arithmetic.hpp"
#include "datetime/values.hpp"

namespace tvx::datetime {
namespace {

namespace wire = base::wire_token;
using base::load;

// Stores a value in a destination that has exactly its size.
template <class Value>
bool deliver(Value value, comnb_value& destination) {
  if (destination.maxlength != sizeof value) return false;
  base::store(destination.data, value);
  destination.length = sizeof value;
  return true;
}

bool deliver_datetime(const comn_datetime& value, comnb_value& destination) {
  switch (destination.token) {
    case wire::kDatetime:
      return is_datetime_day(value.days) && deliver(value, destination);
    case wire::kDatetime4: {
      comn_datetime4 date4{};
      return datetime_to_date4(value, date4) == Status::kDone && deliver(date4, destination);
    }
    case wire::kDate:
      return deliver(value.days, destination);
    case wire::kTime:
      return deliver(value.ticks, destination);
    default:
      return false;
  }
}

}  // namespace

std::optional<comn_datetime> take_datetime(const comnb_value& source, uint8_t token) {
  const bool is_time = token == wire::kTime;
  if (source.length == sizeof(comn_datetime) && !is_time) return load<comn_datetime>(source.data);
  if (source.length != sizeof(int32_t)) return std::nullopt;
  if (is_time) return comn_datetime{0, load<uint32_t>(source.data)};
  return comn_datetime{load<int32_t>(source.data), 0};
}

std::optional<uint64_t> take_big(const comnb_value& source) {
  if (source.length != sizeof(uint64_t)) return std::nullopt;
  return load<uint64_t>(source.data);
}

bool add_and_deliver(int32_t part, int32_t amount, comn_datetime value, comnb_value& destination) {
  return add(part, amount, value) && deliver_datetime(value, destination);
}

bool add_and_deliver(int32_t part, int32_t amount, uint64_t value, comnb_value& destination) {
  switch (destination.token) {
    case wire::kBigdatetime:
      return add(part, amount, value, BigType::kDatetime) && deliver(value, destination);
    case wire::kBigtime:
      return add(part, amount, value, BigType::kTime) &&
             deliver(value % kMicrosecondsPerDay, destination);
    default:
      return false;
  }
}

}  // namespace tvx::datetime
