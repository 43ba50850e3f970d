#pragma once
// The words that some variants are near of those that multi-character swaps make of a reading.
//
// A reading with twenty positions that swaps apply to has a million variants; few words are near any of them. The
// variants are the ways through a lattice (see ReadingVariants). So the least number of edits between a word and all
// variants at once is one table, node by letter, filled from the end:
//
//     left(node, i) = the least edits that turn some way from the node into the word's letters from i on
//
// A word with left(first node, 0) above the edits allowed is near no variant. For the others the ways are walked in the
// order of the expansion, each word carrying the row of its edits with the symbols so far. A beginning is gone on with
// only while for some word, for some i, the row at i and left(node, i) together stay within the edits: then, and only
// then, some variant with this beginning is near the word. So the walk visits nothing but beginnings of variants that
// are asked for.
//
// Edits are counted as the index counts them (see LexiconIndex): at least as many words and variants are found as any
// alignment accepts.

#include <cstdint>
#include <span>
#include <vector>

#include "kinds/reading_variants.hpp"
#include "text/reading_matches.hpp"

namespace qoc {

class VariantLattice {
 public:
  using Step = ReadingVariants::Step;

  /// The variants, which are expanded, stay as they are while the object lives; the set may be null.
  VariantLattice(const ReadingVariants &variants, const qoc_swapCharSet *set, std::int32_t maxEdits);

  /// What matches any of the lattice's symbols, as if they were the positions of one reading.
  const ReadingMatches &symbolMatches() const noexcept { return matches_; }

  /// Keeps a word that some variant is near. @return false when there is no more room for tables
  bool addWord(std::int32_t word, Characters characters);
  /// Walks through all variants, with no words, from now on.
  void visitAll() noexcept { visitsAll_ = true; }

  /// Whether a walk goes through all variants.
  bool visitsAll() const noexcept { return visitsAll_; }

  /// Goes through all variants in order. visit(steps, isFirst, words) is called for each that is within so many edits,
  /// at most those that the lattice was built for, of one of the words kept, with all the words that it is near,
  /// ascending as they were added; pass(position, length) for the variants that have a beginning of that length, up to
  /// that position, in common and are not visited.
  template <class Visit, class Pass>
  qsys_status walk(std::int32_t edits, Visit visit, Pass pass) {
    if (!begin(edits)) {
      return pass(0, 0);
    }
    while (!frames_.empty()) {
      if (const Frame &frame = frames_.back(); frame.position == numPositions_) {
        collect(frame);
        QOC_TRY(visit(std::span<const Step>(steps_), frame.isFirst, std::span<const std::int32_t>(near_)));
        leave();
      } else if (frame.nextChoice == variants_.choicesAt(frame.position).size()) {
        leave();
      } else if (std::int32_t position = 0, length = 0; !enter(position, length)) {
        QOC_TRY(pass(position, length));
      }
    }
    return QSYS_STATUS_OK;
  }

 private:
  static constexpr std::size_t mostTableBytes = std::size_t{1} << 26;

  struct Word {
    std::int32_t index, size;
    std::size_t firstRow;   // In rows_.
    std::size_t firstLeft;  // In left_: a row of size + 1 for each node.
  };
  /// A beginning that is gone on with: the words it is near, each with its row.
  struct Active {
    std::size_t word, row;
  };
  struct Frame {
    std::int32_t position, length;
    std::size_t nextChoice;
    bool isFirst;
    std::size_t firstActive, numActive, firstCell;
  };

  bool isMatch(const Word &word, std::int32_t i, std::size_t symbol) const noexcept {
    return ReadingMatches::test(rows_[word.firstRow + static_cast<std::size_t>(i)], static_cast<std::int32_t>(symbol));
  }
  void fillLeft(const Word &word, std::size_t node, std::size_t target, std::size_t symbol, bool isFresh);
  void closeLeft(const Word &word, std::size_t node);
  bool begin(std::int32_t edits);
  void leave();
  bool enter(std::int32_t &position, std::int32_t &length);
  void step(const Word &word, const std::uint8_t *from, std::size_t symbol, std::uint8_t *to) const;
  void collect(const Frame &frame);

  const ReadingVariants &variants_;
  std::int32_t numPositions_;
  std::uint8_t maxEdits_;
  std::int32_t walkedEdits_ = 0;  // Of the walk.
  bool visitsAll_ = false;
  ReadingMatches matches_;

  std::vector<Word> words_;
  std::vector<const std::uint64_t *> rows_;
  std::vector<std::uint8_t> left_;

  std::vector<Frame> frames_;
  std::vector<Step> steps_;
  std::vector<Active> active_;
  std::vector<std::uint8_t> cells_;
  std::vector<std::int32_t> near_;
};

}  // namespace qoc
