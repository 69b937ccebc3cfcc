#pragma once

#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

/// Two integers, the companions of a CPareja: all bits set where a comparison holds, or a count of such.
struct CMarcas {
#if defined(__SSE2__) || defined(_M_X64)
  __m128i dos;
  friend CMarcas operator|(CMarcas a, CMarcas b) { return {_mm_or_si128(a.dos, b.dos)}; }
  friend CMarcas operator-(CMarcas a, CMarcas b) { return {_mm_sub_epi64(a.dos, b.dos)}; }
  void Deja(std::int64_t* donde) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(donde), dos); }
#else
  std::int64_t dos[2];
  friend CMarcas operator|(CMarcas a, CMarcas b) { return {{a.dos[0] | b.dos[0], a.dos[1] | b.dos[1]}}; }
  friend CMarcas operator-(CMarcas a, CMarcas b) { return {{a.dos[0] - b.dos[0], a.dos[1] - b.dos[1]}}; }
  void Deja(std::int64_t* donde) const {
    donde[0] = dos[0];
    donde[1] = dos[1];
  }
#endif
};

/// Two numbers that go through each operation together, in one instruction where the processor has it. For loops in
/// which compilers don't find such instructions by themselves.
struct CPareja {
#if defined(__SSE2__) || defined(_M_X64)
  __m128d dos;
  static CPareja De(double const* donde) { return {_mm_loadu_pd(donde)}; }
  friend CPareja operator+(CPareja a, CPareja b) { return {_mm_add_pd(a.dos, b.dos)}; }
  friend CPareja operator-(CPareja a, CPareja b) { return {_mm_sub_pd(a.dos, b.dos)}; }
  friend CPareja operator-(CPareja a) { return {_mm_xor_pd(a.dos, _mm_set1_pd(-0.0))}; }
  friend CMarcas operator<(CPareja a, CPareja b) { return {_mm_castpd_si128(_mm_cmplt_pd(a.dos, b.dos))}; }
#else
  double dos[2];
  static CPareja De(double const* donde) { return {{donde[0], donde[1]}}; }
  friend CPareja operator+(CPareja a, CPareja b) { return {{a.dos[0] + b.dos[0], a.dos[1] + b.dos[1]}}; }
  friend CPareja operator-(CPareja a, CPareja b) { return {{a.dos[0] - b.dos[0], a.dos[1] - b.dos[1]}}; }
  friend CPareja operator-(CPareja a) { return {{-a.dos[0], -a.dos[1]}}; }
  friend CMarcas operator<(CPareja a, CPareja b) {
    return {{a.dos[0] < b.dos[0] ? -1 : 0, a.dos[1] < b.dos[1] ? -1 : 0}};
  }
#endif
};
