// Days to dates, and there and back.
#include "peers/calendar.hpp"
#include "suite.hpp"
#include "tvxcomn/datearith.h"

namespace tvx::bench {
namespace {

comn_datetime random_datetime(std::mt19937_64& generator) {
  const auto day = std::uniform_int_distribution<int32_t>(-53'690, 2'958'463)(generator);
  return {day, static_cast<uint32_t>(generator() % 25'920'000)};
}

struct Day {
  comn_datetime datetime;

  friend std::ostream& operator<<(std::ostream& out, const Day& day) {
    return out << "day " << day.datetime.days;
  }
};

void compare_cracking(Suite& suite) {
  const auto days = random_values([](auto& generator) { return Day{random_datetime(generator)}; });
  const auto ours = [](const Day& day) {
    comn_dateparts parts;
    com__datecrack(&day.datetime, &parts);
    return parts;
  };
  const auto civil_day = [](const Day& day) {
    peers::CivilDay civil;
    peers::civil_day(&day.datetime.days, &civil);
    return civil;
  };
  // Less than ours does, and a stricter measure.
  const auto date_only = [](const Day& day) {
    peers::CivilDate date;
    peers::civil_date(&day.datetime.days, &date);
    return date;
  };
  struct Same {
    bool operator()(const comn_dateparts& parts, const peers::CivilDate& date) const {
      return parts.year == date.year && parts.month + 1 == date.month && parts.day == date.day;
    }
    bool operator()(const comn_dateparts& parts, const peers::CivilDay& day) const {
      return (*this)(parts, day.date) && parts.weekday == day.weekday &&
             parts.day_of_year == day.day_of_year;
    }
  };
  suite.compare({"datecrack", 1.0}, days, Same(), ours, Peer{"date.h", civil_day},
                Peer{"date.h, date only", date_only});
}

// The day is cracked, moved and rebuilt.
struct Move {
  Day from;
  int32_t months;

  friend std::ostream& operator<<(std::ostream& out, const Move& move) {
    return out << move.from << " and " << move.months << " months";
  }
};

void compare_rebuilding(Suite& suite) {
  const auto moves = random_values([](auto& generator) {
    const Day from{random_datetime(generator)};
    return Move{from, std::uniform_int_distribution<int32_t>(-240, 240)(generator)};
  });
  const auto ours = [](const Move& move) {
    comn_datetime value = move.from.datetime;
    com__date_add(COM_PART_MONTH, move.months, &value);
    return value.days;
  };
  const auto theirs = [](const Move& move) {
    int32_t day = move.from.datetime.days;
    peers::add_months(move.months, &day);
    return day;
  };
  suite.compare({"date_add months", 1.0}, moves, std::equal_to<>(), ours, Peer{"date.h", theirs});
}

}  // namespace

void compare_calendar(Suite& suite) {
  compare_cracking(suite);
  compare_rebuilding(suite);
}

}  // namespace tvx::bench
