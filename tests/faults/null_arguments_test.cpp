// Every pointer argument of every public function, null: it is reported once, and nothing happens.

#include <gtest/gtest.h>

#include <cstdio>

#include "faults/call.hpp"

namespace {

using namespace qoc::test;

class NullArguments : public testing::TestWithParam<World> {};

/// f(function, index of a pointer argument) for all of them.
template <class F>
void forEachPointer(F f) {
  for (const Function &function : publicFunctions()) {
    for (std::size_t i = 0; i < function.parameters.size() && reasonToSpare(function) == nullptr; ++i) {
      if (function.parameters[i].isPointer()) {
        SCOPED_TRACE(std::string(function.name) + " with null for " + function.parameters[i].name);
        f(function, i);
      }
    }
  }
}

TEST_P(NullArguments, ThatAreRequiredAreReportedOnceAndNothingIsTouched) {
  LibraryAllocator memory;
  int numTried = 0;
  forEachPointer([&](const Function &function, std::size_t index) {
    if (reasonToBeOptional(function, index) != nullptr) {
      return;
    }
    Call call(function, GetParam(), memory);
    const uint64_t arguments = call.fingerprint(), blocks = memory.fingerprint();
    const int64_t numAllocations = memory.numAllocations();

    EXPECT_EQ(call.runWithNull(index), QSYS_STATUS_OK);

    EXPECT_EQ(call.heard().numChecks, 1);
    EXPECT_EQ(call.heard().numPolls, 0);
    EXPECT_EQ(call.fingerprint(), arguments);
    EXPECT_EQ(memory.fingerprint(), blocks);
    EXPECT_EQ(memory.numAllocations(), numAllocations);
    EXPECT_EQ(call.finish(), "");
    ++numTried;
  });
  std::printf("%d required arguments\n", numTried);
  EXPECT_GT(numTried, 1000);
}

TEST_P(NullArguments, ThatAreOptionalAreAccepted) {
  LibraryAllocator memory;
  int numTried = 0;
  forEachPointer([&](const Function &function, std::size_t index) {
    if (reasonToBeOptional(function, index) == nullptr) {
      return;
    }
    Call call(function, GetParam(), memory);
    EXPECT_GE(call.runWithNull(index), 0);
    EXPECT_EQ(call.heard().numChecks, 0);
    EXPECT_EQ(call.finish(), "");
    ++numTried;
  });
  std::printf("%d optional arguments\n", numTried);
  EXPECT_GT(numTried, 50);
}

INSTANTIATE_TEST_SUITE_P(OfTheWorld, NullArguments, testing::ValuesIn(allWorlds),
                         [](const auto &tested) { return std::string(nameOf(tested.param)); });

}  // namespace
