// Runs of a dictionary: what comes back, in which order entries are tried, polls, interrupts.

#include <cstring>
#include <functional>

#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;

using Words = std::vector<std::string>;

Owned<qoc_ocrDictionaryResultSet> runOn(const qoc_ocrDictionary &dictionary, std::string_view text,
                                        const qoc_ocrDictionaryRunParams *params) {
  Owned<qoc_ocrDictionaryResultSet> set;
  require(qoc_ocrDictionary_runMulti(&dictionary, reading(text), params, set));
  return set;
}

int64_t numPollsOfRun(const qoc_ocrDictionary &dictionary, std::string_view text,
                      const qoc_ocrDictionaryRunParams *params) {
  const auto input = reading(text);
  Owned<qoc_ocrDictionaryResultSet> set;
  Polls polls;
  EXPECT_EQ(qoc_ocrDictionary_runMulti(&dictionary, input, params, set), QSYS_STATUS_OK);
  return polls.count();
}

TEST(DictionaryRun, OfAnEmptyDictionaryGivesAnEmptyComputedSet) {
  auto set = resultSet({{.name = 1}}, 0);

  EXPECT_EQ(qoc_ocrDictionary_run(Owned<qoc_ocrDictionary>(), word("abc"), runParams(), set), QSYS_STATUS_OK);

  EXPECT_EQ(set->isComputed, 1u);
  EXPECT_EQ(resultsOf(*set).size(), 0u);
}

TEST(DictionaryRun, ThatFindsNothingGivesAnEmptyComputedSet) {
  const auto set = runOn(*dictionaryOf({{"abc"}, {"abd"}}), "x y z", runParams());

  EXPECT_EQ(set->isComputed, 1u);
  EXPECT_EQ(resultsOf(*set).size(), 0u);
}

TEST(DictionaryRun, ResetsTheResultSetFirst) {
  auto set = resultSet({{.name = 1, .given = "z"}});

  EXPECT_EQ(qoc_ocrDictionary_run(dictionaryOf({{"abc"}}), word("abc"), runParams(), set), QSYS_STATUS_OK);

  EXPECT_EQ(matchedWords(*set), Words{"abc"});
}

TEST(DictionaryRun, KeepsTheBestResultAloneWhenAskedTo) {
  const auto dictionary = dictionaryOf({{"abd"}, {"abc"}, {"abe"}});

  EXPECT_EQ(matchedWords(*runOn(*dictionary, "a b c", runParams({.maxEdits = 1, .returnBestOnly = 1}))), Words{"abc"});
}

TEST(DictionaryRun, KeepsEveryDistinctResultInRankOrderOtherwise) {
  // Each word needs another number of edits, so no two results tie.
  const auto dictionary = dictionaryOf({{"abcdxx"}, {"abcdef"}, {"abcdex"}});
  const auto set = runOn(*dictionary, "a b c d e f", runParams({.maxEdits = 2, .returnBestOnly = 0}));

  Words found;
  for (const std::string &text : matchedWords(*set)) {
    if (found.empty() || found.back() != text) {
      found.push_back(text);
    }
  }
  EXPECT_EQ(found, (Words{"abcdef", "abcdex", "abcdxx"}));
}

TEST(DictionaryRun, KeepsTheSameReadingOnceWhenTwoEntriesGiveIt) {
  const auto set = runOn(*dictionaryOf({{"abc"}, {"abc", "xyz"}}), "a b c", runParams({.returnBestOnly = 0}));

  EXPECT_EQ(matchedWords(*set), Words{"abc"});
}

TEST(DictionaryRun, FillsTheStatusesOfItsResults) {
  const auto set = runOn(*dictionaryOf({{"abc"}}), "a x|b c", runParams());

  ASSERT_EQ(resultsOf(*set).size(), 1u);
  const qoc_ocrDictionaryResult &only = resultsOf(*set)[0];
  EXPECT_EQ(only.resultStringLineStatus, secondary);
  EXPECT_EQ(show(only.resultStringStatus), "primary secondary primary");
  EXPECT_EQ(show(only.statusWRTInputStringSwapChar), "primary secondary primary");
}

TEST(DictionaryRun, OfAllFourFormsGivesTheSameForTheSameReading) {
  auto dictionary = dictionaryOf({{"abc", "abd"}, {"ab"}});
  Owned<qoc_swapCharSet> swaps;
  require(qoc_swapCharSet_setSingleSwap(swaps, 'c', 'd'));
  require(qoc_ocrDictionary_setSwapCharSet(dictionary, swaps));
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  Owned<qoc_ocrDictionaryResultSet> plain, plainGiven, multi, multiGiven;

  EXPECT_EQ(qoc_ocrDictionary_run(dictionary, word("abc"), params, plain), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runSwapCharSet(dictionary, word("abc"), params, swaps, plainGiven), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, reading("a b c"), params, multi), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runSwapCharSetMulti(dictionary, reading("a b c"), params, swaps, multiGiven),
            QSYS_STATUS_OK);

  EXPECT_GE(resultsOf(*plain).size(), 2u);
  EXPECT_EQ(describe(*plainGiven), describe(*plain));
  EXPECT_EQ(describe(*multi), describe(*plain));
  EXPECT_EQ(describe(*multiGiven), describe(*plain));
}

TEST(DictionaryRun, UsesTheSwapSetGivenInPlaceOfItsOwn) {
  auto dictionary = dictionaryOf({{"abc"}});
  Owned<qoc_swapCharSet> swaps;
  require(qoc_swapCharSet_setSingleSwap(swaps, 'c', 'd'));
  require(qoc_ocrDictionary_setSwapCharSet(dictionary, swaps));
  const Owned<qoc_swapCharSet> none;
  Owned<qoc_ocrDictionaryResultSet> own, given, without;

  EXPECT_EQ(qoc_ocrDictionary_run(dictionary, word("abd"), runParams(), own), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runSwapCharSet(dictionary, word("abd"), runParams(), none, given), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runSwapCharSet(dictionary, word("abd"), runParams(), nullptr, without), QSYS_STATUS_OK);

  EXPECT_EQ(matchedWords(*own), Words{"abc"});
  EXPECT_EQ(matchedWords(*given), Words{});
  EXPECT_EQ(matchedWords(*without), Words{});
}

TEST(DictionaryRun, ChangesNeitherTheDictionaryNorTheParams) {
  const auto dictionary = dictionaryOf({{"abc"}, {"abcd"}});
  const Owned<qoc_ocrDictionary> before(*dictionary);
  qoc_ocrDictionaryRunParams params = {};
  require(qoc_ocrDictionaryRunParams_construct(&params));
  params.maxEdits = 1;
  const qoc_ocrDictionaryRunParams paramsBefore = params;

  runOn(*dictionary, "a b c", &params);

  qsys_bool isEqual = 7;
  EXPECT_EQ(qoc_ocrDictionary_compareEqual(dictionary, before, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
  EXPECT_EQ(std::memcmp(&params, &paramsBefore, sizeof params), 0);
}

TEST(DictionaryRun, MatchesLaterLexiconsExactlyOnlyOnceOneHasGivenAnExactResult) {
  // With one edit allowed the second lexicon's word, one longer than the reading, is in range, and costs a poll; without, not.
  const auto afterExact = dictionaryOf({{"abc"}, {"abcd"}});
  const auto afterEdited = dictionaryOf({{"abx"}, {"abcd"}});

  EXPECT_EQ(numPollsOfRun(*afterExact, "a b c", runParams({.maxEdits = 1, .returnBestOnly = 1})), 2 + 1);
  EXPECT_EQ(numPollsOfRun(*afterEdited, "a b c", runParams({.maxEdits = 1, .returnBestOnly = 1})), 2 + 2);
}

TEST(DictionaryRun, NeverAllowsEditsAgainAfterTheEarlyStop) {
  const auto dictionary = dictionaryOf({{"abc"}, {"abcd"}, {"ab"}, {"abd"}, {"abcx"}});

  // Five entries, and the words "abc" and "abd".
  EXPECT_EQ(numPollsOfRun(*dictionary, "a b c", runParams({.maxEdits = 1, .returnBestOnly = 1})), 5 + 2);
}

TEST(DictionaryRun, StopsEarlyOnlyWhereTheBestIsAskedForWithOneEdit) {
  const auto dictionary = dictionaryOf({{"abc"}, {"abcd"}});

  EXPECT_EQ(numPollsOfRun(*dictionary, "a b c", runParams({.maxEdits = 1, .returnBestOnly = 0})), 2 + 2);
  EXPECT_EQ(numPollsOfRun(*dictionary, "a b c", runParams({.maxEdits = 2, .returnBestOnly = 1})), 2 + 2);
}

TEST(DictionaryRun, StillFindsABetterExactResultAfterTheEarlyStop) {
  const auto dictionary = dictionaryOf({{"xbc"}, {"abc"}});

  EXPECT_EQ(matchedWords(*runOn(*dictionary, "a|x b c", runParams({.maxEdits = 1}))), Words{"abc"});
}

TEST(DictionaryRun, PollsOnceForEveryLexicon) {
  EXPECT_EQ(numPollsOfRun(*Owned<qoc_ocrDictionary>(), "a b", runParams()), 0);
  EXPECT_EQ(numPollsOfRun(*dictionaryOf({{}, {}, {}, {}, {}}), "a b", runParams()), 5);
}

TEST(DictionaryRun, PollsForEveryEntryOfTheOtherKindsToo) {
  auto dictionary = dictionaryOf({{}});
  Owned<qoc_ocrDictionaryLineFielding> line;
  Owned<qoc_ocrDictionaryRegularExpression> expression;
  require(qoc_ocrDictionary_setFieldingIExtend(dictionary, 1, line));
  require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, 2, expression));

  EXPECT_GE(numPollsOfRun(*dictionary, "a b", runParams()), 1 + 2 + 3);
}

TEST(DictionaryRun, PollsOnceForEveryEntryEvery128WordsAndEveryWindowStart) {
  std::vector<std::string> list;
  for (int i = 0; i < 130; ++i) {
    list.push_back({static_cast<char>('a' + i / 10), static_cast<char>('a' + i % 10)});
  }
  const auto dictionary = dictionaryOf({list, {"abc"}});

  EXPECT_EQ(numPollsOfRun(*dictionary, "z z z", runParams({.matchOption9 = 1})), (1 + 2 + 130 * 3) + (1 + 1 + 3));
}

TEST(DictionaryRun, IsInterruptedAtAnyPollAndTheSameObjectsGiveTheRightAnswerNext) {
  const auto dictionary = dictionaryOf({{"abc", "zz"}, {"bcd"}, {"xabc"}});
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0, .matchOption9 = 1});
  const auto input = reading("x a b c|d");
  Owned<qoc_ocrDictionaryResultSet> set;
  require(qoc_ocrDictionary_runMulti(dictionary, input, params, set));
  const std::string expected = describe(*set);
  int64_t numPolls = 0;
  {
    Polls polls;
    require(qoc_ocrDictionary_runMulti(dictionary, input, params, set));
    numPolls = polls.count();
  }
  ASSERT_EQ(numPolls, 3 + 3 + 4 * 4);

  for (int64_t n = 0; n < numPolls; ++n) {
    SCOPED_TRACE(n);
    {
      Polls polls(n, interruption);
      EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, input, params, set), interruption);
      EXPECT_EQ(polls.count(), n + 1);
    }
    EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, input, params, set), QSYS_STATUS_OK);
    EXPECT_EQ(describe(*set), expected);
  }
}

TEST(DictionaryRun, TakesMissingParamsForAFailedCheckAndTouchesNothing) {
  const auto dictionary = dictionaryOf({{"abc"}});
  auto set = resultSet({{.name = 1}});
  const std::string before = describe(*set);
  FailedChecks failed;

  EXPECT_EQ(qoc_ocrDictionary_run(dictionary, word("abc"), nullptr, set), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runSwapCharSet(dictionary, word("abc"), nullptr, nullptr, set), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, reading("a b c"), nullptr, set), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runSwapCharSetMulti(dictionary, reading("a b c"), nullptr, nullptr, set), QSYS_STATUS_OK);

  EXPECT_EQ(failed.lines().size(), 4u);
  EXPECT_EQ(describe(*set), before);
}

TEST(DictionaryRun, ReportsOtherMissingArguments) {
  const auto dictionary = dictionaryOf({{"abc"}});
  Owned<qoc_ocrDictionaryResultSet> set;
  FailedChecks failed;

  EXPECT_EQ(qoc_ocrDictionary_run(nullptr, word("a"), runParams(), set), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_run(dictionary, nullptr, runParams(), set), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_run(dictionary, word("a"), runParams(), nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, nullptr, runParams(), set), QSYS_STATUS_OK);

  EXPECT_EQ(failed.lines().size(), 4u);
}

}  // namespace
