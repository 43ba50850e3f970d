#ifndef QOC_RESULT_SET_H
#define QOC_RESULT_SET_H

/** @file The ranked results of a run. */

#include <qoc/result.h>

QOC_BEGIN_DECLS

/** The ranked results of a run, best first. */
struct qoc_ocrDictionaryResultSet {
  qsys_bool isComputed;                        /**< 0 after construction and reset; 1 once a run has finished with it. */
  qstd_vector_qoc_ocrDictionaryResult results; /**< Owned. */
};

QOC_DECLARE_OBJECT(qoc_ocrDictionaryResultSet)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryResultSet, qoc_ocrDictionaryResultSet)

/** Not computed, no results. */
QOC_API qsys_status qoc_ocrDictionaryResultSet_reset(qoc_ocrDictionaryResultSet *set);
/** Prints the set, and its results when it is computed, without line ends. */
QOC_API qsys_status qoc_ocrDictionaryResultSet_print(const qoc_ocrDictionaryResultSet *set);

QOC_END_DECLS

#endif
