// Random comparison of every way that the match of a word list can take, with the reference model and with each other.

#include "random/random_cases.hpp"
#include "random/swap_record.hpp"
#include "random/taken_roads.hpp"
#include "reference/lexicon.hpp"

namespace random_cases {
namespace {

using qoc::LexiconRoads;
using reference::Polls;
using reference::ResultSet;

/** All ways, the plainest last; tries also for the shortest lists, so that small cases go through them. */
constexpr LexiconRoads allRoads[] = {{true, true, true, true, true, 0},       {true, true, true, true, true, 512},
                                     {true, true, true, true, false, 0},      {true, false, true, false, false, 512},
                                     {true, false, false, true, true, 0},     {false, true, true, false, true, 512},
                                     {false, false, false, false, false, 512}};

std::string describe(const LexiconRoads &roads) {
  return "index " + std::to_string(roads.usesIndex) + ", bound " + std::to_string(roads.usesBound) + ", outlines " +
         std::to_string(roads.usesOutlines) + ", lattice " + std::to_string(roads.usesLattice) + ", blocks " +
         std::to_string(roads.usesBlocks) + ", tries from " + std::to_string(roads.minWordsForTries);
}

Outcome<ResultSet> matchOnRoads(const LexiconRoads &roads, const std::vector<Word> &words, const Reading &reading,
                                const RunParams *params, const qoc_swapCharSet *swaps, int64_t pollLimit) {
  const Roads taken(roads);
  reference::HeldLexicon lexicon;
  reference::HeldStrings strings;
  reference::HeldMulti readingRecord;
  toRecord(words, &strings);
  toRecord(reading, &readingRecord);
  qoc_ocrDictionaryLexicon_setStringsSafe(&lexicon, &strings);
  return ofLibrary<ResultSet>(pollLimit, [&](ResultSet &value) {
    reference::HeldResultSet set;
    const qsys_status status = qoc_ocrDictionaryLexicon_matchMulti(&lexicon, &readingRecord, params, swaps, &set);
    value = fromRecord(*set);
    return status;
  });
}

/** A reading that some edits make of a word. */
Reading nearReading(Random &random, const Alphabet &alphabet, const Word &word) {
  Reading reading;
  for (const reference::Character &character : word) {
    reading.push_back({character});
  }
  for (int32_t edits = random.between(0, 3); edits > 0; --edits) {
    const auto place = static_cast<std::ptrdiff_t>(random.below(static_cast<int32_t>(reading.size()) + 1));
    const Position position = {{randomCode(random, alphabet), 0}};
    if (place == static_cast<std::ptrdiff_t>(reading.size()) || random.oneIn(3)) {
      reading.insert(reading.begin() + place, position);
    } else if (random.oneIn(2)) {
      reading.erase(reading.begin() + place);
    } else {
      reading[static_cast<size_t>(place)] = position;
    }
  }
  for (Position &position : reading) {
    while (random.oneIn(4)) {
      position.insert(random.oneIn(2) ? position.begin() : position.end(), {randomCode(random, alphabet), 0});
    }
  }
  return reading;
}

std::string compareRoads(Random &random, int32_t mostWords, int32_t longest) {
  Alphabet alphabet = randomAlphabet(random);
  if (random.oneIn(3)) {
    alphabet.letters.insert(alphabet.letters.end(), {'d', 0x4E00, 0x1F600});
  }
  const std::vector<Word> words = randomWords(random, alphabet, mostWords, longest);
  Reading reading =
      words.empty() || random.oneIn(4)
          ? randomReading(random, alphabet, longest)
          : nearReading(random, alphabet, words[static_cast<size_t>(random.below(static_cast<int32_t>(words.size())))]);
  std::optional<RunParams> params = randomParams(random, 20);
  if (params && random.oneIn(2)) {
    params->matchOption9 = 0;  // Most of what there is to compare is there without windows and in the default ranking.
    params->finalizeEachResult = 0;
    params->rankingMode = 0;
  }
  const std::optional<Swaps> swaps = randomSwaps(random, alphabet);
  limitCount(params);
  limitVariants(reading, swaps);
  const SwapRecord swapRecord(swaps);
  const int64_t pollLimit = randomPollLimit(random);

  reference::Lexicon lexicon;
  lexicon.setStringsSafe(words);
  const auto expected = ofModel<ResultSet>(
      pollLimit, [&](Polls &polls) { return lexicon.matchMulti(reading, pointer(params), pointer(swaps), polls); });
  for (const LexiconRoads &roads : allRoads) {
    const auto actual = matchOnRoads(roads, words, reading, pointer(params), swapRecord.get(), pollLimit);
    const std::string difference = compareSets(expected, actual, pointer(params));
    if (!difference.empty()) {
      return difference + "\n  " + describe(roads) + "\n  words " + toText(lexicon.strings) + "\n  reading " +
             toText(reading) + "\n  params " + toText(pointer(params)) + "\n  swaps " + toText(pointer(swaps)) +
             "\n  interrupted at " + std::to_string(pollLimit);
    }
  }
  return "";
}

TEST(LexiconRoadsRandom, shortLists) {
  compareCases(numCases() / 2, [](Random &random) { return compareRoads(random, 12, 6); });
}

TEST(LexiconRoadsRandom, longerLists) {
  compareCases(numCases() / 20, [](Random &random) { return compareRoads(random, 60, 9); });
}

/** Words and readings around and beyond the 64 positions that one word of bits holds. */
TEST(LexiconRoadsRandom, longWords) {
  compareCases(numCases() / 2500, [](Random &random) {
    const Alphabet alphabet = {{'a', 'b', 'c'}, 1000};
    std::vector<Word> words;
    for (int32_t i = 0; i < 4; ++i) {
      Word word(static_cast<size_t>(random.between(58, 76)), {'a', 0});
      for (reference::Character &character : word) {
        character.code = random.oneIn(2) ? 'a' : randomCode(random, alphabet);
      }
      words.push_back(word);
    }
    const Reading reading = nearReading(random, alphabet, words[0]);
    std::optional<RunParams> params = randomParams(random, 0);
    params->maxEdits = random.between(0, 3);
    params->matchOption9 = 0;
    reference::Lexicon lexicon;
    lexicon.setStringsSafe(words);
    const auto expected = ofModel<ResultSet>(
        0, [&](Polls &polls) { return lexicon.matchMulti(reading, pointer(params), nullptr, polls); });
    for (const LexiconRoads &roads : allRoads) {
      const auto actual = matchOnRoads(roads, words, reading, pointer(params), nullptr, 0);
      const std::string difference = compareSets(expected, actual, pointer(params));
      if (!difference.empty()) {
        return difference + "\n  " + describe(roads);
      }
    }
    return std::string();
  });
}

/** Lists of several thousand words, words of a thousand characters among them, on every road: too much for the model.
 */
TEST(LexiconRoadsRandom, largeLists) {
  compareCases(numCases() / 5000, [](Random &random) {
    Alphabet alphabet = {{}, 1000};
    const int32_t numLetters = random.oneIn(3) ? 400 : random.between(3, 20);
    for (int32_t letter = 0; letter < numLetters; ++letter) {
      alphabet.letters.push_back(static_cast<uint32_t>(numLetters > 100 ? 0x4E00 + letter : 'a' + letter));
    }
    std::vector<Word> words = randomWords(random, alphabet, 2500, 12);
    const Word longWord(1000, {alphabet.letters[0], 0});
    words.push_back(longWord);
    words.push_back(Word(longWord.begin(), longWord.end() - 2));
    for (int32_t i = 0; i < 6; ++i) {
      const Word &near =
          i == 0 ? longWord : words[static_cast<size_t>(random.below(static_cast<int32_t>(words.size())))];
      const Reading reading =
          i == 1 ? Reading(10'000, {{alphabet.letters[0], 0}}) : nearReading(random, alphabet, near);
      RunParams params = *randomParams(random, 0);
      params.maxEdits = random.between(0, 3);
      params.matchOption9 = 0;
      const auto expected = matchOnRoads(allRoads[std::size(allRoads) - 1], words, reading, &params, nullptr, 0);
      for (const LexiconRoads &roads : allRoads) {
        const auto actual = matchOnRoads(roads, words, reading, &params, nullptr, 0);
        const std::string difference = compareSets(expected, actual, &params);
        if (!difference.empty()) {
          return difference + "\n  " + describe(roads);
        }
      }
    }
    return std::string();
  });
}

}  // namespace
}  // namespace random_cases
