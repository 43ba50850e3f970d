#pragma once
// Shortcuts that change no result and can be switched off, so that comparisons show that they change none. Those of a
// lexicon's match are in kinds/lexicon_roads.hpp.

namespace qoc {

struct Shortcuts {
  /// Windows whose ends leave no alignment with one edit are not graded.
  bool usesEarlyTest = true;
  /// A swap set keeps the equivalents of its characters as lists.
  bool usesEquivalentsCache = true;
  /// Results share the reading that they show, results that are merged move, copies of a lexicon share an index.
  bool sharesStorage = true;
  /// A resolver looks words up in the indexes of their lists, and aligns them by their live cells only.
  bool usesWordIndexes = true;
  /// A resolver goes through the texts of expressions instead of matching them again.
  bool walksShapes = true;
};

/// Those of the calling thread. Production code leaves them alone; comparisons change them.
inline Shortcuts &shortcuts() noexcept {
  thread_local Shortcuts current;
  return current;
}

}  // namespace qoc
