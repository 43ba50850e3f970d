// The shape of a line: access, and how readings fit it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fieldings.hpp"
#include "support/handlers.hpp"
#include "support/metered.hpp"
#include "support/shortcuts.hpp"

namespace {

using namespace qoc::test;
using testing::ElementsAre;

using Line = Owned<qoc_ocrDictionaryLineFielding>;
using Reading = Owned<qoc_ocrDictionaryStringMulti>;

bool fits(const Line &line, const Reading &reading, const qoc_ocrDictionaryRunParams *params = nullptr,
          const qoc_swapCharSet *set = nullptr) {
  qsys_bool isMatch = 2;
  require(qoc_ocrDictionaryLineFielding_isMatchMulti(line, reading, params, set, &isMatch));
  return isMatch == 1;
}

Owned<qoc_ocrDictionaryResultSet> match(const Line &line, const Reading &reading,
                                        const qoc_ocrDictionaryRunParams *params = nullptr,
                                        const qoc_swapCharSet *set = nullptr) {
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionaryLineFielding_matchMulti(line, reading, params, set, results));
  return results;
}

/// A result in a line: prefix, candidates per position, suffix, statuses, deleted.
std::string describe(const qoc_ocrDictionaryResult &result) {
  std::string out = std::to_string(result.numIgnoredPrefixCharacters) + " [" + show(result.valid) + "] " +
                    std::to_string(result.numIgnoredSuffixCharacters) + ": " + show(result.resultStringStatus);
  for (const int32_t index : elements(result.deleted)) {
    out += " -" + std::to_string(index);
  }
  return out;
}

std::vector<std::string> describe(const Owned<qoc_ocrDictionaryResultSet> &results) {
  std::vector<std::string> out;
  for (const qoc_ocrDictionaryResult &result : resultsOf(*results)) {
    out.push_back(describe(result));
  }
  return out;
}

std::vector<std::string> matches(const Line &line, const Reading &reading,
                                 const qoc_ocrDictionaryRunParams *params = nullptr,
                                 const qoc_swapCharSet *set = nullptr) {
  return describe(match(line, reading, params, set));
}

uint32_t bitsAt(const Line &line, int32_t index) {
  const qoc_ocrDictionaryPositionFielding *stored = nullptr;
  require(qoc_ocrDictionaryLineFielding_getPositionFielding(line, index, &stored));
  return stored->fieldingBits;
}

int32_t sizeOf(const Line &line) {
  int32_t n = -1;
  require(qoc_ocrDictionaryLineFielding_getNumPositionFieldings(line, &n));
  return n;
}

TEST(LineFieldingAccess, IsEmptyAfterConstructionAndTakesPositions) {
  Line made;
  qsys_bool isEmpty = 2;
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_getIsEmpty(made, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);

  ASSERT_EQ(qoc_ocrDictionaryLineFielding_setPositionFieldings(made, &line("A9")->positions), QSYS_STATUS_OK);

  EXPECT_EQ(qoc_ocrDictionaryLineFielding_getIsEmpty(made, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 0u);
  EXPECT_EQ(sizeOf(made), 2);
  const qstd_vector_qoc_ocrDictionaryPositionFielding *positions = nullptr;
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_getPositionFieldings(made, &positions), QSYS_STATUS_OK);
  EXPECT_EQ(positions, &made->positions);
}

TEST(LineFieldingAccess, CopiesCompareEqualUntilOneChanges) {
  const auto source = line("A99");
  Line copy([&](qoc_ocrDictionaryLineFielding *made) {
    return qoc_ocrDictionaryLineFielding_constructPositionFieldings(made, &source->positions);
  });
  qsys_bool isEqual = 2;
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_compareEqual(source, copy, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);

  ASSERT_EQ(qoc_ocrDictionaryLineFielding_setPositionFielding(copy, 1, fielding(2)), QSYS_STATUS_OK);

  EXPECT_EQ(qoc_ocrDictionaryLineFielding_compareEqual(source, copy, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
  EXPECT_EQ(bitsAt(copy, 1), 2u);
}

TEST(LineFieldingAccess, ChecksTheIndex) {
  auto made = line("A99");
  const qoc_ocrDictionaryPositionFielding *stored = nullptr;

  EXPECT_EQ(qoc_ocrDictionaryLineFielding_setPositionFielding(made, -1, fielding(1)), QOC_STATUS_INDEX_NEGATIVE);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_setPositionFielding(made, 3, fielding(1)), QOC_STATUS_INDEX_TOO_BIG);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_getPositionFielding(made, -1, &stored), QOC_STATUS_INDEX_NEGATIVE);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_getPositionFielding(made, 3, &stored), QOC_STATUS_INDEX_TOO_BIG);
  EXPECT_EQ(stored, nullptr);
  EXPECT_EQ(sizeOf(made), 3);
}

TEST(LineFieldingAccess, TheGrowingGetterLeavesDefaultPositions) {
  Line made;
  auto out = fielding(3, U"x");

  ASSERT_EQ(qoc_ocrDictionaryLineFielding_getPositionFieldingExtend(made, 5, out), QSYS_STATUS_OK);

  EXPECT_EQ(sizeOf(made), 6);
  for (int32_t i = 0; i < 6; ++i) {
    EXPECT_EQ(bitsAt(made, i), 16u);
  }
  EXPECT_EQ(out->fieldingBits, 16u);
  EXPECT_EQ(show(out->fieldingCharacters), U"");
}

TEST(LineFieldingAccess, TheGrowingSetterKeepsWhatIsThere) {
  auto made = line("A");

  ASSERT_EQ(qoc_ocrDictionaryLineFielding_setPositionFieldingExtend(made, 2, fielding(4)), QSYS_STATUS_OK);

  EXPECT_EQ(sizeOf(made), 3);
  EXPECT_EQ(bitsAt(made, 0), 1u);
  EXPECT_EQ(bitsAt(made, 1), 16u);
  EXPECT_EQ(bitsAt(made, 2), 4u);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_setPositionFieldingExtend(made, 0, fielding(2)), QSYS_STATUS_OK);
  EXPECT_EQ(bitsAt(made, 0), 2u);
  EXPECT_EQ(sizeOf(made), 3);
}

TEST(LineFieldingAccess, TheGrowingFormsRefuseImpossibleIndices) {
  auto made = line("A");
  auto out = fielding(3);

  EXPECT_EQ(qoc_ocrDictionaryLineFielding_getPositionFieldingExtend(made, -1, out), QOC_STATUS_INDEX_NEGATIVE);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_setPositionFieldingExtend(made, -1, out), QOC_STATUS_INDEX_NEGATIVE);
  EXPECT_LT(qoc_ocrDictionaryLineFielding_getPositionFieldingExtend(made, INT32_MAX, out), 0);
  EXPECT_EQ(sizeOf(made), 1);
  EXPECT_EQ(out->fieldingBits, 3u);
}

TEST(LineFieldingAccess, TheGrowingSetterTakesAPositionOfItsOwnLine) {
  auto made = line("x");

  ASSERT_EQ(qoc_ocrDictionaryLineFielding_setPositionFieldingExtend(made, 40, &elements(made->positions)[0]),
            QSYS_STATUS_OK);

  EXPECT_EQ(show(elements(made->positions)[40].fieldingCharacters), U"x");
}

TEST(LineFieldingMatch, ALineWithoutPositionsFitsAnEmptyReadingOnly) {
  const auto allowEmpty = runParams({.minStringLength = 0});

  EXPECT_TRUE(fits(line(""), plain("")));
  EXPECT_TRUE(fits(line(""), plain(""), allowEmpty));
  EXPECT_FALSE(fits(line(""), plain(""), runParams()));
  EXPECT_FALSE(fits(line(""), plain("x"), runParams({.maxEdits = 1, .minStringLength = 0})));
  EXPECT_THAT(matches(line(""), plain(""), allowEmpty), ElementsAre("0 [] 0: "));
  EXPECT_THAT(matches(line(""), plain(""), runParams()), ElementsAre());
}

TEST(LineFieldingMatch, AnExactReadingIsPrimaryEverywhere) {
  const auto results = match(line("A99"), plain("B12"), runParams());

  ASSERT_THAT(describe(results), ElementsAre("0 [B 1 2] 0: primary primary primary"));
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(results->isComputed, 1u);
  EXPECT_EQ(result.isComputed, 1u);
  EXPECT_EQ(result.mode, qoc_ocrDictionaryMode_fielding);
  EXPECT_EQ(result.numEdits, 0);
  EXPECT_EQ(result.overlapInputString, 3);
  EXPECT_EQ(result.startFieldIndex, 0);
  EXPECT_EQ(result.resultStringLineStatus, qoc_ocrDictionaryPositionStatus_primary);
  EXPECT_EQ(show(result.given), "B 1 2");
  EXPECT_EQ(show(result.givenSwap), "B 1 2");
  EXPECT_EQ(show(result.dictionaryString), "");
  EXPECT_EQ(show(result.statusWRTInputStringSwapChar), "primary primary primary");
}

TEST(LineFieldingMatch, ListsAllCandidatesThatAPositionAdmits) {
  EXPECT_THAT(matches(line("A9"), reading("8|B5|C4 O|1|7|x")), ElementsAre("0 [B5|C4 1|7] 0: secondary secondary"));
}

TEST(LineFieldingMatch, AnExtraCharacterIsSkippedButNeverTheLast) {
  const auto params = runParams({.maxEdits = 1, .matchOption1 = 0, .matchOption2 = 0});

  EXPECT_TRUE(fits(line("A99"), plain("B912"), params));
  EXPECT_FALSE(fits(line("A99"), plain("B12X"), params));
  EXPECT_THAT(matches(line("A99"), plain("XB12"), params), ElementsAre("0 [B 1 2] 0: primary primary primary -0"));
  EXPECT_THAT(matches(line("A99"), plain("B12X"), params), ElementsAre());
  EXPECT_FALSE(fits(line("A99"), plain("B912"), runParams({.maxEdits = 1, .matchOption4 = 0})));
}

TEST(LineFieldingMatch, EveryExtraCharacterThatCanGoGivesAResult) {
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});

  EXPECT_THAT(matches(line("A99"), plain("B912"), params),
              ElementsAre("0 [B 1 2] 0: primary primary primary -1", "0 [B 9 2] 0: primary primary primary -2"));
}

TEST(LineFieldingMatch, EveryMissingCharacterThatCanBeGivesAResult) {
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});

  EXPECT_THAT(matches(line("A99"), plain("B1"), params),
              ElementsAre("0 [B ~ 1] 0: primary inserted primary", "0 [B 1 ~] 0: primary primary inserted"));
  EXPECT_FALSE(fits(line("A99"), plain("B1"), runParams({.maxEdits = 1, .matchOption2 = 0})));
}

TEST(LineFieldingMatch, ASubstitutedCharacterHasTheListedOnesOrTheWildcard) {
  const auto params = runParams({.maxEdits = 1});

  EXPECT_THAT(matches(line("A-9"), plain("B#1"), params), ElementsAre("0 [B - 1] 0: primary substituted primary"));
  EXPECT_THAT(matches(line("A99"), plain("Bx1"), params), ElementsAre("0 [B ~ 1] 0: primary substituted primary"));
  EXPECT_FALSE(fits(line("A99"), plain("Bxy"), params));
  EXPECT_FALSE(fits(line("A99"), plain("Bx1"), runParams({.maxEdits = 1, .matchOption1 = 0})));
}

TEST(LineFieldingMatch, AMissingCharacterOfAPositionThatAdmitsEverythingIsTheWildcard) {
  EXPECT_THAT(matches(line("?A"), plain("B"), runParams({.maxEdits = 1})),
              ElementsAre("0 [{F801} B] 0: inserted primary"));
}

TEST(LineFieldingMatch, NoEditIsTriedWithoutEdits) {
  for (const char *text : {"B912", "B1", "Bx1"}) {
    EXPECT_FALSE(fits(line("A99"), plain(text), runParams()));
    EXPECT_FALSE(fits(line("A99"), plain(text)));
    EXPECT_THAT(matches(line("A99"), plain(text), runParams()), ElementsAre());
    EXPECT_TRUE(fits(line("A99"), plain(text), runParams({.maxEdits = 1})));
  }
}

TEST(LineFieldingMatch, AnEmptyPositionIsNotMissingInAnEmptyReadingNorFirstInResults) {
  const auto params = runParams({.maxEdits = 1, .minStringLength = 0, .returnBestOnly = 0});

  EXPECT_FALSE(fits(line("~"), plain(""), params));
  EXPECT_TRUE(fits(line("9"), plain(""), params));
  EXPECT_THAT(matches(line("~"), plain(""), params), ElementsAre());
  EXPECT_THAT(matches(line("9"), plain(""), params), ElementsAre("0 [~] 0: inserted"));

  EXPECT_TRUE(fits(line("~9"), plain("1"), params)) << "the comparison overwrites the answer";
  EXPECT_THAT(matches(line("~9"), plain("1"), params), ElementsAre());
  EXPECT_THAT(matches(line("9~"), plain("1"), params), ElementsAre("0 [1 ~] 0: primary inserted"));
}

TEST(LineFieldingMatch, AnExactRangeIsAlsoTriedWithEditsWhereAllResultsAreAsked) {
  const auto all = runParams({.maxEdits = 1, .returnBestOnly = 0});

  EXPECT_THAT(matches(line("A9"), plain("B1"), runParams({.maxEdits = 1})), ElementsAre("0 [B 1] 0: primary primary"));
  EXPECT_THAT(
      matches(line("A9"), plain("B1"), all),
      ElementsAre("0 [B 1] 0: primary primary", "0 [~ 1] 0: substituted primary", "0 [B ~] 0: primary substituted"));
}

TEST(LineFieldingMatch, TheLengthLimitsCountTheLinesLength) {
  EXPECT_FALSE(fits(line("A99"), plain("B12"), runParams({.maxStringLength = 2})));
  EXPECT_FALSE(fits(line("A99"), plain("B12"), runParams({.minStringLength = 4})));
  EXPECT_TRUE(fits(line("A99"), plain("B1"), runParams({.maxEdits = 1, .minStringLength = 3, .maxStringLength = 3})));
  EXPECT_TRUE(fits(line("A99"), plain("B912"), runParams({.maxEdits = 1, .minStringLength = 3, .maxStringLength = 3})));
}

TEST(LineFieldingMatch, AWindowOfTheReadingFits) {
  const auto params = runParams({.matchOption9 = 1});

  EXPECT_FALSE(fits(line("A99"), plain("xxB12yy"), runParams()));
  EXPECT_TRUE(fits(line("A99"), plain("xxB12yy"), params));
  const auto results = match(line("A99"), plain("xxB12yy"), params);
  ASSERT_THAT(describe(results), ElementsAre("2 [B 1 2] 2: primary primary primary"));
  EXPECT_EQ(show(resultsOf(*results)[0].given), "x x B 1 2 y y");
  EXPECT_EQ(resultsOf(*results)[0].overlapInputString, 3);
  EXPECT_EQ(show(resultsOf(*results)[0].statusWRTInputStringSwapChar),
            "deletedIgnored deletedIgnored primary primary primary deletedIgnored deletedIgnored");
}

TEST(LineFieldingMatch, ASkippedCharacterOfAWindowIsToldByItsPlaceInTheReading) {
  EXPECT_THAT(matches(line("A-9"), plain("xxB-#1"),
                      runParams({.maxEdits = 1, .matchOption1 = 0, .matchOption2 = 0, .matchOption9 = 1})),
              ElementsAre("2 [B - 1] 0: primary primary primary -4"));
}

TEST(LineFieldingMatch, AllWindowsGiveResultsWhereAllAreAsked) {
  EXPECT_THAT(matches(line("99"), plain("1234"), runParams({.returnBestOnly = 0, .matchOption9 = 1})),
              ElementsAre("0 [1 2] 2: primary primary", "1 [2 3] 1: primary primary", "2 [3 4] 0: primary primary"));
}

TEST(LineFieldingMatch, AfterAnExactResultOnlyExactOnesAreLookedForAmongWindows) {
  // The window "12" fits exactly, before "1x", which would fit with one edit, is come to.
  EXPECT_THAT(matches(line("99"), plain("121x"), runParams({.maxEdits = 1, .matchOption9 = 1})),
              ElementsAre("0 [1 2] 2: primary primary"));
}

TEST(LineFieldingMatch, WindowEndsBelowZeroEndAStart) {
  // With a smallest length of 1 and 5 edits the ends begin at start - 4: the starts before 4 have no windows.
  const auto params = runParams(
      {.maxEdits = 5, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0, .returnBestOnly = 0, .matchOption9 = 1});

  EXPECT_THAT(matches(line("99"), plain("1234567"), params),
              ElementsAre("4 [5 6] 1: primary primary", "5 [6 7] 0: primary primary"));
  EXPECT_FALSE(fits(line("99"), plain("12xxx"), params));
  EXPECT_TRUE(fits(line("99"), plain("xxxx12"), params));
}

/// What a position is known to admit at the places behind says nothing of the position behind it.
TEST(LineFieldingMatch, EveryPositionIsAskedForItself) {
  EXPECT_THAT(matches(line("x9A"), plain("x123"),
                      runParams({.maxEdits = 1, .matchOption1 = 0, .returnBestOnly = 0, .matchOption9 = 1})),
              ElementsAre("0 [x 1 ~] 2: primary primary inserted"));
}

TEST(LineFieldingMatch, WindowsKeepToTheLengthLimits) {
  EXPECT_FALSE(fits(line("99"), plain("x12x"), runParams({.minStringLength = 3, .matchOption9 = 1})));
  EXPECT_FALSE(fits(line("99"), plain("x12x"), runParams({.maxStringLength = 1, .matchOption9 = 1})));
  EXPECT_TRUE(
      fits(line("99"), plain("x12x"), runParams({.minStringLength = 2, .maxStringLength = 2, .matchOption9 = 1})));
}

TEST(LineFieldingMatch, PlainStringsAreReadingsOfSingleCandidates) {
  qsys_bool isMatch = 2;
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatch(line("A9"), word("B1"), nullptr, nullptr, &isMatch), QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 1u);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatch(line("A9"), word("1B"), nullptr, nullptr, &isMatch), QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 0u);
  Owned<qoc_ocrDictionaryResultSet> results;
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_match(line("A9"), word("B1"), nullptr, nullptr, results), QSYS_STATUS_OK);
  EXPECT_THAT(describe(results), ElementsAre("0 [B 1] 0: primary primary"));
}

TEST(LineFieldingMatch, ResetsTheSetThatItIsGiven) {
  auto results = match(line("A9"), plain("B1"));
  ASSERT_EQ(qoc_ocrDictionaryLineFielding_matchMulti(line("A9"), plain("xx"), nullptr, nullptr, results),
            QSYS_STATUS_OK);
  EXPECT_THAT(describe(results), ElementsAre());
  EXPECT_EQ(results->isComputed, 1u);
}

TEST(LineFieldingMatch, SingleSwapsAdmitAndListWhatTheyStandFor) {
  const auto set = swaps({U"O0"});

  EXPECT_FALSE(fits(line("A9"), plain("BO")));
  EXPECT_TRUE(fits(line("A9"), plain("BO"), nullptr, set));
  EXPECT_THAT(matches(line("A9"), plain("BO"), nullptr, set), ElementsAre("0 [B 0] 0: primary primary"));
}

/// A set in which "m" may be read as "rn" and the other way round.
Owned<qoc_swapCharSet> oneToTwo() {
  Owned<qoc_swapChar> swap;
  require(qoc_swapChar_setStrings(swap, word("m"), word("rn")));
  Owned<qoc_swapCharSet> set;
  Owned<qstd_vector_qoc_swapChar> list;
  require(qstd_vector_qoc_swapChar_pushBack(list, swap));
  require(qoc_swapCharSet_setSwapCharacters(set, list));
  return set;
}

TEST(LineFieldingMatch, MultiCharacterSwapsAreTriedAsVariantsAndToldOfTheReading) {
  const auto set = oneToTwo();

  EXPECT_FALSE(fits(line("mA"), plain("rnB")));
  EXPECT_TRUE(fits(line("mA"), plain("rnB"), nullptr, set));
  const auto results = match(line("mA"), plain("rnB"), runParams(), set);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.valid), "m B");
  EXPECT_EQ(show(result.given), "r n B");
  EXPECT_EQ(show(result.givenSwap), "{F800}|m B") << "what is swapped in is never the first candidate";
  EXPECT_EQ(show(result.resultStringStatus), "secondary primary");
  EXPECT_THAT(values(result.inputIndices), ElementsAre(0, 2));
}

TEST(LineFieldingMatch, VariantsThatFitAreFoundAmongMoreThanCanBeMade) {
  const auto set = oneToTwo();
  std::string picture(20, 'm');
  for (int i = 0; i < 20; ++i) {
    picture += "rn";
  }
  const Reading ems = plain(std::string(40, 'm'));
  const auto windows = runParams({.maxEdits = 1, .matchOption9 = 1});

  EXPECT_TRUE(fits(line(picture), ems, nullptr, set));
  const auto results = match(line(picture), ems, nullptr, set);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(values(resultsOf(*results)[0].inputIndices).size(), 60u);
  EXPECT_TRUE(fits(line(picture + "9"), ems, windows, set));
  EXPECT_FALSE(fits(line(picture + "99"), ems, windows, set));
  EXPECT_FALSE(fits(line(std::string(82, 'r')), ems, windows, set));
}

TEST(LineFieldingMatch, AVariantThatAsksAboutACharacterBeyondSevenBitsFails) {
  const auto set = oneToTwo();
  const auto accented = reading(U"\u00E9 m x");
  qsys_bool isMatch = 2;

  EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatchMulti(line("9999"), accented, nullptr, set, &isMatch),
            QOC_STATUS_NO_SUCH_VALUE)
      << "one variant has the length";
  EXPECT_FALSE(fits(line("99999"), accented, nullptr, set)) << "none has";
}

TEST(LineFieldingMatch, TheBestResultIsTheFirstOfAll) {
  for (const char *picture : {"A9", "A99", "?9*", "AA9"}) {
    for (const char *text : {"A B 1 2 3", "A B|8 1 2", "A|4 8|B 1|I", "x|A 7|8 1|2|3 2", "7 8|B 9|A 1"}) {
      for (const int32_t windows : {0, 1}) {
        const auto found = [&](int32_t best) {
          const auto params = runParams({.maxEdits = 1, .returnBestOnly = best, .matchOption9 = windows});
          return matches(line(picture), reading(text), params);
        };
        const auto all = found(0), best = found(1);
        ASSERT_EQ(best.size(), all.empty() ? 0u : 1u) << picture << " of " << text;
        EXPECT_TRUE(best.empty() || best.front() == all.front()) << picture << " of " << text;
      }
    }
  }
}

TEST(LineFieldingMatch, TheEmptyVariantOfAnEmptyReadingIsMatchedToo) {
  const auto set = oneToTwo();
  const auto params = runParams({.minStringLength = 0});

  EXPECT_TRUE(fits(line(""), plain(""), params, set));
  EXPECT_THAT(matches(line(""), plain(""), params, set), ElementsAre("0 [] 0: "));
}

TEST(LineFieldingMatch, ACandidateBeyondSevenBitsFailsWhereItIsAsked) {
  const auto accented = reading(U"B \u00E9");
  qsys_bool isMatch = 2;
  Owned<qoc_ocrDictionaryResultSet> results;

  EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatchMulti(line("A9"), accented, nullptr, nullptr, &isMatch),
            QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_matchMulti(line("A9"), accented, nullptr, nullptr, results),
            QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_FALSE(fits(line("99"), accented)) << "the first position refuses before the second is asked";
  EXPECT_FALSE(fits(line("A"), accented)) << "nothing is asked where the length does not fit";
}

TEST(LineFieldingMatch, ACandidateBeyondSevenBitsFailsAtAPlaceThatIsRefusedAnyway) {
  // Without the first character the 7 is refused; without the second one it is too, but the first is asked before it.
  qsys_bool isMatch = 2;
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatchMulti(line("*A"), reading(U"\u00E9 8 7"), runParams({.maxEdits = 1}),
                                                       nullptr, &isMatch),
            QOC_STATUS_NO_SUCH_VALUE);
}

TEST(LineFieldingMatch, ACandidateBeyondSevenBitsIsNotAskedForWhereNoPlaceComparesIt) {
  // Without the first character the 7 is refused, and the last one is never the one that is extra.
  qsys_bool isMatch = 2;
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatchMulti(line("A"), reading(U"\u00E9 7"), runParams({.maxEdits = 1}),
                                                       nullptr, &isMatch),
            QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 0u);
}

TEST(LineFieldingMatch, PollsOnceForTheReadingAndOnceForEachStart) {
  const auto windows = runParams({.matchOption9 = 1});
  const auto count = [](auto &&work) {
    Polls polls;
    work();
    return polls.count();
  };

  EXPECT_EQ(count([&] { fits(line("99"), plain("xxxxx")); }), 1);
  EXPECT_EQ(count([&] { fits(line("99"), plain("xxxxx"), windows); }), 6);
  EXPECT_EQ(count([&] { fits(line("99"), plain("xx12x"), windows); }), 4);
  EXPECT_EQ(count([&] { match(line("99"), plain("xx12x")); }), 0);
  EXPECT_EQ(count([&] { match(line("99"), plain("xx12x"), windows); }), 5);
}

TEST(LineFieldingMatch, AnInterruptEndsTheWork) {
  const auto windows = runParams({.matchOption9 = 1});
  qsys_bool isMatch = 2;
  Owned<qoc_ocrDictionaryResultSet> results;

  for (int64_t allowed = 0; allowed < 5; ++allowed) {
    Polls polls(allowed);
    EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatchMulti(line("99"), plain("xxxxx"), windows, nullptr, &isMatch),
              QSYS_STATUS_INTERRUPTED);
    EXPECT_EQ(isMatch, 2u);
  }
  for (int64_t allowed = 0; allowed < 5; ++allowed) {
    Polls polls(allowed);
    EXPECT_EQ(qoc_ocrDictionaryLineFielding_matchMulti(line("99"), plain("xxxxx"), windows, nullptr, results),
              QSYS_STATUS_INTERRUPTED);
  }
}

TEST(LineFielding, FitsReadingsOfMoreThan64Positions) {
  for (const std::size_t size : {63u, 64u, 65u, 130u, 1023u, 1025u}) {
    const std::string text(size, '7');
    const auto nines = line(std::string(size, '9'));
    EXPECT_TRUE(fits(nines, plain(text))) << size;
    EXPECT_FALSE(fits(nines, plain(text.substr(1) + "x"))) << size;
    EXPECT_FALSE(fits(nines, plain("x" + text.substr(1)))) << size;
    const auto anEdit = runParams({.maxEdits = 1, .returnBestOnly = 0});
    EXPECT_TRUE(fits(nines, plain(text.substr(1) + "x"), anEdit)) << size;
    EXPECT_TRUE(fits(nines, plain(text.substr(1)), anEdit)) << size;
    EXPECT_TRUE(fits(nines, plain("x" + text), anEdit)) << size;
    EXPECT_FALSE(fits(nines, plain("xx" + text.substr(2)), anEdit)) << size;
    const auto windows = runParams({.matchOption9 = 1});
    EXPECT_TRUE(fits(nines, plain("xx" + text + "xx"), windows)) << size;
    EXPECT_FALSE(fits(nines, plain("xx" + text.substr(1) + "xx"), windows)) << size;
  }
}

TEST(LineFielding, FitsVariantsWithMoreThan64Positions) {
  const auto set = oneToTwo();
  for (const std::size_t size : {63u, 64u, 65u, 130u}) {
    const std::string text(size, 'x');
    for (const RunOptions &options : {RunOptions{}, RunOptions{.maxEdits = 1}, RunOptions{.matchOption9 = 1}}) {
      const auto params = runParams(options);
      const auto fitting = line(text + "m"), other = line(text.substr(2) + "kkkm");
      EXPECT_TRUE(fits(fitting, plain(text + "rn"), params, set));
      EXPECT_FALSE(fits(other, plain(text + "rn"), params, set));
      const auto results = match(fitting, plain(text + "rn"), params, set);
      ASSERT_EQ(results->results.core.size, 1);
      EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
      EXPECT_EQ(match(other, plain(text + "rn"), params, set)->results.core.size, 0);
    }
  }
}

TEST(LineFielding, FitsVariantsTooLongForTables) {
  const std::size_t size = 17000;
  const auto set = oneToTwo();
  const auto read = plain(std::string(size, 'x') + "rn");
  const auto fitting = line(std::string(size, 'x') + "m");
  for (const int32_t maxEdits : {0, 1}) {
    const auto params = runParams({.maxEdits = maxEdits});
    EXPECT_TRUE(fits(fitting, read, params, set));
    const auto results = match(fitting, read, params, set);
    ASSERT_EQ(results->results.core.size, 1);
    EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
    EXPECT_EQ(values(resultsOf(*results)[0].inputIndices).size(), size + 1);
  }
}

TEST(LineFielding, WithoutPositionsFitsAVariantOfOneCharacterThatIsTooMany) {
  const auto set = oneToTwo();
  const auto none = line("");
  const auto anEdit = runParams({.maxEdits = 1});
  // Deliberate: of a line without positions there is no place for a character that is too many.
  EXPECT_FALSE(fits(none, plain("rn"), anEdit, set));
  EXPECT_EQ(match(none, plain("rn"), anEdit, set)->results.core.size, 0);
  EXPECT_FALSE(fits(none, plain("rn"), nullptr, set));
  EXPECT_FALSE(fits(none, plain("rn"), runParams({.maxEdits = 1, .minStringLength = 0}), set));
}

TEST(LineFielding, VariantsFailAtACharacterThatIsNoText) {
  const auto set = oneToTwo();
  const auto read = reading(U"r n \x4E2D");
  qsys_bool isMatch = 0;
  Owned<qoc_ocrDictionaryResultSet> results;
  const qsys_status failure = qoc_ocrDictionaryLineFielding_isMatchMulti(line("m9"), read, nullptr, set, &isMatch);
  EXPECT_LT(failure, 0);
  EXPECT_EQ(qoc_ocrDictionaryLineFielding_matchMulti(line("m9"), read, nullptr, set, results), failure);
  EXPECT_FALSE(fits(line("k9"), read, nullptr, set)) << "nobody gets to the character";
  EXPECT_FALSE(fits(line("m"), read, nullptr, set));
  // As one that may be too many the character is asked about, with shortcuts or without.
  const auto anEdit = runParams({.maxEdits = 1});
  for (const unsigned bits : {ShortcutsTaken::all, ShortcutsTaken::none}) {
    const ShortcutsTaken taken(bits);
    EXPECT_EQ(qoc_ocrDictionaryLineFielding_isMatchMulti(line("m"), read, anEdit, set, &isMatch), failure);
    EXPECT_EQ(qoc_ocrDictionaryLineFielding_matchMulti(line("m"), read, anEdit, set, results), failure);
  }
}

TEST(LineFielding, TakesTheEditFromVariantsBehindAnExactOne) {
  const auto set = oneToTwo();
  const auto params = runParams({.maxEdits = 1});
  // The first variant fits as it is; the second would with an edit.
  const auto results = match(line("arn"), plain("arn"), params, set);
  ASSERT_EQ(results->results.core.size, 1);
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
  // Two places, so that variants follow the exact one in which the edit would fit.
  const auto both = match(line("arnm"), plain("arnrn"), params, set);
  ASSERT_EQ(both->results.core.size, 1);
  EXPECT_EQ(resultsOf(*both)[0].numEdits, 0);
}

/// Interrupts a match at every poll, where every unit of work is one.
template <class Match>
void interruptEverywhere(Match match) {
  const PollingMeters meters(1);
  int64_t numAllowed = 0;
  qsys_status status = QSYS_STATUS_INTERRUPTED;
  for (; status == QSYS_STATUS_INTERRUPTED && numAllowed < 5000; ++numAllowed) {
    const Polls polls(numAllowed);
    status = match();
    EXPECT_EQ(polls.count(), status < 0 ? numAllowed + 1 : numAllowed);
  }
  EXPECT_EQ(status, QSYS_STATUS_OK);
  EXPECT_GT(numAllowed, 20);
}

TEST(LineFielding, VariantsAreInterruptedAtEveryUnitOfWork) {
  const auto set = oneToTwo();
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 0;
  for (const RunOptions &options : {RunOptions{.maxEdits = 1}, RunOptions{.maxEdits = 1, .matchOption9 = 1}}) {
    const auto params = runParams(options);
    for (const auto &[picture, text] :
         {std::pair("arnm", "arnrn"), std::pair("mm", "xrnrn"), std::pair("99", "rnrn")}) {
      const auto lines = line(picture);
      const auto read = plain(text);
      interruptEverywhere([&] { return qoc_ocrDictionaryLineFielding_matchMulti(lines, read, params, set, results); });
      interruptEverywhere(
          [&] { return qoc_ocrDictionaryLineFielding_isMatchMulti(lines, read, params, set, &isMatch); });
    }
  }
}

}  // namespace
