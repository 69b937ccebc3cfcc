#pragma once

#include <cstddef>
#include <malloc.h>

/// Memory of more than the usual alignment; null when there is none. The C library keeps it apart from other memory.
inline void* AlignedMemory(std::size_t bytes, std::size_t step) noexcept { return _aligned_malloc(bytes, step); }
inline void FreeAligned(void* memory) noexcept { _aligned_free(memory); }
