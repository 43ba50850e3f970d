#pragma once
// Walks in an expression's tree: from positions to those that may follow or precede them.
//
// A place in the tree is before a node or behind it. From place to place leads a step that consumes nothing: before a
// sequence is before its first part, behind a part is before the next, and so on. Two walks take such steps: one marks
// every place it comes to, for sets of positions, in any order and in either direction; the other finds the followers
// of one position in the order of a backtracking matcher. Both keep their own stack, and their scratch between uses.

#include "platform/regex/expression.hpp"
#include "platform/system/present.hpp"

namespace qoc {

/// Sets of positions, unordered: one use costs at most a walk through the whole tree. There is room for all places from
/// the beginning, so that a walk takes no memory.
class SetWalk {
 public:
  explicit SetWalk(const Expression &expression) : nodes_(expression.nodes()), seen_(2 * expression.nodes().size(), 0) {
    stack_.reserve(seen_.size());
  }

  void begin() {
    ++use_;
    numSteps_ = 0;
  }
  void pushBefore(std::int32_t node) noexcept { push(2 * node); }
  void pushBehind(std::int32_t node) noexcept { push(2 * node + 1); }
  /// The places come to since the beginning.
  std::size_t numSteps() const noexcept { return numSteps_; }

  /// Goes on from what was pushed to every position that may come next: onPosition(position) is called for each,
  /// and does not throw.
  /// @return whether the end of the expression is reached
  template <class OnPosition>
  bool forward(OnPosition onPosition) noexcept {
    bool isEndReached = false;
    while (!stack_.empty()) {
      const std::int32_t place = pop();
      const std::int32_t id = place / 2;
      const ExpressionNode &node = nodes_[static_cast<std::size_t>(id)];
      if (place % 2 == 0) {
        if (node.kind == SyntaxNode::Kind::character) {
          onPosition(node.position);
        } else {
          enter(id, node);
        }
      } else if (node.parent < 0) {
        isEndReached = true;
      } else {
        leave(id, node);
      }
    }
    return isEndReached;
  }

  /// Goes back from what was pushed to every position that may have come before.
  /// @return whether the start of the expression is reached
  template <class OnPosition>
  bool backward(OnPosition onPosition) noexcept {
    bool isStartReached = false;
    while (!stack_.empty()) {
      const std::int32_t place = pop();
      const std::int32_t id = place / 2;
      const ExpressionNode &node = nodes_[static_cast<std::size_t>(id)];
      if (place % 2 != 0) {
        if (node.kind == SyntaxNode::Kind::character) {
          onPosition(node.position);
        } else {
          enterFromBehind(id, node);
        }
      } else if (node.parent < 0) {
        isStartReached = true;
      } else {
        leaveFromBefore(id, node);
      }
    }
    return isStartReached;
  }

 private:
  using Kind = SyntaxNode::Kind;

  void push(std::int32_t place) noexcept {
    if (seen_[static_cast<std::size_t>(place)] != use_) {
      seen_[static_cast<std::size_t>(place)] = use_;
      stack_.push_back(place);
      ++numSteps_;
    }
  }
  std::int32_t pop() noexcept {
    const std::int32_t place = stack_.back();
    stack_.pop_back();
    return place;
  }

  const ExpressionNode &at(std::int32_t node) const noexcept { return nodes_[static_cast<std::size_t>(node)]; }

  void enter(std::int32_t id, const ExpressionNode &node) noexcept {
    if (node.kind == Kind::empty || (node.kind == Kind::repeat && node.minRounds == 0)) {
      pushBehind(id);
    }
    for (std::int32_t child = node.firstChild; child >= 0; child = at(child).next) {
      pushBefore(child);
      if (node.kind != Kind::choice) {
        break;
      }
    }
  }

  void leave(std::int32_t id, const ExpressionNode &node) noexcept {
    const ExpressionNode &parent = at(node.parent);
    if (parent.kind == Kind::choice) {
      return pushBehind(node.parent);
    }
    if (node.next >= 0) {
      pushBefore(node.next);
    }
    if (parent.kind == Kind::sequence) {
      return node.next < 0 ? pushBehind(node.parent) : void();
    }
    if (node.round >= parent.minRounds || node.isNullable) {
      pushBehind(node.parent);
    }
    if (node.next < 0 && parent.isUnbounded) {
      pushBefore(id);
    }
  }

  // The same steps the other way round.
  void enterFromBehind(std::int32_t id, const ExpressionNode &node) noexcept {
    if (node.kind == Kind::empty || (node.kind == Kind::repeat && node.minRounds == 0)) {
      pushBefore(id);
    }
    for (std::int32_t child = node.lastChild; child >= 0; child = at(child).previous) {
      const bool isBarred = node.kind == Kind::repeat && at(child).round < node.minRounds && !at(child).isNullable;
      if (isBarred) {
        break;
      }
      pushBehind(child);
      if (node.kind == Kind::sequence) {
        break;
      }
    }
  }

  void leaveFromBefore(std::int32_t id, const ExpressionNode &node) noexcept {
    const ExpressionNode &parent = at(node.parent);
    if (parent.kind == Kind::choice || node.previous < 0) {
      pushBefore(node.parent);
    } else {
      pushBehind(node.previous);
    }
    if (parent.kind == Kind::repeat && node.next < 0 && parent.isUnbounded) {
      pushBehind(id);
    }
  }

  const std::vector<ExpressionNode> &nodes_;
  std::vector<std::uint32_t> seen_;
  std::vector<std::int32_t> stack_;
  std::uint32_t use_ = 0;
  std::size_t numSteps_ = 0;
};

/// The followers of one position, in a backtracking matcher's order.
///
/// The walk goes up from the position along its ancestors, which have consumed something, and down into nodes that
/// begin here and have not. What decides is which of the two a repeat is: a round that has consumed something is
/// followed by another, if there may be one; a round that begins and ends here has consumed nothing, and ends its
/// repeat. `climbed` of a task is the lowest ancestor of the position that is not left yet, so a node below it that is
/// not it began here.
class OrderedWalk {
 public:
  explicit OrderedWalk(const Expression &expression)
      : nodes_(expression.nodes()), seen_(static_cast<std::size_t>(expression.numPositions()), 0) {}

  /// The followers of a position, or, of -1, the positions that a match may begin with. Each once, where it comes
  /// first.
  qsys_status find(const Expression &expression, std::int32_t position, std::vector<std::int32_t> &followers,
                   WorkMeter &meter) {
    ++use_;
    followers.clear();
    stack_.clear();
    if (position < 0) {
      push(Action::enter, 0, none);
    } else {
      const std::int32_t node = expression.nodeOf(position);
      push(Action::leave, node, at(node).parent);
    }
    while (!stack_.empty()) {
      QOC_TRY(meter.add(1));
      const Task task = stack_.back();
      stack_.pop_back();
      switch (task.action) {
        case Action::enter:
          enter(task, followers);
          break;
        case Action::pass:
          pass(task);
          break;
        default:  // Action::leave.
          leave(task);
          break;
      }
    }
    return QSYS_STATUS_OK;
  }

 private:
  using Kind = SyntaxNode::Kind;
  static constexpr std::int32_t none = -1;

  enum class Action : std::uint8_t {
    enter,  ///< The node begins here.
    pass,   ///< The node began here and has matched nothing.
    leave   ///< The node has consumed something and is complete.
  };
  struct Task {
    Action action;
    std::int32_t node, climbed;
  };

  const ExpressionNode &at(std::int32_t node) const noexcept { return nodes_[static_cast<std::size_t>(node)]; }
  void push(Action action, std::int32_t node, std::int32_t climbed) { stack_.push_back({action, node, climbed}); }

  // What comes first is pushed last.
  void enter(Task task, std::vector<std::int32_t> &followers) {
    const ExpressionNode &node = at(task.node);
    switch (node.kind) {
      case Kind::empty:
        return push(Action::pass, task.node, task.climbed);
      case Kind::character:
        if (seen_[static_cast<std::size_t>(node.position)] != use_) {
          seen_[static_cast<std::size_t>(node.position)] = use_;
          followers.push_back(node.position);
        }
        return;
      case Kind::sequence:
        return push(Action::enter, node.firstChild, task.climbed);
      case Kind::choice:
        for (std::int32_t child = node.lastChild; child >= 0; child = at(child).previous) {
          push(Action::enter, child, task.climbed);
        }
        return;
      default:  // Kind::repeat.
        if (node.minRounds == 0 && !at(node.firstChild).isNullable) {
          push(Action::pass, task.node, task.climbed);
        }
        return push(Action::enter, node.firstChild, task.climbed);
    }
  }

  void pass(Task task) {
    const ExpressionNode &node = at(task.node);
    if (node.parent < 0) {
      return;
    }
    const Kind parentKind = at(node.parent).kind;
    if (parentKind == Kind::sequence && node.next >= 0) {
      return push(Action::enter, node.next, task.climbed);
    }
    if (parentKind == Kind::choice && !node.passes) {
      return;  // An earlier alternative has passed already.
    }
    // The end of a repeat too: its round has consumed nothing.
    complete(node.parent, task.climbed);
  }

  void leave(Task task) {
    const ExpressionNode &node = at(task.node);
    if (node.parent < 0) {
      return;
    }
    const ExpressionNode &parent = at(node.parent);
    if (parent.kind == Kind::repeat) {
      const std::int32_t nextRound = node.next >= 0 ? node.next : parent.isUnbounded ? task.node : none;
      const bool mayEnd = node.round >= parent.minRounds || node.isNullable;
      // A round that may consume nothing ends the repeat where it does.
      if (mayEnd && (nextRound < 0 || !node.isNullable)) {
        complete(node.parent, task.climbed);
      }
      if (nextRound >= 0) {
        push(Action::enter, nextRound, task.climbed);
      }
    } else if (parent.kind == Kind::sequence && node.next >= 0) {
      push(Action::enter, node.next, task.climbed);
    } else {
      complete(node.parent, task.climbed);
    }
  }

  /// The node's last part is done: as an ancestor of the position it has consumed something.
  void complete(std::int32_t node, std::int32_t climbed) {
    if (node == climbed) {
      push(Action::leave, node, at(node).parent);
    } else {
      push(Action::pass, node, climbed);
    }
  }

  const std::vector<ExpressionNode> &nodes_;
  std::vector<std::uint32_t> seen_;
  std::vector<Task> stack_;
  std::uint32_t use_ = 0;
};

}  // namespace qoc
