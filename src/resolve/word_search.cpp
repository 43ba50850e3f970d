// The search for the nearest words: the trie in depth, with the rows of the alignment carried along, so that words
// share the rows of their common beginnings (Oflazer 1996, here with costs).

#include "resolve/word_search.hpp"

#include <algorithm>

#include "platform/system/present.hpp"
#include "platform/system/shortcuts.hpp"
#include "resolve/live_cells.hpp"

namespace qoc {

namespace {

/// The best words so far.
class BestWords {
 public:
  BestWords(std::size_t k, const WordChooser &chooser, std::vector<FoundWord> &found)
      : k_(k), chooser_(chooser), found_(found) {
    found_.clear();
    setLimit();
  }

  /// The greatest cost that still matters.
  Cost limit() const { return limit_; }

  /// Takes a word in unless it costs too much, is there at no greater cost or is not allowed. The same word in other
  /// lexicons follows it in the order; the first one that is allowed counts.
  qsys_status offer(const WordIndex &words, std::size_t word, Cost cost) {
    const auto text = words.word(word);
    const auto isSame = [&](std::size_t other) {
      const auto known = words.word(other);
      return std::equal(known.begin(), known.end(), text.begin(), text.end());
    };
    const auto known =
        std::find_if(found_.begin(), found_.end(), [&](const FoundWord &other) { return isSame(other.word); });
    if (cost > limit_ || (known != found_.end() && known->cost <= cost)) {
      return QSYS_STATUS_OK;
    }
    if (known != found_.end()) found_.erase(known);
    bool isIn = false;
    for (; !isIn && word < words.size() && isSame(word); ++word) QOC_TRY(chooser_.isAllowed(word, isIn));
    if (isIn) {
      const FoundWord taken = {cost, word - 1};
      const auto at = std::find_if(found_.begin(), found_.end(), [&](const FoundWord &other) {
        return other.cost != cost ? other.cost > cost : other.word > taken.word;
      });
      found_.insert(at, taken);
      if (found_.size() > k_) found_.pop_back();
      setLimit();
    }
    return QSYS_STATUS_OK;
  }

 private:
  void setLimit() {
    const Cost best = found_.empty() ? noWay : found_.front().cost;
    while (!found_.empty() && found_.back().cost > chooser_.limit(best)) found_.pop_back();
    limit_ = std::min(chooser_.limit(best), found_.size() < k_ ? noWay - 1 : found_.back().cost);
  }

  std::size_t k_;
  const WordChooser &chooser_;
  std::vector<FoundWord> &found_;
  Cost limit_ = 0;
};

/// The rows of a WordTable, whole.
class TableRows {
 public:
  TableRows(const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps)
      : table_(costs, reach, swaps), passesRows_(!swaps.isEmpty()), least_{0} {}

  static constexpr Direction direction() { return Direction::forward; }
  std::size_t width() const { return table_.width(); }
  static bool mayExtend(std::size_t, Char32, LetterMask) { return true; }
  bool extend(Char32 code, std::size_t depth, const Rest &, Cost limit) {
    prefix_.resize(depth);
    prefix_.push_back(code);
    least_.resize(depth + 1);
    least_.push_back(table_.extend(prefix_, depth, limit));
    // A multi-character swap can pass over one row.
    return std::min(least_[depth + 1], passesRows_ ? least_[depth] : noWay) <= limit;
  }
  Cost cost(std::size_t length) const { return table_.canReach(length) ? table_.cost(prefix_, length) : noWay; }

 private:
  WordTable table_;
  bool passesRows_;
  std::vector<Char32> prefix_;  // What the rows are of.
  std::vector<Cost> least_;     // By row: its least cost.
};

template <class Rows>
class TrieWalk {
 public:
  TrieWalk(const WordIndex &words, Rows &rows, BestWords &best) : words_(words), rows_(rows), best_(best) {}

  qsys_status run() {
    QOC_TRY(enter(words_.root(rows_.direction()), 0));
    while (!branches_.empty()) {
      std::span<const WordNode> &left = branches_.back();
      if (left.empty()) {
        branches_.pop_back();
        continue;
      }
      const WordNode &node = left.front();
      left = left.subspan(1);
      const std::size_t depth = branches_.size();
      if (!rows_.mayExtend(depth - 1, node.code, node.below)) {
        continue;
      }
      QOC_TRY(tick());
      const Rest rest = {node.shortest, node.longest < WordNode::maxCounted ? std::int64_t{node.longest} : INT64_MAX};
      if (rows_.extend(node.code, depth - 1, rest, best_.limit())) QOC_TRY(enter(node, depth));
    }
    return QSYS_STATUS_OK;
  }

 private:
  /// Offers the word that ends at the node, or the only one behind it, and goes on with the others.
  qsys_status enter(const WordNode &node, std::size_t depth) {
    if (node.numChildren > 0) {
      branches_.push_back(words_.children(node, rows_.direction()));
      return node.shortest == 0 ? best_.offer(words_, node.word, rows_.cost(depth)) : QSYS_STATUS_OK;
    }
    const std::size_t numLeft =
        node.longest < WordNode::maxCounted ? node.longest : words_.word(node.word).size() - depth;
    for (std::size_t i = 0; i < numLeft; ++i) {
      QOC_TRY(tick());
      const auto left = static_cast<std::int64_t>(numLeft - i) - 1;
      if (!rows_.extend(words_.tail(node, i, rows_.direction()), depth + i, {left, left}, best_.limit())) {
        return QSYS_STATUS_OK;
      }
    }
    return best_.offer(words_, node.word, rows_.cost(depth + numLeft));
  }

  /// Polls attention once for so many cells.
  qsys_status tick() {
    numCells_ += 8 + rows_.width();
    if (numCells_ < 1024) {
      return QSYS_STATUS_OK;
    }
    numCells_ = 0;
    return qsys_attention_check();
  }

  const WordIndex &words_;
  Rows &rows_;
  BestWords &best_;
  std::vector<std::span<const WordNode>> branches_;  // By depth: the nodes to be visited.
  std::size_t numCells_ = 0;                         // Since the last poll.
};

/// Whether live cells are enough.
bool isPlain(const Reach &reach, const MultiSwaps &swaps) {
  return !reach.isWindow && swaps.isEmpty() && shortcuts().usesLiveCells;
}

}  // namespace

qsys_status findBestWords(const WordIndex &words, const ReadingCosts &costs, const Reach &reach,
                          const MultiSwaps &swaps, std::size_t k, const WordChooser &chooser,
                          std::vector<FoundWord> &found) {
  BestWords best(k, chooser, found);
  QOC_TRY(qsys_attention_check());
  if (!isPlain(reach, swaps)) {
    TableRows table(costs, reach, swaps);
    return TrieWalk(words, table, best).run();
  }
  // Where a word is reached at a cost, half of the reading is passed at no more than half of it. So it is found from
  // the end where that half is, and the many ways to begin with dear edits need not be gone (Mihov and Schulz 2004).
  const bool isTwoWay = reach.maxEdits > 0 && costs.size() > 1;
  const std::int32_t half = costs.size() / 2;
  LiveCells fromBegin(costs, reach, Direction::forward, best.limit());
  if (isTwoWay) fromBegin.setShare(half);
  QOC_TRY(TrieWalk(words, fromBegin, best).run());
  if (!isTwoWay) {
    return QSYS_STATUS_OK;
  }
  LiveCells fromEnd(costs, reach, Direction::backward, best.limit());
  fromEnd.setShare(costs.size() - half - 1);
  return TrieWalk(words, fromEnd, best).run();
}

Cost costOfWord(std::span<const Char32> word, const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps) {
  const auto costIn = [&](auto &&rows) {
    for (std::size_t depth = 0; depth < word.size(); ++depth) {
      const auto left = static_cast<std::int64_t>(word.size() - depth) - 1;
      if (!rows.extend(word[depth], depth, Rest{left, left}, noWay - 1)) {
        return noWay;
      }
    }
    return rows.cost(word.size());
  };
  return isPlain(reach, swaps) ? costIn(LiveCells(costs, reach, Direction::forward, noWay - 1))
                               : costIn(TableRows(costs, reach, swaps));
}

}  // namespace qoc
