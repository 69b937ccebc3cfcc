#pragma once

/// How large the clouds of a test may be: checks of memory and of threads make a run ten times slower or more.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define URDIMBRE_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define URDIMBRE_SANITIZED 1
#endif
#endif

namespace Meseta47::test {

#if defined(URDIMBRE_SANITIZED) || !defined(NDEBUG)
inline constexpr bool kFullSize = false;
#else
inline constexpr bool kFullSize = true;
#endif

}  // namespace Meseta47::test
