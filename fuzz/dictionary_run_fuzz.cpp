// A dictionary of any entries and swaps, a reading of any candidates, any parameters: all runs on them.

#include "input.hpp"
#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;
using qoc::fuzz::check;
using qoc::fuzz::Input;

Owned<qoc_ocrDictionaryString> wordOf(Input &input, int maxSize) {
  Owned<qoc_ocrDictionaryString> word;
  for (int n = input.below(maxSize + 1); n > 0; --n) {
    const qoc_ocrDictionaryChar one = {input.code(), 0};
    require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&word->characters, &one));
  }
  return word;
}

Owned<qoc_ocrDictionaryStringMulti> readingOf(Input &input) {
  Owned<qoc_ocrDictionaryStringMulti> reading;
  for (int n = input.below(7); n > 0; --n) {
    Owned<qoc_ocrDictionaryCharMulti> position;
    for (int k = input.below(4); k > 0; --k) {
      const qoc_ocrDictionaryChar candidate = {input.code(), input.number()};
      require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &candidate));
    }
    require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&reading->positions, position));
  }
  return reading;
}

Owned<qoc_ocrDictionaryLineFielding> lineOf(Input &input) {
  Owned<qoc_ocrDictionaryLineFielding> line;
  for (int n = input.below(5); n > 0; --n) {
    Owned<qoc_ocrDictionaryPositionFielding> position;
    Owned<qstd_vectorChar32> listed;
    for (int k = input.below(3); k > 0; --k) {
      const Char32 code = input.code();
      require(qstd_vectorChar32_pushBack(listed, &code));
    }
    // Refused lists leave the position as it is, which is as good.
    qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(position, listed,
                                                                           static_cast<std::uint32_t>(input.byte()));
    require(qstd_vector_qoc_ocrDictionaryPositionFielding_pushBack(&line->positions, position));
  }
  return line;
}

Owned<qoc_swapCharSet> setOf(Input &input) {
  Owned<qstd_vector_qoc_swapChar> swaps;
  for (int n = input.below(4); n > 0; --n) {
    Owned<qoc_swapChar> swap;
    const auto first = wordOf(input, 2), second = wordOf(input, 2);
    if (qoc_swapChar_setStrings(swap, first, second) >= 0) {
      require(qstd_vector_qoc_swapChar_pushBack(swaps, swap));
    }
  }
  Owned<qoc_swapCharSet> set;
  qoc_swapCharSet_setSwapCharacters(set, swaps);
  return set;
}

Owned<qoc_ocrDictionary> dictionaryOf(Input &input) {
  static constexpr const wchar_t *sources[] = {L"a*b?", L"(a|b|c)+", L"[a-c]{1,3}d", L".*", L"(ab|a)(c|bcd)(d*)"};
  Owned<qoc_ocrDictionary> dictionary;
  for (int i = input.below(3); i > 0; --i) {
    Owned<qoc_ocrDictionaryLexicon> lexicon;
    for (int n = input.below(6); n > 0; --n) {
      qoc_ocrDictionaryLexicon_addString(lexicon, wordOf(input, 6));  // A second equal one is refused.
    }
    require(qoc_ocrDictionary_setLexiconIExtend(dictionary, i - 1, lexicon));
  }
  for (int i = input.below(3); i > 0; --i) {
    require(qoc_ocrDictionary_setFieldingIExtend(dictionary, i - 1, lineOf(input)));
  }
  for (int i = input.below(3); i > 0; --i) {
    Owned<qoc_ocrDictionaryRegularExpression> expression;
    require(qoc_ocrDictionaryRegularExpression_setStringT(expression, sources[input.below(5)]));
    require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, i - 1, expression));
  }
  require(qoc_ocrDictionary_setSwapCharSet(dictionary, setOf(input)));
  return dictionary;
}

Owned<qoc_ocrDictionaryRunParams> paramsOf(Input &input) {
  Owned<qoc_ocrDictionaryRunParams> params;
  for (std::int32_t *field :
       {&params->maxEdits, &params->matchOption1, &params->matchOption2, &params->matchOption4,
        &params->minStringLength, &params->maxStringLength, &params->returnBestOnly, &params->matchOption9,
        &params->finalizeEachResult, &params->limitA, &params->limitB, &params->rankingMode, &params->rankingVariant}) {
    *field = input.flag() ? input.number() : *field;
  }
  return params;
}

/// A set that a run has finished with.
void checkResults(const qoc_ocrDictionaryResultSet &results, const qoc_ocrDictionaryRunParams &params) {
  check(results.isComputed == 1);
  check(params.returnBestOnly == 0 || resultsOf(results).size() <= 1);
  for (const qoc_ocrDictionaryResult &result : resultsOf(results)) {
    check(result.isComputed == 1);
    check(result.numEdits >= 0);
    check(elements(result.statusWRTInputStringSwapChar).size() == elements(result.given.positions).size());
  }
}

void runFielding(Input &input, const qoc_ocrDictionaryStringMulti *reading, const qoc_swapCharSet *set) {
  Owned<qoc_ocrDictionaryFieldingRunParams> params;
  for (std::int32_t *field : {&params->fieldingMode, &params->minStringLength, &params->maxStringLength,
                              &params->limitA, &params->limitB, &params->trimEmptyEnds, &params->rankingVariant}) {
    *field = input.flag() ? input.number() : *field;
  }
  Owned<qoc_ocrDictionaryResultSet> results;
  const Polls polls(300);
  const qsys_status status =
      qoc_ocrDictionaryLineFielding_runFieldingParams(lineOf(input), set, reading, params, results);
  check(status < 0 || (results->isComputed == 1 && resultsOf(*results).size() == 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    const auto params = paramsOf(input);
    const auto dictionary = dictionaryOf(input);
    const auto reading = readingOf(input);
    Owned<qoc_ocrDictionaryResultSet> results, again;
    qsys_status status = 0;
    {
      const Polls polls(300);
      status = qoc_ocrDictionary_runMulti(dictionary, reading, params, results);
    }
    check(status <= 0);
    if (status == 0) {
      checkResults(*results, *params);
      const auto first = describe(*results);
      require(qoc_ocrDictionary_runMulti(dictionary, reading, params, again));
      check(describe(*again) == first);
    }
    runFielding(input, reading, &dictionary->swapCharSet);
  });
}
