#ifndef QOC_TESTS_RANDOM_REGEX_WAYS_HPP
#define QOC_TESTS_RANDOM_REGEX_WAYS_HPP

/** @file The library's matches of an expression as values of the reference model. */

#include <qoc/regex.h>

#include <string>

#include "reference/regex.hpp"
#include "support/owned.hpp"

namespace random_cases {

qoc::test::Owned<qstd_regex> compiled(const std::string &source);

/** Every way in which the library finds the sequence to match, in its order. */
std::vector<reference::MatchedWay> waysOf(const qoc::test::Owned<qstd_regex> &regex,
                                          const std::vector<reference::TokenCodes> &sequence);

std::string toText(const std::vector<reference::MatchedWay> &ways);

}  // namespace random_cases

#endif
