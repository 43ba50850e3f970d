// Whether a word can be read in a reading.

#include <gtest/gtest.h>
#include <qoc/dictionary_string.h>

#include <string>

#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;

template <class Text>
bool isMatch(const Text &text, const char *input, const qoc_ocrDictionaryRunParams *params) {
  qsys_bool flag = 77;
  EXPECT_EQ(qoc_ocrDictionaryString_isMatchMulti(word(text), reading(input), params, nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_LE(flag, 1u);
  return flag == 1;
}
template <class Text>
bool isMatch(const Text &text, const char *input, const RunOptions &options = {}) {
  return isMatch(text, input, runParams(options));
}

TEST(IsMatchMulti, WithoutEditsASecondaryCandidateIsAsGoodAsThePrimaryOne) {
  EXPECT_TRUE(isMatch("abc", "a x|b c"));
  EXPECT_FALSE(isMatch("abc", "a x|y c"));
}

TEST(IsMatchMulti, OneMissingCharacterPassesWhereItIsAllowed) {
  EXPECT_TRUE(isMatch("abc", "a c", {.maxEdits = 1, .matchOption2 = 1}));
  EXPECT_FALSE(isMatch("abc", "a c", {.maxEdits = 1, .matchOption2 = 0}));
}

TEST(IsMatchMulti, OneExtraPositionPassesWhereItIsAllowed) {
  EXPECT_TRUE(isMatch("ab", "a b z", {.maxEdits = 1, .matchOption4 = 1}));
  EXPECT_FALSE(isMatch("ab", "a b z", {.maxEdits = 1, .matchOption4 = 0}));
}

TEST(IsMatchMulti, OneOtherCharacterPassesWhereItIsAllowed) {
  EXPECT_TRUE(isMatch("abc", "a x c", {.maxEdits = 1, .matchOption1 = 1}));
  EXPECT_FALSE(isMatch("abc", "a x c", {.maxEdits = 1, .matchOption1 = 0}));
}

TEST(IsMatchMulti, OneEditPassesAtEveryPlace) {
  for (const char *input :
       {"x b c", "a x c", "a b x", "b c", "a c", "a b", "x a b c", "a x b c", "a b x c", "a b c x"}) {
    EXPECT_TRUE(isMatch("abc", input, {.maxEdits = 1})) << input;
    EXPECT_FALSE(isMatch("abc", input, {.maxEdits = 0})) << input;
  }
}

TEST(IsMatchMulti, TwoEditsAreTooManyForOne) {
  for (const char *input : {"x y c", "a", "a b c x y", "c", "b a c", "a x y c d"}) {
    EXPECT_FALSE(isMatch("abc", input, {.maxEdits = 1})) << input;
  }
}

TEST(IsMatchMulti, LeadingAndTrailingMatchesMayOverlap) {
  EXPECT_TRUE(isMatch("aa", "a a a", {.maxEdits = 1}));
  EXPECT_TRUE(isMatch("aaa", "a a", {.maxEdits = 1}));
  EXPECT_FALSE(isMatch("aa", "a a a a", {.maxEdits = 1}));
}

TEST(IsMatchMulti, WithoutParametersOnlyAnExactMatchOfTheWholeReadingPasses) {
  const qoc_ocrDictionaryRunParams *none = nullptr;
  EXPECT_TRUE(isMatch("abc", "a b c", none));
  EXPECT_TRUE(isMatch("abc", "a q|b c", none));
  EXPECT_FALSE(isMatch("abc", "a x c", none));
  EXPECT_FALSE(isMatch("abc", "a b c z", none));
  EXPECT_FALSE(isMatch("abc", "a b", none));
  EXPECT_TRUE(isMatch("", "", none));
}

TEST(IsMatchMulti, TheSmallestLengthCountsForTheEmptyReadingToo) {
  EXPECT_FALSE(isMatch("", "", {.minStringLength = 1}));
  EXPECT_TRUE(isMatch("", "", {.minStringLength = 0}));
}

TEST(IsMatchMulti, TwoEditsMayBeOfAnyAllowedKind) {
  EXPECT_TRUE(isMatch("abc", "a x y", {.maxEdits = 2}));
  EXPECT_TRUE(isMatch("abc", "c", {.maxEdits = 2}));
  EXPECT_TRUE(isMatch("abc", "x a b y c", {.maxEdits = 2}));
  EXPECT_FALSE(isMatch("abc", "a x y", {.maxEdits = 2, .matchOption1 = 0}));
  EXPECT_FALSE(isMatch("abcd", "a x y z", {.maxEdits = 2}));
}

TEST(IsMatchMulti, WithTwoEditsALeadingMissingOrExtraCharacterPassesEvenWhereItsOptionIsOff) {
  EXPECT_TRUE(isMatch("abc", "x a b c", {.maxEdits = 2, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0}));
  EXPECT_TRUE(isMatch("abc", "b c", {.maxEdits = 2, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0}));
  EXPECT_FALSE(isMatch("abc", "a b c x", {.maxEdits = 2, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0}));
  EXPECT_FALSE(isMatch("abc", "a b", {.maxEdits = 2, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0}));
}

TEST(IsMatchMulti, WithOneEditTheOptionsHoldAtTheFrontToo) {
  EXPECT_FALSE(isMatch("abc", "x a b c", {.maxEdits = 1, .matchOption4 = 0}));
  EXPECT_FALSE(isMatch("abc", "b c", {.maxEdits = 1, .matchOption2 = 0}));
}

TEST(IsMatchMulti, ANegativeNumberOfEditsAllowsNone) {
  EXPECT_TRUE(isMatch("abc", "a b c", {.maxEdits = -1}));
  EXPECT_FALSE(isMatch("abc", "a b x", {.maxEdits = -1}));
  EXPECT_FALSE(isMatch("abc", "a b x", {.maxEdits = INT32_MIN}));
}

TEST(IsMatchMulti, OfTheEmptyReadingEveryCharacterIsMissing) {
  EXPECT_TRUE(isMatch("ab", "", {.maxEdits = 2}));
  EXPECT_FALSE(isMatch("abc", "", {.maxEdits = 2}));
}

TEST(IsMatchMulti, LengthsCountOnlyWithoutEdits) {
  EXPECT_FALSE(isMatch("abc", "a b c", {.maxEdits = 0, .minStringLength = 4}));
  EXPECT_FALSE(isMatch("abc", "a b c", {.maxEdits = 0, .maxStringLength = 2}));
  EXPECT_TRUE(isMatch("abc", "a b c", {.maxEdits = 0, .minStringLength = 3, .maxStringLength = 3}));
  EXPECT_TRUE(isMatch("abc", "a b c", {.maxEdits = 1, .minStringLength = 4}));
}

TEST(IsMatchMulti, AWindowPassesOnlyWhereTheSearchIsOn) {
  EXPECT_TRUE(isMatch("abc", "z a b c z", {.matchOption9 = 1}));
  EXPECT_FALSE(isMatch("abc", "z a b c z", {.matchOption9 = 0}));
  EXPECT_TRUE(isMatch("abc", "a b c z z", {.matchOption9 = 1}));
  EXPECT_TRUE(isMatch("abc", "z z a b c", {.matchOption9 = 1}));
  EXPECT_FALSE(isMatch("abc", "z a b z c", {.matchOption9 = 1}));
}

TEST(IsMatchMulti, AWindowMayNeedEdits) {
  EXPECT_TRUE(isMatch("abcd", "z z a x c d z z", {.maxEdits = 1, .matchOption9 = 1}));
  EXPECT_FALSE(isMatch("abcd", "z z a x y d z z", {.maxEdits = 1, .matchOption9 = 1}));
}

TEST(IsMatchMulti, TheLargestLengthEndsTheWindowsOfAStart) {
  EXPECT_FALSE(isMatch("abc", "z a b c z", {.maxStringLength = 2, .matchOption9 = 1}));
  EXPECT_TRUE(isMatch("abc", "z a b c z", {.maxStringLength = 3, .matchOption9 = 1}));
}

TEST(IsMatchMulti, WildcardsMatchAndEmptyPositionsDoNot) {
  EXPECT_TRUE(isMatch(U"a\uF801c", "a x c"));
  EXPECT_FALSE(isMatch(U"a\uF801c", "a ~ c"));
  EXPECT_FALSE(isMatch(U"a\uF800", "a x"));
}

TEST(IsMatchMulti, PollsOncePerStartOfTheWindowSearchAndNotElse) {
  const auto params = runParams({.matchOption9 = 1});
  qsys_bool flag = 77;
  {
    const Polls polls;
    ASSERT_EQ(qoc_ocrDictionaryString_isMatchMulti(word("abc"), reading("x x x x x"), params, nullptr, &flag), 0);
    EXPECT_EQ(polls.count(), 5);
  }
  {
    const Polls polls;
    ASSERT_EQ(qoc_ocrDictionaryString_isMatchMulti(word("abc"), reading("x x a b c x"), params, nullptr, &flag), 0);
    EXPECT_EQ(polls.count(), 3) << "the search ends with the first window that matches";
  }
  {
    const Polls polls;
    ASSERT_EQ(qoc_ocrDictionaryString_isMatchMulti(word("abc"), reading("x x x"), runParams(), nullptr, &flag), 0);
    EXPECT_EQ(polls.count(), 0);
  }
}

TEST(IsMatchMulti, AnInterruptEndsTheSearchWithItsStatus) {
  const Polls polls(2, -777);
  qsys_bool flag = 77;
  EXPECT_EQ(qoc_ocrDictionaryString_isMatchMulti(word("abc"), reading("x x x a b c"), runParams({.matchOption9 = 1}),
                                                 nullptr, &flag),
            -777);
  EXPECT_EQ(polls.count(), 3);
  EXPECT_EQ(flag, 0u);
}

TEST(IsMatchMulti, AnInterruptEndsALongComparisonOfTheWholeReadingOrOfAWindow) {
  const std::size_t size = 1'500;
  const auto longWord = word(std::string(size, 'a'));
  Owned<qoc_ocrDictionaryStringMulti> longReading;
  require(qoc_ocrDictionaryStringMulti_setStringT(longReading, std::string(size, 'b').c_str()));
  const auto params = runParams({.maxEdits = 1'200, .minStringLength = 1'500, .matchOption9 = 1});
  // The whole reading takes two polls, the first start another, and then come its windows.
  for (int64_t n = 0; n < 8; ++n) {
    SCOPED_TRACE(n);
    const Polls polls(n, -777);
    qsys_bool flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryString_isMatchMulti(longWord, longReading, params, nullptr, &flag), -777);
    EXPECT_EQ(polls.count(), n + 1);
    EXPECT_EQ(flag, 0u);
  }
}

TEST(IsMatch, AnswersForAPlainInputAsForAReadingOfOneCandidateEach) {
  const struct {
    const char *input;
    RunOptions options;
    qsys_bool isMatch;
  } cases[] = {{"abc", {}, 1},
               {"abx", {}, 0},
               {"abx", {.maxEdits = 1}, 1},
               {"zabcz", {.matchOption9 = 1}, 1},
               {"xyc", {.maxEdits = 1}, 0},
               {"xyc", {.maxEdits = 2}, 1}};
  for (const auto &[input, options, wanted] : cases) {
    SCOPED_TRACE(input);
    qsys_bool flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryString_isMatch(word("abc"), word(input), runParams(options), nullptr, &flag),
              QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
  }
}

}  // namespace
