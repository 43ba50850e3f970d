#pragma once
// A text that a reading can be, and a list of them by what they lose.

#include <qoc/resolver.h>

#include <vector>

#include "resolve/reading_costs.hpp"

namespace qoc {

/// In place of a result's index.
inline constexpr std::int32_t unknownResult = -1;

/// A text as it is collected.
struct Text {
  std::vector<Choice> choices;
  std::vector<std::int32_t> inputs;
  Cost cost = 0;
  qoc_ocrDictionaryMode mode = 0;
  std::int32_t result = unknownResult;  ///< The result of the set that it comes from, as far as it is known.
  bool hasCheck = false, passesCheck = false;
  std::int32_t numOpen = 0;

  std::vector<Char32> codes() const {
    std::vector<Char32> codes;
    codes.reserve(choices.size());
    for (const Choice &choice : choices) codes.push_back(choice.code);
    return codes;
  }
};

/// Texts by rising cost, each once.
class TextList {
 public:
  bool empty() const { return texts_.empty(); }
  std::size_t size() const { return texts_.size(); }
  const Text &operator[](std::size_t i) const { return texts_[i]; }
  const Text &front() const { return texts_.front(); }
  /// The cost of the best one; noWay where there is none.
  Cost best() const { return texts_.empty() ? noWay : texts_.front().cost; }

  /// Puts a text in its place unless the same one is there at no greater cost.
  /// @return whether it came in
  bool add(Text text) {
    const auto isSame = [&](const Text &other) {
      return std::equal(text.choices.begin(), text.choices.end(), other.choices.begin(), other.choices.end(),
                        [](const Choice &a, const Choice &b) { return a.code == b.code; });
    };
    const auto same = std::find_if(texts_.begin(), texts_.end(), isSame);
    if (same != texts_.end()) {
      if (same->cost <= text.cost) {
        return false;
      }
      texts_.erase(same);
    }
    const auto at =
        std::find_if(texts_.begin(), texts_.end(), [&](const Text &other) { return other.cost > text.cost; });
    texts_.insert(at, std::move(text));
    return true;
  }

 private:
  std::vector<Text> texts_;
};

}  // namespace qoc
