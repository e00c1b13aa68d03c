// Date orders: the sequence in which year, month and day stand in a numeric date.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tvx::datetime {

inline constexpr int32_t kMonthDayYear = 1;
inline constexpr int32_t kDayMonthYear = 2;
inline constexpr int32_t kYearMonthDay = 3;
inline constexpr int32_t kYearDayMonth = 4;
inline constexpr int32_t kMonthYearDay = 5;
inline constexpr int32_t kDayYearMonth = 6;

inline constexpr int32_t kDateOrders = 6;  // numbered from 1

enum class Part { kYear, kMonth, kDay };
using Sequence = std::array<Part, 3>;

// By order; there is none of number 0.
inline constexpr std::array<Sequence, kDateOrders + 1> kSequences{{
    {},
    {Part::kMonth, Part::kDay, Part::kYear},
    {Part::kDay, Part::kMonth, Part::kYear},
    {Part::kYear, Part::kMonth, Part::kDay},
    {Part::kYear, Part::kDay, Part::kMonth},
    {Part::kMonth, Part::kYear, Part::kDay},
    {Part::kDay, Part::kYear, Part::kMonth},
}};

}  // namespace tvx::datetime
