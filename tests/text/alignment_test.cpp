// The alignments of a word with a plain input.

#include <gtest/gtest.h>
#include <qoc/result_set.h>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;
using Results = Owned<qoc_ocrDictionaryResultSet>;

template <class Text>
Results match(const Text &text, const Text &input, const qoc_ocrDictionaryRunParams *params) {
  Results results;
  EXPECT_EQ(qoc_ocrDictionaryString_match(word(text), word(input), params, nullptr, results), QSYS_STATUS_OK);
  EXPECT_EQ(results->isComputed, 1u);
  return results;
}
template <class Text = std::string_view>
Results match(const std::type_identity_t<Text> &text, const std::type_identity_t<Text> &input,
              const RunOptions &options = {}) {
  return match<Text>(text, input, runParams(options));
}
Results matchWide(std::u32string_view text, std::u32string_view input, const RunOptions &options = {}) {
  return match<std::u32string_view>(text, input, options);
}

/// All results, not only the best.
constexpr int32_t all = 0;

TEST(Match, WithoutEditsAnEqualInputIsOneResult) {
  const auto results = match("abc", "abc", {.returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(result.isComputed, 1u);
  EXPECT_EQ(result.mode, qoc_ocrDictionaryMode_lexicon);
  EXPECT_EQ(result.numEdits, 0);
  EXPECT_EQ(show(result.resultStringStatus), "primary primary primary");
  EXPECT_EQ(show(result.given), "a b c");
  EXPECT_EQ(show(result.givenSwap), "a b c");
  EXPECT_EQ(show(result.dictionaryString), "abc");
  EXPECT_TRUE(values(result.deleted).empty());
  EXPECT_EQ(result.numIgnoredPrefixCharacters, 0);
  EXPECT_EQ(result.numIgnoredSuffixCharacters, 0);
  EXPECT_EQ(result.resultStringLineStatus, qoc_ocrDictionaryPositionStatus_primary);
  EXPECT_EQ(show(result.statusWRTInputStringSwapChar), "primary primary primary");
}

TEST(Match, WithoutEditsOnlyWindowsOfTheWordsLengthThatMatchEverywhereAreResults) {
  EXPECT_TRUE(resultsOf(*match("abc", "abx")).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "ab")).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "abcd")).empty());

  const auto results = match("abc", "abcxabcab", {.returnBestOnly = all, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*results).size(), 2u);
  for (const qoc_ocrDictionaryResult &result : resultsOf(*results)) {
    EXPECT_EQ(result.numEdits, 0);
    EXPECT_EQ(show(result.resultStringStatus), "primary primary primary");
    EXPECT_EQ(show(result.given), "a b c x a b c a b");
    EXPECT_EQ(result.numIgnoredPrefixCharacters + result.numIgnoredSuffixCharacters, 6);
  }
  EXPECT_EQ(resultsOf(*results)[0].numIgnoredPrefixCharacters, 0);
  EXPECT_EQ(resultsOf(*results)[1].numIgnoredPrefixCharacters, 4);
}

TEST(Match, ASubstitutedCharacterIsOneEdit) {
  const auto results = match("abc", "axc", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary substituted primary");
  EXPECT_EQ(result.numEdits, 1);
  EXPECT_EQ(show(result.given), "a x c");
  EXPECT_EQ(show(result.dictionaryString), "abc");
  EXPECT_EQ(result.resultStringLineStatus, qoc_ocrDictionaryPositionStatus_substituted);
}

TEST(Match, AMissingCharacterIsDeletedAtTheInputIndexBeforeIt) {
  const auto results = match("abc", "ac", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(values(result.deleted), std::vector<int32_t>{0});
  EXPECT_EQ(show(result.resultStringStatus), "primary primary");
  EXPECT_EQ(result.numEdits, 1);
  EXPECT_EQ(show(result.given), "a c");
  EXPECT_EQ(show(result.dictionaryString), "abc");
}

TEST(Match, SeveralMissingCharactersAreDeletedAtTheInputIndicesBeforeThem) {
  const auto results = match("abcdef", "abdf", {.maxEdits = 2, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(values(resultsOf(*results)[0].deleted), (std::vector<int32_t>{1, 2}));
}

TEST(Match, AnExtraCharacterIsInserted) {
  const auto results = match("abc", "abxc", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary primary inserted primary");
  EXPECT_TRUE(values(result.deleted).empty());
  EXPECT_EQ(result.numEdits, 1);
  EXPECT_EQ(show(result.given), "a b x c");
  EXPECT_EQ(show(result.dictionaryString), "abc");
}

TEST(Match, EachKindOfEditCanBeForbidden) {
  EXPECT_TRUE(resultsOf(*match("abc", "axc", {.maxEdits = 1, .matchOption1 = 0})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "ac", {.maxEdits = 1, .matchOption2 = 0})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "abxc", {.maxEdits = 1, .matchOption4 = 0})).empty());
}

TEST(Match, MoreEditsThanAllowedAreNoResult) {
  EXPECT_TRUE(resultsOf(*match("abc", "axy", {.maxEdits = 1})).empty());
  EXPECT_EQ(resultsOf(*match("abc", "axy", {.maxEdits = 2})).size(), 1u);
}

TEST(Match, AWindowCountsTheIgnoredCharactersAroundIt) {
  const auto results = match("abc", "zabcz", {.returnBestOnly = all, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(result.numIgnoredPrefixCharacters, 1);
  EXPECT_EQ(result.numIgnoredSuffixCharacters, 1);
  EXPECT_EQ(show(result.resultStringStatus), "primary primary primary");
  EXPECT_EQ(show(result.given), "z a b c z");
  EXPECT_EQ(show(result.statusWRTInputStringSwapChar), "deletedIgnored primary primary primary deletedIgnored");
}

TEST(Match, AnEditedWindowIsShownAlone) {
  const auto results = match("abc", "zaxczz", {.maxEdits = 2, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].given), "a x c");
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary substituted primary");
  EXPECT_EQ(resultsOf(*results)[0].numIgnoredPrefixCharacters, 1);
  EXPECT_EQ(resultsOf(*results)[0].numIgnoredSuffixCharacters, 2);
}

TEST(Match, TheWholeInputIsOneResultAlthoughTheSearchMeetsItTwice) {
  EXPECT_EQ(resultsOf(*match("abc", "abc", {.returnBestOnly = all, .matchOption9 = 1})).size(), 1u);
}

TEST(Match, WindowsOfForbiddenLengthsAreSkippedWithoutEditsOnly) {
  EXPECT_TRUE(resultsOf(*match("abc", "zabcz", {.minStringLength = 4, .matchOption9 = 1})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "zabcz", {.maxStringLength = 2, .matchOption9 = 1})).empty());
  EXPECT_EQ(resultsOf(*match("abc", "abc", {.maxEdits = 1, .minStringLength = 4})).size(), 1u);
}

TEST(Match, WithoutParametersOnlyTheWholeInputMatchesExactly) {
  const qoc_ocrDictionaryRunParams *none = nullptr;
  EXPECT_EQ(resultsOf(*match<std::string_view>("abc", "abc", none)).size(), 1u);
  EXPECT_TRUE(resultsOf(*match<std::string_view>("abc", "abcz", none)).empty());
  EXPECT_TRUE(resultsOf(*match<std::string_view>("abc", "axc", none)).empty());
}

TEST(Match, AnExactComparisonGradesAPairOfDifferentCodesAsSecondary) {
  const auto results = matchWide(U"a\uF801c", U"axc", {.returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary secondary primary");
}

TEST(Match, AnEditedAlignmentGradesEveryMatchingPairAsPrimary) {
  const auto results = matchWide(U"a\uF801c", U"axc", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 2u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary primary primary");
  EXPECT_EQ(show(resultsOf(*results)[1].resultStringStatus), "primary secondary primary");
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
}

TEST(Match, AmongStepsThatTieSubstitutionWinsOverInsertionAndInsertionOverDeletion) {
  {
    const auto results = match("ab", "ba", {.maxEdits = 2, .returnBestOnly = all});
    ASSERT_EQ(resultsOf(*results).size(), 1u);
    EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "substituted substituted");
    EXPECT_EQ(resultsOf(*results)[0].numEdits, 2);
  }
  {
    const auto results = match("ab", "ba", {.maxEdits = 2, .matchOption1 = 0, .returnBestOnly = all});
    ASSERT_EQ(resultsOf(*results).size(), 1u);
    const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
    EXPECT_EQ(show(result.resultStringStatus), "primary inserted");
    EXPECT_TRUE(values(result.deleted).empty()) << "a leading missing character leaves no index";
    EXPECT_EQ(show(result.given), "b a");
    EXPECT_EQ(show(result.dictionaryString), "ab");
    EXPECT_EQ(result.numEdits, 2);
  }
  {
    const auto results =
        match("ab", "ba", {.maxEdits = 2, .matchOption1 = 0, .matchOption4 = 0, .returnBestOnly = all});
    ASSERT_EQ(resultsOf(*results).size(), 1u);
    const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
    EXPECT_EQ(show(result.resultStringStatus), "inserted primary");
    EXPECT_EQ(values(result.deleted), std::vector<int32_t>{1});
    EXPECT_EQ(show(result.given), "a") << "a leading extra character is not in given";
    EXPECT_EQ(show(result.dictionaryString), "aab") << "a leading extra character takes from the word";
    EXPECT_EQ(result.numEdits, 2);
  }
}

TEST(Match, ALeadingExtraCharacterPassesEvenWhereItsOptionIsOff) {
  const auto results = match("abc", "xabc", {.maxEdits = 2, .matchOption4 = 0, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "inserted primary primary primary");
  EXPECT_EQ(show(result.given), "a b c");
  EXPECT_EQ(show(result.dictionaryString), "aabc");
  EXPECT_EQ(result.numEdits, 1);
}

TEST(Match, ALeadingMissingCharacterPassesEvenWhereItsOptionIsOff) {
  const auto results = match("xabc", "abc", {.maxEdits = 2, .matchOption2 = 0, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary primary primary");
  EXPECT_TRUE(values(result.deleted).empty());
  EXPECT_EQ(show(result.dictionaryString), "xabc");
  EXPECT_EQ(result.numEdits, 1);
}

TEST(Match, ExtraCharactersBeyondTheWordTakeRepeatsOfItsFirstCharacter) {
  // Three leading extra characters before a word of two: the third takes the word's first character again.
  const auto results = match("ab", "xyzab", {.maxEdits = 3, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "inserted inserted inserted primary primary");
  EXPECT_EQ(show(result.dictionaryString), "abaab");
}

TEST(Match, AStartWhoseFirstEndIsNegativeHasNoWindows) {
  // With two edits and a smallest length of 1 the ends of start 0 begin at -1, which ends them at once.
  const auto skipped = match("abc", "abczzzz", {.maxEdits = 2, .minStringLength = 1, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*skipped).size(), 1u);
  EXPECT_EQ(resultsOf(*skipped)[0].numEdits, 1);
  EXPECT_EQ(resultsOf(*skipped)[0].numIgnoredPrefixCharacters, 1);

  const auto found = match("abc", "abczzzz", {.maxEdits = 2, .minStringLength = 2, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*found).size(), 1u);
  EXPECT_EQ(resultsOf(*found)[0].numEdits, 0);
  EXPECT_EQ(resultsOf(*found)[0].numIgnoredPrefixCharacters, 0);
  EXPECT_EQ(resultsOf(*found)[0].numIgnoredSuffixCharacters, 4);
}

TEST(Match, OldResultsAreGoneAlsoWhenNothingMatches) {
  auto results = match("abc", "abc");
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(qoc_ocrDictionaryString_match(word("abc"), word("xyz"), runParams(), nullptr, results), QSYS_STATUS_OK);
  EXPECT_EQ(results->isComputed, 1u);
  EXPECT_TRUE(resultsOf(*results).empty());
}

TEST(Match, TheBestResultIsFirstAndMayBeTheOnlyOne) {
  const auto everything = match("abc", "abcab", {.maxEdits = 1, .returnBestOnly = all, .matchOption9 = 1});
  ASSERT_GT(resultsOf(*everything).size(), 1u);
  EXPECT_EQ(resultsOf(*everything)[0].numEdits, 0);
  EXPECT_EQ(resultsOf(*everything).back().numEdits, 1);
  const auto best = match("abc", "abcab", {.maxEdits = 1, .returnBestOnly = 1, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*best).size(), 1u);
  EXPECT_EQ(resultsOf(*best)[0].numEdits, 0);
}

TEST(Match, PollsOncePerStartOfTheWindowSearchAndNotElse) {
  {
    const Polls polls;
    match("abc", "xxxxxxx", {.maxEdits = 1, .matchOption9 = 1});
    EXPECT_EQ(polls.count(), 7);
  }
  {
    const Polls polls;
    match("abc", "xxxxxxx", {.maxEdits = 1});
    EXPECT_EQ(polls.count(), 0);
  }
}

TEST(Match, AnInterruptDuringALongAlignmentEndsItWithItsStatusAndNoLaterWork) {
  auto results = match("abc", "abc");
  const Polls polls(3, -777);
  EXPECT_EQ(qoc_ocrDictionaryString_match(word("abc"), word("abcabcabcabc"), runParams({.matchOption9 = 1}), nullptr,
                                          results),
            -777);
  EXPECT_EQ(polls.count(), 4);
  EXPECT_TRUE(resultsOf(*results).empty());
}

TEST(Match, LeavesNothingBehindWhereverMemoryRunsOut) {
  LibraryAllocator memory;
  for (int64_t n = 0;; ++n) {
    SCOPED_TRACE(n);
    qsys_status status = QSYS_STATUS_OK;
    {
      const auto text = word("abc"), input = word("zaxcz");
      const auto params = runParams({.maxEdits = 1, .returnBestOnly = all, .matchOption9 = 1});
      Results results;
      memory.failFrom(n);
      status = qoc_ocrDictionaryString_match(text, input, params, nullptr, results);
      memory.failFrom(-1);
    }
    EXPECT_EQ(memory.numLive(), 0);
    if (status >= 0) {
      EXPECT_GT(n, 0);
      break;
    }
    ASSERT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
    ASSERT_LT(n, 100'000);
  }
}

}  // namespace
