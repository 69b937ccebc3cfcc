#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

/// Marks a second form of a function whose loops do four doubles in an instruction where the processor can
/// (HayVectoresAnchos), and either form's calls for one piece with it. The operations are the same and in the same
/// order, none is fused: so are the results, to the bit.
///
/// Not on Windows, where GCC keeps such doubles on a stack that is aligned for half of them.
#if defined(__GNUC__) && defined(__x86_64__) && !defined(_WIN32)
#define URDIMBRE_DE_UNA_PIEZA __attribute__((flatten))
#define URDIMBRE_ANCHO __attribute__((flatten, target("avx2")))
[[nodiscard]] inline bool HayVectoresAnchos() noexcept { return __builtin_cpu_supports("avx2") != 0; }
#else
#define URDIMBRE_DE_UNA_PIEZA
#define URDIMBRE_ANCHO
[[nodiscard]] inline bool HayVectoresAnchos() noexcept { return false; }
#endif

/// A bit for each of eight numbers that lies below 0, as their differences do whose order is asked for. None of them is
/// -0 or no number.
[[nodiscard]] inline unsigned BajoCero(double const (&v)[8]) noexcept {
#if defined(__SSE2__) || defined(_M_X64)
  const auto par = [&v](unsigned i) { return static_cast<unsigned>(_mm_movemask_pd(_mm_loadu_pd(v + i))); };
  return par(0) | par(2) << 2 | par(4) << 4 | par(6) << 6;
#else
  unsigned bits = 0;
  for (unsigned i = 0; i < 8; ++i) bits |= static_cast<unsigned>(std::signbit(v[i])) << i;
  return bits;
#endif
}

/// The first place of a number among four; 4 when it is not there.
[[nodiscard]] inline unsigned LugarEntreCuatro(std::uint32_t const (&v)[4], std::uint32_t numero) noexcept {
#if defined(__SSE2__) || defined(_M_X64)
  const __m128i cuatro = _mm_loadu_si128(reinterpret_cast<__m128i const*>(v));
  const __m128i iguales = _mm_cmpeq_epi32(cuatro, _mm_set1_epi32(static_cast<int>(numero)));
  return static_cast<unsigned>(
      std::countr_zero(16U | static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(iguales)))));
#else
  unsigned i = 0;
  while (i < 4 && v[i] != numero) ++i;
  return i;
#endif
}

/// Puts 0 in place of a number among four.
inline void BorraDeCuatro(std::uint32_t (&v)[4], std::uint32_t numero) {
#if defined(__SSE2__) || defined(_M_X64)
  auto* sitio = reinterpret_cast<__m128i*>(v);
  const __m128i cuatro = _mm_loadu_si128(sitio);
  const __m128i iguales = _mm_cmpeq_epi32(cuatro, _mm_set1_epi32(static_cast<int>(numero)));
  _mm_storeu_si128(sitio, _mm_andnot_si128(iguales, cuatro));
#else
  for (std::uint32_t& suyo : v) suyo = suyo == numero ? 0 : suyo;
#endif
}
