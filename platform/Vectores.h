#pragma once

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
