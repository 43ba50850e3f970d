#ifndef QOC_TESTS_RANDOM_EXHAUSTIVE_HPP
#define QOC_TESTS_RANDOM_EXHAUSTIVE_HPP

/** @file
 * Every small case there is: words, readings and parameters of few letters, and how entries are compared with the
 * reference model on all of them.
 *
 * By default: two letters, all words up to four characters, all readings up to three positions. With QOC_TEST_THOROUGH
 * set, which scripts/soak does: three letters, words up to five, readings up to four positions.
 */

#include <cstdio>
#include <cstdlib>

#include "random/random_cases.hpp"

namespace random_cases {

struct Bounds {
  uint32_t numLetters;
  size_t longestWord, longestReading;
};

inline bool isThorough() { return std::getenv("QOC_TEST_THOROUGH") != nullptr; }
inline Bounds bounds() { return isThorough() ? Bounds{3, 5, 4} : Bounds{2, 4, 3}; }

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

/** All words of the letters, without the empty one. */
std::vector<Word> allWords(size_t longest);
/** All readings of the letters, where a position has one candidate, or two in either order; and the empty one. */
std::vector<Reading> allReadings(size_t longest);
/** Every combination of some numbers of edits, kinds of edits, windows, the best alone or all, and shortest lengths. */
std::vector<RunParams> parameterGrid();

/** The cases and results that a comparison went through. */
struct Counts {
  int64_t numCases = 0, numResults = 0;

  void print(const char *what) const {
    std::printf("%lld cases over %s, %lld results\n", static_cast<long long>(numCases), what,
                static_cast<long long>(numResults));
  }
};

/** How an entry of the library is matched, with results or for yes or no. */
using Match =
    std::function<qsys_status(const qoc_ocrDictionaryStringMulti *, const RunParams *, qoc_ocrDictionaryResultSet *)>;
using IsMatch = std::function<qsys_status(const qoc_ocrDictionaryStringMulti *, const RunParams *, qsys_bool *)>;

/** Compares every reading of the list with every combination of parameters, until a difference. */
template <class Entry>
void compareAll(const Entry &model, const std::vector<Reading> &readings, const Swaps *swaps, const Match &match,
                const IsMatch &isMatch, Counts &counts) {
  const std::vector<RunParams> grid = parameterGrid();
  for (const Reading &reading : readings) {
    reference::HeldMulti record;
    toRecord(reading, &record);
    for (const RunParams &params : grid) {
      const auto expected = ofModel<reference::ResultSet>(
          0, [&](reference::Polls &polls) { return model.matchMulti(reading, &params, swaps, polls); });
      const auto actual = ofLibrary<reference::ResultSet>(0, [&](reference::ResultSet &value) {
        reference::HeldResultSet set;
        const qsys_status status = match(&record, &params, &set);
        value = fromRecord(*set);
        return status;
      });
      ASSERT_EQ(compareSets(expected, actual, &params), "")
          << "reading " << toText(reading) << " params " << toText(&params);
      if (isMatch) {
        const auto expectedFlag = ofModel<bool>(
            0, [&](reference::Polls &polls) { return model.isMatchMulti(reading, &params, swaps, polls); });
        const auto actualFlag = ofLibrary<bool>(0, [&](bool &value) {
          qsys_bool flag = 2;
          const qsys_status status = isMatch(&record, &params, &flag);
          value = flag != 0;
          return status;
        });
        ASSERT_EQ(compareFlags(expectedFlag, actualFlag), "")
            << "reading " << toText(reading) << " params " << toText(&params);
      }
      ++counts.numCases;
      counts.numResults += static_cast<int64_t>(expected.value.results.size());
    }
  }
}

}  // namespace random_cases

#endif
