#pragma once
// The variants that multi-character swaps make of a reading, as one lattice, and the words that some of them are near.
//
// A reading with twenty positions that swaps apply to has a million variants; few words are near any of them. The
// variants are the ways through a lattice: its nodes are the places between the reading's positions, and each choice at
// a position leads on by one symbol or two, a position kept or characters put in. So the least number of edits between
// a word and all variants at once is one table, node by letter, filled from the end:
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

#include <qoc/dictionary_string.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/system/present.hpp"
#include "swap/string_expand_choices.hpp"
#include "text/reading_matches.hpp"

namespace qoc {

class VariantLattice {
 public:
  /// One choice of a variant, and the position where it is made.
  struct Step {
    std::int32_t position;
    std::size_t choice;
  };

  ~VariantLattice();
  // cppcheck-suppress uninitMemberVar ; symbols_ is constructed by build, and hasSymbols_ says whether it is
  VariantLattice() = default;
  VariantLattice(const VariantLattice &) = delete;
  VariantLattice &operator=(const VariantLattice &) = delete;

  /// Takes the choices at each of the reading's positions, of which there is one at least; the set may be null.
  qsys_status build(const qoc_ocrDictionaryStringMulti &reading, const ExpansionChoices &choices,
                    const qoc_swapCharSet *set, std::int32_t maxEdits);

  /// What matches any of the lattice's symbols, as if they were the positions of one reading.
  const ReadingMatches &symbolMatches() const noexcept { return *matches_; }
  /// The lengths that variants have.
  std::int32_t leastLength() const noexcept { return lengths_.front().least; }
  std::int32_t mostLength() const noexcept { return lengths_.front().most; }

  /// Keeps a word that some variant is near. @return false when there is no more room for tables
  bool addWord(std::int32_t word, Characters characters);
  /// Walks through all variants, with no words, from now on.
  void visitAll() noexcept { visitsAll_ = true; }

  /// Numbers of variants by length, from every position on; needed only where walk is to tell what it passes over.
  void countVariants();
  /// The variants from a position on, by length; a number that is too big is the largest one.
  std::span<const std::uint64_t> numVariantsFrom(std::int32_t position) const noexcept {
    const std::size_t size = numLengths();
    return std::span(counts_).subspan(static_cast<std::size_t>(position) * size, size);
  }

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
      } else if (frame.nextChoice == choices_->at(frame.position).size()) {
        leave();
      } else if (std::int32_t position = 0, length = 0; !enter(position, length)) {
        QOC_TRY(pass(position, length));
      }
    }
    return QSYS_STATUS_OK;
  }

 private:
  static constexpr std::size_t mostTableBytes = std::size_t{1} << 26;

  struct Lengths {
    std::int32_t least, most;
  };
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

  std::size_t numLengths() const noexcept { return 2 * static_cast<std::size_t>(numPositions_) + 1; }
  /// Numbers of a choice's symbols and of the node between two.
  std::size_t symbolOf(std::int32_t position, std::size_t choice, std::int32_t i) const noexcept;
  std::size_t nodeWithin(std::int32_t position, std::size_t choice) const noexcept;
  std::size_t choiceNumber(std::int32_t position, std::size_t choice) const noexcept {
    return firstChoices_[static_cast<std::size_t>(position)] + choice;
  }
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

  const ExpansionChoices *choices_ = nullptr;
  std::int32_t numPositions_ = 0;
  std::uint8_t maxEdits_ = 0;
  std::int32_t walkedEdits_ = 0;  // Of the walk.
  bool visitsAll_ = false;
  std::vector<std::size_t> firstChoices_;  // The number of the first choice of each position, among all.
  std::vector<std::size_t> inserted_;      // By choice: its first inserted symbol.
  std::vector<std::size_t> within_;        // By choice: its node within.
  std::size_t numNodes_ = 0;
  std::vector<Lengths> lengths_;
  std::vector<std::uint64_t> counts_;

  bool hasSymbols_ = false;
  qoc_ocrDictionaryStringMulti symbols_;
  std::optional<ReadingMatches> matches_;

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
