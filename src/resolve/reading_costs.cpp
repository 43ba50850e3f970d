// What a reading loses by being taken for a text.

#include "resolve/reading_costs.hpp"

#include "platform/containers/view.hpp"
#include "swap/equivalents.hpp"

namespace qoc {

namespace {

std::uint64_t keyOf(Char32 read, Char32 meant) { return static_cast<std::uint64_t>(read) << 32 | meant; }

bool hasScores(std::span<const qoc_ocrDictionaryCharMulti> positions) {
  return std::any_of(positions.begin(), positions.end(), [](const qoc_ocrDictionaryCharMulti &multi) {
    const auto candidates = viewAs<qoc_ocrDictionaryChar>(multi.candidates);
    return std::any_of(candidates.begin(), candidates.end(),
                       [](const qoc_ocrDictionaryChar &candidate) { return candidate.score != 0; });
  });
}

}  // namespace

Confusions::Confusions(const qoc_ocrDictionaryResolverRules &rules) {
  for (const qoc_ocrDictionaryConfusion &confusion : viewAs<qoc_ocrDictionaryConfusion>(rules.confusions)) {
    entries_.push_back({keyOf(confusion.read, confusion.meant), entries_.size(), confusion});
    haveMissing_ = haveMissing_ || confusion.read == QOC_CHAR_EMPTY;
  }
  std::sort(entries_.begin(), entries_.end(),
            [](const Entry &a, const Entry &b) { return a.key != b.key ? a.key < b.key : a.place < b.place; });
}

const qoc_ocrDictionaryConfusion *Confusions::find(Char32 read, Char32 meant) const {
  const std::uint64_t key = keyOf(read, meant);
  const auto found = std::lower_bound(entries_.begin(), entries_.end(), key,
                                      [](const Entry &entry, std::uint64_t other) { return entry.key < other; });
  return found != entries_.end() && found->key == key ? &found->confusion : nullptr;
}

Cost Penalties::listed(Char32 first, Char32 meant, Cost gap) const {
  const auto *confusion = confusions_.find(first, meant);
  return difference_ + std::min<Cost>(gap, confusion != nullptr ? confusion->listedPenalty : rules_.alternativePenalty);
}

Cost Penalties::swapped(Char32 read, Char32 meant) const {
  const auto *confusion = confusions_.find(read, meant);
  return difference_ + (confusion != nullptr ? confusion->swapPenalty : rules_.swapPenalty);
}

Cost Penalties::extra(Char32 read, Cost score) const {
  const auto *confusion = confusions_.find(read, QOC_CHAR_EMPTY);
  return difference_ +
         (confusion != nullptr ? Cost{confusion->swapPenalty} : std::max<Cost>(score + rules_.extraPenalty, 0));
}

Cost Penalties::leastMissing() const {
  Cost least = rules_.missingPenalty;
  for (const qoc_ocrDictionaryConfusion &confusion : viewAs<qoc_ocrDictionaryConfusion>(rules_.confusions)) {
    if (confusion.read == QOC_CHAR_EMPTY) least = std::min<Cost>(least, confusion.swapPenalty);
  }
  return difference_ + least;
}

ReadingCosts::ReadingCosts(const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryResolverRules &rules,
                           const Confusions &confusions, const qoc_swapCharSet *set)
    : penalties_(rules, confusions, hasScores(viewAs<qoc_ocrDictionaryCharMulti>(reading.positions))) {
  const auto positions = viewAs<qoc_ocrDictionaryCharMulti>(reading.positions);
  positions_.reserve(positions.size());
  choices_.reserve(positions.size() * 12);
  for (const qoc_ocrDictionaryCharMulti &multi : positions) {
    addPosition(multi, set);
    sumOfFirst_ += positions_.back().firstScore;
  }
}

void ReadingCosts::addPosition(const qoc_ocrDictionaryCharMulti &multi, const qoc_swapCharSet *set) {
  const auto candidates = viewAs<qoc_ocrDictionaryChar>(multi.candidates);
  const qoc_ocrDictionaryResolverRules &rules = penalties_.rules();
  Position position;
  if (!candidates.empty()) {
    position.firstScore = candidates[0].score;
    position.firstCode = candidates[0].code;
    const Cost cap = rules.leadCap;
    position.lead =
        candidates.size() < 2 ? cap : std::clamp<Cost>(Cost{candidates[0].score} - candidates[1].score, 0, cap);
  }
  position.begin = choices_.size();
  for (std::size_t k = 0; k < candidates.size(); ++k) {
    const qoc_ocrDictionaryChar &candidate = candidates[k];
    if (candidate.code == QOC_CHAR_EMPTY) {
      continue;
    }
    const Cost gap = std::max<Cost>(position.firstScore - candidate.score, 0);
    const Cost cost = gap + (k > 0 ? penalties_.listed(position.firstCode, candidate.code, gap) : 0) +
                      (k > 1 ? rules.laterPenalty : 0);
    const Choice choice = {candidate.code, cost, static_cast<std::int32_t>(k),
                           static_cast<std::int32_t>(position.firstScore - gap)};
    if (candidate.code == QOC_CHAR_ANY && cost < position.any.cost) {
      position.any = choice;
    }
    choices_.push_back(choice);
    forEachEquivalent(set, candidate.code, [&](Char32 equivalent) {
      choices_.push_back(
          {equivalent, cost + penalties_.swapped(candidate.code, equivalent), choice.candidate, choice.score});
    });
  }
  // The cheapest way of each character stays; of equal ones that of the earlier candidate.
  const auto begin = choices_.begin() + static_cast<std::ptrdiff_t>(position.begin);
  std::sort(begin, choices_.end(), [](const Choice &a, const Choice &b) {
    return a.code != b.code ? a.code < b.code : a.cost != b.cost ? a.cost < b.cost : a.candidate < b.candidate;
  });
  choices_.erase(std::unique(begin, choices_.end(), [](const Choice &a, const Choice &b) { return a.code == b.code; }),
                 choices_.end());
  position.size = choices_.size() - position.begin;
  position.extra = penalties_.extra(position.firstCode, position.firstScore);
  positions_.push_back(position);
}

void ReadingCosts::makeTable() {
  if (!table_.empty()) {
    return;
  }
  table_.resize(positions_.size() * tableWidth);
  for (std::size_t i = 0; i < positions_.size(); ++i) {
    Cost *row = table_.data() + i * tableWidth;
    std::fill_n(row, tableWidth, positions_[i].any.cost);
    for (const Choice &choice : choices(static_cast<std::int32_t>(i))) {
      if (choice.code < tableWidth) row[choice.code] = choice.cost;
    }
  }
}

bool ReadingCosts::find(std::int32_t position, Char32 code, Choice &choice) const {
  const std::span<const Choice> shown = choices(position);
  const auto found =
      std::lower_bound(shown.begin(), shown.end(), code, [](const Choice &a, Char32 b) { return a.code < b; });
  if (found != shown.end() && found->code == code) {
    choice = *found;
  } else if (code == QOC_CHAR_ANY && at(position).firstCode != QOC_CHAR_EMPTY) {
    choice = {code, 0, 0, static_cast<std::int32_t>(firstScore(position))};
  } else {
    choice = at(position).any;
    choice.code = code;
  }
  return choice.cost < noWay && code != QOC_CHAR_EMPTY;
}

Cost ReadingCosts::matchAny(std::int32_t position, Char32 code) const {
  Choice choice;
  return code != QOC_CHAR_EMPTY && find(position, code, choice) ? choice.cost : noWay;
}

Cost ReadingCosts::extra(std::int32_t position, Char32 before, Char32 behind) const {
  const Cost cost = at(position).extra;
  const Cost doubled = penalties_.doubled();
  return cost <= doubled || !(shows(position, before) || shows(position, behind)) ? cost : doubled;
}

Cost ReadingCosts::freeText(const qoc_ocrDictionaryFreeText &freeText) const {
  if (!penalties_.hasScores()) {
    return noWay;
  }
  Cost cost = freeText.base;
  for (const Position &position : positions_) {
    cost += freeText.perCharacter + std::min<Cost>(position.lead * freeText.leadPercent / 100, INT32_MAX);
  }
  return cost;
}

}  // namespace qoc
