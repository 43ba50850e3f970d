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

/** *isEqual becomes 1 when the first sequences are equal and the second ones too, else 0; (x, y) is not (y, x). */
QOC_API qsys_status qoc_swapChar_compareEqual(const qoc_swapChar *a, const qoc_swapChar *b, qsys_bool *isEqual);

QOC_END_DECLS

#endif
