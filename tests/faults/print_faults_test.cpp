// Every public function that prints, where the print handler refuses a piece of text, for each of them.

#include <gtest/gtest.h>

#include <cstdio>

#include "faults/refused_asks.hpp"

namespace {

using namespace qoc::test;

class PrintFaults : public testing::TestWithParam<World> {};

TEST_P(PrintFaults, EndEveryFunctionWithTheirStatusAndChangeNothing) {
  LibraryAllocator memory;
  const NumTried tried = refuseEveryAsk(
      GetParam(), memory, &Heard::numPrints, printRefusal, [](Call &call, int64_t n) { call.listen(-1, n); },
      [](const Function &) { return false; });
  std::printf("%d functions print, %d refusals\n", tried.numFunctions, tried.numRefusals);
  EXPECT_GE(tried.numFunctions, 9);
}

INSTANTIATE_TEST_SUITE_P(OfTheWorld, PrintFaults, testing::Values(World::plain, World::empty),
                         [](const auto &tested) { return std::string(nameOf(tested.param)); });

}  // namespace
