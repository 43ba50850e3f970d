// Random comparison of the regular expressions with a plain backtracking matcher, and with the standard library's.

#include <qoc/regex.h>

#include <algorithm>
#include <regex>

#include "random/random_cases.hpp"
#include "random/random_patterns.hpp"
#include "random/regex_ways.hpp"

namespace random_cases {
namespace {

using qoc::test::Owned;
using reference::MatchedWay;
using reference::Pattern;
using reference::TokenCodes;

std::vector<TokenCodes> randomSequence(Random &random, const Alphabet &alphabet, int32_t longest) {
  std::vector<TokenCodes> sequence(static_cast<size_t>(random.between(0, longest)));
  for (TokenCodes &codes : sequence) {
    codes.resize(static_cast<size_t>(random.pick({1, 1, 2, 2, 3})));
    for (uint32_t &code : codes) {
      code = randomCode(random, alphabet);
    }
  }
  return sequence;
}

/// Puts copies around an expression that no small sequence can match, so that it has more than 64 positions.
Pattern widened(Random &random, const Pattern &pattern) {
  Pattern never;
  never.kind = Pattern::character;
  never.set.ranges.push_back({'#', '#'});
  Pattern many;
  many.kind = Pattern::repeat;
  many.parts.push_back(never);
  many.least = many.most = 80;
  Pattern choice;
  choice.kind = Pattern::choice;
  choice.parts = random.oneIn(2) ? std::vector<Pattern>{many, pattern} : std::vector<Pattern>{pattern, many};
  return choice;
}

std::string compareWays(Random &random, const Alphabet &alphabet, const Pattern &pattern, int32_t longest) {
  const std::string source = sourceOf(random, pattern);
  const std::vector<TokenCodes> sequence = randomSequence(random, alphabet, longest);
  std::vector<MatchedWay> expected;
  try {
    expected = findWays(pattern, sequence);
  } catch (const reference::TooManySteps &) {
    ++numPassedOver();
    return "";
  }
  const std::vector<MatchedWay> actual = waysOf(compiled(source), sequence);
  if (actual == expected) {
    return "";
  }
  std::string places;
  for (const TokenCodes &codes : sequence) {
    places += " ";
    for (const uint32_t code : codes) {
      places += code < 128 ? std::string(1, static_cast<char>(code)) : "{" + std::to_string(code) + "}";
    }
  }
  return "expression " + source + "\n  sequence" + places + "\n  expected" + toText(expected) + "\n  actual" +
         toText(actual);
}

TEST(RegexRandom, FindsTheWaysOfABacktrackingMatcherInItsOrder) {
  compareCases([](Random &random) {
    const Alphabet alphabet = randomAlphabet(random);
    return compareWays(random, alphabet, randomPattern(random, alphabet.letters, 4), 5);
  });
}

TEST(RegexRandom, FindsTheSameWithMorePositionsThanAWordHasBits) {
  compareCases(numCases() / 5, [](Random &random) {
    const Alphabet alphabet = randomAlphabet(random);
    return compareWays(random, alphabet, widened(random, randomPattern(random, alphabet.letters, 4)), 5);
  });
}

TEST(RegexRandom, FindsTheSameInLongerSequences) {
  compareCases(numCases() / 50, [](Random &random) {
    const Alphabet alphabet = randomAlphabet(random);
    return compareWays(random, alphabet, randomPattern(random, alphabet.letters, 3), 12);
  });
}

/// How many repeats lie in one another.
int32_t depthOfRepeats(const reference::Pattern &pattern) {
  int32_t depth = 0;
  for (const reference::Pattern &part : pattern.parts) {
    depth = std::max(depth, depthOfRepeats(part));
  }
  return depth + (pattern.kind == reference::Pattern::repeat ? 1 : 0);
}

TEST(RegexRandom, AgreesWithTheStandardLibraryOnWholeMatches) {
  int32_t numMatches = 0;
  compareCases(10 * numCases(), [&](Random &random) -> std::string {
    const std::vector<uint32_t> letters = {'a', 'b', 'c'};
    const reference::Pattern pattern = randomPattern(random, letters, 3);
    if (depthOfRepeats(pattern) > 2) {
      return "";  // The standard library's time is exponential in it: minutes for some.
    }
    std::string source = sourceOf(random, pattern);
    for (size_t at = 0; (at = source.find("\\x{", at)) != std::string::npos; ++at) {
      return "";  // The standard library has no such escape.
    }
    std::string text(static_cast<size_t>(random.between(0, 6)), 'a');
    std::vector<TokenCodes> sequence;
    for (char &character : text) {
      character = static_cast<char>(random.pick({'a', 'b', 'c', 'd'}));
      sequence.push_back({static_cast<uint32_t>(character)});
    }
    const bool expected = std::regex_match(text, std::regex(source, std::regex::ECMAScript));
    const bool actual = !waysOf(compiled(source), sequence).empty();
    numMatches += actual ? 1 : 0;
    return actual == expected ? "" : "expression " + source + ", text " + text + ": " + (actual ? "a match" : "none");
  });
  EXPECT_GE(numMatches, numCases() / 2);
}

}  // namespace
}  // namespace random_cases
