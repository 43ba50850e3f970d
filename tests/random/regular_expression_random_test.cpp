// Random comparison of regular expressions as dictionary entries with the reference model, swaps included.

#include <qoc/regular_expression.h>

#include "random/random_cases.hpp"
#include "random/random_patterns.hpp"
#include "reference/regular_expression.hpp"
#include "support/owned.hpp"

namespace random_cases {
namespace {

using qoc::swap_reference::SwapSet;
using qoc::test::Owned;
using qoc::test::require;
using reference::Pattern;
using reference::Polls;
using reference::RegularExpression;
using reference::ResultSet;

/// A swap set of single swaps and, sometimes, multi-character ones, over letters that readings and expressions hold.
std::vector<qoc::swap_reference::Swap> randomSwapList(Random &random, const Alphabet &alphabet) {
  std::vector<qoc::swap_reference::Swap> list;
  const auto pick = [&]() -> uint32_t {
    return random.oneIn(4) ? 'x' : alphabet.letters[static_cast<size_t>(
                                       random.below(static_cast<int32_t>(alphabet.letters.size())))];
  };
  const int32_t numSwaps = random.between(0, 3);
  for (int32_t i = 0; i < numSwaps; ++i) {
    qoc::swap_reference::Swap swap{{pick()}, {pick()}};
    if (random.oneIn(2)) {
      swap.second.push_back(pick());
    }
    if (swap.second.size() == 2 && random.oneIn(3)) {
      swap.first.push_back(pick());
    }
    if (!qoc::swap_reference::isSwapRefused(swap.first, swap.second)) {
      list.push_back(swap);
    }
  }
  return list;
}

Owned<qoc_swapCharSet> recordOf(const std::vector<qoc::swap_reference::Swap> &list) {
  Owned<qstd_vector_qoc_swapChar> swaps;
  for (const auto &swap : list) {
    Owned<qoc_swapChar> record;
    require(qstd_vectorChar32_assignElements(&record->first, swap.first.data(), static_cast<int32_t>(swap.first.size())));
    require(
        qstd_vectorChar32_assignElements(&record->second, swap.second.data(), static_cast<int32_t>(swap.second.size())));
    require(qstd_vector_qoc_swapChar_pushBack(swaps, record));
  }
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSwapCharacters(set, swaps));
  return set;
}

struct Case {
  explicit Case(Random &random) : alphabet(randomAlphabet(random)) {
    expression.pattern = randomPattern(random, alphabet.letters, random.between(1, 4));
    if (random.oneIn(10)) {
      // More positions than a word has bits, which never match.
      Pattern many;
      many.kind = Pattern::repeat;
      many.least = many.most = 70;
      many.parts.resize(1);
      many.parts[0].kind = Pattern::character;
      many.parts[0].set.ranges.push_back({'#', '#'});
      Pattern choice;
      choice.kind = Pattern::choice;
      choice.parts = {expression.pattern, many};
      expression.pattern = choice;
    }
    source = sourceOf(random, expression.pattern);
    const Owned<qstd_string> text([&](qstd_string *string) {
      return qstd_string_constructFromBlock(string, source.data(), static_cast<int32_t>(source.size()));
    });
    require(qoc_ocrDictionaryRegularExpression_setString(record, text));
    reading = randomReading(random, alphabet, 5);
    params = randomParams(random, 20);
    if (params && params->maxEdits == 0x7FFFFFFF) {
      params->maxEdits = 0x40000000;  // Beyond it the plain search counts through two thousand million ends.
    }
    if (!random.oneIn(3)) {
      const auto list = randomSwapList(random, alphabet);
      swaps.emplace().setSwaps(list);
      swapRecord.emplace(recordOf(list));
      for (Position &position : reading) {
        for (reference::Character &candidate : position) {
          candidate.score = 0;  // The model's variants have none.
        }
      }
    }
    pollLimit = randomPollLimit(random);
    toRecord(reading, &readingRecord);
  }

  const qoc_swapCharSet *set() const { return swapRecord ? static_cast<const qoc_swapCharSet *>(*swapRecord) : nullptr; }

  /// Variants of a reading are expanded with polls of the expansion's own, which the model does not make.
  bool hasVariants() const { return swaps && !(swaps->oneToTwo.empty() && swaps->twoToTwo.empty()); }

  std::string described(const std::string &difference) const {
    std::string groups;
    for (const auto &swap : swaps ? swaps->swaps : std::vector<qoc::swap_reference::Swap>()) {
      groups += " " + std::string(swap.first.begin(), swap.first.end()) + "=" +
                std::string(swap.second.begin(), swap.second.end());
    }
    return difference.empty() ? ""
                              : difference + "\n  expression " + source + "\n  reading " + toText(reading) +
                                    "\n  params " + toText(pointer(params)) + "\n  multi swaps" + groups +
                                    "\n  groups " + std::to_string(swaps ? swaps->groups.size() : 0) +
                                    "\n  interrupted at " + std::to_string(pollLimit);
  }

  Alphabet alphabet;
  RegularExpression expression;
  std::string source;
  Owned<qoc_ocrDictionaryRegularExpression> record;
  Reading reading;
  std::optional<RunParams> params;
  std::optional<SwapSet> swaps;
  std::optional<Owned<qoc_swapCharSet>> swapRecord;
  int64_t pollLimit = 0;
  reference::HeldMulti readingRecord;
};

/// Runs a comparison unless the plain road takes too long.
template <class Compare>
std::string unlessTooLong(Compare compare) {
  try {
    return compare();
  } catch (const reference::TooManySteps &) {
    return "";
  }
}

/// The polls that the expansion of a reading into variants makes.
int64_t expansionPolls(const Case &c) {
  if (!c.hasVariants()) {
    return 0;
  }
  CountedPolls polls(0);
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;
  require(qoc_swapCharSet_multiSwapStrings(c.set(), &c.readingRecord, variants, positions));
  return polls.count();
}

TEST(RegularExpressionRandom, isMatchMulti) {
  int32_t numMatches = 0;
  compareCases(cases, [&](Random &random) {
    Case c(random);
    return unlessTooLong([&] {
      auto expected = ofModel<bool>(c.pollLimit, [&](Polls &polls) {
        for (int64_t i = expansionPolls(c); i > 0; --i) {
          polls.poll();
        }
        return c.expression.isMatchMulti(c.reading, pointer(c.params), pointer(c.swaps), polls);
      });
      auto actual = ofLibrary<bool>(c.pollLimit, [&](bool &value) {
        qsys_bool flag = 2;
        qsys_status status = qoc_ocrDictionaryRegularExpression_isMatchMulti(c.record, &c.readingRecord,
                                                                             pointer(c.params), c.set(), &flag);
        value = flag != 0;
        return status;
      });
      numMatches += expected.value ? 1 : 0;
      return c.described(compareFlags(expected, actual));
    });
  });
  EXPECT_GT(numMatches, cases / 10);
}

TEST(RegularExpressionRandom, matchMulti) {
  int32_t numMatches = 0;
  compareCases(cases, [&](Random &random) {
    Case c(random);
    return unlessTooLong([&] {
      auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
        for (int64_t i = expansionPolls(c); i > 0; --i) {
          polls.poll();
        }
        return c.expression.matchMulti(c.reading, pointer(c.params), pointer(c.swaps), polls);
      });
      auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
        reference::HeldResultSet set;
        qsys_status status = qoc_ocrDictionaryRegularExpression_matchMulti(c.record, &c.readingRecord,
                                                                           pointer(c.params), c.set(), &set);
        value = fromRecord(*set);
        return status;
      });
      numMatches += expected.value.results.empty() ? 0 : 1;
      return c.described(compareSets(expected, actual, pointer(c.params)));
    });
  });
  EXPECT_GT(numMatches, cases / 10);
}

}  // namespace
}  // namespace random_cases
