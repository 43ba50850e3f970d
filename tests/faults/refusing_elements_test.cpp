// Outputs that hold elements of the caller's own, which fail to be destroyed when the output is emptied: the operation
// tells so and fills nothing in.

#include <gtest/gtest.h>
#include <qoc/ocr_dictionary.h>
#include <qoc/regex.h>

#include <utility>

#include "support/allocator.hpp"
#include "support/fieldings.hpp"
#include "support/refusing.hpp"

namespace {

using namespace qoc::test;

using RefusingCodes = Refusing<qstd_vectorChar32, Char32>;
using RefusingCharacters = Refusing<qstd_vector_qoc_ocrDictionaryChar, qoc_ocrDictionaryChar>;
using RefusingPositions = Refusing<qstd_vector_qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti>;
using RefusingReadings = Refusing<qstd_vector_qoc_ocrDictionaryStringMulti, qoc_ocrDictionaryStringMulti>;
using RefusingLists = Refusing<qstd_vector_vector32s, qstd_vector32s>;
using RefusingWays = Refusing<qstd_vector_qstd_tokenMatcherResultWord, qstd_tokenMatcherResultWord>;

TEST(RefusingElements, EndTheQueriesOfASwapSet) {
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSingleSwap(set, 'a', 'b'));
  const auto a = character('a');
  const auto candidates = position("a|b");

  RefusingCodes group;
  EXPECT_EQ(qoc_swapCharSet_getGroup(set, 'a', group), refusal);
  EXPECT_EQ(group.size(), 0);
  RefusingCharacters equivalents;
  EXPECT_EQ(qoc_swapCharSet_getEquivalentCharacters(set, &a, equivalents), refusal);
  EXPECT_EQ(equivalents.size(), 0);
  RefusingCharacters others;
  EXPECT_EQ(qoc_swapCharSet_getEquivalentCharactersMulti(set, &candidates->candidates, others), refusal);
  EXPECT_EQ(others.size(), 0);
}

TEST(RefusingElements, EndTheExpansionOfAReading) {
  const Owned<qoc_swapCharSet> set;
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;
  RefusingReadings refusingVariants;
  EXPECT_EQ(qoc_swapCharSet_multiSwapStrings(set, reading("a b"), refusingVariants, positions), refusal);
  EXPECT_EQ(refusingVariants.size(), 0);
  RefusingLists refusingPositions;
  EXPECT_EQ(qoc_swapCharSet_multiSwapStrings(set, reading("a b"), variants, refusingPositions), refusal);
  EXPECT_EQ(refusingPositions.size(), 0);
  EXPECT_EQ(variants->core.size, 0);
}

TEST(RefusingElements, EndTheWindowsOfStrings) {
  RefusingCharacters characters;
  EXPECT_EQ(qoc_ocrDictionaryString_getSubstrExtend(word("abc"), 0, 2, characters), refusal);
  EXPECT_EQ(characters.size(), 0);
  RefusingPositions positions;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getSubstrExtend(reading("a b c"), 0, 2, positions), refusal);
  EXPECT_EQ(positions.size(), 0);
}

TEST(RefusingElements, EndTheWaysOfAnExpression) {
  const Owned<qstd_regex> regex;
  const Owned<qstd_vector_qstd_tokenMulti> none;
  RefusingWays ways;
  EXPECT_EQ(qstd_regex_parseTokenMulti(regex, none, ways), refusal);
  EXPECT_EQ(ways.size(), 0);
}

TEST(RefusingElements, OfOneFieldLeaveTheOthersToBeDestroyed) {
  LibraryAllocator memory;
  qoc_swapChar swap;
  require(qoc_swapChar_construct(&swap));
  const auto a = character('a'), b = character('b');
  require(qoc_swapChar_setCharacters(&swap, &a, &b));
  RefusingCodes refusing;
  std::swap(swap.first, *static_cast<qstd_vectorChar32 *>(refusing));
  EXPECT_EQ(qoc_swapChar_destruct(&swap), refusal);
  qstd_vector__destruct(&static_cast<qstd_vectorChar32 *>(refusing)->core);
  EXPECT_EQ(memory.numLive(), 0);
}

}  // namespace
