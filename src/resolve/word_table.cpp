// Words under weighted edits: the alignment of Wagner and Fischer (1974) with costs of its own for every position of
// the reading.

#include "resolve/word_table.hpp"

#include <algorithm>

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"

namespace qoc {

namespace {

/// From this many edits on they are not counted in the table, which would grow with them.
constexpr std::int32_t maxCountedEdits = 12;

/// So many rows are kept from the first one on, and from then on two of so many.
constexpr std::size_t rowsPerBlock = 128;

}  // namespace

MultiSwaps multiSwapsOf(const qoc_swapCharSet *set) {
  MultiSwaps swaps;
  if (set != nullptr) {
    const auto oneToTwo = viewAs<qoc_stringExpandOneToTwo_>(set->expansion->oneToTwo);
    const auto twoToTwo = viewAs<qoc_stringExpandTwoToTwo_>(set->expansion->twoToTwo);
    swaps.oneToTwo.assign(oneToTwo.begin(), oneToTwo.end());
    swaps.twoToTwo.assign(twoToTwo.begin(), twoToTwo.end());
  }
  return swaps;
}

Reach Reach::of(const qoc_ocrDictionaryRunParams &params) {
  return {std::max(params.maxEdits, 0), params.matchOption1 != 0, params.matchOption2 != 0, params.matchOption4 != 0,
          params.matchOption9 != 0,     params.minStringLength,   params.maxStringLength};
}

bool Reach::countsEdits() const { return maxEdits <= maxCountedEdits; }

WordTable::WordTable(const ReadingCosts &costs, const Reach &reach, const MultiSwaps &swaps)
    : costs_(costs),
      reach_(reach),
      swaps_(swaps),
      countsEdits_(reach.countsEdits()),
      numEdits_(countsEdits_ ? reach.maxEdits : 0),
      band_(reach.isWindow || !swaps.isEmpty() ? INT32_MAX : reach.maxEdits) {
  suffix_.assign(static_cast<std::size_t>(costs.size()) + 1, 0);
  for (std::int32_t i = costs.size(); i-- > 0;) {
    suffix_[static_cast<std::size_t>(i)] =
        suffix_[static_cast<std::size_t>(i) + 1] + std::max<Cost>(costs.firstScore(i), 0);
  }
  fillFirstRow();
}

bool WordTable::canReach(std::size_t length) const {
  const auto difference = static_cast<std::int64_t>(length) - costs_.size();
  return (difference < 0 ? -difference : difference) <= band_;
}

std::int32_t WordTable::first(std::size_t depth) const {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(static_cast<std::int64_t>(depth) - band_, 0, costs_.size()));
}

std::int32_t WordTable::last(std::size_t depth) const {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(static_cast<std::int64_t>(depth) + band_, 0, costs_.size()));
}

void WordTable::addRow(std::size_t depth) {
  // Of an earlier word nothing is kept further down.
  if (rows_.size() <= depth || depth >= rowsPerBlock) rows_.resize(depth + 1);
  if (rows_[depth].costs.empty()) rows_[depth].costs.swap(spare_);
  const auto width = static_cast<std::size_t>(last(depth) - first(depth)) + 1;
  rows_[depth].costs.assign(width * (static_cast<std::size_t>(numEdits_) + 1), noWay);
  rows_[depth].firstLive = costs_.size() + 1;
  rows_[depth].lastLive = -1;
}

/// Drops a row unless others are made from it again.
void WordTable::dropRow(std::size_t depth) {
  if (depth >= rowsPerBlock && (depth + 1) % rowsPerBlock > 1) {
    spare_ = std::move(rows_[depth].costs);
    rows_[depth].costs.clear();
  }
}

std::size_t WordTable::resumable(std::size_t depth) const {
  while (depth > 0 && !(isKept(depth) && isKept(depth - 1))) --depth;
  return depth;
}

Cost &WordTable::cell(std::size_t depth, std::int32_t input, std::int32_t edits) {
  return rows_[depth].costs[static_cast<std::size_t>(input - first(depth)) * (static_cast<std::size_t>(numEdits_) + 1) +
                            static_cast<std::size_t>(edits)];
}

Cost WordTable::at(std::size_t depth, std::int32_t input, std::int32_t edits) const {
  const bool isInside = input >= first(depth) && input <= last(depth);
  return isInside ? const_cast<WordTable *>(this)->cell(depth, input, edits) : noWay;
}

void WordTable::fillFirstRow() {
  addRow(0);
  cell(0, 0, 0) = 0;
  if (reach_.isWindow) {
    Cost ignored = 0;
    for (std::int32_t i = 0; i < costs_.size(); ++i) {
      ignored += std::max<Cost>(costs_.firstScore(i), 0);
      cell(0, i + 1, 0) = ignored;
    }
  }
  rows_[0].firstLive = 0;
  rows_[0].lastLive = reach_.isWindow ? costs_.size() : 0;
  relax({}, 0, noWay - 1);
}

/// Calls visit(step) for every step that ends at the position and the prefix of `depth` characters.
template <class Visit>
void WordTable::forEachStep(std::span<const Char32> word, std::size_t depth, std::int32_t input, Visit &&visit) const {
  const bool mayEdit = reach_.maxEdits > 0;
  const Cost swapPenalty = costs_.penalties().swappedTogether();
  const Char32 last = depth > 0 ? word[depth - 1] : QOC_CHAR_EMPTY;
  if (depth > 0 && input > 0) {
    if (const Cost shown = costs_.match(input - 1, last); shown < noWay) {
      visit(Step{1, 1, 0, shown, true});
      if (input > 1 && mayEdit && reach_.allowsExtra) {
        visit(Step{2, 1, 1, shown + costs_.extra(input - 2, QOC_CHAR_EMPTY, last), true});
      }
    }
    if (mayEdit && reach_.allowsSubstitution) visit(Step{1, 1, 1, costs_.substituted(input - 1), false});
  }
  if (depth > 0 && mayEdit && reach_.allowsMissing) visit(Step{0, 1, 1, costs_.penalties().missing(last), false});
  if (input > 0 && mayEdit && reach_.allowsExtra) {
    // Only the character before it is known here: rows are shared by words that go on differently.
    visit(Step{1, 0, 1, costs_.extra(input - 1, last, QOC_CHAR_EMPTY), false});
  }
  if (depth > 0 && input > 1) {
    for (const qoc_stringExpandOneToTwo_ &swap : swaps_.oneToTwo) {
      if (swap.single == last && costs_.shows(input - 2, swap.pairFirst) && costs_.shows(input - 1, swap.pairSecond)) {
        visit(Step{2, 1, 0, swapPenalty, false});
      }
    }
  }
  if (depth > 1 && input > 0) {
    for (const qoc_stringExpandOneToTwo_ &swap : swaps_.oneToTwo) {
      if (swap.pairFirst == word[depth - 2] && swap.pairSecond == last && costs_.shows(input - 1, swap.single)) {
        visit(Step{1, 2, 0, swapPenalty, false});
      }
    }
  }
  if (depth > 1 && input > 1) {
    for (const qoc_stringExpandTwoToTwo_ &swap : swaps_.twoToTwo) {
      if (swap.toFirst == word[depth - 2] && swap.toSecond == last && costs_.shows(input - 2, swap.fromFirst) &&
          costs_.shows(input - 1, swap.fromSecond)) {
        visit(Step{2, 2, 0, swapPenalty, false});
      }
    }
  }
}

Cost WordTable::relax(std::span<const Char32> word, std::size_t depth, Cost limit) {
  Cost least = noWay;
  Row &row = rows_[depth];
  // Only what the rows above reach can go on: at most two positions further, and from there by extra characters.
  std::int32_t begin = row.firstLive, end = row.lastLive;
  for (std::size_t above = 1; above <= (swaps_.isEmpty() ? 1u : 2u) && above <= depth; ++above) {
    begin = std::min(begin, rows_[depth - above].firstLive);
    if (rows_[depth - above].lastLive >= 0) end = std::max(end, rows_[depth - above].lastLive + 2);
  }
  const bool isPlain = countsEdits_ && swaps_.isEmpty() && depth > 0;
  const std::int32_t lowest = std::max(begin, first(depth));
  for (std::int32_t i = lowest; i <= std::min(std::max(end, row.lastLive + 1), last(depth)); ++i) {
    if (isPlain) {
      takePlainSteps(word[depth - 1], depth, i, limit);
    } else {
      forEachStep(word, depth, i, [&](const Step &step) {
        const std::size_t from = depth - static_cast<std::size_t>(step.characters);
        const std::int32_t counted = countsEdits_ ? step.edits : 0;
        for (std::int32_t e = counted; e <= numEdits_; ++e) {
          const Cost before = at(from, i - step.inputs, e - counted);
          Cost &here = cell(depth, i, e);
          if (before < noWay && before + step.cost < here && before + step.cost <= limit) here = before + step.cost;
        }
      });
    }
    for (std::int32_t e = 0; e <= numEdits_; ++e) {
      const Cost here = cell(depth, i, e);
      if (here >= noWay) continue;
      least = std::min(least, here);
      row.firstLive = std::min(row.firstLive, i);
      row.lastLive = i;
    }
  }
  return least;
}

/// The steps of forEachStep where every edit is counted and nothing is swapped together, for all numbers of edits.
void WordTable::takePlainSteps(Char32 code, std::size_t depth, std::int32_t input, Cost limit) {
  const auto cells = [&](std::size_t row, std::int32_t i) -> Cost * {
    return i >= first(row) && i <= last(row) ? &cell(row, i, 0) : nullptr;
  };
  Cost *here = cells(depth, input);
  const auto take = [&](const Cost *from, Cost cost, std::int32_t edits) {
    if (from == nullptr || cost >= noWay) return;
    for (std::int32_t e = edits; e <= numEdits_; ++e) {
      const Cost reached = from[e - edits] + cost;  // Beyond the limit where there is no way.
      if (reached < here[e] && reached <= limit) here[e] = reached;
    }
  };
  const bool allowsExtra = numEdits_ > 0 && reach_.allowsExtra;
  if (input > 0) {
    const Cost *diagonal = cells(depth - 1, input - 1);
    const Cost shown = costs_.match(input - 1, code);
    take(diagonal, shown, 0);
    if (numEdits_ > 0 && reach_.allowsSubstitution) take(diagonal, costs_.substituted(input - 1), 1);
    if (allowsExtra && input > 1 && shown < noWay) {
      take(cells(depth - 1, input - 2), shown + costs_.extra(input - 2, QOC_CHAR_EMPTY, code), 1);
    }
  }
  if (numEdits_ > 0 && reach_.allowsMissing) take(cells(depth - 1, input), costs_.penalties().missing(code), 1);
  if (allowsExtra && input > 0) take(cells(depth, input - 1), costs_.extra(input - 1, code, QOC_CHAR_EMPTY), 1);
}

Cost WordTable::addFilledRow(std::span<const Char32> word, std::size_t depth, Cost limit) {
  addRow(depth);
  return relax(word, depth, limit);
}

Cost WordTable::extend(std::span<const Char32> word, std::size_t depth, Cost limit) {
  const Cost least = addFilledRow(word, depth + 1, limit);
  // The next row is made from this one and the one before it.
  if (depth > 0) dropRow(depth - 1);
  return least;
}

Cost WordTable::suffixCost(std::int32_t input) const {
  return input == costs_.size() ? 0 : reach_.isWindow ? suffix_[static_cast<std::size_t>(input)] : noWay;
}

void WordTable::fill(std::span<const Char32> word, Cost limit, WorkMeter &meter) {
  for (std::size_t depth = 0; depth < word.size(); ++depth) {
    meter.spend(8 + 8 * width());
    extend(word, depth, limit);
  }
}

/// Makes the two rows before a row again, and those between them and the rows that are kept.
void WordTable::remake(std::span<const Char32> word, std::size_t depth, Cost limit, WorkMeter &meter) {
  Row last = std::move(rows_[depth]);
  rows_.resize(depth);
  for (std::size_t next = resumable(depth - 1) + 1; next < depth; ++next) {
    meter.spend(8 + 8 * width());
    addFilledRow(word, next, limit);
  }
  rows_.push_back(std::move(last));
}

Cost WordTable::cost(std::span<const Char32> word, std::size_t depth) const {
  if (!reach_.admitsLength(word.size())) {
    return noWay;
  }
  Cost least = noWay;
  for (std::int32_t i = first(depth); i <= last(depth); ++i) {
    for (std::int32_t e = 0; e <= numEdits_; ++e) {
      if (at(depth, i, e) < noWay && suffixCost(i) < noWay) least = std::min(least, at(depth, i, e) + suffixCost(i));
    }
  }
  return least;
}

WordTrace WordTable::trace(std::span<const Char32> word, Cost limit, WorkMeter &meter) {
  WordTrace trace;
  trace.choices.resize(word.size());
  trace.inputs.assign(word.size(), -1);
  std::int32_t input = 0, edits = 0;
  Cost best = noWay;
  for (std::int32_t i = first(word.size()); i <= last(word.size()); ++i) {
    for (std::int32_t e = 0; e <= numEdits_; ++e) {
      const Cost here = at(word.size(), i, e), rest = suffixCost(i);
      if (here < noWay && rest < noWay && here + rest < best) {
        best = here + rest;
        input = i;
        edits = e;
      }
    }
  }
  std::size_t depth = word.size();
  while (depth > 0) {
    if (resumable(depth - 1) != depth - 1) remake(word, depth, limit, meter);
    Step taken = {0, 0, 0, 0, false};
    forEachStep(word, depth, input, [&](const Step &step) {
      const std::int32_t counted = countsEdits_ ? step.edits : 0;
      if (taken.inputs + taken.characters > 0 || counted > edits) return;
      const Cost before = at(depth - static_cast<std::size_t>(step.characters), input - step.inputs, edits - counted);
      if (before < noWay && before + step.cost == at(depth, input, edits)) taken = step;
    });
    // What a row has was reached by a step from a cell that it still has.
    if (QOC_NEVER(taken.inputs + taken.characters == 0)) break;
    for (std::int32_t c = 0; c < taken.characters; ++c) {
      const std::size_t k = depth - 1 - static_cast<std::size_t>(c);
      const std::int32_t from = taken.inputs > 0 ? input - 1 - std::min(c, taken.inputs - 1) : -1;
      Choice choice = {word[k], 0, -1, 0};
      trace.inputs[k] = from;
      if (taken.isShown) {
        costs_.find(from, word[k], choice);
      } else if (from >= 0 && taken.edits == 0) {  // A multi-character swap.
        choice.score = static_cast<std::int32_t>(costs_.firstScore(from));
      }
      trace.choices[k] = choice;
    }
    depth -= static_cast<std::size_t>(taken.characters);
    input -= taken.inputs;
    edits -= countsEdits_ ? taken.edits : 0;
  }
  return trace;
}

}  // namespace qoc
