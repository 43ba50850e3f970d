#pragma once
// The texts of an expression near a reading, one by one.

#include "platform/regex/states.hpp"
#include "resolve/task.hpp"

namespace qoc {

/// A text that a walk has found: what it is made of, and at which places an edit or a wildcard leaves it open.
struct WalkedText {
  std::vector<Choice> choices;
  std::vector<std::int32_t> inputs;
  std::vector<std::size_t> open;
  Cost cost = 0;
};

/**
 * Goes through the texts of an expression that a whole reading can be within a cost.
 *
 * Near a reading there are few texts, mostly one or two, so that going through them takes less than a match that gives
 * all its results.
 */
class ShapeWalk {
 public:
  static constexpr std::int32_t maxEdits = 1;

  /// @param costs what it shows within the limit is listed
  /// @param reach the edits that are allowed, at most maxEdits
  /// @param rest by position, and one behind the last, what the reading loses from there on at least
  ShapeWalk(const Expression &expression, const ReadingCosts &costs, const Reach &reach, std::span<const Cost> rest,
            Cost limit)
      : states_(expression), costs_(costs), reach_(reach), rest_(rest), limit_(limit) {}

  /// Whether readings of that size can be walked through.
  static bool takes(const Expression &expression, std::int32_t size) {
    return expression.isNarrow() && size <= maxSize;
  }

  /// Calls visit(text) for every one; it returns a status and may lower the limit.
  /// @param[out] isDone false where there were too many to go through
  /// @return 0 or a failure of the visit
  template <class Visit>
  qsys_status run(Visit &&visit, bool &isDone) {
    const qsys_status status = go(0, states_.first(), states_.isNullable(), 0, visit);
    isDone = numSteps_ <= maxSteps;
    return status;
  }
  void lowerLimit(Cost limit) { limit_ = std::min(limit_, limit); }

 private:
  static constexpr std::int32_t maxSize = 256;
  static constexpr int maxSteps = 8192;

  template <class Visit>
  qsys_status go(std::int32_t input, NarrowStates::Set next, bool isEnd, std::int32_t edits, Visit &visit) {
    if (++numSteps_ > maxSteps) {
      return QSYS_STATUS_OK;
    }
    if (input == costs_.size() && isEnd) QOC_TRY(end(visit));
    const bool mayEdit = edits < reach_.maxEdits;
    if (input < costs_.size()) {
      numSteps_ += static_cast<int>(std::min<std::size_t>(costs_.choices(input).size() / 16, maxSteps));
      for (const Choice &choice : costs_.choices(input)) {
        if (!isNear(choice.cost, input + 1)) {
          continue;
        }
        NarrowStates::Set taken = states_.none();
        states_.addAccepting(choice.code, taken);
        QOC_TRY(take(choice, input, input + 1, taken & next, edits, visit));
      }
      if (mayEdit && reach_.allowsSubstitution) {
        QOC_TRY(take({QOC_CHAR_ANY, costs_.substituted(input), -1, 0}, input, input + 1, next, edits + 1, visit));
      }
      if (mayEdit && reach_.allowsExtra && isNear(costs_.leastExtra(input), input + 1)) {
        leftOut_ = input;
        const qsys_status status = go(input + 1, next, isEnd, edits + 1, visit);
        leftOut_ = none;
        QOC_TRY(status);
      }
    }
    if (mayEdit && reach_.allowsMissing) {
      const Cost missing = costs_.penalties().missing(QOC_RESOLVER_OPEN);
      QOC_TRY(take({QOC_CHAR_ANY, missing, -1, 0}, -1, input, next, edits + 1, visit));
    }
    return QSYS_STATUS_OK;
  }

  /// Whether a text that loses so much more, and goes on from a position, can be within the limit.
  bool isNear(Cost cost, std::int32_t behind) const {
    return text_.cost + cost + rest_[static_cast<std::size_t>(behind)] <= limit_;
  }
  /// What the position that was left out costs in front of a character, where it is the one right before it.
  Cost extraBefore(std::int32_t input, Char32 code) const {
    if (leftOut_ == none || leftOut_ + 1 != input) {
      return 0;
    }
    static_assert(maxEdits == 1);  // So nothing else is edited, and the character before it comes from right before it.
    return costs_.extra(leftOut_, text_.choices.empty() ? QOC_CHAR_EMPTY : text_.choices.back().code, code);
  }

  template <class Visit>
  qsys_status end(Visit &visit) {
    const Cost extra = extraBefore(costs_.size(), QOC_CHAR_EMPTY);
    if (!isNear(extra, costs_.size())) {
      return QSYS_STATUS_OK;
    }
    text_.cost += extra;
    const qsys_status status = visit(text_);
    text_.cost -= extra;
    return status;
  }

  /// Goes on with a choice, which the positions in `taken` accept.
  template <class Visit>
  qsys_status take(Choice choice, std::int32_t input, std::int32_t behind, NarrowStates::Set taken, std::int32_t edits,
                   Visit &visit) {
    if (isEmpty(taken)) {
      return QSYS_STATUS_OK;
    }
    const Cost cost = choice.cost + extraBefore(input, choice.code);
    if (!isNear(cost, behind)) {
      return QSYS_STATUS_OK;
    }
    const bool isOpen = choice.code == QOC_CHAR_ANY;
    if (isOpen) {
      choice.code = QOC_RESOLVER_OPEN;
      text_.open.push_back(text_.choices.size());
    }
    text_.choices.push_back(choice);
    text_.inputs.push_back(input);
    text_.cost += cost;
    const qsys_status status = go(behind, states_.followersOf(taken), intersects(taken, states_.last()), edits, visit);
    text_.cost -= cost;
    text_.inputs.pop_back();
    text_.choices.pop_back();
    if (isOpen) text_.open.pop_back();
    return status;
  }

  NarrowStates states_;
  const ReadingCosts &costs_;
  const Reach &reach_;
  std::span<const Cost> rest_;
  Cost limit_;
  WalkedText text_;
  static constexpr std::int32_t none = -1;
  std::int32_t leftOut_ = none;  // The position that is extra.
  int numSteps_ = 0;
};

}  // namespace qoc
