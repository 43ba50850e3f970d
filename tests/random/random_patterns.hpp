#ifndef QOC_TESTS_RANDOM_RANDOM_PATTERNS_HPP
#define QOC_TESTS_RANDOM_RANDOM_PATTERNS_HPP

/** @file Random small expressions: a tree for the reference model, and the same as source text for the library. */

#include <string>

#include "random/random_cases.hpp"
#include "reference/regex.hpp"

namespace random_cases {

/** A random expression over the letters; `depth` bounds how deep its groups nest. */
reference::Pattern randomPattern(Random &random, const std::vector<uint32_t> &letters, int32_t depth);

/** The source of an expression, written in one of the ways there are. */
std::string sourceOf(Random &random, const reference::Pattern &pattern);

/** Runs a comparison, which gives its difference, unless the model's plain way of matching takes too long. */
template <class Compare>
std::string unlessTooLong(Compare compare) {
  try {
    return compare();
  } catch (const reference::TooManySteps &) {
    ++numPassedOver();
    return "";
  }
}

}  // namespace random_cases

#endif
