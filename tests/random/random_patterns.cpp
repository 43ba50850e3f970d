#include "random/random_patterns.hpp"

namespace random_cases {

namespace {

using reference::anyCount;
using reference::CharacterSet;
using reference::Pattern;

uint32_t pickLetter(Random &random, const std::vector<uint32_t> &letters) {
  return letters[static_cast<size_t>(random.below(static_cast<int32_t>(letters.size())))];
}

CharacterSet randomSet(Random &random, const std::vector<uint32_t> &letters) {
  CharacterSet set;
  if (random.oneIn(8)) {
    set.isNegated = true;
    return set;  // Any character.
  }
  const int32_t numRanges = random.oneIn(2) ? 1 : random.between(1, 3);
  for (int32_t i = 0; i < numRanges; ++i) {
    uint32_t first = pickLetter(random, letters), last = random.oneIn(3) ? pickLetter(random, letters) : first;
    set.ranges.push_back({std::min(first, last), std::max(first, last)});
  }
  set.isNegated = random.oneIn(8);
  return set;
}

Pattern list(Random &random, Pattern::Kind kind, int32_t most, const std::vector<uint32_t> &letters, int32_t depth) {
  Pattern pattern;
  pattern.kind = kind;
  const int32_t numParts = random.between(kind == Pattern::choice ? 1 : 0, most);
  for (int32_t i = 0; i < numParts; ++i) {
    pattern.parts.push_back(randomPattern(random, letters, depth - 1));
  }
  return pattern;
}

std::string sourceOfCharacter(Random &random, uint32_t code) {
  const std::string self(1, static_cast<char>(code));
  if (code == ' ' || !random.oneIn(8)) {
    return self;
  }
  const char *digits = "0123456789ABCDEF";
  const std::string hexadecimal = {digits[code / 16], digits[code % 16]};
  return random.oneIn(2) ? "\\x" + hexadecimal : "\\x{" + std::string(random.oneIn(2) ? "0" : "") + hexadecimal + "}";
}

std::string sourceOfSet(Random &random, const CharacterSet &set) {
  if (set.ranges.empty()) {
    return ".";
  }
  const bool isSingle = set.ranges.size() == 1 && set.ranges[0].first == set.ranges[0].second && !set.isNegated;
  if (isSingle && !random.oneIn(4)) {
    return sourceOfCharacter(random, set.ranges[0].first);
  }
  std::string source = set.isNegated ? "[^" : "[";
  for (auto [first, last] : set.ranges) {
    source += sourceOfCharacter(random, first);
    source += first != last ? "-" + sourceOfCharacter(random, last) : "";
  }
  return source + "]";
}

std::string counts(Random &random, const Pattern &pattern) {
  const bool isShort = !random.oneIn(4);
  if (isShort && pattern.least == 0 && pattern.most == anyCount) {
    return "*";
  }
  if (isShort && pattern.least == 1 && pattern.most == anyCount) {
    return "+";
  }
  if (isShort && pattern.least == 0 && pattern.most == 1) {
    return "?";
  }
  if (isShort && pattern.least == pattern.most) {
    return "{" + std::to_string(pattern.least) + "}";
  }
  return "{" + std::to_string(pattern.least) + "," + (pattern.most == anyCount ? "" : std::to_string(pattern.most)) +
         "}";
}

std::string group(Random &random, const std::string &source) { return (random.oneIn(3) ? "(?:" : "(") + source + ")"; }

}  // namespace

Pattern randomPattern(Random &random, const std::vector<uint32_t> &letters, int32_t depth) {
  Pattern pattern;
  const int32_t kind = depth <= 0 ? 0 : random.below(8);
  if (kind <= 1) {
    pattern.kind = Pattern::character;
    pattern.set = randomSet(random, letters);
    return pattern;
  }
  if (kind <= 4) {
    return list(random, Pattern::sequence, 4, letters, depth);
  }
  if (kind == 5) {
    return list(random, Pattern::choice, 3, letters, depth);
  }
  pattern.kind = Pattern::repeat;
  pattern.parts.push_back(randomPattern(random, letters, depth - 1));
  pattern.least = random.pick({0, 0, 0, 1, 1, 2});
  pattern.most = random.oneIn(2) ? anyCount : pattern.least + random.pick({0, 1, 1, 2});
  return pattern;
}

std::string sourceOf(Random &random, const Pattern &pattern) {
  std::string source;
  switch (pattern.kind) {
    case Pattern::character:
      return sourceOfSet(random, pattern.set);
    case Pattern::sequence:
      for (const Pattern &part : pattern.parts) {
        const std::string one = sourceOf(random, part);
        const bool needsGroup = part.kind == Pattern::choice || (part.kind == Pattern::repeat && random.oneIn(4));
        source += needsGroup ? group(random, one) : one;
      }
      return source;
    case Pattern::choice:
      for (size_t i = 0; i < pattern.parts.size(); ++i) {
        source += (i > 0 ? "|" : "") + sourceOf(random, pattern.parts[i]);
      }
      return source;
    case Pattern::repeat:
      source = sourceOf(random, pattern.parts[0]);
      if (pattern.parts[0].kind != Pattern::character) {
        source = group(random, source);
      }
      return source + counts(random, pattern);
  }
  return source;
}

}  // namespace random_cases
