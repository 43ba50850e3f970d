#ifndef QOC_POSITION_FIELDING_H
#define QOC_POSITION_FIELDING_H

/** @file Which characters one position of a line may hold. */

#include <qoc/swap_char_set.h>

QOC_BEGIN_DECLS

#define QOC_FIELDING_UPPER 1u     /**< 'A' to 'Z'. */
#define QOC_FIELDING_LOWER 2u     /**< 'a' to 'z'. */
#define QOC_FIELDING_DIGIT 4u     /**< '0' to '9'. */
#define QOC_FIELDING_SPACE 8u     /**< The space. */
#define QOC_FIELDING_NONSPACE 16u /**< Everything but the space. */

/** The characters that one position admits: by class, and by list. After construction, everything but the space. */
typedef struct qoc_ocrDictionaryPositionFielding {
  uint32_t fieldingBits;                /**< Sum of QOC_FIELDING_… bits. */
  qstd_vectorChar32 fieldingCharacters; /**< Further codes, 0xF801 and 0xF802 among them as wildcards. */
} qoc_ocrDictionaryPositionFielding;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryPositionFielding)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryPositionFielding)

/** *isEqual becomes 1 when the bits are equal and the lists too, in order; else 0. */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_compareEqual(const qoc_ocrDictionaryPositionFielding *a,
                                                                   const qoc_ocrDictionaryPositionFielding *b,
                                                                   qsys_bool *isEqual);

QOC_END_DECLS

#endif
