#pragma once
// An allocator that counts, that can run out of memory on purpose, and that sees what is freed.

#include <qoc/system.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace qoc::test {

/// Which uses of an allocator fail, counted from 0: the n-th alone, or the n-th and all that follow it.
enum class FaultMode { once, from };

class CountingAllocator {
 public:
  CountingAllocator() = default;
  CountingAllocator(const CountingAllocator &) = delete;
  CountingAllocator &operator=(const CountingAllocator &) = delete;

  /// For the …WithMtable members.
  const qsys_memoryTable *table() const { return &table_; }

  /// The n-th allocation from now on, counted from 0, and all that follow it fail; -1: none.
  void failFrom(int64_t n) { fail(n, FaultMode::from); }
  /// The n-th allocation from now on fails, alone or with all that follow it; -1: none.
  void fail(int64_t n, FaultMode mode) {
    countdown_ = n;
    mode_ = mode;
    hasFailed_ = hasFailed_ && n < 0;
  }

  /// From now on a block larger than this is refused, as if there were no more.
  void refuseAbove(size_t size) { largest_ = size; }

  int64_t numAllocations() const { return numAllocations_; }
  int64_t numLive() const { return numLive_; }
  bool hasFailed() const { return hasFailed_; }
  /// The number of blocks that were freed here and did not come from here, or were freed before.
  int64_t numForeignFrees() const { return numForeignFrees_; }
  /// The number of freed blocks behind whose end something was written.
  int64_t numOverruns() const { return numOverruns_; }

  /// Differs when any live block, its contents or its place differs.
  uint64_t fingerprint() const {
    uint64_t sum = 14695981039346656037u;
    const auto take = [&sum](const void *bytes, size_t size) {
      for (size_t i = 0; i < size; ++i) {
        sum = (sum ^ static_cast<const unsigned char *>(bytes)[i]) * 1099511628211u;
      }
    };
    for (const Header *header = first_; header != nullptr; header = header->next) {
      take(&header, sizeof header);
      take(header + 1, header->size);
    }
    return sum;
  }

 private:
  struct alignas(std::max_align_t) Header {
    const CountingAllocator *owner;
    size_t size;
    Header *previous, *next;
    uint64_t mark;
  };
  static constexpr uint64_t live = 0x716F634C49564521u, freed = 0x716F634652454521u;
  static constexpr size_t tailSize = 16;
  static constexpr unsigned char fresh = 0xCD, gone = 0xDD, tail = 0xFD;

  void *allocate(size_t size) {
    if (countdown_ == 0) {
      hasFailed_ = true;
      countdown_ = mode_ == FaultMode::from ? 0 : -1;
      return nullptr;
    }
    countdown_ -= countdown_ > 0 ? 1 : 0;
    if (size > largest_) {
      hasFailed_ = true;
      return nullptr;
    }
    auto *header = static_cast<Header *>(std::malloc(sizeof(Header) + size + tailSize));
    if (header == nullptr) {
      return nullptr;
    }
    *header = {this, size, nullptr, first_, live};
    if (first_ != nullptr) {
      first_->previous = header;
    }
    first_ = header;
    auto *block = reinterpret_cast<unsigned char *>(header + 1);
    std::memset(block, fresh, size);
    std::memset(block + size, tail, tailSize);
    ++numAllocations_;
    ++numLive_;
    return block;
  }
  void release(void *block) {
    if (block == nullptr) {
      return;
    }
    Header *header = static_cast<Header *>(block) - 1;
    if (header->mark != live || header->owner != this) {
      ++numForeignFrees_;
      return;
    }
    auto *bytes = static_cast<unsigned char *>(block);
    for (size_t i = 0; i < tailSize; ++i) {
      if (bytes[header->size + i] != tail) {
        ++numOverruns_;
        break;
      }
    }
    (header->previous != nullptr ? header->previous->next : first_) = header->next;
    if (header->next != nullptr) {
      header->next->previous = header->previous;
    }
    header->mark = freed;
    std::memset(block, gone, header->size + tailSize);
    --numLive_;
    std::free(header);
  }

  Header *first_ = nullptr;
  size_t largest_ = SIZE_MAX - sizeof(Header) - tailSize;
  int64_t numAllocations_ = 0, numLive_ = 0, countdown_ = -1, numForeignFrees_ = 0, numOverruns_ = 0;
  FaultMode mode_ = FaultMode::from;
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
