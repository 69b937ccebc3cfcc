#include "faults/FailingHeap.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

#include "AlignedMemory.h"

namespace {

constexpr long kNever = std::numeric_limits<long>::max();
std::atomic<long> asked{0}, first{kNever}, last{kNever};

bool Refused() {
  const long nth = asked.fetch_add(1) + 1;
  return nth >= first && nth <= last;
}

void* Ask(std::size_t bytes) noexcept { return Refused() ? nullptr : std::malloc(bytes); }

void* Ask(std::size_t bytes, std::align_val_t alignment) noexcept {
  return Refused() ? nullptr : AlignedMemory(bytes, static_cast<std::size_t>(alignment));
}

void* Given(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// Every form, those that do not throw and those of arrays too: a checking heap brings its own of each, and would meet
// memory of one of these in one of its own.
using std::align_val_t, std::nothrow_t, std::size_t;
void* operator new(size_t bytes) { return Given(Ask(bytes)); }
void* operator new[](size_t bytes) { return Given(Ask(bytes)); }
void* operator new(size_t bytes, align_val_t step) { return Given(Ask(bytes, step)); }
void* operator new[](size_t bytes, align_val_t step) { return Given(Ask(bytes, step)); }
void* operator new(size_t bytes, nothrow_t const&) noexcept { return Ask(bytes); }
void* operator new[](size_t bytes, nothrow_t const&) noexcept { return Ask(bytes); }
void* operator new(size_t bytes, align_val_t step, nothrow_t const&) noexcept { return Ask(bytes, step); }
void* operator new[](size_t bytes, align_val_t step, nothrow_t const&) noexcept { return Ask(bytes, step); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, size_t) noexcept { std::free(memory); }
void operator delete(void* memory, align_val_t) noexcept { FreeAligned(memory); }
void operator delete[](void* memory, align_val_t) noexcept { FreeAligned(memory); }
void operator delete(void* memory, size_t, align_val_t) noexcept { FreeAligned(memory); }
void operator delete[](void* memory, size_t, align_val_t) noexcept { FreeAligned(memory); }
void operator delete(void* memory, nothrow_t const&) noexcept { std::free(memory); }
void operator delete[](void* memory, nothrow_t const&) noexcept { std::free(memory); }
void operator delete(void* memory, align_val_t, nothrow_t const&) noexcept { FreeAligned(memory); }
void operator delete[](void* memory, align_val_t, nothrow_t const&) noexcept { FreeAligned(memory); }

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
