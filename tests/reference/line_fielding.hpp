#ifndef QOC_TESTS_REFERENCE_LINE_FIELDING_HPP
#define QOC_TESTS_REFERENCE_LINE_FIELDING_HPP

/** @file Reference model of the shape of a line: every range and every alignment, by plain enumeration. */

#include "reference/position_fielding.hpp"

namespace reference {

struct LineFielding {
  std::vector<PositionFielding> positions;

  /** @param[in] params may be null, here and below */
  bool isMatchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) const;
  ResultSet matchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) const;
};

}  // namespace reference

#endif
