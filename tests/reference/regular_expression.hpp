#ifndef QOC_TESTS_REFERENCE_REGULAR_EXPRESSION_HPP
#define QOC_TESTS_REFERENCE_REGULAR_EXPRESSION_HPP

/** @file Reference model of regular expressions as dictionary entries: one sequence after the other. */

#include "reference/records.hpp"
#include "reference/regex.hpp"

namespace reference {

inline constexpr int32_t modeRegularExpression = 4;

struct RegularExpression {
  Pattern pattern;

  /** @param[in] params may be null @param[in] swaps may be null, here and below */
  bool isMatchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps,
                    Polls &polls) const;
  ResultSet matchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps,
                       Polls &polls) const;
};

}  // namespace reference

#endif
