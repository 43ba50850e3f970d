#pragma once
// All shortcuts of the library that can be switched off, as one.

#include <cstdint>

#include "kinds/lexicon_roads.hpp"
#include "platform/system/shortcuts.hpp"

namespace qoc::test {

/// Takes the shortcuts whose bits are set, in the calling thread and as long as it lives.
class ShortcutsTaken {
 public:
  static constexpr unsigned numShortcuts = 9;
  static constexpr unsigned all = (1u << numShortcuts) - 1, none = 0;

  explicit ShortcutsTaken(unsigned bits) : roads_(lexiconRoads()), shortcuts_(shortcuts()) { take(bits); }
  ~ShortcutsTaken() {
    lexiconRoads() = roads_;
    shortcuts() = shortcuts_;
  }
  ShortcutsTaken(const ShortcutsTaken &) = delete;
  ShortcutsTaken &operator=(const ShortcutsTaken &) = delete;

  /// Takes them for good.
  static void take(unsigned bits) {
    const auto has = [bits](unsigned i) { return (bits >> i & 1) != 0; };
    lexiconRoads().usesIndex = has(0);
    lexiconRoads().usesBound = has(1);
    lexiconRoads().usesOutlines = has(2);
    lexiconRoads().usesLattice = has(3);
    lexiconRoads().minWordsForTries = has(4) ? 0 : INT32_MAX;
    lexiconRoads().usesBlocks = has(5);
    // Those of the resolver are taken with all others or not at all.
    shortcuts() = {has(6), has(7), has(8), bits == all, bits == all};
  }

 private:
  LexiconRoads roads_;
  Shortcuts shortcuts_;
};

}  // namespace qoc::test
