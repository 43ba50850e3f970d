// A result set: its life, its printed form, the buckets of candidates, and what is written into all its results.

#include "run/result_set_ops.hpp"

#include "run/run_builders.hpp"
#include "support/allocator.hpp"

namespace {

using namespace qoc::test;

using Names = std::vector<int32_t>;

TEST(ResultSetConstruct, GivesAnUncomputedEmptySet) {
  const Owned<qoc_ocrDictionaryResultSet> set;

  EXPECT_EQ(set->isComputed, 0u);
  EXPECT_EQ(resultsOf(*set).size(), 0u);
}

TEST(ResultSetAssign, CopiesTheFlagAndTheResultsDeeply) {
  Owned<qoc_ocrDictionaryResultSet> assigned = resultSet({{.name = 9}});
  Owned<qoc_ocrDictionaryResultSet> constructed;
  {
    auto source = resultSet({{.name = 1, .given = "a"}, {.name = 2, .given = "b"}});
    ASSERT_EQ(qoc_ocrDictionaryResultSet_assign(assigned, source), QSYS_STATUS_OK);
    constructed = Owned<qoc_ocrDictionaryResultSet>(*source);
    ASSERT_EQ(qoc_ocrDictionaryResultSet_reset(source), QSYS_STATUS_OK);
  }

  for (const auto *set : {&assigned, &constructed}) {
    EXPECT_EQ((*set)->isComputed, 1u);
    EXPECT_EQ(namesOf((*set)->results), (Names{1, 2}));
    EXPECT_EQ(show(resultsOf(**set)[1].given), "b");
  }
}

TEST(ResultSetReset, EmptiesTheSetAndMarksItNotComputed) {
  auto set = resultSet({{.name = 1}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_reset(set), QSYS_STATUS_OK);

  EXPECT_EQ(set->isComputed, 0u);
  EXPECT_EQ(resultsOf(*set).size(), 0u);
}

TEST(ResultSetPrint, OfAnEmptyComputedSetWritesBothBraces) {
  PrintedText printed;

  EXPECT_EQ(qoc_ocrDictionaryResultSet_print(resultSet({})), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(), "qoc_ocrDictionaryResultSet isComputed: qeTrue {  } ");
}

TEST(ResultSetPrint, OfAnUncomputedSetEndsBehindTheFlag) {
  PrintedText printed;

  EXPECT_EQ(qoc_ocrDictionaryResultSet_print(resultSet({{.name = 1}}, 0)), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(), "qoc_ocrDictionaryResultSet isComputed: qeFalse");
}

TEST(ResultSetPrint, GoesOnToTheResultsOnlyWhenTheFlagIsExactlyOne) {
  PrintedText printed;

  EXPECT_EQ(qoc_ocrDictionaryResultSet_print(resultSet({{.name = 1}}, 2)), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(), "qoc_ocrDictionaryResultSet isComputed: qeTrue");
}

TEST(ResultSetPrint, WritesTheResultsInOrder) {
  PrintedText printed;

  EXPECT_EQ(qoc_ocrDictionaryResultSet_print(resultSet({{.given = "a"}, {.isComputed = 0}})), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(),
            "qoc_ocrDictionaryResultSet isComputed: qeTrue { "
            "qoc_ocrDictionaryResult isComputed: qeTrueqoc_ocrDictionaryMode_lexicon {  } "
            "resultStringLineStatus: qoc_ocrDictionaryPositionStatus_noMatch given: [[a ]] given(swap): [] valid: []"
            " numIgnoredPrefixCharacters: 0  numIgnoredSuffixCharacters: 0  startFieldIndex: 0  deleted [ ] "
            " overlapInputString: 0 qoc_ocrDictionaryResult isComputed: qeFalse } ");
}

TEST(ResultSetPrint, EndsAtTheFirstPrintThatFails) {
  const auto set = resultSet({{.isComputed = 0}});
  const std::string whole =
      "qoc_ocrDictionaryResultSet isComputed: qeTrue { qoc_ocrDictionaryResult isComputed: qeFalse } ";
  bool isComplete = false;

  for (int n = 0; !isComplete; ++n) {
    SCOPED_TRACE(n);
    ASSERT_LT(n, 50);
    PrintedText printed(n, -901);
    const qsys_status status = qoc_ocrDictionaryResultSet_print(set);
    EXPECT_EQ(printed.text(), whole.substr(0, printed.text().size()));
    isComplete = printed.text() == whole;
    EXPECT_EQ(status, isComplete ? QSYS_STATUS_OK : -901);
  }
}

TEST(ResultBucketsAdd, GrowsToTheBucketOfTheEditCount) {
  Owned<Buckets> buckets;

  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 1, .numEdits = 2})), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 2, .numEdits = 0})), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_add(buckets, result({.name = 3, .numEdits = 2})), QSYS_STATUS_OK);

  const auto lists = elements(buckets);
  ASSERT_EQ(lists.size(), 3u);
  EXPECT_EQ(namesOf(lists[0]), Names{2});
  EXPECT_EQ(namesOf(lists[1]), Names{});
  EXPECT_EQ(namesOf(lists[2]), (Names{1, 3}));
}

TEST(ResultBucketsAdd, StartsTheSwappedReadingAsACopyOfTheGivenOne) {
  Owned<Buckets> buckets;
  const auto candidate = result({.given = "a|b c", .givenSwap = "x"});

  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_add(buckets, candidate), QSYS_STATUS_OK);

  EXPECT_EQ(show(elements(elements(buckets)[0])[0].givenSwap), "a|b c");
  EXPECT_EQ(show(candidate->givenSwap), "x");
}

TEST(ResultBucketsAddVector, FilesEveryResultInOrder) {
  Owned<Buckets> buckets;
  const auto candidates = resultVector({{.name = 1, .given = "a", .numEdits = 1},
                                        {.name = 2, .given = "b", .numEdits = 0},
                                        {.name = 3, .given = "c", .numEdits = 1}});

  EXPECT_EQ(qoc_ocrDictionaryResultBuckets_addVector(buckets, candidates), QSYS_STATUS_OK);

  const auto lists = elements(buckets);
  ASSERT_EQ(lists.size(), 2u);
  EXPECT_EQ(namesOf(lists[0]), Names{2});
  EXPECT_EQ(namesOf(lists[1]), (Names{1, 3}));
  EXPECT_EQ(show(elements(lists[1])[1].givenSwap), "c");
}

TEST(ResultBucketsHasResults, AsksTheBucketOfExactResultsAlone) {
  Owned<Buckets> buckets;
  const auto hasResults = [&] {
    qsys_bool flag = 7;
    require(qoc_ocrDictionaryResultBuckets_hasResults(buckets, &flag));
    return flag;
  };

  EXPECT_EQ(hasResults(), 0u);
  require(qoc_ocrDictionaryResultBuckets_add(buckets, result({.numEdits = 1})));
  EXPECT_EQ(hasResults(), 0u);
  require(qoc_ocrDictionaryResultBuckets_add(buckets, result({.numEdits = 0})));
  EXPECT_EQ(hasResults(), 1u);
}

TEST(ResultSetSetGiven, WritesTheReadingAndTheIndicesIntoEveryResult) {
  auto set = resultSet({{.name = 1, .given = "a", .givenSwap = "s"}, {.name = 2, .given = "b", .givenSwap = "t"}});

  EXPECT_EQ(qoc_ocrDictionaryResultSet_setGiven(set, reading("x|y z"), vectorOf<qstd_vector32s>({0, 0, 1})),
            QSYS_STATUS_OK);

  ASSERT_EQ(namesOf(set->results), (Names{1, 2}));
  for (const qoc_ocrDictionaryResult &one : resultsOf(*set)) {
    EXPECT_EQ(show(one.given), "x|y z");
    EXPECT_EQ(values(one.inputIndices), (Names{0, 0, 1}));
  }
  EXPECT_EQ(show(resultsOf(*set)[0].givenSwap), "s");
  EXPECT_EQ(show(resultsOf(*set)[1].givenSwap), "t");
}

TEST(ResultSetIsExactBest, AsksWhetherTheFirstResultHasNoEdits) {
  const struct {
    const char *what;
    std::vector<ResultFields> results;
    qsys_bool expected;
  } cases[] = {{"no result", {}, 0},
               {"an exact result first", {{.numEdits = 0}, {.numEdits = 1}}, 1},
               {"an exact result second", {{.numEdits = 1}, {.numEdits = 0}}, 0}};

  for (const auto &[what, results, expected] : cases) {
    SCOPED_TRACE(what);
    qsys_bool flag = 7;
    EXPECT_EQ(qoc_ocrDictionaryResultSet_getIsExactBest(resultSet(results), &flag), QSYS_STATUS_OK);
    EXPECT_EQ(flag, expected);
  }
}

TEST(ResultSet, ReportsMissingArguments) {
  const auto set = resultSet({});
  FailedChecks failed;

  const auto expectReport = [&](qsys_status outcome) {
    EXPECT_EQ(outcome, QSYS_STATUS_OK);
    EXPECT_EQ(failed.numNew(), 1);
  };
  expectReport(qoc_ocrDictionaryResultSet_construct(nullptr));
  expectReport(qoc_ocrDictionaryResultSet_constructCopy(nullptr, set));
  expectReport(qoc_ocrDictionaryResultSet_assign(nullptr, set));
  expectReport(qoc_ocrDictionaryResultSet_reset(nullptr));
  expectReport(qoc_ocrDictionaryResultSet_print(nullptr));
}

TEST(ResultSetFinalize, FillsStatusesInTheMemoryThatTheyHave) {
  CountingAllocator memory;
  {
    auto set = resultSet({{.given = "a b", .statuses = {primary, secondary}}});
    auto &statuses = qoc::edit(set->results).front().statusWRTInputStringSwapChar;
    require(qstd_vector_qoc_ocrDictionaryPositionStatus_destruct(&statuses));
    require(qstd_vector__constructWithVtableWithMtable(&statuses.core, 0, sizeof(Status), statuses.core.table,
                                                       memory.table()));
    const auto params = runParams();
    EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, params), QSYS_STATUS_OK);
    EXPECT_EQ(show(statuses), "primary secondary");
    EXPECT_EQ(memory.numLive(), 1);
  }
  EXPECT_EQ(memory.numLive(), 0);
}

TEST(ResultSetFinalize, MayBeDoneAgain) {
  LibraryAllocator memory;
  {
    auto set = resultSet({{.given = "a b", .statuses = {primary, secondary}}, {.given = "c", .statuses = {secondary}}});
    const auto params = runParams({.returnBestOnly = 0});
    EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, params), QSYS_STATUS_OK);
    const std::string once = describe(*set);
    EXPECT_EQ(qoc_ocrDictionaryResultSet_finalize(set, params), QSYS_STATUS_OK);
    EXPECT_EQ(describe(*set), once);
  }
  EXPECT_EQ(memory.numLive(), 0);
}

}  // namespace
