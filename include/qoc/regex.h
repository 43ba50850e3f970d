#ifndef QOC_REGEX_H
#define QOC_REGEX_H

/** @file Regular expressions as values. */

#include <qoc/containers.h>

QOC_BEGIN_DECLS

/** A regular expression: immutable once set, shared between copies. Empty after construction. */
typedef struct qstd_regex {
  const void *shared; /**< The compiled expression with its source, or null for the empty one. */
} qstd_regex;

QOC_DECLARE_OBJECT(qstd_regex)

/** *isEqual becomes 1 when the sources are equal, else 0. */
QOC_API qsys_status qstd_regex_compareEqual(const qstd_regex *a, const qstd_regex *b, qsys_bool *isEqual);

QOC_END_DECLS

#endif
