#include "kinds/word_scan.hpp"

#include <algorithm>

#include "kinds/lexicon_roads.hpp"
#include "text/bit_distance.hpp"

namespace qoc {

namespace {

/// The letters of one word, each so many bytes behind the last.
struct LetterSteps {
  const Letter *first;
  std::size_t step;
  Letter operator[](std::int32_t i) const noexcept { return first[static_cast<std::size_t>(i) * step]; }
};

}  // namespace

WordScan::WordScan(const WordLetters &words, WorkMeter &meter) : letters_(words.numLetters()) {
  signatures_.reserve(static_cast<std::size_t>(words.numWords()));
  std::size_t place = 0;
  for (std::size_t g = 0; g < words.groups().size(); ++g) {
    const WordLetters::Group &read = words.groups()[g];
    const Group &group = groups_.emplace_back(Group{read.length, read.first, words.endOf(g), place});
    const auto length = static_cast<std::size_t>(read.length);
    for (std::int32_t word = group.first; word < group.end; ++word) {
      meter.spend(1 + length);
      const Letter *from = words.lettersOf(read, word);
      const bool isInBlock = word < group.endOfBlocks();
      const std::size_t step = isInBlock ? wordsPerBlock : 1;
      Letter *to = letters_.data() + place;
      if (isInBlock) {
        const auto lane = static_cast<std::size_t>((word - group.first) % wordsPerBlock);
        to += lane;
        place += lane == wordsPerBlock - 1 ? length * wordsPerBlock : 0;
      } else {
        place += length;
      }
      std::uint64_t signature = 0;
      for (std::size_t i = 0; i < length; ++i) {
        to[i * step] = from[i];
        signature |= LetterTable::signatureBit(from[i]);
      }
      signatures_.push_back(signature);
    }
    hasBlocks_ = hasBlocks_ || group.endOfBlocks() > group.first;
  }
  if (hasBlocks_) {
    hasBlocks_ = BlockScan::isAvailable();
  }
}

bool WordScan::goesByBlocks(const IndexQuery &query) const noexcept {
  return query.numPositions <= BlockScan::maxPositions && lexiconRoads().usesBlocks && hasBlocks_;
}

std::size_t WordScan::numLettersUpTo(std::int32_t length) const noexcept {
  const auto behind = std::ranges::upper_bound(groups_, length, {}, &Group::length);
  return behind != groups_.end() ? behind->place : letters_.size();
}

void WordScan::find(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
                    std::vector<std::int32_t> &found) const {
  if (goesByBlocks(query)) {
    findByBlocks(query, maxEdits, first, end, found);
    return;
  }
  for (const Group &group : groups_) {
    const std::int32_t last = std::min(group.end, end);
    for (std::int32_t word = std::max(group.first, first); word < last; ++word) {
      if (mayMatch(word, query, maxEdits) && (!query.hasRows || isWithin(group, word, query, maxEdits))) {
        found.push_back(word);
      }
    }
  }
}

bool WordScan::isWithin(const Group &group, std::int32_t word, const IndexQuery &query,
                        std::int32_t maxEdits) const noexcept {
  const auto length = static_cast<std::size_t>(group.length);
  const auto place = static_cast<std::size_t>(word - group.first);
  const bool isInBlock = word < group.endOfBlocks();
  const std::size_t lane = isInBlock ? place % wordsPerBlock : 0;
  const LetterSteps letters = {letters_.data() + group.place + (place - lane) * length + lane,
                               isInBlock ? std::size_t{wordsPerBlock} : std::size_t{1}};
  return bitDistance(query.rows, query.numPositions, letters, group.length) <= maxEdits;
}

void WordScan::findByBlocks(const IndexQuery &query, std::int32_t maxEdits, std::int32_t first, std::int32_t end,
                            std::vector<std::int32_t> &found) const {
  constexpr std::int32_t blocksAtOnce = 64;
  constexpr std::int32_t wordsAtOnce = blocksAtOnce * wordsPerBlock;
  const BlockScan scan(query.rows, query.maxLetter, query.numPositions);
  std::uint32_t masks[blocksAtOnce];
  for (const Group &group : groups_) {
    const std::int32_t begin = std::max(group.first, first);
    const std::int32_t last = std::min(group.end, end);
    if (begin >= last) {
      continue;
    }
    const std::int32_t endOfBlocks = group.endOfBlocks();
    std::int32_t word = begin - (begin - group.first) % wordsPerBlock;
    for (; word < std::min(last, endOfBlocks); word += wordsAtOnce) {
      const std::int32_t numBlocks =
          (std::min({word + wordsAtOnce, endOfBlocks, last + wordsPerBlock - 1}) - word) / wordsPerBlock;
      const auto place = static_cast<std::size_t>(word - group.first) * static_cast<std::size_t>(group.length);
      scan.scan(letters_.data() + group.place + place, static_cast<std::size_t>(numBlocks), group.length, maxEdits,
                masks);
      for (std::int32_t b = 0; b < numBlocks; ++b) {
        for (std::uint32_t mask = masks[b]; mask != 0; mask &= mask - 1) {
          const std::int32_t near = word + b * wordsPerBlock + std::countr_zero(mask);
          if (near >= begin && near < last) {
            found.push_back(near);
          }
        }
      }
    }
    for (word = std::max(begin, endOfBlocks); word < last; ++word) {
      if (isWithin(group, word, query, maxEdits)) {
        found.push_back(word);
      }
    }
  }
}

}  // namespace qoc
