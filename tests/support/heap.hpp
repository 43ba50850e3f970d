#pragma once
// The C++ heap of the test program, which can run out of memory on purpose in the calling thread.

#include <cstdint>

#include "support/allocator.hpp"

namespace qoc::test {

/// As long as it lives, the n-th use of operator new in this thread, counted from 0, fails, alone or with all that
/// follow it.
class HeapFault {
 public:
  explicit HeapFault(int64_t n, FaultMode mode = FaultMode::from);
  ~HeapFault();
  HeapFault(const HeapFault &) = delete;
  HeapFault &operator=(const HeapFault &) = delete;

  bool hasFailed() const;
};

/// As long as it lives, the n-th use of operator new in this thread, counted from 0, calls back first.
class HeapCall {
 public:
  HeapCall(int64_t n, void (*call)(void *), void *context);
  ~HeapCall();
  HeapCall(const HeapCall &) = delete;
  HeapCall &operator=(const HeapCall &) = delete;
};

/// How often operator new has been used in this thread.
std::int64_t numHeapAllocations();
/// How many bytes it has been asked for in this thread, those included that were given back.
std::int64_t numHeapBytes();

}  // namespace qoc::test
