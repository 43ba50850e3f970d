// The alignments of a word with a reading.

#include <gtest/gtest.h>
#include <qoc/result_set.h>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;
using Results = Owned<qoc_ocrDictionaryResultSet>;

Results match(const qoc_ocrDictionaryString *string, const char *input, const qoc_ocrDictionaryRunParams *params) {
  Results results;
  EXPECT_EQ(qoc_ocrDictionaryString_matchMulti(string, reading(input), params, nullptr, results), QSYS_STATUS_OK);
  EXPECT_EQ(results->isComputed, 1u);
  return results;
}
Results match(std::string_view text, const char *input, const RunOptions &options = {}) {
  return match(word(text), input, runParams(options));
}
Results match(std::u32string_view text, const char *input, const RunOptions &options = {}) {
  return match(word(text), input, runParams(options));
}

/// All results, not only the best.
constexpr int32_t all = 0;

TEST(MatchMulti, AnExactReadingIsOneResult) {
  const auto results = match("abc", "a5 b c|x", {.returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(result.isComputed, 1u);
  EXPECT_EQ(result.mode, qoc_ocrDictionaryMode_lexicon);
  EXPECT_EQ(result.numEdits, 0);
  EXPECT_EQ(show(result.resultStringStatus), "primary primary primary");
  EXPECT_EQ(show(result.given), "a5 b c|x");
  EXPECT_EQ(show(result.givenSwap), "a5 b c|x");
  EXPECT_EQ(show(result.dictionaryString), "abc");
  EXPECT_TRUE(values(result.deleted).empty());
}

TEST(MatchMulti, ASecondCandidateIsSecondaryOnTheExactPath) {
  const auto results = match("abc", "a x|b c");
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary secondary primary");
}

TEST(MatchMulti, AWildcardIsSecondaryOnTheExactPath) {
  const auto results = match(U"a\uF801c", "a x c");
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary secondary primary");
}

TEST(MatchMulti, OneSubstitutedPositionIsOneResult) {
  const auto results = match("abc", "a x c", {.maxEdits = 1, .matchOption1 = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary substituted primary");
  EXPECT_EQ(result.numEdits, 1);
  EXPECT_EQ(show(result.given), "a x c");
  EXPECT_EQ(show(result.dictionaryString), "abc");
  EXPECT_TRUE(values(result.deleted).empty());
}

TEST(MatchMulti, OneMissingPositionIsInserted) {
  const auto results = match("abc", "a c", {.maxEdits = 1, .matchOption2 = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary inserted primary");
  EXPECT_EQ(result.numEdits, 1);
  EXPECT_TRUE(values(result.deleted).empty());
  EXPECT_EQ(show(result.given), "a c");
  EXPECT_EQ(show(result.dictionaryString), "abc");
}

TEST(MatchMulti, OneExtraPositionIsDeleted) {
  const auto results = match("abc", "a b x c", {.maxEdits = 1, .matchOption4 = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary primary primary");
  EXPECT_EQ(values(result.deleted), std::vector<int32_t>{2});
  EXPECT_EQ(result.numEdits, 1);
  EXPECT_EQ(show(result.statusWRTInputStringSwapChar), "primary primary deleted primary");
}

TEST(MatchMulti, EachKindOfTheOneEditCanBeForbidden) {
  EXPECT_TRUE(resultsOf(*match("abc", "a x c", {.maxEdits = 1, .matchOption1 = 0})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "a c", {.maxEdits = 1, .matchOption2 = 0})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "a b x c", {.maxEdits = 1, .matchOption4 = 0})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "x a b c", {.maxEdits = 1, .matchOption4 = 0})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "b c", {.maxEdits = 1, .matchOption2 = 0})).empty());
}

TEST(MatchMulti, TheOneEditMayStandAtEachPlace) {
  const struct {
    const char *input, *statuses;
    std::vector<int32_t> deleted;
  } cases[] = {
      {"x b c", "substituted primary primary", {}}, {"a b x", "primary primary substituted", {}},
      {"b c", "inserted primary primary", {}},      {"a b", "primary primary inserted", {}},
      {"x a b c", "primary primary primary", {0}},  {"a b c x", "primary primary primary", {3}},
      {"a x b c", "primary primary primary", {1}},
  };
  for (const auto &[input, statuses, deleted] : cases) {
    SCOPED_TRACE(input);
    const auto results = match("abc", input, {.maxEdits = 1, .returnBestOnly = all});
    ASSERT_EQ(resultsOf(*results).size(), 1u);
    EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), statuses);
    EXPECT_EQ(values(resultsOf(*results)[0].deleted), deleted);
    EXPECT_EQ(resultsOf(*results)[0].numEdits, 1);
  }
}

TEST(MatchMulti, WithOneEditTheOtherPositionsAreGradedByTheirCandidates) {
  const auto results = match("abcd", "a x|b q c|d", {.maxEdits = 1});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary secondary substituted secondary");
}

TEST(MatchMulti, InARunOfEqualCharactersTheFrontTakesAllItCan) {
  const auto extra = match("aa", "a a a", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*extra).size(), 1u);
  EXPECT_EQ(show(resultsOf(*extra)[0].resultStringStatus), "primary primary");
  EXPECT_EQ(values(resultsOf(*extra)[0].deleted), std::vector<int32_t>{2});

  const auto missing = match("aaa", "a a", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*missing).size(), 1u);
  EXPECT_EQ(show(resultsOf(*missing)[0].resultStringStatus), "primary primary inserted");
}

TEST(MatchMulti, AnExactReadingHasAnEditedResultOfDoubledStatusesWhereAllAreWanted) {
  // Deliberate: where every position matches, the statuses of the back are not cut off.
  const auto results = match("ab", "a b", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 2u);
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary primary");
  EXPECT_EQ(resultsOf(*results)[1].numEdits, 1);
  EXPECT_EQ(show(resultsOf(*results)[1].resultStringStatus), "primary primary substituted primary primary");
}

TEST(MatchMulti, WithTheBestOnlyAnExactWindowYieldsNoEditedResults) {
  const auto results = match("ab", "a b", {.maxEdits = 1, .returnBestOnly = 1});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
}

TEST(MatchMulti, OnceAnExactAlignmentExistsTheRemainingWindowsAreAlignedExactlyOnly) {
  // The words allocated for are a measure of the work: each edited alignment makes a result.
  const auto numAllocations = [](const char *input, int32_t maxEdits) {
    LibraryAllocator memory;
    const auto text = word("aab");
    const auto lines = reading(input);
    const auto params = runParams({.maxEdits = maxEdits, .returnBestOnly = 1, .matchOption9 = 1});
    Results results;
    const int64_t before = memory.numAllocations();
    EXPECT_EQ(qoc_ocrDictionaryString_matchMulti(text, lines, params, nullptr, results), QSYS_STATUS_OK);
    EXPECT_EQ(resultsOf(*results).size(), 1u);
    EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
    return memory.numAllocations() - before;
  };
  // Behind the exact word stand ten windows that one edit would accept; the one before it costs alike in both inputs.
  const int64_t withNearWindows = numAllocations("a a b a x b a x b a x b a x b a x b", 1);
  const int64_t withoutNearWindows = numAllocations("a a b z z z z z z z z z z z z z z z", 1);
  EXPECT_LE(withNearWindows, withoutNearWindows + 10);
}

TEST(MatchMulti, TheCallersParametersAreNeverChanged) {
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 1, .matchOption9 = 1});
  match(word("abc"), "a b c a x c", params);
  EXPECT_EQ(params->maxEdits, 1);
}

TEST(MatchMulti, WithoutEditsOnlyExactWindowsOfAllowedLengthsAreResults) {
  EXPECT_TRUE(resultsOf(*match("abc", "a x c", {.maxEdits = 0})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "a b c", {.minStringLength = 4})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "a b c", {.maxStringLength = 2})).empty());
  EXPECT_TRUE(resultsOf(*match("abc", "z a b c z", {.minStringLength = 4, .matchOption9 = 1})).empty());
  EXPECT_EQ(
      resultsOf(*match("abc", "z a b c z", {.minStringLength = 3, .maxStringLength = 3, .matchOption9 = 1})).size(),
      1u);
}

TEST(MatchMulti, AWindowCountsTheIgnoredPositionsAroundIt) {
  const auto results = match("abc", "z a b c z z", {.returnBestOnly = all, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(resultsOf(*results)[0].numIgnoredPrefixCharacters, 1);
  EXPECT_EQ(resultsOf(*results)[0].numIgnoredSuffixCharacters, 2);
  EXPECT_EQ(show(resultsOf(*results)[0].given), "z a b c z z");
}

TEST(MatchMulti, AnExtraPositionInAWindowIsDeletedAtItsIndexInTheReading) {
  const auto results = match("abcd", "z z a b x c d z", {.maxEdits = 1, .matchOption1 = 0, .matchOption9 = 1});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(values(resultsOf(*results)[0].deleted), std::vector<int32_t>{4});
  EXPECT_EQ(resultsOf(*results)[0].numIgnoredPrefixCharacters, 2);
  EXPECT_EQ(resultsOf(*results)[0].numIgnoredSuffixCharacters, 1);
}

TEST(MatchMulti, WithTwoEditsAMissingCharacterIsDeletedAsInThePlainAlignment) {
  const auto results = match("abc", "a5|q c", {.maxEdits = 2, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary primary");
  EXPECT_EQ(values(result.deleted), std::vector<int32_t>{0});
  EXPECT_EQ(show(result.given), "a5|q c");
  EXPECT_EQ(show(result.dictionaryString), "abc");
  EXPECT_EQ(result.numEdits, 1);
}

TEST(MatchMulti, WithTwoEditsAnExtraPositionIsInsertedAsInThePlainAlignment) {
  const auto results = match("abc", "a b x|y c", {.maxEdits = 2, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.resultStringStatus), "primary primary inserted primary");
  EXPECT_TRUE(values(result.deleted).empty());
  EXPECT_EQ(show(result.given), "a b x|y c");
}

TEST(MatchMulti, WithTwoEditsAMatchingPositionIsPrimaryWhicheverCandidateMatches) {
  const auto results = match("abc", "a x|b q", {.maxEdits = 2, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary primary substituted");
}

TEST(MatchMulti, WithTwoEditsALeadingExtraPositionPassesEvenWhereItsOptionIsOff) {
  const auto results = match("abc", "x a b c", {.maxEdits = 2, .matchOption4 = 0, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "inserted primary primary primary");
  EXPECT_EQ(show(resultsOf(*results)[0].given), "a b c");
  EXPECT_EQ(show(resultsOf(*results)[0].dictionaryString), "aabc");
}

TEST(MatchMulti, WithoutParametersOnlyTheWholeReadingMatchesExactly) {
  const qoc_ocrDictionaryRunParams *none = nullptr;
  EXPECT_EQ(resultsOf(*match(word("abc"), "a x|b c", none)).size(), 1u);
  EXPECT_TRUE(resultsOf(*match(word("abc"), "a b c z", none)).empty());
  EXPECT_TRUE(resultsOf(*match(word("abc"), "a x c", none)).empty());
}

TEST(MatchMulti, OldResultsAreGoneAlsoWhenNothingMatches) {
  auto results = match("abc", "a b c");
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(qoc_ocrDictionaryString_matchMulti(word("abc"), reading("x"), runParams(), nullptr, results),
            QSYS_STATUS_OK);
  EXPECT_EQ(results->isComputed, 1u);
  EXPECT_TRUE(resultsOf(*results).empty());
}

TEST(MatchMulti, APositionWithoutCandidatesMatchesNothing) {
  EXPECT_TRUE(resultsOf(*match("abc", "a ~ c")).empty());
  const auto results = match("abc", "a ~ c", {.maxEdits = 1, .returnBestOnly = all});
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(show(resultsOf(*results)[0].resultStringStatus), "primary substituted primary");
}

TEST(MatchMulti, PollsOncePerStartOfTheWindowSearchAndNotElse) {
  {
    const Polls polls;
    match("abc", "x x x x x x", {.maxEdits = 1, .matchOption9 = 1});
    EXPECT_EQ(polls.count(), 6);
  }
  {
    const Polls polls;
    match("abc", "x x x x x x", {.maxEdits = 2});
    EXPECT_EQ(polls.count(), 0);
  }
}

TEST(MatchMulti, AnInterruptDuringALongAlignmentEndsItWithItsStatusAndNoLaterWork) {
  auto results = match("abc", "a b c");
  const Polls polls(2, -777);
  EXPECT_EQ(qoc_ocrDictionaryString_matchMulti(word("abc"), reading("a b c a b c a b c"),
                                               runParams({.maxEdits = 1, .matchOption9 = 1}), nullptr, results),
            -777);
  EXPECT_EQ(polls.count(), 3);
  EXPECT_TRUE(resultsOf(*results).empty());
}

TEST(MatchMulti, LeavesNothingBehindWhereverMemoryRunsOut) {
  LibraryAllocator memory;
  for (const int32_t maxEdits : {1, 2}) {
    for (int64_t n = 0;; ++n) {
      SCOPED_TRACE(testing::Message() << maxEdits << " edits, allocation " << n);
      qsys_status status = QSYS_STATUS_OK;
      {
        const auto text = word("abc");
        const auto input = reading("a x|q c z");
        const auto params = runParams({.maxEdits = maxEdits, .returnBestOnly = all, .matchOption9 = 1});
        Results results;
        memory.failFrom(n);
        status = qoc_ocrDictionaryString_matchMulti(text, input, params, nullptr, results);
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
}

/// More different characters beyond the small codes than the table of rows has room for at first.
TEST(MatchMulti, ManyDifferentCharactersMatchAtTheirPlaces) {
  std::u32string text;
  for (Char32 i = 0; i < 300; ++i) {
    text += i % 3 == 0 ? U'a' : static_cast<char32_t>(0x4E00 + i * 7);
  }
  std::u32string spaced;
  for (const char32_t c : text) {
    spaced += spaced.empty() ? std::u32string{c} : std::u32string{U' ', c};
  }
  Owned<qoc_ocrDictionaryResultSet> results;
  ASSERT_EQ(qoc_ocrDictionaryString_matchMulti(word(text), reading(spaced), nullptr, nullptr, results), QSYS_STATUS_OK);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);

  text[200] = U'\u00E9';
  ASSERT_EQ(qoc_ocrDictionaryString_matchMulti(word(text), reading(spaced), nullptr, nullptr, results), QSYS_STATUS_OK);
  EXPECT_TRUE(resultsOf(*results).empty());
}

/// The table of edits is of the size that is made row by row, within a band and without.
TEST(MatchMulti, LongTextsAreAlignedWithAnyNumberOfEdits) {
  std::string text, spaced;
  for (int i = 0; i < 1000; ++i) {
    text += static_cast<char>('a' + i * i % 26);
    spaced += (i == 0 ? "" : " ") + std::string(1, i % 250 == 7 ? '!' : text.back());
  }
  for (const int32_t maxEdits : {4, 40, 400, 4000}) {
    Owned<qoc_ocrDictionaryResultSet> results;
    ASSERT_EQ(qoc_ocrDictionaryString_matchMulti(word(text), reading(spaced), runParams({.maxEdits = maxEdits}),
                                                 nullptr, results),
              QSYS_STATUS_OK);
    ASSERT_EQ(resultsOf(*results).size(), 1u) << maxEdits;
    EXPECT_EQ(resultsOf(*results)[0].numEdits, 4) << maxEdits;
  }
}

/// First more cells than a vector may have, then so many that 32 bits hold only what is left over.
TEST(MatchMulti, With32BitAddressesTextsWhoseTableIsLargerAreRefused) {
  if (sizeof(void *) > 4) {
    GTEST_SKIP() << "every number of cells is an address";
  }
  for (const std::size_t length : {40'000u, 65'600u}) {
    std::string spaced = "a";
    for (std::size_t i = 1; i < length; ++i) {
      spaced += " a";
    }
    Results results;
    EXPECT_EQ(
        qoc_ocrDictionaryString_matchMulti(word(std::string(length, 'b')), reading(spaced),
                                           runParams({.maxEdits = static_cast<int32_t>(length)}), nullptr, results),
        QSYS_STATUS_OUT_OF_MEMORY)
        << length;
  }
}

/// So far in front that the rest of the reading is no copy that results share.
TEST(MatchMulti, ExtraPositionsFarInFrontAreNotShown) {
  Owned<qoc_ocrDictionaryResultSet> results;
  ASSERT_EQ(qoc_ocrDictionaryString_matchMulti(word("abc"), reading("1 2 3 4 5 6 7 8 9 1 2 3 4 a b c"),
                                               runParams({.maxEdits = 13}), nullptr, results),
            QSYS_STATUS_OK);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 13);
  EXPECT_EQ(show(resultsOf(*results)[0].given), "a b c");
}

}  // namespace
