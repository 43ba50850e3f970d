#pragma once
// The best texts of many lattices.

#include <functional>
#include <vector>

#include "resolve/lattice.hpp"

namespace qoc {

/// One text of a lattice: by slot the index of its choice.
struct FoundText {
  std::size_t lattice;
  Cost cost;
  std::vector<std::int32_t> choices;
};

/// Called before a lattice is searched whose slots are not all known; may change their choices, but not their least
/// cost.
using OpenLattice = std::function<qsys_status(Lattice &)>;
/// Called with each text, best first; says whether to go on, and
/// may lower the limit from which on no text is wanted.
using TakeText = std::function<qsys_status(const FoundText &, bool &goesOn, Cost &maxCost)>;

/**
 * Goes through the texts of all lattices by rising cost.
 *
 * The k shortest paths through all lattices at once, each as a deviation from one that costs less (Hoffman and Pavley
 * 1959): a path is a text, a node is a place in a lattice together with the state of its checks. From each node k paths
 * go on, so k texts of every lattice come, however many others cost less and fail a check.
 *
 * @param maxCost texts that cost more do not come
 * @return 0, the attention status, or a failure of a callback
 */
qsys_status searchTexts(std::vector<Lattice> &lattices, std::size_t k, Cost maxCost, const OpenLattice &open,
                        const TakeText &take);

}  // namespace qoc
