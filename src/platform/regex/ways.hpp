#pragma once
// Every way in which a sequence of tokens matches an expression.
//
// The idea. Paths through the automaton are followed in a backtracking matcher's order, only through positions from
// which the rest of the sequence can match (the live ones, found by one pass from the end), so that no path ends before
// it has told a way. What a path tells of each place is its label there: the set of the place's tokens that the
// position accepts. Different paths may tell the same labels, and there may be exponentially many of them; only the
// first counts. So with every path goes the set of positions that earlier paths with the same labels have come to:
// whatever they can still tell, they have told. A path that comes to one of these positions is dropped. That leaves,
// for every prefix of labels that begins some way, at most one path to each position, so the time is bounded by the
// number of ways, times their length, times the number of positions, times a step.
//
//     (a|a)*b on "aab": paths through the first a and the second tell the same; the second is dropped at once.
//
// Two sets of positions and one list of followers are kept for each place of the sequence; there is no recursion. What
// is kept lies in a few vectors, which one finder uses again for every sequence: a search has thousands of them.

#include <algorithm>
#include <optional>
#include <span>

#include "platform/regex/states.hpp"

namespace qoc {

/// The codes of a place's tokens, the primary one first: QOC_CHAR_ANY is a wildcard.
using Codes = std::span<const Char32>;

/// What one way tells of one place: the indexes of the tokens that matched, rising; 0 is the primary one.
using MatchedTokens = std::span<const std::int32_t>;

template <class States>
class WayFinder {
 public:
  using Set = typename States::Set;

  /// One place of a sequence. `accepting` holds the positions that accept one of its codes; without it they are found.
  struct Place {
    Codes codes;
    const Set *accepting = nullptr;
  };

  /// The places of a way, in order; for as long as it is told of.
  class Way {
   public:
    std::size_t size() const noexcept { return finder_.way_.size(); }
    MatchedTokens operator[](std::size_t place) const noexcept {
      const Label &label = finder_.labels_[finder_.way_[place]];
      return MatchedTokens(finder_.tokens_).subspan(label.firstToken, label.numTokens);
    }

   private:
    friend class WayFinder;
    explicit Way(const WayFinder &finder) : finder_(finder) {}
    const WayFinder &finder_;
  };

  explicit WayFinder(States &states) : states_(states) {}

  /// Calls onWay(way), which returns a status, for every way of a sequence in order.
  template <class OnWay>
  qsys_status find(std::span<const Place> sequence, OnWay onWay) {
    sequence_ = sequence;
    way_.resize(sequence.size());
    if (sequence_.empty()) {
      return states_.expression().isNullable() ? onWay(Way(*this)) : QSYS_STATUS_OK;
    }
    QOC_TRY(findLive());
    if (!intersects(live_.front(), states_.first())) {
      return QSYS_STATUS_OK;
    }
    if (std::ranges::all_of(sequence_, [](const Place &place) { return place.codes.size() == 1; })) {
      // Whatever the path, it tells of every place that its one token matched.
      tokens_.assign(1, 0);
      labels_.assign(1, {0, 1, states_.none()});
      way_.assign(sequence_.size(), 0);
      QOC_TRY(states_.meter().add(workPerPlace * way_.size()));
      return onWay(Way(*this));
    }
    tokens_.clear();
    labels_.clear();
    labelOfSet_.clear();
    placeLabels_.assign(sequence_.size(), {});
    return follow(onWay);
  }

 private:
  static constexpr std::size_t workPerPlace = 16;  // Of a way, whoever takes it copies the tokens of every place.

  struct Label {
    std::size_t firstToken, numTokens;
    Set positions;
  };
  /// The labels of one place, made when it is first come to.
  struct PlaceLabels {
    std::size_t first = 0, count = 0;
    std::size_t firstSet = 0;  ///< In labelOfSet_: for each code set, the number of its label. Not where there is one.
  };
  /// A path's end at one place, whose followers are tried one after the other.
  struct Step {
    std::span<const std::int32_t> followers;
    std::size_t next;
    Set told;   ///< The positions that earlier paths of the same labels go on to here.
    Set tried;  ///< The followers that were tried.
  };

  /// The positions that may take each token when everything from it on is to match.
  qsys_status findLive() {
    live_.assign(sequence_.size(), states_.none());
    Set behind = states_.last();
    for (std::size_t i = sequence_.size(); i-- > 0 && !isEmpty(behind);) {
      const Place &place = sequence_[i];
      if (place.accepting != nullptr) {
        live_[i] = *place.accepting;
      } else {
        for (const Char32 code : place.codes) {
          states_.addAccepting(code, live_[i]);
        }
      }
      live_[i] &= behind;
      behind = states_.predecessorsOf(live_[i]);
      QOC_TRY(states_.tick(1 + place.codes.size()));
    }
    return QSYS_STATUS_OK;
  }

  template <class OnWay>
  qsys_status follow(OnWay onWay) {
    path_.clear();
    only_.resize(std::max(only_.size(), sequence_.size()));
    std::span<const std::int32_t> followers;
    QOC_TRY(followersOf(-1, 0, followers));
    path_.push_back({followers, 0, states_.none(), states_.none()});
    while (!path_.empty()) {
      Step &step = path_.back();
      if (step.next == step.followers.size()) {
        path_.pop_back();
        continue;
      }
      QOC_TRY(states_.meter().add(1));
      const std::int32_t position = step.followers[step.next++];
      const std::size_t i = path_.size() - 1;
      if (!contains(live_[i], position)) {
        continue;
      }
      QOC_TRY(makeLabels(i));
      const std::size_t number = labelOf(i, position);
      const Set told = (step.told | step.tried) & labels_[number].positions;
      insert(step.tried, position);
      if (contains(told, position)) {
        continue;
      }
      way_[i] = number;
      if (i + 1 < sequence_.size()) {
        QOC_TRY(followersOf(position, i + 1, followers));
        QOC_TRY(states_.tick(1));
        path_.push_back({followers, 0, states_.followersOf(told) & live_[i + 1], states_.none()});
      } else if (isEmpty(told)) {
        QOC_TRY(states_.meter().add(workPerPlace * way_.size()));
        QOC_TRY(onWay(Way(*this)));
      }
    }
    return QSYS_STATUS_OK;
  }

  /// The followers of a position, or, of -1, the positions to begin with, that may be live at a place; in order. Where
  /// only one is live it is found without the walk that gives the order, which is made once for every position.
  qsys_status followersOf(std::int32_t position, std::size_t place, std::span<const std::int32_t> &followers) {
    Set live = live_[place];
    if (position < 0) {
      live &= states_.first();
    } else {
      Set self = states_.none();
      insert(self, position);
      live &= states_.followersOf(self);
    }
    std::size_t numLive = 0;
    forEach(live, [&](std::int32_t one) {
      only_[place] = one;
      ++numLive;
    });
    if (numLive == 1) {
      followers = {&only_[place], 1};
      return QSYS_STATUS_OK;
    }
    if (!walk_) {
      walk_.emplace(states_.expression());
      followers_.resize(static_cast<std::size_t>(states_.expression().numPositions()) + 1);
    }
    auto &entry = followers_[static_cast<std::size_t>(position + 1)];
    if (!entry.isFound) {
      QOC_TRY(walk_->find(states_.expression(), position, entry.list, states_.meter()));
      entry.isFound = true;
    }
    followers = entry.list;
    return QSYS_STATUS_OK;
  }

  std::size_t labelOf(std::size_t i, std::int32_t position) const {
    const PlaceLabels &place = placeLabels_[i];
    return place.count == 1
               ? place.first
               : labelOfSet_[place.firstSet + static_cast<std::size_t>(states_.expression().setOf(position))];
  }

  /// Makes the labels of a place, unless they are made.
  qsys_status makeLabels(std::size_t i) {
    PlaceLabels &place = placeLabels_[i];
    if (place.count > 0) {
      return QSYS_STATUS_OK;
    }
    const Codes codes = sequence_[i].codes;
    place.first = labels_.size();
    if (codes.size() == 1) {  // Whatever is live accepts it.
      labels_.push_back({tokens_.size(), 1, live_[i]});
      tokens_.push_back(0);
      place.count = 1;
      return QSYS_STATUS_OK;
    }
    const Expression &expression = states_.expression();
    place.firstSet = labelOfSet_.size();
    labelOfSet_.resize(place.firstSet + expression.sets().size(), none);
    std::size_t work = 0;
    forEach(live_[i], [&](std::int32_t position) {
      const auto set = static_cast<std::size_t>(expression.setOf(position));
      std::size_t &number = labelOfSet_[place.firstSet + set];
      if (number == none) {
        number = labelNumber(place, codes, expression.sets()[set]);
        work += codes.size() + place.count;
      }
      insert(labels_[number].positions, position);
    });
    return states_.meter().add(work);
  }

  /// The number of the label that a code set gives a place, which is made if there is none like it.
  std::size_t labelNumber(PlaceLabels &place, Codes codes, const CodeSet &set) {
    const std::size_t firstToken = tokens_.size();
    for (std::size_t k = 0; k < codes.size(); ++k) {
      if (codes[k] == QOC_CHAR_ANY || (codes[k] != QOC_CHAR_EMPTY && set.contains(codes[k]))) {
        tokens_.push_back(static_cast<std::int32_t>(k));
      }
    }
    const MatchedTokens matched = MatchedTokens(tokens_).subspan(firstToken);
    for (std::size_t number = place.first; number < labels_.size(); ++number) {
      const Label &label = labels_[number];
      if (std::ranges::equal(MatchedTokens(tokens_).subspan(label.firstToken, label.numTokens), matched)) {
        tokens_.resize(firstToken);
        return number;
      }
    }
    labels_.push_back({firstToken, matched.size(), states_.none()});
    ++place.count;
    return labels_.size() - 1;
  }

  struct Followers {
    std::vector<std::int32_t> list;
    bool isFound = false;
  };

  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  States &states_;
  std::span<const Place> sequence_;
  std::optional<OrderedWalk> walk_;
  std::vector<Followers> followers_;  ///< Of each position, behind those of the start.
  std::vector<Set> live_;
  std::vector<PlaceLabels> placeLabels_;
  std::vector<Label> labels_;
  std::vector<std::size_t> labelOfSet_;
  std::vector<std::int32_t> tokens_;  ///< Of all labels.
  std::vector<std::size_t> way_;      ///< The label at each place.
  std::vector<Step> path_;
  std::vector<std::int32_t> only_;  ///< For each place, the follower that is the only live one.
};

}  // namespace qoc
