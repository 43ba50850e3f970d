#pragma once
// The match of expressions, for whoever matches one reading with many.

#include <qoc/regular_expression.h>

#include <optional>

#include "kinds/reading_variants.hpp"

namespace qoc {

/// One reading against any number of expressions: what is worked out of the reading is worked out once.
class RegularExpressionMatching {
 public:
  /// The reading and the set, which may be null, stay as they are while the object lives.
  RegularExpressionMatching(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set) noexcept
      : reading_(reading), set_(set) {}

  /// As qoc_ocrDictionaryRegularExpression_matchMulti. May throw what running out of memory throws.
  qsys_status match(const qoc_ocrDictionaryRegularExpression &expression, const qoc_ocrDictionaryRunParams *params,
                    qoc_ocrDictionaryResultSet &results);

 private:
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet *set_;
  std::optional<ReadingVariants> variants_;
};

}  // namespace qoc
