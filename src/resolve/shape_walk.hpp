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
 * all its results. Extra positions are not left out; where they may be, it takes the match.
 */
class ShapeWalk {
 public:
  /// @param costs what it shows within the limit is listed
  /// @param reach the edits that are allowed; extra positions count as not
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
  static constexpr int maxSteps = 512;

  template <class Visit>
  qsys_status go(std::int32_t input, NarrowStates::Set next, bool isEnd, std::int32_t edits, Visit &visit) {
    if (++numSteps_ > maxSteps) {
      return QSYS_STATUS_OK;
    }
    if (input == costs_.size() && isEnd) QOC_TRY(visit(text_));
    const bool mayEdit = edits < reach_.maxEdits;
    if (input < costs_.size()) {
      numSteps_ += static_cast<int>(std::min<std::size_t>(costs_.choices(input).size() / 16, maxSteps));
      for (const Choice &choice : costs_.choices(input)) {
        NarrowStates::Set taken = states_.none();
        states_.addAccepting(choice.code, taken);
        QOC_TRY(take(choice, input, input + 1, taken & next, edits, visit));
      }
      if (mayEdit && reach_.allowsSubstitution) {
        QOC_TRY(take({QOC_CHAR_ANY, costs_.substituted(input), -1, 0}, input, input + 1, next, edits + 1, visit));
      }
    }
    if (mayEdit && reach_.allowsMissing) {
      const Cost missing = costs_.penalties().missing(QOC_RESOLVER_OPEN);
      QOC_TRY(take({QOC_CHAR_ANY, missing, -1, 0}, -1, input, next, edits + 1, visit));
    }
    return QSYS_STATUS_OK;
  }

  /// Goes on with a choice, which the positions in `taken` accept.
  template <class Visit>
  qsys_status take(Choice choice, std::int32_t input, std::int32_t behind, NarrowStates::Set taken, std::int32_t edits,
                   Visit &visit) {
    if (isEmpty(taken) || text_.cost + choice.cost + rest_[static_cast<std::size_t>(behind)] > limit_) {
      return QSYS_STATUS_OK;
    }
    const bool isOpen = choice.code == QOC_CHAR_ANY;
    if (isOpen) {
      choice.code = QOC_RESOLVER_OPEN;
      text_.open.push_back(text_.choices.size());
    }
    text_.choices.push_back(choice);
    text_.inputs.push_back(input);
    text_.cost += choice.cost;
    const qsys_status status = go(behind, states_.followersOf(taken), intersects(taken, states_.last()), edits, visit);
    text_.cost -= choice.cost;
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
  int numSteps_ = 0;
};

}  // namespace qoc
