// Exported functions that follow locale handles.
#include "locale/character_attributes.hpp"

extern "C" const com_charattr* com_intl_charattr(comn_context* context,
                                                 const comn_datafmt* format) {
  static constexpr comn_context no_context{};
  static constexpr comn_datafmt no_format{};
  return tvx::locale::character_attributes(context != nullptr ? *context : no_context,
                                           format != nullptr ? *format : no_format);
}
