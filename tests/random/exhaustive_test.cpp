// Every small case there is, of word lists and readings of few letters, compared with the reference model.
//
// By default: two letters, all words up to four characters, all readings up to three positions. QOC_TEST_THOROUGH set,
// which scripts/soak does: three letters, words up to five, readings up to four positions.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "random/random_cases.hpp"
#include "reference/lexicon.hpp"

namespace random_cases {
namespace {

using reference::Lexicon;
using reference::Polls;
using reference::ResultSet;

struct Bounds {
  uint32_t numLetters;
  size_t longestWord, longestReading;
};

Bounds bounds() { return std::getenv("QOC_TEST_THOROUGH") != nullptr ? Bounds{3, 5, 4} : Bounds{2, 4, 3}; }

/** All sequences of the given items, from one item up to `longest`. */
template <class Item>
std::vector<std::vector<Item>> sequences(const std::vector<Item> &items, size_t longest) {
  std::vector<std::vector<Item>> all;
  size_t first = 0;
  for (size_t length = 1; length <= longest; ++length) {
    const size_t end = all.size();
    for (size_t i = first; i < end || (length == 1 && i == 0); ++i) {
      for (const Item &item : items) {
        std::vector<Item> longer = length == 1 ? std::vector<Item>() : all[i];
        longer.push_back(item);
        all.push_back(longer);
      }
    }
    first = end;
  }
  return all;
}

/** All ways to be read: one candidate, or two in either order. */
std::vector<Position> positions() {
  std::vector<Position> all;
  for (uint32_t a = 0; a < bounds().numLetters; ++a) {
    all.push_back({{'a' + a, 0}});
    for (uint32_t b = 0; b < bounds().numLetters; ++b) {
      if (a != b) {
        all.push_back({{'a' + a, 7}, {'a' + b, 3}});
      }
    }
  }
  return all;
}

std::vector<Word> allWords() {
  std::vector<reference::Character> letters;
  for (uint32_t a = 0; a < bounds().numLetters; ++a) {
    letters.push_back({'a' + a, 0});
  }
  return sequences(letters, bounds().longestWord);
}

std::vector<RunParams> grid() {
  std::vector<RunParams> all;
  for (const int32_t maxEdits : {0, 1, 2}) {
    for (const int allowed : {7, 1, 2, 4, 0}) {  // Substitution, a missing and an extra character, as bits.
      for (const int32_t windows : {0, 1}) {
        for (const int32_t bestOnly : {0, 1}) {
          for (const int32_t shortest : {1, 3}) {
            if (maxEdits == 0 && allowed != 7) {
              continue;
            }
            RunParams params = {};
            qoc_ocrDictionaryRunParams_construct(&params);
            params.maxEdits = maxEdits;
            params.matchOption1 = allowed & 1;
            params.matchOption2 = allowed >> 1 & 1;
            params.matchOption4 = allowed >> 2 & 1;
            params.matchOption9 = windows;
            params.returnBestOnly = bestOnly;
            params.minStringLength = shortest;
            all.push_back(params);
          }
        }
      }
    }
  }
  return all;
}

TEST(LexiconExhaustive, MatchesAsTheModelDoes) {
  const std::vector<Word> words = allWords();
  reference::HeldStrings strings;
  toRecord(words, &strings);
  Lexicon lexicon;
  reference::HeldLexicon record;
  ASSERT_EQ(lexicon.setStrings(words), 0);
  ASSERT_EQ(qoc_ocrDictionaryLexicon_setStrings(&record, &strings), 0);

  std::vector<Reading> readings = sequences(positions(), bounds().longestReading);
  readings.emplace_back();
  const std::vector<RunParams> allParams = grid();
  int64_t numCases = 0, numResults = 0;
  for (const Reading &reading : readings) {
    reference::HeldMulti readingRecord;
    toRecord(reading, &readingRecord);
    for (const RunParams &params : allParams) {
      const auto expected =
          ofModel<ResultSet>(0, [&](Polls &polls) { return lexicon.matchMulti(reading, &params, nullptr, polls); });
      const auto actual = ofLibrary<ResultSet>(0, [&](ResultSet &value) {
        reference::HeldResultSet set;
        const qsys_status status = qoc_ocrDictionaryLexicon_matchMulti(&record, &readingRecord, &params, nullptr, &set);
        value = fromRecord(*set);
        return status;
      });
      ASSERT_EQ(compareSets(expected, actual, &params), "")
          << "reading " << toText(reading) << " params " << toText(&params);

      const auto expectedFlag =
          ofModel<bool>(0, [&](Polls &polls) { return lexicon.isMatchMulti(reading, &params, nullptr, polls); });
      const auto actualFlag = ofLibrary<bool>(0, [&](bool &value) {
        qsys_bool flag = 2;
        const qsys_status status =
            qoc_ocrDictionaryLexicon_isMatchMulti(&record, &readingRecord, &params, nullptr, &flag);
        value = flag != 0;
        return status;
      });
      ASSERT_EQ(compareFlags(expectedFlag, actualFlag), "")
          << "reading " << toText(reading) << " params " << toText(&params);
      ++numCases;
      numResults += static_cast<int64_t>(expected.value.results.size());
    }
  }
  std::printf("%lld cases over %zu words, %lld results\n", static_cast<long long>(numCases), words.size(),
              static_cast<long long>(numResults));
  EXPECT_GT(numResults, numCases);
}

}  // namespace
}  // namespace random_cases
