// Splits a date text into tokens.
#pragma once

#include <string_view>

#include "datetime/token.hpp"
#include "tvxcomn/attributes.h"

namespace tvx::datetime {

// Of 12 names each, January first. While one of the lists is null, no word is a month.
struct MonthNames {
  const char* const* full;
  const char* const* abbreviated;
};

// Fills `tokens`, which are empty. Returns false when the text holds what is no token, or more
// tokens than they take. The record, null for the built-in one, tells how long a character is, its
// ASCII form and whether it is a letter. Words are compared with names, and with "AM" and "PM", in
// those forms: without regard to case in character sets of single bytes.
[[nodiscard]] bool tokenise(std::string_view text, const MonthNames& months,
                            const com_charattr* record, Tokens& tokens);

}  // namespace tvx::datetime
