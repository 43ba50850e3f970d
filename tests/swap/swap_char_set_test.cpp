// Swap character sets: how they are set, refused, copied, compared and printed.

#include <qoc/swap_char_set.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <numeric>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/shortcuts.hpp"
#include "support/text.hpp"
#include "swap/swaps.hpp"

namespace qoc::test {
namespace {

using testing::ElementsAre;

void expectReset(const qoc_swapCharSet &set) {
  EXPECT_EQ(elements(set.swaps).size(), 0u);
  EXPECT_EQ(elements(set.groups).size(), 0u);
  EXPECT_EQ(elements(set.swapCharCodeToIndexLUT).size(), 0u);
  EXPECT_EQ(elements(set.distinctCharacters).size(), 0u);
  EXPECT_EQ(elements(set.swapCharEquivalenceTable).size(), 0u);
  EXPECT_EQ(elements(set.equivalentsCacheLists).size(), 0u);
  EXPECT_EQ(elements(set.equivalentsCacheFlags).size(), 0u);
  EXPECT_TRUE(answer(qoc_stringExpand__isEmpty, set.expansion));
  EXPECT_TRUE(answer(qoc_swapCharSet_getIsEmpty, &set));
  EXPECT_EQ(elements(set.pairFilter).size(), 0u);
  EXPECT_EQ(set.pairFilterData, nullptr);
}

std::vector<std::vector<uint8_t>> tableOf(const qoc_swapCharSet &set) {
  std::vector<std::vector<uint8_t>> rows;
  for (const qstd_vectorb &row : elements(set.swapCharEquivalenceTable)) {
    rows.push_back(values(row));
  }
  return rows;
}

std::string printed(const qoc_swapCharSet *set) {
  char *text = nullptr;
  std::size_t size = 0;
  FILE *stream = open_memstream(&text, &size);
  EXPECT_GE(qoc_swapCharSet_print(set, stream), 0);
  std::fclose(stream);
  const std::string result(text, size);
  std::free(text);
  return result;
}

TEST(SwapCharSetConstruct, MakesAResetSet) { expectReset(*Owned<qoc_swapCharSet>()); }

TEST(SwapCharSetConstruct, SurvivesEveryFailureOfMemory) {
  LibraryAllocator allocator;
  bool hasSucceeded = false;
  for (int64_t n = 0; !hasSucceeded; ++n) {
    qoc_swapCharSet set;
    allocator.failFrom(n);
    const qsys_status status = qoc_swapCharSet_construct(&set);
    allocator.failFrom(-1);
    hasSucceeded = status >= 0;
    if (hasSucceeded) {
      EXPECT_GT(n, 0);
      qoc_swapCharSet_destruct(&set);
    } else {
      EXPECT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
    }
    EXPECT_EQ(allocator.numLive(), 0);
  }
}

TEST(SwapCharSetSetEquiv, MakesTheTableFromCodeToIndex) {
  const auto set = setOf({U"AB"});

  const auto table = values(set->swapCharCodeToIndexLUT);
  ASSERT_EQ(table.size(), 67u);
  for (std::size_t code = 0; code < table.size(); ++code) {
    EXPECT_EQ(table[code], code == 65 ? 0 : code == 66 ? 1 : -1) << code;
  }
  EXPECT_EQ(values(set->distinctCharacters), codes(U"AB"));
  EXPECT_FALSE(answer(qoc_swapCharSet_getIsEmpty, set));
}

TEST(SwapCharSetSetEquiv, KeepsTheGroupsAsGivenAndSortsTheCharacters) {
  const auto set = setOf({U"zOa", U"O0"});

  EXPECT_EQ(groupsIn(set->groups), (std::vector<Codes>{codes(U"zOa"), codes(U"O0")}));
  EXPECT_EQ(values(set->distinctCharacters), codes(U"0Oaz"));
}

TEST(SwapCharSetSetEquiv, ClosesGroupsThatShareACharacter) {
  const auto set = setOf({U"0O", U"OD", U"xy"});

  EXPECT_EQ(values(set->distinctCharacters), codes(U"0DOxy"));
  EXPECT_EQ(tableOf(*set), (std::vector<std::vector<uint8_t>>{
                               {1, 1, 1, 0, 0}, {1, 1, 1, 0, 0}, {1, 1, 1, 0, 0}, {0, 0, 0, 1, 1}, {0, 0, 0, 1, 1}}));
}

TEST(SwapCharSetSetEquiv, ClosesOverALongChainWhateverTheOrder) {
  std::vector<Codes> chain;
  for (Char32 i = 0; i < 300; ++i) {
    chain.push_back({100 + i * 7 % 300, 100 + (i * 7 + 7) % 300});
  }
  Owned<qoc_swapCharSet> set;
  ASSERT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes(chain)), QSYS_STATUS_OK);

  EXPECT_EQ(tableOf(*set), std::vector<std::vector<uint8_t>>(300, std::vector<uint8_t>(300, 1)));
}

TEST(SwapCharSetSetEquiv, EntersOnlyTheGivenPairsInTheFilter) {
  const auto set = setOf({U"0O", U"OD"});

  const auto filter = values(set->pairFilter);
  ASSERT_EQ(filter.size(), 997u);
  std::vector<uint8_t> expected(997, 0);
  for (const auto &[a, b] : {std::pair(48u, 79u), {79u, 48u}, {79u, 68u}, {68u, 79u}}) {
    expected[(a * 61 + b * 251) % 997] = 1;
  }
  EXPECT_EQ(filter, expected);
  EXPECT_EQ(set->pairFilterData, elements(set->pairFilter).data());
}

TEST(SwapCharSetSetEquiv, WrapsTheProductsOfTheFilterAt32Bits) {
  const Char32 a = 0x4000001, b = 0x1100000;  // 61 a and 251 b are both beyond 32 bits.
  Owned<qoc_swapCharSet> set;
  ASSERT_EQ(qoc_swapCharSet_setSingleSwap(set, a, b), QSYS_STATUS_OK);

  const uint64_t slot = (uint64_t{static_cast<uint32_t>(a * 61u)} + static_cast<uint32_t>(b * 251u)) % 997;
  EXPECT_EQ(values(set->pairFilter)[slot], 1);
  EXPECT_TRUE(isMatch(set, a, b));
}

TEST(SwapCharSetSetEquiv, EntersPairsOfCodesThatShareASlotAsSecondOnly) {
  // Where the product with 251 wraps and the one with 61 does not, two codes may agree in the one share alone.
  const Char32 a = 1355, b = 17'111'424;
  ASSERT_EQ(a * 251u % 997, b * 251u % 997);
  ASSERT_NE(a * 61u % 997, b * 61u % 997);
  Owned<qoc_swapCharSet> set;
  ASSERT_EQ(qoc_swapCharSet_setSingleSwap(set, a, b), QSYS_STATUS_OK);

  EXPECT_TRUE(isMatch(set, a, b));
  EXPECT_TRUE(isMatch(set, b, a));
  const auto filter = values(set->pairFilter);
  EXPECT_EQ(std::accumulate(filter.begin(), filter.end(), 0), 2);
}

TEST(SwapCharSetSetEquiv, RefusesFaultyGroupsAndLeavesTheSetAsItWas) {
  const struct {
    std::vector<Codes> groups;
    qsys_status status;
  } cases[] = {
      {{{}}, QOC_STATUS_GROUP_EMPTY},
      {{{'a'}}, QOC_STATUS_GROUP_SINGLE},
      {{{'a', 'b', 'a'}}, QOC_STATUS_GROUP_DUPLICATE},
      {{{'a', 0xF800}}, QOC_STATUS_GROUP_RESERVED},
      {{{'a', 0xF801}}, QOC_STATUS_GROUP_RESERVED},
      {{{'a', 0xF8FF}}, QOC_STATUS_GROUP_RESERVED},
      {{{'a', 0xFF000}}, QOC_STATUS_GROUP_RESERVED},
      {{{'a', 0xFFFFD}}, QOC_STATUS_GROUP_RESERVED},
      // The first faulty group decides, and within a group the first rule.
      {{{'a', 'b'}, {'c'}, {}}, QOC_STATUS_GROUP_SINGLE},
      {{{'a', 'b', 'b'}, {}}, QOC_STATUS_GROUP_DUPLICATE},
      {{{'a', 'a', 0xF800}}, QOC_STATUS_GROUP_RESERVED},
      {{{0xF800}}, QOC_STATUS_GROUP_SINGLE},
      // Validation comes before the size of the table.
      {{{'a', 0xFFFFFFFF}, {'b'}}, QOC_STATUS_GROUP_SINGLE},
  };
  for (const auto &[groups, status] : cases) {
    SCOPED_TRACE(testing::PrintToString(groups));
    auto set = setOfSwaps({{U"x", U"y"}, {U"rn", U"m"}});
    EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes(groups)), status);
    EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, set, setOfSwaps({{U"x", U"y"}, {U"rn", U"m"}})));
    EXPECT_TRUE(isMatchChar(set, 'x', 'y'));
    EXPECT_TRUE(answer(qoc_swapCharSet_hasMultiSwap, set));
  }
}

TEST(SwapCharSetSetEquiv, RefusesADuplicateInALargeGroup) {
  Codes group(500);
  std::iota(group.begin(), group.end(), 1000u);
  Owned<qoc_swapCharSet> set;
  EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes({group})), QSYS_STATUS_OK);
  group.push_back(1234);
  EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes({group})), QOC_STATUS_GROUP_DUPLICATE);
}

TEST(SwapCharSetSetEquiv, AcceptsTheNeighboursOfTheReservedRanges) {
  Owned<qoc_swapCharSet> set;

  EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes({{0xF7FF, 0xF900, 0xFEFFF, 0xFFFFE}})), QSYS_STATUS_OK);
}

TEST(SwapCharSetSetEquiv, AcceptsACharacterInTwoGroups) {
  Owned<qoc_swapCharSet> set;

  EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groupsOf({U"ab", U"ab", U"bc"})), QSYS_STATUS_OK);
}

TEST(SwapCharSetSetEquiv, OfNoGroupsGivesAnEmptySet) {
  auto set = setOf({U"ab"});

  EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groupsOf({})), QSYS_STATUS_OK);

  EXPECT_TRUE(answer(qoc_swapCharSet_getIsEmpty, set));
  EXPECT_EQ(elements(set->swapCharCodeToIndexLUT).size(), 0u);
  EXPECT_EQ(values(set->pairFilter), std::vector<uint8_t>(997, 0));
  EXPECT_FALSE(isMatchChar(set, 'a', 'b'));
}

TEST(SwapCharSetSetEquiv, TakesTheSetsOwnGroups) {
  auto set = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});

  EXPECT_EQ(qoc_swapCharSet_setEquiv(set, &set->groups), QSYS_STATUS_OK);

  EXPECT_TRUE(isMatchChar(set, 'a', 'b'));
  EXPECT_FALSE(answer(qoc_swapCharSet_hasMultiSwap, set)) << "setting groups drops the multi-character swaps";
}

TEST(SwapCharSetSetEquiv, ResetsTheSetWithoutAllocatingWhenACodeIsTooLargeForTheTable) {
  for (const Char32 code : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    SCOPED_TRACE(code);
    LibraryAllocator allocator;
    {
      auto set = setOfSwaps({{U"x", U"y"}, {U"rn", U"m"}});
      const auto groups = groupsOfCodes({{'a', code}});
      const int64_t numBefore = allocator.numAllocations();

      EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groups), QSTD_STATUS_SIZE_INVALID);

      EXPECT_EQ(allocator.numAllocations(), numBefore);
      expectReset(*set);
    }
    EXPECT_EQ(allocator.numLive(), 0);
  }
}

TEST(SwapCharSetSetEquiv, ResetsTheSetWhenThereIsNotEnoughMemory) {
  LibraryAllocator allocator;
  {
    const auto groups = groupsOf({U"0O", U"OD", U"1Il"});
    bool hasSucceeded = false;
    for (int64_t n = 0; !hasSucceeded; ++n) {
      SCOPED_TRACE(n);
      auto set = setOfSwaps({{U"x", U"y"}, {U"rn", U"m"}});
      allocator.failFrom(n);
      const qsys_status status = qoc_swapCharSet_setEquiv(set, groups);
      allocator.failFrom(-1);
      hasSucceeded = status >= 0;
      if (hasSucceeded) {
        EXPECT_TRUE(isMatchChar(set, '0', 'D'));
        EXPECT_GT(n, 5);
      } else {
        EXPECT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
        expectReset(*set);
      }
    }
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(SwapCharSetSetEquiv, TakesTenThousandCharactersWithOneByteForEachPair) {
  // Pairs; one chain through all; one class of all in a single group, whose filter has every pair.
  std::vector<Codes> pairs, chain;
  Codes all(10000);
  std::iota(all.begin(), all.end(), 0x4E00u);
  for (std::size_t i = 0; i < all.size(); i += 2) {
    pairs.push_back({all[i], all[i + 1]});
  }
  for (std::size_t i = 1; i < all.size(); ++i) {
    chain.push_back({all[i - 1], all[i]});
  }
  for (const std::vector<Codes> &groups : {pairs, chain, {all}}) {
    LibraryAllocator allocator;
    {
      const auto given = groupsOfCodes(groups);
      Owned<qoc_swapCharSet> set;
      ASSERT_EQ(qoc_swapCharSet_setEquiv(set, given), QSYS_STATUS_OK);
      EXPECT_TRUE(isMatchChar(set, all[0], all[1]));
      EXPECT_EQ(isMatchChar(set, all.front(), all.back()), groups.size() != pairs.size());
      EXPECT_EQ(groupOf(set, all[0]).size(), groups.size() == pairs.size() ? 2u : all.size());
      EXPECT_EQ(groupOf(set, all[7]).back(), all[7]);
      int32_t elementSize = 0;
      require(qstd_vectorb_getElementSize(&elements(set->swapCharEquivalenceTable)[0], &elementSize));
      EXPECT_EQ(elementSize, 1);
      for (const qstd_vectorb &row : elements(set->swapCharEquivalenceTable)) {
        ASSERT_EQ(elements(row).size(), all.size());
      }
    }
    EXPECT_EQ(allocator.numLive(), 0);
  }
}

TEST(SwapCharSetSetEquiv, BoundsTheCacheOfEquivalentsAndAnswersTheSame) {
  const qoc::test::ShortcutsTaken taken(qoc::test::ShortcutsTaken::all);
  // One class too large for the cache, and one small class that comes after it.
  Codes large(2500);
  std::iota(large.begin(), large.end(), 1000u);
  Owned<qoc_swapCharSet> set;
  ASSERT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes({large, {9000, 9001}})), QSYS_STATUS_OK);

  EXPECT_EQ(elements(set->equivalentsCacheFlags)[0], 0);
  EXPECT_EQ(elements(set->equivalentsCacheFlags)[2500], 1);
  Codes expected = large;
  expected.erase(expected.begin() + 3);
  expected.push_back(large[3]);
  EXPECT_EQ(groupOf(set, large[3]), expected);
  EXPECT_THAT(groupOf(set, 9001), ElementsAre(9000u, 9001u));
}

TEST(SwapCharSetSetEquiv, FillsTheCacheOfEquivalentsAtOnce) {
  const qoc::test::ShortcutsTaken taken(qoc::test::ShortcutsTaken::all);
  const auto set = setOf({U"0O", U"OD"});

  EXPECT_EQ(groupsIn(set->equivalentsCacheLists), (std::vector<Codes>{codes(U"DO"), codes(U"0O"), codes(U"0D")}));
  EXPECT_THAT(values(set->equivalentsCacheFlags), ElementsAre(1, 1, 1));
}

TEST(SwapCharSetSetEquivStdStrings, TakesEachByteAsACharacter) {
  Owned<qoc_swapCharSet> set;
  const auto groups = vectorOf<qstd_vector_qstd_string>({*stdString("0O"), *stdString("1Il")});

  EXPECT_EQ(qoc_swapCharSet_setEquivStdStrings(set, groups), QSYS_STATUS_OK);

  EXPECT_EQ(groupsIn(set->groups), (std::vector<Codes>{codes(U"0O"), codes(U"1Il")}));
  const Owned<qoc_swapCharSet> constructed(
      [&](qoc_swapCharSet *made) { return qoc_swapCharSet_constructEquivStdStrings(made, groups); });
  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, constructed, set));
}

TEST(SwapCharSetSetEquivStdStrings, SignExtendsHighBytesToCodesThatHaveNoTable) {
  auto set = setOf({U"ab"});
  const auto groups = vectorOf<qstd_vector_qstd_string>({*stdString("a\xE9")});

  EXPECT_EQ(qoc_swapCharSet_setEquivStdStrings(set, groups), QSTD_STATUS_SIZE_INVALID);
  expectReset(*set);

  const auto twice = vectorOf<qstd_vector_qstd_string>({*stdString("\x80\x80")});
  EXPECT_EQ(qoc_swapCharSet_setEquivStdStrings(set, twice), QOC_STATUS_GROUP_DUPLICATE);
}

TEST(SwapCharSetSetEquivStringTs, TakesEachWideCharacterAsACode) {
  const auto wide = [](const wchar_t *text) {
    return Owned<qstd_wstring>([=](qstd_wstring *string) { return qstd_wstring_constructString(string, text); });
  };
  const auto groups = vectorOf<qstd_vector_qstd_wstring>({*wide(L"0O"), *wide(L"\u00E9\u4E00")});
  Owned<qoc_swapCharSet> set;

  EXPECT_EQ(qoc_swapCharSet_setEquivStringTs(set, groups), QSYS_STATUS_OK);

  EXPECT_EQ(groupsIn(set->groups), (std::vector<Codes>{codes(U"0O"), {0xE9, 0x4E00}}));
  const Owned<qoc_swapCharSet> constructed(
      [&](qoc_swapCharSet *made) { return qoc_swapCharSet_constructEquivStringTs(made, groups); });
  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, constructed, set));
}

TEST(SwapCharSetConstructEquivDictChar, TakesTheCodesOfTheCharacters) {
  const auto groups = vectorOf<qstd_vector_vector_qoc_ocrDictionaryChar>({*characters("05|O7"), *characters("1|I|l")});

  const Owned<qoc_swapCharSet> set(
      [&](qoc_swapCharSet *made) { return qoc_swapCharSet_constructEquivDictChar(made, groups); });

  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, set, setOf({U"0O", U"1Il"})));
}

TEST(SwapCharSetConstructors, LeaveNothingBehindWhenTheyRefuse) {
  LibraryAllocator allocator;
  {
    qoc_swapCharSet set;
    EXPECT_EQ(qoc_swapCharSet_constructEquiv(&set, groupsOf({U"ab", U"c"})), QOC_STATUS_GROUP_SINGLE);
    EXPECT_EQ(qoc_swapCharSet_constructEquivStdStrings(&set, vectorOf<qstd_vector_qstd_string>({*stdString("")})),
              QOC_STATUS_GROUP_EMPTY);
    EXPECT_EQ(qoc_swapCharSet_constructEquivDictChar(
                  &set, vectorOf<qstd_vector_vector_qoc_ocrDictionaryChar>({*characters("a|a")})),
              QOC_STATUS_GROUP_DUPLICATE);
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(SwapCharSetSetSwapCharacters, MergesGroupsThatFollowEachOther) {
  const auto set = setOfSwaps({{U"x", U"y"}, {U"y", U"z"}});

  EXPECT_EQ(groupsIn(set->groups), (std::vector<Codes>{codes(U"zyx"), codes(U"yx")}));
  EXPECT_TRUE(isMatchChar(set, 'x', 'z'));
}

TEST(SwapCharSetSetSwapCharacters, MergesNoGroupWithItself) {
  const auto set = setOfSwaps({{U"x", U"y"}, {U"x", U"y"}, {U"y", U"x"}});

  EXPECT_EQ(groupsIn(set->groups), (std::vector<Codes>{codes(U"yx")}));
}

TEST(SwapCharSetSetSwapCharacters, RefusesGroupsOfWhichOneIsLeftOverAndLeavesTheSetAsItWas) {
  auto set = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});

  EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set, swapsOf({{U"x", U"y"}, {U"z", U"w"}, {U"cl", U"d"}})),
            QOC_STATUS_GROUP_SINGLE);

  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, set, setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}})));
  EXPECT_TRUE(isMatchChar(set, 'a', 'b'));
  EXPECT_THAT(variantsOf(set, "m"), ElementsAre("m @0", "{F800}|r {F800}|n @0,0"));
}

TEST(SwapCharSetSetSwapCharacters, RefusesAReservedCodeAndADuplicateThatTheMergeMakes) {
  Owned<qoc_swapCharSet> set;

  EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set, swapsOf({{U"x", U"\xF800"}})), QOC_STATUS_GROUP_RESERVED);
  // [x] [y] [z] become [z] [y x], then [z y x] [y x] with the last in place, and then [y x z y x].
  EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set, swapsOf({{U"x", U"y"}, {U"y", U"z"}, {U"z", U"x"}})),
            QOC_STATUS_GROUP_DUPLICATE);
}

TEST(SwapCharSetSetSwapCharacters, KeepsTheMultiCharacterSwapsAndTheirRecords) {
  const Pairs pairs = {{U"m", U"rn"},  {U"cl", U"d"},  {U"0", U"O"},   {U"vv", U"ww"},
                       {U"abc", U"x"}, {U"x", U"abc"}, {U"ab", U"xyz"}};
  const auto set = setOfSwaps(pairs);

  EXPECT_EQ(elements(set->swaps).size(), 6u);
  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, &elements(set->swaps)[1], swapOf(U"cl", U"d")));
  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, &elements(set->swaps)[3], swapOf(U"abc", U"x")));
  const auto oneToTwo = elements(set->expansion->oneToTwo);
  ASSERT_EQ(oneToTwo.size(), 2u);
  EXPECT_EQ((Codes{oneToTwo[0].single, oneToTwo[0].pairFirst, oneToTwo[0].pairSecond}), codes(U"mrn"));
  EXPECT_EQ((Codes{oneToTwo[1].single, oneToTwo[1].pairFirst, oneToTwo[1].pairSecond}), codes(U"dcl"));
  const auto twoToTwo = elements(set->expansion->twoToTwo);
  ASSERT_EQ(twoToTwo.size(), 1u);
  EXPECT_EQ((Codes{twoToTwo[0].fromFirst, twoToTwo[0].fromSecond, twoToTwo[0].toFirst, twoToTwo[0].toSecond}),
            codes(U"vvww"));
}

TEST(SwapCharSetSetSwapCharacters, OfMultiCharacterSwapsAloneLeavesTheGroupsEmpty) {
  const auto set = setOfSwaps({{U"m", U"rn"}});

  EXPECT_TRUE(answer(qoc_swapCharSet_getIsEmpty, set));
  EXPECT_TRUE(answer(qoc_swapCharSet_hasMultiSwap, set));
}

TEST(SwapCharSetSetSwapCharacters, TakesTheSetsOwnSwaps) {
  auto set = setOfSwaps({{U"m", U"rn"}, {U"0", U"O"}});

  EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set, &set->swaps), QSYS_STATUS_OK);

  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, set, setOfSwaps({{U"m", U"rn"}})));
}

TEST(SwapCharSetSetSwapCharacters, ResetsTheSetWhenACodeIsTooLarge) {
  auto set = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});
  const auto swaps = vectorOf<qstd_vector_qoc_swapChar>({*swapOf({'a'}, Codes{0xFFFFFFFF})});

  EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set, swaps), QSTD_STATUS_SIZE_INVALID);
  expectReset(*set);
}

TEST(SwapCharSetSetSwapCharacters, SurvivesEveryFailureOfMemory) {
  LibraryAllocator allocator;
  {
    const auto swaps = swapsOf({{U"x", U"y"}, {U"y", U"z"}, {U"rn", U"m"}, {U"ab", U"cd"}});
    bool hasSucceeded = false;
    for (int64_t n = 0; !hasSucceeded; ++n) {
      SCOPED_TRACE(n);
      Owned<qoc_swapCharSet> set;
      allocator.failFrom(n);
      const qsys_status status = qoc_swapCharSet_setSwapCharacters(set, swaps);
      allocator.failFrom(-1);
      hasSucceeded = status >= 0;
      EXPECT_EQ(answer(qoc_swapCharSet_hasMultiSwap, set), hasSucceeded);
      EXPECT_EQ(isMatchChar(set, 'x', 'z'), hasSucceeded);
      EXPECT_EQ(status, hasSucceeded ? QSYS_STATUS_OK : QSYS_STATUS_OUT_OF_MEMORY);
    }
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(SwapCharSetSetSingleSwap, MakesTheOnlyGroup) {
  auto set = setOf({U"ab", U"cd"});

  EXPECT_EQ(qoc_swapCharSet_setSingleSwap(set, 'x', 'y'), QSYS_STATUS_OK);

  EXPECT_EQ(groupsIn(set->groups), (std::vector<Codes>{codes(U"xy")}));
}

TEST(SwapCharSetSetSingleSwap, RefusesEqualCodesAndLeavesTheSetAsItWas) {
  auto set = setOf({U"ab"});

  EXPECT_EQ(qoc_swapCharSet_setSingleSwap(set, 'x', 'x'), QOC_STATUS_SINGLE_SWAP_EQUAL);
  EXPECT_EQ(qoc_swapCharSet_appendSingleSwap(set, 'x', 'x'), QOC_STATUS_SINGLE_SWAP_EQUAL);
  EXPECT_EQ(qoc_swapCharSet_appendSingleSwap(set, 'x', QOC_CHAR_ANY), QOC_STATUS_GROUP_RESERVED);
  EXPECT_EQ(qoc_swapCharSet_setSingleSwap(set, QOC_CHAR_EMPTY, QOC_CHAR_EMPTY), QOC_STATUS_SINGLE_SWAP_EQUAL);

  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, set, setOf({U"ab"})));
}

TEST(SwapCharSetAppendSingleSwap, AddsAGroupAndDropsTheMultiCharacterSwaps) {
  auto set = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});

  EXPECT_EQ(qoc_swapCharSet_appendSingleSwap(set, 'b', 'c'), QSYS_STATUS_OK);

  EXPECT_EQ(groupsIn(set->groups), (std::vector<Codes>{codes(U"ba"), codes(U"bc")}));
  EXPECT_EQ(elements(set->swaps).size(), 0u);
  EXPECT_FALSE(answer(qoc_swapCharSet_hasMultiSwap, set));
  EXPECT_TRUE(isMatchChar(set, 'a', 'c'));
}

TEST(SwapCharSetReset, EmptiesEverything) {
  auto set = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});

  EXPECT_EQ(qoc_swapCharSet_reset(set), QSYS_STATUS_OK);

  expectReset(*set);
  EXPECT_FALSE(isMatch(set, 'a', 'b'));
  EXPECT_FALSE(isMatchChar(set, 'a', 'b'));
}

TEST(SwapCharSetAssign, CopiesWhatQueriesReadAndItsOwnFilterPointer) {
  Owned<qoc_swapCharSet> copy = setOf({U"uvw"});
  {
    const auto source = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});
    ASSERT_EQ(qoc_swapCharSet_assign(copy, source), QSYS_STATUS_OK);
    EXPECT_NE(copy->pairFilterData, source->pairFilterData);
    EXPECT_NE(copy->expansion, source->expansion);
  }
  EXPECT_EQ(copy->pairFilterData, elements(copy->pairFilter).data());
  EXPECT_TRUE(isMatch(copy, 'a', 'b'));
  EXPECT_FALSE(isMatchChar(copy, 'u', 'v'));
  EXPECT_EQ(groupOf(copy, 'a'), codes(U"ba"));
  EXPECT_EQ(variantsOf(copy, "m").size(), 2u);
  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, copy, setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}})));
}

TEST(SwapCharSetAssign, ToItselfDoesNothing) {
  auto set = setOf({U"ab"});
  const uint8_t *filter = set->pairFilterData;

  EXPECT_EQ(qoc_swapCharSet_assign(set, set), QSYS_STATUS_OK);

  EXPECT_EQ(set->pairFilterData, filter);
  EXPECT_TRUE(isMatch(set, 'a', 'b'));
}

TEST(SwapCharSetAssign, OfAResetSetResets) {
  auto set = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});

  EXPECT_EQ(qoc_swapCharSet_assign(set, Owned<qoc_swapCharSet>()), QSYS_STATUS_OK);
  expectReset(*set);
}

TEST(SwapCharSetAssign, LeavesTheTargetAsItWasWhenMemoryRunsOut) {
  LibraryAllocator allocator;
  {
    const auto source = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});
    bool hasSucceeded = false;
    for (int64_t n = 0; !hasSucceeded; ++n) {
      SCOPED_TRACE(n);
      auto set = setOf({U"uvw"});
      allocator.failFrom(n);
      hasSucceeded = qoc_swapCharSet_assign(set, source) >= 0;
      allocator.failFrom(-1);
      EXPECT_EQ(answer(qoc_swapCharSet_compareEqual, set, source), hasSucceeded);
      EXPECT_EQ(isMatchChar(set, 'u', 'w'), !hasSucceeded);
      EXPECT_EQ(isMatch(set, 'a', 'b'), hasSucceeded);
    }
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(SwapCharSetConstructCopy, CopiesAsAssignDoes) {
  const auto source = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});
  const Owned<qoc_swapCharSet> copy(source);

  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, copy, source));
  EXPECT_EQ(copy->pairFilterData, elements(copy->pairFilter).data());
  EXPECT_TRUE(isMatch(copy, 'a', 'b'));
}

TEST(SwapCharSetCompareEqual, ComparesSwapsAndGroupsInOrder) {
  const auto set = setOfSwaps({{U"a", U"b"}, {U"rn", U"m"}});

  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, set, setOfSwaps({{U"rn", U"m"}, {U"a", U"b"}})));
  EXPECT_FALSE(answer(qoc_swapCharSet_compareEqual, set, setOfSwaps({{U"a", U"b"}, {U"m", U"rn"}})));
  EXPECT_FALSE(answer(qoc_swapCharSet_compareEqual, set, setOfSwaps({{U"a", U"b"}})));
  EXPECT_FALSE(answer(qoc_swapCharSet_compareEqual, set, setOfSwaps({{U"b", U"a"}, {U"rn", U"m"}})));
  EXPECT_FALSE(answer(qoc_swapCharSet_compareEqual, setOf({U"ab", U"cd"}), setOf({U"cd", U"ab"})));
  EXPECT_TRUE(answer(qoc_swapCharSet_compareEqual, Owned<qoc_swapCharSet>(), setOf({})));
}

TEST(SwapCharSetPrint, WritesGroupsAndTables) {
  EXPECT_EQ(printed(setOf({U"AB", U"BDC"})),
            "qoc_swapCharSet\n"
            "{ {  A,  B  }, {  B,  D,  C  } }\n"
            "swapCharCodeToIndexLUT\n"
            " { 65 (A) , 0 } , { 66 (B) , 1 } , { 67 (C) , 2 } , { 68 (D) , 3 } ,\n"
            "swapCharEquivalenceTable\n"
            "[ 1 1 1 1 ]\n"
            "[ 1 1 1 1 ]\n"
            "[ 1 1 1 1 ]\n"
            "[ 1 1 1 1 ]\n");
  EXPECT_NE(printed(setOf({U"AB", U"CD"})).find("[ 1 1 0 0 ]\n[ 1 1 0 0 ]\n[ 0 0 1 1 ]\n"), std::string::npos);
}

TEST(SwapCharSetPrint, WritesTheLowByteOfACode) {
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setEquiv(set, groupsOfCodes({{0x141, 0x200}})));

  const std::string text = printed(set);

  EXPECT_NE(text.find("{ {  A,    } }\n"), std::string::npos) << "a low byte of zero is an empty text";
  EXPECT_NE(text.find(std::string(" { 321 (A) , 0 } , { 512 (\0) , 1 } ,\n", 37)), std::string::npos);
}

TEST(SwapCharSetPrint, WritesAnEmptySet) {
  EXPECT_EQ(printed(Owned<qoc_swapCharSet>()),
            "qoc_swapCharSet\n{ }\nswapCharCodeToIndexLUT\n\nswapCharEquivalenceTable\n");
}

TEST(SwapCharSetPrint, ReportsANullSetAndPrintsIt) {
  FailedChecks checks;

  EXPECT_EQ(printed(nullptr), "qoc_swapCharSet : NULL\n");
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qoc_swapCharSet_print(setOf({U"AB"}), nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
}

#ifdef __GLIBC__
/// A stream without a buffer that takes so many pieces and then fails.
class FailingStream {
 public:
  explicit FailingStream(int numPieces) : numLeft_(numPieces) {
    const cookie_io_functions_t functions = {
        nullptr,
        [](void *self, const char *, size_t size) -> ssize_t {
          return static_cast<FailingStream *>(self)->numLeft_-- > 0 ? static_cast<ssize_t>(size) : 0;
        },
        nullptr, nullptr};
    stream_ = fopencookie(this, "w", functions);
    std::setvbuf(stream_, nullptr, _IONBF, 0);
  }
  ~FailingStream() { std::fclose(stream_); }
  FailingStream(const FailingStream &) = delete;
  FailingStream &operator=(const FailingStream &) = delete;
  operator FILE *() { return stream_; }
  bool hasFailed() const { return numLeft_ < 0; }

 private:
  FILE *stream_;
  int numLeft_;
};

TEST(SwapCharSetPrint, FailsAtEveryPieceThatTheStreamDoesNotTake) {
  const auto sets = {setOf({U"AB", U"CD"}), Owned<qoc_swapCharSet>()};
  for (const auto &set : sets) {
    int numPieces = 0;
    for (bool hasFailed = true; hasFailed; ++numPieces) {
      FailingStream stream(numPieces);
      const qsys_status status = qoc_swapCharSet_print(set, stream);
      hasFailed = stream.hasFailed();
      EXPECT_EQ(status < 0, hasFailed) << numPieces;
      if (hasFailed) {
        EXPECT_EQ(status, QSYS_STATUS_PRINT_FAILED);
      }
    }
    EXPECT_GT(numPieces, 5);
  }
  FailedChecks checks;
  FailingStream stream(0);
  EXPECT_EQ(qoc_swapCharSet_print(nullptr, stream), QSYS_STATUS_PRINT_FAILED);
}
#endif

TEST(SwapCharSetPrint, FailsWhenTheStreamDoes) {
  FILE *stream = std::fopen("/dev/null", "r");
  ASSERT_NE(stream, nullptr);

  EXPECT_EQ(qoc_swapCharSet_print(setOf({U"AB"}), stream), QSYS_STATUS_PRINT_FAILED);
  std::fclose(stream);
}

TEST(SwapCharSet, ReportsNullArguments) {
  FailedChecks checks;
  auto set = setOf({U"ab"});

  EXPECT_EQ(qoc_swapCharSet_construct(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_setEquiv(set, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_setEquivStdStrings(set, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_setEquivStringTs(set, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_setSingleSwap(nullptr, 'a', 'b'), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_appendSingleSwap(nullptr, 'a', 'b'), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_reset(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapCharSet_assign(set, nullptr), QSYS_STATUS_OK);

  EXPECT_EQ(checks.numNew(), 9);
  EXPECT_TRUE(isMatchChar(set, 'a', 'b'));
}

}  // namespace
}  // namespace qoc::test
