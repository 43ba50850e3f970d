// How soon a deadline of 5 ms ends the worst inputs: by the clock, as a caller sees it. More than 50 ms is an error.

#include <benchmark/benchmark.h>
#include <qoc/system.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "faults/worst_cases.hpp"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

qsys_status askDeadline(void *deadline) {
  return Clock::now() > *static_cast<const Clock::time_point *>(deadline) ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
}

void runCase(benchmark::State &state, const qoc::test::WorstCase &worst) {
  // Stays until the next case has been made, which may share parts of it.
  static std::function<qsys_status()> operation;
  operation = worst.make();
  double longest = 0;
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    Clock::time_point deadline = start + std::chrono::milliseconds(5);
    qsys_attention_setHandler(askDeadline, &deadline);
    benchmark::DoNotOptimize(operation());
    qsys_attention_setHandler(nullptr, nullptr);
    longest = std::max(longest, millisecondsSince(start));
  }
  state.counters["longest_ms"] = longest;
  if (longest > 50) {
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
