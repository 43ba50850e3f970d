#pragma once
// Whether one character code may stand for another: the test that everything which matches rests on.

#include <qoc/swap_char_set.h>

namespace qoc {

/// The index of the code among the set's distinct characters, or -1 when it stands in no group.
inline std::int32_t indexOfCode(const qoc_swapCharSet &set, Char32 code) noexcept {
  const qstd_vector &table = set.swapCharCodeToIndexLUT.core;
  return code < static_cast<Char32>(table.size) ? static_cast<const std::int32_t *>(table.elements)[code] : -1;
}

/// Whether the characters of two indexes are equivalent; a character is equivalent to itself.
inline bool areEquivalent(const qoc_swapCharSet &set, std::int32_t indexA, std::int32_t indexB) noexcept {
  const auto *rows = static_cast<const qstd_vectorb *>(set.swapCharEquivalenceTable.core.elements);
  return static_cast<const std::uint8_t *>(rows[indexA].core.elements)[indexB] != 0;
}

/// What qoc_swapCharSet_isMatchChar says of two codes; the set may be null.
inline bool isMatch(const qoc_swapCharSet *set, Char32 a, Char32 b) noexcept {
  if (a == QOC_CHAR_EMPTY || b == QOC_CHAR_EMPTY) {
    return false;
  }
  if (a == b || a == QOC_CHAR_ANY || b == QOC_CHAR_ANY) {
    return true;
  }
  if (set == nullptr) {
    return false;
  }
  const std::int32_t indexA = indexOfCode(*set, a);
  const std::int32_t indexB = indexOfCode(*set, b);
  return indexA >= 0 && indexB >= 0 && areEquivalent(*set, indexA, indexB);
}

}  // namespace qoc
