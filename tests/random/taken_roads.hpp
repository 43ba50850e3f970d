// The ways that matching can take, chosen for the calling thread.

#ifndef TAKEN_ROADS_HPP
#define TAKEN_ROADS_HPP

#include <string>
#include <utility>

#include "kinds/lexicon_roads.hpp"

namespace random_cases {

/** Takes the given roads in this thread while it lives. */
class Roads {
 public:
  explicit Roads(const qoc::LexiconRoads &roads) : before_(std::exchange(qoc::lexiconRoads(), roads)) {}
  ~Roads() { qoc::lexiconRoads() = before_; }
  Roads(const Roads &) = delete;
  Roads &operator=(const Roads &) = delete;

 private:
  qoc::LexiconRoads before_;
};

/** The usual roads, with the lattice of a reading's variants or without. */
inline qoc::LexiconRoads withLattice(bool usesLattice) {
  qoc::LexiconRoads roads;
  roads.usesLattice = usesLattice;
  return roads;
}

/** The first difference that a comparison finds, with the lattice of variants and without; empty if there is none. */
template <class Compare>
std::string withAndWithoutLattice(Compare compare) {
  for (const bool usesLattice : {true, false}) {
    const Roads taken(withLattice(usesLattice));
    const std::string difference = compare();
    if (!difference.empty()) {
      return difference + (usesLattice ? " with the lattice" : " without the lattice");
    }
  }
  return "";
}

}  // namespace random_cases

#endif
