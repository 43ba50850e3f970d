#ifndef QOC_REGULAR_EXPRESSION_H
#define QOC_REGULAR_EXPRESSION_H

/** @file Regular expressions as dictionary entries. */

#include <qoc/regex.h>
#include <qoc/result_set.h>
#include <qoc/swap_char_set.h>

QOC_BEGIN_DECLS

/** A regular expression as a dictionary entry. Empty after construction. */
typedef struct qoc_ocrDictionaryRegularExpression {
  qstd_regex regex;
} qoc_ocrDictionaryRegularExpression;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryRegularExpression)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryRegularExpression)

/** *isEqual becomes 1 when the sources are equal, else 0. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_compareEqual(const qoc_ocrDictionaryRegularExpression *a,
                                                                    const qoc_ocrDictionaryRegularExpression *b,
                                                                    qsys_bool *isEqual);

QOC_END_DECLS

#endif
