#pragma once
// What a lexicon knows of its words beside the words: made when they are set, never changed, shared between copies.

#include <qoc/lexicon.h>

#include <cstdint>
#include <vector>

#include "text/reading_matches.hpp"

namespace qoc {

/// A cheap test of words against a reading.
///
/// Every word has a signature of 64 bits: one for each code in it, codes that share a bit being counted as one. A reading covers a
/// bit when one of the lexicon's codes of that bit matches some position. A character whose bit is not covered matches nowhere, so it
/// costs an edit of its own, substituted or missing, in every alignment: a word with more uncovered bits than edits allowed has none.
class LexiconIndex {
 public:
  explicit LexiconIndex(std::span<const qoc_ocrDictionaryString> words);

  std::uint64_t signature(std::size_t word) const noexcept { return signatures_[word]; }

  /// The bits that a reading covers.
  qsys_status cover(ReadingMatches &matches, std::uint64_t &covered) const;

 private:
  std::vector<std::uint64_t> signatures_;
  std::vector<Char32> codes_;  // The different codes of the words, ascending.
};

/// The index of a lexicon's words; null for one without words.
const LexiconIndex *indexOf(const qoc_ocrDictionaryLexicon &lexicon) noexcept;
/// Gives the lexicon the index of its words as they are now.
qsys_status rebuildIndex(qoc_ocrDictionaryLexicon &lexicon);
void shareIndex(qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryLexicon &source) noexcept;
void dropIndex(qoc_ocrDictionaryLexicon &lexicon) noexcept;

}  // namespace qoc
