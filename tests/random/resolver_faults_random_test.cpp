// Resolving in which everything fails that can, with all sorts of dictionaries, rules, swaps and readings; and the same
// without shortcuts.

#include <qoc/resolver.h>

#include "random/faults.hpp"
#include "run/run_builders.hpp"
#include "support/fieldings.hpp"
#include "swap/swaps.hpp"

namespace random_cases {
namespace {

using namespace qoc::test;

/// What is resolved, and what is known of it.
class ResolverCase {
 public:
  explicit ResolverCase(Random &random) {
    fillDictionary(random);
    fillRules(random);
    params_ = runParams({.maxEdits = random.pick({0, 0, 1, 1, 1, 2, 2, 3, 14}),
                         .matchOption1 = random.oneIn(4) ? 0 : 1,
                         .matchOption2 = random.oneIn(4) ? 0 : 1,
                         .matchOption4 = random.oneIn(4) ? 0 : 1,
                         .minStringLength = random.oneIn(10) ? 3 : 1,
                         .maxStringLength = random.oneIn(10) ? 5 : INT32_MAX,
                         .returnBestOnly = random.below(2),
                         .matchOption9 = random.oneIn(8) ? 1 : 0});
    if (random.oneIn(4)) require(qoc_swapCharSet_setSingleSwap(swaps_, '1', 'a'));
    if (random.oneIn(5)) {
      require(qoc_swapCharSet_assign(swaps_, setOfSwaps({{U"1a", U"b"}, {U"ab", U"21"}, {U"0", U"c"}})));
    }
    // At times nothing but the best text of one expression, and others that come near.
    if (random.oneIn(4)) {
      params_->returnBestOnly = 1;
      params_->matchOption9 = 0;
      rules_->maxTexts = 1;
    }
    fillReading(random);
    knowsDictionary_ = !random.oneIn(6);
    // At times as if nothing had been run; fieldings do not take every character.
    if (random.oneIn(8) ||
        qoc_ocrDictionary_runSwapCharSetMulti(dictionary_, reading_, params_, swaps_, results_) < 0) {
      require(qoc_ocrDictionaryResultSet_reset(results_));
    }
  }

  struct Output {
    Owned<qoc_ocrDictionaryResolution> resolution;
    std::string describe() const {
      std::string out = qoc_ocrDictionaryOutcome_getName(resolution->outcome);
      for (const qoc_ocrDictionaryResolvedText &text : elements(resolution->texts)) {
        out += "\n" + show(text.text) + " " + std::to_string(text.total) + " +" + std::to_string(text.margin) +
               " mode " + std::to_string(text.mode) + " result " + std::to_string(text.resultIndex) + " from " +
               testing::PrintToString(values(text.inputIndices)) +
               testing::PrintToString(values(text.candidateIndices)) + " check " + std::to_string(text.hasCheck) +
               std::to_string(text.passesCheck) + " open " + std::to_string(text.numOpen);
      }
      return out + "\n";
    }
  };

  /// A resolver that is told everything, and resolves.
  qsys_status run(Output &out) {
    Owned<qoc_ocrDictionaryResolver> resolver;
    qsys_status status = qoc_ocrDictionaryResolver_setRules(resolver, rules_);
    if (status >= 0) {
      status = qoc_ocrDictionaryResolver_setDictionary(resolver, knowsDictionary_ ? &*dictionary_ : nullptr);
    }
    return status < 0
               ? status
               : qoc_ocrDictionaryResolver_resolve(resolver, reading_, params_, swaps_, results_, out.resolution);
  }

 private:
  static constexpr std::string_view letters = "0012abc";

  std::string randomText(Random &random, int32_t least, int32_t most) {
    std::string text;
    for (int32_t n = random.between(least, most); n > 0; --n)
      text += letters[static_cast<std::size_t>(random.below(7))];
    return text;
  }
  /// A text that some entry may have, or nearly.
  std::string nearText(Random &random) {
    std::string text = texts_.empty() || random.oneIn(6)
                           ? randomText(random, 1, 6)
                           : texts_[static_cast<std::size_t>(random.below(static_cast<int32_t>(texts_.size())))];
    for (int32_t k = random.below(3); k > 0 && !text.empty(); --k) {
      const auto at = static_cast<std::size_t>(random.below(static_cast<int32_t>(text.size())));
      text.replace(at, random.below(2) != 0 ? 1 : 0, randomText(random, 0, 1));
    }
    return text;
  }

  void fillDictionary(Random &random) {
    for (int32_t i = 0, n = random.below(3); i < n; ++i) {
      std::vector<std::string> list;
      for (int32_t k = random.between(1, random.oneIn(3) ? 40 : 6); k > 0; --k) {
        list.push_back(!list.empty() && random.oneIn(2) ? list.back() + randomText(random, 1, 2)
                                                        : randomText(random, 1, 6));
      }
      std::sort(list.begin(), list.end());
      list.erase(std::unique(list.begin(), list.end()), list.end());
      texts_.insert(texts_.end(), list.begin(), list.end());
      require(qoc_ocrDictionary_setLexiconIExtend(dictionary_, i, lexicon(list)));
    }
    for (int32_t i = 0, n = random.oneIn(3) ? random.between(1, 2) : 0; i < n; ++i) {
      require(qoc_ocrDictionary_setFieldingIExtend(dictionary_, i,
                                                   line(random.pick<std::string>({"999", "a9", "*a9*", "a-9", "9?"}))));
      texts_.insert(texts_.end(), {"012", "a2", "0a1b", "a-1"});
    }
    for (int32_t i = 0, n = random.below(3); i < n; ++i) {
      const std::string source =
          random.pick<std::string>({"[0-2]{3}", "[abc]+", ".-[0-2]", "[^a]b?[0-2]+", "(ab|c1)[0-3]{2,5}", "[a-c][0-9]+",
                                    "a?b?c?[0-9]{3}", "(a[01]|b[12]|c0)+", "a[-]1", "(0|1|2|a){1,40}(b|c|0){1,40}"});
      const Owned<qoc_ocrDictionaryRegularExpression> expression([&](qoc_ocrDictionaryRegularExpression *object) {
        return qoc_ocrDictionaryRegularExpression_constructString(object, stdString(source));
      });
      require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary_, i, expression));
      texts_.insert(texts_.end(), {"ab012", "120", "ba1", "a1b2c0", "c101", "abc012", "a-1", "0b12"});
    }
  }

  void fillRules(Random &random) {
    rules_->maxTexts = random.pick({1, 1, 2, 5});
    rules_->minMargin = random.pick({0, 1000, 3000});
    rules_->maxMargin = random.pick({0, 4000, 9000, INT32_MAX});
    rules_->requiresCheck = random.below(2);
    for (int32_t k = random.below(3); k > 0; --k) {
      const qoc_ocrDictionaryConfusion confusion = {random.pick<Char32>({'0', 'a', 'b', QOC_CHAR_EMPTY}),
                                                    random.pick<Char32>({'1', 'c', 'b', QOC_CHAR_EMPTY}),
                                                    random.below(3000), random.below(9000)};
      require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules_->confusions, &confusion));
    }
    for (int32_t k = random.oneIn(2) ? random.between(1, 3) : 0; k > 0; --k) {
      Owned<qoc_ocrDictionaryEntryCheck> check;
      check->mode = random.pick<qoc_ocrDictionaryMode>({qoc_ocrDictionaryMode_lexicon, qoc_ocrDictionaryMode_fielding,
                                                        qoc_ocrDictionaryMode_regularExpression,
                                                        qoc_ocrDictionaryMode_regularExpression});
      check->entry = random.below(2);
      check->rule.method =
          random.pick({qoc_checkDigitMethod_luhn, qoc_checkDigitMethod_mod37x2, qoc_checkDigitMethod_mod97});
      const auto parts = random.pick<std::vector<qstd_span32>>({{},
                                                                {},
                                                                {{0, QOC_CHECK_DIGIT_END}, {0, 1}},
                                                                {{2, QOC_CHECK_DIGIT_END}, {0, 2}},
                                                                {{-3, QOC_CHECK_DIGIT_END}}});
      require(
          qstd_vector_qstd_span32_assignElements(&check->rule.parts, parts.data(), static_cast<int32_t>(parts.size())));
      if (random.oneIn(4)) {
        require(qstd_vectorChar32_assign(&check->rule.ignored, codeVector(U"a")));
      }
      require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&rules_->checks, check));
    }
  }

  void fillReading(Random &random) {
    const bool hasScores = !random.oneIn(6);
    for (const char c : nearText(random)) {
      Owned<qoc_ocrDictionaryCharMulti> position;
      int32_t score = hasScores ? random.between(5000, 9900) : 0;
      for (int32_t i = 0, n = random.oneIn(20) ? 0 : random.pick({1, 1, 2, 3}); i < n; ++i) {
        const Char32 code = random.oneIn(25)
                                ? random.pick<Char32>({QOC_CHAR_ANY, QOC_CHAR_ANY_NONSPACE, QOC_CHAR_EMPTY, 0xE9})
                            : i > 0           ? static_cast<Char32>(letters[static_cast<std::size_t>(random.below(7))])
                            : random.oneIn(8) ? static_cast<Char32>('x')
                                              : static_cast<Char32>(c);
        const qoc_ocrDictionaryChar candidate = {code, score};
        require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &candidate));
        score = random.below(score + 1);
      }
      require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&reading_->positions, position));
    }
  }

  std::vector<std::string> texts_;
  Owned<qoc_ocrDictionary> dictionary_;
  Owned<qoc_ocrDictionaryRunParams> params_;
  Owned<qoc_swapCharSet> swaps_;
  Owned<qoc_ocrDictionaryResolverRules> rules_;
  Owned<qoc_ocrDictionaryStringMulti> reading_;
  Owned<qoc_ocrDictionaryResultSet> results_;
  bool knowsDictionary_ = true;
};

TEST(ResolverFaultsRandom, EndResolvingWithTheirStatusInTheSameCases) { tryFaultsInTheSameCases<ResolverCase>(400); }

TEST(ResolverFaultsRandom, EndResolvingWithTheirStatus) {
  compareCases(numCases() / 100, [](Random &random) { return tryFaults<ResolverCase>(random); });
}

}  // namespace
}  // namespace random_cases
