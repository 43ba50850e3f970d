#include "kinds/reading_variants.hpp"

#include <algorithm>
#include <limits>

#include "platform/system/work_meter.hpp"

namespace qoc {

namespace {

std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b) noexcept {
  return a > std::numeric_limits<std::uint64_t>::max() - b ? std::numeric_limits<std::uint64_t>::max() : a + b;
}

/// As often as that, or as often as can be counted.
qsys_status checkAttentionOften(std::uint64_t times) {
  return checkAttention(static_cast<std::int64_t>(std::min<std::uint64_t>(times, INT64_MAX)));
}

}  // namespace

ReadingVariants::~ReadingVariants() {
  if (hasSymbols_) {
    qoc_ocrDictionaryStringMulti_destruct(&symbols_);
  }
}

qsys_status ReadingVariants::expand() {
  if (isExpanded_) {
    return checkAttentionOften(saturatingSum(static_cast<std::uint64_t>(numPositions()), numVariants_));
  }
  QOC_TRY(choices_.find(*set_.expansion, reading_, &set_));
  QOC_TRY(makeSymbols());
  findLengths();
  if (isAttentionCounted()) {
    QOC_TRY(countVariants());
  }
  isExpanded_ = true;
  return checkAttentionOften(numVariants_);
}

qsys_status ReadingVariants::makeSymbols() {
  QOC_TRY(qoc_ocrDictionaryStringMulti_constructCopy(&symbols_, &reading_));
  hasSymbols_ = true;
  numNodes_ = static_cast<std::size_t>(numPositions()) + 1;
  constexpr std::size_t workPerChoice = 1024;  // It is appended by copies, each an allocation or two.
  WorkMeter meter;
  qstd_vector32s origins;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vector32s_constructEmpty, qstd_vector32s_destruct>(&origins);
    for (std::int32_t p = 0; p < numPositions(); ++p) {
      firstChoices_.push_back(numbers_.size());
      for (const ExpansionChoice &choice : choices_.at(p)) {
        const auto firstSymbol = static_cast<std::size_t>(choice.isKept() ? p : sizeOf(symbols_));
        numbers_.push_back({firstSymbol, numNodes_});
        numNodes_ += choice.numInserted == 2 ? 1 : 0;
        QOC_TRY(meter.add(workPerChoice));
        if (!choice.isKept()) {
          QOC_TRY(appendChoice(choice, p, reading_, &symbols_, &origins));
        }
      }
    }
    return QSYS_STATUS_OK;
  });
}

void ReadingVariants::findLengths() {
  lengths_.assign(static_cast<std::size_t>(numPositions()) + 1, {std::numeric_limits<std::int32_t>::max(), 0});
  lengths_.back() = {0, 0};
  for (std::int32_t p = numPositions() - 1; p >= 0; --p) {
    for (const ExpansionChoice &choice : choices_.at(p)) {
      const Lengths &behind = lengths_[static_cast<std::size_t>(p + choice.numRead)];
      Lengths &here = lengths_[static_cast<std::size_t>(p)];
      here.least = std::min(here.least, behind.least + numSymbolsOf(choice));
      here.most = std::max(here.most, behind.most + numSymbolsOf(choice));
    }
  }
}

/// Numbers of variants by length, from every position on; a number that is too big is the largest one.
qsys_status ReadingVariants::countVariants() {
  constexpr std::size_t workPerLength = 4;
  WorkMeter meter;
  const std::size_t size = numLengths();
  counts_.reserve(firstCount(0) + size);
  counts_.resize(size);
  counts_[0] = 1;
  for (std::int32_t p = numPositions() - 1; p >= 0; --p) {
    counts_.resize(firstCount(p) + size);
    for (const ExpansionChoice &choice : choices_.at(p)) {
      QOC_TRY(meter.add(workPerLength * size));
      const auto added = static_cast<std::size_t>(numSymbolsOf(choice));
      for (std::size_t length = 0; length + added < size; ++length) {
        std::uint64_t &count = counts_[firstCount(p) + length + added];
        count = saturatingSum(count, counts_[firstCount(p + choice.numRead) + length]);
      }
    }
  }
  numVariants_ = 0;
  for (std::size_t length = 0; length < size; ++length) {
    numVariants_ = saturatingSum(numVariants_, counts_[firstCount(0) + length]);
  }
  return QSYS_STATUS_OK;
}

qsys_status ReadingVariants::make(std::span<const Step> steps, qoc_ocrDictionaryStringMulti &variant,
                                  qstd_vector32s &inputIndices) const {
  clear(variant.positions);
  clear(inputIndices);
  for (const auto &[position, choice] : steps) {
    QOC_TRY(appendChoice(choices_.at(position)[choice], position, reading_, &variant, &inputIndices));
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
