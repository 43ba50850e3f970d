#pragma once
// Calls that cannot fail, without their status.

#include <qoc/system.h>

namespace qoc {

/// What a query answers that is asked about objects that are there: it only looks at them, and cannot fail.
template <auto Query, class... Asked>
bool answerOf(const Asked &...asked) noexcept {
  qsys_bool answer = 0;
  Query(&asked..., &answer);
  return answer != 0;
}

}  // namespace qoc
