#pragma once
// The C++ heap of the test program, which can run out of memory on purpose in the calling thread.

#include <cstdint>

namespace qoc::test {

/// As long as it lives, the n-th use of operator new in this thread, counted from 0, and all that follow it fail.
class HeapFault {
 public:
  explicit HeapFault(int64_t n);
  ~HeapFault();
  HeapFault(const HeapFault &) = delete;
  HeapFault &operator=(const HeapFault &) = delete;
};

}  // namespace qoc::test
