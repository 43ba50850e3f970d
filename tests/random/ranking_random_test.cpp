// Random comparison of result sets with the reference model: duplicates, buckets, merging, ranking and finishing.

#include "random/random_cases.hpp"
#include "reference/ranking.hpp"
#include "run/result_set_ops.hpp"

namespace random_cases {
namespace {

using reference::Buckets;
using reference::Caches;
using reference::Result;
using reference::Results;
using reference::ResultSet;

std::vector<int32_t> randomNumbers(Random &random, int32_t most, int32_t least, int32_t largest) {
  std::vector<int32_t> numbers(static_cast<size_t>(random.between(0, most)));
  for (int32_t &number : numbers) {
    number = random.between(least, largest);
  }
  return numbers;
}

/** A result such as no matcher needs to have made, of few values, so that ties and duplicates abound. */
Result randomResult(Random &random, const Alphabet &alphabet, bool mayBeUncomputed) {
  Result result;
  result.isComputed = !(mayBeUncomputed && random.oneIn(3));
  result.given = randomReading(random, alphabet, random.oneIn(2) ? 0 : 4);
  result.dictionaryString = randomWord(random, alphabet, 4);
  result.resultStringStatus = randomNumbers(random, 3, 1, 8);
  for (int32_t &status : result.resultStringStatus) {
    status = random.oneIn(2) ? random.pick({1, 3, 8}) : status;
  }
  result.statusWRTInputStringSwapChar = randomNumbers(random, 2, 1, 10);
  result.resultStringLineStatus = random.pick({1, 1, 2, 3, 4, 7, 8});
  result.deleted = randomNumbers(random, random.oneIn(2) ? 0 : 2, -1, 4);
  result.numIgnoredPrefixCharacters = random.oneIn(2) ? 0 : random.between(0, 3);
  result.numIgnoredSuffixCharacters = random.oneIn(2) ? 0 : random.between(0, 3);
  result.startFieldIndex = random.between(0, 1);
  result.scoreStatusMask = random.pick({3, 3, 15, 0});
  result.mode = random.pick({1, 2, 4});
  result.givenSwap = random.oneIn(2) ? result.given : randomReading(random, alphabet, 1);
  result.inputIndices = randomNumbers(random, 2, 0, 3);
  result.valid = randomReading(random, alphabet, random.oneIn(2) ? 0 : 4);
  result.numEdits = random.between(0, 2);
  result.ignoreDeletedSpaces = random.oneIn(2);
  result.orderIndex = random.between(0, 3);
  result.overlapInputString = random.between(0, 1);
  if (random.oneIn(4)) {
    result.scoreIsCached = true;
    result.score = random.between(-1, 1);
  }
  if (random.oneIn(4)) {
    result.numInsertedIsCached = true;
    result.numInserted = random.between(0, 1);
  }
  if (random.oneIn(4)) {
    result.numMatchedPositionsIsCached = true;
    result.numMatchedPositions = random.between(0, 3);
  }
  return result;
}

/** Results of which many are copies of one another, or nearly so. */
Results randomResults(Random &random, const Alphabet &alphabet, int32_t most, bool mayBeUncomputed) {
  Results results;
  const int32_t count = random.between(0, most);
  for (int32_t i = 0; i < count; ++i) {
    if (!results.empty() && random.oneIn(2)) {
      Result copy = results[static_cast<size_t>(random.below(static_cast<int32_t>(results.size())))];
      if (random.oneIn(2)) {
        copy.mode = random.pick({1, 2, 4});
        copy.dictionaryString = randomWord(random, alphabet, 4);
      }
      if (random.oneIn(3)) {
        copy.numEdits = random.between(0, 2);
      }
      if (random.oneIn(3)) {
        copy.resultStringLineStatus = random.pick({1, 2, 3, 4});
      }
      results.push_back(copy);
    } else {
      results.push_back(randomResult(random, alphabet, mayBeUncomputed));
    }
  }
  return results;
}

/** Gives results whose score is cached already the mask with which a scoring order would have cached it. */
void setMasks(Results &results, const std::optional<RunParams> &params) {
  for (Result &result : results) {
    if (params && params->rankingMode == 1 && result.scoreIsCached) {
      result.scoreStatusMask = params->rankingVariant == 3 ? 3 : 15;
    }
  }
}

ResultSet randomSet(Random &random, const Alphabet &alphabet, bool mayBeUncomputed) {
  ResultSet set{!random.oneIn(5), randomResults(random, alphabet, 4, mayBeUncomputed)};
  if (random.oneIn(2)) {
    reference::sortResults(set.results, nullptr, true);
  }
  return set;
}

std::string described(const std::string &difference, const RunParams *params, const ResultSet &before) {
  return difference.empty() ? "" : difference + "\n  params " + toText(params) + "\n  before " + toText(before);
}

TEST(RankingRandom, sameResult) {
  compareCases([](Random &random) -> std::string {
    Alphabet alphabet = randomAlphabet(random);
    Results pair = randomResults(random, alphabet, 2, true);
    if (pair.size() < 2) {
      return "";
    }
    Result &a = pair[0];
    Result &b = pair[1];
    if (random.oneIn(2)) {
      b = a;
      switch (random.below(16)) {
        case 0:
          b.isComputed = !b.isComputed;
          break;
        case 1:
          b.deleted.push_back(0);
          break;
        case 2:
          b.valid.push_back({});
          break;
        case 3:
          b.given.push_back({});
          break;
        case 4:
          b.givenSwap.push_back({});
          break;
        case 5:
          b.resultStringStatus.push_back(1);
          break;
        case 6:
          ++b.numIgnoredPrefixCharacters;
          break;
        case 7:
          ++b.numIgnoredSuffixCharacters;
          break;
        case 8:
          ++b.startFieldIndex;
          break;
        case 9:
          ++b.overlapInputString;
          break;
        case 10:
          b.inputIndices.push_back(1);
          break;
        case 11:
          ++b.numEdits;
          break;
        case 12:
          ++b.resultStringLineStatus;
          break;
        default:
          b.mode = random.pick({1, 2, 4});
          break;
      }
    }
    reference::HeldResult left;
    reference::HeldResult right;
    toRecord(a, &left);
    toRecord(b, &right);
    qsys_bool same = 2;
    qsys_bool equal = 2;
    qoc_ocrDictionaryResult_isSameResult(&left, &right, &same);
    qoc_ocrDictionaryResult_compareEqual(&left, &right, &equal);
    if (same == (isSameResult(a, b) ? 1u : 0u) && equal == (compareEqual(a, b) ? 1u : 0u)) {
      return "";
    }
    return "same " + std::to_string(same) + ", equal " + std::to_string(equal) + ": " + toText(a) + ", " + toText(b);
  });
}

TEST(RankingRandom, sort) {
  compareCases([](Random &random) {
    Alphabet alphabet = randomAlphabet(random);
    std::optional<RunParams> params = randomParams(random, 10);
    const bool descending = !random.oneIn(4);
    ResultSet expected{true, randomResults(random, alphabet, 6, false)};
    setMasks(expected.results, params);
    const ResultSet before = expected;
    reference::HeldResultSet set;
    toRecord(expected, &set);
    if (random.oneIn(2)) {
      qoc_ocrDictionaryResultSet_sort(&set, pointer(params), descending);
    } else {
      qoc_ocrDictionaryResultVector_sort(&set->results, pointer(params), descending);
    }
    sortResults(expected.results, pointer(params), descending);
    return described(reference::difference(expected, fromRecord(*set), reference::cachesOf(pointer(params))),
                     pointer(params), before);
  });
}

TEST(RankingRandom, sortKeepsTheMembersWhereSomeAreUncomputed) {
  compareCases([](Random &random) {
    Alphabet alphabet = randomAlphabet(random);
    std::optional<RunParams> params = randomParams(random, 10);
    ResultSet expected{true, randomResults(random, alphabet, 6, true)};
    setMasks(expected.results, params);
    const ResultSet before = expected;
    reference::HeldResultSet set;
    toRecord(expected, &set);
    qoc_ocrDictionaryResultSet_sort(&set, pointer(params), 1);
    sortResults(expected.results, pointer(params), true);
    return described(
        membershipDifference(expected.results, fromRecord(set->results), reference::cachesOf(pointer(params))),
        pointer(params), before);
  });
}

TEST(RankingRandom, merge) {
  compareCases([](Random &random) {
    Alphabet alphabet = randomAlphabet(random);
    std::optional<RunParams> params = randomParams(random, 10);
    ResultSet expected = randomSet(random, alphabet, false);
    ResultSet partial = randomSet(random, alphabet, false);
    setMasks(partial.results, params);
    setMasks(expected.results, params);
    for (Result &result : partial.results) {
      if (!expected.results.empty() && random.oneIn(3)) {
        result = expected.results[static_cast<size_t>(random.below(static_cast<int32_t>(expected.results.size())))];
      }
    }
    const ResultSet before = expected;
    const std::string partialText = toText(partial);
    reference::HeldResultSet target;
    reference::HeldResultSet merged;
    toRecord(expected, &target);
    toRecord(partial, &merged);
    qoc_ocrDictionaryResultSet_merge(&target, &merged, pointer(params));
    merge(expected, partial, pointer(params));
    std::string difference = reference::difference(expected, fromRecord(*target), reference::cachesOf(pointer(params)));
    return difference.empty() ? "" : described(difference, pointer(params), before) + "\n  partial " + partialText;
  });
}

TEST(RankingRandom, buckets) {
  compareCases([](Random &random) -> std::string {
    Alphabet alphabet = randomAlphabet(random);
    std::optional<RunParams> params = randomParams(random, 10);
    Results candidates = randomResults(random, alphabet, 6, false);
    setMasks(candidates, params);
    Buckets expected;
    reference::HeldBuckets buckets;
    reference::HeldResults records;
    toRecord(candidates, &records);
    if (random.oneIn(2)) {
      addToBuckets(expected, candidates);
      qoc_ocrDictionaryResultBuckets_addVector(&buckets, &records);
    } else {
      for (const Result &candidate : candidates) {
        reference::HeldResult record;
        toRecord(candidate, &record);
        addToBuckets(expected, candidate);
        qoc_ocrDictionaryResultBuckets_add(&buckets, &record);
      }
    }
    Buckets actual = fromRecord(*buckets);
    if (actual.size() != expected.size()) {
      return std::to_string(actual.size()) + " buckets, not " + std::to_string(expected.size());
    }
    for (size_t k = 0; k < expected.size(); ++k) {
      std::string difference = reference::difference(expected[k], actual[k], Caches::exact);
      if (!difference.empty()) {
        return "bucket " + std::to_string(k) + ": " + difference;
      }
    }
    qsys_bool hasExact = 2;
    qoc_ocrDictionaryResultBuckets_hasResults(&buckets, &hasExact);
    if (hasExact != (hasResults(expected) ? 1u : 0u)) {
      return "hasResults is " + std::to_string(hasExact);
    }
    ResultSet target{random.oneIn(2), {}};
    if (random.oneIn(3)) {
      target = randomSet(random, alphabet, false);
    }
    setMasks(target.results, params);
    const ResultSet before = target;
    reference::HeldResultSet set;
    toRecord(target, &set);
    qoc_ocrDictionaryResultSet_mergeBuckets(&set, &buckets, pointer(params));
    mergeBuckets(target, expected, pointer(params));
    return described(reference::difference(target, fromRecord(*set), reference::cachesOf(pointer(params))),
                     pointer(params), before);
  });
}

TEST(RankingRandom, finalize) {
  compareCases([](Random &random) {
    Alphabet alphabet = randomAlphabet(random);
    std::optional<RunParams> params = randomParams(random, 10);
    ResultSet expected = randomSet(random, alphabet, false);
    // A single result has no order, so that it may be uncomputed.
    if (expected.results.size() == 1 && random.oneIn(2)) {
      expected.results[0].isComputed = false;
    }
    setMasks(expected.results, params);
    const ResultSet before = expected;
    reference::HeldResultSet set;
    toRecord(expected, &set);
    if (random.oneIn(4)) {
      Reading given = randomReading(random, alphabet, 3);
      std::vector<int32_t> indices = randomNumbers(random, 3, -1, 5);
      reference::HeldMulti multi;
      toRecord(given, &multi);
      qstd_vector32s numbers;
      qstd_vector32s_constructFromBlock(&numbers, indices.data(), static_cast<int32_t>(indices.size()));
      qoc_ocrDictionaryResultSet_setGiven(&set, &multi, &numbers);
      qstd_vector32s_destruct(&numbers);
      setGiven(expected, given, indices);
    }
    qsys_bool isExact = 2;
    qoc_ocrDictionaryResultSet_getIsExactBest(&set, &isExact);
    if (isExact != (isExactBest(expected) ? 1u : 0u)) {
      return "the early-stop test gives " + std::to_string(isExact);
    }
    qoc_ocrDictionaryResultSet_finalize(&set, pointer(params));
    finalize(expected, pointer(params));
    return described(reference::difference(expected, fromRecord(*set), reference::cachesOf(pointer(params))),
                     pointer(params), before);
  });
}

}  // namespace
}  // namespace random_cases
