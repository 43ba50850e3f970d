// How long a reading takes against a line when every window is searched with one edit, and how long the direct way
// takes, which tries every alignment of every window anew: that of the tests' reference model. Both run on the same
// line and readings, and a test of the answers comes first.

#include <benchmark/benchmark.h>

#include <random>

#include "reference/convert.hpp"
#include "reference/line_fielding.hpp"

namespace {

using reference::LineFielding;
using reference::Reading;
using reference::RunParams;

constexpr int numLinePositions = 16;
constexpr int numReadingPositions = 64;

/// A card number: digits throughout.
LineFielding makeLine() {
  LineFielding line;
  for (int i = 0; i < numLinePositions; ++i) {
    line.positions.push_back({4u, {}});
  }
  return line;
}

/// A reading of digits with three candidates a position, but for a stray letter at every numth position.
Reading makeReading(int strayEvery) {
  std::mt19937 random(5);
  Reading reading;
  for (int i = 0; i < numReadingPositions; ++i) {
    const bool isStray = i % strayEvery == strayEvery - 1;
    reference::Position position;
    for (int c = 0; c < 3; ++c) {
      const auto digit = static_cast<uint32_t>('0' + static_cast<int>(random() % 10));
      position.push_back({isStray ? digit + 'a' - '0' : digit, 90 - 10 * c});
    }
    reading.push_back(position);
  }
  return reading;
}

RunParams makeParams(bool returnBestOnly) {
  RunParams params{};
  qoc_ocrDictionaryRunParams_construct(&params);
  params.maxEdits = 1;
  params.matchOption9 = 1;
  params.returnBestOnly = returnBestOnly ? 1 : 0;
  return params;
}

/// One line, one reading and the parameters, for the library and for the model.
struct Task {
  explicit Task(const benchmark::State &state)
      : line(makeLine()),
        reading(makeReading(static_cast<int>(state.range(0)))),
        params(makeParams(state.range(1) != 0)) {
    toRecord(line, &lineRecord);
    toRecord(reading, &readingRecord);
  }

  qsys_status match(qoc_ocrDictionaryResultSet *results) const {
    return qoc_ocrDictionaryLineFielding_matchMulti(&lineRecord, &readingRecord, &params, nullptr, results);
  }
  reference::ResultSet matchDirectly() const {
    reference::Polls polls;
    return line.matchMulti(reading, &params, nullptr, polls);
  }
  bool isMatch() const {
    qsys_bool answer = 0;
    qoc_ocrDictionaryLineFielding_isMatchMulti(&lineRecord, &readingRecord, &params, nullptr, &answer);
    return answer != 0;
  }
  bool isMatchDirectly() const {
    reference::Polls polls;
    return line.isMatchMulti(reading, &params, nullptr, polls);
  }

  LineFielding line;
  Reading reading;
  RunParams params;
  reference::HeldLineFielding lineRecord;
  reference::HeldMulti readingRecord;
};

/// Skips the benchmark where the two ways differ.
bool agree(const Task &task, benchmark::State &state) {
  reference::HeldResultSet results;
  const bool isSame =
      task.match(&results) == 0 && task.isMatch() == task.isMatchDirectly() &&
      difference(task.matchDirectly(), reference::fromRecord(*results), reference::Caches::exact).empty();
  if (!isSame) {
    state.SkipWithError("the library and the direct way differ");
  }
  state.counters["results"] = results->results.core.size;
  return isSame;
}

void lineMatch(benchmark::State &state) {
  const Task task(state);
  if (!agree(task, state)) {
    return;
  }
  reference::HeldResultSet results;
  for (auto _ : state) {
    task.match(&results);
  }
}

void lineMatchDirectly(benchmark::State &state) {
  const Task task(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(task.matchDirectly());
  }
}

void lineIsMatch(benchmark::State &state) {
  const Task task(state);
  if (!agree(task, state)) {
    return;
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(task.isMatch());
  }
}

void lineIsMatchDirectly(benchmark::State &state) {
  const Task task(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(task.isMatchDirectly());
  }
}

}  // namespace

// The first argument says how far the stray letters lie apart: with 7 no window fits the line, with 14 some do with one
// edit, with 65 all do. Where windows fit, making their results is most of the work on either side.
BENCHMARK(lineIsMatch)->ArgsProduct({{7}, {1}})->ArgNames({"strayEvery", "bestOnly"})->Unit(benchmark::kMicrosecond);
BENCHMARK(lineIsMatchDirectly)
    ->ArgsProduct({{7}, {1}})
    ->ArgNames({"strayEvery", "bestOnly"})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(lineMatch)
    ->ArgsProduct({{7, 14, 65}, {0, 1}})
    ->ArgNames({"strayEvery", "bestOnly"})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(lineMatchDirectly)
    ->ArgsProduct({{7, 14, 65}, {0, 1}})
    ->ArgNames({"strayEvery", "bestOnly"})
    ->Unit(benchmark::kMicrosecond);
