// Locale handles and what they point at, as far as conversions follow them.
#pragma once

#include <array>
#include <cstddef>

#include "tvxcomn/attributes.h"

namespace tvx::locale {

// The stored categories of a locale, in the order of a handle's entries.
enum class Category : size_t { kCollate, kCtype, kMessage, kMonetary, kNumeric, kTime };
inline constexpr size_t kCategories = 6;

// A character set that is loaded, shared by all locales that use it.
struct CharsetDescriptor {
  const com_charattr* attributes;
};

// One loaded locale, shared by all handles that name it.
struct CacheEntry {
  const CharsetDescriptor* charset;
};

}  // namespace tvx::locale

// Points at one entry a category and owns none of them.
struct comn_locale {
  std::array<const tvx::locale::CacheEntry*, tvx::locale::kCategories> entries;
};
