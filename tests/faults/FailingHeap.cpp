#include "faults/FailingHeap.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr long kNever = std::numeric_limits<long>::max();
std::atomic<long> asked{0}, first{kNever}, last{kNever};

void Ask() {
  const long nth = asked.fetch_add(1) + 1;
  if (nth >= first && nth <= last) throw std::bad_alloc();
}

void* Given(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

std::size_t RoundedUp(std::size_t bytes, std::size_t step) { return (bytes + step - 1) / step * step; }

}  // namespace

void* operator new(std::size_t bytes) {
  Ask();
  return Given(std::malloc(bytes));
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  Ask();
  const auto step = static_cast<std::size_t>(alignment);
  return Given(std::aligned_alloc(step, RoundedUp(bytes, step)));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

namespace failing_heap {

void RefuseAt(long nth, Refusal refusal) {
  asked = 0;
  last = refusal == Refusal::Once ? nth : kNever;
  first = nth;
}

long Stop() {
  first = kNever;
  return asked;
}

}  // namespace failing_heap
