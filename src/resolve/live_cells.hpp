#pragma once
// The cells of a word's alignment that can still lead to a word at a cost that matters.

#include "resolve/word_index.hpp"
#include "resolve/word_table.hpp"

namespace qoc {

/// How many characters the words that go on from a beginning have behind it.
struct Rest {
  std::int64_t shortest, longest;
};

/**
 * The rows of a WordTable as lists of their live cells, for whole readings without multi-character swaps; of words and
 * readings from their beginnings, or from their ends.
 *
 * A cell is a number of positions of the reading that the beginning of a word has taken, with a number of edits. It is
 * left out where another one with no more edits costs no more, and where what is left of the reading is too long or too
 * short to become what is left of the words within the limit. Few cells are left, mostly one or two.
 */
class LiveCells {
 public:
  /// @param limit costs beyond it never matter
  LiveCells(const ReadingCosts &costs, const Reach &reach, Direction direction, Cost limit);

  Direction direction() const { return direction_; }
  /// The cells of the last row.
  std::size_t width() const { return numCells_ - rows_[rows_.size() - 2].begin; }
  /// From now on the first positions of the reading, in the direction, may lose half of the limit only.
  void setShare(std::int32_t numPositions) { shared_ = numPositions; }

  /// Fills the row of the word's character `depth` (from 0, in the direction); the rows above hold what is before it.
  /// @param limit costs beyond it need not be known
  /// @return whether some cell is left
  bool extend(Char32 code, std::size_t depth, const Rest &rest, Cost limit);
  /// Whether a row can go on with a character, before others.
  bool mayExtend(std::size_t depth, Char32 code, LetterMask below) const {
    const Row &row = rows_[depth];
    return (row.letters & maskOf(code)) != 0 && ((maskOf(code) | below) & row.required) == row.required;
  }
  /// The cost of a word that ends at `depth` characters; noWay where it is out of reach.
  Cost cost(std::size_t depth);

 private:
  struct Cell {
    std::int32_t input, edits;
    Cost cost;
  };
  struct Position {
    std::int32_t index;  // In the reading.
    LetterMask letters;  // What it shows within the limit;
    LetterMask best;     // of that the one at the least cost,
    Cost other;          // and the least that it costs to be anything else.
    Cost substituted;    // noWay where that is not allowed.
  };
  struct Row {
    std::size_t begin;    // Of its cells.
    LetterMask letters;   // What it can go on with, and perhaps others.
    LetterMask required;  // What has to come, whichever cell leads on.
  };
  bool mayEdit(const Cell &cell) const { return !countsEdits_ || cell.edits < reach_.maxEdits; }
  const Position &at(std::int32_t input) const { return positions_[static_cast<std::size_t>(input)]; }
  void begin(std::size_t depth, const Rest &rest, Cost limit);
  void finish();
  LetterMask requiredFrom(const Cell &cell) const;
  void add(std::int32_t input, std::int32_t edits, Cost cost);
  void addExtras(std::size_t from, Char32 before);
  bool canEnd(std::int32_t input, std::int32_t edits, Cost cost) const;
  void addSteps(const Cell &cell, Char32 code, Cost missing);

  const ReadingCosts &costs_;
  const Reach &reach_;
  Direction direction_;
  bool countsEdits_, mayMiss_;
  std::int32_t size_, edit_, shared_ = -1;
  Cost leastMissing_, leastExtra_ = noWay;
  std::vector<Position> positions_;  // In the direction.
  std::vector<Cell> cells_;          // Row behind row, each by rising input; room for more behind them.
  std::size_t numCells_ = 0;
  std::vector<Row> rows_;  // And the end of the last one.
  // Of the row at hand.
  Rest rest_ = {0, INT64_MAX};
  Cost limit_ = 0;
  std::vector<Cell> widened_;
};

}  // namespace qoc
