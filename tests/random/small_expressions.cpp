#include "random/small_expressions.hpp"

#include <map>
#include <utility>

namespace random_cases {

namespace {

using reference::Pattern;

Pattern patternOf(Pattern::Kind kind, std::vector<Pattern> parts) {
  Pattern pattern;
  pattern.kind = kind;
  pattern.parts = std::move(parts);
  return pattern;
}

std::string grouped(const std::string &source) { return source.size() == 1 ? source : "(" + source + ")"; }

SmallExpression atomOf(char code) {
  SmallExpression atom{{}, std::string(1, code)};
  atom.pattern.kind = Pattern::character;
  if (code == '.') {
    atom.pattern.set.isNegated = true;  // Any but none.
  } else {
    atom.pattern.set.ranges.push_back({static_cast<uint32_t>(code), static_cast<uint32_t>(code)});
  }
  return atom;
}

SmallExpression repeated(const SmallExpression &part, char sign) {
  SmallExpression whole{patternOf(Pattern::repeat, {part.pattern}), grouped(part.source) + sign};
  whole.pattern.least = sign == '+' ? 1 : 0;
  whole.pattern.most = sign == '?' ? 1 : reference::anyCount;
  return whole;
}

/** Expressions of exactly so many atoms and operators, each made of smaller ones. */
class Expressions {
 public:
  explicit Expressions(const std::string &atoms) : atoms_(atoms) {}

  const std::vector<SmallExpression> &of(int numAtoms, int numOperators) {
    const auto [place, isNew] = made_.try_emplace({numAtoms, numOperators});
    return isNew ? place->second = make(numAtoms, numOperators) : place->second;
  }

 private:
  std::vector<SmallExpression> make(int numAtoms, int numOperators) {
    std::vector<SmallExpression> all;
    if (numAtoms == 1 && numOperators == 0) {
      for (const char code : atoms_) {
        all.push_back(atomOf(code));
      }
    }
    if (numOperators == 0) {
      return all;
    }
    for (const SmallExpression &part : of(numAtoms, numOperators - 1)) {
      for (const char sign : {'*', '+', '?'}) {
        all.push_back(repeated(part, sign));
      }
    }
    for (int left = 1; left < numAtoms; ++left) {
      for (int inLeft = 0; inLeft < numOperators; ++inLeft) {
        for (const SmallExpression &a : of(left, inLeft)) {
          for (const SmallExpression &b : of(numAtoms - left, numOperators - 1 - inLeft)) {
            all.push_back(
                {patternOf(Pattern::sequence, {a.pattern, b.pattern}), grouped(a.source) + grouped(b.source)});
            all.push_back({patternOf(Pattern::choice, {a.pattern, b.pattern}), a.source + "|" + b.source});
          }
        }
      }
    }
    return all;
  }

  std::string atoms_;
  std::map<std::pair<int, int>, std::vector<SmallExpression>> made_;
};

}  // namespace

std::vector<SmallExpression> smallExpressions(const std::string &atoms, int mostAtoms, int mostOperators) {
  Expressions expressions(atoms);
  std::vector<SmallExpression> all;
  for (int numAtoms = 1; numAtoms <= mostAtoms; ++numAtoms) {
    for (int numOperators = numAtoms - 1; numOperators <= mostOperators; ++numOperators) {
      const auto &some = expressions.of(numAtoms, numOperators);
      all.insert(all.end(), some.begin(), some.end());
    }
  }
  return all;
}

}  // namespace random_cases
