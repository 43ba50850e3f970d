#ifndef QOC_RESULT_H
#define QOC_RESULT_H

/** @file One way in which a reading is a dictionary string. */

#include <qoc/dictionary_string.h>

QOC_BEGIN_DECLS

/** One way in which a reading matches one dictionary entry. Owns its strings and vectors. Values after construction in brackets. */
typedef struct qoc_ocrDictionaryResult {
  qsys_bool isComputed;                   /**< [0] 1: holds a finished match. */
  qoc_ocrDictionaryStringMulti given;     /**< [empty] The reading as the match saw it. */
  qoc_ocrDictionaryString dictionaryString; /**< [empty] The dictionary string that it was matched to, with its scores. */
  qstd_vector_qoc_ocrDictionaryPositionStatus resultStringStatus; /**< [empty] A status for each position of the result. */
  qstd_vector_qoc_ocrDictionaryPositionStatus statusWRTInputStringSwapChar; /**< [empty] A status for each input position. */
  qoc_ocrDictionaryPositionStatus resultStringLineStatus; /**< [noMatch] The largest of resultStringStatus. */
  qstd_vector32s deleted;             /**< [empty] Input indices that the alignment deleted, in the order found. */
  int32_t numIgnoredPrefixCharacters; /**< [0] Input positions before the matched window. */
  int32_t numIgnoredSuffixCharacters; /**< [0] Input positions after it. */
  int32_t startFieldIndex;            /**< [0] The position of a line fielding at which the match starts. */
  int32_t scoreStatusMask;            /**< [3] Statuses that count towards score: 3 (1 and 2) or 15 (1 to 4). */
  qoc_ocrDictionaryMode mode;         /**< [fielding] The kind of entry that gave the result. */
  qoc_ocrDictionaryStringMulti givenSwap; /**< [empty] The reading after swaps. */
  qstd_vector32s inputIndices;            /**< [empty] Input indices of the swapped reading's positions. */
  qoc_ocrDictionaryStringMulti valid;     /**< [empty] The dictionary's side of the result, with candidates. */
  int32_t numEdits;                       /**< [0] Insertions, deletions and substitutions. */
  qsys_bool ignoreDeletedSpaces;          /**< [1] 1: a deleted space is deletedIgnored. */
  qsys_bool scoreIsCached;                /**< [0] Ranking's own, like score. */
  int32_t score;                          /**< [0] */
  int32_t overlapInputString;             /**< [0] Overlap with the input string, where a fielding sets it. */
  qsys_bool numInsertedIsCached;          /**< [0] Ranking's own, like the rest. */
  int32_t numInserted;                    /**< [0] */
  int32_t orderIndex;                     /**< [0] */
  qsys_bool numMatchedPositionsIsCached;  /**< [0] */
  int32_t numMatchedPositions;            /**< [0] */
} qoc_ocrDictionaryResult;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryResult)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryResult, qoc_ocrDictionaryResult)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_vector_qoc_ocrDictionaryResult, qstd_vector_qoc_ocrDictionaryResult)

/** Back to the values after construction, but for scoreStatusMask, ignoreDeletedSpaces and statusWRTInputStringSwapChar. */
QOC_API qsys_status qoc_ocrDictionaryResult_reset(qoc_ocrDictionaryResult *result);
/** *isEqual becomes 1 when the modes are equal and the results are the same reading with the same edits; else 0. */
QOC_API qsys_status qoc_ocrDictionaryResult_compareEqual(const qoc_ocrDictionaryResult *a,
                                                         const qoc_ocrDictionaryResult *b, qsys_bool *isEqual);
/** @return 0, or QOC_STATUS_NOT_COMPUTED when the result holds no finished match */
QOC_API qsys_status qoc_ocrDictionaryResult_checkComputed(const qoc_ocrDictionaryResult *result);
/**
 * Writes `valid` as a plain string; with withSwap not 0 it does nothing.
 *
 * @return 0, or QOC_STATUS_NO_SUCH_VALUE where a position of `valid` has not exactly one candidate
 */
QOC_API qsys_status qoc_ocrDictionaryResult_getDictionaryString(const qoc_ocrDictionaryResult *result,
                                                                qsys_bool withSwap, qoc_ocrDictionaryString *string);
/** The number of positions with status primary. */
QOC_API qsys_status qoc_ocrDictionaryResult_getNumPrimaryCharacters(const qoc_ocrDictionaryResult *result, int32_t *n);
/** The number of positions with status secondary. */
QOC_API qsys_status qoc_ocrDictionaryResult_getNumSecondaryCharacters(const qoc_ocrDictionaryResult *result,
                                                                      int32_t *n);
/**
 * *isSingular becomes 1 when the position of `valid` has one candidate, which is not the wildcard 0xF801; else 0.
 *
 * @return 0, QOC_STATUS_NOT_COMPUTED, QOC_STATUS_POSITION_NEGATIVE or QOC_STATUS_POSITION_TOO_BIG
 */
QOC_API qsys_status qoc_ocrDictionaryResult_getIsSingularPos(const qoc_ocrDictionaryResult *result, int32_t position,
                                                             qsys_bool *isSingular);
/** A status for each position of `given`. @return 0 or QOC_STATUS_NOT_COMPUTED */
QOC_API qsys_status qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(
    const qoc_ocrDictionaryResult *result, qstd_vector_qoc_ocrDictionaryPositionStatus *statuses);
/** The same for one position. @return 0, QOC_STATUS_NOT_COMPUTED, QOC_STATUS_POSITION_NEGATIVE or QOC_STATUS_POSITION_TOO_BIG */
QOC_API qsys_status qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(const qoc_ocrDictionaryResult *result,
                                                                               int32_t position,
                                                                               qoc_ocrDictionaryPositionStatus *status);
/** For each position of the result its input index, or -1 where it is inserted. @return 0 or QOC_STATUS_NOT_COMPUTED */
QOC_API qsys_status qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(
    const qoc_ocrDictionaryResult *result, qstd_vector32s *indices);
/** The positions of the result that are inserted, ascending. @return 0 or QOC_STATUS_NOT_COMPUTED */
QOC_API qsys_status qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices(
    const qoc_ocrDictionaryResult *result, qstd_vector32s *indices);
/**
 * The input index of one position of a result, from the two status vectors alone; -1 where it is inserted.
 *
 * @return 0, QOC_STATUS_INDEX_NEGATIVE or QOC_STATUS_INDEX_TOO_BIG
 */
QOC_API qsys_status qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(
    int32_t resultIndex, const qstd_vector_qoc_ocrDictionaryPositionStatus *inputStatus,
    const qstd_vector_qoc_ocrDictionaryPositionStatus *resultStatus, int32_t *inputIndex);
/** Prints the result on one line without its end. */
QOC_API qsys_status qoc_ocrDictionaryResult_print(const qoc_ocrDictionaryResult *result);
/** Prints " { ", the results, " } ". */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryResult_print(const qstd_vector_qoc_ocrDictionaryResult *vector);

QOC_END_DECLS

#endif
