#ifndef QOC_STRING_EXPAND_H
#define QOC_STRING_EXPAND_H

/** @file The multi-character swaps of a set, as records. */

#include <qoc/dictionary_string.h>

QOC_BEGIN_DECLS

/** One character that may stand for two, or two for the one. All 0 after construction. */
typedef struct qoc_stringExpandOneToTwo_ {
  Char32 single, pairFirst, pairSecond;
} qoc_stringExpandOneToTwo_;

QOC_DECLARE_OBJECT(qoc_stringExpandOneToTwo_)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_stringExpandOneToTwo_, qoc_stringExpandOneToTwo_)

/** Two characters that the reading may show, and the two for which they stand. All 0 after construction. */
typedef struct qoc_stringExpandTwoToTwo_ {
  Char32 fromFirst, fromSecond, toFirst, toSecond;
} qoc_stringExpandTwoToTwo_;

QOC_DECLARE_OBJECT(qoc_stringExpandTwoToTwo_)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_stringExpandTwoToTwo_, qoc_stringExpandTwoToTwo_)

/** The records of a set's multi-character swaps. */
typedef struct qoc_stringExpand_ {
  qstd_vector_qoc_stringExpandOneToTwo_ oneToTwo;
  qstd_vector_qoc_stringExpandTwoToTwo_ twoToTwo;
} qoc_stringExpand_;

QOC_DECLARE_OBJECT(qoc_stringExpand_)

/** Removes all records. */
QOC_API qsys_status qoc_stringExpand__reset(qoc_stringExpand_ *expansion);
/** *isEmpty becomes 1 when there is no record, else 0. */
QOC_API qsys_status qoc_stringExpand__isEmpty(const qoc_stringExpand_ *expansion, qsys_bool *isEmpty);

QOC_END_DECLS

#endif
