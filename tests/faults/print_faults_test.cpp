// Every public function that prints, where the print handler refuses a piece of text, for each of them.

#include <gtest/gtest.h>

#include <cstdio>

#include "faults/call.hpp"

namespace {

using namespace qoc::test;

class PrintFaults : public testing::TestWithParam<World> {};

TEST_P(PrintFaults, EndEveryFunctionWithTheirStatusAndChangeNothing) {
  LibraryAllocator memory;
  int numFaults = 0, numFunctions = 0;
  for (const Function &function : publicFunctions()) {
    if (reasonToSpare(function) != nullptr) {
      continue;
    }
    SCOPED_TRACE(function.name);
    int64_t numPrints = 0;
    std::string expected;
    {
      Call call(function, GetParam(), memory);
      call.run();
      numPrints = call.heard().numPrints;
      expected = call.describe();
    }
    numFunctions += numPrints > 0 ? 1 : 0;
    for (int64_t n = 0; n < numPrints; ++n) {
      SCOPED_TRACE("piece " + std::to_string(n));
      Call call(function, GetParam(), memory);
      call.listen(-1, n);
      EXPECT_EQ(call.run(), printRefusal);
      EXPECT_EQ(call.heard().numPrints, n + 1) << "more was printed after the refusal";

      call.listen();
      EXPECT_GE(call.run(), 0);
      EXPECT_EQ(call.describe(), expected);
      EXPECT_EQ(call.finish(), "");
      ++numFaults;
    }
  }
  std::printf("%d functions print, %d refusals\n", numFunctions, numFaults);
  EXPECT_GE(numFunctions, 9);
}

INSTANTIATE_TEST_SUITE_P(OfTheWorld, PrintFaults, testing::Values(World::plain, World::empty),
                         [](const auto &tested) { return std::string(nameOf(tested.param)); });

}  // namespace
