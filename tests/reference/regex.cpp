#include "reference/regex.hpp"

#include <algorithm>
#include <functional>

#include "reference/records.hpp"

namespace reference {

namespace {

using Continue = std::function<void(size_t)>;

class Backtracking {
 public:
  explicit Backtracking(const std::vector<TokenCodes> &sequence) : sequence_(sequence) {}

  std::vector<MatchedWay> run(const Pattern &pattern) {
    match(pattern, 0, [&](size_t end) {
      if (end == sequence_.size() && std::find(ways_.begin(), ways_.end(), way_) == ways_.end()) ways_.push_back(way_);
    });
    return ways_;
  }

 private:
  /** Matches a pattern from a place on, and goes on behind it in every way there is. */
  void match(const Pattern &pattern, size_t place, const Continue &goOn) {
    if (++steps_ > 200'000) throw TooManySteps();
    switch (pattern.kind) {
      case Pattern::character: return matchCharacter(pattern, place, goOn);
      case Pattern::sequence: return matchParts(pattern, 0, place, goOn);
      case Pattern::choice:
        for (const Pattern &part : pattern.parts) match(part, place, goOn);
        return;
      case Pattern::repeat: return matchRounds(pattern, 0, place, goOn);
    }
  }

  void matchCharacter(const Pattern &pattern, size_t place, const Continue &goOn) {
    if (place == sequence_.size()) return;
    MatchedPlace matched;
    for (size_t k = 0; k < sequence_[place].size(); ++k) {
      uint32_t code = sequence_[place][k];
      if (code == emptyCode || (code != anyCode && !pattern.set.accepts(code))) continue;
      matched.codes.push_back(code);
      matched.isPrimary = matched.isPrimary || k == 0;
    }
    if (matched.codes.empty()) return;
    way_.push_back(matched);
    goOn(place + 1);
    way_.pop_back();
  }

  void matchParts(const Pattern &pattern, size_t part, size_t place, const Continue &goOn) {
    if (part == pattern.parts.size()) return goOn(place);
    match(pattern.parts[part], place, [&](size_t next) { matchParts(pattern, part + 1, next, goOn); });
  }

  void matchRounds(const Pattern &pattern, int32_t rounds, size_t place, const Continue &goOn) {
    if (rounds < pattern.most) {
      match(pattern.parts[0], place, [&](size_t next) {
        // A round that consumes nothing ends the repeat.
        if (next == place)
          goOn(next);
        else
          matchRounds(pattern, rounds + 1, next, goOn);
      });
    }
    if (rounds >= pattern.least) goOn(place);
  }

  const std::vector<TokenCodes> &sequence_;
  MatchedWay way_;
  std::vector<MatchedWay> ways_;
  int64_t steps_ = 0;
};

}  // namespace

std::vector<MatchedWay> findWays(const Pattern &pattern, const std::vector<TokenCodes> &sequence) {
  return Backtracking(sequence).run(pattern);
}

}  // namespace reference
