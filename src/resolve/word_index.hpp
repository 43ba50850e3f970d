#pragma once
// The words of a dictionary as a trie.

#include <qoc/dictionary_char.h>

#include <cstdint>
#include <span>
#include <vector>

#include "platform/system/work_meter.hpp"

namespace qoc {

/// Which characters stand somewhere, up to mistaking some for others: every 32nd code has the same bit.
using LetterMask = std::uint32_t;
constexpr LetterMask maskOf(Char32 code) { return LetterMask{1} << (code & 31); }
inline constexpr LetterMask allLetters = ~LetterMask{0};

/// From which end words and readings are read.
enum class Direction { forward, backward };

/// A beginning that words have in common, or an end, as the direction is. The nodes that go on from it stand side by
/// side.
struct WordNode {
  Char32 code = QOC_CHAR_EMPTY;  ///< Its last character.
  LetterMask below = 0;          ///< The characters that words have behind it.
  std::uint32_t word = 0;        ///< The place in the order of a word that begins so.
  std::uint32_t firstChild = 0;  ///< The nodes that go on from it. Where it leads to one word only there are none, and
                                 ///< this is the place of that word's next character.
  std::uint32_t numChildren = 0;
  std::uint16_t shortest = 0, longest = 0;  ///< The characters that words have behind it, up to maxCounted.

  static constexpr std::size_t maxCounted = UINT16_MAX;
};

/// Words in alphabetical order, in one block of codes, and their tries from either end. Immutable once built.
class WordIndex {
 public:
  void add(std::span<const qoc_ocrDictionaryChar> word, std::int32_t lexicon);
  /// Sorts the words and builds their tries. Throws Interrupted.
  void finish();

  std::size_t size() const { return order_.size(); }
  std::span<const Char32> word(std::size_t k) const;
  std::int32_t lexicon(std::size_t k) const { return words_[order_[k]].lexicon; }
  /// The first place in the order that has the word, or size().
  std::size_t find(std::span<const Char32> word) const;
  bool contains(std::span<const Char32> word) const { return find(word) < size(); }
  /// A character of the only word behind a node, counted from the node.
  Char32 tail(const WordNode &node, std::size_t i, Direction direction) const {
    return codes_[direction == Direction::forward ? node.firstChild + i : node.firstChild - i];
  }

  /// The node of all words; with no word there is none. The words of a node that stands for a whole word are found
  /// under the first of them.
  const WordNode &root(Direction direction) const { return nodes(direction).front(); }
  std::span<const WordNode> children(const WordNode &node, Direction direction) const {
    return std::span(nodes(direction)).subspan(node.firstChild, node.numChildren);
  }

 private:
  struct Word {
    std::size_t begin, length;
    std::int32_t lexicon;
  };
  using Nodes = std::vector<WordNode>;
  const Nodes &nodes(Direction direction) const { return direction == Direction::forward ? forward_ : backward_; }
  /// A word's character at a depth of the trie.
  Char32 code(std::size_t k, std::size_t depth, Direction direction) const {
    const auto codes = word(k);
    return codes[direction == Direction::forward ? depth : codes.size() - 1 - depth];
  }
  template <class CodesOf>
  std::vector<std::uint32_t> sorted(Direction direction, CodesOf codesOf, WorkMeter &meter) const;
  Nodes makeNodes(std::span<const std::uint32_t> order, Direction direction, WorkMeter &meter) const;

  std::vector<Char32> codes_;
  std::vector<Word> words_;
  std::vector<std::uint32_t> order_;  // Indices of words_, alphabetically.
  Nodes forward_, backward_;          // Every node in front of those that go on from it.
};

}  // namespace qoc
