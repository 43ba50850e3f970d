// The three ranking orders, and the finishing of a set.

#include <optional>

#include "run/result_ranking.hpp"
#include "run/result_set_ops.hpp"
#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;

using Names = std::vector<int32_t>;

/// The names in rank order.
Names ranked(const std::vector<ResultFields> &results, const qoc_ocrDictionaryRunParams *params,
             qsys_bool descending = 1) {
  auto vector = resultVector(results);
  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(vector, params, descending), QSYS_STATUS_OK);
  return namesOf(*vector);
}

Owned<qoc_ocrDictionaryRunParams> byPrimary() { return runParams({.rankingMode = 1, .rankingVariant = 3}); }
Owned<qoc_ocrDictionaryRunParams> byPrimaryAndSecondary() {
  return runParams({.rankingMode = 1, .rankingVariant = 15});
}

/// Two results, named 1 and 2: 1 ranks first whichever way round they stand.
struct RankedPair {
  const char *why;
  ResultFields first, second;
};

void expectRanked(const std::vector<RankedPair> &pairs, const qoc_ocrDictionaryRunParams *params) {
  for (auto [why, first, second] : pairs) {
    SCOPED_TRACE(why);
    first.name = 1;
    second.name = 2;
    EXPECT_EQ(ranked({first, second}, params), (Names{1, 2}));
    EXPECT_EQ(ranked({second, first}, params), (Names{1, 2}));
    EXPECT_EQ(ranked({first, second}, params, 0), (Names{2, 1}));
    EXPECT_EQ(ranked({second, first}, params, 0), (Names{2, 1}));
  }
}

const std::vector<RankedPair> byDefault = {
    {"computed", {.numEdits = 9}, {.isComputed = 0}},
    {"fewer edits, against everything",
     {.statuses = {noMatch}, .deleted = {1, 2}, .numEdits = 1},
     {.statuses = {primary, primary}, .numEdits = 2}},
    {"fewer deleted, against the characters", {.statuses = {noMatch}}, {.statuses = {primary}, .deleted = {0}}},
    {"more primary, against secondary", {.statuses = {primary}}, {.statuses = {secondary, secondary}}},
    {"more secondary", {.statuses = {secondary, noMatch}}, {.statuses = {primarySwap, secondarySwap}}}};

TEST(ResultRankingDefaultOrder, DecidesKeyByKey) {
  expectRanked(byDefault, nullptr);
  expectRanked(byDefault, runParams());
  expectRanked(byDefault, runParams({.rankingMode = 2, .rankingVariant = 3}));
}

TEST(ResultRankingDefaultOrder, KeepsTheEarlierOfTwoThatTieOnAllKeys) {
  // Line status, score and reading differ, and do not count here.
  const std::vector<ResultFields> results = {{.name = 1, .scores = {1}, .statuses = {primary}, .lineStatus = noMatch},
                                             {.name = 2, .scores = {9}, .statuses = {primary}, .lineStatus = primary},
                                             {.name = 3, .given = "a", .statuses = {primary}}};

  EXPECT_EQ(ranked(results, nullptr), (Names{1, 2, 3}));
  EXPECT_EQ(ranked(results, nullptr, 0), (Names{3, 2, 1}));
}

TEST(ResultRankingDefaultOrder, StaysStableOverManyTies) {
  std::vector<ResultFields> results;
  Names expected;
  for (int32_t edits = 0; edits < 3; ++edits) {
    for (int32_t i = edits; i < 300; i += 3) {
      expected.push_back(i);
    }
  }
  for (int32_t i = 0; i < 300; ++i) {
    results.push_back({.name = i, .numEdits = i % 3});
  }

  EXPECT_EQ(ranked(results, nullptr), expected);
}

TEST(ResultRanking, NumbersThePlacesBeforeItSorts) {
  auto vector = resultVector({{.name = 1, .numEdits = 2}, {.name = 2, .numEdits = 1}, {.name = 3, .numEdits = 0}});

  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(vector, nullptr, 1), QSYS_STATUS_OK);

  ASSERT_EQ(namesOf(*vector), (Names{3, 2, 1}));
  EXPECT_EQ(elements(vector)[0].orderIndex, 2);
  EXPECT_EQ(elements(vector)[1].orderIndex, 1);
  EXPECT_EQ(elements(vector)[2].orderIndex, 0);
}

TEST(ResultRanking, LeavesASingleResultAlone) {
  auto vector = resultVector({{.name = 1}});
  qoc_ocrDictionaryResult *only = nullptr;
  require(qstd_vector_qoc_ocrDictionaryResult_getElement(vector, 0, &only));
  only->orderIndex = 5;

  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(vector, byPrimary(), 1), QSYS_STATUS_OK);

  EXPECT_EQ(elements(vector)[0].orderIndex, 5);
  EXPECT_EQ(elements(vector)[0].scoreIsCached, 0u);
}

TEST(ResultRanking, SortsTheResultsOfASet) {
  auto set = resultSet({{.name = 1, .numEdits = 1}, {.name = 2, .numEdits = 0}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_sort(set, runParams(), 1), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(set->results), (Names{2, 1}));
}

TEST(ResultRanking, PutsUncomputedResultsLastHoweverManyThereAre) {
  for (const auto &params : {runParams(), byPrimary(), byPrimaryAndSecondary()}) {
    std::vector<ResultFields> results;
    for (int32_t i = 0; i < 40; ++i) {
      results.push_back({.name = i, .isComputed = i % 4 == 0 ? 1u : 0u, .numEdits = 40 - i});
    }

    const Names names = ranked(results, params);

    ASSERT_EQ(names.size(), 40u);
    EXPECT_EQ(Names(names.begin(), names.begin() + 10), (Names{36, 32, 28, 24, 20, 16, 12, 8, 4, 0}));
  }
}

TEST(ResultRankingPrimaryRankOrder, DecidesKeyByKey) {
  expectRanked({{"computed", {.numEdits = 9}, {.isComputed = 0}},
                {"fewer edits, with fewer primary characters",
                 {.statuses = {noMatch}},
                 {.statuses = {primary, primary}, .numEdits = 1}},
                {"more primary characters, with equal edits",
                 {.statuses = {primary}, .lineStatus = noMatch},
                 {.statuses = {secondary}, .lineStatus = primary}},
                {"lower line status, against the score",
                 {.lineStatus = secondary},
                 {.scores = {9}, .statuses = {primarySwap}, .lineStatus = secondarySwap}},
                {"higher score, against fewer deleted",
                 {.scores = {2}, .statuses = {primarySwap}, .deleted = {0}},
                 {.scores = {1}, .statuses = {primarySwap}}},
                {"fewer deleted, against fewer inserted", {.statuses = {inserted}}, {.deleted = {0}}},
                {"fewer inserted", {.statuses = {noMatch}}, {.statuses = {inserted}}}},
               byPrimary());
}

TEST(ResultRankingPrimaryRankOrder, RanksFewerEditsFirstAndThenMorePrimaryCharacters) {
  EXPECT_EQ(ranked({{.name = 1, .statuses = {primary, primary}, .numEdits = 1},
                    {.name = 2, .statuses = {secondary}, .numEdits = 0},
                    {.name = 3, .statuses = {primary}, .numEdits = 0}},
                   byPrimary()),
            (Names{3, 2, 1}));
}

TEST(ResultRankingPrimaryRankOrder, DoesNotDecideByMatchedPositionsButKeepsTheirNumber) {
  auto vector = resultVector(
      {{.name = 1, .statuses = {substituted}}, {.name = 2, .statuses = {substituted, substitutedSpace, noMatch}}});

  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(vector, byPrimary(), 1), QSYS_STATUS_OK);

  ASSERT_EQ(namesOf(*vector), (Names{1, 2}));
  EXPECT_EQ(elements(vector)[0].numMatchedPositionsIsCached, 1u);
  EXPECT_EQ(elements(vector)[0].numMatchedPositions, 1);
  EXPECT_EQ(elements(vector)[1].numMatchedPositions, 3);
}

TEST(ResultRankingPrimaryRankOrder, KeepsTheEarlierOfTwoThatTieOnAllKeys) {
  EXPECT_EQ(ranked({{.name = 1, .given = "b"}, {.name = 2, .given = "a"}}, byPrimary()), (Names{1, 2}));
}

TEST(ResultRankingPrimaryRankOrder, ScoresThePrimaryPositionsAlone) {
  auto vector =
      resultVector({{.scores = {1, 10, 100, 1000, 10000}, .statuses = {1, 2, 3, 4, 5}}, {.statuses = {primary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(vector, byPrimary(), 1), QSYS_STATUS_OK);

  EXPECT_EQ(elements(vector)[0].scoreStatusMask, 3);
  EXPECT_EQ(elements(vector)[0].scoreIsCached, 1u);
  EXPECT_EQ(elements(vector)[0].score, 11);
}

TEST(ResultRankingPrimaryAndSecondaryOrder, DecidesKeyByKey) {
  expectRanked(
      {{"fewer edits", {.statuses = {noMatch}}, {.statuses = {primary}, .numEdits = 1}},
       {"more primary and secondary characters together",
        {.statuses = {secondary, secondary}},
        {.statuses = {primary}}},
       {"lower line status, secondary counting as primary", {.lineStatus = secondary}, {.lineStatus = primarySwap}},
       {"lower line status, secondarySwap counting as primarySwap",
        {.lineStatus = secondarySwap},
        {.lineStatus = substituted}},
       {"higher score",
        {.scores = {2}, .statuses = {secondarySwap}, .deleted = {0}},
        {.scores = {1}, .statuses = {primarySwap}}},
       {"fewer deleted", {.statuses = {inserted}}, {.deleted = {0}}},
       {"fewer inserted", {.statuses = {noMatch}}, {.statuses = {inserted}}}},
      byPrimaryAndSecondary());
}

TEST(ResultRankingPrimaryAndSecondaryOrder, TakesTheSwapAndPlainLineStatusesOfAKindForEqual) {
  EXPECT_EQ(ranked({{.name = 1, .lineStatus = secondary}, {.name = 2, .lineStatus = primary}}, byPrimaryAndSecondary()),
            (Names{1, 2}));
  EXPECT_EQ(ranked({{.name = 1, .lineStatus = secondarySwap}, {.name = 2, .lineStatus = primarySwap}},
                   byPrimaryAndSecondary()),
            (Names{1, 2}));
}

TEST(ResultRankingPrimaryAndSecondaryOrder, ScoresAllMatchedPositions) {
  auto vector = resultVector(
      {{.scores = {1, 10, 100, 1000, 10000}, .statuses = {1, 2, 3, 4, 5}}, {.statuses = {primary, primary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(vector, byPrimaryAndSecondary(), 1), QSYS_STATUS_OK);

  EXPECT_EQ(elements(vector)[0].scoreStatusMask, 15);
  EXPECT_EQ(elements(vector)[0].score, 1111);
}

TEST(ResultRanking, AppliesToAnyVariantButThreeTheSecondScoringOrder) {
  for (const int32_t variant : {0, 1, 15, -1}) {
    SCOPED_TRACE(variant);
    const auto params = runParams({.rankingMode = 1, .rankingVariant = variant});
    EXPECT_EQ(ranked({{.name = 1, .statuses = {primary}}, {.name = 2, .statuses = {secondary, secondary}}}, params),
              (Names{2, 1}));
  }
}

TEST(ResultRanking, DoesNotRecomputeAScoreThatIsThere) {
  auto vector = resultVector(
      {{.scores = {1, 10}, .statuses = {primary, secondary}}, {.scores = {1, 20}, .statuses = {primary, secondary}}});

  ASSERT_EQ(qoc_ocrDictionaryResultVector_sort(vector, byPrimary(), 1), QSYS_STATUS_OK);
  ASSERT_EQ(qoc_ocrDictionaryResultVector_sort(vector, byPrimaryAndSecondary(), 1), QSYS_STATUS_OK);

  for (const qoc_ocrDictionaryResult &one : elements(vector)) {
    EXPECT_EQ(one.scoreStatusMask, 15);
    EXPECT_EQ(one.score, 1);
  }
}

TEST(ResultRanking, AddsNothingForACharacterWithoutAStatus) {
  auto vector = resultVector({{.scores = {1, 10, 100}, .statuses = {primary}}, {.statuses = {primary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(vector, byPrimary(), 1), QSYS_STATUS_OK);

  EXPECT_EQ(elements(vector)[0].score, 1);
}

TEST(ResultSetFinalize, RanksAndStopsThereWithoutParams) {
  auto set = resultSet({{.name = 1, .statuses = {inserted}, .lineStatus = noMatch, .numEdits = 1},
                        {.name = 2, .given = "a", .statuses = {primary}, .lineStatus = noMatch}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, nullptr), QSYS_STATUS_OK);

  ASSERT_EQ(namesOf(set->results), (Names{2, 1}));
  EXPECT_EQ(resultsOf(*set)[0].resultStringLineStatus, noMatch);
  EXPECT_EQ(show(resultsOf(*set)[0].statusWRTInputStringSwapChar), "");
}

TEST(ResultSetFinalize, KeepsTheBestResultAloneWhenAskedTo) {
  const std::vector<ResultFields> results = {{.name = 1, .numEdits = 1}, {.name = 2, .numEdits = 0}};
  auto all = resultSet(results);
  auto best = resultSet(results);

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(all, runParams({.returnBestOnly = 0})), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(best, runParams({.returnBestOnly = 1})), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(all->results), (Names{2, 1}));
  EXPECT_EQ(namesOf(best->results), Names{2});
}

TEST(ResultSetFinalize, LeavesAnEmptySetEmpty) {
  auto set = resultSet({});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams({.returnBestOnly = 1})), QSYS_STATUS_OK);

  EXPECT_EQ(set->isComputed, 1u);
  EXPECT_EQ(resultsOf(*set).size(), 0u);
}

TEST(ResultSetFinalize, RemovesOnlyTheFirstOfTwoAdjacentInsertedPositions) {
  auto set = resultSet({{.valid = "a b c", .statuses = {inserted, inserted, primary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams({.finalizeEachResult = 1})), QSYS_STATUS_OK);

  EXPECT_EQ(show(resultsOf(*set)[0].resultStringStatus), "inserted primary");
  EXPECT_EQ(show(resultsOf(*set)[0].valid), "b c");
}

TEST(ResultSetFinalize, RemovesInsertedPositionsFromEveryResult) {
  auto set = resultSet({{.valid = "a b|x c d", .statuses = {primary, inserted, secondary, inserted}},
                        {.valid = "e f", .statuses = {inserted, inserted}, .numEdits = 1},
                        {.valid = "g", .statuses = {substituted}, .numEdits = 2}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams({.returnBestOnly = 0, .finalizeEachResult = 1})),
            QSYS_STATUS_OK);

  EXPECT_EQ(show(resultsOf(*set)[0].resultStringStatus), "primary secondary");
  EXPECT_EQ(show(resultsOf(*set)[0].valid), "a c");
  EXPECT_EQ(show(resultsOf(*set)[1].resultStringStatus), "inserted");
  EXPECT_EQ(show(resultsOf(*set)[1].valid), "f");
  EXPECT_EQ(show(resultsOf(*set)[2].valid), "g");
}

TEST(ResultSetFinalize, FitsTheValidReadingToTheStatusesEvenWhereItWasShorter) {
  auto set = resultSet({{.valid = "a", .statuses = {primary, inserted, primary, primary}},
                        {.valid = "a b c d e", .statuses = {inserted, primary}, .numEdits = 1},
                        {.valid = "a b c", .statuses = {primary}, .numEdits = 2}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams({.returnBestOnly = 0, .finalizeEachResult = 1})),
            QSYS_STATUS_OK);

  EXPECT_EQ(show(resultsOf(*set)[0].valid), "a ~ ~");
  EXPECT_EQ(show(resultsOf(*set)[1].valid), "b");
  EXPECT_EQ(show(resultsOf(*set)[2].valid), "a b c");
}

TEST(ResultSetFinalize, KeepsInsertedPositionsUnlessAskedToRemoveThem) {
  auto set = resultSet({{.valid = "a b", .statuses = {inserted, primary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(show(resultsOf(*set)[0].resultStringStatus), "inserted primary");
  EXPECT_EQ(show(resultsOf(*set)[0].valid), "a b");
}

TEST(ResultSetFinalize, SetsTheLineStatusToTheLargestStatusOrZero) {
  auto set = resultSet({{.statuses = {primary, substituted, secondary}, .lineStatus = noMatch},
                        {.statuses = {}, .lineStatus = noMatch, .numEdits = 1},
                        {.isComputed = 0, .statuses = {secondary}, .lineStatus = noMatch}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams({.returnBestOnly = 0})), QSYS_STATUS_OK);

  EXPECT_EQ(resultsOf(*set)[0].resultStringLineStatus, substituted);
  EXPECT_EQ(resultsOf(*set)[1].resultStringLineStatus, 0);
  EXPECT_EQ(resultsOf(*set)[2].resultStringLineStatus, secondary);
}

TEST(ResultSetFinalize, TellsTheLineStatusAfterInsertedPositionsAreGone) {
  auto set = resultSet({{.valid = "a b", .statuses = {primary, inserted}}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams({.finalizeEachResult = 1})), QSYS_STATUS_OK);

  EXPECT_EQ(resultsOf(*set)[0].resultStringLineStatus, primary);
}

TEST(ResultSetFinalize, TellsTheInputStatusesOfComputedResultsOnly) {
  auto set = resultSet({{.given = "a b", .statuses = {secondary}, .deleted = {0}},
                        {.isComputed = 0, .given = "a b", .statuses = {secondary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, runParams({.returnBestOnly = 0})), QSYS_STATUS_OK);

  EXPECT_EQ(show(resultsOf(*set)[0].statusWRTInputStringSwapChar), "deleted secondary");
  EXPECT_EQ(show(resultsOf(*set)[1].statusWRTInputStringSwapChar), "");
}

TEST(ResultRanking, PutsComputedResultsFirstInEveryOrder) {
  for (const auto compare : {qoc::compareDefault, qoc::comparePrimary, qoc::comparePrimaryAndSecondary}) {
    auto computed = result({.given = "a", .numEdits = 5});
    auto one = result({.isComputed = 0, .given = "a"}), other = result({.isComputed = 0, .given = "b"});
    EXPECT_EQ(compare(*computed, *one), -1);
    EXPECT_EQ(compare(*one, *computed), 1);
    EXPECT_EQ(compare(*one, *other), 1) << "of two that are not computed the second comes first";
    EXPECT_EQ(compare(*other, *one), 1);
    EXPECT_EQ(compare(*computed, *computed), 0);
  }
}

TEST(ResultRanking, CountsMatchedPositionsFromPrimaryToNoMatch) {
  auto a = result({.given = "a", .statuses = {0, primary, noMatch, inserted, deleted, secondary}});
  auto b = result({.given = "b", .statuses = {primary, 0}});
  EXPECT_EQ(qoc::comparePrimary(*a, *b), 1) << "b has nothing inserted";
  EXPECT_EQ(a->numMatchedPositions, 3);
  EXPECT_EQ(a->numMatchedPositionsIsCached, 1u);
  EXPECT_EQ(b->numMatchedPositions, 1);
}

TEST(ResultRanking, ScoresOnlyPositionsThatHaveAStatus) {
  auto a = result({.scores = {100, 20, 3}, .statuses = {0, primary, secondary}});
  auto b = result({.scores = {1, 1}, .statuses = {primary, 0}});
  EXPECT_EQ(qoc::comparePrimary(*a, *b), -1);
  EXPECT_EQ(a->score, 20);
  EXPECT_EQ(b->score, 1);
}

}  // namespace
