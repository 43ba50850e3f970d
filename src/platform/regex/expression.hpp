#pragma once
// A compiled expression: its tree with the counts written out, whose characters are the states of the automaton.
//
// The idea (V. M. Glushkov, The abstract theory of automata, 1961): every character of the expression is a position,
// and a state of the matcher is the set of positions that may have consumed the last token. Which positions may follow
// a position is a matter of walking in the tree: up from the one, along sequences and round repeats, and down into what
// comes next. (ab|c)*d, say, has the positions a0 b1 c2 d3; a0 is followed by b1, b1 by a0, c2 and d3.
//
// With 64 positions or fewer a set of them is one word, and what follows and precedes each is looked up. With more the
// walk itself is done, at most once through the tree for a whole set, so that the memory stays linear in the expression
// however densely its positions follow one another.

#include <cstdint>
#include <vector>

#include "platform/regex/code_set.hpp"
#include "platform/regex/syntax.hpp"
#include "platform/system/work_meter.hpp"

namespace qoc {

/// A node of the tree with the counts written out: a repeat has a child for each round.
struct ExpressionNode {
  SyntaxNode::Kind kind;
  bool isNullable;
  bool isUnbounded;
  bool passes;  ///< Matches the empty sequence, and no earlier alternative of its choice does.
  std::int32_t minRounds;
  std::int32_t round;  ///< In its repeat, from 1.
  std::int32_t parent, firstChild, lastChild, previous, next;
  std::int32_t position;  ///< Of a character.
};

/// What automata of up to 64 positions look up. Bit p stands for position p.
struct NarrowTables {
  static constexpr std::size_t numQuick = 128;

  std::uint64_t all, first, last;
  std::uint64_t quick[numQuick];              ///< The positions that accept each of the first codes.
  std::vector<std::uint64_t> positionsOfSet;  ///< The positions that accept each code set.
  std::uint64_t chained;                      ///< The positions p that p + 1 may follow.
  std::uint64_t branching, joining;           ///< Those that other positions may follow; that may follow other ones.
  std::uint64_t followers[64], predecessors[64];  ///< Without the chained ones.
};

class Expression {
 public:
  /// Takes a parsed syntax over. @return 0, QSTD_STATUS_REGEX_TOO_LARGE, or the failure of qsys_attention_check
  qsys_status compile(Syntax &&syntax);

  std::int32_t numPositions() const noexcept { return static_cast<std::int32_t>(nodeOfPosition_.size()); }
  bool isNarrow() const noexcept { return numPositions() <= 64; }
  bool isNullable() const noexcept { return nodes_.front().isNullable; }
  std::int64_t minLength() const noexcept { return minLength_; }
  std::int64_t maxLength() const noexcept { return maxLength_; }

  const std::vector<ExpressionNode> &nodes() const noexcept { return nodes_; }
  std::int32_t nodeOf(std::int32_t position) const noexcept {
    return nodeOfPosition_[static_cast<std::size_t>(position)];
  }
  const std::vector<CodeSet> &sets() const noexcept { return sets_; }
  std::int32_t setOf(std::int32_t position) const noexcept {
    return setOfPosition_[static_cast<std::size_t>(position)];
  }
  const NarrowTables &narrow() const noexcept { return narrow_.front(); }

 private:
  qsys_status writeOut(const Syntax &syntax, WorkMeter &meter);
  qsys_status makeNarrowTables(WorkMeter &meter);

  std::vector<ExpressionNode> nodes_;  ///< The root first, every parent before its children.
  std::vector<std::int32_t> nodeOfPosition_, setOfPosition_;
  std::vector<CodeSet> sets_;
  std::int64_t minLength_ = 0, maxLength_ = 0;
  std::vector<NarrowTables> narrow_;  ///< One, where there are few enough positions.
};

/// The expression that every empty one is.
const Expression &emptyExpression();

}  // namespace qoc
