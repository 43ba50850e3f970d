#include "text/edit_table.hpp"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <new>

#include "platform/system/present.hpp"

namespace qoc {

qsys_status EditTable::fill(const WordRows &word, Window window, const qoc_ocrDictionaryRunParams &params,
                            bool &isWithin) {
  isWithin = false;
  m_ = word.size();
  k_ = window.size();
  const std::int32_t maxEdits = params.maxEdits;
  if (maxEdits < 0 || std::abs(std::int64_t{m_} - k_) > maxEdits) {
    return QSYS_STATUS_OK;  // As many steps off the diagonal as the lengths differ, each at a cost of 1.
  }
  const bool isOpen = params.matchOption1 != 0 && params.matchOption2 != 0 && params.matchOption4 != 0;
  hasColumns_ = isOpen && k_ <= mostPositionsOfBits;
  return hasColumns_ ? fillBits(word, window, maxEdits, isWithin) : fillCells(word, window, params, isWithin);
}

qsys_status EditTable::fillBits(const WordRows &word, Window window, std::int32_t maxEdits, bool &isWithin) {
  QOC_TRY(meter_.add(static_cast<std::size_t>(m_)));
  if (columns_.size() < static_cast<std::size_t>(m_)) {
    columns_.resize(static_cast<std::size_t>(m_));
  }
  std::uint64_t up = ~std::uint64_t{0};
  std::uint64_t down = 0;
  for (std::int32_t i = 0; i < m_; ++i) {
    const std::uint64_t matches = word.matchesIn(i, window);
    const std::uint64_t diagonal = (((matches & up) + up) ^ up) | matches | down;
    const std::uint64_t right = (down | ~(diagonal | up)) << 1 | 1;
    const std::uint64_t left = (up & diagonal) << 1;
    up = left | ~(diagonal | right);
    down = right & diagonal;
    columns_[static_cast<std::size_t>(i)] = {matches, diagonal, up};
  }
  const std::uint64_t inside = k_ > 0 ? ~std::uint64_t{0} >> (mostPositionsOfBits - k_) : 0;
  isWithin = m_ + std::popcount(up & inside) - std::popcount(down & inside) <= maxEdits;
  return QSYS_STATUS_OK;
}

qsys_status EditTable::fillCells(const WordRows &word, Window window, const qoc_ocrDictionaryRunParams &params,
                                 bool &isWithin) {
  const std::int32_t maxEdits = params.maxEdits;
  band_ = std::min<std::int32_t>(maxEdits, std::max(m_, k_));
  isBanded_ = 2 * std::int64_t{band_} + 1 < std::int64_t{m_} + 1;
  stride_ = isBanded_ ? 2 * std::int64_t{band_} + 1 : std::int64_t{m_} + 1;
  const std::uint64_t numCells = static_cast<std::uint64_t>(stride_) * (static_cast<std::uint64_t>(k_) + 1);
  if (QOC_NEVER(numCells > costs_.max_size())) {  // Only 32-bit addresses are fewer than long texts can ask for.
    throw std::bad_alloc();
  }
  // Within the band every cell is written before it is read, and no other is read. A large table is begun row by row,
  // so that the memory is not touched in one long go.
  const bool isLarge = numCells > largeTable;
  costs_.reserve(static_cast<std::size_t>(numCells));
  steps_.reserve(static_cast<std::size_t>(numCells));
  makeRows(isLarge ? 1 : k_ + 1);

  for (std::int32_t i = 0; i <= std::min(m_, band_); ++i) {
    costs_[at(i, 0)] = i;
  }
  for (std::int32_t j = 1; j <= k_; ++j) {
    const std::int32_t first = std::max(j - band_, 0);
    const std::int32_t last = static_cast<std::int32_t>(std::min<std::int64_t>(m_, std::int64_t{j} + band_));
    std::int32_t least = unreachable;
    if (isLarge) {
      makeRows(j + 1);
    }
    QOC_TRY(meter_.add(static_cast<std::size_t>(last - first) + 1));
    for (std::int32_t i = first; i <= last; ++i) {
      std::int32_t &cost = costs_[at(i, j)];
      if (i == 0) {
        cost = j;
      } else if (word.isMatch(i - 1, window.start + j - 1)) {
        cost = costs_[at(i - 1, j - 1)];
        steps_[at(i, j)] = Step::match;
      } else {
        const std::int32_t left = i > first ? costs_[at(i - 1, j)] : unreachable;
        const std::int32_t up = i < j + band_ ? costs_[at(i, j - 1)] : unreachable;
        const std::int32_t deletion = params.matchOption2 != 0 ? left + 1 : unreachable;
        const std::int32_t insertion = params.matchOption4 != 0 ? up + 1 : unreachable;
        const std::int32_t substitution = params.matchOption1 != 0 ? costs_[at(i - 1, j - 1)] + 1 : unreachable;
        cost = std::min({deletion, insertion, substitution});
        steps_[at(i, j)] = substitution == cost ? Step::substitution
                           : insertion == cost  ? Step::insertion
                                                : Step::deletion;
      }
      least = std::min(least, cost);
    }
    if (least > maxEdits) {
      return QSYS_STATUS_OK;  // Costs never fall along a path, and every path crosses this row.
    }
  }
  isWithin = costs_[at(m_, k_)] <= maxEdits;
  return QSYS_STATUS_OK;
}

EditTable::Step EditTable::stepInto(std::int32_t i, std::int32_t j) const noexcept {
  if (!hasColumns_) {
    return steps_[at(i, j)];
  }
  const Column &column = columns_[static_cast<std::size_t>(i) - 1];
  const std::int32_t bit = j - 1;
  return (column.matches >> bit & 1) != 0    ? Step::match
         : (column.diagonal >> bit & 1) == 0 ? Step::substitution
         : (column.up >> bit & 1) != 0       ? Step::insertion
                                             : Step::deletion;
}

void EditTable::trace(std::vector<Step> &steps, std::int32_t &firstI, std::int32_t &firstJ) const {
  steps.clear();
  std::int32_t i = m_;
  std::int32_t j = k_;
  while (i > 0 && j > 0) {
    const Step step = stepInto(i, j);
    steps.push_back(step);
    i -= step != Step::insertion ? 1 : 0;
    j -= step != Step::deletion ? 1 : 0;
  }
  firstI = i;
  firstJ = j;
}

}  // namespace qoc
