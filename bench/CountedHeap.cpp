#include "bench/CountedHeap.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::size_t> held{0}, peak{0};

void* counted(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  const std::size_t now =
      held.fetch_add(malloc_usable_size(memory), std::memory_order_relaxed) + malloc_usable_size(memory);
  std::size_t top = peak.load(std::memory_order_relaxed);
  while (now > top && !peak.compare_exchange_weak(top, now, std::memory_order_relaxed)) {
  }
  return memory;
}

void release(void* memory) {
  if (memory == nullptr) return;
  held.fetch_sub(malloc_usable_size(memory), std::memory_order_relaxed);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t bytes) { return counted(std::malloc(bytes)); }
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  return counted(std::aligned_alloc(static_cast<std::size_t>(alignment), bytes));
}
void operator delete(void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { release(memory); }

namespace bench {

std::size_t heapBytes() { return held; }
std::size_t peakHeapBytes() { return peak; }
void resetPeak() { peak = held.load(); }

}  // namespace bench
