// Rows of live cells.

#include "resolve/live_cells.hpp"

#include <algorithm>

namespace qoc {

LiveCells::LiveCells(const ReadingCosts &costs, const Reach &reach, Direction direction, Cost limit)
    : costs_(costs),
      reach_(reach),
      direction_(direction),
      countsEdits_(reach.countsEdits()),
      mayMiss_(reach.maxEdits > 0 && reach.allowsMissing),
      size_(costs.size()),
      edit_(countsEdits_ ? 1 : 0),
      leastMissing_(mayMiss_ ? costs.penalties().leastMissing() : noWay) {
  const auto n = static_cast<std::size_t>(size_);
  positions_.reserve(n);
  for (std::int32_t i = 0; i < size_; ++i) {
    const std::int32_t index = direction == Direction::forward ? i : size_ - 1 - i;
    Position position = {index, 0, 0, noWay, noWay};
    if (reach.maxEdits > 0 && reach.allowsSubstitution) position.substituted = costs.substituted(index);
    position.other = position.substituted;
    if (reach.maxEdits > 0 && reach.allowsExtra) {
      position.other = std::min(position.other, costs.leastExtra(index));
      leastExtra_ = std::min(leastExtra_, costs.leastExtra(index));
    }
    Cost least = noWay;
    for (const Choice &choice : costs.choices(index)) {
      if (choice.cost > limit) continue;
      const LetterMask letter = choice.code == QOC_CHAR_ANY ? allLetters : maskOf(choice.code);
      position.letters |= letter;
      if (letter == position.best) {
        least = std::min(least, choice.cost);
      } else if (choice.cost < least) {
        position.other = std::min(position.other, least);
        least = choice.cost;
        position.best = letter;
      } else {
        position.other = std::min(position.other, choice.cost);
      }
    }
    positions_.push_back(position);
  }
  cells_.resize(8 * (n + 2));
  rows_.reserve(n + 4);
  begin(0, rest_, limit);
  add(0, 0, 0);
  if (direction_ == Direction::forward) addExtras(0, QOC_CHAR_EMPTY);
  finish();
}

/// Begins a row, whose cells will have to become these rests.
inline void LiveCells::begin(std::size_t depth, const Rest &rest, Cost limit) {
  rows_.resize(depth + 1);
  numCells_ = rows_[depth].begin;
  rest_ = rest;
  limit_ = limit;
}

/// The characters without which no word can come behind a cell: those of positions where anything else costs too much.
inline LetterMask LiveCells::requiredFrom(const Cell &cell) const {
  LetterMask required = 0;
  for (std::int32_t i = cell.input; i < size_; ++i) {
    const Cost most = i < shared_ ? limit_ / 2 : limit_;
    if (cell.cost + at(i).other > most && at(i).best != allLetters) required |= at(i).best;
  }
  return required;
}

/// Ends the row at hand.
inline void LiveCells::finish() {
  Row &row = rows_.back();
  row.letters = 0;
  row.required = allLetters;
  for (std::size_t k = row.begin; k < numCells_; ++k) {
    const Cell &cell = cells_[k];
    if (row.required != 0) row.required &= requiredFrom(cell);
    if (cell.input < size_) row.letters |= at(cell.input).letters;
    // Behind an edit there can be any character.
    const Cost edit = std::min({leastMissing_, leastExtra_, cell.input < size_ ? at(cell.input).substituted : noWay});
    if (mayEdit(cell) && cell.cost + edit <= limit_) row.letters = allLetters;
  }
  rows_.push_back({numCells_, 0, 0});
}

/// Adds a cell to the row at hand, unless it leads nowhere or another one is as good.
inline void LiveCells::add(std::int32_t input, std::int32_t edits, Cost cost) {
  if (cost > (input <= shared_ ? limit_ / 2 : limit_) || !canEnd(input, edits, cost)) {
    return;
  }
  if (numCells_ == cells_.size()) cells_.resize(2 * numCells_);
  Cell *const begin = cells_.data() + rows_.back().begin, *const end = cells_.data() + numCells_;
  Cell *behind = end;
  while (behind > begin && behind[-1].input > input) --behind;
  Cell *first = behind;
  for (; first > begin && first[-1].input == input; --first) {
    if (first[-1].edits <= edits && first[-1].cost <= cost) {
      return;
    }
  }
  const auto isWorse = [&](const Cell &other) { return other.edits >= edits && other.cost >= cost; };
  Cell *const place = std::remove_if(first, behind, isWorse);
  if (place < behind) {
    numCells_ = static_cast<std::size_t>(std::move(behind, end, place + 1) - cells_.data());
  } else {
    std::copy_backward(behind, end, end + 1);
    ++numCells_;
  }
  *place = {input, edits, cost};
}

/// Whether the rest of the reading can become as long as what is left of the words.
inline bool LiveCells::canEnd(std::int32_t input, std::int32_t edits, Cost cost) const {
  const std::int64_t left = size_ - input;
  if (left >= rest_.shortest && left <= rest_.longest) {
    return true;
  }
  const std::int64_t number = left < rest_.shortest ? rest_.shortest - left : left - rest_.longest;
  const Cost least = left < rest_.shortest ? leastMissing_ : leastExtra_;
  return (!countsEdits_ || edits + number <= reach_.maxEdits) && least < noWay / number &&
         cost + number * least <= limit_;
}

/// Adds what the cells from a place on become by extra positions beside a character of the word.
inline void LiveCells::addExtras(std::size_t from, Char32 before) {
  for (std::size_t k = from; k < numCells_; ++k) {
    const Cell cell = cells_[k];
    if (cell.input < size_ && cell.cost + leastExtra_ <= limit_ && mayEdit(cell)) {
      add(cell.input + 1, cell.edits + edit_, cell.cost + costs_.extra(at(cell.input).index, before, QOC_CHAR_EMPTY));
    }
  }
}

/// Adds what a cell becomes with one more character, which costs so much where it is missing.
inline void LiveCells::addSteps(const Cell &cell, Char32 code, Cost missing) {
  const auto shown = [&](std::int32_t input) { return input < size_ ? costs_.match(at(input).index, code) : noWay; };
  const Cost matched = shown(cell.input);
  if (matched < noWay) add(cell.input + 1, cell.edits, cell.cost + matched);
  if (!mayEdit(cell)) {
    return;
  }
  const std::int32_t edits = cell.edits + edit_;
  if (cell.input < size_) add(cell.input + 1, edits, cell.cost + at(cell.input).substituted);
  add(cell.input, edits, cell.cost + missing);
  if (cell.input + 1 < size_ && cell.cost + leastExtra_ <= limit_) {
    // A position right in front of the one that shows the character can be that character read twice.
    const bool isForward = direction_ == Direction::forward;
    const Cost cost = isForward ? shown(cell.input + 1) : matched;
    const std::int32_t extra = isForward ? cell.input : cell.input + 1;
    if (cost < noWay) {
      add(cell.input + 2, edits, cell.cost + costs_.extra(at(extra).index, QOC_CHAR_EMPTY, code) + cost);
    }
  }
}

bool LiveCells::extend(Char32 code, std::size_t depth, const Rest &rest, Cost limit) {
  const std::size_t first = rows_[depth].begin, end = rows_[depth + 1].begin;
  begin(depth + 1, rest, limit);
  const Cost missing = mayMiss_ ? costs_.penalties().missing(code) : noWay;
  if (direction_ == Direction::backward && leastExtra_ < noWay && first < end) {
    // Extra positions stand behind the character that comes now: the row above gets them for once.
    rest_ = {rest.shortest + 1, rest.longest < INT64_MAX ? rest.longest + 1 : INT64_MAX};
    for (std::size_t k = first; k < end; ++k) add(cells_[k].input, cells_[k].edits, cells_[k].cost);
    addExtras(end, code);
    rest_ = rest;
    widened_.assign(cells_.begin() + static_cast<std::ptrdiff_t>(end),
                    cells_.begin() + static_cast<std::ptrdiff_t>(numCells_));
    numCells_ = end;
    for (const Cell &cell : widened_) addSteps(cell, code, missing);
  } else {
    for (std::size_t k = first; k < end; ++k) addSteps(Cell(cells_[k]), code, missing);
  }
  if (direction_ == Direction::forward) addExtras(end, code);
  finish();
  return numCells_ > end;
}

Cost LiveCells::cost(std::size_t depth) {
  if (!reach_.admitsLength(depth)) {
    return noWay;
  }
  if (direction_ == Direction::backward) {  // What is left of the reading stands in front of the word.
    const std::size_t end = rows_[depth + 1].begin;
    begin(depth, {0, 0}, limit_);
    numCells_ = end;
    addExtras(rows_[depth].begin, QOC_CHAR_EMPTY);
    finish();
  }
  Cost least = noWay;
  for (std::size_t k = rows_[depth].begin; k < rows_[depth + 1].begin; ++k) {
    if (cells_[k].input == size_) least = std::min(least, cells_[k].cost);
  }
  return least;
}

}  // namespace qoc
