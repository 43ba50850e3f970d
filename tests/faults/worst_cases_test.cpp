// Inputs that are as bad as they can be: whatever they are, the work between two polls is bounded, so that a deadline
// ends it. What is measured is the thread's own time, which other programs on the machine do not lengthen.

#include <gtest/gtest.h>

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>

#include "run/run_builders.hpp"
#include "support/fieldings.hpp"

namespace {

using namespace qoc::test;

double threadMilliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// A deadline in the thread's own time, that watches how long the work goes on without asking.
class Deadline {
 public:
  explicit Deadline(double milliseconds) : start_(threadMilliseconds()), last_(start_), allowed_(milliseconds) {
    qsys_attention_setHandler([](void *self) { return static_cast<Deadline *>(self)->poll(); }, this);
  }
  ~Deadline() { qsys_attention_setHandler(nullptr, nullptr); }
  Deadline(const Deadline &) = delete;
  Deadline &operator=(const Deadline &) = delete;

  /// The longest time without a poll, the time up to the end included.
  double longest() {
    poll();
    return longest_;
  }
  double elapsed() const { return threadMilliseconds() - start_; }
  int64_t numPolls() const { return numPolls_; }

 private:
  qsys_status poll() {
    const double now = threadMilliseconds();
    longest_ = std::max(longest_, now - last_);
    last_ = now;
    ++numPolls_;
    return now - start_ > allowed_ ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
  }

  double start_, last_, allowed_, longest_ = 0;
  int64_t numPolls_ = 0;
};

/// How much slower than a plain build this one is.
constexpr double slowness =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    30;
#elif !defined(__OPTIMIZE__)
    10;
#else
    1;
#endif

/// Runs the operation with a deadline of 5 ms; it has to end within 50 ms, in success or interrupted.
void expectToEnd(const char *name, const std::function<qsys_status()> &operation) {
  SCOPED_TRACE(name);
  Deadline deadline(5 * slowness);
  const qsys_status status = operation();
  const double elapsed = deadline.elapsed(), longest = deadline.longest();
  std::printf("%-50s %8.1f ms, %6.1f ms at most without a poll, %lld polls, %s\n", name, elapsed, longest,
              static_cast<long long>(deadline.numPolls()), status < 0 ? qoc_status_getName(status) : "complete");
  EXPECT_TRUE(status >= 0 || status == QSYS_STATUS_INTERRUPTED) << qoc_status_getName(status);
  EXPECT_LT(elapsed, 50 * slowness);
}

std::string repeated(const std::string &text, int n) {
  std::string all;
  for (int i = 0; i < n; ++i) {
    all += text;
  }
  return all;
}

/// A reading of n positions, each with the same candidates: "a|b|c".
Owned<qoc_ocrDictionaryStringMulti> longReading(const std::string &position, int n) {
  std::string text = repeated(position + ' ', n);
  text.pop_back();
  return reading(text);
}

/// Words of the letters a to d.
std::vector<std::string> manyWords(int n, int length) {
  std::mt19937 random(7);
  std::vector<std::string> list;
  for (int i = 0; i < n; ++i) {
    std::string word;
    for (int k = 0; k < length; ++k) {
      word += static_cast<char>('a' + random() % 4);
    }
    list.push_back(word);
  }
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  return list;
}

const Owned<qoc_ocrDictionaryRunParams> &anyEdits() {
  static const auto params = runParams({.maxEdits = 100, .returnBestOnly = 0});
  return params;
}
const Owned<qoc_ocrDictionaryRunParams> &anyWindows() {
  static const auto params = runParams({.maxEdits = 100, .returnBestOnly = 0, .matchOption9 = 1});
  return params;
}
const Owned<qoc_ocrDictionaryRunParams> &extremes() {
  static const auto params = runParams({.maxEdits = INT32_MAX,
                                        .minStringLength = 1,
                                        .maxStringLength = INT32_MAX,
                                        .returnBestOnly = 0,
                                        .matchOption9 = 1,
                                        .limitA = INT32_MAX,
                                        .limitB = INT32_MAX});
  return params;
}

TEST(WorstCase, LexiconAgainstAReadingOfTenThousandPositionsEnds) {
  auto list = manyWords(2000, 12);
  list.push_back(repeated("abcd", 2500));
  const auto entry = lexicon(list);
  const auto input = longReading("a|b|c|d|e|f|g|h", 10000);
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 0;
  const std::pair<const char *, const Owned<qoc_ocrDictionaryRunParams> *> allParams[] = {
      {"lexicon, edits", &anyEdits()}, {"lexicon, windows", &anyWindows()}, {"lexicon, extremes", &extremes()}};
  for (const auto &each : allParams) {
    const char *name = each.first;
    const qoc_ocrDictionaryRunParams *params = *each.second;
    expectToEnd(name, [&] { return qoc_ocrDictionaryLexicon_matchMulti(entry, input, params, nullptr, results); });
    expectToEnd(name, [&] { return qoc_ocrDictionaryLexicon_isMatchMulti(entry, input, params, nullptr, &isMatch); });
  }
}

TEST(WorstCase, LexiconOfManyWordsThatAllMatchEnds) {
  const auto entry = lexicon(manyWords(50000, 12));
  const auto anything = longReading("\\x|a|b|c|d", 12);
  Owned<qoc_ocrDictionaryResultSet> results;
  for (const auto *params : {&anyEdits(), &anyWindows(), &extremes()}) {
    expectToEnd("every word matches",
                [&] { return qoc_ocrDictionaryLexicon_matchMulti(entry, anything, *params, nullptr, results); });
  }
}

TEST(WorstCase, SwapsAtEveryPositionEnd) {
  Owned<qstd_vector_qoc_swapChar> list;
  for (const auto &[first, second] : {std::pair{"rn", "m"}, std::pair{"nr", "m"}, std::pair{"mm", "rm"}}) {
    Owned<qoc_swapChar> swap;
    require(qoc_swapChar_setStrings(swap, word(first), word(second)));
    require(qstd_vector_qoc_swapChar_pushBack(list, swap));
  }
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSwapCharacters(set, list));
  const auto input = longReading("m|n|r", 10000);
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;
  expectToEnd("expansion", [&] { return qoc_swapCharSet_multiSwapStrings(set, input, variants, positions); });

  const auto dictionary = dictionaryOf({{"rnrn", "mm"}});
  Owned<qoc_ocrDictionaryResultSet> results;
  expectToEnd("run with swaps",
              [&] { return qoc_ocrDictionary_runSwapCharSetMulti(dictionary, input, anyWindows(), set, results); });

  // Of a shorter reading the variants are counted.
  const auto shorter = longReading("m|n|r", 900);
  const auto shape = line(repeated("aAm", 300));
  Owned<qoc_ocrDictionaryRegularExpression> expression;
  require(qoc_ocrDictionaryRegularExpression_setStringT(expression, L"((rn|m)*[a-z]{1,9})*x"));
  qsys_bool isMatch = 0;
  for (const auto *reading : {&input, &shorter}) {
    for (const auto *params : {&anyEdits(), &anyWindows()}) {
      expectToEnd("line match with swaps", [&] {
        return qoc_ocrDictionaryLineFielding_matchMulti(shape, *reading, *params, set, results);
      });
      expectToEnd("line isMatch with swaps", [&] {
        return qoc_ocrDictionaryLineFielding_isMatchMulti(shape, *reading, *params, set, &isMatch);
      });
      expectToEnd("expression match with swaps", [&] {
        return qoc_ocrDictionaryRegularExpression_matchMulti(expression, *reading, *params, set, results);
      });
      expectToEnd("expression isMatch with swaps", [&] {
        return qoc_ocrDictionaryRegularExpression_isMatchMulti(expression, *reading, *params, set, &isMatch);
      });
    }
  }
}

TEST(WorstCase, LinesOfTenThousandPositionsEnd) {
  const auto shape = line(repeated("a?9*", 2500));
  const auto input = longReading("a|b|1|D", 10000);
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 0;
  for (const auto *params : {&anyEdits(), &anyWindows(), &extremes()}) {
    expectToEnd("line match",
                [&] { return qoc_ocrDictionaryLineFielding_matchMulti(shape, input, *params, nullptr, results); });
    expectToEnd("line isMatch",
                [&] { return qoc_ocrDictionaryLineFielding_isMatchMulti(shape, input, *params, nullptr, &isMatch); });
  }
  for (const int32_t mode : {0, 1, 2}) {
    Owned<qoc_ocrDictionaryFieldingRunParams> params;
    params->fieldingMode = mode;
    expectToEnd("fielding run", [&] {
      return qoc_ocrDictionaryLineFielding_runFieldingParams(shape, nullptr, input, params, results);
    });
  }
}

TEST(WorstCase, ExpressionsOfNestedRepeatsEnd) {
  const auto input = longReading("a|b|c|d|e|f|g|h", 10000);
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 0;
  for (const wchar_t *source : {L"((a*)*)*b", L"(a|b|ab)*c", L"((a{1,20}){1,20}){1,20}", L"(.*)(.*)(.*)(.*)x"}) {
    Owned<qoc_ocrDictionaryRegularExpression> expression;
    expectToEnd("compile", [&] { return qoc_ocrDictionaryRegularExpression_setStringT(expression, source); });
    for (const auto *params : {&anyEdits(), &anyWindows(), &extremes()}) {
      expectToEnd("expression match", [&] {
        return qoc_ocrDictionaryRegularExpression_matchMulti(expression, input, *params, nullptr, results);
      });
      expectToEnd("expression isMatch", [&] {
        return qoc_ocrDictionaryRegularExpression_isMatchMulti(expression, input, *params, nullptr, &isMatch);
      });
    }
  }
}

TEST(WorstCase, WordsOfTenThousandCharactersEnd) {
  const auto word1 = word(repeated("abcd", 2500)), word2 = word(repeated("dcba", 2500));
  const auto input = longReading("a|b|c|d", 10000);
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 0;
  for (const auto *params : {&anyEdits(), &anyWindows(), &extremes()}) {
    expectToEnd("string match",
                [&] { return qoc_ocrDictionaryString_matchMulti(word1, input, *params, nullptr, results); });
    expectToEnd("string isMatch",
                [&] { return qoc_ocrDictionaryString_isMatchMulti(word1, input, *params, nullptr, &isMatch); });
  }
  int32_t distance = 0;
  expectToEnd("edit distance", [&] { return qoc_ocrDictionaryString_editDistance(word1, word2, nullptr, &distance); });
}

}  // namespace
