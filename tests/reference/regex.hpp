#ifndef QOC_TESTS_REFERENCE_REGEX_HPP
#define QOC_TESTS_REFERENCE_REGEX_HPP

/** @file Reference model of regular expressions: a plain backtracking matcher over syntax trees. It must never ship. */

#include <cstdint>
#include <utility>
#include <vector>

namespace reference {

/** What one character of an expression accepts. */
struct CharacterSet {
  std::vector<std::pair<uint32_t, uint32_t>> ranges;
  bool isNegated = false;

  bool accepts(uint32_t code) const {
    for (auto [first, last] : ranges)
      if (first <= code && code <= last) return !isNegated;
    return isNegated;
  }
};

struct Pattern {
  enum Kind { character, sequence, choice, repeat } kind = sequence;
  CharacterSet set;
  std::vector<Pattern> parts;  ///< Of a repeat, the one that is repeated.
  int32_t least = 0, most = 0;
};

inline constexpr int32_t anyCount = 0x7FFFFFFF;

/** The codes of one place: the primary one, then the alternatives. emptyCode and anyCode have their meanings. */
using TokenCodes = std::vector<uint32_t>;

/** What a way tells of one place. */
struct MatchedPlace {
  std::vector<uint32_t> codes;
  bool isPrimary = false;
  bool operator==(const MatchedPlace &) const = default;
};
using MatchedWay = std::vector<MatchedPlace>;

/** Thrown when a match takes more steps than are worth waiting for. */
struct TooManySteps {};

/** Every different way in which the sequence matches, in the order in which they are found. */
std::vector<MatchedWay> findWays(const Pattern &pattern, const std::vector<TokenCodes> &sequence);

}  // namespace reference

#endif
