#ifndef QOC_LINE_FIELDING_H
#define QOC_LINE_FIELDING_H

/** @file The shape of a line, position by position. */

#include <qoc/position_fielding.h>
#include <qoc/result_set.h>

QOC_BEGIN_DECLS

/** The shape of a line: for every position what it admits. Empty after construction. */
typedef struct qoc_ocrDictionaryLineFielding {
  qstd_vector_qoc_ocrDictionaryPositionFielding positions;
} qoc_ocrDictionaryLineFielding;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryLineFielding)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryLineFielding)

/** *isEqual becomes 1 when the positions are equal, in order; else 0. */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_compareEqual(const qoc_ocrDictionaryLineFielding *a,
                                                               const qoc_ocrDictionaryLineFielding *b,
                                                               qsys_bool *isEqual);

QOC_END_DECLS

#endif
