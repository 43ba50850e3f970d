#pragma once
// A trie over the words of a list, read from their beginnings or from their ends, and its walk with an edit automaton.
//
// All nodes stand in one array of bytes, every node in front of its descendants:
//
//     number n of letters in front of the node's fork, the n letters, and then
//       at a fork:  number of branches less 1, the branches' letters ascending, for each branch 4 bytes;
//       at a leaf:  the 4 bytes of its word.
//
// The 4 bytes of a branch are the place of its node, or the word itself where the branch is the end of a word (letter
// 0). A leaf's n has bit 7 set. A walk thus reads the letters of all branches from one place and goes only where
// alignments are left, and what lies below a fork lies together.

#include <cstdint>
#include <cstring>
#include <vector>

#include "kinds/edit_automaton.hpp"
#include "kinds/word_letters.hpp"

namespace qoc {

class WordTrie {
 public:
  enum class Direction { forward, backward };

  /// Longer words are left out; no reading of a walk can reach them.
  static constexpr std::int32_t maxLength = 72;

  /// An empty trie.
  WordTrie() = default;
  /// Of words with the same letters the first is in the trie; the others are added to `equals`, where it is given, as
  /// pairs of the word in the trie and the other.
  WordTrie(const WordLetters &words, Direction direction, WorkMeter &meter,
           std::vector<std::pair<std::int32_t, std::int32_t>> *equals = nullptr);

  /// Calls found(word) for every word that the automaton accepts; `rows` are the matches of the letters, in the trie's
  /// direction. `numVisits` is the number of nodes that may be visited, less those that were when it ends; below 0 the
  /// walk was given up. Throws Interrupted when the meter's check says so. The trie is not empty.
  template <class Automaton, class Found>
  void walk(const Automaton &automaton, const LetterMatches &rows, WorkMeter &meter, std::int64_t &numVisits,
            Found found) const {
    Walk<Found> walk = {nodes_.data(), automaton.withoutEdits(), rows, meter, found, numVisits};
    walk.visit(automaton, 0, automaton.start());
    numVisits = walk.numVisits;
  }

  bool isEmpty() const noexcept { return nodes_.empty(); }
  std::size_t numBytes() const noexcept { return nodes_.capacity(); }

 private:
  static constexpr std::uint8_t leafFlag = 0x80;

  static std::uint32_t read(const std::uint8_t *place) noexcept {
    std::uint32_t value = 0;
    std::memcpy(&value, place, sizeof value);
    return value;
  }

  template <class Found>
  struct Walk {
    /// Visits a node and those below it, with the automaton or, from where no edit is left, as in most nodes, with the
    /// one without edits. Words are short, so the depth is small.
    template <class Steps>
    void visit(const Steps &steps, std::size_t node, typename Steps::State state) {
      using State = typename Steps::State;
      if constexpr (Steps::maxEdits > 0) {
        if (!steps.hasEditsLeft(state)) {
          visit(withoutEdits, node, {state[Steps::maxEdits]});
          return;
        }
      }
      if (--numVisits < 0) {
        return;
      }
      const std::uint8_t *place = nodes + node;
      const std::uint8_t head = *place++;
      for (std::uint8_t left = head & ~leafFlag; left > 0; --left) {
        const State from = state;
        if (!steps.step(from, rows[*place++], state)) {
          return;
        }
      }
      if ((head & leafFlag) != 0) {
        accept(steps.accepts(state), place);
        return;
      }
      const std::size_t numBranches = std::size_t{*place++} + 1;
      meter.spend(8 + 4 * numBranches);
      const std::uint8_t *targets = place + numBranches;
      std::size_t branch = 0;
      if (*place == 0) {
        accept(steps.accepts(state), targets);
        branch = 1;
      }
      for (; branch < numBranches; ++branch) {
        State next;
        if (steps.step(state, rows[place[branch]], next)) {
          visit(steps, read(targets + 4 * branch), next);
        }
      }
    }

    void accept(bool isAccepted, const std::uint8_t *place) {
      if (isAccepted) {
        found(static_cast<std::int32_t>(read(place)));
      }
    }

    const std::uint8_t *nodes;
    EditAutomaton<0> withoutEdits;
    const LetterMatches &rows;
    WorkMeter &meter;
    Found &found;
    std::int64_t numVisits;
  };

  class Builder;

  std::vector<std::uint8_t> nodes_;
};

}  // namespace qoc
