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
// prune little, the words of the admissible lengths are gone through (see WordScan).

#include <qoc/lexicon.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "kinds/word_scan.hpp"
#include "kinds/word_trie.hpp"

namespace qoc {

class LexiconIndex {
 public:
  LexiconIndex(std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter);

  /// Makes the query of a window of a reading.
  void prepare(const ReadingMatches &matches, Window window, IndexQuery &query) const;
  /// Makes the query of a reading of any length that is not at hand: forEachMatch(add) calls add(position, code) for
  /// whatever a position matches. Which edits are of interest stands in the query already. The query is for searches
  /// with edits, or for those without.
  template <class ForEachMatch>
  void prepare(std::int32_t numPositions, bool hasEdits, ForEachMatch forEachMatch, IndexQuery &query) const {
    begin(numPositions, query);
    std::fill_n(query.rows.begin(), query.maxLetter + 1, 0);
    std::uint64_t anything = 0;  // The positions that match everything.
    forEachMatch([&](std::int32_t position, Char32 code) {
      const std::uint64_t bit = std::uint64_t{1} << (position % 64);
      (code == QOC_CHAR_ANY ? anything : query.rows[table_.letterOf(code)]) |= bit;
    });
    for (std::size_t letter = 0; letter <= query.maxLetter; ++letter) query.rows[letter] |= anything;
    query.rows[table_.letterOf(QOC_CHAR_ANY)] = ~std::uint64_t{0};
    query.rows[0] = 0;  // Of what no word has.
    finishRows(hasEdits, query);
  }

  /// Whether the word's letters leave it an alignment of at most maxEdits edits with the reading or with a part of it.
  bool mayMatch(std::int32_t word, const IndexQuery &query, std::int32_t maxEdits) const noexcept {
    return scan_.mayMatch(word, query, maxEdits);
  }

  /// Whether the list is so short that findInShort finds what there is at less cost than a search: a dictionary may
  /// have very many short lists.
  bool isShort() const noexcept { return !codeSignatures_.empty(); }
  /// Adds words of [first, end) of a short list to `found`, in ascending order: every one whose codes leave it an
  /// alignment of at most maxEdits edits with the reading or with a part of it.
  void findInShort(const ReadingMatches &matches, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
                   std::vector<std::int32_t> &found) const;

  /// Whether a search goes through tries, all words at once; a scan can be done in parts.
  bool walks(const IndexQuery &query, std::int32_t maxEdits) const noexcept;

  /// Fills `found` with words in ascending order, among them every one of [first, end) within maxEdits edits, of those
  /// that the query allows, of the reading. Scans find no words but those; tries may find others of other lengths.
  /// Throws Interrupted where a long walk is interrupted.
  void find(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
            std::vector<std::int32_t> &found) const;

  std::size_t numWords() const noexcept { return scan_.numWords(); }
  /// The bytes that the index takes.
  std::size_t numBytes() const noexcept;

 private:
  std::int64_t mostVisits(const IndexQuery &query, std::int32_t maxEdits) const noexcept;
  /// Adds what walks of the tries find. @return whether they were gone through with
  bool walkWithin(const IndexQuery &query, std::int32_t maxEdits, std::vector<std::int32_t> &found) const;
  template <int Edits>
  bool walk(const IndexQuery &query, std::vector<std::int32_t> &found) const;
  template <int Edits, class Allowed>
  bool walk(const IndexQuery &query, const Allowed &allowed, const Allowed &reversedAllowed,
            std::vector<std::int32_t> &found) const;
  void begin(std::int32_t numPositions, IndexQuery &query) const;
  void finishRows(bool hasEdits, IndexQuery &query) const;

  LexiconIndex(LetterTable &&table, std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter);
  LexiconIndex(LetterTable &&table, const WordLetters &letters, WorkMeter &meter);

  static constexpr std::size_t shortList = 64;

  std::vector<std::uint64_t> codeSignatures_;  // Of a short list: by word, the bits of its codes.
  LetterTable table_;
  WordScan scan_;
  std::vector<std::pair<std::int32_t, std::int32_t>>
      equals_;  // Words with the letters of one in the tries, by that one.
  WordTrie forward_, backward_;
};

/// The index of a lexicon's words, made when it is asked for first; null where there is none. Any number of threads may
/// ask. Making the index of a long list asks for attention: throws Interrupted, and the next one who asks makes it.
const LexiconIndex *indexOf(const qoc_ocrDictionaryLexicon &lexicon);
/// The same index for somebody who keeps it while the lexicon may change or go.
std::shared_ptr<const LexiconIndex> holdIndex(const qoc_ocrDictionaryLexicon &lexicon);
/// Gives the lexicon an index of its own, for its words as they are now.
void renewIndex(qoc_ocrDictionaryLexicon &lexicon);
void shareIndex(qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryLexicon &source);
void dropIndex(qoc_ocrDictionaryLexicon &lexicon) noexcept;

}  // namespace qoc
