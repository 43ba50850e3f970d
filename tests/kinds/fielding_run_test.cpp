// Readings forced into the shape of a line.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fieldings.hpp"
#include "support/handlers.hpp"

namespace {

using namespace qoc::test;

using Line = Owned<qoc_ocrDictionaryLineFielding>;
using Reading = Owned<qoc_ocrDictionaryStringMulti>;
using Params = Owned<qoc_ocrDictionaryFieldingRunParams>;
using Results = Owned<qoc_ocrDictionaryResultSet>;

Params inMode(int32_t mode) {
  Params params;
  params->fieldingMode = mode;
  return params;
}

qsys_status run(const Line &line, const Reading &reading, Results &results, const Params &params = {},
                const qoc_swapCharSet *set = nullptr) {
  return qoc_ocrDictionaryLineFielding_runFieldingParams(line, set, reading, params, results);
}

/// The one result: prefix, characters, suffix, statuses.
std::string describe(const Results &results) {
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  return std::to_string(result.numIgnoredPrefixCharacters) + " [" + show(result.valid) + "] " +
         std::to_string(result.numIgnoredSuffixCharacters) + ": " + show(result.resultStringStatus);
}

std::string fit(const Line &line, const Reading &reading, const Params &params = {},
                const qoc_swapCharSet *set = nullptr) {
  Results results;
  require(run(line, reading, results, params, set));
  EXPECT_EQ(results->isComputed, 1u);
  EXPECT_EQ(resultsOf(*results).size(), 1u);
  return describe(results);
}

qsys_status statusOf(const Line &line, const Reading &reading, const Params &params = {}) {
  Results results;
  return run(line, reading, results, params);
}

TEST(FieldingRunParams, HaveTheirDefaultsAndValidate) {
  Params params;
  EXPECT_EQ(params->fieldingMode, 1);
  EXPECT_EQ(params->minStringLength, 1);
  EXPECT_EQ(params->maxStringLength, 0x7FFFFFFF);
  EXPECT_EQ(params->limitA, 0x7FFFFFFF);
  EXPECT_EQ(params->limitB, 0);
  EXPECT_EQ(params->trimEmptyEnds, 1);
  EXPECT_EQ(params->fieldingOption7, 1);
  EXPECT_EQ(params->rankingVariant, 3);
  EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_validate(params), QSYS_STATUS_OK);
}

TEST(FieldingRunParams, ValidateTheRankingVariant) {
  Params params;
  params->rankingVariant = 15;
  EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_validate(params), QSYS_STATUS_OK);
  params->rankingVariant = 4;
  EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_validate(params), QOC_STATUS_RANKING_VARIANT_INVALID);
}

TEST(FieldingRunParams, ValidateInOrder) {
  Params params;
  params->rankingVariant = 4;
  params->limitB = -1;
  EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_validate(params), QOC_STATUS_LIMIT_B_NEGATIVE);
  params->limitA = -1;
  EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_validate(params), QOC_STATUS_LIMIT_A_NEGATIVE);
  params->maxStringLength = 0;
  EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_validate(params), QOC_STATUS_LENGTHS_REVERSED);
  params->minStringLength = 0;
  EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_validate(params), QOC_STATUS_MIN_LENGTH_INVALID);
}

TEST(FieldingRunParams, CompareEqualWhereOnlyTheRankingVariantDiffers) {
  const auto equal = [](const Params &a, const Params &b) {
    qsys_bool isEqual = 2;
    require(qoc_ocrDictionaryFieldingRunParams_compareEqual(a, b, &isEqual));
    return isEqual;
  };
  Params a;
  Params b;
  b->rankingVariant = 15;
  EXPECT_EQ(equal(a, b), 1u);
  int32_t qoc_ocrDictionaryFieldingRunParams::*const compared[] = {
      &qoc_ocrDictionaryFieldingRunParams::fieldingMode,    &qoc_ocrDictionaryFieldingRunParams::minStringLength,
      &qoc_ocrDictionaryFieldingRunParams::maxStringLength, &qoc_ocrDictionaryFieldingRunParams::limitA,
      &qoc_ocrDictionaryFieldingRunParams::limitB,          &qoc_ocrDictionaryFieldingRunParams::trimEmptyEnds,
      &qoc_ocrDictionaryFieldingRunParams::fieldingOption7};
  for (const auto field : compared) {
    Params changed;
    (*changed).*field = 5;
    EXPECT_EQ(equal(a, changed), 0u);
    const Params copy(*changed);
    EXPECT_EQ(equal(changed, copy), 1u);
    EXPECT_EQ(qoc_ocrDictionaryFieldingRunParams_reset(changed), QSYS_STATUS_OK);
    EXPECT_EQ(equal(a, changed), 1u);
  }
}

TEST(FieldingRun, ALineWithoutPositionsReturnsTheReading) {
  Results results;
  ASSERT_EQ(run(line(""), reading(U"B5|8 \uF800 \uF800|x"), results), QSYS_STATUS_OK);

  EXPECT_EQ(describe(results), "0 [B5 {F800} {F800}] 0: primary noMatch primary");
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.given), "B5|8 {F800} {F800}|x");
  EXPECT_EQ(show(result.statusWRTInputStringSwapChar), "primary noMatch primary");
  EXPECT_EQ(result.isComputed, 1u);
  EXPECT_EQ(result.scoreStatusMask, 3);
}

TEST(FieldingRun, ChecksItsArgumentsInOrder) {
  auto invalid = inMode(1);
  invalid->minStringLength = 0;

  EXPECT_EQ(statusOf(line("~"), plain(""), invalid), QOC_STATUS_MIN_LENGTH_INVALID);
  EXPECT_EQ(statusOf(line("9~"), plain("")), QOC_STATUS_FIELDING_POSITION_EMPTY);
  EXPECT_EQ(statusOf(line("9"), plain("")), QOC_STATUS_STRING_EMPTY);
  EXPECT_EQ(statusOf(line("9"), reading("1|1 ~")), QOC_STATUS_CANDIDATES_MISSING);
  EXPECT_EQ(statusOf(line("9"), reading("1|2|1")), QOC_STATUS_CHARACTER_DUPLICATE);
}

TEST(FieldingRun, ModeZeroNeedsALineThatIsLongEnough) {
  auto params = inMode(0);
  params->limitB = 2;
  params->minStringLength = 3;

  EXPECT_EQ(statusOf(line("99"), plain("12"), params), QOC_STATUS_FIELDING_TOO_SHORT_FOR_LIMIT);
  EXPECT_EQ(statusOf(line("999"), plain("123"), params), QSYS_STATUS_OK);
  params->limitB = 1;
  EXPECT_EQ(statusOf(line("99"), plain("12"), params), QOC_STATUS_FIELDING_TOO_SHORT);
  params->fieldingMode = 2;
  EXPECT_EQ(statusOf(line("99"), plain("12"), params), QSYS_STATUS_OK);
}

TEST(FieldingRunBestCharacter, ThePrimaryCandidateWinsWhereItIsAdmitted) {
  EXPECT_EQ(fit(line("9"), reading("15|27")), "0 [15] 0: primary");
}

TEST(FieldingRunBestCharacter, AnotherCandidateIsSecondary) {
  EXPECT_EQ(fit(line("9"), reading("O5|03")), "0 [03] 0: secondary");
}

TEST(FieldingRunBestCharacter, ASwapOfThePrimaryWinsOverAnotherCandidateAndKeepsThePrimarysScore) {
  EXPECT_EQ(fit(line("9"), reading("O5|03"), {}, swaps({U"O0"})), "0 [05] 0: primarySwap");
}

TEST(FieldingRunBestCharacter, SwapsOfThePrimaryAreTriedByTheScoresOfTheOtherCandidates) {
  const auto set = swaps({U"x123"});

  EXPECT_EQ(fit(line("9"), reading("x5|3-1|22"), {}, set), "0 [25] 0: primarySwap");
  EXPECT_EQ(fit(line("9"), reading("x5|y"), {}, set), "0 [15] 0: primarySwap");
}

TEST(FieldingRunBestCharacter, ASwapOfAnotherCandidateIsSecondarySwapWithItsScore) {
  EXPECT_EQ(fit(line("9"), reading("x5|O4|19"), {}, swaps({U"O0"})), "0 [04] 0: secondarySwap");
  EXPECT_EQ(fit(line("9"), reading("x5|19|O4"), {}, swaps({U"O0"})), "0 [19] 0: secondary");
}

TEST(FieldingRunBestCharacter, TheOnlyCharacterOfAPositionIsSubstituted) {
  EXPECT_EQ(fit(line("7"), reading("a|b|c")), "0 [7] 0: substituted");
}

TEST(FieldingRunBestCharacter, TheSpaceAloneIsSubstitutedAndNotASubstitutedSpace) {
  EXPECT_EQ(fit(line("_"), reading("a")), "0 [_] 0: substituted");
}

TEST(FieldingRunBestCharacter, TheSpaceAmongOthersIsASubstitutedSpace) {
  Line either;
  require(qoc_ocrDictionaryLineFielding_setPositionFieldingExtend(either, 0, fielding(4, U" ")));
  EXPECT_EQ(fit(either, reading("a")), "0 [_] 0: substitutedSpace");
}

TEST(FieldingRunBestCharacter, NothingThatFitsIsNoMatch) {
  EXPECT_EQ(fit(line("9"), reading("a|b")), "0 [{F800}] 0: noMatch");
}

TEST(FieldingRunBestCharacter, ACandidateBeyondSevenBitsFails) {
  EXPECT_EQ(statusOf(line("9"), reading(U"\u00E9")), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(statusOf(line("9"), reading(U"1|\u00E9")), QSYS_STATUS_OK) << "not asked behind an admitted primary";
}

TEST(FieldingRunSweep, PlacesTheLineWhereItFitsBest) {
  EXPECT_EQ(fit(line("A99"), plain("B12")), "0 [B 1 2] 0: primary primary primary");
  EXPECT_EQ(fit(line("A99"), plain("xB12y")), "1 [B 1 2] 1: primary primary primary");
}

TEST(FieldingRunSweep, PositionsOutsideTheReadingAreInserted) {
  EXPECT_EQ(fit(line("A-_9"), plain("B-")), "0 [B - _ {F800}] 0: primary primary inserted inserted");
  EXPECT_EQ(fit(line("A-99"), plain("12")), "0 [{F800} - 1 2] 0: inserted inserted primary primary");
}

TEST(FieldingRunSweep, FewerEditsWinOverMorePrimaryCharacters) {
  // At offset 0 there are two edits, with one primary character; every other placement has more edits.
  EXPECT_EQ(fit(line("A99"), plain("B#2")), "0 [B {F800} 2] 0: primary noMatch primary");
}

TEST(FieldingRunSweep, FillsTheResult) {
  Results results;
  Params params;
  params->rankingVariant = 15;
  params->fieldingOption7 = 0;
  ASSERT_EQ(run(line("A9"), reading("x B7|8 15 y"), results, params), QSYS_STATUS_OK);

  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(describe(results), "1 [B7 15] 1: primary primary");
  EXPECT_EQ(show(result.dictionaryString), "B1");
  EXPECT_EQ(elements(result.dictionaryString.characters)[1].score, 5);
  EXPECT_EQ(show(result.given), "x B7|8 15 y");
  EXPECT_EQ(show(result.givenSwap), "x B7|8 15 y");
  EXPECT_EQ(show(result.statusWRTInputStringSwapChar), "deletedIgnored primary primary deletedIgnored");
  EXPECT_EQ(result.numEdits, 2);
  EXPECT_EQ(result.overlapInputString, 2);
  EXPECT_EQ(result.scoreStatusMask, 15);
  EXPECT_EQ(result.ignoreDeletedSpaces, 0u);
  EXPECT_EQ(result.mode, qoc_ocrDictionaryMode_fielding);
  EXPECT_EQ(result.isComputed, 1u);
  EXPECT_EQ(result.startFieldIndex, 0);
  EXPECT_EQ(result.resultStringLineStatus, qoc_ocrDictionaryPositionStatus_primary);
  EXPECT_EQ(elements(result.deleted).size(), 0u);
}

TEST(FieldingRunSweep, PollsOncePerOffsetAndOncePerOverlappingPosition) {
  Polls polls;
  fit(line("A99"), plain("B12"));
  EXPECT_EQ(polls.count(), 5 + 9);
}

TEST(FieldingRunSweep, AnInterruptEndsTheWork) {
  for (int64_t allowed = 0; allowed < 14; ++allowed) {
    Polls polls(allowed);
    EXPECT_EQ(statusOf(line("A99"), plain("B12")), QSYS_STATUS_INTERRUPTED);
  }
}

TEST(FieldingRunParts, TakesAPartOfTheLineForAShortReading) {
  Results results;
  ASSERT_EQ(run(line("AA99"), plain("B1"), results, inMode(2)), QSYS_STATUS_OK);

  EXPECT_EQ(describe(results), "0 [B 1] 0: primary primary");
  EXPECT_EQ(resultsOf(*results)[0].startFieldIndex, 1);
  EXPECT_EQ(resultsOf(*results)[0].overlapInputString, 2);
}

TEST(FieldingRunParts, LimitANamesTheLastStart) {
  auto params = inMode(2);
  params->limitA = 0;
  Results results;
  ASSERT_EQ(run(line("AA99"), plain("B1"), results, params), QSYS_STATUS_OK);

  EXPECT_EQ(resultsOf(*results)[0].startFieldIndex, 0);
}

TEST(FieldingRunParts, TheLengthsLimitTheParts) {
  auto params = inMode(2);
  params->maxStringLength = 1;
  EXPECT_EQ(fit(line("99"), plain("12"), params), "0 [1] 1: primary");
}

TEST(FieldingRunParts, NoPartWithinTheLimitsLeavesTheResultReset) {
  auto params = inMode(2);
  params->minStringLength = 3;
  Results results;
  ASSERT_EQ(run(line("99"), plain("12"), results, params), QSYS_STATUS_OK);

  EXPECT_EQ(results->isComputed, 1u);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(resultsOf(*results)[0].isComputed, 0u);
  EXPECT_EQ(describe(results), "0 [] 0: ");
}

TEST(FieldingRunParts, LimitBAsksForLongerPartsNearTheStart) {
  auto params = inMode(2);
  params->limitB = 1;
  params->limitA = 1;
  // A part from position 0 must be longer than 1; one from position 1 longer than 0.
  Results results;
  ASSERT_EQ(run(line("A9"), plain("1"), results, params), QSYS_STATUS_OK);
  EXPECT_EQ(describe(results), "0 [1] 0: primary");
  EXPECT_EQ(resultsOf(*results)[0].startFieldIndex, 1);
}

TEST(FieldingRunParts, EmptyEndsOfTheReadingDoNotCountAsOverlap) {
  auto params = inMode(2);
  Results results;
  const auto padded = reading(U"\uF800 1 2 \uF800");
  ASSERT_EQ(run(line("99"), padded, results, params), QSYS_STATUS_OK);
  EXPECT_EQ(describe(results), "1 [1 2] 1: primary primary");
  EXPECT_EQ(resultsOf(*results)[0].overlapInputString, 2);

  const auto empty = reading(U"\uF800 \uF800");
  ASSERT_EQ(run(line("99"), empty, results, params), QSYS_STATUS_OK);
  EXPECT_EQ(resultsOf(*results)[0].overlapInputString, 0);
  EXPECT_EQ(resultsOf(*results)[0].isComputed, 1u);
  params->trimEmptyEnds = 0;
  ASSERT_EQ(run(line("99"), empty, results, params), QSYS_STATUS_OK);
  EXPECT_EQ(resultsOf(*results)[0].overlapInputString, 2);
}

TEST(FieldingRun, FailsAtAnEquivalentThatIsNoText) {
  const qoc_ocrDictionaryChar noText = character(0x4E2D);
  qsys_bool isMatch = 0;
  const qsys_status failure =
      qoc_ocrDictionaryPositionFielding_isMatch(fielding(QOC_FIELDING_DIGIT), &noText, nullptr, &isMatch);
  EXPECT_LT(failure, 0);
  Results results;
  EXPECT_EQ(run(line("9"), plain("b"), results, {}, swaps({U"b\x4E2D"})), failure);
  EXPECT_EQ(run(line("9"), plain("b"), results, {}, swaps({U"bc"})), QSYS_STATUS_OK);
}

TEST(FieldingRun, OfALineWithoutPositionsNeedsAPrimaryCandidateEverywhere) {
  Reading read = plain("ab");
  const Owned<qoc_ocrDictionaryCharMulti> none;
  require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&read->positions, none));
  qoc_ocrDictionaryChar primary = {};
  const qsys_status failure = qoc_ocrDictionaryCharMulti_getPrimaryCharacter(none, &primary);
  EXPECT_LT(failure, 0);
  Results results;
  EXPECT_EQ(run(line(""), read, results), failure);
}

}  // namespace
