// Which character attributes a value's text has: those of its format's locale, else of the
// context's.
#pragma once

#include "charset/attributes.hpp"
#include "locale/handle.hpp"
#include "runtime/diagnosis.hpp"
#include "tvxcomn/context.h"

namespace tvx::locale {

// The record of a handle's character set. A handle always has one.
inline const com_charattr* character_attributes(const comn_locale& handle) {
  const CacheEntry* entry = handle.entries[static_cast<size_t>(Category::kCtype)];
  runtime::require(entry != nullptr && entry->charset != nullptr);
  return entry->charset->attributes;
}

inline const com_charattr* character_attributes(const comn_context& context,
                                                const comn_datafmt& format) {
  const comn_locale* handle = format.locale != nullptr ? format.locale : context.default_locale;
  return handle == nullptr ? &charset::builtin_record() : character_attributes(*handle);
}

}  // namespace tvx::locale
