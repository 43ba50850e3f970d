// Every combination of the shortcuts gives the same results, with the same polls.

#include "support/shortcuts.hpp"

#include <gtest/gtest.h>

#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;

/// Words, some of them in two lists, of which one is a copy, and a set of groups and of a swap of two characters.
Owned<qoc_ocrDictionary> madeDictionary() {
  Owned<qoc_ocrDictionary> dictionary = dictionaryOf({{"corn", "com", "born", "cord", "horn"}, {"corn", "acorn"}});
  const Owned<qoc_ocrDictionaryLexicon> copy(elements(dictionary->lexicons)[1]);
  require(qoc_ocrDictionary_setLexiconIExtend(dictionary, 2, copy));
  Owned<qstd_vector_qoc_swapChar> swaps;
  for (const auto &[first, second] : {std::pair("rn", "m"), std::pair("o", "0")}) {
    Owned<qoc_swapChar> swap;
    require(qoc_swapChar_setStrings(swap, word(first), word(second)));
    require(qstd_vector_qoc_swapChar_pushBack(swaps, swap));
  }
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSwapCharacters(set, swaps));
  require(qoc_ocrDictionary_setSwapCharSet(dictionary, set));
  return dictionary;
}

/// All results of some runs, and their polls.
std::string outcome() {
  std::string text;
  for (const char *read : {"c o r n", "e9 0|o m", "x c o m", "b o d n", "a c|e 0 r n"}) {
    for (const int maxEdits : {0, 1, 2}) {
      for (const int options : {0, 1, 2, 3}) {
        const auto params =
            runParams({.maxEdits = maxEdits, .returnBestOnly = options & 1, .matchOption9 = options >> 1});
        const auto dictionary = madeDictionary();
        Owned<qoc_ocrDictionaryResultSet> results;
        const Polls polls;
        require(qoc_ocrDictionary_runMulti(dictionary, reading(read), params, results));
        text += std::to_string(polls.count()) + " polls\n" + describe(*results);
      }
    }
  }
  return text;
}

TEST(Shortcuts, ChangeNothing) {
  const std::string expected = outcome();
  EXPECT_NE(expected.find("corn"), expected.npos);
  for (unsigned bits = 0; bits <= ShortcutsTaken::all; ++bits) {
    const ShortcutsTaken taken(bits);
    ASSERT_EQ(outcome(), expected) << "shortcuts " << bits;
  }
}

}  // namespace
