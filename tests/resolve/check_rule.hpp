#pragma once
// Check digit rules, written shortly.

#include <qoc/check_digit.h>

#include <vector>

#include "support/owned.hpp"

namespace qoc::test {

inline Owned<qoc_checkDigitRule> rule(qoc_checkDigitMethod method, const std::vector<qstd_span32> &parts = {}) {
  Owned<qoc_checkDigitRule> made;
  made->method = method;
  require(qstd_vector_qstd_span32_assignElements(&made->parts, parts.data(), static_cast<int32_t>(parts.size())));
  return made;
}

}  // namespace qoc::test
