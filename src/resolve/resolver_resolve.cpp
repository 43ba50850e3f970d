// Resolving: the texts of the results and the words within reach, best first.

#include <algorithm>
#include <deque>
#include <optional>

#include "frame/frame.hpp"
#include "platform/containers/view.hpp"
#include "resolve/knowledge.hpp"
#include "resolve/text_search.hpp"

using namespace qoc;

namespace {

/// A text as it is collected.
struct Text {
  std::vector<Choice> choices;
  std::vector<std::int32_t> inputs;
  Cost cost = 0;
  qoc_ocrDictionaryMode mode = 0;
  const qoc_ocrDictionaryResult *result = nullptr;
  bool hasCheck = false, passesCheck = false;
  std::int32_t numOpen = 0;

  std::vector<Char32> codes() const {
    std::vector<Char32> codes;
    for (const Choice &choice : choices) codes.push_back(choice.code);
    return codes;
  }
};

bool isSameText(const Text &a, const Text &b) {
  return std::equal(a.choices.begin(), a.choices.end(), b.choices.begin(), b.choices.end(),
                    [](const Choice &x, const Choice &y) { return x.code == y.code; });
}

/// The characters that are tried where an edit leaves a position open.
constexpr Char32 firstTried = 0x20, lastTried = 0x7E;

std::int32_t clampTo32(Cost cost) { return static_cast<std::int32_t>(std::clamp<Cost>(cost, INT32_MIN, INT32_MAX)); }

/// Resolves one reading.
class Resolving {
 public:
  Resolving(const qoc_ocrDictionaryResolver &resolver, const Confusions &confusions,
            const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams &params,
            const qoc_swapCharSet *set, const qoc_ocrDictionaryResultSet &results)
      : rules_(resolver.rules),
        knowledge_(keptBy(resolver) != nullptr ? keptBy(resolver)->dictionary.get() : nullptr),
        reading_(reading),
        params_(params),
        set_(set),
        results_(viewAs<qoc_ocrDictionaryResult>(results.results)),
        isEmpty_(results.isComputed != 0 && results_.empty()),
        costs_(reading, resolver.rules, confusions, set),
        reach_(Reach::of(&params)),
        swaps_(multiSwapsOf(set)),
        freeText_(std::max(costs_.freeText(rules_.freeShape), costs_.freeText(rules_.freeWord))),
        numWanted_(static_cast<std::size_t>(resolver.rules.maxTexts) + 1) {}

  qsys_status run(qoc_ocrDictionaryResolution &resolution) {
    resolution.hasScores = costs_.penalties().hasScores() ? 1 : 0;
    if (isEmpty_) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(collectWords());
    const std::vector<Text> words = knowsMoreShapes() ? texts_ : std::vector<Text>();
    if (!needsChecksOfEntries()) {
      QOC_TRY(addLattices(results_, 0));
      QOC_TRY(collectShapes());
    }
    if (knowsMoreShapes() && !isComplete()) {
      const Cost best = texts_.empty() ? noWay : texts_.front().cost;
      texts_ = words;
      QOC_TRY(matchAgain(best));
      QOC_TRY(collectShapes());
    }
    if (texts_.empty() && hasChecks()) {
      isChecked_ = false;
      QOC_TRY(collectWords());
      QOC_TRY(collectShapes());
    }
    return write(resolution);
  }

 private:
  bool hasChecks() const { return rules_.checks.core.size > 0; }

  /// Whether a text passes the checks of its entry, as far as it has any.
  void check(Text &text, std::int32_t entry) const {
    text.passesCheck = true;
    for (const qoc_ocrDictionaryEntryCheck &check : viewAs<qoc_ocrDictionaryEntryCheck>(rules_.checks)) {
      if (check.mode == text.mode && check.entry == entry) {
        text.hasCheck = true;
        text.passesCheck = text.passesCheck && passes(check.rule, text.codes());
      }
    }
    text.passesCheck = text.passesCheck && text.hasCheck;
  }

  // What matters --------------------------------------------------------------------------------------------------

  Cost greatestMargin() const { return std::max(rules_.maxMargin, rules_.minMargin); }

  /// The greatest cost of a text that matters, where the best one so far has this cost.
  Cost limitBehind(Cost best) const {
    if (best >= noWay) {
      return noWay - 1;
    }
    if (rules_.maxTexts > 1) {
      return costs_.penalties().hasScores() ? best + rules_.maxLag : noWay - 1;
    }
    if (!costs_.penalties().hasScores()) {  // Texts with as many differences.
      return best - best % differenceCost + differenceCost - 1;
    }
    return std::max(best, std::min(best + greatestMargin(), freeText_));
  }

  /// Whether a fielding or an expression may have results that the set does not show: those of equal rank that another
  /// entry has are not in it.
  bool knowsMoreShapes() const {
    return knowledge_ != nullptr && knowledge_->numShapes() > 0 &&
           (params_.returnBestOnly != 0 || knowledge_->numShapes() > 1 || knowledge_->words.size() > 0);
  }
  /// Whether it takes the entry to know a result's checks; the results do not tell it.
  bool needsChecksOfEntries() const { return hasChecks() && knowledge_ != nullptr && knowledge_->numShapes() > 1; }

  /// Whether what edits a text takes can be told from its cost: not where it may be a part of the reading, several
  /// characters may be swapped together, or lengths bind, which they do without edits only.
  bool tellsEdits() const {
    return reach_.maxEdits > 0 && !reach_.isWindow && swaps_.isEmpty() && reach_.minLength <= 1 &&
           reach_.maxLength == INT32_MAX;
  }

  /// What an alignment may do and still cost this much at most.
  Reach reachWithin(Cost limit) const {
    Reach reach = reach_;
    if (!tellsEdits()) {
      return reach;
    }
    Cost substituted = noWay, extra = noWay;
    for (std::int32_t i = 0; i < costs_.size(); ++i) {
      substituted = std::min(substituted, costs_.substituted(i));
      extra = std::min(extra, costs_.leastExtra(i));
    }
    reach.allowsSubstitution = reach.allowsSubstitution && substituted <= limit;
    reach.allowsMissing = reach.allowsMissing && costs_.penalties().leastMissing() <= limit;
    reach.allowsExtra = reach.allowsExtra && extra <= limit;
    if (!reach.allowsEdits()) reach.maxEdits = 0;
    return reach;
  }

  /// The kinds of edits with which a text of a fielding or an expression can cost this much at most.
  qoc_ocrDictionaryRunParams paramsWithin(Cost limit) const {
    qoc_ocrDictionaryRunParams params = params_;
    params.returnBestOnly = 0;
    if (!tellsEdits()) {
      return params;
    }
    const Reach reach = reachWithin(limit);
    const std::int64_t n = costs_.size();
    params.matchOption1 = reach.allowsSubstitution && knowledge_->admitsLength(n) ? 1 : 0;
    params.matchOption2 = reach.allowsMissing && knowledge_->admitsLength(n + 1) ? 1 : 0;
    params.matchOption4 = reach.allowsExtra && knowledge_->admitsLength(n - 1) ? 1 : 0;
    if (params.matchOption1 == 0 && params.matchOption2 == 0 && params.matchOption4 == 0) params.maxEdits = 0;
    return params;
  }

  /// Whether the lattices at hand have every text that matters: where the best one takes no edit, none with an edit is
  /// near, and whatever else the reading shows is too far off.
  bool isComplete() const {
    if (texts_.empty() || texts_.front().mode == qoc_ocrDictionaryMode_lexicon || lattices_.empty() ||
        reach_.isWindow || !swaps_.isEmpty()) {
      return false;
    }
    const Cost limit = limitBehind(texts_.front().cost);
    const Lattice &lattice = lattices_.front();
    const auto n = static_cast<std::size_t>(costs_.size());
    if (limit >= noWay - 1 || lattice.result->numEdits != 0 || lattice.slots.size() != n ||
        paramsWithin(limit).maxEdits != 0) {
      return false;
    }
    for (std::size_t i = 0; i < n; ++i) {
      const Slot &slot = lattice.slots[i];
      if (slot.input != static_cast<std::int32_t>(i) || slot.isOpen) {
        return false;
      }
      for (const Choice &choice : costs_.choices(slot.input)) {
        const bool isShown = std::any_of(slot.choices.begin(), slot.choices.end(),
                                         [&](const Choice &shown) { return shown.code == choice.code; });
        if (choice.cost <= limit && !isShown && knowledge_->admits(i, choice.code)) {
          return false;
        }
      }
    }
    return true;
  }

  // Lattices --------------------------------------------------------------------------------------------------------

  qsys_status addLattices(std::span<const qoc_ocrDictionaryResult> results, std::int32_t entry) {
    for (const qoc_ocrDictionaryResult &result : results) {
      QOC_TRY(qsys_attention_check());
      if (result.mode == qoc_ocrDictionaryMode_lexicon || result.isComputed == 0) {
        continue;
      }
      Lattice lattice;
      bool isPossible = false;
      lattice.entry = entry;
      QOC_TRY(makeLattice(result, costs_, lattice, isPossible));
      if (!isPossible) {
        continue;
      }
      for (const qoc_ocrDictionaryEntryCheck &check : viewAs<qoc_ocrDictionaryEntryCheck>(rules_.checks)) {
        if (check.mode == lattice.mode && check.entry == entry) lattice.checks.push_back(&check.rule);
      }
      lattices_.push_back(std::move(lattice));
    }
    return QSYS_STATUS_OK;
  }

  /// Replaces the lattices by those of every entry for itself, as far as they matter beside a text of that cost.
  qsys_status matchAgain(Cost best) {
    const qoc_ocrDictionaryRunParams params = paramsWithin(limitBehind(best));
    lattices_.clear();
    const auto matchAll = [&](qoc_ocrDictionaryMode mode, std::int32_t numEntries) -> qsys_status {
      for (std::int32_t entry = 0; entry < numEntries; ++entry) {
        QOC_TRY(qsys_attention_check());
        HeldResults &matched = matched_.emplace_back();
        QOC_TRY(matched.status());
        QOC_TRY(knowledge_->match(mode, entry, reading_, params, set_, *matched.get()));
        QOC_TRY(addLattices(viewAs<qoc_ocrDictionaryResult>(matched->results), entry));
      }
      return QSYS_STATUS_OK;
    };
    QOC_TRY(matchAll(qoc_ocrDictionaryMode_fielding, knowledge_->fieldings->core.size));
    return matchAll(qoc_ocrDictionaryMode_regularExpression, knowledge_->expressions->core.size);
  }

  // Open positions --------------------------------------------------------------------------------------------------

  /// The characters that the entry admits at a slot, given what may stand at the others. Sets isAny where it admits too
  /// many to tell.
  qsys_status findAdmitted(const Lattice &lattice, std::size_t slot, const std::vector<std::vector<Char32>> &codes,
                           std::vector<Char32> &admitted) {
    admitted.clear();
    HeldReading reading;
    QOC_TRY(reading.status());
    auto *positions = &reading->positions;
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(positions, static_cast<std::int32_t>(codes.size())));
    qoc_ocrDictionaryCharMulti *position = nullptr;
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_getBegin(positions, &position));
    std::vector<qoc_ocrDictionaryChar> characters;
    for (const std::vector<Char32> &here : codes) {
      characters.clear();
      for (const Char32 code : here) characters.push_back({code, 0});
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position++->candidates, characters.data(),
                                                               static_cast<std::int32_t>(characters.size())));
    }
    qoc_ocrDictionaryRunParams exact = {};
    QOC_TRY(qoc_ocrDictionaryRunParams_construct(&exact));
    exact.returnBestOnly = 0;
    HeldResults matched;
    QOC_TRY(matched.status());
    QOC_TRY(knowledge_->match(lattice.mode, lattice.entry, *reading.get(), exact, nullptr, *matched.get()));
    for (const qoc_ocrDictionaryResult &result : viewAs<qoc_ocrDictionaryResult>(matched->results)) {
      const auto valid = viewAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
      if (slot >= valid.size()) {
        continue;
      }
      for (const qoc_ocrDictionaryChar &character : viewAs<qoc_ocrDictionaryChar>(valid[slot].candidates)) {
        if (std::find(admitted.begin(), admitted.end(), character.code) == admitted.end()) {
          admitted.push_back(character.code);
        }
      }
    }
    std::sort(admitted.begin(), admitted.end());
    return QSYS_STATUS_OK;
  }

  static std::vector<Char32> allTried() {
    std::vector<Char32> codes;
    for (Char32 code = firstTried; code <= lastTried; ++code) codes.push_back(code);
    return codes;
  }

  /// Puts what the entry admits in the place of a lattice's open slots, for its checks to choose from.
  qsys_status open(Lattice &lattice) {
    if (knowledge_ == nullptr || lattice.carried.empty()) {
      return QSYS_STATUS_OK;
    }
    for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
      Slot &slot = lattice.slots[i];
      if (!slot.isOpen || !slot.tried.empty()) {
        continue;
      }
      std::vector<std::vector<Char32>> codes;
      for (const Slot &other : lattice.slots) {
        codes.emplace_back();
        for (const Choice &choice : other.choices) codes.back().push_back(choice.code);
        if (other.isOpen) codes.back() = allTried();
      }
      std::vector<Char32> admitted;
      QOC_TRY(findAdmitted(lattice, i, codes, admitted));
      slot.tried.swap(slot.choices);
      const Choice unknown = slot.tried[0];
      for (const Char32 code : admitted) slot.choices.push_back({code, unknown.cost, unknown.candidate, unknown.score});
    }
    return QSYS_STATUS_OK;
  }

  /// Finds out the characters of a text that an edit has left open, as far as the entry admits one only.
  /// @param isDescribed false where the entry does not describe the text at all
  qsys_status fill(const Lattice &lattice, Text &text, bool &isDescribed) {
    isDescribed = true;
    std::vector<std::size_t> open;
    std::vector<std::vector<Char32>> codes;
    for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
      const bool isUnknown = lattice.slots[i].isOpen && text.choices[i].code == QOC_RESOLVER_OPEN;
      if (lattice.slots[i].isOpen) open.push_back(i);
      codes.push_back(isUnknown ? allTried() : std::vector<Char32>{text.choices[i].code});
    }
    for (const std::size_t i : open) {
      if (knowledge_ != nullptr) {
        std::vector<Char32> admitted;
        QOC_TRY(findAdmitted(lattice, i, codes, admitted));
        isDescribed = isDescribed && !admitted.empty();
        if (admitted.size() == 1) {
          text.choices[i].code = admitted[0];
          continue;
        }
      }
      if (text.choices[i].code == QOC_RESOLVER_OPEN) ++text.numOpen;
    }
    return QSYS_STATUS_OK;
  }

  // Texts -----------------------------------------------------------------------------------------------------------

  /// Adds the best texts of the lattices.
  qsys_status collectShapes() {
    if (numWanted_ == 2 && std::all_of(lattices_.begin(), lattices_.end(), hasPlainTexts)) {
      return collectPlainTexts();
    }
    for (Lattice &lattice : lattices_) {
      lattice.prepare();
      if (!isChecked_) lattice.dropChecks();
    }
    Cost least = texts_.empty() ? noWay : texts_.front().cost;
    for (const Lattice &lattice : lattices_) least = std::min(least, lattice.least());
    std::size_t numTaken = 0;
    const auto take = [&](const FoundText &found, bool &goesOn, Cost &maxCost) -> qsys_status {
      const Lattice &lattice = lattices_[found.lattice];
      Text text = textOf(lattice, found.cost);
      for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
        text.choices.push_back(lattice.slots[i].choices[static_cast<std::size_t>(found.choices[i])]);
      }
      bool isDescribed = true;
      QOC_TRY(fill(lattice, text, isDescribed));
      check(text, lattice.entry);
      if (isDescribed && (!isChecked_ || text.passesCheck || !text.hasCheck) && add(std::move(text))) {
        ++numTaken;
      }
      goesOn = numTaken < numWanted_;
      // Behind the texts that are wanted the next one matters only for the margin, and only before free text.
      if (!texts_.empty() && rules_.maxTexts == 1) maxCost = std::min(maxCost, limitBehind(texts_.front().cost));
      if (numTaken + 1 >= numWanted_) maxCost = std::min(maxCost, freeText_);
      return QSYS_STATUS_OK;
    };
    const Cost most = costs_.penalties().hasScores() ? least + rules_.maxLag : noWay - 1;
    return searchTexts(
        lattices_, numWanted_, most, [&](Lattice &lattice) { return open(lattice); }, take);
  }

  /// Whether all choices of the lattice are texts as they stand.
  static bool hasPlainTexts(const Lattice &lattice) {
    return lattice.checks.empty() &&
           std::none_of(lattice.slots.begin(), lattice.slots.end(), [](const Slot &slot) { return slot.isOpen; });
  }

  /// The best two texts of each lattice, among which are the best two of all: without checks the best one takes the
  /// first choice everywhere, and the next one differs where the second costs least more.
  qsys_status collectPlainTexts() {
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
        add(std::move(second));
      }
      add(std::move(best));
    }
    return QSYS_STATUS_OK;
  }

  /// A text of a lattice, without its characters.
  static Text textOf(const Lattice &lattice, Cost cost) {
    Text text;
    text.cost = cost;
    text.mode = lattice.mode;
    text.result = lattice.result;
    text.choices.reserve(lattice.slots.size());
    text.inputs.reserve(lattice.slots.size());
    for (const Slot &slot : lattice.slots) text.inputs.push_back(slot.input);
    return text;
  }

  /// Puts a text in its place unless the same one is there at no greater cost.
  /// @return whether it came in
  bool add(Text text) {
    const auto same =
        std::find_if(texts_.begin(), texts_.end(), [&](const Text &other) { return isSameText(other, text); });
    if (same != texts_.end()) {
      if (same->cost <= text.cost) {
        return false;
      }
      texts_.erase(same);
    }
    const auto at =
        std::find_if(texts_.begin(), texts_.end(), [&](const Text &other) { return other.cost > text.cost; });
    texts_.insert(at, std::move(text));
    return true;
  }

  Text textOf(std::span<const Char32> word, const WordTable &table, Cost cost) const {
    WordTrace trace = table.trace(word);
    Text text;
    text.choices = std::move(trace.choices);
    text.inputs = std::move(trace.inputs);
    text.cost = cost;
    text.mode = qoc_ocrDictionaryMode_lexicon;
    for (Choice &choice : text.choices) {
      if (choice.code == QOC_CHAR_ANY) {
        choice.code = QOC_RESOLVER_OPEN;
        ++text.numOpen;
      }
    }
    return text;
  }

  qsys_status collectWords() { return knowledge_ != nullptr ? collectKnownWords() : collectShownWords(); }

  /// What a word that the run found costs: an upper bound for the best text. With several edits a result names the text
  /// as it was aligned, which need not be the word.
  Cost costOfShownWord() {
    for (const qoc_ocrDictionaryResult &result : results_) {
      if (result.mode != qoc_ocrDictionaryMode_lexicon || result.isComputed == 0) {
        continue;
      }
      shownWord_.clear();
      for (const qoc_ocrDictionaryChar &character : viewAs<qoc_ocrDictionaryChar>(result.dictionaryString.characters)) {
        if (character.code != QOC_CHAR_EMPTY) shownWord_.push_back(character.code);
      }
      return knowledge_->words.contains(shownWord_) ? costOf(shownWord_) : noWay;
    }
    return noWay;
  }

  Cost costOf(std::span<const Char32> word) const {
    if (word.size() == static_cast<std::size_t>(costs_.size())) {
      Cost cost = 0;
      for (std::size_t i = 0; i < word.size() && cost < noWay; ++i) {
        cost = std::min(noWay, cost + costs_.match(static_cast<std::int32_t>(i), word[i]));
      }
      if (cost < noWay) {
        return cost;
      }
    }
    WordTable table(costs_, reach_, swaps_);
    if (!table.canReach(word.size())) {
      return noWay;
    }
    for (std::size_t depth = 0; depth < word.size(); ++depth) table.extend(word, depth);
    return table.cost(word, word.size());
  }

  /// Whether the reading shows the word, and whatever else it shows is too far off for another one.
  bool isOnlyWord(std::span<const Char32> word, const Reach &reach, Cost limit) const {
    if (reach.maxEdits > 0 || reach.isWindow || !swaps_.isEmpty() ||
        word.size() != static_cast<std::size_t>(costs_.size())) {
      return false;
    }
    for (std::size_t i = 0; i < word.size(); ++i) {
      for (const Choice &choice : costs_.choices(static_cast<std::int32_t>(i))) {
        if (choice.code == QOC_CHAR_ANY || (choice.code != word[i] && choice.cost <= limit)) {
          return false;
        }
      }
      if (word[i] == QOC_CHAR_ANY || !costs_.shows(static_cast<std::int32_t>(i), word[i])) {
        return false;
      }
    }
    return true;
  }

  qsys_status collectKnownWords() {
    const WordIndex &words = knowledge_->words;
    if (words.size() == 0) {
      return QSYS_STATUS_OK;
    }
    const auto isAllowed = [&](std::size_t k, bool &isIn) -> qsys_status {
      Text text;
      if (hasChecks()) {
        text.mode = qoc_ocrDictionaryMode_lexicon;
        for (const Char32 code : words.word(k)) text.choices.push_back({code, 0, -1, 0});
        check(text, words.lexicon(k));
      }
      isIn = !isChecked_ || text.passesCheck || !text.hasCheck;
      // More edits than the table counts: the match test of the library decides.
      return isIn && !reach_.countsEdits() ? isWithinReach(words.word(k), isIn) : QSYS_STATUS_OK;
    };
    // A word that the run found bounds the best one, unless it may fail a check.
    const Cost shown = hasChecks() ? noWay : costOfShownWord();
    const auto limit = [&](Cost best) { return limitBehind(std::min(best, shown)); };
    const Reach reach = reachWithin(limit(noWay));
    if (shown < noWay && isOnlyWord(shownWord_, reach, limit(noWay))) {
      Text text;
      for (std::size_t i = 0; i < shownWord_.size(); ++i) {
        text.inputs.push_back(static_cast<std::int32_t>(i));
        costs_.find(text.inputs.back(), shownWord_[i], text.choices.emplace_back());
      }
      text.cost = shown;
      text.mode = qoc_ocrDictionaryMode_lexicon;
      add(std::move(text));
      return QSYS_STATUS_OK;
    }
    std::vector<FoundWord> found;
    costs_.makeTable();
    QOC_TRY(words.findBest(costs_, reach, swaps_, numWanted_, limit, isAllowed, found));
    for (std::size_t i = 0; i < found.size(); ++i) {
      const auto codes = words.word(found[i].word);
      if (i + 1 < numWanted_) {
        WordTable table(costs_, reach, swaps_);
        for (std::size_t depth = 0; depth < codes.size(); ++depth) table.extend(codes, depth, found[i].cost);
        Text text = textOf(codes, table, found[i].cost);
        check(text, words.lexicon(found[i].word));
        add(std::move(text));
      } else {  // It is only measured against.
        Text text;
        for (const Char32 code : codes) text.choices.push_back({code, 0, -1, 0});
        text.cost = found[i].cost;
        text.mode = qoc_ocrDictionaryMode_lexicon;
        add(std::move(text));
      }
    }
    return QSYS_STATUS_OK;
  }

  qsys_status isWithinReach(std::span<const Char32> word, bool &isIn) const {
    std::vector<qoc_ocrDictionaryChar> characters;
    for (const Char32 code : word) characters.push_back({code, 0});
    qoc_ocrDictionaryString string;
    return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      QOC_TRY(qoc_ocrDictionaryString_construct(&string));
      frame.local<qoc_ocrDictionaryString_destruct>(&string);
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&string.characters, characters.data(),
                                                               static_cast<std::int32_t>(characters.size())));
      qsys_bool isMatch = 0;
      QOC_TRY(qoc_ocrDictionaryString_isMatchMulti(&string, &reading_, &params_, set_, &isMatch));
      isIn = isMatch != 0;
      return QSYS_STATUS_OK;
    });
  }

  /// Without a dictionary: the words that the results name.
  qsys_status collectShownWords() {
    for (const qoc_ocrDictionaryResult &result : results_) {
      QOC_TRY(qsys_attention_check());
      if (result.mode != qoc_ocrDictionaryMode_lexicon || result.isComputed == 0) {
        continue;
      }
      std::vector<Char32> word;
      for (const qoc_ocrDictionaryChar &character : viewAs<qoc_ocrDictionaryChar>(result.dictionaryString.characters)) {
        if (character.code != QOC_CHAR_EMPTY) word.push_back(character.code);
      }
      WordTable table(costs_, reach_, swaps_);
      if (!table.canReach(word.size())) {
        continue;
      }
      for (std::size_t depth = 0; depth < word.size(); ++depth) table.extend(word, depth);
      const Cost cost = table.cost(word, word.size());
      if (cost >= noWay) {
        continue;
      }
      Text text = textOf(word, table, cost);
      check(text, 0);
      if (!isChecked_ || text.passesCheck || !text.hasCheck) add(std::move(text));
    }
    return QSYS_STATUS_OK;
  }

  // The outcome -----------------------------------------------------------------------------------------------------

  qsys_status findResult(const Text &text, std::int32_t &index) const {
    index = -1;
    for (std::size_t i = 0; i < results_.size() && index < 0; ++i) {
      const qoc_ocrDictionaryResult &result = results_[i];
      bool isIt = text.result == &result;
      if (!isIt && text.result != nullptr) {
        qsys_bool isEqual = 0;
        QOC_TRY(qoc_ocrDictionaryResult_compareEqual(text.result, &result, &isEqual));
        isIt = isEqual != 0;
      } else if (!isIt && text.mode == result.mode) {
        const auto word = viewAs<qoc_ocrDictionaryChar>(result.dictionaryString.characters);
        isIt = std::equal(word.begin(), word.end(), text.choices.begin(), text.choices.end(),
                          [](const qoc_ocrDictionaryChar &a, const Choice &b) { return a.code == b.code; });
      }
      if (isIt) index = static_cast<std::int32_t>(i);
    }
    return QSYS_STATUS_OK;
  }

  qsys_status write(const Text &from, Cost margin, qoc_ocrDictionaryResolvedText &text) const {
    const auto n = static_cast<std::int32_t>(from.choices.size());
    std::vector<qoc_ocrDictionaryChar> characters;
    std::vector<std::int32_t> candidates;
    for (const Choice &choice : from.choices) {
      characters.push_back({choice.code, choice.score});
      candidates.push_back(choice.candidate);
    }
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&text.text.characters, characters.data(), n));
    QOC_TRY(qstd_vector32s_assignElements(&text.inputIndices, from.inputs.data(), n));
    QOC_TRY(qstd_vector32s_assignElements(&text.candidateIndices, candidates.data(), n));
    const Cost cost = costs_.penalties().hasScores() ? from.cost : from.cost % differenceCost;
    text.total = clampTo32(costs_.sumOfFirst() - cost);
    text.margin = clampTo32(margin);
    text.mode = from.mode;
    text.hasCheck = from.hasCheck ? 1 : 0;
    text.passesCheck = from.passesCheck ? 1 : 0;
    text.numOpen = from.numOpen;
    return findResult(from, text.resultIndex);
  }

  /// The differences from the first candidates; for a reading without scores.
  static Cost numDifferences(const Text &text) { return text.cost / differenceCost; }

  Cost marginOf(std::size_t i) const {
    const Text &text = texts_[i];
    const bool isWord = text.mode == qoc_ocrDictionaryMode_lexicon;
    const Cost freeText = costs_.freeText(isWord ? rules_.freeWord : rules_.freeShape);
    const Cost next = i + 1 < texts_.size() ? std::min(texts_[i + 1].cost, freeText) : freeText;
    return std::min(next - text.cost, greatestMargin());
  }

  /// Whether the best text leads far enough.
  bool leads() const {
    if (costs_.penalties().hasScores()) {
      return marginOf(0) >= rules_.minMargin;
    }
    return texts_.size() == 1 || numDifferences(texts_[1]) > numDifferences(texts_[0]);
  }

  qsys_status write(qoc_ocrDictionaryResolution &resolution) const {
    const std::size_t numTexts = std::min(texts_.size(), static_cast<std::size_t>(rules_.maxTexts));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryResolvedText_resize(&resolution.texts, static_cast<std::int32_t>(numTexts)));
    const auto texts = editAs<qoc_ocrDictionaryResolvedText>(resolution.texts);
    for (std::size_t i = 0; i < numTexts; ++i) {
      QOC_TRY(write(texts_[i], costs_.penalties().hasScores() ? marginOf(i) : 0, texts[i]));
    }
    if (numTexts > 0) {
      const qoc_ocrDictionaryResolvedText &best = texts[0];
      const bool isChecked = best.hasCheck != 0 ? best.passesCheck != 0 : rules_.requiresCheck == 0;
      const bool isSure = best.numOpen == 0 && isChecked && leads();
      resolution.outcome = isSure ? qoc_ocrDictionaryOutcome_sure : qoc_ocrDictionaryOutcome_unsure;
    }
    return QSYS_STATUS_OK;
  }

  const qoc_ocrDictionaryResolverRules &rules_;
  const Knowledge *knowledge_;
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_ocrDictionaryRunParams &params_;
  const qoc_swapCharSet *set_;
  std::span<const qoc_ocrDictionaryResult> results_;
  bool isEmpty_;  // The run has found nothing.
  ReadingCosts costs_;
  Reach reach_;
  MultiSwaps swaps_;
  Cost freeText_;  // The most that the reading loses as free text.
  std::size_t numWanted_;
  bool isChecked_ = true;  // Whether texts that fail their checks stay out.
  std::vector<Char32> shownWord_;
  std::deque<HeldResults> matched_;
  std::vector<Lattice> lattices_;
  std::vector<Text> texts_;
};

}  // namespace

qsys_status qoc_ocrDictionaryResolver_resolve(const qoc_ocrDictionaryResolver *resolver,
                                              const qoc_ocrDictionaryStringMulti *reading,
                                              const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                              const qoc_ocrDictionaryResultSet *results,
                                              qoc_ocrDictionaryResolution *resolution) {
  if (!present({resolver, reading, results, resolution})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    resolution->outcome = qoc_ocrDictionaryOutcome_none;
    resolution->hasScores = 0;
    QOC_TRY(qstd_vector_qoc_ocrDictionaryResolvedText_resize(&resolution->texts, 0));
    qoc_ocrDictionaryRunParams defaults = {};
    QOC_TRY(qoc_ocrDictionaryRunParams_construct(&defaults));
    const Confusions none;
    const Kept *kept = keptBy(*resolver);
    const Confusions &confusions = kept != nullptr && kept->confusions ? *kept->confusions : none;
    return Resolving(*resolver, confusions, *reading, params != nullptr ? *params : defaults, set, *results)
        .run(*resolution);
  });
}
