#pragma once
// The edit distance of a word and a reading, a column of the table at a time as bits.

#include <array>
#include <cstdint>

namespace qoc {

/// The distance by substituted, missing and extra characters, a match free, of a word from a reading of at most 64
/// positions. `rows` are the positions that each of the word's letters matches; `letters[i]` is a letter.
///
/// The differences between neighbouring cells of the table are -1, 0 or 1, so a column is two words of bits; the
/// distance follows the last row (Myers, 1999, as simplified by Hyyrö, 2003).
template <class Rows, class Letters>
std::int32_t bitDistance(const Rows &rows, std::int32_t numPositions, const Letters &letters,
                         std::int32_t numLetters) noexcept {
  if (numPositions == 0) {
    return numLetters;
  }
  const std::int32_t last = numPositions - 1;
  std::uint64_t up = ~std::uint64_t{0};  // Where a cell is one more than the one above it.
  std::uint64_t down = 0;                // Where it is one less.
  std::int32_t distance = numPositions;
  for (std::int32_t i = 0; i < numLetters; ++i) {
    const std::uint64_t matches = rows[letters[i]];
    const std::uint64_t diagonal = (((matches & up) + up) ^ up) | matches | down;
    std::uint64_t right = down | ~(diagonal | up);
    std::uint64_t left = up & diagonal;
    distance += static_cast<std::int32_t>(right >> last & 1) - static_cast<std::int32_t>(left >> last & 1);
    right = right << 1 | 1;
    left <<= 1;
    up = left | ~(diagonal | right);
    down = right & diagonal;
  }
  return distance;
}

}  // namespace qoc
