// Runs and matches in which everything fails that can.

#include <qoc/fielding_run.h>

#include "random/faults.hpp"
#include "random/random_patterns.hpp"
#include "random/swap_record.hpp"
#include "run/result_set_ops.hpp"
#include "run/run_builders.hpp"

namespace random_cases {
namespace {

using namespace qoc::test;

/// The objects of a case, and an operation on them that gives a status and an outcome.
class FaultCase {
 public:
  explicit FaultCase(Random &random)
      : alphabet_(random.oneIn(2) ? randomAlphabet(random) : randomLineAlphabet(random)) {
    toRecord(randomWords(random, alphabet_, random.oneIn(4) ? 12 : 4, 5), &words_);
    require(qoc_ocrDictionaryLexicon_setStringsSafe(&lexicon_, &words_));
    toRecord(randomWord(random, alphabet_, 5), &input_);
    toRecord(randomLineFielding(random, alphabet_, random.oneIn(10) ? 70 : 4), &line_);
    std::vector<uint32_t> letters = {'A'};
    for (const uint32_t letter : alphabet_.letters) {
      if (letter < 0x7F && letter != '-') {
        letters.push_back(letter);
      }
    }
    const std::string source = sourceOf(random, randomPattern(random, letters, random.between(1, 3)));
    require(qoc_ocrDictionaryRegularExpression_setString(expression_, stdString(source)));
    std::optional<RunParams> params = randomParams(random, 0);
    limitCount(params);
    params_ = *params;
    std::optional<Swaps> swaps = randomSwaps(random, alphabet_);
    Reading reading = randomReading(random, alphabet_, 4);
    limitVariants(reading, swaps);
    toRecord(reading, &reading_);
    swaps_.emplace(swaps);
    for (int i = 0; i < 2; ++i) {
      require(qoc_ocrDictionary_setLexiconIExtend(dictionary_, i, &lexicon_));
      require(qoc_ocrDictionary_setFieldingIExtend(dictionary_, i, &line_));
      require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary_, i, expression_));
    }
    require(qoc_ocrDictionaryFieldingRunParams_construct(&fieldingParams_));
    fieldingParams_.fieldingMode = random.below(2);
    fieldingParams_.rankingVariant = random.pick({3, 15});
    operation_ = random.below(numOperations);
    if (operation_ == 9 && random.oneIn(4)) {
      require(qstd_vector_qoc_ocrDictionaryPositionFielding_clear(&line_->positions));
    }
  }

  /// What an operation changes; made anew for each run of it, or used again.
  struct Output {
    Owned<qoc_ocrDictionaryResultSet> results;
    qsys_bool isMatch = 0;
    Owned<qstd_vector_qoc_ocrDictionaryChar> characters;
    Owned<qstd_vectorChar32> codes;
    std::string describe() const {
      return (isMatch != 0 ? "match\n" : "no match\n") + qoc::test::describe(*results) + show(*characters) + ' ' +
             testing::PrintToString(values(*codes));
    }
  };

  qsys_status run(Output &out) {
    const qoc_swapCharSet *set = swaps_->get();
    switch (operation_) {
      case 0:
        return qoc_ocrDictionary_runSwapCharSetMulti(dictionary_, &reading_, &params_, set, out.results);
      case 1:
        return qoc_ocrDictionary_runSwapCharSet(dictionary_, &input_, &params_, set, out.results);
      case 2:
        return qoc_ocrDictionaryLexicon_matchMulti(&lexicon_, &reading_, &params_, set, out.results);
      case 3:
        return qoc_ocrDictionaryLexicon_isMatchMulti(&lexicon_, &reading_, &params_, set, &out.isMatch);
      case 4:
        return qoc_ocrDictionaryLexicon_matchStrings(&lexicon_, &words_, &params_, set, out.results);
      case 5:
        return qoc_ocrDictionaryLineFielding_matchMulti(&line_, &reading_, &params_, set, out.results);
      case 6:
        return qoc_ocrDictionaryLineFielding_isMatchMulti(&line_, &reading_, &params_, set, &out.isMatch);
      case 7:
        return qoc_ocrDictionaryRegularExpression_matchMulti(expression_, &reading_, &params_, set, out.results);
      case 8:
        return qoc_ocrDictionaryRegularExpression_isMatchMulti(expression_, &reading_, &params_, set, &out.isMatch);
      case 9:
        return qoc_ocrDictionaryLineFielding_runFieldingParams(&line_, set, &reading_, &fieldingParams_, out.results);
      case 10:
        return matchPosition(out);
      default:
        return matchWordAdded(out);
    }
  }

 private:
  static constexpr int32_t numOperations = 12;

  /// What a position of a line admits, and what it admits of a reading.
  qsys_status matchPosition(Output &out) {
    if (line_->positions.core.size == 0 || reading_->positions.core.size == 0) {
      return QSYS_STATUS_OK;
    }
    const qoc_ocrDictionaryPositionFielding &position = elements(line_->positions).front();
    const qoc_ocrDictionaryCharMulti &multi = elements(reading_->positions).front();
    qsys_status status = qoc_ocrDictionaryPositionFielding_getAllFieldingCharacters(&position, out.codes);
    if (status >= 0) {
      status = qoc_ocrDictionaryPositionFielding_isMatchMulti(&position, &multi, swaps_->get(), &out.isMatch);
    }
    return status < 0 ? status
                      : qoc_ocrDictionaryPositionFielding_matchMulti(&position, &multi, swaps_->get(), out.characters);
  }

  /// A lexicon whose index is made by the match.
  qsys_status matchWordAdded(Output &out) {
    Owned<qoc_ocrDictionaryLexicon> lexicon;
    qsys_status status = qoc_ocrDictionaryLexicon_assign(lexicon, &lexicon_);
    if (status >= 0) {
      status = qoc_ocrDictionaryLexicon_addStringT(lexicon, "@@");
    }
    return status < 0 ? status
                      : qoc_ocrDictionaryLexicon_matchMulti(lexicon, &reading_, &params_, swaps_->get(), out.results);
  }

  Alphabet alphabet_;
  int32_t operation_ = 0;
  reference::HeldStrings words_;
  reference::HeldLexicon lexicon_;
  reference::HeldString input_;
  reference::HeldLineFielding line_;
  Owned<qoc_ocrDictionaryRegularExpression> expression_;
  RunParams params_{};
  qoc_ocrDictionaryFieldingRunParams fieldingParams_{};
  reference::HeldMulti reading_;
  std::optional<SwapRecord> swaps_;
  Owned<qoc_ocrDictionary> dictionary_;
};

TEST(FaultsRandom, EndOperationsWithTheirStatusInTheSameCases) { tryFaultsInTheSameCases<FaultCase>(1000); }

TEST(FaultsRandom, EndOperationsWithTheirStatus) {
  compareCases(numCases() / 100, [](Random &random) { return tryFaults<FaultCase>(random); });
}

}  // namespace
}  // namespace random_cases
