// Every public function that polls, interrupted at every poll: as it is, and where the meters of long loops poll at
// every unit of work.

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

#include "faults/refused_asks.hpp"
#include "support/metered.hpp"

namespace {

using namespace qoc::test;

class Interrupts : public testing::TestWithParam<std::tuple<World, bool>> {
 protected:
  World world() const { return std::get<0>(GetParam()); }
  bool isMetered() const { return std::get<1>(GetParam()); }
};

TEST_P(Interrupts, EndEveryFunctionWithTheirStatusAndLeaveItsObjectsUsable) {
  LibraryAllocator memory;
  std::optional<PollingMeters> meters;
  if (isMetered()) {
    // What is made once and shared from then on, such as indexes, is made before anything is counted.
    for (const Function &function : publicFunctions()) {
      if (reasonToSpare(function) == nullptr) Call(function, world(), memory).run();
    }
    meters.emplace(1);
  }
  const NumTried tried = refuseEveryAsk(
      world(), memory, &Heard::numPolls, interruption, [](Call &call, int64_t n) { call.listen(n); },
      [](const Function &function) { return mayDifferAfterFailure(function) != nullptr; });
  std::printf("%d functions poll, %d interrupts\n", tried.numFunctions, tried.numRefusals);
  EXPECT_GT(tried.numFunctions, world() == World::empty ? 0 : isMetered() ? 60 : 15);
}

INSTANTIATE_TEST_SUITE_P(OfTheWorld, Interrupts, testing::Combine(testing::ValuesIn(allWorlds), testing::Bool()),
                         [](const auto &tested) {
                           return std::string(nameOf(std::get<0>(tested.param))) +
                                  (std::get<1>(tested.param) ? "AtEveryUnit" : "");
                         });

}  // namespace
