// A lexicon: its words and their order, what it matches, how often it asks whether to go on.

#include <algorithm>
#include <atomic>
#include <functional>
#include <optional>
#include <random>
#include <utility>

#include "run/run_builders.hpp"
#include "support/allocator.hpp"
#include "support/fieldings.hpp"
#include "support/metered.hpp"
#include "support/shortcuts.hpp"

namespace {

using namespace qoc::test;

using Words = std::vector<std::string>;
using WordVector = qstd_vector_qoc_ocrDictionaryString;

/// The words in the order of the stated exchanges, one by one.
Words exchangeSorted(Words list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    for (std::size_t j = i + 1; j < list.size(); ++j) {
      if (list[j].size() < list[i].size()) {
        std::swap(list[i], list[j]);
      }
    }
  }
  return list;
}

/// Different words over three letters, in random order.
Words randomWords(std::mt19937 &random, int numWords, int longest) {
  Words list;
  while (static_cast<int>(list.size()) < numWords) {
    std::string text(1 + random() % static_cast<unsigned>(longest), 'a');
    for (char &letter : text) {
      letter = static_cast<char>('a' + random() % 3);
    }
    if (std::find(list.begin(), list.end(), text) == list.end()) {
      list.push_back(text);
    }
  }
  return list;
}

/// The numbers below n as words that are all different, of several lengths.
Words numberedWords(int n) {
  Words list;
  for (int i = 0; i < n; ++i) {
    list.push_back(std::to_string(i));
  }
  return list;
}

Owned<qoc_ocrDictionaryResultSet> matches(const qoc_ocrDictionaryLexicon &entry, std::string_view text,
                                          const qoc_ocrDictionaryRunParams *params) {
  Owned<qoc_ocrDictionaryResultSet> set;
  require(qoc_ocrDictionaryLexicon_matchMulti(&entry, reading(text), params, nullptr, set));
  return set;
}

/// The words that a match gives, sorted.
Words foundWords(const qoc_ocrDictionaryLexicon &entry, std::string_view text,
                 const qoc_ocrDictionaryRunParams *params) {
  Words found = matchedWords(*matches(entry, text, params));
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

qsys_bool isMatch(const qoc_ocrDictionaryLexicon &entry, std::string_view text,
                  const qoc_ocrDictionaryRunParams *params) {
  qsys_bool flag = 7;
  require(qoc_ocrDictionaryLexicon_isMatchMulti(&entry, reading(text), params, nullptr, &flag));
  return flag;
}

// Words ---------------------------------------------------------------------------------------------------------------

TEST(LexiconConstruct, GivesAnEmptyLexicon) {
  const Owned<qoc_ocrDictionaryLexicon> entry;
  qsys_bool isEmpty = 0;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_getIsEmpty(entry, &isEmpty), QSYS_STATUS_OK);

  EXPECT_EQ(isEmpty, 1u);
  EXPECT_EQ(wordsOf(*entry), Words{});
}

TEST(LexiconConstructStrings, SetsTheWordsShortestFirst) {
  Owned<qoc_ocrDictionaryLexicon> entry([](qoc_ocrDictionaryLexicon *e) {
    return qoc_ocrDictionaryLexicon_constructStrings(e, words({"abc", "a", "ab"}));
  });
  qsys_bool isEmpty = 7;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_getIsEmpty(entry, &isEmpty), QSYS_STATUS_OK);

  EXPECT_EQ(isEmpty, 0u);
  EXPECT_EQ(wordsOf(*entry), (Words{"a", "ab", "abc"}));
}

TEST(LexiconConstructStrings, RefusesWhatSetStringsRefusesAndLeavesNothing) {
  LibraryAllocator memory;
  {
    qoc_ocrDictionaryLexicon entry;
    EXPECT_EQ(qoc_ocrDictionaryLexicon_constructStrings(&entry, words({"ab", ""})), QOC_STATUS_STRING_EMPTY);
    EXPECT_EQ(qoc_ocrDictionaryLexicon_constructStrings(&entry, words({"ab", "ab"})), QOC_STATUS_STRING_DUPLICATE);
  }
  EXPECT_EQ(memory.numLive(), 0);
}

TEST(LexiconSetStrings, RefusesAnEmptyWord) {
  Owned<qoc_ocrDictionaryLexicon> entry;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStrings(entry, words({"ab", ""})), QOC_STATUS_STRING_EMPTY);
}

TEST(LexiconSetStrings, RefusesAWordThatIsThereTwice) {
  Owned<qoc_ocrDictionaryLexicon> entry;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStrings(entry, words({"ab", "ab"})), QOC_STATUS_STRING_DUPLICATE);
}

TEST(LexiconSetStrings, LooksForEmptyWordsBeforeDuplicates) {
  Owned<qoc_ocrDictionaryLexicon> entry;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStrings(entry, words({"ab", "ab", "c", ""})), QOC_STATUS_STRING_EMPTY);
}

TEST(LexiconSetStrings, LeavesTheLexiconUnchangedWhenItRefuses) {
  auto entry = lexicon({"x", "yz"});

  EXPECT_LT(qoc_ocrDictionaryLexicon_setStrings(entry, words({"ab", ""})), 0);
  EXPECT_LT(qoc_ocrDictionaryLexicon_setStrings(entry, words({"ab", "ab"})), 0);

  EXPECT_EQ(wordsOf(*entry), (Words{"x", "yz"}));
  EXPECT_EQ(foundWords(*entry, "y z", nullptr), Words{"yz"});
  EXPECT_EQ(foundWords(*entry, "a b", nullptr), Words{});
}

TEST(LexiconSetStrings, TakesWordsThatDifferInScoresAloneForDuplicates) {
  auto list = words({"ab", "ab"});
  qoc_ocrDictionaryString *second = nullptr;
  require(qstd_vector_qoc_ocrDictionaryString_getElement(list, 1, &second));
  require(qoc_ocrDictionaryString_setCharacters(second, characters("a5|b6")));
  Owned<qoc_ocrDictionaryLexicon> entry;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStrings(entry, list), QOC_STATUS_STRING_DUPLICATE);
}

TEST(LexiconSetStrings, OrdersWordsAsTheStatedExchangesDo) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);

  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    const Words list = randomWords(random, 1 + static_cast<int>(random() % 24), 5);
    SCOPED_TRACE(testing::PrintToString(list));
    EXPECT_EQ(wordsOf(*lexicon(list)), exchangeSorted(list));
  }
}

TEST(LexiconSetStrings, OrdersALongListAsTheStatedExchangesDo) {
  std::mt19937 random(7);
  Words list = numberedWords(4000);
  std::shuffle(list.begin(), list.end(), random);

  EXPECT_EQ(wordsOf(*lexicon(list)), exchangeSorted(list));
}

TEST(LexiconSetStrings, OrdersWordsOfVeryManyLengthsAsTheStatedExchangesDo) {
  std::mt19937 random(8);
  Words list;
  for (std::size_t length = 1; length <= 600; ++length) {
    list.push_back(std::string(length, 'a'));
    list.push_back(std::string(length, 'b'));
  }
  std::shuffle(list.begin(), list.end(), random);

  EXPECT_EQ(wordsOf(*lexicon(list)), exchangeSorted(list));
}

TEST(LexiconSetStrings, FindsADuplicateInALargeList) {
  // Comparing every pair would take 20,000,000,000 comparisons.
  Words list = numberedWords(200000);
  list.push_back("123");
  const auto strings = words(list);
  Owned<qoc_ocrDictionaryLexicon> entry;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStrings(entry, strings), QOC_STATUS_STRING_DUPLICATE);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStringsSafe(entry, strings), QSYS_STATUS_OK);

  EXPECT_EQ(elements(entry->strings).size(), 200000u);
}

TEST(LexiconSetStringsSafe, PassesOverEmptyWordsAndRepeatedOnes) {
  Owned<qoc_ocrDictionaryLexicon> entry;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStringsSafe(entry, words({"abc", "", "ab", "abc"})), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), (Words{"ab", "abc"}));
}

TEST(LexiconSetStringsSafe, KeepsTheFirstOfEqualWordsAndOrdersAsTheStatedExchangesDo) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);

  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    const Words distinct = randomWords(random, 12, 4);
    Words list;
    Words kept;
    for (int i = 0; i < 30; ++i) {
      const unsigned choice = random() % 13;
      list.push_back(choice == 12 ? "" : distinct[choice]);
      if (choice < 12 && std::find(kept.begin(), kept.end(), list.back()) == kept.end()) {
        kept.push_back(list.back());
      }
    }
    SCOPED_TRACE(testing::PrintToString(list));
    Owned<qoc_ocrDictionaryLexicon> entry;
    EXPECT_EQ(qoc_ocrDictionaryLexicon_setStringsSafe(entry, words(list)), QSYS_STATUS_OK);
    EXPECT_EQ(wordsOf(*entry), exchangeSorted(kept));
  }
}

TEST(LexiconSetStringsSafe, MakesTheLexiconEmptyOfNothingButEmptyWords) {
  auto entry = lexicon({"x"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStringsSafe(entry, words({"", ""})), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), Words{});
  EXPECT_EQ(foundWords(*entry, "x", nullptr), Words{});
}

TEST(LexiconSetStrings, TakesTheLexiconsOwnWords) {
  auto entry = lexicon({"x", "yz"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStrings(entry, &entry->strings), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), (Words{"x", "yz"}));
}

TEST(LexiconAddString, AppendsAWordAndKeepsTheOrderOfLengths) {
  auto entry = lexicon({"x", "xyz"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_addString(entry, word("ab")), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), (Words{"x", "ab", "xyz"}));
  EXPECT_EQ(foundWords(*entry, "a b", nullptr), Words{"ab"});
}

TEST(LexiconAddString, RefusesAWordThatIsThereAndChangesNothing) {
  auto entry = lexicon({"x", "ab"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_addString(entry, word("ab")), QOC_STATUS_STRING_DUPLICATE);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_addStringT(entry, "ab"), QOC_STATUS_STRING_DUPLICATE);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_addStdString(entry, stdString("ab")), QOC_STATUS_STRING_DUPLICATE);

  EXPECT_EQ(wordsOf(*entry), (Words{"x", "ab"}));
}

TEST(LexiconAddString, TakesAnEmptyWordAndPlacesItFirst) {
  auto entry = lexicon({"x", "ab"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_addString(entry, word("")), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), exchangeSorted({"x", "ab", ""}));
  EXPECT_EQ(wordsOf(*entry)[0], "");
  EXPECT_EQ(qoc_ocrDictionaryLexicon_addString(entry, word("")), QOC_STATUS_STRING_DUPLICATE);
}

TEST(LexiconAddString, TakesTextsOfBothKinds) {
  Owned<qoc_ocrDictionaryLexicon> entry;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_addStringT(entry, "ab"), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_addStdString(entry, stdString("c")), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), (Words{"c", "ab"}));
}

TEST(LexiconAddString, OrdersWordsAsTheStatedExchangesDo) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);

  for (int round = 0; round < 100 && !HasFailure(); ++round) {
    const Words list = randomWords(random, 15, 4);
    SCOPED_TRACE(testing::PrintToString(list));
    Owned<qoc_ocrDictionaryLexicon> entry;
    Words expected;
    for (const std::string &text : list) {
      expected.push_back(text);
      expected = exchangeSorted(expected);
      EXPECT_EQ(qoc_ocrDictionaryLexicon_addString(entry, word(text)), QSYS_STATUS_OK);
      EXPECT_EQ(wordsOf(*entry), expected);
    }
  }
}

TEST(LexiconRemoveString, RemovesTheWordAndKeepsTheOrderOfTheOthers) {
  auto entry = lexicon({"b", "a", "cd", "ef", "gh"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_removeString(entry, word("cd")), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), (Words{"b", "a", "ef", "gh"}));
  EXPECT_EQ(foundWords(*entry, "c d", nullptr), Words{});
  EXPECT_EQ(foundWords(*entry, "g h", nullptr), Words{"gh"});
}

TEST(LexiconRemoveString, RemovesBothOfAWordThatIsPresentTwice) {
  auto entry = lexicon({"x", "ab"});
  require(qstd_vector_qoc_ocrDictionaryString_assign(&entry->strings, words({"x", "ab", "cd", "ab"})));

  EXPECT_EQ(qoc_ocrDictionaryLexicon_removeString(entry, word("ab")), QSYS_STATUS_OK);

  EXPECT_EQ(wordsOf(*entry), (Words{"x", "cd"}));
  EXPECT_EQ(foundWords(*entry, "a b", nullptr), Words{});
  EXPECT_EQ(foundWords(*entry, "c d", nullptr), Words{"cd"});
}

TEST(LexiconRemoveString, RefusesAWordThatIsNotThere) {
  auto entry = lexicon({"x", "ab"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_removeString(entry, word("abc")), QOC_STATUS_STRING_ABSENT);

  EXPECT_EQ(wordsOf(*entry), (Words{"x", "ab"}));
}

TEST(LexiconAssign, CopiesTheWordsAndStaysIndependent) {
  auto source = lexicon({"ab", "x"});
  Owned<qoc_ocrDictionaryLexicon> assigned = lexicon({"old"});
  require(qoc_ocrDictionaryLexicon_assign(assigned, source));
  const Owned<qoc_ocrDictionaryLexicon> constructed(*source);

  require(qoc_ocrDictionaryLexicon_addStringT(source, "cd"));

  for (const auto *copy : {&std::as_const(*assigned), &*constructed}) {
    EXPECT_EQ(wordsOf(*copy), (Words{"x", "ab"}));
    EXPECT_EQ(foundWords(*copy, "a b", nullptr), Words{"ab"});
    EXPECT_EQ(foundWords(*copy, "c d", nullptr), Words{});
  }
  EXPECT_EQ(foundWords(*source, "c d", nullptr), Words{"cd"});
}

TEST(LexiconAssign, OfALexiconToItselfKeepsIt) {
  auto entry = lexicon({"ab", "x"});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_assign(entry, entry), QSYS_STATUS_OK);

  EXPECT_EQ(foundWords(*entry, "a b", nullptr), Words{"ab"});
}

TEST(LexiconCompareEqual, RequiresTheSameWordsInTheSameOrder) {
  const auto isEqual = [](const Words &a, const Words &b) {
    qsys_bool flag = 7;
    require(qoc_ocrDictionaryLexicon_compareEqual(lexicon(a), lexicon(b), &flag));
    return flag;
  };

  EXPECT_EQ(isEqual({}, {}), 1u);
  EXPECT_EQ(isEqual({"ab", "x"}, {"x", "ab"}), 1u);
  EXPECT_EQ(isEqual({"ab", "cd"}, {"cd", "ab"}), 0u);
  EXPECT_EQ(isEqual({"ab"}, {"ab", "x"}), 0u);
}

// Matching ------------------------------------------------------------------------------------------------------------

TEST(LexiconMatch, OfAnEmptyLexiconGivesAnEmptyComputedSet) {
  const auto set = matches(*lexicon({}), "a b", runParams({.maxEdits = 2}));

  EXPECT_EQ(set->isComputed, 1u);
  EXPECT_EQ(resultsOf(*set).size(), 0u);
  EXPECT_EQ(isMatch(*lexicon({}), "a b", runParams({.maxEdits = 2})), 0u);
}

TEST(LexiconMatch, LeavesAnEmptyComputedSetWhereNothingMatches) {
  auto set = resultSet({{.name = 1}});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(lexicon({"ab"}), reading("x y"), runParams(), nullptr, set),
            QSYS_STATUS_OK);

  EXPECT_EQ(set->isComputed, 1u);
  EXPECT_EQ(resultsOf(*set).size(), 0u);
}

TEST(LexiconMatch, ResetsTheResultSetFirst) {
  auto set = resultSet({{.name = 1, .given = "z"}});

  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(lexicon({"ab"}), reading("a b"), runParams(), nullptr, set),
            QSYS_STATUS_OK);

  EXPECT_EQ(matchedWords(*set), Words{"ab"});
}

TEST(LexiconMatch, AlignsWordsWithinMaxEditsOfTheInputsLength) {
  const auto entry = lexicon({"a", "ab", "abc", "abcd", "abcde"});

  EXPECT_EQ(foundWords(*entry, "a b c", runParams({.maxEdits = 0, .returnBestOnly = 0})), Words{"abc"});
  EXPECT_EQ(foundWords(*entry, "a b c", runParams({.maxEdits = 1, .returnBestOnly = 0})), (Words{"ab", "abc", "abcd"}));
  EXPECT_EQ(foundWords(*entry, "a b c", runParams({.maxEdits = 2, .returnBestOnly = 0})),
            (Words{"a", "ab", "abc", "abcd", "abcde"}));
}

TEST(LexiconMatch, AllowsNoEditsWithoutParams) {
  EXPECT_EQ(foundWords(*lexicon({"a", "ab", "ac", "abc"}), "a b", nullptr), Words{"ab"});
}

TEST(LexiconMatch, TriesEveryShorterWordWithWindowsOn) {
  const auto entry = lexicon({"a", "bc", "abc", "xy", "abcd", "abcde"});

  EXPECT_EQ(foundWords(*entry, "a b c d", runParams({.maxEdits = 0, .returnBestOnly = 0, .matchOption9 = 1})),
            (Words{"a", "abc", "abcd", "bc"}));
}

TEST(LexiconMatch, DoesNotTryLongerWordsThanTheEditsAllowWithWindowsOn) {
  const auto entry = lexicon({"a", "abc", "abcd"});

  EXPECT_EQ(foundWords(*entry, "a b", runParams({.maxEdits = 1, .returnBestOnly = 0, .matchOption9 = 1})),
            (Words{"a", "abc"}));
}

TEST(LexiconMatch, FindsWordsAtBothEndsOfTheLengthRange) {
  // The binary search for the first word that is long enough, at every place where it can come out.
  Words list;
  for (int length = 1; length <= 9; ++length) {
    list.push_back(std::string(static_cast<std::size_t>(length), 'a'));
    list.push_back(std::string(static_cast<std::size_t>(length), 'b'));
  }
  const auto entry = lexicon(list);

  for (int length = 1; length <= 9; ++length) {
    SCOPED_TRACE(length);
    std::string text;
    for (int i = 0; i < length; ++i) {
      text += i == 0 ? "a" : " a";
    }
    EXPECT_EQ(foundWords(*entry, text, runParams()), Words{std::string(static_cast<std::size_t>(length), 'a')});
  }
  EXPECT_EQ(foundWords(*entry, "a a a a a a a a a a", runParams()), Words{});
}

TEST(LexiconMatch, RanksAllItsResults) {
  const auto set = matches(*lexicon({"xbc", "abc", "ab"}), "a|x b c", runParams({.maxEdits = 1, .returnBestOnly = 0}));

  const Words found = matchedWords(*set);
  ASSERT_GE(found.size(), 2u);
  EXPECT_EQ(found[0], "abc");
  EXPECT_EQ(found[1], "xbc");
  EXPECT_EQ(show(resultsOf(*set)[1].resultStringStatus), "secondary primary primary");
}

TEST(LexiconMatch, ReturnsTheBestAloneWhenAskedTo) {
  EXPECT_EQ(matchedWords(*matches(*lexicon({"abd", "abc"}), "a b c", runParams({.maxEdits = 1}))), Words{"abc"});
}

TEST(LexiconMatch, FindsLaterExactWordsAfterAnExactOne) {
  // "xbc" is found first, exactly, and stops the search for edits; "abc" is exact too, and better.
  EXPECT_EQ(matchedWords(*matches(*lexicon({"xbc", "abc"}), "a|x b c", runParams({.maxEdits = 1}))), Words{"abc"});
}

TEST(LexiconMatch, TellsWhatAResultIs) {
  const auto set = matches(*lexicon({"abc"}), "a b|x c", runParams());

  ASSERT_EQ(resultsOf(*set).size(), 1u);
  const qoc_ocrDictionaryResult &only = resultsOf(*set)[0];
  EXPECT_EQ(only.isComputed, 1u);
  EXPECT_EQ(only.mode, qoc_ocrDictionaryMode_lexicon);
  EXPECT_EQ(show(only.given), "a b|x c");
  EXPECT_EQ(show(only.givenSwap), "a b|x c");
  EXPECT_EQ(show(only.dictionaryString), "abc");
  EXPECT_EQ(only.numEdits, 0);
  EXPECT_EQ(only.resultStringLineStatus, primary);
  EXPECT_EQ(show(only.statusWRTInputStringSwapChar), "primary primary primary");
}

TEST(LexiconMatch, OfAPlainInputIsTheMatchOfAReadingMadeOfIt) {
  const auto entry = lexicon({"abc", "abd", "ab"});
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  Owned<qoc_ocrDictionaryResultSet> plain;
  qsys_bool flag = 7;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_match(entry, word("abc"), params, nullptr, plain), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_isMatch(entry, word("abc"), params, nullptr, &flag), QSYS_STATUS_OK);

  EXPECT_EQ(describe(*plain), describe(*matches(*entry, "a b c", params)));
  EXPECT_EQ(flag, 1u);
}

TEST(LexiconMatch, TakesAnEmptySwapSetForNone) {
  const auto entry = lexicon({"abc", "abd"});
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  const Owned<qoc_swapCharSet> none;
  Owned<qoc_ocrDictionaryResultSet> set;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(entry, reading("a b c"), params, none, set), QSYS_STATUS_OK);

  EXPECT_EQ(describe(*set), describe(*matches(*entry, "a b c", params)));
}

TEST(LexiconMatch, GivesCopiesTheSameAnswers) {
  std::mt19937 random(3);
  const auto entry = lexicon(randomWords(random, 60, 5));
  const Owned<qoc_ocrDictionaryLexicon> copy(*entry);

  for (const char *text : {"a b c", "a|b c b a", "c", "a a a a a a"}) {
    SCOPED_TRACE(text);
    const auto params = runParams({.maxEdits = 2, .returnBestOnly = 0});
    EXPECT_EQ(describe(*matches(*copy, text, params)), describe(*matches(*entry, text, params)));
  }
}

/// A forbidden edit costs more than any other limit: where it counts, the best result is that of the fewest edits.
TEST(LexiconMatch, ALimitBeyondEveryCostAdmitsForbiddenEdits) {
  Owned<qoc_ocrDictionaryLexicon> entry = lexicon({"bbb", "bbabb"});
  require(qoc_ocrDictionaryLexicon_addString(entry, word("")));  // Three extra characters, which are more.
  Owned<qoc_ocrDictionaryResultSet> results;
  for (const int32_t maxEdits : {0x40000000, 0x3FFFFFFF}) {
    const auto params = runParams({.maxEdits = maxEdits,
                                   .matchOption1 = 0,
                                   .matchOption2 = 0,
                                   .matchOption4 = 0,
                                   .minStringLength = 1,
                                   .maxStringLength = 6});
    require(qoc_ocrDictionaryLexicon_matchMulti(entry, reading("a a b"), params, nullptr, results));
    EXPECT_EQ(matchedWords(*results), std::vector<std::string>{"bbb"}) << maxEdits;
  }
}

TEST(LexiconMatchStrings, MarksEveryResultWithTheIndexOfItsInput) {
  const auto entry = lexicon({"ab", "cd"});
  Owned<qoc_ocrDictionaryResultSet> set;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchStrings(entry, words({"xx", "cd", "ab"}), runParams({.returnBestOnly = 0}),
                                                  nullptr, set),
            QSYS_STATUS_OK);

  // "cd" and "ab" stand at place 0 of their sets and have the same rank, so the merge keeps the first of them.
  EXPECT_EQ(set->isComputed, 1u);
  ASSERT_EQ(matchedWords(*set), Words{"cd"});
  EXPECT_EQ(values(resultsOf(*set)[0].inputIndices), std::vector<int32_t>{1});
}

TEST(LexiconMatchStrings, RanksTheResultsOfAllInputsTogether) {
  const auto entry = lexicon({"ab", "cde"});
  Owned<qoc_ocrDictionaryResultSet> set;

  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchStrings(entry, words({"xb", "cde"}),
                                                  runParams({.maxEdits = 1, .returnBestOnly = 0}), nullptr, set),
            QSYS_STATUS_OK);

  // A word that matches exactly is also filed with one substitution, unless the best alone is asked for.
  ASSERT_EQ(matchedWords(*set), (Words{"cde", "cde", "ab"}));
  EXPECT_EQ(resultsOf(*set)[0].numEdits, 0);
  EXPECT_EQ(resultsOf(*set)[1].numEdits, 1);
  EXPECT_EQ(values(resultsOf(*set)[0].inputIndices), std::vector<int32_t>{1});
  EXPECT_EQ(values(resultsOf(*set)[1].inputIndices), std::vector<int32_t>{1});
  EXPECT_EQ(values(resultsOf(*set)[2].inputIndices), std::vector<int32_t>{0});
}

// Yes or no -----------------------------------------------------------------------------------------------------------

TEST(LexiconIsMatch, AsksForAnyWordThatTheWholeInputCanBe) {
  const auto entry = lexicon({"abc", "xy"});

  EXPECT_EQ(isMatch(*entry, "a b c", runParams()), 1u);
  EXPECT_EQ(isMatch(*entry, "q|x y|z", runParams()), 1u);
  EXPECT_EQ(isMatch(*entry, "a b d", runParams()), 0u);
  EXPECT_EQ(isMatch(*entry, "a b d", runParams({.maxEdits = 1})), 1u);
  EXPECT_EQ(isMatch(*entry, "a b c", nullptr), 1u);
}

TEST(LexiconIsMatch, GoesOnToPartsOfTheInput) {
  const auto entry = lexicon({"abc"});

  EXPECT_EQ(isMatch(*entry, "z a b c z", runParams()), 1u);
  EXPECT_EQ(isMatch(*entry, "z a b c z", nullptr), 1u);
  EXPECT_EQ(isMatch(*entry, "z a b z c", runParams()), 0u);
  EXPECT_EQ(isMatch(*entry, "z a b z c", nullptr), 0u);
}

TEST(LexiconIsMatch, EndsWithTheLargestNumberOfEditsToo) {
  const auto entry = lexicon({});

  // The ends of parts are counted up from the smallest number of all; there are no words to stop the search early.
  EXPECT_EQ(isMatch(*entry, "x x x x", runParams({.maxEdits = INT32_MAX})), 0u);
}

TEST(LexiconIsMatch, TriesPartsWithinTheLengthBoundsAlone) {
  const auto entry = lexicon({"ab"});

  EXPECT_EQ(isMatch(*entry, "z z a b z", runParams({.minStringLength = 3, .maxStringLength = 5})), 0u);
  EXPECT_EQ(isMatch(*entry, "z z a b z", runParams({.minStringLength = 2, .maxStringLength = 5})), 1u);
}

TEST(LexiconIsMatch, FindsPartsThroughTheWordsWindowsWithWindowsOn) {
  const auto entry = lexicon({"abc"});

  EXPECT_EQ(isMatch(*entry, "z a b c z", runParams({.matchOption9 = 1})), 1u);
  EXPECT_EQ(isMatch(*entry, "z a b z z", runParams({.matchOption9 = 1})), 0u);
}

TEST(LexiconIsMatch, IsFalseOfAnEmptyReading) {
  EXPECT_EQ(isMatch(*lexicon({"abc"}), "", runParams()), 0u);
  EXPECT_EQ(isMatch(*lexicon({}), "", nullptr), 0u);
}

// Polls ---------------------------------------------------------------------------------------------------------------

/// 300 words of three letters, none of which is "zzz".
Words threeLetterWords() {
  Words list;
  for (int i = 0; i < 300; ++i) {
    list.push_back(
        {static_cast<char>('a' + i / 100), static_cast<char>('a' + i / 10 % 10), static_cast<char>('a' + i % 10)});
  }
  return list;
}

int64_t numPollsOfMatch(const qoc_ocrDictionaryLexicon &entry, std::string_view text,
                        const qoc_ocrDictionaryRunParams *params) {
  const auto input = reading(text);
  Owned<qoc_ocrDictionaryResultSet> set;
  Polls polls;
  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(&entry, input, params, nullptr, set), QSYS_STATUS_OK);
  return polls.count();
}

int64_t numPollsOfIsMatch(const qoc_ocrDictionaryLexicon &entry, std::string_view text,
                          const qoc_ocrDictionaryRunParams *params) {
  const auto input = reading(text);
  qsys_bool flag = 7;
  Polls polls;
  EXPECT_EQ(qoc_ocrDictionaryLexicon_isMatchMulti(&entry, input, params, nullptr, &flag), QSYS_STATUS_OK);
  return polls.count();
}

TEST(LexiconPolls, ComeOnceEvery128Words) {
  EXPECT_EQ(numPollsOfMatch(*lexicon(threeLetterWords()), "a a a", runParams()), 3);
  EXPECT_EQ(numPollsOfMatch(*lexicon(threeLetterWords()), "z z z", runParams()), 3);
  EXPECT_EQ(numPollsOfMatch(*lexicon({"abc"}), "a b c", runParams()), 1);
  EXPECT_EQ(numPollsOfMatch(*lexicon({}), "a b c", runParams()), 0);
}

TEST(LexiconPolls, CountTheWordsOfTheWholeLexiconAndNotOfTheRange) {
  Words list = threeLetterWords();
  list.resize(100);
  for (int i = 0; i < 100; ++i) {
    list.push_back(list[static_cast<std::size_t>(i)] + "xx");
  }
  const auto entry = lexicon(list);

  // Words 100 to 199 are in the range, and 128 alone is a multiple of 128.
  EXPECT_EQ(numPollsOfMatch(*entry, "a b c x x", runParams()), 1);
  // Words 0 to 99.
  EXPECT_EQ(numPollsOfMatch(*entry, "a b c", runParams()), 1);
  // None.
  EXPECT_EQ(numPollsOfMatch(*entry, "a b", runParams()), 0);
}

TEST(LexiconPolls, ComeOnceForEveryWindowStartOfEveryWord) {
  const auto params = runParams({.matchOption9 = 1});

  EXPECT_EQ(numPollsOfMatch(*lexicon({"abc"}), "a b c d", params), 1 + 4);
  EXPECT_EQ(numPollsOfMatch(*lexicon({"abc", "zzz"}), "a b c d", params), 1 + 2 * 4);
  EXPECT_EQ(numPollsOfMatch(*lexicon({"zzzz"}), "a b c d", params), 1 + 4);
  EXPECT_EQ(numPollsOfMatch(*lexicon(threeLetterWords()), "z z z z", params), 3 + 300 * 4);
}

TEST(LexiconPolls, OfTheYesOrNoTestStopAtTheFirstMatch) {
  Words list = threeLetterWords();

  EXPECT_EQ(numPollsOfIsMatch(*lexicon(list), "a a a", runParams()), 1);
  EXPECT_EQ(numPollsOfIsMatch(*lexicon(list), "c j j", runParams()), 3);
}

TEST(LexiconPolls, OfTheYesOrNoTestComeOnceForEveryStartOfAPart) {
  // The whole input is too long for the word. Then every start, and the word once for each part of two positions.
  EXPECT_EQ(numPollsOfIsMatch(*lexicon({"ab"}), "x x x", nullptr), 3 + 2);
  EXPECT_EQ(numPollsOfIsMatch(*lexicon({"ab"}), "x x x", runParams()), 3 + 2);
  EXPECT_EQ(numPollsOfIsMatch(*lexicon({"ab"}), "x a b", runParams()), 2 + 2);
  EXPECT_EQ(numPollsOfIsMatch(*lexicon({}), "x x x", runParams()), 3);
}

TEST(LexiconPolls, OfTheYesOrNoTestLeaveThePartsToTheWordsWithWindowsOn) {
  // The word, then each start of its own windows.
  EXPECT_EQ(numPollsOfIsMatch(*lexicon({"ab"}), "x x x", runParams({.matchOption9 = 1})), 1 + 3);
}

TEST(LexiconInterrupt, EndsEveryOperationWithItsStatusAtAnyPollAndTheSameObjectsWorkAgain) {
  const auto entry = lexicon({"abc", "zz", "bcd"});
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0, .matchOption9 = 1});
  const auto plainParams = runParams({.returnBestOnly = 0});
  const auto input = reading("a b c|x d");
  const auto inputs = words({"abc", "xbcdx"});
  Owned<qoc_ocrDictionaryResultSet> set;
  qsys_bool flag = 7;
  const std::function<qsys_status()> operations[] = {
      [&] { return qoc_ocrDictionaryLexicon_matchMulti(entry, input, params, nullptr, set); },
      [&] { return qoc_ocrDictionaryLexicon_match(entry, word("xabc"), params, nullptr, set); },
      [&] { return qoc_ocrDictionaryLexicon_matchStrings(entry, inputs, params, nullptr, set); },
      [&] { return qoc_ocrDictionaryLexicon_isMatchMulti(entry, reading("q q q q"), params, nullptr, &flag); },
      [&] { return qoc_ocrDictionaryLexicon_isMatchMulti(entry, reading("q q q q"), plainParams, nullptr, &flag); },
      [&] { return qoc_ocrDictionaryLexicon_isMatch(entry, word("qqabcq"), plainParams, nullptr, &flag); }};

  for (const auto &operation : operations) {
    SCOPED_TRACE(&operation - operations);
    ASSERT_EQ(operation(), QSYS_STATUS_OK);
    const std::string expected = describe(*set);
    const qsys_bool expectedFlag = flag;
    int64_t numPolls = 0;
    {
      Polls polls;
      ASSERT_EQ(operation(), QSYS_STATUS_OK);
      numPolls = polls.count();
    }
    ASSERT_GT(numPolls, 1);

    for (int64_t n = 0; n < numPolls; ++n) {
      SCOPED_TRACE(n);
      {
        Polls polls(n, interruption);
        EXPECT_EQ(operation(), interruption);
        EXPECT_EQ(polls.count(), n + 1);
      }
      EXPECT_EQ(operation(), QSYS_STATUS_OK);
      EXPECT_EQ(describe(*set), expected);
      EXPECT_EQ(flag, expectedFlag);
    }
  }
}

TEST(Lexicon, ReportsMissingArgumentsAndTouchesNothing) {
  const auto entry = lexicon({"ab"});
  auto changed = lexicon({"ab"});
  const auto input = reading("a b");
  const auto set = resultSet({{.name = 1}}, 0);
  auto out = resultSet({{.name = 1}}, 0);
  const std::string before = describe(*out);
  qsys_bool flag = 7;
  FailedChecks failed;

  const auto expectReport = [&](qsys_status outcome) {
    EXPECT_EQ(outcome, QSYS_STATUS_OK);
    EXPECT_EQ(failed.numNew(), 1);
  };
  expectReport(qoc_ocrDictionaryLexicon_construct(nullptr));
  expectReport(qoc_ocrDictionaryLexicon_constructCopy(nullptr, entry));
  expectReport(qoc_ocrDictionaryLexicon_assign(changed, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_setStrings(changed, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_setStringsSafe(changed, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_getStrings(entry, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_getIsEmpty(entry, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_compareEqual(entry, entry, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_compareEqual(entry, nullptr, &flag));
  expectReport(qoc_ocrDictionaryLexicon_addString(changed, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_addStringT(changed, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_addStdString(changed, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_removeString(changed, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_isMatch(entry, nullptr, nullptr, nullptr, &flag));
  expectReport(qoc_ocrDictionaryLexicon_isMatchMulti(entry, nullptr, nullptr, nullptr, &flag));
  expectReport(qoc_ocrDictionaryLexicon_isMatchMulti(nullptr, input, nullptr, nullptr, &flag));
  expectReport(qoc_ocrDictionaryLexicon_isMatchMulti(entry, input, nullptr, nullptr, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_match(entry, nullptr, nullptr, nullptr, out));
  expectReport(qoc_ocrDictionaryLexicon_matchMulti(nullptr, input, nullptr, nullptr, out));
  expectReport(qoc_ocrDictionaryLexicon_matchMulti(entry, nullptr, nullptr, nullptr, out));
  expectReport(qoc_ocrDictionaryLexicon_matchMulti(entry, input, nullptr, nullptr, nullptr));
  expectReport(qoc_ocrDictionaryLexicon_matchStrings(entry, nullptr, nullptr, nullptr, out));
  EXPECT_EQ(flag, 7u);
  EXPECT_EQ(describe(*out), before);
  EXPECT_EQ(wordsOf(*changed), Words{"ab"});
}

TEST(Lexicon, TellsWordsApartWhoseHashesAreEqual) {
  // Two words that the set of different words puts in the same place for the same hash.
  Owned<WordVector> list;
  for (const std::u32string_view text :
       {std::u32string_view(U"\x40C4F53E\x61", 2), std::u32string_view(U"\x1EFCDAD1\xC7E4E1FA", 2)}) {
    require(qstd_vector_qoc_ocrDictionaryString_pushBack(list, word(text)));
  }
  Owned<qoc_ocrDictionaryLexicon> entry;
  EXPECT_EQ(qoc_ocrDictionaryLexicon_setStrings(entry, list), QSYS_STATUS_OK);
  EXPECT_EQ(entry->strings.core.size, 2);
}

TEST(Lexicon, MatchesAcrossThe64thPositionOfAReading) {
  const auto entry = lexicon({"needles", "noodles"});
  const auto found = plain(std::string(60, '.') + "needles" + std::string(30, '.'));
  const auto absent = plain(std::string(60, '.') + "needlas" + std::string(30, '.'));
  for (const RunOptions &options : {RunOptions{}, RunOptions{.matchOption9 = 1}}) {
    const auto params = runParams(options);
    qsys_bool isMatch = 2;
    require(qoc_ocrDictionaryLexicon_isMatchMulti(entry, found, params, nullptr, &isMatch));
    EXPECT_EQ(isMatch, 1u);
    require(qoc_ocrDictionaryLexicon_isMatchMulti(entry, absent, params, nullptr, &isMatch));
    EXPECT_EQ(isMatch, 0u);
  }
}

TEST(Lexicon, FindsTheBestWordWhateverItsEdits) {
  const auto entry = lexicon({std::string(20, 'a'), std::string(20, 'b')});
  for (const int32_t edits : {0, 1, 2, 3, 4, 5, 7, 9}) {
    const auto read = plain(std::string(static_cast<std::size_t>(edits), 'x') +
                            std::string(static_cast<std::size_t>(20 - edits), 'a'));
    for (const int32_t maxEdits : {edits, 9}) {
      Owned<qoc_ocrDictionaryResultSet> results;
      require(qoc_ocrDictionaryLexicon_matchMulti(entry, read, runParams({.maxEdits = maxEdits}), nullptr, results));
      ASSERT_EQ(matchedWords(*results), Words{std::string(20, 'a')}) << edits;
      EXPECT_EQ(resultsOf(*results)[0].numEdits, edits);
    }
  }
}

/// A swap set of one multi-character swap.
Owned<qoc_swapCharSet> multiSwap(std::string_view first, std::string_view second) {
  const auto a = word(first), b = word(second);
  Owned<qoc_swapChar> swap;
  require(qoc_swapChar_setStrings(swap, a, b));
  Owned<qstd_vector_qoc_swapChar> list;
  require(qstd_vector_qoc_swapChar_pushBack(list, swap));
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSwapCharacters(set, list));
  return set;
}

TEST(Lexicon, MatchesVariantsOfLongReadings) {
  const auto set = multiSwap("rn", "m");
  for (const std::size_t size : {300u, 6000u}) {  // The second is too long for tables.
    const std::string stem(size, 'x');
    const auto entry = lexicon({stem + "m", stem + "k"});
    const auto read = plain(stem + "rn");
    for (const int32_t maxEdits : {0, 1}) {
      std::optional<Polls> polls;  // A handler of the program's own is asked about every variant.
      if (maxEdits == 1) {
        polls.emplace();
      }
      Owned<qoc_ocrDictionaryResultSet> results;
      require(qoc_ocrDictionaryLexicon_matchMulti(entry, read, runParams({.maxEdits = maxEdits}), set, results));
      ASSERT_EQ(results->results.core.size, 1);
      EXPECT_EQ(show(resultsOf(*results)[0].dictionaryString), stem + "m");
      EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
    }
  }
}

TEST(Lexicon, MatchesVariantsWithAnyNumberOfEdits) {
  const auto set = multiSwap("rn", "m");
  const auto entry = lexicon({"ham", "harm"});
  const auto best = [&](const qoc_ocrDictionaryRunParams *params) {
    Owned<qoc_ocrDictionaryResultSet> results;
    require(qoc_ocrDictionaryLexicon_matchMulti(entry, reading("h a r n"), params, set, results));
    return results->results.core.size == 0 ? std::string() : show(resultsOf(*results)[0].dictionaryString);
  };
  EXPECT_EQ(best(nullptr), "ham");
  EXPECT_EQ(best(runParams({.maxEdits = -1})), "");  // No word's length is within less than no edits.
  for (const int32_t maxEdits : {0, 1, 3, 200, 201, INT32_MAX}) {
    EXPECT_EQ(best(runParams({.maxEdits = maxEdits})), "ham") << maxEdits;
  }
  EXPECT_EQ(best(runParams({.matchOption9 = 1})), "ham");
}

TEST(Lexicon, VariantsEndAtAFlagThatIsRaised) {
  const auto set = multiSwap("rn", "m");
  Words list;
  for (int i = 0; i < 300; ++i) {
    list.push_back("x" + std::to_string(1000 + i));
  }
  const auto entry = lexicon(list);
  const auto read = reading("x 1 0 r n");
  std::atomic<int32_t> flag = 1;
  qsys_attention_setHandler(qsys_attention_flagHandler, &flag);
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool isMatch = 0;
  const auto params = runParams({.maxEdits = 2});
  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(entry, read, params, set, results), QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_isMatchMulti(entry, read, params, set, &isMatch), QSYS_STATUS_INTERRUPTED);
  flag = 0;
  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(entry, read, params, set, results), QSYS_STATUS_OK);
  qsys_attention_setHandler(nullptr, nullptr);
}

TEST(Lexicon, ReadingsOfMoreVariantsThanCanBeCountedEndAtThePollThatRefuses) {
  const auto set = multiSwap("rn", "m");
  const auto entry = lexicon({"m"});
  std::string text;
  for (int i = 0; i < 70; ++i) {
    text += "rn";
  }
  Owned<qoc_ocrDictionaryResultSet> results;
  const auto params = runParams({.maxEdits = 1});
  const Polls polls(1000);
  EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(entry, plain(text), params, set, results), QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(polls.count(), 1001);
}

TEST(Lexicon, LongListsAreSearchedForWordsAndForWindows) {
  Words list = {"needle"};
  for (int i = 0; i < 600; ++i) {
    list.push_back("Z" + std::to_string(1000 + i));
  }
  const auto entry = lexicon(list);
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionaryLexicon_matchMulti(entry, plain("xxneedlexx"), runParams({.matchOption9 = 1}), nullptr,
                                              results));
  EXPECT_EQ(matchedWords(*results), Words{"needle"});
  require(qoc_ocrDictionaryLexicon_matchMulti(entry, plain("neeble"), runParams({.maxEdits = 1}), nullptr, results));
  EXPECT_EQ(matchedWords(*results), Words{"needle"});
}

TEST(Lexicon, LongWordsAreInterruptedInTheMidstOfOne) {
  const std::string text(3000, 'a');
  const auto entry = lexicon({text + "bcd"});
  const auto read = plain("xy" + text);
  const auto params = runParams({.maxEdits = 100});
  Owned<qoc_ocrDictionaryResultSet> results;
  int64_t numPolls = 0;
  const PollingMeters meters(1);
  {
    const Polls polls;
    ASSERT_EQ(qoc_ocrDictionaryLexicon_matchMulti(entry, read, params, nullptr, results), QSYS_STATUS_OK);
    numPolls = polls.count();
  }
  EXPECT_GT(numPolls, 100);
  for (const int64_t numAllowed : {numPolls / 4, numPolls / 2, numPolls - 2}) {
    const Polls polls(numAllowed);
    EXPECT_EQ(qoc_ocrDictionaryLexicon_matchMulti(entry, read, params, nullptr, results), QSYS_STATUS_INTERRUPTED);
  }
}

TEST(Lexicon, OfVariantsBehindAnExactOneOnlyExactOnesAreTried) {
  const auto set = multiSwap("rn", "m");
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionaryLexicon_matchMulti(lexicon({"arn", "am", "amb"}), reading("a r n"),
                                              runParams({.maxEdits = 1}), set, results));
  ASSERT_EQ(results->results.core.size, 1);
  EXPECT_EQ(show(resultsOf(*results)[0].dictionaryString), "arn");
  EXPECT_EQ(resultsOf(*results)[0].numEdits, 0);
}

TEST(Lexicon, VariantsWhoseEditsAreForbiddenCostMore) {
  const auto set = multiSwap("rn", "m");
  Owned<qoc_ocrDictionaryResultSet> results;
  const auto numEditsWith = [&](int32_t substitution) {
    require(qoc_ocrDictionaryLexicon_matchMulti(
        lexicon({"mbc"}), reading("r n x c"), runParams({.maxEdits = 3, .matchOption1 = substitution}), set, results));
    return results->results.core.size == 0 ? -1 : resultsOf(*results)[0].numEdits;
  };
  EXPECT_EQ(numEditsWith(1), 1);
  EXPECT_EQ(numEditsWith(0), 2);
}

TEST(Lexicon, VeryLongListsAreScannedInParts) {
  Words list;
  for (int i = 0; i < 70000; ++i) {
    list.push_back(std::to_string(100000 + i));
  }
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionaryLexicon_matchMulti(lexicon(list), plain("x169998x"), runParams({.matchOption9 = 1}), nullptr,
                                              results));
  EXPECT_EQ(matchedWords(*results), Words{"169998"});
}

TEST(Lexicon, WordsBehindOneThatAddsTwoResultsAreFiledBehindBoth) {
  const auto entry = lexicon({"xq", "ab", "cd", "ad"});
  const auto read = reading("x|a|c y|b|d");
  std::string outcomes[2];
  for (const unsigned bits : {ShortcutsTaken::all, ShortcutsTaken::none}) {
    const ShortcutsTaken taken(bits);
    Owned<qoc_ocrDictionaryResultSet> results;
    require(qoc_ocrDictionaryLexicon_matchMulti(entry, read, runParams({.maxEdits = 2, .returnBestOnly = 0}), nullptr,
                                                results));
    outcomes[bits == ShortcutsTaken::all ? 0 : 1] = describe(*results);
  }
  EXPECT_EQ(outcomes[0], outcomes[1]);
}

}  // namespace
