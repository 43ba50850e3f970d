#ifndef QOC_RUN_PARAMS_H
#define QOC_RUN_PARAMS_H

/** @file The options of a run. */

#include <qoc/vector.h>

QOC_BEGIN_DECLS

/** The options of a run: a plain record that owns nothing. Defaults in brackets. */
typedef struct qoc_ocrDictionaryRunParams {
  int32_t maxEdits;        /**< [0] Edits that an alignment may need. */
  int32_t matchOption1;    /**< [1] Not 0: a character may be substituted. */
  int32_t matchOption2;    /**< [1] Not 0: the reading may lack a dictionary character. */
  int32_t matchOption3;    /**< [0] Handed on; nothing reads it, and compareEqual passes over it. */
  int32_t matchOption4;    /**< [1] Not 0: the reading may have an extra character. */
  int32_t minStringLength; /**< [1] Smallest length that is matched. */
  int32_t maxStringLength; /**< [0x7FFFFFFF] Largest length that is matched. */
  int32_t matchOption7;    /**< [1] Handed on; nothing reads it. */
  int32_t returnBestOnly;  /**< [1] Not 0: keep only the best result, and stop early. */
  int32_t matchOption9;    /**< [0] Not 0: also match windows of the reading, ignoring what stands before and after. */
  int32_t finalizeEachResult; /**< [0] Not 0: take inserted positions out of the results. */
  int32_t matchOption11;      /**< [0] Handed on. Passed over by compareEqual, like every field from here on. */
  int32_t matchOption12;      /**< [0] Handed on. */
  int32_t matchOption13;      /**< [0] Handed on. */
  int32_t limitA;             /**< [0x7FFFFFFF] Not negative. */
  int32_t limitB;             /**< [0] Not negative. */
  int32_t rankingMode;        /**< [0] 1: rank by one of the two scoring orders. */
  int32_t reserved1;          /**< Left as it was by construct. */
  int32_t reserved2;          /**< Left as it was by construct. */
  int32_t rankingVariant;     /**< [3] Where rankingMode is 1: 3 ranks by primary characters, any other value by primary and secondary. */
} qoc_ocrDictionaryRunParams;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryRunParams)

/**
 * Checks the lengths and limits; the first fault wins.
 *
 * @return 0; QOC_STATUS_MIN_LENGTH_INVALID when minStringLength is below 1; QOC_STATUS_LENGTHS_REVERSED when it is above
 *         maxStringLength; QOC_STATUS_LIMIT_NEGATIVE when limitA or limitB is negative
 */
QOC_API qsys_status qoc_ocrDictionaryRunParams_validate(const qoc_ocrDictionaryRunParams *params);
/** *isSatisfied becomes 1 when minStringLength <= length <= maxStringLength, or params is null; else 0. */
QOC_API qsys_status qoc_ocrDictionaryRunParams_satisfiesStringLength(const qoc_ocrDictionaryRunParams *params,
                                                                     int32_t length, qsys_bool *isSatisfied);
/** *isEqual becomes 1 when the fields up to finalizeEachResult, matchOption3 aside, are equal; else 0. */
QOC_API qsys_status qoc_ocrDictionaryRunParams_compareEqual(const qoc_ocrDictionaryRunParams *a,
                                                            const qoc_ocrDictionaryRunParams *b, qsys_bool *isEqual);

QOC_END_DECLS

#endif
