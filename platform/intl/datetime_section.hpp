// Reads the "datetime" section of a language's localisation file: the names of months and days, and
// the customs of writing dates and times.
#pragma once

#include <cstdint>

#include "scanner.hpp"
#include "tvxcomn/support.h"

namespace tvx::intl {

// Reads the section on whose name the scanner stands. Every key must be there, once. Returns 0; or
// an error number, and the record is left as it was. The line is that of the faulty key or value,
// or the section's when a key is missing.
int32_t read_datetime_section(Scanner& scanner, intl_datetime_record& record);

}  // namespace tvx::intl
