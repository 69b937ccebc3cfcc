#pragma once

#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64)
#include <bit>
#include <emmintrin.h>
#endif

/// How many of sixteen ascending numbers do not exceed `v`: the place in a sorted table, found without a branch where
/// the processor compares many numbers at once. Every call costs the same.
inline unsigned CuentaHasta(std::int16_t const* dieciseis, std::int16_t v) noexcept {
#if defined(__SSE2__) || defined(_M_X64)
  const __m128i buscado = _mm_set1_epi16(v);
  const auto mayores = [&](std::int16_t const* ocho) {
    return _mm_cmpgt_epi16(_mm_loadu_si128(reinterpret_cast<__m128i const*>(ocho)), buscado);
  };
  const __m128i marcas = _mm_packs_epi16(mayores(dieciseis), mayores(dieciseis + 8));
  const auto primeros = static_cast<unsigned>(_mm_movemask_epi8(marcas)) | 0x10000U;
  return static_cast<unsigned>(std::countr_zero(primeros));
#else
  unsigned cuantos = 0;
  for (unsigned i = 0; i < 16; ++i) cuantos += dieciseis[i] <= v ? 1 : 0;
  return cuantos;
#endif
}
