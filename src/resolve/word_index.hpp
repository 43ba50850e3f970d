#pragma once
// The words of a dictionary, and those that a reading can be at the least cost.

#include <qoc/resolver.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "resolve/reading_costs.hpp"

namespace qoc {

/// How a reading becomes a word: for each character where it comes from.
struct WordTrace {
  std::vector<Choice> choices;       ///< One for each character of the word.
  std::vector<std::int32_t> inputs;  ///< The positions of the reading, or -1.
};

struct FoundWord {
  Cost cost;
  std::size_t word;
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

  static Reach of(const qoc_ocrDictionaryRunParams *params);
  bool allowsEdits() const { return allowsSubstitution || allowsMissing || allowsExtra; }
  /// Whether a table counts the edits; with more of them it would grow too large, and allows any number.
  bool countsEdits() const;
};

/// Words in alphabetical order, in one block of codes. Immutable once built.
class WordIndex {
 public:
  void add(std::span<const qoc_ocrDictionaryChar> word, std::int32_t lexicon);
  void finish();

  std::size_t size() const { return order_.size(); }
  std::span<const Char32> word(std::size_t k) const;
  std::int32_t lexicon(std::size_t k) const { return words_[order_[k]].lexicon; }
  bool contains(std::span<const Char32> word) const;

  /// Finds the k words that the reading can be at the least cost, best first.
  /// @param limit says, given the cost of the best word so far, which costs are too much (at first noWay, of no word)
  /// @param isAllowed asked of words that would come in
  /// @return 0 or the attention status
  template <class Limit, class IsAllowed>
  qsys_status findBest(const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps, std::size_t k,
                       Limit &&limit, IsAllowed &&isAllowed, std::vector<FoundWord> &found) const;

 private:
  struct Word {
    std::size_t begin, length;
    std::int32_t lexicon;
  };
  std::vector<Char32> codes_;
  std::vector<Word> words_;
  std::vector<std::uint32_t> order_;   // Indices of words_, alphabetically.
  std::vector<std::uint32_t> common_;  // By place in the order: characters in common with the word before.
  std::vector<std::uint32_t> fewer_;   // By place in the order: the next one that has fewer of them.
};

/// The table of an alignment of one word, grown character by character: for every prefix of the word, position of the
/// reading and number of edits the least cost.
class WordTable {
 public:
  WordTable(const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps);

  /// Whether a word of that length can be reached at all.
  bool canReach(std::size_t length) const;
  /// Fills the row of the word's character `depth` (from 0); the rows above hold its prefix.
  /// @param limit costs beyond it need not be known
  /// @return the least cost in the row; noWay where it is beyond the limit
  Cost extend(std::span<const Char32> word, std::size_t depth, Cost limit = noWay - 1);
  /// The cost of the word that ends at `depth` characters.
  Cost cost(std::span<const Char32> word, std::size_t depth) const;
  /// How the word comes about at that cost.
  WordTrace trace(std::span<const Char32> word) const;

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
  Cost &at(std::size_t depth, std::int32_t input, std::int32_t edits);
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
  std::vector<Cost> suffix_;
};

template <class Limit, class IsAllowed>
qsys_status WordIndex::findBest(const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps, std::size_t k,
                                Limit &&limit, IsAllowed &&isAllowed, std::vector<FoundWord> &found) const {
  found.clear();
  WordTable table(costs, reach, swaps);
  std::size_t depth = 0;    // Rows that hold the prefix of the word at hand.
  std::vector<Cost> least;  // By row: its least cost.
  std::size_t next = 0;
  for (std::uint64_t round = 0; next < order_.size(); ++round) {
    if (round % 128 == 0) {
      if (const qsys_status status = qsys_attention_check(); status < 0) return status;
    }
    const std::size_t i = next++;
    depth = std::min<std::size_t>(depth, common_[i]);
    const auto text = word(i);
    if (!table.canReach(text.size())) {
      continue;
    }
    const Cost most = std::min(limit(found.empty() ? noWay : found.front().cost),
                               found.size() < k ? noWay - 1 : found.back().cost - 1);
    least.resize(depth);
    bool isCut = false;
    while (depth < text.size() && !isCut) {
      least.push_back(table.extend(text, depth, most));
      ++depth;
      // A multi-character swap can pass over one row.
      const Cost above = depth > 1 && !swaps.isEmpty() ? least[depth - 2] : noWay;
      isCut = std::min(least[depth - 1], above) > most;
    }
    if (isCut) {  // All words that begin alike are passed over.
      while (next < order_.size() && common_[next] >= depth) next = fewer_[next];
      continue;
    }
    const Cost cost = table.cost(text, text.size());
    if (cost > most) {
      continue;
    }
    const auto isSame = [&](const FoundWord &other) {
      const auto known = word(other.word);
      return std::equal(known.begin(), known.end(), text.begin(), text.end());
    };
    if (std::any_of(found.begin(), found.end(), isSame)) {  // Another lexicon has it too.
      continue;
    }
    bool isIn = false;
    if (const qsys_status status = isAllowed(i, isIn); status < 0) return status;
    if (!isIn) {
      continue;
    }
    const auto at = std::find_if(found.begin(), found.end(), [&](const FoundWord &other) { return other.cost > cost; });
    found.insert(at, {cost, i});
    if (found.size() > k) found.pop_back();
  }
  while (!found.empty() && found.back().cost > limit(found.front().cost)) found.pop_back();
  return QSYS_STATUS_OK;
}

}  // namespace qoc
