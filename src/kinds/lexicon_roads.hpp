#pragma once
// The ways that the match of a lexicon can take. All lead to the same results; what they are for is said where they are
// taken.

#include <cstdint>

namespace qoc {

struct LexiconRoads {
  /// Words that the index refuses are not aligned. Without it every word of an admissible length is.
  bool usesIndex = true;
  /// Words that cannot give the best result are not aligned where only the best is asked for.
  bool usesBound = true;
  /// Results are made when it is known which are left. Without it every word's are made, merged and ranked.
  bool usesOutlines = true;
  /// Of the variants that multi-character swaps make of a reading only those near some word are made; and, for the
  /// other kinds of entries, those that an expression or a line may match.
  bool usesLattice = true;
  /// Where this machine can, scans measure 32 words at once. Without it every word is measured for itself.
  bool usesBlocks = true;
  /// Shorter lists get no tries, when their index is made: scanning them costs less.
  std::int32_t minWordsForTries = 512;
  /// Longer ones get none, either: nodes are found by 32 bits, within which so many words of the tries' longest lengths
  /// stay.
  std::int32_t maxWordsForTries = 40'000'000;
};

/// The ways taken in the calling thread. Production code leaves them alone; comparisons of the ways change them.
inline LexiconRoads &lexiconRoads() noexcept {
  thread_local LexiconRoads roads;
  return roads;
}

}  // namespace qoc
