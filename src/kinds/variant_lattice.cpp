#include "kinds/variant_lattice.hpp"

#include <algorithm>

namespace qoc {

namespace {

/// Edits are counted up to here; no search allows as many.
constexpr std::uint8_t mostEdits = 250;

std::uint8_t oneMore(std::uint8_t edits) noexcept {
  return edits < mostEdits ? static_cast<std::uint8_t>(edits + 1) : mostEdits;
}

}  // namespace

VariantLattice::VariantLattice(const ReadingVariants &variants, const qoc_swapCharSet *set, std::int32_t maxEdits)
    : variants_(variants),
      numPositions_(variants.numPositions()),
      maxEdits_(static_cast<std::uint8_t>(std::clamp(maxEdits, 0, mostEdits - 1))),
      matches_(variants.symbols(), set) {}

/// Takes the way by a symbol from the node to the target into the node's row.
void VariantLattice::fillLeft(const Word &word, std::size_t node, std::size_t target, std::size_t symbol,
                              bool isFresh) {
  const std::size_t stride = static_cast<std::size_t>(word.size) + 1;
  std::uint8_t *here = left_.data() + word.firstLeft + node * stride;
  const std::uint8_t *behind = left_.data() + word.firstLeft + target * stride;
  for (std::int32_t i = 0; i <= word.size; ++i) {
    std::uint8_t edits = oneMore(behind[i]);
    if (i < word.size) {
      edits = std::min(edits, isMatch(word, i, symbol) ? behind[i + 1] : oneMore(behind[i + 1]));
    }
    here[i] = isFresh ? edits : std::min(here[i], edits);
  }
}

/// Takes letters without symbol into the node's row.
void VariantLattice::closeLeft(const Word &word, std::size_t node) {
  std::uint8_t *here = left_.data() + word.firstLeft + node * (static_cast<std::size_t>(word.size) + 1);
  for (std::int32_t i = word.size - 1; i >= 0; --i) {
    here[i] = std::min(here[i], oneMore(here[i + 1]));
  }
}

bool VariantLattice::addWord(std::int32_t index, Characters characters) {
  const Word word = {index, static_cast<std::int32_t>(characters.size()), rows_.size(), left_.size()};
  const std::size_t stride = characters.size() + 1;
  if (stride > (mostTableBytes - left_.size()) / (2 * variants_.numNodes())) {
    return false;
  }
  for (const qoc_ocrDictionaryChar &character : characters) {
    rows_.push_back(matches_.row(character.code));
  }
  left_.resize(left_.size() + stride * variants_.numNodes());
  const auto last = static_cast<std::size_t>(numPositions_);
  for (std::size_t i = 0; i < stride; ++i) {
    left_[word.firstLeft + last * stride + i] =
        static_cast<std::uint8_t>(std::min<std::size_t>(stride - 1 - i, mostEdits));
  }
  for (std::int32_t p = numPositions_ - 1; p >= 0; --p) {
    const auto choices = variants_.choicesAt(p);
    for (std::size_t c = 0; c < choices.size(); ++c) {
      std::size_t target = static_cast<std::size_t>(p + choices[c].numRead);
      if (choices[c].numInserted == 2) {
        fillLeft(word, variants_.nodeWithin(p, c), target, variants_.symbolOf(p, c, 1), true);
        target = variants_.nodeWithin(p, c);
        closeLeft(word, target);
      }
      fillLeft(word, static_cast<std::size_t>(p), target, variants_.symbolOf(p, c, 0), c == 0);
    }
    closeLeft(word, static_cast<std::size_t>(p));
  }
  if (left_[word.firstLeft] > maxEdits_) {
    left_.resize(word.firstLeft);
    rows_.resize(word.firstRow);
  } else {
    words_.push_back(word);
  }
  return true;
}

/// @return whether the walk visits any variant
bool VariantLattice::begin(std::int32_t edits) {
  walkedEdits_ = edits;
  if (visitsAll_) {
    words_.clear();
  }
  active_.clear();
  cells_.clear();
  steps_.clear();
  for (std::size_t w = 0; w < words_.size(); ++w) {
    active_.push_back({w, cells_.size()});
    for (std::int32_t i = 0; i <= words_[w].size; ++i) {
      cells_.push_back(static_cast<std::uint8_t>(std::min<std::int32_t>(i, mostEdits)));
    }
  }
  frames_.assign(1, {0, 0, 0, true, 0, active_.size(), 0});
  return visitsAll_ ||
         std::ranges::any_of(words_, [&](const Word &word) { return left_[word.firstLeft] <= walkedEdits_; });
}

void VariantLattice::leave() {
  active_.resize(frames_.back().firstActive);
  cells_.resize(frames_.back().firstCell);
  frames_.pop_back();
  if (!steps_.empty()) {
    steps_.pop_back();
  }
}

/// The row of a word's edits behind one more symbol.
void VariantLattice::step(const Word &word, const std::uint8_t *from, std::size_t symbol, std::uint8_t *to) const {
  to[0] = oneMore(from[0]);
  for (std::int32_t i = 1; i <= word.size; ++i) {
    const std::uint8_t diagonal = isMatch(word, i - 1, symbol) ? from[i - 1] : oneMore(from[i - 1]);
    to[i] = std::min({diagonal, oneMore(from[i]), oneMore(to[i - 1])});
  }
}

/// Takes the next choice of the last beginning. @return whether the longer beginning is that of a variant to be
/// visited; else it is not taken
bool VariantLattice::enter(std::int32_t &position, std::int32_t &length) {
  Frame &before = frames_.back();
  const std::size_t choiceIndex = before.nextChoice++;
  const ExpansionChoice &choice = variants_.choicesAt(before.position)[choiceIndex];
  const std::int32_t numSymbols = ReadingVariants::numSymbolsOf(choice);
  position = before.position + choice.numRead;
  length = before.length + numSymbols;
  Frame next = {position, length, 0, before.isFirst && choiceIndex == 0, active_.size(), 0, cells_.size()};
  bool isWithin = visitsAll_;
  for (std::size_t a = before.firstActive; a < before.firstActive + before.numActive; ++a) {
    const Active active = active_[a];
    const Word &word = words_[active.word];
    const std::size_t stride = static_cast<std::size_t>(word.size) + 1;
    const std::size_t row = cells_.size();
    cells_.resize(row + stride * static_cast<std::size_t>(numSymbols));
    std::size_t from = active.row;
    std::size_t to = row + stride * static_cast<std::size_t>(numSymbols - 1);  // Of two rows the last stays, in front.
    for (std::int32_t i = 0; i < numSymbols; ++i) {
      step(word, cells_.data() + from, variants_.symbolOf(before.position, choiceIndex, i), cells_.data() + to);
      from = to;
      to = row;
    }
    cells_.resize(row + stride);
    const std::uint8_t *cells = cells_.data() + row;
    const std::uint8_t *left = left_.data() + word.firstLeft + static_cast<std::size_t>(position) * stride;
    int least = mostEdits;
    for (std::size_t i = 0; i < stride; ++i) {
      least = std::min(least, cells[i] + left[i]);
    }
    isWithin = isWithin || least <= walkedEdits_;
    if (least <= maxEdits_) {
      active_.push_back({active.word, row});
    } else {
      cells_.resize(row);
    }
  }
  next.numActive = active_.size() - next.firstActive;
  if (!isWithin) {
    active_.resize(next.firstActive);
    cells_.resize(next.firstCell);
    return false;
  }
  steps_.push_back({before.position, choiceIndex});
  frames_.push_back(next);
  return true;
}

void VariantLattice::collect(const Frame &frame) {
  near_.clear();
  for (std::size_t a = frame.firstActive; a < frame.firstActive + frame.numActive; ++a) {
    near_.push_back(words_[active_[a].word].index);
  }
}

}  // namespace qoc
