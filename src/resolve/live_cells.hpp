#pragma once
// The cells of a word's alignment that can still lead to the word at a cost that matters.

#include "platform/system/work_meter.hpp"
#include "resolve/word_table.hpp"

namespace qoc {

/**
 * The rows of a WordTable as lists of their live cells, for whole readings without multi-character swaps.
 *
 * A cell is a number of positions of the reading that the beginning of a word has taken, with a number of edits. It is
 * left out where another one with no more edits costs no more, and where what is left of the reading is too long or too
 * short to become what is left of the word within the limit. Few cells are left, mostly one or two.
 */
class LiveCells {
 public:
  LiveCells(const ReadingCosts &costs, const Reach &reach);

  /// The cost of a word; noWay where it is out of reach or costs more than the limit. Throws Interrupted.
  Cost costOf(std::span<const Char32> word, Cost limit, WorkMeter &meter);

 private:
  struct Cell {
    std::int32_t input, edits;
    Cost cost;
  };
  bool mayEdit(const Cell &cell) const {
    return cell.cost + reach_.leastEdit <= limit_ && (!countsEdits_ || cell.edits < reach_.maxEdits);
  }
  void add(std::int32_t input, std::int32_t edits, Cost cost);
  void addExtras(Char32 before);
  bool canEnd(std::int32_t input, std::int32_t edits, Cost cost) const;
  void addSteps(const Cell &cell, Char32 code, Cost missing);

  const ReadingCosts &costs_;
  const Reach &reach_;
  bool countsEdits_, mayMiss_, maySubstitute_;
  std::int32_t size_, edit_;
  Cost leastMissing_, leastExtra_ = noWay;
  std::vector<Cell> row_, above_;  // Each by rising input.
  // Of the row at hand.
  std::int64_t depth_ = 0, left_ = 0;  // The characters that the word has up to it, and behind it.
  Cost limit_ = 0;
};

}  // namespace qoc
