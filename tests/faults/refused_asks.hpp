#pragma once
// Every public function, where what the library asks the program for is refused: each time it asks, one after the
// other.

#include <gtest/gtest.h>

#include <string>

#include "faults/call.hpp"

namespace qoc::test {

/// How often something was tried.
struct NumTried {
  int numFunctions = 0;  ///< Those that ask at all.
  int numRefusals = 0;
};

/// Refuses the n-th ask of every public function, for every n: it ends with the status of the refusal and asks no more,
/// and the same call gives afterwards what it gives without a refusal.
/// @param asks what a call was asked
/// @param refuse has the n-th ask of a call refused
/// @param mayDiffer says of a function whether its arguments may be others after the refusal, so that the same call
/// gives something else
template <class Refuse, class MayDiffer>
NumTried refuseEveryAsk(World world, const CountingAllocator &memory, int64_t Heard::*asks, qsys_status refusal,
                        Refuse &&refuse, MayDiffer &&mayDiffer) {
  NumTried tried;
  for (const Function &function : publicFunctions()) {
    if (reasonToSpare(function) != nullptr) {
      continue;
    }
    SCOPED_TRACE(function.name);
    int64_t numAsks = 0;
    std::string expected;
    {
      Call call(function, world, memory);
      call.run();
      numAsks = call.heard().*asks;
      expected = call.describe();
    }
    tried.numFunctions += numAsks > 0 ? 1 : 0;
    for (int64_t n = 0; n < numAsks; ++n) {
      SCOPED_TRACE("ask " + std::to_string(n));
      Call call(function, world, memory);
      refuse(call, n);
      EXPECT_EQ(call.run(), refusal);
      EXPECT_EQ(call.heard().*asks, n + 1) << "work went on after the refusal";

      call.listen();
      EXPECT_GE(call.run(), 0);
      if (!mayDiffer(function)) {
        EXPECT_EQ(call.describe(), expected);
      }
      EXPECT_EQ(call.finish(), "");
      ++tried.numRefusals;
    }
  }
  return tried;
}

}  // namespace qoc::test
