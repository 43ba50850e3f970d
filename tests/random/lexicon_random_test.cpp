// Random comparison of the word list with the reference model: how it is kept, its match test and its matching.

#include "random/random_cases.hpp"
#include "random/swap_record.hpp"
#include "reference/alignment.hpp"
#include "reference/lexicon.hpp"

namespace random_cases {
namespace {

using reference::Lexicon;
using reference::Polls;
using reference::ResultSet;

/** Fills a list so that it may hold an empty word too, which only adding admits. */
void fillLexicon(Random &random, const std::vector<Word> &words, Lexicon &lexicon, qoc_ocrDictionaryLexicon *record) {
  reference::HeldStrings strings;
  toRecord(words, &strings);
  lexicon.setStringsSafe(words);
  qoc_ocrDictionaryLexicon_setStringsSafe(record, &strings);
  if (random.oneIn(8)) {
    reference::HeldString empty;
    lexicon.addString({});
    qoc_ocrDictionaryLexicon_addString(record, &empty);
  }
}

struct Case {
  explicit Case(Random &random) : alphabet(randomAlphabet(random)) {
    // The polls at every 128th word show only in long lists, which are worth few of the cases.
    const bool isLong = random.oneIn(1000);
    std::vector<Word> words = isLong ? randomWords(random, {{'a', 'b', 'c'}, 1000}, 900, 6)
                                     : randomWords(random, alphabet, random.oneIn(8) ? 12 : 4, 5);
    fillLexicon(random, words, lexicon, &lexiconRecord);
    reading = randomReading(random, alphabet, random.oneIn(3) ? 6 : 4);
    inputs = randomWords(random, alphabet, 3, 4);
    params = randomParams(random, 20);
    limitCount(params);
    swaps = randomSwaps(random, alphabet);
    pollLimit = randomPollLimit(random);
    limitVariants(reading, swaps);
    for (Word &input : inputs) {
      limitVariants(input, swaps);
    }
    swapRecord.emplace(swaps);
    toRecord(reading, &readingRecord);
    toRecord(inputs, &inputsRecord);
  }

  std::string described(const std::string &difference) const {
    return difference.empty()
               ? ""
               : difference + "\n  words " + toText(lexicon.strings) + "\n  reading " + toText(reading) +
                     "\n  inputs " + toText(inputs) + "\n  params " + toText(pointer(params)) + "\n  swaps " +
                     toText(pointer(swaps)) + "\n  interrupted at " + std::to_string(pollLimit);
  }

  Alphabet alphabet;
  Lexicon lexicon;
  Reading reading;
  std::vector<Word> inputs;
  std::optional<RunParams> params;
  std::optional<Swaps> swaps;
  int64_t pollLimit = 0;
  std::optional<SwapRecord> swapRecord;
  reference::HeldLexicon lexiconRecord;
  reference::HeldMulti readingRecord;
  reference::HeldStrings inputsRecord;
};

TEST(LexiconRandom, keepsWords) {
  compareCases([](Random &random) -> std::string {
    Alphabet alphabet = randomAlphabet(random);
    Lexicon lexicon;
    reference::HeldLexicon record;
    std::string history;
    const int32_t steps = random.between(1, 6);
    for (int32_t step = 0; step < steps; ++step) {
      int32_t expected = 0;
      qsys_status actual = 0;
      const int32_t operation = step == 0 ? random.below(2) : random.below(5);
      if (operation <= 1) {
        std::vector<Word> words = randomWords(random, alphabet, operation == 0 ? 5 : 12, 5);
        reference::HeldStrings strings;
        toRecord(words, &strings);
        history += (operation == 0 ? "\n  setStrings " : "\n  setStringsSafe ") + toText(words);
        expected = operation == 0 ? lexicon.setStrings(words) : lexicon.setStringsSafe(words);
        actual = operation == 0 ? qoc_ocrDictionaryLexicon_setStrings(&record, &strings)
                                : qoc_ocrDictionaryLexicon_setStringsSafe(&record, &strings);
      } else {
        Word word = randomWord(random, alphabet, 5);
        if (!lexicon.strings.empty() && random.oneIn(2)) {
          word = lexicon.strings[static_cast<size_t>(random.below(static_cast<int32_t>(lexicon.strings.size())))];
        }
        reference::HeldString string;
        toRecord(word, &string);
        history += (operation == 2 ? "\n  removeString " : "\n  addString ") + toText(word);
        expected = operation == 2 ? lexicon.removeString(word) : lexicon.addString(word);
        actual = operation == 2 ? qoc_ocrDictionaryLexicon_removeString(&record, &string)
                                : qoc_ocrDictionaryLexicon_addString(&record, &string);
      }
      if (expected != actual) {
        return "status " + std::to_string(actual) + ", not " + std::to_string(expected) + history;
      }
      reference::HeldStrings stored;
      qoc_ocrDictionaryLexicon_getStrings(&record, &stored);
      const std::string words = toText(fromRecord(*stored));
      if (words != toText(lexicon.strings)) {
        return "the words are " + words + ", not " + toText(lexicon.strings) + history;
      }
    }
    return "";
  });
}

TEST(LexiconRandom, isMatchMulti) {
  compareCases([](Random &random) {
    Case c(random);
    auto expected = ofModel<bool>(c.pollLimit, [&](Polls &polls) {
      return c.lexicon.isMatchMulti(c.reading, pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<bool>(c.pollLimit, [&](bool &value) {
      qsys_bool flag = 2;
      qsys_status status = qoc_ocrDictionaryLexicon_isMatchMulti(&c.lexiconRecord, &c.readingRecord, pointer(c.params),
                                                                 c.swapRecord->get(), &flag);
      value = flag != 0;
      return status;
    });
    return c.described(compareFlags(expected, actual));
  });
}

TEST(LexiconRandom, matchMulti) {
  compareCases([](Random &random) {
    Case c(random);
    auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
      return c.lexicon.matchMulti(c.reading, pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
      reference::HeldResultSet set;
      qsys_status status = qoc_ocrDictionaryLexicon_matchMulti(&c.lexiconRecord, &c.readingRecord, pointer(c.params),
                                                               c.swapRecord->get(), &set);
      value = fromRecord(*set);
      return status;
    });
    return c.described(compareSets(expected, actual, pointer(c.params)));
  });
}

TEST(LexiconRandom, plainInputs) {
  compareCases([](Random &random) {
    Case c(random);
    Word input = c.inputs.empty() ? Word() : c.inputs[0];
    reference::HeldString inputRecord;
    toRecord(input, &inputRecord);
    auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
      return c.lexicon.matchMulti(reference::toReading(input), pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
      reference::HeldResultSet set;
      qsys_status status =
          qoc_ocrDictionaryLexicon_match(&c.lexiconRecord, &inputRecord, pointer(c.params), c.swapRecord->get(), &set);
      value = fromRecord(*set);
      return status;
    });
    std::string difference = compareSets(expected, actual, pointer(c.params));
    if (difference.empty()) {
      auto expectedFlag = ofModel<bool>(c.pollLimit, [&](Polls &polls) {
        return c.lexicon.isMatchMulti(reference::toReading(input), pointer(c.params), pointer(c.swaps), polls);
      });
      auto actualFlag = ofLibrary<bool>(c.pollLimit, [&](bool &value) {
        qsys_bool flag = 2;
        qsys_status status = qoc_ocrDictionaryLexicon_isMatch(&c.lexiconRecord, &inputRecord, pointer(c.params),
                                                              c.swapRecord->get(), &flag);
        value = flag != 0;
        return status;
      });
      difference = compareFlags(expectedFlag, actualFlag);
    }
    return c.described(difference);
  });
}

TEST(LexiconRandom, matchStrings) {
  compareCases([](Random &random) {
    Case c(random);
    auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
      return c.lexicon.matchStrings(c.inputs, pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
      reference::HeldResultSet set;
      qsys_status status = qoc_ocrDictionaryLexicon_matchStrings(&c.lexiconRecord, &c.inputsRecord, pointer(c.params),
                                                                 c.swapRecord->get(), &set);
      value = fromRecord(*set);
      return status;
    });
    return c.described(compareSets(expected, actual, pointer(c.params)));
  });
}

}  // namespace
}  // namespace random_cases
