// For one place i, the exchanges happen at the places j1 < j2 < ... behind it at which the length falls below
// everything seen since i. Their effect is a rotation: the word at i goes to j1, that at j1 to j2, and the last one,
// the shortest, to i.
//
//     lengths 3 2 4 1:   i = 0: 2 at 1, 1 at 3;  the rotation gives 1 3 4 2;  i = 1: 2 at 3;  1 2 4 3;  i = 2: 1 2 3 4
//
// For every length the places from i on that hold it are known. A length stands in the chain when it is shorter than
// that of i and its first place lies in front of the first places of all shorter ones; so one pass over the first
// places, shortest length first, gives the chain from its end. A length's first place only ever goes up: the one that
// it gets for it lies behind. So the places may be a row of bits with a mark at the first, which goes over the row once
// in all. Where there are so many lengths that their rows would take much memory, the places are a heap.

#include "kinds/length_order.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <numeric>

namespace qoc {

namespace {

/// The places that hold one length, the first on top.
class HeapOfPlaces {
 public:
  explicit HeapOfPlaces(std::size_t /*numPlaces*/) {}
  bool isEmpty() const { return heap_.empty(); }
  std::int32_t first() const { return heap_.front(); }

  /// Adds a place behind all others; they make a heap as they are.
  void append(std::int32_t place) { heap_.push_back(place); }
  void removeFirst() {
    std::ranges::pop_heap(heap_, std::greater());
    heap_.pop_back();
  }
  void replaceFirst(std::int32_t place) {
    std::size_t node = 0;
    for (std::size_t child = 1; child < heap_.size(); child = 2 * node + 1) {
      child += child + 1 < heap_.size() && heap_[child + 1] < heap_[child] ? 1 : 0;
      if (heap_[child] >= place) {
        break;
      }
      heap_[node] = heap_[child];
      node = child;
    }
    heap_[node] = place;
  }

 private:
  std::vector<std::int32_t> heap_;
};

/// The same as a row of bits.
class RowOfPlaces {
 public:
  explicit RowOfPlaces(std::size_t numPlaces)
      : bits_(numPlaces / 64 + 1), first_(static_cast<std::int32_t>(numPlaces)) {}
  bool isEmpty() const { return numPlaces_ == 0; }
  std::int32_t first() const { return first_; }

  void append(std::int32_t place) {
    first_ = isEmpty() ? place : first_;
    add(place);
  }
  void removeFirst() {
    std::uint64_t &bits = bits_[static_cast<std::size_t>(first_) / 64];
    bits &= bits - 1;  // In front of the first there is none.
    if (--numPlaces_ > 0) {
      std::size_t word = static_cast<std::size_t>(first_) / 64;
      while (bits_[word] == 0) {
        ++word;
      }
      first_ = static_cast<std::int32_t>(64 * word) + std::countr_zero(bits_[word]);
    }
  }
  void replaceFirst(std::int32_t place) {
    add(place);
    removeFirst();
  }

 private:
  void add(std::int32_t place) {
    bits_[static_cast<std::size_t>(place) / 64] |= std::uint64_t{1} << (place % 64);
    ++numPlaces_;
  }

  std::vector<std::uint64_t> bits_;
  std::int32_t numPlaces_ = 0, first_;
};

/// `ranks` are the lengths, each as its rank among the different ones.
template <class Places>
std::vector<std::int32_t> orderByRank(std::span<const std::int32_t> ranks, std::size_t numRanks, WorkMeter &meter) {
  std::vector<std::int32_t> order(ranks.size());
  std::iota(order.begin(), order.end(), 0);
  std::vector<Places> places(numRanks, Places(ranks.size()));
  for (std::size_t i = 0; i < ranks.size(); ++i) {
    places[static_cast<std::size_t>(ranks[i])].append(static_cast<std::int32_t>(i));
  }
  std::size_t shortest = 0;  // Of the lengths that are left.
  std::vector<std::size_t> chain;
  for (std::size_t i = 0; i < order.size(); ++i) {
    while (places[shortest].isEmpty()) {
      ++shortest;
    }
    const auto rank = static_cast<std::size_t>(ranks[static_cast<std::size_t>(order[i])]);
    meter.spend(16 + rank - std::min(rank, shortest));
    chain.clear();
    for (std::size_t shorter = shortest; shorter < rank; ++shorter) {
      // Only of the shortest length words are used up, so every longer one has places.
      if (chain.empty() || places[shorter].first() < places[chain.back()].first()) {
        chain.push_back(shorter);
      }
    }
    // From the chain's end: the shortest comes to i, and each other one to where the next shorter one was.
    const std::int32_t word = order[i];
    auto target = static_cast<std::int32_t>(i);
    for (std::size_t c = 0; c < chain.size(); ++c) {
      Places &moved = places[chain[c]];
      const std::int32_t from = moved.first();
      order[static_cast<std::size_t>(target)] = order[static_cast<std::size_t>(from)];
      if (c == 0) {
        moved.removeFirst();
      } else {
        moved.replaceFirst(target);
      }
      target = from;
    }
    // Of the places with the length of i, i is the first.
    if (chain.empty()) {
      places[rank].removeFirst();
    } else {
      order[static_cast<std::size_t>(target)] = word;
      places[rank].replaceFirst(target);
    }
  }
  return order;
}

}  // namespace

std::vector<std::int32_t> orderByLength(std::span<const std::int32_t> lengths, WorkMeter &meter) {
  std::vector<std::int32_t> distinct(lengths.begin(), lengths.end());
  std::ranges::sort(distinct, [&meter](std::int32_t a, std::int32_t b) {
    meter.spend(1);
    return a < b;
  });
  distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
  std::vector<std::int32_t> ranks(lengths.size());
  std::ranges::transform(lengths, ranks.begin(), [&](std::int32_t length) {
    meter.spend(16);
    return static_cast<std::int32_t>(std::ranges::lower_bound(distinct, length) - distinct.begin());
  });
  constexpr std::size_t mostRows = 512;
  return distinct.size() <= mostRows ? orderByRank<RowOfPlaces>(ranks, distinct.size(), meter)
                                     : orderByRank<HeapOfPlaces>(ranks, distinct.size(), meter);
}

}  // namespace qoc
