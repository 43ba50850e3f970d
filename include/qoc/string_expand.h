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
/**
 * Expands a reading into every variant that the records allow.
 *
 * At each position the input's character is kept, or replaced, where a record's characters match the candidates there:
 * one character by a pair, a pair by another, a pair by one character; in this order, and for each kind in the order of
 * the records. The variants come in the order of these choices, that of the first position weighing most, so the first
 * variant is the input itself. A character that is put in has two candidates: the empty character, then the new one,
 * both with score 0. It is not swapped again.
 *
 * Equal variants are not removed. Their number is the product of the choices, without a bound.
 *
 * With the record (m; r, n), "m" gives "m" (0) and "rn" (0 0), and "rn" gives "rn" (0 1) and "m" (0).
 *
 * @param[in]  input     the reading; must not lie in the outputs
 * @param[in]  set       decides what matches; may be null: no swaps
 * @param[out] variants  the variants; for an empty reading one empty variant
 * @param[out] positions for each variant, and each of its characters, the input position from which it comes; both
 *                       characters of a pair come from the same position when they stand for one character. Nothing
 *                       for an empty reading
 * @return 0; the attention status when interrupted (asked at every position and every variant), or a container's
 *         failure: the outputs are then empty
 */
QOC_API qsys_status qoc_stringExpand__mapStringMulti(const qoc_stringExpand_ *expansion,
                                                     const qoc_ocrDictionaryStringMulti *input,
                                                     const qoc_swapCharSet *set,
                                                     qstd_vector_qoc_ocrDictionaryStringMulti *variants,
                                                     qstd_vector_vector32s *positions);

QOC_END_DECLS

#endif
