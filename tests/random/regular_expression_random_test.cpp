// Random comparison of regular expressions as dictionary entries with the reference model, swaps included.

#include <qoc/regular_expression.h>

#include "random/random_cases.hpp"
#include "random/random_patterns.hpp"
#include "random/swap_record.hpp"
#include "random/taken_roads.hpp"
#include "reference/regular_expression.hpp"
#include "support/owned.hpp"

namespace random_cases {
namespace {

using qoc::test::Owned;
using qoc::test::require;
using reference::Pattern;
using reference::Polls;
using reference::RegularExpression;
using reference::ResultSet;

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
    limitCount(params);
    swaps = randomSwaps(random, alphabet);
    swapRecord.emplace(swaps);
    limitVariants(reading, swaps);
    pollLimit = randomPollLimit(random);
    toRecord(reading, &readingRecord);
  }

  std::string described(const std::string &difference) const {
    return difference.empty() ? ""
                              : difference + "\n  expression " + source + "\n  reading " + toText(reading) +
                                    "\n  params " + toText(pointer(params)) + "\n  swaps " + toText(pointer(swaps)) +
                                    "\n  interrupted at " + std::to_string(pollLimit);
  }

  /** The first difference that a comparison finds, with the lattice of variants and without. */
  template <class Compare>
  std::string onEveryRoad(Compare compare) const {
    return described(withAndWithoutLattice(compare));
  }

  Alphabet alphabet;
  RegularExpression expression;
  std::string source;
  Owned<qoc_ocrDictionaryRegularExpression> record;
  Reading reading;
  std::optional<RunParams> params;
  std::optional<Swaps> swaps;
  std::optional<SwapRecord> swapRecord;
  int64_t pollLimit = 0;
  reference::HeldMulti readingRecord;
};

TEST(RegularExpressionRandom, isMatchMulti) {
  int32_t numMatches = 0;
  compareCases([&](Random &random) {
    Case c(random);
    return unlessTooLong([&] {
      auto expected = ofModel<bool>(c.pollLimit, [&](Polls &polls) {
        return c.expression.isMatchMulti(c.reading, pointer(c.params), pointer(c.swaps), polls);
      });
      numMatches += expected.value ? 1 : 0;
      return c.onEveryRoad([&] {
        return compareFlags(expected, ofLibrary<bool>(c.pollLimit, [&](bool &value) {
                              qsys_bool flag = 2;
                              qsys_status status = qoc_ocrDictionaryRegularExpression_isMatchMulti(
                                  c.record, &c.readingRecord, pointer(c.params), c.swapRecord->get(), &flag);
                              value = flag != 0;
                              return status;
                            }));
      });
    });
  });
  EXPECT_GE(numMatches, numCases() / 10);
}

TEST(RegularExpressionRandom, matchMulti) {
  int32_t numMatches = 0;
  compareCases([&](Random &random) {
    Case c(random);
    return unlessTooLong([&] {
      auto expected = ofModel<ResultSet>(c.pollLimit, [&](Polls &polls) {
        return c.expression.matchMulti(c.reading, pointer(c.params), pointer(c.swaps), polls);
      });
      numMatches += expected.value.results.empty() ? 0 : 1;
      return c.onEveryRoad([&] {
        const auto actual = ofLibrary<ResultSet>(c.pollLimit, [&](ResultSet &value) {
          reference::HeldResultSet set;
          qsys_status status = qoc_ocrDictionaryRegularExpression_matchMulti(
              c.record, &c.readingRecord, pointer(c.params), c.swapRecord->get(), &set);
          value = fromRecord(*set);
          return status;
        });
        return compareSets(expected, actual, pointer(c.params));
      });
    });
  });
  EXPECT_GE(numMatches, numCases() / 10);
}

}  // namespace
}  // namespace random_cases
