#pragma once
// The words that a reading can be at the least cost.

#include "resolve/word_index.hpp"
#include "resolve/word_table.hpp"

namespace qoc {

struct FoundWord {
  Cost cost;
  std::size_t word;  ///< Its place in the order of the index.
};

/// What is asked of a search.
class WordChooser {
 public:
  /// Which costs are too much, given the cost of the best word so far (at first noWay, of no word).
  virtual Cost limit(Cost best) const = 0;
  /// Asked of words that would come in. @return 0, the attention status or a failure
  virtual qsys_status isAllowed(std::size_t word, bool &isIn) const = 0;

 protected:
  ~WordChooser() = default;
};

/// Finds the k words that the reading can be at the least cost, best first; what it shows is known, and its table made.
/// Of equally good ones the first in the order.
/// @return 0, the attention status or a failure of the chooser
qsys_status findBestWords(const WordIndex &words, const ReadingCosts &costs, const Reach &reach,
                          const MultiSwaps &swaps, std::size_t k, const WordChooser &chooser,
                          std::vector<FoundWord> &found);

/// The cost of one word; noWay where it is out of reach. Throws Interrupted.
Cost costOfWord(std::span<const Char32> word, const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps);

}  // namespace qoc
