#pragma once
// A line fielding as an automaton of characters, in the form that expressions have (see states.hpp): its positions,
// each of which only the next one follows.

#include <type_traits>

#include "kinds/line_alignment.hpp"
#include "kinds/line_fielding_match.hpp"
#include "kinds/near_variants.hpp"
#include "platform/regex/states.hpp"

namespace qoc {

/// `SetType` is a word for up to 64 positions, or a WideSet.
template <class SetType>
class LineStates {
 public:
  using Set = SetType;

  explicit LineStates(std::int32_t numPositions) : numPositions_(numPositions) {
    if constexpr (!std::is_same_v<Set, std::uint64_t>) {
      none_ = Set(static_cast<std::size_t>(numPositions) / 64 + 1);
    }
    all_ = first_ = last_ = none_;
    for (std::int32_t p = 0; p < numPositions; ++p) {
      insert(all_, p);
    }
    if (numPositions > 0) {
      insert(first_, 0);
      insert(last_, numPositions - 1);
    }
  }

  std::int32_t numPositions() const noexcept { return numPositions_; }
  bool isNullable() const noexcept { return numPositions_ == 0; }
  const Set &none() const noexcept { return none_; }
  const Set &all() const noexcept { return all_; }
  const Set &first() const noexcept { return first_; }
  const Set &last() const noexcept { return last_; }
  Set followersOf(const Set &set) const { return movedUp(set) & all_; }
  Set predecessorsOf(const Set &set) const { return movedDown(set); }

  /// Says that the matcher has made a number of steps.
  qsys_status tick(std::size_t numSteps) {
    return meter_.add(numSteps * (4 + static_cast<std::size_t>(numPositions_) / 16));
  }
  WorkMeter &meter() noexcept { return meter_; }

 private:
  std::int32_t numPositions_;
  Set none_ = Set(), all_, first_, last_;
  WorkMeter meter_;
};

/// The symbols of a lattice, as NearVariants asks a line about them.
template <class SetType>
class LineSymbols {
 public:
  using States = LineStates<SetType>;

  /// `screen` is that of the lattice's symbols.
  LineSymbols(const qoc_ocrDictionaryLineFielding &line, const ReadingVariants &variants, LineScreen &screen)
      : line_(view(line)),
        screen_(screen),
        states_(static_cast<std::int32_t>(line_.size())),
        known_(static_cast<std::size_t>(sizeOf(variants.symbols()))),
        accepting_(known_.size(), states_.none()) {}

  States &states() noexcept { return states_; }

  qsys_status accepting(std::size_t symbol, const SetType *&set) {
    set = &accepting_[symbol];
    if (known_[symbol]) {
      return QSYS_STATUS_OK;
    }
    known_[symbol] = true;
    for (std::size_t p = 0; p < line_.size(); ++p) {
      if (screen_.mayAdmit(line_[p], symbol)) {
        insert(accepting_[symbol], static_cast<std::int32_t>(p));
      }
      QOC_TRY(states_.meter().add(1 + screen_.takeWork()));
    }
    return QSYS_STATUS_OK;
  }

  bool mayFail(std::size_t symbol) { return screen_.mayFail(symbol); }
  bool mayAnyFail() { return !screen_.isEveryCharacterText(); }

 private:
  std::span<const qoc_ocrDictionaryPositionFielding> line_;
  LineScreen &screen_;
  States states_;
  std::vector<bool> known_;
  std::vector<SetType> accepting_;
};

/// Whether every position of a line, but for one where an edit may stand for it, may admit some symbol of a reading's
/// variants: no more than that is asked, of all of them at once.
inline qsys_status mayFitSymbols(const qoc_ocrDictionaryLineFielding &line, LineScreen &screen, EditOptions edits,
                                 bool &answer) {
  answer = true;
  if (!screen.isEveryCharacterText()) {
    return QSYS_STATUS_OK;
  }
  int numSpared = edits.insertion || edits.substitution ? 1 : 0;
  WorkMeter meter;
  for (const qoc_ocrDictionaryPositionFielding &position : view(line)) {
    if (!screen.mayAdmitAny(position) && numSpared-- == 0) {
      answer = false;
      break;
    }
    QOC_TRY(meter.add(1 + screen.takeWork()));
  }
  return QSYS_STATUS_OK;
}

/// Goes through the variants of a reading that the line may fit, as forEachNearVariant; visit has the variants as its
/// first argument, for it may forbid edits.
template <class Visit, class Passed>
qsys_status forEachNearVariant(const qoc_ocrDictionaryLineFielding &line, LineVariants &lineVariants,
                               const qoc_ocrDictionaryRunParams *params, VariantPolls polls, Visit visit,
                               Passed passed) {
  QOC_TRY(lineVariants.expand());
  const ReadingVariants &variants = lineVariants.variants;
  const auto numPositions = static_cast<std::int32_t>(view(line).size());
  const MatchedLengths lengths = {numPositions, lengthPasses(params, numPositions) ? numPositions : -1};
  const EditOptions edits = editOptionsOf(params);
  const bool hasWindows = searchesWindows(params);
  bool mayFit = haveLengths(variants, lengths, edits, hasWindows);
  if (mayFit) {
    QOC_TRY(mayFitSymbols(line, *lineVariants.screen, edits, mayFit));
  }
  if (!mayFit) {
    QOC_TRY(variants.passOver(0, 0, polls));
    passed();
    return QSYS_STATUS_OK;
  }
  const auto walk = [&](auto &&symbols) {
    NearVariants near(variants, symbols, edits, lengths, hasWindows);
    return forEachNearVariant(
        variants, near, polls,
        [&](const auto &variant, const auto &indices, bool isFirst, bool &isDone) {
          return visit(near, variant, indices, isFirst, isDone);
        },
        passed);
  };
  return numPositions <= 64 ? walk(LineSymbols<std::uint64_t>(line, variants, *lineVariants.screen))
                            : walk(LineSymbols<WideSet>(line, variants, *lineVariants.screen));
}

}  // namespace qoc
