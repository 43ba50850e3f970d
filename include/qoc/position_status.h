#ifndef QOC_POSITION_STATUS_H
#define QOC_POSITION_STATUS_H

/** @file What happened at one position, and which kind of dictionary entry a result came from. */

#include <qoc/containers.h>

QOC_BEGIN_DECLS

/** Every position status: name, value. 0 means that none has been set. */
#define QOC_POSITION_STATUS_LIST(X)                                                                                    \
  X(primary, 1)          /* The reading's first candidate is the character. */                                         \
  X(primarySwap, 2)      /* The first candidate may be swapped for the character. */                                   \
  X(secondary, 3)        /* Another candidate is the character. */                                                     \
  X(secondarySwap, 4)    /* Another candidate may be swapped for the character. */                                     \
  X(substituted, 5)      /* The position was replaced by another character. */                                         \
  X(substitutedSpace, 6) /* The position was replaced by a space. */                                                   \
  X(noMatch, 7)          /* Nothing fits. */                                                                           \
  X(inserted, 8)         /* The character has no position in the reading. */                                           \
  X(deleted, 9)          /* The position of the reading has no character. */                                           \
  X(deletedIgnored, 10)  /* The same, and it does not matter. */

/** Every kind of dictionary entry: name, value, single bits. 0 means that none has been set. */
#define QOC_MODE_LIST(X) X(fielding, 1) X(lexicon, 2) X(regularExpression, 4)

typedef int32_t qoc_ocrDictionaryPositionStatus; /**< One of QOC_POSITION_STATUS_LIST. */
typedef int32_t qoc_ocrDictionaryMode;           /**< One of QOC_MODE_LIST. */

#define QOC_POSITION_STATUS_CONSTANT(name, value) qoc_ocrDictionaryPositionStatus_##name = value,
enum { QOC_POSITION_STATUS_LIST(QOC_POSITION_STATUS_CONSTANT) };
#undef QOC_POSITION_STATUS_CONSTANT
#define QOC_MODE_CONSTANT(name, value) qoc_ocrDictionaryMode_##name = value,
enum { QOC_MODE_LIST(QOC_MODE_CONSTANT) };
#undef QOC_MODE_CONSTANT

QOC_DECLARE_TYPE_CHECKS(qoc_ocrDictionaryMode)
QOC_DECLARE_TYPE_CHECKS(qoc_ocrDictionaryPositionStatus)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryPositionStatus, qoc_ocrDictionaryPositionStatus)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryPositionStatus)

/** Prints the value's full name, such as "qoc_ocrDictionaryMode_lexicon"; nothing for a value outside the list. */
QOC_API qsys_status qoc_ocrDictionaryMode_print(qoc_ocrDictionaryMode mode);
/** Prints the value's full name, such as "qoc_ocrDictionaryPositionStatus_primary"; nothing for a value outside the list. */
QOC_API qsys_status qoc_ocrDictionaryPositionStatus_print(qoc_ocrDictionaryPositionStatus status);
/** Reverses the statuses in place. */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryPositionStatus_reverse(
    qstd_vector_qoc_ocrDictionaryPositionStatus *vector);
/** Prints " { ", the names with " , " between them, " } ". */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryPositionStatus_print(
    const qstd_vector_qoc_ocrDictionaryPositionStatus *vector);

QOC_END_DECLS

#endif
