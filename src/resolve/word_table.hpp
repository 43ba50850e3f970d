#pragma once
// Words under weighted edits.

#include <qoc/resolver.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/system/work_meter.hpp"
#include "resolve/reading_costs.hpp"

namespace qoc {

/// How a reading becomes a word: for each character where it comes from.
struct WordTrace {
  std::vector<Choice> choices;       ///< One for each character of the word.
  std::vector<std::int32_t> inputs;  ///< The positions of the reading, or -1.
};

/// Multi-character swaps as plain records.
struct MultiSwaps {
  std::vector<qoc_stringExpandOneToTwo_> oneToTwo;
  std::vector<qoc_stringExpandTwoToTwo_> twoToTwo;
  bool isEmpty() const { return oneToTwo.empty() && twoToTwo.empty(); }
};
MultiSwaps multiSwapsOf(const qoc_swapCharSet *set);

/// What an alignment may do.
struct Reach {
  std::int32_t maxEdits = 0;
  bool allowsSubstitution = true, allowsMissing = true, allowsExtra = true;
  bool isWindow = false;
  std::int32_t minLength = 1, maxLength = INT32_MAX;
  Cost leastEdit = 0;  ///< No edit costs less.

  static Reach of(const qoc_ocrDictionaryRunParams &params);
  /// Whether texts of every length are allowed.
  bool allowsAnyLength() const { return minLength <= 1 && maxLength == INT32_MAX; }
  /// Whether a word may have that length; lengths bind only where nothing is edited.
  bool admitsLength(std::size_t length) const {
    return maxEdits > 0 ||
           (static_cast<std::int64_t>(length) >= minLength && static_cast<std::int64_t>(length) <= maxLength);
  }
  /// Whether a table counts the edits; with more of them it would grow too large, and allows any number.
  bool countsEdits() const;
};

/**
 * The table of an alignment of one word, grown character by character: for every prefix of the word, position of the
 * reading and number of edits the least cost.
 *
 * Of a long word it keeps its first rows, the last ones, and between them two at a time from which others can be made
 * again.
 */
class WordTable {
 public:
  WordTable(const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps);

  /// The cells of a row, about.
  std::size_t width() const {
    const std::int64_t span = std::min<std::int64_t>(2 * std::int64_t{band_} + 1, costs_.size() + 1);
    return static_cast<std::size_t>(span) * (static_cast<std::size_t>(numEdits_) + 1);
  }
  /// Whether a word of that length can be reached at all.
  bool canReach(std::size_t length) const;
  /// The most characters of a prefix, no more than so many, behind which the table can be grown: its rows are kept. The
  /// table has been grown that far.
  std::size_t resumable(std::size_t depth) const;
  /// Fills the row of the word's character `depth` (from 0); the rows above hold its prefix.
  /// @param limit costs beyond it need not be known
  /// @return the least cost in the row; noWay where it is beyond the limit
  Cost extend(std::span<const Char32> word, std::size_t depth, Cost limit = noWay - 1);
  /// Fills the rows of all of a word. Throws Interrupted.
  void fill(std::span<const Char32> word, Cost limit, WorkMeter &meter);
  /// The cost of the word that ends at `depth` characters.
  Cost cost(std::span<const Char32> word, std::size_t depth) const;
  /// How the word comes about at that cost, which the table was filled with as its limit. Rows that are not kept are
  /// made again. Throws Interrupted.
  WordTrace trace(std::span<const Char32> word, Cost limit, WorkMeter &meter);

 private:
  struct Step {
    std::int32_t inputs, characters, edits;  // What it consumes and how many edits it is.
    Cost cost;
    bool isShown;  // Its last character is one that the last position shows.
  };
  template <class Visit>
  void forEachStep(std::span<const Char32> word, std::size_t depth, std::int32_t input, Visit &&visit) const;
  std::int32_t first(std::size_t depth) const;
  std::int32_t last(std::size_t depth) const;
  /// The alignments of a prefix, by position of the reading and number of edits.
  struct Row {
    std::vector<Cost> costs;
    std::int32_t firstLive = 0, lastLive = -1;  // The positions that some alignment reaches.
  };
  void addRow(std::size_t depth);
  bool isKept(std::size_t depth) const { return !rows_[depth].costs.empty(); }
  void dropRow(std::size_t depth);
  Cost addFilledRow(std::span<const Char32> word, std::size_t depth, Cost limit);
  void remake(std::span<const Char32> word, std::size_t depth, Cost limit, WorkMeter &meter);
  Cost &cell(std::size_t depth, std::int32_t input, std::int32_t edits);
  /// The same; noWay where the row has no such position.
  Cost at(std::size_t depth, std::int32_t input, std::int32_t edits) const;
  void fillFirstRow();
  Cost relax(std::span<const Char32> word, std::size_t depth, Cost limit);
  void takePlainSteps(Char32 code, std::size_t depth, std::int32_t input, Cost limit);
  Cost suffixCost(std::int32_t input) const;

  const ReadingCosts &costs_;
  const Reach &reach_;
  const MultiSwaps &swaps_;
  bool countsEdits_;
  std::int32_t numEdits_;
  std::int32_t band_;  // How far the positions of the reading can be from those of the word.
  std::vector<Row> rows_;
  std::vector<Cost> spare_;  // Of a row that was dropped.
  std::vector<Cost> suffix_;
};

}  // namespace qoc
