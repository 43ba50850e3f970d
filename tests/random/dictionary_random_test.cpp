// Random comparison of the dictionary's run over entries of all kinds with the reference model.

#include <qoc/dictionary.h>

#include <algorithm>
#include <iterator>

#include "random/random_cases.hpp"
#include "random/random_patterns.hpp"
#include "random/swap_record.hpp"
#include "reference/alignment.hpp"
#include "reference/dictionary.hpp"
#include "support/text.hpp"

namespace random_cases {
namespace {

using qoc::test::Owned;
using qoc::test::require;
using qoc::test::stdString;
using reference::Dictionary;
using reference::Lexicon;
using reference::Polls;
using reference::RegularExpression;
using reference::ResultSet;
using HeldDictionary = reference::Held<qoc_ocrDictionary, qoc_ocrDictionary_construct, qoc_ocrDictionary_destruct>;

struct Case {
  explicit Case(Random &random) : alphabet(random.oneIn(2) ? randomAlphabet(random) : randomLineAlphabet(random)) {
    const int32_t lexicons = random.between(0, 3);
    for (int32_t i = 0; i < lexicons; ++i) {
      std::vector<Word> words = randomWords(random, alphabet, random.oneIn(20) ? 12 : 3, 5);
      Lexicon lexicon;
      lexicon.setStringsSafe(words);
      reference::HeldLexicon record;
      reference::HeldStrings strings;
      toRecord(words, &strings);
      qoc_ocrDictionaryLexicon_setStringsSafe(&record, &strings);
      if (random.oneIn(8)) {
        reference::HeldString empty;
        lexicon.addString({});
        qoc_ocrDictionaryLexicon_addString(&record, &empty);
      }
      dictionary.lexicons.push_back(lexicon);
      qoc_ocrDictionary_setLexiconIExtend(&dictionaryRecord, i, &record);
    }
    const int32_t fieldings = random.between(0, 2);
    for (int32_t i = 0; i < fieldings; ++i) {
      reference::HeldLineFielding record;
      dictionary.fieldings.push_back(randomLineFielding(random, alphabet, 4));
      toRecord(dictionary.fieldings.back(), &record);
      qoc_ocrDictionary_setFieldingIExtend(&dictionaryRecord, i, &record);
    }
    std::vector<uint32_t> letters = {'A'};
    std::copy_if(alphabet.letters.begin(), alphabet.letters.end(), std::back_inserter(letters),
                 [](uint32_t letter) { return letter < 0x7F && letter != '-'; });  // As they stand in a source.
    const int32_t expressions = random.oneIn(2) ? 0 : random.between(1, 2);
    for (int32_t i = 0; i < expressions; ++i) {
      RegularExpression expression{randomPattern(random, letters, random.between(1, 3))};
      sources.push_back(sourceOf(random, expression.pattern));
      dictionary.expressions.push_back(expression);
      Owned<qoc_ocrDictionaryRegularExpression> record;
      require(qoc_ocrDictionaryRegularExpression_setString(record, stdString(sources.back())));
      require(qoc_ocrDictionary_setRegularExpressionIExtend(&dictionaryRecord, i, record));
    }
    reading = randomReading(random, alphabet, random.oneIn(3) ? 6 : 4);
    input = randomWord(random, alphabet, random.oneIn(3) ? 6 : 4);
    std::optional<RunParams> randomized = randomParams(random, 0);
    limitCount(randomized);
    params = *randomized;
    swaps = randomSwaps(random, alphabet);
    pollLimit = randomPollLimit(random);
    limitVariants(reading, swaps);
    limitVariants(input, swaps);
    swapRecord.emplace(swaps);
    toRecord(reading, &readingRecord);
    toRecord(input, &inputRecord);
    // A run without a swap set of its own takes the dictionary's.
    if (swaps && random.oneIn(2)) {
      takesDictionarySwaps = true;
      qoc_ocrDictionary_setSwapCharSet(&dictionaryRecord, swapRecord->get());
    }
  }

  std::string described(const std::string &difference) const {
    if (difference.empty()) {
      return "";
    }
    std::string entries;
    for (const Lexicon &lexicon : dictionary.lexicons) {
      entries += "\n  lexicon " + toText(lexicon.strings);
    }
    for (const LineFielding &line : dictionary.fieldings) {
      entries += "\n  line " + toText(line);
    }
    for (const std::string &source : sources) {
      entries += "\n  expression " + source;
    }
    return difference + entries + "\n  reading " + toText(reading) + "\n  input " + toText(input) + "\n  params " +
           toText(&params) + "\n  swaps " + toText(pointer(swaps)) + "\n  interrupted at " + std::to_string(pollLimit);
  }

  Alphabet alphabet;
  Dictionary dictionary;
  std::vector<std::string> sources;  ///< Of its expressions.
  Reading reading;
  Word input;
  RunParams params{};
  std::optional<Swaps> swaps;
  int64_t pollLimit = 0;
  bool takesDictionarySwaps = false;
  std::optional<SwapRecord> swapRecord;
  HeldDictionary dictionaryRecord;
  reference::HeldMulti readingRecord;
  reference::HeldString inputRecord;
};

TEST(DictionaryRandom, runMulti) {
  compareCases([](Random &random) {
    Case c(random);
    return unlessTooLong([&] {
      auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
        return c.dictionary.runMulti(c.reading, c.params, pointer(c.swaps), polls);
      });
      auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
        reference::HeldResultSet set;
        qsys_status status = c.takesDictionarySwaps
                                 ? qoc_ocrDictionary_runMulti(&c.dictionaryRecord, &c.readingRecord, &c.params, &set)
                                 : qoc_ocrDictionary_runSwapCharSetMulti(&c.dictionaryRecord, &c.readingRecord,
                                                                         &c.params, c.swapRecord->get(), &set);
        value = fromRecord(*set);
        return status;
      });
      return c.described(compareSets(expected, actual, &c.params));
    });
  });
}

TEST(DictionaryRandom, run) {
  compareCases([](Random &random) {
    Case c(random);
    return unlessTooLong([&] {
      auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
        return c.dictionary.runMulti(reference::toReading(c.input), c.params, pointer(c.swaps), polls);
      });
      auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
        reference::HeldResultSet set;
        qsys_status status = c.takesDictionarySwaps
                                 ? qoc_ocrDictionary_run(&c.dictionaryRecord, &c.inputRecord, &c.params, &set)
                                 : qoc_ocrDictionary_runSwapCharSet(&c.dictionaryRecord, &c.inputRecord, &c.params,
                                                                    c.swapRecord->get(), &set);
        value = fromRecord(*set);
        return status;
      });
      return c.described(compareSets(expected, actual, &c.params));
    });
  });
}

}  // namespace
}  // namespace random_cases
