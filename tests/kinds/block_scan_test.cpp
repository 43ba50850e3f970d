// The edit distances of 32 words at once are those of each word alone.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "kinds/block_scan.hpp"
#include "text/bit_distance.hpp"

namespace {

using qoc::Letter;
constexpr std::size_t numWordsPerBlock = qoc::wordsPerBlock;

/// Rows of a random reading in which the last letter, and few others, match something.
qoc::LetterMatches randomRows(std::mt19937 &random, std::size_t maxLetter, std::int32_t numPositions) {
  qoc::LetterMatches rows = {};
  for (std::int32_t j = 0; j < numPositions; ++j) {
    rows[j == 0 ? maxLetter : 1 + random() % maxLetter] |= std::uint64_t{1} << j;
  }
  return rows;
}

/// Blocks of random words, most of whose letters match something. A block behind them has letters, too.
std::vector<Letter> randomBlocks(std::mt19937 &random, const qoc::LetterMatches &rows, std::size_t maxLetter,
                                 std::size_t numLetters) {
  std::vector<Letter> matching;
  for (std::size_t letter = 1; letter <= maxLetter; ++letter) {
    if (rows[letter] != 0) {
      matching.push_back(static_cast<Letter>(letter));
    }
  }
  std::vector<Letter> letters(numLetters);
  for (Letter &letter : letters) {
    letter = random() % 4 == 0 ? static_cast<Letter>(1 + random() % maxLetter) : matching[random() % matching.size()];
  }
  return letters;
}

TEST(BlockScan, MeasuresEveryWordAsAloneAndWritesNoMoreMasksThanThereAreBlocks) {
  if (!qoc::BlockScan::isAvailable()) {
    GTEST_SKIP() << "this machine cannot";
  }
  constexpr std::uint32_t untouched = 0xA5A5A5A5u;
  constexpr std::size_t numBlocks = 3;
  std::mt19937 random(1);
  for (std::int32_t numPositions = 1; numPositions <= qoc::BlockScan::maxPositions; ++numPositions) {
    for (const std::size_t maxLetter : {1u, 15u, 16u, 17u, 32u, 255u}) {
      const qoc::LetterMatches rows = randomRows(random, maxLetter, numPositions);
      const qoc::BlockScan scan(rows, maxLetter, numPositions);
      for (const std::size_t length : {1u, 2u, 7u, 8u, 16u, 19u, 200u}) {
        const auto numLetters = static_cast<std::int32_t>(length);
        const auto blocks = randomBlocks(random, rows, maxLetter, (numBlocks + 1) * numWordsPerBlock * length);
        const std::int32_t difference = std::abs(numLetters - numPositions);
        for (const std::int32_t maxEdits : {0, 1, difference - 1, difference, difference + 2, numLetters, 400}) {
          std::uint32_t masks[numBlocks + 1] = {0, 0, 0, untouched};
          scan.scan(blocks.data(), numBlocks, numLetters, maxEdits, masks);
          for (std::size_t word = 0; word < numBlocks * numWordsPerBlock; ++word) {
            const std::size_t block = word / numWordsPerBlock;
            const std::size_t lane = word % numWordsPerBlock;
            std::vector<Letter> letters;
            for (std::size_t i = 0; i < length; ++i) {
              letters.push_back(blocks[(block * length + i) * numWordsPerBlock + lane]);
            }
            const bool isWithin = qoc::bitDistance(rows, numPositions, letters.data(), numLetters) <= maxEdits;
            ASSERT_EQ((masks[block] >> lane & 1) != 0, isWithin)
                << "word " << word << " of " << length << " letters up to " << maxLetter << ", " << numPositions
                << " positions, " << maxEdits << " edits";
          }
          ASSERT_EQ(masks[numBlocks], untouched);
        }
      }
    }
  }
}

}  // namespace
