#pragma once
// What the copies of a regular expression share.

#include <qoc/regex.h>

#include <atomic>
#include <vector>

#include "platform/regex/expression.hpp"

namespace qoc {

/// A compiled expression with its source. Never changed once it is made.
struct SharedExpression {
  std::vector<Char32> source;
  Expression expression;
  mutable std::atomic<std::int64_t> numHolders{1};
};

inline const SharedExpression *sharedOf(const qstd_regex &regex) noexcept {
  return static_cast<const SharedExpression *>(regex.shared);
}

inline const Expression &expressionOf(const qstd_regex &regex) {
  return regex.shared != nullptr ? sharedOf(regex)->expression : emptyExpression();
}

}  // namespace qoc
