#pragma once
// What a lexicon knows of its words beside the words: the index that a search for the words within k edits of a reading
// goes through.
//
// The search asks for the words with an alignment of at most k edits: a character substituted, missing or extra, a
// match free. What the run parameters forbid is not looked at, and words of few edits that they forbid are found too;
// whoever asks aligns what is found exactly. No word that an alignment accepts is left out, since every rule of the
// alignments only adds to the edits.
//
// **Words of few edits, in tries.** Cut the reading in two. An alignment of k edits makes some of them in front of the
// cut and the rest behind it: for any a + b = k - 1 it makes at most a in front of the cut, or at most b behind it,
// since more of both would be a + 1 + b + 1 = k + 1. So a walk of the trie of the words that allows a edits up to the
// cut and k in all, and one of the trie of the reversed words with b edits up to the cut from the other side, find
// every word between them (the argument of partition; Navarro and Baeza-Yates, 1999). With a = b = 0 or 1 only few
// beginnings are gone through, where a walk that allows all k edits at once goes through most of the trie's upper part.
// Forward and backward dictionaries for this use are from Mihov and Schulz (2004).
//
// A letter that the automaton reads between the positions in front of the cut and behind it counts as behind it, in
// both walks: the ceiling ends with the last position in front of the cut. So both walks may allow one alignment, but
// none is lost.
//
// **Words of many edits, by a scan.** Where pieces of the reading are so short, or the edits so many, that the walks
// prune little, the words of the admissible lengths are gone through. A word's signature has a bit for each of its
// letters; a letter that matches no position costs an edit of its own, so a word with more such bits than edits allowed
// is refused at the cost of a few instructions. The others are measured by the bit-parallel distance (Myers, 1999;
// Hyyrö, 2003).

#include <qoc/lexicon.h>

#include <cstdint>
#include <vector>

#include "kinds/word_trie.hpp"

namespace qoc {

/// A reading as the index looks for it, made once for the searches with all numbers of edits.
struct IndexQuery {
  std::int32_t numPositions = 0;
  std::uint64_t coveredBits = 0;
  bool hasRows = false;  // Readings of at most maxPositions.
  LetterMatches rows, reversedRows;

  static constexpr std::int32_t maxPositions = 63;
};

class LexiconIndex {
 public:
  LexiconIndex(std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter);

  /// Makes the query of a window of a reading.
  void prepare(const ReadingMatches &matches, Window window, IndexQuery &query) const;

  /// Whether the word's letters leave it an alignment of at most maxEdits edits with the reading or with a part of it.
  bool mayMatch(std::int32_t word, const IndexQuery &query, std::int32_t maxEdits) const noexcept {
    return std::popcount(signatures_[static_cast<std::size_t>(word)] & ~query.coveredBits) <= maxEdits;
  }

  /// Whether a search goes through tries, all words at once; a scan can be done in parts.
  bool walks(const IndexQuery &query, std::int32_t maxEdits) const noexcept;

  /// Fills `found` with words of [first, end) in ascending order, among them every one within maxEdits edits of the
  /// reading. Where tries are walked, [first, end) must hold every word whose length differs by at most maxEdits.
  /// Throws Interrupted where a long walk is interrupted.
  void find(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
            std::vector<std::int32_t> &found) const;

  std::size_t numWords() const noexcept { return signatures_.size(); }
  /// The bytes that the index takes.
  std::size_t numBytes() const noexcept;

 private:
  template <int Edits>
  void walk(const IndexQuery &query, std::vector<std::int32_t> &found) const;
  void scan(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
            std::vector<std::int32_t> &found) const;

  LetterTable table_;
  WordLetters letters_;
  std::vector<std::uint64_t> signatures_;
  std::vector<std::pair<std::int32_t, std::int32_t>>
      equals_;  // Words with the letters of one in the tries, by that one.
  WordTrie forward_, backward_;
};

/// The index of a lexicon's words, made when it is asked for first; null where there is none. Any number of threads may
/// ask. Making the index of a long list asks for attention: throws Interrupted, and the next one who asks makes it.
const LexiconIndex *indexOf(const qoc_ocrDictionaryLexicon &lexicon);
/// Gives the lexicon an index of its own, for its words as they are now.
void renewIndex(qoc_ocrDictionaryLexicon &lexicon);
void shareIndex(qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryLexicon &source);
void dropIndex(qoc_ocrDictionaryLexicon &lexicon) noexcept;

}  // namespace qoc
