#pragma once

/// @file The library's objects with a C++ life.

#include "trouble.hpp"

#include <qoc/ocr_dictionary.h>

#include <cstdint>
#include <span>

namespace qoc::program {

/// An object of the library, constructed and destroyed with this one.
template <typename T, qsys_status (*Construct)(T *), qsys_status (*Destruct)(T *)> class Owned {
public:
  Owned() { check(Construct(&object_), "out of resources"); }
  Owned(const Owned &) = delete;
  Owned &operator=(const Owned &) = delete;
  ~Owned() { Destruct(&object_); }

  T *get() { return &object_; }
  const T *get() const { return &object_; }
  T *operator->() { return &object_; }
  const T *operator->() const { return &object_; }

private:
  T object_{};
};

using Dictionary = Owned<qoc_ocrDictionary, qoc_ocrDictionary_construct, qoc_ocrDictionary_destruct>;
using Lexicon = Owned<qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon_construct, qoc_ocrDictionaryLexicon_destruct>;
using MultiString =
    Owned<qoc_ocrDictionaryStringMulti, qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>;
using ResultSet =
    Owned<qoc_ocrDictionaryResultSet, qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>;
using RunParams =
    Owned<qoc_ocrDictionaryRunParams, qoc_ocrDictionaryRunParams_construct, qoc_ocrDictionaryRunParams_destruct>;
using Strings = Owned<qstd_vector_qoc_ocrDictionaryString, qstd_vector_qoc_ocrDictionaryString_constructEmpty,
                      qstd_vector_qoc_ocrDictionaryString_destruct>;
using CharSets = Owned<qstd_vector_vectorChar32, qstd_vector_vectorChar32_constructEmpty,
                       qstd_vector_vectorChar32_destruct>;
using CharSet = Owned<qstd_vectorChar32, qstd_vectorChar32_constructEmpty, qstd_vectorChar32_destruct>;
using DictionaryString =
    Owned<qoc_ocrDictionaryString, qoc_ocrDictionaryString_construct, qoc_ocrDictionaryString_destruct>;
using FitParams = Owned<qoc_ocrDictionaryFieldingRunParams, qoc_ocrDictionaryFieldingRunParams_construct,
                        qoc_ocrDictionaryFieldingRunParams_destruct>;
using LineFielding =
    Owned<qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding_construct, qoc_ocrDictionaryLineFielding_destruct>;
using PositionFielding = Owned<qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding_construct,
                               qoc_ocrDictionaryPositionFielding_destruct>;
using RegularExpression =
    Owned<qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression_construct,
          qoc_ocrDictionaryRegularExpression_destruct>;
using SwapChar = Owned<qoc_swapChar, qoc_swapChar_construct, qoc_swapChar_destruct>;
using SwapChars = Owned<qstd_vector_qoc_swapChar, qstd_vector_qoc_swapChar_constructEmpty,
                        qstd_vector_qoc_swapChar_destruct>;
using SwapCharSet = Owned<qoc_swapCharSet, qoc_swapCharSet_construct, qoc_swapCharSet_destruct>;
using ResolverRules = Owned<qoc_ocrDictionaryResolverRules, qoc_ocrDictionaryResolverRules_construct,
                            qoc_ocrDictionaryResolverRules_destruct>;
using Resolver =
    Owned<qoc_ocrDictionaryResolver, qoc_ocrDictionaryResolver_construct, qoc_ocrDictionaryResolver_destruct>;
using Resolution =
    Owned<qoc_ocrDictionaryResolution, qoc_ocrDictionaryResolution_construct, qoc_ocrDictionaryResolution_destruct>;
using EntryCheck =
    Owned<qoc_ocrDictionaryEntryCheck, qoc_ocrDictionaryEntryCheck_construct, qoc_ocrDictionaryEntryCheck_destruct>;
using Integers = Owned<qstd_vector32s, qstd_vector32s_constructEmpty, qstd_vector32s_destruct>;

#define QOC_PROGRAM_ELEMENTS(V, T)                                                                                     \
  inline std::span<const T> elements(const V &vector) {                                                                \
    const T *first = nullptr;                                                                                          \
    std::int32_t n = 0;                                                                                                \
    check(V##_getBeginSizeConst(&vector, &first, &n), "out of resources");                                             \
    return {first, static_cast<std::size_t>(n)};                                                                       \
  }
/// The elements of a vector; they stay where they are until the vector changes.
QOC_PROGRAM_ELEMENTS(qstd_vector32s, std::int32_t)
QOC_PROGRAM_ELEMENTS(qstd_vectorChar32, Char32)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_swapChar, qoc_swapChar)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_ocrDictionaryChar, qoc_ocrDictionaryChar)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_ocrDictionaryPositionStatus, qoc_ocrDictionaryPositionStatus)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_ocrDictionaryResult, qoc_ocrDictionaryResult)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_ocrDictionaryResolvedText, qoc_ocrDictionaryResolvedText)
QOC_PROGRAM_ELEMENTS(qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon)
#undef QOC_PROGRAM_ELEMENTS

} // namespace qoc::program
