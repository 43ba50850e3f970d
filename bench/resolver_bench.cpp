// How long choosing one text takes beside the run that came before it: a shape, a code with check digits, and a word
// list, each read with five candidates a position.

#include <benchmark/benchmark.h>
#include <qoc/resolver.h>

#include <random>
#include <string>

#include "support/text.hpp"

namespace {

using namespace qoc::test;

enum Kind { shape, checkedCode, words };

constexpr const char *alphabets[] = {"0123456789", "0123456789", "abcdefghijklmnopqrstuvwxyz"};

/// A dictionary of one entry, a reading of it, and a resolver that knows it.
struct Setting {
  Owned<qoc_ocrDictionary> dictionary;
  Owned<qoc_ocrDictionaryRunParams> params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  Owned<qoc_ocrDictionaryResolver> resolver;
  Owned<qoc_ocrDictionaryStringMulti> input;
  Owned<qoc_ocrDictionaryResultSet> results;
  Owned<qoc_ocrDictionaryResolution> resolution;

  explicit Setting(Kind kind) {
    std::mt19937 random(7);
    const std::string alphabet = alphabets[kind];
    const auto letter = [&] { return alphabet[random() % alphabet.size()]; };
    std::string text;
    Owned<qoc_ocrDictionaryResolverRules> rules;
    if (kind == words) {
      Owned<qoc_ocrDictionaryLexicon> lexicon;
      Owned<qstd_vector_qoc_ocrDictionaryString> list;
      for (int i = 0; i < 20000; ++i) {
        text.clear();
        for (int k = 0; k < 8; ++k) text += letter();
        require(qstd_vector_qoc_ocrDictionaryString_pushBack(list, word(text)));
      }
      require(qoc_ocrDictionaryLexicon_setStringsSafe(lexicon, list));
      require(qoc_ocrDictionary_setLexiconIExtend(dictionary, 0, lexicon));
    } else {
      text = kind == shape ? "4071839265" : "00790058004000000000005821";
      const std::wstring source = L"[0-9]{" + std::to_wstring(text.size()) + L"}";
      Owned<qoc_ocrDictionaryRegularExpression> expression;
      require(qoc_ocrDictionaryRegularExpression_setStringT(expression, source.c_str()));
      require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, 0, expression));
    }
    if (kind == checkedCode) {
      Owned<qoc_ocrDictionaryEntryCheck> check;
      check->mode = qoc_ocrDictionaryMode_regularExpression;
      check->rule.method = qoc_checkDigitMethod_luhn;
      require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&rules->checks, check));
    }
    std::string notation;
    for (const char c : text) {
      notation += std::string(notation.empty() ? "" : " ") + c + "9500";
      for (int k = 1; k < 5; ++k) notation += std::string("|") + letter() + std::to_string(9500 - 1500 * k);
    }
    require(qoc_ocrDictionaryStringMulti_assign(input, reading(notation)));
    rules->maxTexts = 1;
    require(qoc_ocrDictionaryResolver_setRules(resolver, rules));
    require(qoc_ocrDictionaryResolver_setDictionary(resolver, dictionary));
    run();
  }
  void run() { require(qoc_ocrDictionary_runMulti(dictionary, input, params, results)); }
  void resolve() { require(qoc_ocrDictionaryResolver_resolve(resolver, input, params, nullptr, results, resolution)); }
};

void benchRun(benchmark::State &state) {
  Setting setting(static_cast<Kind>(state.range(0)));
  for (auto _ : state) setting.run();
}

void benchResolve(benchmark::State &state) {
  Setting setting(static_cast<Kind>(state.range(0)));
  for (auto _ : state) setting.resolve();
  if (setting.resolution->texts.core.size != 1) state.SkipWithError("there is no text");
}

BENCHMARK(benchRun)->Name("resolver/run")->Arg(shape)->Arg(checkedCode)->Arg(words)->Unit(benchmark::kMicrosecond);
BENCHMARK(benchResolve)
    ->Name("resolver/resolve")
    ->Arg(shape)
    ->Arg(checkedCode)
    ->Arg(words)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
