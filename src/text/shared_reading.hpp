#pragma once
// The copy of a reading that results show: one for all results that have the reading in common.

#include "text/views.hpp"

namespace qoc {

/// Makes an empty string the copy of positions of a reading whose own copies share its elements.
qsys_status makeShared(Positions positions, qoc_ocrDictionaryStringMulti &shared);

}  // namespace qoc
