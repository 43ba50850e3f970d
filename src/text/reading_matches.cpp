#include "text/reading_matches.hpp"

#include <algorithm>
#include <bit>
#include <utility>

#include "swap/match.hpp"

namespace qoc {

namespace {

/// The first index whose character is equivalent to the one of this index: the same for the whole class.
std::int32_t firstEquivalent(const qoc_swapCharSet &set, std::int32_t index) noexcept {
  const auto &row = static_cast<const qstd_vectorb *>(set.swapCharEquivalenceTable.core.elements)[index];
  const auto flags = viewAs<std::uint8_t>(row);
  return static_cast<std::int32_t>(std::ranges::find_if(flags, [](std::uint8_t flag) { return flag != 0; }) -
                                   flags.begin());
}

/// Readings up to here have all their rows at once: they take some megabytes at most.
constexpr std::size_t mostPositionsInRows = 4096;

std::size_t hashOf(Char32 code) noexcept { return code * 0x9E3779B1u; }

}  // namespace

ReadingMatches::ReadingMatches(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set)
    : reading_(reading),
      set_(set != nullptr && set->distinctCharacters.core.size > 0 ? set : nullptr),
      numWords_(std::max<std::size_t>((view(reading).size() + 63) / 64, 1)),
      isLong_(view(reading).size() > mostPositionsInRows) {
  if (!isLong_) {
    fillRows();
  }
}

void ReadingMatches::fillRows() {
  const Positions positions = view(reading_);
  rows_.reserve((numFixedRows + std::min<std::size_t>(positions.size(), 64)) * numWords_);
  rows_.resize(numFixedRows * numWords_);
  const auto set1 = [this](std::uint32_t row, std::size_t j) {
    rows_[row * numWords_ + j / 64] |= std::uint64_t{1} << (j % 64);
  };
  for (std::size_t j = 0; j < positions.size(); ++j) {
    for (const qoc_ocrDictionaryChar &candidate : view(positions[j])) {
      if (candidate.code == QOC_CHAR_EMPTY) {
        continue;
      }
      set1(rowOfAny, j);
      set1(candidate.code == QOC_CHAR_ANY ? std::uint32_t{rowOfOthers} : addRow(representativeOf(candidate.code)), j);
    }
  }
  // A position that matches anything matches every class that the reading names, too.
  for (std::size_t word = 0; word < numWords_; ++word) {
    if (const std::uint64_t bits = rows_[rowOfOthers * numWords_ + word]; bits != 0) {
      for (std::size_t row = numFixedRows; row * numWords_ < rows_.size(); ++row) {
        rows_[row * numWords_ + word] |= bits;
      }
    }
  }
}

const std::uint64_t *ReadingMatches::rowOnDemand(Char32 code) const {
  if (const auto found = onDemand_.find(code); found != onDemand_.end()) {
    return found->second.data();
  }
  std::vector<std::uint64_t> row(numWords_);
  const Positions positions = view(reading_);
  for (std::size_t j = 0; j < positions.size(); ++j) {
    const bool isMatched = std::ranges::any_of(view(positions[j]), [&](const qoc_ocrDictionaryChar &candidate) {
      return isMatch(set_, candidate.code, code);
    });
    row[j / 64] |= static_cast<std::uint64_t>(isMatched) << (j % 64);
  }
  return onDemand_.emplace(code, std::move(row)).first->second.data();
}

std::uint64_t ReadingMatches::findCoveredCodes() const {
  constexpr std::uint64_t all = ~std::uint64_t{0};
  if (isLong_) {
    return all;
  }
  std::uint64_t covered = codeBit(QOC_CHAR_ANY);  // As a character of a word it matches whatever there is.
  for (const qoc_ocrDictionaryCharMulti &position : view(reading_)) {
    for (const qoc_ocrDictionaryChar &candidate : view(position)) {
      if (candidate.code == QOC_CHAR_ANY) {
        return all;
      }
      covered |= codeBit(candidate.code);
    }
  }
  if (set_ != nullptr) {
    for (const Char32 code : viewAs<Char32>(set_->distinctCharacters)) {
      const std::uint64_t *bits = row(code);
      covered |= std::any_of(bits, bits + numWords_, [](std::uint64_t word) { return word != 0; }) ? codeBit(code) : 0;
    }
  }
  return covered;
}

Char32 ReadingMatches::representativeOf(Char32 code) const noexcept {
  const std::int32_t index = set_ != nullptr ? indexOfCode(*set_, code) : -1;
  return index < 0 ? code
                   : viewAs<Char32>(set_->distinctCharacters)[static_cast<std::size_t>(firstEquivalent(*set_, index))];
}

std::uint32_t ReadingMatches::addRow(Char32 representative) {
  const bool isSmall = representative < std::size(small_);
  if (!isSmall && 2 * representatives_.size() >= slots_.size()) {
    growSlots();
  }
  std::uint32_t &row = isSmall ? small_[representative] : *slotOf(representative);
  if (row == 0) {
    row = static_cast<std::uint32_t>(numFixedRows + representatives_.size());
    representatives_.push_back(representative);
    rows_.resize(rows_.size() + numWords_);
  }
  return row;
}

std::size_t ReadingMatches::findRow(Char32 code) const noexcept {
  if (code == QOC_CHAR_EMPTY || code == QOC_CHAR_ANY) {
    return code == QOC_CHAR_EMPTY ? rowOfEmpty : rowOfAny;
  }
  const Char32 representative = representativeOf(code);
  const std::uint32_t row = representative < std::size(small_) ? small_[representative]
                            : slots_.empty()                   ? 0
                                                               : *slotOf(representative);
  return row != 0 ? row : std::uint32_t{rowOfOthers};
}

/// Where the representative's row is kept, or would be.
const std::uint32_t *ReadingMatches::slotOf(Char32 representative) const noexcept {
  std::size_t slot = hashOf(representative) & (slots_.size() - 1);
  while (slots_[slot] != 0 && representatives_[slots_[slot] - numFixedRows] != representative) {
    slot = (slot + 1) & (slots_.size() - 1);
  }
  return &slots_[slot];
}

std::uint32_t *ReadingMatches::slotOf(Char32 representative) noexcept {
  return const_cast<std::uint32_t *>(std::as_const(*this).slotOf(representative));
}

void ReadingMatches::growSlots() {
  slots_.assign(std::bit_ceil(4 * representatives_.size() + 32), 0);
  for (std::size_t i = 0; i < representatives_.size(); ++i) {
    if (representatives_[i] >= std::size(small_)) {
      *slotOf(representatives_[i]) = static_cast<std::uint32_t>(numFixedRows + i);
    }
  }
}

void WordRows::set(Characters word, const ReadingMatches &matches) {
  rows_.resize(word.size());
  for (std::size_t i = 0; i < word.size(); ++i) {
    rows_[i] = matches.row(word[i].code);
  }
}

}  // namespace qoc
