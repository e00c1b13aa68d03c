// Local time as text.
#include "datetime/clock_text.hpp"

#include <array>

#include "datetime/names.hpp"
#include "numeric/field_write.hpp"

namespace tvx::datetime {
namespace {

int32_t two_digits(char* out, int32_t value, char trailing) {
  return numeric::write_field(out, value, trailing, -2);
}

// Year, month and day in the places of a date order.
std::array<int32_t, 3> ordered(int32_t y, int32_t m, int32_t d, int32_t date_order) {
  switch (date_order) {
    default:
      return {m, d, y};
    case 2:
      return {d, m, y};
    case 3:
      return {y, m, d};
    case 4:
      return {y, d, m};
    case 5:
      return {m, y, d};
    case 6:
      return {d, y, m};
  }
}

}  // namespace

void write_clock_text(char* out, const os::LocalTime& time, int32_t date_order, Clock clock) {
  const auto date = ordered(time.year % 100, time.month + 1, time.day, date_order);
  out += two_digits(out, date[0], '/');
  out += two_digits(out, date[1], '/');
  out += two_digits(out, date[2], ' ');

  const bool halved = clock == Clock::kTwelveHour;
  out += two_digits(out, halved && time.hour > 12 ? time.hour - 12 : time.hour, ':');
  out += two_digits(out, time.minute, ':');
  out += two_digits(out, time.second, halved ? ' ' : '\0');
  if (halved) out += numeric::write_name(out, kMarkers[time.hour < 12 ? 0 : 1], '\0', 2);
  *out = '\0';
}

}  // namespace tvx::datetime
