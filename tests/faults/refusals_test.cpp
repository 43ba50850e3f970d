// Arguments of which functions refuse some: what was to be changed is as it was.

#include <gtest/gtest.h>
#include <qoc/ocr_dictionary.h>

#include <cstdio>

#include "faults/call.hpp"

namespace {

using namespace qoc::test;

class Refusals : public testing::TestWithParam<World> {};

TEST_P(Refusals, LeaveEverythingAsItWas) {
  constexpr std::size_t largestBlock = std::size_t{1} << 20;
  LibraryAllocator memory;
  memory.refuseAbove(largestBlock);
  int numTried = 0, numRefused = 0, numRefusing = 0;
  for (const Function &function : publicFunctions()) {
    if (reasonToSpare(function) != nullptr) {
      continue;
    }
    SCOPED_TRACE(function.name);
    const int numBefore = numRefused;
    for (std::size_t i = 0; i < function.parameters.size(); ++i) {
      for (std::size_t kind = 0;; ++kind) {
        SCOPED_TRACE(std::string(function.parameters[i].name) + " of kind " + std::to_string(kind));
        Call call(function, GetParam(), memory);
        if (!call.makeHostile(i, kind)) {
          break;
        }
        const std::string before = call.describe();
        const qsys_status status = call.run();
        ++numTried;
        if (status < 0) {
          ++numRefused;
          EXPECT_EQ(call.heard().numChecks, 0) << qoc_status_getName(status);
          const bool isShortage = status == QSYS_STATUS_OUT_OF_MEMORY;
          if ((isShortage ? mayChangeOnFailure : mayChangeOnRefusal)(function) == nullptr) {
            EXPECT_EQ(call.describe(), before) << qoc_status_getName(status);
          }
        } else if (call.heard().numChecks > 0) {
          EXPECT_EQ(call.describe(), before) << "the argument was reported";
        }
        EXPECT_EQ(call.finish(), "");
      }
    }
    numRefusing += numRefused != numBefore ? 1 : 0;
  }
  std::printf("%d arguments tried, %d refused, by %d functions\n", numTried, numRefused, numRefusing);
  EXPECT_GT(numRefusing, 100);
}

INSTANTIATE_TEST_SUITE_P(OfTheWorld, Refusals, testing::ValuesIn(allWorlds),
                         [](const auto &tested) { return std::string(nameOf(tested.param)); });

}  // namespace
