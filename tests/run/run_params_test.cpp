// The run parameters: defaults, validation, lengths and comparison.

#include <cstring>

#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;

TEST(RunParamsConstruct, SetsEveryFieldButTheReservedOnes) {
  qoc_ocrDictionaryRunParams record;
  std::memset(&record, 0x5A, sizeof record);

  ASSERT_EQ(qoc_ocrDictionaryRunParams_construct(&record), QSYS_STATUS_OK);

  EXPECT_EQ(record.maxEdits, 0);
  EXPECT_EQ(record.matchOption1, 1);
  EXPECT_EQ(record.matchOption2, 1);
  EXPECT_EQ(record.matchOption3, 0);
  EXPECT_EQ(record.matchOption4, 1);
  EXPECT_EQ(record.minStringLength, 1);
  EXPECT_EQ(record.maxStringLength, 2147483647);
  EXPECT_EQ(record.matchOption7, 1);
  EXPECT_EQ(record.returnBestOnly, 1);
  EXPECT_EQ(record.matchOption9, 0);
  EXPECT_EQ(record.finalizeEachResult, 0);
  EXPECT_EQ(record.matchOption11, 0);
  EXPECT_EQ(record.matchOption12, 0);
  EXPECT_EQ(record.matchOption13, 0);
  EXPECT_EQ(record.limitA, 2147483647);
  EXPECT_EQ(record.limitB, 0);
  EXPECT_EQ(record.rankingMode, 0);
  EXPECT_EQ(record.reserved1, 0x5A5A5A5A);
  EXPECT_EQ(record.reserved2, 0x5A5A5A5A);
  EXPECT_EQ(record.rankingVariant, 3);
}

TEST(RunParamsConstruct, LaysOutTwentyNumbersInOrder) {
  EXPECT_EQ(sizeof(qoc_ocrDictionaryRunParams), 20 * sizeof(int32_t));
  EXPECT_EQ(offsetof(qoc_ocrDictionaryRunParams, matchOption9), 9 * sizeof(int32_t));
  EXPECT_EQ(offsetof(qoc_ocrDictionaryRunParams, rankingMode), 16 * sizeof(int32_t));
  EXPECT_EQ(offsetof(qoc_ocrDictionaryRunParams, rankingVariant), 19 * sizeof(int32_t));
}

TEST(RunParamsAssign, CopiesAllTwentyFieldsTheReservedOnesIncluded) {
  qoc_ocrDictionaryRunParams source, assigned, constructed;
  std::memset(&source, 0x5A, sizeof source);
  std::memset(&assigned, 0, sizeof assigned);
  std::memset(&constructed, 0, sizeof constructed);

  EXPECT_EQ(qoc_ocrDictionaryRunParams_assign(&assigned, &source), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryRunParams_constructCopy(&constructed, &source), QSYS_STATUS_OK);

  EXPECT_EQ(std::memcmp(&assigned, &source, sizeof source), 0);
  EXPECT_EQ(std::memcmp(&constructed, &source, sizeof source), 0);
}

TEST(RunParamsDestruct, LeavesTheRecordAsItWas) {
  auto record = runParams({.maxEdits = 2});

  EXPECT_EQ(qoc_ocrDictionaryRunParams_destruct(record), QSYS_STATUS_OK);

  EXPECT_EQ(record->maxEdits, 2);
}

TEST(RunParamsValidate, AcceptsAFreshlyConstructedRecord) {
  const auto record = runParams();

  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QSYS_STATUS_OK);
}

TEST(RunParamsValidate, RefusesASmallestLengthOfZeroEvenWhenTheLargestIsZeroToo) {
  const auto record = runParams({.minStringLength = 0, .maxStringLength = 0});

  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QOC_STATUS_MIN_LENGTH_INVALID);
}

TEST(RunParamsValidate, RefusesASmallestLengthAboveTheLargest) {
  const auto record = runParams({.minStringLength = 5, .maxStringLength = 4});

  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QOC_STATUS_LENGTHS_REVERSED);
}

TEST(RunParamsValidate, RefusesANegativeLimitOnlyAfterTheLengthChecksPass) {
  auto record = runParams();
  record->limitB = -1;
  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QOC_STATUS_LIMIT_NEGATIVE);

  record->minStringLength = 0;
  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QOC_STATUS_MIN_LENGTH_INVALID);

  record->minStringLength = 5;
  record->maxStringLength = 4;
  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QOC_STATUS_LENGTHS_REVERSED);

  record = runParams();
  record->limitA = -1;
  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QOC_STATUS_LIMIT_NEGATIVE);
}

TEST(RunParamsValidate, ChecksNothingButLengthsAndLimits) {
  auto record = runParams({.maxEdits = -7, .rankingMode = 99, .rankingVariant = -1});
  record->matchOption1 = -1;
  record->limitA = 0;

  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(record), QSYS_STATUS_OK);
}

TEST(RunParamsSatisfiesStringLength, IncludesBothBounds) {
  const auto record = runParams({.minStringLength = 2, .maxStringLength = 4});
  const struct {
    int32_t length;
    qsys_bool isSatisfied;
  } cases[] = {{1, 0}, {2, 1}, {3, 1}, {4, 1}, {5, 0}, {-3, 0}};

  for (const auto &[length, expected] : cases) {
    SCOPED_TRACE(length);
    qsys_bool isSatisfied = 7;
    EXPECT_EQ(qoc_ocrDictionaryRunParams_satisfiesStringLength(record, length, &isSatisfied), QSYS_STATUS_OK);
    EXPECT_EQ(isSatisfied, expected);
  }
}

TEST(RunParamsSatisfiesStringLength, IsTrueOfAnyLengthWithoutParams) {
  for (const int32_t length : {INT32_MIN, -1, 0, 1, INT32_MAX}) {
    SCOPED_TRACE(length);
    qsys_bool isSatisfied = 0;
    EXPECT_EQ(qoc_ocrDictionaryRunParams_satisfiesStringLength(nullptr, length, &isSatisfied), QSYS_STATUS_OK);
    EXPECT_EQ(isSatisfied, 1u);
  }
}

TEST(RunParamsCompareEqual, ComparesTenFieldsAndPassesOverTheOthers) {
  using Field = int32_t qoc_ocrDictionaryRunParams::*;
  using P = qoc_ocrDictionaryRunParams;
  const struct {
    const char *name;
    Field field;
    qsys_bool isCompared;
  } cases[] = {{"maxEdits", &P::maxEdits, 1},
               {"matchOption1", &P::matchOption1, 1},
               {"matchOption2", &P::matchOption2, 1},
               {"matchOption3", &P::matchOption3, 0},
               {"matchOption4", &P::matchOption4, 1},
               {"minStringLength", &P::minStringLength, 1},
               {"maxStringLength", &P::maxStringLength, 1},
               {"matchOption7", &P::matchOption7, 1},
               {"returnBestOnly", &P::returnBestOnly, 1},
               {"matchOption9", &P::matchOption9, 1},
               {"finalizeEachResult", &P::finalizeEachResult, 1},
               {"matchOption11", &P::matchOption11, 0},
               {"matchOption12", &P::matchOption12, 0},
               {"matchOption13", &P::matchOption13, 0},
               {"limitA", &P::limitA, 0},
               {"limitB", &P::limitB, 0},
               {"rankingMode", &P::rankingMode, 0},
               {"reserved1", &P::reserved1, 0},
               {"reserved2", &P::reserved2, 0},
               {"rankingVariant", &P::rankingVariant, 0}};
  const auto a = runParams();

  for (const auto &[name, field, isCompared] : cases) {
    SCOPED_TRACE(name);
    auto b = a;
    (*b).*field ^= 0x55;
    qsys_bool isEqual = 7;
    EXPECT_EQ(qoc_ocrDictionaryRunParams_compareEqual(a, b, &isEqual), QSYS_STATUS_OK);
    EXPECT_EQ(isEqual, isCompared == 1 ? 0u : 1u);
  }
}

TEST(RunParamsCompareEqual, TakesRecordsThatDifferInMatchOption3AndTheRankingForEqual) {
  const auto a = runParams();
  auto b = runParams({.rankingMode = 1, .rankingVariant = 15});
  b->matchOption3 = 1;

  qsys_bool isEqual = 0;
  EXPECT_EQ(qoc_ocrDictionaryRunParams_compareEqual(a, b, &isEqual), QSYS_STATUS_OK);

  EXPECT_EQ(isEqual, 1u);
}

TEST(RunParams, ReportMissingArgumentsAndTouchNothing) {
  const auto record = runParams();
  qsys_bool flag = 7;
  FailedChecks failed;

  EXPECT_EQ(qoc_ocrDictionaryRunParams_construct(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryRunParams_validate(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryRunParams_satisfiesStringLength(record, 1, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryRunParams_compareEqual(record, nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryRunParams_compareEqual(nullptr, record, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryRunParams_compareEqual(record, record, nullptr), QSYS_STATUS_OK);

  EXPECT_EQ(failed.lines().size(), 6u);
  EXPECT_EQ(flag, 7u);
}

}  // namespace
