// Random comparison of the line fielding's matching with the reference model.

#include "random/random_cases.hpp"
#include "random/swap_record.hpp"
#include "random/taken_roads.hpp"
#include "reference/alignment.hpp"

namespace random_cases {
namespace {

using reference::Polls;
using reference::ResultSet;

struct Case {
  explicit Case(Random &random)
      : alphabet(randomLineAlphabet(random)),
        line(randomLineFielding(random, alphabet, 5)),
        reading(randomReading(random, alphabet, random.oneIn(3) ? 8 : 5)),
        params(randomParams(random, 20)),
        swaps(randomSwaps(random, alphabet)),
        pollLimit(randomPollLimit(random)),
        swapRecord(swaps) {
    limitCount(params);
    // Random positions are mostly too many or too few; the number of edits is what matters here.
    if (params && random.oneIn(3)) {
      params->maxEdits = 1;
      params->minStringLength = random.between(0, 1);
      params->maxStringLength = 0x7FFFFFFF;
    }
    limitVariants(reading, swaps);
    toRecord(line, &lineRecord);
    toRecord(reading, &readingRecord);
    if (!reading.empty()) {
      for (const Position &position : reading) {
        input.push_back(position.empty() ? reference::Character() : position[0]);
      }
    }
    limitVariants(input, swaps);
    toRecord(input, &inputRecord);
  }

  std::string described(const std::string &difference) const {
    return difference.empty()
               ? ""
               : difference + "\n  line " + toText(line) + "\n  reading " + toText(reading) + "\n  input " +
                     toText(input) + "\n  params " + toText(pointer(params)) + "\n  swaps " + toText(pointer(swaps)) +
                     "\n  interrupted at " + std::to_string(pollLimit);
  }

  /** The first difference that a comparison finds, with the lattice of variants and without. */
  template <class Compare>
  std::string onEveryRoad(Compare compare) const {
    return described(withAndWithoutLattice(compare));
  }

  Alphabet alphabet;
  LineFielding line;
  Reading reading;
  Word input;
  std::optional<RunParams> params;
  std::optional<Swaps> swaps;
  int64_t pollLimit;
  SwapRecord swapRecord;
  reference::HeldLineFielding lineRecord;
  reference::HeldMulti readingRecord;
  reference::HeldString inputRecord;
};

/** The yes or no of a reading, by the library's operation on the reading or on a plain string. */
template <auto Operation>
std::string compareIsMatch(const Case &c, const Reading &reading, const auto *readingRecord) {
  auto expected = ofModel<bool>(c.pollLimit, [&](Polls &polls) {
    return c.line.isMatchMulti(reading, pointer(c.params), pointer(c.swaps), polls);
  });
  return c.onEveryRoad([&] {
    const auto actual = ofLibrary<bool>(c.pollLimit, [&](bool &value) {
      qsys_bool flag = 2;
      qsys_status status = Operation(&c.lineRecord, readingRecord, pointer(c.params), c.swapRecord.get(), &flag);
      value = flag != 0;
      return status;
    });
    return compareFlags(expected, actual);
  });
}

/** The same for the results. */
template <auto Operation>
std::string compareMatch(const Case &c, const Reading &reading, const auto *readingRecord) {
  auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
    return c.line.matchMulti(reading, pointer(c.params), pointer(c.swaps), polls);
  });
  return c.onEveryRoad([&] {
    const auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
      reference::HeldResultSet set;
      qsys_status status = Operation(&c.lineRecord, readingRecord, pointer(c.params), c.swapRecord.get(), &set);
      value = fromRecord(*set);
      return status;
    });
    return compareSets(expected, actual, pointer(c.params));
  });
}

TEST(LineFieldingRandom, isMatchMulti) {
  compareCases([](Random &random) {
    Case c(random);
    return compareIsMatch<qoc_ocrDictionaryLineFielding_isMatchMulti>(c, c.reading, c.readingRecord.get());
  });
}

TEST(LineFieldingRandom, matchMulti) {
  compareCases([](Random &random) {
    Case c(random);
    return compareMatch<qoc_ocrDictionaryLineFielding_matchMulti>(c, c.reading, c.readingRecord.get());
  });
}

TEST(LineFieldingRandom, plainInputs) {
  compareCases([](Random &random) {
    Case c(random);
    const Reading reading = reference::toReading(c.input);
    std::string difference = compareIsMatch<qoc_ocrDictionaryLineFielding_isMatch>(c, reading, c.inputRecord.get());
    return difference.empty() ? compareMatch<qoc_ocrDictionaryLineFielding_match>(c, reading, c.inputRecord.get())
                              : difference;
  });
}

}  // namespace
}  // namespace random_cases
