// One allowed confusion between two character sequences.

#include <qoc/swap_char.h>

#include <gtest/gtest.h>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/text.hpp"
#include "swap/swaps.hpp"

namespace qoc::test {
namespace {

qsys_status setStrings(Owned<qoc_swapChar> &swap, std::string_view first, std::string_view second) {
  return qoc_swapChar_setStrings(swap, word(first), word(second));
}

TEST(SwapCharConstruct, MakesTwoEmptySequences) {
  const Owned<qoc_swapChar> swap;

  EXPECT_EQ(values(swap->first), codes(U""));
  EXPECT_EQ(values(swap->second), codes(U""));
  EXPECT_FALSE(answer(qoc_swapChar_getIsSingleCharSwap, swap));
}

TEST(SwapCharSetStrings, OfSingleCharactersIsASingleCharSwap) {
  Owned<qoc_swapChar> swap;

  EXPECT_EQ(setStrings(swap, "0", "O"), QSYS_STATUS_OK);

  EXPECT_EQ(values(swap->first), codes(U"0"));
  EXPECT_EQ(values(swap->second), codes(U"O"));
  EXPECT_TRUE(answer(qoc_swapChar_getIsSingleCharSwap, swap));
}

TEST(SwapCharSetStrings, OfLongerSequencesIsNoSingleCharSwap) {
  Owned<qoc_swapChar> swap;

  EXPECT_EQ(setStrings(swap, "rn", "m"), QSYS_STATUS_OK);
  EXPECT_FALSE(answer(qoc_swapChar_getIsSingleCharSwap, swap));
  EXPECT_EQ(setStrings(swap, "m", "rn"), QSYS_STATUS_OK);
  EXPECT_FALSE(answer(qoc_swapChar_getIsSingleCharSwap, swap));
}

TEST(SwapCharSetStrings, RefusesWhatIsEmptyEqualOrContained) {
  const struct {
    const char *first, *second;
    qsys_status status;
  } cases[] = {
      {"A", "A", QOC_STATUS_SWAP_CONTAINED},     {"AB", "AB", QOC_STATUS_SWAP_CONTAINED},
      {"", "A", QOC_STATUS_STRING_EMPTY},        {"A", "", QOC_STATUS_STRING_EMPTY},
      {"", "", QOC_STATUS_STRING_EMPTY},         {"AB", "A", QOC_STATUS_SWAP_CONTAINED},
      {"A", "AB", QOC_STATUS_SWAP_CONTAINED},    {"ABC", "B", QOC_STATUS_SWAP_CONTAINED},
      {"ABC", "AB", QOC_STATUS_SWAP_CONTAINED},  {"B", "ABC", QOC_STATUS_SWAP_CONTAINED},
      {"ABAB", "BA", QOC_STATUS_SWAP_CONTAINED},
  };
  for (const auto &[first, second, status] : cases) {
    SCOPED_TRACE(std::string(first) + " / " + second);
    Owned<qoc_swapChar> swap = swapOf(U"x", U"yz");
    EXPECT_EQ(setStrings(swap, first, second), status);
    EXPECT_EQ(values(swap->first), codes(U"x"));
    EXPECT_EQ(values(swap->second), codes(U"yz"));
  }
}

TEST(SwapCharSetStrings, DoesNotLookAtTheEndOfTheLongerString) {
  const std::pair<const char *, const char *> cases[] = {
      {"AB", "B"}, {"B", "AB"}, {"ABC", "C"}, {"ABC", "BC"}, {"BC", "ABC"}};
  for (const auto &[first, second] : cases) {
    SCOPED_TRACE(std::string(first) + " / " + second);
    Owned<qoc_swapChar> swap;
    EXPECT_EQ(setStrings(swap, first, second), QSYS_STATUS_OK);
  }
}

TEST(SwapCharSetStrings, DropsTheScores) {
  Owned<qoc_ocrDictionaryString> scored;
  require(qoc_ocrDictionaryString_setCharacters(scored, characters("r7|n9")));
  Owned<qoc_swapChar> swap;
  ASSERT_EQ(qoc_swapChar_setStrings(swap, scored, word("m")), QSYS_STATUS_OK);

  Owned<qoc_ocrDictionaryString> first, second;
  require(qoc_ocrDictionaryString_setCharacters(second, characters("a1|b2|c3")));
  ASSERT_EQ(qoc_swapChar_getStrings(swap, first, second), QSYS_STATUS_OK);

  EXPECT_EQ(show(first), "rn");
  EXPECT_EQ(show(second), "m");
  for (const auto *string : {&first, &second}) {
    for (const qoc_ocrDictionaryChar &one : elements((*string)->characters)) {
      EXPECT_EQ(one.score, 0);
    }
  }
}

TEST(SwapCharSetVectors, TakesTheCodes) {
  Owned<qoc_swapChar> swap;

  EXPECT_EQ(qoc_swapChar_setVectors(swap, characters("r7|n9"), characters("m")), QSYS_STATUS_OK);

  EXPECT_EQ(values(swap->first), codes(U"rn"));
  EXPECT_EQ(values(swap->second), codes(U"m"));
}

TEST(SwapCharSetVectors, RefusesAnEmptyVectorWithTheStatusOfContainedOnes) {
  Owned<qoc_swapChar> swap = swapOf(U"x", U"y");

  EXPECT_EQ(qoc_swapChar_setVectors(swap, characters(""), characters("A")), QOC_STATUS_SWAP_CONTAINED);
  EXPECT_EQ(qoc_swapChar_setVectors(swap, characters("A"), characters("")), QOC_STATUS_SWAP_CONTAINED);
  EXPECT_EQ(qoc_swapChar_setVectors(swap, characters("A|B"), characters("A")), QOC_STATUS_SWAP_CONTAINED);
  EXPECT_EQ(values(swap->first), codes(U"x"));
}

TEST(SwapCharSetCharacters, ReplacesBothSequences) {
  Owned<qoc_swapChar> swap = swapOf(U"abc", U"de");
  const qoc_ocrDictionaryChar first = character('0', 5), second = character('O', 6);

  EXPECT_EQ(qoc_swapChar_setCharacters(swap, &first, &second), QSYS_STATUS_OK);

  EXPECT_EQ(values(swap->first), codes(U"0"));
  EXPECT_EQ(values(swap->second), codes(U"O"));
}

TEST(SwapCharSetCharacters, RefusesEqualCodesWhateverTheirScores) {
  Owned<qoc_swapChar> swap = swapOf(U"x", U"y");
  const qoc_ocrDictionaryChar first = character('0', 5), second = character('0', 6);

  EXPECT_EQ(qoc_swapChar_setCharacters(swap, &first, &second), QOC_STATUS_SWAP_SAME_CHARACTER);
  EXPECT_EQ(values(swap->first), codes(U"x"));
}

TEST(SwapCharConstructors, SetWhatTheyAreGiven) {
  const qoc_ocrDictionaryChar zero = character('0'), letter = character('O');
  const Owned<qoc_swapChar> ofStrings(
      [](qoc_swapChar *swap) { return qoc_swapChar_constructStrings(swap, word("rn"), word("m")); });
  const Owned<qoc_swapChar> ofVectors(
      [](qoc_swapChar *swap) { return qoc_swapChar_constructVectors(swap, characters("r|n"), characters("m")); });
  const Owned<qoc_swapChar> ofCharacters(
      [&](qoc_swapChar *swap) { return qoc_swapChar_constructCharacters(swap, &zero, &letter); });

  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, ofStrings, swapOf(U"rn", U"m")));
  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, ofVectors, swapOf(U"rn", U"m")));
  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, ofCharacters, swapOf(U"0", U"O")));
}

TEST(SwapCharConstructors, LeaveNothingBehindWhenTheyRefuse) {
  LibraryAllocator allocator;
  {
    qoc_swapChar swap;
    const qoc_ocrDictionaryChar zero = character('0');
    EXPECT_EQ(qoc_swapChar_constructStrings(&swap, word("A"), word("A")), QOC_STATUS_SWAP_CONTAINED);
    EXPECT_EQ(qoc_swapChar_constructVectors(&swap, characters(""), characters("A")), QOC_STATUS_SWAP_CONTAINED);
    EXPECT_EQ(qoc_swapChar_constructCharacters(&swap, &zero, &zero), QOC_STATUS_SWAP_SAME_CHARACTER);
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(SwapCharCompareEqual, IsOrdered) {
  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, swapOf(U"x", U"y"), swapOf(U"x", U"y")));
  EXPECT_FALSE(answer(qoc_swapChar_compareEqual, swapOf(U"x", U"y"), swapOf(U"y", U"x")));
  EXPECT_FALSE(answer(qoc_swapChar_compareEqual, swapOf(U"x", U"y"), swapOf(U"x", U"z")));
  EXPECT_FALSE(answer(qoc_swapChar_compareEqual, swapOf(U"x", U"y"), swapOf(U"xx", U"y")));
}

TEST(SwapCharAssign, CopiesAndLeavesTheSourceAlone) {
  const Owned<qoc_swapChar> source = swapOf(U"rn", U"m");
  Owned<qoc_swapChar> target = swapOf(U"a", U"bcd");

  EXPECT_EQ(qoc_swapChar_assign(target, source), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapChar_assign(target, target), QSYS_STATUS_OK);

  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, target, swapOf(U"rn", U"m")));
  EXPECT_TRUE(answer(qoc_swapChar_compareEqual, source, swapOf(U"rn", U"m")));
}

TEST(SwapCharAssign, AssignsTheSecondSequenceBeforeTheFirst) {
  const Owned<qoc_swapChar> source = swapOf(U"rn", U"m");
  CountingAllocator failing;
  qoc_swapChar target;
  require(qstd_vectorChar32_constructEmptyWithMtable(&target.first, failing.table()));
  require(qstd_vectorChar32_constructEmpty(&target.second));
  failing.failFrom(0);

  EXPECT_EQ(qoc_swapChar_assign(&target, source), QSYS_STATUS_OUT_OF_MEMORY);

  EXPECT_EQ(values(target.second), codes(U"m"));
  EXPECT_EQ(values(target.first), codes(U""));
  qoc_swapChar_destruct(&target);
}

TEST(SwapCharGetStrings, SurvivesEveryFailureOfMemory) {
  LibraryAllocator memory;
  const auto swap = swapOf(U"rn", U"m");
  for (const int64_t n : {0, 1, 2}) {
    Owned<qoc_ocrDictionaryString> first, second;
    memory.fail(n, FaultMode::once);
    const qsys_status status = qoc_swapChar_getStrings(swap, first, second);
    memory.failFrom(-1);
    EXPECT_EQ(status, n < 2 ? QSYS_STATUS_OUT_OF_MEMORY : QSYS_STATUS_OK);
    EXPECT_EQ(show(first), n < 1 ? "" : "rn");
    EXPECT_EQ(show(second), n < 2 ? "" : "m");
  }
}

TEST(SwapCharVectorFind, GivesTheFirstEqualSwapOrNull) {
  const auto swaps = swapsOf({{U"x", U"y"}, {U"rn", U"m"}, {U"x", U"y"}});
  const qoc_swapChar *element = nullptr;

  EXPECT_EQ(qstd_vector_qoc_swapChar_find(swaps, swapOf(U"rn", U"m"), &element), QSYS_STATUS_OK);
  EXPECT_EQ(element, &elements(swaps)[1]);
  EXPECT_EQ(qstd_vector_qoc_swapChar_find(swaps, swapOf(U"x", U"y"), &element), QSYS_STATUS_OK);
  EXPECT_EQ(element, &elements(swaps)[0]);
  EXPECT_EQ(qstd_vector_qoc_swapChar_find(swaps, swapOf(U"m", U"rn"), &element), QSYS_STATUS_OK);
  EXPECT_EQ(element, nullptr);
}

TEST(SwapChar, ReportsNullArguments) {
  FailedChecks checks;
  Owned<qoc_swapChar> swap = swapOf(U"x", U"y");
  qsys_bool flag = 7;

  EXPECT_EQ(qoc_swapChar_construct(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapChar_setStrings(swap, nullptr, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapChar_setCharacters(swap, nullptr, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_swapChar_compareEqual(nullptr, swap, &flag), QSYS_STATUS_OK);

  EXPECT_EQ(checks.numNew(), 4);
  EXPECT_EQ(flag, 7u);
  EXPECT_EQ(values(swap->first), codes(U"x"));
}

}  // namespace
}  // namespace qoc::test
