#ifndef QOC_FIELDING_RUN_H
#define QOC_FIELDING_RUN_H

/** @file The fielding run: a reading forced into the shape of a line. */

#include <qoc/line_fielding.h>

QOC_BEGIN_DECLS

/** The options of a fielding run: a plain record that owns nothing. Defaults in brackets. */
typedef struct qoc_ocrDictionaryFieldingRunParams {
  int32_t fieldingMode;    /**< [1] 1: the whole line at every offset; else parts; 0: of a line long enough. */
  int32_t minStringLength; /**< [1] Smallest part of the line that is placed; at least 1. */
  int32_t maxStringLength; /**< [0x7FFFFFFF] Largest part of the line that is placed. */
  int32_t limitA;          /**< [0x7FFFFFFF] Most positions skipped at the start of the line; not negative. */
  int32_t limitB;          /**< [0] A part that starts at position s must be longer than limitB - s; not negative. */
  int32_t trimEmptyEnds;   /**< [1] Not 0: empty ends of the reading do not count as overlap; not in mode 1. */
  int32_t fieldingOption7; /**< [1] Not 0: the result has ignoreDeletedSpaces. */
  int32_t rankingVariant;  /**< [3] 3: primary characters decide; 15: secondary ones too. Not compared. */
} qoc_ocrDictionaryFieldingRunParams;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryFieldingRunParams)

/** Back to the defaults. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryFieldingRunParams_reset(qoc_ocrDictionaryFieldingRunParams *params);
/** *isEqual becomes 1 when all fields but rankingVariant are equal, else 0. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryFieldingRunParams_compareEqual(const qoc_ocrDictionaryFieldingRunParams *a,
                                                                    const qoc_ocrDictionaryFieldingRunParams *b,
                                                                    qsys_bool *isEqual);
/**
 * Checks the fields; the first fault wins.
 *
 * @return 0; QOC_STATUS_MIN_LENGTH_INVALID when minStringLength is below 1; QOC_STATUS_LENGTHS_REVERSED when it is
 * above maxStringLength; QOC_STATUS_LIMIT_A_NEGATIVE; QOC_STATUS_LIMIT_B_NEGATIVE; QOC_STATUS_RANKING_VARIANT_INVALID
 * when rankingVariant is neither 3 nor 15
 */
QOC_API qsys_status qoc_ocrDictionaryFieldingRunParams_validate(const qoc_ocrDictionaryFieldingRunParams *params);

/**
 * Forces a reading into the shape of a line: places the line along the reading, takes for every position the best
 * character that it admits, and keeps the best placement.
 *
 * A position takes the primary candidate, else one of its swap equivalents, else another candidate or an equivalent of
 * that; where none is admitted, its only character, else the space, else the empty character. A position of the line
 * outside the reading is `inserted`. A line without positions takes over the primary candidates as they are.
 *
 * @param[in]  set     may be null: no swaps
 * @param[out] results reset first; computed, with exactly one result, afterwards. That result is not computed where no
 * part of the line could be placed within the limits. After a failure it may hold a partial result.
 * @return 0; a failure of qoc_ocrDictionaryFieldingRunParams_validate; QOC_STATUS_FIELDING_POSITION_EMPTY;
 * QOC_STATUS_STRING_EMPTY for an empty reading; QOC_STATUS_CANDIDATES_MISSING; QOC_STATUS_CHARACTER_DUPLICATE when a
 * position of the reading has two candidates of one code; with fieldingMode 0 QOC_STATUS_FIELDING_TOO_SHORT_FOR_LIMIT
 * when the line is not longer than limitB, or QOC_STATUS_FIELDING_TOO_SHORT when it is shorter than minStringLength;
 * QOC_STATUS_NO_SUCH_VALUE where a candidate that is asked is no text character, or, for a line without positions, a
 * position has no candidate; the attention status when interrupted
 */
QOC_API qsys_status qoc_ocrDictionaryLineFielding_runFieldingParams(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                                    const qoc_swapCharSet *set,
                                                                    const qoc_ocrDictionaryStringMulti *reading,
                                                                    const qoc_ocrDictionaryFieldingRunParams *params,
                                                                    qoc_ocrDictionaryResultSet *results);

QOC_END_DECLS

#endif
