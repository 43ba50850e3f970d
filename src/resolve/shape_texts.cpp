// The texts of results of fieldings and expressions, best first.

#include "resolve/shape_texts.hpp"

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"
#include "resolve/text_search.hpp"

namespace qoc {

namespace {

/// Whether all choices of the lattice are texts as they stand.
bool hasPlainTexts(const Lattice &lattice) {
  return lattice.checks.empty() &&
         std::none_of(lattice.slots.begin(), lattice.slots.end(), [](const Slot &slot) { return slot.isOpen; });
}

/// A text of a lattice, without its characters.
Text textOf(const Lattice &lattice, Cost cost) {
  Text text;
  text.cost = cost;
  text.mode = lattice.mode;
  text.result = lattice.result;
  text.choices.reserve(lattice.slots.size());
  text.inputs.reserve(lattice.slots.size());
  for (const Slot &slot : lattice.slots) text.inputs.push_back(slot.input);
  return text;
}

}  // namespace

qsys_status ShapeTexts::takeSet() { return add(task_.results, 0, noWay); }

/// Makes the lattices of results that may have texts within the limit.
qsys_status ShapeTexts::add(std::span<const qoc_ocrDictionaryResult> results, std::int32_t entry, Cost limit) {
  for (std::size_t i = 0; i < results.size(); ++i) {
    QOC_TRY(qsys_attention_check());
    const qoc_ocrDictionaryResult &result = results[i];
    const bool isKnown = task_.knowledge == nullptr || task_.knowledge->has(result.mode, entry);
    if (result.mode == qoc_ocrDictionaryMode_lexicon || result.isComputed == 0 || !isKnown) {
      continue;
    }
    Lattice lattice;
    lattice.entry = entry;
    if (results.data() == task_.results.data()) lattice.result = static_cast<std::int32_t>(i);
    if (!makeLattice(result, task_.costs, limit, lattice)) {
      continue;
    }
    for (const qoc_ocrDictionaryEntryCheck &check : viewAs<qoc_ocrDictionaryEntryCheck>(task_.rules.checks)) {
      if (check.mode == lattice.mode && check.entry == entry) lattice.checks.push_back(&check.rule);
    }
    std::vector<Lattice> parts = withExtrasPaid(std::move(lattice), task_.costs);
    for (Lattice &part : parts) lattices_.push_back(std::move(part));
  }
  return QSYS_STATUS_OK;
}

bool ShapeTexts::isComplete() {
  if (texts_.empty() || texts_.front().mode == qoc_ocrDictionaryMode_lexicon || lattices_.empty() || !task_.isPlain()) {
    return false;
  }
  const Cost limit = task_.limitBehind(texts_.front().cost);
  ReadingCosts &costs = task_.costs;
  const Lattice &lattice = lattices_.front();
  const auto n = static_cast<std::size_t>(costs.size());
  if (limit >= noWay - 1 || lattice.numEdits != 0 || lattice.slots.size() != n ||
      task_.paramsWithin(limit).maxEdits != 0) {
    return false;
  }
  costs.show(limit);
  for (std::size_t i = 0; i < n; ++i) {
    const Slot &slot = lattice.slots[i];
    if (slot.input != static_cast<std::int32_t>(i) || slot.isOpen) {
      return false;
    }
    for (const Choice &choice : costs.choices(slot.input)) {
      const bool isShown = std::any_of(slot.choices.begin(), slot.choices.end(),
                                       [&](const Choice &shown) { return shown.code == choice.code; });
      if (choice.cost <= limit && !isShown && task_.knowledge->admits(i, choice.code)) {
        return false;
      }
    }
  }
  return true;
}

qsys_status ShapeTexts::matchAgain(Cost best) {
  const Knowledge &knowledge = *task_.knowledge;
  const Cost limit = task_.limitBehind(best);
  const bool isLimited = limit < noWay - 1;
  if (isLimited) task_.costs.show(limit);
  const qoc_ocrDictionaryRunParams params = isLimited ? paramsWithin(limit) : task_.paramsWithin(limit);
  lattices_.clear();
  // Of the reading what is near enough is matched; the lattices tell what it costs.
  HeldReading near;
  const bool isNarrowed = isLimited && task_.swaps.isEmpty();
  if (isNarrowed) QOC_TRY(task_.costs.write(limit, *near.get()));
  const auto matchAll = [&](qoc_ocrDictionaryMode mode, std::int32_t numEntries) -> qsys_status {
    for (std::int32_t entry = 0; entry < numEntries; ++entry) {
      QOC_TRY(qsys_attention_check());
      HeldResults matched;
      QOC_TRY(knowledge.match(mode, entry, isNarrowed ? *near.get() : task_.reading, params,
                              isNarrowed ? nullptr : task_.set, *matched.get()));
      QOC_TRY(add(viewAs<qoc_ocrDictionaryResult>(matched->results), entry, limit));
    }
    return QSYS_STATUS_OK;
  };
  QOC_TRY(matchAll(qoc_ocrDictionaryMode_fielding, knowledge.fieldings->core.size));
  return matchAll(qoc_ocrDictionaryMode_regularExpression, knowledge.expressions->core.size);
}

qsys_status ShapeTexts::collect(Cost known) {
  if (task_.numWanted == 2 && std::all_of(lattices_.begin(), lattices_.end(), hasPlainTexts)) {
    return collectPlain();
  }
  Cost least = texts_.best();
  for (Lattice &lattice : lattices_) {
    lattice.prepare();
    if (!task_.isChecked) lattice.dropChecks();
    least = std::min(least, lattice.least());
  }
  // Texts far behind are many, and seldom matter: only where no near one will do they are gone through.
  const TextList before = texts_;
  const Cost most = std::min(task_.limitFrom(least), task_.limitBehind(known));
  Cost width = known < noWay ? most - least : std::max<Cost>(task_.greatestMargin(), 1);
  for (Cost limit = std::min(most, least + width);; limit = std::min(most, least + width)) {
    std::size_t numTaken = 0;
    texts_ = before;
    QOC_TRY(search(limit, numTaken));
    const Cost needed = texts_.empty() ? most : std::min(most, task_.limitBehind(texts_.best()));
    if (limit >= needed || numTaken >= task_.numWanted) {
      return QSYS_STATUS_OK;
    }
    width = texts_.empty() ? 4 * width : needed - least;
  }
}

/// Adds the best texts that cost no more than `most`.
qsys_status ShapeTexts::search(Cost most, std::size_t &numTaken) {
  const auto take = [&](const FoundText &found, bool &goesOn, Cost &maxCost) -> qsys_status {
    const Lattice &lattice = lattices_[found.lattice];
    Text text = textOf(lattice, found.cost);
    for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
      text.choices.push_back(lattice.slots[i].choices[static_cast<std::size_t>(found.choices[i])]);
    }
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
      if (lattice.slots[i].isOpen) open.push_back(i);
    }
    bool isDescribed = true;
    QOC_TRY(fill(lattice.entry, open, text, isDescribed));
    task_.check(text, lattice.entry);
    if (isDescribed && task_.admits(text) && texts_.add(std::move(text))) {
      ++numTaken;
    }
    goesOn = numTaken < task_.numWanted;
    // Behind the texts that are wanted the next one matters only for the margin, and only before free text.
    if (!texts_.empty() && task_.rules.maxTexts == 1) maxCost = std::min(maxCost, task_.limitBehind(texts_.best()));
    if (numTaken + 1 >= task_.numWanted) maxCost = std::min(maxCost, task_.freeText);
    return QSYS_STATUS_OK;
  };
  return searchTexts(
      lattices_, task_.numWanted, most, [&](Lattice &lattice) { return open(lattice); }, take);
}

/// The best two texts of each lattice, among which are the best two of all: without checks the best one takes the first
/// choice everywhere, and the next one differs where the second costs least more.
qsys_status ShapeTexts::collectPlain() {
  for (const Lattice &lattice : lattices_) {
    QOC_TRY(qsys_attention_check());
    Text best = textOf(lattice, lattice.base);
    const Slot *next = nullptr;
    const auto lead = [](const Slot &slot) { return slot.choices[1].cost - slot.choices[0].cost; };
    for (const Slot &slot : lattice.slots) {
      best.choices.push_back(slot.choices[0]);
      best.cost += slot.choices[0].cost;
      if (slot.choices.size() > 1 && (next == nullptr || lead(slot) < lead(*next))) next = &slot;
    }
    if (next != nullptr) {
      Text second = best;
      second.choices[static_cast<std::size_t>(next - lattice.slots.data())] = next->choices[1];
      second.cost += lead(*next);
      texts_.add(std::move(second));
    }
    texts_.add(std::move(best));
  }
  return QSYS_STATUS_OK;
}

/// Puts what the entry admits in the place of a lattice's open slots, for its checks to choose from.
qsys_status ShapeTexts::open(Lattice &lattice) const {
  if (task_.knowledge == nullptr || lattice.carried.empty()) {
    return QSYS_STATUS_OK;
  }
  for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
    Slot &slot = lattice.slots[i];
    if (!slot.isOpen || !slot.tried.empty()) {
      continue;
    }
    const auto tried = task_.knowledge->tried(lattice.mode, lattice.entry);
    CodesByPlace codes;
    for (const Slot &other : lattice.slots) {
      codes.emplace_back();
      for (const Choice &choice : other.choices) codes.back().push_back(choice.code);
      if (other.isOpen) codes.back().assign(tried.begin(), tried.end());
    }
    std::vector<Char32> admitted;
    QOC_TRY(task_.knowledge->findAdmitted(lattice.mode, lattice.entry, codes, i, admitted));
    slot.tried.swap(slot.choices);
    const Choice unknown = slot.tried[0];
    for (const Char32 code : admitted) slot.choices.push_back({code, unknown.cost, unknown.candidate, unknown.score});
  }
  return QSYS_STATUS_OK;
}

/// Lists what may stand in a text at every place: at those that are open, and not known by now, everything that is
/// tried.
void ShapeTexts::listCodes(const Text &text, std::int32_t entry, std::span<const std::size_t> open) {
  codes_.resize(text.choices.size());
  for (std::size_t i = 0; i < codes_.size(); ++i) codes_[i].assign(1, text.choices[i].code);
  const auto tried = task_.knowledge->tried(text.mode, entry);
  for (const std::size_t i : open) {
    if (text.choices[i].code == QOC_RESOLVER_OPEN) codes_[i].assign(tried.begin(), tried.end());
  }
}

/// Finds out the characters of a text that an edit has left open, as far as the entry admits one only.
/// @param open the places
/// @param isDescribed false where the entry does not describe the text at all
qsys_status ShapeTexts::fill(std::int32_t entry, const std::vector<std::size_t> &open, Text &text, bool &isDescribed) {
  isDescribed = true;
  if (open.empty()) {
    return QSYS_STATUS_OK;
  }
  if (task_.knowledge != nullptr) listCodes(text, entry, open);
  for (const std::size_t i : open) {
    if (task_.knowledge != nullptr) {
      QOC_TRY(task_.knowledge->findAdmitted(text.mode, entry, codes_, i, admitted_));
      isDescribed = isDescribed && !admitted_.empty();
      if (admitted_.size() == 1) {
        text.choices[i].code = admitted_[0];
        continue;
      }
    }
    if (text.choices[i].code == QOC_RESOLVER_OPEN) ++text.numOpen;
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
