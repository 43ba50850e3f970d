// The index of a lexicon's words: what it finds, how it is shared, and its first use by several threads at once.

#include <algorithm>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "kinds/lexicon_index.hpp"
#include "kinds/lexicon_roads.hpp"
#include "run/run_builders.hpp"
#include "support/shortcuts.hpp"
#include "text/bit_distance.hpp"

namespace {

using namespace qoc::test;

using Words = std::vector<std::string>;

/// A reading with one candidate at each position.
Owned<qoc_ocrDictionaryStringMulti> plainReading(const std::string &text) {
  Owned<qoc_ocrDictionaryStringMulti> made;
  require(qoc_ocrDictionaryStringMulti_setStringT(made, text.c_str()));
  return made;
}

std::string randomText(std::mt19937 &random, std::size_t least, std::size_t most, int numLetters) {
  std::string text(least + random() % (most - least + 1), 'a');
  for (char &letter : text) {
    letter = static_cast<char>('a' + random() % static_cast<unsigned>(numLetters));
  }
  return text;
}

Words randomList(std::mt19937 &random, std::size_t numWords, std::size_t most, int numLetters) {
  Words list;
  while (list.size() < numWords) {
    list.push_back(randomText(random, 1, most, numLetters));
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
  }
  std::shuffle(list.begin(), list.end(), random);
  return list;
}

std::vector<std::int32_t> wordsWithin(const qstd_vector_qoc_ocrDictionaryString &strings, const std::string &text,
                                      std::int32_t edits) {
  std::array<std::uint64_t, 256> rows = {};
  for (std::size_t j = 0; j < text.size(); ++j) {
    rows[static_cast<std::uint8_t>(text[j])] |= std::uint64_t{1} << j;
  }
  std::vector<std::int32_t> within;
  for (std::int32_t i = 0; i < strings.core.size; ++i) {
    std::vector<std::uint8_t> letters;
    for (const qoc_ocrDictionaryChar &character : qoc::view(qoc::view(strings)[static_cast<std::size_t>(i)])) {
      letters.push_back(static_cast<std::uint8_t>(character.code));
    }
    if (qoc::bitDistance(rows, static_cast<std::int32_t>(text.size()), letters.data(),
                         static_cast<std::int32_t>(letters.size())) <= edits) {
      within.push_back(i);
    }
  }
  return within;
}

void expectExactlyTheWordsWithin(std::mt19937 &random, const qoc_ocrDictionaryLexicon &lexicon, std::size_t longest,
                                 int numLetters) {
  const qoc::LexiconIndex *index = qoc::indexOf(lexicon);
  ASSERT_NE(index, nullptr);
  const std::string text = randomText(random, 0, longest, numLetters);
  const Owned<qoc_ocrDictionaryStringMulti> read = plainReading(text);
  const qoc::ReadingMatches matches(*read, nullptr);
  qoc::IndexQuery query;
  index->prepare(matches, {0, matches.size()}, query);
  std::vector<std::int32_t> found;
  for (std::int32_t edits = 0; edits <= 5; ++edits) {
    const std::vector<std::int32_t> within = wordsWithin(lexicon.strings, text, edits);
    for (const bool usesBlocks : {true, false}) {
      qoc::lexiconRoads().usesBlocks = usesBlocks;
      index->find(query, edits, 0, lexicon.strings.core.size, found);
      EXPECT_EQ(found, within) << text << ", edits " << edits << ", blocks " << usesBlocks;
    }
    qoc::lexiconRoads() = {};
  }
}

TEST(LexiconIndex, FindsExactlyTheWordsWithinTheEditsThroughTries) {
  std::mt19937 random(3);
  for (const int numLetters : {2, 4, 20}) {
    const Owned<qoc_ocrDictionaryLexicon> entry = lexicon(randomList(random, 1500, 14, numLetters));
    for (int i = 0; i < 60; ++i) {
      expectExactlyTheWordsWithin(random, *entry, 16, numLetters);
    }
  }
}

/// The least number of allowed edits that make the text the word; `edits` where it takes more.
std::int32_t allowedEdits(const std::string &text, const std::string &word, const qoc::SomeEdits &allowed,
                          std::int32_t edits) {
  std::vector<std::vector<std::int32_t>> least(text.size() + 1, std::vector<std::int32_t>(word.size() + 1, edits));
  least[0][0] = 0;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    for (std::size_t j = 0; j <= word.size(); ++j) {
      const auto step = [&](std::size_t di, std::size_t dj, std::int32_t cost, bool isAllowed) {
        if (isAllowed) least[i + di][j + dj] = std::min(least[i + di][j + dj], least[i][j] + cost);
      };
      const auto has = [i](std::uint64_t places) { return (places >> i & 1) != 0; };
      const bool isText = i < text.size(), isWord = j < word.size();
      step(1, 1, 0, isText && isWord && (text[i] == word[j] || text[i] == '*'));
      step(1, 1, 1, isText && isWord && has(allowed.substituted));
      step(1, 0, 1, isText && has(allowed.extra));
      step(0, 1, 1, isWord && has(allowed.missing));
    }
  }
  return least[text.size()][word.size()];
}

TEST(LexiconIndex, FindsExactlyTheWordsWithinTheEditsThatAreAllowedThroughTries) {
  std::mt19937 random(5);
  const Words list = randomList(random, 1500, 14, 4);
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon(list);
  const auto strings = qoc::view(entry->strings);
  std::size_t numFound = 0;
  for (int i = 0; i < 60; ++i) {
    std::string text = list[random() % list.size()];
    if (text.size() < 8) text += randomText(random, 8, 8, 4);
    if (i % 3 == 0) text[random() % text.size()] = '*';
    qoc::IndexQuery query;
    query.allowsAll = false;
    query.allowed = {random(), random() & random(), random() & random()};
    const auto forEachMatch = [&](auto add) {
      for (std::size_t at = 0; at < text.size(); ++at) {
        add(static_cast<std::int32_t>(at), text[at] == '*' ? QOC_CHAR_ANY : static_cast<Char32>(text[at]));
      }
    };
    qoc::lexiconRoads().usesBlocks = false;
    for (std::int32_t edits = 0; edits <= 3; ++edits) {
      qoc::indexOf(*entry)->prepare(static_cast<std::int32_t>(text.size()), edits > 0, forEachMatch, query);
      std::vector<std::int32_t> found, within;
      qoc::indexOf(*entry)->find(query, edits, 0, entry->strings.core.size, found);
      for (std::size_t k = 0; k < strings.size(); ++k) {
        std::string letters;
        for (const auto &character : qoc::view(strings[k])) letters += static_cast<char>(character.code);
        if (allowedEdits(text, letters, query.allowed, edits + 1) <= edits) {
          within.push_back(static_cast<std::int32_t>(k));
        }
      }
      EXPECT_EQ(found, within) << text << ", edits " << edits;
      numFound += found.size();
    }
    qoc::lexiconRoads() = {};
  }
  EXPECT_GT(numFound, 100u);
}

/// Of readings too long for tries, and in lists too short for them, more may be found.
TEST(LexiconIndex, FindsAtLeastTheWordsOfAReadingThatIsNotAtHand) {
  const std::string longText(70, 'a');
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon({longText, longText + "b", std::string(70, 'b'), "aa"});
  qoc::IndexQuery query;
  const auto forEachMatch = [&](auto add) {
    for (std::int32_t at = 0; at < 70; ++at) add(at, 'a');
  };
  std::vector<std::int32_t> found;
  qoc::indexOf(*entry)->prepare(70, true, forEachMatch, query);
  qoc::indexOf(*entry)->find(query, 0, 1, 3, found);
  ASSERT_EQ(found.size(), 1u);  // Of the two words of 70 letters; the other has none that match.
  EXPECT_EQ(qoc::view(qoc::view(entry->strings)[static_cast<std::size_t>(found[0])])[0].code, Char32{'a'});
  qoc::indexOf(*entry)->find(query, 1, 1, 4, found);
  EXPECT_EQ(found, std::vector<std::int32_t>({1, 2, 3}));
}

TEST(LexiconIndex, FindsExactlyTheWordsWithinTheEditsByScan) {
  std::mt19937 random(4);
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon(randomList(random, 200, 10, 3));
  for (int i = 0; i < 60; ++i) {
    expectExactlyTheWordsWithin(random, *entry, 12, 3);
  }
}

/// Blocks of 32 words: the parts of a list that a scan is done in begin and end within them, too.
TEST(LexiconIndex, FindsExactlyTheWordsOfAPartOfTheList) {
  std::mt19937 random(8);
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon(randomList(random, 400, 7, 5));
  const qoc::LexiconIndex *index = qoc::indexOf(*entry);
  for (int i = 0; i < 200; ++i) {
    const std::string text = randomText(random, 0, 16, 5);
    const Owned<qoc_ocrDictionaryStringMulti> read = plainReading(text);
    const qoc::ReadingMatches matches(*read, nullptr);
    qoc::IndexQuery query;
    index->prepare(matches, {0, matches.size()}, query);
    const auto first = static_cast<std::int32_t>(random() % 400);
    const auto end = first + static_cast<std::int32_t>(random() % static_cast<unsigned>(401 - first));
    for (std::int32_t edits = 0; edits <= 20; edits += 4) {
      std::vector<std::int32_t> within = wordsWithin(entry->strings, text, edits);
      std::erase_if(within, [&](std::int32_t word) { return word < first || word >= end; });
      std::vector<std::int32_t> found;
      index->find(query, edits, first, end, found);
      EXPECT_EQ(found, within) << text << ", edits " << edits << ", words " << first << " to " << end;
    }
  }
}

/// Words enough for blocks, but readings of more positions than a block's columns have bits, and of as many.
TEST(LexiconIndex, FindsExactlyTheWordsWithinTheEditsOfReadingsTooLongForBlocks) {
  std::mt19937 random(10);
  Words list;
  for (int i = 0; i < 400; ++i) {
    list.push_back(randomText(random, 15, 20, 2));
  }
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon(list);
  for (int i = 0; i < 60; ++i) {
    const std::string text = randomText(random, 14, 22, 2);
    const Owned<qoc_ocrDictionaryStringMulti> read = plainReading(text);
    const qoc::ReadingMatches matches(*read, nullptr);
    qoc::IndexQuery query;
    qoc::indexOf(*entry)->prepare(matches, {0, matches.size()}, query);
    std::vector<std::int32_t> found;
    for (std::int32_t edits = 0; edits <= 8; edits += 2) {
      qoc::indexOf(*entry)->find(query, edits, 0, entry->strings.core.size, found);
      EXPECT_EQ(found, wordsWithin(entry->strings, text, edits)) << text << ", edits " << edits;
    }
  }
}

TEST(LexiconIndex, CountsTheLettersOfWordsUpToALength) {
  Owned<qstd_vector_qoc_ocrDictionaryString> list;
  for (const char *text : {"a", "b", "cc", "dddd"}) {
    require(qstd_vector_qoc_ocrDictionaryString_pushBack(list, word(text)));
  }
  qoc::WorkMeter meter;
  const qoc::LetterTable table(qoc::view(*list), meter);
  const qoc::WordScan scan(qoc::WordLetters(qoc::view(*list), table, meter), meter);
  std::vector<std::size_t> numLetters;
  for (std::int32_t length = -1; length <= 5; ++length) {
    numLetters.push_back(scan.numLettersUpTo(length));
  }
  EXPECT_EQ(numLetters, (std::vector<std::size_t>{0, 0, 2, 4, 4, 8, 8}));
}

/// More letters than one table of a block's scan holds, and so many codes that some share a letter: what is found then
/// is as much with blocks as without, and no word within the edits is left out.
TEST(LexiconIndex, FindsTheSameByBlocksWithManyLetters) {
  std::mt19937 random(9);
  for (const std::uint32_t numCodes : {60u, 200u, 600u}) {
    Owned<qstd_vector_qoc_ocrDictionaryString> list;
    std::vector<qoc_ocrDictionaryChar> codes;
    for (int i = 0; i < 1000; ++i) {
      codes.resize(1 + random() % 10);
      std::ranges::generate(codes, [&] {
        return qoc_ocrDictionaryChar{static_cast<Char32>(0x4E00 + random() % numCodes), 0};
      });
      Owned<qoc_ocrDictionaryString> string;
      require(qstd_vector_qoc_ocrDictionaryChar_assignElements(&string->characters, codes.data(),
                                                               static_cast<std::int32_t>(codes.size())));
      require(qstd_vector_qoc_ocrDictionaryString_pushBack(list, string));
    }
    Owned<qoc_ocrDictionaryLexicon> entry;
    require(qoc_ocrDictionaryLexicon_setStringsSafe(entry, list));
    for (int i = 0; i < 40; ++i) {
      Owned<qoc_ocrDictionaryStringMulti> read;
      const auto &near = qoc::view(*list)[random() % 1000];
      require(qoc_ocrDictionaryStringMulti_setString(read, &near));
      if (i % 4 == 0) {
        qoc_ocrDictionaryCharMulti *position = nullptr;
        require(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(&read->positions, 0, &position));
        const qoc_ocrDictionaryChar any = {QOC_CHAR_ANY, 0};
        require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &any));
      }
      const qoc::ReadingMatches matches(*read, nullptr);
      qoc::IndexQuery query;
      qoc::indexOf(*entry)->prepare(matches, {0, matches.size()}, query);
      std::vector<std::int32_t> found;
      std::vector<std::int32_t> foundEach;
      for (std::int32_t edits = 0; edits <= 6; ++edits) {
        qoc::indexOf(*entry)->find(query, edits, 0, entry->strings.core.size, found);
        qoc::lexiconRoads().usesBlocks = false;
        qoc::indexOf(*entry)->find(query, edits, 0, entry->strings.core.size, foundEach);
        qoc::lexiconRoads() = {};
        EXPECT_EQ(found, foundEach) << numCodes << " codes, edits " << edits;
        EXPECT_FALSE(found.empty());
      }
    }
  }
}

TEST(LexiconIndex, WordsOfTheLongestLengthsInTriesAndBeyondAreFound) {
  Words list;
  for (std::size_t length = 55; length <= 80; ++length) {
    list.push_back(std::string(length, 'a'));
    list.push_back(std::string(length - 1, 'a') + "b");
  }
  const auto before = qoc::lexiconRoads();
  qoc::lexiconRoads().minWordsForTries = 0;
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon(list);
  for (std::size_t length = 50; length <= 63; ++length) {
    const Owned<qoc_ocrDictionaryStringMulti> read = plainReading(std::string(length, 'a'));
    const qoc::ReadingMatches matches(*read, nullptr);
    qoc::IndexQuery query;
    qoc::indexOf(*entry)->prepare(matches, {0, matches.size()}, query);
    std::vector<std::int32_t> found;
    for (std::int32_t edits = 0; edits <= 4; ++edits) {
      qoc::indexOf(*entry)->find(query, edits, 0, entry->strings.core.size, found);
      EXPECT_EQ(found, wordsWithin(entry->strings, std::string(length, 'a'), edits)) << length << ", edits " << edits;
    }
  }
  qoc::lexiconRoads() = before;
}

/// Words that stand in a list more than once, as they can when the list is put into the lexicon as it is.
TEST(LexiconIndex, FindsEveryOneOfEqualWords) {
  std::mt19937 random(6);
  Owned<qstd_vector_qoc_ocrDictionaryString> list;
  for (int i = 0; i < 900; ++i) {
    require(qstd_vector_qoc_ocrDictionaryString_pushBack(list, word(randomText(random, 6, 6, 2))));
  }
  qoc::WorkMeter meter;
  const qoc::LexiconIndex index(qoc::view(*list), meter);
  for (int i = 0; i < 20; ++i) {
    const std::string text = randomText(random, 5, 7, 2);
    const Owned<qoc_ocrDictionaryStringMulti> read = plainReading(text);
    const qoc::ReadingMatches matches(*read, nullptr);
    qoc::IndexQuery query;
    index.prepare(matches, {0, matches.size()}, query);
    std::vector<std::int32_t> found;
    for (std::int32_t edits = 0; edits <= 3; ++edits) {
      index.find(query, edits, 0, list->core.size, found);
      EXPECT_EQ(found, wordsWithin(*list, text, edits)) << text << ", edits " << edits;
    }
  }
}

TEST(LexiconIndex, CopiesShareItAndChangesRenewIt) {
  const qoc::test::ShortcutsTaken taken(qoc::test::ShortcutsTaken::all);
  Owned<qoc_ocrDictionaryLexicon> entry = lexicon({"ab", "cd"});
  Owned<qoc_ocrDictionaryLexicon> copy;
  require(qoc_ocrDictionaryLexicon_assign(copy, entry));
  EXPECT_EQ(qoc::indexOf(*entry), qoc::indexOf(*copy));
  require(qoc_ocrDictionaryLexicon_addStringT(copy, "ef"));
  EXPECT_NE(qoc::indexOf(*entry), qoc::indexOf(*copy));
  EXPECT_EQ(qoc::indexOf(*copy)->numWords(), 3u);
}

/// Whether the reading matches, by either form of the match.
void expectMatch(const qoc_ocrDictionaryLexicon &lexicon, const std::string &text, const RunOptions &options,
                 const Words &expected) {
  const Owned<qoc_ocrDictionaryStringMulti> read = plainReading(text);
  const auto params = runParams(options);
  Owned<qoc_ocrDictionaryResultSet> set;
  require(qoc_ocrDictionaryLexicon_matchMulti(&lexicon, read, params, nullptr, set));
  EXPECT_EQ(matchedWords(*set), expected) << text;
  qsys_bool isMatch = 2;
  require(qoc_ocrDictionaryLexicon_isMatchMulti(&lexicon, read, params, nullptr, &isMatch));
  EXPECT_EQ(isMatch, expected.empty() ? 0u : 1u) << text;
}

TEST(LexiconIndex, WordsThatAreInTheListAloneAreMatchedWithoutIt) {
  const qoc::test::ShortcutsTaken taken(qoc::test::ShortcutsTaken::all);
  Owned<qoc_ocrDictionaryLexicon> none;
  Owned<qoc_ocrDictionaryLexicon> some = lexicon({"ab", "cd"});
  for (Owned<qoc_ocrDictionaryLexicon> *entry : {&none, &some}) {
    require(qstd_vector_qoc_ocrDictionaryString_pushBack(&(*entry)->strings, word("efg")));
    EXPECT_EQ(qoc::indexOf(**entry), nullptr);
    Owned<qoc_ocrDictionaryLexicon> copy;
    require(qoc_ocrDictionaryLexicon_assign(copy, *entry));
    for (const qoc_ocrDictionaryLexicon *each : {&**entry, &*copy}) {
      expectMatch(*each, "efg", {}, {"efg"});
      expectMatch(*each, "efx", {}, {});
      expectMatch(*each, "efx", {.maxEdits = 1}, {"efg"});
      expectMatch(*each, "xefgx", {.matchOption9 = 1}, {"efg"});
      expectMatch(*each, "", {.maxEdits = 3}, {each->strings.core.size == 3 ? "ab" : "efg"});
    }
  }
}

TEST(LexiconIndex, ALongerListThanTriesMayHaveIsScanned) {
  qoc::lexiconRoads().minWordsForTries = 0;
  const Words list = {"abcde", "abcdf", "bbcde", "xyzxy"};
  const Owned<qoc_ocrDictionaryStringMulti> read = plainReading("abcde");
  const qoc::ReadingMatches matches(*read, nullptr);
  for (const std::int32_t most : {3, 4}) {
    qoc::lexiconRoads().maxWordsForTries = most;
    const Owned<qoc_ocrDictionaryLexicon> entry = lexicon(list);
    const qoc::LexiconIndex &index = *qoc::indexOf(*entry);
    qoc::IndexQuery query;
    index.prepare(matches, {0, matches.size()}, query);
    EXPECT_EQ(index.walks(query, 1), most == 4);
    std::vector<std::int32_t> found;
    index.find(query, 1, 0, 4, found);
    EXPECT_EQ(found, (std::vector<std::int32_t>{0, 1, 2}));
  }
  qoc::lexiconRoads() = {};
}

TEST(LexiconIndex, ReadingsTooLongForTriesAreScanned) {
  const qoc::test::ShortcutsTaken taken(qoc::test::ShortcutsTaken::all);
  const std::string text(70, 'a');
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon({text + "b", text + "bb", "bb" + text});
  expectMatch(*entry, text, {}, {});
  expectMatch(*entry, text, {.maxEdits = 1}, {text + "b"});
  expectMatch(*entry, text.substr(4), {.maxEdits = 1, .returnBestOnly = 0}, {});
}

TEST(LexiconIndex, WordsTooLongForTriesAreScanned) {
  qoc::lexiconRoads().minWordsForTries = 0;
  const std::string text(100, 'a');
  const Owned<qoc_ocrDictionaryLexicon> entry = lexicon({text, text + "b"});
  const Owned<qoc_ocrDictionaryStringMulti> read = plainReading("aaaaa");
  const qoc::ReadingMatches matches(*read, nullptr);
  qoc::IndexQuery query;
  qoc::indexOf(*entry)->prepare(matches, {0, matches.size()}, query);
  EXPECT_FALSE(qoc::indexOf(*entry)->walks(query, 1));
  std::vector<std::int32_t> found;
  qoc::indexOf(*entry)->find(query, 95, 0, 2, found);
  EXPECT_EQ(found, std::vector<std::int32_t>{0});
  qoc::lexiconRoads() = {};
}

TEST(LexiconIndex, SaysHowMuchMemoryItHas) {
  const auto numBytesOf = [](const Words &list, std::int32_t minWordsForTries) {
    qoc::lexiconRoads().minWordsForTries = minWordsForTries;
    const std::size_t numBytes = qoc::indexOf(*lexicon(list))->numBytes();
    qoc::lexiconRoads() = {};
    return numBytes;
  };
  std::mt19937 random(11);
  const Words list = randomList(random, 1000, 9, 4);
  const std::size_t ofOne = numBytesOf({"a"}, 512);
  EXPECT_GT(ofOne, sizeof(qoc::LexiconIndex));
  EXPECT_LT(ofOne, 100'000u);
  const std::size_t ofScan = numBytesOf(list, INT32_MAX);
  EXPECT_GT(ofScan, ofOne + 4000);  // The letters of the words.
  EXPECT_GT(numBytesOf(list, 0), ofScan + 1000);
}

TEST(LexiconIndex, TheFirstUseAfterAChangeMayBeInSeveralThreads) {
  std::mt19937 random(5);
  const Words list = randomList(random, 700, 6, 4);
  Owned<qoc_ocrDictionaryLexicon> entry = lexicon(list);
  require(qoc_ocrDictionaryLexicon_addStringT(entry, "abcdabcd"));
  std::vector<std::int32_t> numResults(4);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < numResults.size(); ++t) {
    threads.emplace_back([&entry, &numResults, t] {
      qoc_ocrDictionaryRunParams params;
      qoc_ocrDictionaryRunParams_construct(&params);
      params.maxEdits = 1;
      params.returnBestOnly = 0;
      const Owned<qoc_ocrDictionaryStringMulti> read = plainReading("abcdabca");
      Owned<qoc_ocrDictionaryResultSet> set;
      require(qoc_ocrDictionaryLexicon_matchMulti(entry, read, &params, nullptr, set));
      numResults[t] = set->results.core.size;
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  EXPECT_EQ(numResults, std::vector<std::int32_t>(4, 1));
}

}  // namespace
