#pragma once
// Readings that leave nothing to choose.

#include "resolve/task.hpp"

namespace qoc {

/// How far a text that was found from the result alone answers for its reading.
enum class Clarity {
  none,   ///< There is no such text.
  bound,  ///< The reading can be the text; others that matter may be better, or near.
  clear,  ///< It is the only one that matters.
};

/// Finds the best text of the only result that a set has, where that takes no edit and passes its checks.
///
/// Most readings are clear: whatever else they show, or would be with an edit, is too far behind to matter. That is
/// told from the candidates alone, without a list of all that the reading shows, a search or a match.
Clarity findClearText(const Task &task, Text &text);

}  // namespace qoc
