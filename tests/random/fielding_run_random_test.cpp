// Random comparison of the fielding run with the reference model.

#include "random/random_cases.hpp"
#include "random/swap_record.hpp"
#include "reference/fielding_run.hpp"

namespace random_cases {
namespace {

using reference::FieldingRunParams;
using reference::Polls;
using reference::ResultSet;

/** Every parameter varied, invalid values included. */
FieldingRunParams randomFieldingRunParams(Random &random) {
  FieldingRunParams params{};
  qoc_ocrDictionaryFieldingRunParams_construct(&params);
  params.fieldingMode = random.pick({1, 1, 0, 0, 2, -1});
  if (random.oneIn(2)) {
    params.minStringLength = random.between(random.oneIn(20) ? 0 : 1, 4);
  }
  if (random.oneIn(2)) {
    params.maxStringLength = random.oneIn(20) ? random.between(0, 4) : params.minStringLength + random.between(0, 3);
  }
  if (random.oneIn(2)) {
    params.limitA = random.oneIn(20) ? -1 : random.pick({0, 1, 2, 3, 0x7FFFFFFE});
  }
  if (random.oneIn(3)) {
    params.limitB = random.oneIn(20) ? random.pick({-1, 0x7FFFFFFF}) : random.between(0, 4);
  }
  params.trimEmptyEnds = random.pick({0, 1, 1, 7});
  params.fieldingOption7 = random.pick({0, 1, -3});
  params.rankingVariant = random.oneIn(30) ? random.pick({0, 4, 16}) : random.pick({3, 15});
  return params;
}

/** A reading that mostly is one that the run accepts, at times with ends of the empty character alone. */
Reading randomRunReading(Random &random, const Alphabet &alphabet) {
  Reading reading = randomReading(random, alphabet, 5);
  if (random.oneIn(8)) {
    return reading;
  }
  for (Position &position : reading) {
    Position distinct;
    for (const reference::Character &candidate : position) {
      bool isNew = true;
      for (const reference::Character &kept : distinct) {
        isNew = isNew && kept.code != candidate.code;
      }
      if (isNew) {
        distinct.push_back(candidate);
      }
    }
    position = distinct.empty() ? Position{{alphabet.letters[0], 1}} : distinct;
  }
  const Position empty = {reference::Character{}};
  for (int32_t i = random.oneIn(2) ? 0 : random.between(0, 2); i > 0; --i) {
    reading.insert(random.oneIn(2) ? reading.begin() : reading.end(), empty);
  }
  return reading;
}

std::string toText(const FieldingRunParams &params) {
  std::string out = "mode " + std::to_string(params.fieldingMode) + ", lengths " +
                    std::to_string(params.minStringLength) + ".." + std::to_string(params.maxStringLength);
  for (const int32_t value :
       {params.limitA, params.limitB, params.trimEmptyEnds, params.fieldingOption7, params.rankingVariant}) {
    out += ", " + std::to_string(value);
  }
  return out;
}

TEST(FieldingRunRandom, runFieldingParams) {
  compareCases([](Random &random) -> std::string {
    const Alphabet alphabet = randomLineAlphabet(random);
    LineFielding line = randomLineFielding(random, alphabet, 5);
    for (PositionFielding &fielding : line.positions) {
      if (fielding.isEmpty() && !random.oneIn(5)) {
        fielding.bits = 4;
      }
    }
    const Reading reading = randomRunReading(random, alphabet);
    const FieldingRunParams params = randomFieldingRunParams(random);
    const std::optional<Swaps> swaps = randomSwaps(random, alphabet);
    const SwapRecord swapRecord(swaps);
    const int64_t pollLimit = randomPollLimit(random);
    reference::HeldLineFielding lineRecord;
    reference::HeldMulti readingRecord;
    toRecord(line, &lineRecord);
    toRecord(reading, &readingRecord);

    auto expected = ofModel<ResultSet>(
        pollLimit, [&](Polls &polls) { return reference::runFielding(line, pointer(swaps), reading, params, polls); });
    auto actual = ofLibrary<ResultSet>(pollLimit, [&](ResultSet &value) {
      reference::HeldResultSet set;
      qsys_status status =
          qoc_ocrDictionaryLineFielding_runFieldingParams(&lineRecord, swapRecord.get(), &readingRecord, &params, &set);
      value = fromRecord(*set);
      return status;
    });
    // No array sort takes part, so that every cached counter is determined.
    const std::string difference = compareSets(expected, actual, nullptr);
    return difference.empty()
               ? ""
               : difference + "\n  line " + reference::toText(line) + "\n  reading " + reference::toText(reading) +
                     "\n  params " + toText(params) + "\n  swaps " + reference::toText(pointer(swaps)) +
                     "\n  interrupted at " + std::to_string(pollLimit);
  });
}

}  // namespace
}  // namespace random_cases
