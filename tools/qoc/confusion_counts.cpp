#include "confusion_counts.hpp"

#include <algorithm>

namespace qoc::program {
namespace {

enum class Step : char { none, same, listed, other, extra, missing };

/// What one step of an alignment costs: another candidate less than any other difference.
int costOf(Step step) { return step == Step::same ? 0 : step == Step::listed ? 1 : 3; }

Step compare(const std::vector<Candidate> &candidates, char32_t truth) {
  if (!candidates.empty() && candidates.front().code == truth) return Step::same;
  const bool isListed = std::any_of(candidates.begin(), candidates.end(),
                                    [&](const Candidate &candidate) { return candidate.code == truth; });
  return isListed ? Step::listed : Step::other;
}

/// The steps from the start of a reading and its truth to their ends, at the least cost (Wagner and Fischer 1974).
std::vector<Step> align(const Lesson &lesson) {
  const std::size_t n = lesson.positions.size(), m = lesson.truth.size();
  std::vector<int> costs((n + 1) * (m + 1), 0);
  std::vector<Step> last(costs.size(), Step::none);
  const auto at = [m](std::size_t i, std::size_t j) { return i * (m + 1) + j; };
  for (std::size_t i = 0; i <= n; ++i) {
    for (std::size_t j = 0; j <= m; ++j) {
      if (i + j == 0) continue;
      int best = -1;
      const auto offer = [&](Step step, std::size_t from) {
        const int cost = costs[from] + costOf(step);
        if (best >= 0 && cost >= best) return;
        best = cost;
        last[at(i, j)] = step;
      };
      if (i > 0 && j > 0) offer(compare(lesson.positions[i - 1], lesson.truth[j - 1]), at(i - 1, j - 1));
      if (i > 0) offer(Step::extra, at(i - 1, j));
      if (j > 0) offer(Step::missing, at(i, j - 1));
      costs[at(i, j)] = best;
    }
  }
  std::vector<Step> steps;
  for (std::size_t i = n, j = m; i + j > 0;) {
    const Step step = last[at(i, j)];
    steps.push_back(step);
    i -= step == Step::missing ? 0 : 1;
    j -= step == Step::extra ? 0 : 1;
  }
  std::reverse(steps.begin(), steps.end());
  return steps;
}

}  // namespace

void ConfusionCounts::add(const Lesson &lesson) {
  const std::vector<Step> steps = align(lesson);
  std::size_t i = 0, j = 0;
  const auto read = [&](std::size_t k) { return static_cast<char32_t>(lesson.positions[k].front().code); };
  for (const std::vector<Candidate> &candidates : lesson.positions) {
    if (!candidates.empty()) ++numRead[static_cast<char32_t>(candidates.front().code)];
  }
  for (std::size_t k = 0; k < steps.size(); ++k) {
    const Step step = steps[k], next = k + 1 < steps.size() ? steps[k + 1] : Step::none;
    std::size_t numInputs = step == Step::missing ? 0 : 1, numMeant = step == Step::extra ? 0 : 1;
    // A substitution right beside a missing or an extra character is one confusion of two characters.
    const bool isPair = (step == Step::other && (next == Step::missing || next == Step::extra)) ||
                        ((step == Step::missing || step == Step::extra) && next == Step::other);
    if (isPair) {
      const Step other = step == Step::other ? next : step;
      numInputs = other == Step::extra ? 2 : 1;
      numMeant = other == Step::missing ? 2 : 1;
      ++k;
    }
    if (step != Step::same) {
      std::u32string from;
      for (std::size_t c = 0; c < numInputs; ++c) {
        if (!lesson.positions[i + c].empty()) from += read(i + c);
      }
      ConfusionCount &count = confusions[{from, lesson.truth.substr(j, numMeant)}];
      ++(step == Step::listed && !isPair ? count.numListed : count.numTimes);
    }
    i += numInputs;
    j += numMeant;
  }
}

}  // namespace qoc::program
