// What swaps change in the matching of characters, strings and readings.

#include <gtest/gtest.h>
#include <qoc/result_set.h>

#include "support/swaps.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;
using Results = Owned<qoc_ocrDictionaryResultSet>;

constexpr int32_t all = 0;

TEST(SwappedMatch, ACharacterMatchesWhatTheSetLetsStandForIt) {
  const auto set = swaps({"0OD", "1l"});
  const struct {
    char a, b;
    qsys_bool isMatch;
  } cases[] = {{'0', 'O', 1}, {'O', '0', 1}, {'O', 'D', 1}, {'1', 'l', 1}, {'0', '1', 0}, {'x', 'O', 0}, {'x', 'x', 1}};
  for (const auto &[a, b, wanted] : cases) {
    SCOPED_TRACE(testing::Message() << a << " and " << b);
    const auto first = character(static_cast<Char32>(a)), second = character(static_cast<Char32>(b));
    qsys_bool flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryChar_isMatch(&first, &second, set, &flag), QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
    flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryChar_isMatchChar32(&first, second.code, set, &flag), QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
  }
}

TEST(SwappedMatch, TheStatusRanksPlaceAndSwapOfTheCandidate) {
  const auto set = swaps({"0O"});
  const struct {
    const char *candidates;
    qsys_bool isMatch;
    qoc_ocrDictionaryPositionStatus status;
  } cases[] = {
      {"O", 1, qoc_ocrDictionaryPositionStatus_primary},
      {"\\0", 1, qoc_ocrDictionaryPositionStatus_primarySwap},
      {"\\0|O", 1, qoc_ocrDictionaryPositionStatus_primarySwap},
      {"x|O", 1, qoc_ocrDictionaryPositionStatus_secondary},
      {"x|\\0|O", 1, qoc_ocrDictionaryPositionStatus_secondary},
      {"x|\\0", 1, qoc_ocrDictionaryPositionStatus_secondarySwap},
      {"x|y", 0, qoc_ocrDictionaryPositionStatus_noMatch},
  };
  const auto a = character('O');
  for (const auto &[candidates, wanted, wantedStatus] : cases) {
    SCOPED_TRACE(candidates);
    qsys_bool flag = 77;
    qoc_ocrDictionaryPositionStatus status = 77;
    EXPECT_EQ(qoc_ocrDictionaryChar_isMatchMultiStatus(&a, characters(candidates), set, &flag, &status),
              QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
    EXPECT_EQ(status, wantedStatus);
  }
}

TEST(SwappedMatch, ACodeMatchesACandidateThroughTheSet) {
  qsys_bool flag = 77;
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_isMatchChar32(position("x|\\0"), 'O', swaps({"0O"}), &flag), QSYS_STATUS_OK);
  EXPECT_EQ(flag, 1u);
}

TEST(SwappedMatch, ASwapCostsNoEdit) {
  int32_t edits = -1;
  EXPECT_EQ(qoc_ocrDictionaryString_editDistance(word("O"), word("0"), swaps({"0O"}), &edits), QSYS_STATUS_OK);
  EXPECT_EQ(edits, 0);
  EXPECT_EQ(qoc_ocrDictionaryString_editDistance(word("O"), word("0"), nullptr, &edits), QSYS_STATUS_OK);
  EXPECT_EQ(edits, 1);
}

TEST(SwappedMatch, AReadingPassesThroughSwapsWithAnyNumberOfEdits) {
  const auto set = swaps({"0O"});
  for (const int32_t maxEdits : {0, 1, 2}) {
    qsys_bool flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryString_isMatchMulti(word("FOOD"), reading("F \\0 \\0 D"),
                                                   runParams({.maxEdits = maxEdits}), set, &flag),
              QSYS_STATUS_OK);
    EXPECT_EQ(flag, 1u) << maxEdits;
  }
}

TEST(SwappedMatch, TheExactComparisonOfAPlainInputGradesASwapAsSecondary) {
  Results results;
  ASSERT_EQ(qoc_ocrDictionaryString_match(word("aO"), word("a0"), runParams(), swaps({"0O"}), results), QSYS_STATUS_OK);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary secondary");
}

TEST(SwappedMatch, TheExactComparisonOfAReadingGradesASwapAsSecondary) {
  Results results;
  ASSERT_EQ(qoc_ocrDictionaryString_matchMulti(word("aO"), reading("a \\0"), runParams(), swaps({"0O"}), results),
            QSYS_STATUS_OK);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary secondary");
}

TEST(SwappedMatch, WithOneEditTheSwapsAreTold) {
  Results results;
  ASSERT_EQ(
      qoc_ocrDictionaryString_matchMulti(word("aOOb"), reading("a \\0 x|\\0 q"),
                                         runParams({.maxEdits = 1, .returnBestOnly = all}), swaps({"0O"}), results),
      QSYS_STATUS_OK);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary primarySwap secondarySwap substituted");
}

TEST(SwappedMatch, WithTwoEditsASwapIsPrimary) {
  Results results;
  ASSERT_EQ(
      qoc_ocrDictionaryString_matchMulti(word("aOb"), reading("a \\0 q"),
                                         runParams({.maxEdits = 2, .returnBestOnly = all}), swaps({"0O"}), results),
      QSYS_STATUS_OK);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary primary substituted");
}

}  // namespace
