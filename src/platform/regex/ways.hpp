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
// Two sets of positions and one list of followers are kept for each place of the sequence; there is no recursion.

#include <algorithm>
#include <span>

#include "platform/regex/records.hpp"
#include "platform/regex/states.hpp"

namespace qoc {

/// What one way tells of one place: the indexes of the tokens that matched, rising; 0 is the primary one.
using MatchedTokens = std::vector<std::int32_t>;

/// The places of a way, in order.
using Way = std::span<const MatchedTokens *const>;

template <class States>
class WayFinder {
 public:
  using Set = typename States::Set;

  WayFinder(States &states, std::span<const qstd_tokenMulti *const> sequence)
      : states_(states), sequence_(sequence), walk_(states.expression()) {}

  /// Calls onWay(way), which returns a status, for every way in order.
  template <class OnWay>
  qsys_status find(OnWay onWay) {
    if (sequence_.empty()) {
      return states_.expression().isNullable() ? onWay(Way()) : QSYS_STATUS_OK;
    }
    QOC_TRY(findLive());
    if (!intersects(live_.front(), states_.first())) {
      return QSYS_STATUS_OK;
    }
    places_.resize(sequence_.size());
    return follow(onWay);
  }

 private:
  static constexpr std::size_t workPerPlace = 16;  // Of a way, whoever takes it copies the tokens of every place.

  struct Label {
    MatchedTokens tokens;
    Set positions;
  };
  struct Place {
    std::vector<Label> labels;             ///< Made when the place is first come to.
    std::vector<std::int32_t> labelOfSet;  ///< For each code set, the index of its label, or -1.
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
      const qstd_tokenMulti &multi = *sequence_[i];
      for (std::size_t k = 0; k < numTokens(multi); ++k) {
        const qstd_token &token = tokenAt(multi, k);
        states_.addAccepting(isWildcard(token) ? QOC_CHAR_ANY : token.code, live_[i]);
      }
      live_[i] &= behind;
      behind = states_.predecessorsOf(live_[i]);
      QOC_TRY(states_.tick(1 + numTokens(multi)));
    }
    return QSYS_STATUS_OK;
  }

  template <class OnWay>
  qsys_status follow(OnWay onWay) {
    std::vector<Step> path;
    std::vector<const MatchedTokens *> way(sequence_.size());
    path.reserve(sequence_.size());
    only_.resize(sequence_.size());
    std::span<const std::int32_t> followers;
    QOC_TRY(followersOf(-1, 0, followers));
    path.push_back({followers, 0, states_.none(), states_.none()});
    while (!path.empty()) {
      Step &step = path.back();
      if (step.next == step.followers.size()) {
        path.pop_back();
        continue;
      }
      QOC_TRY(states_.meter().add(1));
      const std::int32_t position = step.followers[step.next++];
      const std::size_t i = path.size() - 1;
      if (!contains(live_[i], position)) {
        continue;
      }
      QOC_TRY(makeLabels(i));
      const Label &label = labelOf(i, position);
      const Set told = (step.told | step.tried) & label.positions;
      insert(step.tried, position);
      if (contains(told, position)) {
        continue;
      }
      way[i] = &label.tokens;
      if (i + 1 < sequence_.size()) {
        QOC_TRY(followersOf(position, i + 1, followers));
        QOC_TRY(states_.tick(1));
        path.push_back({followers, 0, states_.followersOf(told) & live_[i + 1], states_.none()});
      } else if (isEmpty(told)) {
        QOC_TRY(states_.meter().add(workPerPlace * way.size()));
        QOC_TRY(onWay(Way(way)));
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
    followers_.resize(static_cast<std::size_t>(states_.expression().numPositions()) + 1);
    auto &entry = followers_[static_cast<std::size_t>(position + 1)];
    if (!entry.isFound) {
      QOC_TRY(walk_.find(states_.expression(), position, entry.list, states_.meter()));
      entry.isFound = true;
    }
    followers = entry.list;
    return QSYS_STATUS_OK;
  }

  const Label &labelOf(std::size_t i, std::int32_t position) const {
    const Place &place = places_[i];
    return place.labels[static_cast<std::size_t>(
        place.labelOfSet[static_cast<std::size_t>(states_.expression().setOf(position))])];
  }

  /// Makes the labels of a place, unless they are made.
  qsys_status makeLabels(std::size_t i) {
    Place &place = places_[i];
    if (!place.labels.empty()) {
      return QSYS_STATUS_OK;
    }
    const Expression &expression = states_.expression();
    place.labelOfSet.assign(expression.sets().size(), -1);
    std::size_t work = 0;
    forEach(live_[i], [&](std::int32_t position) {
      const std::int32_t set = expression.setOf(position);
      std::int32_t &number = place.labelOfSet[static_cast<std::size_t>(set)];
      if (number < 0) {
        number = labelNumber(place, matchedTokens(*sequence_[i], expression.sets()[static_cast<std::size_t>(set)]));
        work += numTokens(*sequence_[i]) + place.labels.size();
      }
      insert(place.labels[static_cast<std::size_t>(number)].positions, position);
    });
    return states_.meter().add(work);
  }

  std::int32_t labelNumber(Place &place, MatchedTokens &&tokens) {
    const auto found = std::find_if(place.labels.begin(), place.labels.end(),
                                    [&](const Label &label) { return label.tokens == tokens; });
    const auto number = static_cast<std::int32_t>(found - place.labels.begin());
    if (found == place.labels.end()) {
      place.labels.push_back({std::move(tokens), states_.none()});
    }
    return number;
  }

  static MatchedTokens matchedTokens(const qstd_tokenMulti &multi, const CodeSet &set) {
    MatchedTokens matched;
    for (std::size_t k = 0; k < numTokens(multi); ++k) {
      const qstd_token &token = tokenAt(multi, k);
      if (isWildcard(token) || (token.code != QOC_CHAR_EMPTY && set.contains(token.code))) {
        matched.push_back(static_cast<std::int32_t>(k));
      }
    }
    return matched;
  }

  struct Followers {
    std::vector<std::int32_t> list;
    bool isFound = false;
  };

  States &states_;
  std::span<const qstd_tokenMulti *const> sequence_;
  OrderedWalk walk_;
  std::vector<Set> live_;
  std::vector<Place> places_;
  std::vector<Followers> followers_;  ///< Of each position, behind those of the start.
  std::vector<std::int32_t> only_;    ///< For each place, the follower that is the only live one.
};

}  // namespace qoc
