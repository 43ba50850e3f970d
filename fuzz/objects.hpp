#pragma once
// The objects of a dictionary's run, made of an input's choices.

#include "input.hpp"
#include "run/run_builders.hpp"

namespace qoc::fuzz {

using namespace qoc::test;

inline Owned<qoc_ocrDictionaryString> wordOf(Input &input, int maxSize) {
  Owned<qoc_ocrDictionaryString> word;
  for (int n = input.below(maxSize + 1); n > 0; --n) {
    const qoc_ocrDictionaryChar one = {input.code(), 0};
    require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&word->characters, &one));
  }
  return word;
}

inline Owned<qoc_ocrDictionaryStringMulti> readingOf(Input &input) {
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

inline Owned<qoc_ocrDictionaryLineFielding> lineOf(Input &input) {
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

inline Owned<qoc_swapCharSet> setOf(Input &input) {
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

/// One of a few expressions, or what a few pieces of one make; a source that is refused leaves the empty one.
inline Owned<qoc_ocrDictionaryRegularExpression> expressionOf(Input &input) {
  static constexpr const wchar_t *sources[] = {L"a*b?", L"(a|b|c)+", L"[a-c]{1,3}d", L".*", L"(ab|a)(c|bcd)(d*)"};
  static constexpr const wchar_t *pieces[] = {L"a", L"b", L"c", L"d", L".", L"[ab]", L"[^a]", L"\\w",
                                              L"|", L"(", L")", L"*", L"+", L"?",    L"{2}",  L"{0,3}"};
  Owned<qoc_ocrDictionaryRegularExpression> expression;
  const int choice = input.below(10);
  std::wstring source;
  if (choice < 5) {
    source = sources[choice];
  } else {
    for (int n = input.below(12); n > 0; --n) {
      source += pieces[input.below(16)];
    }
  }
  qoc_ocrDictionaryRegularExpression_setStringT(expression, source.c_str());
  return expression;
}

inline Owned<qoc_ocrDictionary> dictionaryOf(Input &input) {
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
    require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, i - 1, expressionOf(input)));
  }
  require(qoc_ocrDictionary_setSwapCharSet(dictionary, setOf(input)));
  return dictionary;
}

inline Owned<qoc_ocrDictionaryRunParams> paramsOf(Input &input) {
  Owned<qoc_ocrDictionaryRunParams> params;
  for (std::int32_t *field :
       {&params->maxEdits, &params->matchOption1, &params->matchOption2, &params->matchOption4,
        &params->minStringLength, &params->maxStringLength, &params->returnBestOnly, &params->matchOption9,
        &params->finalizeEachResult, &params->limitA, &params->limitB, &params->rankingMode, &params->rankingVariant}) {
    *field = input.flag() ? input.number() : *field;
  }
  return params;
}

}  // namespace qoc::fuzz
