// Inputs that are as bad as they can be: whatever they are, the work between two polls is bounded, so that an interrupt
// or a deadline ends it. How soon, the benchmark of the same inputs says.

#include "faults/worst_cases.hpp"

#include <gtest/gtest.h>
#include <qoc/ocr_dictionary.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "support/heap.hpp"

namespace {

using namespace qoc::test;

/// Calls onCase(name, operation) for every case. An input lives until the next one is made, which may share parts of
/// it.
template <class OnCase>
void forEachCase(OnCase onCase) {
  std::function<qsys_status()> operation;
  for (const WorstCase &each : worstCases()) {
    SCOPED_TRACE(each.name);
    operation = each.make();
    onCase(each.name.c_str(), operation);
  }
}

/// Counts the uses of the library's allocator and of the C++ heap, and how many there are at most between two polls;
/// refuses from a poll on.
class Counts {
 public:
  explicit Counts(int64_t numAllowed) : numAllowed_(numAllowed), heapBefore_(numHeapAllocations()) {
    qsys_memory_setTable(&table_);
    qsys_attention_setHandler([](void *self) { return static_cast<Counts *>(self)->poll(); }, this);
  }
  ~Counts() {
    qsys_attention_setHandler(nullptr, nullptr);
    qsys_memory_setTable(nullptr);
  }
  Counts(const Counts &) = delete;
  Counts &operator=(const Counts &) = delete;

  int64_t numPolls() const { return numPolls_; }
  /// The most allocations without a poll, those up to now included.
  int64_t most() { return most_ = std::max(most_, numSince()); }

 private:
  int64_t numSince() const { return numAllocations_ + numHeapAllocations() - heapBefore_; }
  qsys_status poll() {
    most();
    numAllocations_ = 0;
    heapBefore_ = numHeapAllocations();
    return ++numPolls_ > numAllowed_ ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
  }

  int64_t numAllowed_, numPolls_ = 0, numAllocations_ = 0, heapBefore_, most_ = 0;
  // The blocks are those of the C heap, as without a table.
  qsys_memoryTable table_ = {[](void *self, size_t size) {
                               ++static_cast<Counts *>(self)->numAllocations_;
                               return std::malloc(size != 0 ? size : 1);
                             },
                             [](void *, void *block) { std::free(block); }, this};
};

TEST(WorstCase, EndsAtThePollThatRefuses) {
  int64_t mostPolls = 0, most = 0;
  forEachCase([&](const char *name, const std::function<qsys_status()> &operation) {
    for (const int64_t numAllowed : {0, 1, 40}) {
      Counts counts(numAllowed);
      const qsys_status status = operation();
      const int64_t numBetween = counts.most();
      std::printf("%-52s %3lld polls, at most %6lld allocations between two, %s\n", name,
                  static_cast<long long>(counts.numPolls()), static_cast<long long>(numBetween),
                  status < 0 ? qoc_status_getName(status) : "complete");
      // None goes on, or asks again, when it is told to end.
      EXPECT_EQ(status, counts.numPolls() > numAllowed ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK)
          << qoc_status_getName(status);
      EXPECT_LE(counts.numPolls(), numAllowed + 1);
      EXPECT_LE(numBetween, 200'000);
      mostPolls = std::max(mostPolls, counts.numPolls());
      most = std::max(most, numBetween);
    }
  });
  std::printf("%zu cases, at most %lld allocations between two polls\n", worstCases().size(),
              static_cast<long long>(most));
  EXPECT_EQ(mostPolls, 41);
}

}  // namespace
