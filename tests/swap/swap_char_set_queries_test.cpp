// What swap character sets answer.

#include <qoc/swap_char_set.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/shortcuts.hpp"
#include "support/text.hpp"
#include "swap/equivalents.hpp"
#include "swap/pair_filter.hpp"
#include "swap/swaps.hpp"

namespace qoc::test {
namespace {

/// {0 O} and {O D}: 0 and D are equivalent through O alone.
Owned<qoc_swapCharSet> chain() { return setOf({U"0O", U"OD"}); }

std::string equivalents(const qoc_swapCharSet *set, Char32 code) {
  const qoc_ocrDictionaryChar one = character(code, 9);
  auto result = characters("x5|y6|z7|w8");
  require(qoc_swapCharSet_getEquivalentCharacters(set, &one, result));
  for (const qoc_ocrDictionaryChar &equivalent : elements(result)) {
    EXPECT_EQ(equivalent.score, 0);
  }
  return show(result);
}

std::string equivalentsMulti(const qoc_swapCharSet *set, std::string_view candidates) {
  auto result = characters("x5");
  require(qoc_swapCharSet_getEquivalentCharactersMulti(set, characters(candidates), result));
  return show(result);
}

TEST(SwapCharSetContains, TellsWhatStandsInAGroup) {
  const auto set = chain();

  EXPECT_TRUE(answer(qoc_swapCharSet_contains, set, Char32{'0'}));
  EXPECT_TRUE(answer(qoc_swapCharSet_contains, set, Char32{'O'}));
  EXPECT_FALSE(answer(qoc_swapCharSet_contains, set, Char32{'1'}));
  EXPECT_FALSE(answer(qoc_swapCharSet_contains, set, Char32{'P'})) << "beyond the largest code";
  EXPECT_FALSE(answer(qoc_swapCharSet_contains, set, Char32{0xFFFFFFFF}));
  EXPECT_FALSE(answer(qoc_swapCharSet_contains, Owned<qoc_swapCharSet>(), Char32{0}));
}

TEST(SwapCharSetGetEquiv, CopiesTheGroups) {
  const auto set = chain();
  auto groups = groupsOf({U"xyz"});

  EXPECT_EQ(qoc_swapCharSet_getEquiv(set, groups), QSYS_STATUS_OK);

  EXPECT_EQ(groupsIn(*groups), (std::vector<Codes>{codes(U"0O"), codes(U"OD")}));
}

TEST(SwapCharSetGetGroup, GivesTheEquivalentsAscendingAndThenTheCode) {
  EXPECT_EQ(groupOf(chain(), 'O'), codes(U"0DO"));
  EXPECT_EQ(groupOf(chain(), '0'), codes(U"DO0"));
}

TEST(SwapCharSetGetGroup, GivesNothingForACodeInNoGroup) {
  auto group = vectorOf<qstd_vectorChar32>(codes(U"xyz"));

  EXPECT_EQ(qoc_swapCharSet_getGroup(chain(), '1', group), QSYS_STATUS_OK);

  EXPECT_EQ(values(group), codes(U""));
  EXPECT_EQ(groupOf(chain(), 'P'), codes(U""));
  EXPECT_EQ(groupOf(chain(), 0xFFFFFFFF), codes(U""));
}

TEST(SwapCharSetGetEquivalentCharacters, LeavesOutTheCharacterItself) {
  EXPECT_EQ(equivalents(chain(), 'O'), "0D");
  EXPECT_EQ(equivalents(chain(), '1'), "");
}

TEST(SwapCharSetGetEquivalentCharacters, MayWriteOverItsOwnInput) {
  auto list = characters("O");
  const auto set = chain();

  EXPECT_EQ(qoc_swapCharSet_getEquivalentCharacters(set, &elements(list)[0], list), QSYS_STATUS_OK);
  EXPECT_EQ(show(list), "0D");
}

TEST(SwapCharSetGetEquivalentCharactersMulti, GivesLaterCandidatesAndNeverTheFirst) {
  const auto set = setOf({U"0OD", U"1Il"});

  EXPECT_EQ(equivalentsMulti(set, ""), "");
  EXPECT_EQ(equivalentsMulti(set, "O"), "0D");
  EXPECT_EQ(equivalentsMulti(set, "O|x"), "0Dx");
  EXPECT_EQ(equivalentsMulti(set, "O|I"), "0DI1l");
  EXPECT_EQ(equivalentsMulti(set, "O|0"), "0D") << "neither the later candidate nor the first a second time";
  EXPECT_EQ(equivalentsMulti(set, "x|O|x"), "O0Dx") << "a later candidate with the first one's code is entered";
  EXPECT_EQ(equivalentsMulti(set, "x|x"), "x");
  EXPECT_EQ(equivalentsMulti(set, "I|l|1"), "1l");
}

TEST(SwapCharSetGetEquivalentCharactersMulti, MayWriteOverItsInput) {
  auto list = characters("O|I3");

  EXPECT_EQ(qoc_swapCharSet_getEquivalentCharactersMulti(setOf({U"0OD", U"1Il"}), list, list), QSYS_STATUS_OK);
  EXPECT_EQ(show(list), "0DI1l");
}

TEST(SwapCharSetIsMatchChar, SeesThroughChainsOfGroups) {
  EXPECT_TRUE(isMatchChar(chain(), '0', 'O'));
  EXPECT_TRUE(isMatchChar(chain(), '0', 'D'));
  EXPECT_TRUE(isMatchChar(chain(), 'D', '0'));
  EXPECT_FALSE(isMatchChar(chain(), '0', '1'));
  EXPECT_FALSE(isMatchChar(setOf({U"ab", U"cd"}), 'a', 'c'));
}

TEST(SwapCharSetIsMatchChar, KnowsTheReservedCodesWithAndWithoutASet) {
  const auto set = chain();
  for (const qoc_swapCharSet *each :
       {static_cast<const qoc_swapCharSet *>(set), static_cast<const qoc_swapCharSet *>(nullptr)}) {
    EXPECT_FALSE(isMatchChar(each, QOC_CHAR_EMPTY, QOC_CHAR_EMPTY));
    EXPECT_FALSE(isMatchChar(each, QOC_CHAR_EMPTY, QOC_CHAR_ANY));
    EXPECT_FALSE(isMatchChar(each, QOC_CHAR_ANY, QOC_CHAR_EMPTY));
    EXPECT_FALSE(isMatchChar(each, QOC_CHAR_EMPTY, 'a'));
    EXPECT_TRUE(isMatchChar(each, QOC_CHAR_ANY, QOC_CHAR_ANY));
    EXPECT_TRUE(isMatchChar(each, QOC_CHAR_ANY, 'z'));
    EXPECT_TRUE(isMatchChar(each, 0xFFFFFFFF, QOC_CHAR_ANY));
    EXPECT_TRUE(isMatchChar(each, 'z', 'z'));
    EXPECT_TRUE(isMatchChar(each, QOC_CHAR_ANY_NONSPACE, QOC_CHAR_ANY_NONSPACE));
    EXPECT_FALSE(isMatchChar(each, QOC_CHAR_ANY_NONSPACE, 'a')) << "that wildcard is of fieldings only";
  }
  EXPECT_FALSE(isMatchChar(nullptr, '0', 'O'));
}

TEST(SwapCharSetIsMatchChar, MatchesACodeBeyondTheLargestByEqualityAlone) {
  EXPECT_TRUE(isMatchChar(chain(), 'Z', 'Z'));
  EXPECT_FALSE(isMatchChar(chain(), 'Z', 'O'));
  EXPECT_FALSE(isMatchChar(chain(), 'O', 0xFFFFFFFF));
}

TEST(SwapCharSetIsMatch, KnowsOnlyPairsOfOneGroup) {
  EXPECT_TRUE(isMatch(chain(), '0', 'O'));
  EXPECT_TRUE(isMatch(chain(), 'O', '0'));
  EXPECT_TRUE(isMatch(chain(), 'O', 'D'));
  EXPECT_FALSE(isMatch(chain(), '0', 'D')) << "equivalent through O alone, and not in the filter";
  EXPECT_FALSE(isMatch(chain(), 'O', 'O'));
  EXPECT_FALSE(isMatch(chain(), 'x', 'y'));
}

TEST(SwapCharSetIsMatch, KnowsNoWildcardAndNoEmptyCharacter) {
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setEquiv(set, groupsOfCodes({{'0', 'O'}, {0xF7FF, 0xF900}})));

  EXPECT_FALSE(isMatch(set, QOC_CHAR_ANY, '0'));
  EXPECT_FALSE(isMatch(set, '0', QOC_CHAR_ANY));
  EXPECT_FALSE(isMatch(set, QOC_CHAR_EMPTY, '0'));
  EXPECT_FALSE(isMatch(set, '0', QOC_CHAR_EMPTY));
}

TEST(SwapCharSetIsMatch, IsFalseWithoutASetOrFilter) {
  EXPECT_FALSE(isMatch(nullptr, '0', 'O'));
  EXPECT_FALSE(isMatch(Owned<qoc_swapCharSet>(), '0', 'O'));
}

TEST(SwapCharSetIsMatch, TakesAnEquivalentPairWhoseSlotCollidesWithAGivenOne) {
  // The codes x and z = x + 997 have the same shares, so that the pair (x, y) stands for (z, y), which only a chain
  // makes equivalent.
  Owned<qoc_swapCharSet> set;
  const Char32 x = 1000, y = 2000, z = x + 997;
  require(qoc_swapCharSet_setEquiv(set, groupsOfCodes({{x, y}, {x, z}})));

  EXPECT_TRUE(isMatch(set, z, y));
  EXPECT_FALSE(isMatch(set, 3000, y)) << "not equivalent";
}

TEST(SwapCharSetIsMatch, RefusesEveryOtherPairWhoseSlotCollides) {
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setEquiv(set, groupsOfCodes({{'a', 'b'}, {1000, 1061}, {2000, 3001}})));
  Codes tried = {'a', 'b', 1000, 1061, 2000, 3001};
  for (Char32 code = 5000; code < 6000; ++code) {
    tried.push_back(code);
  }
  tried.insert(tried.end(), {QOC_CHAR_EMPTY, QOC_CHAR_ANY});
  int numCollisions = 0;
  for (const Char32 first : tried) {
    for (const Char32 second : tried) {
      const bool isGiven = first != second && isMatchChar(set, first, second) && first < 5000 && second < 5000;
      numCollisions += !isGiven && set->pairFilterData[slotOfPair(first, second)] != 0 ? 1 : 0;
      ASSERT_EQ(isMatch(set, first, second), isGiven) << first << " " << second;
    }
  }
  EXPECT_GT(numCollisions, 1000);
}

TEST(SwapCharSetIsMatchCharMulti, LooksForOnePairOfCandidates) {
  const auto set = chain();

  EXPECT_TRUE(answer(qoc_swapCharSet_isMatchCharMulti, set, characters("a|0"), characters("b|D")));
  EXPECT_FALSE(answer(qoc_swapCharSet_isMatchCharMulti, set, characters("a|0"), characters("b|1")));
  EXPECT_FALSE(answer(qoc_swapCharSet_isMatchCharMulti, set, characters(""), characters("b")));
  EXPECT_FALSE(answer(qoc_swapCharSet_isMatchCharMulti, set, characters("b"), characters("")));
  EXPECT_TRUE(answer(qoc_swapCharSet_isMatchCharMulti, nullptr, characters("a|0"), characters("0")));
}

TEST(SwapCharSetIsMatchCharMultiChar, LooksForOneCandidate) {
  const auto set = chain();
  const qoc_ocrDictionaryChar letter = character('D'), other = character('x');

  EXPECT_TRUE(answer(qoc_swapCharSet_isMatchCharMultiChar, set, characters("a|0"), &letter));
  EXPECT_FALSE(answer(qoc_swapCharSet_isMatchCharMultiChar, set, characters("a|0"), &other));
  EXPECT_FALSE(answer(qoc_swapCharSet_isMatchCharMultiChar, set, characters(""), &letter));
  EXPECT_FALSE(answer(qoc_swapCharSet_isMatchCharMultiChar, nullptr, characters("a|0"), &letter));
}

TEST(SwapCharSetHasMultiSwap, CountsSwapsThatHaveRecords) {
  EXPECT_FALSE(answer(qoc_swapCharSet_hasMultiSwap, chain()));
  EXPECT_TRUE(answer(qoc_swapCharSet_hasMultiSwap, setOfSwaps({{U"m", U"rn"}})));
  EXPECT_TRUE(answer(qoc_swapCharSet_hasMultiSwap, setOfSwaps({{U"ab", U"cd"}})));
  EXPECT_FALSE(answer(qoc_swapCharSet_hasMultiSwap, setOfSwaps({{U"abc", U"d"}})));
}

TEST(SwapCharSetQueries, ReportNullArguments) {
  FailedChecks checks;
  const auto set = chain();
  qsys_bool flag = 7;
  const qoc_ocrDictionaryChar one = character('a');

  EXPECT_EQ(qoc_swapCharSet_contains(nullptr, 'a', &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_getIsEmpty(nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_isMatchChar(set, nullptr, &one, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_isMatchCharMulti(set, nullptr, characters("a"), &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_isMatchCharMultiChar(set, nullptr, &one, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_hasMultiSwap(nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_isMatch(set, 'a', 'b', nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_getGroup(set, 'a', nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_multiSwapStrings(nullptr, nullptr, nullptr, nullptr), QSYS_STATUS_OK);

  EXPECT_EQ(checks.numNew(), 9);
  EXPECT_EQ(flag, 7u);
}

TEST(SwapCharSetQueries, OfFourThreadsAtOnceAnswerAlike) {
  // Nothing has been asked of the set before, so that a query that still had to fill something would race here.
  const auto set = setOfSwaps({{U"0", U"O"}, {U"O", U"D"}, {U"m", U"rn"}, {U"vv", U"uu"}});
  const Owned<qoc_swapCharSet> copy(set);
  std::atomic<int> numWaiting = 4, numWrong = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (--numWaiting; numWaiting > 0;) {}
      for (int i = 0; i < 50; ++i) {
        for (const qoc_swapCharSet *each :
             {static_cast<const qoc_swapCharSet *>(set), static_cast<const qoc_swapCharSet *>(copy)}) {
          const bool isRight = groupOf(each, 'O') == codes(U"0DO") && equivalents(each, 'D') == "0O" &&
                               equivalentsMulti(each, "0|m") == "DOm" && isMatch(each, 'O', 'D') &&
                               isMatchChar(each, '0', 'D') && !isMatchChar(each, '0', 'm') &&
                               answer(qoc_swapCharSet_contains, each, Char32{'D'}) &&
                               variantsOf(each, "m v v").size() == 4;
          numWrong += isRight ? 0 : 1;
        }
      }
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  EXPECT_EQ(numWrong, 0);
}

/// A class of more characters than the lists of equivalents are kept for.
TEST(SwapCharSetEquivalents, OfALargeClassAreFoundWithoutAList) {
  std::u32string group;
  for (char32_t code = 0x4E00; group.size() < 2100; ++code) {
    group += code;
  }
  const auto set = setOf({group, U"ab"});
  for (const Char32 code : {group.front(), group[1000], group.back()}) {
    Codes expected = codes(group);
    std::erase(expected, code);
    Codes visited;
    qoc::forEachEquivalent(set, code, [&](Char32 equivalent) { visited.push_back(equivalent); });
    EXPECT_EQ(visited, expected);
    const qoc_ocrDictionaryChar one = character(code);
    Owned<qstd_vector_qoc_ocrDictionaryChar> found;
    ASSERT_EQ(qoc_swapCharSet_getEquivalentCharacters(set, &one, found), QSYS_STATUS_OK);
    EXPECT_EQ(elements(found).size(), expected.size());
  }
  EXPECT_EQ(equivalents(set, 'a'), "b");
}

/// query(output) fails at every allocation in turn, and then gives so many.
template <class V, class Query>
void expectMemoryFaults(Query query, std::size_t numWanted) {
  LibraryAllocator memory;
  bool hasFailed = true;
  for (int64_t n = 0; hasFailed; ++n) {
    SCOPED_TRACE(n);
    Owned<V> found;
    memory.failFrom(n);
    const qsys_status status = query(found);
    hasFailed = memory.hasFailed();
    memory.failFrom(-1);
    EXPECT_EQ(status, hasFailed ? QSYS_STATUS_OUT_OF_MEMORY : QSYS_STATUS_OK);
    EXPECT_TRUE(hasFailed || (n > 0 && elements(found).size() == numWanted));
  }
}

TEST(SwapCharSetEquivalents, WithAndWithoutAListSurviveEveryFailureOfMemory) {
  using Characters = qstd_vector_qoc_ocrDictionaryChar;
  const auto a = character('a');
  const auto candidates = characters("a|x");
  for (const unsigned shortcuts : {ShortcutsTaken::all, ShortcutsTaken::none}) {
    SCOPED_TRACE(shortcuts);
    const ShortcutsTaken taken(shortcuts);
    const auto set = setOf({U"abc", U"xyz"});
    expectMemoryFaults<qstd_vectorChar32>(
        [&](qstd_vectorChar32 *group) { return qoc_swapCharSet_getGroup(set, 'a', group); }, 3);
    expectMemoryFaults<Characters>(
        [&](Characters *found) { return qoc_swapCharSet_getEquivalentCharacters(set, &a, found); }, 2);
    expectMemoryFaults<Characters>(
        [&](Characters *found) { return qoc_swapCharSet_getEquivalentCharactersMulti(set, candidates, found); }, 5);
  }
}

}  // namespace
}  // namespace qoc::test
