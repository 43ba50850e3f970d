#pragma once
// A resolver with all that it takes, for readings written by hand.

#include <qoc/resolver.h>

#include <string>
#include <string_view>
#include <vector>

#include "resolve/check_rule.hpp"
#include "run/run_builders.hpp"
#include "support/fieldings.hpp"

namespace qoc::test {

/// A dictionary, what it is run with, and a resolver that knows it.
struct Setting {
  Owned<qoc_ocrDictionary> dictionary;
  Owned<qoc_ocrDictionaryRunParams> params = runParams({.returnBestOnly = 0});
  Owned<qoc_swapCharSet> swaps;
  Owned<qoc_ocrDictionaryResolverRules> rules;
  Owned<qoc_ocrDictionaryResolver> resolver;
  bool knowsDictionary = true;
  bool usesSwaps = true;

  /// Rules whose numbers are easy to follow.
  Setting() {
    rules->alternativePenalty = 1;
    rules->laterPenalty = 0;
    rules->swapPenalty = 30;
    rules->substitutedPenalty = 50;
    rules->missingPenalty = 60;
    rules->extraPenalty = 20;
    rules->doubledPenalty = 40;
    rules->leadCap = 1000;
    rules->maxMargin = INT32_MAX;
    rules->freeWord = rules->freeShape = {100000, 0, 0};
    rules->minMargin = 10;
  }
  void addCheck(qoc_ocrDictionaryMode mode, int32_t entry, qoc_checkDigitMethod method,
                const std::vector<qstd_span32> &parts = {}) {
    Owned<qoc_ocrDictionaryEntryCheck> check;
    check->mode = mode;
    check->entry = entry;
    require(qoc_checkDigitRule_assign(&check->rule, rule(method, parts)));
    require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&rules->checks, check));
  }
  qsys_status resolve(const Owned<qoc_ocrDictionaryStringMulti> &input, qoc_ocrDictionaryResolution *resolution) {
    Owned<qoc_ocrDictionaryResultSet> results;
    require(qoc_ocrDictionary_runSwapCharSetMulti(dictionary, input, params, usesSwaps ? &*swaps : nullptr, results));
    return resolve(input, results, resolution);
  }
  qsys_status resolve(const Owned<qoc_ocrDictionaryStringMulti> &input,
                      const Owned<qoc_ocrDictionaryResultSet> &results, qoc_ocrDictionaryResolution *resolution) {
    const qsys_status status = qoc_ocrDictionaryResolver_setRules(resolver, rules);
    if (status < 0) return status;
    const qsys_status known =
        qoc_ocrDictionaryResolver_setDictionary(resolver, knowsDictionary ? &*dictionary : nullptr);
    if (known < 0) return known;
    return qoc_ocrDictionaryResolver_resolve(resolver, input, params, usesSwaps ? &*swaps : nullptr, results,
                                             resolution);
  }
  /// "sure: text total +margin, ..." in order.
  std::string operator()(std::string_view input) { return (*this)(reading(input)); }
  std::string operator()(std::u32string_view input) { return (*this)(reading(input)); }
  std::string operator()(const Owned<qoc_ocrDictionaryStringMulti> &input) {
    Owned<qoc_ocrDictionaryResolution> resolution;
    require(resolve(input, resolution));
    return show(*resolution);
  }
  /// The same where nothing but the reading is known, as no run has been computed.
  std::string withoutRun(const Owned<qoc_ocrDictionaryStringMulti> &input) {
    Owned<qoc_ocrDictionaryResolution> resolution;
    require(resolve(input, {}, resolution));
    return show(*resolution);
  }
  static std::string show(const qoc_ocrDictionaryResolution &resolution) {
    std::string out = qoc_ocrDictionaryOutcome_getName(resolution.outcome);
    for (const qoc_ocrDictionaryResolvedText &text : elements(resolution.texts)) {
      out += std::string(&text == elements(resolution.texts).data() ? ": " : ", ") + qoc::test::show(text.text) + " " +
             std::to_string(text.total);
      if (text.margin < 50000) out += " +" + std::to_string(text.margin);
    }
    return out;
  }
  void addLine(std::string_view picture) {
    int32_t n = 0;
    require(qoc_ocrDictionary_getNumFieldings(dictionary, &n));
    require(qoc_ocrDictionary_setFieldingIExtend(dictionary, n, line(picture)));
  }
  void addExpression(const std::string &source) {
    const Owned<qoc_ocrDictionaryRegularExpression> expression([&](qoc_ocrDictionaryRegularExpression *object) {
      return qoc_ocrDictionaryRegularExpression_constructString(object, stdString(source));
    });
    int32_t n = 0;
    require(qoc_ocrDictionary_getNumRegularExpressions(dictionary, &n));
    require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, n, expression));
  }
  void addWords(const std::vector<std::u32string> &list) {
    Owned<qoc_ocrDictionaryLexicon> made;
    for (const std::u32string &text : list) {
      require(qoc_ocrDictionaryLexicon_addString(made, word(std::u32string_view(text))));
    }
    int32_t n = 0;
    require(qoc_ocrDictionary_getNumLexicons(dictionary, &n));
    require(qoc_ocrDictionary_setLexiconIExtend(dictionary, n, made));
  }
  void setWords(const std::vector<std::string> &list) {
    require(qoc_ocrDictionary_setLexiconIExtend(dictionary, 0, lexicon(list)));
  }
};

}  // namespace qoc::test
