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

/** Constructs with copies of the positions. */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_constructPositionFieldings(
    qoc_ocrDictionaryLineFielding *lineFielding, const qstd_vector_qoc_ocrDictionaryPositionFielding *positions);
/** *isEmpty becomes 1 when there is no position, else 0. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_getIsEmpty(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                             qsys_bool *isEmpty);
/** Hands out the positions, which stay the line fielding's; no copy. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_getPositionFieldings(
    const qoc_ocrDictionaryLineFielding *lineFielding, const qstd_vector_qoc_ocrDictionaryPositionFielding **positions);
/** The number of positions. @return 0 */
QOC_API qsys_status
qoc_ocrDictionaryLineFielding_getNumPositionFieldings(const qoc_ocrDictionaryLineFielding *lineFielding, int32_t *n);
/** Replaces the positions by copies. */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_setPositionFieldings(
    qoc_ocrDictionaryLineFielding *lineFielding, const qstd_vector_qoc_ocrDictionaryPositionFielding *positions);
/**
 * Hands out one position, which stays the line fielding's; no copy.
 *
 * @param[in] index 0 to the number of positions - 1
 * @return 0, QOC_STATUS_INDEX_NEGATIVE or QOC_STATUS_INDEX_TOO_BIG
 */
QOC_API qsys_status
qoc_ocrDictionaryLineFielding_getPositionFielding(const qoc_ocrDictionaryLineFielding *lineFielding, int32_t index,
                                                  const qoc_ocrDictionaryPositionFielding **positionFielding);
/** Copies a position fielding over the one at the index. @return 0, QOC_STATUS_INDEX_NEGATIVE or
 * QOC_STATUS_INDEX_TOO_BIG */
QOC_API qsys_status
qoc_ocrDictionaryLineFielding_setPositionFielding(qoc_ocrDictionaryLineFielding *lineFielding, int32_t index,
                                                  const qoc_ocrDictionaryPositionFielding *positionFielding);
/**
 * Copies out one position; a line that is too short for the index first grows to it, with default position fieldings.
 *
 * @return 0, QOC_STATUS_INDEX_NEGATIVE, or a failure to grow
 */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_getPositionFieldingExtend(
    qoc_ocrDictionaryLineFielding *lineFielding, int32_t index, qoc_ocrDictionaryPositionFielding *positionFielding);
/**
 * Copies a position fielding over the one at the index; a line that is too short first grows, with default position
 * fieldings.
 *
 * @return 0, QOC_STATUS_INDEX_NEGATIVE, or a failure to grow
 */
QOC_API qsys_status
qoc_ocrDictionaryLineFielding_setPositionFieldingExtend(qoc_ocrDictionaryLineFielding *lineFielding, int32_t index,
                                                        const qoc_ocrDictionaryPositionFielding *positionFielding);

/** isMatchMulti on a reading with one candidate at every position. */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_isMatch(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                          const qoc_ocrDictionaryString *input,
                                                          const qoc_ocrDictionaryRunParams *params,
                                                          const qoc_swapCharSet *set, qsys_bool *isMatch);
/** matchMulti on a reading with one candidate at every position. */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_match(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                        const qoc_ocrDictionaryString *input,
                                                        const qoc_ocrDictionaryRunParams *params,
                                                        const qoc_swapCharSet *set,
                                                        qoc_ocrDictionaryResultSet *results);
/**
 * Tells whether the reading, or, with matchOption9, a window of it, has the line's shape, with one edit at most.
 *
 * An edit is a missing character (matchOption2), an extra one that is not the last (matchOption4), or one that its
 * position does not admit (matchOption1); none is allowed where maxEdits is 0.
 *
 * @param[in]  params  may be null: no edits, whole reading, any length
 * @param[in]  set     may be null: no swaps
 * @param[out] isMatch 1 or 0
 * @return 0; the attention status when interrupted; QOC_STATUS_NO_SUCH_VALUE where a candidate that is asked is no text
 * character
 */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_isMatchMulti(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                               const qoc_ocrDictionaryStringMulti *reading,
                                                               const qoc_ocrDictionaryRunParams *params,
                                                               const qoc_swapCharSet *set, qsys_bool *isMatch);
/**
 * Finds every way in which the reading, or, with matchOption9, a window of it, has the line's shape, with one edit at
 * most.
 *
 * Each result's `valid` holds, for every position of the line, the candidates that it admits there. With returnBestOnly
 * a range that fits exactly is not tried with an edit, and with maxEdits 1 nothing is, once something fits exactly.
 *
 * @param[in]  params  may be null: no edits, whole reading, any length
 * @param[in]  set     may be null: no swaps
 * @param[out] results reset, then the ranked, finished results; computed also when there are none. After a failure it
 * holds what was built so far.
 * @return 0; the attention status when interrupted; QOC_STATUS_NO_SUCH_VALUE where a candidate that is asked is no text
 * character
 */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_matchMulti(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                             const qoc_ocrDictionaryStringMulti *reading,
                                                             const qoc_ocrDictionaryRunParams *params,
                                                             const qoc_swapCharSet *set,
                                                             qoc_ocrDictionaryResultSet *results);

QOC_END_DECLS

#endif
