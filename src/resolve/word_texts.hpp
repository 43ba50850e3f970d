#pragma once
// The words that a reading can be.

#include "resolve/task.hpp"

namespace qoc {

/// Adds the best words within reach: of the dictionary, whatever the results show, or, where none is known, of the
/// results.
/// @param known the cost of a word that the reading can be, and that may come in; noWay where none is known
qsys_status collectWords(Task &task, Cost known, TextList &texts);

}  // namespace qoc
