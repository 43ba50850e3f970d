// Random comparison of edit distance, match test and alignments with the reference model.

#include "random/random_cases.hpp"
#include "random/swap_record.hpp"
#include "reference/alignment.hpp"

namespace random_cases {
namespace {

using reference::Polls;
using reference::ResultSet;

/** One word and one input, as values and as records. */
struct Case {
  explicit Case(Random &random, int32_t longestWord = 5, int32_t longestReading = 6)
      : alphabet(randomAlphabet(random)),
        word(randomWord(random, alphabet, longestWord)),
        reading(randomReading(random, alphabet, longestReading)),
        input(randomWord(random, alphabet, longestReading)),
        params(randomParams(random, 20)),
        swaps(randomSwaps(random, alphabet)),
        pollLimit(randomPollLimit(random)),
        swapRecord(swaps) {
    toRecord(word, &wordRecord);
    toRecord(reading, &readingRecord);
    toRecord(input, &inputRecord);
  }

  std::string described(const std::string &difference) const {
    return difference.empty()
               ? ""
               : difference + "\n  word " + toText(word) + "\n  reading " + toText(reading) + "\n  input " +
                     toText(input) + "\n  params " + toText(pointer(params)) + "\n  swaps " + toText(pointer(swaps)) +
                     "\n  interrupted at " + std::to_string(pollLimit);
  }

  Alphabet alphabet;
  Word word;
  Reading reading;
  Word input;
  std::optional<RunParams> params;
  std::optional<Swaps> swaps;
  int64_t pollLimit;
  SwapRecord swapRecord;
  reference::HeldString wordRecord;
  reference::HeldMulti readingRecord;
  reference::HeldString inputRecord;
};

TEST(AlignmentRandom, editDistance) {
  compareCases([](Random &random) -> std::string {
    Case c(random);
    int32_t actual = -1;
    qsys_status status =
        qoc_ocrDictionaryString_editDistance(&c.wordRecord, &c.inputRecord, c.swapRecord.get(), &actual);
    int32_t expected = reference::editDistance(c.word, c.input, pointer(c.swaps));
    if (status == 0 && actual == expected) {
      return "";
    }
    return c.described("status " + std::to_string(status) + ", distance " + std::to_string(actual) + ", not " +
                       std::to_string(expected));
  });
}

TEST(AlignmentRandom, isMatch) {
  compareCases([](Random &random) {
    Case c(random);
    auto expected = ofModel<bool>(c.pollLimit, [&](Polls &polls) {
      return reference::isMatch(c.word, c.input, pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<bool>(c.pollLimit, [&](bool &value) {
      qsys_bool flag = 2;
      qsys_status status =
          qoc_ocrDictionaryString_isMatch(&c.wordRecord, &c.inputRecord, pointer(c.params), c.swapRecord.get(), &flag);
      value = flag != 0;
      return status;
    });
    return c.described(compareFlags(expected, actual));
  });
}

TEST(AlignmentRandom, isMatchMulti) {
  compareCases([](Random &random) {
    Case c(random);
    auto expected = ofModel<bool>(c.pollLimit, [&](Polls &polls) {
      return reference::isMatchMulti(c.word, c.reading, pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<bool>(c.pollLimit, [&](bool &value) {
      qsys_bool flag = 2;
      qsys_status status = qoc_ocrDictionaryString_isMatchMulti(&c.wordRecord, &c.readingRecord, pointer(c.params),
                                                                c.swapRecord.get(), &flag);
      value = flag != 0;
      return status;
    });
    return c.described(compareFlags(expected, actual));
  });
}

TEST(AlignmentRandom, match) {
  compareCases([](Random &random) {
    Case c(random);
    auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
      return reference::match(c.word, c.input, pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
      reference::HeldResultSet set;
      qsys_status status =
          qoc_ocrDictionaryString_match(&c.wordRecord, &c.inputRecord, pointer(c.params), c.swapRecord.get(), &set);
      value = fromRecord(*set);
      return status;
    });
    return c.described(compareSets(expected, actual, pointer(c.params)));
  });
}

TEST(AlignmentRandom, matchMulti) {
  compareCases([](Random &random) {
    Case c(random);
    auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
      return reference::matchMulti(c.word, c.reading, pointer(c.params), pointer(c.swaps), polls);
    });
    auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
      reference::HeldResultSet set;
      qsys_status status = qoc_ocrDictionaryString_matchMulti(&c.wordRecord, &c.readingRecord, pointer(c.params),
                                                              c.swapRecord.get(), &set);
      value = fromRecord(*set);
      return status;
    });
    return c.described(compareSets(expected, actual, pointer(c.params)));
  });
}

}  // namespace
}  // namespace random_cases
