// Compiling: the counts written out, and the tables of small automata.

#include "platform/regex/expression.hpp"

#include <qoc/regex.h>

#include <algorithm>

#include "platform/regex/tree_walk.hpp"
#include "platform/system/present.hpp"

namespace qoc {

namespace {

using Kind = SyntaxNode::Kind;

/// The most nodes that a tree may have with its counts written out. Positions are bounded more tightly; what this
/// bounds are choices with an empty alternative, one in the other many thousand times over, under a count.
constexpr std::size_t mostNodes = 1'000'000;

std::uint64_t bit(std::int32_t position) noexcept { return std::uint64_t{1} << position; }

Expression makeEmptyExpression() {
  Syntax syntax;
  syntax.nodes.emplace_back();
  syntax.root = 0;
  Expression expression;
  expression.compile(std::move(syntax));
  return expression;
}

}  // namespace

qsys_status Expression::compile(Syntax &&syntax) {
  WorkMeter meter;
  QOC_TRY(writeOut(syntax, meter));
  const SyntaxNode &root = syntax.nodes[static_cast<std::size_t>(syntax.root)];
  minLength_ = root.minLength;
  maxLength_ = root.maxLength;
  sets_ = std::move(syntax.sets);
  return isNarrow() ? makeNarrowTables(meter) : QSYS_STATUS_OK;
}

qsys_status Expression::writeOut(const Syntax &syntax, WorkMeter &meter) {
  struct Task {
    std::int32_t syntaxNode, parent, round;
  };
  std::vector<Task> tasks = {{syntax.root, -1, 0}};
  std::vector<Task> children;
  while (!tasks.empty()) {
    QOC_TRY(meter.add(4));
    const Task task = tasks.back();
    tasks.pop_back();
    const SyntaxNode &from = syntax.nodes[static_cast<std::size_t>(task.syntaxNode)];
    const auto id = static_cast<std::int32_t>(nodes_.size());
    if (nodes_.size() == mostNodes) {
      return QSTD_STATUS_REGEX_TOO_LARGE;
    }
    nodes_.push_back({from.kind, from.isNullable, from.isUnbounded, from.isNullable, from.minRounds, task.round,
                      task.parent, -1, -1, -1, -1, -1});
    if (task.parent >= 0) {
      ExpressionNode &parent = nodes_[static_cast<std::size_t>(task.parent)];
      ExpressionNode &node = nodes_.back();
      if (parent.firstChild < 0) {
        parent.firstChild = id;
      } else {
        node.previous = parent.lastChild;
        nodes_[static_cast<std::size_t>(parent.lastChild)].next = id;
      }
      parent.lastChild = id;
      if (parent.kind == Kind::choice) {
        // `passes` of the choice itself tells, while its alternatives come in, whether none of them has passed.
        node.passes = node.isNullable && parent.passes;
        parent.passes = parent.passes && !node.isNullable;
      }
    }
    if (from.kind == Kind::character) {
      nodes_.back().position = numPositions();
      nodeOfPosition_.push_back(id);
      setOfPosition_.push_back(from.set);
    }
    children.clear();
    if (from.kind == Kind::repeat) {
      for (std::int32_t round = 1; round <= from.numRounds; ++round) {
        children.push_back({from.firstChild, id, round});
      }
    } else {
      for (std::int32_t child = from.firstChild; child >= 0;
           child = syntax.nodes[static_cast<std::size_t>(child)].next) {
        children.push_back({child, id, 0});
      }
    }
    tasks.insert(tasks.end(), children.rbegin(), children.rend());
  }
  return QSYS_STATUS_OK;
}

qsys_status Expression::makeNarrowTables(WorkMeter &meter) {
  NarrowTables &tables = narrow_.emplace_back();
  tables = {};
  tables.all = numPositions() == 64 ? ~std::uint64_t{0} : bit(numPositions()) - 1;
  tables.positionsOfSet.assign(sets_.size(), 0);
  for (std::int32_t p = 0; p < numPositions(); ++p) {
    tables.positionsOfSet[static_cast<std::size_t>(setOf(p))] |= bit(p);
  }
  for (std::size_t set = 0; set < sets_.size(); ++set) {
    for (const CodeSet::Range &range : sets_[set].ranges()) {
      for (std::uint64_t code = range.first; code <= range.last && code < NarrowTables::numQuick; ++code) {
        tables.quick[code] |= tables.positionsOfSet[set];
      }
    }
  }

  SetWalk walk(*this);
  const auto collectFollowers = [&](std::uint64_t &set) {
    return walk.forward([&](std::int32_t position) { set |= bit(position); });
  };
  walk.begin();
  walk.pushBefore(0);
  collectFollowers(tables.first);
  for (std::int32_t p = 0; p < numPositions(); ++p) {
    walk.begin();
    walk.pushBehind(nodeOf(p));
    std::uint64_t followers = 0;
    if (collectFollowers(followers)) {
      tables.last |= bit(p);
    }
    QOC_TRY(meter.add(walk.numSteps()));
    if (p < 63 && (followers & bit(p + 1)) != 0) {
      tables.chained |= bit(p);
      followers &= ~bit(p + 1);
    }
    tables.followers[p] = followers;
    tables.branching |= followers != 0 ? bit(p) : 0;
    for (std::int32_t q = 0; q < numPositions(); ++q) {
      tables.predecessors[q] |= (followers & bit(q)) != 0 ? bit(p) : 0;
    }
    tables.joining |= followers;
  }
  return QSYS_STATUS_OK;
}

const Expression &emptyExpression() {
  static const Expression empty = makeEmptyExpression();
  return empty;
}

}  // namespace qoc
