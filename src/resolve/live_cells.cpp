// Rows of live cells.

#include "resolve/live_cells.hpp"

#include <algorithm>

namespace qoc {

LiveCells::LiveCells(const ReadingCosts &costs, const Reach &reach)
    : costs_(costs),
      reach_(reach),
      countsEdits_(reach.countsEdits()),
      mayMiss_(reach.maxEdits > 0 && reach.allowsMissing),
      maySubstitute_(reach.maxEdits > 0 && reach.allowsSubstitution),
      size_(costs.size()),
      edit_(countsEdits_ ? 1 : 0),
      leastMissing_(mayMiss_ ? costs.penalties().leastMissing() : noWay) {
  for (std::int32_t i = 0; i < size_ && reach.maxEdits > 0 && reach.allowsExtra; ++i) {
    leastExtra_ = std::min(leastExtra_, costs.leastExtra(i));
  }
}

/// Adds a cell to the row at hand, unless it leads nowhere or another one is as good.
inline void LiveCells::add(std::int32_t input, std::int32_t edits, Cost cost) {
  if (cost > limit_ || !canEnd(input, edits, cost)) {
    return;
  }
  if (row_.empty() || row_.back().input < input) {
    row_.push_back({input, edits, cost});
    return;
  }
  std::size_t behind = row_.size();
  while (behind > 0 && row_[behind - 1].input > input) --behind;
  std::size_t first = behind;
  for (; first > 0 && row_[first - 1].input == input; --first) {
    if (row_[first - 1].edits <= edits && row_[first - 1].cost <= cost) {
      return;
    }
  }
  const auto isWorse = [&](const Cell &other) { return other.edits >= edits && other.cost >= cost; };
  const auto at = [&](std::size_t k) { return row_.begin() + static_cast<std::ptrdiff_t>(k); };
  row_.insert(row_.erase(std::remove_if(at(first), at(behind), isWorse), at(behind)), {input, edits, cost});
}

/// Whether the reading can have become as long as the word up to here, and what is left of it as what is left of the
/// word.
inline bool LiveCells::canEnd(std::int32_t input, std::int32_t edits, Cost cost) const {
  const std::int64_t left = size_ - input;
  if (!countsEdits_ && (input > depth_ + reach_.maxEdits || depth_ > input + std::int64_t{reach_.maxEdits})) {
    return false;
  }
  if (left == left_) {
    return true;
  }
  const std::int64_t number = left < left_ ? left_ - left : left - left_;
  const Cost least = left < left_ ? leastMissing_ : leastExtra_;
  return (!countsEdits_ || edits + number <= reach_.maxEdits) && cost + least <= limit_ &&
         (number == 1 || least <= (limit_ - cost) / number);
}

/// Adds what the cells of the row at hand become by extra positions behind a character of the word.
inline void LiveCells::addExtras(Char32 before) {
  for (std::size_t k = 0; k < row_.size(); ++k) {
    const Cell cell = row_[k];
    if (cell.input < size_ && cell.cost + leastExtra_ <= limit_ && mayEdit(cell)) {
      add(cell.input + 1, cell.edits + edit_, cell.cost + costs_.extra(cell.input, before, QOC_CHAR_EMPTY));
    }
  }
}

/// Adds what a cell becomes with one more character, which costs so much where it is missing.
inline void LiveCells::addSteps(const Cell &cell, Char32 code, Cost missing) {
  const auto shown = [&](std::int32_t input) { return input < size_ ? costs_.match(input, code) : noWay; };
  const Cost matched = shown(cell.input);
  if (matched < noWay) add(cell.input + 1, cell.edits, cell.cost + matched);
  if (!mayEdit(cell)) {
    return;
  }
  const std::int32_t edits = cell.edits + edit_;
  if (cell.input < size_ && maySubstitute_) add(cell.input + 1, edits, cell.cost + costs_.substituted(cell.input));
  if (mayMiss_) add(cell.input, edits, cell.cost + missing);
  if (cell.input + 1 < size_ && cell.cost + leastExtra_ <= limit_) {
    // A position right in front of the one that shows the character can be that character read twice.
    const Cost cost = shown(cell.input + 1);
    if (cost < noWay) add(cell.input + 2, edits, cell.cost + costs_.extra(cell.input, QOC_CHAR_EMPTY, code) + cost);
  }
}

Cost LiveCells::costOf(std::span<const Char32> word, Cost limit, WorkMeter &meter) {
  if (!reach_.admitsLength(word.size())) {
    return noWay;
  }
  limit_ = limit;
  left_ = static_cast<std::int64_t>(word.size());
  depth_ = 0;
  row_.clear();
  add(0, 0, 0);
  addExtras(QOC_CHAR_EMPTY);
  for (const Char32 code : word) {
    if (row_.empty()) {
      break;
    }
    --left_;
    ++depth_;
    meter.spend(4 + 16 * row_.size());
    row_.swap(above_);
    row_.clear();
    const Cost missing = mayMiss_ ? costs_.penalties().missing(code) : noWay;
    for (const Cell &cell : above_) addSteps(cell, code, missing);
    addExtras(code);
  }
  // What is left of the reading has been left out.
  Cost least = noWay;
  for (const Cell &cell : row_) {
    if (cell.input == size_) least = std::min(least, cell.cost);
  }
  return least;
}

}  // namespace qoc
