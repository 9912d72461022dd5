#include "AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

constexpr long kNoFailure = -1;

thread_local long gAllocations = 0;
thread_local long gSuccessesToFailure = kNoFailure;

}  // namespace

// Array, sized and nothrow forms end up here by the standard library's defaults.
void* operator new(std::size_t size) {
  ++gAllocations;
  if (gSuccessesToFailure != kNoFailure && gSuccessesToFailure-- == 0) throw std::bad_alloc();
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

AllocationCounter::AllocationCounter() : fStart(gAllocations) {}

long AllocationCounter::Count() const { return gAllocations - fStart; }

AllocationFailure::AllocationFailure(long successes) { gSuccessesToFailure = successes; }

AllocationFailure::~AllocationFailure() { gSuccessesToFailure = kNoFailure; }

// After the last success the count goes on to that of no failure.
bool AllocationFailure::HasHappened() const { return gSuccessesToFailure == kNoFailure; }
