// Inputs that are as bad as they can be: whatever they are, the work between two polls is bounded, so that an interrupt
// or a deadline ends it.

#include "faults/worst_cases.hpp"

#include <gtest/gtest.h>
#include <qoc/ocr_dictionary.h>

#include <time.h>

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

double threadMilliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// A deadline in the thread's own time, which other programs on the machine do not lengthen, that watches how long the
/// work goes on without asking.
class Deadline {
 public:
  explicit Deadline(double milliseconds) : start_(threadMilliseconds()), last_(start_), allowed_(milliseconds) {
    qsys_attention_setHandler([](void *self) { return static_cast<Deadline *>(self)->poll(); }, this);
  }
  ~Deadline() { qsys_attention_setHandler(nullptr, nullptr); }
  Deadline(const Deadline &) = delete;
  Deadline &operator=(const Deadline &) = delete;

  /// The longest time without a poll, the time up to the end included.
  double longest() {
    poll();
    return longest_;
  }
  double elapsed() const { return threadMilliseconds() - start_; }
  int64_t numPolls() const { return numPolls_; }

 private:
  qsys_status poll() {
    const double now = threadMilliseconds();
    longest_ = std::max(longest_, now - last_);
    last_ = now;
    ++numPolls_;
    return now - start_ > allowed_ ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
  }

  double start_, last_, allowed_, longest_ = 0;
  int64_t numPolls_ = 0;
};

/// How much slower than a plain build this one is.
constexpr double slowness =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    30;
#elif !defined(__OPTIMIZE__)
    10;
#else
    1;
#endif

TEST(WorstCase, EndsWithinFiftyMillisecondsByADeadlineOfFive) {
  double most = 0;
  forEachCase([&](const char *name, const std::function<qsys_status()> &operation) {
    Deadline deadline(5 * slowness);
    const qsys_status status = operation();
    const double elapsed = deadline.elapsed(), longest = deadline.longest();
    std::printf("%-52s %8.1f ms, %6.1f ms at most without a poll, %lld polls, %s\n", name, elapsed, longest,
                static_cast<long long>(deadline.numPolls()), status < 0 ? qoc_status_getName(status) : "complete");
    EXPECT_TRUE(status >= 0 || status == QSYS_STATUS_INTERRUPTED) << qoc_status_getName(status);
    EXPECT_LT(elapsed, 50 * slowness);
    most = std::max(most, elapsed);
  });
  std::printf("%zu cases, at most %.1f ms\n", worstCases().size(), most);
}

}  // namespace
