// Every public function that polls, interrupted at every poll: as it is, and where the meters of long loops poll at
// every unit of work.

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

#include "faults/call.hpp"
#include "support/metered.hpp"

namespace {

using namespace qoc::test;

class Interrupts : public testing::TestWithParam<std::tuple<World, bool>> {
 protected:
  World world() const { return std::get<0>(GetParam()); }
  bool isMetered() const { return std::get<1>(GetParam()); }
};

TEST_P(Interrupts, EndEveryFunctionWithTheirStatusAndLeaveItsObjectsUsable) {
  std::optional<PollingMeters> meters;
  if (isMetered()) {
    meters.emplace(1);
  }
  LibraryAllocator memory;
  int64_t numInterrupts = 0;
  int numFunctions = 0;
  for (const Function &function : publicFunctions()) {
    if (reasonToSpare(function) != nullptr) {
      continue;
    }
    SCOPED_TRACE(function.name);
    int64_t numPolls = 0;
    std::string expected;
    {
      Call call(function, world(), memory);
      call.run();
      numPolls = call.heard().numPolls;
      expected = call.describe();
    }
    numFunctions += numPolls > 0 ? 1 : 0;
    for (int64_t n = 0; n < numPolls; ++n) {
      SCOPED_TRACE("poll " + std::to_string(n));
      Call call(function, world(), memory);
      call.listen(n);
      EXPECT_EQ(call.run(), interruption);
      EXPECT_EQ(call.heard().numPolls, n + 1) << "work went on after the interrupt";

      call.listen();
      EXPECT_GE(call.run(), 0);
      if (mayDifferAfterFailure(function) == nullptr) {
        EXPECT_EQ(call.describe(), expected);
      }
      EXPECT_EQ(call.finish(), "");
      ++numInterrupts;
    }
  }
  std::printf("%d functions poll, %lld interrupts\n", numFunctions, static_cast<long long>(numInterrupts));
  EXPECT_GT(numFunctions, world() == World::empty ? 0 : isMetered() ? 60 : 15);
}

INSTANTIATE_TEST_SUITE_P(OfTheWorld, Interrupts, testing::Combine(testing::ValuesIn(allWorlds), testing::Bool()),
                         [](const auto &tested) {
                           return std::string(nameOf(std::get<0>(tested.param))) +
                                  (std::get<1>(tested.param) ? "AtEveryUnit" : "");
                         });

}  // namespace
