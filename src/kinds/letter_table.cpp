#include "kinds/letter_table.hpp"

#include <algorithm>

namespace qoc {

namespace {

/// Letters that belong to one code each; the rest are shared by the codes behind them.
constexpr std::size_t numOwnLetters = 191;
constexpr std::size_t numLetters = 255;

}  // namespace

LetterTable::LetterTable(std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter) {
  std::array<std::uint64_t, 256> smallCounts = {};
  std::unordered_map<Char32, std::uint64_t> otherCounts;
  for (const qoc_ocrDictionaryString &word : words) {
    meter.spend(unitsOf(word));
    for (const qoc_ocrDictionaryChar &character : view(word)) {
      if (character.code < smallCounts.size()) {
        ++smallCounts[character.code];
      } else {
        ++otherCounts[character.code];
      }
    }
  }
  std::vector<std::pair<std::uint64_t, Char32>> byCount;
  for (Char32 code = 0; code < smallCounts.size(); ++code) {
    if (smallCounts[code] > 0) {
      byCount.emplace_back(smallCounts[code], code);
    }
  }
  for (const auto &[code, count] : otherCounts) {
    byCount.emplace_back(count, code);
  }
  std::ranges::sort(byCount, [](const auto &a, const auto &b) {
    return a.first != b.first ? a.first > b.first : a.second < b.second;
  });
  codes_.reserve(byCount.size());
  for (std::size_t i = 0; i < byCount.size(); ++i) {
    const std::size_t number = i < numOwnLetters || byCount.size() <= numLetters
                                   ? i
                                   : numOwnLetters + (i - numOwnLetters) % (numLetters - numOwnLetters);
    const auto letter = static_cast<Letter>(number + 1);
    const Char32 code = byCount[i].second;
    codes_.push_back({code, letter});
    maxLetter_ = std::max<std::size_t>(maxLetter_, letter);
    if (code < small_.size()) {
      small_[code] = letter;
    } else {
      others_.emplace(code, letter);
    }
  }
}

void LetterTable::fill(const ReadingMatches &matches, Window window, LetterMatches &rows) const {
  std::fill_n(rows.begin(), maxLetter_ + 1, 0);
  const auto word = static_cast<std::size_t>(window.start / 64);
  const int shift = window.start % 64;
  const bool isSplit = shift + window.size() > 64;
  const std::uint64_t inside = (std::uint64_t{1} << window.size()) - 1;
  for (const Code &code : codes_) {
    const std::uint64_t *row = matches.row(code.code) + word;
    rows[code.letter] |= (row[0] >> shift | (isSplit ? row[1] << (64 - shift) : 0)) & inside;
  }
}

std::uint64_t LetterTable::coveredBits(const ReadingMatches &matches) const {
  std::uint64_t covered = 0;
  for (const Code &code : codes_) {
    const std::uint64_t *row = matches.row(code.code);
    if (std::any_of(row, row + matches.numWords(), [](std::uint64_t bits) { return bits != 0; })) {
      covered |= signatureBit(code.letter);
    }
  }
  return covered;
}

}  // namespace qoc
