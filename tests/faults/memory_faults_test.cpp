// Memory that runs out in the course of every public function: at every allocation, once and for good, in the library's
// allocator and in the C++ heap.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "faults/call.hpp"
#include "support/heap.hpp"

namespace {

using namespace qoc::test;

/// The library's allocator, or the C++ heap of the calling thread, running out while a call runs.
class Shortage {
 public:
  Shortage(CountingAllocator &memory, bool isOfHeap) : memory_(memory), isOfHeap_(isOfHeap) {}

  /// Runs the call with the n-th allocation failing.
  qsys_status run(Call &call, int64_t n, FaultMode mode) {
    if (isOfHeap_) {
      HeapFault fault(n, mode);
      const qsys_status status = call.run();
      hasStruck_ = fault.hasFailed();
      return status;
    }
    memory_.fail(n, mode);
    const qsys_status status = call.run();
    memory_.failFrom(-1);
    hasStruck_ = memory_.hasFailed();
    return status;
  }
  bool hasStruck() const { return hasStruck_; }

 private:
  CountingAllocator &memory_;
  bool isOfHeap_, hasStruck_ = false;
};

class MemoryFaults : public testing::TestWithParam<std::tuple<World, bool>> {
 protected:
  World world() const { return std::get<0>(GetParam()); }
  bool isOfHeap() const { return std::get<1>(GetParam()); }

  /// One call that meets a fault at allocation n, and one more without; false when there was no such allocation.
  void tryFault(const Function &function, int64_t n, FaultMode mode, const std::string &expected, bool &hasStruck) {
    Call call(function, world(), memory_);
    const std::string before = call.describe();
    Shortage shortage(memory_, isOfHeap());
    const qsys_status status = shortage.run(call, n, mode);
    hasStruck = shortage.hasStruck();
    if (hasStruck) {
      ASSERT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
      ASSERT_EQ(call.heard().numChecks, 0);
      if (mayChangeOnFailure(function) == nullptr) {
        ASSERT_EQ(call.describe(), before);
      }
      call.listen();
      ASSERT_GE(call.run(), 0) << "with the same arguments, after the failure";
    }
    if (!hasStruck || mayDifferAfterFailure(function) == nullptr) {
      ASSERT_EQ(call.describe(), expected);
    }
    ASSERT_EQ(call.finish(), "");
  }

  /// In the plain world every allocation fails. Runs on windows have thousands of them, alike: of those behind the first
  /// every seventh does, unless QOC_TEST_THOROUGH is set.
  int64_t step(int64_t n) const {
    static const bool isThorough = std::getenv("QOC_TEST_THOROUGH") != nullptr;
    return world() == World::plain || n < 50 || isThorough ? 1 : 7;
  }

  /// All faults that one function can meet; gives their number.
  void tryFunction(const Function &function, int64_t &numFaults) {
    std::string expected;
    {
      Call call(function, world(), memory_);
      const qsys_status status = call.run();
      ASSERT_GE(status, 0) << qoc_status_getName(status) << " without a fault: give it better samples";
      ASSERT_EQ(call.heard().numChecks, 0);
      expected = call.describe();
      ASSERT_EQ(call.finish(), "");
    }
    for (const FaultMode mode : {FaultMode::once, FaultMode::from}) {
      bool hasStruck = true;
      for (int64_t n = 0; hasStruck; n += step(n)) {
        SCOPED_TRACE((mode == FaultMode::once ? "allocation " : "from allocation ") + std::to_string(n));
        ASSERT_NO_FATAL_FAILURE(tryFault(function, n, mode, expected, hasStruck));
        numFaults += hasStruck ? 1 : 0;
      }
    }
  }

  LibraryAllocator memory_;
};

TEST_P(MemoryFaults, EndEveryFunctionWithAStatusAndLeaveItsObjectsUsable) {
  int64_t numFaults = 0;
  int numFunctions = 0, numStruck = 0;
  for (const Function &function : publicFunctions()) {
    if (reasonToSpare(function) != nullptr) {
      continue;
    }
    SCOPED_TRACE(function.name);
    const int64_t numBefore = numFaults;
    tryFunction(function, numFaults);
    ++numFunctions;
    numStruck += numFaults != numBefore ? 1 : 0;
  }
  EXPECT_GT(numStruck, isOfHeap() ? 10 : 300);
  std::printf("%d functions called, %d of them met %lld faults\n", numFunctions, numStruck,
              static_cast<long long>(numFaults));
}

INSTANTIATE_TEST_SUITE_P(OfTheWorld, MemoryFaults,
                         testing::Combine(testing::Values(World::plain, World::windows), testing::Bool()),
                         [](const auto &tested) {
                           return std::string(nameOf(std::get<0>(tested.param))) +
                                  (std::get<1>(tested.param) ? "InTheHeap" : "InTheAllocator");
                         });

}  // namespace
