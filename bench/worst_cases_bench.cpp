// How soon a deadline of 5 ms ends the worst inputs: by the clock, as a caller sees it, and in the thread's own time,
// which other programs on the machine do not lengthen. More than 50 ms of the latter is an error.

#include <benchmark/benchmark.h>
#include <qoc/system.h>

#include <time.h>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <algorithm>
#include <chrono>
#include <functional>

#include "faults/worst_cases.hpp"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double threadMilliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// glibc puts the pieces of millions of freed blocks together at some later large allocation, whoever makes it, and
/// takes its time: that of the inputs before is not to fall into what is measured.
void tidyHeap() {
#if defined(__GLIBC__)
  malloc_trim(0);
#endif
}

qsys_status askDeadline(void *deadline) {
  return Clock::now() > *static_cast<const Clock::time_point *>(deadline) ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
}

void runCase(benchmark::State &state, const qoc::test::WorstCase &worst) {
  // Stays until the next case has been made, which may share parts of it.
  static std::function<qsys_status()> operation;
  operation = worst.make();
  double longest = 0, longestOwn = 0;
  for (auto _ : state) {
    tidyHeap();
    const double ownStart = threadMilliseconds();
    const Clock::time_point start = Clock::now();
    Clock::time_point deadline = start + std::chrono::milliseconds(5);
    qsys_attention_setHandler(askDeadline, &deadline);
    benchmark::DoNotOptimize(operation());
    qsys_attention_setHandler(nullptr, nullptr);
    longest = std::max(longest, millisecondsSince(start));
    longestOwn = std::max(longestOwn, threadMilliseconds() - ownStart);
  }
  state.counters["longest_ms"] = longest;
  state.counters["longest_own_ms"] = longestOwn;
  if (longestOwn > 50) {
    state.SkipWithError("a deadline of 5 ms did not end it within 50 ms");
  }
}

const bool areRegistered = [] {
  for (const qoc::test::WorstCase &worst : qoc::test::worstCases()) {
    benchmark::RegisterBenchmark(("WorstCase/" + worst.name).c_str(),
                                 [&worst](benchmark::State &state) { runCase(state, worst); })
        ->Iterations(3)
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
