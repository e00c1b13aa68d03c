// Multibyte text brought to single bytes, so that the grammar of numbers need not know it.
#pragma once

#include <cstdint>

#include "tvxcomn/attributes.h"

namespace tvx::charset {

// Writes each character that has an ASCII form as that byte and the bytes of any other as they are,
// until the text or the capacity is used up; single-byte text (a null record included) is copied.
// Returns the bytes written. A length below 0 counts as 0.
int32_t map_to_ascii(const char* text, int32_t length, char* out, int32_t capacity,
                     const com_charattr* record);

}  // namespace tvx::charset
