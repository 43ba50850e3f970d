#ifndef QOC_TESTS_RANDOM_SMALL_EXPRESSIONS_HPP
#define QOC_TESTS_RANDOM_SMALL_EXPRESSIONS_HPP

/** @file Every small regular expression: a tree for the reference model, and the same as source text. */

#include <string>
#include <vector>

#include "reference/regex.hpp"

namespace random_cases {

struct SmallExpression {
  reference::Pattern pattern;
  std::string source;
};

/** Every expression of up to so many atoms and so many operators. The atoms are the characters given, of which '.' is
 * any; the operators are two things in a row, either of two, and the repeats *, + and ?. */
std::vector<SmallExpression> smallExpressions(const std::string &atoms, int mostAtoms, int mostOperators);

}  // namespace random_cases

#endif
