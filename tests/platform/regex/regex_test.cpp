// Regular expressions: life, sources, and the ways in which sequences match.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/regex/regexes.hpp"
#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/heap.hpp"
#include "support/metered.hpp"

namespace {

using namespace qoc::test;
using testing::ElementsAre;
using testing::IsEmpty;

std::string sourceOf(const qstd_regex *regex) {
  Owned<qstd_string> source;
  require(qstd_regex_getString(regex, source));
  return show(*source);
}

bool areEqual(const qstd_regex *a, const qstd_regex *b) {
  qsys_bool isEqual = 7;
  require(qstd_regex_compareEqual(a, b, &isEqual));
  return isEqual == 1;
}

TEST(Regex, IsEmptyAfterConstruction) {
  Owned<qstd_regex> made;
  EXPECT_EQ(sourceOf(made), "");
  EXPECT_TRUE(areEqual(made, regex("")));
  EXPECT_FALSE(areEqual(made, regex("a")));
  EXPECT_FALSE(areEqual(regex("a"), made));
}

TEST(Regex, GivesItsSourceBack) {
  const std::string source("a\0[\xE4]", 5);
  EXPECT_EQ(sourceOf(regex(source)), source);
}

TEST(Regex, GivesAWideSourceBackInUtf8) {
  Owned<qstd_regex> made(
      [](qstd_regex *object) { return qstd_regex_constructStringT(object, L"a\u00E4\u20AC\U0001F600"); });
  EXPECT_EQ(sourceOf(made), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  require(qstd_regex_setStringT(made, L"b+"));
  EXPECT_EQ(sourceOf(made), "b+");
}

TEST(Regex, TakesEveryWideCharacterForACode) {
  Owned<qstd_regex> made([](qstd_regex *object) { return qstd_regex_constructStringT(object, L"[\u20AC-\u20AF]"); });
  Owned<qstd_vector_qstd_tokenMulti> one;
  Owned<qstd_tokenMulti> multi;
  require(qstd_tokenMulti_setChar32(multi, 0x20AD));
  require(qstd_vector_qstd_tokenMulti_pushBack(one, multi));
  EXPECT_THAT(ways(made, one), ElementsAre("!{20AD}"));
}

TEST(Regex, SharesTheExpressionBetweenCopies) {
  auto made = regex("ab");
  Owned<qstd_regex> copy(*made), assigned;
  require(qstd_regex_assign(assigned, made));
  EXPECT_EQ(copy->shared, made->shared);
  EXPECT_EQ(assigned->shared, made->shared);
  require(qstd_regex_setString(made, stdString("cd")));
  EXPECT_EQ(sourceOf(copy), "ab");
  EXPECT_EQ(sourceOf(assigned), "ab");
  EXPECT_FALSE(areEqual(made, copy));
  EXPECT_TRUE(areEqual(assigned, copy));
  EXPECT_TRUE(areEqual(copy, regex("ab")));
}

TEST(Regex, AssignedToItselfStays) {
  auto made = regex("ab");
  EXPECT_EQ(qstd_regex_assign(made, made), QSYS_STATUS_OK);
  EXPECT_EQ(sourceOf(made), "ab");
}

TEST(Regex, StaysAsItWasWhenASourceIsRefused) {
  auto made = regex("ab");
  EXPECT_EQ(qstd_regex_setString(made, stdString("(")), QSTD_STATUS_REGEX_PARENTHESIS);
  EXPECT_EQ(qstd_regex_setStringT(made, L"[]"), QSTD_STATUS_REGEX_CLASS_EMPTY);
  EXPECT_EQ(sourceOf(made), "ab");
  EXPECT_THAT(ways(made, sequence("a b")), ElementsAre("!a !b"));
}

TEST(Regex, BecomesEmptyAgain) {
  auto made = regex("ab");
  EXPECT_EQ(qstd_regex_setString(made, stdString("")), QSYS_STATUS_OK);
  EXPECT_TRUE(areEqual(made, regex("")));
}

TEST(RegexWays, TellAllTokensThatMatchPrimaryFirst) {
  EXPECT_THAT(ways("[ab].", "a|b|c d|e"), ElementsAre("!ab !de"));
  EXPECT_THAT(ways("[bc]d", "a|c|b d"), ElementsAre("cb !d"));
}

TEST(RegexWays, OfTheEmptySequenceIsOneWithoutPlaces) {
  EXPECT_THAT(ways("a*", ""), ElementsAre(""));
  EXPECT_THAT(ways("(a*)*|b?", ""), ElementsAre(""));
  EXPECT_THAT(ways("a", ""), IsEmpty());
}

TEST(RegexWays, AWildcardPlaceMatchesEveryPosition) {
  EXPECT_THAT(ways("a[^b]\\d.", "? ? ? ?"), ElementsAre("!{F801} !{F801} !{F801} !{F801}"));
  EXPECT_THAT(ways("ab", "a ?"), ElementsAre("!a !{F801}"));
  EXPECT_THAT(ways("", "?"), IsEmpty());
}

TEST(RegexWays, TheEmptyCharacterIsAcceptedByNothing) {
  EXPECT_THAT(ways(".", "~"), IsEmpty());
  EXPECT_THAT(ways("[^a]", "~"), IsEmpty());
  const auto source = regex("\\x{F800}");
  EXPECT_THAT(ways(source, sequence("~")), IsEmpty());
  Owned<qstd_vector_qstd_tokenMulti> withAlternative = sequence("x|b");
  Owned<qstd_tokenMulti> multi(elements(withAlternative)[0]);
  require(qstd_token_setChar32(&multi->primary, QOC_CHAR_EMPTY));
  Owned<qstd_vector_qstd_tokenMulti> one;
  require(qstd_vector_qstd_tokenMulti_pushBack(one, multi));
  EXPECT_THAT(ways(regex("."), one), ElementsAre("b"));
}

TEST(RegexWays, ComeInTheOrderOfABacktrackingMatcher) {
  EXPECT_THAT(ways("a|b|c", "c|b|a"), ElementsAre("a", "b", "!c"));
  EXPECT_THAT(ways("a*b*", "a|b a|b"), ElementsAre("!a !a", "!a b", "b b"));
  EXPECT_THAT(ways("(a|b)*", "a|b a|b"), ElementsAre("!a !a", "!a b", "b !a", "b b"));
  EXPECT_THAT(ways("a?[ab]", "a|b"), ElementsAre("!ab"));
  EXPECT_THAT(ways("a{1,2}b?", "a|b a|b"), ElementsAre("!a !a", "!a b"));
  EXPECT_THAT(ways("(a|ab)(b|c)?", "a|b b|c"), ElementsAre("!a !b", "!a c"));
}

TEST(RegexWays, ThatTellTheSameComeOnceAtTheFirstPlace) {
  EXPECT_THAT(ways("(a|a)*b", "a a b"), ElementsAre("!a !a !b"));
  EXPECT_THAT(ways("[ab]|b|a|[bc]", "a|b"), ElementsAre("!ab", "b", "!a"));
  EXPECT_THAT(ways("ax|bx|ay|a.", "a|b x|y"), ElementsAre("!a !x", "b !x", "!a y", "!a !xy"));
}

TEST(RegexWays, ARoundThatConsumesNothingEndsItsRepeat) {
  // Behind an empty round comes what follows the repeat, before the round's other alternatives.
  EXPECT_THAT(ways("(|a)*b?", "a|b"), ElementsAre("b", "!a"));
  EXPECT_THAT(ways("(|a){2}b?", "a|b"), ElementsAre("b", "!a"));
  EXPECT_THAT(ways("(b*|a)*[ab]", "a|b"), ElementsAre("!ab"));
  EXPECT_THAT(ways("(|a)+", "a a a"), ElementsAre("!a !a !a"));
  EXPECT_THAT(ways("((|a)*)*", "a a"), ElementsAre("!a !a"));
}

TEST(RegexWays, AreFoundAmongExponentiallyManyPaths) {
  const std::string many(40, 'a');
  EXPECT_EQ(ways(regex("(a|a)*b"), plainSequence(many)).size(), 0u);
  EXPECT_EQ(ways(regex("(a*)*b"), plainSequence(many)).size(), 0u);
  EXPECT_EQ(ways(regex("(a|a)*b"), plainSequence(many + "b")).size(), 1u);
  EXPECT_EQ(ways(regex("(a*)*b"), plainSequence(many + "b")).size(), 1u);
  EXPECT_EQ(ways(regex("((a|a)(a|a))*"), plainSequence(many)).size(), 1u);
}

TEST(RegexWays, CanBeInterrupted) {
  std::string text;
  for (int i = 0; i < 40; ++i) {
    text += i > 0 ? " a|b" : "a|b";
  }
  const auto exploding = regex("(a|b)*");
  const auto choices = sequence(text);
  Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
  Polls polls(2);
  EXPECT_EQ(qstd_regex_parseTokenMulti(exploding, choices, words), QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(polls.count(), 3);
  EXPECT_TRUE(elements(words).empty());
}

TEST(RegexWays, OfSmallSequencesAskForNoAttention) {
  Polls polls;
  ways("(a|b)*", "a|b a|b a|b");
  EXPECT_EQ(polls.count(), 0);
}

TEST(RegexWays, AreTheSameWhenTheExpressionHasManyPositions) {
  const std::string many = "(x{100}|(ab|a[bc])*)(x{100})?";
  EXPECT_THAT(ways(many, "a b|c"), ElementsAre("!a !b", "!a !bc"));
  EXPECT_THAT(ways(many, ""), ElementsAre(""));
  EXPECT_THAT(ways(many, "a b|c a ?"), ElementsAre("!a !b !a !{F801}", "!a !bc !a !{F801}"));
  EXPECT_TRUE(matches(many, std::string(200, 'x')));
  EXPECT_FALSE(matches(many, std::string(201, 'x')));
  EXPECT_TRUE(matches("(a?){1000}", std::string(1000, 'a')));
  EXPECT_FALSE(matches("(a?){1000}", std::string(1001, 'a')));
  EXPECT_TRUE(matches("(a{1000}){10}", std::string(10'000, 'a')));
}

TEST(RegexWays, AreFoundOnBothSidesOfTheWidthOfAWord) {
  for (std::size_t n = 62; n <= 66; ++n) {
    const std::string count = "{" + std::to_string(n) + "}", text(n, 'a');
    EXPECT_TRUE(matches("a" + count, text)) << n;
    EXPECT_FALSE(matches("a" + count, text + "a")) << n;
    EXPECT_FALSE(matches("a" + count, text.substr(1))) << n;
    EXPECT_TRUE(matches("(b|a" + count + ")*", "b" + text + text + "b")) << n;
    EXPECT_FALSE(matches("(b|a" + count + ")*", "b" + text + "ab")) << n;
    EXPECT_EQ(ways(regex("(a?)" + count + "b?"), plainSequence(text + "b")).size(), 1u) << n;
  }
}

TEST(RegexWays, CompilingALargeExpressionCanBeInterrupted) {
  std::string source = "a";
  for (int i = 0; i < 900; ++i) {
    source = "(|" + source + ")*";
  }
  Owned<qstd_regex> made;
  Polls polls(0);
  EXPECT_EQ(qstd_regex_setString(made, stdString("(" + source + "){1000}")), QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(sourceOf(made), "");
}

/// Hardly any positions, and very many nodes.
TEST(RegexWays, ATreeThatGrowsWithoutPositionsIsRefusedAndMayBeInterrupted) {
  std::string source = "a";
  for (int i = 0; i < 900; ++i) {
    source = "(|" + source + ")*";
  }
  source = "(" + source + "){1000}";
  EXPECT_EQ(errorOf(source), "QSTD_STATUS_REGEX_TOO_LARGE at 0");
  const Polls polls(1, -777);
  int32_t place = -7;
  EXPECT_EQ(qstd_regex_findError(stdString(source), &place), -777);
  EXPECT_EQ(place, -1);
}

/// Runs body() with every poll of the meters refused in turn, and without; each time it is asked about every little
/// work.
template <class Body>
void expectInterrupts(Body body) {
  const PollingMeters meters(1);
  int64_t numPolls = 0;
  {
    const Polls polls;
    EXPECT_EQ(body(), QSYS_STATUS_OK);
    numPolls = polls.count();
  }
  EXPECT_GT(numPolls, 0);
  for (int64_t n = 0; n < numPolls; ++n) {
    SCOPED_TRACE(n);
    const Polls polls(n, -777);
    EXPECT_EQ(body(), -777);
    EXPECT_EQ(polls.count(), n + 1);
  }
}

TEST(Regex, IsCompiledAndMatchedWithInterruptsWhereverTheyCome) {
  const auto choices = sequence("a|b a|c|b b|a"), single = sequence("a b a");
  for (const char *source : {"(a|b|ab)*", "(a|b|ab)*|x{100}"}) {
    SCOPED_TRACE(source);
    const auto text = stdString(source);
    expectInterrupts([&] { return qstd_regex_setString(Owned<qstd_regex>(), text); });
    const auto made = regex(source);
    expectInterrupts([&] {
      Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
      const qsys_status status = qstd_regex_parseTokenMulti(made, choices, words);
      EXPECT_EQ(elements(words).size(), status < 0 ? 0u : 8u);
      return status;
    });
    expectInterrupts([&] {
      Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
      const qsys_status status = qstd_regex_parseTokenMulti(made, single, words);
      EXPECT_EQ(elements(words).size(), status < 0 ? 0u : 1u);
      return status;
    });
  }
}

void expectMemoryFaults(const std::string &source, bool isWide) {
  SCOPED_TRACE(source);
  const auto narrow = stdString(source);
  const std::wstring wide(source.begin(), source.end());
  bool isComplete = false;
  for (int64_t n = 0; !isComplete && !testing::Test::HasFailure(); ++n) {
    auto made = regex("old");
    const auto tokens = sequence("a b|a d|x x");
    Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
    qsys_status set = 0, parsed = 0;
    {
      HeapFault fault(n);
      set = isWide ? qstd_regex_setStringT(made, wide.c_str()) : qstd_regex_setString(made, narrow);
      parsed = set < 0 ? set : qstd_regex_parseTokenMulti(made, tokens, words);
    }
    isComplete = set >= 0 && parsed >= 0;
    EXPECT_TRUE(isComplete || parsed == QSYS_STATUS_OUT_OF_MEMORY) << n;
    EXPECT_EQ(elements(words).empty(), !isComplete) << n;
    EXPECT_EQ(sourceOf(made), set < 0 ? "old" : source) << n;
  }
}

TEST(Regex, RunsOutOfMemoryWithAStatusAndStaysAsItWas) {
  for (const std::string source :
       {"(a|b[c-e]){2,3}x*", "([^b]|b\\D)+.", "(a|y{70}|b[c-e]){2,3}x*", "a\\x61?[\\w][^\\d\\x{100}-\\s]+|"}) {
    expectMemoryFaults(source, false);
    expectMemoryFaults(source, true);
  }
}

TEST(RegexWays, AreAllThereOrNoneWhereverMemoryRunsOut) {
  const auto made = regex("(a|b)*");
  const auto tokens = sequence("a|b a|b");
  LibraryAllocator memory;
  bool hasFailed = true;
  for (int64_t n = 0; hasFailed; ++n) {
    SCOPED_TRACE(n);
    Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
    memory.fail(n, FaultMode::once);
    const qsys_status status = qstd_regex_parseTokenMulti(made, tokens, words);
    hasFailed = memory.hasFailed();
    memory.failFrom(-1);
    EXPECT_EQ(status, hasFailed ? QSYS_STATUS_OUT_OF_MEMORY : QSYS_STATUS_OK);
    EXPECT_EQ(elements(words).size(), hasFailed ? 0u : 4u);
    EXPECT_TRUE(hasFailed || n > 10);
  }
}

TEST(Regex, ReportsMissingArguments) {
  FailedChecks checks;
  auto made = regex("a");
  Owned<qstd_string> text;
  EXPECT_EQ(qstd_regex_setString(made, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qstd_regex_getString(nullptr, text), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qstd_regex_findError(text, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qstd_regex_parseTokenMulti(made, nullptr, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
}

}  // namespace
