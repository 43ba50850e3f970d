// The k best texts over lattices.

#include "resolve/text_search.hpp"

#include <new>
#include <queue>
#include <unordered_map>

#include "platform/system/present.hpp"

namespace qoc {

namespace {

constexpr std::int32_t noNode = -1;

/// A text, by where it differs from the one that takes the first choice everywhere: it goes on from another node, takes
/// another choice at a place, and the first ones behind it.
struct Node {
  Cost cost;
  std::uint64_t state;  // Of the checks, before `place`.
  std::uint32_t lattice;
  std::int32_t place;  // The one behind that where it differs.
  std::int32_t choice;
  std::int32_t before;  // The node that it goes on from.
};

struct Place {
  std::uint32_t lattice;
  std::int32_t place;
  std::uint64_t state;
  bool operator==(const Place &) const = default;
};

struct PlaceHash {
  std::size_t operator()(const Place &at) const noexcept {
    std::uint64_t hash = at.state * 0x9E3779B97F4A7C15u;
    hash ^= (static_cast<std::uint64_t>(at.lattice) << 32 | static_cast<std::uint32_t>(at.place)) + (hash >> 29);
    hash *= 0xBF58476D1CE4E5B9u;
    return static_cast<std::size_t>(hash ^ hash >> 32);
  }
};

class Search {
 public:
  Search(std::vector<Lattice> &lattices, std::size_t k, Cost maxCost, const OpenLattice &open, const TakeText &take)
      : lattices_(lattices), k_(k), maxCost_(maxCost), open_(open), take_(take) {}

  qsys_status run() {
    for (std::size_t i = 0; i < lattices_.size(); ++i) {
      const Lattice &lattice = lattices_[i];
      if (!lattice.isHopeless) push({lattice.least(), lattice.startState, static_cast<std::uint32_t>(i), 0, 0, noNode});
    }
    for (std::uint64_t round = 0; !queue_.empty(); ++round) {
      if (round % 64 == 0) QOC_TRY(qsys_attention_check());
      const std::int32_t at = queue_.top();
      queue_.pop();
      const Node node = nodes_[static_cast<std::size_t>(at)];
      if (node.cost > maxCost_) {
        break;
      }
      Lattice &lattice = lattices_[node.lattice];
      if (node.before == noNode) QOC_TRY(open_(lattice));
      std::size_t &numPaths = numPaths_[{node.lattice, node.place, node.state}];
      if (numPaths == k_) {
        continue;
      }
      ++numPaths;
      std::uint64_t state = node.state;
      if (goOn(lattice, node, at, state) && lattice.accepts(state)) {
        bool goesOn = true;
        QOC_TRY(take_(textOf(lattice, at), goesOn, maxCost_));
        if (!goesOn) {
          break;
        }
      }
    }
    return QSYS_STATUS_OK;
  }

 private:
  void push(const Node &node) {
    if (node.cost > maxCost_) {
      return;
    }
    // So many take 64 GiB, after days.
    if (QOC_NEVER(nodes_.size() == INT32_MAX)) {
      throw std::bad_alloc();
    }
    nodes_.push_back(node);
    queue_.push(static_cast<std::int32_t>(nodes_.size()) - 1);
  }

  /// Pushes every text that differs from the node's at one more place, behind the others.
  /// @param state that of the checks, before and behind
  /// @return whether the checks take the node's own text
  bool goOn(const Lattice &lattice, const Node &node, std::int32_t at, std::uint64_t &state) {
    for (std::int32_t place = node.place; static_cast<std::size_t>(place) < lattice.slots.size(); ++place) {
      const auto &choices =
          lattice.slots[static_cast<std::size_t>(lattice.order[static_cast<std::size_t>(place)])].choices;
      for (std::size_t c = 1; c < choices.size(); ++c) {
        const Cost cost = node.cost + choices[c].cost - choices[0].cost;
        if (cost > maxCost_) {
          break;
        }
        std::uint64_t behind = state;
        if (lattice.step(behind, place, choices[c].code)) {
          push({cost, behind, node.lattice, place + 1, static_cast<std::int32_t>(c), at});
        }
      }
      if (choices.empty() || !lattice.step(state, place, choices[0].code)) {
        return false;
      }
    }
    return true;
  }

  FoundText textOf(const Lattice &lattice, std::int32_t at) const {
    const Node &last = nodes_[static_cast<std::size_t>(at)];
    FoundText text = {last.lattice, last.cost, std::vector<std::int32_t>(lattice.slots.size())};
    for (; nodes_[static_cast<std::size_t>(at)].before != noNode; at = nodes_[static_cast<std::size_t>(at)].before) {
      const Node &node = nodes_[static_cast<std::size_t>(at)];
      text.choices[static_cast<std::size_t>(lattice.order[static_cast<std::size_t>(node.place) - 1])] = node.choice;
    }
    return text;
  }

  struct ComesLater {
    const std::vector<Node> &nodes;
    bool operator()(std::int32_t a, std::int32_t b) const {
      const Node &first = nodes[static_cast<std::size_t>(a)], &second = nodes[static_cast<std::size_t>(b)];
      if (first.cost != second.cost) return first.cost > second.cost;
      return a > b;
    }
  };

  std::vector<Lattice> &lattices_;
  std::size_t k_;
  Cost maxCost_;
  const OpenLattice &open_;
  const TakeText &take_;
  std::vector<Node> nodes_;
  std::priority_queue<std::int32_t, std::vector<std::int32_t>, ComesLater> queue_{ComesLater{nodes_}};
  std::unordered_map<Place, std::size_t, PlaceHash> numPaths_;
};

}  // namespace

qsys_status searchTexts(std::vector<Lattice> &lattices, std::size_t k, Cost maxCost, const OpenLattice &open,
                        const TakeText &take) {
  return Search(lattices, k, maxCost, open, take).run();
}

}  // namespace qoc
