// How long one line takes against one expression, yes or no, with the best result and with all, with and without
// candidates and swaps: against the plain road of the reference model, and, where the build has found them, against TRE
// and Hyperscan, both looking for a match with at most one edit. Those two do less: one candidate a position, and yes
// or no.
//
// Lines are made from a fixed seed: a third match as they are, a third with one edit, a third not at all.

#include <benchmark/benchmark.h>
#include <qoc/ocr_dictionary.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "reference/convert.hpp"
#include "reference/regular_expression.hpp"

#ifdef QOC_BENCH_TRE
#include <tre/tre.h>
#endif
#ifdef QOC_BENCH_HYPERSCAN
#include <hs/hs.h>
#endif

namespace {

using reference::Pattern;

// Expressions, as trees for the reference model and as sources
// ---------------------------------------------------------

Pattern set(std::vector<std::pair<uint32_t, uint32_t>> ranges) {
  Pattern pattern;
  pattern.kind = Pattern::character;
  pattern.set.ranges = std::move(ranges);
  return pattern;
}
Pattern list(Pattern::Kind kind, std::vector<Pattern> parts) {
  Pattern pattern;
  pattern.kind = kind;
  pattern.parts = std::move(parts);
  return pattern;
}
Pattern repeat(Pattern part, int32_t least, int32_t most) {
  Pattern pattern = list(Pattern::repeat, {std::move(part)});
  pattern.least = least;
  pattern.most = most;
  return pattern;
}
Pattern one(char character) { return set({{static_cast<uint32_t>(character), static_cast<uint32_t>(character)}}); }
Pattern text(const std::string &characters) {
  std::vector<Pattern> parts;
  for (const char character : characters) {
    parts.push_back(one(character));
  }
  return list(Pattern::sequence, parts);
}
Pattern digit() { return set({{'0', '9'}}); }

struct Expression {
  const char *source;
  Pattern pattern;
  std::vector<std::string> examples;
};

const Expression &expressionOf(int64_t index) {
  static const Expression expressions[] = {
      {"[A-Z]{2}[0-9]{4}-[0-9]{2}",
       list(Pattern::sequence,
            {repeat(set({{'A', 'Z'}}), 2, 2), repeat(digit(), 4, 4), one('-'), repeat(digit(), 2, 2)}),
       {"AB1234-56", "XY0981-10", "QO0000-99", "SN4711-42"}},
      {"(19|20)[0-9]{2}-[01][0-9]-[0-3][0-9]",
       list(Pattern::sequence, {list(Pattern::choice, {text("19"), text("20")}), repeat(digit(), 2, 2), one('-'),
                                set({{'0', '1'}}), digit(), one('-'), set({{'0', '3'}}), digit()}),
       {"1999-12-31", "2024-02-29", "2001-01-01", "1970-10-17"}},
      {"(a|a)*b",
       list(Pattern::sequence, {repeat(list(Pattern::choice, {one('a'), one('a')}), 0, reference::anyCount), one('b')}),
       {"aaaaaaaaaaaa", "aaaaaaaaaaab"}},
      {"(a*)*b",
       list(Pattern::sequence, {repeat(repeat(one('a'), 0, reference::anyCount), 0, reference::anyCount), one('b')}),
       {"aaaaaaaaaaaa", "aaaaaaaaaaab"}},
  };
  return expressions[index];
}

// Lines ---------------------------------------------------------------------------------------------------------------

std::string edited(std::string line, std::mt19937 &random) {
  const std::size_t place = random() % line.size();
  const char character = "0O1lAB5S-"[random() % 9];
  switch (random() % 3) {
    case 0:
      line[place] = character;
      break;
    case 1:
      line.insert(place, 1, character);
      break;
    default:
      line.erase(place, 1);
      break;
  }
  return line;
}

/// Lines of an expression, alone or within 40 characters.
std::vector<std::string> linesOf(const Expression &expression, bool isWithinText) {
  std::mt19937 random(11);
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < 96; ++i) {
    std::string line = expression.examples[random() % expression.examples.size()];
    const std::size_t numEdits = expression.source[0] == '(' && expression.source[1] == 'a' ? 0 : i % 3 * (i % 3);
    for (std::size_t k = 0; k < numEdits; ++k) {
      line = edited(line, random);
    }
    if (isWithinText) {
      const std::string before = "batch of the lot no. ", behind = " checked and found good";
      line = before.substr(random() % 8) + line + behind;
      line.resize(40, '.');
    }
    lines.push_back(line);
  }
  return lines;
}

// What is measured ----------------------------------------------------------------------------------------------------

enum Candidates { single, several };

/// Candidates beside the one that was read: two others, the first one wrong half of the time.
reference::Reading readingOf(const std::string &line, Candidates candidates, std::mt19937 &random) {
  reference::Reading reading;
  for (const char character : line) {
    reference::Position position = {{static_cast<uint32_t>(character), 90}};
    if (candidates == several) {
      position.push_back({static_cast<uint32_t>("OIlSBZ"[random() % 6]), 60});
      position.push_back({static_cast<uint32_t>("QD|$8z"[random() % 6]), 50});
    }
    reading.push_back(position);
  }
  return reading;
}

struct SwapSet {
  SwapSet() {
    qstd_vector_vectorChar32 groups;
    qstd_vector_vectorChar32_construct(&groups, 4);
    const char *const members[] = {"0OQD", "1Il|", "5S$", "8B"};
    for (int32_t i = 0; i < 4; ++i) {
      qstd_vectorChar32 *group = nullptr;
      qstd_vector_vectorChar32_getElement(&groups, i, &group);
      for (const char *member = members[i]; *member != '\0'; ++member) {
        const Char32 code = static_cast<Char32>(*member);
        qstd_vectorChar32_pushBack(group, &code);
      }
    }
    qoc_swapCharSet_constructEquiv(&set, &groups);
    qstd_vector_vectorChar32_destruct(&groups);
  }
  ~SwapSet() { qoc_swapCharSet_destruct(&set); }
  SwapSet(const SwapSet &) = delete;
  SwapSet &operator=(const SwapSet &) = delete;
  qoc_swapCharSet set;
};

/// The library's records of a bench: the expression, the readings, the swap set, and params of one edit.
struct Setup {
  Setup(const Expression &expression, bool isWithinText, Candidates candidates) {
    qstd_string source;
    qstd_string_constructString(&source, expression.source);
    qoc_ocrDictionaryRegularExpression_constructString(&entry, &source);
    qstd_string_destruct(&source);
    std::mt19937 random(5);
    for (const std::string &line : linesOf(expression, isWithinText)) {
      plain.push_back(readingOf(line, candidates, random));
      readings.push_back(std::make_unique<reference::HeldMulti>());
      reference::toRecord(plain.back(), readings.back()->get());
    }
    qoc_ocrDictionaryRunParams_construct(&params);
    params.maxEdits = 1;
    params.matchOption9 = isWithinText ? 1 : 0;
    set = candidates == several ? &swaps.set : nullptr;
  }
  ~Setup() { qoc_ocrDictionaryRegularExpression_destruct(&entry); }
  Setup(const Setup &) = delete;
  Setup &operator=(const Setup &) = delete;

  qoc_ocrDictionaryRegularExpression entry;
  std::vector<reference::Reading> plain;
  std::vector<std::unique_ptr<reference::HeldMulti>> readings;
  qoc_ocrDictionaryRunParams params;
  SwapSet swaps;
  const qoc_swapCharSet *set = nullptr;
};

constexpr bool whole = false, within = true;
enum Results { best, all };

template <class Match>
void perLine(benchmark::State &state, std::size_t numLines, Match match) {
  std::size_t next = 0;
  std::int64_t numMatches = 0;
  for (auto _ : state) {
    numMatches += match(next) ? 1 : 0;
    next = next + 1 < numLines ? next + 1 : 0;
  }
  state.counters["matches"] = benchmark::Counter(static_cast<double>(numMatches), benchmark::Counter::kAvgIterations);
}

void isMatch(benchmark::State &state, bool isWithinText, Candidates candidates) {
  const Setup setup(expressionOf(state.range(0)), isWithinText, candidates);
  perLine(state, setup.readings.size(), [&](std::size_t i) {
    qsys_bool answer = 0;
    qoc_ocrDictionaryRegularExpression_isMatchMulti(&setup.entry, setup.readings[i]->get(), &setup.params, setup.set,
                                                    &answer);
    return answer != 0;
  });
}

void match(benchmark::State &state, bool isWithinText, Candidates candidates, Results wanted) {
  const Setup setup(expressionOf(state.range(0)), isWithinText, candidates);
  qoc_ocrDictionaryRunParams params = setup.params;
  params.returnBestOnly = wanted == best ? 1 : 0;
  reference::HeldResultSet results;
  std::int64_t numResults = 0;
  perLine(state, setup.readings.size(), [&](std::size_t i) {
    qoc_ocrDictionaryRegularExpression_matchMulti(&setup.entry, setup.readings[i]->get(), &params, setup.set, &results);
    numResults += results->results.core.size;
    return results->results.core.size > 0;
  });
  state.counters["results"] = benchmark::Counter(static_cast<double>(numResults), benchmark::Counter::kAvgIterations);
}

void plainRoad(benchmark::State &state, bool isWithinText) {
  const Setup setup(expressionOf(state.range(0)), isWithinText, single);
  const reference::RegularExpression expression{expressionOf(state.range(0)).pattern};
  perLine(state, setup.plain.size(), [&](std::size_t i) {
    reference::Polls polls;
    return expression.isMatchMulti(setup.plain[i], &setup.params, nullptr, polls);
  });
}

#ifdef QOC_BENCH_TRE
void tre(benchmark::State &state, bool isWithinText) {
  const Expression &expression = expressionOf(state.range(0));
  const std::string source = isWithinText ? expression.source : "^(" + std::string(expression.source) + ")$";
  regex_t compiled;
  if (tre_regcomp(&compiled, source.c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
    state.SkipWithError("TRE refuses the expression");
    return;
  }
  regaparams_t params;
  tre_regaparams_default(&params);
  params.max_cost = 1;
  const std::vector<std::string> lines = linesOf(expression, isWithinText);
  perLine(state, lines.size(), [&](std::size_t i) {
    regamatch_t found = {};
    return tre_regaexec(&compiled, lines[i].c_str(), &found, params, 0) == 0;
  });
  tre_regfree(&compiled);
}
#endif

#ifdef QOC_BENCH_HYPERSCAN
void hyperscan(benchmark::State &state, bool isWithinText) {
  const Expression &expression = expressionOf(state.range(0));
  const std::string source = isWithinText ? expression.source : "^(" + std::string(expression.source) + ")$";
  const char *const sources[] = {source.c_str()};
  const unsigned flags[] = {HS_FLAG_SINGLEMATCH | HS_FLAG_ALLOWEMPTY};
  const unsigned ids[] = {0};
  hs_expr_ext_t extension = {};
  extension.flags = HS_EXT_FLAG_EDIT_DISTANCE;
  extension.edit_distance = 1;
  const hs_expr_ext_t *const extensions[] = {&extension};
  hs_database_t *database = nullptr;
  hs_compile_error_t *error = nullptr;
  if (hs_compile_ext_multi(sources, flags, ids, extensions, 1, HS_MODE_BLOCK, nullptr, &database, &error) !=
      HS_SUCCESS) {
    state.SkipWithError("Hyperscan refuses the expression");
    hs_free_compile_error(error);
    return;
  }
  hs_scratch_t *scratch = nullptr;
  hs_alloc_scratch(database, &scratch);
  const std::vector<std::string> lines = linesOf(expression, isWithinText);
  perLine(state, lines.size(), [&](std::size_t i) {
    bool isFound = false;
    hs_scan(
        database, lines[i].data(), static_cast<unsigned>(lines[i].size()), 0, scratch,
        [](unsigned, unsigned long long, unsigned long long, unsigned, void *context) {
          *static_cast<bool *>(context) = true;
          return 1;
        },
        &isFound);
    return isFound;
  });
  hs_free_scratch(scratch);
  hs_free_database(database);
}
#endif

}  // namespace

// The argument is the expression: 0 a serial number, 1 a date, 2 (a|a)*b, 3 (a*)*b.
BENCHMARK_CAPTURE(plainRoad, regexWhole, whole)->DenseRange(0, 3)->ArgName("expression");
BENCHMARK_CAPTURE(isMatch, regexWhole, whole, single)->DenseRange(0, 3)->ArgName("expression");
BENCHMARK_CAPTURE(isMatch, regexWholeCandidatesSwaps, whole, several)->DenseRange(0, 1)->ArgName("expression");
BENCHMARK_CAPTURE(match, regexWhole, whole, single, best)->DenseRange(0, 3)->ArgName("expression");
BENCHMARK_CAPTURE(match, regexWholeAll, whole, single, all)->DenseRange(0, 3)->ArgName("expression");
BENCHMARK_CAPTURE(match, regexWholeCandidatesSwaps, whole, several, best)->DenseRange(0, 1)->ArgName("expression");
#ifdef QOC_BENCH_TRE
BENCHMARK_CAPTURE(tre, regexWhole, whole)->DenseRange(0, 3)->ArgName("expression");
#endif
#ifdef QOC_BENCH_HYPERSCAN
BENCHMARK_CAPTURE(hyperscan, regexWhole, whole)->DenseRange(0, 3)->ArgName("expression");
#endif
BENCHMARK_CAPTURE(plainRoad, regexSpans, within)->DenseRange(0, 1)->ArgName("expression");
BENCHMARK_CAPTURE(isMatch, regexSpans, within, single)->DenseRange(0, 1)->ArgName("expression");
BENCHMARK_CAPTURE(isMatch, regexSpansCandidatesSwaps, within, several)->DenseRange(0, 1)->ArgName("expression");
BENCHMARK_CAPTURE(match, regexSpans, within, single, best)->DenseRange(0, 1)->ArgName("expression");
BENCHMARK_CAPTURE(match, regexSpansAll, within, single, all)->DenseRange(0, 1)->ArgName("expression");
BENCHMARK_CAPTURE(match, regexSpansCandidatesSwaps, within, several, best)->DenseRange(0, 1)->ArgName("expression");
#ifdef QOC_BENCH_TRE
BENCHMARK_CAPTURE(tre, regexSpans, within)->DenseRange(0, 1)->ArgName("expression");
#endif
#ifdef QOC_BENCH_HYPERSCAN
BENCHMARK_CAPTURE(hyperscan, regexSpans, within)->DenseRange(0, 1)->ArgName("expression");
#endif
