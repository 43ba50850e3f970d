// What a reading loses by being taken for a text.

#include "resolve/reading_costs.hpp"

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"
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
    if (confusion.read < numPlain) isRead_.set(confusion.read);
    haveMissing_ = haveMissing_ || confusion.read == QOC_CHAR_EMPTY;
    if (confusion.read != QOC_CHAR_EMPTY && confusion.meant != QOC_CHAR_EMPTY) {
      leastSwap_ = std::min(leastSwap_, confusion.swapPenalty);
    }
  }
  std::sort(entries_.begin(), entries_.end(),
            [](const Entry &a, const Entry &b) { return a.key != b.key ? a.key < b.key : a.place < b.place; });
}

const qoc_ocrDictionaryConfusion *Confusions::findAny(Char32 read, Char32 meant) const {
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
    : penalties_(rules, confusions, hasScores(viewAs<qoc_ocrDictionaryCharMulti>(reading.positions))), set_(set) {
  const auto positions = viewAs<qoc_ocrDictionaryCharMulti>(reading.positions);
  positions_.reserve(positions.size());
  for (const qoc_ocrDictionaryCharMulti &multi : positions)
    addPosition(viewAs<qoc_ocrDictionaryChar>(multi.candidates));
}

void ReadingCosts::addPosition(std::span<const qoc_ocrDictionaryChar> candidates) {
  Position &position = positions_.emplace_back();
  position.candidates = candidates;
  if (!candidates.empty()) {
    position.firstScore = candidates[0].score;
    position.firstCode = candidates[0].code;
    const Cost cap = penalties_.rules().leadCap;
    position.lead =
        candidates.size() < 2 ? cap : std::clamp<Cost>(Cost{candidates[0].score} - candidates[1].score, 0, cap);
  }
  position.extra = penalties_.extra(position.firstCode, position.firstScore);
  sumOfFirst_ += position.firstScore;
}

Choice ReadingCosts::candidate(std::int32_t index, std::size_t k) const {
  const Position &position = at(index);
  const qoc_ocrDictionaryChar &candidate = position.candidates[k];
  const Cost gap = std::max<Cost>(position.firstScore - candidate.score, 0);
  const Cost cost = gap + (k > 0 ? penalties_.listed(position.firstCode, candidate.code, gap) : 0) +
                    (k > 1 ? penalties_.rules().laterPenalty : 0);
  return {candidate.code, cost, static_cast<std::int32_t>(k), static_cast<std::int32_t>(position.firstScore - gap)};
}

void ReadingCosts::show(Cost limit) {
  if (limit <= shown_) {
    return;
  }
  shown_ = limit;
  choices_.clear();
  choices_.reserve(positions_.size() * 4);
  for (std::int32_t i = 0; i < size(); ++i) list(positions_[static_cast<std::size_t>(i)], i);
  table_.clear();
}

void ReadingCosts::list(Position &position, std::int32_t index) {
  position.begin = choices_.size();
  position.any = noWay;
  for (std::size_t k = 0; k < position.candidates.size(); ++k) {
    const Char32 code = position.candidates[k].code;
    if (code == QOC_CHAR_EMPTY || position.firstScore - position.candidates[k].score > shown_) {
      continue;
    }
    const Choice choice = candidate(index, k);
    if (choice.cost > shown_) {
      continue;
    }
    if (code == QOC_CHAR_ANY) position.any = std::min(position.any, choice.cost);
    choices_.push_back(choice);
    if (set_ == nullptr || choice.cost + penalties_.leastSwapped() > shown_) {
      continue;
    }
    forEachEquivalent(set_, code, [&](Char32 equivalent) {
      const Cost cost = choice.cost + penalties_.swapped(code, equivalent);
      if (cost <= shown_) choices_.push_back({equivalent, cost, choice.candidate, choice.score});
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
}

void ReadingCosts::makeTable() {
  if (!table_.empty()) {
    return;
  }
  table_.resize(positions_.size());
  isShown_.assign(positions_.size(), {});
  for (std::size_t i = 0; i < positions_.size(); ++i) {
    std::uint8_t number = 0;  // Choices are in the order of their codes.
    for (const Choice &choice : choices(static_cast<std::int32_t>(i))) {
      if (choice.code >= tableWidth) {
        break;
      }
      table_[i][choice.code] = ++number;
    }
    const auto mark = [&](Char32 code) {
      if (code < tableWidth) isShown_[i][code / 64] |= std::uint64_t{1} << (code % 64);
    };
    for (const qoc_ocrDictionaryChar &candidate : positions_[i].candidates) {
      mark(candidate.code);
      forEachEquivalent(set_, candidate.code, mark);
      if (candidate.code == QOC_CHAR_ANY) isShown_[i].fill(~std::uint64_t{0});
    }
  }
}

bool ReadingCosts::find(std::int32_t index, Char32 code, Choice &choice) const {
  if (code == QOC_CHAR_EMPTY) {
    return false;
  }
  const Position &position = at(index);
  choice = {code, noWay, -1, 0};
  Choice any = choice;  // As what a wildcard shows.
  for (std::size_t k = 0; k < position.candidates.size(); ++k) {
    const Char32 shown = position.candidates[k].code;
    if (position.firstScore - position.candidates[k].score >= choice.cost ||
        (shown != code && (code == QOC_CHAR_ANY || !isMatch(set_, shown, code)))) {
      continue;
    }
    Choice found = candidate(index, k);
    found.code = code;
    if (shown != code && shown != QOC_CHAR_ANY) found.cost += penalties_.swapped(shown, code);
    Choice &best = shown != code && shown == QOC_CHAR_ANY ? any : choice;
    if (found.cost < best.cost) best = found;
  }
  if (choice.cost >= noWay) choice = any;
  if (choice.cost >= noWay && code == QOC_CHAR_ANY && position.firstCode != QOC_CHAR_EMPTY) {
    choice = {code, 0, 0,
              static_cast<std::int32_t>(position.firstScore)};  // Every first candidate is the word's wildcard.
  }
  return choice.cost < noWay;
}

qsys_status ReadingCosts::write(Cost limit, qoc_ocrDictionaryStringMulti &reading) const {
  QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&reading.positions, size()));
  std::vector<Choice> near;
  std::vector<qoc_ocrDictionaryChar> characters;
  std::int32_t index = 0;
  for (qoc_ocrDictionaryCharMulti &position : editAs<qoc_ocrDictionaryCharMulti>(reading.positions)) {
    near.clear();
    characters.clear();
    for (const Choice &choice : choices(index++)) {
      if (choice.cost <= limit) near.push_back(choice);
    }
    std::sort(near.begin(), near.end(), [](const Choice &a, const Choice &b) {
      return a.cost != b.cost             ? a.cost < b.cost
             : a.candidate != b.candidate ? a.candidate < b.candidate
                                          : a.code < b.code;
    });
    for (const Choice &choice : near) characters.push_back({choice.code, choice.score});
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position.candidates, characters.data(),
                                                             static_cast<std::int32_t>(characters.size())));
  }
  return QSYS_STATUS_OK;
}

Cost ReadingCosts::matchAny(std::int32_t position, Char32 code) const {
  Choice choice;
  return find(position, code, choice) ? choice.cost : noWay;
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
