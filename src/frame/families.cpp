// The vector families and type checks of the library's own types: one line each.

#include <qoc/ocr_dictionary.h>

#include "platform/containers/vector_family.hpp"

QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryChar)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryCharMulti)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryString)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryStringMulti)
QOC_DEFINE_TYPE_CHECKS(qoc_swapChar)
QOC_DEFINE_TYPE_CHECKS(qoc_stringExpandOneToTwo_)
QOC_DEFINE_TYPE_CHECKS(qoc_stringExpandTwoToTwo_)
QOC_DEFINE_TYPE_CHECKS(qoc_stringExpand_)
QOC_DEFINE_TYPE_CHECKS(qoc_swapCharSet)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryLexicon)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryPositionFielding)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryLineFielding)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryRegularExpression)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryMode)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryPositionStatus)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryRunParams)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryFieldingRunParams)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryResult)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryResultSet)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionary)
QOC_DEFINE_TYPE_CHECKS(qoc_checkDigitRule)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryConfusion)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryEntryCheck)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryResolverRules)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryResolvedText)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryResolution)
QOC_DEFINE_TYPE_CHECKS(qoc_ocrDictionaryResolver)

QOC_DEFINE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryChar, qoc_ocrDictionaryChar,
                         (qoc::plainElementTableWithDefault<qoc_ocrDictionaryChar, qoc_ocrDictionaryChar_construct>))
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_vector_qoc_ocrDictionaryChar, qstd_vector_qoc_ocrDictionaryChar,
                         qstd_vector_qoc_ocrDictionaryChar, constructEmpty)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti,
                         qoc_ocrDictionaryCharMulti, construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryString, qoc_ocrDictionaryString, qoc_ocrDictionaryString,
                         construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryStringMulti, qoc_ocrDictionaryStringMulti,
                         qoc_ocrDictionaryStringMulti, construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_swapChar, qoc_swapChar, qoc_swapChar, construct)
QOC_DEFINE_VECTOR_FAMILY(qstd_vector_qoc_stringExpandOneToTwo_, qoc_stringExpandOneToTwo_, qoc::plainElementTable)
QOC_DEFINE_VECTOR_FAMILY(qstd_vector_qoc_stringExpandTwoToTwo_, qoc_stringExpandTwoToTwo_, qoc::plainElementTable)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon,
                         construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding,
                         qoc_ocrDictionaryPositionFielding, construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding,
                         qoc_ocrDictionaryLineFielding, construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression,
                         qoc_ocrDictionaryRegularExpression, construct)
QOC_DEFINE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryPositionStatus, qoc_ocrDictionaryPositionStatus,
                         qoc::plainElementTable)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryResult, qoc_ocrDictionaryResult, qoc_ocrDictionaryResult,
                         construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_vector_qoc_ocrDictionaryResult, qstd_vector_qoc_ocrDictionaryResult,
                         qstd_vector_qoc_ocrDictionaryResult, constructEmpty)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryResultSet, qoc_ocrDictionaryResultSet,
                         qoc_ocrDictionaryResultSet, construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_checkDigitRule, qoc_checkDigitRule, qoc_checkDigitRule, construct)
QOC_DEFINE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryConfusion, qoc_ocrDictionaryConfusion, qoc::plainElementTable)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryEntryCheck, qoc_ocrDictionaryEntryCheck,
                         qoc_ocrDictionaryEntryCheck, construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qoc_ocrDictionaryResolvedText, qoc_ocrDictionaryResolvedText,
                         qoc_ocrDictionaryResolvedText, construct)

#define QOC_COMPARE_EQUAL_BY_ELEMENT(V, T, compare) \
  QOC_DEFINE_VECTOR_COMPARE_EQUAL(V, (qoc::compareElements<T, compare>))

QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_qoc_ocrDictionaryChar, qoc_ocrDictionaryChar,
                             qoc_ocrDictionaryChar_compareEqual)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_vector_qoc_ocrDictionaryChar, qstd_vector_qoc_ocrDictionaryChar,
                             qstd_vector_qoc_ocrDictionaryChar_compareEqual)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti,
                             qoc_ocrDictionaryCharMulti_compareEqual)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_qoc_ocrDictionaryString, qoc_ocrDictionaryString,
                             qoc_ocrDictionaryString_compareEqual)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon,
                             qoc_ocrDictionaryLexicon_compareEqual)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding,
                             qoc_ocrDictionaryPositionFielding_compareEqual)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding,
                             qoc_ocrDictionaryLineFielding_compareEqual)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_vector_qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression,
                             qoc_ocrDictionaryRegularExpression_compareEqual)
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryPositionStatus,
                                qoc::comparePlainElements<qoc_ocrDictionaryPositionStatus>)
