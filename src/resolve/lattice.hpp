#pragma once
// One result as the texts that it stands for: for every position of the text its choices.

#include <qoc/resolver.h>

#include <cstdint>
#include <vector>

#include "resolve/check_digit.hpp"
#include "resolve/reading_costs.hpp"
#include "resolve/text.hpp"

namespace qoc {

/// Whether a position of a result shows something else than the reading does there.
inline bool isEdited(qoc_ocrDictionaryPositionStatus status) {
  return status > qoc_ocrDictionaryPositionStatus_secondarySwap;
}

/// One position of a text.
struct Slot {
  std::vector<Choice> choices;  ///< By rising cost.
  std::int32_t input = -1;      ///< The position of the reading, or -1.
  std::vector<Choice> tried;    ///< Of an open slot in a search that tries others: the choices as they were.
  bool isOpen =
      false;  ///< What stands there is not known; the choice is then QOC_RESOLVER_OPEN, until a search tries others.
};

/// A check of the lattice's entry as far as a search can carry it along.
struct CarriedCheck {
  CheckAutomaton automaton;
  std::vector<std::int32_t> positions;  ///< By place in the lattice's order: the automaton's position, or -1.
  std::uint64_t radix;                  ///< The weight of its state in the state of all checks.
};

/// The texts of one result.
struct Lattice {
  qoc_ocrDictionaryMode mode = 0;
  std::int32_t entry = 0, numEdits = 0;
  std::int32_t result = -1;  ///< Its index, where it is one of the set that was given.
  Cost base = 0;             ///< What all texts lose alike.
  std::vector<Slot> slots;
  std::vector<std::int32_t> extras;  ///< The positions of the reading that are left out and not paid for yet.

  std::vector<std::int32_t> order;  ///< The slots in the order in which a search decides them.
  std::vector<Cost> remaining;      ///< By place in the order: the least that the rest loses.
  std::vector<const qoc_checkDigitRule *> checks;
  std::vector<CarriedCheck> carried;
  std::uint64_t startState = 0;
  bool isHopeless = false;  ///< A check that no text of this length passes.

  /// Gives up the checks in the search; texts are then not held against them.
  void dropChecks();
  /// Makes it ready for a search: orders the slots for the checks and sums up what is left at every place.
  void prepare();
  Cost least() const { return base + remaining[0]; }
  /// The state behind one more choice. False where a check cannot take it.
  bool step(std::uint64_t &state, std::int32_t place, Char32 code) const;
  bool accepts(std::uint64_t state) const;

 private:
  void carryChecks();
};

/// Makes the lattice of a result of a fielding or an expression.
/// @param limit a lattice of which all texts cost more need not be made
/// @return whether it was made: the reading can be the result, and some text may cost so much at most
bool makeLattice(const qoc_ocrDictionaryResult &result, const ReadingCosts &costs, Cost limit, Lattice &lattice);

/// Whether a text of a fielding or an expression is one of a result's, of a reading of that size.
bool isShownBy(const qoc_ocrDictionaryResult &result, std::int32_t size, const Text &text);

/// Pays for the extra positions of a lattice. What one costs depends on the characters beside it, so the texts are
/// parted into lattices in which it costs the same; of very many, by what the first choices beside it say.
std::vector<Lattice> withExtrasPaid(Lattice lattice, const ReadingCosts &costs);

}  // namespace qoc
