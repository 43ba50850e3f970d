// Regular expressions as dictionary entries: access, and how readings match them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/handlers.hpp"
#include "swap/swaps.hpp"

namespace {

using namespace qoc::test;
using testing::ElementsAre;
using testing::IsEmpty;

using Expression = Owned<qoc_ocrDictionaryRegularExpression>;
using Reading = Owned<qoc_ocrDictionaryStringMulti>;

Expression expression(std::string_view source) {
  return Expression([&](qoc_ocrDictionaryRegularExpression *made) {
    return qoc_ocrDictionaryRegularExpression_constructString(made, stdString(source));
  });
}

/// A reading of single candidates, one for each character.
Reading plain(std::string_view text) {
  const auto string = word(text);
  return Reading(
      [&](qoc_ocrDictionaryStringMulti *multi) { return qoc_ocrDictionaryStringMulti_constructString(multi, string); });
}

bool fits(const Expression &expression, const Reading &reading, const qoc_ocrDictionaryRunParams *params = nullptr,
          const qoc_swapCharSet *set = nullptr) {
  qsys_bool isMatch = 2;
  require(qoc_ocrDictionaryRegularExpression_isMatchMulti(expression, reading, params, set, &isMatch));
  return isMatch == 1;
}

Owned<qoc_ocrDictionaryResultSet> match(const Expression &expression, const Reading &reading,
                                        const qoc_ocrDictionaryRunParams *params = nullptr,
                                        const qoc_swapCharSet *set = nullptr) {
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionaryRegularExpression_matchMulti(expression, reading, params, set, results));
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

/// The results in lines; that the yes or no form says the same is checked on the way.
std::vector<std::string> matches(const Expression &expression, const Reading &reading,
                                 const qoc_ocrDictionaryRunParams *params = nullptr,
                                 const qoc_swapCharSet *set = nullptr) {
  const auto results = match(expression, reading, params, set);
  EXPECT_EQ(results->isComputed, 1u);
  std::vector<std::string> out;
  for (const qoc_ocrDictionaryResult &result : resultsOf(*results)) {
    out.push_back(describe(result));
  }
  EXPECT_EQ(fits(expression, reading, params, set), !out.empty());
  return out;
}

std::string sourceOf(const Expression &expression) {
  Owned<qstd_string> source;
  require(qoc_ocrDictionaryRegularExpression_getString(expression, source));
  return show(*source);
}

TEST(RegularExpressionAccess, IsEmptyAfterConstructionAndNotAfterASourceIsSet) {
  Expression made;
  qsys_bool isEmpty = 2;
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_getIsEmpty(made, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);

  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_setString(made, stdString("a")), QSYS_STATUS_OK);

  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_getIsEmpty(made, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 0u);
  EXPECT_EQ(sourceOf(made), "a");
}

TEST(RegularExpressionAccess, StaysEmptyWhenASourceIsRefused) {
  Expression made;
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_setString(made, stdString("(")), QOC_STATUS_EXPRESSION_PARENTHESIS);
  qsys_bool isEmpty = 2;
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_getIsEmpty(made, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);
}

TEST(RegularExpressionAccess, TakesWideSources) {
  Expression made([](qoc_ocrDictionaryRegularExpression *object) {
    return qoc_ocrDictionaryRegularExpression_constructStringT(object, L"\u20AC");
  });
  EXPECT_EQ(sourceOf(made), "\xE2\x82\xAC");
  EXPECT_TRUE(fits(made, reading(U"\u20AC")));
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_setStringT(made, L"\\d"), QSYS_STATUS_OK);
  EXPECT_EQ(sourceOf(made), "\\d");
}

TEST(RegularExpressionAccess, TranslatesTheStatusesOfRefusedSources) {
  const struct {
    std::string source;
    const wchar_t *wide;
    uint32_t status;
  } cases[] = {{"(a", L"(a", 0x800013B2},        {"(a{1000}){11}", L"(a{1000}){11}", 0x800013B8},
               {"a{", L"a{", 0x800013B1},        {"[a", L"[a", 0x800013B3},
               {"[b-a]", L"[b-a]", 0x800013B4},  {"[]", L"[]", 0x800013B4},
               {"\\q", L"\\q", 0x800013B5},      {"*", L"*", 0x800013B6},
               {"a{2,1}", L"a{2,1}", 0x800013B7}};
  for (const auto &one : cases) {
    const auto expected = static_cast<qsys_status>(one.status);
    auto made = expression("old");
    EXPECT_EQ(qoc_ocrDictionaryRegularExpression_setString(made, stdString(one.source)), expected) << one.source;
    EXPECT_EQ(qoc_ocrDictionaryRegularExpression_setStringT(made, one.wide), expected) << one.source;
    EXPECT_EQ(sourceOf(made), "old");
    qoc_ocrDictionaryRegularExpression storage;
    EXPECT_EQ(qoc_ocrDictionaryRegularExpression_constructString(&storage, stdString(one.source)), expected);
    EXPECT_EQ(qoc_ocrDictionaryRegularExpression_constructStringT(&storage, one.wide), expected);
  }
}

TEST(RegularExpressionAccess, PassesOtherStatusesOn) {
  Expression made;
  std::string source = "a";
  for (int i = 0; i < 900; ++i) {
    source = "(|" + source + ")*";
  }
  Polls polls(0, -77);
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_setString(made, stdString("(" + source + "){1000}")), -77);
}

TEST(RegularExpressionAccess, CopiesCompareEqualUntilOneChanges) {
  auto made = expression("ab");
  Expression copy(*made);
  qsys_bool isEqual = 2;
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_compareEqual(made, copy, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
  ASSERT_EQ(qoc_ocrDictionaryRegularExpression_setString(copy, stdString("ac")), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_compareEqual(made, copy, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
  EXPECT_EQ(sourceOf(made), "ab");
}

TEST(RegularExpressionMatch, WithoutParamsOnlyTheWholeReadingAsItIsMatches) {
  EXPECT_THAT(matches(expression("a[bc]"), reading("a b")), ElementsAre("0 [a b] 0: primary primary"));
  EXPECT_THAT(matches(expression("a[bc]"), reading("a")), IsEmpty());
  EXPECT_THAT(matches(expression("a[bc]"), reading("x a b")), IsEmpty());
}

TEST(RegularExpressionMatch, WithNoEditsOnlyExactWholeReadingsMatch) {
  const auto params = runParams({.maxEdits = 0, .returnBestOnly = 0});
  EXPECT_THAT(matches(expression("ab"), reading("a b"), params), ElementsAre("0 [a b] 0: primary primary"));
  EXPECT_THAT(matches(expression("ab"), reading("a x"), params), IsEmpty());
  EXPECT_THAT(matches(expression("ab"), reading("x a b"), params), IsEmpty());
}

TEST(RegularExpressionMatch, WithNoEditsSpansMatchWhenTheyAreAskedFor) {
  const auto params = runParams({.maxEdits = 0, .returnBestOnly = 0, .matchOption9 = 1});
  EXPECT_THAT(matches(expression("ab"), reading("x a b a b"), params),
              ElementsAre("1 [a b] 2: primary primary", "3 [a b] 0: primary primary"));
}

TEST(RegularExpressionMatch, AReadingOneShortOfTheExpressionMatchesWithAnInsertion) {
  const auto results = match(expression("A[0-9]{3}"), reading("A 1 3"),
                             runParams({.maxEdits = 1, .matchOption1 = 0, .matchOption4 = 0, .returnBestOnly = 0}));
  ASSERT_EQ(resultsOf(*results).size(), 3u);
  EXPECT_EQ(describe(resultsOf(*results)[0]), "0 [A {F801} 1 3] 0: primary inserted primary primary");
  EXPECT_EQ(describe(resultsOf(*results)[1]), "0 [A 1 {F801} 3] 0: primary primary inserted primary");
  EXPECT_EQ(describe(resultsOf(*results)[2]), "0 [A 1 3 {F801}] 0: primary primary primary inserted");
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 1);
}

TEST(RegularExpressionMatch, InsertionsNeedTheirOption) {
  EXPECT_THAT(matches(expression("abc"), reading("a c"), runParams({.maxEdits = 1})),
              ElementsAre("0 [a {F801} c] 0: primary inserted primary"));
  EXPECT_THAT(matches(expression("abc"), reading("a c"), runParams({.maxEdits = 1, .matchOption2 = 0})), IsEmpty());
}

TEST(RegularExpressionMatch, ACharacterTooManyIsDeleted) {
  EXPECT_THAT(matches(expression("abc"), reading("a b x c"), runParams({.maxEdits = 1})),
              ElementsAre("0 [a b c] 0: primary primary primary -2"));
  EXPECT_THAT(matches(expression("abc"), reading("a b x c"), runParams({.maxEdits = 1, .matchOption4 = 0})), IsEmpty());
}

TEST(RegularExpressionMatch, ADeletedIndexCountsFromTheReadingsStart) {
  EXPECT_THAT(matches(expression("abc"), reading("y a b x c"),
                      runParams({.maxEdits = 1, .matchOption1 = 0, .matchOption2 = 0, .matchOption9 = 1})),
              ElementsAre("1 [a b c] 0: primary primary primary -3"));
}

TEST(RegularExpressionMatch, AWrongCharacterIsSubstituted) {
  EXPECT_THAT(matches(expression("abc"), reading("a x c"), runParams({.maxEdits = 1})),
              ElementsAre("0 [a {F801} c] 0: primary substituted primary"));
  EXPECT_THAT(matches(expression("abc"), reading("a x c"), runParams({.maxEdits = 1, .matchOption1 = 0})), IsEmpty());
}

TEST(RegularExpressionMatch, OneEditIsTheMostHoweverManyAreAllowed) {
  EXPECT_THAT(matches(expression("abc"), reading("a x y"), runParams({.maxEdits = 3})), IsEmpty());
  EXPECT_THAT(matches(expression("abc"), reading("a b y"), runParams({.maxEdits = 3})),
              ElementsAre("0 [a b {F801}] 0: primary primary substituted"));
}

TEST(RegularExpressionMatch, TriesInsertionsThenDeletionsThenSubstitutions) {
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  // Ranked by deletions last; among the others the order of the search stays.
  EXPECT_THAT(matches(expression("ab|abcd|abx"), reading("a b c"), params),
              ElementsAre("0 [a b c {F801}] 0: primary primary primary inserted",
                          "0 [a b {F801}] 0: primary primary substituted", "0 [a b] 0: primary primary -2"));
}

TEST(RegularExpressionMatch, OtherCandidatesAreSecondary) {
  EXPECT_THAT(matches(expression("a[bc]"), reading("a x|c|b")), ElementsAre("0 [a c|b] 0: primary secondary"));
}

TEST(RegularExpressionMatch, AMatchThroughASwapEquivalentIsSecondary) {
  const auto set = setOf({U"0O", U"1l"});
  EXPECT_THAT(matches(expression("A[0-9]{2}"), reading("A O 1"), nullptr, set),
              ElementsAre("0 [A 0 1] 0: primary secondary primary"));
  EXPECT_THAT(matches(expression("A[0-9]{2}"), reading("A x|O 1"), nullptr, set),
              ElementsAre("0 [A 0 1] 0: primary secondary primary"));
  EXPECT_THAT(matches(expression("A[0-9]{2}"), reading("A O 1")), IsEmpty());
}

TEST(RegularExpressionMatch, TellsEveryMatchedTokenOfAPosition) {
  EXPECT_THAT(matches(expression("[0-9O]"), reading("O|x|1"), nullptr, setOf({U"0O", U"1l"})),
              ElementsAre("0 [O|0|1] 0: primary"));
}

TEST(RegularExpressionMatch, AWildcardCandidateIsAnyCharacter) {
  EXPECT_THAT(matches(expression("a[0-9]"), reading(U"a \uF801")), ElementsAre("0 [a {F801}] 0: primary primary"));
}

TEST(RegularExpressionMatch, APositionWithoutCandidatesMatchesNothing) {
  EXPECT_THAT(matches(expression("a."), reading("a ~")), IsEmpty());
  EXPECT_THAT(matches(expression("a."), reading("a ~"), runParams({.maxEdits = 1})),
              ElementsAre("0 [a {F801}] 0: primary substituted"));
  EXPECT_THAT(matches(expression("ab"), reading("a ~ b"), runParams({.maxEdits = 1})),
              ElementsAre("0 [a b] 0: primary primary -1"));
}

TEST(RegularExpressionMatch, TheEmptyExpressionMatchesTheEmptyReading) {
  EXPECT_THAT(matches(Expression(), reading("")), ElementsAre("0 [] 0: "));
  EXPECT_THAT(matches(Expression(), reading("a")), IsEmpty());
  // The default least length is that of one character.
  EXPECT_THAT(matches(Expression(), reading(""), runParams({})), IsEmpty());
  EXPECT_THAT(matches(Expression(), reading("a"), runParams({.maxEdits = 1, .minStringLength = 0})),
              ElementsAre("0 [] 0:  -0"));
}

TEST(RegularExpressionMatch, LengthsAreThoseOfTheMatchedText) {
  const auto limits = [](int32_t least, int32_t most) {
    return runParams({.maxEdits = 1, .minStringLength = least, .maxStringLength = most, .returnBestOnly = 0});
  };
  const auto text = expression("a{1,5}");
  EXPECT_EQ(matches(text, reading("a a a"), limits(3, 3)).size(), 4u);  // As it is, and three substitutions.
  EXPECT_EQ(matches(text, reading("a a a"), limits(4, 9)).size(), 4u);  // Four insertions.
  EXPECT_EQ(matches(text, reading("a a a"), limits(1, 2)).size(), 3u);  // Three deletions.
  EXPECT_EQ(matches(text, reading("a a a"), limits(1, 9)).size(), 11u);
  EXPECT_THAT(matches(text, reading("a a a"), limits(5, 9)), IsEmpty());
}

TEST(RegularExpressionMatch, ReadingsRememberThemselves) {
  const auto results =
      match(expression("ab"), reading("x5 a7 b|c9"), runParams({.maxEdits = 1, .matchOption2 = 0, .matchOption9 = 1}));
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  const qoc_ocrDictionaryResult &result = resultsOf(*results)[0];
  EXPECT_EQ(show(result.given), "x5 a7 b|c9");
  EXPECT_EQ(show(result.givenSwap), "x5 a7 b|c9");
  EXPECT_EQ(result.mode, qoc_ocrDictionaryMode_regularExpression);
  EXPECT_EQ(show(result.dictionaryString), "");
}

TEST(RegularExpressionSpans, AllAreTriedUntilAnExactResultIsEnough) {
  const auto text = reading("a b x a b");
  const auto all = runParams(
      {.maxEdits = 1, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0, .returnBestOnly = 0, .matchOption9 = 1});
  EXPECT_THAT(matches(expression("ab"), text, all),
              ElementsAre("0 [a b] 3: primary primary", "3 [a b] 0: primary primary"));
  auto best = all;
  best->returnBestOnly = 1;
  Polls polls;
  EXPECT_EQ(resultsOf(*match(expression("ab"), text, best)).size(), 1u);
  EXPECT_EQ(polls.count(), 1);  // The first start's; its second span is not tried.
}

TEST(RegularExpressionSpans, AnExactWholeReadingIsEnough) {
  Polls polls;
  match(expression("a+"), reading("a a a"), runParams({.maxEdits = 1, .matchOption9 = 1}));
  EXPECT_EQ(polls.count(), 0);
  match(expression("a+"), reading("a a a"), runParams({.maxEdits = 2, .matchOption9 = 1}));
  EXPECT_EQ(polls.count(), 3);
}

TEST(RegularExpressionSpans, ANegativeEndEndsItsStart) {
  // With three edits the first end of starts 0 and 1 is negative: nothing is tried from there.
  const auto params = runParams(
      {.maxEdits = 3, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0, .returnBestOnly = 0, .matchOption9 = 1});
  EXPECT_THAT(matches(expression("a"), reading("a a a"), params), ElementsAre("2 [a] 0: primary"));
}

TEST(RegularExpressionSpans, TheLongestIsBoundedByTheLargestLengthAndTheEdits) {
  const auto params = runParams({.maxEdits = 1, .maxStringLength = 1, .returnBestOnly = 0, .matchOption9 = 1});
  EXPECT_THAT(matches(expression("ab"), reading("a b"), params), IsEmpty());
  EXPECT_THAT(
      matches(expression("b"), reading("a b"), params),
      ElementsAre("1 [b] 0: primary", "0 [{F801}] 1: substituted", "1 [{F801}] 0: substituted", "0 [b] 0: primary -0"));
}

TEST(RegularExpressionPolls, YesOrNoAsksOnceForTheReadingAndOnceForEveryStart) {
  Polls polls;
  EXPECT_FALSE(fits(expression("x"), reading("a b c")));
  EXPECT_EQ(polls.count(), 1);
  EXPECT_FALSE(fits(expression("x"), reading("a b c"), runParams({.matchOption9 = 1})));
  EXPECT_EQ(polls.count(), 5);
  EXPECT_TRUE(fits(expression("b"), reading("a b c"), runParams({.matchOption9 = 1})));
  EXPECT_EQ(polls.count(), 8);  // The reading, the first start and the second.
  EXPECT_FALSE(fits(expression("x{9}"), reading("a b c"), runParams({.matchOption9 = 1})));
  EXPECT_EQ(polls.count(), 12);
}

TEST(RegularExpressionPolls, ResultsAskForEveryStartOnly) {
  Polls polls;
  match(expression("abc"), reading("a b c"), runParams({.maxEdits = 1}));
  EXPECT_EQ(polls.count(), 0);
  match(expression("b"), reading("a b c"), runParams({.maxEdits = 0, .matchOption9 = 1}));
  EXPECT_EQ(polls.count(), 3);
}

TEST(RegularExpressionPolls, AnInterruptEndsTheMatch) {
  const auto params = runParams({.matchOption9 = 1});
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 1;
  {
    Polls polls(1, -5);
    EXPECT_EQ(
        qoc_ocrDictionaryRegularExpression_matchMulti(expression("x"), reading("a b c"), params, nullptr, results), -5);
    EXPECT_EQ(polls.count(), 2);
  }
  {
    Polls polls(1, -5);
    EXPECT_EQ(
        qoc_ocrDictionaryRegularExpression_isMatchMulti(expression("x"), reading("a b c"), params, nullptr, &isMatch),
        -5);
    EXPECT_EQ(isMatch, 0u);
  }
}

TEST(RegularExpressionVariants, OfMultiCharacterSwapsAreMatchedEach) {
  const auto set = setOfSwaps({{U"m", U"rn"}});
  const auto results = match(expression("com"), reading("c o r n"), nullptr, set);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(describe(resultsOf(*results)[0]), "0 [c o m] 0: primary primary secondary");
  EXPECT_EQ(show(resultsOf(*results)[0].given), "c o r n");
  EXPECT_EQ(values(resultsOf(*results)[0].inputIndices), (std::vector<int32_t>{0, 1, 2}));
  EXPECT_TRUE(fits(expression("com"), reading("c o r n"), nullptr, set));
  EXPECT_FALSE(fits(expression("com"), reading("c o r n")));
  EXPECT_THAT(matches(expression("corn"), reading("c o m"), nullptr, set),
              ElementsAre("0 [c o r n] 0: primary primary secondary secondary"));
}

TEST(RegularExpressionVariants, AreTriedUntilAnExactResultIsEnough) {
  const auto set = setOfSwaps({{U"m", U"rn"}});
  const auto all =
      runParams({.maxEdits = 1, .matchOption1 = 0, .matchOption2 = 0, .matchOption4 = 0, .returnBestOnly = 0});
  EXPECT_EQ(matches(expression("m|rn"), reading("r n"), all, set).size(), 2u);
  const auto best = runParams({.maxEdits = 1});
  EXPECT_THAT(matches(expression("m|rn"), reading("r n"), best, set), ElementsAre("0 [r n] 0: primary primary"));
}

TEST(RegularExpressionVariants, ThatMatchAreFoundAmongMoreThanCanBeMade) {
  const auto set = setOfSwaps({{U"m", U"rn"}});
  const Reading ems = plain(std::string(40, 'm'));
  const auto results = match(expression("m{20}(rn){20}"), ems, nullptr, set);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(values(resultsOf(*results)[0].inputIndices).size(), 60u);
  EXPECT_TRUE(fits(expression("m{20}(rn){20}"), ems, nullptr, set));
  EXPECT_TRUE(fits(expression("(rn){39}x"), ems, runParams({.maxEdits = 1, .matchOption9 = 1}), set));
  EXPECT_FALSE(fits(expression("(rn){39}xx"), ems, runParams({.maxEdits = 1, .matchOption9 = 1}), set));
}

TEST(RegularExpressionMatch, TheBestResultIsTheFirstOfAll) {
  for (const char *source : {"[A-Z]{2}[0-9]{3}", "[A-Z0-9]*", "(A|[A-Z])(B|[0-9])*", ".{2,3}"}) {
    for (const char *text : {"A B 1 2 3", "A B|8 1 2", "A|4 8|B 1|I 2 3 x", "x|A y|8 1|2|3 2", "7 8|B 9|A 1"}) {
      for (const int32_t windows : {0, 1}) {
        const auto found = [&](int32_t best) {
          // With one edit the search would end at the first exact result.
          const auto params = runParams({.maxEdits = 2, .returnBestOnly = best, .matchOption9 = windows});
          return matches(expression(source), reading(text), params);
        };
        const auto all = found(0), best = found(1);
        ASSERT_EQ(best.size(), all.empty() ? 0u : 1u) << source << " of " << text;
        EXPECT_TRUE(best.empty() || best.front() == all.front()) << source << " of " << text;
      }
    }
  }
}

TEST(RegularExpressionMatch, PlainInputsAreReadingsOfSingleCandidates) {
  Owned<qoc_ocrDictionaryResultSet> results;
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_match(expression("ab"), word("ab"), nullptr, nullptr, results),
            QSYS_STATUS_OK);
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(describe(resultsOf(*results)[0]), "0 [a b] 0: primary primary");
  qsys_bool isMatch = 2;
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_isMatch(expression("ab"), word("ab"), nullptr, nullptr, &isMatch),
            QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 1u);
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_isMatch(expression("ab"), word("ac"), nullptr, nullptr, &isMatch),
            QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 0u);
}

TEST(RegularExpressionMatch, ResetsTheResultSetFirst) {
  auto results = match(expression("ab"), reading("a b"));
  ASSERT_EQ(resultsOf(*results).size(), 1u);
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_matchMulti(expression("x"), reading("a b"), nullptr, nullptr, results),
            QSYS_STATUS_OK);
  EXPECT_EQ(results->isComputed, 1u);
  EXPECT_TRUE(resultsOf(*results).empty());
}

TEST(RegularExpressionMatch, OfALongReadingWithAnExpressionOfManyPositions) {
  const std::string text(300, '7');
  EXPECT_TRUE(fits(expression("[0-9]{300}"), plain(text)));
  EXPECT_FALSE(fits(expression("[0-9]{301}"), plain(text)));
  EXPECT_TRUE(fits(expression("[0-9]{301}"), plain(text), runParams({.maxEdits = 1})));
  EXPECT_TRUE(
      fits(expression("x[0-9]{100}"), plain(std::string(150, '7')), runParams({.maxEdits = 1, .matchOption9 = 1})));
  EXPECT_EQ(matches(expression("[0-9]{299}"), plain(text), runParams({.maxEdits = 1, .returnBestOnly = 0})).size(),
            300u);
}

TEST(RegularExpressionMatch, ReportsMissingArguments) {
  FailedChecks checks;
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 2;
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_matchMulti(nullptr, reading("a"), nullptr, nullptr, results),
            QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_isMatchMulti(expression("a"), nullptr, nullptr, nullptr, &isMatch),
            QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(isMatch, 2u);
  EXPECT_EQ(qoc_ocrDictionaryRegularExpression_setString(expression("a"), nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
}

}  // namespace
