#ifndef QOC_SWAP_CHAR_H
#define QOC_SWAP_CHAR_H

/** @file One allowed confusion between two character sequences. */

#include <qoc/dictionary_string.h>

QOC_BEGIN_DECLS

/** One allowed confusion: the reader may show one sequence where the other stands. Both empty after construction. */
typedef struct qoc_swapChar {
  qstd_vectorChar32 first, second;
} qoc_swapChar;

QOC_DECLARE_OBJECT(qoc_swapChar)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_swapChar, qoc_swapChar)

/** Finds the first swap equal to the given one. @param[out] element its address in the vector, or null @return 0 */
QOC_API qsys_status qstd_vector_qoc_swapChar_find(const qstd_vector_qoc_swapChar *vector, const qoc_swapChar *swap,
                                                  const qoc_swapChar **element);

/** Constructs, then qoc_swapChar_setStrings; unconstructed on failure. */
QOC_API qsys_status qoc_swapChar_constructStrings(qoc_swapChar *swap, const qoc_ocrDictionaryString *first,
                                                  const qoc_ocrDictionaryString *second);
/** Constructs, then qoc_swapChar_setCharacters; unconstructed on failure. */
QOC_API qsys_status qoc_swapChar_constructCharacters(qoc_swapChar *swap, const qoc_ocrDictionaryChar *first,
                                                     const qoc_ocrDictionaryChar *second);
/** Constructs, then qoc_swapChar_setVectors; unconstructed on failure. */
QOC_API qsys_status qoc_swapChar_constructVectors(qoc_swapChar *swap, const qstd_vector_qoc_ocrDictionaryChar *first,
                                                  const qstd_vector_qoc_ocrDictionaryChar *second);
/**
 * Sets the two sequences from strings; only the codes are kept, the scores are dropped.
 *
 * The strings must not be empty, and the shorter must not occur in the longer. Its occurrence at the very end of the
 * longer one is not looked for: ("AB", "A") is refused, ("AB", "B") is accepted.
 *
 * @param[in] first, second copied
 * @return 0; QOC_STATUS_STRING_EMPTY when a string is empty, QOC_STATUS_SWAP_CONTAINED when they are equal or the
 *         shorter occurs in
 *         the longer (the swap is unchanged); or a container's failure (the first sequence may be replaced already)
 */
QOC_API qsys_status qoc_swapChar_setStrings(qoc_swapChar *swap, const qoc_ocrDictionaryString *first,
                                            const qoc_ocrDictionaryString *second);
/** As qoc_swapChar_setStrings, from vectors; but an empty one gives QOC_STATUS_SWAP_CONTAINED. */
QOC_API qsys_status qoc_swapChar_setVectors(qoc_swapChar *swap, const qstd_vector_qoc_ocrDictionaryChar *first,
                                            const qstd_vector_qoc_ocrDictionaryChar *second);
/**
 * Sets each sequence to one character's code.
 *
 * @return 0; QOC_STATUS_SWAP_SAME_CHARACTER when the codes are equal (the swap is unchanged); or a container's failure
 */
QOC_API qsys_status qoc_swapChar_setCharacters(qoc_swapChar *swap, const qoc_ocrDictionaryChar *first,
                                               const qoc_ocrDictionaryChar *second);
/** Writes the sequences to two strings, first the first; every score is 0. @return 0, or a container's failure */
QOC_API qsys_status qoc_swapChar_getStrings(const qoc_swapChar *swap, qoc_ocrDictionaryString *first,
                                            qoc_ocrDictionaryString *second);
/** *isSingle becomes 1 when both sequences have exactly one character, else 0. @return 0 */
QOC_API qsys_status qoc_swapChar_getIsSingleCharSwap(const qoc_swapChar *swap, qsys_bool *isSingle);
/** *isEqual becomes 1 when the first sequences are equal and the second ones too, else 0; (x, y) is not (y, x). */
QOC_API qsys_status qoc_swapChar_compareEqual(const qoc_swapChar *a, const qoc_swapChar *b, qsys_bool *isEqual);

QOC_END_DECLS

#endif
