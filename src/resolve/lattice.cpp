// From a result to the texts that it stands for.

#include "resolve/lattice.hpp"

#include <algorithm>
#include <numeric>
#include <optional>

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"

namespace qoc {

namespace {

/// The slots that a rule counts, or nothing where that depends on the choice.
std::optional<std::vector<std::int32_t>> countedSlots(const Lattice &lattice, const qoc_checkDigitRule &rule) {
  std::vector<std::int32_t> counted;
  for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
    const auto &choices = lattice.slots[i].choices;
    const auto numIgnored = std::count_if(choices.begin(), choices.end(),
                                          [&](const Choice &choice) { return isIgnored(rule, choice.code); });
    if (numIgnored == 0) {
      counted.push_back(static_cast<std::int32_t>(i));
    } else if (static_cast<std::size_t>(numIgnored) != choices.size()) {
      return std::nullopt;
    }
  }
  return counted;
}

/// The slots that a rule reads, in its order, each once; empty where it cannot be carried along.
std::vector<std::int32_t> slotsOf(Lattice &lattice, const qoc_checkDigitRule &rule) {
  const auto counted = countedSlots(lattice, rule);
  if (!counted) {
    return {};
  }
  auto sequence = checkedPositions(rule, static_cast<std::int32_t>(counted->size()));
  if (!sequence || !takesLength(rule.method, static_cast<std::int32_t>(sequence->size()))) {
    lattice.isHopeless = true;
    return {};
  }
  std::vector<bool> isSeen(lattice.slots.size(), false);
  for (std::int32_t &position : *sequence) {
    position = (*counted)[static_cast<std::size_t>(position)];
    if (isSeen[static_cast<std::size_t>(position)]) {
      return {};
    }
    isSeen[static_cast<std::size_t>(position)] = true;
  }
  return *sequence;
}

/// What a multi-character swap has put in: nothing, one of two characters for one, one character for two.
enum class Swap { none, oneOfPair, ofPair };

/// Walks over a result's positions and says which position of the reading each comes from.
class InputWalk {
 public:
  InputWalk(const qoc_ocrDictionaryResult &result, std::int32_t size)
      : indices_(viewAs<std::int32_t>(result.inputIndices)), size_(size), isExpanded_(!indices_.empty()) {
    const std::int32_t variantSize = isExpanded_ ? static_cast<std::int32_t>(indices_.size()) : size;
    isDeleted_.assign(static_cast<std::size_t>(variantSize), false);
    for (const std::int32_t index : viewAs<std::int32_t>(result.deleted)) {
      if (index >= 0 && index < variantSize) isDeleted_[static_cast<std::size_t>(index)] = true;
    }
    at_ = std::clamp(result.numIgnoredPrefixCharacters, 0, variantSize);
  }

  /// The next position of the reading, or -1 where there is none left.
  std::int32_t next() {
    while (isInside(at_) && isDeleted_[static_cast<std::size_t>(at_)]) ++at_;
    const std::int32_t at = at_++;
    return isInside(at) ? inputOf(at) : -1;
  }
  /// How the position that `next` gave last, and that there was, came in, as far as its place tells.
  Swap swap() const {
    const std::int32_t at = at_ - 1;
    if (!isExpanded_) return Swap::none;
    const std::int32_t input = inputOf(at);
    if ((isInside(at - 1) && inputOf(at - 1) == input) || (isInside(at + 1) && inputOf(at + 1) == input)) {
      return Swap::oneOfPair;
    }
    return (isInside(at + 1) ? inputOf(at + 1) : size_) == input + 2 ? Swap::ofPair : Swap::none;
  }

 private:
  bool isInside(std::int32_t at) const { return at >= 0 && static_cast<std::size_t>(at) < isDeleted_.size(); }
  std::int32_t inputOf(std::int32_t at) const {
    const std::int32_t input = isExpanded_ ? indices_[static_cast<std::size_t>(at)] : at;
    return input >= 0 && input < size_ ? input : -1;
  }

  std::span<const std::int32_t> indices_;
  std::int32_t size_, at_ = 0;
  bool isExpanded_;
  std::vector<bool> isDeleted_;
};

/// What a result has at a position; nothing where it is too short.
std::span<const qoc_ocrDictionaryChar> charactersAt(std::span<const qoc_ocrDictionaryCharMulti> positions,
                                                    std::size_t at) {
  return at < positions.size() ? viewAs<qoc_ocrDictionaryChar>(positions[at].candidates)
                               : std::span<const qoc_ocrDictionaryChar>();
}

/// Whether what a shape admits at a position leaves one character.
bool isOneCharacter(std::span<const qoc_ocrDictionaryChar> admitted) {
  return admitted.size() == 1 && admitted[0].code != QOC_CHAR_ANY && admitted[0].code != QOC_CHAR_ANY_NONSPACE &&
         admitted[0].code != QOC_CHAR_EMPTY;
}

/// A slot that an edit leaves open, or fills with the one character that its shape admits.
void fillEdited(Slot &slot, std::span<const qoc_ocrDictionaryChar> admitted, const ReadingCosts &costs) {
  const bool isKnown = isOneCharacter(admitted);
  slot.isOpen = !isKnown;
  const Char32 code = isKnown ? admitted[0].code : QOC_RESOLVER_OPEN;
  const Cost cost = slot.input >= 0 ? costs.substituted(slot.input) : costs.penalties().missing(code);
  slot.choices = {{code, cost, -1, 0}};
}

/// A slot whose character the reading shows: every candidate that the result leaves there.
void fillShown(Slot &slot, std::span<const qoc_ocrDictionaryChar> valid, bool isSwappedIn, const ReadingCosts &costs) {
  for (const qoc_ocrDictionaryChar &character : valid) {
    if (character.code == QOC_CHAR_EMPTY) {
      continue;
    }
    Choice choice;
    if (isSwappedIn || !costs.find(slot.input, character.code, choice)) {
      // A multi-character swap: the two characters that it concerns bear its penalty together.
      choice = {character.code, costs.penalties().swappedTogether() / 2, -1,
                static_cast<std::int32_t>(costs.firstScore(slot.input))};
    }
    if (choice.code == QOC_CHAR_ANY) {
      slot.isOpen = true;
      choice.code = QOC_RESOLVER_OPEN;
    }
    const auto same = std::find_if(slot.choices.begin(), slot.choices.end(),
                                   [&](const Choice &other) { return other.code == choice.code; });
    if (same == slot.choices.end()) {
      slot.choices.push_back(choice);
    } else if (choice.cost < same->cost) {
      *same = choice;
    }
  }
  // By insertion: choices of equal cost keep their order, and nothing is allocated.
  for (auto next = slot.choices.begin(); next != slot.choices.end(); ++next) {
    const auto place = std::upper_bound(slot.choices.begin(), next, next->cost,
                                        [](Cost cost, const Choice &choice) { return cost < choice.cost; });
    std::rotate(place, next, next + 1);
  }
}

/// Adds up what the reading's positions that the result passes over cost, but for extra ones, which are noted.
/// @param isSwallowed by position: it went with the one before into one character, and keeps its score
void passOver(const ReadingCosts &costs, const std::vector<bool> &isSwallowed, std::int32_t prefix, std::int32_t suffix,
              Lattice &lattice) {
  const std::int32_t n = costs.size();
  std::vector<bool> isUsed(static_cast<std::size_t>(n), false);
  for (const Slot &slot : lattice.slots) {
    if (slot.input >= 0) isUsed[static_cast<std::size_t>(slot.input)] = true;
  }
  for (std::int32_t i = 0; i < n; ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (isUsed[at]) continue;
    if (i < prefix || i >= n - suffix) {
      lattice.base += std::max<Cost>(costs.firstScore(i), 0);
    } else if (isSwallowed[at]) {
      lattice.base += costs.penalties().swappedTogether() / 2;
    } else {
      lattice.extras.push_back(i);
    }
  }
}

/// What the edits of a result cost at least.
Cost costOfEdits(const qoc_ocrDictionaryResult &result, std::span<const qoc_ocrDictionaryPositionStatus> statuses,
                 const ReadingCosts &costs) {
  Cost cost = 0;
  InputWalk walk(result, costs.size());
  for (const qoc_ocrDictionaryPositionStatus status : statuses) {
    const bool isInserted = status == qoc_ocrDictionaryPositionStatus_inserted;
    const std::int32_t input = isInserted ? -1 : walk.next();
    if (isEdited(status)) cost += input >= 0 ? costs.substituted(input) : costs.penalties().leastMissing();
  }
  for (const std::int32_t deleted : viewAs<std::int32_t>(result.deleted)) {
    if (result.inputIndices.core.size == 0 && deleted >= 0 && deleted < costs.size()) cost += costs.leastExtra(deleted);
  }
  return cost;
}

}  // namespace

bool makeLattice(const qoc_ocrDictionaryResult &result, const ReadingCosts &costs, Cost limit, Lattice &lattice) {
  lattice.mode = result.mode;
  lattice.numEdits = result.numEdits;
  const auto statuses = viewAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus);
  const auto valid = viewAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
  Cost least = result.numEdits > 0 ? costOfEdits(result, statuses, costs) : 0;
  InputWalk walk(result, costs.size());
  std::vector<bool> isSwallowed(static_cast<std::size_t>(costs.size()), false);
  lattice.slots.reserve(statuses.size());
  for (std::size_t r = 0; r < statuses.size(); ++r) {
    const auto characters = charactersAt(valid, r);
    Slot slot;
    const bool isInserted = statuses[r] == qoc_ocrDictionaryPositionStatus_inserted;
    slot.input = isInserted ? -1 : walk.next();
    if (!isInserted && slot.input < 0) {
      return false;
    }
    if (isEdited(statuses[r])) {
      fillEdited(slot, characters, costs);
    } else {
      const Swap swap = walk.swap();
      fillShown(slot, characters, swap != Swap::none, costs);
      if (swap == Swap::ofPair) isSwallowed[static_cast<std::size_t>(slot.input) + 1] = true;
    }
    if (slot.choices.empty()) {
      return false;
    }
    if (!isEdited(statuses[r])) least += slot.choices[0].cost;
    if (least > limit) {
      return false;
    }
    lattice.slots.push_back(std::move(slot));
  }
  passOver(costs, isSwallowed, result.numIgnoredPrefixCharacters, std::max(result.numIgnoredSuffixCharacters, 0),
           lattice);
  return true;
}

bool isShownBy(const qoc_ocrDictionaryResult &result, std::int32_t size, const Text &text) {
  const auto statuses = viewAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus);
  const auto valid = viewAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
  if (result.isComputed == 0 || statuses.size() != text.choices.size()) {
    return false;
  }
  InputWalk walk(result, size);
  for (std::size_t r = 0; r < statuses.size(); ++r) {
    const std::int32_t input = statuses[r] == qoc_ocrDictionaryPositionStatus_inserted ? -1 : walk.next();
    const auto characters = charactersAt(valid, r);
    const bool isOpen = isEdited(statuses[r]) && !isOneCharacter(characters);
    const bool isThere =
        isOpen || std::any_of(characters.begin(), characters.end(), [&](const qoc_ocrDictionaryChar &character) {
          return character.code == QOC_CHAR_ANY ||
                 (character.code != QOC_CHAR_EMPTY && character.code == text.choices[r].code);
        });
    if (!isThere || input != text.inputs[r]) {
      return false;
    }
  }
  return true;
}

std::vector<Lattice> withExtrasPaid(Lattice lattice, const ReadingCosts &costs) {
  constexpr std::size_t most = 27;  // Each extra position can make three of one.
  const std::vector<std::int32_t> extras = std::move(lattice.extras);
  std::vector<Lattice> parts, before;
  parts.push_back(std::move(lattice));
  for (const std::int32_t extra : extras) {
    before.swap(parts);
    parts.clear();
    for (Lattice &part : before) {
      Slot *beside[2] = {};
      for (Slot &slot : part.slots) {
        if (slot.input >= 0 && slot.input == extra - 1) beside[0] = &slot;
        if (slot.input == extra + 1) beside[1] = &slot;
      }
      const auto isShown = [&](const Choice &choice) { return costs.shows(extra, choice.code); };
      const Cost least = costs.leastExtra(extra);
      Cost cost = costs.extra(extra, QOC_CHAR_EMPTY, QOC_CHAR_EMPTY);
      for (Slot *slot : beside) {
        if (slot == nullptr || cost == least) {
          continue;
        }
        std::vector<Choice> &choices = slot->choices;
        const auto numShown = static_cast<std::size_t>(std::count_if(choices.begin(), choices.end(), isShown));
        if (numShown == choices.size() || (before.size() >= most && isShown(choices[0]))) {
          cost = least;
        } else if (numShown > 0 && before.size() < most) {
          std::vector<Choice> others;
          std::remove_copy_if(choices.begin(), choices.end(), std::back_inserter(others), isShown);
          std::erase_if(choices, [&](const Choice &choice) { return !isShown(choice); });
          parts.push_back(part);
          parts.back().base += least;
          choices.swap(others);
        }
      }
      part.base += cost;
      parts.push_back(std::move(part));
    }
  }
  return parts;
}

void Lattice::dropChecks() {
  carried.clear();
  startState = 0;
  isHopeless = false;
}

void Lattice::carryChecks() {
  std::vector<std::int32_t> place(slots.size());
  const auto setPlaces = [&] {
    for (std::size_t i = 0; i < order.size(); ++i)
      place[static_cast<std::size_t>(order[i])] = static_cast<std::int32_t>(i);
  };
  setPlaces();
  std::uint64_t radix = 1;
  bool isOrdered = false;
  for (const qoc_checkDigitRule *rule : checks) {
    const std::vector<std::int32_t> sequence = slotsOf(*this, *rule);
    if (sequence.empty()) {
      continue;
    }
    const auto isInOrder = [&] {
      return std::is_sorted(sequence.begin(), sequence.end(), [&](std::int32_t a, std::int32_t b) {
        return place[static_cast<std::size_t>(a)] < place[static_cast<std::size_t>(b)];
      });
    };
    if (!isInOrder() && !isOrdered) {
      // The first rule that needs it has the order: its slots, then the others.
      std::vector<bool> isTaken(slots.size(), false);
      for (const std::int32_t slot : sequence) isTaken[static_cast<std::size_t>(slot)] = true;
      std::vector<std::int32_t> others;
      std::copy_if(order.begin(), order.end(), std::back_inserter(others),
                   [&](std::int32_t slot) { return !isTaken[static_cast<std::size_t>(slot)]; });
      order = sequence;
      order.insert(order.end(), others.begin(), others.end());
      setPlaces();
    }
    isOrdered = true;
    const auto automaton = CheckAutomaton::make(rule->method, static_cast<std::int32_t>(sequence.size()));
    const bool fits = automaton && radix < (std::uint64_t{1} << 52);
    if (!isInOrder() || !fits) {
      continue;  // Such a rule is asked of whole texts.
    }
    CarriedCheck check = {*automaton, std::vector<std::int32_t>(order.size(), -1), radix};
    for (std::size_t i = 0; i < sequence.size(); ++i) {
      check.positions[static_cast<std::size_t>(place[static_cast<std::size_t>(sequence[i])])] =
          static_cast<std::int32_t>(i);
    }
    startState += radix * static_cast<std::uint64_t>(automaton->start());
    radix *= static_cast<std::uint64_t>(automaton->numStates());
    carried.push_back(std::move(check));
  }
}

void Lattice::prepare() {
  for (Slot &slot : slots) {
    if (slot.isOpen && !slot.tried.empty()) {
      slot.choices.swap(slot.tried);
      slot.tried.clear();
    }
  }
  order.resize(slots.size());
  std::iota(order.begin(), order.end(), 0);
  carried.clear();
  startState = 0;
  isHopeless = false;
  carryChecks();
  remaining.assign(slots.size() + 1, 0);
  for (std::size_t i = slots.size(); i-- > 0;) {
    remaining[i] = remaining[i + 1] + slots[static_cast<std::size_t>(order[i])].choices[0].cost;
  }
}

bool Lattice::step(std::uint64_t &state, std::int32_t place, Char32 code) const {
  for (const CarriedCheck &check : carried) {
    const std::int32_t position = check.positions[static_cast<std::size_t>(place)];
    if (position < 0) {
      continue;
    }
    const auto numStates = static_cast<std::uint64_t>(check.automaton.numStates());
    const auto before = static_cast<std::int32_t>(state / check.radix % numStates);
    const std::int32_t after = check.automaton.step(before, position, code);
    if (after < 0) {
      return false;
    }
    state += check.radix * static_cast<std::uint64_t>(after) - check.radix * static_cast<std::uint64_t>(before);
  }
  return true;
}

bool Lattice::accepts(std::uint64_t state) const {
  return std::all_of(carried.begin(), carried.end(), [&](const CarriedCheck &check) {
    return check.automaton.accepts(
        static_cast<std::int32_t>(state / check.radix % static_cast<std::uint64_t>(check.automaton.numStates())));
  });
}

}  // namespace qoc
