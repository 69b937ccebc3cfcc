#pragma once

#include <cstddef>
#include <cstdlib>

/// Memory of more than the usual alignment; null when there is none.
inline void* AlignedMemory(std::size_t bytes, std::size_t step) noexcept {
  return std::aligned_alloc(step, (bytes + step - 1) / step * step);
}
inline void FreeAligned(void* memory) noexcept { std::free(memory); }
