#pragma once

#include <cstddef>

/// What the program holds on the heap, counted in its operator new and delete, the library's share included.
namespace bench {

[[nodiscard]] std::size_t heapBytes();
/// The most since the last resetPeak().
[[nodiscard]] std::size_t peakHeapBytes();
void resetPeak();

}  // namespace bench
