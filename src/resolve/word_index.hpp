#pragma once
// The words of a dictionary, and the indexes of its lists.

#include <qoc/lexicon.h>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "kinds/lexicon_index.hpp"

namespace qoc {

/// Words in alphabetical order, in one block of codes. Immutable once built.
class WordIndex {
 public:
  /// Makes room for so many words, of so many characters in all: words take long to move.
  void reserve(std::size_t numWords, std::size_t numCodes);
  /// Adds the words of the next lexicon. Throws Interrupted.
  void add(const qoc_ocrDictionaryLexicon &lexicon);
  /// Sorts the words. Throws Interrupted.
  void finish();

  std::size_t size() const { return order_.size(); }
  /// Words by their place in the order; those that several lexicons have stand side by side.
  std::span<const Char32> word(std::size_t k) const { return codes(order_[k]); }
  std::int32_t lexicon(std::size_t k) const { return words_[order_[k]].lexicon; }
  /// How many characters a word has in common with the one before it, from the beginning.
  std::size_t numShared(std::size_t k) const { return numShared_[k]; }
  /// Whether a word, not the first, is the same as the one before it: a word that begins with it stands behind it.
  bool isRepeated(std::size_t k) const { return numShared_[k] == word(k).size(); }
  /// The first place in the order that has the word, or size().
  std::size_t find(std::span<const Char32> word) const;
  bool contains(std::span<const Char32> word) const { return find(word) < size(); }

  /// The words of a lexicon, in its own order, which is by length.
  struct List {
    std::size_t first, end;                     ///< Their numbers.
    std::shared_ptr<const LexiconIndex> index;  ///< Null where the lexicon has none.
  };
  std::span<const List> lists() const { return lists_; }
  /// How many words of a list have fewer characters.
  std::int32_t numShorter(const List &list, std::int64_t length) const;
  /// Whether every list can be searched by its index.
  bool hasIndexes() const { return hasIndexes_; }
  /// A word by its number.
  std::span<const Char32> codes(std::size_t number) const {
    return std::span(codes_).subspan(words_[number].begin, words_[number].length);
  }
  /// The place in the order of the word with a number.
  std::size_t placeOf(std::size_t number) const { return places_[number]; }

 private:
  struct Word {
    std::uint32_t begin, length;
    std::int32_t lexicon;
  };

  std::vector<Char32> codes_;
  std::vector<Word> words_;            // By number: list behind list.
  std::vector<std::uint32_t> order_;   // Numbers, alphabetically; equal ones by number.
  std::vector<std::uint32_t> places_;  // By number: the place in the order.
  std::vector<std::uint32_t> numShared_;
  std::vector<List> lists_;
  bool hasIndexes_ = true;
};

}  // namespace qoc
