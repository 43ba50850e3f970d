// Every small expression against every short text, compared with a plain backtracking matcher.

#include <gtest/gtest.h>

#include "random/exhaustive.hpp"
#include "random/regex_ways.hpp"
#include "random/small_expressions.hpp"

namespace random_cases {
namespace {

using reference::MatchedWay;
using reference::TokenCodes;

/** Up to four atoms and four operators over two letters, and texts up to four of them; thoroughly with "." too. */
TEST(RegexExhaustive, FindsTheWaysOfABacktrackingMatcherInItsOrder) {
  std::vector<std::vector<TokenCodes>> texts = sequences<TokenCodes>({{'a'}, {'b'}}, 4);
  texts.emplace_back();
  const std::vector<SmallExpression> expressions = smallExpressions(isThorough() ? "ab." : "ab", 4, 4);
  int64_t numMatches = 0;
  for (const SmallExpression &expression : expressions) {
    const auto regex = compiled(expression.source);
    for (const std::vector<TokenCodes> &text : texts) {
      const std::vector<MatchedWay> expected = findWays(expression.pattern, text), actual = waysOf(regex, text);
      if (actual != expected) {
        std::string shown;
        for (const TokenCodes &codes : text) {
          shown += static_cast<char>(codes[0]);
        }
        FAIL() << "expression " << expression.source << ", text " << shown << "\n  expected" << toText(expected)
               << "\n  actual" << toText(actual);
      }
      numMatches += expected.empty() ? 0 : 1;
    }
  }
  std::printf("%zu expressions, %zu texts, %lld matches\n", expressions.size(), texts.size(),
              static_cast<long long>(numMatches));
  EXPECT_GT(numMatches, static_cast<int64_t>(expressions.size()));
}

}  // namespace
}  // namespace random_cases
