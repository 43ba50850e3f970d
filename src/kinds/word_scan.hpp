#pragma once
// The words of a list as letters, for scans: all words of the admissible lengths are gone through.
//
// Words of one length stand together, in blocks of wordsPerBlock words (see BlockScan); what is left of a length behind
// its last full block stands word by word.
//
// A word's signature has a bit for each of its letters; a letter that matches no position costs an edit of its own, so
// a word with more such bits than edits allowed is refused at the cost of a few instructions. The others are measured
// by the bit-parallel distance (Myers, 1999; Hyyrö, 2003). Of short readings the distances of a block are measured at
// once, which costs less than to look at the signatures.

#include <bit>
#include <cstdint>
#include <vector>

#include "kinds/block_scan.hpp"
#include "kinds/edit_automaton.hpp"
#include "kinds/word_letters.hpp"
#include "platform/system/work_meter.hpp"

namespace qoc {

/// A reading as an index looks for it, made once for the searches with all numbers of edits.
struct IndexQuery {
  std::int32_t numPositions = 0;
  std::uint64_t coveredBits = 0;
  bool hasRows = false;  // Readings of at most maxPositions.
  std::size_t maxLetter = 0;
  LetterMatches rows, reversedRows;
  /// The edits that are of interest; words that take others may be found, too.
  bool allowsAll = true;
  SomeEdits allowed, reversedAllowed;

  static constexpr std::int32_t maxPositions = 63;
};

class WordScan {
 public:
  WordScan(const WordLetters &words, WorkMeter &meter);

  /// Whether the word's letters leave it an alignment of at most maxEdits edits with the reading or with a part of it.
  bool mayMatch(std::int32_t word, const IndexQuery &query, std::int32_t maxEdits) const noexcept {
    return std::popcount(signatures_[static_cast<std::size_t>(word)] & ~query.coveredBits) <= maxEdits;
  }

  /// Adds words of [first, end) to `found`, in ascending order: those within maxEdits edits of the reading or, where it
  /// has no rows, those that may be.
  void find(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
            std::vector<std::int32_t> &found) const;

  /// Whether the words of a scan for the query are measured by the block.
  bool goesByBlocks(const IndexQuery &query) const noexcept;
  /// The letters that words of lengths up to the given one have in all.
  std::size_t numLettersUpTo(std::int32_t length) const noexcept;

  std::size_t numWords() const noexcept { return signatures_.size(); }
  std::size_t numBytes() const noexcept {
    return letters_.capacity() + groups_.capacity() * sizeof(Group) + signatures_.capacity() * sizeof(std::uint64_t);
  }

 private:
  struct Group {
    std::int32_t length, first, end;
    std::size_t place;  // Of its first letter.
    std::int32_t endOfBlocks() const noexcept { return first + (end - first) / wordsPerBlock * wordsPerBlock; }
  };

  void findByBlocks(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
                    std::vector<std::int32_t> &found) const;
  bool isWithin(const Group &group, std::int32_t word, const IndexQuery &query, std::int32_t maxEdits) const noexcept;

  std::vector<Letter> letters_;
  std::vector<Group> groups_;
  std::vector<std::uint64_t> signatures_;
  bool hasBlocks_ = false;  // And this machine can scan them.
};

}  // namespace qoc
