// Large tables are built under the eyes of the attention check, small ones without a poll; an interrupt leaves behind
// what the description of the operation says.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "run/run_builders.hpp"
#include "support/allocator.hpp"
#include "support/fieldings.hpp"
#include "support/shortcuts.hpp"

namespace {

using namespace qoc::test;

std::vector<std::string> differentWords(int n) {
  std::vector<std::string> list;
  for (int i = 0; i < n; ++i) {
    list.push_back("word" + std::to_string(i));
  }
  std::shuffle(list.begin(), list.end(), std::mt19937(3));
  return list;
}

/// Interrupts the operation at its first poll, its second, and so on, until it is complete; gives the number of polls.
template <class Operation, class AfterInterrupt>
int64_t interruptEverywhere(Operation operation, AfterInterrupt afterInterrupt) {
  for (int64_t numAllowed = 0;; ++numAllowed) {
    qsys_status status = 0;
    int64_t numPolls = 0;
    {
      const Polls polls(numAllowed, interruption);
      status = operation();
      numPolls = polls.count();
    }
    if (status != interruption) {
      EXPECT_EQ(status, 0);
      EXPECT_EQ(numPolls, numAllowed);
      return numPolls;
    }
    EXPECT_EQ(numPolls, numAllowed + 1);
    afterInterrupt();
    if (testing::Test::HasFailure() || numAllowed == 1000) {
      return numAllowed;
    }
  }
}

TEST(InterruptedBuilders, ALongListLeavesTheLexiconAsItIs) {
  const auto longList = words(differentWords(60000)), shortList = words(differentWords(1000));
  for (const auto set : {qoc_ocrDictionaryLexicon_setStrings, qoc_ocrDictionaryLexicon_setStringsSafe}) {
    Owned<qoc_ocrDictionaryLexicon> entry = lexicon({"one", "two"});
    const auto isAsBefore = [&] { EXPECT_EQ(wordsOf(*entry), (std::vector<std::string>{"one", "two"})); };
    EXPECT_GT(interruptEverywhere([&] { return set(entry, longList); }, isAsBefore), 3);
    EXPECT_EQ(entry->strings.core.size, 60000);
    EXPECT_EQ(interruptEverywhere([&] { return set(entry, shortList); }, [] {}), 0);
  }
}

TEST(InterruptedBuilders, AWordMoreOrLessOfALongListLeavesItAsItIs) {
  Owned<qoc_ocrDictionaryLexicon> entry = lexicon(differentWords(60000));
  const auto hasSize = [&](int32_t size) { return [&entry, size] { EXPECT_EQ(entry->strings.core.size, size); }; };
  const auto more = word("one more");
  EXPECT_GT(interruptEverywhere([&] { return qoc_ocrDictionaryLexicon_addString(entry, more); }, hasSize(60000)), 0);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_addString(entry, more), QOC_STATUS_STRING_DUPLICATE);
  EXPECT_GT(interruptEverywhere([&] { return qoc_ocrDictionaryLexicon_removeString(entry, more); }, hasSize(60001)), 0);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_removeString(entry, more), QOC_STATUS_STRING_ABSENT);
}

TEST(InterruptedBuilders, AnIndexThatAMatchMakesIsMadeByTheNext) {
  const ShortcutsTaken taken(ShortcutsTaken::all);
  Owned<qoc_ocrDictionaryLexicon> entry = lexicon(differentWords(60000));
  require(qoc_ocrDictionaryLexicon_addString(entry, word("wxyz")));  // From here on there is no index.
  const auto input = reading("w x y q");
  const auto params = runParams({.maxEdits = 1});
  Owned<qoc_ocrDictionaryResultSet> results;
  int64_t numPolls = 0;
  const auto match = [&] { return qoc_ocrDictionaryLexicon_matchMulti(entry, input, params, nullptr, results); };
  {
    const Polls polls(0, interruption);
    EXPECT_EQ(match(), interruption);
  }
  {
    const Polls polls;
    EXPECT_EQ(match(), 0);
    numPolls = polls.count();
  }
  EXPECT_EQ(matchedWords(*results), std::vector<std::string>{"wxyz"});
  const Polls polls;
  EXPECT_EQ(match(), 0);
  EXPECT_EQ(matchedWords(*results), std::vector<std::string>{"wxyz"});
  EXPECT_GT(numPolls, polls.count());
}

/// A group of so many codes from a first one on, several times over.
Owned<qstd_vector_vectorChar32> sameGroups(int numGroups, int size, Char32 first) {
  Owned<qstd_vectorChar32> group;
  for (int i = 0; i < size; ++i) {
    const Char32 code = first + static_cast<Char32>(i);
    require(qstd_vectorChar32_pushBack(group, &code));
  }
  Owned<qstd_vector_vectorChar32> groups;
  for (int g = 0; g < numGroups; ++g) {
    require(qstd_vector_vectorChar32_pushBack(groups, group));
  }
  return groups;
}

Owned<qoc_swapCharSet> setOf(const Owned<qstd_vector_vectorChar32> &groups) {
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setEquiv(set, groups));
  return set;
}

TEST(InterruptedBuilders, LargeGroupsLeaveASwapSetAsItIsOrReset) {
  const auto before = setOf(sameGroups(1, 3, 'a')), empty = Owned<qoc_swapCharSet>();
  Owned<qoc_swapCharSet> set = before;
  int numUnchanged = 0, numReset = 0;
  const auto isEither = [&] {
    qsys_bool isUnchanged = 0, isReset = 0;
    require(qoc_swapCharSet_compareEqual(set, before, &isUnchanged));
    require(qoc_swapCharSet_compareEqual(set, empty, &isReset));
    numUnchanged += isUnchanged != 0 ? 1 : 0;
    numReset += isReset != 0 ? 1 : 0;
    EXPECT_TRUE(isUnchanged != 0 || isReset != 0);
    require(qoc_swapCharSet_assign(set, before));
  };
  const auto large = sameGroups(30, 5000, 0x110000), small = sameGroups(2, 200, 0x4E00);
  EXPECT_GT(interruptEverywhere([&] { return qoc_swapCharSet_setEquiv(set, large); }, isEither), 5);
  EXPECT_GT(numUnchanged, 0);
  EXPECT_GT(numReset, 0);
  qsys_bool isEqual = 0;
  require(qoc_swapCharSet_compareEqual(set, setOf(large), &isEqual));
  EXPECT_EQ(isEqual, 1u);
  EXPECT_EQ(interruptEverywhere([&] { return qoc_swapCharSet_setEquiv(set, small); }, isEither), 0);
}

TEST(InterruptedBuilders, NothingIsLeftOfAConstruction) {
  LibraryAllocator memory;
  {
    const auto groups = sameGroups(1, 5000, 0x110000);
    const auto list = words(differentWords(60000));
    const int64_t numBefore = memory.numLive();
    const auto isGone = [&] { EXPECT_EQ(memory.numLive(), numBefore); };
    qoc_swapCharSet set;
    EXPECT_GT(interruptEverywhere([&] { return qoc_swapCharSet_constructEquiv(&set, groups); }, isGone), 3);
    require(qoc_swapCharSet_destruct(&set));
    qoc_ocrDictionaryLexicon entry;
    EXPECT_GT(interruptEverywhere([&] { return qoc_ocrDictionaryLexicon_constructStrings(&entry, list); }, isGone), 3);
    require(qoc_ocrDictionaryLexicon_destruct(&entry));
    EXPECT_EQ(memory.numLive(), numBefore);
  }
  EXPECT_EQ(memory.numLive(), 0);
}

}  // namespace
