// The duplicate test, the merge of a partial set into another, and the merge of buckets.

#include "run/result_set_ops.hpp"
#include "run/run_builders.hpp"
#include "support/allocator.hpp"

namespace {

using namespace qoc::test;

using Names = std::vector<int32_t>;

qsys_bool isSame(const ResultFields &a, const ResultFields &b) {
  qsys_bool flag = 7;
  require(qoc_ocrDictionaryResult_isSameResult(result(a), result(b), &flag));
  return flag;
}

TEST(ResultIsSame, ComparesTheReadingTheEditsAndTheIgnoredEnds) {
  const ResultFields base = {.given = "a b", .givenSwap = "a b", .valid = "c", .statuses = {primary}, .deleted = {1}};
  const struct {
    const char *what;
    void (*change)(ResultFields &);
    qsys_bool expected;
  } cases[] = {{"nothing", [](ResultFields &) {}, 1},
               {"isComputed", [](ResultFields &r) { r.isComputed = 0; }, 0},
               {"line status", [](ResultFields &r) { r.lineStatus = primary; }, 0},
               {"edits", [](ResultFields &r) { r.numEdits = 1; }, 0},
               {"ignored suffix", [](ResultFields &r) { r.numIgnoredSuffix = 1; }, 0},
               {"ignored prefix", [](ResultFields &r) { r.numIgnoredPrefix = 1; }, 0},
               {"given", [](ResultFields &r) { r.given = "a b|c"; }, 0},
               {"given, in a score alone", [](ResultFields &r) { r.given = "a b9"; }, 1},
               {"swapped reading", [](ResultFields &r) { r.givenSwap = "a"; }, 0},
               {"valid", [](ResultFields &r) { r.valid = ""; }, 0},
               {"statuses", [](ResultFields &r) { r.statuses = {secondary}; }, 0},
               {"deleted", [](ResultFields &r) { r.deleted = {}; }, 0},
               {"mode", [](ResultFields &r) { r.mode = qoc_ocrDictionaryMode_regularExpression; }, 1},
               {"dictionary string", [](ResultFields &r) { r.word = "other"; }, 1},
               {"start field", [](ResultFields &r) { r.name = 3; }, 1}};

  for (const auto &[what, change, expected] : cases) {
    SCOPED_TRACE(what);
    ResultFields other = base;
    change(other);
    EXPECT_EQ(isSame(base, other), expected);
    EXPECT_EQ(isSame(other, base), expected);
  }
}

TEST(ResultIsSame, TakesAnyTwoUncomputedResultsForTheSame) {
  EXPECT_EQ(isSame({.isComputed = 0, .given = "a", .numEdits = 1}, {.isComputed = 0, .given = "b"}), 1u);
}

TEST(ResultIsSame, PassesOverTheOverlapWithTheInput) {
  const auto a = result({.given = "a"});
  auto b = result({.given = "a"});
  b->overlapInputString = 4;
  qsys_bool flag = 7;

  EXPECT_EQ(qoc_ocrDictionaryResult_isSameResult(a, b, &flag), QSYS_STATUS_OK);

  EXPECT_EQ(flag, 1u);
}

TEST(ResultSetMerge, LeavesTheTargetUntouchedWhenThePartIsNotComputed) {
  auto target = resultSet({{.name = 1, .given = "a"}}, 0);
  const std::string before = describe(*target);

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, resultSet({{.name = 2, .given = "b"}}, 0), runParams()),
            QSYS_STATUS_OK);

  EXPECT_EQ(describe(*target), before);
}

TEST(ResultSetMerge, LeavesTheTargetUntouchedWhenThePartIsEmpty) {
  auto target = resultSet({{.name = 1, .given = "a"}}, 0);
  const std::string before = describe(*target);

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, resultSet({}), runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(describe(*target), before);
}

TEST(ResultSetMerge, ResetsAnUncomputedTargetFirstAndMarksItComputed) {
  auto target = resultSet({{.name = 1, .given = "a"}}, 0);

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, resultSet({{.name = 2, .given = "b"}}), runParams()),
            QSYS_STATUS_OK);

  EXPECT_EQ(target->isComputed, 1u);
  EXPECT_EQ(namesOf(target->results), Names{2});
}

TEST(ResultSetMerge, KeepsOneOfTwoResultsThatDifferInModeAlone) {
  auto target = resultSet({{.name = 1, .given = "a", .mode = qoc_ocrDictionaryMode_lexicon}});
  auto part = resultSet({{.name = 2, .given = "a", .mode = qoc_ocrDictionaryMode_regularExpression}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), Names{1});
  EXPECT_EQ(resultsOf(*target)[0].mode, qoc_ocrDictionaryMode_lexicon);
}

TEST(ResultSetMerge, RanksWhatItMerged) {
  auto target = resultSet({{.name = 1, .given = "a", .numEdits = 1}});
  auto part = resultSet({{.name = 2, .given = "b", .numEdits = 0}, {.name = 3, .given = "c", .numEdits = 2}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), (Names{2, 1, 3}));
}

TEST(ResultSetMerge, TakesEveryDistinctResultWithoutParams) {
  Owned<qoc_ocrDictionaryResultSet> target;
  auto part = resultSet({{.name = 1, .given = "a"}, {.name = 2, .given = "b"}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, nullptr), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), (Names{1, 2}));
}

TEST(ResultSetMerge, DropsANewcomerOfEqualRank) {
  // Neither reading, statuses nor scores rank one before the other, and both stand at place 0 of their sets.
  auto target = resultSet({{.name = 1, .given = "a", .statuses = {primary}}});
  auto part = resultSet({{.name = 2, .given = "b", .statuses = {primary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), Names{1});
}

TEST(ResultSetMerge, AppendsANewcomerThatRanksBehindTheOneAtItsPlace) {
  auto target = resultSet({{.name = 1, .given = "a", .statuses = {primary, primary}}});
  auto part = resultSet({{.name = 2, .given = "b", .statuses = {primary, secondary}}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), (Names{1, 2}));
}

TEST(ResultSetMerge, WalksByThePrimaryRankOrderUnlessTheRankingModeIsOne) {
  // That order tells the two apart by their line status, and leaves its mask; the default order does neither.
  const struct {
    const char *what;
    std::optional<int32_t> rankingMode;
    Names names;
    int32_t mask;
  } cases[] = {{"no params", {}, {1, 2}, 3}, {"mode 0", 0, {1, 2}, 3}, {"mode 2", 2, {1, 2}, 3}, {"mode 1", 1, {1}, 7}};

  for (const auto &[what, rankingMode, names, mask] : cases) {
    SCOPED_TRACE(what);
    auto target = resultSet({{.name = 1, .given = "a", .statuses = {primary}, .lineStatus = primary}});
    auto part = resultSet({{.name = 2, .given = "b", .statuses = {primary}, .lineStatus = secondary}});
    qoc_ocrDictionaryResult *first = nullptr;
    require(qstd_vector_qoc_ocrDictionaryResult_getElement(&target->results, 0, &first));
    first->scoreStatusMask = 7;
    const auto params = runParams({.rankingMode = rankingMode});

    EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, rankingMode.has_value() ? &*params : nullptr),
              QSYS_STATUS_OK);

    EXPECT_EQ(namesOf(target->results), names);
    EXPECT_EQ(resultsOf(*target)[0].scoreStatusMask, mask);
  }
}

TEST(ResultSetMerge, DropsAdjacentDuplicatesAndKeepsTheFirstOfThem) {
  Owned<qoc_ocrDictionaryResultSet> target;
  auto part = resultSet({{.name = 1, .given = "a"}, {.name = 2, .given = "a"}, {.name = 3, .given = "b"}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), (Names{1, 3}));
}

TEST(ResultSetMerge, KeepsDuplicatesThatAreNotNeighboursAfterRanking) {
  Owned<qoc_ocrDictionaryResultSet> target;
  auto part = resultSet({{.name = 1, .given = "a"}, {.name = 2, .given = "b"}, {.name = 3, .given = "a"}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), (Names{1, 2, 3}));
}

TEST(ResultSetMerge, LeavesThePartAsItWasButForTheRankingsOwnFields) {
  auto target = resultSet({{.name = 1, .given = "a"}});
  auto part = resultSet({{.name = 2, .given = "b", .numEdits = 1}, {.name = 3, .given = "c", .numEdits = 0}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(part->isComputed, 1u);
  EXPECT_EQ(namesOf(part->results), (Names{2, 3}));
}

TEST(ResultSetMerge, SurvivesUncomputedResults) {
  auto target = resultSet({{.name = 1, .isComputed = 0}, {.name = 2, .given = "a"}, {.name = 3, .isComputed = 0}});
  auto part = resultSet({{.name = 4, .isComputed = 0}, {.name = 5, .given = "b", .numEdits = 1}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  const Names names = namesOf(target->results);
  ASSERT_GE(names.size(), 2u);
  EXPECT_EQ(names[0], 2);
}

TEST(ResultSetMergeBuckets, MergesFewestEditsFirst) {
  Owned<Buckets> buckets;
  require(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 1, .given = "a", .numEdits = 2})));
  require(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 2, .given = "b", .numEdits = 0})));
  require(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 3, .given = "c", .numEdits = 1})));
  Owned<qoc_ocrDictionaryResultSet> target;

  EXPECT_EQ(qoc_ocrDictionaryResultSet_mergeBuckets(target, buckets, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(target->isComputed, 1u);
  EXPECT_EQ(namesOf(target->results), (Names{2, 3, 1}));
}

TEST(ResultSetMergeBuckets, RanksWithinABucket) {
  Owned<Buckets> buckets;
  require(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 1, .given = "a", .statuses = {secondary}})));
  require(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 2, .given = "b", .statuses = {primary}})));
  Owned<qoc_ocrDictionaryResultSet> target;

  EXPECT_EQ(qoc_ocrDictionaryResultSet_mergeBuckets(target, buckets, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), (Names{2, 1}));
}

TEST(ResultSetMergeBuckets, LeavesTheTargetUntouchedWithoutAnyResult) {
  auto target = resultSet({{.name = 1}}, 0);
  Owned<Buckets> buckets;

  EXPECT_EQ(qoc_ocrDictionaryResultSet_mergeBuckets(target, buckets, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(target->isComputed, 0u);
  EXPECT_EQ(namesOf(target->results), Names{1});
}

TEST(ResultBuckets, RefuseANumberOfEditsThatNoSizeCanTell) {
  Owned<Buckets> buckets;
  const auto r = result({.given = "a", .numEdits = INT32_MAX});
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_add(buckets, r), QSTD_STATUS_SIZE_INVALID);
  EXPECT_TRUE(elements(buckets).empty());
}

TEST(ResultSetOperations, ReportMissingArgumentsAndTouchNothing) {
  const auto one = result({.given = "a"});
  const auto set = resultSet({{.name = 1, .given = "a"}});
  const std::string before = describe(*set);
  const auto results = resultVector({{.name = 1, .given = "a"}});
  const auto given = reading("x");
  Owned<qoc_ocrDictionaryResultSet> target(*set);
  const Owned<Buckets> buckets;
  Owned<qstd_vector32s> indices;
  Owned<Buckets> filed;
  qsys_bool flag = 7;
  FailedChecks failed;

  EXPECT_EQ(qoc_ocrDictionaryResult_isSameResult(nullptr, one, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResult_isSameResult(one, nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResult_isSameResult(one, one, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultVector_sort(nullptr, nullptr, 1), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_sort(nullptr, nullptr, 1), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(nullptr, target, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, nullptr, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_mergeBuckets(target, nullptr, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_add(nullptr, one), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_add(filed, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_addVector(nullptr, results), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_addVector(filed, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_hasResults(nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_hasResults(buckets, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_setGiven(nullptr, given, indices), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_setGiven(target, nullptr, indices), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_getIsExactBest(nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(nullptr, nullptr), QSYS_STATUS_OK);

  EXPECT_EQ(failed.lines().size(), 18u);
  EXPECT_EQ(flag, 7u);
  EXPECT_EQ(describe(*target), before);
  EXPECT_TRUE(elements(filed).empty());
}

/// A set whose results lie in storage of their own, where other sets' cannot be moved to.
class SetOfOwnMemory {
 public:
  SetOfOwnMemory() {
    set_.isComputed = 0;
    require(qstd_vector_qoc_ocrDictionaryResult_constructEmptyWithMtable(&set_.results, memory_.table()));
  }
  ~SetOfOwnMemory() { qoc_ocrDictionaryResultSet_destruct(&set_); }
  SetOfOwnMemory(const SetOfOwnMemory &) = delete;
  SetOfOwnMemory &operator=(const SetOfOwnMemory &) = delete;
  qoc_ocrDictionaryResultSet &operator*() { return set_; }
  bool isInOwnMemory() const { return set_.results.core.memory == memory_.table() && memory_.numLive() == 1; }

 private:
  CountingAllocator memory_;
  qoc_ocrDictionaryResultSet set_;
};

TEST(ResultSetMergeTaking, CopiesIntoASetWithMemoryOfItsOwn) {
  SetOfOwnMemory target;
  auto part = resultSet({{.name = 1, .given = "a"}, {.name = 2, .given = "b"}});

  EXPECT_EQ(qoc::mergeTaking(*target, *part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf((*target).results), (Names{1, 2}));
  EXPECT_TRUE(target.isInOwnMemory());
}

TEST(ResultSetTakeVariantsResults, CopiesIntoASetWithMemoryOfItsOwn) {
  SetOfOwnMemory target;
  auto found = resultSet({{.name = 1, .given = "a"}, {.name = 2, .given = "b"}});

  EXPECT_EQ(qoc::takeVariantsResults(*target, *found, *reading("c"), *vectorOf<qstd_vector32s>({0}), true, nullptr),
            QSYS_STATUS_OK);

  EXPECT_EQ(namesOf((*target).results), (Names{1, 2}));
  EXPECT_EQ(show(resultsOf(*target)[1].given), "c");
  EXPECT_TRUE(target.isInOwnMemory());
}

TEST(DictionaryRun, LeavesASetItsOwnMemory) {
  SetOfOwnMemory set;
  const auto dictionary = dictionaryOf({{"abc"}, {"abd"}});

  EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, reading("x y z"), runParams(), &*set), QSYS_STATUS_OK);
  EXPECT_TRUE(resultsOf(*set).empty());
  EXPECT_EQ(qoc_ocrDictionary_runMulti(dictionary, reading("a b c|d"), runParams({.returnBestOnly = 0}), &*set),
            QSYS_STATUS_OK);
  EXPECT_EQ(matchedWords(*set), (std::vector<std::string>{"abc", "abd"}));
  EXPECT_TRUE(set.isInOwnMemory());
}

TEST(ResultSetMerge, AddsNothingThatIsThereAlready) {
  auto target = resultSet({{.name = 1, .given = "a"}, {.name = 2, .given = "b"}, {.name = 3, .given = "c"}});
  auto part = resultSet({{.name = 4, .given = "a"}, {.name = 5, .given = "b"}});
  require(qoc_ocrDictionaryResultSet_sort(target, runParams(), 1));
  require(qoc_ocrDictionaryResultSet_sort(part, runParams(), 1));

  EXPECT_EQ(qoc_ocrDictionaryResultSet_merge(target, part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), (Names{1, 2, 3}));
}

TEST(ResultSetMergeTaking, TakesNothingOfAPartThatIsNotComputed) {
  auto target = resultSet({{.name = 1, .given = "a"}});
  auto part = resultSet({{.name = 2, .given = "b"}}, 0);

  Owned<qoc_ocrDictionaryResultSet> empty;

  EXPECT_EQ(qoc::mergeTaking(*empty, *part, runParams()), QSYS_STATUS_OK);
  EXPECT_EQ(qoc::mergeTaking(*target, *part, runParams()), QSYS_STATUS_OK);

  EXPECT_EQ(namesOf(target->results), Names{1});
  EXPECT_EQ(describe(*empty), describe(*Owned<qoc_ocrDictionaryResultSet>()));
}

TEST(ResultSetMergeTaking, SaysThatMemoryRanOut) {
  LibraryAllocator memory;
  bool hasFailed = true;
  for (int64_t n = 0; hasFailed; ++n) {
    SCOPED_TRACE(n);
    auto target = resultSet({{.name = 1, .given = "a", .numEdits = 1}});
    auto part = resultSet({{.name = 2, .given = "b"}, {.name = 3, .given = "c", .numEdits = 2}});
    memory.fail(n, FaultMode::once);
    const qsys_status status = qoc::mergeTaking(*target, *part, runParams());
    hasFailed = memory.hasFailed();
    memory.failFrom(-1);
    EXPECT_EQ(status, hasFailed ? QSYS_STATUS_OUT_OF_MEMORY : QSYS_STATUS_OK);
    EXPECT_TRUE(n > 0 || hasFailed);
  }
  EXPECT_EQ(memory.numLive(), 0);
}

}  // namespace
