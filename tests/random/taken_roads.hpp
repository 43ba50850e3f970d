// The ways that matching can take, chosen for the calling thread.

#ifndef TAKEN_ROADS_HPP
#define TAKEN_ROADS_HPP

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

}  // namespace random_cases

#endif
