#pragma once
// Everything that can fail in the course of an operation, one after the other: memory of the library's allocator and of
// the C++ heap, and polls of the attention, also those of long loops, which here ask at every unit of work. Whatever
// fails, the operation ends with its status, and the next call with the same objects gives what it gives without.

#include <algorithm>
#include <atomic>
#include <functional>
#include <string>

#include "random/random_cases.hpp"
#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/heap.hpp"
#include "support/metered.hpp"
#include "support/shortcuts.hpp"

namespace random_cases {

/// Lets the n-th thing of its kind fail in the course of run(). @return its status; `hasStruck` says whether there was
/// such a thing
struct Fault {
  const char *name;
  bool mayPassUnnoticed;
  qsys_status status;
  qsys_status (*run)(const std::function<qsys_status()> &run, qoc::test::CountingAllocator &, int64_t n,
                     bool &hasStruck);
};

inline void raiseFlag(void *flag) { *static_cast<std::atomic<int32_t> *>(flag) = 1; }

inline const Fault faults[] = {
    {"allocation", false, QSYS_STATUS_OUT_OF_MEMORY,
     [](const std::function<qsys_status()> &run, qoc::test::CountingAllocator &memory, int64_t n, bool &hasStruck) {
       memory.fail(n, qoc::test::FaultMode::once);
       const qsys_status status = run();
       memory.failFrom(-1);
       hasStruck = memory.hasFailed();
       return status;
     }},
    // A vector that cannot be shrunk to fit stays as it is.
    {"use of the heap", true, QSYS_STATUS_OUT_OF_MEMORY,
     [](const std::function<qsys_status()> &run, qoc::test::CountingAllocator &, int64_t n, bool &hasStruck) {
       qoc::test::HeapFault fault(n, qoc::test::FaultMode::once);
       const qsys_status status = run();
       hasStruck = fault.hasFailed();
       return status;
     }},
    {"poll", false, QSYS_STATUS_INTERRUPTED,
     [](const std::function<qsys_status()> &run, qoc::test::CountingAllocator &, int64_t n, bool &hasStruck) {
       const qoc::test::PollingMeters meters(1);
       const qoc::test::Polls polls(n);
       const qsys_status status = run();
       hasStruck = polls.count() > n;
       return status;
     }},
    // The flag may be raised after the last poll.
    {"poll of a flag raised at a use of the heap", true, QSYS_STATUS_INTERRUPTED,
     [](const std::function<qsys_status()> &run, qoc::test::CountingAllocator &, int64_t n, bool &hasStruck) {
       const qoc::test::PollingMeters meters(1);
       std::atomic<int32_t> flag = 0;
       qsys_attention_setHandler(qsys_attention_flagHandler, &flag);
       qsys_status status = 0;
       {
         const qoc::test::HeapCall call(n, raiseFlag, &flag);
         status = run();
       }
       qsys_attention_setHandler(nullptr, nullptr);
       hasStruck = flag != 0;
       return status;
     }},
};

/// Makes a random case and has everything fail in it, one after the other.
///
/// @tparam Case is made from a Random, has an `Output`, which is what its operation changes and describe()s itself, and
/// a `qsys_status run(Output &)`
/// @return what was different, or ""
template <class Case>
std::string tryFaults(Random &random) {
  using namespace qoc::test;
  LibraryAllocator memory;
  std::string difference;
  {
    const ShortcutsTaken taken(random.oneIn(3)   ? ShortcutsTaken::none
                               : random.oneIn(2) ? ShortcutsTaken::all
                                                 : static_cast<unsigned>(random.below(ShortcutsTaken::all)));
    Case one(random);
    typename Case::Output expected;
    const qsys_status expectedStatus = one.run(expected);
    const auto isAsExpected = [&](qsys_status status, const typename Case::Output &out) {
      return status == expectedStatus && (status < 0 || out.describe() == expected.describe());
    };
    for (const Fault &fault : faults) {
      bool hasStruck = true;
      for (int64_t n = 0; hasStruck && difference.empty();
           n += n < 30 ? 1 : random.between(1, static_cast<int32_t>(n))) {
        typename Case::Output out;
        const qsys_status status = fault.run([&] { return one.run(out); }, memory, n, hasStruck);
        const bool isRight = (hasStruck && status == fault.status) ||
                             ((!hasStruck || fault.mayPassUnnoticed) && isAsExpected(status, out));
        const qsys_status again = one.run(out);
        if (!isRight || !isAsExpected(again, out)) {
          difference = std::string(fault.name) + " " + std::to_string(n) + ": status " + std::to_string(status) +
                       ", then " + std::to_string(again) + ", not " + std::to_string(expectedStatus) + "\n" +
                       out.describe() + "expected\n" + expected.describe();
        }
      }
    }
  }
  EXPECT_EQ(memory.numLive(), 0);
  EXPECT_EQ(memory.numForeignFrees(), 0);
  return difference;
}

/// The same cases in every run, so that they always reach the same places.
template <class Case>
void tryFaultsInTheSameCases(int32_t mostCases) {
  for (int32_t seed = 1; seed <= std::min(numCases(), mostCases) && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("case " + std::to_string(seed));
    Random random(static_cast<uint64_t>(seed));
    EXPECT_EQ(tryFaults<Case>(random), "");
  }
}

}  // namespace random_cases
