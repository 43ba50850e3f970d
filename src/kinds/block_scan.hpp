#pragma once
// The edit distances of 32 words at once from a reading of a few positions.
//
// The column of the bit-parallel distance (see bitDistance) takes a bit for every position of the reading, so a short
// reading's fits into a byte, and one register holds the columns of 32 words. Their letters stand in a block: the first
// letters of all 32, the second ones, and so on. What a letter matches is looked up in tables of 16 letters; of those
// only the few are asked that hold a letter of the reading at all.
//
// The distance need not be followed through the steps: in the end it is the number of letters and the sum of the
// column's differences.

#include <cstdint>
#include <vector>

#include "kinds/letter_table.hpp"

namespace qoc {

inline constexpr std::int32_t wordsPerBlock = 32;

class BlockScan {
 public:
  static constexpr std::int32_t maxPositions = 16;

  /// Whether this machine can. To ask it takes long, so whoever scans asks once.
  static bool isAvailable() noexcept;

  /// Of a reading of at most maxPositions positions: `rows` are those of letters up to maxLetter.
  BlockScan(const LetterMatches &rows, std::size_t maxLetter, std::int32_t numPositions) noexcept;

  /// Writes for each of a sequence of blocks, of words with so many letters, a mask of the words within maxEdits edits
  /// of the reading, the first one's bit the lowest.
  void scan(const Letter *blocks, std::size_t numBlocks, std::int32_t numLetters, std::int32_t maxEdits,
            std::uint32_t *masks) const noexcept;

 private:
  struct Kernel;

  static constexpr std::size_t lettersPerTable = 16;
  struct Table {
    Letter first;
    std::uint8_t low[lettersPerTable], high[lettersPerTable];  // Positions 0 to 7, and 8 to 15.
  };
  Table tables_[256 / lettersPerTable];
  std::int32_t numTables_ = 0;
  std::int32_t numPositions_;
};

}  // namespace qoc
