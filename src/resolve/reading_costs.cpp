// What a reading loses by being taken for a text.

#include "resolve/reading_costs.hpp"

#include <algorithm>

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"

namespace qoc {

namespace {

std::uint64_t keyOf(Char32 read, Char32 meant) { return static_cast<std::uint64_t>(read) << 32 | meant; }

/// The equivalents of one character as a vector that lives as long as this.
class Equivalents {
 public:
  Equivalents() { status_ = qstd_vector_qoc_ocrDictionaryChar_constructEmpty(&list_); }
  Equivalents(const Equivalents &) = delete;
  Equivalents &operator=(const Equivalents &) = delete;
  ~Equivalents() {
    if (status_ >= 0) qstd_vector_qoc_ocrDictionaryChar_destruct(&list_);
  }
  qsys_status of(const qoc_swapCharSet *set, const qoc_ocrDictionaryChar &character) {
    QOC_TRY(status_);
    return qoc_swapCharSet_getEquivalentCharacters(set, &character, &list_);
  }
  std::span<const qoc_ocrDictionaryChar> list() const { return viewAs<qoc_ocrDictionaryChar>(list_); }

 private:
  qstd_vector_qoc_ocrDictionaryChar list_;
  qsys_status status_;
};

}  // namespace

Penalties::Penalties(const qoc_ocrDictionaryResolverRules &rules) : rules_(rules) {
  for (const qoc_ocrDictionaryConfusion &confusion : viewAs<qoc_ocrDictionaryConfusion>(rules.confusions)) {
    confusions_.try_emplace(keyOf(confusion.read, confusion.meant), &confusion);
  }
}

const qoc_ocrDictionaryConfusion *Penalties::find(Char32 read, Char32 meant) const {
  const auto found = confusions_.find(keyOf(read, meant));
  return found != confusions_.end() ? found->second : nullptr;
}

Cost Penalties::listed(Char32 first, Char32 meant) const {
  const auto *confusion = find(first, meant);
  return confusion != nullptr ? confusion->listedPenalty : rules_.alternativePenalty;
}

Cost Penalties::swapped(Char32 read, Char32 meant) const {
  const auto *confusion = find(read, meant);
  return confusion != nullptr ? confusion->swapPenalty : rules_.swapPenalty;
}

std::optional<Cost> Penalties::extra(Char32 read) const {
  const auto *confusion = find(read, QOC_CHAR_EMPTY);
  return confusion != nullptr ? std::optional<Cost>(confusion->swapPenalty) : std::nullopt;
}

Cost Penalties::missing(Char32 meant) const {
  const auto *confusion = find(QOC_CHAR_EMPTY, meant);
  return confusion != nullptr ? confusion->swapPenalty : rules_.missingPenalty;
}

ReadingCosts::ReadingCosts(const qoc_ocrDictionaryStringMulti &reading, const Penalties &penalties,
                           const qoc_swapCharSet *set)
    : penalties_(penalties) {
  const auto positions = viewAs<qoc_ocrDictionaryCharMulti>(reading.positions);
  positions_.reserve(positions.size());
  for (const qoc_ocrDictionaryCharMulti &multi : positions) {
    status_ = addPosition(multi, set);
    if (status_ < 0) {
      return;
    }
    sumOfFirst_ += positions_.back().firstScore;
  }
}

qsys_status ReadingCosts::addPosition(const qoc_ocrDictionaryCharMulti &multi, const qoc_swapCharSet *set) {
  const auto candidates = viewAs<qoc_ocrDictionaryChar>(multi.candidates);
  Position position;
  if (!candidates.empty()) {
    position.firstScore = candidates[0].score;
    position.firstCode = candidates[0].code;
    const Cost cap = penalties_.rules().leadCap;
    position.lead =
        candidates.size() < 2 ? cap : std::clamp<Cost>(Cost{candidates[0].score} - candidates[1].score, 0, cap);
  }
  Equivalents equivalents;
  std::vector<Choice> &choices = position.choices;
  for (std::size_t k = 0; k < candidates.size(); ++k) {
    const qoc_ocrDictionaryChar &candidate = candidates[k];
    if (candidate.code == QOC_CHAR_EMPTY) {
      continue;
    }
    const Cost gap = std::max<Cost>(position.firstScore - candidate.score, 0);
    const Cost cost = gap + (k > 0 ? penalties_.listed(position.firstCode, candidate.code) : 0) +
                      (k > 1 ? penalties_.rules().laterPenalty : 0);
    const Choice choice = {candidate.code, cost, static_cast<std::int32_t>(k),
                           static_cast<std::int32_t>(position.firstScore - gap)};
    if (candidate.code == QOC_CHAR_ANY && cost < position.any.cost) {
      position.any = choice;
    }
    choices.push_back(choice);
    if (set != nullptr) {
      QOC_TRY(equivalents.of(set, candidate));
      for (const qoc_ocrDictionaryChar &equivalent : equivalents.list()) {
        choices.push_back({equivalent.code, cost + penalties_.swapped(candidate.code, equivalent.code),
                           choice.candidate, choice.score});
      }
    }
  }
  // The cheapest way of each character stays; of equal ones that of the earlier candidate.
  std::sort(choices.begin(), choices.end(), [](const Choice &a, const Choice &b) {
    return a.code != b.code ? a.code < b.code : a.cost != b.cost ? a.cost < b.cost : a.candidate < b.candidate;
  });
  choices.erase(
      std::unique(choices.begin(), choices.end(), [](const Choice &a, const Choice &b) { return a.code == b.code; }),
      choices.end());
  const Cost ordinary = std::max<Cost>(position.firstScore + penalties_.rules().extraPenalty, 0);
  position.extra = penalties_.extra(position.firstCode).value_or(ordinary);
  position.plain.fill(position.any.cost);
  for (const Choice &choice : choices) {
    if (choice.code < position.plain.size()) position.plain[choice.code] = choice.cost;
  }
  positions_.push_back(std::move(position));
  return QSYS_STATUS_OK;
}

bool ReadingCosts::find(std::int32_t position, Char32 code, Choice &choice) const {
  const Position &at = positions_[static_cast<std::size_t>(position)];
  const auto found = std::lower_bound(at.choices.begin(), at.choices.end(), code,
                                      [](const Choice &a, Char32 b) { return a.code < b; });
  if (found != at.choices.end() && found->code == code) {
    choice = *found;
  } else if (code == QOC_CHAR_ANY && at.firstCode != QOC_CHAR_EMPTY) {
    choice = {code, 0, 0, static_cast<std::int32_t>(at.firstScore)};
  } else {
    choice = at.any;
    choice.code = code;
  }
  return choice.cost < noWay && code != QOC_CHAR_EMPTY;
}

Cost ReadingCosts::matchAny(std::int32_t position, Char32 code) const {
  Choice choice;
  return code != QOC_CHAR_EMPTY && find(position, code, choice) ? choice.cost : noWay;
}

Cost ReadingCosts::substituted(std::int32_t position) const {
  return std::max<Cost>(firstScore(position) + penalties_.rules().substitutedPenalty, 0);
}

Cost ReadingCosts::extra(std::int32_t position, Char32 before, Char32 behind) const {
  const Cost cost = positions_[static_cast<std::size_t>(position)].extra;
  const Cost doubled = penalties_.rules().doubledPenalty;
  return cost <= doubled || !(shows(position, before) || shows(position, behind)) ? cost : doubled;
}

Cost ReadingCosts::freeText(const qoc_ocrDictionaryFreeText &freeText) const {
  Cost cost = freeText.base;
  for (const Position &position : positions_) {
    cost += freeText.perCharacter + std::min<Cost>(position.lead * freeText.leadPercent / 100, INT32_MAX);
  }
  return cost;
}

}  // namespace qoc
