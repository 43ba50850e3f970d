#pragma once
// The words that a reading can be.

#include "resolve/task.hpp"

namespace qoc {

/// Adds the best words within reach: of the dictionary, whatever the results show, or, where none is known, of the
/// results.
qsys_status collectWords(Task &task, TextList &texts);

}  // namespace qoc
