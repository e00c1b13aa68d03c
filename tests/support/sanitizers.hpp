// Which sanitizers the tests are built with.
#pragma once

#if defined(__has_feature)
#define TVX_HAS_FEATURE(feature) __has_feature(feature)
#else
#define TVX_HAS_FEATURE(feature) 0
#endif

namespace tvx::test {

#if defined(__SANITIZE_ADDRESS__) || TVX_HAS_FEATURE(address_sanitizer)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

#if defined(__SANITIZE_THREAD__) || TVX_HAS_FEATURE(thread_sanitizer)
inline constexpr bool kThreadSanitizer = true;
#else
inline constexpr bool kThreadSanitizer = false;
#endif

}  // namespace tvx::test

#undef TVX_HAS_FEATURE
