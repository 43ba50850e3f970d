#pragma once
// An allocator that counts, and that can run out of memory on purpose.

#include <qoc/system.h>

#include <cstdint>
#include <cstdlib>

namespace qoc::test {

class CountingAllocator {
 public:
  CountingAllocator() = default;
  CountingAllocator(const CountingAllocator &) = delete;
  CountingAllocator &operator=(const CountingAllocator &) = delete;

  /// For the …WithMtable members.
  const qsys_memoryTable *table() const { return &table_; }

  /// The n-th allocation from now on, counted from 0, and all that follow it fail; -1: none.
  void failFrom(int64_t n) { failAt_ = n < 0 ? -1 : numAllocations_ + n; }

  int64_t numAllocations() const { return numAllocations_; }
  int64_t numLive() const { return numLive_; }
  bool hasFailed() const { return hasFailed_; }

 private:
  void *allocate(size_t size) {
    if (failAt_ >= 0 && numAllocations_ >= failAt_) {
      hasFailed_ = true;
      return nullptr;
    }
    void *block = std::malloc(size != 0 ? size : 1);
    if (block != nullptr) {
      ++numAllocations_;
      ++numLive_;
    }
    return block;
  }
  void release(void *block) {
    numLive_ -= block != nullptr ? 1 : 0;
    std::free(block);
  }

  int64_t numAllocations_ = 0, numLive_ = 0, failAt_ = -1;
  bool hasFailed_ = false;
  qsys_memoryTable table_ = {
      [](void *self, size_t size) { return static_cast<CountingAllocator *>(self)->allocate(size); },
      [](void *self, void *block) { static_cast<CountingAllocator *>(self)->release(block); }, this};
};

/// A counting allocator that is the whole library's as long as it lives: declare it before every object of the library.
class LibraryAllocator : public CountingAllocator {
 public:
  LibraryAllocator() { qsys_memory_setTable(table()); }
  ~LibraryAllocator() { qsys_memory_setTable(nullptr); }
};

}  // namespace qoc::test
