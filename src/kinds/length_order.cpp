// For one place i, the exchanges happen at the places j1 < j2 < ... behind it at which the length falls below
// everything seen since i. Their effect is a rotation: the word at i goes to j1, that at j1 to j2, and the last one,
// the shortest, to i. The next place at which the length falls below a bound is found in a tree of minima. A chain of
// such places has at most as many members as there are different lengths.
//
//     lengths 3 2 4 1:   i = 0: 2 at 1, 1 at 3;  the rotation gives 1 3 4 2;  i = 1: 2 at 3;  1 2 4 3;  i = 2: 1 2 3 4

#include "kinds/length_order.hpp"

#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>
#include <utility>

namespace qoc {

namespace {

/// The minima of a sequence over blocks of 1, 2, 4, ... elements.
class MinimumTree {
 public:
  explicit MinimumTree(std::span<const std::int32_t> values)
      : numLeaves_(std::bit_ceil(std::max<std::size_t>(values.size(), 1))),
        minima_(2 * numLeaves_, std::numeric_limits<std::int32_t>::max()) {
    std::ranges::copy(values, minima_.begin() + static_cast<std::ptrdiff_t>(numLeaves_));
    for (std::size_t node = numLeaves_ - 1; node > 0; --node) {
      minima_[node] = std::min(minima_[2 * node], minima_[2 * node + 1]);
    }
  }

  std::int32_t value(std::size_t index) const { return minima_[numLeaves_ + index]; }

  void set(std::size_t index, std::int32_t value) {
    std::size_t node = numLeaves_ + index;
    minima_[node] = value;
    while (node > 1) {
      node /= 2;
      minima_[node] = std::min(minima_[2 * node], minima_[2 * node + 1]);
    }
  }

  /// The first index behind `index` whose value is below the bound, or `none`.
  std::size_t findBelow(std::size_t index, std::int32_t bound) const {
    std::size_t node = numLeaves_ + index;
    // Up, until the block to the right holds such a value; then down to its first.
    while (node % 2 != 0 || minima_[node + 1] >= bound) {
      if (node <= 1) {
        return none;
      }
      node /= 2;
      if (node <= 1) {
        return none;
      }
    }
    ++node;
    while (node < numLeaves_) {
      node *= 2;
      node += minima_[node] < bound ? 0 : 1;
    }
    return node - numLeaves_;
  }

  static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

 private:
  std::size_t numLeaves_;
  std::vector<std::int32_t> minima_;
};

}  // namespace

std::vector<std::int32_t> orderByLength(std::span<const std::int32_t> lengths) {
  std::vector<std::int32_t> order(lengths.size());
  std::iota(order.begin(), order.end(), 0);
  if (std::ranges::is_sorted(lengths)) {
    return order;
  }
  MinimumTree tree(lengths);
  for (std::size_t i = 0; i < order.size(); ++i) {
    std::int32_t carriedWord = order[i];
    std::int32_t carriedLength = tree.value(i);
    for (std::size_t j = tree.findBelow(i, carriedLength); j != MinimumTree::none;
         j = tree.findBelow(j, carriedLength)) {
      // The word carried here stays; the shorter one that was here is carried on.
      const std::int32_t shorterLength = tree.value(j);
      std::swap(order[j], carriedWord);
      tree.set(j, carriedLength);
      carriedLength = shorterLength;
    }
    order[i] = carriedWord;
  }
  return order;
}

}  // namespace qoc
