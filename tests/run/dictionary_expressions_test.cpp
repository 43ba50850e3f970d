// Regular expressions in the run of a dictionary: their place in the order, polls, early stops, faults.

#include <algorithm>

#include "run/run_builders.hpp"
#include "support/allocator.hpp"
#include "support/fieldings.hpp"
#include "support/heap.hpp"

namespace {

using namespace qoc::test;

/// Adds expressions to a dictionary.
void add(Owned<qoc_ocrDictionary> &dictionary, const std::vector<std::string_view> &sources) {
  for (const std::string_view source : sources) {
    Owned<qoc_ocrDictionaryRegularExpression> expression;
    require(qoc_ocrDictionaryRegularExpression_setString(expression, stdString(source)));
    int32_t n = 0;
    require(qoc_ocrDictionary_getNumRegularExpressions(dictionary, &n));
    require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, n, expression));
  }
}

/// The modes and edits of what a run gives, best first: "lexicon 0".
std::vector<std::string> outcomes(const qoc_ocrDictionary &dictionary, std::string_view text,
                                  const qoc_ocrDictionaryRunParams *params) {
  Owned<qoc_ocrDictionaryResultSet> set;
  require(qoc_ocrDictionary_runMulti(&dictionary, reading(text), params, set));
  std::vector<std::string> out;
  for (const qoc_ocrDictionaryResult &result : resultsOf(*set)) {
    const char *mode = result.mode == qoc_ocrDictionaryMode_lexicon    ? "lexicon "
                       : result.mode == qoc_ocrDictionaryMode_fielding ? "fielding "
                                                                       : "expression ";
    out.push_back(mode + std::to_string(result.numEdits));
  }
  return out;
}

int64_t numPollsOfRun(const qoc_ocrDictionary &dictionary, std::string_view text,
                      const qoc_ocrDictionaryRunParams *params) {
  const auto input = reading(text);
  Owned<qoc_ocrDictionaryResultSet> set;
  Polls polls;
  EXPECT_EQ(qoc_ocrDictionary_runMulti(&dictionary, input, params, set), QSYS_STATUS_OK);
  return polls.count();
}

TEST(DictionaryExpressions, TakePartInTheRun) {
  Owned<qoc_ocrDictionary> dictionary;
  add(dictionary, {"[A-Z]{2}[0-9]{2}", "x+"});
  EXPECT_EQ(outcomes(*dictionary, "A B 1 2", runParams()), std::vector<std::string>{"expression 0"});
  EXPECT_EQ(outcomes(*dictionary, "A B 1 X", runParams({.maxEdits = 1})), std::vector<std::string>{"expression 1"});
  EXPECT_EQ(outcomes(*dictionary, "A B 1 X", runParams()), std::vector<std::string>{});
}

TEST(DictionaryExpressions, AskForAttentionOnceForEachEntry) {
  Owned<qoc_ocrDictionary> dictionary;
  EXPECT_EQ(numPollsOfRun(*dictionary, "a b", runParams()), 0);
  add(dictionary, {"ab", "a.", "xyz{4}"});
  for (const int32_t maxEdits : {0, 1, 2}) {
    EXPECT_EQ(numPollsOfRun(*dictionary, "a b", runParams({.maxEdits = maxEdits})), 3) << maxEdits;
  }
  EXPECT_EQ(numPollsOfRun(*dictionary, "a b", runParams({.maxEdits = 0, .matchOption9 = 1})), 3 + 3 * 2);
}

TEST(DictionaryExpressions, ComeAfterLexiconsAndLineFieldings) {
  Owned<qoc_ocrDictionary> dictionary;
  add(dictionary, {"[ab]+"});
  // Of results of equal rank the first that comes stays.
  const auto params = runParams({.returnBestOnly = 0});
  EXPECT_EQ(outcomes(*dictionary, "a b", params), std::vector<std::string>{"expression 0"});
  require(qoc_ocrDictionary_setFieldingIExtend(dictionary, 0, line("aa")));
  EXPECT_EQ(outcomes(*dictionary, "a b", params), std::vector<std::string>{"fielding 0"});
  require(qoc_ocrDictionary_setLexiconIExtend(dictionary, 0, lexicon({"ab"})));
  EXPECT_EQ(outcomes(*dictionary, "a b", params), std::vector<std::string>{"lexicon 0"});
}

TEST(DictionaryExpressions, CanBeInterruptedBeforeEachEntry) {
  Owned<qoc_ocrDictionary> dictionary;
  add(dictionary, {"a", "b", "c"});
  const auto input = reading("c");
  Owned<qoc_ocrDictionaryResultSet> set;
  for (int64_t n = 0; n <= 3; ++n) {
    Polls polls(n);
    EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, input, runParams(), set),
              n < 3 ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK);
    EXPECT_EQ(polls.count(), std::min<int64_t>(n + 1, 3));
  }
}

TEST(DictionaryExpressions, AreNotSearchedForEditsOnceAnExactResultIsThere) {
  const auto params = runParams({.maxEdits = 1, .matchOption9 = 1});
  Owned<qoc_ocrDictionary> dictionary;
  add(dictionary, {"ab"});
  // Looking for one edit, the expression has enough with the exact reading and tries no span.
  EXPECT_EQ(numPollsOfRun(*dictionary, "a b", params), 1);
  add(dictionary, {"ab"});
  // The second one looks for exact matches only, and with that for all of them.
  EXPECT_EQ(numPollsOfRun(*dictionary, "a b", params), 1 + 1 + 2);
  EXPECT_EQ(outcomes(*dictionary, "a b", params), std::vector<std::string>{"expression 0"});
}

TEST(DictionaryExpressions, ShareSwapsWithTheOtherKinds) {
  Owned<qoc_ocrDictionary> dictionary;
  add(dictionary, {"[0-9]+"});
  require(qoc_ocrDictionary_setSwapCharSet(dictionary, swaps({U"0O"})));
  EXPECT_EQ(outcomes(*dictionary, "1 O", runParams()), std::vector<std::string>{"expression 0"});
}

TEST(DictionaryExpressions, RunOutOfMemoryWithAStatusAndLeakNothing) {
  LibraryAllocator memory;
  std::string expected;
  bool isComplete = false;
  for (int64_t n = -1; !isComplete && !HasFailure(); ++n) {
    SCOPED_TRACE("allocation " + std::to_string(n));
    {
      Owned<qoc_ocrDictionary> dictionary;
      add(dictionary, {"(a|b)[cd]+", "ab?"});
      require(qoc_ocrDictionary_setSwapCharSet(dictionary, swaps({U"dO"})));
      const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0, .matchOption9 = 1});
      const auto input = reading("a|b c O");
      Owned<qoc_ocrDictionaryResultSet> set;
      memory.failFrom(n);
      const qsys_status status = qoc_ocrDictionary_runMulti(dictionary, input, params, set);
      memory.failFrom(-1);
      isComplete = n >= 0 && status >= 0;
      EXPECT_TRUE(status == QSYS_STATUS_OK || (n >= 0 && status == QSYS_STATUS_OUT_OF_MEMORY));
      if (status >= 0) {
        expected = expected.empty() ? describe(*set) : expected;
        EXPECT_EQ(describe(*set), expected);
      }
    }
    EXPECT_EQ(memory.numLive(), 0);
  }
}

TEST(DictionaryExpressions, RunOutOfHeapWithAStatus) {
  Owned<qoc_ocrDictionary> dictionary;
  add(dictionary, {"(a|b)[cd]+", "(a|x{70})b?"});
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0, .matchOption9 = 1});
  const auto input = reading("a|b c d");
  bool isComplete = false;
  for (int64_t n = 0; !isComplete && !HasFailure(); ++n) {
    Owned<qoc_ocrDictionaryResultSet> set;
    qsys_status status = 0;
    {
      HeapFault fault(n);
      status = qoc_ocrDictionary_runMulti(dictionary, input, params, set);
    }
    isComplete = status >= 0;
    EXPECT_TRUE(isComplete || status == QSYS_STATUS_OUT_OF_MEMORY) << n;
  }
}

}  // namespace
