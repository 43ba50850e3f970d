// A result: construction, copies, comparison, the queries by position, printing.

#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;

using Indices = std::vector<int32_t>;

Statuses inputStatuses(const qoc_ocrDictionaryResult &record) {
  Owned<StatusVector> out;
  require(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(&record, out));
  return values(out);
}

Indices inputIndices(const qoc_ocrDictionaryResult &record) {
  Owned<qstd_vector32s> out;
  require(qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(&record, out));
  return values(out);
}

/// A result with something other than its default in every field.
Owned<qoc_ocrDictionaryResult> filledResult() {
  auto record = result({.name = 11,
                        .given = "a b",
                        .givenSwap = "c",
                        .valid = "d|e f",
                        .word = "gh",
                        .statuses = {primary, inserted},
                        .lineStatus = inserted,
                        .deleted = {1},
                        .numEdits = 2,
                        .numIgnoredPrefix = 3,
                        .numIgnoredSuffix = 4,
                        .mode = qoc_ocrDictionaryMode_regularExpression});
  require(qstd_vector_qoc_ocrDictionaryPositionStatus_assign(&record->statusWRTInputStringSwapChar,
                                                             vectorOf<StatusVector>({secondary})));
  require(qstd_vector32s_assign(&record->inputIndices, vectorOf<qstd_vector32s>({5, 6})));
  record->scoreStatusMask = 15;
  record->ignoreDeletedSpaces = 0;
  record->scoreIsCached = 1;
  record->score = 7;
  record->overlapInputString = 8;
  record->numInsertedIsCached = 1;
  record->numInserted = 9;
  record->orderIndex = 10;
  record->numMatchedPositionsIsCached = 1;
  record->numMatchedPositions = 12;
  return record;
}

void expectFilled(const qoc_ocrDictionaryResult &r) {
  EXPECT_EQ(r.isComputed, 1u);
  EXPECT_EQ(show(r.given), "a b");
  EXPECT_EQ(show(r.givenSwap), "c");
  EXPECT_EQ(show(r.valid), "d|e f");
  EXPECT_EQ(show(r.dictionaryString), "gh");
  EXPECT_EQ(values(r.resultStringStatus), (Statuses{primary, inserted}));
  EXPECT_EQ(values(r.statusWRTInputStringSwapChar), Statuses{secondary});
  EXPECT_EQ(r.resultStringLineStatus, inserted);
  EXPECT_EQ(values(r.deleted), Indices{1});
  EXPECT_EQ(values(r.inputIndices), (Indices{5, 6}));
  EXPECT_EQ(r.numIgnoredPrefixCharacters, 3);
  EXPECT_EQ(r.numIgnoredSuffixCharacters, 4);
  EXPECT_EQ(r.startFieldIndex, 11);
  EXPECT_EQ(r.scoreStatusMask, 15);
  EXPECT_EQ(r.mode, qoc_ocrDictionaryMode_regularExpression);
  EXPECT_EQ(r.numEdits, 2);
  EXPECT_EQ(r.ignoreDeletedSpaces, 0u);
  EXPECT_EQ(r.scoreIsCached, 1u);
  EXPECT_EQ(r.score, 7);
  EXPECT_EQ(r.overlapInputString, 8);
  EXPECT_EQ(r.numInsertedIsCached, 1u);
  EXPECT_EQ(r.numInserted, 9);
  EXPECT_EQ(r.orderIndex, 10);
  EXPECT_EQ(r.numMatchedPositionsIsCached, 1u);
  EXPECT_EQ(r.numMatchedPositions, 12);
}

TEST(ResultConstruct, GivesAnUncomputedEmptyResult) {
  const Owned<qoc_ocrDictionaryResult> r;

  EXPECT_EQ(r->isComputed, 0u);
  EXPECT_EQ(show(r->given), "");
  EXPECT_EQ(show(r->givenSwap), "");
  EXPECT_EQ(show(r->valid), "");
  EXPECT_EQ(show(r->dictionaryString), "");
  EXPECT_EQ(values(r->resultStringStatus), Statuses{});
  EXPECT_EQ(values(r->statusWRTInputStringSwapChar), Statuses{});
  EXPECT_EQ(r->resultStringLineStatus, noMatch);
  EXPECT_EQ(values(r->deleted), Indices{});
  EXPECT_EQ(values(r->inputIndices), Indices{});
  EXPECT_EQ(r->numIgnoredPrefixCharacters, 0);
  EXPECT_EQ(r->numIgnoredSuffixCharacters, 0);
  EXPECT_EQ(r->startFieldIndex, 0);
  EXPECT_EQ(r->scoreStatusMask, 3);
  EXPECT_EQ(r->mode, qoc_ocrDictionaryMode_fielding);
  EXPECT_EQ(r->numEdits, 0);
  EXPECT_EQ(r->ignoreDeletedSpaces, 1u);
  EXPECT_EQ(r->scoreIsCached, 0u);
  EXPECT_EQ(r->score, 0);
  EXPECT_EQ(r->overlapInputString, 0);
  EXPECT_EQ(r->numInsertedIsCached, 0u);
  EXPECT_EQ(r->numInserted, 0);
  EXPECT_EQ(r->orderIndex, 0);
  EXPECT_EQ(r->numMatchedPositionsIsCached, 0u);
  EXPECT_EQ(r->numMatchedPositions, 0);
}

TEST(ResultAssign, CopiesEveryFieldDeeply) {
  Owned<qoc_ocrDictionaryResult> assigned, constructed;
  {
    auto source = filledResult();
    ASSERT_EQ(qoc_ocrDictionaryResult_assign(assigned, source), QSYS_STATUS_OK);
    constructed = Owned<qoc_ocrDictionaryResult>(*source);
    ASSERT_EQ(qoc_ocrDictionaryResult_reset(source), QSYS_STATUS_OK);
  }

  expectFilled(*assigned);
  expectFilled(*constructed);
}

TEST(ResultAssign, OfAResultToItselfKeepsIt) {
  auto record = filledResult();

  EXPECT_EQ(qoc_ocrDictionaryResult_assign(record, record), QSYS_STATUS_OK);

  expectFilled(*record);
}

TEST(ResultReset, KeepsTheMaskTheSpacesFlagAndTheInputStatuses) {
  auto r = filledResult();

  ASSERT_EQ(qoc_ocrDictionaryResult_reset(r), QSYS_STATUS_OK);

  EXPECT_EQ(r->scoreStatusMask, 15);
  EXPECT_EQ(r->ignoreDeletedSpaces, 0u);
  EXPECT_EQ(values(r->statusWRTInputStringSwapChar), Statuses{secondary});

  EXPECT_EQ(r->isComputed, 0u);
  EXPECT_EQ(r->mode, qoc_ocrDictionaryMode_fielding);
  EXPECT_EQ(show(r->given) + show(r->givenSwap) + show(r->valid) + show(r->dictionaryString), "");
  EXPECT_EQ(values(r->inputIndices), Indices{});
  EXPECT_EQ(values(r->resultStringStatus), Statuses{});
  EXPECT_EQ(values(r->deleted), Indices{});
  EXPECT_EQ(r->numEdits, 0);
  EXPECT_EQ(r->numIgnoredPrefixCharacters, 0);
  EXPECT_EQ(r->numIgnoredSuffixCharacters, 0);
  EXPECT_EQ(r->startFieldIndex, 0);
  EXPECT_EQ(r->overlapInputString, 0);
  EXPECT_EQ(r->orderIndex, 0);
  EXPECT_EQ(r->scoreIsCached, 0u);
  EXPECT_EQ(r->score, 0);
  EXPECT_EQ(r->numInsertedIsCached, 0u);
  EXPECT_EQ(r->numInserted, 0);
  EXPECT_EQ(r->numMatchedPositionsIsCached, 0u);
  EXPECT_EQ(r->numMatchedPositions, 0);
  EXPECT_EQ(r->resultStringLineStatus, noMatch);
}

TEST(ResultCompareEqual, RequiresTheSameReadingAndTheSameMode) {
  const auto lexical = result({.given = "a b", .statuses = {primary}});
  const auto same = result({.name = 5, .given = "a b", .word = "other", .statuses = {primary}});
  const auto otherMode =
      result({.given = "a b", .statuses = {primary}, .mode = qoc_ocrDictionaryMode_regularExpression});
  const auto otherGiven = result({.given = "a c", .statuses = {primary}});

  const auto isEqual = [&](const auto &a, const auto &b) {
    qsys_bool flag = 7;
    require(qoc_ocrDictionaryResult_compareEqual(a, b, &flag));
    return flag;
  };

  EXPECT_EQ(isEqual(lexical, same), 1u);
  EXPECT_EQ(isEqual(lexical, otherMode), 0u);
  EXPECT_EQ(isEqual(lexical, otherGiven), 0u);
}

TEST(ResultOfNoMatch, RefusesEveryQueryButTheCountsAndTheDictionaryString) {
  const Owned<qoc_ocrDictionaryResult> r;
  Owned<StatusVector> statuses;
  Owned<qstd_vector32s> indices;
  qsys_bool flag = 0;
  Status status = 0;

  EXPECT_EQ(qoc_ocrDictionaryResult_checkComputed(r), QOC_STATUS_NOT_COMPUTED);
  EXPECT_EQ(qoc_ocrDictionaryResult_getIsSingularPos(r, 0, &flag), QOC_STATUS_NOT_COMPUTED);
  EXPECT_EQ(qoc_ocrDictionaryResult_getIsSingularPos(r, -1, &flag), QOC_STATUS_NOT_COMPUTED);
  EXPECT_EQ(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(r, statuses), QOC_STATUS_NOT_COMPUTED);
  EXPECT_EQ(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(r, 0, &status), QOC_STATUS_NOT_COMPUTED);
  EXPECT_EQ(qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(r, indices),
            QOC_STATUS_NOT_COMPUTED);
  EXPECT_EQ(qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices(r, indices), QOC_STATUS_NOT_COMPUTED);
}

TEST(ResultOfNoMatch, CountsNoCharactersAndGivesTheEmptyString) {
  const Owned<qoc_ocrDictionaryResult> r;
  int32_t numPrimary = -1, numSecondary = -1;
  auto string = word("before");

  EXPECT_EQ(qoc_ocrDictionaryResult_getNumPrimaryCharacters(r, &numPrimary), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResult_getNumSecondaryCharacters(r, &numSecondary), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResult_getDictionaryString(r, 0, string), QSYS_STATUS_OK);

  EXPECT_EQ(numPrimary, 0);
  EXPECT_EQ(numSecondary, 0);
  EXPECT_EQ(show(string), "");
}

TEST(ResultOfNoMatch, PrintsThatItIsNotComputedAndNothingMore) {
  PrintedText printed;

  EXPECT_EQ(qoc_ocrDictionaryResult_print(Owned<qoc_ocrDictionaryResult>()), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(), "qoc_ocrDictionaryResult isComputed: qeFalse");
}

TEST(ResultCounts, LeaveOutTheSwapVariants) {
  const auto r = result({.statuses = {primary, primarySwap, secondary, secondarySwap, secondary, substituted, inserted}});
  int32_t numPrimary = -1, numSecondary = -1;

  EXPECT_EQ(qoc_ocrDictionaryResult_getNumPrimaryCharacters(r, &numPrimary), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryResult_getNumSecondaryCharacters(r, &numSecondary), QSYS_STATUS_OK);

  EXPECT_EQ(numPrimary, 1);
  EXPECT_EQ(numSecondary, 2);
}

TEST(ResultDictionaryString, IsTheStringOfTheValidReading) {
  const auto r = result({.valid = "a b5 c", .word = "other"});
  Owned<qoc_ocrDictionaryString> string;

  EXPECT_EQ(qoc_ocrDictionaryResult_getDictionaryString(r, 0, string), QSYS_STATUS_OK);

  EXPECT_EQ(show(string), "abc");
  EXPECT_EQ(elements(string->characters)[1].score, 5);
}

TEST(ResultDictionaryString, WithSwapLeavesTheStringUntouchedAndSucceeds) {
  const auto r = result({.valid = "a b c"});
  auto string = word("before");

  EXPECT_EQ(qoc_ocrDictionaryResult_getDictionaryString(r, 1, string), QSYS_STATUS_OK);

  EXPECT_EQ(show(string), "before");
}

TEST(ResultDictionaryString, FailsWhereAPositionHasSeveralCandidates) {
  const auto r = result({.valid = "a b|c"});
  Owned<qoc_ocrDictionaryString> string;

  EXPECT_EQ(qoc_ocrDictionaryResult_getDictionaryString(r, 0, string), QOC_STATUS_NO_SUCH_VALUE);
}

TEST(ResultSingularPosition, HasExactlyOneCandidateThatIsNotTheWildcard) {
  auto r = result({.given = "x"});
  require(qoc_ocrDictionaryStringMulti_assign(&r->valid, reading(U"a a|b \uF801 ~ \uF800")));
  const qsys_bool expected[] = {1, 0, 0, 0, 1};

  for (int32_t position = 0; position < 5; ++position) {
    SCOPED_TRACE(position);
    qsys_bool isSingular = 7;
    EXPECT_EQ(qoc_ocrDictionaryResult_getIsSingularPos(r, position, &isSingular), QSYS_STATUS_OK);
    EXPECT_EQ(isSingular, expected[position]);
  }
}

TEST(ResultSingularPosition, IsCheckedAgainstTheValidReading) {
  const auto r = result({.given = "a b c", .givenSwap = "a b c d", .valid = "a b"});
  qsys_bool isSingular = 7;

  EXPECT_EQ(qoc_ocrDictionaryResult_getIsSingularPos(r, -1, &isSingular), QOC_STATUS_POSITION_NEGATIVE);
  EXPECT_EQ(isSingular, 0u);
  EXPECT_EQ(qoc_ocrDictionaryResult_getIsSingularPos(r, 2, &isSingular), QOC_STATUS_POSITION_TOO_BIG);
  EXPECT_EQ(qoc_ocrDictionaryResult_getIsSingularPos(r, 1, &isSingular), QSYS_STATUS_OK);
  EXPECT_EQ(isSingular, 1u);
}

TEST(ResultInputStatuses, TakeADeletedSpaceForIgnoredWhenTheFlagIsSet) {
  auto r = result({.given = "A B _ C", .statuses = {primary, primary, primary}, .deleted = {2}});

  r->ignoreDeletedSpaces = 1;
  EXPECT_EQ(inputStatuses(*r), (Statuses{1, 1, 10, 1}));

  r->ignoreDeletedSpaces = 0;
  EXPECT_EQ(inputStatuses(*r), (Statuses{1, 1, 9, 1}));
}

TEST(ResultInputStatuses, TakeADeletedSpaceWithRivalsForDeleted) {
  const auto r = result({.given = "A _|x", .statuses = {primary}, .deleted = {1}});

  EXPECT_EQ(inputStatuses(*r), (Statuses{1, 9}));
}

TEST(ResultInputStatuses, MarkTheIgnoredEndsAndWriteBetweenThem) {
  const auto r = result({.given = "z a b c y x",
                         .statuses = {secondary, inserted, substituted},
                         .deleted = {2},
                         .numIgnoredPrefix = 1,
                         .numIgnoredSuffix = 2});

  EXPECT_EQ(inputStatuses(*r), (Statuses{10, 3, 9, 5, 10, 10}));
}

TEST(ResultInputStatuses, StayPrimaryWhereTheWalkDoesNotReach) {
  EXPECT_EQ(inputStatuses(*result({.given = "a b c", .statuses = {secondary}})), (Statuses{3, 1, 1}));
  EXPECT_EQ(inputStatuses(*result({.given = "a", .statuses = {secondary, substituted}})), (Statuses{3}));
  EXPECT_EQ(inputStatuses(*result({.given = "", .statuses = {secondary}})), (Statuses{}));
}

TEST(ResultInputStatuses, WalkOverTheIgnoredSuffixToo) {
  // Both positions are ignored, so no place is left for the status.
  EXPECT_EQ(inputStatuses(*result({.given = "a b", .statuses = {secondary}, .numIgnoredSuffix = 2})),
            (Statuses{10, 10}));
}

TEST(ResultInputStatuses, PassOverPositionsThatDoNotExist) {
  EXPECT_EQ(inputStatuses(*result({.given = "a b",
                                   .statuses = {secondary, secondary},
                                   .deleted = {-1, 2, 77, INT32_MIN, INT32_MAX}})),
            (Statuses{3, 3}));
  EXPECT_EQ(inputStatuses(*result({.given = "a b", .numIgnoredPrefix = 5, .numIgnoredSuffix = 5})),
            (Statuses{10, 10}));
  EXPECT_EQ(inputStatuses(*result({.given = "a b", .numIgnoredPrefix = INT32_MAX, .numIgnoredSuffix = INT32_MAX})),
            (Statuses{10, 10}));
  EXPECT_EQ(inputStatuses(*result({.given = "a b", .numIgnoredPrefix = -3, .numIgnoredSuffix = -3})),
            (Statuses{1, 1}));
}

TEST(ResultInputStatuses, StartBeforeTheReadingWhereThePrefixIsNegative) {
  EXPECT_EQ(inputStatuses(*result({.given = "a b", .statuses = {secondary, substituted}, .numIgnoredPrefix = -1})),
            (Statuses{5, 1}));
}

TEST(ResultInputStatuses, ReportAStatusThatNoPositionCanHaveAndSkipIt) {
  const auto r = result({.given = "a b", .statuses = {deleted, secondary, 0, substituted}});
  FailedChecks failed;

  EXPECT_EQ(inputStatuses(*r), (Statuses{3, 5}));

  EXPECT_EQ(failed.lines().size(), 2u);
}

TEST(ResultInputStatuses, ReplaceWhatTheVectorHeld) {
  const auto r = result({.given = "a", .statuses = {secondary}});
  auto out = vectorOf<StatusVector>({noMatch, noMatch, noMatch});

  EXPECT_EQ(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(r, out), QSYS_STATUS_OK);

  EXPECT_EQ(values(out), Statuses{secondary});
}

TEST(ResultInputStatusOfAPosition, IsCheckedAgainstTheSwappedReading) {
  const auto r = result({.given = "a b c", .givenSwap = "a b", .statuses = {primary, secondary, substituted}});
  Status status = -5;

  EXPECT_EQ(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(r, -1, &status), QOC_STATUS_POSITION_NEGATIVE);
  EXPECT_EQ(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(r, 2, &status), QOC_STATUS_POSITION_TOO_BIG);
  EXPECT_EQ(status, -5);
  EXPECT_EQ(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(r, 1, &status), QSYS_STATUS_OK);
  EXPECT_EQ(status, secondary);
}

TEST(ResultInputStatusOfAPosition, DoesNotExistBehindTheReading) {
  const auto r = result({.given = "a", .givenSwap = "a b", .statuses = {secondary, substituted}});
  Status status = -5;

  EXPECT_EQ(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(r, 1, &status), QOC_STATUS_POSITION_TOO_BIG);
  EXPECT_EQ(status, -5);
}

TEST(ResultInputIndices, AreMinusOneForAnInsertedPosition) {
  const auto r = result({.given = "a b", .statuses = {primary, inserted, primary}});
  Owned<qstd_vector32s> insertedIndices;

  EXPECT_EQ(inputIndices(*r), (Indices{0, -1, 1}));
  EXPECT_EQ(qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices(r, insertedIndices), QSYS_STATUS_OK);
  EXPECT_EQ(values(insertedIndices), Indices{1});
}

TEST(ResultInputIndices, StartBehindTheIgnoredPrefixAndPassOverTheDeleted) {
  const auto r = result({.given = "z a b c d",
                         .statuses = {primary, primary, primary},
                         .deleted = {3, 2},
                         .numIgnoredPrefix = 1});

  EXPECT_EQ(inputIndices(*r), (Indices{1, 4, 5}));
}

TEST(ResultInputIndices, EndAtTheLargestNumber) {
  EXPECT_EQ(inputIndices(*result({.given = "a", .statuses = {primary, primary}, .numIgnoredPrefix = INT32_MAX})),
            (Indices{INT32_MAX, INT32_MAX}));
}

TEST(ResultInputIndices, ReportAStatusThatNoPositionCanHave) {
  const auto r = result({.given = "a b", .statuses = {deletedIgnored, primary}});
  FailedChecks failed;

  EXPECT_EQ(inputIndices(*r), (Indices{-1, 0}));

  EXPECT_EQ(failed.lines().size(), 1u);
}

TEST(ResultInsertedIndices, AscendAndReplaceWhatTheVectorHeld) {
  const auto r = result({.statuses = {inserted, primary, inserted, inserted}});
  auto out = vectorOf<qstd_vector32s>({9, 9, 9, 9, 9});

  EXPECT_EQ(qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices(r, out), QSYS_STATUS_OK);

  EXPECT_EQ(values(out), (Indices{0, 2, 3}));
}

TEST(ResultIndexFromData, AnswersTheInputIndexOfAResultIndex) {
  const struct {
    const char *what;
    int32_t index;
    Statuses input, result;
    int32_t expected;
  } cases[] = {{"an inserted first position", 0, {1}, {inserted, primary}, -1},
               {"the position behind it", 1, {1}, {inserted, primary}, 0},
               {"the first position", 0, {1, 1}, {primary, primary}, 0},
               {"an inserted position", 1, {1, 1}, {primary, inserted, primary}, -1},
               {"behind an inserted position", 2, {1, 1}, {primary, inserted, primary}, 1},
               {"behind two inserted positions", 2, {1}, {inserted, inserted, primary}, 0},
               {"deleted positions before it", 1, {9, 1, 10, 1}, {primary, primary}, 3},
               {"deleted positions behind it", 0, {1, 9, 9}, {primary}, 0},
               {"deleted positions that it grows into", 0, {9, 9, 9}, {primary}, 3},
               {"an inserted position among deleted ones", 1, {9, 9, 1}, {primary, inserted}, -1},
               {"no input at all", 1, {}, {primary, primary}, 1}};

  for (const auto &[what, index, input, resultStatus, expected] : cases) {
    SCOPED_TRACE(what);
    int32_t out = -77;
    EXPECT_EQ(qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(
                  index, vectorOf<StatusVector>(input), vectorOf<StatusVector>(resultStatus), &out),
              QSYS_STATUS_OK);
    EXPECT_EQ(out, expected);
  }
}

TEST(ResultIndexFromData, RefusesAnIndexOutsideTheResult) {
  const auto statuses = vectorOf<StatusVector>({primary, primary});
  int32_t out = -77;

  EXPECT_EQ(qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(-1, statuses, statuses, &out),
            QOC_STATUS_INDEX_NEGATIVE);
  EXPECT_EQ(qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(2, statuses, statuses, &out),
            QOC_STATUS_INDEX_TOO_BIG);
  EXPECT_EQ(qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(0, statuses, Owned<StatusVector>(), &out),
            QOC_STATUS_INDEX_TOO_BIG);
}

constexpr const char *printedResult =
    "qoc_ocrDictionaryResult isComputed: qeTrueqoc_ocrDictionaryMode_lexicon"
    " { qoc_ocrDictionaryPositionStatus_primary , qoc_ocrDictionaryPositionStatus_inserted } "
    "resultStringLineStatus: qoc_ocrDictionaryPositionStatus_inserted"
    " given: [[a b ][c ]] given(swap): [[d ]] valid: []"
    " numIgnoredPrefixCharacters: 3  numIgnoredSuffixCharacters: 4  startFieldIndex: -5 "
    " deleted [ 7 -8 ]  overlapInputString: 9 ";

Owned<qoc_ocrDictionaryResult> resultToPrint() {
  auto record = result({.name = -5,
                        .given = "a|b c",
                        .givenSwap = "d",
                        .statuses = {primary, inserted},
                        .lineStatus = inserted,
                        .deleted = {7, -8},
                        .numIgnoredPrefix = 3,
                        .numIgnoredSuffix = 4});
  record->overlapInputString = 9;
  return record;
}

TEST(ResultPrint, WritesTheFieldsInOneLineWithoutItsEnd) {
  PrintedText printed;

  EXPECT_EQ(qoc_ocrDictionaryResult_print(resultToPrint()), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(), printedResult);
}

TEST(ResultPrint, EndsAtTheFirstPrintThatFails) {
  const auto record = resultToPrint();
  const std::string whole = printedResult;
  bool isComplete = false;

  for (int n = 0; !isComplete; ++n) {
    SCOPED_TRACE(n);
    ASSERT_LT(n, 200);
    PrintedText printed(n, -901);
    const qsys_status status = qoc_ocrDictionaryResult_print(record);
    EXPECT_EQ(printed.text(), whole.substr(0, printed.text().size()));
    isComplete = printed.text() == whole;
    EXPECT_EQ(status, isComplete ? QSYS_STATUS_OK : -901);
  }
}

TEST(ResultVectorPrint, EnclosesTheResultsInBraces) {
  {
    PrintedText printed;
    EXPECT_EQ(qstd_vector_qoc_ocrDictionaryResult_print(Owned<ResultVector>()), QSYS_STATUS_OK);
    EXPECT_EQ(printed.text(), " {  } ");
  }
  const auto vector = resultVector({{.isComputed = 0}, {.isComputed = 0}});
  PrintedText printed;
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryResult_print(vector), QSYS_STATUS_OK);
  EXPECT_EQ(printed.text(),
            " { qoc_ocrDictionaryResult isComputed: qeFalseqoc_ocrDictionaryResult isComputed: qeFalse } ");
}

TEST(Result, ReportsMissingArgumentsAndTouchesNothing) {
  const auto r = result({.given = "a", .givenSwap = "a", .valid = "a", .statuses = {primary}});
  const auto statuses = vectorOf<StatusVector>({primary});
  qsys_bool flag = 7;
  Status status = 7;
  int32_t count = 7;
  FailedChecks failed;

  const auto expectReport = [&](qsys_status outcome) {
    EXPECT_EQ(outcome, QSYS_STATUS_OK);
    EXPECT_EQ(failed.numNew(), 1);
  };
  expectReport(qoc_ocrDictionaryResult_construct(nullptr));
  expectReport(qoc_ocrDictionaryResult_constructCopy(nullptr, r));
  expectReport(qoc_ocrDictionaryResult_assign(nullptr, r));
  expectReport(qoc_ocrDictionaryResult_reset(nullptr));
  expectReport(qoc_ocrDictionaryResult_compareEqual(r, nullptr, &flag));
  expectReport(qoc_ocrDictionaryResult_compareEqual(nullptr, r, &flag));
  expectReport(qoc_ocrDictionaryResult_compareEqual(r, r, nullptr));
  expectReport(qoc_ocrDictionaryResult_checkComputed(nullptr));
  expectReport(qoc_ocrDictionaryResult_getNumPrimaryCharacters(nullptr, &count));
  expectReport(qoc_ocrDictionaryResult_getNumPrimaryCharacters(r, nullptr));
  expectReport(qoc_ocrDictionaryResult_getNumSecondaryCharacters(nullptr, &count));
  expectReport(qoc_ocrDictionaryResult_getIsSingularPos(nullptr, 0, &flag));
  expectReport(qoc_ocrDictionaryResult_getIsSingularPos(r, 0, nullptr));
  expectReport(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(r, nullptr));
  expectReport(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(r, 0, nullptr));
  expectReport(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(nullptr, 0, &status));
  expectReport(qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(r, nullptr));
  expectReport(qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices(r, nullptr));
  expectReport(
      qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(0, nullptr, statuses, &count));
  expectReport(qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(0, statuses, statuses, nullptr));
  expectReport(qoc_ocrDictionaryResult_print(nullptr));
  expectReport(qstd_vector_qoc_ocrDictionaryResult_print(nullptr));
  EXPECT_EQ(flag, 7u);
  EXPECT_EQ(status, 7);
  EXPECT_EQ(count, 7);
}

}  // namespace
