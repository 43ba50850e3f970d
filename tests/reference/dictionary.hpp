#ifndef QOC_TESTS_REFERENCE_DICTIONARY_HPP
#define QOC_TESTS_REFERENCE_DICTIONARY_HPP

/** @file Reference model of the dictionary's run over its entries of all kinds. */

#include "reference/lexicon.hpp"
#include "reference/line_fielding.hpp"
#include "reference/regular_expression.hpp"

namespace reference {

struct Dictionary {
  std::vector<Lexicon> lexicons;
  std::vector<LineFielding> fieldings;
  std::vector<RegularExpression> expressions;

  /** The ranked results of a reading. @param[in] swaps may be null */
  ResultSet runMulti(const Reading &reading, const RunParams &params, const Swaps *swaps, Polls &polls) const;
};

}  // namespace reference

#endif
