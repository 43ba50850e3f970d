#pragma once
// The characters that a swap set holds for equivalent to one, without a copy of them.

#include <qoc/swap_char_set.h>

#include "swap/match.hpp"
#include "text/views.hpp"

namespace qoc {

/// Calls visit(equivalent) for every equivalent of a code but itself, ascending; the set may be null.
template <class Visit>
void forEachEquivalent(const qoc_swapCharSet *set, Char32 code, Visit visit) {
  const std::int32_t index = set != nullptr ? indexOfCode(*set, code) : -1;
  if (index < 0) {
    return;
  }
  const auto row = static_cast<std::size_t>(index);
  if (viewAs<std::uint8_t>(set->equivalentsCacheFlags)[row] != 0) {
    for (const Char32 equivalent : viewAs<Char32>(viewAs<qstd_vectorChar32>(set->equivalentsCacheLists)[row])) {
      visit(equivalent);
    }
    return;
  }
  // A class too large for the cache.
  const auto distinctCharacters = viewAs<Char32>(set->distinctCharacters);
  for (std::int32_t i = 0; i < set->distinctCharacters.core.size; ++i) {
    if (i != index && areEquivalent(*set, index, i)) {
      visit(distinctCharacters[static_cast<std::size_t>(i)]);
    }
  }
}

}  // namespace qoc
