#include "AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local long gAllocations = 0;

}  // namespace

// Array, sized and nothrow forms end up here by the standard library's defaults.
void* operator new(std::size_t size) {
  ++gAllocations;
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

AllocationCounter::AllocationCounter() : fStart(gAllocations) {}

long AllocationCounter::Count() const { return gAllocations - fStart; }
