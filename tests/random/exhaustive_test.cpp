// Every small case there is, of entries of all kinds and readings of few letters, compared with the reference model.
// What is large is cut into slices, so that a long comparison can be run in parts.

#include <gtest/gtest.h>

#include "random/exhaustive.hpp"
#include "random/small_expressions.hpp"
#include "random/swap_record.hpp"
#include "reference/dictionary.hpp"
#include "support/text.hpp"

namespace random_cases {
namespace {

using qoc::test::Owned;
using qoc::test::require;
using reference::Dictionary;
using reference::Lexicon;
using reference::Polls;
using reference::RegularExpression;

const size_t numSlices = isThorough() ? 64 : 4;

class Slices : public testing::TestWithParam<size_t> {
 protected:
  /** Those of the items that belong to the slice. */
  template <class Item>
  static std::vector<Item> ofSlice(const std::vector<Item> &items) {
    std::vector<Item> some;
    for (size_t i = GetParam(); i < items.size(); i += numSlices) {
      some.push_back(items[i]);
    }
    return some;
  }
};

class LexiconExhaustive : public Slices {};
class LineFieldingExhaustive : public Slices {};
class RegularExpressionExhaustive : public Slices {};
class DictionaryExhaustive : public Slices {};

/** All lines of up to so many positions, each of which admits one letter, two, or any character. */
std::vector<LineFielding> allLines(size_t longest) {
  std::vector<PositionFielding> positions;
  for (const std::vector<uint32_t> &listed : {std::vector<uint32_t>{'a'}, {'b'}, {'a', 'b'}, {}}) {
    positions.push_back({listed.empty() ? 16u : 0u, listed});
  }
  std::vector<LineFielding> lines;
  for (const auto &some : sequences(positions, longest)) {
    lines.push_back({some});
  }
  return lines;
}

TEST_P(LexiconExhaustive, MatchesAsTheModelDoes) {
  const std::vector<Word> words = allWords(bounds().longestWord);
  reference::HeldStrings strings;
  toRecord(words, &strings);
  Lexicon lexicon;
  reference::HeldLexicon record;
  ASSERT_EQ(lexicon.setStrings(words), 0);
  ASSERT_EQ(qoc_ocrDictionaryLexicon_setStrings(&record, &strings), 0);
  Counts counts;
  compareAll(
      lexicon, ofSlice(allReadings(bounds().longestReading)), nullptr,
      [&](auto reading, auto params, auto set) {
        return qoc_ocrDictionaryLexicon_matchMulti(&record, reading, params, nullptr, set);
      },
      [&](auto reading, auto params, auto flag) {
        return qoc_ocrDictionaryLexicon_isMatchMulti(&record, reading, params, nullptr, flag);
      },
      counts);
  counts.print("all words");
  EXPECT_GT(counts.numResults, counts.numCases);
}

TEST_P(LineFieldingExhaustive, MatchesAsTheModelDoes) {
  const std::vector<Reading> readings = allReadings(3);
  Counts counts;
  for (const LineFielding &line : ofSlice(allLines(isThorough() ? 3 : 2))) {
    reference::HeldLineFielding record;
    toRecord(line, &record);
    compareAll(
        line, readings, nullptr,
        [&](auto reading, auto params, auto set) {
          return qoc_ocrDictionaryLineFielding_matchMulti(&record, reading, params, nullptr, set);
        },
        [&](auto reading, auto params, auto flag) {
          return qoc_ocrDictionaryLineFielding_isMatchMulti(&record, reading, params, nullptr, flag);
        },
        counts);
    ASSERT_FALSE(HasFailure()) << "line " << toText(line);
  }
  counts.print("lines");
  EXPECT_GT(counts.numResults, 0);
}

TEST_P(RegularExpressionExhaustive, MatchesAsTheModelDoes) {
  const std::vector<Reading> readings = allReadings(3);
  Counts counts;
  for (const SmallExpression &each : ofSlice(smallExpressions("ab", 2, isThorough() ? 2 : 1))) {
    const RegularExpression expression{each.pattern};
    Owned<qoc_ocrDictionaryRegularExpression> record;
    require(qoc_ocrDictionaryRegularExpression_setString(record, qoc::test::stdString(each.source)));
    compareAll(
        expression, readings, nullptr,
        [&](auto reading, auto params, auto set) {
          return qoc_ocrDictionaryRegularExpression_matchMulti(record, reading, params, nullptr, set);
        },
        [&](auto reading, auto params, auto flag) {
          return qoc_ocrDictionaryRegularExpression_isMatchMulti(record, reading, params, nullptr, flag);
        },
        counts);
    ASSERT_FALSE(HasFailure()) << "expression " << each.source;
  }
  counts.print("expressions");
  EXPECT_GT(counts.numResults, 0);
}

/** The run of a dictionary as a match like that of an entry. */
struct WholeRun {
  Dictionary dictionary;

  reference::ResultSet matchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps,
                                  Polls &polls) const {
    return dictionary.runMulti(reading, *params, swaps, polls);
  }
  bool isMatchMulti(const Reading &, const RunParams *, const Swaps *, Polls &) const { return false; }
};

/** Words, a line and an expression in one dictionary, without swaps, with a group, and with a swap of two characters.
 */
TEST_P(DictionaryExhaustive, RunsAsTheModelDoes) {
  const std::vector<Word> words = allWords(isThorough() ? 3 : 2);
  WholeRun run;
  run.dictionary.lexicons.resize(1);
  ASSERT_EQ(run.dictionary.lexicons[0].setStrings(words), 0);
  run.dictionary.fieldings.push_back({{{0, {'a'}}, {0, {'a', 'b'}}}});
  const SmallExpression expression = smallExpressions("ab", 2, 2).back();
  run.dictionary.expressions.push_back({expression.pattern});

  Owned<qoc_ocrDictionary> record;
  reference::HeldStrings strings;
  reference::HeldLexicon lexicon;
  reference::HeldLineFielding line;
  Owned<qoc_ocrDictionaryRegularExpression> compiledExpression;
  toRecord(words, &strings);
  toRecord(run.dictionary.fieldings[0], &line);
  require(qoc_ocrDictionaryLexicon_setStrings(&lexicon, &strings));
  require(qoc_ocrDictionaryRegularExpression_setString(compiledExpression, qoc::test::stdString(expression.source)));
  require(qoc_ocrDictionary_setLexiconIExtend(record, 0, &lexicon));
  require(qoc_ocrDictionary_setFieldingIExtend(record, 0, &line));
  require(qoc_ocrDictionary_setRegularExpressionIExtend(record, 0, compiledExpression));

  const std::optional<Swaps> allSwaps[] = {std::nullopt, Swaps{{{'a', 'b'}}, {}}, Swaps{{}, {{{'a', 'b'}, {'b'}}}}};
  const std::vector<Reading> readings = ofSlice(allReadings(3));
  Counts counts;
  for (const std::optional<Swaps> &swaps : allSwaps) {
    const SwapRecord swapRecord(swaps);
    compareAll(
        run, readings, pointer(swaps),
        [&](auto reading, auto params, auto set) {
          return qoc_ocrDictionary_runSwapCharSetMulti(record, reading, params, swapRecord.get(), set);
        },
        {}, counts);
    ASSERT_FALSE(HasFailure()) << "expression " << expression.source << ", swaps " << toText(pointer(swaps));
  }
  counts.print("a whole dictionary");
  EXPECT_GT(counts.numResults, 0);
}

const auto allSlices = testing::Range(size_t{0}, numSlices);
INSTANTIATE_TEST_SUITE_P(Slice, LexiconExhaustive, allSlices);
INSTANTIATE_TEST_SUITE_P(Slice, LineFieldingExhaustive, allSlices);
INSTANTIATE_TEST_SUITE_P(Slice, RegularExpressionExhaustive, allSlices);
INSTANTIATE_TEST_SUITE_P(Slice, DictionaryExhaustive, allSlices);

}  // namespace
}  // namespace random_cases
