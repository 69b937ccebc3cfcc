#pragma once

#if defined(_MSC_VER)
#include <intrin.h>
#endif

/// Tells the processor that the cache line at `sitio` will be written soon. A hint: any address will do, and nothing
/// can fail.
inline void Anticipa([[maybe_unused]] void* sitio) noexcept {
#if defined(__GNUC__)
  __builtin_prefetch(sitio, 1);
#elif defined(_M_X64)
  _m_prefetchw(sitio);
#endif
}

/// The same of a line that will only be read.
inline void AnticipaLectura([[maybe_unused]] void const* sitio) noexcept {
#if defined(__GNUC__)
  __builtin_prefetch(sitio, 0);
#elif defined(_M_X64)
  _mm_prefetch(static_cast<char const*>(sitio), _MM_HINT_T0);
#endif
}
