// What multi-character swaps make of a reading.

#include <qoc/swap_char_set.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/text.hpp"
#include "swap/swaps.hpp"

namespace qoc::test {
namespace {

using testing::ElementsAre;

TEST(StringExpandRecords, ConstructToZerosAndCopy) {
  qoc_stringExpandOneToTwo_ one = {1, 2, 3}, oneCopy;
  qoc_stringExpandTwoToTwo_ two = {1, 2, 3, 4}, twoCopy;

  ASSERT_EQ(qoc_stringExpandOneToTwo__constructCopy(&oneCopy, &one), QSYS_STATUS_OK);
  ASSERT_EQ(qoc_stringExpandTwoToTwo__constructCopy(&twoCopy, &two), QSYS_STATUS_OK);
  ASSERT_EQ(qoc_stringExpandOneToTwo__construct(&one), QSYS_STATUS_OK);
  ASSERT_EQ(qoc_stringExpandTwoToTwo__construct(&two), QSYS_STATUS_OK);

  EXPECT_THAT((Codes{one.single, one.pairFirst, one.pairSecond}), ElementsAre(0u, 0u, 0u));
  EXPECT_THAT((Codes{two.fromFirst, two.fromSecond, two.toFirst, two.toSecond}), ElementsAre(0u, 0u, 0u, 0u));
  EXPECT_THAT((Codes{oneCopy.single, oneCopy.pairFirst, oneCopy.pairSecond}), ElementsAre(1u, 2u, 3u));
  EXPECT_THAT((Codes{twoCopy.fromFirst, twoCopy.fromSecond, twoCopy.toFirst, twoCopy.toSecond}),
              ElementsAre(1u, 2u, 3u, 4u));
  EXPECT_EQ(qoc_stringExpandOneToTwo__destruct(&one), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_stringExpandTwoToTwo__destruct(&two), QSYS_STATUS_OK);
}

TEST(StringExpand, IsEmptyUntilItHasARecordOfEitherKind) {
  Owned<qoc_stringExpand_> expansion;
  const qoc_stringExpandOneToTwo_ one = {'m', 'r', 'n'};
  const qoc_stringExpandTwoToTwo_ two = {'a', 'b', 'c', 'd'};

  EXPECT_TRUE(answer(qoc_stringExpand__isEmpty, expansion));
  require(qstd_vector_qoc_stringExpandOneToTwo__pushBack(&expansion->oneToTwo, &one));
  EXPECT_FALSE(answer(qoc_stringExpand__isEmpty, expansion));
  ASSERT_EQ(qoc_stringExpand__reset(expansion), QSYS_STATUS_OK);
  EXPECT_TRUE(answer(qoc_stringExpand__isEmpty, expansion));
  require(qstd_vector_qoc_stringExpandTwoToTwo__pushBack(&expansion->twoToTwo, &two));
  EXPECT_FALSE(answer(qoc_stringExpand__isEmpty, expansion));
}

TEST(StringExpandMap, GivesTheInputAloneWithoutRecords) {
  const Owned<qoc_swapCharSet> set;

  EXPECT_THAT(variantsOf(set, "a b|c3 d"), ElementsAre("a b|c3 d @0,1,2"));
}

TEST(StringExpandMap, GivesOneEmptyVariantAndNoPositionsForAnEmptyReading) {
  const auto set = setOfSwaps({{U"m", U"rn"}});
  auto variants = vectorOf<qstd_vector_qoc_ocrDictionaryStringMulti>({*reading("a"), *reading("b")});
  auto positions = vectorOf<qstd_vector_vector32s>({*vectorOf<qstd_vector32s>({1})});

  ASSERT_EQ(qoc_swapCharSet_multiSwapStrings(set, reading(""), variants, positions), QSYS_STATUS_OK);

  ASSERT_EQ(elements(variants).size(), 1u);
  EXPECT_EQ(show(elements(variants)[0]), "");
  EXPECT_EQ(elements(positions).size(), 0u);
}

TEST(StringExpandMap, ReadsTwoCharactersAsOne) {
  const auto set = setOfSwaps({{U"m", U"rn"}});

  EXPECT_THAT(variantsOf(set, "r n"), ElementsAre("r n @0,1", "{F800}|m @0"));
}

TEST(StringExpandMap, ReadsOneCharacterAsTwo) {
  const auto set = setOfSwaps({{U"m", U"rn"}});

  EXPECT_THAT(variantsOf(set, "m"), ElementsAre("m @0", "{F800}|r {F800}|n @0,0"));
}

TEST(StringExpandMap, DoesNotCareOnWhichSideTheSingleCharacterStood) {
  EXPECT_EQ(variantsOf(setOfSwaps({{U"rn", U"m"}}), "m r n"), variantsOf(setOfSwaps({{U"m", U"rn"}}), "m r n"));
}

TEST(StringExpandMap, ReadsTwoCharactersAsTwoInOneDirectionOnly) {
  const auto set = setOfSwaps({{U"ab", U"cd"}});

  EXPECT_THAT(variantsOf(set, "a b"), ElementsAre("a b @0,1", "{F800}|c {F800}|d @0,1"));
  EXPECT_THAT(variantsOf(set, "c d"), ElementsAre("c d @0,1"));
}

TEST(StringExpandMap, SkipsThePositionOfTheSecondCharacterOfAPairReadAsOne) {
  const auto set = setOfSwaps({{U"m", U"rn"}});

  EXPECT_THAT(variantsOf(set, "a r n b"), ElementsAre("a r n b @0,1,2,3", "a {F800}|m b @0,1,3"));
}

TEST(StringExpandMap, OrdersTheSwapsByKindAndThenByRecord) {
  const auto set = setOfSwaps({{U"xy", U"p"}, {U"xy", U"cd"}, {U"x", U"ef"}, {U"xy", U"gh"}, {U"q", U"xy"}});

  EXPECT_THAT(variantsOf(set, "x y"), ElementsAre("x y @0,1", "{F800}|e {F800}|f y @0,0,1", "{F800}|c {F800}|d @0,1",
                                                  "{F800}|g {F800}|h @0,1", "{F800}|p @0", "{F800}|q @0"));
}

TEST(StringExpandMap, VariesTheLastPositionFirst) {
  const auto set = setOfSwaps({{U"m", U"rn"}});

  EXPECT_THAT(variantsOf(set, "m m"),
              ElementsAre("m m @0,1", "m {F800}|r {F800}|n @0,1,1", "{F800}|r {F800}|n m @0,0,1",
                          "{F800}|r {F800}|n {F800}|r {F800}|n @0,0,1,1"));
}

TEST(StringExpandMap, DoesNotSwapWhatASwapHasPutIn) {
  const auto set = setOfSwaps({{U"m", U"rn"}, {U"n", U"ii"}});

  EXPECT_THAT(variantsOf(set, "m"), ElementsAre("m @0", "{F800}|r {F800}|n @0,0"));
}

TEST(StringExpandMap, KeepsEqualVariants) {
  const auto set = setOfSwaps({{U"m", U"rn"}, {U"rn", U"m"}});

  EXPECT_THAT(variantsOf(set, "r n"), ElementsAre("r n @0,1", "{F800}|m @0", "{F800}|m @0"));
}

TEST(StringExpandMap, MatchesAnyCandidateAndKeepsTheCandidatesThatItDoesNotSwap) {
  const auto set = setOfSwaps({{U"m", U"rn"}});

  EXPECT_THAT(variantsOf(set, "x|r4 n|y2 z1"), ElementsAre("x|r4 n|y2 z1 @0,1,2", "{F800}|m z1 @0,2"));
}

TEST(StringExpandMap, MatchesThroughTheGroupsOfTheSet) {
  const auto set = setOfSwaps({{U"n", U"h"}, {U"m", U"rn"}});

  EXPECT_THAT(variantsOf(set, "r h"), ElementsAre("r h @0,1", "{F800}|m @0"));
}

TEST(StringExpandMap, MatchesWildcardsAndNeverTheEmptyCharacter) {
  const auto set = setOfSwaps({{U"m", U"rn"}});
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;

  ASSERT_EQ(qoc_swapCharSet_multiSwapStrings(set, reading(U"\xF801"), variants, positions), QSYS_STATUS_OK);
  EXPECT_EQ(elements(variants).size(), 2u);
  ASSERT_EQ(qoc_swapCharSet_multiSwapStrings(set, reading(U"\xF800 ~"), variants, positions), QSYS_STATUS_OK);
  EXPECT_EQ(elements(variants).size(), 1u);
}

TEST(StringExpandMap, UsesTheSetThatItIsGivenAndAcceptsNone) {
  const auto records = setOfSwaps({{U"m", U"rn"}});
  const auto groups = setOf({U"nh"});
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;

  ASSERT_EQ(qoc_stringExpand__mapStringMulti(records->expansion, reading("r h"), groups, variants, positions),
            QSYS_STATUS_OK);
  EXPECT_EQ(elements(variants).size(), 2u);
  ASSERT_EQ(qoc_stringExpand__mapStringMulti(records->expansion, reading("r h"), nullptr, variants, positions),
            QSYS_STATUS_OK);
  EXPECT_EQ(elements(variants).size(), 1u);
}

TEST(StringExpandMap, NeedsNoDeepStackForALongReading) {
  const auto set = setOfSwaps({{U"m", U"rn"}});
  constexpr int32_t numPositions = 200000;
  Owned<qoc_ocrDictionaryStringMulti> input;
  require(qstd_vector_qoc_ocrDictionaryCharMulti_resizeFill(&input->positions, numPositions, position("a")));
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;

  ASSERT_EQ(qoc_swapCharSet_multiSwapStrings(set, input, variants, positions), QSYS_STATUS_OK);

  ASSERT_EQ(elements(variants).size(), 1u);
  EXPECT_TRUE(answer(qoc_ocrDictionaryStringMulti_compareEqual, &elements(variants)[0], input));
  EXPECT_EQ(elements(elements(positions)[0]).back(), numPositions - 1);
}

TEST(StringExpandMap, EndsAtAnInterruptWhereverItComesAndLeavesNothing) {
  LibraryAllocator allocator;
  {
    const auto set = setOfSwaps({{U"m", U"rn"}});
    const auto input = reading("m m r n");
    Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
    Owned<qstd_vector_vector32s> positions;
    int64_t numNeeded = 0;
    {
      Polls polls;
      ASSERT_EQ(qoc_swapCharSet_multiSwapStrings(set, input, variants, positions), QSYS_STATUS_OK);
      numNeeded = polls.count();
    }
    EXPECT_EQ(numNeeded, 4 + 8) << "one poll for each position and each variant";
    for (int64_t numAllowed = 0; numAllowed < numNeeded; ++numAllowed) {
      SCOPED_TRACE(numAllowed);
      Polls polls(numAllowed);
      EXPECT_EQ(qoc_swapCharSet_multiSwapStrings(set, input, variants, positions), QSYS_STATUS_INTERRUPTED);
      EXPECT_EQ(elements(variants).size(), 0u);
      EXPECT_EQ(elements(positions).size(), 0u);
    }
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(StringExpandMap, CanBeInterruptedWhenTheVariantsWouldNeverEnd) {
  const auto set = setOfSwaps({{U"m", U"rn"}});
  Owned<qoc_ocrDictionaryStringMulti> input;
  require(qstd_vector_qoc_ocrDictionaryCharMulti_resizeFill(&input->positions, 200, position("m")));
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;
  Polls polls(1000);

  EXPECT_EQ(qoc_swapCharSet_multiSwapStrings(set, input, variants, positions), QSYS_STATUS_INTERRUPTED);
}

TEST(StringExpandMap, SurvivesEveryFailureOfMemory) {
  LibraryAllocator allocator;
  {
    const auto set = setOfSwaps({{U"m", U"rn"}, {U"ab", U"cd"}});
    const auto input = reading("m a|m b");
    bool hasSucceeded = false;
    for (int64_t n = 0; !hasSucceeded; ++n) {
      SCOPED_TRACE(n);
      Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
      Owned<qstd_vector_vector32s> positions;
      allocator.failFrom(n);
      const qsys_status status = qoc_swapCharSet_multiSwapStrings(set, input, variants, positions);
      allocator.failFrom(-1);
      hasSucceeded = status >= 0;
      EXPECT_EQ(status, hasSucceeded ? QSYS_STATUS_OK : QSYS_STATUS_OUT_OF_MEMORY);
      EXPECT_EQ(elements(variants).size(), hasSucceeded ? 6u : 0u);
    }
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

}  // namespace
}  // namespace qoc::test
