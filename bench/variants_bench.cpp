// How long a reading takes with multi-character swaps at half of its 30 positions, against an expression and against a
// line fielding that a few of its variants match: as it is done, and by making every variant. And how long a reading
// takes against a dictionary of many entries none of which can match, as most entries of a large dictionary cannot.

#include <benchmark/benchmark.h>
#include <qoc/ocr_dictionary.h>

#include <string>
#include <string_view>

#include "kinds/lexicon_roads.hpp"
#include "reference/convert.hpp"

namespace {

constexpr int numPairs = 15;

/// A letter and an m, which may stand for rn, each.
std::string readText() {
  std::string text;
  for (int i = 0; i < numPairs; ++i) {
    text += static_cast<char>('a' + i % 10);
    text += 'm';
  }
  return text;
}

/// The same with every third m as rn.
std::string meantText() {
  std::string text;
  for (int i = 0; i < numPairs; ++i) {
    text += static_cast<char>('a' + i % 10);
    text += i % 3 == 0 ? "rn" : "m";
  }
  return text;
}

struct Records {
  Records() {
    qstd_vector_qoc_swapChar swaps;
    qstd_vector_qoc_swapChar_constructEmpty(&swaps);
    qoc_swapChar swap;
    qoc_ocrDictionaryString first, second;
    qoc_swapChar_construct(&swap);
    qoc_ocrDictionaryString_constructStringT(&first, "rn");
    qoc_ocrDictionaryString_constructStringT(&second, "m");
    qoc_swapChar_setStrings(&swap, &first, &second);
    qstd_vector_qoc_swapChar_pushBack(&swaps, &swap);
    qoc_swapCharSet_construct(&set);
    qoc_swapCharSet_setSwapCharacters(&set, &swaps);
    qoc_ocrDictionaryString_destruct(&first);
    qoc_ocrDictionaryString_destruct(&second);
    qoc_swapChar_destruct(&swap);
    qstd_vector_qoc_swapChar_destruct(&swaps);
    qoc_ocrDictionaryRunParams_construct(&params);
    params.maxEdits = 1;
  }
  ~Records() { qoc_swapCharSet_destruct(&set); }
  Records(const Records &) = delete;
  Records &operator=(const Records &) = delete;

  qoc_swapCharSet set;
  qoc_ocrDictionaryRunParams params;
};

reference::Reading readingOf(std::string_view text) {
  reference::Reading reading;
  for (const char character : text) {
    reading.push_back({{static_cast<uint32_t>(character), 90}});
  }
  return reading;
}

reference::LineFielding lineOf(std::string_view text) {
  reference::LineFielding line;
  for (const char character : text) {
    const bool isClass = character == 'A' || character == '9';
    line.positions.push_back(isClass ? reference::PositionFielding{character == 'A' ? 1u : 4u, {}}
                                     : reference::PositionFielding{0, {static_cast<uint32_t>(character)}});
  }
  return line;
}

struct Expression {
  explicit Expression(const std::string &source) {
    qstd_string string;
    qstd_string_constructString(&string, source.c_str());
    qoc_ocrDictionaryRegularExpression_constructString(&record, &string);
    qstd_string_destruct(&string);
  }
  ~Expression() { qoc_ocrDictionaryRegularExpression_destruct(&record); }
  Expression(const Expression &) = delete;
  Expression &operator=(const Expression &) = delete;
  qoc_ocrDictionaryRegularExpression record;
};

/// Measures both forms of a match: match(results), isMatch(flag).
template <class Match, class IsMatch>
void measure(benchmark::State &state, Match match, IsMatch isMatch) {
  qoc::lexiconRoads().usesLattice = state.range(0) != 0;
  reference::HeldResultSet results;
  qsys_bool flag = 0;
  for (auto _ : state) {
    if (state.range(1) != 0) {
      isMatch(&flag);
    } else {
      match(&results);
    }
  }
  qoc::lexiconRoads().usesLattice = true;
  state.counters["results"] = static_cast<double>(state.range(1) != 0 ? flag : results->results.core.size);
}

void variantsExpression(benchmark::State &state) {
  const Records records;
  const Expression expression(meantText());
  reference::HeldMulti reading;
  toRecord(readingOf(readText()), &reading);
  measure(
      state,
      [&](qoc_ocrDictionaryResultSet *results) {
        qoc_ocrDictionaryRegularExpression_matchMulti(&expression.record, reading.get(), &records.params, &records.set,
                                                      results);
      },
      [&](qsys_bool *flag) {
        qoc_ocrDictionaryRegularExpression_isMatchMulti(&expression.record, reading.get(), &records.params,
                                                        &records.set, flag);
      });
}

void variantsLine(benchmark::State &state) {
  const Records records;
  reference::HeldLineFielding line;
  toRecord(lineOf(meantText()), &line);
  reference::HeldMulti reading;
  toRecord(readingOf(readText()), &reading);
  measure(
      state,
      [&](qoc_ocrDictionaryResultSet *results) {
        qoc_ocrDictionaryLineFielding_matchMulti(line.get(), reading.get(), &records.params, &records.set, results);
      },
      [&](qsys_bool *flag) {
        qoc_ocrDictionaryLineFielding_isMatchMulti(line.get(), reading.get(), &records.params, &records.set, flag);
      });
}

/// The arguments: 0 expressions, 1 line fieldings; edits; whether windows are searched; whether swaps are on.
void runOverThousand(benchmark::State &state) {
  const Records records;
  qoc_ocrDictionary dictionary;
  qoc_ocrDictionary_construct(&dictionary);
  for (int32_t i = 0; i < 1000; ++i) {
    const std::string code = "T" + std::to_string(100 + i) + "-";
    const int32_t numDigits = 3 + i % 7;
    if (state.range(0) == 0) {
      const Expression entry(code + "[0-9]{" + std::to_string(numDigits) + "}[A-Z]?");
      qoc_ocrDictionary_setRegularExpressionIExtend(&dictionary, i, &entry.record);
    } else {
      reference::HeldLineFielding entry;
      toRecord(lineOf(code + std::string(static_cast<std::size_t>(numDigits), '9')), &entry);
      qoc_ocrDictionary_setFieldingIExtend(&dictionary, i, entry.get());
    }
  }
  reference::HeldMulti reading;
  toRecord(readingOf("SN4711-42/Am"), &reading);
  qoc_ocrDictionaryRunParams params = records.params;
  params.maxEdits = static_cast<int32_t>(state.range(1));
  params.matchOption9 = static_cast<int32_t>(state.range(2));
  reference::HeldResultSet results;
  for (auto _ : state) {
    qoc_ocrDictionary_runSwapCharSetMulti(&dictionary, reading.get(), &params,
                                          state.range(3) != 0 ? &records.set : nullptr, &results);
  }
  state.counters["results"] = static_cast<double>(results->results.core.size);
  qoc_ocrDictionary_destruct(&dictionary);
}

}  // namespace

BENCHMARK(variantsExpression)
    ->ArgsProduct({{1, 0}, {0, 1}})
    ->ArgNames({"lattice", "isMatch"})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(variantsLine)->ArgsProduct({{1, 0}, {0, 1}})->ArgNames({"lattice", "isMatch"})->Unit(benchmark::kMicrosecond);
BENCHMARK(runOverThousand)
    ->ArgsProduct({{0, 1}, {0, 1}, {0, 1}, {0, 1}})
    ->ArgNames({"lines", "edits", "windows", "swaps"})
    ->Unit(benchmark::kMicrosecond);
