#pragma once
// The orders of results that the merge and the fielding run use too.

#include <qoc/result.h>

namespace qoc {

/// Each gives -1 when a comes first, 1 when b does, 0 when all keys tie; what is counted is cached in the results.
int compareDefault(qoc_ocrDictionaryResult &a, qoc_ocrDictionaryResult &b);
int comparePrimary(qoc_ocrDictionaryResult &a, qoc_ocrDictionaryResult &b);
int comparePrimaryAndSecondary(qoc_ocrDictionaryResult &a, qoc_ocrDictionaryResult &b);

}  // namespace qoc
