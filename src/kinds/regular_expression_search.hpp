#pragma once
// Which spans of a reading match an expression, with no edit or with one: what both forms of the match go through, yes
// or no and with results, in the order and with the polls of plain enumeration.
//
// The idea. Plainly, every span is matched as it is, and then with one edit at every place, each a sequence of its own:
// thousands of sequences for a reading of 40 positions. Here the positions of the expression that may take a token next
// are followed through the reading on two levels, without an edit and behind one:
//
//     insertion     from level 0 to 1 through a position that takes no character of the reading
//     substitution  from level 0 to 1 through a position that takes a character which it does not accept
//     deletion      from level 0 to 1 past a character that no position takes
//
// so one pass from a start tells for every end whether a span matches, and one pass from the end of the reading tells
// for every start whether any does. Only for a span that matches are the places of the edit looked for: an edit at i
// fits when what may come next at i, by level 0 from the start, meets what may have come before by the way back from
// the end. And only for a place that fits are the ways of the sequence listed.
//
// Cost: a few steps of the automaton for every position of the reading, and for every start where something matches;
// results aside, nothing else depends on the number of spans.

#include <qoc/regular_expression.h>

#include <algorithm>
#include <limits>

#include "kinds/near_variants.hpp"
#include "platform/regex/shared_expression.hpp"
#include "platform/regex/states.hpp"
#include "swap/equivalents.hpp"
#include "text/window_search.hpp"

namespace qoc {

enum class ExpressionEdit { none, insertion, deletion, substitution };

/// What is tried on a span.
struct Attempts {
  bool exact = false, insertion = false, deletion = false, substitution = false;

  bool any() const noexcept { return exact || anyEdit(); }
  bool anyEdit() const noexcept { return insertion || deletion || substitution; }
};

/// The lengths that count: those that the parameters, which may be null, admit and the expression has.
class LengthLimits {
 public:
  LengthLimits(const Expression &expression, const qoc_ocrDictionaryRunParams *params) noexcept
      : expression_(expression), params_(params) {}

  /// What is to be tried on a span of so many positions.
  Attempts attemptsFor(std::int32_t length) const noexcept {
    const std::int64_t n = length;
    const bool mayEdit = params_ != nullptr && params_->maxEdits != 0;
    Attempts attempts;
    attempts.exact = admits(n);
    attempts.insertion = mayEdit && params_->matchOption2 != 0 && admits(n + 1);
    attempts.deletion = mayEdit && params_->matchOption4 != 0 && n > 0 && admits(n - 1);
    attempts.substitution = mayEdit && params_->matchOption1 != 0 && n > 0 && admits(n);
    return attempts;
  }

  /// What may be tried on any of a reading's spans, where windows are searched.
  Attempts attemptsForAny(std::int32_t readingLength) const noexcept {
    const std::int64_t n = readingLength;
    const bool mayEdit = params_->maxEdits != 0;
    const std::int64_t least = expression_.minLength();
    Attempts attempts;
    attempts.exact = least <= n;
    attempts.insertion = mayEdit && params_->matchOption2 != 0 && least <= n + 1;
    attempts.deletion = mayEdit && params_->matchOption4 != 0 && least <= n - 1;
    attempts.substitution = mayEdit && params_->matchOption1 != 0 && least <= n;
    return attempts;
  }

  /// The lengths that the expression matches and the parameters admit.
  MatchedLengths matchedLengths() const noexcept {
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    const std::int64_t longest = std::min(expression_.maxLength(), most);
    return params_ == nullptr
               ? MatchedLengths{expression_.minLength(), longest}
               : MatchedLengths{std::max<std::int64_t>(expression_.minLength(), params_->minStringLength),
                                std::min<std::int64_t>(longest, params_->maxStringLength)};
  }

  /// Whether anything is to be tried on a reading of so many positions.
  bool mayMatch(std::int32_t readingLength) const noexcept {
    return attemptsFor(readingLength).any() || (searchesWindows(params_) && attemptsForAny(readingLength).any());
  }

 private:
  bool admits(std::int64_t length) const noexcept {
    return length >= expression_.minLength() && length <= expression_.maxLength() &&
           (params_ == nullptr || (params_->minStringLength <= length && length <= params_->maxStringLength));
  }

  const Expression &expression_;
  const qoc_ocrDictionaryRunParams *params_;
};

/// Adds the positions of the expression that accept a candidate at a position of a reading, or an equivalent of one.
template <class States>
qsys_status addAccepting(States &states, const qoc_ocrDictionaryCharMulti &position, const qoc_swapCharSet *set,
                         typename States::Set &accepting) {
  std::size_t numCodes = 1;
  for (const qoc_ocrDictionaryChar &candidate : view(position)) {
    states.addAccepting(candidate.code, accepting);
    ++numCodes;
    forEachEquivalent(set, candidate.code, [&](Char32 equivalent) {
      states.addAccepting(equivalent, accepting);
      ++numCodes;
    });
  }
  return states.tick(numCodes);
}

template <class States>
class SpanSearch {
 public:
  using Set = typename States::Set;

  SpanSearch(States &states, Positions reading, const qoc_swapCharSet *set)
      : states_(states), reading_(reading), set_(set) {}

  std::int32_t size() const noexcept { return static_cast<std::int32_t>(reading_.size()); }

  /// The positions of the expression that accept a position of a span that forEachMatch tells of.
  const Set &acceptingAt(std::int32_t at) const noexcept { return accepting_[static_cast<std::size_t>(at)]; }

  /// Whether the span matches by any of the attempts.
  qsys_status isMatch(std::int32_t start, std::int32_t end, Attempts attempts, bool &answer) {
    answer = false;
    if (!attempts.any()) {
      return QSYS_STATUS_OK;
    }
    return forEachEnd(start, end, attempts, [&](std::int32_t at, bool isExact, bool isEdited) {
      answer = at == end && ((attempts.exact && isExact) || isEdited);
    });
  }

  /// Calls onMatch(edit, place), which returns a status, for every attempt that matches the span, in order. The place
  /// of an edit is a position of the reading. isMatch or forEachSpan has told of the span, so that what its positions
  /// accept is known.
  template <class OnMatch>
  qsys_status forEachMatch(std::int32_t start, std::int32_t end, Attempts attempts, OnMatch onMatch) {
    QOC_TRY(findNext(start, end));
    const bool reachesEnd = next_.size() == static_cast<std::size_t>(end - start) + 1;
    if (attempts.exact && reachesEnd && next_.back().isEnd) {
      QOC_TRY(onMatch(ExpressionEdit::none, start));
    }
    if (!attempts.anyEdit()) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(findBehind(start, end));
    const auto tryPlaces = [&](ExpressionEdit edit, std::int32_t endOfPlaces) -> qsys_status {
      const std::int32_t reached = start + static_cast<std::int32_t>(next_.size());
      for (std::int32_t place = start; place < endOfPlaces && place < reached; ++place) {
        if (fits(edit, start, end, place)) {
          QOC_TRY(onMatch(edit, place));
        }
      }
      return QSYS_STATUS_OK;
    };
    if (attempts.insertion) {
      QOC_TRY(tryPlaces(ExpressionEdit::insertion, end + 1));
    }
    if (attempts.deletion) {
      QOC_TRY(tryPlaces(ExpressionEdit::deletion, end));
    }
    return attempts.substitution ? tryPlaces(ExpressionEdit::substitution, end) : QSYS_STATUS_OK;
  }

  /// Calls onSpan(start, end, goOn), which returns a status, for the spans that may match, in order, until one clears
  /// goOn. Asks for attention at every start. Whether the search is to stop is asked, of mayStop(), wherever it would
  /// be before a span, matching or not.
  template <class MayStop, class OnSpan>
  qsys_status forEachSpan(const qoc_ocrDictionaryRunParams &params, Attempts attempts, MayStop mayStop, OnSpan onSpan) {
    QOC_TRY(findStarts(attempts));
    const std::int32_t n = size();
    for (std::int32_t start = 0; start < n; ++start) {
      QOC_TRY(qsys_attention_check());
      const auto last = static_cast<std::uint32_t>(
          wrappingSum(wrappingSum(wrappingSum(start, params.maxStringLength), 1), params.maxEdits));
      const std::int32_t leastEnd = wrappingDifference(wrappingSum(start, params.minStringLength), params.maxEdits);
      const std::int32_t firstEnd = firstEndBehind(start, leastEnd, last);
      const auto isEnd = [&](std::int32_t end) {
        return firstEnd >= 0 && end >= firstEnd && end <= n && static_cast<std::uint32_t>(end) <= last;
      };
      if (!isEnd(firstEnd)) {
        continue;
      }
      if (mayStop()) {
        return QSYS_STATUS_OK;
      }
      if (!isStart_[static_cast<std::size_t>(start)]) {
        continue;
      }
      ends_.clear();
      QOC_TRY(forEachEnd(start, n, attempts, [&](std::int32_t at, bool isExact, bool isEdited) {
        if ((isExact || isEdited) && isEnd(at)) {
          ends_.push_back(at);
        }
      }));
      for (const std::int32_t end : ends_) {
        bool goOn = true;
        QOC_TRY(onSpan(start, end, goOn));
        if (!goOn || (end < n && isEnd(end + 1) && mayStop())) {
          return QSYS_STATUS_OK;
        }
      }
    }
    return QSYS_STATUS_OK;
  }

 private:
  /// Level 0 before a position of the reading.
  struct Next {
    Set takers;  ///< The positions of the expression that may take its character.
    bool isEnd;  ///< Whether the expression may end here.
  };

  /// The positions of the expression that accept the reading's first ones.
  qsys_status findAccepting(std::int32_t numFirst) {
    if (accepting_.empty()) {
      accepting_.reserve(reading_.size());
    }
    while (accepting_.size() < static_cast<std::size_t>(numFirst)) {
      accepting_.push_back(states_.none());
      QOC_TRY(addAccepting(states_, reading_[accepting_.size() - 1], set_, accepting_.back()));
    }
    return QSYS_STATUS_OK;
  }

  /// Follows both levels from a start, and calls onEnd(at, isExact, isEdited) for every end up to the last while
  /// anything can still match.
  template <class OnEnd>
  qsys_status forEachEnd(std::int32_t start, std::int32_t lastEnd, Attempts attempts, OnEnd onEnd) {
    Set takers = states_.first();  // The positions that may take the next character, on either level.
    Set editedTakers = states_.none();
    bool isExact = states_.expression().isNullable();
    bool isEdited = false;
    for (std::int32_t at = start;; ++at) {
      if (attempts.insertion) {
        editedTakers |= states_.followersOf(takers);
        isEdited = isEdited || intersects(takers, states_.last());
      }
      onEnd(at, isExact, isEdited);
      const bool isOver = isEmpty(takers) && isEmpty(editedTakers) && !(attempts.deletion && isExact);
      if (at == lastEnd || isOver) {
        return QSYS_STATUS_OK;
      }
      QOC_TRY(findAccepting(at + 1));
      QOC_TRY(states_.tick(3));
      Set edited = editedTakers & acceptingAt(at);
      if (attempts.substitution) {
        edited |= takers;
      }
      editedTakers = states_.followersOf(edited);
      isEdited = intersects(edited, states_.last());
      if (attempts.deletion) {
        editedTakers |= takers;
        isEdited = isEdited || isExact;
      }
      takers &= acceptingAt(at);
      isExact = intersects(takers, states_.last());
      takers = states_.followersOf(takers);
    }
  }

  /// Tells of every start whether some span from it may match, by both levels from the end of the reading.
  qsys_status findStarts(Attempts attempts) {
    const std::int32_t n = size();
    isStart_.assign(static_cast<std::size_t>(n), false);
    QOC_TRY(findAccepting(n));
    // What may have come before a position, such that a match ends there or later.
    Set behind = states_.last();
    Set editedBehind = attempts.insertion ? states_.predecessorsOf(behind) : states_.none();
    bool isAnyFromNext = states_.expression().isNullable();  // Whether an exact match begins at the next position.
    for (std::int32_t at = n - 1; at >= 0; --at) {
      QOC_TRY(states_.tick(3));
      const Set takers = acceptingAt(at) & behind;
      Set editedTakers = acceptingAt(at) & editedBehind;
      if (attempts.substitution) {
        editedTakers |= behind;
      }
      Set nextBehind = states_.predecessorsOf(takers) | states_.last();
      if (attempts.insertion) {
        editedTakers |= nextBehind;
      }
      const bool isExactStart = intersects(states_.first(), takers);
      isStart_[static_cast<std::size_t>(at)] =
          isExactStart || intersects(states_.first(), editedTakers) || (attempts.deletion && isAnyFromNext);
      editedBehind = states_.predecessorsOf(editedTakers);
      if (attempts.deletion) {
        editedBehind |= behind;
      }
      behind = std::move(nextBehind);
      isAnyFromNext = isExactStart || states_.expression().isNullable();
    }
    return QSYS_STATUS_OK;
  }

  /// Level 0 of a span, as far as it reaches.
  qsys_status findNext(std::int32_t start, std::int32_t end) {
    next_.clear();
    next_.push_back({states_.first(), states_.expression().isNullable()});
    for (std::int32_t at = start; at < end; ++at) {
      QOC_TRY(states_.tick(1));
      const Set taking = next_.back().takers & acceptingAt(at);
      if (isEmpty(taking)) {
        break;
      }
      next_.push_back({states_.followersOf(taking), intersects(taking, states_.last())});
    }
    return QSYS_STATUS_OK;
  }

  /// For each position of the span and its end: what may have come before when the rest is matched without an edit.
  qsys_status findBehind(std::int32_t start, std::int32_t end) {
    behind_.assign(static_cast<std::size_t>(end - start) + 1, states_.none());
    behind_.back() = states_.last();
    for (std::int32_t at = end; at-- > start;) {
      QOC_TRY(states_.tick(1));
      const auto i = static_cast<std::size_t>(at - start);
      behind_[i] = states_.predecessorsOf(acceptingAt(at) & behind_[i + 1]);
      if (isEmpty(behind_[i])) {
        break;
      }
    }
    return QSYS_STATUS_OK;
  }

  /// Whether the span matches with the edit at the place; level 0 reaches it.
  bool fits(ExpressionEdit edit, std::int32_t start, std::int32_t end, std::int32_t place) {
    const auto i = static_cast<std::size_t>(place - start);
    if (edit == ExpressionEdit::insertion) {
      return intersects(next_[i].takers, behind_[i]);
    }
    if (edit == ExpressionEdit::substitution) {
      return intersects(next_[i].takers, behind_[i + 1]);
    }
    return place + 1 == end ? next_[i].isEnd : intersects(next_[i].takers, acceptingAt(place + 1) & behind_[i + 2]);
  }

  States &states_;
  Positions reading_;
  const qoc_swapCharSet *set_;
  std::vector<Set> accepting_;  ///< Of the reading's first positions, as far as they were needed.
  std::vector<Next> next_;
  std::vector<Set> behind_;
  std::vector<bool> isStart_;
  std::vector<std::int32_t> ends_;
};

/// The symbols of a lattice of variants, as NearVariants asks an expression about them.
template <class StatesType>
class ExpressionSymbols {
 public:
  using States = StatesType;
  using Set = typename States::Set;

  ExpressionSymbols(States &states, const ReadingVariants &variants, const qoc_swapCharSet &set)
      : states_(states),
        symbols_(view(variants.symbols())),
        set_(set),
        known_(symbols_.size()),
        accepting_(symbols_.size(), states.none()) {}

  States &states() noexcept { return states_; }

  qsys_status accepting(std::size_t symbol, const Set *&set) {
    set = &accepting_[symbol];
    if (known_[symbol]) {
      return QSYS_STATUS_OK;
    }
    known_[symbol] = true;
    return addAccepting(states_, symbols_[symbol], &set_, accepting_[symbol]);
  }

  bool mayFail(std::size_t) const noexcept { return false; }
  bool mayAnyFail() const noexcept { return false; }

 private:
  States &states_;
  Positions symbols_;
  const qoc_swapCharSet &set_;
  std::vector<bool> known_;
  std::vector<Set> accepting_;
};

/// Goes through the variants of a reading that the expression may match, as forEachNearVariant.
template <class Visit, class Passed>
qsys_status forEachNearVariant(const Expression &expression, ReadingVariants &variants,
                               const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet &set, VariantPolls polls,
                               Visit visit, Passed passed) {
  QOC_TRY(variants.expand());
  const MatchedLengths lengths = LengthLimits(expression, params).matchedLengths();
  const EditOptions edits = editOptionsOf(params);
  const bool hasWindows = searchesWindows(params);
  if (!haveLengths(variants, lengths, edits, hasWindows)) {
    QOC_TRY(variants.passOver(0, 0, polls));
    passed();
    return QSYS_STATUS_OK;
  }
  return withStates(expression, [&](auto &states) {
    ExpressionSymbols symbols(states, variants, set);
    NearVariants near(variants, symbols, edits, lengths, hasWindows);
    return forEachNearVariant(variants, near, polls, visit, passed);
  });
}

}  // namespace qoc
