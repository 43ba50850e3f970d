#pragma once
// The variants that multi-character swaps make of a reading, as one lattice: its nodes are the places between the
// reading's positions, and each choice at a position leads on by one symbol or two, a position kept or characters put
// in. It is worked out once for all entries that the variants are matched with; how words go through it is in
// variant_lattice.hpp, how expressions and lines do in near_variants.hpp.

#include <qoc/swap_char_set.h>

#include <cstdint>
#include <span>
#include <vector>

#include "frame/frame.hpp"
#include "kinds/lexicon_roads.hpp"
#include "platform/system/attention.hpp"
#include "swap/string_expand_choices.hpp"
#include "text/views.hpp"

namespace qoc {

class ReadingVariants {
 public:
  /// One choice of a variant, and the position where it is made.
  struct Step {
    std::int32_t position;
    std::size_t choice;
  };

  /// The reading, which has a position at least, and the set stay as they are while the object lives.
  // cppcheck-suppress uninitMemberVar ; symbols_ is constructed by expand, and hasSymbols_ says whether it is
  ReadingVariants(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet &set)
      : reading_(reading), set_(set) {}
  ~ReadingVariants();
  ReadingVariants(const ReadingVariants &) = delete;
  ReadingVariants &operator=(const ReadingVariants &) = delete;

  /// To be called before anything else, and for every entry: asks for attention as often as making all variants does.
  qsys_status expand();

  std::int32_t numPositions() const noexcept { return sizeOf(reading_); }
  std::size_t numNodes() const noexcept { return numNodes_; }
  std::span<const ExpansionChoice> choicesAt(std::int32_t position) const { return choices_.at(position); }
  static std::int32_t numSymbolsOf(const ExpansionChoice &choice) noexcept {
    return choice.isKept() ? 1 : choice.numInserted;
  }

  /// All symbols, the reading's positions first, as if they were the positions of one reading.
  const qoc_ocrDictionaryStringMulti &symbols() const noexcept { return symbols_; }
  /// The number of a choice's first or second symbol, and, where there are two, of the node between them; those before
  /// the positions come first.
  std::size_t symbolOf(std::int32_t position, std::size_t choice, std::int32_t i) const noexcept {
    return numbersAt(position, choice).firstSymbol + static_cast<std::size_t>(i);
  }
  std::size_t nodeWithin(std::int32_t position, std::size_t choice) const noexcept {
    return numbersAt(position, choice).nodeWithin;
  }

  /// The lengths that variants have from a position on: all from the least to the most, because any choice can be
  /// undone on its own, and changes the length by one at most.
  std::int32_t leastLength(std::int32_t position) const noexcept {
    return lengths_[static_cast<std::size_t>(position)].least;
  }
  std::int32_t mostLength(std::int32_t position) const noexcept {
    return lengths_[static_cast<std::size_t>(position)].most;
  }

  /// Asks for attention as often as matching all variants does that begin in the same way, up to a position, where they
  /// have a length: for each, so often as pollsOf(length) says of its length.
  template <class PollsOf>
  qsys_status passOver(std::int32_t position, std::int32_t length, PollsOf pollsOf) const {
    if (counts_.empty()) {
      return qsys_attention_check();  // One more look of a ready handler tells nobody anything.
    }
    const auto counts = std::span(counts_).subspan(firstCount(position), numLengths());
    std::int64_t times = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (counts[i] > 0) {
        const std::int64_t each = pollsOf(length + static_cast<std::int32_t>(i));
        // Whoever counts has been asked by expand() once for each of so many variants, and nobody lives to see it.
        if (each > 0 && QOC_NEVER(counts[i] > static_cast<std::uint64_t>((INT64_MAX - times) / each))) {
          return checkAttention(INT64_MAX);
        }
        times += each * static_cast<std::int64_t>(counts[i]);
      }
    }
    return checkAttention(times);
  }

  /// Makes the variant of some steps.
  qsys_status make(std::span<const Step> steps, qoc_ocrDictionaryStringMulti &variant,
                   qstd_vector32s &inputIndices) const;

 private:
  struct Lengths {
    std::int32_t least, most;
  };
  struct ChoiceNumbers {
    std::size_t firstSymbol, nodeWithin;
  };

  const ChoiceNumbers &numbersAt(std::int32_t position, std::size_t choice) const noexcept {
    return numbers_[firstChoices_[static_cast<std::size_t>(position)] + choice];
  }
  std::size_t numLengths() const noexcept { return 2 * static_cast<std::size_t>(numPositions()) + 1; }
  /// Where the counts of a position begin: those of the last one come first, as they are counted.
  std::size_t firstCount(std::int32_t position) const noexcept {
    return static_cast<std::size_t>(numPositions() - position) * numLengths();
  }
  qsys_status makeSymbols();
  void findLengths();
  qsys_status countVariants();

  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet &set_;
  ExpansionChoices choices_;
  bool isExpanded_ = false, hasSymbols_ = false;
  qoc_ocrDictionaryStringMulti symbols_;
  std::vector<std::size_t> firstChoices_;  // The number of the first choice of each position, among all.
  std::vector<ChoiceNumbers> numbers_;     // Of all choices.
  std::size_t numNodes_ = 0;
  std::vector<Lengths> lengths_;
  std::vector<std::uint64_t> counts_;  // By position, from the last on, and length, where attention is counted.
  std::uint64_t numVariants_ = 1;
};

/// Whether the variants of a reading are gone through as a lattice. Not where a handler is to be asked for each variant
/// of a very long reading, which has too many numbers of them.
inline bool usesLattice(const qoc_ocrDictionaryStringMulti &reading) noexcept {
  constexpr std::int32_t mostCountedPositions = 1000;
  return lexiconRoads().usesLattice && sizeOf(reading) > 0 &&
         (!isAttentionCounted() || sizeOf(reading) <= mostCountedPositions);
}

}  // namespace qoc
