#include "support/heap.hpp"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

using qoc::test::FaultMode;

thread_local int64_t numUses = 0;
thread_local int64_t numBytes = 0;
thread_local int64_t numAllowed = -1;  // -1: any number.
thread_local FaultMode faultMode = FaultMode::from;
thread_local bool hasFailed = false;
thread_local int64_t numBeforeCall = -1;  // -1: nobody is called.
thread_local void (*callBack)(void *) = nullptr;
thread_local void *callContext = nullptr;

void *allocate(std::size_t size, std::size_t alignment) {
  ++numUses;
  numBytes += static_cast<int64_t>(size);
  if (numBeforeCall >= 0 && numBeforeCall-- == 0) {
    callBack(callContext);
  }
  if (numAllowed == 0) {
    numAllowed = faultMode == FaultMode::from ? 0 : -1;
    hasFailed = true;
    return nullptr;
  }
  numAllowed -= numAllowed > 0 ? 1 : 0;
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;  // As aligned_alloc asks for.
  return alignment <= alignof(std::max_align_t) ? std::malloc(size != 0 ? size : 1)
                                                : std::aligned_alloc(alignment, rounded != 0 ? rounded : alignment);
}

void *allocateOrThrow(std::size_t size, std::size_t alignment) {
  void *block = allocate(size, alignment);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

}  // namespace

qoc::test::HeapFault::HeapFault(int64_t n, FaultMode mode) {
  numAllowed = n;
  faultMode = mode;
  ::hasFailed = false;
}
qoc::test::HeapFault::~HeapFault() { numAllowed = -1; }
qoc::test::HeapCall::HeapCall(int64_t n, void (*call)(void *), void *context) {
  numBeforeCall = n;
  callBack = call;
  callContext = context;
}
qoc::test::HeapCall::~HeapCall() { numBeforeCall = -1; }
std::int64_t qoc::test::numHeapAllocations() { return numUses; }
std::int64_t qoc::test::numHeapBytes() { return numBytes; }
bool qoc::test::HeapFault::hasFailed() const { return ::hasFailed; }

// The array forms and the sized ones come down to these.
void *operator new(std::size_t size) { return allocateOrThrow(size, 1); }
void *operator new(std::size_t size, std::align_val_t alignment) {
  return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept { return allocate(size, 1); }
void operator delete(void *block) noexcept { std::free(block); }
void operator delete(void *block, std::size_t) noexcept { std::free(block); }
void operator delete(void *block, std::align_val_t) noexcept { std::free(block); }
void operator delete(void *block, std::size_t, std::align_val_t) noexcept { std::free(block); }
