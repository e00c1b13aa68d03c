// Local time as text.
#include "datetime/clock_text.hpp"

#include "datetime/date_order.hpp"
#include "datetime/names.hpp"
#include "numeric/field_write.hpp"

namespace tvx::datetime {
namespace {

int32_t two_digits(char* out, int32_t value, char trailing) {
  return numeric::write_field(out, value, trailing, -2);
}

int32_t number_of(Part part, const os::LocalTime& time) {
  switch (part) {
    case Part::kYear:
      return time.year % 100;
    case Part::kMonth:
      return time.month + 1;
    case Part::kDay:
      break;
  }
  return time.day;
}

}  // namespace

void write_clock_text(char* out, const os::LocalTime& time, int32_t date_order, Clock clock) {
  const bool is_order = date_order >= 1 && date_order <= kDateOrders;
  const auto& sequence = kSequences[static_cast<size_t>(is_order ? date_order : kMonthDayYear)];
  out += two_digits(out, number_of(sequence[0], time), '/');
  out += two_digits(out, number_of(sequence[1], time), '/');
  out += two_digits(out, number_of(sequence[2], time), ' ');

  const bool halved = clock == Clock::kTwelveHour;
  out += two_digits(out, halved && time.hour > 12 ? time.hour - 12 : time.hour, ':');
  out += two_digits(out, time.minute, ':');
  out += two_digits(out, time.second, halved ? ' ' : '\0');
  if (halved) out += numeric::write_name(out, kMarkers[time.hour < 12 ? 0 : 1], '\0', 2);
  *out = '\0';
}

}  // namespace tvx::datetime
